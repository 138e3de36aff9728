#include "report/PageSource.h"

#include <algorithm>
#include <set>

#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../export/ExportSupport.h"
#include "BlobDecoding.h"
#include "mesh/Mesh.h"
#include "TwoBricks.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// @return what stands at a key of a header; fails the test where nothing does
const Json& At(const Json& json, std::string_view key)
{
  static const Json kNothing;
  for (const auto& [name, value] : std::get<Json::Object>(json.Get()))
    if (name == key) return value;
  ADD_FAILURE() << "no " << key;
  return kNothing;
}

const Json::Array& ListAt(const Json& json, std::string_view key) { return std::get<Json::Array>(At(json, key).Get()); }

std::string TextAt(const Json& json, std::string_view key) { return std::get<std::string>(At(json, key).Get()); }

std::size_t NumberOf(const Json& json)
{
  if (const auto* number = std::get_if<std::uint64_t>(&json.Get())) return static_cast<std::size_t>(*number);
  return static_cast<std::size_t>(std::get<std::int64_t>(json.Get()));
}

class PageSourceTest : public testing::Test
{
protected:
  PageSourceTest()
  {
    FillTwoBricks(database_);
    request_.database = &database_;
    request_.name     = "job";
    request_.blocks   = ChoosePageBlocks(BlocksOf(database_), false);
  }

  PageSource Make() { return PageSource(request_, listener_); }

  static const Json& FieldOf(const PageSource& source, const std::string& name)
  {
    static const Json kNothing;
    for (const Json& field : ListAt(source.GetHeader(), "fields"))
      if (TextAt(field, "name") == name) return field;
    ADD_FAILURE() << "no field " << name;
    return kNothing;
  }

  FED_ResultDatabase database_;
  RecordingListener  listener_;
  PageRequest        request_;
};

TEST_F(PageSourceTest, HasTheOutsideOfEachPart)
{
  PageSource  source = Make();
  const Json& model  = At(source.GetHeader(), "model");
  // Two materials, of which one is in the sets LEFT and MIX, the other in RIGHT: a cube each with six faces, the one
  // between them included, so that a part that is hidden leaves no hole.
  ASSERT_EQ(ListAt(model, "parts").size(), 2u);
  EXPECT_EQ(source.NumTriangles(), 24u);
  EXPECT_EQ(source.NumPoints(), 12u);
  std::vector<std::string> materials;
  for (const Json& name : ListAt(model, "materials")) materials.push_back(std::get<std::string>(name.Get()));
  EXPECT_THAT(materials, ElementsAre("STEEL", "ALU"));
  std::vector<std::string> sets;
  for (const Json& name : ListAt(model, "sets")) sets.push_back(std::get<std::string>(name.Get()));
  EXPECT_THAT(sets, UnorderedElementsAre("LEFT", "RIGHT", "MIX"));
  EXPECT_EQ(ListAt(ListAt(model, "parts")[0], "sets").size(), 2u);
  EXPECT_EQ(ListAt(ListAt(model, "parts")[1], "sets").size(), 1u);
}

TEST_F(PageSourceTest, CarriesTheMesh)
{
  PageSource                 source    = Make();
  const std::vector<float>   points    = DecodeFloats(source.MakeBlob(0));
  const auto                 ids       = DecodeIntegers(source.MakeBlob(1));
  const auto                 triangles = DecodeIntegers(source.MakeBlob(2));
  const auto                 ofWhich   = DecodeIntegers(source.MakeBlob(3));
  const auto                 elements  = DecodeIntegers(source.MakeBlob(7));
  std::vector<std::uint32_t> expected(12);
  for (std::uint32_t i = 0; i < 12; ++i) expected[i] = i + 1;
  EXPECT_EQ(ids, expected);
  EXPECT_EQ(elements, (std::vector<std::uint32_t>{101, 102}));
  // Coordinates count from the middle of the box, (1, 0.5, 0.5).
  for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(points[i], static_cast<float>(i / 4) - 1.0F);
  // Each triangle has nodes of its element, and the areas of a cube's faces add up to six.
  ASSERT_EQ(triangles.size(), 72u);
  for (std::size_t i = 0; i < 72; ++i) EXPECT_EQ(ofWhich[i / 3] == 0 ? triangles[i] < 8 : triangles[i] >= 4, true) << i;
  EXPECT_EQ(std::count(ofWhich.begin(), ofWhich.end(), 0U), 12);
}

TEST_F(PageSourceTest, CarriesEveryValueOfEveryStep)
{
  PageSource  source = Make();
  const Json& field  = FieldOf(source, "displacement");
  ASSERT_EQ(ListAt(field, "blobs").size(), 3u);
  const double times[3] = {0.5, 1.0, 2.0};
  for (std::size_t step = 0; step < 3; ++step) {
    const auto values = DecodeFloats(source.MakeBlob(NumberOf(ListAt(field, "blobs")[step])));
    ASSERT_EQ(values.size(), 36u);
    for (std::size_t i = 0; i < 12; ++i) {
      EXPECT_EQ(values[i], static_cast<float>(static_cast<double>(i + 1) * times[step]));
      EXPECT_EQ(values[12 + i], static_cast<float>(-static_cast<double>(i + 1) * times[step]));
      EXPECT_EQ(values[24 + i], 0.0F);
    }
  }
  const Json& ofElements = FieldOf(source, "element-stress");
  const auto  values     = DecodeFloats(source.MakeBlob(NumberOf(ListAt(ofElements, "blobs")[1])));
  EXPECT_EQ(std::get<bool>(At(ofElements, "ofElements").Get()), true);
  EXPECT_EQ(values, (std::vector<float>{0, 0, 0, 0, 0, 0, 1, 2, 0, 0, 0, 0}));
}

TEST_F(PageSourceTest, TellsStepsWithTheirTimes)
{
  PageSource         source = Make();
  const Json::Array& steps  = ListAt(source.GetHeader(), "steps");
  ASSERT_EQ(steps.size(), 3u);
  EXPECT_EQ(JsonText(steps[1]), R"({"label":"load case 1, substep 2","time":1.0,"quantity":"time"})");
}

TEST_F(PageSourceTest, KeepsTheFirstAndTheLastOfFewerSteps)
{
  request_.maxSteps = 2;
  PageSource two    = Make();
  ASSERT_EQ(ListAt(two.GetHeader(), "steps").size(), 2u);
  EXPECT_EQ(TextAt(ListAt(two.GetHeader(), "steps")[0], "label"), "load case 1, substep 1");
  EXPECT_EQ(TextAt(ListAt(two.GetHeader(), "steps")[1], "label"), "load case 2, substep 1");
  request_.maxSteps = 1;
  PageSource one    = Make();
  ASSERT_EQ(ListAt(one.GetHeader(), "steps").size(), 1u);
  EXPECT_EQ(TextAt(ListAt(one.GetHeader(), "steps")[0], "label"), "load case 2, substep 1");
}

TEST_F(PageSourceTest, LeavesOutPrincipalValuesThatThePageCalculates)
{
  SetValues(database_, StepBlock(520, 1, 1), 1, {3, 2, 1});
  SetValues(database_, StepBlock(530, 1, 1), 1, {3, 2, 1});
  const auto kindsOf = [&](bool isAsked) {
    std::set<int> kinds;
    for (const FED_DataDescriptor& block : ChoosePageBlocks(BlocksOf(database_), isAsked))
      kinds.insert(block.GetInteger(FED_DataDescriptor::OnfId));
    return kinds;
  };
  EXPECT_THAT(kindsOf(false), UnorderedElementsAre(510, 521, 530, 561)) << "530 has no tensor beside it";
  EXPECT_THAT(kindsOf(true), UnorderedElementsAre(510, 520, 521, 530, 561));
}

TEST_F(PageSourceTest, NodesHaveAValueForEachGroup)
{
  for (const int group : {1, 2})
    for (int node = group == 1 ? 1 : 5; node <= (group == 1 ? 8 : 12); ++node)
      SetValues(database_,
                [&] {
                  FED_DataDescriptor block = StepBlock(521, 1, 1);
                  block.SetInteger(OnfIndex::Group, group);
                  return block;
                }(),
                node, {100.0 * group + node, 0, 0, 0, 0, 0});
  request_.blocks   = BlocksOf(database_, {510, 521});
  PageSource source = Make();
  EXPECT_EQ(source.NumPoints(), 16u) << "the four nodes between the bricks are two points each";
  const Json& field  = FieldOf(source, "nodal-stress-group");
  const auto  values = DecodeFloats(source.MakeBlob(NumberOf(ListAt(field, "blobs")[0])));
  const auto  ids    = DecodeIntegers(source.MakeBlob(1));
  const auto  corner = DecodeIntegers(source.MakeBlob(2));
  const auto  owner  = DecodeIntegers(source.MakeBlob(3));
  for (std::size_t i = 0; i < corner.size(); ++i)
    EXPECT_EQ(values[corner[i]], static_cast<float>(100 * (owner[i / 3] + 1) + ids[corner[i]]));
}

TEST_F(PageSourceTest, ManySetsLeaveMaterialsAsParts)
{
  for (int number = 0; number < 6; ++number) {
    FED_ResultDatabase       database;
    std::vector<NodeRow>     nodes;
    std::vector<ElementLine> elements;
    const int                count = number == 0 ? 40 : 41;
    for (int i = 0; i <= count; ++i) {
      nodes.push_back({2 * i + 1, {1.0 * i, 0, 0}});
      nodes.push_back({2 * i + 2, {1.0 * i, 1, 0}});
      if (i < count) elements.push_back({i + 1, 9, 1, {2 * i + 1, 2 * i + 3, 2 * i + 4, 2 * i + 2}});
    }
    WriteMesh(database, nodes, elements);
    for (int i = 1; i <= count; ++i) WriteSet(database, OnfKind::ElementSet, i, "S" + std::to_string(i), {i});
    SetValues(database, StepKey(510, 1), 1, {1, 0, 0});
    PageRequest request = request_;
    request.database    = &database;
    request.blocks      = BlocksOf(database, {510});
    PageSource source(request, listener_);
    EXPECT_EQ(ListAt(At(source.GetHeader(), "model"), "parts").size(), count == 40 ? 40u : 1u);
    if (number == 1) break;
  }
}

TEST_F(PageSourceTest, RefusesWhatCannotBeDrawn)
{
  FED_ResultDatabase database;
  WriteMesh(database, {{1, {0, 0, 0}}}, {});
  SetValues(database, StepKey(510, 1), 1, {1, 0, 0});
  request_.database = &database;
  request_.blocks   = BlocksOf(database, {510});
  EXPECT_EQ(FailureOf([&] { Make(); }),
            "job: nothing to draw, expected a mesh with solids, shells or beams (blocks 595 and 596)");
  request_.blocks = {};
  EXPECT_EQ(
      FailureOf([&] { Make(); }),
      "job: the selection has no values of nodes or elements, expected kinds such as displacement, nodal-stress or "
      "element-energy");
}

}  // namespace
}  // namespace quilon
