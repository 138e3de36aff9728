#pragma once

/// @file
/// Sparse matrices in databases.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "kinds/UserKindPool.h"
#include "matrix/SolverMatrix.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonUtilities/FED_YaleMatrix.h"

class FED_DataBlock;
class FED_Database;

namespace quilon::matrix {

/// Where a matrix goes, as users write it: KIND@KEY=VALUE,... with the keys of selections. The iteration is 0 unless it
/// is told.
/// @param text      KIND is an ONF id or its name in the catalogue, stiffness, mass, or the name of a user kind of
///                  matrices, which is allotted when the database has none of this name; nothing takes the kind from
///                  `otherwise`
/// @param otherwise ONF id, 0 for none
/// @throws FED_Failure for anything else
FED_DataDescriptor ParseTarget(std::string_view text, int otherwise, UserKindPool& kinds);

/// The name of the user kind that keeps the degrees of freedom of matrices (DofMatrix()), under their own keys.
inline constexpr const char* kDofKindName = "matrix-dofs";

/// @return the descriptor of the degrees of freedom of a matrix's rows
FED_DataDescriptor DofDescriptor(const FED_DataDescriptor& matrix, UserKindPool& kinds);

/// @return the indices of a block that hold a matrix, ascending
std::vector<std::size_t> MatrixIndices(const FED_DataBlock& block);

/// Stores a small matrix as that of an element: the values row by row, all of them, and a description with the flag
/// "symmetric" and the list node, direction, node, direction, ... of its rows.
/// @param pair      0, 1 or 2, see FEM_ResultUtil::MatricesOnfLoc
/// @param isSwapped puts the matrix into the first half of the pair and the description into the second one
/// @throws FED_Failure unless the matrix is square and of at most 4096 rows
void StoreElementMatrix(FED_Database& database, const FED_DataDescriptor& descriptor, int element, int pair,
                        bool isSwapped, const FED_YaleMatrix& matrix, const std::vector<Dof>& dofs,
                        const std::string& name);

/// @return whether the block, one of 590 to 592 and 597 to 599, holds the matrix of the element and not its description
bool HoldsElementMatrix(const FED_Database& database, const FED_DataDescriptor& descriptor, int element);

/// @param descriptor of a block that holds the matrix of the element
/// @return the matrix with all its values
/// @throws FED_Failure unless they are as many as its rows and columns ask for
FED_YaleMatrix LoadElementMatrix(const FED_Database& database, const FED_DataDescriptor& descriptor, int element,
                                 const std::string& name);

}  // namespace quilon::matrix
