#pragma once

/// @file
/// Sparse matrices as text in compressed rows, the form that FED_YaleMatrixText reads.

#include <filesystem>
#include <iosfwd>

#include "QuilonUtilities/FED_YaleMatrix.h"

namespace quilon::matrix {

/// Reads a file with FED_YaleMatrixText and checks that its arrays fit each other (RowView) and that no entry stands
/// twice.
/// @throws FED_Failure that names the file, and the line where one is at fault
FED_YaleMatrix ReadYaleText(const std::filesystem::path& path);

/// Writes the three counts and the three arrays, a number a line, comments between them. The arrays are written as they
/// stand, whatever their index base; numbers in the shortest form that reads back to the same bits.
void WriteYaleText(std::ostream& out, const FED_YaleMatrix& matrix);

}  // namespace quilon::matrix
