#include "answers/Combine.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <list>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "answers/ChosenComponents.h"
#include "answers/ComponentAxes.h"
#include "answers/IterationAxes.h"
#include "answers/Region.h"
#include "calculix/deck/DeckModel.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

using Descriptor  = FED_DataDescriptor;
using Descriptors = std::vector<Descriptor>;

constexpr int         kInTime   = 1;
constexpr int         kModes    = 2;
constexpr std::size_t kMostKept = std::size_t{512} << 20;

using OnfKind::OnfOf;

/// Kinds that are combined whenever they are there: those whose values change their sign with the load.
bool IsLinear(int onf) { return OnfKind::SignChangeOf(onf) == OnfKind::SignChange::Negated; }

/// Kinds that are combined when a user names them.
bool MayBeLinear(int onf)
{
  const bool isThermal = onf == OnfKind::Temperature || onf == OnfKind::HeatFlux || onf == OnfKind::HeatGeneration;
  const bool isOfUser  = OnfKind::IsUserKind(onf) && OnfKind::IsOfMesh(onf) && !StoredComponentsOf(onf).empty();
  return IsLinear(onf) || isThermal || isOfUser;
}

/// Kinds whose records are a list of any length.
bool IsList(int onf) { return StoredComponentsOf(onf).empty(); }

/// Records of one block in the order in which they are stored.
struct CaseValues
{
  std::vector<int>         ids;
  std::vector<double>      values;
  std::vector<std::size_t> ends;  // of the values of each record where they are lists, else empty

  std::size_t Bytes() const
  {
    return ids.capacity() * sizeof(int) + values.capacity() * sizeof(double) + ends.capacity() * sizeof(std::size_t);
  }

  std::span<const double> Record(std::size_t i, std::size_t numValues) const
  {
    if (ends.empty()) return std::span(values).subspan(i * numValues, numValues);
    const std::size_t begin = i == 0 ? 0 : ends[i - 1];
    return std::span(values).subspan(begin, ends[i] - begin);
  }
};

/// @param listField the field of the lists, 0 where records are no lists
void AddFiltered(const FED_BlockSpan& span, const RegionFilter& filter, std::size_t listField, CaseValues& read)
{
  const int* ids = span.GetIds().GetData();
  for (std::size_t r = 0; r < span.GetCount(); ++r) {
    if (!filter.Holds(ids[r])) continue;
    read.ids.push_back(ids[r]);
    if (listField != 0) {
      const auto list = span.GetDoubleList(listField, r);
      read.values.insert(read.values.end(), list.GetData(), list.GetData() + list.GetSize());
      read.ends.push_back(read.values.size());
      continue;
    }
    const auto        values = span.GetDoubles(1);
    const std::size_t count  = values.GetSize() / span.GetCount();
    read.values.insert(read.values.end(), values.GetData() + r * count, values.GetData() + (r + 1) * count);
  }
}

/// @param region null: all
CaseValues ReadCase(const FED_Database& database, const Descriptor& descriptor, Region* region)
{
  // Integration points have their number before their list.
  const bool        isList = IsList(OnfOf(descriptor));
  const std::size_t field  = OnfKind::ListPeriodOf(OnfOf(descriptor)) == 6 ? 2 : 1;
  CaseValues        read;

  const FED_DataBlock&        block = database.GetConstDataBlock(descriptor);
  std::optional<RegionFilter> filter;
  if (region != nullptr && !region->IsEverything()) filter = region->FilterOf(block);
  FED_ForEachSpan(block, database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    const auto ids = span.GetIds();
    if (filter) return AddFiltered(span, *filter, isList ? field : 0, read);
    read.ids.insert(read.ids.end(), ids.GetData(), ids.GetData() + ids.GetSize());
    if (!isList) {
      const auto values = span.GetDoubles(1);
      read.values.insert(read.values.end(), values.GetData(), values.GetData() + values.GetSize());
      return;
    }
    for (std::size_t r = 0; r < span.GetCount(); ++r) {
      const auto list = span.GetDoubleList(field, r);
      read.values.insert(read.values.end(), list.GetData(), list.GetData() + list.GetSize());
      read.ends.push_back(read.values.size());
    }
  });
  return read;
}

/// Load cases of one series, the last ones used kept.
class CaseCache
{
public:
  /// @param region null: all
  CaseCache(const FED_Database& database, const CombinePlan::Series& series, Region* region)
      : database_(database), series_(series), region_(region)
  {}

  /// @return valid until the next call
  const CaseValues& Get(const CaseName& name)
  {
    const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const auto& one) { return one.first == name; });
    if (found != kept_.end()) {
      kept_.splice(kept_.begin(), kept_, found);
      return kept_.front().second;
    }
    CaseValues values = ReadCase(database_, series_.blocks.at(name), region_);
    bytes_ += values.Bytes();
    kept_.emplace_front(name, std::move(values));
    while (bytes_ > kMostKept && kept_.size() > 1) {
      bytes_ -= kept_.back().second.Bytes();
      kept_.pop_back();
    }
    return kept_.front().second;
  }

private:
  const FED_Database&                        database_;
  const CombinePlan::Series&                 series_;
  Region*                                    region_;
  std::list<std::pair<CaseName, CaseValues>> kept_;  // the last one used first
  std::size_t                                bytes_ = 0;
};

std::size_t NumValuesOf(int onf) { return StoredComponentsOf(onf).size(); }

/// Adds up one combination of one series.
class Sum
{
public:
  Sum(const std::string& database, const CombinePlan::Series& series)
      : database_(database), series_(series), numValues_(NumValuesOf(OnfOf(series.key)))
  {}

  const CaseValues& Calculate(const Combination& combination, CaseCache& cases, CombineReport& report)
  {
    bool isFirst = true;
    for (const Combination::Term& term : combination.terms) {
      ThrowIfInterrupted();
      const CaseValues& values = cases.Get(term.loadCase);
      if (isFirst)
        Begin(term.factor, values);
      else if (values.ids == sum_.ids && values.ends == sum_.ends)
        Add(term.factor, values);
      else
        AddById(term, values, report);
      isFirst = false;
    }
    return sum_;
  }

private:
  void Begin(double factor, const CaseValues& values)
  {
    sum_.ids  = values.ids;
    sum_.ends = values.ends;
    sum_.values.resize(values.values.size());
    for (std::size_t i = 0; i < values.values.size(); ++i) sum_.values[i] = factor * values.values[i];
  }

  void Add(double factor, const CaseValues& values)
  {
    for (std::size_t i = 0; i < values.values.size(); ++i) sum_.values[i] += factor * values.values[i];
  }

  /// Keeps the ids that both have.
  void AddById(const Combination::Term& term, const CaseValues& values, CombineReport& report)
  {
    std::unordered_map<int, std::size_t> places;
    places.reserve(values.ids.size());
    for (std::size_t i = 0; i < values.ids.size(); ++i) places.emplace(values.ids[i], i);
    CaseValues both;
    for (std::size_t i = 0; i < sum_.ids.size(); ++i) {
      const auto found = places.find(sum_.ids[i]);
      if (found == places.end()) {
        ++report.numPartial;
        continue;
      }
      const std::span<const double> former = sum_.Record(i, numValues_);
      const std::span<const double> added  = values.Record(found->second, numValues_);
      if (former.size() != added.size())
        Fail(database_ + ": " + ToSelectionText(series_.blocks.at(term.loadCase)) + " has " +
             Counted(added.size(), "value") + " at id " + std::to_string(sum_.ids[i]) + ", expected " +
             std::to_string(former.size()) + " as in the load cases before it");
      both.ids.push_back(sum_.ids[i]);
      for (std::size_t k = 0; k < former.size(); ++k) both.values.push_back(former[k] + term.factor * added[k]);
      if (!sum_.ends.empty()) both.ends.push_back(both.values.size());
    }
    report.numPartial += values.ids.size() - both.ids.size();
    sum_ = std::move(both);
  }

  const std::string&         database_;
  const CombinePlan::Series& series_;
  std::size_t                numValues_;
  CaseValues                 sum_;
};

/// What a combination names, found among the steps of one iteration.
class CaseFinder
{
public:
  CaseFinder(const CombineRequest& request, const Descriptors& steps) : request_(request), steps_(steps) {}

  /// @return the result step of a load case
  Descriptor Find(const Combination& combination, const Combination::Term& term) const
  {
    const std::string where = request_.caseFile + ':' + std::to_string(term.line) + ": ";
    Descriptors       matching;
    std::set<int>     analyses;
    std::set<int>     loadCases;
    for (const Descriptor& step : steps_) {
      if (!step.IsSet(Descriptor::LoadCase)) continue;
      loadCases.insert(step.GetInteger(Descriptor::LoadCase));
      if (step.GetInteger(Descriptor::LoadCase) != term.loadCase.loadCase) continue;
      matching.push_back(step);
      analyses.insert(step.GetInteger(Descriptor::Analysis));
    }
    if (matching.empty())
      Fail(where + "'" + combination.name + "' names load case " + std::to_string(term.loadCase.loadCase) + ", " +
           request_.database + " has " + (loadCases.empty() ? "none" : FormatIds(loadCases)));
    if (!analyses.contains(kInTime) && analyses.size() > 1)
      Fail(where + "load case " + std::to_string(term.loadCase.loadCase) + " has results of analyses " +
           FormatIds(analyses) + ", expected those of one: select it, as in '@an=" + std::to_string(*analyses.begin()) +
           "'");
    const int analysis = analyses.contains(kInTime) ? kInTime : *analyses.begin();
    std::erase_if(matching, [&](const Descriptor& step) { return step.GetInteger(Descriptor::Analysis) != analysis; });

    const auto substepOf = [](const Descriptor& step) { return step.GetInteger(Descriptor::Substep); };
    if (term.loadCase.substep == CaseName::kLastSubstep) {
      if (analysis == kModes)
        Fail(where + "load case " + std::to_string(term.loadCase.loadCase) +
             " holds modes, expected the number of one: lc" + std::to_string(term.loadCase.loadCase) + "/" +
             std::to_string(substepOf(matching.front())));
      return matching.back();
    }
    std::set<int> substeps;
    for (const Descriptor& step : matching) substeps.insert(substepOf(step));
    if (!substeps.contains(term.loadCase.substep))
      Fail(where + "'" + combination.name + "' names " + term.loadCase.ToString() + ", load case " +
           std::to_string(term.loadCase.loadCase) + " has substeps " + FormatIds(substeps));
    std::erase_if(matching, [&](const Descriptor& step) { return substepOf(step) != term.loadCase.substep; });
    return matching.back();
  }

private:
  const CombineRequest& request_;
  const Descriptors&    steps_;  // in their order
};

class Planner
{
public:
  Planner(const FED_Database& database, const CombineRequest& request)
      : database_(database), kinds_(database), request_(request)
  {}

  CombinePlan Run(const Descriptors& blocks)
  {
    ChooseBlocks(blocks);
    for (const int iteration : iterations_) FindCases(iteration);
    CheckLinearity();
    for (const auto& [key, asked] : series_) PlanSeries(key);
    if (plan_.series.empty()) FailWithoutSeries();
    KeepRegion();
    AddPrincipals();
    plan_.iterations.assign(iterations_.begin(), iterations_.end());
    for (const auto& [kind, cases] : incomplete_)
      plan_.notes.push_back(Printable(kind) + " left out: none of it in " + cases);
    if (!request_.linearity.isKnown && !request_.allowNonlinear && linearUnknown_)
      plan_.notes.emplace_back(
          "nothing tells whether steps are geometrically nonlinear, --deck does; they are taken for linear");
    return std::move(plan_);
  }

private:
  void ChooseBlocks(const Descriptors& blocks)
  {
    std::set<std::string> refused;
    for (const Descriptor& block : blocks) {
      if (!HasResultStep(block)) continue;
      const int  onf    = OnfOf(block);
      const int  tensor = OnfKind::TensorOf(onf);
      Descriptor source = block;
      if (tensor != 0) source.SetInteger(Descriptor::OnfId, tensor);
      const bool isUsable = tensor != 0 || (request_.hasSelection ? MayBeLinear(onf) : IsLinear(onf));
      if (!isUsable) {
        refused.insert(kinds_.GetName(block));
        continue;
      }
      if (tensor != 0 && !database_.HasDataBlock(source)) {
        if (request_.hasSelection)
          Fail(request_.database + ": no tensors (" + ToSelectionText(source) + ") behind " + ToSelectionText(block) +
               ", expected them: principal values of a combination are those of the combined tensor");
        continue;
      }
      blocks_.insert(source);
      Series& series                                             = series_[SeriesOf(source)];
      (tensor != 0 ? series.isPrincipalChosen : series.isChosen) = true;
      iterations_.insert(block.GetInteger(Descriptor::Iteration));
    }
    CheckChosen(refused);
  }

  /// @param refused names of kinds that are not linear in the loads
  void CheckChosen(const std::set<std::string>& refused) const
  {
    if (request_.hasSelection && !refused.empty()) {
      std::string list;
      for (const std::string& name : refused) list += (list.empty() ? "" : ", ") + Printable(name);
      Fail(request_.database + ": " + list + " not linear in the loads, expected kinds that are, such as " +
           "displacement, reaction, stress and strain");
    }
    if (blocks_.empty())
      Fail(request_.database +
           ": no results that are linear in the loads, expected displacements, reactions, stresses "
           "or strains of load cases");
  }

  void FindCases(int iteration)
  {
    Descriptors own;
    for (const Descriptor& block : blocks_)
      if (block.GetInteger(Descriptor::Iteration) == iteration) own.push_back(block);
    const Descriptors steps = ListResultSteps(own);
    const CaseFinder  finder(request_, steps);
    for (const Combination& combination : request_.combinations)
      for (const Combination::Term& term : combination.terms) {
        const Descriptor step = finder.Find(combination, term);
        plan_.cases[iteration].emplace(term.loadCase, step);
        users_.emplace(step, std::pair(&combination, term.line));
      }
  }

  void CheckLinearity()
  {
    for (const auto& [step, user] : users_) {
      if (step.GetInteger(Descriptor::Analysis) != kInTime) continue;
      linearUnknown_ = true;
      if (request_.allowNonlinear || !request_.linearity.IsNonlinear(step)) continue;
      Fail(request_.caseFile + ':' + std::to_string(user.second) + ": '" + user.first->name +
           "' adds up results of a geometrically nonlinear step, load case " +
           std::to_string(step.GetInteger(Descriptor::LoadCase)) +
           ", which are no sums of loads, expected linear ones or --allow-nonlinear");
    }
  }

  /// Takes a series that has a block in each load case that any combination names.
  void PlanSeries(const Descriptor& key)
  {
    CombinePlan::Series series;
    series.key = key;
    std::string missing;
    for (const auto& [name, step] : plan_.cases.at(key.GetInteger(Descriptor::Iteration))) {
      Descriptor block = step;
      for (const IndexKey& index : GetIndexKeys())
        if (key.IsSet(index.index)) block.SetInteger(index.index, key.GetInteger(index.index));
      block.SetInteger(Descriptor::OnfId, OnfOf(key));
      if (database_.HasDataBlock(block))
        series.blocks.emplace(name, block);
      else
        missing += (missing.empty() ? "" : ", ") + name.ToString();
    }
    if (missing.empty()) {
      plan_.series.push_back(std::move(series));
      return;
    }
    const std::string what =
        kinds_.GetName(key) +
        (ToSelectionText(key).find(',') == std::string::npos ? "" : " (" + ToSelectionText(key) + ")");
    if (request_.hasSelection)
      Fail(request_.database + ": no " + Printable(what) + " in " + missing + ", expected it in every load case that " +
           request_.caseFile + " names");
    incomplete_.emplace(what, missing);
  }

  /// Leaves out what has nothing in the region in some load case: a sum has what all of them have.
  void KeepRegion()
  {
    if (request_.region == nullptr || request_.region->IsEverything()) return;
    std::erase_if(plan_.series, [this](const CombinePlan::Series& series) {
      const bool isHeld = std::all_of(series.blocks.begin(), series.blocks.end(), [this](const auto& one) {
        return HoldsRecords(*request_.region, database_, {one.second});
      });
      if (!isHeld) plan_.notes.push_back(Printable(kinds_.GetName(series.key)) + " left out: none of it in the region");
      return !isHeld;
    });
    if (plan_.series.empty()) request_.region->FailEmpty(request_.selectionText);
  }

  void AddPrincipals()
  {
    for (CombinePlan::Series& series : plan_.series) {
      const Series& asked  = series_.at(series.key);
      series.isWritten     = asked.isChosen;
      series.hasPrincipals = asked.isPrincipalChosen;
    }
  }

  [[noreturn]] void FailWithoutSeries() const
  {
    std::string list;
    for (const auto& [kind, cases] : incomplete_)
      list += (list.empty() ? "" : "; ") + Printable(kind) + " is not in " + cases;
    Fail(request_.database + ": no kind of results is in every load case that " + request_.caseFile +
         " names: " + list);
  }

  struct Series
  {
    bool isChosen          = false;
    bool isPrincipalChosen = false;
  };

  const FED_Database&   database_;
  const KindTable       kinds_;
  const CombineRequest& request_;

  std::set<Descriptor>                                              blocks_;  // that may be combined
  std::map<Descriptor, Series>                                      series_;
  std::set<int>                                                     iterations_;
  std::map<Descriptor, std::pair<const Combination*, std::int64_t>> users_;       // who names a step first, and where
  std::map<std::string, std::string>                                incomplete_;  // kinds, and load cases without them
  bool                                                              linearUnknown_ = false;
  CombinePlan                                                       plan_;
};

void WriteRecords(const CaseValues& sum, int onf, const Descriptor& key, FED_Database& target)
{
  FED_DataBlock&    block     = target.GetOrCreateDataBlock(key, sum.ids.size());
  FED_IdMapsPool&   pool      = target.GetIdMapsPool();
  const int         entity    = OnfKind::EntityOf(onf);
  const std::size_t numValues = NumValuesOf(onf);
  if (sum.ends.empty() && !IsList(onf)) {
    for (std::size_t i = 0; i < sum.ids.size(); ++i)
      block.SetValuesAt(pool.FindOrAddIndex(entity, sum.ids[i]), &sum.values[i * numValues]);
    return;
  }
  FED_IdDataBlock     view(block, pool, true);
  FED_IdDataRecord&   record    = view.CreateIdDataRecord();
  const int           period    = OnfKind::ListPeriodOf(onf);
  const bool          isCounted = period == 6;
  std::vector<double> list;
  for (std::size_t i = 0; i < sum.ids.size(); ++i) {
    const std::span<const double> values = sum.Record(i, numValues);
    list.assign(values.begin(), values.end());
    if (isCounted) record.SetInteger(1, static_cast<int>(list.size() / 6));
    record.SetDoubleList(isCounted ? 2 : 1, list);
    view.SetRecord(sum.ids[i], record);
  }
}

void WritePrincipals(const CaseValues& sum, int onf, const Descriptor& key, FED_Database& target)
{
  Descriptor descriptor = key;
  descriptor.SetInteger(Descriptor::OnfId, OnfKind::PrincipalOf(onf));
  FED_DataBlock&  block  = target.GetOrCreateDataBlock(descriptor, sum.ids.size());
  FED_IdMapsPool& pool   = target.GetIdMapsPool();
  const int       entity = OnfKind::EntityOf(onf);
  for (std::size_t i = 0; i < sum.ids.size(); ++i) {
    const auto values = PrincipalValues(std::span(sum.values).subspan(6 * i).first<6>());
    block.SetValuesAt(pool.FindOrAddIndex(entity, sum.ids[i]), values.data());
  }
}

/// One envelope of a series: of its records, or of their principal values.
struct EnvelopeTarget
{
  Descriptor     key;  ///< of the series' records
  EnvelopeSeries series;
  RecordTurner   turner;
  bool           isPrincipal = false;
};

std::vector<EnvelopeTarget> MakeTargets(const CombinePlan::Series& series, const Selection& selection,
                                        const IterationAxes& axes)
{
  std::vector<EnvelopeTarget> targets;
  for (const bool isPrincipal : {false, true}) {
    if (!(isPrincipal ? series.hasPrincipals : series.isWritten) || IsList(OnfOf(series.key))) continue;
    Descriptor key = series.key;
    if (isPrincipal) key.SetInteger(Descriptor::OnfId, OnfKind::PrincipalOf(OnfOf(series.key)));
    targets.push_back({series.key,
                       {key, {}, {}, EnvelopeField(ChosenComponents(selection, OnfOf(key)))},
                       axes.TurnerOf(key),
                       isPrincipal});
  }
  return targets;
}

/// Offers a combination as the next step.
void Offer(const CaseValues& values, std::size_t numValues, const Combination& combination, EnvelopeTarget& target)
{
  EnvelopeSeries& series = target.series;
  series.steps.push_back(GetResultStep(CombinedKey(target.key, combination.loadCase)));
  series.names.push_back(combination.name);
  series.field.BeginStep();
  constexpr std::size_t kMostAtOnce = 1024;
  const std::size_t     numTold     = target.isPrincipal ? 3 : numValues;
  std::vector<double>   told;
  for (std::size_t first = 0; first < values.ids.size(); first += kMostAtOnce) {
    const std::size_t count = std::min(kMostAtOnce, values.ids.size() - first);
    told.clear();
    for (std::size_t i = first; i < first + count; ++i) {
      const std::span<const double> stored = values.Record(i, numValues);
      if (target.isPrincipal) {
        const auto principal = PrincipalValues(stored.first<6>());
        told.insert(told.end(), principal.begin(), principal.end());
        continue;
      }
      told.insert(told.end(), stored.begin(), stored.end());
      if (!target.turner.Turn(values.ids[i], std::span(told).last(numValues))) ++series.numWithoutAxes;
    }
    series.field.OfferAll(count, &values.ids[first], told.data(), numTold);
  }
}

}  // namespace

bool StepLinearity::IsNonlinear(const FED_DataDescriptor& step) const
{
  return nonlinearSteps.contains(step) || nonlinearLoadCases.contains(step.GetInteger(Descriptor::LoadCase));
}

StepLinearity ReadStepLinearity(const FED_Database& database)
{
  StepLinearity             linearity;
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(Descriptor::OnfId, FED_OnfId_ScalarHistory);
  for (const Descriptor& history : database.GetDataDescriptors(pattern)) {
    if (GetQuantity(history) != OnfKind::LargeDisplacements) continue;
    linearity.isKnown          = true;
    const FED_DataBlock& block = database.GetConstDataBlock(history);
    for (auto index = block.Begin(); index != block.End(); ++index) {
      if (block.GetScalarAt(*index) == 0.0) continue;
      Descriptor step = GetResultStep(history);
      step.SetInteger(Descriptor::Substep, static_cast<int>(*index));
      linearity.nonlinearSteps.insert(step);
    }
  }
  return linearity;
}

StepLinearity StepLinearityOf(const calculix::DeckModel& deck)
{
  StepLinearity linearity;
  linearity.isKnown = true;
  for (std::size_t i = 0; i < deck.steps.size(); ++i)
    if (deck.steps[i].nlgeom && !deck.steps[i].perturbation)
      linearity.nonlinearLoadCases.insert(static_cast<int>(i) + 1);
  return linearity;
}

FED_DataDescriptor CombinedKey(const FED_DataDescriptor& series, int loadCase)
{
  FED_DataDescriptor key = series;
  key.SetInteger(Descriptor::Analysis, kOtherAnalysis);
  key.SetInteger(Descriptor::LoadCase, loadCase);
  key.SetInteger(Descriptor::Substep, 1);
  return key;
}

CombinePlan PlanCombinations(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                             const CombineRequest& request)
{
  return Planner(database, request).Run(blocks);
}

CombineReport CombineInto(const FED_Database& database, const CombinePlan& plan, const CombineRequest& request,
                          FED_Database& target, Listener* listener)
{
  CombineReport     report;
  std::size_t       done  = 0;
  const std::size_t total = plan.series.size() * request.combinations.size();
  for (const CombinePlan::Series& series : plan.series) {
    CaseCache cases(database, series, request.region);
    Sum       sum(request.database, series);
    const int onf = OnfOf(series.key);
    for (const Combination& combination : request.combinations) {
      if (listener != nullptr) listener->Progress("combining", done, total, "blocks");
      ++done;
      const CaseValues& values = sum.Calculate(combination, cases, report);
      const Descriptor  key    = CombinedKey(series.key, combination.loadCase);
      if (series.isWritten) WriteRecords(values, onf, key, target);
      if (series.hasPrincipals) WritePrincipals(values, onf, key, target);
      report.blocks += std::size_t{series.isWritten} + std::size_t{series.hasPrincipals};
    }
  }
  return report;
}

EnvelopeReport EnvelopeOfCombinations(const FED_Database& database, const CombinePlan& plan,
                                      const CombineRequest& request, Listener* listener,
                                      const std::function<void(const EnvelopeSeries& series)>& take,
                                      CombineReport&                                           report)
{
  const KindTable kinds(database);
  EnvelopeReport  envelope;
  IterationAxes   axes(database, request.axes, request.database);
  for (const int iteration : plan.iterations) axes.Add(iteration);
  envelope.axes          = axes.Describe();
  std::size_t numTargets = 0;
  for (const CombinePlan::Series& series : plan.series) {
    if (IsList(OnfOf(series.key)))
      envelope.skippedKinds.push_back(kinds.GetName(OnfOf(series.key)));
    else  // what is wrong with what was asked is told before the work begins
      numTargets += MakeTargets(series, request.selection, axes).size();
  }
  if (numTargets == 0)
    Fail(request.database + ": no kind of combined results has an envelope, expected scalars, vectors or tensors");

  std::size_t       done  = 0;
  const std::size_t total = plan.series.size() * request.combinations.size();
  for (const CombinePlan::Series& series : plan.series) {
    std::vector<EnvelopeTarget> targets = MakeTargets(series, request.selection, axes);
    if (targets.empty()) continue;
    CaseCache cases(database, series, request.region);
    Sum       sum(request.database, series);
    for (const Combination& combination : request.combinations) {
      if (listener != nullptr) listener->Progress("combining", done, total, "blocks");
      ++done;
      const CaseValues& values = sum.Calculate(combination, cases, report);
      for (EnvelopeTarget& target : targets) Offer(values, NumValuesOf(OnfOf(series.key)), combination, target);
    }
    for (EnvelopeTarget& target : targets) {
      target.series.field.Settle();
      take(target.series);
    }
  }
  return envelope;
}

}  // namespace quilon
