#include "SegmentIndex.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include <bundled/OnfKinds.h>

#include "QuilonUtilities/FED_Failure.h"

#include "bundled/StoreFile.h"
#include "ByteWriter.h"
#include "Checksum.h"
#include "KeyTable.h"

// Numbers are stored with the least byte first, whatever the machine: every one goes through Put() or Take(). Only
// columns, keys and ids are stored as they lie in memory.
static_assert(std::endian::native == std::endian::little, "columns are stored as they lie in memory");

namespace {

constexpr char          kIndexMagic[8]  = {'Q', 'U', 'I', 'L', 'I', 'D', 'X', '\n'};
constexpr char          kHeaderMagic[8] = {'Q', 'U', 'I', 'L', 'S', 'E', 'G', '\n'};
constexpr std::size_t   kHeaderUsed1    = 80;  // in format version 1, with the checksum, which comes last
constexpr std::uint32_t kNumKinds       = 15;
constexpr unsigned      kMaxChunkShift  = 24;  // 16 MiB of single bytes
constexpr std::uint32_t kRunFlag        = 1;
constexpr std::uint32_t kCommitFlag     = 1;

// Bytes of an entry without its texts.
constexpr std::size_t kBlockBytes  = 8 + 4 * FED_DataDescriptor::kNumIndices + 4 + 4 + 4;
constexpr std::size_t kIdsBytes    = 4 + 4 + 24;
constexpr std::size_t kNameBytes   = 4 + 4;
constexpr std::size_t kExtentBytes = 8 + 7 * 4 + 4 + 24;
constexpr std::size_t kColumnBytes = 24 + 32;

class ByteReader
{
public:
  ByteReader(const std::uint8_t* bytes, std::size_t count, std::uint64_t fileBytes, const std::filesystem::path& path)
      : next_(bytes), left_(count), fileBytes_(fileBytes), path_(path)
  {}

  [[noreturn]] void Fail(const std::string& text) const { ThrowFileFailure(path_, "its index is damaged: " + text); }
  void              Require(bool holds, const char* text) const
  {
    if (!holds) Fail(text);
  }

  std::size_t         GetLeft() const noexcept { return left_; }
  const std::uint8_t* Take(std::size_t count)
  {
    if (count > left_) Fail("it ends too early");
    const std::uint8_t* taken = next_;
    next_ += count;
    left_ -= count;
    return taken;
  }
  template <typename T>
  T TakeNumber()
  {
    T number;
    std::memcpy(&number, Take(sizeof(T)), sizeof(T));  // the machine's least byte comes first, too
    return number;
  }
  std::uint32_t Take32() { return TakeNumber<std::uint32_t>(); }
  std::uint64_t Take64() { return TakeNumber<std::uint64_t>(); }
  int           TakeInt() { return static_cast<int>(Take32()); }
  double        TakeDouble() { return std::bit_cast<double>(Take64()); }
  std::string   TakeText()
  {
    const std::size_t   size = Take32();
    const std::uint8_t* text = Take(size);
    return std::string(reinterpret_cast<const char*>(text), size);
  }
  // A place within the file.
  StoredBytes TakeStored()
  {
    StoredBytes stored;
    stored.offset   = Take64();
    stored.bytes    = Take64();
    stored.checksum = Take64();
    Require(stored.bytes <= fileBytes_ && stored.offset <= fileBytes_ - stored.bytes,
            "a place is beyond the file's end");
    return stored;
  }
  // A number of entries that so many bytes may hold.
  std::size_t TakeCount(std::size_t entryBytes)
  {
    const std::uint64_t count = Take64();
    Require(count <= left_ / entryBytes, "a count is greater than the bytes that are there");
    return static_cast<std::size_t>(count);
  }

private:
  const std::uint8_t*          next_;
  std::size_t                  left_;
  std::uint64_t                fileBytes_;
  const std::filesystem::path& path_;
};

void PutStored(ByteWriter& out, const StoredBytes& stored)
{
  out.Put(stored.offset);
  out.Put(stored.bytes);
  out.Put(stored.checksum);
}

void PutBlock(ByteWriter& out, const StoredBlock& block)
{
  out.Put(block.uid);
  for (const int value : block.descriptor.values) out.Put(value);
  out.Put(static_cast<std::uint32_t>(block.descriptor.mask));
  out.Put(static_cast<std::uint32_t>(block.chunkShift));
  out.Put(block.format.ToString());
}

// @param spelling of the format of the block before, which it may share
StoredBlock TakeBlock(ByteReader& in, const StoredBlock& before, std::string& spelling)
{
  StoredBlock block;
  block.uid = in.Take64();
  for (int& value : block.descriptor.values) value = in.TakeInt();
  block.descriptor.mask = in.Take32();
  block.chunkShift      = in.Take32();
  in.Require(block.uid != 0, "a block has the number 0");
  in.Require(block.chunkShift <= kMaxChunkShift, "a block's chunks have too many rows");
  std::string text = in.TakeText();
  if (text == spelling) {
    block.format = before.format;
    return block;
  }
  try {
    block.format = FED_RecordFormat::Parse(text);
    spelling     = std::move(text);
  } catch (const FED_Failure& failure) {
    in.Fail(failure.what());
  }
  return block;
}

IndexIds TakeIds(ByteReader& in)
{
  IndexIds ids;
  ids.kind       = in.Take32();
  ids.firstIndex = in.Take32();
  ids.ids        = in.TakeStored();
  in.Require(ids.kind < kNumKinds, "ids are of an unknown kind");
  in.Require(ids.ids.bytes % 4 == 0 && ids.ids.bytes > 0, "the bytes of ids are no whole numbers");
  in.Require(ids.firstIndex >= 1 && ids.ids.bytes / 4 <= KeyTable::kMaxKey &&
                 ids.firstIndex <= KeyTable::kMaxKey - ids.ids.bytes / 4 + 1,
             "ids have too great indices");
  return ids;
}

void PutExtent(ByteWriter& out, const IndexExtent& extent)
{
  out.Put(extent.block);
  out.Put(extent.chunk);
  out.Put(extent.firstRow);
  out.Put(extent.rowCount);
  out.Put(extent.keysAreRun ? kRunFlag : 0u);
  out.Put(extent.firstKey);
  out.Put(extent.maxKey);
  out.Put(extent.columnCount);
  out.Put(0u);
  PutStored(out, extent.keys);
}

IndexExtent TakeExtent(ByteReader& in)
{
  IndexExtent extent;
  extent.block              = in.Take64();
  extent.chunk              = in.Take32();
  extent.firstRow           = in.Take32();
  extent.rowCount           = in.Take32();
  const std::uint32_t flags = in.Take32();
  extent.firstKey           = in.Take32();
  extent.maxKey             = in.Take32();
  extent.columnCount        = in.Take32();
  in.Take32();
  extent.keys       = in.TakeStored();
  extent.keysAreRun = flags == kRunFlag;
  in.Require(flags <= kRunFlag, "rows have unknown flags");
  in.Require(extent.rowCount >= 1 && extent.rowCount <= KeyTable::kMaxKey &&
                 extent.firstRow <= KeyTable::kMaxKey - extent.rowCount + 1,
             "rows are none or too many");
  in.Require(extent.maxKey <= KeyTable::kMaxKey && extent.maxKey >= extent.rowCount - 1,
             "rows have wrong record indices");
  if (extent.keysAreRun)
    in.Require(extent.firstKey == extent.maxKey - (extent.rowCount - 1) && extent.keys.bytes == 0,
               "rows have wrong record indices");
  else
    in.Require(extent.keys.bytes == std::uint64_t{4} * extent.rowCount, "rows have too few record indices");
  return extent;
}

void PutColumn(ByteWriter& out, const IndexColumn& column)
{
  PutStored(out, column.bytes);
  out.Put(column.statistics.values);
  out.Put(column.statistics.nans);
  out.Put(column.statistics.least);
  out.Put(column.statistics.greatest);
}

IndexColumn TakeColumn(ByteReader& in)
{
  IndexColumn column;
  column.bytes               = in.TakeStored();
  column.statistics.values   = in.Take64();
  column.statistics.nans     = in.Take64();
  column.statistics.least    = in.TakeDouble();
  column.statistics.greatest = in.TakeDouble();
  return column;
}

void TakeNames(ByteReader& in, SegmentIndex& index)
{
  const std::uint32_t flag = in.Take32();
  in.Require(flag <= 1, "the names of user kinds have an unknown flag");
  index.hasNames          = flag == 1;
  const std::size_t count = in.TakeCount(kNameBytes);
  in.Require(index.hasNames || count == 0, "names of user kinds are there and not there");
  int before = OnfKind::FirstUserKind - 1;
  for (std::size_t i = 0; i < count; ++i) {
    const int onf = in.TakeInt();
    in.Require(onf > before && onf <= OnfKind::LastUserKind, "a name belongs to no user kind");
    index.names.emplace_back(onf, in.TakeText());
    before = onf;
  }
}

// Bytes that several rows shared would be written many times by whoever copies them.
void RequireApart(const ByteReader& in, const SegmentIndex& index)
{
  std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges{{0, kSegmentHeaderBytes}};  // first byte, first behind
  ranges.reserve(1 + index.ids.size() + index.extents.size() + index.columns.size());
  VisitPlaces(index, [&](const StoredBytes& place) {
    if (place.bytes > 0) ranges.emplace_back(place.offset, place.offset + place.bytes);
  });
  if (!std::is_sorted(ranges.begin(), ranges.end())) std::sort(ranges.begin(), ranges.end());
  for (std::size_t i = 1; i < ranges.size(); ++i)
    in.Require(ranges[i].first >= ranges[i - 1].second, "two places overlap");
}

// Columns belong to the extents in order.
void AssignColumns(const ByteReader& in, SegmentIndex& index)
{
  std::size_t next = 0;
  for (IndexExtent& extent : index.extents) {
    in.Require(extent.columnCount >= 1 && extent.columnCount <= index.columns.size() - next,
               "rows have columns that are not there");
    extent.firstColumn = next;
    next += extent.columnCount;
  }
  in.Require(next == index.columns.size(), "a column belongs to no rows");
}

}  // namespace

std::vector<std::uint8_t> EncodeIndex(const SegmentIndex& index)
{
  ByteWriter out;
  out.Reserve(256 + index.blocks.size() * (kBlockBytes + 8) + index.extents.size() * kExtentBytes +
              index.columns.size() * kColumnBytes);
  out.Put(kIndexMagic, sizeof(kIndexMagic));
  out.Put(kDatabaseFormatVersion);
  out.PutCount(index.blocks.size());
  for (const StoredBlock& block : index.blocks) PutBlock(out, block);
  out.PutCount(index.deleted.size());
  for (const BlockUid uid : index.deleted) out.Put(uid);
  out.PutCount(index.ids.size());
  for (const IndexIds& ids : index.ids) {
    out.Put(ids.kind);
    out.Put(ids.firstIndex);
    PutStored(out, ids.ids);
  }
  out.Put(index.hasNames ? 1u : 0u);
  out.PutCount(index.names.size());
  for (const auto& [onf, name] : index.names) {
    out.Put(onf);
    out.Put(name);
  }
  out.PutCount(index.extents.size());
  for (const IndexExtent& extent : index.extents) PutExtent(out, extent);
  out.PutCount(index.columns.size());
  for (const IndexColumn& column : index.columns) PutColumn(out, column);
  return std::move(out.GetBytes());
}

SegmentIndex DecodeIndex(const std::uint8_t* bytes, std::size_t count, std::uint64_t fileBytes,
                         const std::filesystem::path& path)
{
  ByteReader in(bytes, count, fileBytes, path);
  in.Require(std::memcmp(in.Take(sizeof(kIndexMagic)), kIndexMagic, sizeof(kIndexMagic)) == 0, "it is none");
  SegmentIndex index;
  index.version = in.Take32();
  RequireFormatVersion(index.version, kDatabaseFormatVersion, path);
  index.blocks.resize(in.TakeCount(kBlockBytes));
  std::string spelling;
  for (std::size_t i = 0; i < index.blocks.size(); ++i)
    index.blocks[i] = TakeBlock(in, i == 0 ? StoredBlock() : index.blocks[i - 1], spelling);
  index.deleted.resize(in.TakeCount(sizeof(BlockUid)));
  for (BlockUid& uid : index.deleted) uid = in.Take64();
  index.ids.resize(in.TakeCount(kIdsBytes));
  for (IndexIds& ids : index.ids) ids = TakeIds(in);
  TakeNames(in, index);
  index.extents.resize(in.TakeCount(kExtentBytes));
  for (IndexExtent& extent : index.extents) extent = TakeExtent(in);
  index.columns.resize(in.TakeCount(kColumnBytes));
  for (IndexColumn& column : index.columns) column = TakeColumn(in);
  in.Require(in.GetLeft() == 0, "bytes follow its end");
  AssignColumns(in, index);
  RequireApart(in, index);
  return index;
}

SegmentHeaderBytes EncodeHeader(const SegmentHeader& header)
{
  ByteWriter          out;
  const SegmentEntry& segment = header.entry;
  const CommitMark    commit  = header.commit.value_or(CommitMark());
  out.Put(kHeaderMagic, sizeof(kHeaderMagic));
  out.Put(kDatabaseFormatVersion);
  out.Put(header.commit ? kCommitFlag : 0u);
  for (const std::uint64_t number :
       {segment.number, segment.first, segment.last, segment.fileBytes, segment.indexOffset, segment.indexBytes,
        segment.indexChecksum, header.copyOffset, header.structure.offset, header.structure.bytes,
        header.structure.checksum, commit.generation, commit.nextBlock, commit.previous, std::uint64_t{0}})
    out.Put(number);
  out.Put(GetChecksum(out.GetBytes().data(), out.GetSize()));
  SegmentHeaderBytes bytes{};
  std::memcpy(bytes.data(), out.GetBytes().data(), kSegmentTailBytes);
  return bytes;
}

SegmentHeader DecodeHeader(const SegmentHeaderBytes& bytes, const std::filesystem::path& path)
{
  ByteReader    in(bytes.data(), bytes.size(), std::numeric_limits<std::uint64_t>::max(), path);
  SegmentHeader header;
  if (std::memcmp(in.Take(sizeof(kHeaderMagic)), kHeaderMagic, sizeof(kHeaderMagic)) != 0)
    ThrowFileFailure(path, "not a segment of a database, or its header is damaged");
  header.version = in.Take32();
  RequireFormatVersion(header.version, kDatabaseFormatVersion, path);
  const std::size_t used = header.version == 1 ? kHeaderUsed1 : kSegmentTailBytes;
  ByteReader        checksum(bytes.data() + used - 8, 8, 0, path);
  if (checksum.Take64() != GetChecksum(bytes.data(), used - 8))
    ThrowFileFailure(path, "its header is damaged: the checksum is wrong");
  if (std::any_of(bytes.begin() + static_cast<std::ptrdiff_t>(used), bytes.end(), [](auto byte) { return byte != 0; }))
    ThrowFileFailure(path, "its header is damaged: it is followed by what is not zero");
  const std::uint32_t flags   = in.Take32();
  SegmentEntry&       segment = header.entry;
  for (std::uint64_t* number : {&segment.number, &segment.first, &segment.last, &segment.fileBytes,
                                &segment.indexOffset, &segment.indexBytes, &segment.indexChecksum})
    *number = in.Take64();
  if (header.version == 1) return header;
  CommitMark commit;
  for (std::uint64_t* number : {&header.copyOffset, &header.structure.offset, &header.structure.bytes,
                                &header.structure.checksum, &commit.generation, &commit.nextBlock, &commit.previous})
    *number = in.Take64();
  if ((flags & kCommitFlag) != 0) header.commit = commit;
  return header;
}
