#include "calculix/StoredMatrix.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <map>
#include <utility>

#include "text/ColumnText.h"
#include "text/Failure.h"
#include "text/WordFile.h"

namespace quilon::calculix {

namespace {

// As a number 10.1 and 10.10 would be one: node and direction are read as texts at the dot.
Dof ParseDof(const WordFile& text)
{
  const std::string_view word = text.Word(0);
  const std::size_t      dot  = word.find('.');
  Dof                    dof;
  if (text.NumWords() != 1 || dot == std::string_view::npos || !ReadInteger(word.substr(0, dot), dof.node) ||
      !ReadInteger(word.substr(dot + 1), dof.direction) || dof.node < 1 || dof.node == INT_MAX || dof.direction < 0 ||
      dof.direction > 9)
    text.File().FailExpected("NODE.DIRECTION");
  return dof;
}

/// @param diagonal rows that have a diagonal entry, in any order
void CheckDiagonal(std::vector<int> diagonal, int numRows, const std::string& name, std::int64_t lastLine)
{
  // Sorted, because a vector by row would let a damaged index ask for memory.
  std::sort(diagonal.begin(), diagonal.end());
  int expected = 0;
  for (const int row : diagonal) {
    if (row > expected) break;
    expected = row + 1;
  }
  if (expected >= numRows) return;
  Fail(name + ":" + std::to_string(lastLine + 1) + ": expected the diagonal entry of row " +
       std::to_string(expected + 1) + ", found the end of the file");
}

}  // namespace

std::vector<Dof> ReadDofs(std::istream& in, const std::string& name, const ReadProgress& progress)
{
  WordFile                    text(in, name, '\0', progress);
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

int ReadStoredMatrix(std::istream& in, const std::string& name, int numRows,
                     const std::function<void(const StoredEntry&)>& take, const ReadProgress& progress)
{
  WordFile         text(in, name, '\0', progress);
  std::vector<int> diagonal;
  int              largest = 0;
  const int        most    = numRows > 0 ? numRows : INT_MAX;
  while (text.NextLine()) {
    text.RequireWholeLine();
    text.RequireWords(3, "row, column and value");
    const int    column = text.GetInteger(1, "column", 1, most);
    const int    row    = text.GetInteger(0, "row", 1, column);
    const double value  = text.GetDouble(2, "value");
    largest             = std::max(largest, column);
    if (row == column) diagonal.push_back(row - 1);
    take({row - 1, column - 1, value, text.File().Line()});
  }
  if (largest == 0) text.File().FailAtEnd("row, column and value");
  if (numRows > 0) largest = numRows;
  CheckDiagonal(std::move(diagonal), largest, name, text.File().Line());
  return largest;
}

}  // namespace quilon::calculix
