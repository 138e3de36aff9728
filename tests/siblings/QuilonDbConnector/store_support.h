#pragma once

/// @file
/// Rows to store, made of plain vectors, and what a store gives back.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include "bundled/FED_FileLayer.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

#include "SegmentStore.h"

/// Rows whose columns are given as bytes.
class PlainRows final : public ExtentRows
{
public:
  PlainRows(BlockUid block, std::uint32_t chunk, std::uint32_t firstRow, std::vector<std::uint32_t> keys)
      : block_(block), chunk_(chunk), firstRow_(firstRow), keys_(std::move(keys))
  {
    rowCount_ = static_cast<std::uint32_t>(keys_.size());
    isRun_    = true;
    for (std::size_t i = 1; i < keys_.size(); ++i) isRun_ = isRun_ && keys_[i] == keys_[i - 1] + 1;
    if (isRun_) keys_.resize(1);
  }

  template <typename T>
  PlainRows& Add(const std::vector<T>& values)
  {
    std::string bytes(values.size() * sizeof(T), '\0');
    if (!values.empty()) std::memcpy(bytes.data(), values.data(), bytes.size());
    columns_.push_back(std::move(bytes));
    return *this;
  }

  BlockUid                          GetBlock() const noexcept override { return block_; }
  std::uint32_t                     GetChunk() const noexcept override { return chunk_; }
  std::uint32_t                     GetFirstRow() const noexcept override { return firstRow_; }
  std::uint32_t                     GetRowCount() const noexcept override { return rowCount_; }
  bool                              KeysAreRun() const noexcept override { return isRun_; }
  const std::vector<std::uint32_t>& GetKeys() const noexcept override { return keys_; }
  std::uint64_t                     GetBytes(std::size_t column) const override { return columns_[column].size(); }

  /// In two parts of whole elements, so that the checksum of parts is that of the whole.
  void Visit(std::size_t column, const TakeBytes& take) const override
  {
    const std::string& bytes = columns_[column];
    const std::size_t  half  = bytes.size() / 16 * 8;
    take(bytes.data(), half);
    take(bytes.data() + half, bytes.size() - half);
  }

private:
  BlockUid                   block_;
  std::uint32_t              chunk_;
  std::uint32_t              firstRow_;
  std::uint32_t              rowCount_;
  bool                       isRun_;
  std::vector<std::uint32_t> keys_;
  std::vector<std::string>   columns_;
};

inline StoredBlock MakeBlock(BlockUid uid, const std::string& format, FED_OnfId onf = static_cast<FED_OnfId>(521),
                             unsigned chunkShift = 3)
{
  StoredBlock block;
  block.uid        = uid;
  block.descriptor = FED_DataDescriptor(0, onf);
  block.descriptor.SetInteger(FED_DataDescriptor::Substep, static_cast<int>(uid));
  block.format     = FED_RecordFormat::Parse(format);
  block.chunkShift = chunkShift;
  return block;
}

/// What a store holds, in plain containers: record index to the bytes of each column (lists as their elements).
struct StoredContent
{
  using Records = std::map<std::uint32_t, std::vector<std::string>>;

  std::map<std::string, Records> blocks;  ///< by descriptor and format
  std::vector<std::vector<int>>  ids;     ///< by kind
  std::map<int, std::string>     names;

  bool operator==(const StoredContent& other) const = default;
};

/// Reads everything.
inline StoredContent ReadContent(const SegmentStore& store)
{
  StoredContent content;
  for (const StoredBlock* block : store.GetBlocks()) {
    const std::vector<StoredColumn> columns = GetStoredColumns(block->format);
    StoredContent::Records& records = content.blocks[block->descriptor.ToString() + ' ' + block->format.ToString()];
    std::map<std::uint32_t, std::pair<std::uint32_t, std::vector<std::string>>> rows;  // key and values of a row
    for (std::uint32_t chunk = 0; chunk << block->chunkShift < block->rowCount; ++chunk)
      for (const StoredExtent& extent : store.GetExtents(block->uid, chunk)) {
        std::vector<std::uint32_t> keys(extent.rowCount);
        for (std::uint32_t i = 0; i < extent.rowCount; ++i) keys[i] = extent.firstKey + i;
        if (!extent.keysAreRun) store.ReadKeys(extent, keys.data());
        for (std::uint32_t i = 0; i < extent.rowCount; ++i) rows[extent.firstRow + i] = {keys[i], {}};
        std::vector<std::uint32_t> lengths;
        for (std::size_t column = 0; column < columns.size(); ++column) {
          std::string bytes(static_cast<std::size_t>(store.GetBytes(extent, column)), '\0');
          store.Read(extent, column, bytes.data());
          if (column + 1 < columns.size() && columns[column + 1].isElements) {
            lengths.resize(extent.rowCount);
            std::memcpy(lengths.data(), bytes.data(), bytes.size());
            continue;
          }
          std::size_t begin = 0;
          for (std::uint32_t i = 0; i < extent.rowCount; ++i) {
            const std::size_t count = GetElementBytes(columns[column].element) *
                                      (columns[column].isElements ? lengths[i] : columns[column].width);
            rows[extent.firstRow + i].second.push_back(bytes.substr(begin, count));
            begin += count;
          }
        }
      }
    for (auto& [row, record] : rows) records[record.first] = std::move(record.second);
  }
  for (int kind = 0; kind < 15; ++kind) {
    content.ids.emplace_back(store.GetIdCount(kind));
    store.ReadIds(kind, content.ids.back().data());
  }
  content.names = store.GetUserKindNames();
  return content;
}

/// A writer gives up the commit of the second segment between two looks of who reads.
class GivenUpCommit : public FED_FileLayer
{
public:
  std::error_code Open(const std::filesystem::path& path, Mode mode, Handle& handle) override
  {
    if (path.filename() == "segment-000002.h5" && ++looks_ == 2) std::filesystem::remove(path);
    return FED_FileLayer::Open(path, mode, handle);
  }

private:
  int looks_ = 0;
};
