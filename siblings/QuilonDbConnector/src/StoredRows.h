#pragma once

/// @file
/// A block's rows in the store, read with distrust.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

#include "ChunkStore.h"
#include "KeyTable.h"
#include "RowChunk.h"

/// Reads keys and chunks of one block. What the store says of them is a claim: it is believed where every row lies
/// somewhere and takes the bytes that the format asks for, so that whoever allocates rows afterwards allocates no more
/// than the store has.
///
/// Errors: FED_Failure that names the block.
class StoredRows
{
public:
  /// Extents of a chunk that hold all its rows.
  struct Extents
  {
    std::vector<StoredExtent> list;             ///< those written last behind
    bool                      overlap = false;  ///< a row lies in more than one
  };

  /// All are borrowed.
  /// @param layout of a block that has a format
  StoredRows(const ChunkStore& store, BlockUid uid, const FED_DataDescriptor& descriptor,
             const RecordLayout& layout) noexcept
      : store_(store), uid_(uid), descriptor_(descriptor), layout_(layout)
  {}

  /// @param rows that the store has of the chunk
  Extents GetExtents(std::size_t chunk, std::size_t rows) const;

  /// @return keys of the rows 0 to rowCount - 1
  RowKeys ReadKeys(std::size_t rowCount) const;

  /// @param rows that the store has of the chunk
  /// @param keys receives those of these rows
  void ReadChunkKeys(std::size_t chunk, std::size_t rows, std::vector<std::uint32_t>& keys) const;

  /// @return bytes of the columns that Load() makes
  std::uint64_t CountBytes(std::size_t chunk, std::size_t rows) const;

  /// @param rows that the store has of the chunk
  /// @return its columns, with just these rows
  std::vector<RowColumn> Load(std::size_t chunk, std::size_t rows) const;

private:
  [[noreturn]] void Fail(const std::string& text) const;
  [[noreturn]] void FailOfKey(std::uint32_t key) const;
  std::size_t       GetFirstRow(std::size_t chunk) const noexcept { return chunk << layout_.chunkShift; }
  void              CheckBytes(const StoredExtent& extent) const;
  void              CheckRun(const StoredExtent& extent) const;
  void ReadExtents(const Extents& extents, std::size_t chunk, std::size_t rows, std::vector<std::uint32_t>& keys) const;
  void ReadExtentKeys(const StoredExtent& extent, std::vector<std::uint32_t>& keys) const;
  void PlaceKeys(const StoredExtent& extent, std::size_t firstRow, const std::vector<std::uint32_t>& ofExtent,
                 std::vector<std::uint32_t>& ofChunk) const;
  void LoadExtent(const StoredExtent& extent, std::size_t row, std::vector<RowColumn>& columns) const;
  template <typename T>
  std::size_t LoadColumn(const StoredExtent& extent, std::size_t position, std::size_t row,
                         ValueColumn<T>& column) const;
  template <typename T>
  std::size_t LoadColumn(const StoredExtent& extent, std::size_t position, std::size_t row,
                         ListColumn<T>& column) const;

  const ChunkStore&         store_;
  BlockUid                  uid_;
  const FED_DataDescriptor& descriptor_;
  const RecordLayout&       layout_;
};
