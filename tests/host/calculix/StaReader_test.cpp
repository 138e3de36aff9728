#include "calculix/StaReader.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ReaderSupport.h"
#include "TempFolder.h"

namespace {

using quilon::calculix::ReadSta;
using quilon::calculix::StaRow;
using quilon_test::Damage;
using quilon_test::ExpectMessages;
using quilon_test::FailureOf;
using quilon_test::Fixture;
using quilon_test::NamesLine;
using quilon_test::Replaced;
using quilon_test::Short;

const std::string kTitles =
    "SUMMARY OF JOB INFORMATION\n"
    "  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME\n";

const std::string kSmall = kTitles +
                           "     1          1     1     1  0.100000E+01  0.100000E+01  0.100000E+01\n"
                           "     2          1     1U   16  0.125000E+01  0.250000E+00  0.250000E+00\n"
                           "     2          1     2     3  0.105000E+01  0.500000-101  0.100000+101\n";

std::vector<std::string> RowsOf(const std::string& text)
{
  std::istringstream       in(text);
  std::vector<std::string> rows;
  for (const StaRow& row : ReadSta(in, "a.sta")) {
    rows.push_back(std::to_string(row.line) + ": " + std::to_string(row.step) + " " + std::to_string(row.increment) +
                   " " + std::to_string(row.attempt) + " " + std::to_string(row.iterations) + " " +
                   Short(row.totalTime) + " " + Short(row.stepTime) + " " + Short(row.incrementTime) +
                   (row.converged ? "" : " cut back"));
  }
  return rows;
}

TEST(StaReader, ReadsIncrementsAndAttemptsThatWereCutBack)
{
  EXPECT_EQ(RowsOf(kSmall), (std::vector<std::string>{
                                "3: 1 1 1 1 1 1 1",
                                "4: 2 1 1 16 1.25 0.25 0.25 cut back",
                                "5: 2 1 2 3 1.05 5e-102 1e+100",
                            }));
  EXPECT_EQ(RowsOf(kTitles), std::vector<std::string>());
  EXPECT_EQ(RowsOf(kSmall + "\n  \n").size(), 3u);
}

TEST(StaReader, ReadsWhatTheSolverWrites)
{
  EXPECT_EQ(RowsOf(Fixture("f_modal/f_modal.sta")), std::vector<std::string>());
  const std::vector<std::string> rows = RowsOf(Fixture("f_modal/f_dynamic.sta"));
  ASSERT_EQ(rows.size(), 15u);
  EXPECT_EQ(rows[0], "3: 1 1 1 2 2e-05 2e-05 2e-05");
  EXPECT_EQ(rows[14], "17: 1 15 1 2 3e-04 3e-04 2e-05");
}

TEST(StaReader, NamesFileLineAndWhatWasExpected)
{
  const Damage damages[] = {
      {"SUMMARY", "summary",
       "a.sta:1: expected the title 'SUMMARY OF JOB INFORMATION', found 'summary OF JOB INFORMATION'"},
      {"  STEP      INC", "  STEP       IN",
       "a.sta:2: expected the title '  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME', "
       "found '  STEP       IN     ATT  ITRS     TOT TI...'"},
      {"     1          1 ", "     x          1 ",
       "a.sta:3: expected a 32-bit integer of 5 columns from column 2, found '    x'"},
      {"0.100000E+01\n", "0.100000E+0\n", "a.sta:3: expected a row of 71 columns, found 70"},
      {"0.125000E+01", "0.125000E 01",
       "a.sta:4: expected a number of 13 columns from column 31, found ' 0.125000E 01'"},
  };
  ExpectMessages(damages, kSmall, [](const std::string& text) { return FailureOf([&] { RowsOf(text); }); });
  EXPECT_EQ(FailureOf([] { RowsOf(""); }),
            "a.sta:1: expected the title 'SUMMARY OF JOB INFORMATION', found the end of the file");
  const quilon_test::TempFolder folder;
  const auto                    missing = folder / "missing.sta";
  EXPECT_EQ(FailureOf([&] { ReadSta(missing); }),
            missing.string() + ": expected a file that can be read: No such file or directory");
}

TEST(StaReader, ReadsAPrefixOfTheRowsOrFailsForEveryLengthThatTheFileIsCutTo)
{
  const std::vector<std::string> whole = RowsOf(kSmall);
  for (std::size_t size = 0; size < kSmall.size(); ++size) {
    std::vector<std::string> rows;
    const std::string        message = FailureOf([&] { rows = RowsOf(kSmall.substr(0, size)); });
    const bool isPrefix = rows.size() <= whole.size() && std::equal(rows.begin(), rows.end(), whole.begin());
    ASSERT_TRUE(message == "no failure" ? isPrefix : NamesLine(message, "a.sta")) << size << ": " << message;
  }
}

}  // namespace
