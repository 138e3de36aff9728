#pragma once

/// @file
/// Readers of the matrices that the solver stores: .sti (stiffness), .mas (mass), and .dof, which says what their rows
/// are.

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "progress/ReadProgress.h"

namespace quilon::calculix {

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
std::vector<Dof> ReadDofs(std::istream& in, const std::string& name, const ReadProgress& progress = {});

/// An entry of the upper triangle. Row and column count from 0, row <= column.
struct StoredEntry
{
  int          row    = 0;
  int          column = 0;
  double       value  = 0.0;
  std::int64_t line   = 0;  ///< of the file, from 1
};

/// Reads a .sti or .mas file: a line "row column value" for each entry of the upper triangle, indices from 1, with
/// every entry of the diagonal.
/// @param numRows of the .dof file; 0 takes the largest index
/// @param take    receives the entries in the file's order
/// @return the number of rows
/// @throws FED_Failure "FILE:LINE: what was expected", also for a cut line and for a row without a diagonal entry, by
///         which a file that ends early is known
int ReadStoredMatrix(std::istream& in, const std::string& name, int numRows,
                     const std::function<void(const StoredEntry&)>& take, const ReadProgress& progress = {});

}  // namespace quilon::calculix
