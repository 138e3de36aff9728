#pragma once

/// @file
/// The columns of one chunk of rows: typed values, and lists with their elements.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

/// The most bytes that the fixed-size columns of a chunk of rows take: little enough that a few chunks beside each
/// other are no burden, and enough that reading one is not dominated by finding it.
inline constexpr std::size_t kMaxChunkBytes = std::size_t{4} << 20;

/// The most elements of a list.
inline constexpr std::size_t kMaxListLength = 0x7fffffff;

/// Copies the doubles of a field, whose widths are 1, 3 and 6: in place, where a general copy would be a call for each
/// record.
inline void CopyDoubles(const double* from, std::size_t width, double* to) noexcept
{
  const auto copy = [from, to](auto count) {
    for (std::size_t i = 0; i < count; ++i) to[i] = from[i];
  };
  switch (width) {
    case 1:
      copy(std::integral_constant<std::size_t, 1>());
      break;
    case 3:
      copy(std::integral_constant<std::size_t, 3>());
      break;
    default:
      copy(std::integral_constant<std::size_t, 6>());
      break;
  }
}

/// One fixed-size record field of a chunk's rows. Values have shape [rows, width]; rows are made without values.
template <typename T>
class ValueColumn
{
public:
  using Element = T;

  explicit ValueColumn(std::size_t width) noexcept : width_(width) {}

  std::size_t GetWidth() const noexcept { return width_; }
  std::size_t GetCapacity() const noexcept { return capacity_; }  ///< rows
  std::size_t GetBytes() const noexcept { return capacity_ * width_ * sizeof(T); }

  T*       GetRow(std::size_t row) noexcept { return values_.get() + row * width_; }
  const T* GetRow(std::size_t row) const noexcept { return values_.get() + row * width_; }

  /// Makes room for this many rows and keeps the values of all that there was room for. When it throws, all rows are as
  /// before.
  void EnsureRows(std::size_t rows)
  {
    if (rows <= capacity_) return;
    auto values = std::make_unique_for_overwrite<T[]>(rows * width_);
    if (capacity_ > 0) std::memcpy(values.get(), values_.get(), GetBytes());
    values_   = std::move(values);
    capacity_ = rows;
  }

  // What lists need more care for, so that columns of all kinds are written alike.

  static std::size_t GetGrowth(std::size_t, std::size_t, std::size_t) noexcept { return 0; }
  void               Prepare(std::size_t, std::size_t, std::size_t) noexcept {}
  void               SetRow(std::size_t row, std::size_t, const T* values, std::size_t) noexcept
  {
    std::copy_n(values, width_, GetRow(row));
  }
  static std::size_t CountElementBytes(std::size_t, std::size_t) noexcept { return 0; }
  void               MakeEmptyRows(std::size_t rows) { EnsureRows(rows); }
  void               Clean(std::size_t) noexcept {}
  void CopyRows(const ValueColumn& from, std::size_t fromRow, std::size_t row, std::size_t, std::size_t count) noexcept
  {
    if (count > 0) std::memcpy(GetRow(row), from.GetRow(fromRow), count * width_ * sizeof(T));
  }

private:
  std::size_t          width_;
  std::size_t          capacity_ = 0;
  std::unique_ptr<T[]> values_;
};

/// Where a row's list lies.
template <typename T>
struct ListSlot
{
  T*            elements = nullptr;
  std::uint32_t length   = 0;
  std::uint32_t capacity = 0;  ///< a later list of at most this length takes the same place
};

/// Elements of lists, one list behind the other in pieces that never move and never grow.
template <typename T>
class ListPool
{
public:
  /// @return bytes that Prepare() of a list of this length would allocate
  std::size_t GetGrowth(std::size_t length) const noexcept
  {
    return HasRoom(length) ? 0 : CapacityOfNext(length) * sizeof(T);
  }

  /// Makes the room that Append() of a list of this length needs. Changes nothing that can be seen.
  void Prepare(std::size_t length)
  {
    if (HasRoom(length)) return;
    Piece piece;
    piece.capacity = CapacityOfNext(length);
    piece.elements = std::make_unique_for_overwrite<T[]>(piece.capacity);
    pieces_.reserve(used_ + 1);
    if (used_ < pieces_.size()) {  // a spare piece that proved too short
      allocated_ -= pieces_.back().capacity;
      pieces_.pop_back();
    }
    allocated_ += piece.capacity;
    pieces_.push_back(std::move(piece));
  }

  /// Takes a prepared place, without values.
  ListSlot<T> Append(std::size_t length) noexcept
  {
    if (length == 0) return {};
    if (!FitsLastUsed(length)) ++used_;
    Piece&            piece = pieces_[used_ - 1];
    const auto        count = static_cast<std::uint32_t>(length);
    const ListSlot<T> slot{piece.elements.get() + piece.size, count, count};
    piece.size += length;
    size_ += length;
    return slot;
  }

  /// Takes a place for many lists at once, without values: one piece of just this length.
  /// @return null for no elements
  T* AppendPiece(std::size_t length)
  {
    if (length == 0) return nullptr;
    Piece piece;
    piece.elements = std::make_unique_for_overwrite<T[]>(length);
    piece.capacity = length;
    piece.size     = length;
    pieces_.insert(pieces_.begin() + static_cast<std::ptrdiff_t>(used_), std::move(piece));
    ++used_;
    allocated_ += length;
    size_ += length;
    return pieces_[used_ - 1].elements.get();
  }

  /// @return elements of all lists ever appended
  std::size_t GetSize() const noexcept { return size_; }
  std::size_t GetBytes() const noexcept { return allocated_ * sizeof(T); }

private:
  static constexpr std::size_t kMaxStep = (std::size_t{1} << 20) / sizeof(T);

  struct Piece
  {
    std::unique_ptr<T[]> elements;
    std::size_t          size     = 0;
    std::size_t          capacity = 0;
  };

  bool FitsLastUsed(std::size_t length) const noexcept
  {
    return used_ > 0 && pieces_[used_ - 1].capacity - pieces_[used_ - 1].size >= length;
  }

  bool HasRoom(std::size_t length) const noexcept
  {
    return length == 0 || FitsLastUsed(length) || (used_ < pieces_.size() && pieces_[used_].capacity >= length);
  }

  std::size_t CapacityOfNext(std::size_t length) const noexcept
  {
    return std::max(length, std::clamp(allocated_, std::size_t{64}, kMaxStep));
  }

  std::vector<Piece> pieces_;
  std::size_t        used_      = 0;  // pieces that hold elements; at most one more stands ready
  std::size_t        allocated_ = 0;  // elements
  std::size_t        size_      = 0;
};

/// One list field of a chunk's rows: a pool of elements and a place in it per row.
template <typename T>
class ListColumn
{
public:
  using Element = T;

  ListColumn() noexcept : slots_(1) {}

  void        EnsureRows(std::size_t rows) { slots_.EnsureRows(rows); }
  std::size_t GetCapacity() const noexcept { return slots_.GetCapacity(); }
  std::size_t GetBytes() const noexcept { return slots_.GetBytes() + pool_.GetBytes(); }

  /// @return bytes that Prepare() with the same arguments would allocate, not counting what cleaning gives back
  std::size_t GetGrowth(std::size_t row, std::size_t rowCount, std::size_t length) const noexcept
  {
    return Fits(row, rowCount, length) ? 0 : pool_.GetGrowth(length);
  }

  /// Makes the room that SetRow() needs. When it throws, all rows are as before.
  /// @param rowCount rows that hold a list; a new row is not among them
  void Prepare(std::size_t row, std::size_t rowCount, std::size_t length)
  {
    if (Fits(row, rowCount, length)) return;
    if (IsWasteful()) DropGarbage(rowCount);
    pool_.Prepare(length);
  }

  /// Stores a prepared list.
  void SetRow(std::size_t row, std::size_t rowCount, const T* elements, std::size_t length) noexcept
  {
    ListSlot<T>& slot = *slots_.GetRow(row);
    if (!Fits(row, rowCount, length)) {
      if (row < rowCount) inUse_ -= slot.capacity;
      slot = pool_.Append(length);
      inUse_ += length;
    }
    std::copy_n(elements, length, slot.elements);
    slot.length = static_cast<std::uint32_t>(length);
  }

  /// Makes rows of empty lists, which Load() fills.
  void MakeEmptyRows(std::size_t rows)
  {
    slots_.EnsureRows(rows);
    std::fill_n(slots_.GetRow(0), rows, ListSlot<T>{});
  }

  /// Takes a place for the lists of consecutive rows that hold one, in place of those that they hold.
  /// @param total the sum of the lengths
  /// @return where all their elements go, one list behind the other; null when there are none
  T* Load(std::size_t firstRow, const std::vector<std::uint32_t>& lengths, std::size_t total)
  {
    T* const elements = pool_.AppendPiece(total);
    T*       next     = elements;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
      ListSlot<T>& slot = *slots_.GetRow(firstRow + i);
      inUse_ -= slot.capacity;
      slot = {next, lengths[i], lengths[i]};
      next += lengths[i];
    }
    inUse_ += total;
    return elements;
  }

  /// Copies `count` rows of another column to the rows from `row` on, for which there is room.
  /// @param rowCount rows that hold a list before, at least `row`
  void CopyRows(const ListColumn& from, std::size_t fromRow, std::size_t row, std::size_t rowCount, std::size_t count)
  {
    for (std::size_t i = 0; i < count; ++i, rowCount = std::max(rowCount, row + i)) {
      Prepare(row + i, rowCount, from.GetLength(fromRow + i));
      SetRow(row + i, rowCount, from.GetRow(fromRow + i), from.GetLength(fromRow + i));
    }
  }

  /// Gives the room of replaced lists back where they outweigh the others.
  void Clean(std::size_t rowCount)
  {
    if (IsWasteful()) DropGarbage(rowCount);
  }

  /// @return the first element of the row's list; may be null when it is empty
  const T*    GetRow(std::size_t row) const noexcept { return slots_.GetRow(row)->elements; }
  std::size_t GetLength(std::size_t row) const noexcept { return slots_.GetRow(row)->length; }

  /// @return elements of the lists of consecutive rows
  std::size_t GetLength(std::size_t firstRow, std::size_t rowCount) const noexcept
  {
    std::size_t length = 0;
    for (std::size_t row = firstRow; row < firstRow + rowCount; ++row) length += GetLength(row);
    return length;
  }

  std::size_t CountElementBytes(std::size_t firstRow, std::size_t rowCount) const noexcept
  {
    return GetLength(firstRow, rowCount) * sizeof(T);
  }

  /// Calls visit(elements, count) for the elements of the lists of consecutive rows in order, at once for as many as
  /// lie side by side.
  template <typename Visit>
  void VisitElements(std::size_t firstRow, std::size_t rowCount, Visit visit) const
  {
    const T*    elements = nullptr;
    std::size_t count    = 0;
    for (std::size_t row = firstRow; row < firstRow + rowCount; ++row) {
      const ListSlot<T>& slot = *slots_.GetRow(row);
      if (slot.length == 0) continue;
      if (count > 0 && elements + count == slot.elements) {
        count += slot.length;
        continue;
      }
      if (count > 0) visit(elements, count);
      elements = slot.elements;
      count    = slot.length;
    }
    if (count > 0) visit(elements, count);
  }

private:
  static constexpr std::size_t kTolerableGarbage = std::size_t{1} << 20;  // bytes

  bool Fits(std::size_t row, std::size_t rowCount, std::size_t length) const noexcept
  {
    return row < rowCount && length <= slots_.GetRow(row)->capacity;
  }

  bool IsWasteful() const noexcept
  {
    const std::size_t garbage = pool_.GetSize() - inUse_;
    return garbage > inUse_ && garbage * sizeof(T) > kTolerableGarbage;
  }

  void DropGarbage(std::size_t rowCount)
  {
    ListPool<T>              pool;
    std::vector<ListSlot<T>> slots(rowCount);
    std::size_t              inUse = 0;
    for (std::size_t row = 0; row < rowCount; ++row) {
      const std::size_t length = GetLength(row);
      pool.Prepare(length);
      slots[row] = pool.Append(length);
      std::copy_n(GetRow(row), length, slots[row].elements);
      inUse += length;
    }
    // Nothing throws from here on.
    std::copy(slots.begin(), slots.end(), slots_.GetRow(0));
    pool_  = std::move(pool);
    inUse_ = inUse;
  }

  ValueColumn<ListSlot<T>> slots_;
  ListPool<T>              pool_;
  std::size_t              inUse_ = 0;  // elements that rows have room for; the rest of the pool is garbage
};
