#include "forces/ForceCalculation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <utility>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "calculix/deck/DeckModel.h"
#include "database/DescriptorParcel.h"
#include "database/Provenance.h"
#include "database/ScratchRecord.h"
#include "database/StoredDatabase.h"
#include "forces/ForceMesh.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "progress/Listener.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

using calculix::DeckModel;

constexpr int kResultsInTime = 1;  // value of result index 5

/// @return the history that tells which results of a step are of the deformed geometry
FED_DataDescriptor LargeDisplacementsOf(const FED_DataDescriptor& result)
{
  FED_DataDescriptor history = result;
  history.SetInteger(FED_DataDescriptor::OnfId, FED_OnfId_ScalarHistory);
  history.SetInteger(FED_DataDescriptor::Substep, 1);  // FEM_ResultUtil::SetResultScalar
  history.SetInteger(OnfIndex::Quantity, OnfKind::LargeDisplacements);
  return history;
}

/// @return 1 where an import has kept that the geometry is the deformed one, 0 where it has not, a NaN where its deck
///         did not tell
double FindLargeDisplacements(const FED_Database& database, const FED_DataDescriptor& result)
{
  const FED_DataDescriptor history = LargeDisplacementsOf(result);
  const auto substep = static_cast<std::size_t>(std::max(result.GetInteger(FED_DataDescriptor::Substep), 0));
  if (!database.HasDataBlock(history)) return 0.0;
  const FED_DataBlock& block = database.GetConstDataBlock(history);
  return block.HasRecord(substep) ? block.GetScalarAt(substep) : 0.0;
}

/// @return whether the database tells which results are of the deformed geometry: a deck was imported with them
bool IsNonlinearityKept(const FED_Database& database, const std::vector<FED_DataDescriptor>& results)
{
  std::map<int, bool> hadDeck;  // by iteration
  return std::all_of(results.begin(), results.end(), [&](const FED_DataDescriptor& result) {
    const int iteration    = result.GetInteger(FED_DataDescriptor::Iteration);
    const auto [at, isNew] = hadDeck.try_emplace(iteration, false);
    if (isNew) at->second = WasImportedWithDeck(database, iteration);
    return at->second && !std::isnan(FindLargeDisplacements(database, result));
  });
}

/// @return whether a result is of the deformed geometry
bool IsDeformed(const ForceRequest& request, const FED_Database& database, const FED_DataDescriptor& result)
{
  // Modes, preloaded ones too, are of the undeformed geometry.
  if (result.GetInteger(FED_DataDescriptor::Analysis) != kResultsInTime) return false;
  const int number = result.GetInteger(FED_DataDescriptor::LoadCase);
  if (request.nonlinearSteps) {
    return std::any_of(
        request.nonlinearSteps->begin(), request.nonlinearSteps->end(), [number](const NumberRange& range) {
          return range.form == NumberRange::All || (range.form == NumberRange::Numbers && range.Holds(number));
        });
  }
  if (request.deck == nullptr) return FindLargeDisplacements(database, result) == 1.0;
  const std::vector<calculix::DeckStep>& steps = request.deck->steps;
  if (number < 1 || static_cast<std::size_t>(number) > steps.size()) {
    Fail(request.deckName + ": " + Counted(steps.size(), "step") + ", expected a step " + std::to_string(number) +
         " as in the results, or --nlgeom");
  }
  const calculix::DeckStep& step = steps[static_cast<std::size_t>(number) - 1];
  return step.nlgeom && !step.perturbation;
}

/// A slip in a number would leave all steps linear.
/// @throws FED_Failure for a step or a range of steps that no result is of
void CheckNonlinearSteps(const ForceRequest& request, const std::vector<FED_DataDescriptor>& results)
{
  if (!request.nonlinearSteps) return;
  std::set<int> steps;
  for (const FED_DataDescriptor& result : results) steps.insert(result.GetInteger(FED_DataDescriptor::LoadCase));
  for (const NumberRange& range : *request.nonlinearSteps) {
    const auto isHeld = [&range](int step) { return range.Holds(step); };
    if (range.form != NumberRange::Numbers || std::any_of(steps.begin(), steps.end(), isHeld)) continue;
    const std::string text =
        std::to_string(range.first) + (range.last == range.first ? "" : "-" + std::to_string(range.last));
    Fail("--nlgeom is '" + text + "', expected a step of the results in " + request.database + ": " + FormatIds(steps));
  }
}

int KindOf(const FED_DataDescriptor& descriptor) { return descriptor.GetInteger(FED_DataDescriptor::OnfId); }

bool HoldsLocalStresses(const FED_Database& database, const FED_DataDescriptor& descriptor)
{
  return database.GetUserKindName(static_cast<FED_OnfId>(KindOf(descriptor))) == kLocalStresses;
}

using Ids = std::set<int>;

/// Sets of a deck have names in upper case, those of a groups file have them as written.
/// @return the elements of a set of the iteration; nothing when the database has none of this name
std::optional<Ids> FindStoredSet(const FED_Database& database, int iteration, const std::string& name)
{
  const FED_DataDescriptor sets(iteration, OnfKind::ElementSet);
  if (!database.HasDataBlock(sets)) return std::nullopt;
  const FED_DataBlock& block = database.GetConstDataBlock(sets);
  const ScratchRecord  record(block);
  for (auto index = block.Begin(); index != block.End(); ++index) {
    block.GetRecord(*index, *record);
    if (record->GetString(1) != name) continue;
    FED_IntArray ids;
    record->GetIntList(2, ids);
    return Ids(ids.GetData(), ids.GetData() + ids.GetSize());
  }
  return std::nullopt;
}

/// @return the elements of a set of the deck, or of the database where none is given
std::optional<Ids> FindSet(const DeckModel* deck, const FED_Database& database, int iteration, const std::string& name)
{
  if (deck == nullptr) return FindStoredSet(database, iteration, name);
  const calculix::DeckSet* set = deck->FindElementSet(name);
  return set == nullptr ? std::nullopt : std::optional<Ids>(std::in_place, set->ids.begin(), set->ids.end());
}

Ids ChosenBySet(const ForceRequest& request, const FED_Database& database, int iteration)
{
  const std::string& name = request.part.set;
  std::optional<Ids> ids  = FindSet(request.deck, database, iteration, name);
  if (!ids) ids = FindSet(request.deck, database, iteration, UpperCase(name));
  if (!ids && request.deck != nullptr) Fail(request.deckName + ": no element set " + name);
  if (!ids) Fail(request.database + ": no element set " + name + ", expected one of the database or --deck");
  if (ids->empty()) Fail("--set is " + name + ", which has no elements");
  return *ids;
}

Ids ChosenById(const ForcePart& part, const ForceMesh& mesh)
{
  Ids chosen;
  for (const NumberRange& range : part.elements) {
    // A single id is asked for by name, so that a missing one is told.
    const bool isSingle = range.form == NumberRange::Numbers && range.first == range.last;
    if (isSingle) chosen.insert(range.first);
    for (const auto& entry : mesh.elements.Entries())
      if (!isSingle && (range.form == NumberRange::All || range.Holds(entry.first))) chosen.insert(entry.first);
  }
  if (chosen.empty()) Fail("--elements is '" + part.text + "', which names no element of the mesh");
  return chosen;
}

std::optional<Ids> ChosenPart(const ForceRequest& request, const FED_Database& database, int iteration,
                              const ForceMesh& mesh)
{
  if (!request.part.IsGiven()) return std::nullopt;
  return request.part.set.empty() ? ChosenById(request.part, mesh) : ChosenBySet(request, database, iteration);
}

/// Records that are a list of numbers each, by ascending id.
template <typename T>
struct ListRecords
{
  std::vector<int>         ids;
  std::vector<std::size_t> counts;  ///< of each list
  std::vector<T>           values;  ///< of all of them, one behind the other

  template <typename Parcel>
  friend void Travel(Parcel& parcel, ListRecords& records)
  {
    parcel(records.ids, records.counts, records.values);
  }
};

using ForceRecords    = ListRecords<double>;
using NodeListRecords = ListRecords<int>;

/// What one result comes to.
struct CalculatedResult
{
  ForceStepReport told;
  ForceRecords    forces;
  bool            isRounded    = false;  ///< as ForceMesh has it
  bool            areTiesKnown = false;
  bool            addsLists    = false;  ///< to those of the iteration
  NodeListRecords lists;                 ///< all of the iteration, of its first result, where it adds some

  template <typename Parcel>
  friend void Travel(Parcel& parcel, CalculatedResult& result)
  {
    parcel(result.told, result.forces, result.isRounded, result.areTiesKnown, result.addsLists, result.lists);
  }
};

void GetList(const FED_ConstIdDataRecord& record, FED_DoubleArray& list)
{
  record.GetDataRecord().GetDoubleList(1, list);
}
void GetList(const FED_ConstIdDataRecord& record, FED_IntArray& list) { record.GetIntList(1, list); }

template <typename T, typename Array>
ListRecords<T> ReadLists(const FED_Database& database, const FED_DataDescriptor& descriptor)
{
  ListRecords<T> records;
  if (!database.HasDataBlock(descriptor)) return records;
  const FED_DataBlock&       block = database.GetConstDataBlock(descriptor);
  const FED_ConstIdDataBlock view(block, database.GetIdMapsPool());
  for (auto index = block.Begin(); index != block.End(); ++index) records.ids.push_back(view.GetId(*index));
  std::sort(records.ids.begin(), records.ids.end());
  FED_ConstIdDataRecord& record = view.CreateConstIdDataRecord();
  Array                  list;
  for (const int id : records.ids) {
    view.GetRecord(id, record);
    GetList(record, list);
    records.counts.push_back(list.GetSize());
    records.values.insert(records.values.end(), list.GetData(), list.GetData() + list.GetSize());
  }
  return records;
}

void SetList(FED_IdDataRecord& record, const std::vector<double>& list) { record.SetDoubleList(1, list); }
void SetList(FED_IdDataRecord& record, const std::vector<int>& list) { record.SetIntList(1, list); }

template <typename T>
void WriteLists(FED_Database& database, const FED_DataDescriptor& descriptor, const ListRecords<T>& records)
{
  FED_IdDataBlock   view(database.GetOrCreateDataBlock(descriptor, records.ids.size()), database.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  auto              from   = records.values.begin();
  for (std::size_t i = 0; i < records.ids.size(); ++i) {
    const auto to = from + static_cast<std::ptrdiff_t>(records.counts[i]);
    SetList(record, std::vector<T>(from, to));
    view.SetRecord(records.ids[i], record);
    from = to;
  }
}

/// The mesh of an iteration, and a database where one result at a time stands beside it.
class IterationForces
{
public:
  /// @param source, request borrowed
  IterationForces(const FED_Database& source, int iteration, const ForceRequest& request)
      : source_(source),
        request_(request),
        iteration_(iteration),
        scratch_(CopyModel(source, iteration)),
        mesh_(request.deck != nullptr ? MakeForceMesh(*request.deck)
                                      : ReadForceMesh(*scratch_, iteration, request.database)),
        forces_(*scratch_, mesh_, iteration, request.deck != nullptr ? request.deckName : request.database),
        part_(ChosenPart(request, *scratch_, iteration, mesh_))
  {
    for (int onf = OnfKind::FirstUserKind; onf <= OnfKind::LastUserKind; ++onf)
      if (source.GetUserKindName(static_cast<FED_OnfId>(onf)) == kLocalStresses) kinds_.push_back(onf);
  }

  int GetIteration() const noexcept { return iteration_; }

  /// @param isFirst of the iteration
  CalculatedResult Calculate(const FED_DataDescriptor& result, bool isFirst)
  {
    std::vector<FED_DataDescriptor> blocks;
    for (const int kind : kinds_)
      if (source_.HasDataBlock(WithKind(result, kind))) blocks.push_back(WithKind(result, kind));
    for (const FED_DataDescriptor& block : blocks) FED_CopyBlock(source_, *scratch_, block);
    CalculatedResult calculated = CalculateCopied(result);
    if (isFirst && calculated.addsLists)
      calculated.lists = ReadLists<int, FED_IntArray>(*scratch_, FED_DataDescriptor(iteration_, OnfKind::ElementNodes));
    for (const FED_DataDescriptor& block : blocks) scratch_->DeleteDataBlock(block);
    return calculated;
  }

private:
  /// What results of an iteration have in common.
  static std::unique_ptr<FED_ResultDatabase> CopyModel(const FED_Database& source, int iteration)
  {
    auto copy = std::make_unique<FED_ResultDatabase>();
    for (const FED_DataDescriptor& block : FindForceIngredients(source, {}))
      if (block.GetInteger(FED_DataDescriptor::Iteration) == iteration) FED_CopyBlock(source, *copy, block);
    return copy;
  }

  CalculatedResult CalculateCopied(const FED_DataDescriptor& result)
  {
    CalculatedResult calculated;
    ForceStepReport& told = calculated.told;
    told.step             = forces_.Calculate(result, IsDeformed(request_, source_, result));
    if (request_.balance) {
      told.balance = CalculateBalance(*scratch_, mesh_, told.step, request_.tolerance, request_.database);
      if (request_.numWorst > 0 && told.balance->nodes.size() > request_.numWorst)
        told.balance->nodes.resize(request_.numWorst);
    }
    if (request_.plane) {
      told.cut = CalculatePlaneCut(*scratch_, mesh_, told.step, *request_.plane, part_, request_.database);
    } else if (part_) {
      told.body = CalculateFreeBody(*scratch_, mesh_, told.step, *part_, request_.about, request_.database);
    }
    // Only numbers are told later: the geometry of many results need not be held.
    told.step.hasForces.clear();
    told.step.positions.clear();
    calculated.isRounded    = mesh_.isRounded;
    calculated.areTiesKnown = mesh_.areTiesKnown;
    calculated.addsLists    = forces_.AddsNodeLists();
    calculated.forces       = ReadLists<double, FED_DoubleArray>(*scratch_, told.step.forces);
    if (scratch_->HasDataBlock(told.step.forces)) scratch_->DeleteDataBlock(told.step.forces);
    return calculated;
  }

  const FED_Database&                 source_;
  const ForceRequest&                 request_;
  int                                 iteration_;
  std::unique_ptr<FED_ResultDatabase> scratch_;
  ForceMesh                           mesh_;
  ElementForces                       forces_;
  std::optional<Ids>                  part_;
  /// Whose blocks of a result are read.
  std::vector<int> kinds_ = {OnfKind::IntegrationPointStress, OnfKind::Displacement, OnfKind::Reaction};
};

/// Calculates results, one thread its own.
class ForceReader
{
public:
  /// @param stored null: the source itself is read
  ForceReader(std::unique_ptr<StoredDatabase> stored, const FED_Database& source, const ForceRequest& request,
              const std::vector<FED_DataDescriptor>& results)
      : stored_(std::move(stored)),
        database_(stored_ ? static_cast<const FED_Database&>(stored_->Get()) : source),
        request_(request),
        results_(results)
  {}

  CalculatedResult Calculate(std::size_t number)
  {
    const int iteration = IterationOf(number);
    if (!forces_ || forces_->GetIteration() != iteration) {
      forces_.reset();
      forces_.emplace(database_, iteration, request_);
    }
    return forces_->Calculate(results_[number], number == 0 || IterationOf(number - 1) != iteration);
  }

private:
  int IterationOf(std::size_t number) const { return results_[number].GetInteger(FED_DataDescriptor::Iteration); }

  std::unique_ptr<StoredDatabase>        stored_;
  const FED_Database&                    database_;
  const ForceRequest&                    request_;
  const std::vector<FED_DataDescriptor>& results_;
  std::optional<IterationForces>         forces_;
};

/// @param report gets what a result tells
/// @param target null: nothing is saved
void Take(CalculatedResult&& result, ForceReport& report, FED_Database* target)
{
  const ForceStep& step = result.told.step;
  for (const auto& [reason, ids] : step.skipped) report.skipped[reason].insert(ids.begin(), ids.end());
  (step.numElements > 0 ? report.added : report.outdated).push_back(step.forces);
  report.isRounded    = report.isRounded || result.isRounded;
  report.areTiesKnown = report.areTiesKnown && result.areTiesKnown;
  if (target != nullptr) {
    if (target->HasDataBlock(step.forces)) target->DeleteDataBlock(step.forces);
    if (step.numElements > 0) WriteLists(*target, step.forces, result.forces);
    const FED_DataDescriptor lists(step.forces.GetInteger(FED_DataDescriptor::Iteration), OnfKind::ElementNodes);
    if (!result.lists.ids.empty()) WriteLists(*target, lists, result.lists);
  }
  report.steps.push_back(std::move(result.told));
}

/// Why no node could be judged in some results.
std::string WhyNotJudged(const SkippedElements& skipped, std::span<const ForceStepReport> steps)
{
  std::string text       = DescribeSkipped(skipped);
  std::size_t numUnknown = 0;
  for (const ForceStepReport& told : steps) numUnknown = std::max(numUnknown, told.balance->numUnknown);
  if (numUnknown > 0) text += (text.empty() ? "" : ", ") + Counted(numUnknown, "node") + " without RF";
  std::map<std::string, std::size_t> numTied;
  for (const ForceStepReport& told : steps)
    for (const TiedNodes& tied : told.balance->tied) numTied[tied.how] = std::max(numTied[tied.how], tied.numNodes);
  for (const auto& [how, count] : numTied) text += (text.empty() ? "" : ", ") + Counted(count, "node") + " in " + how;
  return text;
}

}  // namespace

std::size_t ForceReport::NumWithForces() const noexcept
{
  return static_cast<std::size_t>(
      std::count_if(steps.begin(), steps.end(), [](const ForceStepReport& told) { return told.step.numElements > 0; }));
}

const ForceStepReport* ForceReport::FindWorstBalance() const noexcept
{
  const ForceStepReport* worst = nullptr;
  for (const ForceStepReport& told : steps) {
    if (!told.balance || !told.balance->IsJudged()) continue;
    // Of two within or two beyond their limits the one that uses more of it; without division limits may be 0.
    const auto isWorse = [](const ForceBalance& a, const ForceBalance& b) {
      if (a.Holds() != b.Holds()) return b.Holds();
      return a.largestResidual * b.limit > b.largestResidual * a.limit;
    };
    if (worst == nullptr || isWorse(*told.balance, *worst->balance)) worst = &told;
  }
  return worst;
}

bool ForceReport::Holds() const noexcept
{
  return std::all_of(steps.begin(), steps.end(), [](const ForceStepReport& told) {
    return !told.balance || !told.balance->IsJudged() || told.balance->Holds();
  });
}

std::vector<NumberRange> ParseElementIds(const std::string& text)
{
  std::vector<NumberRange> ranges = ParseNumberRanges(text, "an element");
  for (const NumberRange& range : ranges) {
    if (range.form != NumberRange::All && range.form != NumberRange::Numbers)
      Fail("--elements is '" + text + "', expected ids, ranges of them or all");
  }
  return ranges;
}

std::vector<NumberRange> ParseNonlinearSteps(const std::string& text)
{
  std::vector<NumberRange> ranges = ParseNumberRanges(text, "a step of --nlgeom");
  for (const NumberRange& range : ranges) {
    if (range.form == NumberRange::First || range.form == NumberRange::Last)
      Fail("--nlgeom is '" + text + "', expected numbers of steps, all or none");
  }
  return ranges;
}

std::vector<FED_DataDescriptor> ChooseForceResults(const FED_Database&                    database,
                                                   const std::vector<FED_DataDescriptor>& selected,
                                                   const std::string& name, const std::string& selection)
{
  std::vector<FED_DataDescriptor> results;
  std::copy_if(selected.begin(), selected.end(), std::back_inserter(results), [](const FED_DataDescriptor& descriptor) {
    return KindOf(descriptor) == OnfKind::IntegrationPointStress;
  });
  if (!results.empty()) return results;

  const bool hasLocal = std::any_of(
      selected.begin(), selected.end(),
      [&database](const FED_DataDescriptor& descriptor) { return HoldsLocalStresses(database, descriptor); });
  Fail(name + ": no stresses of integration points (582)" + (selection.empty() ? "" : " in '" + selection + "'") +
       (hasLocal ? ", only some in local systems, expected a database that the deck was imported into with them"
                 : ", expected a .dat with S of the solver"));
}

std::vector<FED_DataDescriptor> FindForceIngredients(const FED_Database&                    database,
                                                     const std::vector<FED_DataDescriptor>& results)
{
  const std::set<FED_DataDescriptor> stresses(results.begin(), results.end());
  std::vector<FED_DataDescriptor>    ingredients;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    const int  kind   = KindOf(descriptor);
    const bool isMesh = kind == OnfKind::Coordinates || kind == OnfKind::ElementNodes || kind == OnfKind::ElementType ||
                        kind == OnfKind::ElementSet || kind == OnfKind::TiedNodes || kind == OnfKind::DeckType;
    // What tells of all results of an iteration or a step.
    const bool tells    = OnfKind::IsProvenance(kind) || GetQuantity(descriptor) == OnfKind::LargeDisplacements;
    const bool isResult = kind == OnfKind::IntegrationPointStress || kind == OnfKind::Displacement ||
                          kind == OnfKind::Reaction || HoldsLocalStresses(database, descriptor);
    if (isMesh || tells || (isResult && stresses.contains(WithKind(descriptor, OnfKind::IntegrationPointStress))))
      ingredients.push_back(descriptor);
  }
  return ingredients;
}

ForceReport CalculateForces(FED_Database& database, const std::vector<FED_DataDescriptor>& results,
                            const ForceRequest& request, Listener* listener)
{
  return CalculateForces({database}, &database, results, request, listener);
}

ForceReport CalculateForces(const ForceSource& source, FED_Database* target,
                            const std::vector<FED_DataDescriptor>& results, const ForceRequest& request,
                            Listener* listener)
{
  CheckNonlinearSteps(request, results);
  const auto getIteration = [](const FED_DataDescriptor& result) {
    return result.GetInteger(FED_DataDescriptor::Iteration);
  };
  std::vector<FED_DataDescriptor> ordered = results;
  std::stable_sort(ordered.begin(), ordered.end(), [&](const FED_DataDescriptor& a, const FED_DataDescriptor& b) {
    return getIteration(a) < getIteration(b);
  });

  ForceReport report;
  report.isNonlinearityKnown =
      request.deck != nullptr || request.nonlinearSteps || IsNonlinearityKept(source.database, results);

  CrewOrSelf             crew(source.readers.crew);
  Plan<CalculatedResult> plan;
  plan.units      = ordered.size();
  plan.state      = source.readers.state;
  plan.ahead      = 2 * crew.Get().GetSize();
  plan.makeWorker = [&](bool isFirst) -> Plan<CalculatedResult>::Worker {
    auto stored = isFirst || !source.readers.open ? nullptr : source.readers.open();
    if (!isFirst && !stored) return {};
    return [reader = std::make_shared<ForceReader>(std::move(stored), source.database, request, ordered)](
               std::size_t number) { return reader->Calculate(number); };
  };
  if (listener != nullptr)
    plan.onProgress = [&](std::size_t done) {
      listener->Progress("calculating forces", done, ordered.size(), "steps");
    };
  CarryOut(crew.Get(), std::move(plan), [&](std::size_t number, CalculatedResult&& result) {
    const bool addsLists = result.addsLists;
    Take(std::move(result), report, target);
    const int  iteration = getIteration(ordered[number]);
    const bool isLast    = number + 1 == ordered.size() || getIteration(ordered[number + 1]) != iteration;
    if (isLast && addsLists) report.added.emplace_back(iteration, OnfKind::ElementNodes);
  });
  if (request.balance && report.FindWorstBalance() == nullptr)
    Fail(request.database + ": no node to judge in any result: " + WhyNotJudged(report.skipped, report.steps));
  return report;
}

std::string DescribeSkipped(const SkippedElements& skipped)
{
  std::string text;
  for (const auto& [reason, ids] : skipped)
    text += (text.empty() ? "" : ", ") + reason + " (" + Counted(ids.size(), "element") + ")";
  return text;
}

std::string DescribeVerdict(const ForceRequest& request, const ForceReport& report)
{
  const ForceStepReport& worst   = *report.FindWorstBalance();
  const ForceBalance&    balance = *worst.balance;
  std::string text = std::string("balance ") + (report.Holds() ? "passed" : "failed") + ": largest residual " +
                     FormatRounded(balance.RelativeResidual()) + " of the largest force, at node " +
                     std::to_string(balance.nodes.front().node) + " of " + ToSelectionText(worst.step.forces) +
                     "; limit " + FormatRounded(request.tolerance);
  if (worst.step.errorBound > 0.0 && balance.largestForce > 0.0)
    text += " and " + FormatRounded(worst.step.errorBound / balance.largestForce) + " for the digits of coordinates";
  if (report.Holds()) return text;
  text += "; " + std::to_string(balance.numAbove) + " of " + Counted(balance.numJudged, "node") + " above it";
  if (!report.areTiesKnown)
    text +=
        "; which nodes are in contact, ties, equations, couplings and the like is not known without the deck, and what "
        "these exert counts as residual: --deck judges them apart";
  return text;
}

std::vector<std::string> ListForceNotes(const ForceRequest& request, const ForceReport& report)
{
  std::vector<std::string> notes;
  for (const auto& [reason, ids] : report.skipped)
    notes.push_back("no forces of " + Counted(ids.size(), "element") + ", " + reason + ": " + FormatIds(ids));
  for (const ForceStepReport& told : report.steps) {
    if (!told.balance || told.balance->IsJudged()) continue;
    notes.push_back("no node of " + ToSelectionText(told.step.forces) +
                    " is judged: " + WhyNotJudged(told.step.skipped, {&told, 1}));
  }
  for (const ForceStepReport& told : report.steps) {
    if (!told.balance) continue;
    for (const TiedNodes& tied : told.balance->tied)
      notes.push_back(ToSelectionText(told.step.forces) + ": " + Counted(tied.numNodes, "node") + " in " + tied.how +
                      " judged apart, largest residual " +
                      FormatRounded(told.balance->largestForce > 0.0 ? tied.largestResidual / told.balance->largestForce
                                                                     : tied.largestResidual) +
                      " of the largest force, at node " + std::to_string(tied.worstNode));
  }
  if (!report.isNonlinearityKnown)
    notes.emplace_back("all steps are taken as geometrically linear, --deck or --nlgeom tells which are not");
  if (!report.isRounded) return notes;
  double largest = 0.0;
  for (const ForceStepReport& told : report.steps) {
    if (told.step.largestSum > 0.0) largest = std::max(largest, told.step.errorBound / told.step.largestSum);
  }
  notes.push_back(request.database +
                  ": coordinates have six digits; if a .frd rounded them, forces at nodes are uncertain by up to " +
                  FormatRounded(largest) + " of the largest one, and --deck gives all digits");
  return notes;
}

}  // namespace quilon
