#pragma once

/// @file
/// The program, but for main().

#include <functional>
#include <string>

namespace quilon {

class Crew;

/// Several processes that run one command line and share its work.
struct Processes
{
  Crew& crew;
  /// Told of the failure of a process that does not lead; it says nothing itself.
  std::function<void(const std::string& message)> onFailure;
};

/// Runs the command line. Errors are reported on standard error; nothing is thrown.
/// @param processes borrowed; null: this one alone
/// @return an ExitCode (commands/ExitCode.h)
int RunProgram(int argc, const char* const* argv, const Processes* processes = nullptr);

}  // namespace quilon
