// Bad input: what it is told by, and what is left of it.

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "import/ResultImport.h"
#include "ImportTestSupport.h"
#include "LogCapture.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::Contains;
using testing::IsEmpty;

/// The a_tet job in a folder of its own, to be spoilt: three results, at the lines that the tests name.
class SpoiltImport : public testing::Test
{
protected:
  SpoiltImport()
  {
    frd_ = ReadText(Fixture("a_tet/a_tet.frd"));
    dat_ = ReadText(Fixture("a_tet/a_tet.dat"));
  }

  /// @return the message, empty when nothing was thrown
  std::string Import(const ImportOptions& options = {}) { return Import(options, database_); }

  std::string Import(const ImportOptions& options, FED_ResultDatabase& database)
  {
    WriteText(folder_ / "job.frd", frd_);
    if (!dat_.empty()) WriteText(folder_ / "job.dat", dat_);
    std::vector<std::filesystem::path> files = {folder_ / "job.frd"};
    if (!dat_.empty()) files.push_back(folder_ / "job.dat");
    try {
      ImportResults(files, database, options);
    } catch (const FED_Failure& failure) {
      return failure.what();
    }
    return "";
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  /// Replaces the first occurrence behind a line that begins with `behind`.
  static void Replace(std::string& text, const std::string& behind, const std::string& what, const std::string& by)
  {
    const std::size_t from = text.find(behind);
    ASSERT_NE(from, std::string::npos);
    const std::size_t at = text.find(what, from);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, what.size(), by);
  }

  /// Keeps the first `count` lines.
  static void CutAfterLine(std::string& text, std::size_t count)
  {
    std::size_t at = 0;
    for (std::size_t line = 0; line < count; ++line) at = text.find('\n', at) + 1;
    text.resize(at);
  }

  LogCapture         log_;
  TempFolder         folder_;
  FED_ResultDatabase database_;
  std::string        frd_;
  std::string        dat_;
};

const std::set<StepKey> kFirst = {{1, AnalysisTime, 1}};

TEST_F(SpoiltImport, AFrdThatEndsInTheMiddleOfAStepFails)
{
  dat_.clear();
  CutAfterLine(frd_, 900);
  EXPECT_THAT(Import(), testing::StartsWith(Path("job.frd") + ":901: expected "));
}

TEST_F(SpoiltImport, AFrdThatEndsBetweenStepsFails)
{
  dat_.clear();
  CutAfterLine(frd_, 791);  // before the 1PSTEP of the second result
  EXPECT_THAT(Import(), testing::StartsWith(Path("job.frd") + ":792: expected "));
}

TEST_F(SpoiltImport, ADamagedNumberFails)
{
  dat_.clear();
  Replace(frd_, " -4  STRESS", "E+00", "E*00");
  EXPECT_THAT(Import(), testing::StartsWith(Path("job.frd") + ":4"));
}

TEST_F(SpoiltImport, ACountThatLiesFails)
{
  dat_.clear();
  Replace(frd_, "  100C", "          63 ", "          64 ");
  EXPECT_THAT(Import(), testing::HasSubstr("expected the 64 rows that line 369 "));
}

TEST_F(SpoiltImport, ANodeThatTheMeshDoesNotHaveFails)
{
  dat_.clear();
  Replace(frd_, " -4  DISP", " -1        14", " -1        10");
  EXPECT_EQ(Import().find("expected a node of the mesh, found node 10") != std::string::npos, true);
}

TEST_F(SpoiltImport, AnElementThatNamesAnUnknownNodeFails)
{
  dat_.clear();
  frd_.replace(frd_.find("\n -2") + 4, 10, "  99999999");
  EXPECT_THAT(Import(), testing::StartsWith(Path("job.frd") + ":80: expected nodes of the mesh in element 1001"));
}

TEST_F(SpoiltImport, AnElementThatIsListedTwiceFails)
{
  dat_.clear();
  Replace(frd_, "    3C", "\n -1      1003", "\n -1      1001");
  EXPECT_EQ(Import(), Path("job.frd") + ": expected every element once, found element 1001 again");
}

TEST_F(SpoiltImport, WithADatABrokenFrdFailsBeforeAnythingOfAResultIsWritten)
{
  CutAfterLine(frd_, 900);
  EXPECT_THAT(Import(), testing::StartsWith(Path("job.frd") + ":901: expected "));
  for (const int onf : {510, 521, 582, 500}) EXPECT_THAT(StepsOf(database_, onf), IsEmpty()) << onf;
}

TEST_F(SpoiltImport, ADatWithADamagedNumberFails)
{
  Replace(dat_, " stresses", "E+00", "Ex00");
  EXPECT_THAT(Import(), testing::StartsWith(Path("job.dat") + ":86: expected "));
}

TEST_F(SpoiltImport, ADatThatLacksAPointFails)
{
  // A tetrahedron has one point.
  Replace(dat_, " stresses", "      1001   1", "      1001   2");
  EXPECT_EQ(Import(), Path("job.dat") + ":86: expected integration point 1 of element 1001, found point 2");
}

TEST_F(SpoiltImport, ADatThatEndsWithinABlockThatAnEarlierResultHadWholeFails)
{
  const std::size_t last = dat_.rfind(" stresses");
  CutAfterLine(dat_,
               static_cast<std::size_t>(std::count(dat_.begin(), dat_.begin() + static_cast<long>(last), '\n')) + 12);
  const std::string message = Import();
  EXPECT_THAT(message, testing::HasSubstr(": expected 144 rows as in the block at line 84, the file ends after 10"));
}

TEST_F(SpoiltImport, ADatThatEndsBetweenTheBlocksOfAResultFails)
{
  // The last result keeps its displacements and forces and loses its stresses.
  const auto last = static_cast<long>(dat_.rfind(" stresses"));
  CutAfterLine(dat_, static_cast<std::size_t>(std::count(dat_.begin(), dat_.begin() + last, '\n')));
  // Displacements, forces, stresses and the four parts of a section print.
  EXPECT_EQ(Import(), Path("job.dat") + ":678: expected 7 blocks as in the result before, the file ends after 2");
}

TEST_F(SpoiltImport, ADatThatEndsBetweenTheResultsOfAStepFails)
{
  CutAfterLine(dat_, 610);
  EXPECT_THAT(Import(),
              testing::EndsWith(": expected results of step 2 up to substep 4 as in job.frd, the file ends after "
                                "substep 2"));
}

TEST_F(SpoiltImport, ADatThatEndsWithAStepIsWhole)
{
  CutAfterLine(dat_, 311);
  EXPECT_EQ(Import(), "") << "a later step may ask for nothing";
  EXPECT_EQ(StepsOf(database_, 582), kFirst);
}

TEST_F(SpoiltImport, ADatThatEndsWithinAnElementFails)
{
  frd_ = ReadText(Fixture("e_matrix/e_static.frd"));
  dat_ = ReadText(Fixture("e_matrix/e_static.dat"));
  CutAfterLine(dat_, static_cast<std::size_t>(std::count(dat_.begin(), dat_.end(), '\n')) - 3);
  EXPECT_THAT(Import(), testing::HasSubstr(": expected 8 integration points of element "));
}

TEST_F(SpoiltImport, ADatWhoseTimeNoResultHasFails)
{
  for (std::size_t at = dat_.find("0.2000000E+01"); at != std::string::npos; at = dat_.find("0.2000000E+01")) {
    dat_.replace(at, 13, "0.3000000E+01");
  }
  EXPECT_EQ(Import(), Path("job.dat") +
                          ":612: expected a total time or a mode that job.frd or job.sta lists, found time 3.000000, "
                          "mode 0");
}

TEST_F(SpoiltImport, AMissingFileFails)
{
  EXPECT_THROW(ImportResults({folder_ / "none.frd"}, database_, {}), FED_Failure);
}

TEST_F(SpoiltImport, AnotherExtensionFails)
{
  try {
    ImportResults({folder_ / "job.txt"}, database_, {});
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.what(), Path("job.txt") + ": expected a result file .frd, .dat or .sta, or a deck .inp");
  }
}

TEST_F(SpoiltImport, AStatusFileAloneFails)
{
  try {
    ImportResults({folder_ / "job.sta"}, database_, {});
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.what(), Path("job.sta") + ": expected a .frd or .dat of the same name with it");
  }
}

TEST_F(SpoiltImport, TwoJobsThatGiveAnElementDifferentNodesFail)
{
  frd_ = ReadText(Fixture("hex8r/hex8r.frd"));
  dat_.clear();
  EXPECT_EQ(Import(), "");
  const std::size_t nodes = frd_.find("\n -2") + 4;
  std::swap_ranges(frd_.begin() + static_cast<long>(nodes), frd_.begin() + static_cast<long>(nodes + 10),
                   frd_.begin() + static_cast<long>(nodes + 10));
  EXPECT_EQ(Import(), "The Node ID order within the element definition is different from the previously defined.");
}

TEST_F(SpoiltImport, StrictRefusesWhatIsLeftOut)
{
  ImportOptions options;
  options.strict = true;
  try {
    ImportResults({Fixture("d_beam/d_beam2d.frd"), Fixture("d_beam/d_beam2d.dat")}, database_, options);
    FAIL();
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(),
                 "expected to read everything, left out: 200 x element type without extrapolation: 3-node line with "
                 "50 points");
  }
  EXPECT_EQ(Import(options), "") << "nothing is left out here";
}

TEST_F(SpoiltImport, KeepWholeStepsKeepsTheResultsBeforeABrokenFrd)
{
  CutAfterLine(frd_, 900);
  ImportOptions options;
  options.keepWholeSteps = true;
  EXPECT_THAT(Import(options), testing::StartsWith(Path("job.frd") + ":901: expected "));
  for (const int onf : {510, 511, 520, 521, 522, 531, 550, 551, 552, 561, 582}) {
    EXPECT_EQ(StepsOf(database_, onf), kFirst) << onf;
  }
  EXPECT_EQ(ValuesOf(database_, Key({1, AnalysisTime, 1}, 522), 6).size(), 63u);
  EXPECT_TRUE(database_.HasDataBlock(ScalarKey(1, AnalysisTime, 501)));
  EXPECT_FALSE(database_.HasDataBlock(ScalarKey(2, AnalysisTime, 501)));
  EXPECT_THAT(log_.GetTexts(), Contains("keeping 1 whole results of job, what follows is broken"));
}

TEST_F(SpoiltImport, KeepWholeStepsKeepsTheResultsBeforeABrokenFrdWithoutADat)
{
  dat_.clear();
  CutAfterLine(frd_, 1200);  // within the third result
  ImportOptions options;
  options.keepWholeSteps = true;
  EXPECT_THAT(Import(options), testing::StartsWith(Path("job.frd") + ":1201: expected "));
  const std::set<StepKey> whole = {{1, AnalysisTime, 1}, {2, AnalysisTime, 2}};
  for (const int onf : {510, 521, 531, 511}) EXPECT_EQ(StepsOf(database_, onf), whole) << onf;
  EXPECT_FALSE(database_.GetConstDataBlock(ScalarKey(2, AnalysisTime, 501)).HasRecord(4));
}

// Right behind a result of a step's own, with what its step asks for: it is whole, and its end mark alone is missing.
TEST_F(SpoiltImport, KeepWholeStepsKeepsTheResultThatAFrdWasCutBehind)
{
  const std::string       frd = frd_;
  const std::string       dat = dat_;
  const std::set<StepKey> two = {{1, AnalysisTime, 1}, {2, AnalysisTime, 2}};
  const std::set<StepKey> all = {{1, AnalysisTime, 1}, {2, AnalysisTime, 2}, {2, AnalysisTime, 4}};
  struct Cut
  {
    std::size_t              lines;
    const std::set<StepKey>& whole;
  };
  const std::size_t last = static_cast<std::size_t>(std::count(frd.begin(), frd.end(), '\n')) - 1;
  for (const auto& [lines, whole] : {Cut{791, kFirst}, Cut{1147, two}, Cut{1435, two},  // the last before ERROR
                                     Cut{1436, two},                                    // behind a head
                                     Cut{last, all}})
  {
    for (const std::string& prints : {std::string(), dat}) {
      FED_ResultDatabase database;
      frd_ = frd;
      dat_ = prints;
      CutAfterLine(frd_, lines);
      ImportOptions options;
      options.keepWholeSteps = true;
      EXPECT_THAT(Import(options, database),
                  testing::HasSubstr("of a run that came to its end, found the end of the file"));
      for (const int onf : {510, 521, 511}) EXPECT_EQ(StepsOf(database, onf), whole) << lines << ' ' << onf;
      if (!prints.empty()) {
        EXPECT_EQ(StepsOf(database, 582), whole) << lines;
      }
    }
  }
}

TEST_F(SpoiltImport, KeepWholeStepsKeepsTheResultsBeforeABrokenDat)
{
  const std::size_t last = dat_.rfind(" stresses");
  Replace(dat_, dat_.substr(last, 200), "E+0", "E?0");
  ImportOptions options;
  options.keepWholeSteps = true;
  EXPECT_THAT(Import(options), testing::StartsWith(Path("job.dat") + ":"));
  const std::set<StepKey> whole = {{1, AnalysisTime, 1}, {2, AnalysisTime, 2}};
  for (const int onf : {510, 521, 522, 582}) EXPECT_EQ(StepsOf(database_, onf), whole) << onf;
}

// A run that diverged: the .frd has the increment that did not converge, the .dat ends with the one before, which is
// whole.
TEST_F(SpoiltImport, KeepWholeStepsKeepsTheLastWholeResultOfADatThatEndsBeforeTheFrd)
{
  const std::size_t third = dat_.find("time  0.2000000E+01");
  ASSERT_NE(third, std::string::npos);
  dat_.resize(dat_.rfind("\n\n", third) + 1);
  ImportOptions options;
  options.keepWholeSteps = true;
  EXPECT_THAT(Import(options), testing::HasSubstr("expected results of step 2 up to substep 4 as in job.frd"));
  const std::set<StepKey> whole = {{1, AnalysisTime, 1}, {2, AnalysisTime, 2}};
  for (const int onf : {510, 521, 522, 582}) EXPECT_EQ(StepsOf(database_, onf), whole) << onf;
}

TEST_F(SpoiltImport, KeepWholeStepsKeepsNothingOfABrokenMesh)
{
  CutAfterLine(frd_, 60);
  ImportOptions options;
  options.keepWholeSteps = true;
  EXPECT_THAT(Import(options), testing::StartsWith(Path("job.frd") + ":61: expected "));
  EXPECT_THAT(database_.GetDataDescriptors(FED_DataDescriptorPattern()), IsEmpty());
}

TEST_F(SpoiltImport, AnInterruptPassesThrough)
{
  struct Interrupt
  {};
  ImportOptions options;
  options.keepWholeSteps = true;
  options.progress       = [](const std::string&, std::uint64_t, std::uint64_t) { throw Interrupt(); };
  EXPECT_THROW(Import(options), Interrupt);
}

}  // namespace
}  // namespace quilon
