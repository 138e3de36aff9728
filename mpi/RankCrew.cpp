#include "RankCrew.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <new>
#include <optional>
#include <string_view>
#include <thread>
#include <utility>

#include <mpi.h>

#include "progress/Interrupt.h"
#include "text/Failure.h"

namespace quilon {

namespace {

enum Tag : int
{
  ToLeader,
  FromLeader,
  Bytes
};

/// What a rank tells the leader.
struct Report
{
  enum Kind : int
  {
    Ready,
    Result,
    Failed,
    Interrupt,
    GoodBye
  };
  Kind        kind  = Ready;
  std::size_t unit  = 0;  ///< of a result or failure
  std::size_t units = 0;  ///< of the plan
  std::string text;       ///< result, failure, or the state that was found
};

template <typename Parcel>
void Travel(Parcel& parcel, Report& report)
{
  parcel(report.kind, report.unit, report.units, report.text);
}

/// What the leader tells a rank: a unit to do, or one of these.
constexpr std::size_t kStop  = static_cast<std::size_t>(-1);
constexpr std::size_t kBrief = static_cast<std::size_t>(-2);  // a brief follows

/// The number of units that a rank reports which waits for a brief.
constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

/// Bytes of one message: MPI counts them by int.
constexpr std::size_t kMost = std::size_t{1} << 30;

/// The number of bytes goes first.
void SendBytes(int rank, int tag, const std::string& bytes)
{
  unsigned long long size = bytes.size();
  MPI_Send(&size, 1, MPI_UNSIGNED_LONG_LONG, rank, tag, MPI_COMM_WORLD);
  for (std::size_t at = 0; at < bytes.size(); at += kMost)
    MPI_Send(bytes.data() + at, static_cast<int>(std::min(kMost, bytes.size() - at)), MPI_BYTE, rank, Bytes,
             MPI_COMM_WORLD);
}

std::string ReceiveBytes(int rank, int tag)
{
  unsigned long long size = 0;
  MPI_Recv(&size, 1, MPI_UNSIGNED_LONG_LONG, rank, tag, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  for (std::size_t at = 0; at < bytes.size(); at += kMost)
    MPI_Recv(bytes.data() + at, static_cast<int>(std::min(kMost, bytes.size() - at)), MPI_BYTE, rank, Bytes,
             MPI_COMM_WORLD, MPI_STATUS_IGNORE);
  return bytes;
}

/// @return the rank that has something to tell, nothing for none
std::optional<int> FindMessage(int from, int tag)
{
  int        isThere = 0;
  MPI_Status status;
  MPI_Iprobe(from, tag, MPI_COMM_WORLD, &isThere, &status);
  return isThere != 0 ? std::optional(status.MPI_SOURCE) : std::nullopt;
}

/// Waiting inside MPI would take a whole core, and no signal would end it.
int WaitForMessage(int from, int tag)
{
  constexpr auto kShort = std::chrono::microseconds(20);
  constexpr auto kLong  = std::chrono::milliseconds(2);
  for (auto pause = std::chrono::microseconds(kShort);; pause = std::min<std::chrono::microseconds>(2 * pause, kLong)) {
    if (const std::optional<int> rank = FindMessage(from, tag)) return *rank;
    ThrowIfInterrupted();
    std::this_thread::sleep_for(pause);
  }
}

void Tell(Report report)
{
  ParcelWriter parcel;
  parcel(report);
  SendBytes(0, ToLeader, parcel.Take());
}

Report Hear(int rank)
{
  const std::string bytes = ReceiveBytes(rank, ToLeader);
  ParcelReader      parcel(bytes);
  Report            report;
  parcel(report);
  return report;
}

void GiveUnit(int rank, std::size_t unit)
{
  unsigned long long number = unit;
  MPI_Send(&number, 1, MPI_UNSIGNED_LONG_LONG, rank, FromLeader, MPI_COMM_WORLD);
}

std::size_t TakeUnit()
{
  unsigned long long number = 0;
  MPI_Recv(&number, 1, MPI_UNSIGNED_LONG_LONG, 0, FromLeader, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
  return static_cast<std::size_t>(number);
}

[[noreturn]] void FailOfRank(int rank, const std::string& message)
{
  Fail("rank " + std::to_string(rank) + ": " + message);
}

/// @return what went wrong in the exception that is handled, for another process
Report DescribeFailure(std::size_t unit)
{
  try {
    throw;
  } catch (const Interrupted&) {
    return {Report::Interrupt, unit, 0, ""};
  } catch (const std::exception& exception) {
    return {Report::Failed, unit, 0, MessageOf(exception)};
  }
}

}  // namespace

/// Results on the leader.
class RankResults final : public UntypedResults
{
public:
  RankResults(const UntypedPlan& plan, RankCrew& crew)
      : plan_(plan),
        crew_(crew),
        ahead_(plan.ahead == 0 ? crew.GetSize() : plan.ahead),
        end_(plan.units),
        given_(crew.GetSize(), 0)
  {
    for (int rank = 1; rank < crew.size_; ++rank) {
      if (crew.isGone_[Place(rank)]) continue;
      WaitForMessage(rank, ToLeader);
      const Report report = Hear(rank);
      if (report.kind == Report::GoodBye) {
        crew.isGone_[Place(rank)] = true;
        FailOfRank(rank, report.text.empty() ? "has ended before the work began" : report.text);
      }
      if (report.units != (plan.makeBrief ? kUnknown : plan.units) || report.text != plan.state)
        FailOfRank(rank, "finds another state of what is read, expected one that does not change");
    }
    if (!plan.makeBrief || crew.size_ == 1) return;
    const std::string brief = plan.makeBrief();
    for (int rank = 1; rank < crew.size_; ++rank) {
      if (crew.isGone_[Place(rank)]) continue;
      GiveUnit(rank, kBrief);
      SendBytes(rank, FromLeader, brief);
    }
  }

  ~RankResults() override { crew_.StopOthers(); }

  std::shared_ptr<void> Next() override
  {
    for (;;) {
      while (const std::optional<int> rank = FindMessage(MPI_ANY_SOURCE, ToLeader)) Take(*rank);
      GiveWork();
      if (const auto found = finished_.find(taken_); found != finished_.end()) {
        std::shared_ptr<void> result = std::move(found->second);
        finished_.erase(found);
        ++taken_;
        GiveWork();
        return result;
      }
      if (taken_ >= end_) {
        if (isInterrupted_) throw Interrupted();
        std::rethrow_exception(failure_);
      }
      if (plan_.onProgress) plan_.onProgress(done_);
      if (MayBegin())
        DoOne();
      else
        Take(WaitForMessage(MPI_ANY_SOURCE, ToLeader));
    }
  }

private:
  static std::size_t Place(int rank) noexcept { return static_cast<std::size_t>(rank); }

  bool MayBegin() const noexcept { return next_ < end_ && next_ < taken_ + ahead_; }

  /// Each rank has one unit to do and one to go on with.
  void GiveWork()
  {
    constexpr std::size_t kAtOnce = 2;
    for (std::size_t units = 1; units <= kAtOnce; ++units)
      for (int rank = 1; rank < crew_.size_ && MayBegin(); ++rank) {
        if (crew_.isGone_[Place(rank)] || given_[Place(rank)] >= units) continue;
        ++given_[Place(rank)];
        GiveUnit(rank, next_++);
      }
  }

  void DoOne()
  {
    const std::size_t unit = next_++;
    try {
      if (!worker_) worker_ = plan_.makeWorker(true);
      finished_.emplace(unit, worker_(unit));
      ++done_;
    } catch (...) {
      SetFailure(unit, std::current_exception());
    }
  }

  void Take(int rank)
  {
    const Report report = Hear(rank);
    if (report.kind == Report::Result) {
      --given_[Place(rank)];
      ++done_;
      if (report.unit < end_) finished_.emplace(report.unit, plan_.unpack(report.text));
      return;
    }
    if (report.kind == Report::GoodBye) {
      crew_.isGone_[Place(rank)] = true;
      return SetFailure(taken_, "rank " + std::to_string(rank) + ": " + report.text);
    }
    --given_[Place(rank)];
    if (report.kind == Report::Interrupt && report.unit < end_) isInterrupted_ = true;
    SetFailure(report.unit, "rank " + std::to_string(rank) + ": " + report.text);
  }

  void SetFailure(std::size_t unit, const std::string& message)
  {
    try {
      Fail(message);
    } catch (...) {
      SetFailure(unit, std::current_exception());
    }
  }
  void SetFailure(std::size_t unit, std::exception_ptr failure)
  {
    if (unit >= end_) return;
    failure_ = std::move(failure);
    end_     = unit;
  }

  const UntypedPlan&                           plan_;
  RankCrew&                                    crew_;
  const std::size_t                            ahead_;
  std::size_t                                  next_  = 0;
  std::size_t                                  taken_ = 0;
  std::size_t                                  done_  = 0;
  std::size_t                                  end_;
  std::vector<std::size_t>                     given_;  // by rank: units that it has
  bool                                         isInterrupted_ = false;
  std::exception_ptr                           failure_;
  std::map<std::size_t, std::shared_ptr<void>> finished_;
  UntypedPlan::Worker                          worker_;
};

RankCrew::RankCrew()
{
  MPI_Comm_rank(MPI_COMM_WORLD, &rank_);
  MPI_Comm_size(MPI_COMM_WORLD, &size_);
  isGone_.resize(GetSize(), false);
  isGone_[0] = true;
}

RankCrew::~RankCrew()
{
  if (Leads()) {
    StopOthers();
    return;
  }
  if (isStopped_ || IsInterrupted()) return;
  // Ended before the work began: the leader is told, and tells when it knows.
  Tell({Report::GoodBye, 0, 0, failure_});
  while (TakeUnit() != kStop) {
  }
}

std::size_t RankCrew::GetSize() const noexcept { return static_cast<std::size_t>(size_); }

bool RankCrew::Leads() const noexcept { return rank_ == 0; }

std::unique_ptr<UntypedResults> RankCrew::Begin(const UntypedPlan& plan)
{
  if (Leads()) return std::make_unique<RankResults>(plan, *this);
  HelpWith(plan);
  throw WorkDone();
}

void RankCrew::HelpWith(const UntypedPlan& plan)
{
  Tell({Report::Ready, 0, plan.takeBrief ? kUnknown : plan.units, plan.state});
  UntypedPlan::Worker worker;
  for (;;) {
    WaitForMessage(0, FromLeader);
    const std::size_t unit = TakeUnit();
    if (unit == kStop) break;
    if (unit == kBrief) {
      plan.takeBrief(ReceiveBytes(0, FromLeader));
      continue;
    }
    Report report{Report::Result, unit, 0, ""};
    try {
      if (!worker) worker = plan.makeWorker(true);
      report.text = plan.pack(worker(unit).get());
    } catch (...) {
      report = DescribeFailure(unit);
    }
    Tell(std::move(report));
  }
  isStopped_ = true;
  Tell({Report::GoodBye, 0, 0, ""});
}

/// Nobody is left with a message that nobody takes.
void RankCrew::StopOthers() noexcept
{
  if (isStopped_ || IsInterrupted()) return;
  isStopped_ = true;
  for (int rank = 1; rank < size_; ++rank) GiveUnit(rank, kStop);
  try {
    while (std::find(isGone_.begin(), isGone_.end(), false) != isGone_.end()) {
      const int rank = WaitForMessage(MPI_ANY_SOURCE, ToLeader);
      if (Hear(rank).kind == Report::GoodBye) isGone_[static_cast<std::size_t>(rank)] = true;
    }
  } catch (const std::exception&) {
    // Interrupted: the whole program ends.
  }
}

}  // namespace quilon
