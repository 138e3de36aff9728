// Any bytes as a .cvg file: they are read to their end or refused with a FED_Failure. There is a row for each line that
// is not blank, with the line's number, and all that it says is what its columns say when they are read another way.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "calculix/CvgReader.h"
#include "QuilonUtilities/FED_Failure.h"

#include "ColumnOracle.h"

namespace {

using namespace quilon_fuzz;

constexpr std::size_t kNumTitles = 4;

void CheckRow(const std::string& line, const quilon::calculix::CvgRow& row)
{
  Require(Says(Column(line, 2, 5), row.step) && Says(Column(line, 8, 5), row.increment));
  Require(Says(Column(line, 14, 5), row.attempt) && Says(Column(line, 20, 5), row.iteration));
  Require(Says(Column(line, 26, 8), row.contactElements));
  Require(Says(Column(line, 36, 10), row.residualForce) && Says(Column(line, 48, 10), row.correctionDisp));
  Require(Says(Column(line, 60, 10), row.residualFlux) && Says(Column(line, 72, 10), row.correctionTemp));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const std::string  text(reinterpret_cast<const char*>(data), size);
  std::istringstream in(text);
  try {
    const auto rows  = quilon::calculix::ReadCvg(in, "fuzz.cvg");
    const auto lines = LinesOf(text);
    Require(rows.size() + kNumTitles == CountFilled(lines));
    std::int64_t former = kNumTitles;
    for (const quilon::calculix::CvgRow& row : rows) {
      Require(row.line > former && static_cast<std::size_t>(row.line) <= lines.size());
      former = row.line;
      CheckRow(lines[static_cast<std::size_t>(row.line) - 1], row);
    }
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind("fuzz.cvg:", 0) == 0);
  }
  return 0;
}
