#pragma once

/// @file
/// Console output of a benchmark program whose cases compare contestants: the usual lines, then a table of ratios.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

namespace quilon_bench {

/// Takes the flag --rows=FILE out of the command line.
/// @return the file that RatioReporter writes, empty for none
inline std::string TakeRowsFile(int& argc, char** argv)
{
  constexpr std::string_view kFlag = "--rows=";
  std::string                file;
  int                        numKept = 1;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument.substr(0, kFlag.size()) == kFlag) {
      file = argument.substr(kFlag.size());
    } else {
      argv[numKept++] = argv[i];
    }
  }
  argc = numKept;
  return file;
}

/// Cases are named "<case>/<contestant>", the contestant behind the last slash, and count their items. After all runs a
/// table tells, per case, the first contestant's time per item and the others' times as multiples of it, each the best
/// of its repetitions: above 1 the first contestant is the faster one. The same times go, with their medians, to a file
/// of one JSON object a line for scripts/bench.sh.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
  /// @param family      names the table in the report
  /// @param contestants ours first
  /// @param rowsFile    empty for none
  RatioReporter(std::string family, std::vector<std::string> contestants, std::string rowsFile)
      : family_(std::move(family)), contestants_(std::move(contestants)), rowsFile_(std::move(rowsFile))
  {}

  void ReportRuns(const std::vector<Run>& runs) override
  {
    for (const Run& run : runs) {
      const auto items = run.counters.find("items_per_second");
      if (run.run_type != Run::RT_Iteration || run.error_occurred || items == run.counters.end()) continue;
      const std::string& name  = run.run_name.function_name;
      const std::size_t  slash = name.rfind('/');
      if (times_.count(name.substr(0, slash)) == 0) cases_.push_back(name.substr(0, slash));
      times_[name.substr(0, slash)][name.substr(slash + 1)].push_back(1e9 / items->second.value);
      const auto bytes = run.counters.find("bytes");
      if (bytes != run.counters.end()) bytes_[name] = bytes->second.value;
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override
  {
    for (auto& [name, contestants] : times_) {
      for (auto& [contestant, times] : contestants) std::sort(times.begin(), times.end());
    }
    PrintTable();
    if (!rowsFile_.empty()) WriteRows();
    ConsoleReporter::Finalize();
  }

private:
  void PrintTable()
  {
    std::printf("\n%-32s %12s", "ns per item; then multiples of it", contestants_.front().c_str());
    for (std::size_t i = 1; i < contestants_.size(); ++i) std::printf(" %12s", contestants_[i].c_str());
    std::printf("\n");
    for (const std::string& name : cases_) {
      std::printf("%-33s", name.c_str());
      const auto&  times = times_[name];
      const auto   ours  = times.find(contestants_.front());
      const double first = ours == times.end() ? std::nan("") : ours->second.front();
      std::printf(" %12.2f", first);
      for (std::size_t i = 1; i < contestants_.size(); ++i) {
        const auto time = times.find(contestants_[i]);
        if (time == times.end()) {
          std::printf(" %12s", "-");
        } else {
          std::printf(" %12.2f", time->second.front() / first);
        }
      }
      std::printf("\n");
    }
  }

  void WriteRows()
  {
    std::ofstream out(rowsFile_, std::ios::app);
    for (const std::string& name : cases_) {
      for (const std::string& contestant : contestants_) {
        const auto found = times_[name].find(contestant);
        if (found == times_[name].end()) continue;
        const std::vector<double>& times = found->second;
        out << R"({"family": ")" << family_ << R"(", "case": ")" << name << R"(", "contestant": ")" << contestant
            << R"(", "unit": "ns", "min": )" << times.front() << R"(, "median": )" << times[times.size() / 2]
            << R"(, "rounds": )" << times.size();
        const auto bytes = bytes_.find(name + '/' + contestant);
        if (bytes != bytes_.end()) out << R"(, "bytes": )" << bytes->second;
        out << "}\n";
      }
    }
    if (!out.flush()) std::fprintf(stderr, "%s: cannot be written\n", rowsFile_.c_str());
  }

  std::string                                                       family_;
  std::vector<std::string>                                          contestants_;
  std::string                                                       rowsFile_;
  std::vector<std::string>                                          cases_;  // in the order of the runs
  std::map<std::string, std::map<std::string, std::vector<double>>> times_;  // ns per item by case and contestant
  std::map<std::string, double> bytes_;  // per item by case with contestant, of those that tell
};

}  // namespace quilon_bench
