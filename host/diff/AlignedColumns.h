#pragma once

/// @file
/// Two blocks whose records stand side by side.

#include <algorithm>
#include <cstddef>
#include <optional>

#include <bundled/FED_ColumnDataBlock.h>

#include "diff/RecordMatching.h"

namespace quilon::diff {

/// The values of two blocks of 1, 3 or 6 doubles a record whose records pair in the order in which both keep them: the
/// n-th of one with the n-th of the other, so that whole chunks are compared at once.
class AlignedColumns
{
public:
  /// @param first, second borrowed
  /// @param sameCodes     whether the fields have to have the same type code
  /// @return nothing for other formats, for records without a counterpart and for another order
  static std::optional<AlignedColumns> Find(const FED_DataBlock& first, const FED_DataBlock& second,
                                            const RecordPairs& pairs, bool sameCodes);

  std::size_t GetRecordCount() const noexcept { return first_.GetRecordCount(); }
  std::size_t GetWidth() const noexcept { return width_; }

  /// Largest finite magnitudes; a database on disk answers from its indices.
  double FindFirstPeak() const { return FindPeak(first_); }
  double FindSecondPeak() const { return FindPeak(second_); }

  /// Calls visit(position of the first record, a, b, records), a and b of shape [records, width]; ascending and
  /// gapless.
  template <typename Visit>
  void ForEachChunk(Visit visit) const
  {
    const std::size_t count     = GetRecordCount();
    const std::size_t firstRows = first_.GetRowsPerChunk();
    const std::size_t otherRows = second_.GetRowsPerChunk();
    for (std::size_t position = 0; position < count;) {
      const auto        a       = first_.GetDoubleChunk(1, position / firstRows);
      const auto        b       = second_.GetDoubleChunk(1, position / otherRows);
      const std::size_t inFirst = position % firstRows;
      const std::size_t inOther = position % otherRows;
      const std::size_t records = std::min(a.GetSize() / width_ - inFirst, b.GetSize() / width_ - inOther);
      visit(position, a.GetData() + inFirst * width_, b.GetData() + inOther * width_, records);
      position += records;
    }
  }

private:
  AlignedColumns(const FED_ColumnDataBlock& first, const FED_ColumnDataBlock& second, std::size_t width)
      : first_(first), second_(second), width_(width)
  {}

  double FindPeak(const FED_ColumnDataBlock& block) const;

  const FED_ColumnDataBlock& first_;
  const FED_ColumnDataBlock& second_;
  std::size_t                width_;
};

}  // namespace quilon::diff
