#pragma once

/// @file
/// What commands that read decks take.

#include <string>
#include <vector>

#include "calculix/deck/DeckModel.h"

namespace CLI {
class App;
}

namespace quilon {

class Console;

struct DeckArguments
{
  std::string deck;
  std::string includeRule;
  std::string workingFolder;
  bool        allowOutside = false;
};

/// Adds --include-rule, --run-in and --allow-outside. The arguments outlive the parsing.
void AddIncludeArguments(CLI::App& app, DeckArguments& arguments);

/// Adds DECK and the arguments of its includes. The arguments outlive the parsing.
void AddDeckArguments(CLI::App& app, DeckArguments& arguments);

/// @return the options of a reader that shows its progress and stops when the user interrupts it
/// @throws FED_Failure for a rule that is none and a working folder that is not there
calculix::DeckOptions ToDeckOptions(const DeckArguments& arguments, Console& console);

/// @throws FED_Failure when a path to write to names a file of the deck, under whatever name
void CheckNoSource(const std::string& path, const std::vector<calculix::DeckFile>& files);

}  // namespace quilon
