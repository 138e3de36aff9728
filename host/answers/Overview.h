#pragma once

/// @file
/// What a database holds, at a glance.

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "answers/Region.h"
#include "database/Listing.h"

namespace quilon {

class StepTimes;

/// All blocks of a kind, or of a quantity of histories.
struct KindSummary
{
  int                   onf = 0;
  std::string           kind;
  std::size_t           blocks    = 0;
  std::size_t           steps     = 0;  ///< result steps that have one; of histories positions do not count
  std::size_t           records   = 0;
  std::size_t           bytes     = 0;
  bool                  hasValues = false;
  double                least     = 0.0;
  double                greatest  = 0.0;
  std::size_t           nans      = 0;
  std::optional<double> firstTime;  ///< see StepTimes
  std::optional<double> lastTime;
};

/// @return a summary for each kind, in the order of the blocks
std::vector<KindSummary> SummarizeKinds(const std::vector<ListedBlock>& blocks, const StepTimes& times);

/// A list of names that the model has, as `quilon sets` shows it.
struct ModelName
{
  std::string what;  ///< "node-set", "element-set", "material", "element-type", "orientation", "group"
  int         iteration = 0;
  int         number    = 0;  ///< 0 of element types
  std::string name;           ///< of a group its number where it has no name
  std::size_t count = 0;      ///< nodes or elements in it or that have it, each once; of a group its blocks
};

/// @param region everything; has the mesh
/// @return sets, materials, element types, orientations and groups of averages of all iterations
std::vector<ModelName> ListModelNames(const FED_Database& database, Region& region);

/// How far our averages are from the solver's own.
struct SolverDeviation
{
  std::string        kind;
  double             deviation = 0.0;  ///< the largest difference of a component, as a part of the largest magnitude
  FED_DataDescriptor step;             ///< the last one that has both
};

struct OverviewStep
{
  FED_DataDescriptor    step;
  std::optional<double> time;
  int                   quantity = 0;  ///< what the time is, see StepTimes
};

struct Overview
{
  int                                iteration  = 0;  ///< that the mesh is of: the first one that has coordinates
  std::size_t                        iterations = 0;  ///< how many there are
  std::size_t                        nodes      = 0;
  std::map<std::string, std::size_t> elements;  ///< type name, count
  std::optional<MeshBox>             box;       ///< of all nodes
  std::vector<std::string>           materials;
  std::vector<std::string>           sets;  ///< node sets, then element sets; a name of both once
  std::vector<OverviewStep>          steps;
  std::vector<KindSummary>           kinds;
  std::vector<std::string>           groups;  ///< that there are averages of
  std::vector<SolverDeviation>       deviations;
};

/// @param name of the database, for messages
Overview MakeOverview(const FED_Database& database, const std::string& name, const StepTimes& times);

}  // namespace quilon
