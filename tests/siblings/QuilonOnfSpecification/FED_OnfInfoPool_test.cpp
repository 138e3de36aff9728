#include <climits>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonDbConnector/FED_OnfId.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace {

const FED_OnfMetaData& InfoOf(int id) { return FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(id)); }

void ExpectInfo(int id, int kind, const std::string& name, const std::string& format)
{
  EXPECT_EQ(InfoOf(id).GetEntityKind(), kind) << id;
  EXPECT_EQ(InfoOf(id).GetName(), name) << id;
  EXPECT_EQ(InfoOf(id).GetRecordFormat(), format) << id;
  EXPECT_FALSE(InfoOf(id).GetDescription().empty()) << id;
}

TEST(OnfMetaData, KeepsWhatItIsMadeFrom)
{
  const FED_OnfMetaData info(3, "name", "D", "text");
  EXPECT_EQ(info.GetEntityKind(), 3);
  EXPECT_EQ(info.GetName(), "name");
  EXPECT_EQ(info.GetRecordFormat(), "D");
  EXPECT_EQ(info.GetDescription(), "text");
}

TEST(OnfInfoPool, KnowsTheFixedIds)
{
  ExpectInfo(600, 3, "node-set", "Slb");
  ExpectInfo(601, 2, "element-set", "Slb");
  ExpectInfo(602, 4, "material", "SDDD");
  ExpectInfo(603, 1, "element-section", "IiI");
  ExpectInfo(604, 15, "orientation", "SIDb");
  ExpectInfo(605, 15, "import-file", "ISSDSS");
  ExpectInfo(606, 15, "import-setting", "ISS");
  ExpectInfo(607, 15, "large-displacements", "D");
  ExpectInfo(608, 15, "tied-nodes", "Slb");
  ExpectInfo(609, 1, "deck-type", "S");
  ExpectInfo(FED_OnfId_ScalarHistory, 15, "scalar-history", "D");
  ExpectInfo(FED_OnfId_ElementNodes, 1, "element-nodes", "lb");
  ExpectInfo(510, 0, "displacement", "V");
  ExpectInfo(514, 0, "temperature", "D");
  ExpectInfo(521, 0, "nodal-stress", "T");
  ExpectInfo(561, 1, "element-stress", "T");
  ExpectInfo(580, 1, "element-forces", "Db");
  ExpectInfo(582, 1, "integration-point-stress", "IDb");
  ExpectInfo(593, 16, "stiffness-matrix", "IIbDbLbLb");
  ExpectInfo(596, 1, "element-type", "Ii");
  ExpectInfo(903, 1, "element-energy-contribution", "D");
}

TEST(OnfInfoPool, LeavesTheFormatOfElementMatricesToTheFirstRecord)
{
  for (const int id : {590, 591, 592, 597, 598, 599}) ExpectInfo(id, 1, "element-matrix-" + std::to_string(id), "");
}

TEST(OnfInfoPool, BothMembersOfADerivedPairAreOfOneKind)
{
  const int pairs[][2] = {{560, 561}, {520, 521}, {570, 571}, {530, 531}, {540, 903}, {541, 913}};
  for (const auto& pair : pairs) EXPECT_EQ(InfoOf(pair[0]).GetEntityKind(), InfoOf(pair[1]).GetEntityKind()) << pair[0];
  for (const int principal : {560, 520, 570, 530}) {
    EXPECT_EQ(InfoOf(principal).GetRecordFormat(), "V");
    EXPECT_EQ(InfoOf(principal + 1).GetRecordFormat(), "T");
  }
}

TEST(OnfInfoPool, TellsUserKindsByTheHundred)
{
  ExpectInfo(1000, 0, "user-node-scalar-1000", "D");
  ExpectInfo(1099, 0, "user-node-scalar-1099", "D");
  ExpectInfo(1100, 0, "user-node-vector-1100", "V");
  ExpectInfo(1250, 0, "user-node-tensor-1250", "T");
  ExpectInfo(1300, 0, "user-node-list-1300", "Db");
  ExpectInfo(1401, 1, "user-element-scalar-1401", "D");
  ExpectInfo(1500, 1, "user-element-vector-1500", "V");
  ExpectInfo(1699, 1, "user-element-tensor-1699", "T");
  ExpectInfo(1700, 1, "user-element-list-1700", "Db");
  ExpectInfo(1800, 15, "user-history-1800", "D");
  ExpectInfo(1999, 16, "user-matrix-1999", "IIbDbLbLb");
}

TEST(OnfInfoPool, GivesAnyOtherIdKind14AndAName)
{
  for (const int id : {-1, 0, 1, 499, 523, 610, 904, 999, 2000, INT_MAX, INT_MIN})
    ExpectInfo(id, 14, "onf-" + std::to_string(id), "");
}

TEST(OnfInfoPool, ReferencesLiveOnAndAreAlwaysTheSame)
{
  std::vector<const FED_OnfMetaData*> first;
  for (int id = 0; id < 3000; ++id) first.push_back(&InfoOf(id));
  for (int id = 0; id < 3000; ++id) EXPECT_EQ(&InfoOf(id), first[static_cast<std::size_t>(id)]) << id;
  EXPECT_EQ(first[2500]->GetName(), "onf-2500");
}

TEST(OnfInfoPool, AnswersSeveralThreads)
{
  std::vector<std::vector<const FED_OnfMetaData*>> seen(4);
  std::vector<std::thread>                         threads;
  for (auto& mine : seen) {
    threads.emplace_back([&mine] {
      for (int id = 5000; id < 5500; ++id) mine.push_back(&InfoOf(id));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const auto& mine : seen) EXPECT_EQ(mine, seen[0]);
}

}  // namespace
