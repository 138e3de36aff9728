#pragma once

/// @file
/// The arguments of every command that works on selected blocks.

#include <string>

#include "selection/Selection.h"

namespace CLI {
class App;
}

namespace quilon {

class KindTable;

struct SelectionOptions
{
  std::string text;   ///< empty selects everything
  std::string steps;  ///< empty keeps all steps

  Selection Parse(const KindTable& kinds) const;

  /// @return what the user wrote, for messages
  std::string ToString() const;
  /// @return what is told of a database in which nothing is selected
  std::string DescribeNothing(const std::string& database) const;
};

/// Adds --steps.
void AddStepsOption(CLI::App& app, SelectionOptions& options);

}  // namespace quilon
