#include "SegmentStore.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "QuilonUtilities/FED_Failure.h"

#include "Checksum.h"
#include "IdOrderLayout.h"
#include "SegmentCheck.h"
#include "SegmentMerge.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|SegmentStore";

// A manifest of more bytes is none: that of a database with the most segments has some 20 KiB.
constexpr std::uint64_t kMaxManifestBytes = std::uint64_t{1} << 24;

// Commits that are appended to a manifest before it is written anew.
constexpr std::size_t kMaxAppended = 64;

constexpr const char* kMayBeInForce = "; the commit may be in force all the same";

constexpr std::string_view kLockName        = "lock";  // and what begins with it: files that stand for locks
constexpr const char*      kManifestName    = "manifest";
constexpr const char*      kNewManifestName = "manifest.new";
constexpr const char* kUnpublishedName = "unpublished";  // a mark of programs that make a database, until they commit

// "NAME.fed/" is "NAME.fed", and has a folder above it.
std::filesystem::path Normalize(const std::filesystem::path& folder)
{
  return folder.has_filename() || !folder.has_parent_path() ? folder : folder.parent_path();
}

std::filesystem::path GetFolderAbove(const std::filesystem::path& folder)
{
  return folder.has_parent_path() ? folder.parent_path() : std::filesystem::path(".");
}

// @param error of a call behind which a commit may be in force
void RequireCommitted(const std::error_code& error, const std::filesystem::path& path, const char* action)
{
  if (error) ThrowFileFailure(path, std::string("cannot ") + action + ": " + error.message() + kMayBeInForce);
}

// Throws the failure that is being handled once more, and says that a commit may be in force.
[[noreturn]] void RethrowInDoubt()
{
  try {
    throw;
  } catch (const FED_Failure& failure) {
    throw FED_Failure(failure.GetMessage() + kMayBeInForce, kTag);
  }
}

enum class Unlisted
{
  None,   // no segment follows the state
  Taken,  // one does, and is a whole commit
  Other   // one does, and is cut, damaged, or no commit by itself
};

// Reads a segment that is a commit by itself.
// @param commit receives its header; nothing for any other segment and for one that is not whole
// @return whether the segment is there
bool ReadCommit(FED_FileLayer& files, const std::filesystem::path& path, std::optional<SegmentHeader>& commit)
{
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  const std::error_code error  = files.Open(path, FED_FileLayer::Read, handle);
  commit                       = std::nullopt;
  if (error == std::errc::no_such_file_or_directory) return false;
  RequireSuccess(error, path, "open");
  commit = FindWholeCommit(StoreFile(files, path, handle));
  return true;
}

// Takes the commit that follows the state if its segment is there and whole.
Unlisted TakeUnlistedCommit(FED_FileLayer& files, const std::filesystem::path& folder, ManifestState& state)
{
  const std::uint64_t          number = state.manifest.nextSegment;
  std::optional<SegmentHeader> header;
  if (!ReadCommit(files, folder / GetSegmentName(number), header)) return Unlisted::None;
  if (!header || header->entry.number != number || header->entry.first != number || header->entry.last != number)
    return Unlisted::Other;
  const CommitMark& mark = *header->commit;
  if (mark.previous != state.link || mark.generation != state.manifest.generation + 1) return Unlisted::Other;
  AppendCommit(state, header->entry, mark.nextBlock);
  return Unlisted::Taken;
}

// A commit that did not happen has no commits behind it: each is durable before the next begins. What is linked may
// have been a commit of another database.
bool HasLaterCommit(FED_FileLayer& files, const std::filesystem::path& folder, const Manifest& manifest)
{
  std::vector<std::string> names;
  RequireSuccess(files.List(folder, names), folder, "list");
  for (const std::string& name : names) {
    if (!IsSegmentName(name)) continue;
    const std::string own = name.substr(0, name.rfind('.')) + ".index";
    if (std::find(names.begin(), names.end(), own) != names.end()) continue;
    std::optional<SegmentHeader> header;
    ReadCommit(files, folder / name, header);  // one that a writer has removed meanwhile is none
    if (header && header->entry.number > manifest.nextSegment && header->commit->generation > manifest.generation + 1)
      return true;
  }
  return false;
}

std::uint64_t MakeHandle(std::uint64_t segment, std::uint64_t extent) noexcept { return segment << 32 | extent; }

}  // namespace

std::string ReadManifestText(FED_FileLayer& files, const std::filesystem::path& folder)
{
  const std::filesystem::path path   = GetManifestPath(folder);
  FED_FileLayer::Handle       handle = FED_FileLayer::kNoHandle;
  const std::error_code       error  = files.Open(path, FED_FileLayer::Read, handle);
  if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
    ThrowFileFailure(folder, "not a database: it has no manifest");
  RequireSuccess(error, path, "open");
  const StoreFile     file(files, path, handle);
  const std::uint64_t size = file.GetSize();
  if (size > kMaxManifestBytes) ThrowFileFailure(path, "not the manifest of a database, or damaged");
  std::string text(static_cast<std::size_t>(size), '\0');
  file.ReadAt(0, text.data(), text.size());
  return text;
}

std::filesystem::path GetManifestPath(const std::filesystem::path& folder) { return folder / kManifestName; }

ManifestState FindState(FED_FileLayer& files, const std::filesystem::path& folder, const std::string& text)
{
  ManifestState state = DecodeManifest(text, GetManifestPath(folder));
  if (state.version == 1) return state;
  for (Unlisted found = Unlisted::Taken; found == Unlisted::Taken;) {
    found = TakeUnlistedCommit(files, folder, state);
    if (found != Unlisted::Other || !HasLaterCommit(files, folder, state.manifest)) continue;
    // A writer at work may have finished it while the others were looked at.
    found = TakeUnlistedCommit(files, folder, state);
    if (found != Unlisted::Taken)
      ThrowFileFailure(folder / GetSegmentName(state.manifest.nextSegment),
                       "damaged: it was a commit, as those behind it tell; salvage saves what is whole");
  }
  return state;
}

void RequireBlocksBelow(const Segment& segment, BlockUid next)
{
  BlockUid greatest = 0;
  for (const StoredBlock& block : segment.GetIndex().blocks) greatest = std::max(greatest, block.uid);
  for (const BlockUid uid : segment.GetIndex().deleted) greatest = std::max(greatest, uid);
  if (greatest >= next)
    ThrowFileFailure(segment.GetPath(), "its index is damaged: it has a block of number " + std::to_string(greatest) +
                                            ", the manifest says that all are below " + std::to_string(next));
}

namespace {

// The paths of a segment that is closed and gone.
std::vector<std::filesystem::path> TakePaths(std::unique_ptr<Segment>& segment)
{
  std::vector<std::filesystem::path> paths = segment->GetPaths();
  segment.reset();
  return paths;
}

}  // namespace

// A merge that is written but not yet in force.
struct SegmentStore::Merged
{
  std::vector<OpenSegment>           segments;  // all; those that stay are moved in when the merge comes into force
  std::size_t                        first = 0;
  std::size_t                        count = 0;
  std::vector<std::filesystem::path> replaced;
  std::unique_ptr<Segment>           segment;  // null when nothing was alive
  StoredState::Replacement           replacement;
};

SegmentStore::SegmentStore(const std::filesystem::path& folder, Access access, FED_FileLayer& files)
    : folder_(Normalize(folder)), files_(&files)
{
  if (access == ReadOnly) {
    OpenForReading();
    return;
  }
  try {
    if (access == Create)
      CreateEmpty();
    else
      OpenForWriting();
  } catch (...) {
    Abandon();
    throw;
  }
}

SegmentStore::~SegmentStore() { Abandon(); }

// Removes what is not published. Where it is not certain what is, it stays for the next writer to tell.
void SegmentStore::Abandon() noexcept
{
  if (isUncertain_) return;
  if (isWriter_) RemoveGarbage();
  RemoveLostParts();
  // Nobody can be told of what fails here; the next writer removes what is left.
  for (OpenSegment& open : segments_) {
    if (open.isPublished) continue;
    for (const std::filesystem::path& path : TakePaths(open.segment)) static_cast<void>(files_->Remove(path));
  }
  // One of them was a commit by itself: no loss of power brings it back.
  if (mark_) static_cast<void>(files_->FlushFolder(folder_));
  if (isWriter_ && !isInManifest_ && !isPart_) {
    static_cast<void>(files_->Remove(folder_ / kNewManifestName));
    static_cast<void>(files_->Remove(folder_ / kLockName));
    lock_ = StoreFile();  // with a file of its own, where there is one
  }
  if (isFolderOurs_) static_cast<void>(files_->Remove(folder_));
}

std::vector<StoredExtent> SegmentStore::GetExtents(BlockUid block, std::uint32_t chunk) const
{
  std::vector<StoredExtent> extents;
  const StoredState::Block* found = state_.FindBlock(block);
  if (found == nullptr) return extents;
  const auto list = found->chunks.find(chunk);
  if (list == found->chunks.end()) return extents;
  extents.reserve(list->second.size());
  std::size_t position = 0;
  for (const ExtentRef& extent : list->second) {
    // Extents come in the order of segments.
    while (segments_[position].segment.get() != extent.segment) ++position;
    const IndexExtent& rows = extent.Get();
    StoredExtent       stored;
    stored.firstRow   = rows.firstRow;
    stored.rowCount   = rows.rowCount;
    stored.handle     = MakeHandle(position, extent.position);
    stored.keysAreRun = rows.keysAreRun;
    stored.firstKey   = rows.firstKey;
    stored.maxKey     = rows.maxKey;
    extents.push_back(stored);
  }
  return extents;
}

std::uint64_t SegmentStore::GetBytes(const StoredExtent& extent, std::size_t column) const
{
  return FindSegment(extent).GetIndex().columns[FindExtent(extent).firstColumn + column].bytes.bytes;
}

void SegmentStore::Read(const StoredExtent& extent, std::size_t column, void* out) const
{
  const IndexExtent& rows = FindExtent(extent);
  const Segment&     from = FindSegment(extent);
  from.Read(from.GetIndex().columns[rows.firstColumn + column].bytes, out,
            [&] { return DescribeColumn(*state_.FindBlock(rows.block), rows, column); });
}

SegmentStore::Place SegmentStore::GetPlace(const StoredExtent& extent, std::size_t column) const
{
  const Segment& from = FindSegment(extent);
  return {from.GetPath(), from.GetIndex().columns[FindExtent(extent).firstColumn + column].bytes.offset};
}

void SegmentStore::ReadKeys(const StoredExtent& extent, std::uint32_t* keys) const
{
  const IndexExtent& rows = FindExtent(extent);
  FindSegment(extent).Read(rows.keys, keys, [&] { return DescribeKeys(*state_.FindBlock(rows.block), rows); });
}

ColumnStatistics SegmentStore::GetStatistics(const StoredExtent& extent, std::size_t column) const
{
  return FindSegment(extent).GetIndex().columns[FindExtent(extent).firstColumn + column].statistics;
}

std::size_t SegmentStore::GetIdCount(int kind) const { return state_.GetIdCount(static_cast<std::size_t>(kind)); }

void SegmentStore::ReadIds(int kind, std::int32_t* ids) const
{
  for (const StoredState::IdPiece& piece : state_.GetIds(static_cast<std::size_t>(kind))) {
    const IndexIds& stored = piece.Get();
    piece.segment->Read(stored.ids, ids + (stored.firstIndex - 1),
                        [&] { return "the id map of entity kind " + std::to_string(kind); });
  }
}

std::vector<const StoredBlock*> SegmentStore::GetBlocks() const
{
  std::vector<const StoredBlock*> blocks;
  blocks.reserve(state_.GetBlocks().size());
  for (const auto& [uid, block] : state_.GetBlocks()) blocks.push_back(&block.stored);
  return blocks;
}

const StoredBlock* SegmentStore::FindBlock(BlockUid uid) const noexcept
{
  const StoredState::Block* block = state_.FindBlock(uid);
  return block == nullptr ? nullptr : &block->stored;
}

std::uint64_t SegmentStore::GetPrint(BlockUid block, int kind) const
{
  const StoredState::Block&  found = *state_.FindBlock(block);
  std::vector<std::uint64_t> numbers{found.stored.rowCount, found.stored.chunkShift};
  for (const int type : found.stored.format.GetTypes()) numbers.push_back(static_cast<std::uint64_t>(type));
  for (const auto& [chunk, extents] : found.chunks)
    for (const ExtentRef& extent : extents) {
      const IndexExtent& rows = extent.Get();
      numbers.insert(numbers.end(), {rows.firstRow, rows.rowCount, rows.keysAreRun ? rows.firstKey : rows.maxKey,
                                     rows.keysAreRun ? 0 : rows.keys.checksum});
      for (std::size_t i = 0; i < rows.columnCount; ++i)
        numbers.push_back(extent.segment->GetIndex().columns[rows.firstColumn + i].bytes.checksum);
    }
  if (kind < static_cast<int>(StoredState::kNumKinds))
    for (const StoredState::IdPiece& piece : state_.GetIds(static_cast<std::size_t>(kind)))
      numbers.insert(numbers.end(), {piece.Get().firstIndex, piece.Get().ids.bytes, piece.Get().ids.checksum});
  return GetChecksum(numbers.data(), numbers.size() * sizeof(std::uint64_t));
}

void SegmentStore::RequireWriter() const
{
  if (!isWriter_) ThrowFileFailure(folder_, "cannot write: the database is open for reading only");
  if (isHalfLinked_)
    ThrowFileFailure(folder_,
                     "cannot write: taking blocks of another database in failed before; open the database again");
  if (isOutOfStep_) ThrowFileFailure(folder_, "cannot write: memory ran out before; open the database again");
}

bool SegmentStore::IsUndeclared(const StoredBlock& block) const noexcept
{
  const StoredBlock* stored = FindBlock(block.uid);
  if (stored == nullptr) return true;
  return stored->rowCount == 0 && (!(stored->format == block.format) || stored->chunkShift != block.chunkShift);
}

void SegmentStore::Write(const SegmentContents& contents, bool isLast)
{
  RequireWriter();
  if (contents.IsEmpty()) return;
  MergeUnpublished();  // first: what fails here leaves the contents unwritten
  std::map<BlockUid, const StoredBlock*> declared;
  for (const StoredBlock& block : contents.blocks) declared[block.uid] = &block;
  const auto describe = [&](BlockUid uid) -> const StoredBlock& {
    const auto found = declared.find(uid);
    return found != declared.end() ? *found->second : state_.FindBlock(uid)->stored;
  };
  SegmentEntry entry;
  entry.number = entry.first = entry.last = TakeSegmentNumber();
  mark_.reset();
  const auto choose = [&](std::uint64_t fileBytes) {
    if (isLast) mark_ = ChooseCommitMark(entry.number, fileBytes);
    return mark_;
  };
  segments_.reserve(segments_.size() + 1);
  try {
    segments_.push_back({WriteSegment(*files_, folder_, entry, contents, describe, choose), false});
  } catch (...) {
    // One that stays, and is whole, is a commit; one that a loss of power brings back is, too.
    const bool mayStay =
        mark_ && (files_->Remove(folder_ / GetSegmentName(entry.number)) || files_->FlushFolder(folder_));
    mark_.reset();
    if (!mayStay) throw;
    isUncertain_ = true;
    RethrowInDoubt();
  }
  // When memory runs out from here on, part of the contents counts as written and part does not. Then nothing is
  // published any more by this object.
  isOutOfStep_ = true;
  state_.Add(*segments_.back().segment);
  isOutOfStep_ = false;
}

SegmentStore::Linked SegmentStore::Link(const SegmentStore& source, const std::vector<LinkedBlock>& blocks)
{
  RequireWriter();
  // Rows that count, by segment and in the order of its index.
  std::map<const Segment*, std::map<std::size_t, const LinkedBlock*>> rowsOf;
  for (const LinkedBlock& block : blocks)
    for (const auto& [chunk, extents] : source.state_.FindBlock(block.there)->chunks)
      for (const ExtentRef& extent : extents) rowsOf[extent.segment].emplace(extent.position, &block);
  Linked             linked;
  std::set<BlockUid> declared;  // uids here
  mark_.reset();
  isHalfLinked_ = true;
  for (const OpenSegment& open : source.segments_) {
    const auto found = rowsOf.find(open.segment.get());
    if (found == rowsOf.end()) continue;
    std::vector<LinkedRows> rows;
    rows.reserve(found->second.size());
    for (const auto& [extent, block] : found->second) rows.push_back({extent, block});
    LinkRows(*open.segment, rows, source, declared, linked);
  }
  isHalfLinked_ = false;
  return linked;
}

void SegmentStore::LinkRows(const Segment& from, const std::vector<LinkedRows>& rows, const SegmentStore& source,
                            std::set<BlockUid>& declared, Linked& linked)
{
  MergeUnpublished();
  std::vector<StoredBlock> blocks;
  for (const LinkedRows& row : rows) {
    if (!declared.insert(row.block->here).second) continue;
    blocks.push_back(source.state_.FindBlock(row.block->there)->stored);
    blocks.back().uid      = row.block->here;
    blocks.back().rowCount = blocks.back().maxKey = 0;
  }
  SegmentEntry entry;
  entry.number = entry.first = entry.last = TakeSegmentNumber();
  segments_.reserve(segments_.size() + 1);
  LinkedSegment made = LinkSegment(*files_, folder_, entry, from, std::move(blocks), rows);
  ++linked.segments;
  linked.copies += made.isCopied ? 1 : 0;
  (made.isCopied ? linked.copiedBytes : linked.linkedBytes) += from.GetValueFileBytes();
  segments_.push_back({std::move(made.segment), false});
  state_.Add(*segments_.back().segment);
}

// A small segment can be a commit by itself where nothing else is to be told, and no merge is due.
std::optional<CommitMark> SegmentStore::ChooseCommitMark(std::uint64_t number, std::uint64_t fileBytes) const
{
  const bool isPossible = isInManifest_ && !isUncertain_ && !isLogBroken_ &&
                          published_.version >= kDatabaseFormatVersion && published_.commits < kMaxAppended &&
                          number == published_.manifest.nextSegment && fileBytes <= kMaxCommitBytes &&
                          CountPublished() == segments_.size();
  if (!isPossible) return std::nullopt;
  std::vector<SegmentSize> sizes = GetSizes(0);
  sizes.push_back({fileBytes, 0});
  if (ChooseMerge(sizes)) return std::nullopt;
  return CommitMark{published_.manifest.generation + 1, nextBlock_, published_.link};
}

void SegmentStore::Publish(bool compacts)
{
  RequireWriter();
  if (mark_ && !compacts) {
    PublishMarked();
    return;
  }
  const bool hasNews = !isInManifest_ || isUncertain_ || CountPublished() < segments_.size();
  if (!hasNews && (!compacts || IsCompact())) return;
  Merged merged = PrepareMergeAtPublication(compacts);
  PublishMerge(merged);
}

// Puts a manifest in force that names all segments, and the merged one for those that it replaces.
void SegmentStore::PublishMerge(Merged& merged)
{
  garbage_.reserve(garbage_.size() + merged.replaced.size() + 1);
  try {
    ReplaceManifest(MakeManifest(merged));
  } catch (...) {
    Undo(merged);
    throw;
  }
  // The commit is made: nothing throws from here on.
  mark_.reset();
  for (OpenSegment& open : segments_) open.isPublished = true;
  for (std::filesystem::path& path : merged.replaced) garbage_.push_back(std::move(path));
  if (merged.count > 0) ApplyMerge(merged);
  RemoveGarbage();
}

SegmentStore::Piece SegmentStore::CompactPiece(std::uint64_t room)
{
  RequireWriter();
  Piece                            piece;
  const std::optional<MergeWindow> window = FindPiece(room, piece);
  if (!window) return piece;
  for (const Segment* segment : GetSegments(*window)) piece.bytesBefore += segment->GetEntry().fileBytes;
  Merged merged    = PrepareMerge(*window);
  piece.segments   = window->count;
  piece.bytesAfter = merged.segment == nullptr ? 0 : merged.segment->GetEntry().fileBytes;
  PublishMerge(merged);
  return piece;
}

SegmentStore::Piece SegmentStore::GetCompactionRest(std::uint64_t room) const
{
  Piece piece;
  FindPiece(room, piece);
  return piece;
}

// @param piece receives what has to be kept
// @return the first neighbours that have something to give back in the room
std::optional<MergeWindow> SegmentStore::FindPiece(std::uint64_t room, Piece& piece) const
{
  const std::vector<std::uint64_t> waste = CountWaste();
  std::optional<MergeWindow>       window;
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    if (waste[i] == 0) continue;
    const bool          isLinked = segments_[i].segment->GetEntry().IsLinked();
    const std::uint64_t needed   = isLinked ? 0 : CountMerged({i, 1});
    if (isLinked || needed > room) {
      ++piece.keptSegments;
      piece.keptBytes += waste[i];
      piece.roomForAll = std::max(piece.roomForAll, needed);
    } else if (!window) {
      window = GrowPiece(i, waste, room);
    }
  }
  return window;
}

// By segment, bytes that no row needs: of rows that went, and of those that later segments replace. Of lists that are
// replaced in part their share by rows; a segment of the first format version has at least one.
std::vector<std::uint64_t> SegmentStore::CountWaste() const
{
  std::map<const Segment*, std::uint64_t> hidden;
  for (const auto& [uid, block] : state_.GetBlocks())
    for (const auto& [chunk, extents] : block.chunks) {
      if (extents.size() == 1) continue;
      std::vector<std::uint64_t> visible(extents.size());
      for (const VisibleRows& rows : FindVisibleRows(extents)) visible[rows.extent] += rows.end - rows.begin;
      for (std::size_t i = 0; i < extents.size(); ++i) {
        const std::uint64_t rows  = extents[i].Get().rowCount;
        const std::uint64_t bytes = extents[i].segment->GetExtentBytes(extents[i].position);
        if (visible[i] < rows)
          hidden[extents[i].segment] += std::max<std::uint64_t>(1, bytes / rows * (rows - visible[i]));
      }
    }
  std::vector<std::uint64_t> waste;
  for (const OpenSegment& open : segments_) {
    const bool isOld = open.segment->GetIndex().version < kDatabaseFormatVersion;
    waste.push_back(open.segment->GetDeadBytes() + hidden[open.segment.get()] + (isOld ? 1 : 0));
  }
  return waste;
}

std::vector<Segment*> SegmentStore::GetSegments(const MergeWindow& window) const
{
  std::vector<Segment*> segments;
  for (std::size_t i = window.first; i < window.first + window.count; ++i)
    segments.push_back(segments_[i].segment.get());
  return segments;
}

// Takes those behind it along that have waste as well, and those that are smaller than what there is by then.
MergeWindow SegmentStore::GrowPiece(std::size_t first, const std::vector<std::uint64_t>& waste,
                                    std::uint64_t room) const
{
  MergeWindow   window{first, 1};
  std::uint64_t bytes = segments_[first].segment->GetEntry().fileBytes - waste[first];
  for (std::size_t i = first + 1; i < segments_.size(); ++i, ++window.count) {
    const SegmentEntry& entry = segments_[i].segment->GetEntry();
    if (entry.IsLinked() || (waste[i] == 0 && entry.fileBytes > bytes)) break;
    bytes += entry.fileBytes - waste[i];
    if (bytes > room || CountMerged({first, window.count + 1}) > room) break;
  }
  return window;
}

std::uint64_t SegmentStore::CountMerged(const MergeWindow& window) const
{
  return CountMergedBytes(GetSegments(window), window.first == 0, state_);
}

// The segment is on the disk and says itself that it is the next commit: it is, as soon as its name is there as well.
// The manifest's line saves the next one who opens the database reading all of it, and tells when it is damaged later.
// The line may come to the disk at any time.
void SegmentStore::PublishMarked()
{
  ManifestState       next   = published_;
  const std::uint64_t offset = published_.wholeBytes;
  const std::string   line   = AppendCommit(next, segments_.back().segment->GetEntry(), mark_->nextBlock);
  mark_.reset();
  isUncertain_ = true;
  RequireCommitted(files_->FlushFolder(folder_), folder_, "flush");
  isUncertain_ = false;
  // The commit is made: nothing throws from here on.
  segments_.back().isPublished = true;
  published_                   = std::move(next);
  isLogBroken_                 = !AppendLine(offset, line);
  RemoveGarbage();
}

// What fails here, an interrupt too, does not undo the commit: it is told by its segment alone.
bool SegmentStore::AppendLine(std::uint64_t offset, const std::string& line) noexcept
{
  try {
    StoreFile file(*files_, GetManifestPath(folder_), FED_FileLayer::Change);
    file.WriteAt(offset, line.data(), line.size());
    return true;
  } catch (...) {
    return false;
  }
}

// What a reader finds is a snapshot: it keeps all files open. When a writer publishes and removes files meanwhile, the
// manifest has moved, and the reader starts again. So it does when a writer gives up a commit that was whole already.
// Some file systems empty a file that goes while it is read: then nobody can tell, and the reader looks once more.
void SegmentStore::OpenForReading()
{
  constexpr int kMaxLooks = 3;
  int           looks     = 0;  // at one manifest
  for (std::string text = ReadManifest();;) {
    try {
      TakeState(FindState(*files_, folder_, text));
      OpenSegments();
      return;
    } catch (const FED_Failure&) {
      std::string now = ReadManifest();
      looks           = now == text ? looks + 1 : 0;
      if (looks == kMaxLooks || (looks > 0 && IsState(now))) throw;
      text = std::move(now);
    }
  }
}

// Whether what was found is the state still; it is not where the disk cannot tell.
bool SegmentStore::IsState(const std::string& manifest) const
{
  try {
    return FindState(*files_, folder_, manifest).link == published_.link;
  } catch (const FED_Failure&) {
    return false;
  }
}

void SegmentStore::OpenForWriting()
{
  DecodeManifest(ReadManifest(), GetManifestPath(folder_));  // what is no database is left alone
  isInManifest_ = true;
  LockFolder();
  const std::string   text   = ReadManifest();
  const ManifestState listed = DecodeManifest(text, GetManifestPath(folder_));
  TakeState(FindState(*files_, folder_, text));
  OpenSegments();
  // Of a crash: commits without their lines, or bytes that are no line, be they as many as a line would have.
  if (listed.wholeBytes != text.size() || listed.commits != published_.commits) ReplaceManifest(published_.manifest);
  RemoveLeftovers();
}

void SegmentStore::TakeState(ManifestState state)
{
  published_   = std::move(state);
  nextSegment_ = published_.manifest.nextSegment;
  nextBlock_   = published_.manifest.nextBlock;
}

void SegmentStore::CreateEmpty()
{
  RequireSuccess(files_->MakeFolder(folder_, isFolderOurs_), folder_, "create");
  std::vector<std::string> names;
  RequireSuccess(files_->List(folder_, names), folder_, "list");
  for (const std::string& name : names) {
    if (name == kManifestName) ThrowFileFailure(folder_, "cannot create a database: there is one already");
    // What a writer left that never published is no obstacle.
    if (name.compare(0, kLockName.size(), kLockName) != 0 && name != kNewManifestName && name != kUnpublishedName &&
        !IsFileOfSegment(name))
      ThrowFileFailure(folder_, "cannot create a database: the folder is not empty, it has \"" + name + "\"");
  }
  LockFolder();
  FED_FileStatus manifest;
  RequireSuccess(files_->GetStatus(GetManifestPath(folder_), manifest), GetManifestPath(folder_), "look at");
  if (manifest.kind != FED_FileStatus::Nothing) {
    isInManifest_ = true;
    ThrowFileFailure(folder_, "cannot create a database: there is one already");
  }
  RemoveLeftovers();
}

void SegmentStore::LockFolder()
{
  const std::filesystem::path path   = folder_ / kLockName;
  FED_FileLayer::Handle       handle = FED_FileLayer::kNoHandle;
  const std::error_code       error  = files_->Lock(path, handle);
  if (error == std::errc::resource_unavailable_try_again)
    ThrowLocked(*files_, path, folder_, "another writer has the database open");
  if (FED_FileLayer::TellsOfNoLocks(error))
    ThrowFileFailure(path, "cannot lock: " + error.message() +
                               "; this file system has no locks: where all writers agree to it, a lock file keeps them "
                               "off each other (--lock file, or QUILON_LOCK=file in the environment)");
  RequireSuccess(error, path, "lock");
  lock_     = StoreFile(*files_, path, handle);
  isWriter_ = true;
}

// Files of writers that died, or that could not be removed.
void SegmentStore::RemoveLeftovers()
{
  std::vector<std::string> names;
  RequireSuccess(files_->List(folder_, names), folder_, "list");
  for (const std::string& name : names) {
    const auto& segments = published_.manifest.segments;
    const auto  isOurs   = [&](const SegmentEntry& entry) { return IsFileOf(entry, name); };
    const bool  isLeft   = name == kNewManifestName || IsUnfinishedIdOrder(name) ||
                        (IsFileOfSegment(name) && std::none_of(segments.begin(), segments.end(), isOurs));
    if (isLeft) RequireSuccess(files_->Remove(folder_ / name), folder_ / name, "remove");
  }
}

void SegmentStore::OpenSegments()
{
  segments_.clear();
  state_ = {};
  for (const SegmentEntry& entry : published_.manifest.segments) {
    StoreFile file(*files_, folder_ / GetSegmentName(entry.number), FED_FileLayer::Read);
    if (!entry.IsLinked()) {
      segments_.push_back({std::make_unique<Segment>(std::move(file), entry), true});
      continue;
    }
    StoreFile own(*files_, folder_ / GetLinkIndexName(entry.number), FED_FileLayer::Read);
    segments_.push_back({std::make_unique<Segment>(std::move(file), std::move(own), entry), true});
  }
  for (const OpenSegment& open : segments_) {
    RequireBlocksBelow(*open.segment, nextBlock_);
    state_.ExpectDeleted(*open.segment);
  }
  for (const OpenSegment& open : segments_) state_.Add(*open.segment);
  state_.RequireAllRows();
}

// Whether merging all segments would change nothing but names. Those of the first format version are written anew.
bool SegmentStore::IsCompact() const
{
  if (segments_.empty()) return true;
  if (segments_.size() > 1) return false;
  const Segment&      segment = *segments_.front().segment;
  const SegmentIndex& index   = segment.GetIndex();
  if (segment.GetEntry().IsLinked()) return false;
  if (index.version < kDatabaseFormatVersion || segment.GetDeadBytes() > 0 || !index.deleted.empty()) return false;
  return std::all_of(index.extents.begin(), index.extents.end(), [&](const IndexExtent& extent) {
    return state_.FindBlock(extent.block)->chunks.at(extent.chunk).size() == 1;
  });
}

Segment& SegmentStore::FindSegment(const StoredExtent& extent) const
{
  return *segments_[static_cast<std::size_t>(extent.handle >> 32)].segment;
}

const IndexExtent& SegmentStore::FindExtent(const StoredExtent& extent) const
{
  return FindSegment(extent).GetIndex().extents[static_cast<std::size_t>(extent.handle & 0xffffffffu)];
}

std::vector<SegmentSize> SegmentStore::GetSizes(std::size_t first) const
{
  std::vector<SegmentSize> sizes;
  for (std::size_t i = first; i < segments_.size(); ++i)
    sizes.push_back({segments_[i].segment->GetEntry().fileBytes, segments_[i].segment->GetDeadBytes(),
                     segments_[i].segment->GetEntry().IsLinked()});
  return sizes;
}

std::size_t SegmentStore::CountPublished() const noexcept
{
  return static_cast<std::size_t>(
      std::count_if(segments_.begin(), segments_.end(), [](const OpenSegment& open) { return open.isPublished; }));
}

// Segments pile up before a commit too, when much is written in little memory.
void SegmentStore::MergeUnpublished()
{
  const std::size_t published = CountPublished();
  if (const auto window = ChooseMerge(GetSizes(published))) Merge({published + window->first, window->count});
}

// Merges segments that are not published.
void SegmentStore::Merge(const MergeWindow& window)
{
  Merged merged = PrepareMerge(window);
  garbage_.insert(garbage_.end(), merged.replaced.begin(), merged.replaced.end());
  ApplyMerge(merged);
  if (!isUncertain_) RemoveGarbage();
}

SegmentStore::Merged SegmentStore::PrepareMerge(const MergeWindow& window)
{
  Merged                      merged;
  const std::vector<Segment*> segments = GetSegments(window);
  merged.first                         = window.first;
  merged.count                         = window.count;
  for (const Segment* segment : segments)
    for (std::filesystem::path& path : segment->GetPaths()) merged.replaced.push_back(std::move(path));
  merged.segments.reserve(segments_.size() - window.count + 1);
  merged.segment     = MergeSegments(*files_, folder_, segments, window.first == 0, TakeSegmentNumber(), state_);
  merged.replacement = state_.PrepareReplacement(segments, merged.segment.get());
  return merged;
}

void SegmentStore::ApplyMerge(Merged& merged) noexcept
{
  state_.Apply(merged.replacement);
  const bool isPublished = segments_[merged.first].isPublished;
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    if (i == merged.first && merged.segment != nullptr)
      merged.segments.push_back({std::move(merged.segment), isPublished});
    if (i < merged.first || i >= merged.first + merged.count) merged.segments.push_back(std::move(segments_[i]));
  }
  segments_ = std::move(merged.segments);
}

// @param compacts all segments, unless that changes nothing
SegmentStore::Merged SegmentStore::PrepareMergeAtPublication(bool compacts)
{
  std::optional<MergeWindow> window = ChooseMerge(GetSizes(0));
  if (compacts && !segments_.empty() && !IsCompact()) window = MergeWindow{0, segments_.size()};
  return window ? PrepareMerge(*window) : Merged();
}

Manifest SegmentStore::MakeManifest(const Merged& merged) const
{
  Manifest next;
  next.generation  = published_.manifest.generation + 1;
  next.nextSegment = nextSegment_;
  next.nextBlock   = nextBlock_;
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    if (i == merged.first && merged.segment != nullptr) next.segments.push_back(merged.segment->GetEntry());
    if (i < merged.first || i >= merged.first + merged.count) next.segments.push_back(segments_[i].segment->GetEntry());
  }
  return next;
}

// Writes beside it, then renames: at every instant there is a whole manifest. The folder is flushed before, so that the
// segments are found when the manifest is.
void SegmentStore::ReplaceManifest(const Manifest& manifest)
{
  const std::filesystem::path path = folder_ / kNewManifestName;
  const std::string           text = EncodeManifest(manifest);
  ManifestState               next = DecodeManifest(text, path);
  FED_FileStatus              former;
  RequireSuccess(files_->GetStatus(GetManifestPath(folder_), former), GetManifestPath(folder_), "look at");
  StoreFile file(*files_, path, former);
  file.WriteAt(0, text.data(), text.size());
  file.Flush();
  file.Close();
  RequireSuccess(files_->FlushFolder(folder_), folder_, "flush");
  if (!isInManifest_) RequireSuccess(files_->FlushFolder(GetFolderAbove(folder_)), GetFolderAbove(folder_), "flush");
  PutManifestInForce();
  published_    = std::move(next);
  isLogBroken_  = false;
  isInManifest_ = true;
  isFolderOurs_ = false;
}

// The folder is flushed behind the renaming, so that the manifest stays.
void SegmentStore::PutManifestInForce()
{
  // That of an earlier publication, too.
  const bool isInDoubt = isUncertain_;
  try {
    ReplaceFile(*files_, folder_ / kNewManifestName, GetManifestPath(folder_), isUncertain_);
  } catch (...) {
    isUncertain_ = isUncertain_ || isInDoubt;
    throw;
  }
  isUncertain_ = true;
  RequireCommitted(files_->FlushFolder(folder_), folder_, "flush");
  isUncertain_ = false;
}

// Of a publication that failed. A manifest that may be in force may name the merged segment.
void SegmentStore::Undo(Merged& merged) noexcept
{
  if (!isUncertain_) static_cast<void>(files_->Remove(folder_ / kNewManifestName));
  if (merged.segment == nullptr) return;
  garbage_.push_back(merged.segment->GetPath());
  if (!isUncertain_) RemoveGarbage();
}

// Files that cannot be removed now are tried again later, at the latest by the next writer.
void SegmentStore::RemoveGarbage() noexcept
{
  const auto isGone = [&](const std::filesystem::path& path) { return !files_->Remove(path); };
  garbage_.erase(std::remove_if(garbage_.begin(), garbage_.end(), isGone), garbage_.end());
}
