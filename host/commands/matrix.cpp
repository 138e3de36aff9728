#include <memory>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/MatrixCommands.h"

namespace quilon {

CommandFunction DefineMatrix(CLI::App& app)
{
  static constexpr Command kCommands[] = {
      {"import", "Read matrices into a database", DefineMatrixImport},
      {"export", "Write a matrix of a database to a file", DefineMatrixExport},
      {"show", "Show what matrices are like", DefineMatrixShow},
  };
  using Defined       = std::pair<CLI::App*, CommandFunction>;
  const auto commands = std::make_shared<std::vector<Defined>>();
  for (const Command& command : kCommands) {
    CLI::App* const sub = app.add_subcommand(command.name, command.summary);
    commands->emplace_back(sub, command.define(*sub));
  }
  app.require_subcommand(1);
  app.footer(
      "Every command explains itself: quilon matrix import --help\n"
      "\n"
      "Examples:\n"
      "  quilon matrix import job.sti job.mas -o job.onf\n"
      "  quilon matrix show job.onf stiffness-matrix\n"
      "  quilon matrix export job.onf mass-matrix -o mass.mtx");
  return [commands](CommandContext& context) {
    for (const auto& [sub, run] : *commands)
      if (sub->parsed()) return run(context);
  };
}

}  // namespace quilon
