#pragma once

/// @file
/// What the tests of matrix files share.

#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "QuilonUtilities/FED_YaleMatrix.h"

namespace quilon_test {

inline FED_YaleMatrix MakeMatrix(std::size_t rows, std::size_t columns, const std::vector<double>& values,
                                 const std::vector<int>& rowPointers, const std::vector<int>& columnIndices)
{
  FED_YaleMatrix matrix;
  matrix.SetInternalData(rows, columns, FED_DoubleArray(values), FED_IntArray(rowPointers),
                         FED_IntArray(columnIndices));
  return matrix;
}

/// A matrix in a line: "2 x 3 | 5 7 9 | 0 1 3 | 1 0 2": sizes, values, row pointers, column indices.
inline std::string Shown(const FED_YaleMatrix& matrix)
{
  std::ostringstream text;
  text.precision(17);
  text << matrix.GetNumRows() << " x " << matrix.GetNumColumns() << " |";
  for (std::size_t i = 0; i < matrix.GetValues().GetSize(); ++i) text << ' ' << matrix.GetValues().GetData()[i];
  text << " |";
  for (std::size_t i = 0; i < matrix.GetRowPointers().GetSize(); ++i)
    text << ' ' << matrix.GetRowPointers().GetData()[i];
  text << " |";
  for (std::size_t i = 0; i < matrix.GetColumnIndices().GetSize(); ++i)
    text << ' ' << matrix.GetColumnIndices().GetData()[i];
  return text.str();
}

/// Whether sizes and arrays are equal bit for bit.
inline bool SameBits(const FED_YaleMatrix& a, const FED_YaleMatrix& b)
{
  const FED_DoubleArray& left  = a.GetValues();
  const FED_DoubleArray& right = b.GetValues();
  return a.GetNumRows() == b.GetNumRows() && a.GetNumColumns() == b.GetNumColumns() &&
         a.GetRowPointers() == b.GetRowPointers() && a.GetColumnIndices() == b.GetColumnIndices() &&
         left.GetSize() == right.GetSize() &&
         (left.GetSize() == 0 || std::memcmp(left.GetData(), right.GetData(), left.GetSize() * sizeof(double)) == 0);
}

}  // namespace quilon_test
