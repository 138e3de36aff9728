#include "kinds/UserKindPool.h"

#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>

namespace quilon::calculix {
namespace {

TEST(UserKindPool, ComponentsChooseTheHundred)
{
  EXPECT_EQ(NodeHundred(1), 1000);
  EXPECT_EQ(NodeHundred(3), 1100);
  EXPECT_EQ(NodeHundred(6), 1200);
  EXPECT_EQ(NodeHundred(2), 1300);
  EXPECT_EQ(NodeHundred(60), 1300);
  EXPECT_EQ(ElementHundred(1), 1400);
  EXPECT_EQ(ElementHundred(3), 1500);
  EXPECT_EQ(ElementHundred(6), 1600);
  EXPECT_EQ(ElementHundred(7), 1700);
}

TEST(UserKindPool, ANameIsAlwaysTheSameKindAndIsKeptInTheDatabase)
{
  FED_ResultDatabase database;
  UserKindPool       kinds(database);
  EXPECT_EQ(kinds.Find(UserNodeTensor, "MESTRAIN"), 1200);
  EXPECT_EQ(kinds.Find(UserNodeTensor, "ZZSTR"), 1201);
  EXPECT_EQ(kinds.Find(UserNodeTensor, "MESTRAIN"), 1200);
  EXPECT_EQ(kinds.Find(UserNodeScalar, "MESTRAIN"), 1000) << "hundreds are apart";
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(1201)), "ZZSTR");
}

TEST(UserKindPool, AnEarlierImportsNamesHold)
{
  FED_ResultDatabase database;
  database.SetUserKindName(static_cast<FED_OnfId>(1203), "CONTACT");
  UserKindPool kinds(database);
  EXPECT_EQ(kinds.Find(UserNodeTensor, "MESTRAIN"), 1200);
  EXPECT_EQ(kinds.Find(UserNodeTensor, "CONTACT"), 1203);
}

TEST(UserKindPool, AKindThatHasBlocksWithoutANameIsLeftAlone)
{
  FED_ResultDatabase database;
  database.GetOrCreateDataBlock(FED_DataDescriptor(0, static_cast<FED_OnfId>(1000)), 0);
  UserKindPool kinds(database);
  EXPECT_EQ(kinds.Find(UserNodeScalar, "ERROR"), 1001);
}

TEST(UserKindPool, AfterAHundredNamesNoneIsLeft)
{
  FED_ResultDatabase database;
  UserKindPool       kinds(database);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(kinds.Find(UserHistory, "total " + std::to_string(i)), 1800 + i);
  EXPECT_EQ(kinds.Find(UserHistory, "one more"), 0);
  EXPECT_EQ(kinds.Find(UserHistory, "total 99"), 1899);
}

}  // namespace
}  // namespace quilon::calculix
