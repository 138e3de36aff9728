#pragma once

/// @file
/// What the command line tells of its options, for man pages and completions.

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace quilon {

/// @return "DB", "--steps", "-o": what is written for the option, without dashes only for a positional; the long names
///         stand behind the short ones
std::vector<std::string> NamesOf(const CLI::Option& option);

/// @return the word for the option's value: "FILE", "mtx|yale"; empty for a flag; of a positional its name
std::string ValueOf(const CLI::Option& option);

/// @return whether a value follows the option's name
bool TakesValue(const CLI::Option& option);

/// @return the options that are shown, those that have a place among the arguments or the others
std::vector<const CLI::Option*> PositionalsOf(const CLI::App& command);
std::vector<const CLI::Option*> OptionsOf(const CLI::App& command);

/// @return the commands right below that are shown, in the order of the help
std::vector<const CLI::App*> CommandsOf(const CLI::App& command);

/// @return the words of the command with those above it: "quilon deck check"
std::string WordsOf(const CLI::App& command);

}  // namespace quilon
