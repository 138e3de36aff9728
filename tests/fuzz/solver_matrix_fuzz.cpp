// Any bytes as a .sti or .mas file and as a .dof file: they are read to their end or refused with a FED_Failure.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "matrix/MatrixEntries.h"
#include "matrix/SolverMatrix.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon::matrix;

constexpr const char* kName = "fuzz.sti";

void Require(bool holds)
{
  if (!holds) std::abort();
}

void ReadAsMatrix(const std::string& text, int numRows)
{
  std::istringstream in(text);
  try {
    const FED_YaleMatrix matrix = ReadSolverMatrix(in, kName, numRows);
    const RowView        rows(matrix, "read");
    Require(FindSymmetry(rows.List(), true) == Symmetry::Symmetric);
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind(kName, 0) == 0);
  }
}

void ReadAsDofs(const std::string& text)
{
  std::istringstream in(text);
  try {
    const std::vector<Dof> dofs   = ReadDofs(in, kName);
    const FED_YaleMatrix   matrix = DofMatrix(dofs);
    const RowView          rows(matrix, "dofs");
    Require(rows.NumRows() == static_cast<std::int64_t>(dofs.size()));
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind(kName, 0) == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const std::string text(reinterpret_cast<const char*>(data), size);
  ReadAsMatrix(text, 0);
  ReadAsMatrix(text, 3);
  ReadAsDofs(text);
  return 0;
}
