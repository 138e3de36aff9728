// Any bytes as a matrix in Yale text: they are read to their end or refused with a FED_Failure, and what is read is
// written so that it reads back.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "matrix/YaleText.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

void Require(bool holds)
{
  if (!holds) std::abort();
}

void CheckRoundTrip(const FED_YaleMatrix& matrix, const std::filesystem::path& path)
{
  {
    std::ofstream out(path, std::ios::binary);
    quilon::matrix::WriteYaleText(out, matrix);
  }
  const FED_YaleMatrix again = quilon::matrix::ReadYaleText(path);
  Require(again.GetNumRows() == matrix.GetNumRows() && again.GetNumColumns() == matrix.GetNumColumns());
  Require(again.GetRowPointers() == matrix.GetRowPointers());
  Require(again.GetColumnIndices() == matrix.GetColumnIndices());
  for (std::size_t i = 0; i < matrix.GetValues().GetSize(); ++i) {
    const double value = matrix.GetValues().GetData()[i];
    Require(again.GetValues().GetData()[i] == value || std::isnan(value));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon_test::TempFolder kFolder;
  static const std::filesystem::path   kPath = kFolder / "fuzz.txt";
  std::ofstream(kPath, std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  try {
    const FED_YaleMatrix matrix = quilon::matrix::ReadYaleText(kPath);
    CheckRoundTrip(matrix, kPath);
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind(kPath.string(), 0) == 0);
  }
  return 0;
}
