#pragma once

/// @file
/// Columns of a block: typed values in chunks, and pools of list elements.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

/// The most bytes that one chunk of rows holds, and one chunk of a list pool unless a single list is longer.
inline constexpr std::size_t kMaxChunkBytes = std::size_t{16} << 20;

/// One fixed-size record field of all rows.
///
/// Values have shape [rows, width], cut into chunks of 2^chunkShift rows. The first chunk grows by doubling up to its
/// full size, so that small blocks stay small; the others are made whole. Rows are made without values.
template <typename T>
class ValueColumn
{
public:
  ValueColumn(std::size_t width, unsigned chunkShift) : width_(width), chunkShift_(chunkShift) {}

  std::size_t GetWidth() const noexcept { return width_; }
  std::size_t GetCapacity() const noexcept { return capacity_; }  ///< rows

  T*       GetRow(std::size_t row) noexcept { return chunks_[row >> chunkShift_].get() + OffsetOf(row); }
  const T* GetRow(std::size_t row) const noexcept { return chunks_[row >> chunkShift_].get() + OffsetOf(row); }

  /// Makes room for this many rows. When it throws, all rows are as before.
  void EnsureRows(std::size_t rows)
  {
    if (rows <= capacity_) return;
    const std::size_t rowsPerChunk = std::size_t{1} << chunkShift_;
    if (capacity_ < rowsPerChunk)
      GrowFirstChunk(std::min(std::max({rows, 2 * capacity_, std::size_t{4}}), rowsPerChunk));
    while (capacity_ < rows) {
      chunks_.push_back(std::make_unique_for_overwrite<T[]>(rowsPerChunk * width_));
      capacity_ += rowsPerChunk;
    }
  }

private:
  std::size_t OffsetOf(std::size_t row) const noexcept
  {
    return (row & ((std::size_t{1} << chunkShift_) - 1)) * width_;
  }

  void GrowFirstChunk(std::size_t rows)
  {
    chunks_.reserve(1);
    auto values = std::make_unique_for_overwrite<T[]>(rows * width_);
    if (chunks_.empty())
      chunks_.push_back(std::move(values));
    else {
      std::memcpy(values.get(), chunks_[0].get(), capacity_ * width_ * sizeof(T));
      chunks_[0] = std::move(values);
    }
    capacity_ = rows;
  }

  std::size_t                       width_;
  unsigned                          chunkShift_;
  std::size_t                       capacity_ = 0;
  std::vector<std::unique_ptr<T[]>> chunks_;
};

/// Where a row's list lies in its pool.
struct ListSlot
{
  std::uint32_t chunk;
  std::uint32_t offset;
  std::uint32_t length;
  std::uint32_t capacity;  ///< a later list of at most this length takes the same place
};

/// Elements of lists, one list behind the other. Chunks never move and never grow.
template <typename T>
class ListPool
{
public:
  /// Makes the room that Append() of a list of this length needs. Changes nothing that can be seen.
  void Prepare(std::size_t length)
  {
    if (FitsLastUsed(length)) return;
    if (used_ < chunks_.size() && chunks_[used_].capacity >= length) return;
    const std::size_t step = std::clamp(allocated_, std::size_t{64}, kMaxChunkBytes / sizeof(T));
    Chunk             chunk;
    chunk.capacity = std::max(length, step);
    chunk.elements = std::make_unique_for_overwrite<T[]>(chunk.capacity);
    chunks_.reserve(used_ + 1);
    chunks_.resize(used_);  // a spare chunk that proved too short
    allocated_ += chunk.capacity;
    chunks_.push_back(std::move(chunk));
  }

  /// Copies a prepared list in.
  ListSlot Append(const T* elements, std::size_t length) noexcept
  {
    if (!FitsLastUsed(length)) ++used_;
    ListSlot slot{};
    slot.length   = static_cast<std::uint32_t>(length);
    slot.capacity = slot.length;
    if (length == 0) return slot;
    Chunk& chunk = chunks_[used_ - 1];
    slot.chunk   = static_cast<std::uint32_t>(used_ - 1);
    slot.offset  = static_cast<std::uint32_t>(chunk.size);
    std::copy_n(elements, length, chunk.elements.get() + chunk.size);
    chunk.size += length;
    size_ += length;
    return slot;
  }

  T*       GetElements(const ListSlot& slot) noexcept { return slot.capacity == 0 ? nullptr : At(slot); }
  const T* GetElements(const ListSlot& slot) const noexcept { return slot.capacity == 0 ? nullptr : At(slot); }

  /// @return elements of all lists ever appended
  std::size_t GetSize() const noexcept { return size_; }

private:
  struct Chunk
  {
    std::unique_ptr<T[]> elements;
    std::size_t          size     = 0;
    std::size_t          capacity = 0;
  };

  bool FitsLastUsed(std::size_t length) const noexcept
  {
    if (length == 0) return true;
    return used_ > 0 && chunks_[used_ - 1].capacity - chunks_[used_ - 1].size >= length;
  }

  T* At(const ListSlot& slot) const noexcept { return chunks_[slot.chunk].elements.get() + slot.offset; }

  std::vector<Chunk> chunks_;
  std::size_t        used_      = 0;  // chunks that hold elements; at most one more stands ready
  std::size_t        allocated_ = 0;  // elements
  std::size_t        size_      = 0;
};

/// One list field of all rows: a pool of elements with an (offset, length) per row.
template <typename T>
class ListColumn
{
public:
  explicit ListColumn(unsigned chunkShift) : slots_(1, chunkShift) {}

  void EnsureRows(std::size_t rows) { slots_.EnsureRows(rows); }

  /// Makes the room that SetRow() needs. When it throws, all rows are as before.
  /// @param rowCount rows that hold a list; a new row is not among them
  void Prepare(std::size_t row, std::size_t rowCount, std::size_t length)
  {
    if (row < rowCount && length <= slots_.GetRow(row)->capacity) return;
    const std::size_t garbage = pool_.GetSize() - inUse_;
    if (garbage > inUse_ && garbage * sizeof(T) > kTolerableGarbage) DropGarbage(rowCount);
    pool_.Prepare(length);
  }

  /// Stores a prepared list.
  void SetRow(std::size_t row, std::size_t rowCount, const T* elements, std::size_t length) noexcept
  {
    ListSlot& slot = *slots_.GetRow(row);
    if (row < rowCount && length <= slot.capacity) {
      std::copy_n(elements, length, pool_.GetElements(slot));
      slot.length = static_cast<std::uint32_t>(length);
      return;
    }
    if (row < rowCount) inUse_ -= slot.capacity;
    slot = pool_.Append(elements, length);
    inUse_ += length;
  }

  /// @return the first element of the row's list; may be null when it is empty
  const T*    GetRow(std::size_t row) const noexcept { return pool_.GetElements(*slots_.GetRow(row)); }
  std::size_t GetLength(std::size_t row) const noexcept { return slots_.GetRow(row)->length; }

private:
  static constexpr std::size_t kTolerableGarbage = std::size_t{1} << 20;  // bytes

  void DropGarbage(std::size_t rowCount)
  {
    ListPool<T>           pool;
    std::vector<ListSlot> slots(rowCount);
    std::size_t           inUse = 0;
    for (std::size_t row = 0; row < rowCount; ++row) {
      const std::size_t length = GetLength(row);
      pool.Prepare(length);
      slots[row] = pool.Append(GetRow(row), length);
      inUse += length;
    }
    // Nothing throws from here on.
    for (std::size_t row = 0; row < rowCount; ++row) *slots_.GetRow(row) = slots[row];
    pool_  = std::move(pool);
    inUse_ = inUse;
  }

  ValueColumn<ListSlot> slots_;
  ListPool<T>           pool_;
  std::size_t           inUse_ = 0;  // elements that rows have room for; the rest of the pool is garbage
};
