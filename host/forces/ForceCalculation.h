#pragma once

/// @file
/// What `quilon forces` does, for programs: nodal forces of chosen results, and what they tell.

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "database/Readers.h"
#include "forces/ElementForces.h"
#include "forces/ForceBalance.h"
#include "forces/PlaneCut.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_Database;

namespace quilon {

class Listener;

namespace calculix {
struct DeckModel;
}

/// A part of the model. Not both may be given.
struct ForcePart
{
  std::string              set;       ///< name of an element set of the deck, or of the database where there is no deck
  std::vector<NumberRange> elements;  ///< ids, ranges of them or all: see ParseElementIds()
  std::string              text;      ///< of the ids, as the user wrote it, for messages

  bool IsGiven() const noexcept { return !set.empty() || !elements.empty(); }
};

/// What is asked of nodal forces.
struct ForceRequest
{
  std::string                database;        ///< name of the database, for messages
  const calculix::DeckModel* deck = nullptr;  ///< borrowed; null takes mesh and sets of the database
  std::string                deckName;        ///< for messages

  /// Which steps are of the deformed geometry; without it as the deck says, without a deck as the database keeps it
  /// from the deck that it was imported with.
  std::optional<std::vector<NumberRange>> nonlinearSteps;

  bool        balance   = false;  ///< whether forces are compared with what acts on each node
  double      tolerance = 1e-5;   ///< see CalculateBalance()
  std::size_t numWorst  = 0;      ///< of the nodes of a balance, the worst so many are told; 0 for all
  ForcePart   part;               ///< whose free body is told, or what a plane cuts
  Vector      about = {};         ///< the point that moments of a free body are taken about

  std::optional<CutPlane> plane;  ///< cuts the part, or all without one; there is no free body then
};

/// What is told of one result.
struct ForceStepReport
{
  ForceStep                   step;  ///< without the geometry
  std::optional<ForceBalance> balance;
  std::optional<FreeBody>     body;
  std::optional<PlaneCut>     cut;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, ForceStepReport& told)
  {
    parcel(told.step, told.balance, told.body, told.cut);
  }
};

struct ForceReport
{
  std::vector<ForceStepReport>    steps;  ///< by iteration, then in the order of the results
  SkippedElements                 skipped;
  bool                            isRounded           = false;  ///< coordinates have six digits
  bool                            isNonlinearityKnown = false;
  bool                            areTiesKnown        = true;  ///< see ForceMesh
  std::vector<FED_DataDescriptor> added;  ///< blocks that were written: forces, and node lists where there were none
  /// Blocks that an earlier run may have left of results in which no element has forces now.
  std::vector<FED_DataDescriptor> outdated;

  std::size_t NumWithForces() const noexcept;
  /// @return the result whose residual is the largest part of its limit; null when none was judged
  const ForceStepReport* FindWorstBalance() const noexcept;
  /// @return whether no balance that was judged exceeds its limit
  bool Holds() const noexcept;
};

/// Reads "1,5-9", ids or ranges of them, or "all".
/// @throws FED_Failure for anything else
std::vector<NumberRange> ParseElementIds(const std::string& text);

/// Reads the numbers of steps, "all" or "none".
/// @throws FED_Failure for anything else
std::vector<NumberRange> ParseNonlinearSteps(const std::string& text);

/// @param selected descriptors of blocks of the database
/// @param selection what selected them, for messages; may be empty
/// @return those of stresses at integration points (582), in their order
/// @throws FED_Failure when there are none
std::vector<FED_DataDescriptor> ChooseForceResults(const FED_Database&                    database,
                                                   const std::vector<FED_DataDescriptor>& selected,
                                                   const std::string& name, const std::string& selection);

/// @param results from ChooseForceResults()
/// @return the blocks of the database that CalculateForces() may read for them
std::vector<FED_DataDescriptor> FindForceIngredients(const FED_Database&                    database,
                                                     const std::vector<FED_DataDescriptor>& results);

/// Where stresses are read.
struct ForceSource
{
  const FED_Database& database;  ///< has the ingredients; borrowed
  /// Of the database: each calculates a result at a time. What is told and saved is the same for any. Where they are
  /// processes, those that do not lead do not return from CalculateForces().
  Readers readers = {};
};

/// Calculates the forces of results and saves them (580) with the node lists (595) where the source has none.
///
/// Memory: for each reader the mesh and one result.
/// @param target   gets what is saved, and loses forces of results in which no element has any; what was saved before a
///                 failure stays in it. Borrowed; null: nothing is saved. It may be the source's database.
/// @param results  from ChooseForceResults()
/// @param listener borrowed; may be null
/// @throws FED_Failure for what is asked and not there: steps of the deck, a mesh, a set, reactions, displacements, a
///         node to judge in any result
ForceReport CalculateForces(const ForceSource& source, FED_Database* target,
                            const std::vector<FED_DataDescriptor>& results, const ForceRequest& request,
                            Listener* listener);

/// Likewise within one database, by this thread.
ForceReport CalculateForces(FED_Database& database, const std::vector<FED_DataDescriptor>& results,
                            const ForceRequest& request, Listener* listener);

/// @return "no rule for C3D8R (8 elements), no stresses (1 element)"
std::string DescribeSkipped(const SkippedElements& skipped);

/// @return "balance passed: ..." or "balance failed: ...", with the worst node and the limit
/// @param report of a request for balances
std::string DescribeVerdict(const ForceRequest& request, const ForceReport& report);

/// @return what a user should know of the report, a line each
std::vector<std::string> ListForceNotes(const ForceRequest& request, const ForceReport& report);

}  // namespace quilon
