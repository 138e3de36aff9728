#include "bundled/FED_ResultDatabase.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include <bundled/OnfKinds.h>

#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "QuilonUtilities/FED_Failure.h"

#include "bundled/FED_LockFileLayer.h"
#include "bundled/FED_RecordFormat.h"
#include "ChunkCache.h"
#include "DbFailure.h"
#include "DirtyRows.h"
#include "IdOrderLayout.h"
#include "IdOrderWriter.h"
#include "ResultDataBlock.h"
#include "SegmentStore.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_ResultDatabase";

bool Fixes(const FED_DataDescriptorPattern& pattern, int index) noexcept { return pattern.criteria[index].mode == 0; }

// Makes a descriptor that does not match the least one behind it that may.
// @return false when there is none
bool PassOver(const FED_DataDescriptorPattern& pattern, FED_DataDescriptor& descriptor) noexcept
{
  int index = 0;
  while (!Fixes(pattern, index) || descriptor.values[index] == pattern.criteria[index].value) ++index;
  if (descriptor.values[index] < pattern.criteria[index].value) {
    descriptor.values[index] = pattern.criteria[index].value;
  } else {
    // The last value before it that may be another one goes up.
    do --index;
    while (index >= 0 && (Fixes(pattern, index) || descriptor.values[index] == std::numeric_limits<int>::max()));
    if (index < 0) return false;
    ++descriptor.values[index];
  }
  for (++index; index < FED_DataDescriptor::kNumIndices; ++index)
    descriptor.values[index] =
        Fixes(pattern, index) ? pattern.criteria[index].value : std::numeric_limits<int>::lowest();
  descriptor.mask = 0;
  return true;
}

SegmentStore::Access GetStoreAccess(FED_ResultDatabase::Access access) noexcept
{
  switch (access) {
    case FED_ResultDatabase::ReadOnly:
      return SegmentStore::ReadOnly;
    case FED_ResultDatabase::ReadWrite:
      return SegmentStore::ReadWrite;
    default:
      return SegmentStore::Create;
  }
}

constexpr std::size_t kUsualReaderLimit = std::size_t{16} << 20;
constexpr std::size_t kUsualWriterLimit = std::size_t{64} << 20;
constexpr std::size_t kUsualMost        = std::size_t{1} << 30;
constexpr std::size_t kLeastShare       = std::size_t{8} << 20;

std::size_t GetMemoryLimit(FED_ResultDatabase::Access access, const FED_ResultDatabaseOptions& options) noexcept
{
  if (options.memoryLimit != FED_ResultDatabaseOptions::kUsualLimit) return options.memoryLimit;
  const std::size_t usual = access == FED_ResultDatabase::ReadOnly ? kUsualReaderLimit : kUsualWriterLimit;
  return std::max(usual / options.shares, kLeastShare);
}

std::size_t GetMostMemory(const FED_ResultDatabaseOptions& options) noexcept
{
  if (options.memoryLimit != FED_ResultDatabaseOptions::kUsualLimit) return options.memoryLimit;
  return std::max(kUsualMost / options.shares, kLeastShare);
}

// Calls visit(entry) for the blocks of a pattern, ascending. Descriptors are ordered by their values, so all that share
// the values up to one that the pattern does not admit are passed over at once.
template <typename Blocks, typename Visit>
void VisitMatches(const Blocks& blocks, const FED_DataDescriptorPattern& pattern, Visit visit)
{
  // Where few descriptors are passed over, looking at each is cheaper than searching.
  constexpr int kMaxSteps = 4;
  for (auto at = blocks.begin(); at != blocks.end();) {
    if (pattern.Matches(at->first)) {
      visit(*at);
      ++at;
      continue;
    }
    FED_DataDescriptor next = at->first;
    if (!PassOver(pattern, next)) return;
    int steps = 0;
    do ++at;
    while (at != blocks.end() && at->first < next && ++steps < kMaxSteps);
    if (at != blocks.end() && at->first < next) at = blocks.lower_bound(next);
  }
}

void AddRows(const std::vector<DirtyRows>& dirty, const SegmentStore& store, SegmentContents& contents)
{
  for (const DirtyRows& rows : dirty) {
    contents.rows.push_back(&rows);
    const bool isNew =
        contents.rows.size() == 1 || contents.rows[contents.rows.size() - 2]->GetBlock() != rows.GetBlock();
    if (!isNew) continue;
    StoredBlock block = rows.GetOwner().Describe();
    if (store.IsUndeclared(block)) contents.blocks.push_back(std::move(block));
  }
}

}  // namespace

struct FED_ResultDatabase::Disk
{
  Disk(const std::filesystem::path& folder, Access access, const FED_ResultDatabaseOptions& options,
       std::function<void()> spill)
      : store(folder, GetStoreAccess(access), options.files != nullptr ? *options.files : ownFiles),
        cache(store, GetMemoryLimit(access, options), GetMostMemory(options), std::move(spill))
  {}

  Disk(const std::filesystem::path& folder, const FED_DatabasePart& part, const FED_ResultDatabaseOptions& options,
       std::function<void()> spill)
      : store(folder, part, options.files != nullptr ? *options.files : ownFiles),
        cache(store, GetMemoryLimit(Create, options), GetMostMemory(options), std::move(spill))
  {}

  FED_LockFileLayer            ownFiles;
  SegmentStore                 store;
  ChunkCache                   cache;
  std::set<FED_DataDescriptor> undeclared;  // blocks that are new, or whose format is
  std::vector<BlockUid>        deleted;     // blocks that the store has
  bool                         namesChanged = false;
  // By entity kind, how many ids there have to be for ever, since linked records stand at indices behind them; 0: any.
  std::array<std::size_t, FED_ResultIdMapsPool::kNumKinds> fixedIds{};
};

namespace {

std::vector<std::string> ListIdOrders(const SegmentStore& store)
{
  std::vector<std::string> names;
  RequireSuccess(store.GetFiles().List(store.GetFolder(), names), store.GetFolder(), "list");
  std::erase_if(names, [](const std::string& name) { return !IsIdOrderName(name); });
  std::sort(names.begin(), names.end());
  return names;
}

using Translations = std::array<KeyTranslation, FED_ResultIdMapsPool::kNumKinds>;

// Adds the ids of a kind.
// @return the indices here by those there; empty when they are the same
KeyTranslation TakeIds(const SegmentStore& from, int kind, FED_ResultIdMapsPool& pool)
{
  std::vector<std::int32_t> ids(from.GetIdCount(kind));
  if (!ids.empty()) from.ReadIds(kind, ids.data());
  KeyTranslation keys(ids.size() + 1);
  bool           isSame = true;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    keys[i + 1] = static_cast<std::uint32_t>(pool.FindOrAddIndex(kind, ids[i]));
    isSame      = isSame && keys[i + 1] == i + 1;
  }
  if (isSame) keys.clear();
  return keys;
}

}  // namespace

FED_ResultDatabase::FED_ResultDatabase() = default;

FED_ResultDatabase::FED_ResultDatabase(const std::filesystem::path& folder, Access access,
                                       const FED_ResultDatabaseOptions& options)
    : disk_(std::make_unique<Disk>(folder, access, options, [this] { WriteRows(); }))
{
  std::vector<const StoredBlock*> stored = disk_->store.GetBlocks();
  std::sort(stored.begin(), stored.end(),
            [](const StoredBlock* a, const StoredBlock* b) { return a->descriptor < b->descriptor; });
  for (const StoredBlock* block : stored) {
    if (!blocks_.empty() && blocks_.rbegin()->first == block->descriptor)
      ThrowBlockFailure(block->descriptor, "the database " + folder.string() + " has it twice", kTag);
    blocks_.emplace_hint(blocks_.end(), block->descriptor, Entry{block->uid, nullptr});
  }
  idMaps_.Attach(disk_->store);
  userKindNames_ = disk_->store.GetUserKindNames();
}

FED_ResultDatabase::FED_ResultDatabase(const std::filesystem::path& folder, const FED_DatabasePart& part,
                                       const FED_PartBase& base, const FED_ResultDatabaseOptions& options)
    : disk_(std::make_unique<Disk>(folder, part, options, [this] { WriteRows(); })), userKindNames_(base.userKindNames)
{
  for (std::size_t kind = 0; kind < base.ids.size(); ++kind)
    for (const int id : base.ids[kind]) idMaps_.FindOrAddIndex(static_cast<int>(kind), id);
  idMaps_.MarkStored();
}

FED_ResultDatabase::~FED_ResultDatabase() = default;

bool FED_ResultDatabase::IsInitialized() const { return true; }

void FED_ResultDatabase::Commit() { Publish(false); }

void FED_ResultDatabase::Compact() { Publish(true); }

FED_CompactionPiece FED_ResultDatabase::CompactPiece(std::uint64_t room)
{
  if (disk_ == nullptr) return {};
  Publish(false);
  const SegmentStore::Piece piece = disk_->store.CompactPiece(room);
  return {piece.segments, piece.bytesBefore, piece.bytesAfter, piece.keptSegments, piece.keptBytes, piece.roomForAll};
}

FED_CompactionPiece FED_ResultDatabase::GetCompactionRest(std::uint64_t room) const
{
  if (disk_ == nullptr) return {};
  const SegmentStore::Piece rest = disk_->store.GetCompactionRest(room);
  return {0, 0, 0, rest.keptSegments, rest.keptBytes, rest.roomForAll};
}

FED_LinkReport FED_ResultDatabase::LinkBlocks(const std::filesystem::path&           source,
                                              const std::vector<FED_DataDescriptor>& descriptors)
{
  if (disk_ == nullptr)
    throw FED_Failure("FED_ResultDatabase: a database in memory takes no files, expected one on disk", kTag);
  RequireWriter();
  const SegmentStore                               from(source, SegmentStore::ReadOnly, disk_->store.GetFiles());
  std::map<FED_DataDescriptor, const StoredBlock*> known;
  for (const StoredBlock* block : from.GetBlocks()) known[block->descriptor] = block;
  for (const FED_DataDescriptor& descriptor : descriptors) {
    if (known.count(descriptor) == 0)
      ThrowBlockFailure(descriptor, "the database " + source.string() + " has no such block", kTag);
    if (HasDataBlock(descriptor)) ThrowBlockFailure(descriptor, "the database has it already", kTag);
  }
  Translations translations;
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind) {
    const auto at    = static_cast<std::size_t>(kind);
    translations[at] = TakeIds(from, kind, idMaps_);
    if (disk_->fixedIds[at] > 0 && idMaps_.GetCount(kind) != disk_->fixedIds[at])
      ThrowFileFailure(source, "it has ids of entity kind " + std::to_string(kind) +
                                   " that would become those of records that have none");
  }
  const KeyTranslation                same;
  std::vector<LinkedBlock>            linked;
  std::map<FED_DataDescriptor, Entry> made;
  for (const FED_DataDescriptor& descriptor : descriptors) {
    const StoredBlock& block = *known[descriptor];
    if (block.rowCount == 0) {
      CreateDataBlock(descriptor, 0, 0, block.format.ToString());
      continue;
    }
    const auto onf  = static_cast<FED_OnfId>(descriptor.values[FED_DataDescriptor::OnfId]);
    const int  kind = FED_OnfInfoPool::GetOnfInfo(onf).GetEntityKind();
    const auto at   = static_cast<std::size_t>(kind);
    linked.push_back({block.uid, disk_->store.TakeUid(), &same});
    if (kind < FED_ResultIdMapsPool::kNumKinds) {
      linked.back().keys = &translations[at];
      if (block.maxKey > from.GetIdCount(kind)) {
        if (!translations[at].empty() || idMaps_.GetCount(kind) != from.GetIdCount(kind))
          ThrowBlockFailure(descriptor, "a record stands at an index that no id has; it has no place beside other ids",
                            kTag);
        disk_->fixedIds[at] = idMaps_.GetCount(kind);
      }
    }
    made.emplace(descriptor, Entry{linked.back().here, nullptr});
  }
  const SegmentStore::Linked report = disk_->store.Link(from, linked);
  blocks_.merge(made);
  return {report.segments, report.copies, report.linkedBytes, report.copiedBytes};
}

std::vector<FED_DatabasePart> FED_ResultDatabase::ReserveParts(std::size_t count)
{
  if (disk_ == nullptr)
    throw FED_Failure("FED_ResultDatabase: a database in memory has no parts, expected one on disk", kTag);
  std::vector<FED_DatabasePart> parts(count);
  for (FED_DatabasePart& part : parts) part = disk_->store.ReservePart();
  return parts;
}

FED_PartBase FED_ResultDatabase::GetPartBase() const
{
  FED_PartBase base;
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind) {
    std::vector<int>& ids = base.ids.emplace_back(idMaps_.GetCount(kind));
    for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = idMaps_.GetId(kind, i + 1);
  }
  base.userKindNames = userKindNames_;
  return base;
}

std::uint64_t FED_ResultDatabase::FinishPart()
{
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind) {
    const FED_ResultIdMapsPool::Growth growth = idMaps_.GetGrowth(kind);
    if (growth.ids.GetSize() > 0)
      throw FED_Failure("FED_ResultDatabase: a part has id " + std::to_string(growth.ids.GetData()[0]) +
                            " of entity kind " + std::to_string(kind) + ", expected ids of its database alone",
                        kTag);
  }
  if (disk_ == nullptr || disk_->namesChanged)
    throw FED_Failure("FED_ResultDatabase: expected a part without names of its own", kTag);
  WriteChanges(false);
  return disk_->store.HandOver();
}

std::vector<FED_DataDescriptor> FED_ResultDatabase::TakePart(const FED_DatabasePart& part, std::uint64_t segment)
{
  std::vector<FED_DataDescriptor> descriptors;
  RequireWriter();
  if (segment == 0) return descriptors;
  std::unique_ptr<Segment>            opened = disk_->store.OpenPart(part, segment);
  std::map<FED_DataDescriptor, Entry> taken;
  for (const StoredBlock& block : opened->GetIndex().blocks) taken.emplace(block.descriptor, Entry{block.uid, nullptr});
  disk_->store.TakePart(std::move(opened));
  for (const auto& [descriptor, entry] : taken) {
    descriptors.push_back(descriptor);
    if (HasDataBlock(descriptor)) DeleteDataBlock(descriptor);
  }
  blocks_.merge(taken);
  return descriptors;
}

std::uint64_t FED_ResultDatabase::GetBlockPrint(const FED_DataDescriptor& descriptor) const
{
  const auto found = blocks_.find(descriptor);
  if (disk_ == nullptr || found == blocks_.end() || disk_->store.FindBlock(found->second.uid) == nullptr)
    ThrowBlockFailure(descriptor, "no such block is on disk", kTag);
  const auto onf = static_cast<FED_OnfId>(descriptor.values[FED_DataDescriptor::OnfId]);
  return disk_->store.GetPrint(found->second.uid, FED_OnfInfoPool::GetOnfInfo(onf).GetEntityKind());
}

std::uint64_t FED_ResultDatabase::GetRowPrint(const FED_DataDescriptor& descriptor) const
{
  const auto found = blocks_.find(descriptor);
  if (disk_ == nullptr || found == blocks_.end() || disk_->store.FindBlock(found->second.uid) == nullptr)
    ThrowBlockFailure(descriptor, "no such block is on disk", kTag);
  return disk_->store.GetPrint(found->second.uid, FED_ResultIdMapsPool::kNumKinds);
}

FED_IdOrders FED_ResultDatabase::OpenIdOrders() const
{
  FED_IdOrders found;
  if (disk_ == nullptr) return found;
  for (const std::string& name : ListIdOrders(disk_->store)) {
    try {
      found.orders.emplace_back(disk_->store.GetFiles(), disk_->store.GetFolder() / name);
    } catch (const FED_Failure& failure) {
      found.failures.emplace_back(failure.what());
    }
  }
  return found;
}

FED_IdOrderReport FED_ResultDatabase::WriteIdOrder(const std::vector<FED_DataDescriptor>& descriptors,
                                                   std::size_t                            memory)
{
  if (disk_ == nullptr)
    throw FED_Failure("FED_ResultDatabase: a database in memory takes no order by id, expected one on disk", kTag);
  RequireWriter();
  std::vector<IdOrderSource> sources;
  std::size_t                width = 0;
  for (const FED_DataDescriptor& descriptor : descriptors) {
    const ResultDataBlock& block = RequireBlock(descriptor);
    const std::size_t      own =
        block.GetRecordFormat().GetTypes().size() == 1 ? block.GetRecordFormat().GetDoubleCount() : 0;
    if (own == 0 || block.GetRecordCount() == 0)
      ThrowBlockFailure(descriptor, "has no place in an order by id, expected records of one, three or six doubles",
                        kTag);
    if (width != 0 && own != width)
      ThrowBlockFailure(descriptor, "has other records than the block before it, expected one format", kTag);
    width = own;
    sources.push_back({{descriptor, GetRowPrint(descriptor)}, &block});
    sources.back().block.descriptor.cached[0] = sources.back().block.descriptor.cached[1] = -1;
  }
  if (sources.empty()) throw FED_Failure("FED_ResultDatabase: an order by id of no block, expected some", kTag);
  const WrittenIdOrder written =
      ::WriteIdOrder(disk_->store.GetFiles(), disk_->store.GetFolder(), sources, width, memory);
  return {written.file, written.rowCount, written.fileBytes, written.temporaryBytes};
}

std::vector<std::string> FED_ResultDatabase::RemoveStaleIdOrders()
{
  return RemoveIdOrders([this](const std::filesystem::path& path) {
    const std::optional<FED_IdOrder> order = FED_IdOrder::Find(disk_->store.GetFiles(), path);
    if (!order) return true;  // it helps nobody
    const auto& blocks = order->GetBlocks();
    const auto  alive =
        std::count_if(blocks.begin(), blocks.end(), [this](const FED_OrderedBlock& block) { return IsAsItWas(block); });
    return 2 * static_cast<std::size_t>(alive) < blocks.size();
  });
}

std::vector<std::string> FED_ResultDatabase::RemoveIdOrders()
{
  return RemoveIdOrders([](const std::filesystem::path&) { return true; });
}

std::vector<std::string> FED_ResultDatabase::RemoveIdOrders(
    const std::function<bool(const std::filesystem::path&)>& isUnwanted)
{
  std::vector<std::string> removed;
  if (disk_ == nullptr) return removed;
  RequireWriter();
  for (std::string& name : ListIdOrders(disk_->store)) {
    const std::filesystem::path path = disk_->store.GetFolder() / name;
    if (!isUnwanted(path)) continue;
    RequireSuccess(disk_->store.GetFiles().Remove(path), path, "remove");
    removed.push_back(std::move(name));
  }
  return removed;
}

bool FED_ResultDatabase::IsAsItWas(const FED_OrderedBlock& block) const
{
  const auto found = blocks_.find(block.descriptor);
  return found != blocks_.end() && disk_ != nullptr && disk_->store.FindBlock(found->second.uid) != nullptr &&
         GetRowPrint(block.descriptor) == block.print;
}

std::uint64_t FED_ResultDatabase::GetGeneration() const noexcept
{
  return disk_ == nullptr ? 0 : disk_->store.GetGeneration();
}

FED_DataBlock* FED_ResultDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                                   std::size_t, const std::string&                   recordFormat)
{
  RequireWriter();
  const FED_RecordFormat format = FED_RecordFormat::Parse(recordFormat);
  ResultDataBlock*       block  = FindBlock(descriptor);
  if (block == nullptr) return &MakeBlock(descriptor, format, firstSize);
  const FED_RecordFormat& present = block->GetRecordFormat();
  if (!format.IsEmpty() && !present.IsEmpty() && !(present == format))
    ThrowBlockFailure(
        descriptor, "the record format is \"" + present.ToString() + "\", \"" + format.ToString() + "\" was asked for",
        kTag);
  block->Expect(firstSize);
  if (present.IsEmpty() && !format.IsEmpty()) {
    if (disk_ != nullptr) disk_->undeclared.insert(block->GetDescriptor());
    block->SetRecordFormat(format);
  }
  return block;
}

FED_DataBlock& FED_ResultDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor,
                                                        std::size_t               expectedRecords)
{
  if (ResultDataBlock* block = FindBlock(descriptor)) {
    block->Expect(expectedRecords);
    return *block;
  }
  RequireWriter();
  const auto onf = static_cast<FED_OnfId>(descriptor.values[FED_DataDescriptor::OnfId]);
  return MakeBlock(descriptor, FED_RecordFormat::Parse(FED_OnfInfoPool::GetOnfInfo(onf).GetRecordFormat()),
                   expectedRecords);
}

bool FED_ResultDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  return blocks_.count(descriptor) > 0;
}

const FED_DataBlock& FED_ResultDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  return RequireBlock(descriptor);
}

FED_DataBlock& FED_ResultDatabase::GetDataBlock(const FED_DataDescriptor& descriptor)
{
  return RequireBlock(descriptor);
}

std::vector<FED_DataBlock*> FED_ResultDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  std::vector<FED_DataBlock*> blocks;
  VisitMatches(blocks_, pattern, [&](const auto& block) { blocks.push_back(&Open(block.second)); });
  return blocks;
}

void FED_ResultDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor)
{
  RequireWriter();
  const auto found = blocks_.find(descriptor);
  if (found == blocks_.end()) ThrowBlockFailure(descriptor, "the database has no such block", kTag);
  if (disk_ != nullptr) {
    if (disk_->store.FindBlock(found->second.uid) != nullptr) disk_->deleted.push_back(found->second.uid);
    disk_->undeclared.erase(descriptor);
  }
  blocks_.erase(found);
}

std::vector<FED_DataDescriptor> FED_ResultDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  std::vector<FED_DataDescriptor> descriptors;
  VisitMatches(blocks_, pattern, [&](const auto& block) { descriptors.push_back(block.first); });
  return descriptors;
}

FED_ResultIdMapsPool& FED_ResultDatabase::GetIdMapsPool() { return idMaps_; }

const FED_ResultIdMapsPool& FED_ResultDatabase::GetIdMapsPool() const { return idMaps_; }

std::string FED_ResultDatabase::GetUserKindName(FED_OnfId onf) const
{
  const auto found = userKindNames_.find(onf);
  return found == userKindNames_.end() ? std::string() : found->second;
}

void FED_ResultDatabase::SetUserKindName(FED_OnfId onf, const std::string& name)
{
  if (!OnfKind::IsUserKind(onf))
    throw FED_Failure("FED_ResultDatabase: ONF id " + std::to_string(static_cast<int>(onf)) +
                          " takes no name, expected a user kind, 1000 to 1999",
                      kTag);
  RequireWriter();
  if (name == GetUserKindName(onf)) return;  // else a commit would write all names anew
  if (name.empty())
    userKindNames_.erase(onf);
  else
    userKindNames_[onf] = name;
  if (disk_ != nullptr) disk_->namesChanged = true;
}

void FED_ResultDatabase::RequireWriter() const
{
  if (disk_ != nullptr) disk_->store.RequireWriter();
}

ResultDataBlock* FED_ResultDatabase::FindBlock(const FED_DataDescriptor& descriptor) const
{
  const auto found = blocks_.find(descriptor);
  return found == blocks_.end() ? nullptr : &Open(found->second);
}

ResultDataBlock& FED_ResultDatabase::Open(const Entry& entry) const
{
  if (entry.block == nullptr)
    entry.block = std::make_unique<ResultDataBlock>(*disk_->store.FindBlock(entry.uid), disk_->cache);
  return *entry.block;
}

ResultDataBlock& FED_ResultDatabase::RequireBlock(const FED_DataDescriptor& descriptor) const
{
  ResultDataBlock* block = FindBlock(descriptor);
  if (block == nullptr) ThrowBlockFailure(descriptor, "the database has no such block", kTag);
  return *block;
}

ResultDataBlock& FED_ResultDatabase::MakeBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format,
                                               std::size_t expectedRecords)
{
  FED_DataDescriptor key = descriptor;
  key.cached[0]          = -1;
  key.cached[1]          = -1;
  Entry entry;
  if (disk_ == nullptr) {
    entry.block = std::make_unique<ResultDataBlock>(key, format);
  } else {
    entry.uid   = disk_->store.TakeUid();
    entry.block = std::make_unique<ResultDataBlock>(key, format, entry.uid, disk_->cache);
  }
  // May write other blocks' rows to the disk, and fail: nothing knows of the block before.
  entry.block->Expect(expectedRecords);
  const auto made = blocks_.emplace(key, std::move(entry)).first;
  try {
    if (disk_ != nullptr) disk_->undeclared.insert(key);
  } catch (...) {
    blocks_.erase(made);
    throw;
  }
  return *made->second.block;
}

// Gives the store the rows that it does not have. Until a commit they are there for this object alone.
void FED_ResultDatabase::WriteRows()
{
  const std::vector<DirtyRows> dirty = CollectDirty(disk_->cache);
  SegmentContents              contents;
  AddRows(dirty, disk_->store, contents);
  disk_->store.Write(contents);
  // Nothing throws from here on.
  disk_->cache.MarkClean();
}

// Gives the store all that it does not have.
// @param isCommit the store publishes it at once
void FED_ResultDatabase::WriteChanges(bool isCommit)
{
  const std::vector<DirtyRows> dirty = CollectDirty(disk_->cache);
  SegmentContents              contents;
  AddRows(dirty, disk_->store, contents);
  for (const FED_DataDescriptor& descriptor : disk_->undeclared) {
    const StoredBlock block = FindBlock(descriptor)->Describe();
    // Blocks with new rows are there by now.
    if (block.rowCount == 0 && disk_->store.IsUndeclared(block)) contents.blocks.push_back(block);
  }
  contents.deleted = disk_->deleted;
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind) {
    const FED_ResultIdMapsPool::Growth growth = idMaps_.GetGrowth(kind);
    if (growth.ids.GetSize() > 0) contents.ids.push_back({kind, growth.firstIndex, growth.ids});
  }
  contents.hasNames = disk_->namesChanged;
  if (contents.hasNames) contents.names.assign(userKindNames_.begin(), userKindNames_.end());
  disk_->store.Write(contents, isCommit);
  // Nothing throws from here on.
  disk_->cache.MarkClean();
  disk_->undeclared.clear();
  disk_->deleted.clear();
  idMaps_.MarkStored();
  disk_->namesChanged = false;
}

void FED_ResultDatabase::Publish(bool compacts)
{
  if (disk_ == nullptr) return;
  WriteChanges(!compacts);
  disk_->store.Publish(compacts);
}
