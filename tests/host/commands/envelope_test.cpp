#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class EnvelopeCommand : public testing::Test
{
protected:
  void SetUp() override { WriteTwoBricks(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "bricks.onf").string();
  std::string out_ = (folder_ / "envelope.onf").string();
};

TEST_F(EnvelopeCommand, PrintsExtremesWithTheStepsThatGovern)
{
  const RunResult run = RunQuilon({"envelope", onf_, "displacement.x,displacement.y@lc=1"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find("\n510@it=0\t2\t")),
            "block\tid\tcomponent\tleast\tleast-step\tgreatest\tgreatest-step\tmagnitude\tmagnitude-step\n"
            "510@it=0\t1\tx\t0.5\tit=0,an=1,lc=1,sub=1\t1\tit=0,an=1,lc=1,sub=2\t1\tit=0,an=1,lc=1,sub=2\n"
            "510@it=0\t1\ty\t-1\tit=0,an=1,lc=1,sub=2\t-0.5\tit=0,an=1,lc=1,sub=1\t-1\tit=0,an=1,lc=1,sub=2");
}

TEST_F(EnvelopeCommand, JsonHasARowForEachIdAndComponent)
{
  const RunResult run = RunQuilon({"envelope", onf_, "stress.mises,element-stress.xy", "--json"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out.substr(0, run.out.find("\n  {\"id\":2")),
            "[\n"
            "{\"block\":\"521@it=0\",\"onf\":521,\"kind\":\"nodal-stress\",\"steps\":3,\"rows\":[\n"
            "  {\"id\":1,\"component\":\"mises\",\"least\":0.5,\"greatest\":2.0,\"magnitude\":2.0,"
            "\"least-step\":\"it=0,an=1,lc=1,sub=1\",\"greatest-step\":\"it=0,an=1,lc=2,sub=1\","
            "\"magnitude-step\":\"it=0,an=1,lc=2,sub=1\"},");
  const std::string last = run.out.substr(run.out.rfind("{\"id\""));
  EXPECT_EQ(last,
            "{\"id\":102,\"component\":\"xy\",\"least\":1.0,\"greatest\":4.0,\"magnitude\":4.0,"
            "\"least-step\":\"it=0,an=1,lc=1,sub=1\",\"greatest-step\":\"it=0,an=1,lc=2,sub=1\","
            "\"magnitude-step\":\"it=0,an=1,lc=2,sub=1\"}]}\n]\n");
}

TEST_F(EnvelopeCommand, WritesUserKindsAndTheModel)
{
  const RunResult run = RunQuilon({"envelope", onf_, "stress.mises", "-o", out_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, out_ + ": 15 blocks written\n");
  EXPECT_EQ(RunQuilon({"show", out_, "nodal-stress mises envelope@lc=20002", "--ids", "12"}).out,
            "id\tvalue\n12\t24\n");
  EXPECT_EQ(RunQuilon({"show", out_, "nodal-stress mises envelope load case@lc=20002", "--ids", "12"}).out,
            "id\tvalue\n12\t2\n");
  EXPECT_EQ(RunQuilon({"show", out_, "coordinates", "--ids", "12"}).out, "id\tx\ty\tz\n12\t2\t0\t1\n");
}

TEST_F(EnvelopeCommand, AsksTheStepsThatAreSelected)
{
  EXPECT_NE(RunQuilon({"envelope", onf_, "stress.xx", "--time", "0.4:0.6"}).out.find("521@it=0\t12\txx\t6\t"),
            std::string::npos);
  EXPECT_NE(RunQuilon({"envelope", onf_, "stress.xx", "--steps", "last"}).out.find("521@it=0\t12\txx\t24\t"),
            std::string::npos);
}

TEST_F(EnvelopeCommand, IsOfTheRegionThatIsAskedFor)
{
  const std::string out = RunQuilon({"envelope", onf_, "stress.xx", "--material", "STEEL"}).out;
  EXPECT_NE(out.find("521@it=0\t8\txx\t"), std::string::npos) << out;
  EXPECT_EQ(out.find("521@it=0\t9\txx\t"), std::string::npos) << out;
  const RunResult nothing = RunQuilon({"envelope", onf_, "stress.xx", "--set", "NOWHERE", "-o", out_});
  EXPECT_EQ(nothing.exitCode, 2);
  EXPECT_NE(nothing.err.find("NOWHERE"), std::string::npos) << nothing.err;
  EXPECT_EQ(RunQuilon({"envelope", onf_, "stress.xx", "--ids", "99"}).err,
            "quilon: error: " + onf_ + ": no record 99 in the blocks of 'stress.xx', expected one of 1 to 12\n");
}

TEST_F(EnvelopeCommand, TellsTheAxesAndWhereTheyAreNone)
{
  const RunResult run = RunQuilon({"envelope", onf_, "stress.xx@lc=2", "--axes", "cylindrical:0,0,0,0,0,1", "--csv"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.err,
            "quilon: note: nodal-stress: 2 NaNs among the values, which govern nowhere\n"
            "quilon: note: nodal-stress: 2 records at places where the axes are none\n"
            "quilon: note: axes: x radial, y tangential, z along the axis through 0,0,0 along 0,0,1\n");
  // Nodes 1 and 4 are on the axis; node 5 at (1, 0, 0) has its radius along x.
  EXPECT_NE(run.out.find("\n521@it=0,1,xx,,,,,,\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n521@it=0,5,xx,10,\"it=0,an=1,lc=2,sub=1\",10,"), std::string::npos) << run.out;
}

TEST_F(EnvelopeCommand, BadInputIsTroubleAndWritesNothing)
{
  const auto failure = [&](const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"envelope", onf_};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.insert(all.end(), {"-o", out_});
    const RunResult run = RunQuilon(all);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  EXPECT_EQ(failure({"coordinates"}),
            "quilon: error: " + onf_ +
                ": no result steps to envelop in coordinates, expected scalars, vectors or tensors of nodes or "
                "elements\n");
  EXPECT_EQ(failure({"stress@lc=7"}), "quilon: error: " + onf_ + ": no block matches 'stress@lc=7'\n");
  EXPECT_NE(failure({"stress.misse"}).find("did you mean 'mises'?"), std::string::npos);
  EXPECT_NE(failure({"stress", "--axes", "round"}).find("--axes is 'round', expected global, principal"),
            std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(out_));
}

}  // namespace
