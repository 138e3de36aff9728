#include "matrix/SolverMatrix.h"

#include <algorithm>
#include <utility>

#include "matrix/MatrixEntries.h"

namespace quilon::matrix {

FED_YaleMatrix ReadSolverMatrix(std::istream& in, const std::string& name, int numRows, const ReadProgress& progress)
{
  Entries    matrix;
  const auto take = [&matrix](const calculix::StoredEntry& entry) {
    matrix.entries.push_back({entry.row, entry.column, entry.value, entry.line});
    if (entry.row != entry.column) matrix.entries.push_back({entry.column, entry.row, entry.value, entry.line});
  };
  matrix.numRows    = calculix::ReadStoredMatrix(in, name, numRows, take, progress);
  matrix.numColumns = matrix.numRows;
  return Assemble(std::move(matrix), name);
}

FED_YaleMatrix DofMatrix(const std::vector<Dof>& dofs)
{
  Entries matrix;
  for (const Dof& dof : dofs) {
    matrix.entries.push_back({matrix.numRows++, dof.node, static_cast<double>(dof.direction), 0});
    matrix.numColumns = std::max(matrix.numColumns, dof.node + 1);
  }
  return Assemble(std::move(matrix), "degrees of freedom");
}

}  // namespace quilon::matrix
