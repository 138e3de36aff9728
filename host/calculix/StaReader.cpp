#include "calculix/StaReader.h"

#include <cstddef>
#include <fstream>

#include "text/ColumnText.h"
#include "text/LineFile.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kStaRowSize = 71;

StaRow ReadStaRow(const LineFile& file)
{
  file.ExpectWidth(kStaRowSize);
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
  file.ExpectTitles(
      {"SUMMARY OF JOB INFORMATION", "  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME"});
  while (file.NextLine())
    if (!WithoutTrailingBlanks(file.Text()).empty()) rows.push_back(ReadStaRow(file));
  return rows;
}

std::vector<StaRow> ReadSta(const std::filesystem::path& path)
{
  std::ifstream in = OpenLineFile(path);
  return ReadSta(in, path.string());
}

}  // namespace quilon::calculix
