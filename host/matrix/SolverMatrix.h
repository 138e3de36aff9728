#pragma once

/// @file
/// Readers of the matrices that the solver CalculiX stores: .sti (stiffness), .mas (mass), and .dof, which says what
/// their rows are.

#include <iosfwd>
#include <string>
#include <vector>

#include "calculix/ReadProgress.h"
#include "QuilonUtilities/FED_YaleMatrix.h"

namespace quilon::matrix {

/// A degree of freedom: a row of the matrices.
struct Dof
{
  int node      = 0;  ///< 1 <= node < 2147483647
  int direction = 0;  ///< 0 <= direction <= 9; 1 to 3 are x, y and z

  bool operator==(const Dof& other) const noexcept { return node == other.node && direction == other.direction; }
  bool operator<(const Dof& other) const noexcept
  {
    return node != other.node ? node < other.node : direction < other.direction;
  }
};

/// Reads a .dof file: a line NODE.DIRECTION for each row.
/// @param in   seekable
/// @param name the file, for messages
/// @throws FED_Failure "FILE:LINE: what was expected", also for a degree of freedom that stands twice and a cut line
std::vector<Dof> ReadDofs(std::istream& in, const std::string& name, const calculix::ReadProgress& progress = {});

/// Reads a .sti or .mas file: a line "row column value" for each entry of the upper triangle, indices from 1, with
/// every entry of the diagonal. Both triangles are filled; zeros that are written are kept.
/// @param numRows of the .dof file; 0 takes the largest index
/// @throws FED_Failure "FILE:LINE: what was expected", also for an entry that stands twice, for a cut line, and for a
///         row without a diagonal entry, by which a file that ends early is known
FED_YaleMatrix ReadSolverMatrix(std::istream& in, const std::string& name, int numRows,
                                const calculix::ReadProgress& progress = {});

/// The rows of a matrix as a matrix: in row r, at the column that is the node, stands the direction. Columns count
/// from 0, so column 0 is empty.
FED_YaleMatrix DofMatrix(const std::vector<Dof>& dofs);

}  // namespace quilon::matrix
