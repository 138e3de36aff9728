#include "answers/Envelope.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <compare>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/OnfKinds.h>

#include "answers/ChosenComponents.h"
#include "answers/ComponentAxes.h"
#include "answers/IterationAxes.h"
#include "answers/Region.h"
#include "database/StoredDatabase.h"
#include "kinds/KindTable.h"
#include "kinds/RunningExtremes.h"
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

using AllSeries = std::map<Descriptor, std::vector<Descriptor>>;

AllSeries GroupBySeries(const std::vector<Descriptor>& blocks)
{
  AllSeries series;
  for (const Descriptor& block : blocks) series[SeriesOf(block)].push_back(block);
  for (auto& [key, members] : series) std::sort(members.begin(), members.end(), ComesBefore);
  return series;
}

/// What is read at once: a chunk of the block of a step, or all of a block without chunks. They go by chunk, then by
/// step: what is kept of the ids of a chunk, which mostly are the same in all steps, stays near the processor.
struct StepChunk
{
  std::size_t number = 0;
  std::size_t step   = 0;

  auto operator<=>(const StepChunk&) const = default;
};

/// How the records of a series lie.
class StepChunks
{
public:
  StepChunks(const FED_Database& database, const std::vector<Descriptor>& steps)
  {
    for (const Descriptor& step : steps) {
      const FED_DataBlock& block   = database.GetConstDataBlock(step);
      const auto* const    columns = dynamic_cast<const FED_ColumnDataBlock*>(&block);
      const std::size_t    records = columns == nullptr ? block.GetSize() : columns->GetRecordCount();
      blocks_.push_back({&block, columns, columns == nullptr ? 1 : columns->GetChunkCount(), records});
      numChunks_ = std::max(numChunks_, blocks_.back().chunks);
      numParts_ += blocks_.back().chunks;
      most_ = std::max(most_, records);
    }
  }

  std::size_t CountAll() const noexcept { return numParts_; }

  /// @return records of the largest step
  std::size_t MostRecords() const noexcept { return most_; }

  StepChunk End() const noexcept { return {numChunks_, 0}; }

  const FED_DataBlock& GetBlock(std::size_t step) const noexcept { return *blocks_[step].block; }

  /// @return null for a block without chunks
  const FED_ColumnDataBlock* GetColumns(std::size_t step) const noexcept { return blocks_[step].columns; }

  /// Calls visit(chunk) for those from begin to before end that are there.
  template <typename Visit>
  void ForEach(StepChunk begin, StepChunk end, const Visit& visit) const
  {
    for (StepChunk chunk = begin; chunk < end; ++chunk.step) {
      if (chunk.step == blocks_.size()) chunk = {chunk.number + 1, 0};
      if (chunk < end && chunk.number < blocks_[chunk.step].chunks) visit(chunk);
    }
  }

  /// @return where parts of about as many records begin, ascending, and the end
  std::vector<StepChunk> Divide(std::size_t parts) const
  {
    std::size_t all = 0;
    ForEach({}, End(), [&](StepChunk chunk) { all += CountRecords(chunk); });
    std::vector<StepChunk> begins;
    std::size_t            before = 0;
    ForEach({}, End(), [&](StepChunk chunk) {
      const std::size_t records = CountRecords(chunk);
      if (begins.size() < parts && (before + records / 2) * parts >= all * begins.size()) begins.push_back(chunk);
      before += records;
    });
    if (begins.empty()) begins.push_back({});
    begins.push_back(End());
    return begins;
  }

private:
  struct Block
  {
    const FED_DataBlock*       block;
    const FED_ColumnDataBlock* columns;
    std::size_t                chunks;
    std::size_t                records;
  };

  std::size_t CountRecords(StepChunk chunk) const noexcept
  {
    const Block& block = blocks_[chunk.step];
    if (block.columns == nullptr) return block.records;
    const std::size_t perChunk = block.columns->GetRowsPerChunk();
    return std::min(perChunk, block.records - chunk.number * perChunk);
  }

  std::vector<Block> blocks_;  // by step
  std::size_t        numChunks_ = 0;
  std::size_t        numParts_  = 0;
  std::size_t        most_      = 0;
};

/// Some chunks of a series, one behind the other.
struct ChunkRange
{
  const AllSeries::value_type* series;
  StepChunk                    begin;
  StepChunk                    end;
  bool                         isLast;  // of the series
};

struct DividedChunks
{
  std::vector<ChunkRange> ranges;
  std::size_t             numChunks = 0;
};

/// @param parts that each series is divided into, as far as it has so many chunks
DividedChunks DivideChunks(const FED_Database& database, const AllSeries& allSeries, std::size_t parts)
{
  DividedChunks divided;
  for (const auto& series : allSeries) {
    const StepChunks             chunks(database, series.second);
    const std::vector<StepChunk> begins = chunks.Divide(parts);
    for (std::size_t i = 0; i + 1 < begins.size(); ++i)
      divided.ranges.push_back({&series, begins[i], begins[i + 1], i + 2 == begins.size()});
    divided.numChunks += chunks.CountAll();
  }
  return divided;
}

/// The ids of the records that were read last. The steps of a chunk mostly have the same ones.
class KnownIds
{
public:
  using Ids = std::shared_ptr<const std::vector<int>>;

  /// Calls take(span, ids) for the records of a chunk, with the same object for ids that are the same.
  template <typename Take>
  void Visit(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool, std::size_t chunk, const Take& take)
  {
    FED_VisitChunk(block, chunk, [&](const FED_BlockSpan& span) {
      const std::span indices(span.GetIndices().GetData(), span.GetCount());
      if (!std::equal(indices.begin(), indices.end(), indices_.begin(), indices_.end())) {
        indices_.clear();
        FED_VisitChunk(block, pool, chunk, [&](const FED_BlockSpan& withIds) {
          const int* const ids = withIds.GetIds().GetData();
          ids_                 = std::make_shared<std::vector<int>>(ids, ids + withIds.GetCount());
        });
        indices_.assign(indices.begin(), indices.end());
      }
      take(span, ids_);
    });
  }

private:
  std::vector<std::uint32_t> indices_;
  Ids                        ids_ = std::make_shared<std::vector<int>>();
};

/// Chunks of steps that have the same ids, which are offered together.
class HeldChunks
{
public:
  /// @param field borrowed
  explicit HeldChunks(EnvelopeField& field) : field_(field), numValues_(field.GetComponents().front().NumValues()) {}

  void Add(const FED_ColumnDataBlock& block, StepChunk chunk, const KnownIds::Ids& ids)
  {
    constexpr std::size_t kMostBytes = std::size_t{8} << 20;
    const auto            step       = static_cast<std::uint32_t>(chunk.step);
    if (ids != ids_ || (!steps_.empty() && step <= steps_.back().step)) Offer();
    ids_ = ids;
    chunks_.push_back(block.HoldChunk(chunk.number));
    const auto values = block.GetDoubleChunk(1, chunk.number);
    steps_.push_back({step, values.GetData()});
    bytes_ += values.GetSize() * sizeof(double);
    if (bytes_ >= kMostBytes) Offer();
  }

  void Offer()
  {
    if (steps_.empty()) return;
    field_.OfferSteps(ids_->size(), ids_->data(), steps_, numValues_);
    steps_.clear();
    chunks_.clear();
    bytes_ = 0;
  }

private:
  EnvelopeField&                              field_;
  std::size_t                                 numValues_;
  KnownIds::Ids                               ids_;
  std::vector<std::unique_ptr<FED_HeldChunk>> chunks_;
  std::vector<EnvelopeField::StepValues>      steps_;
  std::size_t                                 bytes_ = 0;
};

/// Reads chunks for envelopes, one thread its own.
class ChunkReader
{
public:
  /// @param region null: all
  ChunkReader(const FED_Database& database, const EnvelopeRequest& request, Region* region)
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

  /// @param onChunk called before each chunk
  EnvelopePart Read(const ChunkRange& range, const std::function<void()>& onChunk) const
  {
    const auto& [key, members] = *range.series;
    const StepChunks                         chunks(database_, members);
    const RecordTurner                       turner = axes_.TurnerOf(key);
    std::vector<std::optional<RegionFilter>> filters(members.size());
    EnvelopePart                             part{EnvelopeField(ChosenComponents(request_.selection, OnfOf(key)))};
    KnownIds                                 known;
    HeldChunks                               held(part.field);
    const bool                               isAll = region_ == nullptr || region_->IsEverything();
    // All steps count, also those without a record here.
    part.field.BeginStep(static_cast<std::uint32_t>(members.size() - 1));
    if (isAll) part.field.Reserve(chunks.MostRecords());
    chunks.ForEach(range.begin, range.end, [&](StepChunk chunk) {
      ThrowIfInterrupted();
      onChunk();
      std::optional<RegionFilter>& filter = filters[chunk.step];
      const FED_DataBlock&         block  = chunks.GetBlock(chunk.step);
      if (!isAll && !filter) filter = region_->FilterOf(block);
      const auto take = [&](const FED_BlockSpan& span, const int* ids) {
        ThrowIfInterrupted();
        held.Offer();
        part.field.BeginStep(static_cast<std::uint32_t>(chunk.step));
        OfferSpan(span, ids, turner, filter, part);
      };
      if (const auto* const columns = chunks.GetColumns(chunk.step))
        known.Visit(*columns, database_.GetIdMapsPool(), chunk.number,
                    [&](const FED_BlockSpan& span, const KnownIds::Ids& ids) {
                      if (isAll && !turner.Turns())
                        held.Add(*columns, chunk, ids);
                      else
                        take(span, ids->data());
                    });
      else
        FED_ForEachSpan(block, database_.GetIdMapsPool(),
                        [&](const FED_BlockSpan& span) { take(span, span.GetIds().GetData()); });
    });
    held.Offer();
    part.field.Settle();
    if (region_ != nullptr) part.notes = region_->GetNotes();
    return part;
  }

  const std::string& DescribeAxes() const noexcept { return axes_.Describe(); }

private:
  /// @param ids    of the records
  /// @param filter nothing: all records
  static void OfferSpan(const FED_BlockSpan& span, const int* ids, const RecordTurner& turner,
                        const std::optional<RegionFilter>& filter, EnvelopePart& part)
  {
    const std::size_t   numValues = part.field.GetComponents().front().NumValues();
    const double* const values    = span.GetDoubles(1).GetData();
    if (!turner.Turns() && !filter) return part.field.OfferAll(span.GetCount(), ids, values, numValues);
    constexpr std::size_t kMostAtOnce = 1024;
    std::vector<int>      keptIds;
    std::vector<double>   keptValues;
    const auto            offer = [&] {
      part.field.OfferAll(keptIds.size(), keptIds.data(), keptValues.data(), numValues);
      keptIds.clear();
      keptValues.clear();
    };
    for (std::size_t r = 0; r < span.GetCount(); ++r) {
      if (filter && !filter->Holds(ids[r])) continue;
      keptIds.push_back(ids[r]);
      keptValues.insert(keptValues.end(), values + r * numValues, values + (r + 1) * numValues);
      if (!turner.Turn(ids[r], std::span(keptValues).last(numValues))) ++part.numWithoutAxes;
      if (keptIds.size() == kMostAtOnce) offer();
    }
    offer();
  }

  const FED_Database&    database_;
  const EnvelopeRequest& request_;
  Region*                region_;
  IterationAxes          axes_;
};

/// One of another thread, with all that it reads.
struct OwnChunkReader
{
  OwnChunkReader(std::unique_ptr<StoredDatabase> database, const EnvelopeRequest& request)
      : stored(std::move(database)),
        region(request.region == nullptr
                   ? nullptr
                   : std::make_unique<Region>(stored->Get(), request.region->GetOptions(), request.database)),
        reader(stored->Get(), request, region.get())
  {}

  std::unique_ptr<StoredDatabase> stored;
  std::unique_ptr<Region>         region;
  ChunkReader                     reader;
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
  {
    const int       kind = isOfElements_ ? OnfKind::ElementEntity : OnfKind::NodeEntity;
    FED_IdMapsPool& ids  = target.GetIdMapsPool();
    for (const std::size_t row : rows_) indices_.push_back(ids.FindOrAddIndex(kind, series.field.GetId(row)));
  }

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
      std::array<double, 6> values{};
      for (std::size_t i = 0; i < rows_.size(); ++i) {
        const std::size_t row = rows_[i];
        for (std::size_t k = 0; k < count; ++k) {
          const EnvelopeField::Extreme extreme = loadCase == EnvelopeLeast      ? field.GetLeast(row, first + k)
                                                 : loadCase == EnvelopeGreatest ? field.GetGreatest(row, first + k)
                                                                                : field.GetLargest(row, first + k);
          values[k]                            = value(extreme);
        }
        block.SetValuesAt(indices_[i], values.data());
      }
    }
  }

  const EnvelopeSeries&    series_;
  FED_Database&            target_;
  UserKindPool             pool_;
  bool                     isOfElements_;
  std::vector<std::size_t> rows_;
  std::vector<std::size_t> indices_;  // of the rows' ids
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

void EnvelopeField::Reserve(std::size_t numIds)
{
  rows_.Reserve(numIds);
  const std::size_t end = components_.size() * numIds;
  least_.reserve(end);
  greatest_.reserve(end);
  leastStep_.reserve(end);
  greatestStep_.reserve(end);
}

void EnvelopeField::BeginStep(std::uint32_t step)
{
  if (step < step_) Settle();
  step_     = step;
  numSteps_ = std::max(numSteps_, step + 1);
  next_     = 0;
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

/// Looks whether the row of the next id follows that of the first one: they come next.
/// @param ids the first one has a row
bool EnvelopeField::FindRun(std::size_t count, const int* ids)
{
  if (count < 2) return false;
  const std::size_t row = rows_.Find(ids[0]);
  if (row + 1 >= NumIds() || GetId(row + 1) != ids[1]) return false;
  next_ = row;
  return true;
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
}

void EnvelopeField::Offer(int id, std::span<const double> values)
{
  const std::size_t row = FindRow(id);
  SizeEstimates();
  ++rows_.At(row);
  std::size_t at = row * components_.size();
  for (std::size_t k = 0; k < components_.size(); ++k, ++at) {
    const int position = positions_[k];
    if (slots_[k] != kNoSlot && row >= fresh_) {
      places_.push_back({at, SlotOf(row, k)});
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

void EnvelopeField::Merge(EnvelopeField&& other)
{
  Settle();
  other.Settle();
  numSteps_ = std::max(numSteps_, other.numSteps_);
  numNans_ += other.numNans_;
  if (NumIds() == 0) {
    rows_         = std::move(other.rows_);
    least_        = std::move(other.least_);
    greatest_     = std::move(other.greatest_);
    leastStep_    = std::move(other.leastStep_);
    greatestStep_ = std::move(other.greatestStep_);
    FinishRows();
    return;
  }
  // All rows first: there is room for them at once.
  const auto               entries = other.rows_.Entries();
  std::vector<std::size_t> rows;
  rows.reserve(entries.size());
  for (const auto& [id, count] : entries) {
    rows.push_back(rows_.FindOrInsert(id));
    rows_.At(rows.back()) += count;
  }
  SizeRows();
  FinishRows();
  const std::size_t size = components_.size();
  std::size_t       from = 0;
  for (const std::size_t row : rows)
    for (std::size_t at = row * size; at < (row + 1) * size; ++at, ++from) {
      // Where one has no number the other has none either.
      if (other.leastStep_[from] == kNoStep) continue;
      TakeExtreme(Below, other.least_[from], other.leastStep_[from], at);
      TakeExtreme(Above, other.greatest_[from], other.greatestStep_[from], at);
    }
}

/// From here on no row is estimated.
void EnvelopeField::FinishRows() noexcept
{
  fresh_ = NumIds();
  next_  = 0;
  leastEstimates_.Clear();
  greatestEstimates_.Clear();
}

void EnvelopeField::OfferSteps(std::size_t count, const int* ids, std::span<const StepValues> steps,
                               std::size_t numValues)
{
  for (std::size_t first = 0; first < count; first += kMostAtOnce) {
    const std::size_t own = std::min(kMostAtOnce, count - first);
    for (const StepValues& of : steps) {
      // Steps of other ids may go back: of each id they ascend.
      if (first == 0) BeginStep(of.step);
      step_ = of.step;
      OfferAll(own, ids + first, of.values + first * numValues, numValues);
    }
  }
}

void EnvelopeField::OfferAll(std::size_t count, const int* ids, const double* values, std::size_t numValues)
{
  for (std::size_t i = 0; i < count;) {
    std::size_t known = CountKnown(std::min(count - i, kMostAtOnce), ids + i);
    if (known == 0) known = InsertNew(std::min(count - i, kMostAtOnce), ids + i);
    if (known == 0 && FindRun(count - i, ids + i)) continue;
    if (known == 0) {
      Offer(ids[i], std::span(values + i * numValues, numValues));
      ++i;
      continue;
    }
    // Rows that are exact go by themselves.
    if (next_ < fresh_) known = std::min(known, fresh_ - next_);
    for (std::size_t r = 0; r < known; ++r) ++rows_.At(next_ + r);
    OfferKnown(next_, known, values + i * numValues, numValues);
    next_ += known;
    i += known;
  }
}

/// Offers records of rows that stand side by side, all before fresh_ or none.
void EnvelopeField::OfferKnown(std::size_t first, std::size_t count, const double* values, std::size_t numValues)
{
  bool areComponents = components_.size() == numValues;
  for (std::size_t k = 0; k < positions_.size(); ++k)
    areComponents = areComponents && positions_[k] == static_cast<int>(k);
  if (areComponents) return TakeValues(std::span(values, count * numValues), first, first * numValues);
  SizeEstimates();
  for (std::size_t k = 0; k < components_.size(); ++k) {
    if (slots_[k] == kNoSlot || first < fresh_)
      OfferComponent(k, first, count, values, numValues);
    else
      OfferEstimated(k, first, count, values);
  }
}

/// Offers one component of records. Where it takes long, values that govern nothing, as most do, are not evaluated.
void EnvelopeField::OfferComponent(std::size_t component, std::size_t first, std::size_t count, const double* values,
                                   std::size_t numValues)
{
  const std::size_t size = components_.size();
  const std::size_t at   = first * size + component;
  if (components_[component].IsEvaluatedFast()) {
    evaluated_.resize(count);
    components_[component].EvaluateAll(std::span(values, count * numValues), evaluated_);
    if (size == 1) return TakeValues(evaluated_, first, at);
    for (std::size_t r = 0; r < count; ++r) TakeValue(evaluated_[r], at + r * size);
    return;
  }
  beyond_.resize(count);
  std::iota(beyond_.begin(), beyond_.end(), 0U);
  components_[component].KeepBeyond(std::span(values, count * numValues), {&least_[at], &greatest_[at], size}, beyond_);
  gathered_.clear();
  for (const std::uint32_t r : beyond_)
    gathered_.insert(gathered_.end(), values + r * numValues, values + (r + 1) * numValues);
  evaluated_.resize(beyond_.size());
  components_[component].EvaluateAll(gathered_, evaluated_);
  for (std::size_t i = 0; i < beyond_.size(); ++i) TakeValue(evaluated_[i], at + beyond_[i] * size);
}

/// @param slot position of the component of a row among estimated ones
/// @return whether the estimate tells if the tensor governs
inline bool EnvelopeField::TakeEstimate(Side side, const double* tensor, double estimate, double error, std::size_t at,
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
  step               = step_;
  known.errors[slot] = error;
  for (std::size_t k = 0; k < 6; ++k) known.tensors[slot][k] = tensor[k];
  return true;
}

/// Offers tensors of rows from fresh_ on by estimates of one component. What estimates do not tell apart is evaluated,
/// and of the rest what governs in the end.
void EnvelopeField::OfferEstimated(std::size_t component, std::size_t first, std::size_t count, const double* values)
{
  const std::size_t size      = components_.size();
  const std::size_t firstAt   = first * size + component;
  const std::size_t firstSlot = SlotOf(first, component);
  evaluated_.resize(count);
  errors_.resize(count);
  components_[component].EstimateAll(std::span(values, 6 * count), evaluated_, errors_);
  marks_.assign(count, MayBeLeast | MayBeGreatest);
  if (size == 1)
    MarkExtremes(evaluated_, errors_,
                 {&least_[firstAt], &greatest_[firstAt], &leastEstimates_.errors[firstSlot],
                  &greatestEstimates_.errors[firstSlot]},
                 marks_);
  beyond_.clear();
  for (std::size_t r = 0; r < count; ++r) {
    if (marks_[r] == 0) continue;
    const double* const tensor = values + 6 * r;
    const std::size_t   at     = firstAt + r * size;
    const std::size_t   slot   = firstSlot + r * numSlots_;
    const bool          isTold =
        errors_[r] < std::numeric_limits<double>::infinity() &&
        ((marks_[r] & MayBeLeast) == 0 || TakeEstimate(Below, tensor, evaluated_[r], errors_[r], at, slot)) &&
        ((marks_[r] & MayBeGreatest) == 0 || TakeEstimate(Above, tensor, evaluated_[r], errors_[r], at, slot));
    if (!isTold) beyond_.push_back(static_cast<std::uint32_t>(r));
  }
  if (beyond_.empty()) return;
  for (const std::uint32_t r : beyond_) places_.push_back({firstAt + r * size, firstSlot + r * numSlots_});
  SettlePlaces(component);
  gathered_.clear();
  for (const std::size_t r : beyond_) gathered_.insert(gathered_.end(), values + 6 * r, values + 6 * (r + 1));
  evaluated_.resize(beyond_.size());
  components_[component].EvaluateAll(gathered_, evaluated_);
  for (std::size_t i = 0; i < beyond_.size(); ++i) TakeValue(evaluated_[i], firstAt + beyond_[i] * size);
}

/// Evaluates what governs a component at places_, where it is estimated, and forgets the places.
void EnvelopeField::SettlePlaces(std::size_t component)
{
  const auto settle = [&](Estimates& estimates, std::vector<double>& values) {
    settled_ = places_;
    std::erase_if(settled_, [&](const Place& place) { return estimates.errors[place.slot] == 0.0; });
    gathered_.resize(6 * settled_.size());
    double* to = gathered_.data();
    for (const Place& place : settled_)
      for (const double value : estimates.tensors[place.slot]) *to++ = value;
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
  SizeEstimates();
  for (std::size_t k = 0; k < components_.size(); ++k) {
    if (slots_[k] == kNoSlot) continue;
    for (std::size_t row = fresh_; row < NumIds();) {
      for (const std::size_t end = std::min(NumIds(), row + kMostAtOnce); row < end; ++row)
        places_.push_back({row * components_.size() + k, SlotOf(row, k)});
      SettlePlaces(k);
    }
  }
  FinishRows();
}

/// Makes room for estimates of all rows from fresh_ on; those that are new have none.
void EnvelopeField::SizeEstimates()
{
  const std::size_t size = numSlots_ * (NumIds() - fresh_);
  if (leastEstimates_.errors.size() == size) return;
  leastEstimates_.Resize(size);
  greatestEstimates_.Resize(size);
}

/// Takes values that stand side by side, as those of the rows do.
/// @param row of the first one
/// @param at  position of the component of that row
void EnvelopeField::TakeValues(std::span<const double> values, std::size_t row, std::size_t at)
{
  if (row >= fresh_) {
    numNans_ += TakeAscending(values, step_, {&least_[at], &greatest_[at], &leastStep_[at], &greatestStep_[at]});
    return;
  }
  for (const double value : values) TakeValue(value, at++);
}

/// @param at position of the component of a row
void EnvelopeField::TakeValue(double value, std::size_t at)
{
  if (value > least_[at] && value < greatest_[at]) return;  // most values govern nothing
  if (std::isnan(value)) {
    ++numNans_;
    return;
  }
  TakeExtreme(Below, value, step_, at);
  TakeExtreme(Above, value, step_, at);
}

/// @param value a number
void EnvelopeField::TakeExtreme(Side side, double value, std::uint32_t step, std::size_t at)
{
  double&        known     = side == Above ? greatest_[at] : least_[at];
  std::uint32_t& knownStep = side == Above ? greatestStep_[at] : leastStep_[at];
  // The first number replaces the NaN that stands for none: no comparison with one holds.
  const bool isBehind = side == Above ? value <= known : value >= known;
  if (isBehind && (value != known || step >= knownStep)) return;
  known     = value;
  knownStep = step;
}

/// @return how many ids from the first on are those of the rows that come next
std::size_t EnvelopeField::CountKnown(std::size_t count, const int* ids) const
{
  const auto        entries = rows_.Entries();
  const std::size_t most    = std::min(count, entries.size() - std::min(next_, entries.size()));
  // Mostly all are; it takes less time to look at all of them than at one after the other.
  unsigned different = 0;
  for (std::size_t i = 0; i < most; ++i)
    different |= static_cast<unsigned>(entries[next_ + i].first) ^ static_cast<unsigned>(ids[i]);
  if (different == 0) return most;
  std::size_t known = 0;
  while (known < most && entries[next_ + known].first == ids[known]) ++known;
  return known;
}

EnvelopeField::Extreme EnvelopeField::ExtremeOf(Side side, std::size_t row, std::size_t component) const
{
  const std::size_t at    = row * components_.size() + component;
  const double      value = side == Above ? greatest_[at] : least_[at];
  const auto        step  = side == Above ? greatestStep_[at] : leastStep_[at];
  if (slots_[component] == kNoSlot || row < fresh_) return {value, step};
  const Estimates&  estimates = side == Above ? greatestEstimates_ : leastEstimates_;
  const std::size_t slot      = SlotOf(row, component);
  const bool        isExact   = slot >= estimates.errors.size() || estimates.errors[slot] == 0.0;
  return {isExact ? value : components_[component].Evaluate(estimates.tensors[slot]), step};
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
  void Add(const ChunkRange& range, EnvelopePart part)
  {
    const auto& [key, members] = *range.series;
    if (!series_) {
      series_.emplace(EnvelopeSeries{key, {}, {}, EnvelopeField(ChosenComponents(request_.selection, OnfOf(key)))});
      for (const Descriptor& step : members) series_->steps.push_back(GetResultStep(step));
    }
    series_->field.Merge(std::move(part.field));
    series_->numWithoutAxes += part.numWithoutAxes;
    AddNotes(notes_, part.notes);
    if (range.isLast) HandOn();
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
  ChunkReader                   first(database, request, request.region);
  first.Prepare(allSeries);
  report.axes = first.DescribeAxes();

  CrewOrSelf               crew(readers.crew);
  const DividedChunks      divided = DivideChunks(database, allSeries, crew.Get().GetSize());
  const auto&              ranges  = divided.ranges;
  std::atomic<std::size_t> done    = 0;  // chunks of steps
  Plan<EnvelopePart>       plan;
  plan.units      = ranges.size();
  plan.state      = readers.state;
  plan.ahead      = 0;  // fields are large
  plan.makeWorker = [&](bool isFirst) -> Plan<EnvelopePart>::Worker {
    if (isFirst)
      return [&](std::size_t unit) {
        return first.Read(ranges[unit], [&] {
          if (listener != nullptr)
            listener->Progress("envelope", done * usable.size() / divided.numChunks, usable.size(), "blocks");
          ++done;
        });
      };
    auto stored = readers.open();
    if (!stored) return {};
    const auto own = std::make_shared<OwnChunkReader>(std::move(stored), request);
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
