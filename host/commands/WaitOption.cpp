#include "commands/WaitOption.h"

#include <string>

#include <CLI/CLI.hpp>

#include "commands/NumberOptions.h"
#include "terminal/Console.h"

namespace quilon {

void AddWaitOption(CLI::App& app, double& seconds)
{
  AddMagnitudeOption(app, "--wait", seconds, "Seconds to wait for another program that writes to it (default: 0)");
}

LockPatience PatienceOf(double seconds, Console& console)
{
  return {seconds, [&console](const std::string& holder) {
            console.Note("waiting for another program that writes to it" + (holder.empty() ? "" : ": " + holder));
          }};
}

}  // namespace quilon
