#include "answers/Overview.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "database/StepTimes.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using namespace quilon;
using Names = std::vector<std::string>;

TEST(Overview, TellsMeshNamesStepsAndKinds)
{
  FED_ResultDatabase database;
  FillTwoBricks(database);
  const Overview overview = MakeOverview(database, "db", StepTimes(database));
  EXPECT_EQ(overview.nodes, 12u);
  EXPECT_EQ(overview.elements, (std::map<std::string, std::size_t>{{"C3D8", 2}}));
  EXPECT_EQ(overview.box->least, (Mesh::Point{0, 0, 0}));
  EXPECT_EQ(overview.box->greatest, (Mesh::Point{2, 1, 1}));
  EXPECT_EQ(overview.materials, (Names{"STEEL", "ALU"}));
  EXPECT_EQ(overview.sets, (Names{"FIX", "MIX", "LEFT", "RIGHT"}));
  ASSERT_EQ(overview.steps.size(), 3u);
  EXPECT_EQ(overview.steps[2].time, 2.0);
  EXPECT_EQ(overview.deviations.size(), 0u);
  EXPECT_EQ(overview.groups, Names());
  const auto displacement = std::find_if(overview.kinds.begin(), overview.kinds.end(),
                                         [](const KindSummary& kind) { return kind.kind == "displacement"; });
  ASSERT_NE(displacement, overview.kinds.end());
  EXPECT_EQ(displacement->blocks, 3u);
  EXPECT_EQ(displacement->steps, 3u);
  EXPECT_EQ(displacement->records, 36u);
  EXPECT_EQ(displacement->least, -24);
  EXPECT_EQ(displacement->greatest, 24);
  EXPECT_EQ(displacement->firstTime, 0.5);
  EXPECT_EQ(displacement->lastTime, 2.0);
}

TEST(Overview, AveragesAreComparedWithTheSolversOwnInTheLastStep)
{
  FED_ResultDatabase database;
  FillTwoBricks(database);
  for (const int substep : {1, 2}) {
    FED_IdDataBlock view(database.GetOrCreateDataBlock(StepBlock(OnfKind::NodalStressSolver, 1, substep), 0),
                         database.GetIdMapsPool(), true);
    // Ours are 1 to 12 times the time; node 7 differs by 0.5 in the last step that has both, of 12 at most.
    for (int node = 1; node <= 12; ++node) {
      const double tensor[6] = {node * (substep == 1 ? 0.5 : 1.0) + (node == 7 ? 0.5 : 0.0), 0, 0, 0, 0, 0};
      view.SetTensor(node, tensor);
    }
  }
  const Overview overview = MakeOverview(database, "db", StepTimes(database));
  ASSERT_EQ(overview.deviations.size(), 1u);
  EXPECT_EQ(overview.deviations[0].kind, "nodal-stress");
  EXPECT_EQ(StepText(overview.deviations[0].step), "it=0,an=1,lc=1,sub=2");
  EXPECT_DOUBLE_EQ(overview.deviations[0].deviation, 0.5 / 12);
}

TEST(Overview, OfNothingIsNothing)
{
  FED_ResultDatabase database;
  const Overview     overview = MakeOverview(database, "db", StepTimes(database));
  EXPECT_EQ(overview.nodes, 0u);
  EXPECT_FALSE(overview.box);
  EXPECT_TRUE(overview.kinds.empty());
}

TEST(ModelNamesList, CountsMembersOnce)
{
  FED_ResultDatabase database;
  FillTwoBricks(database);
  Region      region(database, {}, "db");
  std::string text;
  for (const ModelName& name : ListModelNames(database, region))
    text += name.what + ' ' + std::to_string(name.number) + ' ' + name.name + ' ' + std::to_string(name.count) + '\n';
  EXPECT_EQ(text,
            "node-set 1 FIX 4\nnode-set 2 MIX 1\nelement-set 1 LEFT 1\nelement-set 2 RIGHT 1\nelement-set 3 MIX 1\n"
            "material 1 STEEL 1\nmaterial 2 ALU 1\nelement-type 0 C3D8 2\n");
}

}  // namespace
