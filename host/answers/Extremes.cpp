#include "answers/Extremes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <numeric>
#include <span>
#include <string>
#include <tuple>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "answers/ComponentAxes.h"
#include "answers/IterationAxes.h"
#include "answers/ModelNames.h"
#include "answers/Region.h"
#include "database/Listing.h"
#include "database/RecordRows.h"
#include "database/StepTimes.h"
#include "database/StoredDatabase.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "text/Failure.h"

namespace quilon {

namespace {

int IterationOf(const FED_DataDescriptor& block) { return block.GetInteger(FED_DataDescriptor::Iteration); }

/// A value on its way into a ranking.
struct Candidate
{
  double      badness = 0.0;
  double      value   = 0.0;
  std::size_t block   = 0;  // position in the blocks
  int         id      = 0;
  int         point   = 0;

  /// Whether it stands before another. Spans do not come by ascending id.
  bool Precedes(const Candidate& other) const noexcept
  {
    if (badness != other.badness) return badness > other.badness;
    if (block != other.block) return block < other.block;
    return id != other.id ? id < other.id : point < other.point;
  }
};

template <typename Parcel>
void Travel(Parcel& parcel, Candidate& candidate)
{
  parcel(candidate.badness, candidate.value, candidate.block, candidate.id, candidate.point);
}

/// The worst of what is offered, at most so many.
class Ranking
{
public:
  Ranking() = default;
  /// @param floor what the last place has at least in the end, whoever takes it; nan where nothing is known
  explicit Ranking(std::size_t head, double floor = std::numeric_limits<double>::quiet_NaN())
      : head_(head), floor_(floor)
  {}

  /// Whether a value may change the ranking; most do not.
  bool Concerns(double badness) const noexcept { return worst_.size() < head_ || badness >= worst_.back().badness; }

  void Offer(const Candidate& candidate)
  {
    if (worst_.size() == head_ && !candidate.Precedes(worst_.back())) {
      tiesOfLast_ += candidate.badness == worst_.back().badness ? 1 : 0;
      return;
    }
    const auto place = std::upper_bound(worst_.begin(), worst_.end(), candidate,
                                        [](const Candidate& a, const Candidate& b) { return a.Precedes(b); });
    worst_.insert(place, candidate);
    if (worst_.size() <= head_) return;
    const double dropped = worst_.back().badness;
    worst_.pop_back();
    // What was dropped before is no worse than this: it ties with the last one only if this does.
    tiesOfLast_ = dropped == worst_.back().badness ? tiesOfLast_ + 1 : 0;
  }

  /// @return the least badness that concerns the ranking; nan while any does
  double GetLimit() const noexcept
  {
    return worst_.size() < head_ || worst_.back().badness < floor_ ? floor_ : worst_.back().badness;
  }

  const std::vector<Candidate>& GetWorst() const noexcept { return worst_; }

  /// @return how many others that were offered are as bad as one of the worst
  std::size_t CountTies(const Candidate& one) const
  {
    const auto same = static_cast<std::size_t>(std::count_if(
        worst_.begin(), worst_.end(), [&](const Candidate& other) { return other.badness == one.badness; }));
    return same - 1 + (one.badness == worst_.back().badness ? tiesOfLast_ : 0);
  }

  void        AddNan() noexcept { ++nans_; }
  std::size_t NumNans() const noexcept { return nans_; }

  /// Takes what was offered to another one of the same size.
  void Absorb(const Ranking& other)
  {
    nans_ += other.nans_;
    if (other.worst_.empty()) return;
    // What the other has dropped is at best as bad as its last one: it ties with the last one here or with none.
    const double last = other.worst_.back().badness;
    for (const Candidate& candidate : other.worst_) Offer(candidate);
    if (worst_.back().badness == last) tiesOfLast_ += other.tiesOfLast_;
  }

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Ranking& ranking)
  {
    parcel(ranking.head_, ranking.worst_, ranking.tiesOfLast_, ranking.nans_);
  }

private:
  std::size_t            head_  = 0;
  double                 floor_ = std::numeric_limits<double>::quiet_NaN();  // does not travel
  std::vector<Candidate> worst_;                                             // the worst first
  std::size_t            tiesOfLast_ = 0;
  std::size_t            nans_       = 0;
};

/// Which parts nodes or elements belong to.
class Membership
{
public:
  void Add(std::size_t part, const std::vector<int>& ids)
  {
    for (const int id : ids) pairs_.emplace_back(id, part);
  }

  /// To be called when all is added.
  void Finish()
  {
    std::sort(pairs_.begin(), pairs_.end());
    pairs_.erase(std::unique(pairs_.begin(), pairs_.end()), pairs_.end());
    std::vector<int> ids;
    for (std::size_t i = 0; i < pairs_.size(); ++i) {
      if (i == 0 || pairs_[i].first != pairs_[i - 1].first) {
        ids.push_back(pairs_[i].first);
        first_.push_back(i);
      }
      parts_.push_back(pairs_[i].second);
    }
    first_.push_back(pairs_.size());
    pairs_.clear();
    ids_ = IdPositions(std::move(ids));
  }

  std::span<const std::size_t> PartsOf(int id) const noexcept
  {
    const std::optional<std::size_t> place = ids_.Find(id);
    if (!place) return {};
    return std::span(parts_).subspan(first_[*place], first_[*place + 1] - first_[*place]);
  }

private:
  std::vector<std::pair<int, std::size_t>> pairs_;
  IdPositions                              ids_;
  std::vector<std::size_t>                 first_;  // of an id's parts
  std::vector<std::size_t>                 parts_;
};

/// Names of parts, and which of them a record is in.
class Parts
{
public:
  Parts(const FED_Database& database, Region& region, ExtremeRequest::Per per)
      : database_(database), region_(region), per_(per)
  {}

  bool IsByRecord() const noexcept { return per_ == ExtremeRequest::Material || per_ == ExtremeRequest::Set; }

  /// @return the one part of all records of a block, nothing for a block that is in none; not by records
  std::optional<std::size_t> PartOf(const FED_DataDescriptor& block)
  {
    switch (per_) {
      case ExtremeRequest::Step:
        return NumberOf(HasResultStep(block) ? StepText(GetResultStep(block)) : StepText(block));
      case ExtremeRequest::Group:
        if (!block.IsSet(OnfIndex::Group)) return std::nullopt;
        return NumberOf(NameGroup(block.GetInteger(OnfIndex::Group)));
      default:
        return NumberOf("");
    }
  }

  const Membership& MembersOf(const FED_DataDescriptor& block)
  {
    const bool                   ofElements = OnfKind::EntityOf(block) == OnfKind::ElementEntity;
    std::unique_ptr<Membership>& members    = members_[{IterationOf(block), ofElements}];
    if (members) return *members;
    members = std::make_unique<Membership>();
    if (per_ == ExtremeRequest::Material)
      AddMaterials(IterationOf(block), ofElements, *members);
    else
      AddSets(IterationOf(block), ofElements, *members);
    members->Finish();
    return *members;
  }

  const std::string& GetName(std::size_t part) const { return names_[part]; }

private:
  std::size_t NumberOf(const std::string& name)
  {
    const auto [found, isNew] = numbers_.try_emplace(name, names_.size());
    if (isNew) names_.push_back(name);
    return found->second;
  }

  std::string NameGroup(int group)
  {
    if (!groupNames_) groupNames_ = NameGroups(database_, region_);
    const auto found = groupNames_->find(group);
    return found == groupNames_->end() ? std::to_string(group) : found->second;
  }

  void AddMaterials(int iteration, bool ofElements, Membership& members)
  {
    if (!names602_) names602_.emplace(database_);
    const Mesh&                     mesh = region_.GetMesh(iteration);
    std::map<int, std::vector<int>> ids;
    for (const Mesh::Element& element : mesh.Elements()) {
      if (element.material == 0) continue;
      std::vector<int>& list = ids[element.material];
      if (ofElements)
        list.push_back(element.id);
      else
        for (const std::size_t node : mesh.NodesOf(element)) list.push_back(mesh.NodeIds()[node]);
    }
    for (const auto& [number, list] : ids) members.Add(NumberOf(names602_->MaterialOf(number)), list);
  }

  void AddSets(int iteration, bool ofElements, Membership& members)
  {
    const std::vector<NamedSet>& sets    = region_.GetSets(iteration);
    const auto                   isNodes = [&](const std::string& name) {
      return std::any_of(sets.begin(), sets.end(),
                                           [&](const NamedSet& set) { return !set.ofElements && set.name == name; });
    };
    for (const NamedSet& set : sets) {
      if (set.ofElements == ofElements)
        members.Add(NumberOf(set.name), set.ids);
      else if (set.ofElements && !isNodes(set.name))
        members.Add(NumberOf(set.name), NodesOfElements(region_.GetMesh(iteration), set.ids));
    }
  }

  const FED_Database&                                         database_;
  Region&                                                     region_;
  ExtremeRequest::Per                                         per_;
  std::vector<std::string>                                    names_;
  std::map<std::string, std::size_t>                          numbers_;
  std::map<std::pair<int, bool>, std::unique_ptr<Membership>> members_;
  std::optional<ModelNames>                                   names602_;
  std::optional<std::map<int, std::string>>                   groupNames_;
};

/// The values of a block's records, record by record: how many components a group, and whether records are lists of
/// groups.
struct BlockForm
{
  std::size_t numValues = 0;
  std::size_t field     = 1;  // counts from 1
  bool        isList    = false;
};

/// @return nothing for a block that has no components
std::optional<BlockForm> FormOf(const FED_BlockSpan& span, std::size_t numValues, int onf)
{
  const std::vector<int>& types  = span.GetFormat().GetTypes();
  const bool              isList = OnfKind::ListPeriodOf(onf) > 1;
  const std::size_t       field  = types.size();
  if (types.empty()) return std::nullopt;
  const FED_FieldType::Class last = FED_FieldType::GetClass(types.back());
  if (isList)
    return last == FED_FieldType::DoubleList ? std::optional<BlockForm>({numValues, field, true}) : std::nullopt;
  if (field != 1 || FED_FieldType::GetDoubleCount(last) != numValues) return std::nullopt;
  return BlockForm{numValues, 1, false};
}

/// Vectors, tensors or scalars of one block, side by side.
struct Batch
{
  std::size_t   count  = 0;
  const double* values = nullptr;  // shape [count, numValues]
  // One of the two, shape [count].
  const int*           ids     = nullptr;
  const std::uint32_t* indices = nullptr;
  const int*           points  = nullptr;  // null: records have one each
};

/// Of which values a ranking is: kind, component and number of the part.
struct RankingKey
{
  std::string kind;
  std::string component;
  std::size_t part = 0;

  bool operator<(const RankingKey& other) const
  {
    return std::tie(kind, component, part) < std::tie(other.kind, other.component, other.part);
  }

  template <typename Parcel>
  friend void Travel(Parcel& parcel, RankingKey& key)
  {
    parcel(key.kind, key.component, key.part);
  }
};

/// What the last place of each ranking has at least, as far as blocks were read, in whatever order. Who knows it passes
/// over what is better, which is on no place in the end and ties with none there: what is told stays the same. Shared
/// by threads.
class KnownLimits
{
public:
  /// @return nan where nothing is known
  double Get(const RankingKey& key) const
  {
    const std::lock_guard lock(mutex_);
    const auto            found = limits_.find(key);
    return found == limits_.end() ? std::numeric_limits<double>::quiet_NaN() : found->second;
  }

  /// @param ranking of any of the blocks
  void Learn(const RankingKey& key, const Ranking& ranking)
  {
    const double limit = ranking.GetLimit();
    if (std::isnan(limit)) return;
    const std::lock_guard lock(mutex_);
    double&               known = limits_.try_emplace(key, limit).first->second;
    known                       = std::max(known, limit);
  }

private:
  mutable std::mutex           mutex_;
  std::map<RankingKey, double> limits_;
};

/// What was found in blocks.
struct Findings
{
  std::map<RankingKey, Ranking> rankings;
  std::size_t                   numWithoutAxes = 0;
  std::size_t                   values         = 0;
  bool                          hasComponents  = false;
  std::vector<std::string>      notes          = {};  ///< of the region

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Findings& findings)
  {
    parcel(findings.rankings, findings.numWithoutAxes, findings.values, findings.hasComponents, findings.notes);
  }
};

class Search
{
public:
  /// @param database, region not shared with another search
  /// @param limits           shared with all searches of these blocks
  Search(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks, const StepTimes& times,
         Region& region, const ExtremeRequest& request, KnownLimits& limits)
      : database_(database),
        blocks_(blocks),
        times_(times),
        region_(region),
        request_(request),
        limits_(limits),
        kinds_(database),
        parts_(database, region, request.per),
        axes_(database, request.axes, request.database)
  {
    // What is wrong with the axes is told before the work begins.
    for (const FED_DataDescriptor& block : blocks)
      if (region.AppliesTo(block) && !ChosenOf(block).empty()) {
        static_cast<void>(TurnerOf(block));
        // Parts have their numbers before the first block is read: in every search of these blocks the same.
        if (!parts_.IsByRecord())
          static_cast<void>(parts_.PartOf(block));
        else if (OnfKind::IsOfMesh(OnfKind::OnfOf(block)))
          static_cast<void>(parts_.MembersOf(block));
      }
  }

  /// @return what is in the block alone
  Findings Explore(std::size_t number)
  {
    if (region_.AppliesTo(blocks_[number])) ReadBlock(number);
    found_.notes = region_.GetNotes();
    for (const auto& [key, ranking] : found_.rankings) limits_.Learn(key, ranking);
    return std::exchange(found_, {});
  }

  /// Takes what was found in a block, in their order.
  void Absorb(const Findings& findings)
  {
    for (const auto& [key, ranking] : findings.rankings) {
      Ranking& all = all_.rankings.try_emplace(key, request_.head).first->second;
      all.Absorb(ranking);
      limits_.Learn(key, all);
    }
    all_.numWithoutAxes += findings.numWithoutAxes;
    all_.values += findings.values;
    all_.hasComponents = all_.hasComponents || findings.hasComponents;
    AddNotes(all_.notes, findings.notes);
  }

  /// @return of all that was absorbed
  ExtremeReport MakeReport()
  {
    region_.SetNotes(all_.notes);
    if (!all_.hasComponents)
      Fail("no block of '" + request_.selectionText + "' has components" +
           (request_.per == ExtremeRequest::Group ? " and a group" : "") +
           ", expected scalars, vectors or tensors of nodes, elements or histories");
    ExtremeReport report;
    report.values         = all_.values;
    report.axes           = axes_.Describe();
    report.numWithoutAxes = all_.numWithoutAxes;
    std::vector<std::pair<Candidate, Extreme>> rows;
    for (const auto& [key, ranking] : all_.rankings) {
      report.nans += ranking.NumNans();
      for (const Candidate& candidate : ranking.GetWorst()) {
        Extreme extreme   = Describe(candidate);
        extreme.component = key.component;
        extreme.part      = parts_.GetName(key.part);
        extreme.ties      = ranking.CountTies(candidate);
        extreme.nans      = ranking.NumNans();
        rows.emplace_back(candidate, std::move(extreme));
      }
    }
    if (all_.values == 0 && !region_.IsEverything()) region_.FailEmpty(request_.selectionText);
    if (all_.values == 0 && parts_.IsByRecord())
      Fail("no record of '" + request_.selectionText + "' is in a " +
           (request_.per == ExtremeRequest::Material ? "material" : "set") + ", expected a database that names them");
    std::stable_sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.first.Precedes(b.first); });
    for (auto& [candidate, extreme] : rows) report.rows.push_back(std::move(extreme));
    return report;
  }

private:
  void ReadBlock(std::size_t number)
  {
    const FED_DataDescriptor&    descriptor = blocks_[number];
    const std::vector<Component> components = ChosenOf(descriptor);
    if (components.empty()) return;
    std::optional<std::size_t> part;
    const Membership*          members = nullptr;
    if (!parts_.IsByRecord()) {
      part = parts_.PartOf(descriptor);
      if (!part) return;
    } else {
      if (!OnfKind::IsOfMesh(OnfKind::OnfOf(descriptor))) return;
      members = &parts_.MembersOf(descriptor);
    }
    found_.hasComponents               = true;
    const RecordTurner          turner = TurnerOf(descriptor);
    const FED_DataBlock&        block  = database_.GetConstDataBlock(descriptor);
    std::optional<RegionFilter> filter;
    if (!region_.IsEverything()) filter = region_.FilterOf(block);

    const auto read = [&](const FED_BlockSpan& span) {
      ThrowIfInterrupted();
      const std::optional<BlockForm> form =
          FormOf(span, components.front().NumValues(), descriptor.GetInteger(FED_DataDescriptor::OnfId));
      if (!form) return;
      for (const Component& component : components) {
        std::vector<Ranking*> rankings;
        const Scan            scan{number,
                        component,
                        filter ? &*filter : nullptr,
                        members,
                        part ? &RankingOf(descriptor, component, *part) : nullptr,
                        rankings,
                        turner,
                        &component == &components.front()};
        if (form->isList)
          ScanLists(span, *form, scan);
        else
          ScanColumns(span, *form, scan);
      }
    };
    // Looking up the ids of all records takes longer than looking for the worst.
    if (filter || members != nullptr || turner.Turns())
      FED_ForEachSpan(block, database_.GetIdMapsPool(), read);
    else
      FED_ForEachSpan(block, read);
  }

  static constexpr std::size_t kMostAtOnce = 1024;  // values that stay near the processor

  struct Scan
  {
    std::size_t            block;
    const Component&       component;
    const RegionFilter*    filter;    // null: everything
    const Membership*      members;   // null: one part
    Ranking*               ranking;   // of the one part
    std::vector<Ranking*>& rankings;  // by part, null where nothing has come yet
    const RecordTurner&    turner;
    bool                   isFirst;  // of the components: places without axes count once
  };

  std::vector<Component> ChosenOf(const FED_DataDescriptor& descriptor) const
  {
    std::vector<Component> chosen = ComponentsOf(request_.selection, descriptor);
    if (!chosen.empty() || request_.selection.HasComponents()) return chosen;
    const int onf = descriptor.GetInteger(FED_DataDescriptor::OnfId);
    for (const std::string& name : ValueComponentsOf(onf)) chosen.emplace_back(name, onf);
    return chosen;
  }

  /// @return what turns a block; one of a kind without a place, such as a history, stays as it is
  RecordTurner TurnerOf(const FED_DataDescriptor& block)
  {
    axes_.Add(IterationOf(block));
    return axes_.TurnerOf(block);
  }

  /// Rankings stand in the order of kinds, as the components come, by part.
  Ranking& RankingOf(const FED_DataDescriptor& block, const Component& component, std::size_t part)
  {
    RankingKey key{kinds_.GetName(block), component.GetName(), part};
    auto       found = found_.rankings.find(key);
    if (found == found_.rankings.end()) {
      const Ranking ranking(request_.head, limits_.Get(key));
      found = found_.rankings.emplace(std::move(key), ranking).first;
    }
    return found->second;
  }

  double BadnessOf(double value) const noexcept
  {
    switch (request_.measure) {
      case ExtremeRequest::Least:
        return -value;
      case ExtremeRequest::Magnitude:
        return std::fabs(value);
      case ExtremeRequest::Greatest:
        break;
    }
    return value;
  }

  /// The ranking of a part of the block that is scanned.
  Ranking& RankingOf(std::size_t part, const Scan& scan)
  {
    if (scan.rankings.size() <= part) scan.rankings.resize(part + 1);
    Ranking*& ranking = scan.rankings[part];
    if (ranking == nullptr) ranking = &RankingOf(blocks_[scan.block], scan.component, part);
    return *ranking;
  }

  void Offer(double value, int id, int point, const Scan& scan, Ranking& ranking)
  {
    if (std::isnan(value)) return ranking.AddNan();
    const double badness = BadnessOf(value);
    if (ranking.Concerns(badness)) ranking.Offer({badness, value, scan.block, id, point});
  }

  /// @param badness nan: nothing is certainly better
  /// @return the limits between which values are certainly better
  std::pair<double, double> LimitsOf(double badness) const noexcept
  {
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    if (request_.measure == ExtremeRequest::Greatest) return {-kInfinite, badness};
    return {-badness, request_.measure == ExtremeRequest::Least ? kInfinite : badness};
  }

  /// Drops those of left_ that certainly change no ranking.
  void DropBetter(const Batch& batch, const Scan& scan)
  {
    const std::span<const double> values(batch.values, batch.count * scan.component.NumValues());
    if (scan.ranking != nullptr) {
      const auto [low, high] = LimitsOf(scan.ranking->GetLimit());
      return scan.component.KeepBeyond(values, {&low, &high}, left_);
    }
    lows_.resize(batch.count);
    highs_.resize(batch.count);
    for (const std::uint32_t i : left_) {
      double least = std::numeric_limits<double>::infinity();
      for (const std::size_t part : scan.members->PartsOf(batch.ids[i])) {
        const double limit = RankingOf(part, scan).GetLimit();
        if (!(limit >= least)) least = limit;
        if (std::isnan(limit)) break;
      }
      std::tie(lows_[i], highs_[i]) = LimitsOf(least);
    }
    scan.component.KeepBeyond(values, {lows_.data(), highs_.data(), 1}, left_);
  }

  /// Evaluates what may change a ranking. Some from all over the batch go first: their limits spare most of the others,
  /// even where values only rise.
  void TakeBatch(const Batch& batch, const Scan& scan)
  {
    left_.resize(batch.count);
    std::iota(left_.begin(), left_.end(), 0U);
    if (scan.ranking != nullptr) {
      found_.values += batch.count;
    } else {
      left_.erase(std::remove_if(left_.begin(), left_.end(),
                                 [&](std::uint32_t i) {
                                   const std::size_t numParts = scan.members->PartsOf(batch.ids[i]).size();
                                   found_.values += numParts;
                                   return numParts == 0;
                                 }),
                  left_.end());
    }
    for (const std::size_t every : {32U, 8U, 2U, 1U}) {
      DropBetter(batch, scan);
      std::size_t kept = 0;
      for (std::size_t k = 0; k < left_.size(); ++k) {
        if (k % every != 0)
          left_[kept++] = left_[k];
        else
          Take(batch, left_[k], scan);
      }
      left_.resize(kept);
      if (left_.empty()) break;
    }
  }

  void Take(const Batch& batch, std::uint32_t i, const Scan& scan)
  {
    const std::size_t numValues = scan.component.NumValues();
    const double      value     = scan.component.Evaluate(std::span(batch.values + i * numValues, numValues));
    const int         id        = batch.ids != nullptr ? batch.ids[i] : IdOf(batch.indices[i], scan);
    const int         point     = batch.points == nullptr ? 0 : batch.points[i];
    if (scan.ranking != nullptr) return Offer(value, id, point, scan, *scan.ranking);
    for (const std::size_t part : scan.members->PartsOf(id)) Offer(value, id, point, scan, RankingOf(part, scan));
  }

  int IdOf(std::uint32_t index, const Scan& scan) const
  {
    const int entity = OnfKind::EntityOf(blocks_[scan.block]);
    return entity >= OnfKind::HistoryEntity ? static_cast<int>(index) : database_.GetIdMapsPool().GetId(entity, index);
  }

  void ScanColumns(const FED_BlockSpan& span, const BlockForm& form, const Scan& scan)
  {
    const double* values = span.GetDoubles(form.field).GetData();
    if (span.GetIds().GetSize() == 0) {
      for (std::size_t first = 0; first < span.GetCount(); first += kMostAtOnce)
        TakeBatch({std::min(span.GetCount() - first, kMostAtOnce), values + first * form.numValues, nullptr,
                   span.GetIndices().GetData() + first, nullptr},
                  scan);
      return;
    }
    const int* ids = span.GetIds().GetData();
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      if (scan.filter != nullptr && !scan.filter->Holds(ids[i])) continue;
      const std::span<double> own = Gather(values + i * form.numValues, form.numValues, ids[i], 0, scan);
      if (!scan.turner.Turn(ids[i], own)) DropGathered(scan);
    }
    TakeGathered(scan);
  }

  void ScanLists(const FED_BlockSpan& span, const BlockForm& form, const Scan& scan)
  {
    const bool hasIds = span.GetIds().GetSize() != 0;
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      const int id = hasIds ? span.GetIds().GetData()[i] : IdOf(span.GetIndices().GetData()[i], scan);
      if (scan.filter != nullptr && !scan.filter->Holds(id)) continue;
      const auto        list     = span.GetDoubleList(form.field, i);
      const std::size_t numParts = list.GetSize() / form.numValues;
      for (std::size_t part = 0; part < numParts; ++part) {
        const double*           first = list.GetData() + part * form.numValues;
        const std::span<double> own   = Gather(first, form.numValues, id, static_cast<int>(part) + 1, scan);
        if (!scan.turner.TurnPart(id, part, numParts, own)) DropGathered(scan);
      }
    }
    TakeGathered(scan);
  }

  /// Copies values into the batch that is gathered, which is taken first where it is full.
  /// @return the copy
  std::span<double> Gather(const double* values, std::size_t numValues, int id, int point, const Scan& scan)
  {
    if (gatheredIds_.size() == kMostAtOnce) TakeGathered(scan);
    gathered_.insert(gathered_.end(), values, values + numValues);
    gatheredIds_.push_back(id);
    gatheredPoints_.push_back(point);
    return std::span(gathered_).last(numValues);
  }

  /// Takes back what was gathered last: there are no axes at its place.
  void DropGathered(const Scan& scan)
  {
    gathered_.resize(gathered_.size() - scan.component.NumValues());
    gatheredIds_.pop_back();
    gatheredPoints_.pop_back();
    if (scan.isFirst) ++found_.numWithoutAxes;
  }

  void TakeGathered(const Scan& scan)
  {
    TakeBatch({gatheredIds_.size(), gathered_.data(), gatheredIds_.data(), nullptr, gatheredPoints_.data()}, scan);
    gathered_.clear();
    gatheredIds_.clear();
    gatheredPoints_.clear();
  }

  Extreme Describe(const Candidate& candidate)
  {
    Extreme                   extreme;
    const FED_DataDescriptor& block = blocks_[candidate.block];
    extreme.block                   = block;
    extreme.kind                    = kinds_.GetName(block);
    extreme.value                   = candidate.value;
    extreme.id                      = candidate.id;
    extreme.point                   = candidate.point;
    extreme.step                    = GetResultStep(block);
    extreme.time                    = times_.TimeOf(block);
    if (block.GetInteger(FED_DataDescriptor::OnfId) == FED_OnfId_ScalarHistory) {
      extreme.step.SetInteger(FED_DataDescriptor::Substep, candidate.id);
      extreme.time = times_.TimeAt(block, candidate.id);
    }
    if (OnfKind::IsOfMesh(OnfKind::OnfOf(block)))
      Locate(OnfKind::EntityOf(block) == OnfKind::ElementEntity, IterationOf(block), extreme);
    return extreme;
  }

  void Locate(bool ofElements, int iteration, Extreme& extreme)
  {
    for (const NamedSet& set : region_.GetSets(iteration))
      if (set.ofElements == ofElements && std::find(set.ids.begin(), set.ids.end(), extreme.id) != set.ids.end())
        extreme.sets.push_back(set.name);
    if (!ofElements) extreme.type = "node";
    if (!database_.HasDataBlock(FED_DataDescriptor(iteration, OnfKind::Coordinates))) return;
    const Mesh& mesh = region_.GetMesh(iteration);
    if (!ofElements) {
      if (const auto node = mesh.FindNode(extreme.id)) extreme.place = mesh.Points()[*node];
      return;
    }
    const auto place = mesh.FindElement(extreme.id);
    if (!place) return;
    const Mesh::Element& element = mesh.Elements()[*place];
    if (!names_) names_.emplace(database_);
    extreme.place    = CentreOf(mesh, element);
    extreme.type     = names_->TypesOf(iteration).NameOf(element.id, element.frdType);
    extreme.material = element.material == 0 ? "" : names_->MaterialOf(element.material);
  }

  const FED_Database&                    database_;
  const std::vector<FED_DataDescriptor>& blocks_;
  const StepTimes&                       times_;
  Region&                                region_;
  const ExtremeRequest&                  request_;
  KnownLimits&                           limits_;
  KindTable                              kinds_;
  Parts                                  parts_;
  std::optional<ModelNames>              names_;
  IterationAxes                          axes_;
  // Of the batch that is taken: positions that may change a ranking, and their limits where these differ.
  std::vector<std::uint32_t> left_;
  std::vector<double>        lows_;
  std::vector<double>        highs_;
  // The batch that is gathered.
  std::vector<double> gathered_;
  std::vector<int>    gatheredIds_;
  std::vector<int>    gatheredPoints_;
  Findings            found_;  // in the block that is read
  Findings            all_;    // in what was absorbed
};

}  // namespace

ExtremeReport FindExtremes(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                           const StepTimes& times, Region& region, const ExtremeRequest& request, Listener* listener,
                           const Readers& readers)
{
  if (request.head == 0) Fail("the number of worst values is 0, expected 1 or more");
  KnownLimits    limits;
  Search         first(database, blocks, times, region, request, limits);
  Plan<Findings> plan;
  plan.units      = blocks.size();
  plan.state      = readers.state;
  plan.makeWorker = [&](bool isFirst) -> Plan<Findings>::Worker {
    if (isFirst) return [&first](std::size_t block) { return first.Explore(block); };
    struct Own
    {
      std::unique_ptr<StoredDatabase> stored;
      Region                          region;
      Search                          search;

      Own(std::unique_ptr<StoredDatabase> database, const std::vector<FED_DataDescriptor>& blocks,
          const StepTimes& times, const RegionOptions& options, const ExtremeRequest& request, KnownLimits& limits)
          : stored(std::move(database)),
            region(stored->Get(), options, request.database),
            search(stored->Get(), blocks, times, region, request, limits)
      {}
    };
    auto stored = readers.open();
    if (!stored) return {};
    const auto own = std::make_shared<Own>(std::move(stored), blocks, times, region.GetOptions(), request, limits);
    return [own](std::size_t block) { return own->search.Explore(block); };
  };
  plan.onProgress = [&](std::size_t done) {
    if (listener != nullptr) listener->Progress("reading", done, blocks.size(), "blocks");
  };
  CrewOrSelf crew(readers.crew);
  CarryOut(crew.Get(), std::move(plan), [&first](std::size_t, const Findings& findings) { first.Absorb(findings); });
  return first.MakeReport();
}

}  // namespace quilon
