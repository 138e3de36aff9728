// What decks say of nodes that hang together and of elements that come and go, for those who judge results.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "calculix/deck/ReadDeckModel.h"
#include "DeckSupport.h"

namespace {

using namespace quilon::calculix;
using quilon_test::DeckFolder;
using Ids = std::vector<int>;

// Two unit cubes, one above the other, that share no node: 1 to 8 and 11 to 18.
const std::string kMesh =
    "*NODE, NSET=N\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,1\n6,1,0,1\n7,1,1,1\n8,0,1,1\n11,0,0,1\n12,1,0,1\n"
    "13,1,1,1\n14,0,1,1\n15,0,0,2\n16,1,0,2\n17,1,1,2\n18,0,1,2\n99,5,5,5\n98,5,5,5\n"
    "*ELEMENT, TYPE=C3D8, ELSET=LOW\n1,1,2,3,4,5,6,7,8\n*ELEMENT, TYPE=C3D8, ELSET=HIGH\n2,11,12,13,14,15,16,17,18\n"
    "*MATERIAL, NAME=M\n*ELASTIC\n210000,.3\n*SOLID SECTION, ELSET=LOW, MATERIAL=M\n*SOLID SECTION, ELSET=HIGH, "
    "MATERIAL=M\n*SURFACE, NAME=TOP\nLOW,S2\n*SURFACE, NAME=BOTTOM\n2,S1\n*SURFACE, NAME=POINTS, "
    "TYPE=NODE\n11\nCORNERS\n"
    "*NSET, NSET=CORNERS\n12,13,13\n";
const Ids kTop    = {5, 6, 7, 8};
const Ids kBottom = {11, 12, 13, 14};
const Ids kBoth   = {5, 6, 7, 8, 11, 12, 13, 14};

class DeckConstraintsTest : public testing::Test
{
protected:
  DeckModel Read(const std::string& lines) { return ReadDeckModel(folder_.Write("a.inp", kMesh + lines)); }

  /// @return the nodes of the one constraint that the lines make
  Ids NodesOf(const std::string& lines, DeckConstraint::Kind kind)
  {
    const DeckModel model = Read(lines);
    EXPECT_EQ(model.constraints.size(), 1U) << lines;
    if (model.constraints.size() != 1) return {};
    EXPECT_EQ(model.constraints[0].kind, kind) << lines;
    EXPECT_EQ(model.constraints[0].place.line, 38) << lines;
    return model.NodesOf(model.constraints[0]);
  }

  DeckFolder folder_;
};

TEST_F(DeckConstraintsTest, SurfacesHaveTheNodesOfTheirFaces)
{
  const DeckModel model = Read("");
  ASSERT_EQ(model.surfaces.size(), 3U);
  EXPECT_EQ(model.NodesOf(*model.FindSurface("TOP")), kTop);
  EXPECT_EQ(model.NodesOf(*model.FindSurface("BOTTOM")), kBottom);
  EXPECT_EQ(model.NodesOf(*model.FindSurface("POINTS")), (Ids{11, 12, 13}));
  EXPECT_EQ(model.FindSurface("NONE"), nullptr);
  EXPECT_TRUE(model.constraints.empty());
}

TEST_F(DeckConstraintsTest, EachKindTellsItsNodes)
{
  EXPECT_EQ(NodesOf("*CONTACT PAIR, INTERACTION=I, TYPE=SURFACE TO SURFACE\nBOTTOM,TOP\n*SURFACE INTERACTION, NAME=I\n",
                    DeckConstraint::Contact),
            kBoth);
  EXPECT_EQ(NodesOf("*TIE, NAME=T, POSITION TOLERANCE=.1\nPOINTS, TOP\n", DeckConstraint::Tie),
            (Ids{5, 6, 7, 8, 11, 12, 13}));
  EXPECT_EQ(NodesOf("*EQUATION\n2\n5,1,1.,11,1,\n-1.\n3\n6,2,1.,12,2,-1.,\n99,1,1.\n", DeckConstraint::Equation),
            (Ids{5, 6, 11, 12, 99}));
  EXPECT_EQ(NodesOf("*MPC\nSTRAIGHT,1,2,\n3,CORNERS\n", DeckConstraint::Equation), (Ids{1, 2, 3, 12, 13}));
  EXPECT_EQ(
      NodesOf("*COUPLING, REF NODE=99, SURFACE=TOP, CONSTRAINT NAME=C\n*KINEMATIC\n1,3\n", DeckConstraint::Coupling),
      (Ids{5, 6, 7, 8, 99}));
  EXPECT_EQ(NodesOf("*RIGID BODY, NSET=CORNERS, REF NODE=99, ROT NODE=98\n", DeckConstraint::RigidBody),
            (Ids{12, 13, 98, 99}));
  EXPECT_EQ(NodesOf("*RIGID BODY, ELSET=LOW, REF NODE=99\n", DeckConstraint::RigidBody),
            (Ids{1, 2, 3, 4, 5, 6, 7, 8, 99}));
  EXPECT_EQ(NodesOf("*PRE-TENSION SECTION, SURFACE=TOP, NODE=99\n0,0,1.\n", DeckConstraint::PreTension),
            (Ids{5, 6, 7, 8, 99}));
}

TEST_F(DeckConstraintsTest, RemovedEquationsTieNothing)
{
  EXPECT_TRUE(Read("*STEP\n*STATIC\n*EQUATION, REMOVE\n5,1\n*END STEP\n").constraints.empty());
}

TEST_F(DeckConstraintsTest, StepsTellProcedureGeometryAndPerturbation)
{
  const DeckModel model = Read(
      "*STEP, NLGEOM\n*STATIC\n*END STEP\n*STEP\n*FREQUENCY\n3\n*END STEP\n*STEP, NLGEOM=NO, PERTURBATION\n"
      "*STEADY STATE DYNAMICS\n1.,2.\n*END STEP\n");
  ASSERT_EQ(model.steps.size(), 3U);
  EXPECT_EQ(model.steps[0].procedure, "STATIC");
  EXPECT_TRUE(model.steps[0].nlgeom);
  EXPECT_FALSE(model.steps[0].perturbation);
  EXPECT_EQ(model.steps[1].procedure, "FREQUENCY");
  EXPECT_TRUE(model.steps[1].nlgeom) << "it holds for later steps too";
  EXPECT_EQ(model.steps[2].procedure, "STEADYSTATEDYNAMICS");
  EXPECT_FALSE(model.steps[2].nlgeom);
  EXPECT_TRUE(model.steps[2].perturbation);
  for (const DeckStep& step : model.steps) EXPECT_TRUE(step.changes.empty());
}

TEST_F(DeckConstraintsTest, StepsTellElementsThatComeAndGo)
{
  const DeckModel model = Read(
      "*STEP\n*STATIC\n*MODEL CHANGE, TYPE=ELEMENT, REMOVE\nHIGH\n*END STEP\n"
      "*STEP\n*STATIC\n*MODEL CHANGE, TYPE=ELEMENT, ADD\n2,\nLOW\n*MODEL CHANGE, TYPE=CONTACT PAIR, REMOVE\n"
      "BOTTOM,TOP\n*END STEP\n");
  ASSERT_EQ(model.steps.size(), 2U);
  ASSERT_EQ(model.steps[0].changes.size(), 1U);
  EXPECT_FALSE(model.steps[0].changes[0].adds);
  EXPECT_EQ(model.ElementsOf(model.steps[0].changes[0]), (Ids{2}));
  ASSERT_EQ(model.steps[1].changes.size(), 1U) << "contact pairs are no elements";
  EXPECT_TRUE(model.steps[1].changes[0].adds);
  EXPECT_EQ(model.ElementsOf(model.steps[1].changes[0]), (Ids{1, 2}));
}

TEST_F(DeckConstraintsTest, EdgesOfPlaneElementsAndSidesOfShellsAreFaces)
{
  const auto nodesOf = [this](const std::string& type, const std::string& nodes, const std::string& face) {
    const DeckModel model = ReadDeckModel(folder_.Write(
        "b.inp",
        "*NODE\n1,0,0,0\n2,2,0,0\n3,2,2,0\n4,0,2,0\n5,1,0,0\n6,2,1,0\n7,1,2,0\n8,0,1,0\n*ELEMENT, ELSET=E, TYPE=" +
            type + "\n1," + nodes +
            "\n*MATERIAL, NAME=M\n*ELASTIC\n1.,0.\n*SHELL SECTION, ELSET=E, MATERIAL=M\n.1\n*SURFACE, NAME=S\nE," +
            face + '\n'));
    return model.NodesOf(model.surfaces.at(0));
  };
  EXPECT_EQ(nodesOf("CPS4", "1,2,3,4", "S4"), (Ids{1, 4}));
  EXPECT_EQ(nodesOf("CPS8", "1,2,3,4,5,6,7,8", "S2"), (Ids{2, 3, 6}));
  EXPECT_EQ(nodesOf("CPE3", "1,2,3", "S3"), (Ids{1, 3}));
  EXPECT_EQ(nodesOf("S4", "1,2,3,4", "S1"), (Ids{1, 2, 3, 4}));
  EXPECT_EQ(nodesOf("S4", "1,2,3,4", "SPOS"), (Ids{1, 2, 3, 4}));
  EXPECT_EQ(nodesOf("S4", "1,2,3,4", "S3"), (Ids{1, 2}));
}

TEST_F(DeckConstraintsTest, NamesThatNothingDefinesHaveNoNodes)
{
  std::vector<DeckMessage> messages;
  const DeckModel          model = ReadDeckModel(
               folder_.Write("a.inp", kMesh + "*TIE, NAME=T\nNONE,TOP\n*RIGID BODY, NSET=NO, REF NODE=1234\n"), {}, messages);
  ASSERT_EQ(model.constraints.size(), 2U);
  EXPECT_EQ(model.NodesOf(model.constraints[0]), kTop);
  EXPECT_EQ(model.NodesOf(model.constraints[1]), Ids());
}

}  // namespace
