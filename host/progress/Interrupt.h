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

/// For programs that handle signals by themselves, as interpreters do: while it lives, an interrupt signal goes to
/// whoever handles it and leaves a mark besides, that only this thread sees. One that is ignored, or ends the program,
/// stays so. Of one thread, the one that handles signals; within another one it has no effect of its own.
class InterruptWatch
{
public:
  InterruptWatch();
  InterruptWatch(const InterruptWatch&)            = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;
  ~InterruptWatch();
};

/// @return whether a signal has left its mark
bool IsInterrupted() noexcept;

/// Called now and then by long work.
/// @throws Interrupted when a signal has left its mark
void ThrowIfInterrupted();

}  // namespace quilon
