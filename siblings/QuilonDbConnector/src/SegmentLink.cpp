#include "SegmentLink.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

#include "Checksum.h"
#include "Manifest.h"
#include "UnfinishedFile.h"

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

// Gives the file that is open a second name, unless another one stands at its path by now.
// @return whether it has it
bool TryLink(FED_FileLayer& files, const StoreFile& from, const std::filesystem::path& to)
{
  if (files.Link(from.GetPath(), to)) return false;
  const FED_FileStatus meant = from.GetStatus();
  FED_FileStatus       linked;
  if (!files.GetStatus(to, linked) && linked.device == meant.device && linked.number == meant.number) return true;
  RequireSuccess(files.Remove(to), to, "remove");
  return false;
}

void CopyBytes(const StoreFile& from, StoreFile& to)
{
  const std::uint64_t       size = from.GetSize();
  std::vector<std::uint8_t> piece(static_cast<std::size_t>(std::min<std::uint64_t>(size, kPieceBytes)));
  for (std::uint64_t done = 0; done < size;) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(size - done, piece.size()));
    from.ReadAt(done, piece.data(), count);
    to.WriteAt(done, piece.data(), count);
    done += count;
  }
  to.Flush();
}

SegmentHeader MakeHeader(const SegmentEntry& entry)
{
  SegmentHeader header;
  header.entry = entry;
  // The linked file stands in the place of what other segments have in front of their data.
  header.structure         = {0, entry.linkedBytes, 0};
  header.entry.linkedBytes = 0;
  return header;
}

// Writes the own file of a linked segment, one part behind the other.
class LinkWriter
{
public:
  LinkWriter(const Segment& source, StoreFile& own)
      : source_(source), own_(own), linkedBytes_(source.GetValueFileBytes()), end_(kSegmentHeaderBytes)
  {}

  void Add(const LinkedRows& rows)
  {
    const SegmentIndex& from   = source_.GetIndex();
    IndexExtent         extent = from.extents[rows.extent];
    const auto          first  = from.columns.begin() + static_cast<std::ptrdiff_t>(extent.firstColumn);
    extent.block               = rows.block->here;
    extent.firstColumn         = index_.columns.size();
    index_.columns.insert(index_.columns.end(), first, first + extent.columnCount);
    const bool areElsewhere = !extent.keysAreRun && extent.keys.offset >= linkedBytes_;
    if (!rows.block->keys->empty() || areElsewhere) AddKeys(*rows.block->keys, extent);
    index_.extents.push_back(extent);
  }

  SegmentIndex Finish(std::vector<StoredBlock> blocks, SegmentEntry& entry)
  {
    index_.blocks                         = std::move(blocks);
    const std::vector<std::uint8_t> bytes = EncodeIndex(index_);
    entry.linkedBytes                     = linkedBytes_;
    entry.indexOffset                     = linkedBytes_ + end_;
    entry.indexBytes                      = bytes.size();
    entry.indexChecksum                   = GetChecksum(bytes.data(), bytes.size());
    entry.fileBytes                       = entry.indexOffset + entry.indexBytes;
    own_.WriteAt(end_, bytes.data(), bytes.size());
    const SegmentHeaderBytes header = EncodeHeader(MakeHeader(entry));
    own_.WriteAt(0, header.data(), header.size());
    own_.Flush();
    return std::move(index_);
  }

private:
  // Record indices of the rows as they are here.
  void AddKeys(const KeyTranslation& translation, IndexExtent& extent)
  {
    std::vector<std::uint32_t> keys(extent.rowCount);
    if (extent.keysAreRun)
      std::iota(keys.begin(), keys.end(), extent.firstKey);
    else
      source_.Read(extent.keys, keys.data(),
                   [&] { return "chunk " + std::to_string(extent.chunk) + ", record indices"; });
    if (!translation.empty())
      for (std::uint32_t& key : keys) key = Translate(translation, key);
    const auto isNoStep = [](std::uint32_t a, std::uint32_t b) { return b != a + 1; };
    extent.keysAreRun   = std::adjacent_find(keys.begin(), keys.end(), isNoStep) == keys.end();
    extent.maxKey       = *std::max_element(keys.begin(), keys.end());
    extent.firstKey     = extent.keysAreRun ? keys.front() : 0;
    extent.keys         = {};
    if (extent.keysAreRun) return;
    extent.keys.offset   = linkedBytes_ + end_;
    extent.keys.bytes    = std::uint64_t{4} * keys.size();
    extent.keys.checksum = GetChecksum(keys.data(), static_cast<std::size_t>(extent.keys.bytes));
    own_.WriteAt(end_, keys.data(), static_cast<std::size_t>(extent.keys.bytes));
    end_ += extent.keys.bytes;
  }

  std::uint32_t Translate(const KeyTranslation& translation, std::uint32_t key) const
  {
    if (key == 0 || key >= translation.size())
      ThrowFileFailure(source_.GetPath(), "a record stands at index " + std::to_string(key) +
                                              ", which no id has; it has no place in another database");
    return translation[key];
  }

  const Segment& source_;
  StoreFile&     own_;
  std::uint64_t  linkedBytes_;
  std::uint64_t  end_;  // of what was written
  SegmentIndex   index_;
};

}  // namespace

LinkedSegment LinkSegment(FED_FileLayer& files, const std::filesystem::path& folder, SegmentEntry entry,
                          const Segment& source, std::vector<StoredBlock> blocks, const std::vector<LinkedRows>& rows)
{
  const std::filesystem::path path    = folder / GetSegmentName(entry.number);
  const std::filesystem::path ownPath = folder / GetLinkIndexName(entry.number);
  LinkedSegment               linked;
  // This one first: a file that looks like a commit of this database is known by it to be none.
  UnfinishedFile unfinishedOwn(files, ownPath);
  StoreFile      own(files, ownPath, FED_FileLayer::Create);
  LinkWriter     writer(source, own);
  for (const LinkedRows& row : rows) writer.Add(row);
  SegmentIndex   index = writer.Finish(std::move(blocks), entry);
  UnfinishedFile unfinished(files, path);
  linked.isCopied = !TryLink(files, source.GetFile(), path);
  StoreFile file;
  if (linked.isCopied) {
    file = StoreFile(files, path, FED_FileLayer::Create);
    CopyBytes(source.GetFile(), file);
  } else {
    file = StoreFile(files, path, FED_FileLayer::Read);
  }
  linked.segment = std::make_unique<Segment>(std::move(file), std::move(own), entry, std::move(index));
  unfinishedOwn.Keep();
  unfinished.Keep();
  return linked;
}

bool HasLinkHeader(const StoreFile& own, const SegmentEntry& entry)
{
  SegmentHeaderBytes found{};
  own.ReadAt(0, found.data(), found.size());
  return found == EncodeHeader(MakeHeader(entry));
}

SegmentEntry ReadLinkHeader(const StoreFile& own)
{
  SegmentHeaderBytes bytes{};
  own.ReadAt(0, bytes.data(), bytes.size());
  const SegmentHeader header = DecodeHeader(bytes, own.GetPath());
  SegmentEntry        entry  = header.entry;
  entry.linkedBytes          = header.structure.bytes;
  if (entry.linkedBytes == 0 || entry.linkedBytes >= entry.fileBytes || entry.indexOffset < entry.linkedBytes)
    ThrowFileFailure(own.GetPath(), "its header is damaged: it tells of no linked file");
  return entry;
}
