#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

#include "diff/MeshMatching.h"
#include "diff/RecordMatching.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon::diff;
using Indices = std::vector<std::size_t>;

FED_DataDescriptor Key(int onf) { return FED_DataDescriptor(0, static_cast<FED_OnfId>(onf)); }

FED_DataBlock& SetScalars(FED_Database& db, int onf, const std::vector<int>& ids)
{
  FED_DataBlock&  block = db.GetOrCreateDataBlock(Key(onf), 0);
  FED_IdDataBlock view(block, db.GetIdMapsPool(), true);
  for (const int id : ids) view.SetScalar(id, 1.0);
  return block;
}

struct Place
{
  int    id;
  double x, y, z;
};

void SetPlaces(FED_Database& db, const std::vector<Place>& places)
{
  FED_IdDataBlock view(db.GetOrCreateDataBlock(Key(516), 0), db.GetIdMapsPool(), true);
  for (const Place& place : places) {
    const double vector[3] = {place.x, place.y, place.z};
    view.SetVector(place.id, vector);
  }
}

std::vector<std::pair<std::size_t, std::size_t>> Pairs(const RecordPairs& pairs)
{
  std::vector<std::pair<std::size_t, std::size_t>> list;
  pairs.ForEach([&](const RecordPair& pair) { list.emplace_back(pair.first, pair.second); });
  return list;
}
using PairList = std::vector<std::pair<std::size_t, std::size_t>>;

TEST(RecordMatcher, RecordsOfOneIdPairWhateverTheirIndices)
{
  FED_ResultDatabase   a;
  FED_ResultDatabase   b;
  const FED_DataBlock& first  = SetScalars(a, 514, {10, 20, 30});
  const FED_DataBlock& second = SetScalars(b, 514, {30, 40, 10});
  RecordMatcher        matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  const RecordPairs    pairs = matcher.Pair(first, second);
  EXPECT_EQ(Pairs(pairs), (PairList{{1, 3}, {3, 1}}));
  EXPECT_EQ(pairs.firstOnly, Indices{2});
  EXPECT_EQ(pairs.secondOnly, Indices{2});
  EXPECT_FALSE(pairs.sameIndices);
}

TEST(RecordMatcher, EqualIdsInOneOrderHaveTheSameIndices)
{
  FED_ResultDatabase   a;
  FED_ResultDatabase   b;
  const FED_DataBlock& first  = SetScalars(a, 514, {10, 20, 30});
  const FED_DataBlock& second = SetScalars(b, 514, {10, 20});
  RecordMatcher        matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  const RecordPairs    pairs = matcher.Pair(first, second);
  EXPECT_EQ(Pairs(pairs), (PairList{{1, 1}, {2, 2}}));
  EXPECT_EQ(pairs.firstOnly, Indices{3});
  EXPECT_TRUE(pairs.sameIndices);
}

TEST(RecordMatcher, AnotherRecordAtTheIndexOfAMissingIdIsNoCounterpart)
{
  FED_ResultDatabase   a;
  FED_ResultDatabase   b;
  const FED_DataBlock& first  = SetScalars(a, 514, {10});
  const FED_DataBlock& second = SetScalars(b, 514, {20});
  RecordMatcher        matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  const RecordPairs    pairs = matcher.Pair(first, second);
  EXPECT_EQ(Pairs(pairs), PairList{});
  EXPECT_EQ(pairs.firstOnly, Indices{1});
  EXPECT_EQ(pairs.secondOnly, Indices{1});
  EXPECT_FALSE(pairs.sameIndices);
}

TEST(RecordMatcher, ByIndexIdsPlayNoPart)
{
  FED_ResultDatabase   a;
  FED_ResultDatabase   b;
  const FED_DataBlock& first  = SetScalars(a, 514, {10, 20});
  const FED_DataBlock& second = SetScalars(b, 514, {30, 40, 50});
  RecordMatcher        matcher(RecordMatcher::ByIndex, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  const RecordPairs    pairs = matcher.Pair(first, second);
  EXPECT_EQ(Pairs(pairs), (PairList{{1, 1}, {2, 2}}));
  EXPECT_EQ(pairs.secondOnly, Indices{3});
  EXPECT_TRUE(pairs.sameIndices);
}

TEST(RecordMatcher, AnIndexFarBehindAllOthersPairsToo)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  for (FED_ResultDatabase* const db : {&a, &b})
    for (const std::size_t index : {std::size_t{1}, std::size_t{3'000'000}})
      db->GetOrCreateDataBlock(Key(4711), 0).SetScalarAt(index, 1.0);
  RecordMatcher     matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  const RecordPairs pairs = matcher.Pair(a.GetConstDataBlock(Key(4711)), b.GetConstDataBlock(Key(4711)));
  EXPECT_EQ(Pairs(pairs), (PairList{{1, 1}, {3'000'000, 3'000'000}}));
  EXPECT_EQ(pairs.firstOnly, Indices{});
  EXPECT_EQ(pairs.secondOnly, Indices{});
}

TEST(RecordMatcher, BlocksOfAsManyRecordsThatEndAtOneIndexMayHaveOthers)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  const auto         set = [](FED_Database& db, const Indices& indices) {
    for (const std::size_t index : indices) db.GetOrCreateDataBlock(Key(4711), 0).SetScalarAt(index, 1.0);
  };
  set(a, {1, 3});
  set(b, {2, 3});
  const auto pair = [](const FED_ResultDatabase& first, const FED_ResultDatabase& second) {
    FED_ResultDatabase none;
    RecordMatcher      matcher(RecordMatcher::ByIndex, none.GetIdMapsPool(), none.GetIdMapsPool(), nullptr);
    return matcher.Pair(first.GetConstDataBlock(Key(4711)), second.GetConstDataBlock(Key(4711)));
  };
  EXPECT_EQ(Pairs(pair(a, b)), (PairList{{3, 3}}));
  EXPECT_EQ(pair(a, b).firstOnly, Indices{1});
  EXPECT_EQ(pair(a, b).secondOnly, Indices{2});
  EXPECT_EQ(Pairs(pair(b, a)), (PairList{{3, 3}}));
  EXPECT_EQ(pair(b, a).firstOnly, Indices{2});
  EXPECT_EQ(pair(b, a).secondOnly, Indices{1});
}

TEST(RecordMatcher, IndexZeroOfAKindThatNobodyKnowsStandsForItself)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  for (FED_ResultDatabase* const db : {&a, &b}) db->GetOrCreateDataBlock(Key(4711), 0).SetScalarAt(0, 1.0);
  RecordMatcher matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  EXPECT_EQ(Pairs(matcher.Pair(a.GetConstDataBlock(Key(4711)), b.GetConstDataBlock(Key(4711)))), (PairList{{0, 0}}));
  a.GetOrCreateDataBlock(Key(4711), 0).SetScalarAt(5, 1.0);
  b.GetOrCreateDataBlock(Key(4711), 0).SetScalarAt(6, 1.0);
  const RecordPairs pairs = matcher.Pair(a.GetConstDataBlock(Key(4711)), b.GetConstDataBlock(Key(4711)));
  EXPECT_EQ(Pairs(pairs), (PairList{{0, 0}}));
  EXPECT_EQ(pairs.firstOnly, Indices{5});
  EXPECT_EQ(pairs.secondOnly, Indices{6});
}

TEST(RecordMatcher, WhatIsKnownOfSomeIndicesSaysNothingOfThoseBeforeThem)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  for (const int id : {10, 20, 30}) a.GetIdMapsPool().FindOrAddIndex(0, id);
  for (const int id : {20, 10, 30}) b.GetIdMapsPool().FindOrAddIndex(0, id);
  const FED_DataBlock& last    = SetScalars(a, 514, {30});
  const FED_DataBlock& lastOfB = SetScalars(b, 514, {30});
  const FED_DataBlock& all     = SetScalars(a, 517, {10, 20, 30});
  const FED_DataBlock& allOfB  = SetScalars(b, 517, {10, 20, 30});
  RecordMatcher        matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  EXPECT_EQ(Pairs(matcher.Pair(last, lastOfB)), (PairList{{3, 3}}));
  EXPECT_EQ(Pairs(matcher.Pair(all, allOfB)), (PairList{{1, 2}, {2, 1}, {3, 3}}));
}

TEST(RecordMatcher, HistoriesPairByTheirPosition)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  a.GetOrCreateDataBlock(Key(500), 0).SetScalarAt(2, 1.0);
  b.GetOrCreateDataBlock(Key(500), 0).SetScalarAt(2, 1.0);
  RecordMatcher matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  EXPECT_EQ(Pairs(matcher.Pair(a.GetConstDataBlock(Key(500)), b.GetConstDataBlock(Key(500)))), (PairList{{2, 2}}));
}

TEST(RecordMatcher, ConsecutiveRecordsThatStayTogetherAreOneRun)
{
  FED_ResultDatabase   a;
  FED_ResultDatabase   b;
  const FED_DataBlock& first  = SetScalars(a, 514, {10, 20, 30, 40, 50});
  const FED_DataBlock& second = SetScalars(b, 514, {40, 50, 10, 20, 60});
  RecordMatcher        matcher(RecordMatcher::ById, a.GetIdMapsPool(), b.GetIdMapsPool(), nullptr);
  const RecordPairs    pairs = matcher.Pair(first, second);
  EXPECT_EQ(Pairs(pairs), (PairList{{1, 3}, {2, 4}, {4, 1}, {5, 2}}));
  EXPECT_EQ(pairs.runs.size(), 2u);
  EXPECT_EQ(pairs.firstOnly, Indices{3});
  EXPECT_EQ(pairs.secondOnly, Indices{5});
}

TEST(MeshMatch, NodesPairUpToTheToleranceAndNoFurther)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{1, 0, 0, 0}, {2, 8, 0, 0}, {3, 16, 0, 0}});
  SetPlaces(b, {{11, 0.25, 0, 0}, {12, std::nextafter(8.25, 9.0), 0, 0}, {13, 16, 0, 0}});
  MeshMatchReport report;
  EXPECT_EQ(MatchMeshes(a, b, 0.25, "A", "B", report).nodes, (IdMap{{1, 11}, {3, 13}}));
  EXPECT_EQ(report.nodes, 2u);
  EXPECT_EQ(report.ambiguousNodes, 0u);
}

TEST(MeshMatch, WithoutToleranceOnlyEqualPlacesPair)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{1, 1, 2, 3}, {2, 4, 5, 6}});
  SetPlaces(b, {{11, 4, 5, 6}, {12, 1, 2, std::nextafter(3.0, 4.0)}});
  MeshMatchReport report;
  EXPECT_EQ(MatchMeshes(a, b, 0.0, "A", "B", report).nodes, (IdMap{{2, 11}}));
}

TEST(MeshMatch, EachNodeIsTakenOnceAndTheNearestFirst)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{1, 0, 0, 0}, {2, 0.5, 0, 0}});
  SetPlaces(b, {{11, 0.25, 0, 0}, {12, 0.5, 0, 0}});
  MeshMatchReport report;
  // 2 and 12 are at one place. Node 11 is then left to node 1, though node 2 is as near to it.
  EXPECT_EQ(MatchMeshes(a, b, 0.25, "A", "B", report).nodes, (IdMap{{1, 11}, {2, 12}}));
  EXPECT_EQ(report.ambiguousNodes, 1u);
}

TEST(MeshMatch, NodesAtOnePlacePairByAscendingIds)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{2, 1, 1, 1}, {1, 1, 1, 1}});
  SetPlaces(b, {{12, 1, 1, 1}, {11, 1, 1, 1}});
  MeshMatchReport report;
  EXPECT_EQ(MatchMeshes(a, b, 1e-9, "A", "B", report).nodes, (IdMap{{1, 11}, {2, 12}}));
  EXPECT_EQ(report.ambiguousNodes, 2u);
}

TEST(MeshMatch, AToleranceThatTakesInTheWholeMeshIsAFailure)
{
  // 102 nodes have 101 others each within the tolerance, and themselves; 100 are the most.
  FED_ResultDatabase few;
  FED_ResultDatabase many;
  for (int id = 1; id <= 102; ++id) {
    if (id <= 100) SetPlaces(few, {{id, 1.0 * id, 0, 0}});
    SetPlaces(many, {{id, 1.0 * id, 0, 0}});
  }
  MeshMatchReport report;
  EXPECT_EQ(MatchMeshes(few, few, 1e3, "few", "few", report).nodes.size(), 100u);
  try {
    MatchMeshes(many, many, 1e3, "many.onf", "b", report);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(
        failure.GetMessage(),
        "nodes of many.onf have more than 100 nodes each within 1000, expected a tolerance below the distances of "
        "nodes");
  }
}

TEST(MeshMatch, ANodeAtNoPlaceHasNoCounterpart)
{
  const double       nan = std::numeric_limits<double>::quiet_NaN();
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{1, nan, 0, 0}, {2, 1, 1, 1}});
  SetPlaces(b, {{11, nan, 0, 0}, {12, 1, 1, 1}});
  MeshMatchReport report;
  EXPECT_EQ(MatchMeshes(a, b, 1.0, "A", "B", report).nodes, (IdMap{{2, 12}}));
}

TEST(MeshMatch, ElementsKeepTheirIdsWhereNobodyKnowsTheirNodes)
{
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{1, 0, 0, 0}});
  SetPlaces(b, {{11, 0, 0, 0}});
  MeshMatchReport report;
  const MeshMatch match = MatchMeshes(a, b, 1.0, "A", "B", report);
  EXPECT_NE(match.Find(0), nullptr);
  EXPECT_EQ(match.Find(1), nullptr);
  EXPECT_EQ(match.Find(4), nullptr);
}

TEST(MeshMatch, ElementsPairByTheirNodesWhateverTheirOrder)
{
  const auto add = [](FED_Database& db, int id, const std::vector<int>& nodes) {
    FED_IdDataBlock view(db.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ElementNodes), 0), db.GetIdMapsPool(),
                         true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, nodes);
    view.SetRecord(id, record);
  };
  FED_ResultDatabase a;
  FED_ResultDatabase b;
  SetPlaces(a, {{1, 0, 0, 0}, {2, 1, 0, 0}, {3, 2, 0, 0}});
  SetPlaces(b, {{13, 0, 0, 0}, {12, 1, 0, 0}, {11, 2, 0, 0}});
  add(a, 5, {1, 2, 3});
  add(a, 6, {2, 3});
  add(b, 70, {11, 12});
  add(b, 80, {13, 11, 12});
  MeshMatchReport report;
  const MeshMatch match = MatchMeshes(a, b, 0.0, "A", "B", report);
  ASSERT_NE(match.Find(1), nullptr);
  EXPECT_EQ(*match.Find(1), (IdMap{{5, 80}, {6, 70}}));
  EXPECT_EQ(report.nodes, 3u);
  EXPECT_EQ(report.elements, 2u);
}

TEST(MeshMatch, CoordinatesThatAreMissingOrNoVectorsAreAFailure)
{
  const auto message = [](FED_Database& a, FED_Database& b) {
    try {
      MeshMatchReport report;
      MatchMeshes(a, b, 1.0, "a.onf", "b.onf", report);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return std::string();
  };
  FED_ResultDatabase places;
  FED_ResultDatabase nothing;
  FED_ResultDatabase scalars;
  SetPlaces(places, {{1, 0, 0, 0}});
  scalars.CreateDataBlock(Key(516), 1, 20, "D")->SetScalarAt(1, 1.0);
  EXPECT_EQ(message(nothing, places), "a.onf: holds no coordinates (516), expected them to match points");
  EXPECT_EQ(message(places, nothing), "b.onf: holds no coordinates (516), expected them to match points");
  EXPECT_EQ(message(scalars, places), "a.onf: the coordinates (516) are no vectors, expected three doubles a node");
}

}  // namespace
