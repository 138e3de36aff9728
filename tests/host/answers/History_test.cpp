#include "answers/History.h"

#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "answers/Region.h"
#include "database/StepTimes.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using namespace quilon;

class Histories : public testing::Test
{
protected:
  void SetUp() override { FillTwoBricks(database_); }

  std::vector<HistorySeries> Read(const std::string& selection, const RegionOptions& options)
  {
    HistoryRequest request{Selection(selection, KindTable(database_)), selection};
    Region         region(database_, options, "db");
    const auto     blocks = request.selection.Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern()));
    return ReadHistories(database_, blocks, StepTimes(database_), region, request);
  }

  static std::string Text(const HistorySeries& series)
  {
    std::string text =
        series.kind + ' ' + (series.id ? std::to_string(*series.id) : "-") + ' ' + series.component + ':';
    for (const HistoryPoint& point : series.points)
      text += ' ' + std::to_string(*point.time).substr(0, 4) + '/' + std::to_string(point.value).substr(0, 4);
    return text;
  }

  FED_ResultDatabase database_;
};

TEST_F(Histories, RunThroughAllLoadCasesByTime)
{
  const auto all = Read("displacement.x,stress.mises", {.ids = "2,12"});
  ASSERT_EQ(all.size(), 4u);
  EXPECT_EQ(Text(all[0]), "displacement 2 x: 0.50/1.00 1.00/2.00 2.00/4.00");
  EXPECT_EQ(Text(all[1]), "displacement 12 x: 0.50/6.00 1.00/12.0 2.00/24.0");
  EXPECT_EQ(Text(all[3]), "nodal-stress 12 mises: 0.50/6.00 1.00/12.0 2.00/24.0");
  EXPECT_EQ(ToSelectionText(all[0].points[2].step), "0@it=0,an=1,lc=2,sub=1");
}

TEST_F(Histories, WithoutAComponentAllStoredOnesAreMeant)
{
  EXPECT_EQ(Read("displacement", {.near = {{2, 0, 0}}}).size(), 3u);
}

TEST_F(Histories, ScalarHistoriesNeedNoRegion)
{
  const auto all = Read("time", {});
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(Text(all[0]), "time - time: 0.50/0.50 1.00/1.00 2.00/2.00");
}

TEST_F(Histories, RecordsAreChosen)
{
  try {
    Read("displacement", {});
    FAIL() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(
        failure.what(),
        "a history of 'displacement' is of chosen records, expected --ids, --set, --material, --box or --near");
  }
}

TEST_F(Histories, ResamplingIsStraightBetweenStepsAndNothingBeyond)
{
  const HistorySeries series = Resampled(Read("displacement.x", {.ids = "2"}).front(), {0.25, 0.5, 0.75, 1.5, 2, 2.5});
  EXPECT_EQ(Text(series), "displacement 2 x: 0.50/1.00 0.75/1.50 1.50/3.00 2.00/4.00");
}

/// A modal step with a frequency behind the steps of FillTwoBricks().
class HistoriesWithModes : public Histories
{
protected:
  void SetUp() override
  {
    Histories::SetUp();
    quilon_test::SetFrequency(database_, 3, 1, 0.75);
    FED_DataDescriptor mode = StepBlock(OnfKind::Displacement, 3, 1);
    mode.SetInteger(FED_DataDescriptor::Analysis, 2);
    const double shape[3] = {100, 0, 0};
    database_.GetOrCreateDataBlock(mode, 1).SetValuesAt(
        database_.GetIdMapsPool().FindOrAddIndex(OnfKind::NodeEntity, 2), shape);
  }
};

TEST_F(HistoriesWithModes, TellWhichTimesAreFrequencies)
{
  const HistorySeries series = Read("displacement.x", {.ids = "2"}).front();
  ASSERT_EQ(Text(series), "displacement 2 x: 0.50/1.00 1.00/2.00 2.00/4.00 0.75/100.");
  EXPECT_EQ(series.points[0].quantity, OnfKind::Time);
  EXPECT_EQ(series.points[3].quantity, OnfKind::Frequency);
  const auto frequencies = Read("frequency", {});
  ASSERT_EQ(frequencies.size(), 1u);
  EXPECT_EQ(frequencies[0].points[0].quantity, OnfKind::Frequency);
}

TEST_F(HistoriesWithModes, ResamplingGoesByTimesAlone)
{
  const HistorySeries series = Read("displacement.x", {.ids = "2"}).front();
  EXPECT_EQ(Text(Resampled(series, {0.5, 0.75, 2})), "displacement 2 x: 0.50/1.00 0.75/1.50 2.00/4.00");
  HistorySeries modes = series;
  modes.points.erase(modes.points.begin(), modes.points.begin() + 3);
  EXPECT_EQ(Text(Resampled(modes, {0.5, 0.75, 2})), "displacement 2 x: 0.75/100.");
}

TEST(HistoryTimes, AreAListOrARange)
{
  EXPECT_EQ(ParseTimes("0.5,1,2"), (std::vector<double>{0.5, 1, 2}));
  EXPECT_EQ(ParseTimes("0:1:0.25"), (std::vector<double>{0, 0.25, 0.5, 0.75, 1}));
  // Three tenths make 0.30000000000000004: the last time is not lost to rounding.
  EXPECT_EQ(ParseTimes("0:0.3:0.1").size(), 4u);
  for (const char* text : {"", "x", "1,", "0:1", "0:1:0", "1:0:0.1", "0:1:nan"})
    EXPECT_THROW(ParseTimes(text), FED_Failure) << text;
  EXPECT_THROW(ParseTimes("0:1:1e-9"), FED_Failure);
}

}  // namespace
