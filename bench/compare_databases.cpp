// Times the comparison of two working databases inside one process, from opening them to the verdict, and tells the
// most memory that it took.
//
//   compare_databases A.fed B.fed RULE [REPEATS]
//
// RULE is one of `quilon diff`, such as "default" or "rel=1e-6". Files come from memory: a first run is not counted.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

#include <sys/resource.h>

#include <bundled/FED_ResultDatabase.h>

#include "diff/Compare.h"

namespace {

struct Run
{
  double      seconds;
  std::size_t values;
  bool        isSame;
};

Run Measure(const char* const* arguments)
{
  const auto                   start = std::chrono::steady_clock::now();
  const FED_ResultDatabase     a(arguments[1], FED_ResultDatabase::ReadOnly);
  const FED_ResultDatabase     b(arguments[2], FED_ResultDatabase::ReadOnly);
  quilon::diff::CompareOptions options;
  options.rule                               = quilon::diff::ParseRule(arguments[3], "");
  options.allNorms                           = false;
  const quilon::diff::Report          report = quilon::diff::Compare({a, "A"}, {b, "B"}, options);
  const std::chrono::duration<double> took   = std::chrono::steady_clock::now() - start;
  return {took.count(), report.values, report.isSame};
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc < 4 || argc > 5) {
    std::fputs("usage: compare_databases A.fed B.fed RULE [REPEATS]\n", stderr);
    return 2;
  }
  try {
    const Run           first = Measure(argv);
    std::vector<double> seconds;
    for (int i = 0; i < std::max(argc > 4 ? std::atoi(argv[4]) : 5, 1); ++i) seconds.push_back(Measure(argv).seconds);
    std::sort(seconds.begin(), seconds.end());
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("best %.4f s, median %.4f s, %.3f ns a value, peak %ld MiB, %s\n", seconds.front(),
                seconds[seconds.size() / 2],
                1e9 * seconds.front() / static_cast<double>(std::max<std::size_t>(first.values, 1)),
                usage.ru_maxrss / 1024, first.isSame ? "same" : "different");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "compare_databases: %s\n", error.what());
    return 2;
  }
  return 0;
}
