#pragma once

/// @file
/// Matrices of files go to a database.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "database/WatchedFiles.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

namespace quilon {
class Listener;
}

namespace quilon::matrix {

struct MatrixImportOptions
{
  std::vector<std::string> files;          ///< .sti and .mas of the solver, Matrix Market, Yale text
  std::filesystem::path    output;         ///< working database (`.fed`) or ONF folder; what else it has stays
  std::string              target;         ///< KIND@KEY=VALUE,... as ParseTarget() reads it; empty: by the extension
  std::filesystem::path    dofs;           ///< the .dof file that names the rows; empty: the one beside a .sti or .mas
  int                      index = 1;      ///< of the matrix in its block, 0 or more
  std::optional<int>       element;        ///< keeps it in full as the matrix of this element
  int                      pair      = 0;  ///< which matrix of the element, 1 to 3; 0: by the extension
  bool                     isSwapped = false;  ///< matrix in the first half of the pair, description in the second
  LockPatience             patience  = {};
};

/// A matrix that was stored.
struct StoredMatrix
{
  std::string        file;
  FED_DataDescriptor descriptor;
  int                index      = 0;  ///< or the element
  std::size_t        numRows    = 0;
  std::size_t        numColumns = 0;
  std::size_t        numValues  = 0;
};

struct MatrixImportReport
{
  std::size_t               blocks = 0;  ///< written, those of degrees of freedom among them
  std::vector<StoredMatrix> matrices;
};

/// Stores the matrices of all files, or none. The degrees of freedom of a .dof file are kept in a block with the same
/// keys (kDofKindName).
/// @throws FED_Failure for options that contradict each other, for a file that holds no matrix, naming the line, and
///         where nothing says what a matrix is
MatrixImportReport ImportMatrices(const MatrixImportOptions& options, Listener& listener);

}  // namespace quilon::matrix
