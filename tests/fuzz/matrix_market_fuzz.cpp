// Any bytes as a Matrix Market file: they are read to their end or refused with a FED_Failure, and what is read is
// written so that it reads back.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "matrix/MatrixMarket.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon::matrix;

constexpr const char*  kName     = "fuzz.mtx";
constexpr std::int64_t kFewLines = 10000;

void Require(bool holds)
{
  if (!holds) std::abort();
}

FED_YaleMatrix Read(const std::string& text)
{
  std::istringstream in(text);
  return ReadMatrixMarket(in, kName);
}

void CheckRoundTrip(const FED_YaleMatrix& matrix)
{
  const RowView            rows(matrix, "read");
  const std::vector<Entry> entries = rows.List();
  std::ostringstream       out;
  WriteMatrixMarket(out, matrix, FindSymmetry(entries, rows.NumRows() == rows.NumColumns()), "read");
  const FED_YaleMatrix     again = Read(out.str());
  const std::vector<Entry> other = RowView(again, "again").List();
  Require(other.size() == entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    Require(other[i].row == entries[i].row && other[i].column == entries[i].column);
    Require(other[i].value == entries[i].value || std::isnan(entries[i].value));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  try {
    const FED_YaleMatrix matrix = Read(std::string(reinterpret_cast<const char*>(data), size));
    if (RowView(matrix, "read").NumRows() < kFewLines) CheckRoundTrip(matrix);
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind(kName, 0) == 0);
  }
  return 0;
}
