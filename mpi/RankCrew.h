#pragma once

/// @file
/// Processes that share the work of a command.

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "progress/Crew.h"

namespace quilon {

/// Thrown where a process that does not lead has done what there was to do for the one that does.
class WorkDone : public std::exception
{
public:
  const char* what() const noexcept override { return "the work is done"; }
};

/// The ranks of an MPI program, which all run the same command line up to the work that they share. Rank 0 leads: it
/// gives out the units, does some itself, and gets the results. MPI is initialised before and finalised behind it.
///
/// Every other rank says good-bye once, when it has been told to stop or fails before the work begins, and is told to
/// stop once.
class RankCrew final : public Crew
{
public:
  RankCrew();
  /// Leads: waits until all others have stopped, unless this process was interrupted.
  ~RankCrew() override;

  std::size_t GetSize() const noexcept override;
  bool        Leads() const noexcept override;

  /// Leads: waits until every rank is there. Where one has failed before, so does this.
  /// @throws FED_Failure that names the rank; WorkDone on ranks that do not lead
  std::unique_ptr<UntypedResults> Begin(const UntypedPlan& plan) override;

  /// Of a rank that does not lead: tells what made it fail before the work began.
  void SetFailure(const std::string& message) { failure_ = message; }

private:
  friend class RankResults;

  void HelpWith(const UntypedPlan& plan);
  void StopOthers() noexcept;

  int               rank_ = 0;
  int               size_ = 1;
  std::vector<bool> isGone_;             // by rank: has said good-bye
  bool              isStopped_ = false;  // of this rank
  std::string       failure_;
};

}  // namespace quilon
