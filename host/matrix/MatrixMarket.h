#pragma once

/// @file
/// Matrix Market files. Format: R. F. Boisvert, R. Pozo, K. A. Remington, The Matrix Market Exchange Formats: Initial
/// Design, NISTIR 5935 (1996).

#include <iosfwd>
#include <string>

#include "matrix/MatrixEntries.h"
#include "progress/ReadProgress.h"

namespace quilon::matrix {

/// Reads a matrix: coordinate or array; real, integer or pattern (each entry 1); general, symmetric or skew-symmetric,
/// and hermitian, which for real numbers is symmetric. Both triangles are filled; zeros that are written are kept. Of a
/// symmetric matrix in coordinates either triangle may be given, entry by entry.
/// @param in   seekable
/// @param name the file, for messages
/// @throws FED_Failure "FILE:LINE: what was expected", among others for complex numbers, integers that no double holds,
///         an entry that stands twice, a file that ends early, within a line too, or goes on
FED_YaleMatrix ReadMatrixMarket(std::istream& in, const std::string& name, const ReadProgress& progress = {});

/// Writes a matrix as real coordinates, row by row, numbers in the shortest form that reads back to the same bits.
/// @param matrix   indices from 0 or 1
/// @param symmetry other than General: the matrix has it, and of the two triangles the lower one is written
/// @param name     what holds the matrix, for messages
/// @throws FED_Failure for an entry that stands twice: no reader would take it
void WriteMatrixMarket(std::ostream& out, const FED_YaleMatrix& matrix, Symmetry symmetry, const std::string& name);

}  // namespace quilon::matrix
