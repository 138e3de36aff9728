#include "calculix/CvgReader.h"

#include <cstddef>
#include <fstream>

#include "text/ColumnText.h"
#include "text/LineFile.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kCvgRowSize = 81;

CvgRow ReadCvgRow(const LineFile& file)
{
  file.ExpectWidth(kCvgRowSize);
  CvgRow row;
  row.line            = file.Line();
  row.step            = file.GetInteger(2, 5);
  row.increment       = file.GetInteger(8, 5);
  row.attempt         = file.GetInteger(14, 5);
  row.iteration       = file.GetInteger(20, 5);
  row.contactElements = file.GetInteger(26, 8);
  row.residualForce   = file.GetDouble(36, 10);
  row.correctionDisp  = file.GetDouble(48, 10);
  row.residualFlux    = file.GetDouble(60, 10);
  row.correctionTemp  = file.GetDouble(72, 10);
  return row;
}

}  // namespace

std::vector<CvgRow> ReadCvg(std::istream& in, const std::string& name)
{
  const ReadProgress  noProgress;
  LineFile            file(in, name, noProgress);
  std::vector<CvgRow> rows;
  // The zero in the first title is the solver's.
  file.ExpectTitles({"SUMMARY OF C0NVERGENCE INFORMATION",
                     "  STEP   INC  ATT   ITER     CONT.   RESID.        CORR.      RESID.      CORR.",
                     "                              EL.    FORCE         DISP       FLUX        TEMP.",
                     "                              (#)     (%)           (%)        (%)         (%)"});
  while (file.NextLine())
    if (!WithoutTrailingBlanks(file.Text()).empty()) rows.push_back(ReadCvgRow(file));
  return rows;
}

std::vector<CvgRow> ReadCvg(const std::filesystem::path& path)
{
  std::ifstream in = OpenLineFile(path);
  return ReadCvg(in, path.string());
}

}  // namespace quilon::calculix
