#include "commands/JobsOption.h"

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "text/Failure.h"

namespace quilon {

void AddJobsOption(CLI::App& app, JobsOption& jobs)
{
  constexpr std::size_t kMost = 1024;
  jobs.jobs                   = CountCores();
  jobs.option = app.add_option("--jobs", jobs.jobs, "Threads to work in; the output is the same (default: the cores)")
                    ->type_name("N")
                    ->check(CLI::Range(std::size_t{1}, kMost));
}

CommandCrew::CommandCrew(const JobsOption& jobs, const CommandContext& context)
    : processes_(context.processes), threads_(jobs.jobs)
{
  if (processes_ != nullptr && jobs.option != nullptr && jobs.option->count() > 0)
    Fail("--jobs goes without several processes, expected one of the two");
}

}  // namespace quilon
