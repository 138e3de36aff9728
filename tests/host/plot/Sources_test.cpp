#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "matrix/MatrixEntries.h"
#include "PictureBytes.h"
#include "plot/ConvergenceChart.h"
#include "plot/SparsityPicture.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace quilon {
namespace {

constexpr char kCvg[] =
    "SUMMARY OF C0NVERGENCE INFORMATION\n"
    "  STEP   INC  ATT   ITER     CONT.   RESID.        CORR.      RESID.      CORR.\n"
    "                              EL.    FORCE         DISP       FLUX        TEMP.\n"
    "                              (#)     (%)           (%)        (%)         (%)\n"
    "     1     1     1     1        0  0.7815E+01  0.1000E+03  0.0000E+00  0.0000E+00\n"
    "     1     1     1     2        0  0.1000E-03  0.1631E-01  0.0000E+00  0.0000E+00\n"
    "     1     2     1     1        0  0.5000E-03  0.2852E-01  0.0000E+00  0.0000E+00\n"
    "     2     1     1     1        0  0.4000E-03  0.3554E-07  0.0000E+00  0.0000E+00\n";

class ConvergenceCharts : public testing::Test
{
protected:
  std::filesystem::path Write(const std::string& name, const std::string& text)
  {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return folder_ / name;
  }

  quilon_test::TempFolder folder_;
};

TEST_F(ConvergenceCharts, OfIterationsHaveWhatTheCalculationHas)
{
  const Chart chart = MakeConvergenceChart(Write("job.cvg", kCvg));
  EXPECT_EQ(chart.title, "Convergence of job.cvg");
  EXPECT_TRUE(chart.y.isLogarithmic);
  ASSERT_EQ(chart.series.size(), 2u) << "nothing is said of a flux that is not there";
  EXPECT_EQ(chart.series[0].name, "residual force");
  EXPECT_THAT(chart.series[0].x, testing::ElementsAre(1, 2, 2.5, 3, 3.5, 4));
  EXPECT_THAT(chart.series[0].y, testing::ElementsAre(7.815, 1e-4, testing::IsNan(), 5e-4, testing::IsNan(), 4e-4));
  EXPECT_EQ(chart.series[1].name, "displacement correction");
  EXPECT_THAT(chart.dividers, testing::ElementsAre(2.5, 3.5));
}

TEST_F(ConvergenceCharts, OfIncrementsTellAttemptsApart)
{
  const Chart chart =
      MakeConvergenceChart(Write("job.sta",
                                 "SUMMARY OF JOB INFORMATION\n"
                                 "  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME\n"
                                 "     1          1     1U   16  0.000000E+00  0.000000E+00  0.100000E+01\n"
                                 "     1          1     2     5  0.250000E+00  0.250000E+00  0.250000E+00\n"
                                 "     2          1     1     2  0.125000E+01  0.250000E+00  0.250000E+00\n"));
  ASSERT_EQ(chart.series.size(), 2u);
  EXPECT_EQ(chart.series[0].name, "converged");
  EXPECT_THAT(chart.series[0].x, testing::ElementsAre(2, 3));
  EXPECT_THAT(chart.series[0].y, testing::ElementsAre(5, 2));
  EXPECT_EQ(chart.series[1].name, "cut back");
  EXPECT_THAT(chart.series[1].y, testing::ElementsAre(16));
  EXPECT_THAT(chart.dividers, testing::ElementsAre(2.5));
}

TEST_F(ConvergenceCharts, NeedALogWithIterations)
{
  const auto messageOf = [](const std::filesystem::path& path) {
    try {
      MakeConvergenceChart(path);
    } catch (const FED_Failure& failure) {
      return std::string(failure.what());
    }
    return std::string("no failure");
  };
  EXPECT_EQ(messageOf("job.dat"), "job.dat: expected a log of the solver that ends in .cvg or .sta");
  const std::filesystem::path empty = Write("job.cvg", std::string(kCvg).substr(0, std::string(kCvg).find("     1")));
  EXPECT_EQ(messageOf(empty), empty.string() + ": no iterations to show, as of a linear calculation");
}

/// How much ink each third of the matrix has: shape [3, 3], from the top left. The field is known by its frame.
std::array<std::array<double, 3>, 3> InkOf(const Bitmap& bitmap)
{
  std::array<std::array<double, 3>, 3> ink{};
  const int                            left = 64, top = 76, side = 600;
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x)
      ink[static_cast<std::size_t>(y * 3 / side)][static_cast<std::size_t>(x * 3 / side)] +=
          255.0 - (quilon_test::PixelAt(bitmap, left + x, top + y) >> 16U & 0xFFU);
  return ink;
}

TEST(SparsityPicture, HasADotWhereThereIsAValue)
{
  // Values at (0, 0), (1, 2) and (2, 1); a stored zero at (2, 2).
  const FED_YaleMatrix matrix = matrix::Assemble({3, 3, {{0, 0, 1.0}, {1, 2, -2.0}, {2, 1, 3.0}, {2, 2, 0.0}}}, "test");
  const matrix::RowView rows(matrix, "test");
  const Bitmap          bitmap = quilon_test::ReadPng(DrawSparsity(rows, "three", PictureFormat::Png, {688, 700}));
  const auto            ink    = InkOf(bitmap);
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column) {
      const bool hasValue = (row == 0 && column == 0) || (row == 1 && column == 2) || (row == 2 && column == 1);
      EXPECT_EQ(ink[row][column] > 0.0, hasValue) << row << ' ' << column;
    }
}

TEST(SparsityPicture, AValueOfALargeMatrixIsSeen)
{
  matrix::Entries entries{100000, 100000, {{50000, 50000, 1.0}}};
  for (int i = 0; i < 100000; ++i)
    if (i != 50000) entries.entries.push_back({i, 0, 1.0});
  const FED_YaleMatrix  matrix = matrix::Assemble(std::move(entries), "test");
  const matrix::RowView rows(matrix, "test");
  const auto            ink = InkOf(quilon_test::ReadPng(DrawSparsity(rows, "large", PictureFormat::Png, {688, 700})));
  EXPECT_GT(ink[1][1], 30.0);
  EXPECT_GT(ink[0][0], ink[1][1]);
  EXPECT_EQ(ink[0][2], 0.0);
}

}  // namespace
}  // namespace quilon
