#include "forces/ElementForces.h"

#include <cmath>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "../import/ImportTestSupport.h"
#include "ForceSupport.h"

namespace quilon::calculix {
namespace {

using namespace quilon_test;

constexpr std::array<double, 6> kTension = {3, 0, 0, 0, 0, 0};

class ElementForcesTest : public testing::Test
{
protected:
  ForceStep Calculate(const ForceMesh& mesh, bool deformed = false)
  {
    ElementForces   forces(database_, mesh, 0, "job");
    const ForceStep step = forces.Calculate(ResultKey(582), deformed);
    skipped_             = step.skipped;
    return step;
  }

  std::map<int, std::vector<double>> Forces() { return ListsOf(database_, ResultKey(580), 1); }

  std::string FailureOf(const ForceMesh& mesh, bool deformed = false)
  {
    try {
      Calculate(mesh, deformed);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return "";
  }

  FED_ResultDatabase database_;
  SkippedElements    skipped_;
};

// A face of 4 under 3: a quarter of 12 at each of its nodes, in the elements' own order of nodes.
TEST_F(ElementForcesTest, AreSavedInTheOrderOfTheElementsNodes)
{
  WriteStress(database_, 10, kTension);
  WriteStress(database_, 20, {0, 0, 0, 0, 0, 0});
  const ForceStep step = Calculate(TwoCubes());

  EXPECT_EQ(step.forces, ResultKey(580));
  EXPECT_EQ(step.numElements, 2u);
  EXPECT_EQ(step.hasForces, (std::vector<bool>{true, true}));
  EXPECT_FALSE(step.deformed);
  EXPECT_NEAR(step.largestSum, 3.0, 1e-14);
  EXPECT_EQ(step.errorBound, 0.0);
  EXPECT_EQ(ElementNodes(database_),
            (std::map<int, std::vector<int>>{{10, {1, 5, 6, 2, 4, 8, 7, 3}}, {20, {5, 9, 10, 6, 8, 12, 11, 7}}}));
  const auto forces = Forces();
  ASSERT_EQ(forces.size(), 2u);
  ASSERT_EQ(forces.at(10).size(), 24u);
  const double expected[8] = {-3, 3, 3, -3, -3, 3, 3, -3};
  for (std::size_t n = 0; n < 8; ++n) {
    EXPECT_NEAR(forces.at(10)[3 * n], expected[n], 1e-14);
    EXPECT_NEAR(forces.at(10)[3 * n + 1], 0.0, 1e-14);
    EXPECT_NEAR(forces.at(10)[3 * n + 2], 0.0, 1e-14);
  }
  for (const double value : forces.at(20)) EXPECT_EQ(value, 0.0);
  EXPECT_FALSE(database_.HasDataBlock(ResultKey(581)));  // solids have no moments
  EXPECT_TRUE(skipped_.empty());
}

TEST_F(ElementForcesTest, GetNodeListsOfAllElementsWhateverTheFirstResultHas)
{
  WriteStress(database_, 10, kTension, 8, 1);
  WriteStress(database_, 20, kTension, 8, 2);
  const ForceMesh mesh = TwoCubes();
  ElementForces   forces(database_, mesh, 0, "job");
  EXPECT_TRUE(forces.AddsNodeLists());
  const ForceStep first = forces.Calculate(ResultKey(582, 1), false);
  EXPECT_EQ(first.hasForces, (std::vector<bool>{true, false}));
  EXPECT_EQ(first.skipped, (SkippedElements{{"no stresses", {20}}}));
  EXPECT_EQ(ElementNodes(database_).size(), 2u);
  const ForceStep second = forces.Calculate(ResultKey(582, 2), false);
  EXPECT_EQ(second.hasForces, (std::vector<bool>{false, true}));
  EXPECT_EQ(second.skipped, (SkippedElements{{"no stresses", {10}}}));
  EXPECT_EQ(ListsOf(database_, ResultKey(580, 1), 1).count(20), 0u);
  EXPECT_EQ(ListsOf(database_, ResultKey(580, 2), 1).count(10), 0u);
}

TEST_F(ElementForcesTest, KeepNodeListsThatAreThereAndAddThoseThatAreMissing)
{
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(MeshKey(595), 0), database_.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, std::vector<int>{1, 5, 6, 2, 4, 8, 7, 3});
    view.SetRecord(10, record);
    record.SetIntList(1, std::vector<int>{77, 78});
    view.SetRecord(30, record);
  }
  WriteStress(database_, 10, kTension);
  WriteStress(database_, 20, kTension);
  const ForceMesh mesh = TwoCubes();
  EXPECT_TRUE(ElementForces(database_, mesh, 0, "job").AddsNodeLists());
  EXPECT_EQ(ElementNodes(database_),
            (std::map<int, std::vector<int>>{
                {10, {1, 5, 6, 2, 4, 8, 7, 3}}, {20, {5, 9, 10, 6, 8, 12, 11, 7}}, {30, {77, 78}}}));
  EXPECT_FALSE(ElementForces(database_, mesh, 0, "job").AddsNodeLists());
}

// Its first nodes agree, but forces of eight nodes do not go with a list of ten.
TEST_F(ElementForcesTest, RefuseAnElementWithMoreNodesInTheDatabase)
{
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(MeshKey(595), 0), database_.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, std::vector<int>{1, 5, 6, 2, 4, 8, 7, 3, 9, 10});
    view.SetRecord(10, record);
  }
  WriteStress(database_, 10, kTension);
  EXPECT_EQ(FailureOf(TwoCubes()), "job: element 10 has 8 nodes, expected 10 as in the database");
}

TEST_F(ElementForcesTest, RefuseAnElementWithAnotherOrderOfNodes)
{
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(MeshKey(595), 0), database_.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, std::vector<int>{5, 9, 10, 6, 8, 12, 7, 11});
    view.SetRecord(20, record);
  }
  WriteStress(database_, 20, kTension);
  EXPECT_EQ(FailureOf(TwoCubes()),
            "job: element 20: The Node ID order within the element definition is different from the previously "
            "defined.");
}

// The prism over the triangle (0, 0), (2, 0), (0, 2) of y and z: a third of the area 2 under 3 at each corner of a
// face. A node that is named twice has two places, with half of its force each.
TEST_F(ElementForcesTest, OfACollapsedElementHaveAPlaceForEachTimeThatANodeIsNamed)
{
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "C3D8", 1, {1, 5, 6, 2, 4, 8, 8, 4});
  AddElement(mesh, 40, "C3D8", 1, {5, 9, 10, 6, 8, 12, 12, 8});
  WriteStress(database_, 30, kTension);
  const ForceStep step = Calculate(mesh);
  EXPECT_EQ(step.hasForces, (std::vector<bool>{false, false, true, false}));
  EXPECT_NEAR(step.largestSum, 2.0, 1e-14);
  ASSERT_EQ(Forces().count(30), 1u);
  ASSERT_EQ(Forces().at(30).size(), 24u);
  const double expected[8] = {-2, 2, 2, -2, -1, 1, 1, -1};
  for (std::size_t n = 0; n < 8; ++n) {
    EXPECT_NEAR(Forces().at(30)[3 * n], expected[n], 1e-14);
    EXPECT_NEAR(Forces().at(30)[3 * n + 1], 0.0, 1e-14);
    EXPECT_NEAR(Forces().at(30)[3 * n + 2], 0.0, 1e-14);
  }
  EXPECT_EQ(ElementNodes(database_).at(30), (std::vector<int>{1, 5, 6, 2, 4, 8, 8, 4}));
  EXPECT_EQ(ElementNodes(database_).at(40), (std::vector<int>{5, 9, 10, 6, 8, 12, 12, 8}));
  EXPECT_EQ(skipped_, (SkippedElements{{"no stresses", {10, 20, 40}}}));
}

TEST_F(ElementForcesTest, OfCollapsedElementsAloneAreSavedToo)
{
  ForceMesh mesh;
  mesh.nodes = TwoCubes().nodes;
  AddElement(mesh, 30, "C3D8", 1, {1, 5, 6, 2, 4, 8, 8, 4});
  WriteStress(database_, 30, kTension);
  Calculate(mesh);
  EXPECT_EQ(Forces().size(), 1u);
  EXPECT_EQ(ElementNodes(database_).size(), 1u);
  Calculate(mesh);
  EXPECT_EQ(Forces().size(), 1u);
}

// A database of a .frd has the solid, the deck the shell. Bricks beside it have forces all the same.
TEST_F(ElementForcesTest, LeaveTheNodesOfAnExpandedElementAsTheyAre)
{
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(MeshKey(595), 0), database_.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetIntList(1, std::vector<int>{101, 104, 107, 110, 103, 106, 109, 112});
    view.SetRecord(30, record);
  }
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "S4", 1, {9, 10, 11, 12});
  AddElement(mesh, 40, "SPRINGA", 0, {9, 10});
  for (const int id : {10, 20, 30}) WriteStress(database_, id, kTension);
  const ForceStep step = Calculate(mesh);
  EXPECT_EQ(step.hasForces, (std::vector<bool>{true, true, false, false}));
  EXPECT_EQ(skipped_, (SkippedElements{{"no rule for S4", {30}}, {"no rule for SPRINGA", {40}}}));
  EXPECT_EQ(ElementNodes(database_).at(30), (std::vector<int>{101, 104, 107, 110, 103, 106, 109, 112}));
  EXPECT_EQ(ElementNodes(database_).at(40), (std::vector<int>{9, 10}));
}

TEST_F(ElementForcesTest, AreNotOfSolidsThatWereShellsOrBeams)
{
  ForceMesh  mesh  = TwoCubes(nullptr);
  const auto place = mesh.nodes.At(0);
  for (const int id : {101, 103, 104, 106, 107, 109, 110, 112, 120, 121, 122, 123, 130, 131, 132, 133})
    mesh.nodes.At(mesh.nodes.FindOrInsert(id)) = place;
  AddElement(mesh, 30, nullptr, 1, {101, 104, 107, 110, 103, 106, 109, 112});
  AddElement(mesh, 40, nullptr, 1, {120, 130, 131, 121, 123, 133, 132, 122});
  for (const int id : {10, 20, 30}) WriteStress(database_, id, kTension);
  EXPECT_EQ(Calculate(mesh).hasForces, (std::vector<bool>{true, true, false, false}));
  EXPECT_EQ(skipped_, (SkippedElements{{"no rule for shells and plane elements, which node numbers tell it was", {30}},
                                       {"no rule for beams, which node numbers tell it was", {40}}}));
}

TEST_F(ElementForcesTest, TellWhyAnElementHasNone)
{
  ForceMesh mesh = TwoCubes();
  AddElement(mesh, 30, "C3D8R", 1, {1, 5, 6, 2, 4, 8, 7, 3});
  AddElement(mesh, 31, "S8R", 10, {1, 5, 6, 2, 4, 8, 7, 3});
  AddElement(mesh, 40, "C3D8", 1, {1, 5, 6, 2, 4, 8, 7, 3});
  AddElement(mesh, 50, "C3D8", 1, {5, 1, 2, 6, 8, 4, 3, 7});
  AddElement(mesh, 60, "C3D8", 1, {1, 5, 6, 2, 4, 8, 7, 99});
  AddElement(mesh, 80, "C3D8", 1, {1, 5, 6, 2, 4, 8});
  AddElement(mesh, 90, "C3D20R", 4, {1, 5, 6, 2, 4, 8, 7, 3});
  WriteStress(database_, 10, kTension);
  WriteStress(database_, 30, kTension, 1);
  WriteStress(database_, 40, kTension, 27);
  for (const int id : {50, 60, 80, 90, 1000}) WriteStress(database_, id, kTension);

  const ForceStep step = Calculate(mesh);
  EXPECT_EQ(step.numElements, 1u);
  EXPECT_EQ(Forces().size(), 1u);
  EXPECT_EQ(skipped_, (SkippedElements{{"no stresses", {20}},
                                       {"no rule for C3D8R", {30}},
                                       {"no rule for S8R", {31}},
                                       {"27 integration points, expected 8 of a C3D8", {40}},
                                       {"turned inside out or flat", {50}},
                                       {"a node has no coordinates", {60}},
                                       {"6 nodes, expected 8 of a C3D8", {80}},
                                       {"8 nodes, expected 20 of a C3D20R", {90}},
                                       {"not in the mesh", {1000}}}));
}

TEST_F(ElementForcesTest, GoByTypeCodeAndPointsWhereNoDeckNamesTheType)
{
  ForceMesh mesh = TwoCubes(nullptr);
  AddElement(mesh, 30, nullptr, 1, {1, 5, 6, 2, 4, 8, 7, 3});
  AddElement(mesh, 40, nullptr, 4, {1, 5, 6, 2, 4, 8, 7, 3});
  WriteStress(database_, 10, kTension);
  WriteStress(database_, 20, kTension);
  WriteStress(database_, 30, kTension, 1);
  WriteStress(database_, 40, kTension, 50);
  EXPECT_EQ(Calculate(mesh).numElements, 2u);
  EXPECT_EQ(skipped_,
            (SkippedElements{{"no rule for C3D8R", {30}}, {"no rule for 20-node brick with 50 points", {40}}}));
}

TEST_F(ElementForcesTest, OfIncompatibleModesAreOfLinearStepsOnly)
{
  const ForceMesh mesh = TwoCubes("C3D8I");
  WriteStress(database_, 10, kTension);
  WriteStress(database_, 20, kTension);
  for (int node = 1; node <= 12; ++node) WriteVector(database_, 510, node, {0, 0, 0});
  EXPECT_EQ(Calculate(mesh).numElements, 2u);
  EXPECT_TRUE(skipped_.empty());
  EXPECT_EQ(Calculate(mesh, true).numElements, 0u);
  EXPECT_EQ(skipped_, (SkippedElements{{"no rule for C3D8I in geometrically nonlinear steps", {10, 20}}}));
}

// Nodes at y = 2 move to y = 6: the face under tension is three times as large.
TEST_F(ElementForcesTest, AreOfTheDisplacedNodesInDeformedGeometry)
{
  const ForceMesh mesh = TwoCubes();
  WriteStress(database_, 10, kTension);
  for (int node = 1; node <= 8; ++node) {
    const bool isHigh = node % 4 == 2 || node % 4 == 3;
    WriteVector(database_, 510, node, {0.0, isHigh ? 4.0 : 0.0, 0.0});
  }
  WriteStress(database_, 20, kTension);
  const ForceStep step = Calculate(mesh, true);
  EXPECT_TRUE(step.deformed);
  EXPECT_NEAR(step.largestSum, 9.0, 1e-13);
  EXPECT_EQ(step.positions[1], (std::array<double, 3>{0, 6, 0}));
  EXPECT_EQ(step.hasForces, (std::vector<bool>{true, false}));
  EXPECT_EQ(skipped_, (SkippedElements{{"a node has no displacement", {20}}}));
}

TEST_F(ElementForcesTest, NeedDisplacementsInDeformedGeometry)
{
  WriteStress(database_, 10, kTension);
  EXPECT_EQ(FailureOf(TwoCubes(), true),
            "job: no displacements 510@it=0,an=1,lc=1,sub=1 for the deformed geometry of a nonlinear step, expected U "
            "of all nodes");
}

TEST_F(ElementForcesTest, ReplaceThoseOfAnEarlierRun)
{
  WriteStress(database_, 10, kTension);
  WriteStress(database_, 20, kTension);
  Calculate(TwoCubes());
  EXPECT_EQ(Forces().size(), 2u);
  ForceMesh without = TwoCubes("C3D8R");
  AddElement(without, 30, "C3D8", 1, {1, 5, 6, 2, 4, 8, 7, 3});
  WriteStress(database_, 30, {6, 0, 0, 0, 0, 0});
  Calculate(without);
  ASSERT_EQ(Forces().size(), 1u);
  EXPECT_NEAR(Forces().at(30)[0], -6.0, 1e-14);
}

TEST_F(ElementForcesTest, OfRotatedStressesAreToldApartFromMissingOnes)
{
  database_.SetUserKindName(static_cast<FED_OnfId>(1700), "S in local systems");
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(ResultKey(1700), 0), database_.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetDoubleList(1, std::vector<double>(48, 1.0));
    view.SetRecord(20, record);
  }
  WriteStress(database_, 10, kTension);
  Calculate(TwoCubes());
  EXPECT_EQ(skipped_, (SkippedElements{{"stresses in a local system", {20}}}));
}

TEST_F(ElementForcesTest, OfRoundedCoordinatesTellHowFarTheyMayBeOff)
{
  ForceMesh mesh = TwoCubes();
  mesh.isRounded = true;
  WriteStress(database_, 10, kTension);
  // Coordinates 2 and 4 may be off by 5e-6, zeros are exact. Of the face at x = 2, 2 by 2, each side may be off by
  // 5e-6, so the area by 2 x 2 x 5e-6 and the force of a node, a quarter of three times that, by 1.5e-5.
  const ForceStep step = Calculate(mesh);
  EXPECT_GE(step.errorBound, 1.5e-5);
  EXPECT_LE(step.errorBound, 6e-5);  // corners of a face are bounded one by one, and signs are not known
}

// Coordinates of 0 are exact; what is off are the displacements of 4 that spread the face.
TEST_F(ElementForcesTest, OfRoundedDisplacementsTellHowFarTheyMayBeOffToo)
{
  ForceMesh mesh;
  int       id = 0;
  for (const double x : {0.0, 2.0}) {
    for (int corner = 0; corner < 4; ++corner) mesh.nodes.At(mesh.nodes.FindOrInsert(++id)) = {x, 0, 0};
  }
  AddElement(mesh, 10, "C3D8", 1, {1, 5, 6, 2, 4, 8, 7, 3});
  for (int node = 1; node <= 8; ++node) {
    const int corner = (node - 1) % 4;
    WriteVector(database_, 510, node, {0.0, corner == 1 || corner == 2 ? 4.0 : 0.0, corner >= 2 ? 4.0 : 0.0});
  }
  WriteStress(database_, 10, kTension);
  mesh.isRounded = true;
  // The sides of the face, 4 by 4, may be off by 5e-6 each, its area by 4 x 2 x 5e-6, a quarter under three by 3e-5.
  const ForceStep step = Calculate(mesh, true);
  EXPECT_NEAR(step.largestSum, 12.0, 1e-13);
  EXPECT_GE(step.errorBound, 3e-5);
  EXPECT_LE(step.errorBound, 1.2e-4);
}

TEST(ForceMeshRounding, IsHalfAUnitOfTheSixthDigit)
{
  EXPECT_EQ(RoundingOf(0.0), 0.0);
  EXPECT_DOUBLE_EQ(RoundingOf(1.0), 5e-6);
  EXPECT_DOUBLE_EQ(RoundingOf(-9.99999), 5e-6);
  EXPECT_DOUBLE_EQ(RoundingOf(10.0), 5e-5);
  EXPECT_DOUBLE_EQ(RoundingOf(0.01), 5e-8);
}

class ForceMeshOfDatabase : public testing::Test
{
protected:
  void WriteMesh(double x)
  {
    FED_IdDataBlock coordinates(database_.GetOrCreateDataBlock(MeshKey(516), 0), database_.GetIdMapsPool(), true);
    FED_IdDataBlock lists(database_.GetOrCreateDataBlock(MeshKey(595), 0), database_.GetIdMapsPool(), true);
    FED_IdDataBlock types(database_.GetOrCreateDataBlock(MeshKey(596), 0), database_.GetIdMapsPool(), true);
    const double    position[3] = {x, -20, 3e-7};
    coordinates.SetVector(7, position);
    FED_IdDataRecord& list = lists.CreateIdDataRecord();
    list.SetIntList(1, std::vector<int>{7, 8, 7});
    lists.SetRecord(5, list);
    lists.SetRecord(6, list);
    FED_IdDataRecord& type = types.CreateIdDataRecord();
    type.SetInteger(1, 4);
    type.SetInteger(2, 1);
    types.SetRecord(5, type);
  }

  FED_ResultDatabase database_;
};

TEST_F(ForceMeshOfDatabase, HasNodesElementsAndTypes)
{
  WriteMesh(12.3456);
  const ForceMesh mesh = ReadForceMesh(database_, 0, "job");
  EXPECT_EQ(mesh.nodes.At(mesh.nodes.Find(7)), (std::array<double, 3>{12.3456, -20, 3e-7}));
  ASSERT_EQ(mesh.elements.Entries().size(), 1u);  // element 6 has no type
  const ForceMesh::Element& element = mesh.elements.At(mesh.elements.Find(5));
  EXPECT_EQ(element.deckType, nullptr);
  EXPECT_EQ(element.frdType, 4);
  EXPECT_EQ(std::vector<int>(mesh.NodesOf(element).begin(), mesh.NodesOf(element).end()), (std::vector<int>{7, 8, 7}));
  EXPECT_TRUE(mesh.isRounded);
}

TEST_F(ForceMeshOfDatabase, IsNotRoundedWithASeventhDigit)
{
  WriteMesh(12.34567);
  EXPECT_FALSE(ReadForceMesh(database_, 0, "job").isRounded);
}

TEST_F(ForceMeshOfDatabase, NeedsAMeshThere)
{
  const auto messageOf = [this] {
    try {
      ReadForceMesh(database_, 0, "job");
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return std::string();
  };
  EXPECT_EQ(messageOf(), "job: no coordinates (block 516), expected the mesh of a .frd or --deck");
  WriteMesh(1);
  database_.DeleteDataBlock(MeshKey(596));
  EXPECT_EQ(messageOf(), "job: no elements (block 596), expected the mesh of a .frd or --deck");
}

}  // namespace
}  // namespace quilon::calculix
