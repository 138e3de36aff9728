#include "SegmentWriter.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <map>
#include <optional>
#include <set>

#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

#include "Checksum.h"
#include "SegmentSkeleton.h"
#include "Statistics.h"
#include "UnfinishedFile.h"

namespace {

// A group and a data set of its own cost a block some 900 bytes of HDF5's structure. Blocks of fewer bytes share a data
// set where a segment has several of their format.
constexpr std::uint64_t kSmallBlockBytes = std::uint64_t{32} << 10;

// What is looked at several times is taken in pieces that stay in the processor's cache meanwhile.
constexpr std::size_t kPieceBytes = std::size_t{1} << 18;

// The disk works on what was written while more is made: a commit of 48 MB takes two thirds of the time.
constexpr std::uint64_t kFlushedAtOnce = std::uint64_t{8} << 20;

// Gathers small neighbouring pieces into large writes, and has the disk begin with them.
class BufferedFile
{
public:
  explicit BufferedFile(StoreFile& file) : file_(file) { buffer_.reserve(kPieceBytes); }

  void WriteAt(std::uint64_t offset, const void* bytes, std::size_t count)
  {
    if (offset != offset_ + buffer_.size() || buffer_.size() + count > kPieceBytes) Drain();
    if (count >= kPieceBytes) {
      Put(offset, bytes, count);
      return;
    }
    if (buffer_.empty()) offset_ = offset;
    const auto* from = static_cast<const std::uint8_t*>(bytes);
    buffer_.insert(buffer_.end(), from, from + count);
  }

  void Drain()
  {
    if (!buffer_.empty()) Put(offset_, buffer_.data(), buffer_.size());
    buffer_.clear();
  }

private:
  void Put(std::uint64_t offset, const void* bytes, std::size_t count)
  {
    file_.WriteAt(offset, bytes, count);
    const std::uint64_t end = offset + count;
    if (end < begun_ + kFlushedAtOnce) return;
    file_.BeginFlush(begun_, end - begun_);
    begun_ = end;
  }

  StoreFile&                file_;
  std::vector<std::uint8_t> buffer_;
  std::uint64_t             offset_ = 0;  // of the buffer's first byte
  std::uint64_t             begun_  = 0;  // the bytes before are on their way to the disk
};

// Rows that share data sets: all of one block, or those of small blocks of one format.
struct Group
{
  std::string               path;
  std::vector<StoredColumn> columns;
  std::vector<std::size_t>  rows;  // in SegmentContents::rows
};

std::uint64_t CountBytes(const ExtentRows& rows, std::size_t columnCount)
{
  std::uint64_t bytes = rows.KeysAreRun() ? 0 : std::uint64_t{4} * rows.GetRowCount();
  for (std::size_t column = 0; column < columnCount; ++column) bytes += rows.GetBytes(column);
  return bytes;
}

std::string GetFreePath(const StoredBlock& block, const std::string& path, const std::set<std::string>& taken)
{
  return taken.count(path) == 0 ? path : path + "_block" + std::to_string(block.uid);
}

std::vector<Group> MakeGroups(const SegmentContents& contents, const DescribeBlock& describe)
{
  struct BlockRows
  {
    const StoredBlock*       block;
    std::vector<std::size_t> rows;
    std::uint64_t            bytes = 0;
  };
  std::vector<BlockRows>             blocks;
  std::map<std::string, std::size_t> smallBlocks;  // of a format
  for (std::size_t i = 0; i < contents.rows.size(); ++i) {
    const StoredBlock& block = describe(contents.rows[i]->GetBlock());
    if (blocks.empty() || blocks.back().block->uid != block.uid) blocks.push_back({&block, {}, 0});
    blocks.back().rows.push_back(i);
    blocks.back().bytes += CountBytes(*contents.rows[i], GetStoredColumns(block.format).size());
  }
  for (const BlockRows& rows : blocks)
    if (rows.bytes < kSmallBlockBytes) ++smallBlocks[rows.block->format.ToString()];
  std::vector<Group>                 groups;
  std::map<std::string, std::size_t> sharedGroup;
  std::set<std::string>              taken;
  for (BlockRows& rows : blocks) {
    const std::string format = rows.block->format.ToString();
    if (rows.bytes < kSmallBlockBytes && smallBlocks[format] > 1) {
      const auto [found, isNew] = sharedGroup.emplace(format, groups.size());
      if (isNew) groups.push_back({"/small/" + format, GetStoredColumns(rows.block->format), {}});
      std::vector<std::size_t>& shared = groups[found->second].rows;
      shared.insert(shared.end(), rows.rows.begin(), rows.rows.end());
      continue;
    }
    std::string path = GetFreePath(*rows.block, '/' + GetBlockPath(rows.block->descriptor), taken);
    taken.insert(path);
    groups.push_back({std::move(path), GetStoredColumns(rows.block->format), std::move(rows.rows)});
  }
  return groups;
}

std::string GetColumnName(const std::vector<StoredColumn>& columns, std::size_t column)
{
  const StoredColumn& stored    = columns[column];
  const bool          isAlone   = columns.back().field == 1;
  const bool          isLengths = column + 1 < columns.size() && columns[column + 1].isElements;
  if (isAlone) return isLengths ? "/lengths" : "/values";
  return "/field" + std::to_string(stored.field) + (isLengths ? "_lengths" : "");
}

std::string GetIdsPath(int kind)
{
  constexpr const char* kNames[] = {"node", "element", "element-set", "node-set", "material"};
  const auto            position = static_cast<std::size_t>(kind);
  return std::string("/ids/") + (position < std::size(kNames) ? kNames[position] : "kind-" + std::to_string(kind));
}

// One write of a segment.
class SegmentWriter
{
public:
  SegmentWriter(const SegmentContents& contents, const DescribeBlock& describe)
      : contents_(contents), groups_(MakeGroups(contents, describe))
  {
    index_.blocks   = contents.blocks;
    index_.deleted  = contents.deleted;
    index_.hasNames = contents.hasNames;
    index_.names    = contents.names;
    AddExtents();
    AddIds();
    LayOut();
  }

  std::uint64_t GetFileBytes() const noexcept { return skeleton_->GetFileBytes(); }

  // Writes all to an empty file: the data in the order of their places, then what can be told behind them alone.
  void Write(StoreFile& file, SegmentHeader& header)
  {
    BufferedFile out(file);
    WriteData(out);
    const std::vector<std::uint8_t>& structure = skeleton_->GetBytes();
    const std::vector<std::uint8_t>  index     = EncodeIndex(index_);
    assert(index.size() == data_.front().rows && index.size() == data_.back().rows);
    SegmentEntry& entry  = header.entry;
    entry.indexOffset    = data_.front().offset;
    entry.indexBytes     = index.size();
    entry.indexChecksum  = GetChecksum(index.data(), index.size());
    entry.fileBytes      = skeleton_->GetFileBytes();
    header.copyOffset    = data_.back().offset;
    header.structure     = {kSegmentHeaderBytes, structure.size(), GetChecksum(structure.data(), structure.size())};
    const auto headBytes = EncodeHeader(header);
    out.WriteAt(header.copyOffset, index.data(), index.size());
    out.WriteAt(entry.fileBytes - kSegmentTailBytes, headBytes.data(), kSegmentTailBytes);
    out.WriteAt(0, headBytes.data(), headBytes.size());
    out.WriteAt(kSegmentHeaderBytes, structure.data(), structure.size());
    out.WriteAt(entry.indexOffset, index.data(), index.size());
    out.Drain();
  }

  SegmentIndex TakeIndex() noexcept { return std::move(index_); }

private:
  void AddExtents()
  {
    index_.extents.resize(contents_.rows.size());
    for (const Group& group : groups_)
      for (const std::size_t position : group.rows) {
        const ExtentRows& rows   = *contents_.rows[position];
        IndexExtent&      extent = index_.extents[position];
        extent.block             = rows.GetBlock();
        extent.chunk             = rows.GetChunk();
        extent.firstRow          = rows.GetFirstRow();
        extent.rowCount          = rows.GetRowCount();
        extent.keysAreRun        = rows.KeysAreRun();
        extent.columnCount       = static_cast<std::uint32_t>(group.columns.size());
      }
    std::size_t columnCount = 0;
    for (IndexExtent& extent : index_.extents) {
      extent.firstColumn = columnCount;
      columnCount += extent.columnCount;
    }
    index_.columns.resize(columnCount);
  }

  void AddIds()
  {
    for (const IdGrowth& growth : contents_.ids) {
      IndexIds ids;
      ids.kind       = static_cast<std::uint32_t>(growth.kind);
      ids.firstIndex = static_cast<std::uint32_t>(growth.firstIndex);
      ids.ids.bytes  = std::uint64_t{4} * growth.ids.GetSize();
      index_.ids.push_back(ids);
    }
  }

  // The order of the data is that in which they are written, but for the index in front of them.
  void LayOut()
  {
    const std::size_t indexBytes = EncodeIndex(index_).size();
    data_.push_back({"/index", SkeletonData::Bytes, StoredColumn::Char, indexBytes, 1, 0});
    for (const Group& group : groups_) {
      for (std::size_t column = 0; column < group.columns.size(); ++column) {
        const StoredColumn& stored = group.columns[column];
        std::uint64_t       bytes  = 0;
        for (const std::size_t position : group.rows) bytes += contents_.rows[position]->GetBytes(column);
        AddData(group.path + GetColumnName(group.columns, column), stored.element, stored.width, bytes);
      }
      std::uint64_t keyed = 0;
      for (const std::size_t position : group.rows)
        if (!index_.extents[position].keysAreRun) keyed += index_.extents[position].rowCount;
      AddData(group.path + "/keys", StoredColumn::UInt32, 1, 4 * keyed);
    }
    for (std::size_t i = 0; i < index_.ids.size(); ++i)
      AddData(GetIdsPath(contents_.ids[i].kind), StoredColumn::Int32, 1, index_.ids[i].ids.bytes);
    data_.push_back({"/index-copy", SkeletonData::Bytes, StoredColumn::Char, indexBytes, 1, 0});
    skeleton_.emplace(kSegmentHeaderBytes, kSegmentTailBytes, data_);
  }

  // There are no data sets without bytes.
  void AddData(const std::string& path, StoredColumn::Element element, std::uint32_t width, std::uint64_t bytes)
  {
    if (bytes == 0) return;
    data_.push_back({path, SkeletonData::Values, element, bytes / (GetElementBytes(element) * width), width, 0});
  }

  void WriteData(BufferedFile& out)
  {
    auto data = data_.cbegin() + 1;
    for (const Group& group : groups_) {
      for (std::size_t column = 0; column < group.columns.size(); ++column)
        if (WriteColumn(out, group, column, data->offset) > 0) ++data;
      if (WriteKeys(out, group, data->offset) > 0) ++data;
    }
    for (std::size_t i = 0; i < contents_.ids.size(); ++i, ++data) {
      StoredBytes& stored = index_.ids[i].ids;
      stored.offset       = data->offset;
      checksum_.Reset();
      WritePieces(out, stored.offset, contents_.ids[i].ids.GetData(), static_cast<std::size_t>(stored.bytes),
                  StoredColumn::UInt32);
      stored.checksum = checksum_.Get();
    }
  }

  // Adds to the checksum and to the statistics. A piece is an even number of any elements.
  void WritePieces(BufferedFile& out, std::uint64_t offset, const void* bytes, std::size_t count,
                   StoredColumn::Element element)
  {
    const auto* const from = static_cast<const std::uint8_t*>(bytes);
    for (std::size_t done = 0; done < count;) {
      const std::size_t piece = std::min(count - done, kPieceBytes);
      checksum_.Add(from + done, piece);
      AddStatistics(element, from + done, piece, statistics_);
      out.WriteAt(offset + done, from + done, piece);
      done += piece;
    }
  }

  std::uint64_t WriteColumn(BufferedFile& out, const Group& group, std::size_t column, std::uint64_t offset)
  {
    const std::uint64_t begin = offset;
    for (const std::size_t position : group.rows) {
      const ExtentRows& rows   = *contents_.rows[position];
      IndexColumn&      stored = index_.columns[index_.extents[position].firstColumn + column];
      stored.bytes.offset      = offset;
      stored.bytes.bytes       = rows.GetBytes(column);
      checksum_.Reset();
      statistics_ = {};
      rows.Visit(column, [&](const void* bytes, std::size_t count) {
        WritePieces(out, offset, bytes, count, group.columns[column].element);
        offset += count;
      });
      assert(offset == stored.bytes.offset + stored.bytes.bytes);
      stored.bytes.checksum = checksum_.Get();
      stored.statistics     = statistics_;
    }
    return offset - begin;
  }

  std::uint64_t WriteKeys(BufferedFile& out, const Group& group, std::uint64_t offset)
  {
    const std::uint64_t begin = offset;
    for (const std::size_t position : group.rows) {
      IndexExtent&                      extent = index_.extents[position];
      const std::vector<std::uint32_t>& keys   = contents_.rows[position]->GetKeys();
      if (extent.keysAreRun) {
        extent.firstKey = keys.front();
        extent.maxKey   = keys.front() + (extent.rowCount - 1);
        continue;
      }
      assert(keys.size() == extent.rowCount);
      extent.maxKey        = *std::max_element(keys.begin(), keys.end());
      extent.keys.offset   = offset;
      extent.keys.bytes    = std::uint64_t{4} * keys.size();
      extent.keys.checksum = GetChecksum(keys.data(), static_cast<std::size_t>(extent.keys.bytes));
      out.WriteAt(offset, keys.data(), static_cast<std::size_t>(extent.keys.bytes));
      offset += extent.keys.bytes;
    }
    return offset - begin;
  }

  const SegmentContents&         contents_;
  std::vector<Group>             groups_;
  SegmentIndex                   index_;
  std::vector<SkeletonData>      data_;
  std::optional<SegmentSkeleton> skeleton_;
  RunningChecksum                checksum_;    // of the column that is written
  ColumnStatistics               statistics_;  // of it
};

std::string GetIndexLabel(int index, int value)
{
  const char* label = nullptr;
  switch (index) {
    case FED_DataDescriptor::Iteration:
      label = "it";
      break;
    case FED_DataDescriptor::LoadCase:
      label = "lc";
      break;
    case FED_DataDescriptor::Substep:
      label = "sub";
      break;
    case FED_DataDescriptor::Analysis:
      label = "an";
      break;
    case FED_DataDescriptor::Increment:
      label = "inc";
      break;
    case FED_DataDescriptor::Layer:
      label = "layer";
      break;
    default:
      return 'i' + std::to_string(index) + '.' + std::to_string(value);
  }
  return label + std::to_string(value);
}

}  // namespace

std::uint64_t CountSegmentBytes(const SegmentContents& contents, const DescribeBlock& describe)
{
  return SegmentWriter(contents, describe).GetFileBytes();
}

std::unique_ptr<Segment> WriteSegment(FED_FileLayer& files, const std::filesystem::path& folder, SegmentEntry entry,
                                      const SegmentContents& contents, const DescribeBlock& describe,
                                      const ChooseMark& choose)
{
  const std::filesystem::path path = folder / GetSegmentName(entry.number);
  SegmentWriter               writer(contents, describe);
  SegmentHeader               header;
  header.entry = entry;
  if (choose) header.commit = choose(writer.GetFileBytes());
  UnfinishedFile unfinished(files, path);
  StoreFile      file(files, path, FED_FileLayer::Create);
  writer.Write(file, header);
  file.Flush();
  auto segment = std::make_unique<Segment>(std::move(file), header.entry, writer.TakeIndex());
  unfinished.Keep();
  return segment;
}

std::string GetBlockPath(const FED_DataDescriptor& descriptor)
{
  std::string group = "block";
  std::string key;
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    if ((descriptor.mask >> index & 1u) == 0) continue;
    const int value = descriptor.values[index];
    if (index == FED_DataDescriptor::OnfId)
      group = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(value)).GetName();
    else if (index != FED_DataDescriptor::Iteration || value != 0)
      key += (key.empty() ? "" : "_") + GetIndexLabel(index, value);
  }
  return group + '/' + (key.empty() ? "all" : key);
}
