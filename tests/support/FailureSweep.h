#pragma once

/// @file
/// One operation, failing at each of its database calls in turn.

#include <cstddef>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "RecordingDatabase.h"

namespace quilon_test {

/// What a database throws in a sweep: no type that anybody else throws or catches.
class SweepFailure : public std::runtime_error
{
public:
  SweepFailure() : std::runtime_error("the database fails") {}
};

/// Runs `operation(RecordingDatabase&)` on a fresh database of `prepare()` (a std::unique_ptr to a FED_Database) once
/// for each call that it makes, that call failing, and once to its end. For every run with a failure the exception
/// arrives unchanged, the database is asked nothing more and no scratch record is left; then
/// `check(FED_Database&, const RecordingDatabase&)` looks at what is in the database and at the calls so far.
/// @return the number of calls that the operation makes when nothing fails
template <typename Prepare, typename Operation, typename Check>
std::size_t SweepFailures(const Prepare& prepare, const Operation& operation, const Check& check)
{
  constexpr std::size_t kMostCalls = 10000;  // an operation that never ends without a failure ends the sweep here
  for (std::size_t call = 1; call <= kMostCalls; ++call) {
    const auto        inner = prepare();
    RecordingDatabase database(*inner, Detail::Records);
    database.FailAt(call, std::make_exception_ptr(SweepFailure()));

    bool hasFailed = false;
    try {
      operation(database);
    } catch (const SweepFailure&) {
      hasFailed = true;
    }
    EXPECT_EQ(database.GetLiveScratchRecords(), 0u) << "call " << call << " fails";
    if (!hasFailed) {
      EXPECT_EQ(database.GetCallCount(), call - 1) << "a failure was swallowed";
      return call - 1;
    }
    EXPECT_EQ(database.GetCallCount(), call) << "the database was asked on after it failed";
    check(*inner, std::as_const(database));
  }
  ADD_FAILURE() << "still failing after " << kMostCalls << " calls";
  return kMostCalls;
}

}  // namespace quilon_test
