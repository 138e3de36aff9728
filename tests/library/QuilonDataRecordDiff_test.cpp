#include <QuilonDataRecordDiff.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FieldRecord.h"

namespace {

using quilon_test::Double;
using quilon_test::Doubles;
using quilon_test::FieldRecord;
using quilon_test::Float;
using quilon_test::Integer;
using quilon_test::IntList;
using quilon_test::String;
using quilon_test::Unknown;
using QuilonDataBlockDiff::CompareInfo;
using QuilonDataRecordDiff::EqualOrNearDataRecord;
using QuilonDataRecordDiff::EqualOrNearValue;
using Fields = std::vector<FieldRecord::Field>;

constexpr double kInf      = std::numeric_limits<double>::infinity();
constexpr double kNaN      = std::numeric_limits<double>::quiet_NaN();
constexpr double kDenormal = std::numeric_limits<double>::denorm_min();
constexpr double kMost     = std::numeric_limits<double>::max();

CompareInfo Tolerances(double absTol, double relTol)
{
  CompareInfo info;
  info.absTol = absTol;
  info.relTol = relTol;
  return info;
}

CompareInfo Exact()
{
  CompareInfo info;
  info.useExactCompare = true;
  return info;
}

bool AreEqual(const Fields& first, const Fields& second, const CompareInfo& info = CompareInfo())
{
  return EqualOrNearDataRecord(FieldRecord(first), FieldRecord(second), info);
}

double Below(double value) { return std::nextafter(value, -kInf); }
double Above(double value) { return std::nextafter(value, kInf); }

}  // namespace

// Powers of two and their neighbours: every difference and quotient is exact, so each edge is met to the bit.
TEST(EqualOrNearValue, BothSidesOfEveryEdge)
{
  struct Row
  {
    const char* name;
    double      a;
    double      b;
    double      absTol;
    double      relTol;
    bool        expected;
  };
  const Row rows[] = {
      // The absolute edge: ">" and not ">=".
      {"absolute difference at the tolerance", -1.0, -1.25, 0.25, 0.0, true},
      {"absolute difference an ulp above it", -1.0, -1.25, Below(0.25), 0.0, false},
      {"absolute difference an ulp below it", -1.0, -1.25, Above(0.25), 0.0, true},
      {"the same of other sign and order", 0.5, -0.5, 1.0, 0.0, true},
      {"across zero, an ulp too far", 0.5, -0.5, Below(1.0), 0.0, false},
      // The relative edge, 0.25 / 1.0, with the absolute one out of the way.
      {"relative difference at the tolerance", 1.0, 1.25, kInf, 0.25, true},
      {"relative difference an ulp above it", 1.0, 1.25, kInf, Below(0.25), false},
      {"relative difference an ulp below it", 1.0, 1.25, kInf, Above(0.25), true},
      {"relative to the smaller, here the second", 1.25, 1.0, kInf, 0.25, true},
      {"relative to the smaller, here the second, too far", 1.25, 1.0, kInf, Below(0.25), false},
      // Both must hold.
      {"absolute holds, relative does not", 1.0, 1.25, 0.25, 0.125, false},
      {"relative holds, absolute does not", 1.0, 1.25, 0.125, 0.25, false},
      {"both hold", 1.0, 1.25, 0.25, 0.25, true},
      // The relative test asks for two positive values: "m > 0" and not ">= 0".
      {"both negative: no relative test", -1.0, -1.25, 0.25, 0.0, true},
      {"zero and positive: no relative test", 0.0, 1.0, 1.0, 0.0, true},
      {"positive and zero: no relative test", 1.0, 0.0, 1.0, 0.0, true},
      {"minus zero and positive: no relative test", -0.0, 1.0, 1.0, 0.0, true},
      {"negative and positive: no relative test", -1.0, 1.0, 2.0, 0.0, true},
      {"the least positive number is tested", kDenormal, 1.0, 1.0, kMost, false},
      {"the least negative number is not", -kDenormal, 1.0, 2.0, 0.0, true},
      // Zeros.
      {"zero and minus zero", 0.0, -0.0, 0.0, 0.0, true},
      {"minus zero and zero", -0.0, 0.0, 0.0, 0.0, true},
      {"zeros", 0.0, 0.0, 0.0, 0.0, true},
      // Denormals.
      {"denormal and itself", kDenormal, kDenormal, 0.0, 0.0, true},
      {"denormal and its double, relative 1", kDenormal, 2 * kDenormal, 1e-6, 1.0, true},
      {"denormal and its double, relative below 1", kDenormal, 2 * kDenormal, 1e-6, Below(1.0), false},
      {"denormal and zero", kDenormal, 0.0, kDenormal, 0.0, true},
      {"denormal and zero, no tolerance", kDenormal, 0.0, 0.0, 0.0, false},
      {"negative denormals", -kDenormal, -2 * kDenormal, kDenormal, 0.0, true},
      // Infinities: inf - inf is a NaN and passes.
      {"infinity and itself", kInf, kInf, 0.0, 0.0, true},
      {"minus infinity and itself", -kInf, -kInf, 0.0, 0.0, true},
      {"infinity and a number", kInf, 1.0, kMost, kMost, false},
      {"a number and infinity", 1.0, kInf, kMost, kMost, false},
      {"infinity and minus infinity", kInf, -kInf, kMost, kMost, false},
      {"infinity and a number, all accepted", kInf, 1.0, kInf, kInf, true},
      {"infinity and a number, relative decides", kInf, 1.0, kInf, kMost, false},
      {"minus infinity and a number, all accepted", -kInf, 1.0, kInf, 0.0, true},
      // The difference overflows.
      {"the largest of both signs", kMost, -kMost, kMost, kMost, false},
      {"the largest of both signs, all accepted", kMost, -kMost, kInf, 0.0, true},
      // Tolerances that are no tolerances.
      {"negative absolute tolerance, equal values", 1.0, 1.0, -1.0, 0.0, false},
      {"negative relative tolerance, equal positive values", 1.0, 1.0, 0.0, -1.0, false},
      {"negative relative tolerance, equal negative values", -1.0, -1.0, 0.0, -1.0, true},
      {"NaN as absolute tolerance", -1.0, 100.0, kNaN, 0.0, true},
      {"NaN as relative tolerance", 1.0, 100.0, kInf, kNaN, true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(EqualOrNearValue(row.a, row.b, Tolerances(row.absTol, row.relTol)), row.expected) << row.name;
    EXPECT_EQ(EqualOrNearValue(row.b, row.a, Tolerances(row.absTol, row.relTol)), row.expected)
        << row.name << ", swapped";
  }
}

TEST(EqualOrNearValue, TheDefaultsAcceptOneInAMillion)
{
  const CompareInfo info;
  EXPECT_TRUE(EqualOrNearValue(1.0, 1.0000005, info));
  EXPECT_FALSE(EqualOrNearValue(1.0, 1.000002, info));
}

TEST(EqualOrNearValue, ValuesThatAreNotBothPositiveAreJudgedByTheAbsoluteTestAlone)
{
  const CompareInfo info;
  EXPECT_TRUE(EqualOrNearValue(-1.0, -1.0000009, info));
  EXPECT_FALSE(EqualOrNearValue(-1.0, -1.000002, info));
  // A tenth of a micro: relatively ten times, and far within the absolute tolerance.
  EXPECT_TRUE(EqualOrNearValue(-1e-8, -1e-7, info));
  EXPECT_TRUE(EqualOrNearValue(0.0, 1e-7, info));
  EXPECT_FALSE(EqualOrNearValue(1e-8, 1e-7, info));
}

TEST(EqualOrNearValue, AnAbsoluteDifferenceTooLargeIsUnequalHoweverSmallItIsRelatively)
{
  EXPECT_FALSE(EqualOrNearValue(1e9, 1e9 + 1e-4, CompareInfo()));
}

TEST(EqualOrNearValue, ANaNIsEqualToAnythingWithinTolerances)
{
  for (const CompareInfo& info : {CompareInfo(), Tolerances(0.0, 0.0), Tolerances(-1.0, -1.0)}) {
    for (const double other : {0.0, -0.0, 1.0, -1.0, kInf, -kInf, kNaN, kMost, kDenormal}) {
      EXPECT_TRUE(EqualOrNearValue(kNaN, other, info)) << other;
      EXPECT_TRUE(EqualOrNearValue(other, kNaN, info)) << other;
    }
  }
}

TEST(EqualOrNearValue, ExactComparisonKnowsNoTolerance)
{
  CompareInfo info     = Tolerances(kInf, kInf);
  info.useExactCompare = true;
  EXPECT_TRUE(EqualOrNearValue(1.0, 1.0, info));
  EXPECT_FALSE(EqualOrNearValue(1.0, Above(1.0), info));
  EXPECT_FALSE(EqualOrNearValue(-1.0, Below(-1.0), info));
  EXPECT_FALSE(EqualOrNearValue(kDenormal, 0.0, info));
  EXPECT_TRUE(EqualOrNearValue(kInf, kInf, info));
  EXPECT_FALSE(EqualOrNearValue(kInf, -kInf, info));
  EXPECT_FALSE(EqualOrNearValue(kInf, kMost, info));
}

TEST(EqualOrNearValue, ExactComparisonTakesZeroAndMinusZeroAsEqual)
{
  EXPECT_TRUE(EqualOrNearValue(0.0, -0.0, Exact()));
  EXPECT_TRUE(EqualOrNearValue(-0.0, 0.0, Exact()));
}

TEST(EqualOrNearValue, ExactComparisonTakesANaNAsEqualToNothing)
{
  for (const double other : {kNaN, 0.0, 1.0, kInf}) {
    EXPECT_FALSE(EqualOrNearValue(kNaN, other, Exact())) << other;
    EXPECT_FALSE(EqualOrNearValue(other, kNaN, Exact())) << other;
  }
}

TEST(EqualOrNearDataRecord, RecordsWithoutFieldsAreEqual)
{
  EXPECT_TRUE(AreEqual({}, {}));
  EXPECT_TRUE(AreEqual({}, {}, Exact()));
}

TEST(EqualOrNearDataRecord, AnotherNumberOfFieldsIsUnequal)
{
  EXPECT_FALSE(AreEqual({}, {Integer(1, 1)}));
  EXPECT_FALSE(AreEqual({Integer(1, 1)}, {}));
  EXPECT_FALSE(AreEqual({Integer(1, 1)}, {Integer(1, 1), Integer(1, 1)}));
}

TEST(EqualOrNearDataRecord, EveryTypeComparesByItsRule)
{
  struct Row
  {
    const char*        name;
    FieldRecord::Field a;
    FieldRecord::Field b;
    bool               withinTolerances;
    bool               exactly;
  };
  const double near   = 1.0 + 0x1p-24;  // 6e-8 off
  const double far    = 1.5;
  const Row    rows[] = {
         {"1 equal", Integer(1, INT_MIN), Integer(1, INT_MIN), true, true},
         {"1 one off", Integer(1, 1000000000), Integer(1, 1000000001), false, false},
         {"10 equal", Integer(10, 7), Integer(10, 7), true, true},
         {"10 one off", Integer(10, 7), Integer(10, 8), false, false},
         {"2 equal", Double(2, far), Double(2, far), true, true},
         {"2 near", Double(2, 1.0), Double(2, near), true, false},
         {"2 far", Double(2, 1.0), Double(2, far), false, false},
         {"11 near", Double(11, 1.0), Double(11, near), true, false},
         {"11 far", Double(11, 1.0), Double(11, far), false, false},
         {"3 equal", Float(0.1f), Float(0.1f), true, true},
         {"3 near", Float(0.5f), Float(0.5f + 0x1p-24f), true, false},
         {"3 far", Float(1.0f), Float(1.5f), false, false},
         {"3 zeros of both signs", Float(0.0f), Float(-0.0f), true, true},
         {"4 equal", String("abc"), String("abc"), true, true},
         {"4 empty", String(""), String(""), true, true},
         {"4 other letter", String("abc"), String("abd"), false, false},
         {"4 other case", String("abc"), String("abC"), false, false},
         {"4 longer", String("abc"), String("abcd"), false, false},
         {"4 behind a zero byte", String(std::string("a\0b", 3)), String(std::string("a\0c", 3)), false, false},
         {"5 near in each", Doubles(5, {1, 1, 1}), Doubles(5, {near, near, near}), true, false},
         {"5 far in the first", Doubles(5, {1, 1, 1}), Doubles(5, {far, 1, 1}), false, false},
         {"5 far in the last", Doubles(5, {1, 1, 1}), Doubles(5, {1, 1, far}), false, false},
         {"6 near in each", Doubles(6, {1, 1, 1, 1, 1, 1}), Doubles(6, {1, near, 1, 1, 1, near}), true, false},
         {"6 far in the first", Doubles(6, {1, 1, 1, 1, 1, 1}), Doubles(6, {far, 1, 1, 1, 1, 1}), false, false},
         {"6 far in the last", Doubles(6, {1, 1, 1, 1, 1, 1}), Doubles(6, {1, 1, 1, 1, 1, far}), false, false},
         {"7 empty", IntList(7, {}), IntList(7, {}), true, true},
         {"7 of 1, equal", IntList(7, {5}), IntList(7, {5}), true, true},
         {"7 of 1, other", IntList(7, {5}), IntList(7, {6}), false, false},
         {"7 of 3, other at the end", IntList(7, {5, 6, 7}), IntList(7, {5, 6, 8}), false, false},
         {"7 other order", IntList(7, {5, 6}), IntList(7, {6, 5}), false, false},
         {"7 other length", IntList(7, {5}), IntList(7, {5, 5}), false, false},
         {"8 empty", IntList(8, {}), IntList(8, {}), true, true},
         {"8 equal", IntList(8, {5, 6}), IntList(8, {5, 6}), true, true},
         {"8 other", IntList(8, {5, 6}), IntList(8, {5, 7}), false, false},
         {"9 of 1, equal", Doubles(9, {2.0}), Doubles(9, {2.0}), true, true},
         {"9 of 1, near", Doubles(9, {1.0}), Doubles(9, {near}), true, false},
         {"9 of 1, far", Doubles(9, {1.0}), Doubles(9, {far}), false, false},
         {"9 of 3, far at the end", Doubles(9, {1, 1, 1}), Doubles(9, {1, 1, far}), false, false},
         {"9 other length", Doubles(9, {1.0}), Doubles(9, {1.0, 1.0}), false, false},
         {"9 empty and not", Doubles(9, {}), Doubles(9, {1.0}), false, false},
         {"unknown type", Unknown(99, 1), Unknown(99, 2), true, true},
         {"type 0", Unknown(0, 1), Unknown(0, 2), true, true},
         {"negative type", Unknown(-1, 1), Unknown(-1, 2), true, true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(AreEqual({row.a}, {row.b}), row.withinTolerances) << row.name;
    EXPECT_EQ(AreEqual({row.b}, {row.a}), row.withinTolerances) << row.name << ", swapped";
    EXPECT_EQ(AreEqual({row.a}, {row.b}, Exact()), row.exactly) << row.name << ", exactly";
  }
}

TEST(EqualOrNearDataRecord, TwoEmptyDoubleListsAreUnequal)
{
  EXPECT_FALSE(AreEqual({Doubles(9, {})}, {Doubles(9, {})}));
  EXPECT_FALSE(AreEqual({Doubles(9, {})}, {Doubles(9, {})}, Exact()));
}

TEST(EqualOrNearDataRecord, FloatsAreWidenedBeforeTheyAreCompared)
{
  // The next float above 1 is 2^-23 off: at the tolerance the two are equal, an ulp of double below it they are not.
  const double step = 0x1p-23;
  EXPECT_TRUE(AreEqual({Float(1.0f)}, {Float(1.0f + 0x1p-23f)}, Tolerances(step, step)));
  EXPECT_FALSE(AreEqual({Float(1.0f)}, {Float(1.0f + 0x1p-23f)}, Tolerances(Below(step), step)));
  EXPECT_FALSE(AreEqual({Float(1.0f)}, {Float(1.0f + 0x1p-23f)}, Tolerances(step, Below(step))));
}

TEST(EqualOrNearDataRecord, ANaNPassesInEveryFloatingPointFieldWithinTolerances)
{
  EXPECT_TRUE(AreEqual({Double(2, kNaN)}, {Double(2, 5.0)}));
  EXPECT_TRUE(AreEqual({Float(std::numeric_limits<float>::quiet_NaN())}, {Float(5.0f)}));
  EXPECT_TRUE(AreEqual({Doubles(5, {1, kNaN, 3})}, {Doubles(5, {1, 2, 3})}));
  EXPECT_TRUE(AreEqual({Doubles(9, {kNaN})}, {Doubles(9, {2.0})}));
  EXPECT_FALSE(AreEqual({Double(2, kNaN)}, {Double(2, kNaN)}, Exact()));
}

TEST(EqualOrNearDataRecord, TheTwoTypeCodesOfAPairAreUnequal)
{
  EXPECT_FALSE(AreEqual({Integer(1, 5)}, {Integer(10, 5)}));
  EXPECT_FALSE(AreEqual({Double(2, 5.0)}, {Double(11, 5.0)}));
  EXPECT_FALSE(AreEqual({IntList(7, {5})}, {IntList(8, {5})}));
}

TEST(EqualOrNearDataRecord, UnknownTypesThatDifferAreUnequal)
{
  EXPECT_FALSE(AreEqual({Unknown(98, 1)}, {Unknown(99, 1)}));
}

TEST(EqualOrNearDataRecord, AnotherStoredSizeIsUnequalWhateverTheValues)
{
  FieldRecord::Field wide = Double(2, 5.0);
  wide.size               = 16;
  EXPECT_FALSE(AreEqual({Double(2, 5.0)}, {wide}));
  FieldRecord::Field unknown = Unknown(99, 1);
  unknown.size               = 17;
  EXPECT_FALSE(AreEqual({Unknown(99, 1)}, {unknown}));
}

TEST(EqualOrNearDataRecord, ListsOfOneStoredSizeStillCompareTheirLengths)
{
  FieldRecord::Field ints    = IntList(7, {5, 5});
  FieldRecord::Field doubles = Doubles(9, {5.0, 5.0});
  ints.size                  = IntList(7, {5}).size;
  doubles.size               = Doubles(9, {5.0}).size;
  EXPECT_FALSE(AreEqual({IntList(7, {5})}, {ints}));
  EXPECT_FALSE(AreEqual({Doubles(9, {5.0})}, {doubles}));
}

TEST(EqualOrNearDataRecord, NoValueIsReadBeforeTheStructureOfAllFieldsIsKnown)
{
  const FieldRecord first({Integer(1, 5), Integer(1, 5)});
  const FieldRecord second({Integer(1, 6), Integer(10, 5)});
  EXPECT_FALSE(EqualOrNearDataRecord(first, second, CompareInfo()));
  EXPECT_TRUE(first.GetReadFields().empty());
  EXPECT_TRUE(second.GetReadFields().empty());
}

TEST(EqualOrNearDataRecord, FieldsBehindTheFirstUnequalOneAreNotRead)
{
  const FieldRecord first({Integer(1, 5), Double(2, 1.0), String("a")});
  const FieldRecord second({Integer(1, 5), Double(2, 2.0), String("a")});
  EXPECT_FALSE(EqualOrNearDataRecord(first, second, CompareInfo()));
  EXPECT_EQ(first.GetReadFields(), (std::vector<std::size_t>{1, 2}));
  EXPECT_EQ(second.GetReadFields(), (std::vector<std::size_t>{1, 2}));
}

TEST(EqualOrNearDataRecord, ADifferenceInTheLastFieldIsFound)
{
  EXPECT_FALSE(AreEqual({Integer(1, 5), Unknown(99, 1), String("a")}, {Integer(1, 5), Unknown(99, 1), String("b")}));
}

TEST(EqualOrNearDataRecord, EmptyIntegerListsAreEqualBesideEmptyDoubleListsThatAreNot)
{
  EXPECT_TRUE(AreEqual({IntList(7, {}), IntList(8, {})}, {IntList(7, {}), IntList(8, {})}));
  EXPECT_FALSE(AreEqual({IntList(7, {}), Doubles(9, {})}, {IntList(7, {}), Doubles(9, {})}));
}
