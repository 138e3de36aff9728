#include "progress/Jobs.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include <sched.h>

namespace quilon {

namespace {

class SharedWork
{
public:
  SharedWork(std::size_t parts, const std::function<Worker()>& makeWorker) : parts_(parts), makeWorker_(makeWorker) {}

  /// @param onPart may be empty
  void Run(const std::function<void(std::size_t done)>& onPart) noexcept
  {
    std::size_t part = 0;
    try {
      Worker worker;
      while ((part = next_++) < end_.load()) {
        if (!worker) worker = makeWorker_();
        worker(part);
        ++done_;
        if (onPart) onPart(done_);
      }
    } catch (...) {
      const std::lock_guard<std::mutex> lock(failureMutex_);
      if (failure_ == nullptr || part < end_.load()) {
        failure_ = std::current_exception();
        end_     = std::min(part, end_.load());
      }
    }
  }

  void ThrowFailure() const
  {
    if (failure_ != nullptr) std::rethrow_exception(failure_);
  }

private:
  const std::size_t              parts_;
  const std::function<Worker()>& makeWorker_;
  std::atomic<std::size_t>       next_ = 0;
  std::atomic<std::size_t>       done_ = 0;
  std::atomic<std::size_t>       end_  = parts_;  // parts from here on are not begun
  std::mutex                     failureMutex_;
  std::exception_ptr             failure_;
};

/// Waits for all threads, whatever happens.
class Threads
{
public:
  Threads()                          = default;
  Threads(const Threads&)            = delete;
  Threads& operator=(const Threads&) = delete;
  ~Threads()
  {
    for (std::thread& thread : threads_) thread.join();
  }

  void Add(SharedWork& work)
  {
    threads_.reserve(threads_.size() + 1);
    threads_.emplace_back([&work] { work.Run({}); });
  }

private:
  std::vector<std::thread> threads_;
};

}  // namespace

std::size_t CountCores() noexcept
{
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  const int count = sched_getaffinity(0, sizeof allowed, &allowed) == 0 ? CPU_COUNT(&allowed) : 1;
  return static_cast<std::size_t>(std::max(count, 1));
}

void ShareWork(std::size_t jobs, std::size_t parts, const std::function<Worker()>& makeWorker,
               const std::function<void(std::size_t done)>& onPart)
{
  SharedWork work(parts, makeWorker);
  {
    Threads threads;
    for (std::size_t i = 1; i < std::min(jobs, parts); ++i) threads.Add(work);
    work.Run(onPart);
  }
  work.ThrowFailure();
}

}  // namespace quilon
