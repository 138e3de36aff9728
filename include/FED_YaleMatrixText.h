#pragma once

/// @file
/// Sparse matrices from text files.

#include "quilon_language.h"

#include <string>

#include <QuilonUtilities/FED_YaleMatrix.h>

#include "quilon_export.h"

namespace FED_YaleMatrixText {

/// Reads a sparse matrix in compressed-row form from a text file with one number per line:
///     nnz, rows, columns, nnz values, nnz column indices, rows + 1 row pointers
/// White space around a number, blank lines and lines whose first character is '#' are ignored wherever they stand, and
/// so is everything behind the last row pointer. A number is taken from the start of its line: text after it is
/// ignored.
///
/// Indices are taken as written, whatever their base; the arrays are not checked against each other. Counts are not
/// judged either: they are widened from 32 bits with their sign, so that -1 row makes a matrix of 2^64 - 1 rows, and a
/// list of a negative number of entries is empty.
/// Failures carry the tag "|%P|QuilonDbDataTools|FED_YaleMatrixText".
/// @throws FED_Failure that names the file, the line and what was expected: when the file cannot be read (with the
///         system's reason where there is one), when the file has fewer entries than its counts ask for (memory for
///         them is not asked for), and when an entry does not begin with a number that its type can hold
QUILON_EXPORT FED_YaleMatrix ReadYaleMatrix(const std::wstring& path);

}  // namespace FED_YaleMatrixText
