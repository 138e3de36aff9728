#include "progress/Jobs.h"

#include <atomic>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace quilon;

TEST(ShareWork, DoesEachPartOnceForAnyNumberOfJobs)
{
  for (const std::size_t jobs : {0U, 1U, 2U, 3U, 8U, 100U})
    for (const std::size_t parts : {0U, 1U, 2U, 50U}) {
      std::vector<int>         done(parts);
      std::atomic<std::size_t> workers = 0;
      std::size_t              told    = 0;
      ShareWork(
          jobs, parts,
          [&]() -> Worker {
            ++workers;
            return [&done](std::size_t part) { ++done[part]; };
          },
          [&](std::size_t count) { told = count; });
      EXPECT_EQ(done, std::vector<int>(parts, 1)) << jobs;
      EXPECT_LE(workers, std::max<std::size_t>(jobs, 1));
      EXPECT_LE(told, parts);
    }
}

TEST(ShareWork, ThrowsTheFailureOfTheLowestPart)
{
  for (const std::size_t jobs : {1U, 2U, 3U, 8U})
    for (int round = 0; round < 20; ++round) {
      std::string message;
      try {
        ShareWork(jobs, 40, [] {
          return [](std::size_t part) {
            if (part >= 5) throw std::runtime_error("part " + std::to_string(part));
          };
        });
      } catch (const std::runtime_error& failure) {
        message = failure.what();
      }
      EXPECT_EQ(message, "part 5") << jobs;
    }
}

TEST(ShareWork, AWorkerThatCannotBeMadeIsAFailure)
{
  for (const std::size_t jobs : {1U, 3U})
    EXPECT_THROW(ShareWork(jobs, 4, []() -> Worker { throw std::runtime_error("none"); }), std::runtime_error);
}

TEST(CountCores, IsAtLeastOne) { EXPECT_GE(CountCores(), 1U); }

}  // namespace
