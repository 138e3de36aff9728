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

/// Writes a cube of 27 bricks, numbered along x, then y, then z; so are its 64 nodes. Brick 14 is inside, and so are
/// nodes 22, 23, 26, 27, 38, 39, 42 and 43.
void WriteCube(FED_ResultDatabase& database)
{
  std::vector<NodeRow>     nodes;
  std::vector<ElementLine> elements;
  const auto               idOf = [](int i, int j, int k) { return 16 * k + 4 * j + i + 1; };
  for (int k = 0; k < 4; ++k)
    for (int j = 0; j < 4; ++j)
      for (int i = 0; i < 4; ++i) nodes.push_back({idOf(i, j, k), {1.0 * i, 1.0 * j, 1.0 * k}});
  for (int k = 0; k < 3; ++k)
    for (int j = 0; j < 3; ++j)
      for (int i = 0; i < 3; ++i)
        elements.push_back(
            {9 * k + 3 * j + i + 1,
             1,
             1,
             {idOf(i, j, k), idOf(i + 1, j, k), idOf(i + 1, j + 1, k), idOf(i, j + 1, k), idOf(i, j, k + 1),
              idOf(i + 1, j, k + 1), idOf(i + 1, j + 1, k + 1), idOf(i, j + 1, k + 1)}});
  WriteMesh(database, nodes, elements);
  for (int node = 1; node <= 64; ++node) SetValues(database, StepKey(510, 1), node, {1.0 * node, 0, 0});
  for (int element = 1; element <= 27; ++element)
    SetValues(database, StepKey(561, 1), element, {100.0 + element, 0, 0, 0, 0, 0});
}

TEST_F(PageSourceTest, CarriesTheInsideOfSolidsBehindWhatIsDrawn)
{
  FED_ResultDatabase database;
  WriteCube(database);
  request_.database   = &database;
  request_.blocks     = BlocksOf(database, {510, 561});
  PageSource  source  = Make();
  const Json& inside  = At(source.GetHeader(), "inside");
  const Json& blobs   = At(inside, "blobs");
  const auto  numbers = [&](const char* name) { return DecodeIntegers(source.MakeBlob(NumberOf(At(blobs, name)))); };
  EXPECT_EQ(source.NumPoints(), 56u);
  EXPECT_EQ(NumberOf(At(inside, "numPoints")), 8u);
  EXPECT_EQ(NumberOf(At(inside, "numElements")), 1u);
  const std::vector<std::uint32_t> nodesInside = {22, 23, 26, 27, 38, 39, 42, 43};
  EXPECT_EQ(numbers("ids"), nodesInside);
  EXPECT_EQ(numbers("elementIds"), std::vector<std::uint32_t>{14});
  const auto points = DecodeFloats(source.MakeBlob(NumberOf(At(blobs, "points"))));
  ASSERT_EQ(points.size(), 24u);
  EXPECT_EQ(points[0], -0.5F) << "from the middle of the box";
  EXPECT_EQ(points[1], 0.5F);

  // Nodes and elements of the solids, by their numbers in the page.
  std::vector<std::uint32_t> ids = DecodeIntegers(source.MakeBlob(1));
  ids.insert(ids.end(), nodesInside.begin(), nodesInside.end());
  std::vector<std::uint32_t> elements = DecodeIntegers(source.MakeBlob(7));
  elements.push_back(14);
  const Mesh mesh          = ReadMesh(database, 0, "");
  const auto solids        = numbers("solidElements");
  const auto pointsOfSolid = numbers("solidPoints");
  EXPECT_EQ(numbers("solidTypes"), std::vector<std::uint32_t>(27, 1));
  ASSERT_EQ(solids.size(), 27u);
  ASSERT_EQ(pointsOfSolid.size(), 216u);
  for (std::size_t solid = 0; solid < 27; ++solid) {
    const auto position = mesh.FindElement(static_cast<int>(elements.at(solids[solid])));
    ASSERT_TRUE(position);
    const auto nodes = mesh.NodesOf(mesh.Elements()[*position]);
    for (std::size_t i = 0; i < 8; ++i)
      EXPECT_EQ(static_cast<int>(ids.at(pointsOfSolid[8 * solid + i])), mesh.NodeIds()[nodes[i]]);
  }
  const Json::Array& parts = ListAt(At(source.GetHeader(), "model"), "parts");
  EXPECT_EQ(JsonText(At(parts[0], "solids")), "[0,27]");

  const auto values = [&](std::size_t field) {
    return DecodeFloats(source.MakeBlob(NumberOf(ListAt(ListAt(inside, "fields")[field], "blobs")[0])));
  };
  const std::vector<float> displacements = values(0);
  ASSERT_EQ(displacements.size(), 24u);
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(displacements[i], static_cast<float>(nodesInside[i]));
  EXPECT_EQ(values(1), (std::vector<float>{114, 0, 0, 0, 0, 0}));
}

TEST_F(PageSourceTest, LeavesOutTheInsideWhereItIsNotWanted)
{
  EXPECT_GT(Make().NumBlobs(), Make().NumOutsideBlobs());
  request_.leavesOutInside = true;
  PageSource source        = Make();
  EXPECT_EQ(source.NumBlobs(), source.NumOutsideBlobs());
  for (const auto& [name, value] : std::get<Json::Object>(source.GetHeader().Get())) EXPECT_NE(name, "inside");
}

TEST_F(PageSourceTest, ListsSetsOfNodesWithWhatIsDrawnOfThem)
{
  FED_ResultDatabase database;
  WriteCube(database);
  WriteSet(database, OnfKind::NodeSet, 1, "DEEP", {22, 1, 22, 4711});
  WriteSet(database, OnfKind::NodeSet, 2, "STRAY", {4711});
  WriteSet(database, OnfKind::NodeSet, 3, "HIDDEN", {23});
  WriteSet(database, OnfKind::NodeSet, 4, "FACE", {3, 1, 2});
  request_.database         = &database;
  request_.blocks           = BlocksOf(database, {510});
  PageSource         source = Make();
  const Json&        model  = At(source.GetHeader(), "model");
  const Json::Array& sets   = ListAt(model, "nodeSets");
  ASSERT_EQ(sets.size(), 3u) << "a set without a node of the mesh marks nothing";
  EXPECT_EQ(JsonText(sets[0]), R"({"name":"DEEP","nodes":2,"points":[0,1]})");
  EXPECT_EQ(JsonText(sets[1]), R"({"name":"HIDDEN","nodes":1,"points":[1,0]})");
  EXPECT_EQ(JsonText(sets[2]), R"({"name":"FACE","nodes":3,"points":[1,3]})");
  EXPECT_EQ(DecodeIntegers(source.MakeBlob(NumberOf(At(At(model, "blobs"), "setNodes")))),
            (std::vector<std::uint32_t>{0, 0, 1, 2}));
}

TEST_F(PageSourceTest, ManySetsLeaveMaterialsAsParts)
{
  for (const int count : {1000, 1001}) {
    FED_ResultDatabase       database;
    std::vector<NodeRow>     nodes;
    std::vector<ElementLine> elements;
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
    PageSource  source(request, listener_);
    const Json& model = At(source.GetHeader(), "model");
    EXPECT_EQ(ListAt(model, "parts").size(), count == 1000 ? 1000u : 1u);
    EXPECT_EQ(std::get<bool>(At(model, "leavesOutSets").Get()), count > 1000);
    EXPECT_EQ(source.NumOutsideBlobs(), source.NumBlobs()) << "shells have no inside";
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
