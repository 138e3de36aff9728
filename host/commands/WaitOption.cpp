#include "commands/WaitOption.h"

#include <CLI/CLI.hpp>

#include "commands/NumberOptions.h"
#include "terminal/Console.h"

namespace quilon {

void AddWriterOptions(CLI::App& app, WaitOptions& options)
{
  AddMagnitudeOption(app, "--wait", options.seconds,
                     "Seconds to wait for another program that writes to it (default: 0)");
  app.add_option("--lock", options.lock, "How writers are kept off: system, file (default: system, or QUILON_LOCK)")
      ->type_name("SORT")
      ->check(CLI::IsMember({"system", "file"}));
  app.add_flag("--break-lock", options.breaksLock, "Take the lock file of a program on another machine that is gone");
}

LockPatience PatienceOf(const WaitOptions& options, Console& console)
{
  LockPatience patience;
  patience.seconds = options.seconds;
  patience.onWait  = [&console](const std::string& holder) {
    console.Note("waiting for another program that writes to it" + (holder.empty() ? "" : ": " + holder));
  };
  if (!options.lock.empty())
    patience.lock = options.lock == "file" ? FED_LockFileLayer::LockFile : FED_LockFileLayer::SystemLock;
  patience.breaks = options.breaksLock;
  return patience;
}

}  // namespace quilon
