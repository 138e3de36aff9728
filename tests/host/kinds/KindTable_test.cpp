#include "kinds/KindTable.h"

#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::KindTable;

TEST(KindTable, ExactNameBeatsTheBeginningOfLongerOnes)
{
  EXPECT_EQ(KindTable().Resolve("nodal-stress"), 521);
  EXPECT_EQ(KindTable().Resolve("element-stress"), 561);
}

TEST(KindTable, LeadingNodalMayBeLeftOut)
{
  EXPECT_EQ(KindTable().Resolve("stress"), 521);
  EXPECT_EQ(KindTable().Resolve("strain-principal"), 530);
  EXPECT_EQ(KindTable().Resolve("stress-p"), 520);
}

TEST(KindTable, FullNamesComeBeforeShortenedOnes)
{
  // "stiff" begins stiffness-matrix; "str" begins only names without "nodal-", and several of them.
  EXPECT_EQ(KindTable().Resolve("stiff"), 593);
  EXPECT_THROW(KindTable().Resolve("str"), FED_Failure);
}

TEST(KindTable, NumbersAreOnfIdsWhateverTheCatalogueKnows)
{
  EXPECT_EQ(KindTable().Resolve("521"), 521);
  EXPECT_EQ(KindTable().Resolve("77"), 77);
  EXPECT_EQ(KindTable().Resolve("2147483647"), 2147483647);
}

TEST(KindTable, DefaultNamesStandForTheirIds)
{
  EXPECT_EQ(KindTable().Resolve("user-node-scalar-1003"), 1003);
  EXPECT_EQ(KindTable().Resolve("onf-77"), 77);
}

TEST(KindTable, NamesOfTheDatabaseAreKinds)
{
  FED_ResultDatabase database;
  database.SetUserKindName(static_cast<FED_OnfId>(1004), "Wear depth");
  const KindTable kinds(database);
  EXPECT_EQ(kinds.Resolve("Wear depth"), 1004);
  EXPECT_EQ(kinds.Resolve("wear"), 1004);
  EXPECT_EQ(kinds.GetName(1004), "Wear depth");
  EXPECT_EQ(kinds.GetName(1005), "user-node-scalar-1005");
  EXPECT_THROW(KindTable().Resolve("wear"), FED_Failure);
}

TEST(KindTable, KindsThatOnlyAnotherDatabaseNamesAreNoKindsOfThisOne)
{
  FED_ResultDatabase here;
  FED_ResultDatabase there;
  here.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear");
  there.SetUserKindName(static_cast<FED_OnfId>(1000), "Heat");
  there.SetUserKindName(static_cast<FED_OnfId>(1001), "Wear");
  there.SetUserKindName(static_cast<FED_OnfId>(1002), "Soot");
  KindTable kinds(here);
  kinds.AddForeign(KindTable(there));
  EXPECT_EQ(kinds.Resolve("Wear"), 1000);
  EXPECT_EQ(kinds.Resolve("Heat"), -1000);
  EXPECT_EQ(kinds.Resolve("Soot"), 1002);
  EXPECT_EQ(kinds.Resolve("stress"), 521);
}

TEST(KindTable, NamesAreFoundWhole)
{
  EXPECT_EQ(KindTable().FindByName("nodal-stress"), 521);
  EXPECT_FALSE(KindTable().FindByName("stress"));
}

TEST(KindTable, HistoryIsNamedByItsQuantity)
{
  FED_DataDescriptor history(0, FED_OnfId_ScalarHistory);
  EXPECT_EQ(KindTable().GetName(history), "scalar-history");
  history.SetInteger(OnfIndex::Quantity, 502);
  EXPECT_EQ(KindTable().GetName(history), "eigenvalue");
}

TEST(KindTable, LongListOfCandidatesIsCut)
{
  try {
    KindTable().Resolve("n");
    FAIL() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(),
                 "kind 'n' may be any of nodal-stress-principal, nodal-stress, nodal-stress-solver, "
                 "nodal-strain-principal, nodal-strain, ...: write more of the name");
  }
}

}  // namespace
