#pragma once

/// @file
/// The arguments of every command that works on a database, or on selected blocks of it.

#include <string>
#include <vector>

#include "selection/Selection.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

class FED_Database;

namespace quilon {

class KindTable;
class StepTimes;

struct SelectionOptions
{
  std::string text;   ///< empty selects everything
  std::string steps;  ///< empty keeps all steps
  std::string time;   ///< empty keeps all times, see TimeChoice

  /// For commands that know components.
  Selection Parse(const KindTable& kinds) const;
  /// For commands that work on whole blocks. @throws FED_Failure for a component
  Selection ParseBlocks(const KindTable& kinds) const;

  /// @param name of the database, for messages
  /// @return the selected blocks, by time too
  /// @throws FED_Failure when there are none
  std::vector<FED_DataDescriptor> Choose(const FED_Database& database, const Selection& selection,
                                         const StepTimes& times, const std::string& name) const;

  /// @return what the user wrote, for messages
  std::string ToString() const;
  /// @return what is told of a database in which nothing is selected
  std::string DescribeNothing(const std::string& database) const;
};

/// Adds the argument DB of commands that take whatever holds results; it is required.
CLI::Option* AddDatabaseArgument(CLI::App& app, std::string& database);

/// Adds DB, SELECTION, --steps and --time of commands that answer with components of selected blocks.
void AddSelectionArguments(CLI::App& app, std::string& database, SelectionOptions& options);

/// Adds --steps.
void AddStepsOption(CLI::App& app, SelectionOptions& options);

/// Adds --time.
void AddTimeOption(CLI::App& app, SelectionOptions& options);

}  // namespace quilon
