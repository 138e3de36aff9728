#include "answers/Envelope.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "answers/ChosenComponents.h"
#include "answers/ComponentAxes.h"
#include "answers/IterationAxes.h"
#include "answers/Region.h"
#include "database/StoredDatabase.h"
#include "kinds/KindTable.h"
#include "kinds/UserKindPool.h"
#include "mesh/Mesh.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

constexpr auto kNoSlot = static_cast<std::size_t>(-1);

constexpr std::array<Descriptor::ResultIndex, 5> kStepOrder = {
    Descriptor::Iteration, Descriptor::Analysis, Descriptor::LoadCase, Descriptor::Substep, Descriptor::Increment};

using OnfKind::OnfOf;

/// The envelope of some steps of a series.
struct EnvelopePart
{
  EnvelopeField            field;
  std::size_t              numWithoutAxes = 0;
  std::vector<std::string> notes          = {};  ///< of the region

  template <typename Parcel>
  friend void Travel(Parcel& parcel, EnvelopePart& part)
  {
    parcel(part.field, part.numWithoutAxes, part.notes);
  }
};

/// Offers all records of a block as the next step.
/// @param region null: all
void OfferBlock(const FED_Database& database, const Descriptor& descriptor, const RecordTurner& turner, Region* region,
                EnvelopePart& series)
{
  const std::size_t numValues = series.field.GetComponents().front().NumValues();
  series.field.BeginStep();
  const FED_DataBlock&        block = database.GetConstDataBlock(descriptor);
  std::optional<RegionFilter> filter;
  std::vector<int>            keptIds;
  std::vector<double>         keptValues;
  if (region != nullptr && !region->IsEverything()) filter = region->FilterOf(block);
  FED_ForEachSpan(block, database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    const int* const    ids    = span.GetIds().GetData();
    const double* const values = span.GetDoubles(1).GetData();
    if (!turner.Turns() && !filter) return series.field.OfferAll(span.GetCount(), ids, values, numValues);
    keptIds.clear();
    keptValues.clear();
    for (std::size_t r = 0; r < span.GetCount(); ++r) {
      if (filter && !filter->Holds(ids[r])) continue;
      keptIds.push_back(ids[r]);
      keptValues.insert(keptValues.end(), values + r * numValues, values + (r + 1) * numValues);
      if (!turner.Turn(ids[r], std::span(keptValues).last(numValues))) ++series.numWithoutAxes;
    }
    series.field.OfferAll(keptIds.size(), keptIds.data(), keptValues.data(), numValues);
  });
}

using AllSeries = std::map<Descriptor, std::vector<Descriptor>>;

AllSeries GroupBySeries(const std::vector<Descriptor>& blocks)
{
  AllSeries series;
  for (const Descriptor& block : blocks) series[SeriesOf(block)].push_back(block);
  for (auto& [key, members] : series) std::sort(members.begin(), members.end(), ComesBefore);
  return series;
}

/// Some steps of a series, one after the other.
struct StepRange
{
  const AllSeries::value_type* series;
  std::size_t                  begin;
  std::size_t                  end;

  bool IsLast() const noexcept { return end == series->second.size(); }
};

/// @param parts that each series is divided into, as far as it has so many steps
std::vector<StepRange> DivideSteps(const AllSeries& allSeries, std::size_t parts)
{
  std::vector<StepRange> ranges;
  for (const auto& series : allSeries) {
    const std::size_t steps = series.second.size();
    const std::size_t count = std::min(parts, steps);
    for (std::size_t i = 0; i < count; ++i) ranges.push_back({&series, i * steps / count, (i + 1) * steps / count});
  }
  return ranges;
}

/// Reads steps for envelopes, one thread its own.
class StepReader
{
public:
  /// @param region null: all
  StepReader(const FED_Database& database, const EnvelopeRequest& request, Region* region)
      : database_(database), request_(request), region_(region), axes_(database, request.axes, request.database)
  {}

  /// Whatever is wrong with what was asked is told before the work begins.
  void Prepare(const AllSeries& allSeries)
  {
    for (const auto& [key, members] : allSeries) {
      axes_.Add(key.GetInteger(Descriptor::Iteration));
      ChosenComponents(request_.selection, OnfOf(key));
      axes_.TurnerOf(key);
    }
  }

  /// @param onBlock called before each block
  EnvelopePart Read(const StepRange& steps, const std::function<void()>& onBlock) const
  {
    const auto& [key, members] = *steps.series;
    const RecordTurner turner  = axes_.TurnerOf(key);
    EnvelopePart       part{EnvelopeField(ChosenComponents(request_.selection, OnfOf(key)))};
    for (std::size_t i = steps.begin; i < steps.end; ++i) {
      ThrowIfInterrupted();
      onBlock();
      OfferBlock(database_, members[i], turner, region_, part);
    }
    part.field.Settle();
    if (region_ != nullptr) part.notes = region_->GetNotes();
    return part;
  }

  const std::string& DescribeAxes() const noexcept { return axes_.Describe(); }

private:
  const FED_Database&    database_;
  const EnvelopeRequest& request_;
  Region*                region_;
  IterationAxes          axes_;
};

/// One of another thread, with all that it reads.
struct OwnStepReader
{
  OwnStepReader(std::unique_ptr<StoredDatabase> database, const EnvelopeRequest& request)
      : stored(std::move(database)),
        region(request.region == nullptr
                   ? nullptr
                   : std::make_unique<Region>(stored->Get(), request.region->GetOptions(), request.database)),
        reader(stored->Get(), request, region.get())
  {}

  std::unique_ptr<StoredDatabase> stored;
  std::unique_ptr<Region>         region;
  StepReader                      reader;
};

/// @param report receives the kinds that have no envelope
/// @throws FED_Failure when no block has one
std::vector<Descriptor> UsableBlocks(const FED_Database& database, const std::vector<Descriptor>& blocks,
                                     const EnvelopeRequest& request, EnvelopeReport& report)
{
  const KindTable         kinds(database);
  std::set<std::string>   skipped;
  std::vector<Descriptor> usable;
  for (const Descriptor& block : blocks) {
    if (HasEnvelope(block))
      usable.push_back(block);
    else
      skipped.insert(kinds.GetName(block));
  }
  report.skippedKinds.assign(skipped.begin(), skipped.end());
  if (!usable.empty()) return usable;
  std::string list;
  for (const std::string& name : skipped) list += (list.empty() ? "" : ", ") + Printable(name);
  Fail(request.database + ": no result steps to envelop in " + list +
       ", expected scalars, vectors or tensors of nodes or elements");
}

/// One kind that an envelope is written to.
class EnvelopeWriter
{
public:
  EnvelopeWriter(const EnvelopeSeries& series, FED_Database& target)
      : series_(series),
        target_(target),
        pool_(target),
        isOfElements_(OnfKind::EntityOf(series.key) == OnfKind::ElementEntity),
        rows_(series.field.SortedRows())
  {}

  /// @param first, count of the components that are the values of a record
  void Write(const std::string& name, std::size_t first, std::size_t count)
  {
    WriteKind(name, first, count, [](const EnvelopeField::Extreme& extreme) { return extreme.value; });
    std::set<int> analyses;
    for (const Descriptor& step : series_.steps) analyses.insert(step.GetInteger(Descriptor::Analysis));
    WriteIndex(name + " load case", first, count, Descriptor::LoadCase);
    WriteIndex(name + " substep", first, count, Descriptor::Substep);
    if (analyses.size() > 1) WriteIndex(name + " analysis", first, count, Descriptor::Analysis);
  }

private:
  void WriteIndex(const std::string& name, std::size_t first, std::size_t count, Descriptor::ResultIndex index)
  {
    WriteKind(name, first, count, [&](const EnvelopeField::Extreme& extreme) {
      return extreme.step == EnvelopeField::kNoStep ? std::numeric_limits<double>::quiet_NaN()
                                                    : series_.steps[extreme.step].GetInteger(index);
    });
  }

  template <typename Value>
  void WriteKind(const std::string& name, std::size_t first, std::size_t count, const Value& value)
  {
    const UserHundred hundred = isOfElements_ ? ElementHundred(count) : NodeHundred(count);
    const int         onf     = pool_.Find(hundred, name);
    if (onf == 0)
      Fail("no user kind is free for '" + Printable(name) + "': all hundred from " + std::to_string(hundred) +
           " on have another name, expected fewer kinds and components, or another output");
    const EnvelopeField& field = series_.field;
    for (const int loadCase : {EnvelopeLeast, EnvelopeGreatest, EnvelopeLargest}) {
      Descriptor descriptor = series_.key;
      descriptor.SetInteger(Descriptor::OnfId, onf);
      descriptor.SetInteger(Descriptor::Analysis, kOtherAnalysis);
      descriptor.SetInteger(Descriptor::LoadCase, loadCase);
      descriptor.SetInteger(Descriptor::Substep, 1);
      FED_DataBlock&        block = target_.GetOrCreateDataBlock(descriptor, rows_.size());
      FED_IdMapsPool&       ids   = target_.GetIdMapsPool();
      const int             kind  = isOfElements_ ? OnfKind::ElementEntity : OnfKind::NodeEntity;
      std::array<double, 6> values{};
      for (const std::size_t row : rows_) {
        for (std::size_t k = 0; k < count; ++k) {
          const EnvelopeField::Extreme extreme = loadCase == EnvelopeLeast      ? field.GetLeast(row, first + k)
                                                 : loadCase == EnvelopeGreatest ? field.GetGreatest(row, first + k)
                                                                                : field.GetLargest(row, first + k);
          values[k]                            = value(extreme);
        }
        block.SetValuesAt(ids.FindOrAddIndex(kind, field.GetId(row)), values.data());
      }
    }
  }

  const EnvelopeSeries&    series_;
  FED_Database&            target_;
  UserKindPool             pool_;
  bool                     isOfElements_;
  std::vector<std::size_t> rows_;
};

/// Whether the components are all that a record has, in its order.
bool AreAllStored(const std::vector<Component>& components, int onf)
{
  const std::vector<std::string> stored = StoredComponentsOf(onf);
  return std::equal(components.begin(), components.end(), stored.begin(), stored.end(),
                    [](const Component& component, const std::string& name) { return component.GetName() == name; });
}

}  // namespace

EnvelopeField::EnvelopeField(std::vector<Component> components) : components_(std::move(components))
{
  for (const Component& component : components_) {
    positions_.push_back(component.GetPosition());
    slots_.push_back(component.HasEstimate() ? numSlots_++ : kNoSlot);
  }
}

std::size_t EnvelopeField::FindRow(int id)
{
  // Blocks of one kind mostly have their ids in one order.
  if (next_ < NumIds() && rows_.Entries()[next_].first == id) return next_++;
  const std::size_t row = rows_.FindOrInsert(id);
  next_                 = row + 1;
  SizeRows();
  return row;
}

/// Makes rows of ids that have none, up to one that has: they come next.
/// @return how many
std::size_t EnvelopeField::InsertNew(std::size_t count, const int* ids)
{
  const std::size_t first = NumIds();
  std::size_t       isNew = 0;
  for (; isNew < count && rows_.Find(ids[isNew]) == IdRadixMap<std::uint32_t>::npos; ++isNew)
    rows_.FindOrInsert(ids[isNew]);
  if (isNew == 0) return 0;
  next_ = first;
  SizeRows();
  return isNew;
}

/// Makes room for all rows; those that are new have no value yet.
void EnvelopeField::SizeRows()
{
  const std::size_t end = components_.size() * NumIds();
  if (least_.size() == end) return;
  least_.resize(end, std::numeric_limits<double>::quiet_NaN());
  greatest_.resize(end, std::numeric_limits<double>::quiet_NaN());
  leastStep_.resize(end, kNoStep);
  greatestStep_.resize(end, kNoStep);
  SizeEstimates();
}

void EnvelopeField::Offer(int id, std::span<const double> values)
{
  const std::size_t row = FindRow(id);
  ++rows_.At(row);
  std::size_t at = row * components_.size();
  for (std::size_t k = 0; k < components_.size(); ++k, ++at) {
    const int position = positions_[k];
    if (slots_[k] != kNoSlot) {
      places_.push_back({at, row * numSlots_ + slots_[k]});
      SettlePlaces(k);
    }
    TakeValue(position >= 0 ? values[static_cast<std::size_t>(position)] : components_[k].Evaluate(values), at);
  }
}

std::vector<std::size_t> EnvelopeField::SortedRows() const
{
  std::vector<std::size_t> rows(NumIds());
  for (std::size_t row = 0; row < rows.size(); ++row) rows[row] = row;
  const auto byId = [this](std::size_t a, std::size_t b) { return GetId(a) < GetId(b); };
  if (!std::is_sorted(rows.begin(), rows.end(), byId)) std::sort(rows.begin(), rows.end(), byId);
  return rows;
}

void EnvelopeField::Append(EnvelopeField&& later)
{
  const std::uint32_t before = numSteps_;
  numSteps_ += later.numSteps_;
  numNans_ += later.numNans_;
  next_ = 0;
  if (NumIds() == 0) {
    rows_         = std::move(later.rows_);
    least_        = std::move(later.least_);
    greatest_     = std::move(later.greatest_);
    leastStep_    = std::move(later.leastStep_);
    greatestStep_ = std::move(later.greatestStep_);
    // What came from elsewhere has none.
    leastEstimates_    = std::move(later.leastEstimates_);
    greatestEstimates_ = std::move(later.greatestEstimates_);
    SizeEstimates();
    if (before == 0) return;
    for (auto* const steps : {&leastStep_, &greatestStep_})
      for (std::uint32_t& step : *steps) step += step == kNoStep ? 0 : before;
    return;
  }
  Settle();
  later.Settle();
  const std::size_t size = components_.size();
  std::size_t       from = 0;
  for (const auto& [id, count] : later.rows_.Entries()) {
    const std::size_t row = FindRow(id);
    rows_.At(row) += count;
    for (std::size_t at = row * size; at < (row + 1) * size; ++at, ++from) {
      // Where one has no number the other has none either.
      if (later.leastStep_[from] == kNoStep) continue;
      if (!(later.least_[from] >= least_[at])) {
        least_[at]     = later.least_[from];
        leastStep_[at] = before + later.leastStep_[from];
      }
      if (!(later.greatest_[from] <= greatest_[at])) {
        greatest_[at]     = later.greatest_[from];
        greatestStep_[at] = before + later.greatestStep_[from];
      }
    }
  }
}

void EnvelopeField::OfferAll(std::size_t count, const int* ids, const double* values, std::size_t numValues)
{
  constexpr std::size_t kMostAtOnce = 1024;  // values that stay near the processor
  for (std::size_t i = 0; i < count;) {
    std::size_t known = CountKnown(std::min(count - i, kMostAtOnce), ids + i);
    if (known == 0) known = InsertNew(std::min(count - i, kMostAtOnce), ids + i);
    if (known == 0) {
      Offer(ids[i], std::span(values + i * numValues, numValues));
      ++i;
      continue;
    }
    for (std::size_t r = 0; r < known; ++r) ++rows_.At(next_ + r);
    OfferKnown(known, values + i * numValues, numValues);
    next_ += known;
    i += known;
  }
}

/// Offers records of the rows that come next.
void EnvelopeField::OfferKnown(std::size_t count, const double* values, std::size_t numValues)
{
  bool areComponents = components_.size() == numValues;
  for (std::size_t k = 0; k < positions_.size(); ++k)
    areComponents = areComponents && positions_[k] == static_cast<int>(k);
  if (areComponents) {
    for (std::size_t v = 0; v < count * numValues; ++v) TakeValue(values[v], next_ * numValues + v);
    return;
  }
  for (std::size_t k = 0; k < components_.size(); ++k) {
    if (slots_[k] == kNoSlot)
      OfferComponent(k, count, values, numValues);
    else
      OfferEstimated(k, count, values);
  }
}

/// Offers one component of records of the rows that come next. Most values govern nothing, and are not evaluated.
void EnvelopeField::OfferComponent(std::size_t component, std::size_t count, const double* values,
                                   std::size_t numValues)
{
  const std::size_t size  = components_.size();
  const std::size_t first = next_ * size + component;
  beyond_.resize(count);
  std::iota(beyond_.begin(), beyond_.end(), 0U);
  components_[component].KeepBeyond(std::span(values, count * numValues), {&least_[first], &greatest_[first], size},
                                    beyond_);
  gathered_.clear();
  for (const std::uint32_t r : beyond_)
    gathered_.insert(gathered_.end(), values + r * numValues, values + (r + 1) * numValues);
  evaluated_.resize(beyond_.size());
  components_[component].EvaluateAll(gathered_, evaluated_);
  for (std::size_t i = 0; i < beyond_.size(); ++i) TakeValue(evaluated_[i], first + beyond_[i] * size);
}

/// Offers tensors of the rows that come next by estimates of one component. What estimates do not tell apart is
/// evaluated, and of the rest what governs in the end.
void EnvelopeField::OfferEstimated(std::size_t component, std::size_t count, const double* values)
{
  const std::size_t size  = components_.size();
  const std::size_t first = next_ * size + component;
  const std::size_t slots = next_ * numSlots_ + slots_[component];
  evaluated_.resize(count);
  errors_.resize(count);
  components_[component].EstimateAll(std::span(values, 6 * count), evaluated_, errors_);
  beyond_.clear();
  for (std::size_t r = 0; r < count; ++r) {
    const double* const tensor = values + 6 * r;
    const std::size_t   at     = first + r * size;
    const std::size_t   slot   = slots + r * numSlots_;
    const bool          isTold = errors_[r] < std::numeric_limits<double>::infinity() &&
                        TakeEstimate(Below, tensor, evaluated_[r], errors_[r], at, slot) &&
                        TakeEstimate(Above, tensor, evaluated_[r], errors_[r], at, slot);
    if (!isTold) beyond_.push_back(static_cast<std::uint32_t>(r));
  }
  if (beyond_.empty()) return;
  for (const std::uint32_t r : beyond_) places_.push_back({first + r * size, slots + r * numSlots_});
  SettlePlaces(component);
  gathered_.clear();
  for (const std::size_t r : beyond_) gathered_.insert(gathered_.end(), values + 6 * r, values + 6 * (r + 1));
  evaluated_.resize(beyond_.size());
  components_[component].EvaluateAll(gathered_, evaluated_);
  for (std::size_t i = 0; i < beyond_.size(); ++i) TakeValue(evaluated_[i], first + beyond_[i] * size);
}

/// @param slot position of the component of a row among estimated ones
/// @return whether the estimate tells if the tensor governs
bool EnvelopeField::TakeEstimate(Side side, const double* tensor, double estimate, double error, std::size_t at,
                                 std::size_t slot)
{
  double&        value = side == Above ? greatest_[at] : least_[at];
  std::uint32_t& step  = side == Above ? greatestStep_[at] : leastStep_[at];
  Estimates&     known = side == Above ? greatestEstimates_ : leastEstimates_;
  const double   ahead = side == Above ? estimate - value : value - estimate;
  const double   width = error + known.errors[slot];
  if (ahead < -width) return true;
  if (step != kNoStep && !(ahead > width)) return std::equal(tensor, tensor + 6, known.tensors[slot].begin());
  value              = estimate;
  step               = numSteps_ - 1;
  known.errors[slot] = error;
  std::copy_n(tensor, 6, known.tensors[slot].begin());
  return true;
}

/// Evaluates what governs a component at places_, where it is estimated, and forgets the places.
void EnvelopeField::SettlePlaces(std::size_t component)
{
  const auto settle = [&](Estimates& estimates, std::vector<double>& values) {
    settled_ = places_;
    std::erase_if(settled_, [&](const Place& place) { return estimates.errors[place.slot] == 0.0; });
    gathered_.clear();
    for (const Place& place : settled_) {
      const std::array<double, 6>& tensor = estimates.tensors[place.slot];
      gathered_.insert(gathered_.end(), tensor.begin(), tensor.end());
    }
    exact_.resize(settled_.size());
    components_[component].EvaluateAll(gathered_, exact_);
    for (std::size_t i = 0; i < settled_.size(); ++i) {
      values[settled_[i].at]             = exact_[i];
      estimates.errors[settled_[i].slot] = 0.0;
    }
  };
  settle(leastEstimates_, least_);
  settle(greatestEstimates_, greatest_);
  places_.clear();
}

void EnvelopeField::Settle()
{
  constexpr std::size_t kMostAtOnce = 1024;
  for (std::size_t k = 0; k < components_.size(); ++k) {
    if (slots_[k] == kNoSlot) continue;
    for (std::size_t row = 0; row < NumIds();) {
      for (const std::size_t end = std::min(NumIds(), row + kMostAtOnce); row < end; ++row)
        places_.push_back({row * components_.size() + k, row * numSlots_ + slots_[k]});
      SettlePlaces(k);
    }
  }
}

/// Makes room for estimates of all rows; those that are new have none.
void EnvelopeField::SizeEstimates()
{
  leastEstimates_.Resize(numSlots_ * NumIds());
  greatestEstimates_.Resize(numSlots_ * NumIds());
}

double EnvelopeField::ExactOf(std::size_t component, const Estimates& estimates, std::size_t slot, double value) const
{
  return estimates.errors[slot] == 0.0 ? value : components_[component].Evaluate(estimates.tensors[slot]);
}

/// @param at position of the component of a row
void EnvelopeField::TakeValue(double value, std::size_t at)
{
  if (value > least_[at] && value < greatest_[at]) return;  // most values govern nothing
  if (std::isnan(value)) {
    ++numNans_;
    return;
  }
  // The first number replaces the NaN that stands for none: no comparison with one holds.
  if (!(value >= least_[at])) {
    least_[at]     = value;
    leastStep_[at] = numSteps_ - 1;
  }
  if (!(value <= greatest_[at])) {
    greatest_[at]     = value;
    greatestStep_[at] = numSteps_ - 1;
  }
}

/// @return how many ids from the first on are those of the rows that come next
std::size_t EnvelopeField::CountKnown(std::size_t count, const int* ids) const
{
  const auto        entries = rows_.Entries();
  const std::size_t most    = std::min(count, entries.size() - std::min(next_, entries.size()));
  std::size_t       known   = 0;
  while (known < most && entries[next_ + known].first == ids[known]) ++known;
  return known;
}

EnvelopeField::Extreme EnvelopeField::ExtremeOf(Side side, std::size_t row, std::size_t component) const
{
  const std::size_t at    = row * components_.size() + component;
  const double      value = side == Above ? greatest_[at] : least_[at];
  const auto        step  = side == Above ? greatestStep_[at] : leastStep_[at];
  if (slots_[component] == kNoSlot) return {value, step};
  const std::size_t slot = row * numSlots_ + slots_[component];
  return {ExactOf(component, side == Above ? greatestEstimates_ : leastEstimates_, slot, value), step};
}

EnvelopeField::Extreme EnvelopeField::GetLeast(std::size_t row, std::size_t component) const
{
  return ExtremeOf(Below, row, component);
}

EnvelopeField::Extreme EnvelopeField::GetGreatest(std::size_t row, std::size_t component) const
{
  return ExtremeOf(Above, row, component);
}

EnvelopeField::Extreme EnvelopeField::GetLargest(std::size_t row, std::size_t component) const
{
  const Extreme least    = GetLeast(row, component);
  const Extreme greatest = GetGreatest(row, component);
  const double  below    = std::fabs(least.value);
  const double  above    = std::fabs(greatest.value);
  if (below == above) return least.step < greatest.step ? least : greatest;
  return below > above ? least : greatest;
}

std::size_t EnvelopeField::CountPartial() const
{
  const auto entries = rows_.Entries();
  return static_cast<std::size_t>(
      std::count_if(entries.begin(), entries.end(), [this](const auto& entry) { return entry.second < numSteps_; }));
}

bool HasEnvelope(const FED_DataDescriptor& block)
{
  return HasResultStep(block) && OnfKind::IsOfMesh(OnfOf(block)) && !StoredComponentsOf(OnfOf(block)).empty();
}

FED_DataDescriptor SeriesOf(const FED_DataDescriptor& block)
{
  FED_DataDescriptor key;
  key.SetInteger(Descriptor::OnfId, OnfOf(block));
  for (const IndexKey& index : GetIndexKeys()) {
    const bool isOfStep = index.index != Descriptor::Iteration &&
                          std::find(kStepOrder.begin(), kStepOrder.end(), index.index) != kStepOrder.end();
    if (block.IsSet(index.index) && !isOfStep) key.SetInteger(index.index, block.GetInteger(index.index));
  }
  return key;
}

bool ComesBefore(const FED_DataDescriptor& step, const FED_DataDescriptor& other)
{
  for (const Descriptor::ResultIndex index : kStepOrder) {
    const auto value = [index](const Descriptor& descriptor) {
      return std::pair(descriptor.IsSet(index), descriptor.GetInteger(index));
    };
    if (value(step) != value(other)) return value(step) < value(other);
  }
  return false;
}

namespace {

/// Puts the parts of each series together and hands it on when it is whole.
class SeriesInTurn
{
public:
  /// @param take borrowed, as the request is
  SeriesInTurn(const EnvelopeRequest& request, const std::function<void(const EnvelopeSeries& series)>& take)
      : request_(request), take_(take)
  {}

  /// @param part of the range; ranges come in their order
  void Add(const StepRange& range, EnvelopePart part)
  {
    const auto& [key, members] = *range.series;
    if (!series_)
      series_.emplace(EnvelopeSeries{key, {}, {}, EnvelopeField(ChosenComponents(request_.selection, OnfOf(key)))});
    series_->field.Append(std::move(part.field));
    series_->numWithoutAxes += part.numWithoutAxes;
    for (std::size_t i = range.begin; i < range.end; ++i) series_->steps.push_back(GetResultStep(members[i]));
    AddNotes(notes_, part.notes);
    if (range.IsLast()) HandOn();
  }

  /// @throws FED_Failure when nothing was in the region of the request
  void Finish()
  {
    if (request_.region == nullptr) return;
    request_.region->SetNotes(std::move(notes_));
    if (!any_) request_.region->FailEmpty(request_.selectionText);
  }

private:
  void HandOn()
  {
    const bool isEmpty = request_.region != nullptr && series_->field.NumIds() == 0;
    if (!isEmpty) take_(*series_);
    any_ = any_ || !isEmpty;
    series_.reset();
  }

  const EnvelopeRequest&                            request_;
  const std::function<void(const EnvelopeSeries&)>& take_;
  bool                                              any_ = false;
  std::vector<std::string>                          notes_;
  std::optional<EnvelopeSeries>                     series_;
};

}  // namespace

EnvelopeReport CalculateEnvelopes(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                  const EnvelopeRequest& request, Listener* listener,
                                  const std::function<void(const EnvelopeSeries& series)>& take, const Readers& readers)
{
  EnvelopeReport                report;
  const std::vector<Descriptor> usable    = UsableBlocks(database, blocks, request, report);
  const AllSeries               allSeries = GroupBySeries(usable);
  StepReader                    first(database, request, request.region);
  first.Prepare(allSeries);
  report.axes = first.DescribeAxes();

  CrewOrSelf                   crew(readers.crew);
  const std::vector<StepRange> ranges = DivideSteps(allSeries, crew.Get().GetSize());
  std::atomic<std::size_t>     done   = 0;  // blocks
  Plan<EnvelopePart>           plan;
  plan.units      = ranges.size();
  plan.state      = readers.state;
  plan.ahead      = 0;  // fields are large
  plan.makeWorker = [&](bool isFirst) -> Plan<EnvelopePart>::Worker {
    if (isFirst)
      return [&](std::size_t unit) {
        return first.Read(ranges[unit], [&] {
          if (listener != nullptr) listener->Progress("envelope", done, usable.size(), "blocks");
          ++done;
        });
      };
    auto stored = readers.open();
    if (!stored) return {};
    const auto own = std::make_shared<OwnStepReader>(std::move(stored), request);
    own->reader.Prepare(allSeries);
    return [&ranges, &done, own](std::size_t unit) { return own->reader.Read(ranges[unit], [&done] { ++done; }); };
  };

  SeriesInTurn series(request, take);
  CarryOut(crew.Get(), std::move(plan),
           [&](std::size_t unit, EnvelopePart part) { series.Add(ranges[unit], std::move(part)); });
  series.Finish();
  return report;
}

void WriteEnvelope(const EnvelopeSeries& series, const KindTable& kinds, FED_Database& target)
{
  const std::vector<Component>& components = series.field.GetComponents();
  const std::string             kind       = kinds.GetName(OnfOf(series.key));
  EnvelopeWriter                writer(series, target);
  if (AreAllStored(components, OnfOf(series.key))) return writer.Write(kind + " envelope", 0, components.size());
  for (std::size_t k = 0; k < components.size(); ++k)
    writer.Write(kind + ' ' + components[k].GetName() + " envelope", k, 1);
}

}  // namespace quilon
