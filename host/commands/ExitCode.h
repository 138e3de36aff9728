#pragma once

/// @file
/// How the program ends.

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

}  // namespace quilon
