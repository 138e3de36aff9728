#pragma once

/// @file
/// Sparse matrices in a result database.

#include "quilon_language.h"

#include <cstddef>

#include "quilon_export.h"

class FED_Database;
class FED_DataDescriptor;
class FED_YaleMatrix;

/// Keeps sparse matrices in a database, one per record: a block holds as many as its indices, for example one per load
/// case as the caller numbers them.
///
/// Record fields: 1 rows, 2 columns (32-bit integers), 3 values, 4 row pointers, 5 column indices. The arrays are those
/// of the matrix, whatever index base it uses, and are not checked against each other: what is stored is restored.
///
/// Databases are borrowed for a call; what they throw passes through.
namespace FED_YaleMatrixStorage {

/// Writes the matrix as the record at `index` of the descriptor's block, replacing any record there. A block that does
/// not exist is created.
/// @param matrix rows and columns are kept as 32-bit integers: a count above 2147483647 is not restored as it was
QUILON_EXPORT void Store(const FED_YaleMatrix& matrix, FED_Database& db, const FED_DataDescriptor& descriptor,
                         std::size_t index);

/// Fills the matrix from the record at `index`. Whether there is one is not asked first: the database answers for that.
/// @param matrix replaced; unchanged when false is returned or anything throws
/// @return false when the database has no block of this descriptor
QUILON_EXPORT bool Restore(const FED_Database& db, const FED_DataDescriptor& descriptor, std::size_t index,
                           FED_YaleMatrix& matrix);

}  // namespace FED_YaleMatrixStorage
