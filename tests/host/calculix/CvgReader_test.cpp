#include "calculix/CvgReader.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::calculix::CvgRow;
using quilon::calculix::ReadCvg;

constexpr char kTitles[] =
    "SUMMARY OF C0NVERGENCE INFORMATION\n"
    "  STEP   INC  ATT   ITER     CONT.   RESID.        CORR.      RESID.      CORR.\n"
    "                              EL.    FORCE         DISP       FLUX        TEMP.\n"
    "                              (#)     (%)           (%)        (%)         (%)\n";

std::vector<CvgRow> Read(const std::string& text)
{
  std::istringstream in(text);
  return ReadCvg(in, "job.cvg");
}

std::string MessageOf(const std::string& text)
{
  try {
    Read(text);
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(CvgReader, ReadsTheColumnsOfTheSolver)
{
  const auto rows = Read(std::string(kTitles) +
                         "     2     1     1     1        0  0.7815E+01  0.1000E+03  0.0000E+00  0.0000E+00\n"
                         "     2    12     3     4      112  0.1000E-02  0.1631E-01  0.2000E+00  0.3000E-04\n");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].step, 2);
  EXPECT_EQ(rows[0].residualForce, 7.815);
  EXPECT_EQ(rows[0].correctionDisp, 100.0);
  EXPECT_EQ(rows[1].increment, 12);
  EXPECT_EQ(rows[1].attempt, 3);
  EXPECT_EQ(rows[1].iteration, 4);
  EXPECT_EQ(rows[1].contactElements, 112);
  EXPECT_EQ(rows[1].residualFlux, 0.2);
  EXPECT_EQ(rows[1].correctionTemp, 3e-5);
  EXPECT_EQ(rows[1].line, 6);
  EXPECT_TRUE(Read(kTitles).empty());
}

TEST(CvgReader, SaysWhereAFileIsDamaged)
{
  EXPECT_EQ(MessageOf("something\n"),
            "job.cvg:1: expected the title 'SUMMARY OF C0NVERGENCE INFORMATION', found 'something'");
  EXPECT_EQ(MessageOf(std::string(kTitles) + "     2     1     1     1        0  0.7815E+01\n"),
            "job.cvg:5: expected a row of 81 columns, found 45");
  EXPECT_EQ(MessageOf(std::string(kTitles) +
                      "     2     1     x     1        0  0.7815E+01  0.1000E+03  0.0000E+00  0.0000E+00\n")
                .substr(0, 10),
            "job.cvg:5:");
}

}  // namespace
