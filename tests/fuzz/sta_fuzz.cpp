// Any bytes as a .sta file: they are read to their end or refused with a FED_Failure. There is a row for each line that
// is not blank, with the line's number, and all that it says is what its columns say when they are read another way.

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "calculix/StaReader.h"
#include "QuilonUtilities/FED_Failure.h"

#include "ColumnOracle.h"

namespace {

using namespace quilon_fuzz;

constexpr std::size_t kNumTitles = 2;

void CheckRow(const std::string& line, const quilon::calculix::StaRow& row)
{
  Require(row.converged == (Column(line, 24, 1) != "U"));
  Require(Says(Column(line, 2, 5), row.step) && Says(Column(line, 8, 10), row.increment));
  Require(Says(Column(line, 19, 5), row.attempt));
  Require(Says(row.converged ? Column(line, 25, 5) : Column(line, 26, 4), row.iterations));
  Require(Says(Column(line, 31, 13), row.totalTime) && Says(Column(line, 45, 13), row.stepTime));
  Require(Says(Column(line, 59, 13), row.incrementTime));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const std::string  text(reinterpret_cast<const char*>(data), size);
  std::istringstream in(text);
  try {
    const auto rows  = quilon::calculix::ReadSta(in, "fuzz.sta");
    const auto lines = LinesOf(text);
    Require(rows.size() + kNumTitles == CountFilled(lines));
    std::int64_t former = kNumTitles;
    for (const quilon::calculix::StaRow& row : rows) {
      Require(row.line > former && static_cast<std::size_t>(row.line) <= lines.size());
      former = row.line;
      CheckRow(lines[static_cast<std::size_t>(row.line) - 1], row);
    }
  } catch (const FED_Failure& failure) {
    Require(failure.GetMessage().rfind("fuzz.sta:", 0) == 0);
  }
  return 0;
}
