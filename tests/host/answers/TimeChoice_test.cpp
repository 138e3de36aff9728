#include "answers/TimeChoice.h"

#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "database/StepTimes.h"
#include "kinds/KindTable.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using quilon::StepTimes;
using quilon::TimeChoice;

class Times : public testing::Test
{
protected:
  void SetUp() override { FillTwoBricks(database_); }

  std::string Keep(const std::string& time, const std::string& selection = "stress")
  {
    try {
      const auto  all = database_.GetDataDescriptors(FED_DataDescriptorPattern());
      std::string text;
      for (const auto& block : TimeChoice(time).Keep(quilon::Selection(selection, quilon::KindTable()).Apply(all), all,
                                                     StepTimes(database_), "db"))
        text += (text.empty() ? "" : " ") + quilon::ToSelectionText(block);
      return text;
    } catch (const FED_Failure& failure) {
      return failure.what();
    }
  }

  FED_ResultDatabase database_;
};

TEST_F(Times, NearestIsTakenWithinAThousandthOfWhatWasAsked)
{
  EXPECT_EQ(Keep("1"), "521@it=0,an=1,lc=1,sub=2");
  EXPECT_EQ(Keep("1.0009"), "521@it=0,an=1,lc=1,sub=2");
  EXPECT_EQ(Keep("0.9991"), "521@it=0,an=1,lc=1,sub=2");
  EXPECT_EQ(Keep("1.0011"), "db: no step at time 1.0011 within a thousandth of it, the nearest are 1 and 2");
  EXPECT_EQ(Keep("3"), "db: no step at time 3 within a thousandth of it, the nearest is 2");
  EXPECT_EQ(Keep("0"), "db: no step at time 0 within a thousandth of it, the nearest is 0.5");
}

TEST_F(Times, RangesHaveBothEnds)
{
  EXPECT_EQ(Keep("0.5:1"), "521@it=0,an=1,lc=1,sub=1 521@it=0,an=1,lc=1,sub=2");
  EXPECT_EQ(Keep("1:"), "521@it=0,an=1,lc=1,sub=2 521@it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(Keep(":0.5"), "521@it=0,an=1,lc=1,sub=1");
  EXPECT_EQ(Keep("0.6:0.9"), "db: no step at times 0.6:0.9, there are times of 0.5 to 2");
}

TEST_F(Times, LastIsTheGreatestTimeOfEachScale)
{
  EXPECT_EQ(Keep("last"), "521@it=0,an=1,lc=2,sub=1");
  // Modes have a scale of their own.
  quilon_test::SetFrequency(database_, 1, 3, 120.0);
  FED_DataDescriptor mode = StepBlock(OnfKind::NodalStress, 1, 3);
  mode.SetInteger(FED_DataDescriptor::Analysis, 2);
  database_.GetOrCreateDataBlock(mode, 1);
  EXPECT_EQ(Keep("last"), "521@it=0,an=2,lc=1,sub=3 521@it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(Keep("120"), "521@it=0,an=2,lc=1,sub=3");
}

TEST_F(Times, WhatBelongsToAllStepsStaysAndHistoriesGoWithTheirLoadCase)
{
  EXPECT_EQ(Keep("2", "coordinates,stress,time"), "500@it=0,an=1,lc=2,quantity=501 516@it=0 521@it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(Keep("0.5", "time"), "500@it=0,an=1,lc=1,quantity=501");
}

TEST_F(Times, OtherTextsAreRefused)
{
  for (const char* text : {"", "x", "1,2", ":", "1:x", "nan", "1:2:3"})
    EXPECT_EQ(Keep(text),
              std::string("--time is '") + text + "', expected a time such as 0.8, a range such as 0.2:0.8, or last");
  EXPECT_EQ(Keep("2:1"), "--time is '2:1', a range that runs backwards, expected the earlier time first");
}

TEST(TimesOfNothing, AreAnError)
{
  FED_ResultDatabase database;
  const auto         block = StepBlock(OnfKind::NodalStress, 1, 1);
  try {
    TimeChoice("last").Keep({block}, {block}, StepTimes(database), "db");
    FAIL() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "db: holds no times of these results, expected them for --time");
  }
}

}  // namespace
