#pragma once

/// @file
/// The program, but for main().

namespace quilon {

/// How the program ends.
enum ExitCode : int
{
  ExitSuccess     = 0,
  ExitDifferent   = 1,    ///< what was compared differs, or what was checked does not hold
  ExitTrouble     = 2,    ///< bad input, bad usage, a failure of the system
  ExitInterrupted = 130,  ///< Ctrl-C or a request to terminate
  ExitBrokenPipe  = 141   ///< the reader of our output has gone
};

/// Runs the command line. Errors are reported on standard error; nothing is thrown.
/// @return an ExitCode
int RunProgram(int argc, const char* const* argv);

}  // namespace quilon
