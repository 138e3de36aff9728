#include "bundled/FED_DatabaseInspection.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

#include <bundled/OnfKinds.h>

#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"

#include "bundled/FED_FileLayer.h"
#include "bundled/FED_IdOrder.h"
#include "IdOrderLayout.h"
#include "KeyTable.h"
#include "Manifest.h"
#include "SegmentCheck.h"
#include "SegmentLink.h"
#include "SegmentStore.h"
#include "Statistics.h"
#include "StoredState.h"

namespace {

using Texts = std::vector<std::string>;

// The kind of ids that the catalogue does not know: there an index without an id is its own.
constexpr std::size_t kUnknownKind = OnfKind::UnknownEntity;

// Keeps what a call says of its failure.
// @return whether it succeeded
template <typename Call>
bool Attempt(Texts& failures, const Call& call)
{
  try {
    call();
    return true;
  } catch (const FED_Failure& failure) {
    failures.emplace_back(failure.what());
    return false;
  }
}

// A database's folder as far as it can be read.
class InspectedFolder
{
public:
  InspectedFolder(const std::filesystem::path& folder, FED_FileLayer& files) : folder_(folder), files_(files)
  {
    List();
  }

  // Opens the manifest's segments, again and again while a writer moves on.
  // @return whether there is a whole manifest
  bool OpenListed(Texts& findings)
  {
    for (;; List()) {
      std::string text;
      Texts       found;
      Clear();
      const bool isWhole = Attempt(found, [&] {
        text      = ReadManifestText(files_, folder_);
        state_    = FindState(files_, folder_, text);
        cutBytes_ = text.size() - std::min(text.size(), DecodeManifest(text, folder_).wholeBytes);
      });
      if (isWhole)
        for (const SegmentEntry& entry : state_.manifest.segments)
          if (!Attempt(found, [&] { OpenEntry(entry, found); })) isIncomplete_ = true;
      if (!found.empty() && HasMoved(text, isWhole)) continue;
      findings.insert(findings.end(), found.begin(), found.end());
      return isWhole;
    }
  }

  // Opens all segments that can be made out, and leaves out those that were merged into others.
  void OpenAll(Texts& findings)
  {
    Clear();
    isIncomplete_ = true;
    for (const std::string& name : names_)
      if (IsSegmentName(name)) Attempt(findings, [&] { OpenByName(name, findings); });
    const auto isPartOf = [](const SegmentEntry& part, const SegmentEntry& whole) {
      return part.number < whole.number && whole.first <= part.first && part.last <= whole.last;
    };
    std::vector<SegmentEntry> entries;
    for (const FoundSegment& found : segments_) entries.push_back(found.segment->GetEntry());
    std::erase_if(segments_, [&](const FoundSegment& found) {
      return std::any_of(entries.begin(), entries.end(),
                         [&](const SegmentEntry& other) { return isPartOf(found.segment->GetEntry(), other); });
    });
    std::sort(segments_.begin(), segments_.end(), [](const FoundSegment& a, const FoundSegment& b) {
      return a.segment->GetEntry().first < b.segment->GetEntry().first;
    });
  }

  // Puts together what the open segments hold.
  StoredState MakeState(Texts& findings) const
  {
    StoredState state([&](const Segment& segment, const std::string& text) {
      findings.push_back(segment.GetPath().string() + ": its index contradicts others: " + text);
    });
    for (const FoundSegment& found : segments_) state.ExpectDeleted(*found.segment);
    for (const FoundSegment& found : segments_) state.Add(*found.segment);
    state.RequireAllRows();
    return state;
  }

  Texts FindLeftovers() const
  {
    Texts leftovers;
    for (const std::string& name : names_) {
      const auto& segments = state_.manifest.segments;
      const auto  isOurs   = [&](const SegmentEntry& entry) { return IsFileOf(entry, name); };
      if (name == "manifest.new" || IsUnfinishedIdOrder(name) ||
          (IsFileOfSegment(name) && std::none_of(segments.begin(), segments.end(), isOurs)))
        leftovers.push_back(name);
    }
    if (cutBytes_ > 0) leftovers.push_back("the last " + std::to_string(cutBytes_) + " bytes of manifest");
    return leftovers;
  }

  // Files of orders by id.
  std::vector<std::filesystem::path> FindIdOrders() const
  {
    std::vector<std::filesystem::path> paths;
    for (const std::string& name : names_)
      if (IsIdOrderName(name)) paths.push_back(folder_ / name);
    return paths;
  }

  FED_FileLayer&                   GetFiles() const noexcept { return files_; }
  const Manifest&                  GetManifest() const noexcept { return state_.manifest; }
  const std::vector<FoundSegment>& GetSegments() const noexcept { return segments_; }
  // Files of linked segments, as the segments of other databases that they are.
  const std::vector<FoundSegment>& GetSharedFiles() const noexcept { return sharedFiles_; }
  // A segment is missing, or nobody knows whether one is.
  bool IsIncomplete() const noexcept { return isIncomplete_; }

private:
  void List()
  {
    RequireSuccess(files_.List(folder_, names_), folder_, "list");
    std::sort(names_.begin(), names_.end());
  }

  // Whether a writer has published since, or given up a commit that was whole already.
  // @param text    of the manifest that was read
  // @param isWhole it was
  bool HasMoved(const std::string& text, bool isWhole) const
  {
    bool  hasMoved = false;
    Texts failures;  // what cannot be read now is no other state
    Attempt(failures, [&] {
      const std::string now = ReadManifestText(files_, folder_);
      hasMoved              = now != text || (isWhole && FindState(files_, folder_, now).link != state_.link);
    });
    return hasMoved;
  }

  void Clear()
  {
    segments_.clear();
    sharedFiles_.clear();
    isIncomplete_ = false;
    cutBytes_     = 0;
  }

  void OpenEntry(const SegmentEntry& entry, Texts& findings)
  {
    if (entry.IsLinked())
      OpenLinked(entry, findings);
    else
      Open(GetSegmentName(entry.number), &entry, findings);
  }

  // Where no manifest tells.
  void OpenByName(const std::string& name, Texts& findings)
  {
    const std::string own = name.substr(0, name.rfind('.')) + ".index";
    if (std::binary_search(names_.begin(), names_.end(), own))
      OpenLinked(ReadLinkHeader(StoreFile(files_, folder_ / own, FED_FileLayer::Read)), findings);
    else
      Open(name, nullptr, findings);
  }

  void OpenLinked(const SegmentEntry& entry, Texts& findings)
  {
    StoreFile own(files_, folder_ / GetLinkIndexName(entry.number), FED_FileLayer::Read);
    if (!HasLinkHeader(own, entry))
      findings.push_back(own.GetPath().string() + ": its header is damaged; no value is concerned");
    const auto   open = [&] { return StoreFile(files_, folder_ / GetSegmentName(entry.number), FED_FileLayer::Read); };
    FoundSegment found;
    found.segment = std::make_unique<Segment>(open(), std::move(own), entry);
    segments_.push_back(std::move(found));
    // The other file is a whole segment by itself.
    sharedFiles_.push_back(FindSegment(open(), nullptr));
    const Texts& told = sharedFiles_.back().findings;
    findings.insert(findings.end(), told.begin(), told.end());
  }

  // @param entry null when no manifest tells
  void Open(const std::string& name, const SegmentEntry* entry, Texts& findings)
  {
    FoundSegment found = FindSegment(StoreFile(files_, folder_ / name, FED_FileLayer::Read), entry);
    findings.insert(findings.end(), found.findings.begin(), found.findings.end());
    if (found.segment != nullptr)
      segments_.push_back(std::move(found));
    else
      isIncomplete_ = true;
  }

  std::filesystem::path     folder_;
  FED_FileLayer&            files_;
  Texts                     names_;
  ManifestState             state_;
  std::vector<FoundSegment> segments_;  // all with a segment
  std::vector<FoundSegment> sharedFiles_;
  std::size_t               cutBytes_     = 0;  // of the manifest, that are no whole commit
  bool                      isIncomplete_ = false;
};

// The bytes of one extent, all checked.
struct ExtentBytes
{
  std::vector<std::uint32_t>             keys;
  std::uint32_t                          greatestKey;
  std::vector<std::vector<std::uint8_t>> columns;

  ExtentBytes(const StoredState::Block& block, const ExtentRef& extent)
  {
    const IndexExtent& rows = extent.Get();
    keys.resize(rows.rowCount);
    if (rows.keysAreRun)
      std::iota(keys.begin(), keys.end(), rows.firstKey);
    else
      extent.segment->Read(rows.keys, keys.data(), [&] { return DescribeKeys(block, rows); });
    greatestKey = *std::max_element(keys.begin(), keys.end());
    if (greatestKey > KeyTable::kMaxKey)
      ThrowFileFailure(extent.segment->GetPath(), DescribeKeys(block, rows) + " are damaged: one is " +
                                                      std::to_string(greatestKey) + ", expected 0 to 2147483647");
    for (std::size_t i = 0; i < block.columns.size(); ++i) {
      const StoredBytes& stored = GetIndexColumn(extent, i).bytes;
      columns.emplace_back(static_cast<std::size_t>(stored.bytes));
      extent.segment->Read(stored, columns.back().data(), [&] { return DescribeColumn(block, rows, i); });
      if (block.columns[i].isElements) RequireLengths(block, extent, i);
    }
  }

  std::uint32_t GetLength(std::size_t lengthColumn, std::size_t row) const
  {
    std::uint32_t length = 0;
    std::memcpy(&length, columns[lengthColumn].data() + 4 * row, 4);
    return length;
  }

  static const IndexColumn& GetIndexColumn(const ExtentRef& extent, std::size_t column)
  {
    return extent.segment->GetIndex().columns[extent.Get().firstColumn + column];
  }

private:
  void RequireLengths(const StoredState::Block& block, const ExtentRef& extent, std::size_t column) const
  {
    std::uint64_t elements = 0;
    for (std::size_t row = 0; row < keys.size(); ++row) elements += GetLength(column - 1, row);
    if (elements * GetElementBytes(block.columns[column].element) != columns[column].size())
      ThrowFileFailure(extent.segment->GetPath(), DescribeColumn(block, extent.Get(), column) +
                                                      " is damaged: the lists have " + std::to_string(elements) +
                                                      " elements, " + std::to_string(columns[column].size()) +
                                                      " bytes are there");
  }
};

void RequireGreatestKey(const StoredState::Block& block, const ExtentRef& extent, const ExtentBytes& bytes)
{
  const IndexExtent& rows = extent.Get();
  if (bytes.greatestKey != rows.maxKey)
    ThrowFileFailure(extent.segment->GetPath(), DescribeKeys(block, rows) + ": the greatest is " +
                                                    std::to_string(bytes.greatestKey) + ", the index tells " +
                                                    std::to_string(rows.maxKey));
}

void RequireStatistics(const StoredState::Block& block, const ExtentRef& extent, const ExtentBytes& bytes)
{
  for (std::size_t i = 0; i < block.columns.size(); ++i) {
    if (i + 1 < block.columns.size() && block.columns[i + 1].isElements) continue;
    ColumnStatistics        statistics;
    const ColumnStatistics& stored = ExtentBytes::GetIndexColumn(extent, i).statistics;
    AddStatistics(block.columns[i].element, bytes.columns[i].data(), bytes.columns[i].size(), statistics);
    if (statistics.values != stored.values || statistics.nans != stored.nans || statistics.least != stored.least ||
        statistics.greatest != stored.greatest)
      ThrowFileFailure(extent.segment->GetPath(),
                       DescribeColumn(block, extent.Get(), i) + ": the index tells another range than the values have");
  }
}

// Blocks in the order of their uids, so that reports do not depend on hashing.
std::vector<const StoredState::Block*> SortBlocks(const StoredState& state)
{
  std::vector<const StoredState::Block*> blocks;
  for (const auto& [uid, block] : state.GetBlocks()) blocks.push_back(&block);
  std::sort(blocks.begin(), blocks.end(), [](const auto* a, const auto* b) { return a->stored.uid < b->stored.uid; });
  return blocks;
}

// A row keeps its index for ever: where extents share rows, readers refuse those that have another for one.
void RequireSameKeys(const StoredState::Block& block, const ExtentRef& extent, const std::vector<std::uint32_t>& keys,
                     std::vector<std::uint32_t>& ofChunk, std::uint32_t firstRow)
{
  const std::size_t begin = extent.Get().firstRow - firstRow;
  if (ofChunk.size() < begin + keys.size()) ofChunk.resize(begin + keys.size(), KeyTable::kNone);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::uint32_t former = std::exchange(ofChunk[begin + i], keys[i]);
    if (former != KeyTable::kNone && former != keys[i])
      ThrowFileFailure(extent.segment->GetPath(),
                       DescribeKeys(block, extent.Get()) + ": row " + std::to_string(extent.Get().firstRow + i) +
                           " has " + std::to_string(keys[i]) + ", an earlier segment tells " + std::to_string(former));
  }
}

// Checks a chunk, and that its record indices are new.
// @return whether all of it can be read
bool CheckChunk(const StoredState::Block& block, const ExtentList& extents, KeyTable& keys, FED_DatabaseReport& report)
{
  bool                                    isWhole = true;
  std::vector<std::vector<std::uint32_t>> keysOfExtents(extents.size());
  std::vector<std::uint32_t>              keysOfChunk;
  std::uint32_t                           firstRow = std::numeric_limits<std::uint32_t>::max();
  for (const ExtentRef& extent : extents) firstRow = std::min(firstRow, extent.Get().firstRow);
  for (std::size_t i = 0; i < extents.size(); ++i) {
    ++report.extents;
    const bool isRead = Attempt(report.findings, [&] {
      ExtentBytes bytes(block, extents[i]);
      RequireGreatestKey(block, extents[i], bytes);
      RequireStatistics(block, extents[i], bytes);
      RequireSameKeys(block, extents[i], bytes.keys, keysOfChunk, firstRow);
      keysOfExtents[i] = std::move(bytes.keys);
    });
    isWhole           = isWhole && isRead;
  }
  for (const VisibleRows& visible : FindVisibleRows(extents)) {
    if (keysOfExtents[visible.extent].empty()) continue;
    const std::uint32_t first = extents[visible.extent].Get().firstRow;
    for (std::uint32_t row = visible.begin; row < visible.end; ++row) {
      const std::uint32_t key = keysOfExtents[visible.extent][row - first];
      if (keys.Find(key) == KeyTable::kNone) {
        const auto count = static_cast<std::uint32_t>(keys.GetCount());
        keys.Prepare(key, count);
        keys.Insert(key, count);
      } else {
        report.findings.push_back("block " + block.stored.descriptor.ToString() + ": record index " +
                                  std::to_string(key) + " is there twice");
      }
    }
  }
  return isWhole;
}

void CheckBlock(const StoredState::Block& block, FED_DatabaseReport& report)
{
  KeyTable keys;  // those of dense records take no memory
  bool     isWhole = true;
  for (const auto& [chunk, extents] : block.chunks) isWhole = CheckChunk(block, extents, keys, report) && isWhole;
  ++report.blocks;
  report.records += keys.GetCount();
  if (isWhole && keys.GetCount() != block.stored.rowCount)
    report.findings.push_back("block " + block.stored.descriptor.ToString() + ": " + std::to_string(keys.GetCount()) +
                              " records can be read, expected " + std::to_string(block.stored.rowCount));
}

// Ids of a kind that can be read: runs by the index of their first. An index claims a place, not memory.
using IdRuns = std::map<std::size_t, std::vector<int>>;

IdRuns ReadIds(const StoredState& state, std::size_t kind, Texts& failures)
{
  const std::string name = "the id map of entity kind " + std::to_string(kind);
  IdRuns            runs;
  for (const StoredState::IdPiece& piece : state.GetIds(kind)) {
    const IndexIds&  stored = piece.Get();
    std::vector<int> ids(static_cast<std::size_t>(stored.ids.bytes / 4));
    if (Attempt(failures, [&] { piece.segment->Read(stored.ids, ids.data(), [&] { return name; }); }))
      runs[stored.firstIndex] = std::move(ids);
  }
  return runs;
}

std::optional<int> FindId(const IdRuns& runs, std::size_t index)
{
  auto run = runs.upper_bound(index);
  if (run == runs.begin()) return std::nullopt;
  --run;
  const std::size_t at = index - run->first;
  return at < run->second.size() ? std::optional(run->second[at]) : std::nullopt;
}

void CheckIds(const StoredState& state, FED_DatabaseReport& report)
{
  for (std::size_t kind = 0; kind < StoredState::kNumKinds; ++kind) {
    std::unordered_set<int> known;
    for (const auto& [first, ids] : ReadIds(state, kind, report.findings))
      for (const int id : ids)
        if (!known.insert(id).second)
          report.findings.push_back("the id map of entity kind " + std::to_string(kind) + ": id " + std::to_string(id) +
                                    " is there twice");
  }
}

using AliveExtents = std::set<std::pair<const Segment*, std::size_t>>;

AliveExtents FindAlive(const StoredState& state)
{
  AliveExtents alive;
  for (const auto& [uid, block] : state.GetBlocks())
    for (const auto& [chunk, extents] : block.chunks)
      for (const ExtentRef& extent : extents) alive.emplace(extent.segment, extent.position);
  return alive;
}

// Checks the bytes of a segment that belong to no value.
void CheckUnused(const FoundSegment& found, const AliveExtents& alive, FED_DatabaseReport& report)
{
  Attempt(report.findings, [&] {
    if (!found.header) return;
    const auto  isChecked = [&](std::size_t extent) { return alive.count({found.segment.get(), extent}) > 0; };
    const Texts damage    = FindDamage(*found.segment, *found.header, isChecked);
    report.findings.insert(report.findings.end(), damage.begin(), damage.end());
  });
}

// Checks all bytes of a file that is shared with another database.
void CheckSharedFile(const FoundSegment& found, FED_DatabaseReport& report)
{
  Attempt(report.findings, [&] {
    if (!found.header || found.segment == nullptr) return;
    const Texts damage = FindDamage(*found.segment, *found.header, nullptr);
    report.findings.insert(report.findings.end(), damage.begin(), damage.end());
  });
}

// Checks all bytes of an order by id. Whether its blocks are as they were is for those to tell who use it.
void CheckIdOrder(FED_FileLayer& files, const std::filesystem::path& path, FED_DatabaseReport& report)
{
  Attempt(report.findings, [&] {
    const FED_IdOrder order(files, path);
    for (std::uint64_t page = 0; page < order.GetPageCount(); ++page)
      Attempt(report.findings, [&] { order.CheckPage(page); });
  });
}

void CheckDescriptors(const StoredState& state, FED_DatabaseReport& report)
{
  std::map<FED_DataDescriptor, BlockUid> known;
  for (const StoredState::Block* block : SortBlocks(state))
    if (!known.emplace(block->stored.descriptor, block->stored.uid).second)
      report.findings.push_back("block " + block->stored.descriptor.ToString() + " is there twice");
}

// Copies what is whole into a database.
class Salvage
{
public:
  // @param isIncomplete segments are lost
  Salvage(const StoredState& state, FED_Database& target, FED_SalvageReport& report, bool isIncomplete)
      : state_(state), target_(target), report_(report), isIncomplete_(isIncomplete)
  {}

  void Run()
  {
    for (const auto& [onf, name] : state_.GetNames()) target_.SetUserKindName(static_cast<FED_OnfId>(onf), name);
    for (std::size_t kind = 0; kind < StoredState::kNumKinds; ++kind) CopyIds(kind);
    for (const StoredState::Block* block : SortBlocks(state_)) CopyBlock(*block);
    // Records at indices without an id are nothing unusual, but after a loss their ids may have been there.
    for (std::size_t kind = 0; isIncomplete_ && kind < kUnknownKind; ++kind)
      if (maps_[kind].withoutId > 0)
        report_.losses.push_back("the id map of entity kind " + std::to_string(kind) + ": " +
                                 std::to_string(maps_[kind].withoutId) + " records are kept at indices without an id");
  }

private:
  // As long as all ids are known, indices stay as they are.
  void CopyIds(std::size_t kind)
  {
    Texts     failures;
    IdMap&    map     = maps_[kind];
    auto&     losses  = report_.losses;
    const int number  = static_cast<int>(kind);
    map.ids           = ReadIds(state_, kind, failures);
    map.count         = state_.GetIdCount(kind);
    std::size_t known = 0;
    for (const auto& [first, ids] : map.ids) known += ids.size();
    map.isWhole = known == map.count;
    losses.insert(losses.end(), failures.begin(), failures.end());
    if (known < map.count)
      losses.push_back("the id map of entity kind " + std::to_string(kind) + ": " + std::to_string(map.count - known) +
                       " ids are lost");
    for (const auto& [first, ids] : map.ids)
      for (const int id : ids) target_.GetIdMapsPool().FindOrAddIndex(number, id);
  }

  std::optional<std::size_t> TranslateIndex(std::size_t kind, std::uint32_t index)
  {
    if (kind >= maps_.size()) return index;
    IdMap& map = maps_[kind];
    if (index > map.count) ++map.withoutId;
    if (map.isWhole) return index;
    const std::optional<int> id = FindId(map.ids, index);
    if (!id) return std::nullopt;
    return target_.GetIdMapsPool().FindOrAddIndex(static_cast<int>(kind), *id);
  }

  void CopyBlock(const StoredState::Block& block)
  {
    const StoredBlock& stored = block.stored;
    if (target_.HasDataBlock(stored.descriptor)) {
      report_.losses.push_back("block " + stored.descriptor.ToString() + " is there twice: the later one is lost");
      return;
    }
    FED_DataBlock& to = *target_.CreateDataBlock(stored.descriptor, stored.rowCount, 0, stored.format.ToString());
    ++report_.blocks;
    for (const auto& [chunk, extents] : block.chunks) CopyChunk(block, extents, to);
  }

  void CopyChunk(const StoredState::Block& block, const ExtentList& extents, FED_DataBlock& to)
  {
    std::vector<std::optional<ExtentBytes>> bytes(extents.size());
    for (std::size_t i = 0; i < extents.size(); ++i)
      Attempt(report_.losses, [&] { bytes[i].emplace(block, extents[i]); });
    for (const VisibleRows& visible : FindVisibleRows(extents)) {
      // Rows of a damaged run are lost even where an earlier run has them: those are not what they were last.
      if (!bytes[visible.extent])
        report_.lostRecords += visible.end - visible.begin;
      else
        CopyRows(block, *bytes[visible.extent], extents[visible.extent].Get().firstRow, visible, to);
    }
  }

  void CopyRows(const StoredState::Block& block, const ExtentBytes& bytes, std::uint32_t firstRow,
                const VisibleRows& visible, FED_DataBlock& to)
  {
    const auto kind = static_cast<std::size_t>(OnfKind::EntityOf(block.stored.descriptor));
    if (block.columns.size() == 1 && block.columns[0].element == StoredColumn::Float64 && !block.columns[0].isElements)
      return CopyDoubles(kind, block.columns[0].width, bytes, firstRow, visible, to);
    // Where the elements of the next row's list begin, by column.
    std::vector<std::size_t> places(block.columns.size());
    FED_DataRecord*          record = to.CreateDataRecord();
    for (std::uint32_t row = 0; row < visible.end - firstRow; ++row) {
      const std::vector<std::size_t> begins = places;
      for (std::size_t i = 0; i < places.size(); ++i)
        places[i] += GetElementBytes(block.columns[i].element) *
                     (block.columns[i].isElements ? bytes.GetLength(i - 1, row) : block.columns[i].width);
      if (row < visible.begin - firstRow) continue;
      const std::optional<std::size_t> index = TranslateIndex(kind, bytes.keys[row]);
      if (!index) {
        ++report_.lostRecords;
        continue;
      }
      for (std::size_t i = 0; i < places.size(); ++i)
        SetField(block.columns, i, bytes.columns[i].data() + begins[i], places[i] - begins[i], *record);
      to.SetRecord(*index, *record);
      ++report_.records;
    }
    to.DeleteDataRecord(record);
  }

  // Of one field of doubles, as most results are: without a record between, in a third of the time.
  void CopyDoubles(std::size_t kind, std::size_t width, const ExtentBytes& bytes, std::uint32_t firstRow,
                   const VisibleRows& visible, FED_DataBlock& to)
  {
    std::array<double, 6> values{};
    const std::size_t     rowBytes = width * sizeof(double);
    for (std::uint32_t row = visible.begin - firstRow; row < visible.end - firstRow; ++row) {
      const std::optional<std::size_t> index = TranslateIndex(kind, bytes.keys[row]);
      if (!index) {
        ++report_.lostRecords;
        continue;
      }
      std::memcpy(values.data(), bytes.columns.front().data() + row * rowBytes, rowBytes);
      to.SetValuesAt(*index, values.data());
      ++report_.records;
    }
  }

  template <typename T>
  static std::vector<T> Take(const std::uint8_t* bytes, std::size_t count)
  {
    std::vector<T> values(count / sizeof(T));
    if (count > 0) std::memcpy(values.data(), bytes, count);
    return values;
  }

  static void SetField(const std::vector<StoredColumn>& columns, std::size_t column, const std::uint8_t* bytes,
                       std::size_t count, FED_DataRecord& record)
  {
    const StoredColumn& stored = columns[column];
    const std::size_t   field  = stored.field;
    switch (stored.element) {
      case StoredColumn::UInt32:
        break;  // lengths
      case StoredColumn::Char:
        record.SetString(field, std::string(reinterpret_cast<const char*>(bytes), count));
        break;
      case StoredColumn::Float32:
        record.SetFloat(field, Take<float>(bytes, count).front());
        break;
      case StoredColumn::Int32:
        if (stored.isElements)
          record.SetIntList(field, Take<int>(bytes, count));
        else
          record.SetInteger(field, Take<int>(bytes, count).front());
        break;
      default: {
        const std::vector<double> values = Take<double>(bytes, count);
        if (stored.isElements)
          record.SetDoubleList(field, values);
        else if (stored.width == 1)
          record.SetDouble(field, values.front());
        else if (stored.width == 3)
          record.SetVector(field, values.data());
        else
          record.SetTensor(field, values.data());
        break;
      }
    }
  }

  struct IdMap
  {
    IdRuns        ids;
    std::size_t   count     = 0;  // the index of the last id
    bool          isWhole   = true;
    std::uint64_t withoutId = 0;  // records at indices behind the last id
  };

  const StoredState&                        state_;
  FED_Database&                             target_;
  FED_SalvageReport&                        report_;
  bool                                      isIncomplete_;
  std::array<IdMap, StoredState::kNumKinds> maps_;
};

}  // namespace

struct FED_DatabaseInspector::State
{
  State(const std::filesystem::path& folder, FED_FileLayer* files)
      : inspected(folder, files != nullptr ? *files : ownFiles)
  {
    if (!inspected.OpenListed(frame.findings)) return;
    frame.leftovers  = inspected.FindLeftovers();
    frame.generation = inspected.GetManifest().generation;
    frame.segments   = inspected.GetManifest().segments.size();
    state            = inspected.MakeState(frame.findings);
    for (const SegmentEntry& entry : inspected.GetManifest().segments) frame.fileBytes += entry.fileBytes;
    for (const FoundSegment& found : inspected.GetSegments()) frame.deadBytes += found.segment->GetDeadBytes();
    CheckDescriptors(*state, frame);
    for (const FoundSegment& found : inspected.GetSegments())
      Attempt(frame.findings, [&] { RequireBlocksBelow(*found.segment, inspected.GetManifest().nextBlock); });
    alive  = FindAlive(*state);
    blocks = SortBlocks(*state);
    orders = inspected.FindIdOrders();
  }

  FED_FileLayer                          ownFiles;
  InspectedFolder                        inspected;
  FED_DatabaseReport                     frame;
  std::optional<StoredState>             state;
  AliveExtents                           alive;
  std::vector<const StoredState::Block*> blocks;
  std::vector<std::filesystem::path>     orders;
};

FED_DatabaseInspector::FED_DatabaseInspector(const std::filesystem::path& folder, FED_FileLayer* files)
    : state_(std::make_unique<State>(folder, files))
{}

FED_DatabaseInspector::~FED_DatabaseInspector() = default;

const FED_DatabaseReport& FED_DatabaseInspector::GetFrame() const noexcept { return state_->frame; }

// Segments, shared files, blocks, the id maps, then orders by id.
std::size_t FED_DatabaseInspector::CountParts() const noexcept
{
  if (!state_->state) return 0;
  return state_->inspected.GetSegments().size() + state_->inspected.GetSharedFiles().size() + state_->blocks.size() +
         1 + state_->orders.size();
}

FED_DatabaseReport FED_DatabaseInspector::CheckPart(std::size_t part) const
{
  FED_DatabaseReport report;
  const auto&        segments = state_->inspected.GetSegments();
  const auto&        shared   = state_->inspected.GetSharedFiles();
  if (part < segments.size()) {
    CheckUnused(segments[part], state_->alive, report);
    return report;
  }
  part -= segments.size();
  if (part < shared.size()) {
    CheckSharedFile(shared[part], report);
    return report;
  }
  part -= shared.size();
  if (part < state_->blocks.size())
    CheckBlock(*state_->blocks[part], report);
  else if (part == state_->blocks.size())
    CheckIds(*state_->state, report);
  else
    CheckIdOrder(state_->inspected.GetFiles(), state_->orders[part - state_->blocks.size() - 1], report);
  return report;
}

void FED_AddPart(const FED_DatabaseReport& part, FED_DatabaseReport& report)
{
  report.blocks += part.blocks;
  report.records += part.records;
  report.extents += part.extents;
  report.findings.insert(report.findings.end(), part.findings.begin(), part.findings.end());
}

FED_DatabaseReport FED_InspectDatabase(const std::filesystem::path& folder, FED_FileLayer* files)
{
  const FED_DatabaseInspector inspector(folder, files);
  FED_DatabaseReport          report = inspector.GetFrame();
  for (std::size_t part = 0; part < inspector.CountParts(); ++part) FED_AddPart(inspector.CheckPart(part), report);
  return report;
}

FED_SalvageReport FED_SalvageDatabase(const std::filesystem::path& folder, FED_Database& target, FED_FileLayer* files)
{
  FED_FileLayer     ownFiles;
  FED_SalvageReport report;
  InspectedFolder   inspected(folder, files != nullptr ? *files : ownFiles);
  report.hasManifest = inspected.OpenListed(report.losses);
  if (!report.hasManifest) inspected.OpenAll(report.losses);
  const std::size_t damages = report.losses.size();
  const StoredState state   = inspected.MakeState(report.losses);
  Salvage(state, target, report, inspected.IsIncomplete() || report.losses.size() > damages).Run();
  return report;
}
