#pragma once

/// @file
/// What people want to know of a sparse matrix at a glance.

#include <cstdint>
#include <string>
#include <vector>

#include "matrix/MatrixEntries.h"

namespace quilon::matrix {

struct Facts
{
  std::int64_t numRows      = 0;
  std::int64_t numColumns   = 0;
  std::int64_t numValues    = 0;  ///< that are stored
  std::int64_t numZeros     = 0;  ///< of these
  std::int64_t numEmptyRows = 0;  ///< without a stored value

  /// Farthest from the diagonal among values other than zero.
  std::int64_t lowerBandwidth = 0;
  std::int64_t upperBandwidth = 0;

  /// Of stored entries on the diagonal; a NaN takes no part in the range.
  std::int64_t numDiagonal      = 0;
  bool         hasDiagonalRange = false;
  double       leastDiagonal    = 0.0;
  double       greatestDiagonal = 0.0;

  Symmetry symmetry = Symmetry::General;
  /// Of a matrix without symmetry: whether every entry has a counterpart across the diagonal,
  bool isPatternSymmetric = false;
  /// and if so the largest |a(i,j) - a(j,i)| as a fraction of the largest magnitude; a NaN when any is one.
  double asymmetry = 0.0;
};

Facts FindFacts(const RowView& rows);

/// The matrix as a picture: a line of text for a number of rows, a character for a number of columns. ' ' stands for no
/// value other than zero; '.', ':', '+', '*' for a part of less than 1/16, 1/4, 1/2 and 1 of the places; '#' for all.
/// @param maxWidth, maxHeight at least 1
std::vector<std::string> DrawPattern(const RowView& rows, int maxWidth, int maxHeight);

}  // namespace quilon::matrix
