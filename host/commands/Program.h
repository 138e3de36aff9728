#pragma once

/// @file
/// The program, but for main().

namespace quilon {

/// Runs the command line. Errors are reported on standard error; nothing is thrown.
/// @return an ExitCode (commands/ExitCode.h)
int RunProgram(int argc, const char* const* argv);

}  // namespace quilon
