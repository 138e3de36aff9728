#include "import/StepMatcher.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "calculix/DatReader.h"
#include "calculix/FrdReader.h"
#include "calculix/SolverFiles.h"
#include "calculix/StaReader.h"
#include "TempFolder.h"

namespace quilon {

void PrintTo(const StepKey& key, std::ostream* out)
{
  *out << key.loadCase << "/" << key.analysis << "/" << key.substep;
}

namespace {

using calculix::DatBlock;
using calculix::FrdDataset;

constexpr int kTime = 0, kHarmonic = 1, kModes = 2, kBuckling = 4;

FrdDataset Dataset(int kind, int step, int increment, double value, int outputNumber = 0, int mode = 0)
{
  FrdDataset dataset;
  dataset.name         = "DISP";
  dataset.kind         = kind;
  dataset.step         = step;
  dataset.increment    = increment;
  dataset.value        = value;
  dataset.outputNumber = outputNumber;
  dataset.mode         = mode;
  return dataset;
}

DatBlock Block(double time, int mode = 0, const std::string& title = "displacements", const std::string& set = "NALL")
{
  DatBlock block;
  block.title = title;
  block.set   = set;
  block.time  = time;
  block.mode  = mode;
  return block;
}

StepKey AddDataset(StepMatcher& matcher, const FrdDataset& dataset)
{
  return matcher.AddListed(calculix::StepOf(dataset), true);
}

std::optional<StepMatcher::Match> MatchBlock(StepMatcher& matcher, const DatBlock& block)
{
  return matcher.MatchPrinted(calculix::StepOf(block), block.title + '\n' + block.set);
}

void AddStatusFile(StepMatcher& matcher, const std::filesystem::path& path)
{
  for (const calculix::StaRow& row : calculix::ReadSta(path))
    if (row.converged) matcher.AddListed(calculix::StepOf(row), false);
}

StepKey KeyOf(StepMatcher& matcher, const DatBlock& block)
{
  const std::optional<StepMatcher::Match> match = MatchBlock(matcher, block);
  return match ? match->key : StepKey{-1, -1, -1};
}

constexpr StepKey kNoKey{-1, -1, -1};

TEST(StepMatcher, ADataSetInTimeGoesByStepAndIncrementOfTheFile)
{
  StepMatcher matcher;
  EXPECT_EQ(AddDataset(matcher, Dataset(kTime, 2, 4, 2.0, 3)), (StepKey{2, AnalysisTime, 4}));
}

TEST(StepMatcher, AModeGoesByItsNumber)
{
  StepMatcher matcher;
  EXPECT_EQ(AddDataset(matcher, Dataset(kModes, 1, 1, 8258.5, 1, 1)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kModes, 1, 1, 9258.5, 2, 2)), (StepKey{1, AnalysisModes, 2}));
}

TEST(StepMatcher, ModesWithoutANumberAreNumberedAsTheyCome)
{
  StepMatcher matcher;
  EXPECT_EQ(AddDataset(matcher, Dataset(kModes, 1, 1, 8258.5, 5)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kModes, 1, 1, 8258.5, 5)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kModes, 1, 1, 9258.5, 6)), (StepKey{1, AnalysisModes, 2}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kModes, 3, 1, 100.0, 9)), (StepKey{3, AnalysisModes, 1}));
}

TEST(StepMatcher, ABucklingStepIsAPreloadAndItsModes)
{
  StepMatcher matcher;
  EXPECT_EQ(AddDataset(matcher, Dataset(kBuckling, 1, 1, 0.0, 1)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kBuckling, 1, 1, 399.3, 2)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kBuckling, 1, 1, 869.6, 3)), (StepKey{1, AnalysisModes, 2}));

  EXPECT_EQ(KeyOf(matcher, Block(0.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(0.0, 1)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(0.0, 2)), (StepKey{1, AnalysisModes, 2}));
}

TEST(StepMatcher, DynamicResultsWithAnIncrementAreResultsInTime)
{
  StepMatcher matcher;
  EXPECT_EQ(AddDataset(matcher, Dataset(kHarmonic, 1, 5, 1e-4, 1)), (StepKey{1, AnalysisTime, 5}));
}

TEST(StepMatcher, HarmonicResultsAreNumberedAndFoundByFrequency)
{
  StepMatcher matcher;
  EXPECT_EQ(AddDataset(matcher, Dataset(kHarmonic, 2, 0, 1000.0, 4)), (StepKey{2, AnalysisOther, 1}));
  EXPECT_EQ(AddDataset(matcher, Dataset(kHarmonic, 2, 0, 2000.0, 5)), (StepKey{2, AnalysisOther, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(1000.0)), (StepKey{2, AnalysisOther, 1}));
  EXPECT_FALSE(MatchBlock(matcher, Block(1000.0, 0, "stresses"))->repeated);
  EXPECT_TRUE(MatchBlock(matcher, Block(1000.0, 0, "stresses"))->repeated) << "the imaginary part";
  EXPECT_EQ(KeyOf(matcher, Block(2000.0)), (StepKey{2, AnalysisOther, 2}));
}

TEST(StepMatcher, HarmonicResultsThatNothingListsAreNumberedBehindTheModes)
{
  const auto harmonic = [](double frequency) {
    DatBlock block = Block(frequency);
    block.harmonic = true;
    return block;
  };
  StepMatcher matcher;
  EXPECT_EQ(matcher.MatchModeTable(), 1);
  EXPECT_EQ(KeyOf(matcher, harmonic(1000.0)), (StepKey{2, AnalysisOther, 1}));
  EXPECT_EQ(KeyOf(matcher, harmonic(1000.0)), (StepKey{2, AnalysisOther, 1}));
  EXPECT_EQ(KeyOf(matcher, harmonic(2000.0)), (StepKey{2, AnalysisOther, 2}));
  EXPECT_EQ(KeyOf(matcher, harmonic(1000.0)), (StepKey{3, AnalysisOther, 1})) << "frequencies ascend within a step";
}

TEST(StepMatcher, AHarmonicResultIsNoResultInTime)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1000.0));
  AddDataset(matcher, Dataset(kHarmonic, 2, 0, 1000.0, 4));
  DatBlock block = Block(1000.0);
  block.harmonic = true;
  EXPECT_EQ(KeyOf(matcher, block), (StepKey{2, AnalysisOther, 1}));
}

TEST(StepMatcher, FindsATimeWithinThePrintedDigitsOfBothFiles)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 3.33333e-1));
  AddDataset(matcher, Dataset(kTime, 1, 2, 6.66667e-1));
  AddDataset(matcher, Dataset(kTime, 1, 3, 1.0));
  EXPECT_EQ(KeyOf(matcher, Block(0.3333333)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(0.6666667)), (StepKey{1, AnalysisTime, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(0.99)), kNoKey);
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 3}));
}

TEST(StepMatcher, OfTimesThatArePrintedAlikeTheNearestIsTaken)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1.0));
  AddDataset(matcher, Dataset(kTime, 1, 2, 1.0000004));
  AddDataset(matcher, Dataset(kTime, 1, 3, 1.0000008));
  EXPECT_EQ(KeyOf(matcher, Block(1.0000001)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.0000007)), (StepKey{1, AnalysisTime, 3}));
}

TEST(StepMatcher, ABlockThatComesAgainAtATimeOfTwoStepsIsTheLaterStepsOne)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1.0));
  AddDataset(matcher, Dataset(kTime, 2, 1, 1.0));
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.0, 0, "stresses")), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{2, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.0, 0, "stresses")), (StepKey{2, AnalysisTime, 1}));
}

TEST(StepMatcher, ABlockThatComesAgainAtATimeOfOneStepStaysThere)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1.0));
  AddDataset(matcher, Dataset(kTime, 1, 2, 2.0));
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  const std::optional<StepMatcher::Match> again = MatchBlock(matcher, Block(1.0));
  ASSERT_TRUE(again);
  EXPECT_EQ(again->key, (StepKey{1, AnalysisTime, 1}));
  EXPECT_TRUE(again->repeated);
  EXPECT_FALSE(MatchBlock(matcher, Block(1.0, 0, "displacements", "NFIX"))->repeated) << "another set";
}

TEST(StepMatcher, NeverGoesBack)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1.0));
  AddDataset(matcher, Dataset(kTime, 1, 2, 2.0));
  EXPECT_EQ(KeyOf(matcher, Block(2.0)), (StepKey{1, AnalysisTime, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), kNoKey);
}

TEST(StepMatcher, TheBlocksOfAStepThatFollowsModesAreNotTheLastModes)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1.0, 1));
  AddDataset(matcher, Dataset(kModes, 2, 1, 100.0, 2, 1));
  AddDataset(matcher, Dataset(kModes, 2, 1, 200.0, 3, 2));
  AddDataset(matcher, Dataset(kTime, 3, 1, 2.0, 4));
  AddDataset(matcher, Dataset(kModes, 4, 1, 300.0, 5, 1));
  AddDataset(matcher, Dataset(kTime, 5, 1, 3.0, 6));

  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 1)), (StepKey{2, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 2)), (StepKey{2, AnalysisModes, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 2, "stresses")), (StepKey{2, AnalysisModes, 2}));
  // The banner of mode 2 is still the latest, and the modes were printed at the time at which this step ends.
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 2)), (StepKey{3, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 2, "stresses")), (StepKey{3, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(3.0, 1)), (StepKey{4, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(3.0, 1)), (StepKey{5, AnalysisTime, 1}));
}

TEST(StepMatcher, AnotherTimeEndsTheModes)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kModes, 1, 1, 100.0, 2, 1));
  AddDataset(matcher, Dataset(kTime, 2, 1, 1.5, 4));
  AddDataset(matcher, Dataset(kTime, 2, 2, 2.0, 4));
  EXPECT_EQ(KeyOf(matcher, Block(1.0, 1)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.5, 1, "stresses")), (StepKey{2, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 1, "stresses")), (StepKey{2, AnalysisTime, 2}));
}

TEST(StepMatcher, BlocksOfTheLastModeStayThereAtItsTimeAlone)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kModes, 1, 1, 100.0, 2, 1));
  AddDataset(matcher, Dataset(kModes, 2, 1, 200.0, 3, 1));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 1)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 1)), (StepKey{1, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(3.0, 1)), (StepKey{2, AnalysisModes, 1}));
}

TEST(StepMatcher, ARepeatedBlockIsOfAResultOfItsOwnInTimeAndWithoutOtherFiles)
{
  const auto repeat = [](StepMatcher& matcher, const DatBlock& block) {
    const std::optional<StepMatcher::Match> match = matcher.MatchRepeated(calculix::StepOf(block), "again");
    return match ? match->key : kNoKey;
  };
  StepMatcher alone;
  EXPECT_EQ(KeyOf(alone, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(repeat(alone, Block(1.0)), (StepKey{1, AnalysisTime, 2}));
  EXPECT_EQ(repeat(alone, Block(1.0, 1)), kNoKey);
  StepMatcher listed;
  AddDataset(listed, Dataset(kTime, 1, 1, 1.0));
  EXPECT_EQ(KeyOf(listed, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(repeat(listed, Block(1.0)), kNoKey);
}

TEST(StepMatcher, AModeThatTheFileDoesNotListIsNotFound)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kModes, 1, 1, 100.0, 2, 1));
  EXPECT_EQ(KeyOf(matcher, Block(1.0, 7)), kNoKey);
}

TEST(StepMatcher, AModeTableBelongsToTheNextStepWithModes)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 1, 1, 1.0, 1));
  AddDataset(matcher, Dataset(kModes, 2, 1, 100.0, 2, 1));
  AddDataset(matcher, Dataset(kModes, 4, 1, 300.0, 5, 1));
  EXPECT_EQ(matcher.MatchModeTable(), 2);
  EXPECT_EQ(matcher.MatchModeTable(), 4);
}

TEST(StepMatcher, AModeTableWithoutResultsGetsAStepThatNoResultHas)
{
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kHarmonic, 2, 0, 1000.0, 4));
  EXPECT_EQ(matcher.MatchModeTable(), 1);
  EXPECT_EQ(matcher.MatchModeTable(), 3);
}

TEST(StepMatcher, TheStatusFileTellsIncrementsThatTheResultFileDoesNot)
{
  quilon_test::TempFolder folder;
  std::ofstream(folder / "job.sta") << "SUMMARY OF JOB INFORMATION\n"
                                       "  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME\n"
                                       "     1          1     1     1  0.100000E+01  0.100000E+01  0.100000E+01\n"
                                       "     2          1     1     2  0.125000E+01  0.250000E+00  0.250000E+00\n"
                                       "     2          2     1     2  0.150000E+01  0.500000E+00  0.250000E+00\n";
  StepMatcher matcher;
  AddDataset(matcher, Dataset(kTime, 2, 2, 1.5, 2));
  AddStatusFile(matcher, folder / "job.sta");
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.25)), (StepKey{2, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.5)), (StepKey{2, AnalysisTime, 2}));
  EXPECT_FALSE(matcher.HasNumbered());
}

TEST(StepMatcher, WithoutOtherFilesTimesAreNumberedInTheirOrder)
{
  StepMatcher matcher;
  EXPECT_FALSE(matcher.HasNumbered());
  EXPECT_EQ(KeyOf(matcher, Block(0.9999999)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(0.9999999, 0, "stresses")), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0)), (StepKey{1, AnalysisTime, 3}));
  EXPECT_TRUE(matcher.HasNumbered());
}

TEST(StepMatcher, WithoutOtherFilesModesFormAStepOfTheirOwn)
{
  StepMatcher matcher;
  EXPECT_EQ(KeyOf(matcher, Block(1.0)), (StepKey{1, AnalysisTime, 1}));
  EXPECT_EQ(matcher.MatchModeTable(), 2);
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 1)), (StepKey{2, AnalysisModes, 1}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 2)), (StepKey{2, AnalysisModes, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(2.0, 2, "stresses")), (StepKey{2, AnalysisModes, 2}));
  EXPECT_EQ(KeyOf(matcher, Block(3.0, 2)), (StepKey{3, AnalysisTime, 1})) << "under the last banner";
  EXPECT_EQ(KeyOf(matcher, Block(3.0, 2, "stresses")), (StepKey{3, AnalysisTime, 1}));
}

}  // namespace
}  // namespace quilon
