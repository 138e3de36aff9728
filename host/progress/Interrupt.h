#pragma once

/// @file
/// Ctrl-C.

#include <exception>

namespace quilon {

/// The user has asked to stop.
class Interrupted : public std::exception
{
public:
  const char* what() const noexcept override { return "interrupted"; }
};

/// From now on the first interrupt, termination or hang-up signal only leaves a mark, so that work stops where it can
/// stop cleanly; a second one ends the program at once. A signal that is ignored stays so. A closed pipe and a limit on
/// the size of files no longer kill the program: writing reports them.
void WatchSignals();

/// @return whether a signal has left its mark
bool IsInterrupted() noexcept;

/// Called now and then by long work.
/// @throws Interrupted when a signal has left its mark
void ThrowIfInterrupted();

}  // namespace quilon
