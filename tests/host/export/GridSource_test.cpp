#include "export/GridSource.h"

#include <cmath>
#include <cstring>
#include <memory>

#include "ExportSupport.h"

namespace quilon {
namespace {

using namespace quilon_test;

class GridSourceOfTwoCubes : public testing::Test
{
protected:
  void SetUp() override
  {
    WriteMesh(database_, TwoCubeNodes(), TwoCubeElements());
    mesh_ = ReadMesh(database_, 0, "test");
  }

  GridSource& Make(const std::vector<int>& kinds, ExportGroupForm form = ExportGroupForm::Arrays)
  {
    const auto blocks = BlocksOf(database_, kinds);
    sets_             = ReadSets(database_, 0);
    groups_           = ExportGroups(database_, 0, mesh_, blocks);
    plan_             = MakeExportPlan(database_, blocks, {}, groups_, form);
    source_           = std::make_unique<GridSource>(database_, mesh_, sets_, plan_, groups_);
    return *source_;
  }

  template <typename T>
  std::vector<T> Read(const std::string& name, bool ofCells, std::size_t step = 0)
  {
    for (std::size_t i = 0; i < source_->Arrays().size(); ++i) {
      if (source_->Arrays()[i].name != name || source_->Arrays()[i].ofCells != ofCells) continue;
      const auto     bytes = source_->Read(i, step);
      std::vector<T> values(bytes.size() / sizeof(T));
      std::memcpy(values.data(), bytes.data(), bytes.size());
      return values;
    }
    ADD_FAILURE() << "no array " << name;
    return {};
  }

  FED_ResultDatabase          database_;
  Mesh                        mesh_;
  std::vector<NamedSet>       sets_;
  ExportGroups                groups_;
  ExportPlan                  plan_;
  std::unique_ptr<GridSource> source_;
};

TEST_F(GridSourceOfTwoCubes, HasIdsMaterialsAndSets)
{
  WriteSet(database_, OnfKind::NodeSet, 1, "FIX", {4, 1, 4, 99});
  WriteSet(database_, OnfKind::ElementSet, 1, "FIX", {20});
  const GridSource& source = Make({});
  EXPECT_EQ(source.NumPoints(), 12U);
  EXPECT_EQ(source.NumCells(), 2U);
  EXPECT_EQ(Read<int>("id", false), (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_EQ(Read<int>("id", true), (std::vector<int>{10, 20}));
  EXPECT_EQ(Read<int>("material", true), (std::vector<int>{1, 2}));
  EXPECT_EQ(Read<std::uint8_t>("set-FIX", false), (std::vector<std::uint8_t>{1, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(Read<std::uint8_t>("set-FIX", true), (std::vector<std::uint8_t>{0, 1}));
}

TEST_F(GridSourceOfTwoCubes, HasNoNumberWhereThereIsNoRecord)
{
  SetValues(database_, StepKey(540, 1), 20, {7});
  SetValues(database_, StepKey(510, 2), 12, {1, 2, 3});
  const GridSource& source = Make({510, 540});
  ASSERT_EQ(source.NumSteps(), 2U);
  const auto first = Read<double>("element-energy", true, 0);
  EXPECT_TRUE(std::isnan(first[0]));
  EXPECT_EQ(first[1], 7);
  for (const double value : Read<double>("element-energy", true, 1)) EXPECT_TRUE(std::isnan(value));
  const auto second = Read<double>("displacement", false, 1);
  ASSERT_EQ(second.size(), 36U);
  EXPECT_TRUE(std::isnan(second[32]));
  EXPECT_EQ(second[35], 3);
}

TEST_F(GridSourceOfTwoCubes, TellsOfNodesAndElementsThatTheMeshHasNot)
{
  SetValues(database_, StepKey(540, 1), 21, {7});
  SetValues(database_, StepKey(510, 1), 13, {1, 2, 3});
  const GridSource& source = Make({510, 540});
  Read<double>("element-energy", true);
  Read<double>("displacement", false);
  EXPECT_EQ(source.NodesWithout(), (std::set<int>{13}));
  EXPECT_EQ(source.ElementsWithout(), (std::set<int>{21}));
}

TEST_F(GridSourceOfTwoCubes, PartsPointsWhereGroupsMeet)
{
  for (int node = 1; node <= 8; ++node) SetValues(database_, StepKey(551, 1, 1), node, {100.0 + node});
  for (int node = 5; node <= 12; ++node) SetValues(database_, StepKey(551, 1, 2), node, {200.0 + node});
  for (int node = 1; node <= 12; ++node) SetValues(database_, StepKey(514, 1), node, {300.0 + node});
  WriteSet(database_, OnfKind::NodeSet, 1, "MIDDLE", {5});
  const GridSource& source = Make({551, 514}, ExportGroupForm::Points);
  EXPECT_EQ(source.NumPoints(), 16U);
  const std::vector<int> ids = Read<int>("id", false);
  EXPECT_EQ(ids, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 5, 6, 7, 8, 9, 10, 11, 12}));
  const std::vector<int> groups = Read<int>("group", false);
  const auto             values = Read<double>("nodal-stress-error-group", false);
  const auto             common = Read<double>("temperature", false);
  for (std::size_t point = 0; point < ids.size(); ++point) {
    EXPECT_EQ(groups[point], point < 8 ? 1 : 2);
    EXPECT_EQ(values[point], 100.0 * groups[point] + ids[point]);
    EXPECT_EQ(common[point], 300.0 + ids[point]);
  }
  const auto flags = Read<std::uint8_t>("set-MIDDLE", false);
  EXPECT_EQ(flags, (std::vector<std::uint8_t>{0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
  // Each cell has the points of its own group.
  for (std::size_t i = 0; i < 16; ++i)
    EXPECT_EQ(groups[static_cast<std::size_t>(source.Connectivity()[i])], i < 8 ? 1 : 2);
  EXPECT_EQ(source.Points().size(), 48U);
}

TEST_F(GridSourceOfTwoCubes, KeepsNodesOfNoElementWherePointsArePartedToo)
{
  SetValues(database_, FED_DataDescriptor(0, OnfKind::Coordinates), 13, {9, 9, 9});
  mesh_ = ReadMesh(database_, 0, "test");
  for (int node = 1; node <= 8; ++node) SetValues(database_, StepKey(551, 1, 1), node, {1});
  const GridSource& source = Make({551}, ExportGroupForm::Points);
  // The second cube is in no group either.
  EXPECT_EQ(source.NumPoints(), 17U);
  EXPECT_EQ(Read<int>("id", false)[8], 13);
  EXPECT_EQ(Read<int>("group", false)[8], 0);
}

TEST_F(GridSourceOfTwoCubes, RefusesPointsOfGroupsThatNobodyKnows)
{
  SetValues(database_, StepKey(551, 1, 9), 1, {1});
  EXPECT_EQ(FailureOf([&] { Make({551}, ExportGroupForm::Points); }),
            "averages of groups: no materials, sections or sets have their elements, expected --groups arrays");
}

TEST_F(GridSourceOfTwoCubes, RefusesRecordsOfAnotherFormThanTheirKind)
{
  database_.CreateDataBlock(StepKey(521, 1), 0, 0, "D");
  FED_IdDataBlock(database_.GetDataBlock(StepKey(521, 1)), database_.GetIdMapsPool(), true).SetScalar(1, 7);
  Make({521});
  EXPECT_EQ(FailureOf([&] { Read<double>("nodal-stress", false); }),
            "521@it=0,an=1,lc=1,sub=1: records are 'D', expected 'T'");
}

TEST_F(GridSourceOfTwoCubes, ASetNeverHidesAResultOfItsName)
{
  database_.SetUserKindName(static_cast<FED_OnfId>(1000), "set-FIX");
  SetValues(database_, StepKey(1000, 1), 1, {7});
  WriteSet(database_, OnfKind::NodeSet, 1, "FIX", {1});
  Make({1000});
  EXPECT_EQ(Read<std::uint8_t>("set-FIX", false)[0], 1);
  EXPECT_EQ(Read<double>("set-FIX-2", false)[0], 7);
}

}  // namespace
}  // namespace quilon
