#include "Interrupt.h"

#include <csignal>

#include <signal.h>

namespace quilon {

namespace {

// The one thing that a signal handler may write. It belongs to the process like the signals themselves.
volatile std::sig_atomic_t interrupted = 0;

void Mark(int) { interrupted = 1; }

}  // namespace

void WatchSignals()
{
  struct sigaction action = {};
  action.sa_handler       = Mark;
  action.sa_flags         = static_cast<int>(SA_RESETHAND);
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

void ThrowIfInterrupted()
{
  if (interrupted != 0) throw Interrupted();
}

}  // namespace quilon
