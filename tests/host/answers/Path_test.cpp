#include "answers/Path.h"
#include "answers/Region.h"

#include <cmath>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

#include "AnswerSupport.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"

namespace {

using namespace quilon;
using namespace quilon_test;

/// A field that is linear in space, another one for each component.
Tensor LinearTensor(const Vector& at)
{
  Tensor tensor;
  for (std::size_t k = 0; k < 6; ++k) tensor[k] = 10.0 * double(k + 1) + at[0] * double(k) - 2.0 * at[1] + 0.5 * at[2];
  return tensor;
}

class Path : public ::testing::Test
{
protected:
  Path()
  {
    WriteTwoCubes(database_);
    const FED_DataBlock& coordinates = database_.GetConstDataBlock(FED_DataDescriptor(0, OnfKind::Coordinates));
    for (int node = 1; node <= 12; ++node) {
      Vector at;
      coordinates.GetValuesAt(static_cast<std::size_t>(node), at.data());
      WriteTensor(database_, ResultKey(OnfKind::NodalStress), node, LinearTensor(at));
      WriteVector(database_, ResultKey(OnfKind::Displacement), node, {at[0], 2 * at[1], -at[2]});
      WriteScalar(database_, ResultKey(OnfKind::Temperature), node, 20 + at[0]);
    }
    WriteTensor(database_, ResultKey(OnfKind::ElementStress), 10, {1, 2, 3, 4, 5, 6});
    WriteTensor(database_, ResultKey(OnfKind::ElementStress), 20, {10, 20, 30, 40, 50, 60});
  }

  PathReport Follow(const std::string& selection, PathRequest request)
  {
    request.database  = "cubes";
    request.selection = Selection(selection, KindTable(database_));
    const auto blocks = request.selection.Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern()));
    return FollowPath(database_, blocks, request);
  }

  PathReport Follow(const std::string& selection, const std::vector<PathPlace>& places)
  {
    PathRequest request;
    request.places = places;
    return Follow(selection, request);
  }

  FED_ResultDatabase database_;
};

TEST_F(Path, InterpolatesInTheElementThatHoldsThePlace)
{
  const PathReport report = Follow("stress,displacement,temperature@lc=1", PlacesOnLine({0.5, 1, 1}, {3.5, 1.5, 1}, 5));
  ASSERT_EQ(report.points.size(), 5u);
  ASSERT_EQ(report.steps.size(), 1u);
  const PathStep& step = report.steps[0];
  EXPECT_EQ(ToSelectionText(step.key), "0@it=0,an=1,lc=1,sub=1");
  EXPECT_EQ(step.columns, (std::vector<std::string>{"displacement-x", "displacement-y", "displacement-z", "temperature",
                                                    "xx", "yy", "zz", "xy", "yz", "zx"}));
  const int elements[] = {10, 10, 10, 20, 20};
  for (std::size_t p = 0; p < 5; ++p) {
    const Vector at = {0.5 + 0.75 * double(p), 1 + 0.125 * double(p), 1};
    EXPECT_EQ(report.points[p].element, elements[p]) << p;
    EXPECT_NEAR(report.points[p].s, std::hypot(0.75, 0.125) * double(p), 1e-14);
    EXPECT_NEAR(*step.rows[p][1], 2 * at[1], 1e-13);
    EXPECT_NEAR(*step.rows[p][3], 20 + at[0], 1e-13);
    for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(*step.rows[p][4 + k], LinearTensor(at)[k], 1e-12) << p << " " << k;
  }
}

TEST_F(Path, RecordsOfElementsAreTheSameAllOverTheirElement)
{
  const PathReport report = Follow("element-stress", {{0.5, 1, 1}, {2, 1, 1}, {2.5, 0, 0}});
  EXPECT_EQ(report.steps[0].rows[0][5], 6.0);
  EXPECT_EQ(report.steps[0].rows[1][5], 6.0) << "the face belongs to the least id";
  EXPECT_EQ(report.steps[0].rows[2][5], 60.0);
}

// A place in the face between two elements is in that of the region.
TEST_F(Path, IsWithinTheElementsOfARegion)
{
  Region      region(database_, {"20"}, "cubes");
  PathRequest request;
  request.places          = {{1, 1, 1}, {2, 1, 1}, {3, 1, 1}};
  request.region          = &region;
  const PathReport report = Follow("element-stress", request);
  EXPECT_FALSE(report.points[0].element.has_value());
  EXPECT_EQ(report.points[1].element, 20);
  EXPECT_EQ(report.steps[0].rows[1][5], 60.0);
  Region other(database_, {"30"}, "cubes");
  request.region = &other;
  EXPECT_EQ(FailureOf([&] { Follow("stress", request); }),
            "cubes: no solid element is in --ids 30, expected a region that holds one");
}

TEST_F(Path, APlaceOutsideHasNoElementAndNoValue)
{
  const PathReport report = Follow("stress", {{-1, 1, 1}, {1, 1, 1}, {5, 1, 1}});
  EXPECT_FALSE(report.points[0].element.has_value());
  EXPECT_EQ(report.points[1].element, 10);
  EXPECT_FALSE(report.points[2].element.has_value());
  EXPECT_EQ(report.steps[0].rows[0].size(), 6u);
  EXPECT_FALSE(report.steps[0].rows[0][0].has_value());
  EXPECT_TRUE(report.steps[0].rows[1][0].has_value());
  EXPECT_EQ(report.points[2].s, 6.0);
  EXPECT_EQ(report.steps[0].numWithoutValues, 0u) << "these are outside, which is another thing";
}

// Nodes 1 to 4 are at x = 0, 9 to 12 at x = 4; of those that are as near the least id is told.
TEST_F(Path, ALineThatIsWhollyOutsideIsAFailure)
{
  EXPECT_EQ(FailureOf([&] {
              Follow("stress", PlacesOnLine({7, 0, 1}, {9, 0, 1}, 3));
            }),
            "cubes: all 3 points are outside of all solid elements, which are from 0,0,0 to 4,2,2; nearest to 7,0,1 is "
            "node 9 at 4,0,0, 3.16228 away. Expected a line that passes one");
  Region      region(database_, {"10"}, "cubes");
  PathRequest request;
  request.places = {{3, 1, 0}};
  request.region = &region;
  EXPECT_EQ(FailureOf([&] { Follow("stress", request); }),
            "cubes: the point is outside of all solid elements of --ids 10, which are from 0,0,0 to 2,2,2; nearest to "
            "3,1,0 is node 5 at 2,0,0, 1.41421 away. Expected a line that passes one");
}

TEST_F(Path, APlaceInAnElementWithANodeWithoutAValueHasNone)
{
  for (int node = 1; node <= 11; ++node)
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 2), node, {1, 1, 1, 0, 0, 0});
  const PathReport report = Follow("stress@lc=2", {{1, 1, 1}, {3, 1, 1}, {4, 0, 0}});
  EXPECT_EQ(report.steps[0].rows[0][0], 1.0);
  EXPECT_EQ(report.points[1].element, 20);
  EXPECT_FALSE(report.steps[0].rows[1][0].has_value());
  EXPECT_EQ(report.steps[0].rows[2][0], 1.0) << "at node 9 no other node counts";
  EXPECT_EQ(report.steps[0].numWithoutValues, 1u);
}

// The tensors at the two ends are opposite: half way nothing is left, whatever the invariants of the ends are.
TEST_F(Path, PrincipalValuesAreThoseOfTheInterpolatedTensor)
{
  for (int node = 1; node <= 12; ++node) {
    const double sign = node <= 4 ? 1 : -1;
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 2), node, {3 * sign, 2 * sign, sign, 0, 0, 0});
    WriteVector(database_, ResultKey(OnfKind::NodalStressPrincipal, 2), node, {3, 2, 1});
  }
  const PathReport report = Follow("stress-principal@lc=2", {{0, 1, 1}, {1, 1, 1}, {2, 1, 1}});
  EXPECT_EQ(report.steps[0].columns, (std::vector<std::string>{"p1", "p2", "p3"}));
  EXPECT_NEAR(*report.steps[0].rows[0][0], 3.0, 1e-13);
  EXPECT_NEAR(*report.steps[0].rows[1][0], 0.0, 1e-13);
  EXPECT_NEAR(*report.steps[0].rows[2][0], -1.0, 1e-13);
  WriteVector(database_, ResultKey(OnfKind::NodalStressPrincipal, 3), 1, {3, 2, 1});
  EXPECT_EQ(FailureOf([&] {
              Follow("520@lc=3", std::vector<PathPlace>{{1, 1, 1}});
            }),
            "cubes: no tensors (521@it=0,an=1,lc=3,sub=1) behind 520@it=0,an=1,lc=3,sub=1, expected them: principal "
            "values along a line are those of the interpolated tensor");
}

TEST_F(Path, ComponentsAreInTheAxesAtThePlace)
{
  PathRequest request;
  request.places          = {{1, 1, 1}, {3, 0, 1}, {0, 0, 1}};
  request.axes            = "cylindrical:0,0,0,0,0,1";
  const PathReport report = Follow("stress@lc=1", request);
  EXPECT_EQ(report.axes, "axes: x radial, y tangential, z along the axis through 0,0,0 along 0,0,1");
  const Tensor t = LinearTensor({1, 1, 1});
  EXPECT_NEAR(*report.steps[0].rows[0][0], 0.5 * (t[0] + t[1]) + t[3], 1e-12);
  EXPECT_NEAR(*report.steps[0].rows[0][3], 0.5 * (t[1] - t[0]), 1e-12);
  EXPECT_NEAR(*report.steps[0].rows[1][0], LinearTensor({3, 0, 1})[0], 1e-12);
  EXPECT_FALSE(report.steps[0].rows[2][0].has_value()) << "on the axis no direction is radial";
  EXPECT_EQ(report.steps[0].numWithoutAxes, 1u);
}

// Directions are those of the interpolated tensor: of xy alone at 45 degrees.
TEST_F(Path, PrincipalAxesAreToldWithTheirDirections)
{
  for (int node = 1; node <= 12; ++node)
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 2), node, {0, 0, 0, node <= 4 ? 1.0 : 3.0, 0, 0});
  PathRequest request;
  request.places          = {{1, 1, 1}, {-1, 1, 1}};
  request.axes            = "principal";
  const PathReport report = Follow("stress@lc=2", request);
  EXPECT_EQ(report.steps[0].columns, (std::vector<std::string>{"xx", "yy", "zz", "xy", "yz", "zx", "x1", "y1", "z1",
                                                               "x2", "y2", "z2", "x3", "y3", "z3"}));
  const double h          = std::sqrt(0.5);
  const double expected[] = {2, 0, -2, 0, 0, 0, h, h, 0, 0, 0, 1, h, -h, 0};
  for (std::size_t k = 0; k < 15; ++k) EXPECT_NEAR(*report.steps[0].rows[0][k], expected[k], 1e-14) << k;
  EXPECT_EQ(report.steps[0].rows[1].size(), 15u);
  EXPECT_FALSE(report.steps[0].rows[1][14].has_value());
}

TEST_F(Path, EachResultStepIsTold)
{
  for (int node = 1; node <= 12; ++node) WriteScalar(database_, ResultKey(OnfKind::Temperature, 2), node, node);
  const PathReport report = Follow("temperature", std::vector<PathPlace>{{0, 0, 0}});
  ASSERT_EQ(report.steps.size(), 2u);
  EXPECT_EQ(report.steps[0].rows[0][0], 20.0);
  EXPECT_EQ(report.steps[1].rows[0][0], 1.0);
}

TEST_F(Path, SeveralKindsOfTensorsStandBeforeTheirComponents)
{
  const PathReport report = Follow("stress,element-stress", std::vector<PathPlace>{{1, 1, 1}});
  EXPECT_EQ(report.steps[0].columns[0], "stress-xx");
  EXPECT_EQ(report.steps[0].columns[6], "element-stress-xx");
}

TEST_F(Path, KindsWithoutValuesAlongALineAreLeftOutAndNamed)
{
  const PathReport report = Follow("temperature,element-nodes", std::vector<PathPlace>{{1, 1, 1}});
  EXPECT_EQ(report.skippedKinds, std::vector<std::string>{"element-nodes"});
  EXPECT_EQ(
      FailureOf([&] {
        Follow("element-nodes", std::vector<PathPlace>{{1, 1, 1}});
      }),
      "cubes: no values along a line in element-nodes, expected scalars, vectors or tensors of nodes or elements");
}

TEST_F(Path, AMeshWithoutSolidsIsAFailure)
{
  database_.DeleteDataBlock(FED_DataDescriptor(0, OnfKind::ElementType));
  EXPECT_EQ(FailureOf([&] {
              Follow("temperature", std::vector<PathPlace>{{1, 1, 1}});
            }),
            "cubes: no solid elements, expected the mesh of a .frd or a deck (blocks 595 and 596)");
}

// Components are linear along the line: all of it is membrane and bending.
TEST_F(Path, LinearizesALinearStressToMembraneAndBending)
{
  PathRequest request;
  request.places          = PlacesOnLine({0, 1, 1}, {4, 1, 1}, 9);
  request.linearize       = true;
  const PathReport report = Follow("stress@lc=1", request);
  ASSERT_TRUE(report.steps[0].linearization.has_value());
  const auto& parts = report.steps[0].linearization->parts;
  ASSERT_EQ(parts.size(), 7u);
  const char* names[] = {"membrane",   "bending-start", "bending-end", "membrane-bending-start", "membrane-bending-end",
                         "peak-start", "peak-end"};
  for (std::size_t i = 0; i < 7; ++i) EXPECT_STREQ(parts[i].name, names[i]);
  for (std::size_t k = 0; k < 6; ++k) {
    EXPECT_NEAR(parts[0].tensor[k], LinearTensor({2, 1, 1})[k], 1e-12);
    EXPECT_NEAR(parts[1].tensor[k], -2.0 * double(k), 1e-12);
    EXPECT_NEAR(parts[4].tensor[k], LinearTensor({4, 1, 1})[k], 1e-12);
    EXPECT_NEAR(parts[6].tensor[k], 0.0, 1e-12);
  }
  // mises of the bending 0, 2, 4, 6, 8, 10 (times -1): sqrt((4 + 4 + 16) / 2 + 3 (36 + 64 + 100))
  EXPECT_NEAR(parts[1].mises, std::sqrt(612.0), 1e-12);
}

TEST_F(Path, OnlyAWholeLineOfOneStressIsLinearized)
{
  PathRequest request;
  request.linearize  = true;
  request.places     = PlacesOnLine({0, 1, 1}, {5, 1, 1}, 6);
  const auto failure = [&](const std::string& selection) { return FailureOf([&] { Follow(selection, request); }); };
  EXPECT_EQ(failure("stress@lc=1"),
            "--linearize: 1 point of 6 outside of all solid elements, the first at 5,1,1 (s = 5), expected a line "
            "through one wall");
  request.places = PlacesOnLine({0, 1, 1}, {4, 1, 1}, 5);
  const std::string one =
      "--linearize is of one kind of stress, expected one in the selection, such as stress@lc=1,sub=last";
  EXPECT_EQ(failure("displacement"), one);
  EXPECT_EQ(failure("stress,element-stress"), one);
  request.axes = "principal";
  EXPECT_EQ(failure("stress"),
            "--linearize adds up components in axes that stay, expected other --axes than principal ones");
  request.axes = "cylindrical:0,1,1,0,0,1";
  EXPECT_EQ(failure("stress"),
            "--linearize: 1 point on the axis of --axes, where no direction is radial, expected a line beside it");
  request.axes.clear();
  request.places = PlacesOnLine({0, 1, 1}, {4, 1, 1}, 2);
  EXPECT_EQ(failure("stress"), "--linearize needs 3 points or more, found 2");
  for (int node = 1; node <= 11; ++node)
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 2), node, {1, 1, 1, 0, 0, 0});
  request.places = PlacesOnLine({0, 1, 1}, {4, 1, 1}, 5);
  EXPECT_EQ(
      failure("stress@lc=2"),
      "--linearize: points without a stress in @it=0,an=1,lc=2,sub=1: nodes of their elements have none, expected "
      "a line whose points all have one");
}

TEST_F(Path, AGroupThatEndsWithinAWallSuggestsTheAveragesOfAll)
{
  FED_DataDescriptor group = ResultKey(OnfKind::NodalStress, 1);
  group.SetInteger(OnfIndex::Group, 2);
  for (int node = 1; node <= 8; ++node) WriteTensor(database_, group, node, {1, 1, 1, 0, 0, 0});
  PathRequest request;
  request.linearize          = true;
  request.places             = PlacesOnLine({0, 1, 1}, {4, 1, 1}, 5);
  const std::string expected = "expected a line whose points all have one";
  const auto        failure  = [&] { return FailureOf([&] { Follow("stress@lc=1,group=2", request); }); };
  EXPECT_EQ(failure(),
            "--linearize: points without a stress in @it=0,an=1,lc=1,sub=1,group=2: nodes of their elements have none, "
            "expected a line whose points all have one, or the averages over all elements: '@group=none'");
  EXPECT_EQ(Follow("stress@lc=1,group=none", request).steps.size(), 1u);
  database_.DeleteDataBlock(ResultKey(OnfKind::NodalStress, 1));
  EXPECT_TRUE(failure().ends_with(expected)) << failure();
}

TEST(PathPlaces, OnALineHaveEqualDistancesAndBothEnds)
{
  const auto places = PlacesOnLine({0.1, 0, 0}, {0.7, 1, -2}, 4);
  ASSERT_EQ(places.size(), 4u);
  EXPECT_EQ(places[0], (PathPlace{0.1, 0, 0}));
  EXPECT_EQ(places[3], (PathPlace{0.7, 1, -2}));
  EXPECT_NEAR(places[1][0], 0.3, 1e-15);
  EXPECT_EQ(FailureOf([] { PlacesOnLine({0, 0, 0}, {1, 0, 0}, 1); }), "--points is 1, expected 2 or more");
  EXPECT_EQ(FailureOf([] {
              PlacesOnLine({1, 2, 3}, {1, 2, 3}, 5);
            }),
            "--from and --to are both 1,2,3, expected two places");
}

TEST(PathPlaces, AreReadFromLinesOfThreeNumbers)
{
  std::istringstream in("# places\n0 0 0\n\n 1,2,3 # one\n1 ,2\t, 3\n-1e-3   .5\t7\r\n");
  EXPECT_EQ(ReadPlaces(in, "places.txt"), (std::vector<PathPlace>{{0, 0, 0}, {1, 2, 3}, {1, 2, 3}, {-1e-3, 0.5, 7}}));
  for (const char* line : {"1 2", "1 2 3 4", "1,,2,3", "1 2 x", "1 2 nan", ",1,2,3", "1,2,3,"}) {
    std::istringstream wrong(std::string("0 0 0\n") + line + "\n");
    EXPECT_EQ(FailureOf([&] { ReadPlaces(wrong, "places.txt"); }),
              "places.txt:2: expected the three coordinates of a place, found '" + std::string(line) + "'");
  }
  std::istringstream none("# nothing\n");
  EXPECT_EQ(FailureOf([&] { ReadPlaces(none, "places.txt"); }),
            "places.txt:2: expected a place: three numbers, found the end of the file");
}

}  // namespace
