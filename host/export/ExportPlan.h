#pragma once

/// @file
/// What of a database goes into a file for other tools: arrays and steps.

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kinds/Component.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

class ExportGroups;

/// Values of nodes or elements, step by step.
struct ExportArray
{
  /// A block that has values for the array.
  struct Source
  {
    FED_DataDescriptor block;
    int                group = 0;  ///< of its key, 0 none
  };

  /// The kind's name, then what tells blocks of one step apart, then the component: "displacement",
  /// "nodal-stress-group-STEEL-mises", "nodal-stress-layer-2". No name holds a dot or a slash.
  std::string              name;
  bool                     ofElements = false;  ///< else of nodes
  std::size_t              numStored  = 0;      ///< values of a record: 1, 3 or 6
  std::optional<Component> component;           ///< one value in place of those that are stored
  std::vector<std::string> components;          ///< names of its values; that of the component where there is one
  bool                     isStatic = false;    ///< one and the same in all steps
  bool                     isJoined = false;    ///< of several groups, a value for each node of each
  /// Shape [steps], of a static array [1]. A step without values has none, a joined array one a group.
  std::vector<std::vector<Source>> sources;

  std::size_t NumValues() const noexcept { return components.size(); }
};

struct ExportPlan
{
  /// As Selection::SetSteps() counts them. Empty where nothing that is exported belongs to a step.
  std::vector<FED_DataDescriptor> steps;
  /// Shape [steps]: times, frequencies or buckling factors; where one of them is not known, positions from 1 instead.
  std::vector<double>      times;
  bool                     areTimesKnown = true;
  std::vector<ExportArray> arrays;   ///< by kind, then by what tells blocks of a step apart
  std::vector<int>         leftOut;  ///< kinds whose records are no values of nodes or elements
};

/// Components that stand in place of the values that are stored.
struct ExportComponents
{
  std::vector<std::string>                forAll;  ///< for every kind that has them
  std::map<int, std::vector<std::string>> ofKind;  ///< by kind, beside those for all
};

/// How averages over groups of elements are exported.
enum class ExportGroupForm
{
  Arrays,  ///< an array a group
  Points   ///< one array, a point for each group that a node is in
};

/// @return the iteration of the blocks that are exported
/// @param name of the database, for messages
/// @throws FED_Failure where none has values of nodes or elements, and for several iterations
int IterationOf(const std::vector<FED_DataDescriptor>& blocks, const std::string& name);

/// @param blocks what users selected, of one iteration
/// @throws FED_Failure for a component that no kind has
ExportPlan MakeExportPlan(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                          const ExportComponents& components, const ExportGroups& groups, ExportGroupForm form);

/// @return whether records of the kind are values of nodes or elements: a scalar, vector or tensor each
bool IsExported(int onf);

}  // namespace quilon
