#include "plot/ConvergenceChart.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "calculix/CvgReader.h"
#include "calculix/StaReader.h"
#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

namespace {

template <typename Row>
bool IsNewAttempt(const Row& before, const Row& row)
{
  return row.step != before.step || row.increment != before.increment || row.attempt != before.attempt;
}

/// A divider in front of each row with which another step begins, or another attempt of an increment where these are
/// not too many to be told apart.
template <typename Row>
void AddDividers(const std::vector<Row>& rows, bool ofIncrements, Chart& chart)
{
  constexpr std::size_t kMost = 24;
  std::vector<double>   steps;
  std::vector<double>   all;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const double place = static_cast<double>(i) + 0.5;
    const bool   isNew = rows[i].step != rows[i - 1].step;
    if (isNew) steps.push_back(place);
    if (IsNewAttempt(rows[i - 1], rows[i])) all.push_back(place);
  }
  chart.dividers = ofIncrements && all.size() <= kMost ? all : steps;
}

Chart ChartOfIterations(const std::vector<calculix::CvgRow>& rows)
{
  Chart chart;
  chart.x       = {"iteration", false, true};
  chart.y       = {"residual, correction [%]", true, false};
  chart.hasDots = rows.size() <= 200;
  const struct
  {
    const char* name;
    double calculix::CvgRow::*value;
  } columns[] = {{"residual force", &calculix::CvgRow::residualForce},
                 {"displacement correction", &calculix::CvgRow::correctionDisp},
                 {"residual flux", &calculix::CvgRow::residualFlux},
                 {"temperature correction", &calculix::CvgRow::correctionTemp}};
  for (const auto& column : columns) {
    Series series{column.name, {}, {}};
    for (std::size_t i = 0; i < rows.size(); ++i) {
      // The line ends with an attempt: the next one begins anew.
      if (i > 0 && IsNewAttempt(rows[i - 1], rows[i])) {
        series.x.push_back(static_cast<double>(i) + 0.5);
        series.y.push_back(std::numeric_limits<double>::quiet_NaN());
      }
      series.x.push_back(static_cast<double>(i + 1));
      series.y.push_back(rows[i].*column.value);
    }
    // What a calculation has not is logged as zeros.
    if (std::any_of(series.y.begin(), series.y.end(), [](double value) { return value > 0.0; }))
      chart.series.push_back(std::move(series));
  }
  AddDividers(rows, true, chart);
  return chart;
}

Chart ChartOfIncrements(const std::vector<calculix::StaRow>& rows)
{
  Chart chart;
  chart.x       = {"increment, with its attempts", false, true};
  chart.y       = {"iterations", false, true};
  chart.hasDots = true;
  Series converged{"converged", {}, {}};
  Series cutBack{"cut back", {}, {}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    Series& series = rows[i].converged ? converged : cutBack;
    series.x.push_back(static_cast<double>(i + 1));
    series.y.push_back(rows[i].iterations);
  }
  for (Series* series : {&converged, &cutBack})
    if (!series->x.empty()) chart.series.push_back(std::move(*series));
  AddDividers(rows, false, chart);
  return chart;
}

}  // namespace

Chart MakeConvergenceChart(const std::filesystem::path& path)
{
  const std::string extension = LowerExtension(path);
  if (extension != ".cvg" && extension != ".sta")
    Fail(path.string() + ": expected a log of the solver that ends in .cvg or .sta");
  Chart chart =
      extension == ".cvg" ? ChartOfIterations(calculix::ReadCvg(path)) : ChartOfIncrements(calculix::ReadSta(path));
  if (chart.series.empty()) Fail(path.string() + ": no iterations to show, as of a linear calculation");
  chart.title = "Convergence of " + path.filename().string();
  return chart;
}

}  // namespace quilon
