#pragma once

/// @file
/// The matrices that the solver stores, assembled.

#include <iosfwd>
#include <string>
#include <vector>

#include "calculix/StoredMatrix.h"
#include "progress/ReadProgress.h"
#include "QuilonUtilities/FED_YaleMatrix.h"

namespace quilon::matrix {

using calculix::Dof;
using calculix::ReadDofs;

/// Reads a .sti or .mas file: a line "row column value" for each entry of the upper triangle, indices from 1, with
/// every entry of the diagonal. Both triangles are filled; zeros that are written are kept.
/// @param numRows of the .dof file; 0 takes the largest index
/// @throws FED_Failure "FILE:LINE: what was expected", also for an entry that stands twice, for a cut line, and for a
///         row without a diagonal entry, by which a file that ends early is known
FED_YaleMatrix ReadSolverMatrix(std::istream& in, const std::string& name, int numRows,
                                const ReadProgress& progress = {});

/// The rows of a matrix as a matrix: in row r, at the column that is the node, stands the direction. Columns count
/// from 0, so column 0 is empty.
FED_YaleMatrix DofMatrix(const std::vector<Dof>& dofs);

}  // namespace quilon::matrix
