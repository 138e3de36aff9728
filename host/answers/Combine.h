#pragma once

/// @file
/// Linear combinations of load cases.

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "answers/CombinationFile.h"
#include "answers/Envelope.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_Database;

namespace quilon::calculix {
struct DeckModel;
}

namespace quilon {

class Listener;
class Region;

/// Which steps are nonlinear: sums of their results are results of no load.
struct StepLinearity
{
  bool                         isKnown = false;     ///< whether anything tells of the steps that are not in `nonlinear`
  std::set<int>                nonlinearLoadCases;  ///< all results in time of these
  std::set<FED_DataDescriptor> nonlinearSteps;      ///< and these, see GetResultStep()

  bool IsNonlinear(const FED_DataDescriptor& step) const;
};

/// What the database itself tells: results with large displacements (kind 607).
StepLinearity ReadStepLinearity(const FED_Database& database);

/// What the deck of the job tells. Its steps are the load cases.
StepLinearity StepLinearityOf(const calculix::DeckModel& deck);

struct CombineRequest
{
  std::string              database;              ///< name of the database, for messages
  Selection                selection;             ///< kinds and their components
  bool                     hasSelection = false;  ///< else all kinds that are linear in the loads
  std::string              caseFile;              ///< name of the file of combinations, for messages
  std::vector<Combination> combinations;
  StepLinearity            linearity;
  bool                     allowNonlinear = false;
  std::string              axes;                     ///< of an envelope, see ComponentAxes; empty: global
  Region*                  region        = nullptr;  ///< whose records are combined; null: all. Borrowed
  std::string              selectionText = {};       ///< what the user wrote, for messages
};

/// All that is to be computed, checked.
struct CombinePlan
{
  struct Series
  {
    FED_DataDescriptor                     key;  ///< see SeriesOf()
    std::map<CaseName, FED_DataDescriptor> blocks;
    bool isWritten     = true;   ///< whether the combined records are wanted, or only what derives from them
    bool hasPrincipals = false;  ///< whether principal values of the combined tensors are wanted
  };

  std::vector<Series> series;
  std::vector<int>    iterations;
  /// Result steps that load cases stand for, by iteration.
  std::map<int, std::map<CaseName, FED_DataDescriptor>> cases;
  std::vector<std::string>                              notes;  ///< what the user should know, a line each
};

/// Finds what the combinations name and checks it. Nothing is computed.
///
/// A load case is its results in time (analysis 1) where it has some, else those of the one analysis that it has; of
/// modes the number has to be named. Without a substep the last one of the load case is meant.
///
/// Kinds that are linear in the loads are combined: displacements, reactions, velocities, accelerations, stresses,
/// strains, forces, also of integration points and of the nodes of elements, and of the kinds that the selection names
/// also temperatures, heat fluxes and user kinds. Principal values are those of the combined tensors.
/// @param blocks the selected descriptors; without a selection all of the database
/// @throws FED_Failure for a load case or substep that is not there, for a step that is nonlinear unless that is
///         allowed, for a kind that the selection names and that is not linear or that a load case lacks, and when no
///         kind is left, or none has a record in the region
CombinePlan PlanCombinations(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                             const CombineRequest& request);

/// The key of a combined block.
FED_DataDescriptor CombinedKey(const FED_DataDescriptor& series, int loadCase);

struct CombineReport
{
  std::size_t blocks = 0;
  /// Ids that some load case of a combination has and another has not: the combination has none of them.
  std::size_t numPartial = 0;
};

/// Writes each combination of each series: analysis 3, the combination's load case, substep 1.
/// Memory: one block of each load case up to 512 MiB, after which load cases are read again where they are needed
/// again.
/// @param listener borrowed, may be null
CombineReport CombineInto(const FED_Database& database, const CombinePlan& plan, const CombineRequest& request,
                          FED_Database& target, Listener* listener);

/// The envelope over all combinations, which are not written. Components, and principal values where they are selected,
/// are those of the combined records.
EnvelopeReport EnvelopeOfCombinations(const FED_Database& database, const CombinePlan& plan,
                                      const CombineRequest& request, Listener* listener,
                                      const std::function<void(const EnvelopeSeries& series)>& take,
                                      CombineReport&                                           report);

}  // namespace quilon
