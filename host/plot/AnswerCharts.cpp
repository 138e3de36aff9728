#include "plot/AnswerCharts.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "database/StepTimes.h"
#include "selection/Selection.h"
#include "text/Format.h"

namespace quilon {

namespace {

/// Few points are shown as such: between them nothing is known.
void ChooseDots(Chart& chart)
{
  constexpr std::size_t kFew = 60;
  chart.hasDots              = std::all_of(chart.series.begin(), chart.series.end(),
                                           [](const Series& series) { return series.x.size() <= kFew; });
}

/// @return the name that all series have, else "value"
std::string CommonName(const std::vector<std::string>& names)
{
  const bool areEqual =
      std::all_of(names.begin(), names.end(), [&names](const std::string& name) { return name == names.front(); });
  return areEqual && !names.empty() ? names.front() : "value";
}

}  // namespace

Chart MakeHistoryChart(const std::vector<HistorySeries>& series, const std::vector<std::string>& names,
                       const std::string& timeName)
{
  assert(names.size() == series.size());
  const bool               haveTimes = std::all_of(series.begin(), series.end(), [](const HistorySeries& one) {
    return std::all_of(one.points.begin(), one.points.end(), [](const HistoryPoint& point) { return point.time; });
  });
  Chart                    chart;
  std::vector<std::string> components;
  chart.x = {haveTimes ? timeName : "step", false, !haveTimes};
  for (std::size_t i = 0; i < series.size(); ++i) {
    Series line{Printable(names[i]), {}, {}};
    for (const HistoryPoint& point : series[i].points) {
      line.x.push_back(haveTimes ? *point.time : static_cast<double>(line.x.size() + 1));
      line.y.push_back(point.value);
    }
    chart.series.push_back(std::move(line));
    components.push_back(series[i].component);
  }
  chart.y.title = Printable(CommonName(components));
  ChooseDots(chart);
  return chart;
}

Chart MakePathChart(const PathReport& report, const StepTimes& times)
{
  Chart                    chart;
  std::vector<std::string> columns;
  chart.x.title = "length";
  for (const PathStep& step : report.steps) {
    const std::optional<double> time = times.TimeOf(step.blocks.front());
    for (std::size_t column = 0; column < step.columns.size(); ++column) {
      const std::string when = time ? "at " + FormatRounded(*time) : ToSelectionText(step.blocks.front());
      Series            line{
          Printable(report.steps.size() > 1 ? step.columns[column] + ' ' + when : step.columns[column]), {}, {}};
      for (std::size_t p = 0; p < report.points.size(); ++p) {
        line.x.push_back(report.points[p].s);
        line.y.push_back(step.rows[p][column].value_or(std::numeric_limits<double>::quiet_NaN()));
      }
      chart.series.push_back(std::move(line));
      columns.push_back(step.columns[column]);
    }
  }
  chart.y.title = Printable(CommonName(columns));
  ChooseDots(chart);
  return chart;
}

}  // namespace quilon
