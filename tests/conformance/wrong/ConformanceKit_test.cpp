#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Mistake.h"

namespace conformance {
namespace {

/// What one run of the kit told.
struct KitRun
{
  int                   status = 0;  ///< 0 when all tests passed
  std::set<std::string> failed;      ///< "Suite.Test"
};

/// Runs the tests of the kit that ask a database, on a database with the mistake.
KitRun RunKit(const std::string& mistakeName)
{
  // Beside the program, so that builds that are tested at the same time keep apart.
  const std::string log     = std::string(QUILON_CONFORMANCE_WRONG) + "-" + mistakeName + ".log";
  const std::string command = std::string("\"") + QUILON_CONFORMANCE_WRONG + "\" --wrong=" + mistakeName +
                              " --gtest_brief=1 --gtest_color=no --gtest_filter=DatabaseConformance.*:PoolConformance.*"
                              ":BlockConformance.*:RecordConformance.*:IdViewConformance.*:CopyConformance.*"
                              ":PersistenceConformance.* > \"" +
                              log + "\" 2>&1";
  KitRun        run;
  std::ifstream in;
  run.status = std::system(command.c_str());
  in.open(log);
  const std::string mark = "[  FAILED  ] ";
  for (std::string line; std::getline(in, line);) {
    // "[  FAILED  ] Suite.Test (0 ms)", or with a comma where the test threw.
    if (line.rfind(mark, 0) != 0 || line.find('.') == std::string::npos) continue;
    run.failed.insert(line.substr(mark.size(), line.find_first_of(" ,", mark.size()) - mark.size()));
  }
  in.close();
  std::remove(log.c_str());
  return run;
}

class WrongDatabases : public ::testing::TestWithParam<MistakeRow>
{};

TEST_P(WrongDatabases, FailTheTestThatTellsOfTheirMistake)
{
  const KitRun run = RunKit(GetParam().name);
  EXPECT_NE(run.status, 0);
  std::string failed;
  for (const std::string& test : run.failed) failed += test + '\n';
  EXPECT_EQ(run.failed.count(GetParam().failingTest), 1U) << GetParam().failingTest << " passed; these failed:\n"
                                                          << failed;
}

INSTANTIATE_TEST_SUITE_P(Kit, WrongDatabases, ::testing::ValuesIn(Mistakes().begin(), Mistakes().end()),
                         [](const auto& row) {
                           std::string name = row.param.name;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

TEST(ConformanceKit, TellsEveryMistakeByATestOfItsOwn)
{
  std::set<std::string> tests;
  for (const MistakeRow& row : Mistakes()) EXPECT_TRUE(tests.insert(row.failingTest).second) << row.failingTest;
  EXPECT_GE(tests.size(), 15U);
}

TEST(ConformanceKit, AMistakeThatNobodyMakesIsRefused)
{
  const KitRun run = RunKit("no-such-mistake");
  EXPECT_NE(run.status, 0);
  EXPECT_TRUE(run.failed.empty());
}

}  // namespace
}  // namespace conformance
