#include "commands/JobsOption.h"

#include <CLI/CLI.hpp>

#include "progress/Jobs.h"

namespace quilon {

void AddJobsOption(CLI::App& app, std::size_t& jobs)
{
  constexpr std::size_t kMost = 1024;
  jobs                        = CountCores();
  app.add_option("--jobs", jobs, "Threads to work in; the output is the same (default: the cores)")
      ->type_name("N")
      ->check(CLI::Range(std::size_t{1}, kMost));
}

}  // namespace quilon
