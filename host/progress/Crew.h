#pragma once

/// @file
/// Work in independent units that several share.

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "progress/Parcel.h"

namespace quilon {

/// @return the number of processors that this process may use, at least 1
std::size_t CountCores() noexcept;

/// Units of work that depend on nothing but their number.
/// @tparam Result of a unit; default constructible, and knows the way into a parcel (Parcel.h)
template <typename Result>
struct Plan
{
  using Worker = std::function<Result(std::size_t unit)>;

  std::size_t units = 0;

  /// What the work is on, where it may change: processes that find different states cannot share it.
  std::string state = {};

  /// What the process that leads knows and others do not: makes it, as bytes. Empty: all have made the same plan.
  std::function<std::string()> makeBrief = {};

  /// Takes it, in a process that does not lead, before the worker is made. How many units there are such a process does
  /// not know.
  std::function<void(std::string_view)> takeBrief = {};

  /// Called in each thread or process that takes part: workers share nothing that changes.
  /// @param isFirst whether it works in the thread that asks for the results, which may use what that one has
  /// @return an empty function where no other can take part, without more ado
  std::function<Worker(bool isFirst)> makeWorker;

  /// Results that may be made or wait while an earlier one is still being made; 0: as many as there are workers. A
  /// bound on memory.
  std::size_t ahead = 64;

  /// Told in the thread that asks how many units are done; may be empty.
  std::function<void(std::size_t done)> onProgress = {};
};

/// A plan whose results are of no particular type.
struct UntypedPlan
{
  using Result = std::shared_ptr<void>;
  using Worker = std::function<Result(std::size_t unit)>;

  std::size_t                              units = 0;
  std::string                              state;
  std::function<std::string()>             makeBrief;
  std::function<void(std::string_view)>    takeBrief;
  std::function<Worker(bool isFirst)>      makeWorker;
  std::size_t                              ahead = 0;
  std::function<void(std::size_t done)>    onProgress;
  std::function<std::string(void* result)> pack;    // for another process
  std::function<Result(std::string_view)>  unpack;  // from one
};

/// Work going on: results one after the other.
class UntypedResults
{
public:
  UntypedResults()                                 = default;
  UntypedResults(const UntypedResults&)            = delete;
  UntypedResults& operator=(const UntypedResults&) = delete;
  /// Work that nobody waits for ends here.
  virtual ~UntypedResults();

  /// @return the result of the next unit, the first one being 0; for each unit once
  /// @throws what the unit's worker has thrown
  virtual std::shared_ptr<void> Next() = 0;
};

/// Who does the units: threads of this process, or several processes. Units are begun in ascending order and results
/// handed out in it, so that whoever takes them does the same for a crew of any size.
class Crew
{
public:
  Crew()                       = default;
  Crew(const Crew&)            = delete;
  Crew& operator=(const Crew&) = delete;
  virtual ~Crew();

  /// @return how many work, at least 1
  virtual std::size_t GetSize() const noexcept = 0;

  /// @return whether results come here; else this process does units for another one, and writes nothing
  virtual bool Leads() const noexcept = 0;

  /// Begins the work. Where results do not come here it does what there is to do for others, and does not return.
  /// @param plan borrowed
  virtual std::unique_ptr<UntypedResults> Begin(const UntypedPlan& plan) = 0;
};

/// The results of a plan, one after the other.
///
/// What a worker throws ends the work: units behind it are not begun any more, those before it are finished and handed
/// out, and then the failure of the lowest unit is thrown, the same for a crew of any size.
template <typename Result>
class Results
{
public:
  Results(Crew& crew, Plan<Result> plan) : plan_(std::move(plan))
  {
    untyped_.units      = plan_.units;
    untyped_.state      = plan_.state;
    untyped_.makeBrief  = plan_.makeBrief;
    untyped_.takeBrief  = plan_.takeBrief;
    untyped_.ahead      = plan_.ahead;
    untyped_.onProgress = plan_.onProgress;
    untyped_.makeWorker = [this](bool isFirst) -> UntypedPlan::Worker {
      auto worker = plan_.makeWorker(isFirst);
      if (!worker) return {};
      return [worker = std::move(worker)](std::size_t unit) { return std::make_shared<Result>(worker(unit)); };
    };
    untyped_.pack = [](void* result) {
      ParcelWriter parcel;
      parcel(*static_cast<Result*>(result));
      return parcel.Take();
    };
    untyped_.unpack = [](std::string_view bytes) {
      auto         result = std::make_shared<Result>();
      ParcelReader parcel(bytes);
      parcel(*result);
      return result;
    };
    results_ = crew.Begin(untyped_);
  }
  Results(const Results&)            = delete;
  Results& operator=(const Results&) = delete;
  ~Results()                         = default;

  /// @return the result of the next unit; for each unit once
  /// @throws what its worker has thrown
  Result Next() { return std::move(*static_cast<Result*>(results_->Next().get())); }

private:
  Plan<Result>                    plan_;
  UntypedPlan                     untyped_;
  std::unique_ptr<UntypedResults> results_;
};

/// Where the process that leads does all of a command by itself: waits for its end in any other, and does not return
/// there.
void LeaveToLeader(Crew& crew);

/// Does all units of a plan.
/// @param take called with each unit's number and its result, in ascending order
template <typename Result, typename Take>
void CarryOut(Crew& crew, Plan<Result> plan, const Take& take)
{
  const std::size_t units = plan.units;
  Results<Result>   results(crew, std::move(plan));
  for (std::size_t unit = 0; unit < units; ++unit) take(unit, results.Next());
}

/// Threads of this process, the one that asks for the results among them.
class ThreadCrew final : public Crew
{
public:
  /// @param jobs how many; 0 counts as 1. Where the system has no more threads, those that there are do the work.
  explicit ThreadCrew(std::size_t jobs) noexcept : jobs_(jobs == 0 ? 1 : jobs) {}

  std::size_t                     GetSize() const noexcept override { return jobs_; }
  bool                            Leads() const noexcept override { return true; }
  std::unique_ptr<UntypedResults> Begin(const UntypedPlan& plan) override;

private:
  std::size_t jobs_;
};

/// A crew where there is one, and this thread where there is none.
class CrewOrSelf
{
public:
  /// @param crew borrowed; may be null
  explicit CrewOrSelf(Crew* crew) noexcept : crew_(crew) {}

  Crew& Get() noexcept { return crew_ != nullptr ? *crew_ : self_; }

private:
  Crew*      crew_;
  ThreadCrew self_{1};
};

}  // namespace quilon
