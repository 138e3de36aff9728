#pragma once

/// @file
/// Files that hold a matrix, whatever their format.

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <vector>

#include "matrix/SolverMatrix.h"
#include "progress/ReadProgress.h"
#include "QuilonUtilities/FED_YaleMatrix.h"

namespace quilon::matrix {

/// A matrix as a file tells it.
struct MatrixFile
{
  /// What the file's name says that the matrix is.
  enum Role
  {
    Stiffness,  ///< .sti
    Mass,       ///< .mas
    Untold
  };

  Role             role = Untold;
  FED_YaleMatrix   matrix;
  std::vector<Dof> dofs;  ///< of its rows; empty when nothing tells them
};

/// @return what a file of this name holds
MatrixFile::Role RoleOf(const std::filesystem::path& path);

/// Reads a .sti or .mas file of the solver; any other file as Matrix Market when it begins with its banner, else as
/// Yale text.
/// @param dofPath the .dof file; empty looks for one of the same stem beside a .sti or .mas file
/// @throws FED_Failure that names the file, and the line where one is at fault
MatrixFile ReadMatrixFile(const std::filesystem::path& path, const std::filesystem::path& dofPath,
                          const ReadProgress& progress);

/// Writes a file that takes its place when it is whole (OutputFile): what stood there stays until then.
/// @throws FED_Failure when the disk fails, and what `write` throws
void ReplaceFile(const std::filesystem::path& path, const std::function<void(std::ostream&)>& write);

}  // namespace quilon::matrix
