#include "calculix/StaReader.h"

#include <cstddef>
#include <fstream>

#include "text/ColumnText.h"
#include "text/LineFile.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kRowSize = 71;

StaRow ReadRow(const LineFile& file)
{
  const std::size_t size = WithoutTrailingBlanks(file.Text()).size();
  if (size != kRowSize) {
    file.Fail("expected a row of " + std::to_string(kRowSize) + " columns, found " + std::to_string(size));
  }
  StaRow row;
  row.line      = file.Line();
  row.step      = file.GetInteger(2, 5);
  row.increment = file.GetInteger(8, 10);
  row.attempt   = file.GetInteger(19, 5);
  // A 'U' behind the attempt marks one that did not converge.
  row.converged     = file.Text()[23] != 'U';
  row.iterations    = file.GetInteger(row.converged ? 25 : 26, row.converged ? 5 : 4);
  row.totalTime     = file.GetDouble(31, 13);
  row.stepTime      = file.GetDouble(45, 13);
  row.incrementTime = file.GetDouble(59, 13);
  return row;
}

}  // namespace

std::vector<StaRow> ReadSta(std::istream& in, const std::string& name)
{
  const ReadProgress  noProgress;
  LineFile            file(in, name, noProgress);
  std::vector<StaRow> rows;
  for (const char* title :
       {"SUMMARY OF JOB INFORMATION", "  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME"})
  {
    const std::string expected = "the title '" + std::string(title) + "'";
    if (!file.NextLine()) file.FailAtEnd(expected);
    if (WithoutTrailingBlanks(file.Text()) != title) file.FailExpected(expected);
  }
  while (file.NextLine())
    if (!WithoutTrailingBlanks(file.Text()).empty()) rows.push_back(ReadRow(file));
  return rows;
}

std::vector<StaRow> ReadSta(const std::filesystem::path& path)
{
  std::ifstream in = OpenLineFile(path);
  return ReadSta(in, path.string());
}

}  // namespace quilon::calculix
