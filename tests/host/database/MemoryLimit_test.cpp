#include "database/MemoryLimit.h"

#include <cstddef>
#include <string>
#include <utility>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>

#include "database/WatchedFiles.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::MemoryLimit;

TEST(MemoryLimit, ReadsBytesWithTheirUnit)
{
  const std::pair<const char*, std::size_t> sizes[] = {
      {"0", 0},          {"4096", 4096},      {"7B", 7},          {"1K", 1024},     {"3k", 3 * 1024},
      {"64M", 64 << 20}, {"64MiB", 64 << 20}, {"64MB", 64 << 20}, {"2m", 2u << 20}, {"3G", 3ull << 30}};
  for (const auto& [text, bytes] : sizes) EXPECT_EQ(MemoryLimit::Parse(text), bytes) << text;
}

TEST(MemoryLimit, NamesWhatIsNoSize)
{
  // The last two are one byte more than a number holds, and the number that stands for no limit.
  for (const std::string text :
       {"", "M", "-1", "1.5G", "64 M", "1T", "64Mi", "64MBs", "1e6", "17179869184G", "18446744073709551615"})
    try {
      MemoryLimit::Parse(text);
      ADD_FAILURE() << text;
    } catch (const FED_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(), "size is '" + text + "', expected a number of bytes such as 64M or 1G");
    }
}

TEST(MemoryLimit, HoldsForDatabasesWhileItLives)
{
  quilon::WatchedFiles files;
  {
    const MemoryLimit outer(5000);
    {
      const MemoryLimit inner(70);
      EXPECT_EQ(files.GetOptions().memoryLimit, 70u);
      EXPECT_EQ(files.GetOptions(7).memoryLimit, 10u);
    }
    EXPECT_EQ(files.GetOptions().memoryLimit, 5000u);
  }
  EXPECT_EQ(files.GetOptions().memoryLimit, FED_ResultDatabaseOptions::kUsualLimit);
  EXPECT_EQ(files.GetOptions(7).memoryLimit, FED_ResultDatabaseOptions::kUsualLimit);
  EXPECT_EQ(files.GetOptions(7).shares, 7u);
}

}  // namespace
