#pragma once

/// @file
/// Sparse matrices entry by entry, as files list them.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "QuilonUtilities/FED_YaleMatrix.h"

namespace quilon::matrix {

/// An entry of a matrix. Row and column count from 0.
struct Entry
{
  int          row    = 0;
  int          column = 0;
  double       value  = 0.0;
  std::int64_t line   = 0;  ///< of the file that it stands in, from 1

  /// By row, then column, then line.
  bool operator<(const Entry& other) const noexcept;
};

/// All entries of a matrix, in any order; those that a file leaves to symmetry included.
struct Entries
{
  int                numRows    = 0;
  int                numColumns = 0;
  std::vector<Entry> entries;
};

/// The least numbers of a row without an entry that a file may have. A count in a file is a claim, and memory is asked
/// for by rows.
inline constexpr std::int64_t kMaxEmptyRows = 10'000'000;

/// Puts the entries into compressed rows: indices from 0, columns ascending in each row.
/// @param entries indices in range
/// @param name    the file, for messages
/// @throws FED_Failure for an entry that stands twice, for more values than 32 bits count, and for more than
///         kMaxEmptyRows rows beyond the number of entries
FED_YaleMatrix Assemble(Entries&& entries, const std::string& name);

/// Puts together entries that come one by one. As long as they come as compressed rows have them, they go into the
/// arrays of these; a list of all is made for the first that does not.
class EntryCollector
{
public:
  /// @param most entries for which arrays are made, 0 where it is known that they come in another order
  EntryCollector(int numRows, int numColumns, std::size_t most);

  /// @param row, column in range
  /// @param line of the file, ascending
  void Add(int row, int column, double value, std::int64_t line)
  {
    const bool isBehind = row > lastRow_ || (row == lastRow_ && column > lastColumn_);
    if (!isBehind || size_ == most_) return AddToList({row, column, value, line});
    if (row != lastRow_) rows_.push_back({row, size_});
    if (line != lastLine_ + 1) lines_.push_back({line, size_});
    lastRow_         = row;
    lastColumn_      = column;
    lastLine_        = line;
    value_[size_]    = value;
    column_[size_++] = column;
  }

  /// @throws FED_Failure as Assemble() does
  FED_YaleMatrix Take(const std::string& name);

private:
  /// Something that holds from an entry on.
  struct RowStart
  {
    int         row;
    std::size_t first;
  };
  struct LineStart  // lines of the next entries count up by one
  {
    std::int64_t line;
    std::size_t  first;
  };

  void AddToList(const Entry& entry);

  Entries                list_;
  FED_DoubleArray        values_;
  FED_IntArray           columns_;
  double*                value_;   // of the arrays
  int*                   column_;  // of the arrays
  std::size_t            most_;    // 0 when all entries are in the list
  std::size_t            size_       = 0;
  int                    lastRow_    = -1;
  int                    lastColumn_ = -1;
  std::int64_t           lastLine_   = -1;
  std::vector<RowStart>  rows_;  // that have entries
  std::vector<LineStart> lines_;
};

/// A matrix to read row by row, whose arrays are known to fit each other. Indices count from 0 whatever the base that
/// its arrays have. The matrix is borrowed.
class RowView
{
public:
  /// @param name what holds the matrix, for messages
  /// @throws FED_Failure for row pointers that are not as many as the rows and one more, do not begin at 0 or 1,
  ///         descend or end elsewhere than the values, for columns that are not as many as the values or out of range
  RowView(const FED_YaleMatrix& matrix, const std::string& name);

  std::int64_t NumRows() const noexcept { return numRows_; }
  std::int64_t NumColumns() const noexcept { return numColumns_; }
  std::int64_t NumValues() const noexcept { return numValues_; }

  /// The values of row r, 0 <= r < NumRows(), are those from Begin(r) to before Begin(r + 1).
  std::int64_t Begin(std::int64_t row) const noexcept { return rowPointers_[row] - base_; }
  std::int64_t Column(std::int64_t position) const noexcept { return columns_[position] - base_; }
  double       Value(std::int64_t position) const noexcept { return values_[position]; }

  /// All entries, row by row; lines are 0.
  std::vector<Entry> List() const;

private:
  std::int64_t  numRows_     = 0;
  std::int64_t  numColumns_  = 0;
  std::int64_t  numValues_   = 0;
  int           base_        = 0;
  const int*    rowPointers_ = nullptr;
  const int*    columns_     = nullptr;
  const double* values_      = nullptr;
};

/// @param name what holds the matrix, for messages
/// @throws FED_Failure for an entry that stands twice
void RequireDistinct(const RowView& rows, const std::string& name);

/// How the two triangles of a matrix are related, bit for bit.
enum class Symmetry
{
  General,
  Symmetric,
  SkewSymmetric  ///< and without entries on the diagonal
};

/// @param entries all entries of a matrix
Symmetry FindSymmetry(std::vector<Entry> entries, bool isSquare);

}  // namespace quilon::matrix
