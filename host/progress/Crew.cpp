#include "progress/Crew.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

#include <sched.h>

namespace quilon {

namespace {

/// Units that threads take from one list. The thread that asks for results works as well while the next one is not
/// there: with one job it is the only one, and each unit is begun when its result is asked for.
class SharedUnits final : public UntypedResults
{
public:
  SharedUnits(const UntypedPlan& plan, std::size_t jobs)
      : plan_(plan), ahead_(plan.ahead == 0 ? jobs : plan.ahead), end_(plan.units)
  {
    const std::size_t threads = std::min(jobs, plan.units);
    threads_.reserve(threads);
    for (std::size_t i = 1; i < threads; ++i) {
      try {
        threads_.emplace_back([this] { Help(); });
      } catch (const std::system_error&) {
        break;  // there are no more: those that there are do the work
      } catch (const std::bad_alloc&) {
        break;  // nor is there memory for one
      }
    }
  }

  ~SharedUnits() override
  {
    {
      const std::lock_guard lock(mutex_);
      end_ = 0;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  std::shared_ptr<void> Next() override
  {
    std::unique_lock lock(mutex_);
    for (;;) {
      if (const auto found = finished_.find(taken_); found != finished_.end()) {
        std::shared_ptr<void> result = std::move(found->second);
        finished_.erase(found);
        ++taken_;
        lock.unlock();
        changed_.notify_all();
        return result;
      }
      if (taken_ >= end_) std::rethrow_exception(failure_);
      if (plan_.onProgress) {
        const std::size_t done = done_;
        lock.unlock();
        plan_.onProgress(done);
        lock.lock();
      }
      if (MayBegin())
        DoOne(lock, worker_, true);
      else if (finished_.count(taken_) == 0 && taken_ < end_)
        changed_.wait(lock);
    }
  }

private:
  bool MayBegin() const { return next_ < end_ && next_ < taken_ + ahead_; }

  /// What other threads do.
  void Help()
  {
    UntypedPlan::Worker worker;
    std::unique_lock    lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return next_ >= end_ || MayBegin(); });
      if (next_ >= end_ || !DoOne(lock, worker, false)) return;
    }
  }

  /// Does the next unit, unlocked.
  /// @return whether there is somebody to do it
  bool DoOne(std::unique_lock<std::mutex>& lock, UntypedPlan::Worker& worker, bool isFirst)
  {
    std::size_t unit = next_;
    try {
      if (!worker) {
        lock.unlock();
        worker = plan_.makeWorker(isFirst);
        lock.lock();
        if (!worker && !isFirst) return false;
        if (!MayBegin()) return true;
        unit = next_;
      }
      ++next_;
      lock.unlock();
      std::shared_ptr<void> result = worker(unit);
      lock.lock();
      finished_.emplace(unit, std::move(result));
      ++done_;
    } catch (...) {
      if (!lock.owns_lock()) lock.lock();
      if (unit < end_) {
        failure_ = std::current_exception();
        end_     = unit;
      }
    }
    changed_.notify_all();
    return true;
  }

  const UntypedPlan&                           plan_;
  const std::size_t                            ahead_;
  std::mutex                                   mutex_;  // of all below but the threads
  std::condition_variable                      changed_;
  std::size_t                                  next_  = 0;  // unit to begin
  std::size_t                                  taken_ = 0;  // results handed out
  std::size_t                                  done_  = 0;
  std::size_t                                  end_;  // units from here on are not begun
  std::exception_ptr                           failure_;
  std::map<std::size_t, std::shared_ptr<void>> finished_;  // and not yet asked for
  UntypedPlan::Worker                          worker_;    // of the thread that asks
  std::vector<std::thread>                     threads_;
};

}  // namespace

UntypedResults::~UntypedResults() = default;

Crew::~Crew() = default;

void LeaveToLeader(Crew& crew)
{
  if (crew.Leads()) return;
  UntypedPlan nothing;
  nothing.takeBrief = [](std::string_view) {};
  crew.Begin(nothing);
}

std::size_t CountCores() noexcept
{
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  const int count = sched_getaffinity(0, sizeof allowed, &allowed) == 0 ? CPU_COUNT(&allowed) : 1;
  return static_cast<std::size_t>(std::max(count, 1));
}

std::unique_ptr<UntypedResults> ThreadCrew::Begin(const UntypedPlan& plan)
{
  return std::make_unique<SharedUnits>(plan, jobs_);
}

}  // namespace quilon
