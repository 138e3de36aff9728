#include "progress/Crew.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "AllocationFailure.h"

namespace {

using namespace quilon;

using NumberPlan = Plan<std::size_t>;

NumberPlan Squares(std::size_t units)
{
  NumberPlan plan;
  plan.units      = units;
  plan.makeWorker = [](bool) { return [](std::size_t unit) { return unit * unit; }; };
  return plan;
}

TEST(ThreadCrew, HandsOutEachResultOnceInOrderForAnyNumberOfJobs)
{
  for (const std::size_t jobs : {0U, 1U, 2U, 3U, 8U, 100U})
    for (const std::size_t units : {0U, 1U, 2U, 50U, 300U})
      for (const std::size_t ahead : {0U, 1U, 2U, 64U}) {
        ThreadCrew               crew(jobs);
        std::vector<std::size_t> expected, taken;
        std::atomic<std::size_t> workers = 0;
        std::size_t              told    = 0;
        for (std::size_t unit = 0; unit < units; ++unit) expected.push_back(unit * unit);
        NumberPlan plan = Squares(units);
        plan.ahead      = ahead;
        plan.makeWorker = [&](bool) {
          ++workers;
          return [](std::size_t unit) { return unit * unit; };
        };
        plan.onProgress = [&](std::size_t done) { told = done; };
        CarryOut(crew, std::move(plan), [&](std::size_t unit, std::size_t square) {
          EXPECT_EQ(unit, taken.size());
          taken.push_back(square);
        });
        EXPECT_EQ(taken, expected) << jobs << ' ' << ahead;
        EXPECT_LE(workers, crew.GetSize());
        EXPECT_LE(told, units);
      }
}

TEST(ThreadCrew, OneJobBeginsAUnitWhenItsResultIsAskedFor)
{
  ThreadCrew  crew(1);
  std::string order;
  NumberPlan  plan = Squares(3);
  plan.makeWorker  = [&](bool isFirst) {
    EXPECT_TRUE(isFirst);
    return [&](std::size_t unit) {
      order += "made " + std::to_string(unit) + ' ';
      return unit;
    };
  };
  CarryOut(crew, std::move(plan),
           [&](std::size_t unit, std::size_t) { order += "took " + std::to_string(unit) + ' '; });
  EXPECT_EQ(order, "made 0 took 0 made 1 took 1 made 2 took 2 ");
}

TEST(ThreadCrew, BeginsNoUnitSoManyAheadOfTheFirstThatIsMissing)
{
  constexpr std::size_t    kAhead = 3;
  ThreadCrew               crew(8);
  std::atomic<std::size_t> taken = 0;
  NumberPlan               plan  = Squares(200);
  plan.ahead                     = kAhead;
  plan.makeWorker                = [&](bool) {
    return [&](std::size_t unit) {
      EXPECT_LE(unit, taken + kAhead);  // one more may be on its way to who counts it
      return unit;
    };
  };
  CarryOut(crew, std::move(plan), [&](std::size_t unit, std::size_t) { taken = unit + 1; });
}

// A thread needs memory to begin: where there is none for it, those that are there do the work.
TEST(ThreadCrew, MemoryThatRunsOutWhileThreadsBeginEndsNothingElse)
{
  ThreadCrew crew(4);
  for (std::size_t failing = 1;; ++failing) {
    std::size_t                          sum = 0;
    const quilon_test::AllocationFailure failure(failing);
    try {
      CarryOut(crew, Squares(20), [&sum](std::size_t, std::size_t square) { sum += square; });
      EXPECT_EQ(sum, 2470U) << failing;
    } catch (const std::bad_alloc&) {
      EXPECT_TRUE(failure.HasFailed());
    }
    if (!failure.HasFailed()) break;
  }
}

TEST(ThreadCrew, SeveralWorkAtOnce)
{
  // Each waits for the other: one alone would wait for ever.
  ThreadCrew              crew(2);
  std::mutex              mutex;
  std::condition_variable changed;
  std::size_t             arrived = 0;
  NumberPlan              plan    = Squares(2);
  plan.makeWorker                 = [&](bool) {
    return [&](std::size_t unit) {
      std::unique_lock lock(mutex);
      ++arrived;
      changed.notify_all();
      changed.wait(lock, [&] { return arrived == 2; });
      return unit;
    };
  };
  CarryOut(crew, std::move(plan), [](std::size_t, std::size_t) {});
  EXPECT_EQ(arrived, 2U);
}

TEST(ThreadCrew, HandsOutWhatIsBeforeTheFailureOfTheLowestUnitAndThrowsThat)
{
  for (const std::size_t jobs : {1U, 2U, 3U, 8U})
    for (int round = 0; round < 20; ++round) {
      ThreadCrew  crew(jobs);
      std::size_t taken = 0;
      std::string message;
      NumberPlan  plan = Squares(40);
      plan.makeWorker  = [](bool) {
        return [](std::size_t unit) {
          if (unit >= 5) throw std::runtime_error("unit " + std::to_string(unit));
          return unit;
        };
      };
      try {
        CarryOut(crew, std::move(plan), [&](std::size_t, std::size_t) { ++taken; });
      } catch (const std::runtime_error& failure) {
        message = failure.what();
      }
      EXPECT_EQ(message, "unit 5") << jobs;
      EXPECT_EQ(taken, 5U) << jobs;
    }
}

TEST(ThreadCrew, AWorkerThatCannotBeMadeIsAFailure)
{
  for (const std::size_t jobs : {1U, 3U}) {
    ThreadCrew crew(jobs);
    NumberPlan plan = Squares(4);
    plan.makeWorker = [](bool) -> NumberPlan::Worker { throw std::runtime_error("none"); };
    EXPECT_THROW(CarryOut(crew, std::move(plan), [](std::size_t, std::size_t) {}), std::runtime_error);
  }
}

TEST(ThreadCrew, ThoseWhoCannotTakePartLeaveTheWorkToTheOthers)
{
  ThreadCrew  crew(4);
  std::size_t sum  = 0;
  NumberPlan  plan = Squares(30);
  plan.makeWorker  = [](bool isFirst) -> NumberPlan::Worker {
    if (!isFirst) return {};
    return [](std::size_t unit) { return unit; };
  };
  CarryOut(crew, std::move(plan), [&](std::size_t, std::size_t number) { sum += number; });
  EXPECT_EQ(sum, 435U);
}

TEST(ThreadCrew, AFailureOfWhoTakesResultsEndsTheWork)
{
  for (const std::size_t jobs : {1U, 3U}) {
    ThreadCrew               crew(jobs);
    std::atomic<std::size_t> begun = 0;
    NumberPlan               plan  = Squares(100000);
    plan.ahead                     = 8;
    plan.makeWorker                = [&](bool) {
      return [&](std::size_t unit) {
        ++begun;
        return unit;
      };
    };
    EXPECT_THROW(CarryOut(crew, std::move(plan), [](std::size_t, std::size_t) { throw std::runtime_error("no room"); }),
                 std::runtime_error);
    EXPECT_LE(begun, 9U) << "the one that was taken, and as many as may be ahead";
  }
}

TEST(CountCores, IsAtLeastOne) { EXPECT_GE(CountCores(), 1U); }

enum class Colour
{
  Red,
  Blue
};

struct Inner
{
  double      value = 0.0;
  std::string name;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Inner& inner)
  {
    parcel(inner.value, inner.name);
  }
  bool operator==(const Inner&) const = default;
};

struct Outer
{
  bool                                    flag   = false;
  Colour                                  colour = Colour::Red;
  std::vector<double>                     numbers;
  std::vector<Inner>                      inner;
  std::optional<Inner>                    maybe;
  std::map<std::string, std::vector<int>> lists;
  std::pair<std::size_t, std::string>     pair;
  std::array<double, 2>                   array = {};
  std::map<std::string, std::set<int>>    sets;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Outer& outer)
  {
    parcel(outer.flag, outer.colour, outer.numbers, outer.inner, outer.maybe, outer.lists, outer.pair, outer.array,
           outer.sets);
  }
  bool operator==(const Outer&) const = default;
};

TEST(Parcel, BringsAllAsItWas)
{
  Outer        sent{true,
             Colour::Blue,
             {1.5, -0.0},
             {{1.0, ""}, {2.0, "b"}},
             Inner{3.0, "c"},
             {{"x", {1, 2}}, {"", {}}},
             {7, "d"},
             {2.5, -1.0},
             {{"y", {3, -4}}, {"z", {}}}};
  ParcelWriter writer;
  writer(sent);
  const std::string bytes = writer.Take();
  ParcelReader      reader(bytes);
  Outer received{false, Colour::Red, {9.0}, {{}, {}, {}}, std::nullopt, {{"y", {}}}, {}, {8.0}, {{"y", {9}}}};
  reader(received);
  EXPECT_EQ(received, sent);
  EXPECT_TRUE(reader.IsAtEnd());
}

TEST(Parcel, OneThatIsCutAnywhereIsAFailure)
{
  Outer        sent{true,     Colour::Blue, {1.5},       {{1.0, "a"}}, Inner{3.0, "c"}, {{"x", {1, 2}}},
             {7, "d"}, {1.0, 2.0},   {{"y", {3}}}};
  ParcelWriter writer;
  writer(sent);
  const std::string bytes = writer.Take();
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const std::string cut = bytes.substr(0, length);
    ParcelReader      reader(cut);
    Outer             received;
    EXPECT_THROW(reader(received), std::runtime_error) << length;
  }
}

}  // namespace
