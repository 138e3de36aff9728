#include "commands/DeckArguments.h"

#include <cstdint>
#include <filesystem>
#include <system_error>

#include <CLI/CLI.hpp>

#include "progress/Interrupt.h"
#include "terminal/Console.h"
#include "text/Failure.h"

namespace quilon {

void AddIncludeArguments(CLI::App& app, DeckArguments& arguments)
{
  app.add_option("--include-rule", arguments.includeRule,
                 "Where paths of include statements begin: solver (the folder that it runs in) or including-file "
                 "(default: the one, then the other)")
      ->type_name("solver|including-file");
  app.add_option("--run-in", arguments.workingFolder, "Folder that the solver runs in (default: that of the deck)")
      ->type_name("FOLDER");
  app.add_flag("--allow-outside", arguments.allowOutside, "Includes may leave the folder of the deck");
}

void AddDeckArguments(CLI::App& app, DeckArguments& arguments)
{
  app.add_option("DECK", arguments.deck, "Input deck of the solver (.inp)")->required();
  AddIncludeArguments(app, arguments);
}

calculix::DeckOptions ToDeckOptions(const DeckArguments& arguments, Console& console)
{
  calculix::DeckOptions options;
  if (arguments.includeRule == "solver") {
    options.includeRule = calculix::DeckOptions::SolverOnly;
  } else if (arguments.includeRule == "including-file") {
    options.includeRule = calculix::DeckOptions::IncludingFile;
  } else if (!arguments.includeRule.empty()) {
    Fail("--include-rule is '" + arguments.includeRule + "', expected solver or including-file");
  }
  if (std::error_code error;
      !arguments.workingFolder.empty() && !std::filesystem::is_directory(arguments.workingFolder, error))
    Fail("--run-in is '" + arguments.workingFolder + "', expected a folder");
  options.allowOutside     = arguments.allowOutside;
  options.workingDirectory = arguments.workingFolder;
  options.progress         = [&console](std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    console.Progress("reading deck", done, total);
  };
  return options;
}

void CheckNoSource(const std::string& path, const std::vector<calculix::DeckFile>& files)
{
  for (const calculix::DeckFile& file : files) {
    std::error_code ignored;  // a file that is not there yet is no source
    if (std::filesystem::equivalent(path, file.path, ignored))
      Fail(path + ": expected a file that the deck does not read");
  }
}

}  // namespace quilon
