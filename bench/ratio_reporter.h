#pragma once

/// @file
/// Console output of a benchmark program whose cases compare contestants: the usual lines, then a table of ratios.

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace quilon_bench {

/// Cases are named "<case>/<contestant>", the contestant behind the last slash, and count their items. After all runs a
/// table tells, per case, the first contestant's time per item and the others' times as multiples of it, each the best
/// of its repetitions: above 1 the first contestant is the faster one.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
  explicit RatioReporter(std::vector<std::string> contestants) : contestants_(std::move(contestants)) {}

  void ReportRuns(const std::vector<Run>& runs) override
  {
    for (const Run& run : runs) {
      const auto items = run.counters.find("items_per_second");
      if (run.run_type != Run::RT_Iteration || run.error_occurred || items == run.counters.end()) continue;
      const std::string& name  = run.run_name.function_name;
      const std::size_t  slash = name.rfind('/');
      if (times_.count(name.substr(0, slash)) == 0) cases_.push_back(name.substr(0, slash));
      const double ns   = 1e9 / items->second.value;
      double&      best = times_[name.substr(0, slash)].emplace(name.substr(slash + 1), ns).first->second;
      best              = std::min(best, ns);
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override
  {
    std::printf("\n%-32s %12s", "ns per item; then multiples of it", contestants_.front().c_str());
    for (std::size_t i = 1; i < contestants_.size(); ++i) std::printf(" %12s", contestants_[i].c_str());
    std::printf("\n");
    for (const std::string& name : cases_) {
      std::printf("%-33s", name.c_str());
      const double first = times_[name][contestants_.front()];
      std::printf(" %12.2f", first);
      for (std::size_t i = 1; i < contestants_.size(); ++i) {
        const auto time = times_[name].find(contestants_[i]);
        if (time == times_[name].end()) {
          std::printf(" %12s", "-");
        } else {
          std::printf(" %12.2f", time->second / first);
        }
      }
      std::printf("\n");
    }
    ConsoleReporter::Finalize();
  }

private:
  std::vector<std::string>                             contestants_;
  std::vector<std::string>                             cases_;  // in the order of the runs
  std::map<std::string, std::map<std::string, double>> times_;  // ns per item by case and contestant
};

}  // namespace quilon_bench
