#include "matrix/YaleText.h"

#include <cstddef>
#include <ostream>

#include <bundled/NativePath.h>

#include "FED_YaleMatrixText.h"
#include "matrix/MatrixEntries.h"
#include "text/Format.h"

namespace quilon::matrix {

namespace {

void WriteList(std::ostream& out, const char* title, const FED_IntArray& list)
{
  out << "# " << title << '\n';
  for (std::size_t i = 0; i < list.GetSize(); ++i) out << list.GetData()[i] << '\n';
}

}  // namespace

FED_YaleMatrix ReadYaleText(const std::filesystem::path& path)
{
  FED_YaleMatrix matrix = FED_YaleMatrixText::ReadYaleMatrix(WidePath(path));
  RequireDistinct(RowView(matrix, path.string()), path.string());
  return matrix;
}

void WriteYaleText(std::ostream& out, const FED_YaleMatrix& matrix)
{
  const FED_DoubleArray& values = matrix.GetValues();
  out << "# number of values, rows, columns\n"
      << values.GetSize() << '\n'
      << matrix.GetNumRows() << '\n'
      << matrix.GetNumColumns() << '\n'
      << "# values, row by row\n";
  for (std::size_t i = 0; i < values.GetSize(); ++i) out << FormatNumber(values.GetData()[i]) << '\n';
  WriteList(out, "column indices", matrix.GetColumnIndices());
  WriteList(out, "row pointers", matrix.GetRowPointers());
}

}  // namespace quilon::matrix
