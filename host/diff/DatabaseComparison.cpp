#include "diff/DatabaseComparison.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "database/BlockSummary.h"
#include "database/DatabaseParts.h"
#include "database/StoredDatabase.h"
#include "diff/BlendedBlock.h"
#include "diff/DifferenceWriter.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"

namespace quilon::diff {

namespace {

constexpr int kModes = 2;  // of the index Analysis

constexpr const char* kImaginaryDisplacement = "DISPI";  // the name that the solver gives it

/// What comparing one pair of blocks says.
struct BlockVerdict
{
  BlockOutcome::Status status    = BlockOutcome::Same;
  bool                 isNegated = false;
  FieldOutcome         fields;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, BlockVerdict& verdict)
  {
    parcel(verdict.status, verdict.isNegated, verdict.fields);
  }
};

/// Some blocks that one compares at a time.
struct ComparisonUnit
{
  std::optional<PartTicket> ticket = {};  ///< of their difference, which he writes; nothing: whoever leads does
  std::size_t               first  = 0;
  std::size_t               end    = 0;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, ComparisonUnit& unit)
  {
    parcel(unit.ticket, unit.first, unit.end);
  }
};

/// What those who compare have to know beside the databases.
struct ComparisonBrief
{
  FED_PartBase                base;  ///< where parts are written
  std::vector<ComparisonUnit> units;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, ComparisonBrief& brief)
  {
    parcel(brief.base, brief.units);
  }
};

/// What comparing the blocks of a unit says.
struct UnitVerdict
{
  std::vector<BlockVerdict> blocks;
  std::uint64_t             segment = 0;  ///< of the part with their difference
  std::set<int>             iterations;   ///< that are in it

  template <typename Parcel>
  friend void Travel(Parcel& parcel, UnitVerdict& verdict)
  {
    parcel(verdict.blocks, verdict.segment, verdict.iterations);
  }
};

/// What identifies a block in either database: its indices, with the names of user kinds in place of their ONF ids. Of
/// such an id the hundred stays: it says what the ids of the records number and what a record holds.
struct BlockKey
{
  FED_DataDescriptor descriptor;
  std::string        kindName;
  std::string        quantityName;

  bool operator<(const BlockKey& other) const
  {
    if (!(descriptor == other.descriptor)) return descriptor < other.descriptor;
    return std::tie(kindName, quantityName) < std::tie(other.kindName, other.quantityName);
  }
};

BlockKey MakeKey(const FED_Database& database, const FED_DataDescriptor& descriptor)
{
  BlockKey   key{descriptor, "", ""};
  const auto replace = [&](FED_DataDescriptor::ResultIndex index, std::string& name) {
    const int onf = descriptor.values[index];
    if (!OnfKind::IsUserKind(onf)) return;
    name = database.GetUserKindName(static_cast<FED_OnfId>(onf));
    if (!name.empty()) key.descriptor.values[index] = onf / 100 * 100;
  };
  replace(FED_DataDescriptor::OnfId, key.kindName);
  if (GetQuantity(descriptor) != 0) replace(OnfIndex::Quantity, key.quantityName);
  return key;
}

/// How the values of a mode's result change with the sign of the mode.
/// @param userKindName empty for all but user kinds with a name
Transformation::Sign GetSignWhenNegated(int onf, const std::string& userKindName)
{
  // What the solver writes of a mode and the catalogue has no kind for: mechanical strains and imaginary parts.
  for (const char* const linear : {"MESTRAIN", kImaginaryDisplacement, "FORCI", "STRESSI", "TOSTRAII", "MESTRAII"})
    if (userKindName == linear) return Transformation::Negated;
  switch (OnfKind::SignChangeOf(onf)) {
    case OnfKind::SignChange::Negated:
      return Transformation::Negated;
    case OnfKind::SignChange::Principal:
      return Transformation::NegatedPrincipal;
    case OnfKind::SignChange::None:
      break;
  }
  return Transformation::AsIs;
}

/// The solver prints the components of a vector that belongs to a set as sums of their own: "total force x NFIX".
/// @return the name without its component, "total force NFIX"; empty for any other
std::string GetVectorName(const std::string& name)
{
  constexpr std::string_view kSum = "total force ";
  const std::size_t          end  = kSum.size() + 1;
  if (!name.starts_with(kSum) || name.size() <= end || name[end] != ' ') return "";
  return std::string("xyz").find(name[kSum.size()]) == std::string::npos ? ""
                                                                         : std::string(kSum) + name.substr(end + 1);
}

/// @return the largest finite magnitude of a history
double FindPeak(const FED_DataBlock& history)
{
  double peak = 0.0;
  for (auto index = history.Begin(); index != history.End(); ++index) {
    double value = 0.0;
    history.GetValuesAt(*index, &value);
    if (std::isfinite(value)) peak = std::max(peak, std::fabs(value));
  }
  return peak;
}

bool IsMode(const FED_DataDescriptor& descriptor)
{
  return !descriptor.IsSet(FED_DataDescriptor::Analysis) ||
         descriptor.GetInteger(FED_DataDescriptor::Analysis) == kModes;
}

/// @return the key of the mode that a block belongs to: its own without kind and layer
FED_DataDescriptor ModeOf(FED_DataDescriptor descriptor)
{
  descriptor.SetInteger(FED_DataDescriptor::OnfId, 0);
  descriptor.SetInteger(FED_DataDescriptor::Layer, 0);
  return descriptor;
}

FED_DataDescriptor WithoutQuantity(FED_DataDescriptor descriptor)
{
  descriptor.SetInteger(OnfIndex::Quantity, 0);
  return descriptor;
}

class Comparison
{
public:
  /// Finds what stands for what. Nothing here is shared with other comparisons but what the terms borrow.
  Comparison(const ComparedDatabase& first, const ComparedDatabase& second, const ComparisonTerms& terms)
      : first_(first),
        second_(second),
        terms_(terms),
        matcher_(terms.matching, first.database.GetIdMapsPool(), second.database.GetIdMapsPool(), terms.mesh)
  {
    outcome_.ignoresMissing    = terms_.ignoresMissingInSecond;
    outcome_.ignoresAdditional = terms_.ignoresMissingInFirst;
    FindCounterparts();
  }

  std::size_t CountBlocks() const noexcept { return outcome_.blocks.size(); }

  /// @return what a block or pair of blocks comes to; it does not become part of the outcome
  BlockVerdict Judge(std::size_t number)
  {
    const BlockOutcome& outcome = outcome_.blocks[number];
    BlockVerdict        verdict{outcome.status, false, {}};
    Compare(outcome, verdict);
    return verdict;
  }

  /// Takes what was judged here or in another comparison of the same databases.
  void Accept(std::size_t number, BlockVerdict verdict)
  {
    BlockOutcome& outcome = outcome_.blocks[number];
    outcome.status        = verdict.status;
    outcome.isNegated     = verdict.isNegated;
    outcome.fields        = std::move(verdict.fields);
  }

  void WriteDifference(std::size_t number, DifferenceWriter& writer)
  {
    const BlockOutcome&  outcome = outcome_.blocks[number];
    const ComparisonRule rule    = terms_.rules.Find(outcome.kind);
    if (!IsCompared(outcome, rule)) return;
    const PairedBlocks paired(*this, outcome, rule);
    writer.Write(*outcome.block, paired.second, paired.pairs, paired.transformation);
  }

  /// @return about how many bytes a difference has
  std::uint64_t CountBytes(std::size_t number) const
  {
    const BlockOutcome& outcome = outcome_.blocks[number];
    if (!IsCompared(outcome, terms_.rules.Find(outcome.kind))) return 0;
    const auto& columns = dynamic_cast<const FED_ColumnDataBlock&>(*outcome.block);
    return sizeof(double) * columns.GetRecordCount() *
           std::max<std::size_t>(columns.GetRecordFormat().GetDoubleCount(), 1);
  }

  const FED_Database& GetFirst() const noexcept { return first_.database; }

  DatabaseOutcome Take() { return std::move(outcome_); }

private:
  void FindCounterparts()
  {
    // Two user kinds may have one name: their blocks pair in the order of their ids, and what is left over is told.
    BlocksByKey unmatched;
    for (const FED_DataDescriptor& descriptor : second_.blocks)
      if (HasRecords(second_.database.GetConstDataBlock(descriptor)))
        unmatched.emplace(MakeKey(second_.database, descriptor), descriptor);

    for (const FED_DataDescriptor& descriptor : first_.blocks) {
      const FED_DataBlock& block = first_.database.GetConstDataBlock(descriptor);
      if (!HasRecords(block)) continue;
      BlockOutcome& outcome   = outcome_.blocks.emplace_back();
      outcome.descriptor      = descriptor;
      outcome.kind            = GetNamedKind(descriptor);
      outcome.block           = &block;
      const Counterpart other = FindInSecond(descriptor, unmatched);
      if (other.block == unmatched.end()) {
        outcome.status           = BlockOutcome::MissingInSecond;
        outcome.isMissingIgnored = terms_.ignoresMissingInSecond;
        continue;
      }
      outcome.descriptorInSecond = other.block->second;
      outcome.secondBlock        = &second_.database.GetConstDataBlock(other.block->second);
      if (other.next != unmatched.end()) {
        outcome.nextBlock  = &second_.database.GetConstDataBlock(other.next->second);
        outcome.nextWeight = other.nextWeight;
      }
      // A step may be asked for by several that lie beside it.
      if (!IsBetweenSteps() || !HasResultStep(other.block->second)) unmatched.erase(other.block);
    }
    if (IsBetweenSteps()) std::erase_if(unmatched, [](const auto& block) { return HasResultStep(block.second); });
    if (terms_.allowsMore) return;
    std::set<FED_DataDescriptor> additional;
    for (const auto& [key, descriptor] : unmatched) additional.insert(descriptor);
    for (const FED_DataDescriptor& descriptor : second_.blocks) {
      if (!additional.contains(descriptor)) continue;
      BlockOutcome& outcome      = outcome_.blocks.emplace_back();
      outcome.descriptor         = descriptor;
      outcome.descriptorInSecond = descriptor;
      outcome.kind               = KindInFirst(descriptor);
      outcome.secondBlock        = &second_.database.GetConstDataBlock(descriptor);
      outcome.status             = BlockOutcome::OnlyInSecond;
      outcome.isMissingIgnored   = terms_.ignoresMissingInFirst;
    }
  }

  using BlocksByKey = std::multimap<BlockKey, FED_DataDescriptor>;

  struct Counterpart
  {
    BlocksByKey::iterator block;
    BlocksByKey::iterator next;  // for values between two steps
    double                nextWeight = 0.0;
  };

  Counterpart FindInSecond(const FED_DataDescriptor& descriptor, BlocksByKey& blocks) const
  {
    const Counterpart none = {blocks.end(), blocks.end()};
    BlockKey          key  = MakeKey(first_.database, descriptor);
    if (terms_.keyInSecond) key.descriptor = terms_.keyInSecond(key.descriptor);
    const auto find = [&](const FED_DataDescriptor& inSecond) {
      key.descriptor          = inSecond;
      const auto [found, end] = blocks.equal_range(key);
      return found == end ? blocks.end() : found;
    };
    const FED_DataDescriptor own = key.descriptor;
    if (terms_.steps == nullptr || !HasResultStep(descriptor)) return {find(own), blocks.end()};
    const auto counterpart = terms_.steps->find(GetResultStep(descriptor));
    if (counterpart == terms_.steps->end()) return none;
    const auto& [step, next, weight] = counterpart->second;
    const Counterpart found = {find(WithResultStep(own, step)), next ? find(WithResultStep(own, *next)) : blocks.end(),
                               weight};
    return next && found.next == blocks.end() ? none : found;
  }

  bool IsBetweenSteps() const
  {
    return terms_.steps != nullptr && std::any_of(terms_.steps->begin(), terms_.steps->end(),
                                                  [](const auto& step) { return step.second.next.has_value(); });
  }

  /// A component of a vector is judged beside the others: where nothing pulls, a sum of forces is all rounding.
  /// @return the peak of the vector that a history is a component of, in the database where it is smaller; 0 for others
  double GetVectorPeak(const BlockOutcome& outcome)
  {
    const std::string vector = GetVectorNameOf(outcome);
    if (vector.empty()) return 0.0;
    if (!vectorPeaks_) FindVectorPeaks();
    const auto [first, second] = (*vectorPeaks_)[{WithoutQuantity(outcome.descriptor), vector}];
    return std::min(first, second);
  }

  void FindVectorPeaks()
  {
    vectorPeaks_.emplace();
    for (const BlockOutcome& outcome : outcome_.blocks) {
      if (outcome.block == nullptr || outcome.secondBlock == nullptr) continue;
      const std::string vector = GetVectorNameOf(outcome);
      if (vector.empty()) continue;
      auto& [first, second] = (*vectorPeaks_)[{WithoutQuantity(outcome.descriptor), vector}];
      first                 = std::max(first, FindPeak(*outcome.block));
      second                = std::max(second, FindPeak(*outcome.secondBlock));
    }
  }

  std::string GetVectorNameOf(const BlockOutcome& outcome) const
  {
    const int quantity = GetQuantity(outcome.descriptor);
    return quantity == 0 ? "" : GetVectorName(first_.database.GetUserKindName(static_cast<FED_OnfId>(quantity)));
  }

  /// @return the ONF id that rules know the kind of a block of the second database by, see KindTable::AddForeign()
  int KindInFirst(const FED_DataDescriptor& descriptor) const
  {
    const int kind = GetNamedKind(descriptor);
    if (!OnfKind::IsUserKind(kind)) return kind;
    const std::string name = second_.database.GetUserKindName(static_cast<FED_OnfId>(kind));
    if (name.empty()) return kind;
    for (int onf = OnfKind::FirstUserKind; onf <= OnfKind::LastUserKind; ++onf)
      if (first_.database.GetUserKindName(static_cast<FED_OnfId>(onf)) == name) return onf;
    return first_.database.GetUserKindName(static_cast<FED_OnfId>(kind)).empty() ? kind : -kind;
  }

  bool IsCompared(const BlockOutcome& outcome, const ComparisonRule& rule) const
  {
    return rule.form != ComparisonRule::Ignore && outcome.block != nullptr && outcome.secondBlock != nullptr;
  }

  void Compare(const BlockOutcome& outcome, BlockVerdict& verdict)
  {
    const ComparisonRule rule        = terms_.rules.Find(outcome.kind);
    const bool           isForbidden = rule.GetNanPolicy() == NanPolicy::Forbidden;
    const std::size_t    most        = terms_.info.maxDiffsPerBlock;
    if (!IsCompared(outcome, rule)) {
      if (isForbidden) LookForNans(outcome, most, verdict.fields);
      if (rule.form == ComparisonRule::Ignore)
        verdict.status = verdict.fields.differingValues == 0 ? BlockOutcome::Ignored : BlockOutcome::Different;
      return;
    }
    const PairedBlocks paired(*this, outcome, rule);
    verdict.isNegated     = paired.transformation.sign != Transformation::AsIs;
    const int  onf        = outcome.descriptor.GetInteger(FED_DataDescriptor::OnfId);
    const auto listPeriod = static_cast<std::size_t>(OnfKind::ListPeriodOf(onf));
    verdict.fields =
        CompareFields(*outcome.block, paired.second, paired.pairs,
                      {rule, terms_.info, paired.transformation, rule.NeedsPeak() ? GetVectorPeak(outcome) : 0.0,
                       listPeriod, terms_.allNorms, terms_.ignoresMissingInSecond, terms_.ignoresMissingInFirst});
    verdict.status = verdict.fields.IsSame() ? BlockOutcome::Same : BlockOutcome::Different;
  }

  /// Two blocks that are compared, record by record.
  struct PairedBlocks
  {
    PairedBlocks(Comparison& comparison, const BlockOutcome& outcome, const ComparisonRule& rule)
        : blended(Blend(outcome)),
          second(blended ? blended->Get() : *outcome.secondBlock),
          pairs(comparison.matcher_.Pair(*outcome.block, second)),
          transformation(comparison.Transform(outcome, pairs, rule))
    {}

    static std::unique_ptr<BlendedBlock> Blend(const BlockOutcome& outcome)
    {
      if (outcome.nextBlock == nullptr) return nullptr;
      return std::make_unique<BlendedBlock>(*outcome.secondBlock, *outcome.nextBlock, outcome.nextWeight);
    }

    std::unique_ptr<BlendedBlock> blended;  // of what lies between two steps
    const FED_DataBlock&          second;
    RecordPairs                   pairs;
    Transformation                transformation;
  };

  static void LookForNans(const BlockOutcome& outcome, std::size_t most, FieldOutcome& fields)
  {
    if (outcome.block != nullptr) fields = FindNans(*outcome.block, false, most);
    if (outcome.secondBlock == nullptr) return;
    FieldOutcome found = FindNans(*outcome.secondBlock, true, most);
    found.worst.insert(found.worst.end(), fields.worst.begin(), fields.worst.end());
    found.differingRecords += fields.differingRecords;
    found.differingValues += fields.differingValues;
    fields = std::move(found);
  }

  Transformation Transform(const BlockOutcome& outcome, const RecordPairs& pairs, const ComparisonRule& rule)
  {
    Transformation transformation;
    const int      onf = outcome.descriptor.GetInteger(FED_DataDescriptor::OnfId);
    if (terms_.mesh != nullptr) {
      if (onf == FED_OnfId_ElementNodes || onf == OnfKind::NodeSet || onf == OnfKind::TiedNodes)
        transformation.listIds = terms_.mesh->Find(0);
      if (onf == OnfKind::ElementSet) transformation.listIds = terms_.mesh->Find(1);
      transformation.sortsLists = onf == OnfKind::NodeSet || onf == OnfKind::ElementSet || onf == OnfKind::TiedNodes;
    }
    const Transformation::Sign whenNegated = GetSignWhenNegated(onf, GetUserKindName(onf));
    if (rule.modeSign && whenNegated != Transformation::AsIs && IsMode(outcome.descriptor) &&
        IsNegatedMode(outcome, pairs, whenNegated))
      transformation.sign = whenNegated;
    return transformation;
  }

  /// One sign for all results of a mode: the displacement decides. Without it each block decides for itself.
  bool IsNegatedMode(const BlockOutcome& outcome, const RecordPairs& pairs, Transformation::Sign whenNegated)
  {
    const auto displacements = GetDisplacements().equal_range(ModeOf(outcome.descriptor));
    if (displacements.first == displacements.second) {
      const auto product = [&](Transformation::Sign sign) {
        return DotProduct(*outcome.block, *outcome.secondBlock, pairs, sign);
      };
      return product(whenNegated) > product(Transformation::AsIs);
    }
    const auto [known, isNew] = isNegated_.try_emplace(displacements.first->first, false);
    if (isNew) {
      double sum = 0.0;
      for (auto other = displacements.first; other != displacements.second; ++other) {
        const BlockOutcome& displacement = *other->second;
        sum += DotProduct(*displacement.block, *displacement.secondBlock,
                          matcher_.Pair(*displacement.block, *displacement.secondBlock), Transformation::AsIs);
      }
      known->second = sum < 0.0;
    }
    return known->second;
  }

  /// The displacements of modes that both databases hold, imaginary parts and all layers included.
  const std::multimap<FED_DataDescriptor, const BlockOutcome*>& GetDisplacements()
  {
    if (displacements_) return *displacements_;
    displacements_.emplace();
    for (const BlockOutcome& outcome : outcome_.blocks) {
      if (outcome.block == nullptr || outcome.secondBlock == nullptr) continue;
      const int onf = outcome.descriptor.GetInteger(FED_DataDescriptor::OnfId);
      if (onf == OnfKind::Displacement || GetUserKindName(onf) == kImaginaryDisplacement)
        displacements_->emplace(ModeOf(outcome.descriptor), &outcome);
    }
    return *displacements_;
  }

  std::string GetUserKindName(int onf) const
  {
    return OnfKind::IsUserKind(onf) ? first_.database.GetUserKindName(static_cast<FED_OnfId>(onf)) : std::string();
  }

  const ComparedDatabase& first_;
  const ComparedDatabase& second_;
  const ComparisonTerms&  terms_;
  RecordMatcher           matcher_;
  DatabaseOutcome         outcome_;
  /// By mode, made when first asked for.
  std::optional<std::multimap<FED_DataDescriptor, const BlockOutcome*>> displacements_;
  /// By mode: whether its displacements say that the second database has the other sign.
  std::map<FED_DataDescriptor, bool> isNegated_;
  /// By the histories' common key and the vector's name, made when first asked for: the peaks in both databases.
  std::optional<std::map<std::pair<FED_DataDescriptor, std::string>, std::pair<double, double>>> vectorPeaks_;
};

/// Divides the blocks among those who compare: into parts of the difference where there is much of it, else one by one.
ComparisonBrief MakeBrief(const Comparison& comparison, const ComparisonTerms& terms)
{
  ComparisonBrief          brief;
  const std::size_t        count = comparison.CountBlocks();
  std::vector<std::size_t> ends;
  if (terms.difference != nullptr && terms.parts != nullptr) {
    std::vector<std::uint64_t> bytes(count);
    for (std::size_t i = 0; i < count; ++i) bytes[i] = comparison.CountBytes(i);
    ends = DivideIntoParts(bytes, kMostDatabaseParts);
  }
  if (ends.size() < 2 || !terms.difference->AddAllIds()) {
    for (std::size_t i = 0; i < count; ++i) brief.units.push_back({std::nullopt, i, i + 1});
    return brief;
  }
  std::size_t first = 0;
  for (PartTicket& ticket : terms.parts->GiveOut(ends.size())) {
    const std::size_t end = ends[brief.units.size()];
    brief.units.push_back({std::move(ticket), first, end});
    first = end;
  }
  brief.base = terms.parts->GetBase();
  return brief;
}

UnitVerdict JudgeUnit(Comparison& comparison, const ComparisonBrief& brief, std::size_t number)
{
  const ComparisonUnit&           unit = brief.units[number];
  UnitVerdict                     verdict;
  std::optional<WrittenPart>      part;
  std::optional<DifferenceWriter> writer;
  if (unit.ticket) writer.emplace(comparison.GetFirst(), part.emplace(*unit.ticket, brief.base).Get());
  for (std::size_t block = unit.first; block < unit.end; ++block) {
    verdict.blocks.push_back(comparison.Judge(block));
    if (writer) comparison.WriteDifference(block, *writer);
  }
  if (!writer) return verdict;
  verdict.iterations = writer->GetIterations();
  verdict.segment    = part->Finish();
  return verdict;
}

/// Those that another thread compares.
struct OwnComparison
{
  OwnComparison(std::unique_ptr<StoredDatabase> a, std::unique_ptr<StoredDatabase> b, const ComparedDatabase& as,
                const ComparedDatabase& bs, const ComparisonTerms& terms)
      : storedFirst(std::move(a)),
        storedSecond(std::move(b)),
        first{storedFirst->Get(), as.blocks},
        second{storedSecond->Get(), bs.blocks},
        comparison(first, second, terms)
  {}

  std::unique_ptr<StoredDatabase> storedFirst;
  std::unique_ptr<StoredDatabase> storedSecond;
  ComparedDatabase                first;
  ComparedDatabase                second;
  Comparison                      comparison;
};

}  // namespace

bool BlockOutcome::IsWorseThan(const BlockOutcome& other) const noexcept
{
  // A block that is missing is worse than any value.
  const auto isMissing = [](const BlockOutcome& outcome) {
    return outcome.status == MissingInSecond || outcome.status == OnlyInSecond;
  };
  if (isMissing(*this) || isMissing(other)) return isMissing(*this) && !isMissing(other);
  if (fields.worst.empty() || other.fields.worst.empty()) return !fields.worst.empty() && other.fields.worst.empty();
  const ValueDifference& mine   = fields.worst.front();
  const ValueDifference& theirs = other.fields.worst.front();
  if (mine.excess != theirs.excess) return mine.excess > theirs.excess;
  return mine.distance > theirs.distance;
}

bool DatabaseOutcome::IsSame() const noexcept
{
  return std::all_of(blocks.begin(), blocks.end(), [](const BlockOutcome& block) {
    return block.status == BlockOutcome::Same || block.status == BlockOutcome::Ignored ||
           (block.isMissingIgnored && block.fields.differingValues == 0);
  });
}

DatabaseOutcome CompareDatabases(const ComparedDatabase& first, const ComparedDatabase& second,
                                 const ComparisonTerms& terms)
{
  Comparison        comparison(first, second, terms);
  CrewOrSelf        crew(first.readers.crew);
  ComparisonBrief   brief;
  Plan<UnitVerdict> plan;
  plan.state = first.readers.state + ' ' + second.readers.state + ' ' + std::to_string(comparison.CountBlocks());
  if (crew.Get().Leads()) brief = MakeBrief(comparison, terms);
  plan.units     = brief.units.size();
  plan.makeBrief = [&brief] {
    ParcelWriter parcel;
    parcel(brief);
    return parcel.Take();
  };
  if (!crew.Get().Leads())
    plan.takeBrief = [&brief](std::string_view bytes) {
      ParcelReader parcel(bytes);
      parcel(brief);
    };
  plan.makeWorker = [&](bool isFirst) -> Plan<UnitVerdict>::Worker {
    if (isFirst) return [&](std::size_t number) { return JudgeUnit(comparison, brief, number); };
    if (!first.readers.open || !second.readers.open) return {};
    auto storedFirst  = first.readers.open();
    auto storedSecond = storedFirst ? second.readers.open() : nullptr;
    if (!storedSecond) return {};
    auto own = std::make_shared<OwnComparison>(std::move(storedFirst), std::move(storedSecond), first, second, terms);
    return [own, &brief](std::size_t number) { return JudgeUnit(own->comparison, brief, number); };
  };
  plan.onProgress = [&](std::size_t done) {
    if (terms.progress) terms.progress(done, brief.units.size());
  };
  CarryOut(crew.Get(), std::move(plan), [&](std::size_t number, UnitVerdict&& verdict) {
    const ComparisonUnit& unit = brief.units[number];
    for (std::size_t block = unit.first; block < unit.end; ++block) {
      comparison.Accept(block, std::move(verdict.blocks[block - unit.first]));
      if (!unit.ticket && terms.difference != nullptr) comparison.WriteDifference(block, *terms.difference);
    }
    if (!unit.ticket) return;
    terms.parts->Take(*unit.ticket, verdict.segment);
    terms.difference->AddIterations(verdict.iterations);
  });
  return comparison.Take();
}

ComparedDatabase WholeDatabase(const FED_Database& database)
{
  std::vector<FED_DataDescriptor> blocks = database.GetDataDescriptors(FED_DataDescriptorPattern());
  std::erase_if(blocks, [](const FED_DataDescriptor& descriptor) {
    return OnfKind::IsProvenance(descriptor.GetInteger(FED_DataDescriptor::OnfId));
  });
  return {database, std::move(blocks)};
}

}  // namespace quilon::diff
