#pragma once

/// @file
/// Which substeps a result reader reads and skips, in few log lines.

#include "quilon_language.h"

#include <set>
#include <string>

#include "quilon_export.h"

/// Gathers the substeps of one load case that a reader reads and skips, and logs one compact line for each of the two
/// sets when the load case, the group or the result type changes, when asked, and at its end:
///
///     "\treading loadcase  12, substeps 1-3,7"
///     "skipping loadcase 12, substep 4"
///
/// A reader's own logger derives from it and announces new result types. To flush means, everywhere below:
/// PrintLoadcaseStatus() on the read set with 1, then on the skipped set with 0.
///
/// Lines go out with message type 4, the source "src/fem_logger" (line 71 for read, 74 for skipped substeps) and the
/// tag "|%P|BrevanFem|fem_logger". An allocation that fails and what a log sink throws pass to the caller.
///
/// -999 marks that nothing is current. It is an ordinary number: a type, group or load case of -999 reads as none.
class QUILON_EXPORT FemLogger
{
public:
  /// Nothing is current, both sets are empty.
  FemLogger();
  FemLogger(const FemLogger& other);
  /// Copies all members; what was pending here is not printed.
  FemLogger& operator=(const FemLogger& other);
  /// Flushes, always with this class's own PrintLoadcaseStatus(): a derived one is gone by now. What goes wrong in it
  /// passes to the caller as everywhere else, hence noexcept(false).
  virtual ~FemLogger() noexcept(false);

  /// Makes a result type current that is being read: flushes, forgets group and load case and calls
  /// PrintResultTypeStatus(1). Nothing happens when id and name are the current ones, even if the type is being
  /// skipped so far.
  void SetReadResultType(int type, std::string name);
  /// The same for a result type that is being skipped, with PrintResultTypeStatus(0).
  void SetSkipResultType(int type, std::string name);

  /// Records a read substep; it is no longer a skipped one. Another group or load case than the current one flushes
  /// first, with the old load case's number.
  /// @param group a grouping above the load case; it is compared and never printed
  void SetReadSubstep(int group, int loadcase, int substep);
  /// Records a skipped substep, unless it has been read in this load case.
  void SetSkipSubstep(int group, int loadcase, int substep);

  /// Flushes and empties both sets; what is current stays.
  void ForceOutput();

protected:
  // The virtual operations stand in the order of their slots, behind the destructor.

  /// Announces the result type that has just become current.
  /// @param reading 1 when it is read, 0 when it is skipped
  virtual void PrintResultTypeStatus(int reading) = 0;

  /// Logs one set; an empty one not at all.
  /// @param reading 1 logs a line of read, 0 one of skipped substeps; any other value logs nothing
  virtual void PrintLoadcaseStatus(std::set<int>& substeps, int reading);

  /// Flushes, empties both sets and makes nothing current; the type's name stays.
  void Reset();

  int           resultTypeId_;
  std::string   resultTypeName_;
  std::set<int> readSubsteps_;
  std::set<int> skippedSubsteps_;
  int           groupId_;
  int           loadCase_;

private:
  void SetResultType(int type, std::string&& name, int reading);
  void SetLoadcase(int group, int loadcase);
  void Flush();
};
