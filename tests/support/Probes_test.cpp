#include <cstddef>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonUtilities/FED_LogMacros.h>

#include "AllocationFailure.h"
#include "LogCapture.h"
#include "TempFolder.h"

namespace quilon_test {

namespace {

using Lines = std::vector<std::string>;

void Log(const char* text)
{
  FED_LogMacros::log_msg(FED_LogMacros::LogVerbose, "src/file", 12, "|%P|Module|file", "%s", text);
}

// Calls the function: a new-expression without a use may be optimised away.
void Allocate() { ::operator delete(::operator new(8)); }

}  // namespace

TEST(LogCapture, TakesLinesWholeAndHandsTheLogBackAtItsEnd)
{
  LogCapture outer;
  {
    LogCapture inner;
    Log("one");
    Log("two");
    EXPECT_EQ(inner.GetTexts(), (Lines{"one", "two"}));
    EXPECT_EQ(inner.GetWhole().at(0), "5 src/file:12 |Module|file: one");
    inner.Clear();
    EXPECT_EQ(inner.GetTexts(), Lines{});
  }
  Log("three");
  EXPECT_EQ(outer.GetTexts(), Lines{"three"});
}

TEST(TempFolder, IsEmptyItsOwnAndGoesWithItsFiles)
{
  std::filesystem::path path;
  {
    const TempFolder one;
    const TempFolder two;
    path = one.GetPath();
    EXPECT_NE(path, two.GetPath());
    EXPECT_TRUE(std::filesystem::is_empty(path));
    std::ofstream(one / "file") << "text";
    EXPECT_TRUE(std::filesystem::exists(path / "file"));
  }
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(AllocationFailure, LetsTheChosenAllocationFailAndNoOther)
{
  std::size_t count     = 0;
  bool        isKnown   = false;
  bool        hasFailed = false;
  {
    const AllocationFailure failure(2);
    Allocate();
    try {
      Allocate();
    } catch (const std::bad_alloc&) {
      hasFailed = true;
    }
    Allocate();
    isKnown = failure.HasFailed();
    count   = failure.GetCount();
  }
  EXPECT_TRUE(hasFailed);
  EXPECT_TRUE(isKnown);
  EXPECT_EQ(count, 3u);
}

TEST(AllocationFailure, OnlyCountsWithoutAChosenOne)
{
  std::size_t count     = 0;
  bool        hasFailed = true;
  {
    const AllocationFailure none(0);
    {
      const AllocationFailure inner(5);
      Allocate();
    }
    Allocate();
    count     = none.GetCount();
    hasFailed = none.HasFailed();
  }
  EXPECT_EQ(count, 2u) << "an inner count adds to the outer one";
  EXPECT_FALSE(hasFailed);
}

}  // namespace quilon_test
