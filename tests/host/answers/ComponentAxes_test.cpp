#include "answers/ComponentAxes.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "AnswerSupport.h"
#include "mesh/Mesh.h"

namespace {

using namespace quilon;
using namespace quilon_test;

void WriteOrientation(FED_Database& database, int number, const std::string& name, int system,
                      const std::vector<double>& numbers)
{
  FED_IdDataBlock   view   = ViewOf(database, FED_DataDescriptor(0, OnfKind::Orientation));
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.GetDataRecord().SetString(1, name);
  record.GetDataRecord().SetInteger(2, system);
  record.GetDataRecord().SetDoubleList(3, numbers);
  view.SetRecord(number, record);
}

ComponentAxes Parse(const std::string& text)
{
  FED_ResultDatabase database;
  return ComponentAxes(text, database, 0);
}

void ExpectAxes(const ComponentAxes& axes, const Vector& place, const LocalAxes& expected)
{
  const auto found = axes.At(place);
  ASSERT_TRUE(found.has_value());
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR((*found)[i][k], expected[i][k], 1e-15) << i << " " << k;
}

TEST(ComponentAxes, AreGlobalUnlessAskedFor)
{
  EXPECT_EQ(ComponentAxes().GetForm(), ComponentAxes::Global);
  EXPECT_EQ(Parse("Global").GetForm(), ComponentAxes::Global);
  EXPECT_EQ(Parse("global").Describe(), "");
  ExpectAxes(ComponentAxes(), {1, 2, 3}, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
}

TEST(ComponentAxes, ACylinderHasAPointAndADirection)
{
  const ComponentAxes axes = Parse("cylindrical:1,0,5,0,0,2");
  EXPECT_TRUE(axes.NeedsPlaces());
  ExpectAxes(axes, {1, 3, 7}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}});
  EXPECT_FALSE(axes.At({1, 0, -4}).has_value()) << "on the axis no direction is radial";
  EXPECT_EQ(axes.Describe(), "axes: x radial, y tangential, z along the axis through 1,0,5 along 0,0,2");
}

TEST(ComponentAxes, ARectangularSystemHasTwoVectors)
{
  const ComponentAxes axes = Parse("rectangular:0,2,0,-3,1,0");
  EXPECT_FALSE(axes.NeedsPlaces());
  ExpectAxes(axes, {9, 9, 9}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}});
  EXPECT_EQ(axes.Describe(), "axes: x along 0,1,0, y along -1,0,0, z along 0,0,1");
}

TEST(ComponentAxes, AnOrientationOfTheDeckIsTakenByItsName)
{
  FED_ResultDatabase database;
  WriteOrientation(database, 1, "ROUND", 1, {1, 0, 0, 1, 0, 5});
  WriteOrientation(database, 2, "turned", 0, {1, 0, 0, 0, 1, 0, 3, 90});
  WriteOrientation(database, 3, "global", 0, {0, 1, 0, 1, 0, 0});
  const ComponentAxes round("round", database, 0);
  EXPECT_EQ(round.GetForm(), ComponentAxes::Cylindrical);
  ExpectAxes(round, {1, 3, 7}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}});
  ExpectAxes(ComponentAxes("turned", database, 0), {}, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}});
  EXPECT_EQ(ComponentAxes("turned", database, 0).Describe(),
            "axes of orientation turned: x along 0,1,0, y along -1,0,0, z along 0,0,1");
  EXPECT_EQ(ComponentAxes("global", database, 0).GetForm(), ComponentAxes::Global) << "words come first";
  ExpectAxes(ComponentAxes("orientation:global", database, 0), {}, {{{0, 1, 0}, {1, 0, 0}, {0, 0, -1}}});
}

TEST(ComponentAxes, TellsOfNamesThatAreNotThere)
{
  FED_ResultDatabase database;
  const auto         failure = [&](const char* text) { return FailureOf([&] { ComponentAxes(text, database, 0); }); };
  const std::string  expected =
      "expected global, principal, cylindrical:px,py,pz,dx,dy,dz, rectangular:ax,ay,az,bx,by,bz or the name of an "
      "orientation";
  EXPECT_EQ(failure("here"), "--axes is 'here', " + expected + "; the database has none: import it with the deck");
  WriteOrientation(database, 1, "ROUND", 1, {1, 0, 0, 1, 0, 5});
  WriteOrientation(database, 2, "Or2", 1, {1, 0, 0, 1, 0, 5});
  WriteOrientation(database, 3, "OR2", 1, {1, 0, 0, 1, 0, 5});
  EXPECT_EQ(failure("here"), "--axes is 'here', " + expected + "; the database has ROUND, Or2, OR2");
  EXPECT_EQ(failure("ROUN"), "--axes is 'ROUN', did you mean 'ROUND'?");
  EXPECT_EQ(failure("or2"), "--axes is 'or2', which may be any of Or2, OR2: write it in the case that it has");
  EXPECT_EQ(failure("Or2"), "no failure");
  WriteOrientation(database, 4, "flat", 0, {1, 0, 0, 2, 0, 0});
  EXPECT_EQ(failure("flat"), "orientation 'flat' gives no system of axes");
  WriteOrientation(database, 5, "odd", 7, {1, 0, 0, 2, 0, 0});
  EXPECT_EQ(failure("flat"),
            "orientation 5 of the database has 6 numbers and system 7, expected six or more and "
            "system 0 or 1");
}

TEST(ComponentAxes, TellsOfNumbersThatGiveNoSystem)
{
  const auto failure = [](const char* text) { return FailureOf([&] { Parse(text); }); };
  for (const char* text : {"cylindrical:0,0,0,0,0,0", "cylindrical:0,0,0,0,0", "cylindrical:", "cylindrical",
                           "cylindrical:0,0,0,0,0,x", "cylindrical:0,0,0,0,0,inf"})
  {
    EXPECT_EQ(failure(text), "--axes is '" + std::string(text) +
                                 "', expected six numbers: cylindrical:px,py,pz,dx,dy,dz with a point of the axis and "
                                 "a direction that is not zero");
  }
  EXPECT_EQ(failure("rectangular:1,2,3,2,4,6"),
            "--axes is 'rectangular:1,2,3,2,4,6', expected six numbers: rectangular:ax,ay,az,bx,by,bz with two vectors "
            "that are not parallel");
}

class TurnedRecords : public ::testing::Test
{
protected:
  TurnedRecords()
  {
    WriteTwoCubes(database_);
    mesh_ = ReadMesh(database_, 0, "cubes");
  }

  FED_ResultDatabase  database_;
  Mesh                mesh_;
  const ComponentAxes round_ = Parse("cylindrical:0,0,0,0,0,1");
};

// Node 7 is at (2, 2, 2): radial is (1, 1) / sqrt(2). Of yy = 1 radial and tangential get a half each, and -1/2 shear
// of (r, t): r_y t_y = (1/sqrt 2)(1/sqrt 2).
TEST_F(TurnedRecords, OfNodesAreTurnedWhereTheNodeIs)
{
  Tensor tensor = {0, 1, 0, 0, 0, 0};
  EXPECT_TRUE(RecordTurner(round_, OnfKind::NodalStress, &mesh_).Turn(7, tensor));
  const Tensor expected = {0.5, 0.5, 0, 0.5, 0, 0};
  for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(tensor[k], expected[k], 1e-15) << k;

  Vector vector = {1, 0, 3};
  EXPECT_TRUE(RecordTurner(round_, OnfKind::Displacement, &mesh_).Turn(7, vector));
  EXPECT_NEAR(vector[0], std::sqrt(0.5), 1e-15);
  EXPECT_NEAR(vector[1], -std::sqrt(0.5), 1e-15);
  EXPECT_EQ(vector[2], 3.0);

  double scalar = 5;
  EXPECT_TRUE(RecordTurner(round_, OnfKind::Temperature, &mesh_).Turn(7, std::span<double>(&scalar, 1)));
  EXPECT_EQ(scalar, 5.0);
}

// The mean of the nodes of element 20 is (3, 1, 1).
TEST_F(TurnedRecords, OfElementsAreTurnedAtTheMeanOfTheirNodes)
{
  Tensor tensor = {1, 0, 0, 0, 0, 0};
  EXPECT_TRUE(RecordTurner(round_, OnfKind::ElementStress, &mesh_).Turn(20, tensor));
  EXPECT_NEAR(tensor[0], 0.9, 1e-15);
  EXPECT_NEAR(tensor[1], 0.1, 1e-15);
  EXPECT_NEAR(tensor[3], -0.3, 1e-15);
}

// The points of a brick lie at +-1 / sqrt(3) of its middle; node 5 of element 20 is its first, at (2, 0, 0).
TEST_F(TurnedRecords, OfPointsAndNodesOfElementsAreTurnedWhereTheseAre)
{
  Tensor             tensor = {1, 0, 0, 0, 0, 0};
  const double       x      = 3 - std::sqrt(1.0 / 3.0);
  const double       y      = 1 - std::sqrt(1.0 / 3.0);
  const RecordTurner points(round_, OnfKind::IntegrationPointStress, &mesh_);
  EXPECT_TRUE(points.TurnPart(20, 0, 8, tensor));
  EXPECT_NEAR(tensor[0], x * x / (x * x + y * y), 1e-14);
  EXPECT_NEAR(tensor[3], -x * y / (x * x + y * y), 1e-14);
  EXPECT_FALSE(points.TurnPart(20, 0, 5, tensor)) << "no rule has five points";
  EXPECT_FALSE(points.TurnPart(99, 0, 8, tensor));

  Vector             vector = {1, 0, 3};
  const RecordTurner forces(round_, OnfKind::ElementForces, &mesh_);
  EXPECT_TRUE(forces.TurnPart(20, 3, 8, vector));  // node 6, at (2, 2, 0)
  EXPECT_NEAR(vector[0], std::sqrt(0.5), 1e-15);
  EXPECT_NEAR(vector[1], -std::sqrt(0.5), 1e-15);
  EXPECT_FALSE(forces.TurnPart(20, 8, 9, vector));
}

TEST_F(TurnedRecords, AreNoNumbersWhereThereAreNoAxes)
{
  const RecordTurner turner(round_, OnfKind::NodalStress, &mesh_);
  for (const int id : {1, 4, 999}) {  // 1 and 4 are on the axis
    Tensor tensor = {1, 2, 3, 4, 5, 6};
    EXPECT_FALSE(turner.Turn(id, tensor)) << id;
    for (const double value : tensor) EXPECT_TRUE(std::isnan(value)) << id;
  }
}

TEST_F(TurnedRecords, OfPrincipalAxesAreThePrincipalValues)
{
  const ComponentAxes principal = Parse("principal");
  EXPECT_EQ(principal.Describe(), "principal axes, the largest value first");
  Tensor tensor = {1, 1, 5, 2, 0, 0};
  EXPECT_TRUE(RecordTurner(principal, OnfKind::NodalStress, nullptr).Turn(1, tensor));
  const Tensor expected = {5, 3, -1, 0, 0, 0};
  for (std::size_t k = 0; k < 6; ++k) EXPECT_NEAR(tensor[k], expected[k], 1e-14) << k;
}

TEST_F(TurnedRecords, GlobalAxesTurnNothing)
{
  Vector vector = {1, 2, 3};
  EXPECT_TRUE(RecordTurner(ComponentAxes(), OnfKind::NodalStressPrincipal, nullptr).Turn(1, vector));
  EXPECT_EQ(vector, (Vector{1, 2, 3}));
}

TEST_F(TurnedRecords, OfKindsWithoutAxesAreAFailure)
{
  const ComponentAxes principal = Parse("principal");
  const auto          failure   = [&](const ComponentAxes& axes, int onf) {
    return FailureOf([&] { RecordTurner(axes, onf, &mesh_); });
  };
  EXPECT_EQ(failure(round_, OnfKind::NodalStressPrincipal),
            "--axes: nodal-stress-principal (520) holds principal values, expected a vector or a tensor");
  EXPECT_EQ(failure(round_, OnfKind::Coordinates),
            "--axes: coordinates (516) holds places, expected a vector or a tensor");
  EXPECT_EQ(failure(round_, OnfKind::NodalStrainVariance),
            "--axes: nodal-strain-variance (553) holds a variance of each component, expected a vector or a tensor");
  EXPECT_EQ(failure(round_, OnfKind::ElementNodes),
            "--axes: element-nodes (595) has no components, expected a vector or a tensor");
  EXPECT_EQ(failure(principal, OnfKind::Displacement),
            "--axes: displacement (510) holds vectors, which have no principal axes, expected a tensor");
}

}  // namespace
