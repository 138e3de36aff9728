#pragma once

/// @file
/// Work on several cores.

#include <cstddef>

#include "progress/Crew.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace quilon {

struct CommandContext;

struct JobsOption
{
  std::size_t  jobs   = 1;
  CLI::Option* option = nullptr;
};

/// Adds --jobs N. The target outlives the parsing and holds the default: the cores.
void AddJobsOption(CLI::App& app, JobsOption& jobs);

/// Who does the work of a command: the processes that share it, else threads.
class CommandCrew
{
public:
  /// @throws FED_Failure for --jobs where processes share the work
  CommandCrew(const JobsOption& jobs, const CommandContext& context);

  Crew& Get() noexcept { return processes_ != nullptr ? *processes_ : threads_; }

private:
  Crew*      processes_;
  ThreadCrew threads_;
};

}  // namespace quilon
