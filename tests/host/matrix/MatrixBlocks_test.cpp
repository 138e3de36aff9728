#include "matrix/MatrixBlocks.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

#include "../calculix/ReaderSupport.h"
#include "FEM_ResultUtil.h"
#include "MatrixSupport.h"
#include "RecordingDatabase.h"
#include "Snapshot.h"

namespace {

using namespace quilon::matrix;
using quilon::UserKindPool;
using quilon_test::FailureOf;
using quilon_test::Key;
using quilon_test::MakeMatrix;
using quilon_test::SameBits;
using quilon_test::Snapshot;
using Content = std::map<std::string, std::string>;

std::string Target(const std::string& text, int otherwise = 0)
{
  FED_ResultDatabase database;
  UserKindPool       kinds(database);
  return Key(ParseTarget(text, otherwise, kinds));
}

std::string TargetFailure(const std::string& text)
{
  return FailureOf([&] { Target(text); });
}

const FED_DataDescriptor kStep = [] {
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(593));
  descriptor.SetInteger(FED_DataDescriptor::Increment, 3);
  return descriptor;
}();

Content StoredElement(int pair, bool isSwapped)
{
  FED_ResultDatabase database;
  StoreElementMatrix(database, kStep, 12, pair, isSwapped, MakeMatrix(2, 2, {1, 2, 2}, {0, 2, 3}, {0, 1, 0}),
                     {{7, 1}, {9, 3}}, "a.sti");
  return Snapshot(database);
}

}  // namespace

TEST(MatrixTarget, KindsAreIdsNamesOrTheirShortForms)
{
  EXPECT_EQ(Target("593"), "<593 it=0>");
  EXPECT_EQ(Target("stiffness"), "<593 it=0>");
  EXPECT_EQ(Target("stiffness-matrix"), "<593 it=0>");
  EXPECT_EQ(Target("mass"), "<594 it=0>");
  EXPECT_EQ(Target("mass-matrix"), "<594 it=0>");
  EXPECT_EQ(Target("1999"), "<1999 it=0>");
  EXPECT_EQ(Target(" mass @ lc = 2 , sub=3"), "<594 it=0 lc=2 sub=3>");
  EXPECT_EQ(Target("mass@iteration=4,load-case=1"), "<594 it=4 lc=1>");
  EXPECT_EQ(Target("", 594), "<594 it=0>");
  EXPECT_EQ(Target("@lc=-1", 593), "<593 it=0 lc=-1>");
}

TEST(MatrixTarget, ANameOfItsOwnIsAUserKind)
{
  FED_ResultDatabase database;
  UserKindPool       kinds(database);
  EXPECT_EQ(Key(ParseTarget("damping", 593, kinds)), "<1900 it=0>");
  EXPECT_EQ(Key(ParseTarget("gyroscopic@lc=1", 593, kinds)), "<1901 it=0 lc=1>");
  EXPECT_EQ(Key(ParseTarget("damping@lc=1", 593, kinds)), "<1900 it=0 lc=1>");
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(1901)), "gyroscopic");
  EXPECT_EQ(Key(DofDescriptor(kStep, kinds)), "<1902 it=0 inc=3>");
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(1902)), kDofKindName);
}

TEST(MatrixTarget, WhatIsNoTargetIsRefused)
{
  EXPECT_EQ(TargetFailure(""), "nothing says what the matrix is, expected --as KIND");
  EXPECT_EQ(TargetFailure("521"), "kind 521 holds no sparse matrices, expected 593, 594 or 1900 to 1999");
  EXPECT_EQ(TargetFailure("displacement@lc=1"),
            "kind 'displacement' (510) holds no sparse matrices, expected 593, 594, 1900 to 1999 or a new name");
  EXPECT_EQ(TargetFailure("mine,other"),
            "kind 'mine,other' has a comma, which selections part kinds by, expected a name without");
  EXPECT_EQ(TargetFailure("mass@lc"), "'lc' is no key with a value, expected KEY=NUMBER");
  EXPECT_EQ(TargetFailure("mass@lc=1,"), "'' is no key with a value, expected KEY=NUMBER");
  EXPECT_EQ(TargetFailure("mass@lc=last"), "'lc=last' is no key with a value, expected KEY=NUMBER");
  EXPECT_EQ(TargetFailure("mass@load=1"), "'load' is no key, expected one such as it, an, lc, sub or inc");
}

TEST(MatrixTarget, WhenAllUserKindsAreTakenItSaysSo)
{
  FED_ResultDatabase database;
  UserKindPool       kinds(database);
  for (int i = 0; i < 100; ++i) ParseTarget("kind " + std::to_string(i), 0, kinds);
  EXPECT_EQ(FailureOf([&] { ParseTarget("one more", 0, kinds); }),
            "no id is left for kind 'one more', expected one of 1900 to 1999 to be free");
}

TEST(ElementMatrix, IsStoredInFullInTheSecondHalfAndDescribedInTheFirst)
{
  // The description is shared by all increments.
  EXPECT_EQ(StoredElement(0, false),
            (Content{{"<590 it=0 inc=3> 1", "[I 2; Db 1 2 2 0]"}, {"<597 it=0 ~inc=3> 1", "[I 1; Lb 7 1 9 3]"}}));
  EXPECT_EQ(StoredElement(2, false),
            (Content{{"<592 it=0 inc=3> 1", "[I 2; Db 1 2 2 0]"}, {"<599 it=0 ~inc=3> 1", "[I 1; Lb 7 1 9 3]"}}));
}

TEST(ElementMatrix, SwapsTheHalvesOnDemand)
{
  EXPECT_EQ(StoredElement(1, true),
            (Content{{"<591 it=0 inc=3> 1", "[I 1; Lb 7 1 9 3]"}, {"<598 it=0 ~inc=3> 1", "[I 2; Db 1 2 2 0]"}}));
}

TEST(ElementMatrix, IsReadBackInFullFromWhereItStands)
{
  for (const bool isSwapped : {false, true}) {
    FED_ResultDatabase database;
    StoreElementMatrix(database, kStep, 12, 1, isSwapped, MakeMatrix(2, 2, {1, 2, -0.0}, {0, 2, 3}, {0, 1, 0}), {},
                       "a.sti");
    const FEM_ResultUtil::MatricesOnfLoc six(kStep);
    const auto& [first, second] = six.pairs[1];
    EXPECT_EQ(HoldsElementMatrix(database, first, 12), isSwapped);
    EXPECT_EQ(HoldsElementMatrix(database, second, 12), !isSwapped);
    EXPECT_FALSE(HoldsElementMatrix(database, isSwapped ? first : second, 13));
    const FED_YaleMatrix matrix = LoadElementMatrix(database, isSwapped ? first : second, 12, "job");
    EXPECT_TRUE(SameBits(matrix, MakeMatrix(2, 2, {1, 2, -0.0, 0}, {0, 2, 4}, {0, 1, 0, 1})));
  }
}

TEST(ElementMatrix, HasAsManyValuesAsItsRowsAskFor)
{
  const FED_DataDescriptor block(0, static_cast<FED_OnfId>(590));
  for (const int size : {2, -1, 0}) {
    FED_ResultDatabase database;
    FEM_ResultUtil::SetResultMatrix(database, block, 12, size, {1, 2, 3});
    EXPECT_EQ(FailureOf([&] { LoadElementMatrix(database, block, 12, "job"); }),
              "job: 3 values in a matrix of " + std::to_string(size) + " rows, expected its rows squared");
  }
}

TEST(ElementMatrix, IsOfItsSixKindsOnly)
{
  FED_ResultDatabase       database;
  const FED_DataDescriptor points(0, static_cast<FED_OnfId>(582));
  FEM_ResultUtil::SetResultMatrix(database, points, 12, 1, {1});
  EXPECT_FALSE(HoldsElementMatrix(database, points, 12));
}

TEST(ElementMatrix, IsSquareAndSmall)
{
  FED_ResultDatabase database;
  EXPECT_EQ(FailureOf([&] {
              StoreElementMatrix(database, kStep, 12, 0, false, MakeMatrix(1, 2, {}, {0, 0}, {}), {}, "a.mtx");
            }),
            "a.mtx: 1 x 2, expected the square matrix of an element, of at most 4096 rows");
  const FED_YaleMatrix large = MakeMatrix(4097, 4097, {}, std::vector<int>(4098), {});
  EXPECT_EQ(FailureOf([&] { StoreElementMatrix(database, kStep, 12, 0, false, large, {}, "a.mtx"); }),
            "a.mtx: 4097 x 4097, expected the square matrix of an element, of at most 4096 rows");
  EXPECT_EQ(Snapshot(database), Content{});
}
