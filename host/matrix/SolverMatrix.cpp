#include "matrix/SolverMatrix.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

#include "calculix/ColumnText.h"
#include "Failure.h"
#include "matrix/MatrixEntries.h"
#include "matrix/MatrixText.h"

namespace quilon::matrix {

namespace {

// As a number 10.1 and 10.10 would be one: node and direction are read as texts at the dot.
Dof ParseDof(const MatrixText& text)
{
  const std::string_view word = text.Word(0);
  const std::size_t      dot  = word.find('.');
  Dof                    dof;
  if (text.NumWords() != 1 || dot == std::string_view::npos || !calculix::ReadInteger(word.substr(0, dot), dof.node) ||
      !calculix::ReadInteger(word.substr(dot + 1), dof.direction) || dof.node < 1 || dof.node == INT_MAX ||
      dof.direction < 0 || dof.direction > 9)
    text.File().FailExpected("NODE.DIRECTION");
  return dof;
}

void CheckDiagonal(const Entries& matrix, const std::string& name, std::int64_t lastLine)
{
  std::vector<bool> hasDiagonal(static_cast<std::size_t>(matrix.numRows));
  for (const Entry& entry : matrix.entries)
    if (entry.row == entry.column) hasDiagonal[static_cast<std::size_t>(entry.row)] = true;
  const auto missing = std::find(hasDiagonal.begin(), hasDiagonal.end(), false);
  if (missing == hasDiagonal.end()) return;
  const auto row = std::to_string(missing - hasDiagonal.begin() + 1);
  Fail(name + ":" + std::to_string(lastLine + 1) + ": expected the diagonal entry of row " + row +
       ", found the end of the file");
}

}  // namespace

std::vector<Dof> ReadDofs(std::istream& in, const std::string& name, const calculix::ReadProgress& progress)
{
  MatrixText                  text(in, name, '\0', progress);
  std::vector<Dof>            dofs;
  std::map<Dof, std::int64_t> lines;
  while (text.NextLine()) {
    text.RequireWholeLine();
    const Dof  dof   = ParseDof(text);
    const auto known = lines.emplace(dof, text.File().Line());
    if (!known.second)
      text.File().Fail("'" + std::string(text.Word(0)) + "' is given again, expected each degree of freedom once " +
                       "(first in line " + std::to_string(known.first->second) + ")");
    dofs.push_back(dof);
  }
  if (dofs.empty()) text.File().FailAtEnd("NODE.DIRECTION");
  return dofs;
}

FED_YaleMatrix ReadSolverMatrix(std::istream& in, const std::string& name, int numRows,
                                const calculix::ReadProgress& progress)
{
  MatrixText text(in, name, '\0', progress);
  Entries    matrix;
  const int  most = numRows > 0 ? numRows : INT_MAX;
  while (text.NextLine()) {
    text.RequireWholeLine();
    text.RequireWords(3, "row, column and value");
    const int    column = text.GetInteger(1, "column", 1, most);
    const int    row    = text.GetInteger(0, "row", 1, column);
    const double value  = text.GetDouble(2, "value");
    matrix.numRows      = std::max(matrix.numRows, column);
    matrix.entries.push_back({row - 1, column - 1, value, text.File().Line()});
    if (row != column) matrix.entries.push_back({column - 1, row - 1, value, text.File().Line()});
  }
  if (matrix.entries.empty()) text.File().FailAtEnd("row, column and value");
  if (numRows > 0) matrix.numRows = numRows;
  matrix.numColumns = matrix.numRows;
  // Counted before the rows are gone through: a damaged index must not ask for memory.
  if (static_cast<std::size_t>(matrix.numRows) <= matrix.entries.size() + kMaxEmptyRows)
    CheckDiagonal(matrix, name, text.File().Line());
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
