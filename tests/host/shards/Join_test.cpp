#include "shards/Join.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_DatabaseInspection.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "FEM_AvgField.h"
#include "import/Derivation.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"
#include "shards_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon;
using namespace quilon_test;
namespace fs = std::filesystem;

FED_DataDescriptor Block(int kind, int substep = 1)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(kind));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 1);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  return descriptor;
}

/// Elements in a row, each with two nodes of its own neighbours, and one node that all of them share.
constexpr int kHub = 100000;

struct Contribution
{
  int                   node;
  std::array<double, 6> value;
};

/// Stresses of one element at its nodes, of size and sign like a real field's.
std::vector<Contribution> ContributionsOf(int element)
{
  std::vector<Contribution> all;
  for (const int node : {element, element + 1, kHub}) {
    Contribution one{node, {}};
    for (int k = 0; k < 6; ++k)
      one.value[static_cast<std::size_t>(k)] =
          150.0 + 40.0 * std::sin(0.7 * element + 1.3 * k) + 7.0 * std::cos(3.1 * (node % 1000) - k);
    all.push_back(one);
  }
  return all;
}

/// Force of one element at a node: sums of these are rounded, so that their order is seen.
std::array<double, 3> ForceOf(int element)
{
  return {0.1 * element + 1e-3, 1e10 / (element + 1), -0.3 / (element + 7)};
}

/// What a process makes of the elements from `first` to before `last`.
void WriteShard(const fs::path& folder, int first, int last)
{
  FED_ResultDatabase                             database(folder, FED_ResultDatabase::Create);
  FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6> stress;
  std::map<int, std::array<double, 3>>           forces;
  for (int element = first; element < last; ++element) {
    for (const Contribution& one : ContributionsOf(element)) {
      double value[6];
      std::memcpy(value, one.value.data(), sizeof value);
      stress.AddValue(one.node, value);
    }
    for (const int node : {element, element + 1})
      for (std::size_t k = 0; k < 3; ++k) forces[node][k] += ForceOf(element)[k];
  }
  stress.SaveField(database, Block(OnfKind::NodalStress), FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Average,
                   true, nullptr);
  stress.SaveField(database, Block(OnfKind::NodalStressVariance), FEM_AvgFieldDefs::NoLayerIndex,
                   FEM_AvgFieldDefs::Variance, true, nullptr);
  std::vector<int>                      ids;
  std::vector<FEM_AvgUtil::StatData<6>> data;
  stress.DumpField(0, ids, data);
  auto&           pool = database.GetIdMapsPool();
  FED_IdDataBlock counts(database.GetOrCreateDataBlock(Block(OnfKind::NodalStressCount), 0), pool, true);
  FED_IdDataBlock errors(database.GetOrCreateDataBlock(Block(OnfKind::NodalStressError), 0), pool, true);
  FED_IdDataBlock principals(database.GetOrCreateDataBlock(Block(OnfKind::NodalStressPrincipal), 0), pool, true);
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const double count = data[i].count;
    double       error[6];
    double       principal[3];
    counts.SetScalar(ids[i], count);
    for (std::size_t k = 0; k < 6; ++k) error[k] = std::sqrt(std::abs(data[i].m2[k] / count / count));
    CalculateScaledPrincipals(error, principal);
    errors.SetScalar(ids[i], principal[0]);
    CalculateScaledPrincipals(data[i].mean, principal);
    principals.SetVector(ids[i], principal);
  }
  FED_IdDataBlock reactions(database.GetOrCreateDataBlock(Block(OnfKind::Reaction), 0), pool, true);
  for (const auto& [node, force] : forces) reactions.SetVector(node, force.data());
  FED_IdDataBlock energies(database.GetOrCreateDataBlock(Block(OnfKind::ElementEnergy), 0), pool, true);
  for (int element = first; element < last; ++element) energies.SetScalar(element, 0.5 * element);
  database.Commit();
}

std::uint64_t UlpsApart(double a, double b)
{
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::memcpy(&x, &a, 8);
  std::memcpy(&y, &b, 8);
  return static_cast<std::uint64_t>(std::llabs(x - y));
}

class Join : public testing::Test
{
protected:
  fs::path Shard(std::size_t number) const { return files_ / (std::to_string(number) + ".fed"); }

  JoinReport Run(const std::vector<std::string>& rules = {}) const
  {
    SilentListener listener;
    const auto     make = [&](const KindTable& kinds) {
      BorderRules made;
      for (const std::string& rule : rules) made.Add(rule, [&](std::string_view kind) { return kinds.Resolve(kind); });
      return made;
    };
    return JoinDatabases({shards_, output_, make}, listener);
  }

  std::string MessageOf(const std::vector<std::string>& rules = {}) const
  {
    try {
      Run(rules);
    } catch (const FED_Failure& failure) {
      EXPECT_FALSE(fs::exists(output_));
      return failure.GetMessage();
    }
    return {};
  }

  /// Cuts a row of elements into shards.
  void WriteRow(int numElements, std::size_t numShards)
  {
    const auto count = static_cast<int>(numShards);
    for (int i = 0; i < count; ++i) {
      shards_.push_back(Shard(shards_.size() + 1));
      WriteShard(shards_.back(), i * numElements / count, (i + 1) * numElements / count);
    }
  }

  FED_ResultDatabase& AddShard()
  {
    shards_.push_back(Shard(shards_.size() + 1));
    open_ = std::make_unique<FED_ResultDatabase>(shards_.back(), FED_ResultDatabase::Create);
    return *open_;
  }

  static void SetScalar(FED_ResultDatabase& database, const FED_DataDescriptor& block, int id, double value)
  {
    FED_IdDataBlock(database.GetOrCreateDataBlock(block, 0), database.GetIdMapsPool(), true).SetScalar(id, value);
    database.Commit();
  }

  double ScalarOf(const FED_DataDescriptor& block, int id) const
  {
    const FED_ResultDatabase database(output_, FED_ResultDatabase::ReadOnly);
    double                   value = 0.0;
    FED_ConstIdDataBlock(database.GetConstDataBlock(block), database.GetIdMapsPool(), true).GetScalar(id, value);
    return value;
  }

  TempFolder                          files_;
  fs::path                            output_ = files_ / "joined.fed";
  std::vector<fs::path>               shards_;
  std::unique_ptr<FED_ResultDatabase> open_;
};

/// The greatest differences of two blocks of doubles.
struct Distance
{
  std::uint64_t ulps   = 0;    ///< steps through the representable numbers
  double        ofPeak = 0.0;  ///< the difference in ulps of the block's largest magnitude
};

Distance DistanceOf(const FED_ResultDatabase& a, const FED_ResultDatabase& b, const FED_DataDescriptor& key,
                    std::size_t width)
{
  Distance             distance;
  double               peak   = 0.0;
  const FED_DataBlock& first  = a.GetConstDataBlock(key);
  const FED_DataBlock& second = b.GetConstDataBlock(key);
  std::size_t          count  = 0;
  for (auto it = first.Begin(); it != first.End(); ++it, ++count) {
    double x[6] = {};
    double y[6] = {};
    first.GetValuesAt(*it, x);
    second.GetValuesAt(b.GetIdMapsPool().FindIndex(0, a.GetIdMapsPool().GetId(0, *it)), y);
    for (std::size_t k = 0; k < width; ++k) {
      distance.ulps   = std::max(distance.ulps, UlpsApart(x[k], y[k]));
      distance.ofPeak = std::max(distance.ofPeak, std::abs(x[k] - y[k]));
      peak            = std::max(peak, std::abs(x[k]));
    }
  }
  std::size_t other = 0;
  for (auto it = second.Begin(); it != second.End(); ++it) ++other;
  EXPECT_EQ(count, other);
  EXPECT_GT(count, 0U);
  distance.ofPeak /= std::nextafter(peak, INFINITY) - peak;
  return distance;
}

TEST_F(Join, StatisticsOfManyShardsAreThoseOfOneProcess)
{
  constexpr int kElements = 192;
  WriteShard(files_ / "one.fed", 0, kElements);
  const FED_ResultDatabase one(files_ / "one.fed", FED_ResultDatabase::ReadOnly);
  for (const std::size_t count : {1U, 2U, 3U, 7U, 64U}) {
    shards_.clear();
    for (const auto& entry : fs::directory_iterator(files_.GetPath()))
      if (entry.path().filename() != "one.fed") fs::remove_all(entry.path());
    WriteRow(kElements, count);
    const JoinReport report = Run({"stress: average", "reaction: sum"});
    // The hub is in every shard, each border's node in two; of five blocks of averages records count once.
    EXPECT_EQ(report.sharedRecords, count == 1 ? 0U : 3 * (count - 1)) << count;
    const FED_ResultDatabase joined(output_, FED_ResultDatabase::ReadOnly);
    const auto distance = [&](int kind, std::size_t width) { return DistanceOf(one, joined, Block(kind), width); };
    // The hub's mean is rounded once a shard, and one process rounds it once an element.
    const unsigned ulps = count <= 7 ? 4 : 8;
    EXPECT_LE(distance(OnfKind::NodalStress, 6).ulps, ulps) << count;
    EXPECT_EQ(distance(OnfKind::NodalStressCount, 1).ulps, 0U) << count;
    // Where values of a node are nearly equal, the digits that cancel are lost to one process as well.
    EXPECT_LE(distance(OnfKind::NodalStressVariance, 6).ofPeak, ulps) << count;
    EXPECT_LE(distance(OnfKind::NodalStressError, 1).ofPeak, 16.0) << count;      // of a closed form
    EXPECT_LE(distance(OnfKind::NodalStressPrincipal, 3).ofPeak, 16.0) << count;  // with roots
    EXPECT_EQ(distance(OnfKind::Reaction, 3).ulps, 0U) << count;                  // added up in one order
    EXPECT_EQ(FED_InspectDatabase(output_).findings, std::vector<std::string>());
  }
}

TEST_F(Join, BlocksOfOneShardAreLinked)
{
  SetScalar(AddShard(), Block(OnfKind::Temperature, 1), 5, 20.0);
  SetScalar(AddShard(), Block(OnfKind::Temperature, 2), 6, 21.0);
  open_.reset();
  const JoinReport report = Run();
  EXPECT_EQ(report.linkedBlocks, 2U);
  EXPECT_EQ(report.mergedBlocks, 0U);
  EXPECT_EQ(report.copies, 0U);
  EXPECT_GT(report.linkedBytes, 0U);
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature, 1), 5), 20.0);
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature, 2), 6), 21.0);
  std::size_t shared = 0;
  for (const auto& entry : fs::directory_iterator(output_))
    if (entry.path().extension() == ".h5" && fs::hard_link_count(entry.path()) == 2) ++shared;
  EXPECT_EQ(shared, 2U);
}

TEST_F(Join, RecordsOfOneBlockNeedNoRuleWhereNoneIsShared)
{
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, 20.0);
  SetScalar(AddShard(), Block(OnfKind::Temperature), 6, 21.0);
  open_.reset();
  EXPECT_EQ(Run().sharedRecords, 0U);
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature), 5), 20.0);
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature), 6), 21.0);
}

TEST_F(Join, FirstSumAndAgreementAreInTheOrderOfTheShards)
{
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, 1e16);
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, 1.0);
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, -1e16);
  open_.reset();
  Run({"temperature: first"});
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature), 5), 1e16);
  fs::remove_all(output_);
  Run({"*: sum"});
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature), 5), 0.0);  // 1e16 + 1 is 1e16
  fs::remove_all(output_);
  EXPECT_EQ(MessageOf({"temperature: must-agree 1e-3"}),
            Shard(2).string() +
                ": temperature (514@it=0,lc=1,sub=1), record 5 has 1, the shards before it 1e+16: "
                "expected a difference of at most 0.001");
  Run({"temperature: must-agree 3e16"});
  EXPECT_EQ(ScalarOf(Block(OnfKind::Temperature), 5), 1e16);
}

TEST_F(Join, EqualRecordsOfResultsNeedARuleToo)
{
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, 20.0);
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, 20.0);
  open_.reset();
  EXPECT_EQ(MessageOf(),
            Shard(2).string() +
                ": temperature (514@it=0,lc=1,sub=1), record 5 is in a shard before it as well, expected a "
                "rule: --rule 'KIND: first', 'average', 'sum' or 'must-agree TOL'");
  EXPECT_EQ(MessageOf({"temperature: average"}),
            "temperature (514@it=0,lc=1,sub=1): the catalogue has no counts of its values, expected another rule than "
            "'average'");
}

TEST_F(Join, SetsAreUnitedUnderOneName)
{
  for (const std::vector<int>& ids : {std::vector<int>{4, 2}, std::vector<int>{9, 4}}) {
    FED_ResultDatabase& shard = AddShard();
    FED_IdDataBlock view(shard.GetOrCreateDataBlock(FED_DataDescriptor(0, OnfKind::NodeSet), 0), shard.GetIdMapsPool(),
                         true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.GetDataRecord().SetString(1, "FIX");
    record.GetDataRecord().SetIntList(2, ids);
    view.SetRecord(1, record);
    record.GetDataRecord().SetString(1, "ONLY" + std::to_string(shards_.size()));
    view.SetRecord(static_cast<int>(1 + shards_.size()), record);
    shard.Commit();
  }
  open_.reset();
  Run();
  const auto content = ContentOf(output_);
  EXPECT_EQ(content.at("<600 it=0> 1"), "[S \"FIX\"; lb 2 4 9]");
  EXPECT_EQ(content.size(), 3U);
}

TEST_F(Join, WhatTheShardsDoNotShareIsRefused)
{
  {
    FED_ResultDatabase& shard = AddShard();
    shard.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear");
    SetScalar(shard, Block(1000), 5, 20.0);
  }
  {
    FED_ResultDatabase& shard = AddShard();
    shard.SetUserKindName(static_cast<FED_OnfId>(1000), "Damage");
    SetScalar(shard, Block(1000), 6, 20.0);
  }
  open_.reset();
  EXPECT_EQ(MessageOf(), Shard(2).string() + ": kind 1000 is 'Damage', expected 'Wear' as in the shards before it");
  shards_.clear();
  EXPECT_EQ((shards_ = {files_ / "none.fed"}, MessageOf()),
            (files_ / "none.fed").string() + ": not a working database (.fed), expected shards");
  shards_ = {files_.GetPath()};
  EXPECT_EQ(MessageOf(), files_.GetPath().string() + ": not a working database (.fed), expected shards");
}

TEST_F(Join, AStepThatAShardLacksIsToldOf)
{
  FED_ResultDatabase& first = AddShard();
  SetScalar(first, Block(OnfKind::Temperature, 1), 5, 20.0);
  SetScalar(first, Block(OnfKind::Temperature, 2), 5, 20.0);
  SetScalar(AddShard(), Block(OnfKind::Temperature, 1), 6, 20.0);
  open_.reset();
  EXPECT_EQ(MessageOf({"*: first"}), Shard(2).string() +
                                         ": has temperature of 514@it=0,lc=1,sub=1 but not of 514@it=0,lc=1,sub=2, "
                                         "which " +
                                         Shard(1).string() + " has; expected the same steps");
}

TEST_F(Join, BlocksOfTwoFormatsAreRefused)
{
  SetScalar(AddShard(), Block(1000), 5, 20.0);
  FED_ResultDatabase& shard     = AddShard();
  const double        vector[3] = {};
  FED_IdDataBlock(*shard.CreateDataBlock(Block(1000), 0, 0, "V"), shard.GetIdMapsPool(), true).SetVector(7, vector);
  shard.Commit();
  open_.reset();
  EXPECT_EQ(MessageOf(), Shard(2).string() + ": block 1000@it=0,lc=1,sub=1 has records 'V', expected 'D' as in " +
                             Shard(1).string());
}

TEST_F(Join, AveragesWithoutCountsAreRefused)
{
  for (int i = 0; i < 2; ++i) {
    FED_ResultDatabase& shard     = AddShard();
    const double        tensor[6] = {1, 2, 3};
    FED_IdDataBlock(shard.GetOrCreateDataBlock(Block(OnfKind::NodalStress), 0), shard.GetIdMapsPool(), true)
        .SetTensor(5, tensor);
    shard.Commit();
  }
  open_.reset();
  EXPECT_EQ(
      MessageOf({"stress: average"}),
      Shard(1).string() +
          ": nodal-stress (521@it=0,lc=1,sub=1) has no counts of values beside it, expected them: averages are put "
          "together by them");
}

TEST_F(Join, AnOutputThatIsThereStays)
{
  SetScalar(AddShard(), Block(OnfKind::Temperature), 5, 20.0);
  open_.reset();
  Run();
  const auto before = ContentOf(output_);
  EXPECT_THROW(Run(), FED_Failure);
  EXPECT_EQ(ContentOf(output_), before);
}

/// One record a shard, and all of them at the same step.
TEST_F(Join, ManyShardsOfOneRecord)
{
  const char* const asked = std::getenv("QUILON_SHARDS");
  const int         count = asked != nullptr ? std::atoi(asked) : 40;
  for (int i = 0; i < count; ++i) {
    FED_ResultDatabase& shard = AddShard();
    SetScalar(shard, Block(OnfKind::Temperature), 7 * i + 1, i);
    SetScalar(shard, Block(OnfKind::Temperature, i + 2), 7 * i + 1, -i);  // of its own
    open_.reset();
  }
  // The own blocks have a step that all others lack, but none of them is in two shards: those are told of.
  EXPECT_NE(MessageOf(), "");
  for (int i = 0; i < count; ++i) {
    FED_ResultDatabase shard(Shard(static_cast<std::size_t>(i) + 1), FED_ResultDatabase::ReadWrite);
    shard.DeleteDataBlock(Block(OnfKind::Temperature, i + 2));
    SetScalar(shard, Block(OnfKind::ElementEnergy, i + 2), i, 0.5);
  }
  Run();
  const FED_ResultDatabase joined(output_, FED_ResultDatabase::ReadOnly);
  for (int i = 0; i < count; ++i) {
    double value = 0.0;
    FED_ConstIdDataBlock(joined.GetConstDataBlock(Block(OnfKind::Temperature)), joined.GetIdMapsPool(), true)
        .GetScalar(7 * i + 1, value);
    ASSERT_EQ(value, i);
    FED_ConstIdDataBlock(joined.GetConstDataBlock(Block(OnfKind::ElementEnergy, i + 2)), joined.GetIdMapsPool(), true)
        .GetScalar(i, value);
    ASSERT_EQ(value, 0.5);
  }
  EXPECT_EQ(FED_InspectDatabase(output_).findings, std::vector<std::string>());
}

}  // namespace
