#include "QuilonDbConnector/FED_DataDescriptor.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "QuilonDbConnector/FED_DataDescriptorPattern.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"

TEST(FED_DataDescriptor, StartsWithNothingSet)
{
  const FED_DataDescriptor descriptor;
  for (const int value : descriptor.values) EXPECT_EQ(value, 0);
  EXPECT_EQ(descriptor.mask, 0u);
  EXPECT_EQ(descriptor.cached[0], -1);
  EXPECT_EQ(descriptor.cached[1], -1);
}

TEST(FED_DataDescriptor, ConstructorSetsIterationAndOnfId)
{
  const FED_DataDescriptor descriptor(7, static_cast<FED_OnfId>(521));
  EXPECT_EQ(descriptor.values[0], 7);
  EXPECT_EQ(descriptor.values[1], 521);
  EXPECT_EQ(descriptor.mask, 3u);
}

TEST(FED_DataDescriptor, SetIntegerSetsItsBitAndResetsTheCachedIntegers)
{
  FED_DataDescriptor descriptor;
  descriptor.cached[0] = 4;
  descriptor.cached[1] = 5;
  descriptor.SetInteger(FED_DataDescriptor::Layer, 2);
  EXPECT_EQ(descriptor.values[9], 2);
  EXPECT_EQ(descriptor.mask, 1u << 9);
  EXPECT_EQ(descriptor.cached[0], -1);
  EXPECT_EQ(descriptor.cached[1], -1);
}

TEST(FED_DataDescriptor, GetIntegerGivesTheRawValueUnderAClearBit)
{
  FED_DataDescriptor descriptor;
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 12);
  descriptor.mask = 0;
  EXPECT_EQ(descriptor.GetInteger(FED_DataDescriptor::LoadCase), 12);
  EXPECT_FALSE(descriptor.IsSet(FED_DataDescriptor::LoadCase));
}

TEST(FED_DataDescriptor, InitClearsValuesMaskAndCachedIntegers)
{
  FED_DataDescriptor descriptor(7, FED_OnfId_ScalarHistory);
  descriptor.cached[1] = 3;
  descriptor.Init();
  EXPECT_TRUE(descriptor == FED_DataDescriptor());
  EXPECT_EQ(descriptor.cached[1], -1);
}

TEST(FED_DataDescriptor, IndexOutOfRangeIsAFailure)
{
  FED_DataDescriptor descriptor;
  EXPECT_EQ(MessageOf([&] { descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(14), 1); }),
            "FED_DataDescriptor::SetInteger: result index is 14, expected 0 to 13");
  EXPECT_EQ(MessageOf([&] { descriptor.GetInteger(static_cast<FED_DataDescriptor::ResultIndex>(-1)); }),
            "FED_DataDescriptor::GetInteger: result index is -1, expected 0 to 13");
  EXPECT_EQ(MessageOf([&] { descriptor.IsSet(static_cast<FED_DataDescriptor::ResultIndex>(99)); }),
            "FED_DataDescriptor::IsSet: result index is 99, expected 0 to 13");
  descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(13), 1);
  EXPECT_EQ(descriptor.mask, 1u << 13);
}

TEST(FED_DataDescriptor, OrderGoesByTheFirstDifferingValue)
{
  FED_DataDescriptor low, high;
  low.SetInteger(FED_DataDescriptor::Iteration, 1);
  low.SetInteger(FED_DataDescriptor::Layer, 9);
  high.SetInteger(FED_DataDescriptor::Iteration, 1);
  high.SetInteger(FED_DataDescriptor::LoadCase, 1);
  EXPECT_TRUE(low < high);
  EXPECT_FALSE(high < low);
}

TEST(FED_DataDescriptor, NegativeValuesComeBeforeZero)
{
  FED_DataDescriptor negative, zero;
  negative.SetInteger(FED_DataDescriptor::Substep, -1);
  zero.SetInteger(FED_DataDescriptor::Substep, 0);
  EXPECT_TRUE(negative < zero);
}

TEST(FED_DataDescriptor, ValuesUnderClearBitsTakePartInOrderAndEquality)
{
  FED_DataDescriptor one, two;
  one.values[12] = 1;
  two.values[12] = 2;
  EXPECT_TRUE(one < two);
  EXPECT_FALSE(one == two);
}

TEST(FED_DataDescriptor, MaskAloneMakesAnotherKey)
{
  FED_DataDescriptor clear, set;
  set.SetInteger(FED_DataDescriptor::Substep, 0);
  EXPECT_FALSE(clear == set);
  EXPECT_TRUE(clear < set);
  EXPECT_FALSE(set < clear);
}

TEST(FED_DataDescriptor, CachedIntegersTakeNoPartInTheKey)
{
  FED_DataDescriptor one, two;
  one.cached[0] = 17;
  EXPECT_TRUE(one == two);
  EXPECT_FALSE(one < two);
  EXPECT_FALSE(two < one);
}

TEST(FED_DataDescriptor, SameSequenceOfSettingsGivesEqualKeys)
{
  FED_DataDescriptor one, two;
  for (FED_DataDescriptor* descriptor : {&one, &two}) {
    descriptor->SetInteger(FED_DataDescriptor::OnfId, 510);
    descriptor->SetInteger(FED_DataDescriptor::LoadCase, 3);
    descriptor->SetInteger(FED_DataDescriptor::LoadCase, 4);
  }
  EXPECT_TRUE(one == two);
  EXPECT_EQ((std::set<FED_DataDescriptor>{one, two}.size()), 1u);
}

TEST(FED_DataDescriptor, ToStringNamesSetIndicesOnly)
{
  FED_DataDescriptor descriptor(2, static_cast<FED_OnfId>(521));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 3);
  descriptor.SetInteger(FED_DataDescriptor::Substep, -4);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, 1);
  descriptor.SetInteger(FED_DataDescriptor::Increment, 5);
  descriptor.SetInteger(FED_DataDescriptor::Layer, 6);
  descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), 507);
  descriptor.values[2] = 8;
  EXPECT_EQ(descriptor.ToString(),
            "iteration=2 onf=521 load-case=3 substep=-4 analysis=1 increment=5 layer=6 index-10=507");
}

TEST(FED_DataDescriptor, ToStringOfAnEmptyKeySaysSo) { EXPECT_EQ(FED_DataDescriptor().ToString(), "(no index set)"); }

TEST(FED_DataDescriptorPattern, DefaultMatchesEverything)
{
  FED_DataDescriptor odd(-3, static_cast<FED_OnfId>(123456));
  odd.values[13] = 7;
  EXPECT_TRUE(FED_DataDescriptorPattern().Matches(odd));
  EXPECT_TRUE(FED_DataDescriptorPattern().Matches(FED_DataDescriptor()));
}

TEST(FED_DataDescriptorPattern, ComparesRawValuesWhateverTheMaskSays)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::LoadCase, 5);
  FED_DataDescriptor descriptor;
  EXPECT_FALSE(pattern.Matches(descriptor));
  descriptor.values[3] = 5;
  EXPECT_TRUE(pattern.Matches(descriptor));
}

TEST(FED_DataDescriptorPattern, EqualZeroMatchesAnUnsetIndex)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Layer, 0);
  EXPECT_TRUE(pattern.Matches(FED_DataDescriptor()));
}

TEST(FED_DataDescriptorPattern, AllCriteriaHoldAtOnce)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Iteration, 1);
  pattern.SetEqual(FED_DataDescriptor::OnfId, 510);
  EXPECT_TRUE(pattern.Matches(FED_DataDescriptor(1, static_cast<FED_OnfId>(510))));
  EXPECT_FALSE(pattern.Matches(FED_DataDescriptor(2, static_cast<FED_OnfId>(510))));
  EXPECT_FALSE(pattern.Matches(FED_DataDescriptor(1, static_cast<FED_OnfId>(511))));
}

TEST(FED_DataDescriptorPattern, UnknownModeIsAFailureWhenMatched)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Iteration, 1);  // does not match, and the failure comes all the same
  pattern.criteria[3].mode = 2;
  EXPECT_EQ(MessageOf([&] { pattern.Matches(FED_DataDescriptor()); }),
            "FED_DataDescriptorPattern::Matches: match mode of load-case is 2, expected 0 (equal) or -1 (any)");
}

TEST(FED_DataDescriptorPattern, SetEqualOutOfRangeIsAFailure)
{
  FED_DataDescriptorPattern pattern;
  EXPECT_EQ(MessageOf([&] { pattern.SetEqual(static_cast<FED_DataDescriptor::ResultIndex>(14), 0); }),
            "FED_DataDescriptorPattern::SetEqual: result index is 14, expected 0 to 13");
}

TEST(FED_DataDescriptorPattern, ToStringNamesCriteria)
{
  FED_DataDescriptorPattern pattern;
  EXPECT_EQ(pattern.ToString(), "(any)");
  pattern.SetEqual(FED_DataDescriptor::OnfId, 521);
  pattern.criteria[4] = {2, 7};
  EXPECT_EQ(pattern.ToString(), "onf=521 substep=7 (mode 2)");
}
