#include "progress/Interrupt.h"

#include <csignal>
#include <initializer_list>

#include <signal.h>

namespace quilon {

namespace {

// The one thing that a signal handler may write. It belongs to the process like the signals themselves.
volatile std::sig_atomic_t interrupted = 0;

void Mark(int) { interrupted = 1; }

// The same of an InterruptWatch, and whose handler it stands before.
volatile std::sig_atomic_t noticed = 0;
struct sigaction           watchedAction;

thread_local int numWatches = 0;

void MarkAndPassOn(int number)
{
  noticed = 1;
  watchedAction.sa_handler(number);
}

}  // namespace

InterruptWatch::InterruptWatch()
{
  if (numWatches++ > 0) return;
  noticed = 0;
  sigaction(SIGINT, nullptr, &watchedAction);
  const bool takesDetails = (watchedAction.sa_flags & SA_SIGINFO) != 0;
  if (takesDetails || watchedAction.sa_handler == SIG_IGN || watchedAction.sa_handler == SIG_DFL) return;
  struct sigaction action = watchedAction;
  action.sa_handler       = MarkAndPassOn;
  sigaction(SIGINT, &action, nullptr);
}

InterruptWatch::~InterruptWatch()
{
  if (--numWatches > 0) return;
  struct sigaction current = {};
  sigaction(SIGINT, nullptr, &current);
  // Whoever took the signal meanwhile keeps it.
  const bool takesDetails = (current.sa_flags & SA_SIGINFO) != 0;
  if (!takesDetails && current.sa_handler == MarkAndPassOn) sigaction(SIGINT, &watchedAction, nullptr);
  noticed = 0;
}

void WatchSignals()
{
  sigset_t watched;
  sigemptyset(&watched);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction former = {};
    sigaction(number, nullptr, &former);
    if (former.sa_handler == SIG_IGN) continue;  // who started us wants us to go on
    struct sigaction action = {};
    action.sa_handler       = Mark;
    action.sa_flags         = static_cast<int>(SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    sigaction(number, &action, nullptr);
    sigaddset(&watched, number);
  }
  // A parent may have blocked them: a signal that came since is taken now.
  sigprocmask(SIG_UNBLOCK, &watched, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

bool IsInterrupted() noexcept { return interrupted != 0 || (noticed != 0 && numWatches > 0); }

void ThrowIfInterrupted()
{
  if (IsInterrupted()) throw Interrupted();
}

}  // namespace quilon
