#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_DataDescriptor.h>
#include <QuilonDbConnector/FED_DataDescriptorPattern.h>

#include "support.h"

namespace conformance {
namespace {

TEST(DescriptorConformance, ADefaultDescriptorIsEmpty)
{
  const FED_DataDescriptor key;
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    EXPECT_EQ(key.GetInteger(Index(index)), 0) << index;
    EXPECT_FALSE(key.IsSet(Index(index))) << index;
  }
  EXPECT_EQ(key.mask, 0U);
  EXPECT_EQ(key.cached[0], -1);
  EXPECT_EQ(key.cached[1], -1);
}

TEST(DescriptorConformance, IsMadeFromIterationAndOnfId)
{
  const FED_DataDescriptor key(7, FED_OnfId_ScalarHistory);
  EXPECT_EQ(key.GetInteger(FED_DataDescriptor::Iteration), 7);
  EXPECT_EQ(key.GetInteger(FED_DataDescriptor::OnfId), 500);
  EXPECT_EQ(key.mask, 3U);
  EXPECT_EQ(key.cached[0], -1);
  EXPECT_EQ(key.cached[1], -1);
}

TEST(DescriptorConformance, InitClearsEverything)
{
  FED_DataDescriptor key(7, FED_OnfId_ScalarHistory);
  key.SetInteger(Index(13), -4);
  key.cached[0] = 5;
  key.cached[1] = 6;
  key.Init();
  EXPECT_TRUE(key == FED_DataDescriptor());
  EXPECT_EQ(key.mask, 0U);
  EXPECT_EQ(key.values[13], 0);
  EXPECT_EQ(key.cached[0], -1);
  EXPECT_EQ(key.cached[1], -1);
}

TEST(DescriptorConformance, SettingAnIndexSetsItsBitAndResetsTheCachedIntegers)
{
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    FED_DataDescriptor key;
    key.cached[0] = 5;
    key.cached[1] = 6;
    key.SetInteger(Index(index), -3 - index);
    EXPECT_EQ(key.GetInteger(Index(index)), -3 - index);
    EXPECT_EQ(key.values[index], -3 - index);
    EXPECT_TRUE(key.IsSet(Index(index)));
    EXPECT_EQ(key.mask, 1U << index);
    EXPECT_EQ(key.cached[0], -1);
    EXPECT_EQ(key.cached[1], -1);
  }
}

TEST(DescriptorConformance, ValuesAreReadUnderAClearBit)
{
  FED_DataDescriptor key = Key(kHistory, 3);
  key.mask &= ~(1U << FED_DataDescriptor::LoadCase);
  EXPECT_FALSE(key.IsSet(FED_DataDescriptor::LoadCase));
  EXPECT_EQ(key.GetInteger(FED_DataDescriptor::LoadCase), 3);
}

TEST(DescriptorConformance, AnIndexOutsideZeroToThirteenIsAFailure)
{
  FED_DataDescriptor key;
  for (const int index : {-1, 14, 32}) {
    EXPECT_THROW(key.GetInteger(Index(index)), FED_Failure) << index;
    EXPECT_THROW(key.SetInteger(Index(index), 1), FED_Failure) << index;
    EXPECT_THROW(key.IsSet(Index(index)), FED_Failure) << index;
  }
  EXPECT_TRUE(key == FED_DataDescriptor());
}

TEST(DescriptorConformance, OrderGoesByTheValuesInIndexOrderAndThenByTheMask)
{
  std::vector<FED_DataDescriptor> ascending;
  FED_DataDescriptor              negative;
  negative.SetInteger(Index(0), -1);
  ascending.push_back(negative);
  ascending.emplace_back();  // all zero, nothing set
  FED_DataDescriptor masked;
  masked.mask = 1U;
  ascending.push_back(masked);
  for (int index = FED_DataDescriptor::kNumIndices - 1; index >= 0; --index) {
    FED_DataDescriptor key;
    key.SetInteger(Index(index), 1);
    FED_DataDescriptor unset = key;
    unset.mask               = 0;
    ascending.push_back(unset);  // the same values under a smaller mask
    ascending.push_back(key);
  }
  for (std::size_t a = 0; a < ascending.size(); ++a) {
    for (std::size_t b = 0; b < ascending.size(); ++b) {
      EXPECT_EQ(ascending[a] < ascending[b], a < b) << a << " and " << b;
      EXPECT_EQ(ascending[a] == ascending[b], a == b) << a << " and " << b;
    }
  }
}

TEST(DescriptorConformance, CachedIntegersTakeNoPartInOrderAndEquality)
{
  const FED_DataDescriptor key   = Key(kHistory, 2);
  FED_DataDescriptor       other = key;
  other.cached[0]                = 8;
  other.cached[1]                = 9;
  EXPECT_TRUE(key == other);
  EXPECT_FALSE(key < other);
  EXPECT_FALSE(other < key);
}

TEST(DescriptorConformance, TheSameCallsMakeEqualDescriptors)
{
  EXPECT_TRUE(Key(kHistory, 2, 3) == Key(kHistory, 2, 3));
}

TEST(DescriptorConformance, AnotherValueUnderAClearBitIsAnotherKey)
{
  FED_DataDescriptor three = Key(kHistory, 3);
  FED_DataDescriptor four  = Key(kHistory, 4);
  three.mask = four.mask = 3U;
  EXPECT_FALSE(three == four);
  EXPECT_TRUE(three < four);
}

TEST(DescriptorConformance, PrintsItsSetValues)
{
  const std::string text = Key(kHistory, 4711).ToString();
  EXPECT_NE(text.find("4711"), std::string::npos) << text;
  FED_DataDescriptor cleared = Key(kHistory, 4711);
  cleared.mask               = 3U;
  EXPECT_EQ(cleared.ToString().find("4711"), std::string::npos) << cleared.ToString();
}

TEST(PatternConformance, ADefaultPatternMatchesEverything)
{
  const FED_DataDescriptorPattern pattern;
  EXPECT_TRUE(pattern.Matches(FED_DataDescriptor()));
  EXPECT_TRUE(pattern.Matches(Key(kHistory, -2, 9)));
}

TEST(PatternConformance, AdmitsOnlyTheValueOfACriterion)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, kHistory);
  pattern.SetEqual(FED_DataDescriptor::LoadCase, 2);
  EXPECT_TRUE(pattern.Matches(Key(kHistory, 2)));
  EXPECT_TRUE(pattern.Matches(Key(kHistory, 2, 5)));
  EXPECT_FALSE(pattern.Matches(Key(kHistory, 3)));
  EXPECT_FALSE(pattern.Matches(Key(kUserScalar, 2)));
}

TEST(PatternConformance, ComparesRawValuesWhateverTheMaskSays)
{
  FED_DataDescriptor cleared = Key(kHistory, 2);
  cleared.mask               = 3U;
  FED_DataDescriptorPattern two;
  two.SetEqual(FED_DataDescriptor::LoadCase, 2);
  EXPECT_TRUE(two.Matches(cleared));
  FED_DataDescriptorPattern zero;
  zero.SetEqual(FED_DataDescriptor::LoadCase, 0);
  EXPECT_TRUE(zero.Matches(Key(kHistory)));
  EXPECT_FALSE(zero.Matches(cleared));
}

TEST(PatternConformance, CriteriaMayBeWrittenDirectly)
{
  FED_DataDescriptorPattern pattern;
  EXPECT_EQ(pattern.criteria[3].mode, -1);
  pattern.criteria[3].mode  = 0;
  pattern.criteria[3].value = 2;
  EXPECT_TRUE(pattern.Matches(Key(kHistory, 2)));
  EXPECT_FALSE(pattern.Matches(Key(kHistory, 1)));
  pattern.criteria[3].mode = -1;
  EXPECT_TRUE(pattern.Matches(Key(kHistory, 1)));
}

TEST(PatternConformance, AModeThatNobodyDefinesIsAFailure)
{
  FED_DataDescriptorPattern pattern;
  pattern.criteria[3].mode = 77;
  EXPECT_THROW(pattern.Matches(Key(kHistory, 2)), FED_Failure);
}

TEST(PatternConformance, AnIndexOutsideZeroToThirteenIsAFailure)
{
  FED_DataDescriptorPattern pattern;
  EXPECT_THROW(pattern.SetEqual(Index(-1), 1), FED_Failure);
  EXPECT_THROW(pattern.SetEqual(Index(14), 1), FED_Failure);
}

TEST(PatternConformance, PrintsItsCriteria)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::LoadCase, 4711);
  EXPECT_NE(pattern.ToString().find("4711"), std::string::npos) << pattern.ToString();
  EXPECT_FALSE(FED_DataDescriptorPattern().ToString().empty());
}

}  // namespace
}  // namespace conformance
