#include <algorithm>
#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "TempFolder.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using Json = nlohmann::json;

/// The commands max, history, info, sets and ls on the model of two bricks.
class AnswerCommands : public testing::Test
{
protected:
  void SetUp() override { WriteTwoBricks(onf_); }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "bricks.onf").string();
};

TEST_F(AnswerCommands, MaxTellsValuePlaceAndTime)
{
  EXPECT_EQ(RunQuilon({"max", onf_, "stress.mises"}).out,
            "kind\tcomponent\tvalue\tid\tx\ty\tz\ttype\tstep\ttime\tties\n"
            "nodal-stress\tmises\t24\t12\t2\t0\t1\tnode\tit=0,an=1,lc=2,sub=1\t2\t0\n");
  const Json rows = Json::parse(RunQuilon({"max", onf_, "element-stress.xy", "--head", "2", "--json"}).out);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].at("block"), "561@it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(rows[0].at("component"), "xy");
  EXPECT_EQ(rows[0].at("value"), 4.0);
  EXPECT_EQ(rows[0].at("id"), 102);
  EXPECT_EQ(rows[0].at("x"), 1.5);
  EXPECT_EQ(rows[0].at("time"), 2.0);
  EXPECT_EQ(rows[0].at("type"), "C3D8");
  EXPECT_EQ(rows[0].at("material"), "ALU");
  EXPECT_EQ(rows[1].at("value"), 2.0);
}

TEST_F(AnswerCommands, MaxOfPartsNamesThem)
{
  EXPECT_EQ(RunQuilon({"max", onf_, "displacement.y", "--min", "--per", "material", "--time", "1", "--csv"}).out,
            "kind,component,value,id,x,y,z,type,material,step,time,ties\n"
            "displacement,y,-12,12,2,0,1,node,ALU,\"it=0,an=1,lc=1,sub=2\",1,0\n"
            "displacement,y,-8,8,1,0,1,node,STEEL,\"it=0,an=1,lc=1,sub=2\",1,0\n");
}

// Displacements are (n, -n, 0) times the time; nodes 1 and 4 are on the axis.
TEST_F(AnswerCommands, MaxIsInTheAxesThatAreAskedFor)
{
  RunResult run = RunQuilon({"max", onf_, "displacement.x", "--axes", "rectangular:0,1,0,-1,0,0"});
  EXPECT_NE(run.out.find("displacement\tx\t-0.5\t1\t"), std::string::npos) << run.out;
  EXPECT_EQ(run.err.rfind("quilon: note: axes: ", 0), 0U) << run.err;
  run = RunQuilon({"max", onf_, "displacement.x", "--axes", "cylindrical:0,0,0,0,0,1"});
  EXPECT_NE(run.err.find("6 values at places where the axes are none, which count for nothing"), std::string::npos)
      << run.err;
  EXPECT_EQ(RunQuilon({"max", onf_, "displacement", "--axes", "principal"}).exitCode, 2);
}

TEST_F(AnswerCommands, MaxRefusesWhatItCannotAnswer)
{
  EXPECT_EQ(RunQuilon({"max", onf_, "stress.xx", "--min", "--abs"}).err,
            "quilon: error: --min and --abs exclude each other, expected one at most\n");
  EXPECT_EQ(RunQuilon({"max", onf_, "stress.xx", "--per", "layer"}).err,
            "quilon: error: --per is 'layer', expected step, material, set or group\n");
  EXPECT_EQ(RunQuilon({"max", onf_, "stress.xx", "--head", "0"}).err,
            "quilon: error: the number of worst values is 0, expected 1 or more\n");
  const RunResult run = RunQuilon({"max", onf_, "stress.xx", "--ids", "99"});
  EXPECT_EQ(run.err,
            "quilon: error: " + onf_ + ": no record 99 in the blocks of 'stress.xx', expected one of 1 to 12\n");
  EXPECT_EQ(run.exitCode, 2);
}

TEST_F(AnswerCommands, MaxTellsOfNans)
{
  const std::string small = (folder_ / "small.onf").string();
  WriteSmallOnf(small);
  EXPECT_EQ(RunQuilon({"max", small, "stress.yy"}).err,
            "quilon: note: 1 of 2 values is no number and counts for nothing\n");
}

TEST_F(AnswerCommands, HistoryHasTimesInRowsAndRecordsInColumns)
{
  EXPECT_EQ(RunQuilon({"history", onf_, "displacement.x", "--ids", "1,12"}).out,
            "time\tstep\t1.x\t12.x\n"
            "0.5\tit=0,an=1,lc=1,sub=1\t0.5\t6\n"
            "1\tit=0,an=1,lc=1,sub=2\t1\t12\n"
            "2\tit=0,an=1,lc=2,sub=1\t2\t24\n");
  const Json rows = Json::parse(RunQuilon({"history", onf_, "stress.mises,stress.p3", "--ids", "3", "--json"}).out);
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[1].at("time"), 1.0);
  EXPECT_EQ(rows[1].at("step"), "it=0,an=1,lc=1,sub=2");
  EXPECT_EQ(rows[1].at("id"), 3);
  EXPECT_EQ(rows[1].at("mises"), 3.0);
  EXPECT_EQ(rows[1].at("p3"), 0.0);
}

TEST_F(AnswerCommands, ModesHaveAColumnOfTheirOwnBesideTimes)
{
  const std::string modal = (folder_ / "modal.fed").string();
  {
    FED_ResultDatabase database(modal, FED_ResultDatabase::Create);
    FillTwoBricks(database);
    FED_DataDescriptor mode(0, FED_OnfId_ScalarHistory);
    mode.SetInteger(FED_DataDescriptor::Analysis, 2);
    mode.SetInteger(FED_DataDescriptor::LoadCase, 3);
    mode.SetInteger(OnfIndex::Quantity, OnfKind::Frequency);
    database.GetOrCreateDataBlock(mode, 1).SetScalarAt(1, 75.5);
    mode = StepBlock(OnfKind::Displacement, 3, 1);
    mode.SetInteger(FED_DataDescriptor::Analysis, 2);
    const double shape[3] = {7, 0, 0};
    database.GetOrCreateDataBlock(mode, 1).SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(OnfKind::NodeEntity, 1),
                                                       shape);
    database.Commit();
  }
  EXPECT_EQ(RunQuilon({"history", modal, "displacement.x", "--ids", "1"}).out,
            "time\tfrequency\tstep\t1.x\n"
            "0.5\t-\tit=0,an=1,lc=1,sub=1\t0.5\n"
            "1\t-\tit=0,an=1,lc=1,sub=2\t1\n"
            "2\t-\tit=0,an=1,lc=2,sub=1\t2\n"
            "-\t75.5\tit=0,an=2,lc=3,sub=1\t7\n");
  EXPECT_EQ(RunQuilon({"history", modal, "displacement.x@an=2", "--ids", "1"}).out,
            "frequency\tstep\t1.x\n75.5\tit=0,an=2,lc=3,sub=1\t7\n");
  const Json rows = Json::parse(RunQuilon({"history", modal, "displacement.x", "--ids", "1", "--json"}).out);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[2].at("time"), 2.0);
  EXPECT_FALSE(rows[2].contains("time-name"));
  EXPECT_EQ(rows[3].at("time"), 75.5);
  EXPECT_EQ(rows[3].at("time-name"), "frequency");
}

TEST_F(AnswerCommands, HistoriesOfSeveralDatabasesShareTheirTimes)
{
  const std::string other = (folder_ / "other.onf").string();
  WriteTwoBricks(other);
  EXPECT_EQ(RunQuilon({"history", onf_, other, "displacement.x@lc=1", "--ids", "1", "--label", "a", "--label", "b",
                       "--resample", "0.25:0.75:0.25"})
                .out,
            "time\ta:1.x\tb:1.x\n0.5\t0.5\t0.5\n0.75\t0.75\t0.75\n");
  EXPECT_EQ(RunQuilon({"history", onf_, other, "displacement.x", "--ids", "1"}).out.substr(0, 29),
            "time\tbricks:1.x\tother:1.x\n0.5");
  EXPECT_EQ(RunQuilon({"history", onf_, other, "displacement.x", "--ids", "1", "--label", "a"}).err,
            "quilon: error: found 1 label for 2 databases, expected as many --label\n");
}

TEST_F(AnswerCommands, HistoriesAreDrawnOverTime)
{
  const std::string picture = (folder_ / "a.svg").string();
  const RunResult   run     = RunQuilon({"history", onf_, "displacement.x", "--ids", "1,12", "--plot", picture});
  EXPECT_EQ(run.err + run.out, "");
  EXPECT_EQ(ReadAll(picture).substr(0, 5), "<?xml");
  const std::string chart = RunQuilon({"history", onf_, "displacement.x", "--ids", "1,12", "--plot", "-"}).out;
  for (const char* part : {"time", "1.x  ends at 2", "12.x  ends at 24"})
    EXPECT_NE(chart.find(part), std::string::npos) << part << '\n' << chart;
}

TEST_F(AnswerCommands, InfoIsAGlance)
{
  const std::string text = RunQuilon({"info", onf_}).out;
  EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 25);
  EXPECT_NE(text.find("nodes      12\nelements   2: 2 C3D8\nbox        (0, 0, 0) to (2, 1, 1)\n"
                      "materials  STEEL, ALU\nsets       4: FIX, MIX, LEFT, RIGHT\n"
                      "steps      it=0,an=1,lc=1  2 steps, time 0.5 to 1\n"
                      "           it=0,an=1,lc=2  1 step, time 2\n"),
            std::string::npos)
      << text;
  const Json info = Json::parse(RunQuilon({"info", onf_, "--json"}).out);
  EXPECT_EQ(info.at("nodes"), 12);
  EXPECT_EQ(info.at("elements"), Json::parse("{\"C3D8\": 2}"));
  EXPECT_EQ(info.at("bounding-box"), Json::parse("[[0.0, 0.0, 0.0], [2.0, 1.0, 1.0]]"));
  EXPECT_EQ(info.at("materials"), Json::parse("[\"STEEL\", \"ALU\"]"));
  EXPECT_EQ(info.at("sets"), Json::parse("[\"FIX\", \"MIX\", \"LEFT\", \"RIGHT\"]"));
  EXPECT_EQ(info.at("steps").at(2).at("step"), "it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(info.at("steps").at(2).at("time"), 2.0);
}

TEST_F(AnswerCommands, InfoOfManyKindsAndStepsStaysAGlance)
{
  const std::string text = RunQuilon({"info", QUILON_FIXTURES "/calculix/mixed_linear/mixed_linear.frd"}).out;
  EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 25) << text;
}

TEST_F(AnswerCommands, InfoTellsOfFieldsBeforeHistories)
{
  const std::string db = (folder_ / "a_tet.fed").string();
  ASSERT_EQ(RunQuilon({"import", QUILON_FIXTURES "/calculix/a_tet/a_tet.frd",
                       QUILON_FIXTURES "/calculix/a_tet/a_tet.dat", "-o", db})
                .exitCode,
            0);
  const std::string text = RunQuilon({"info", db}).out;
  EXPECT_LT(text.find("kinds      displacement"), text.find(" nodal-stress ")) << text;
  EXPECT_EQ(text.find("total force x FIX"), std::string::npos) << text;
  EXPECT_NE(text.find(" kinds more, see quilon ls --summary\n"), std::string::npos) << text;
}

TEST_F(AnswerCommands, InfoTellsWhatTheResultsAreOf)
{
  const std::string db  = (folder_ / "a_tet.fed").string();
  const std::string job = QUILON_FIXTURES "/calculix/a_tet/a_tet";
  ASSERT_EQ(RunQuilon({"import", job + ".frd", "-o", db}).exitCode, 0);
  ASSERT_EQ(RunQuilon({"import", job + ".frd", job + ".dat", "-o", db, "--iteration", "3", "--max-deviation", "0.01"})
                .exitCode,
            0);
  const std::string text = RunQuilon({"info", db}).out;
  EXPECT_NE(text.find("made of    it=0: a_tet.frd by quilon " QUILON_VERSION "\n"
                      "           it=3: a_tet.frd, a_tet.dat by quilon " QUILON_VERSION "\n"),
            std::string::npos)
      << text;
  EXPECT_LE(std::count(text.begin(), text.end(), '\n'), 25) << text;
  const Json imports = Json::parse(RunQuilon({"info", db, "--json"}).out).at("imports");
  ASSERT_EQ(imports.size(), 2U);
  EXPECT_EQ(imports.at(1).at("iteration"), 3);
  EXPECT_EQ(imports.at(1).at("settings").at("max-deviation"), "0.01");
  const Json& file = imports.at(0).at("files").at(0);
  EXPECT_EQ(file.at("role"), "results");
  EXPECT_EQ(file.at("name"), "a_tet.frd");
  EXPECT_EQ(file.at("size"), std::filesystem::file_size(job + ".frd"));
  EXPECT_EQ(file.at("checksum").get<std::string>().size(), 16U);
  EXPECT_TRUE(Json::parse(RunQuilon({"info", onf_, "--json"}).out).at("imports").empty());
}

TEST_F(AnswerCommands, SetsAreListedWithMaterialsAndTypes)
{
  EXPECT_EQ(RunQuilon({"sets", onf_}).out,
            "what\tnumber\tname\tcount\nnode-set\t1\tFIX\t4\nnode-set\t2\tMIX\t1\nelement-set\t1\tLEFT\t1\n"
            "element-set\t2\tRIGHT\t1\nelement-set\t3\tMIX\t1\nmaterial\t1\tSTEEL\t1\nmaterial\t2\tALU\t1\n"
            "element-type\t-\tC3D8\t2\n");
}

// hex8r has elements of C3D8R alone, which its result file calls C3D8, and mixed_linear some.
TEST_F(AnswerCommands, ElementTypesAreThoseOfTheDeck)
{
  const std::string job = QUILON_FIXTURES "/calculix/hex8r/hex8r";
  const std::string fed = (folder_ / "reduced.fed").string();
  const std::string onf = (folder_ / "reduced.onf").string();
  const std::string frd = (folder_ / "plain.fed").string();
  ASSERT_EQ(RunQuilon({"import", job + ".inp", job + ".frd", job + ".dat", "-o", fed}).exitCode, 0);
  ASSERT_EQ(RunQuilon({"to-onf", fed, onf}).exitCode, 0);
  ASSERT_EQ(RunQuilon({"import", job + ".frd", job + ".dat", "-o", frd}).exitCode, 0);
  for (const std::string& database : {fed, onf, frd}) {
    const std::string type = database == frd ? "C3D8" : "C3D8R";
    EXPECT_EQ(Json::parse(RunQuilon({"info", database, "--json"}).out).at("elements"), Json({{type, 3}})) << database;
    EXPECT_NE(RunQuilon({"info", database}).out.find(" " + type + "\n"), std::string::npos) << database;
    EXPECT_NE(RunQuilon({"sets", database}).out.find("element-type\t-\t" + type + "\t3\n"), std::string::npos);
    const Json worst = Json::parse(RunQuilon({"max", database, "element-stress.mises", "--json"}).out);
    EXPECT_EQ(worst.at(0).at("type"), type) << database;
    const Json rows = Json::parse(RunQuilon({"show", database, "element-type", "--json"}).out).at(0).at("rows");
    for (const Json& row : rows) EXPECT_EQ(row.at("type"), type) << database;
  }
  EXPECT_EQ(RunQuilon({"diff", fed, onf, "--exact"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"show", fed, "deck-type", "--head", "1"}).out, "id\ttype\n12\tC3D8R\n");
  // What is written beside the model keeps the names.
  const std::string out = (folder_ / "envelope.fed").string();
  ASSERT_EQ(RunQuilon({"envelope", fed, "stress.mises", "-o", out}).exitCode, 0);
  EXPECT_EQ(Json::parse(RunQuilon({"info", out, "--json"}).out).at("elements"), Json({{"C3D8R", 3}}));
}

TEST_F(AnswerCommands, OrientationsAreListedAsTheyAreNamed)
{
  const std::string fed = (folder_ / "oriented.fed").string();
  ASSERT_EQ(RunQuilon({"import", QUILON_FIXTURES "/calculix/oriented/oriented.inp", "-o", fed}).exitCode, 0);
  const std::string text = RunQuilon({"sets", fed}).out;
  EXPECT_NE(text.find("orientation\t1\tSLANTED\t2\norientation\t2\tROUND\t2\n"), std::string::npos) << text;
  const Json rows = Json::parse(RunQuilon({"sets", fed, "--json"}).out);
  EXPECT_EQ(rows.back(), Json({{"what", "orientation"}, {"number", 2}, {"name", "ROUND"}, {"count", 2}}));
}

// Columns of one block stand in their places, whatever step it is of; of several, keys and time are in front.
TEST_F(AnswerCommands, ShownRecordsHaveTheirTime)
{
  EXPECT_EQ(RunQuilon({"show", onf_, "displacement@lc=1,sub=1", "--ids", "12"}).out,
            "id\tx\ty\tz\ttime\n12\t6\t-6\t0\t0.5\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "stress.mises@lc=2", "--ids", "12", "--csv"}).out, "id,mises,time\n12,24,2\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "stress.mises@lc=1", "--ids", "12", "--csv"}).out,
            "kind,it,an,lc,sub,time,id,mises\nnodal-stress,0,1,1,1,0.5,12,6\nnodal-stress,0,1,1,2,1,12,12\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "coordinates", "--ids", "12", "--csv"}).out, "id,x,y,z\n12,2,0,1\n");
}

TEST_F(AnswerCommands, ListingHasTimesAndASummary)
{
  EXPECT_EQ(RunQuilon({"ls", onf_, "displacement", "--time", "1:"}).out,
            "onf\tkind\tit\tan\tlc\tsub\ttime\trecords\tsize\tleast\tgreatest\tnan\n"
            "510\tdisplacement\t0\t1\t1\t2\t1\t12\t288\t-12\t12\t0\n"
            "510\tdisplacement\t0\t1\t2\t1\t2\t12\t288\t-24\t24\t0\n");
  EXPECT_EQ(RunQuilon({"ls", onf_, "displacement,coordinates", "--summary"}).out,
            "onf\tkind\tblocks\tsteps\tfrom-time\tto-time\trecords\tsize\tleast\tgreatest\tnan\n"
            "510\tdisplacement\t3\t3\t0.5\t2\t36\t864\t-24\t24\t0\n"
            "516\tcoordinates\t1\t0\t-\t-\t12\t288\t0\t2\t0\n");
  const Json rows = Json::parse(RunQuilon({"ls", onf_, "displacement", "--json"}).out);
  EXPECT_EQ(rows.at(2).at("time"), 2.0);
}

TEST_F(AnswerCommands, DifferencesAreOfARegion)
{
  const std::string changed = (folder_ / "changed.onf").string();
  WriteChangedBricks(changed);
  EXPECT_EQ(RunQuilon({"diff", onf_, changed, "--brief"}).exitCode, 1);
  EXPECT_EQ(RunQuilon({"diff", onf_, changed, "--brief", "--set", "LEFT"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", onf_, changed, "--brief", "--set", "FIX"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", onf_, changed, "--brief", "--material", "ALU"}).exitCode, 1);
  EXPECT_EQ(RunQuilon({"diff", onf_, changed, "--brief", "--ids", "1-11"}).exitCode, 0);
  const RunResult nothing = RunQuilon({"diff", onf_, changed, "--box", "5,5,5,6,6,6"});
  EXPECT_EQ(nothing.exitCode, 2);
  EXPECT_EQ(nothing.err,
            "quilon: error: " + onf_ + ": no node is in --box 5,5,5,6,6,6, the mesh is from 0,0,0 to 2,1,1\n");
}

TEST_F(AnswerCommands, FreeBodiesAreOfARegion)
{
  const std::string job      = QUILON_FIXTURES "/calculix/mixed_linear/mixed_linear";
  const std::string database = (folder_ / "job.fed").string();
  ASSERT_EQ(RunQuilon({"import", job + ".inp", job + ".frd", job + ".dat", "-o", database, "-q"}).exitCode, 0);
  // Element 12 is the one brick at the fixed end; its centre is at (4.6, 4.5, 4).
  const std::string one = RunQuilon({"forces", database, "--elements", "12", "--csv"}).out;
  EXPECT_NE(one, "");
  EXPECT_EQ(RunQuilon({"forces", database, "--box", "0,0,0,6,9,9", "--csv"}).out, one);
  EXPECT_EQ(RunQuilon({"forces", database, "--ids", "12", "--csv"}).out, one);
  EXPECT_EQ(RunQuilon({"forces", database, "--set", "ESTEEL", "--box", "0,0,0,6,9,9", "--csv"}).out, one);
  EXPECT_EQ(RunQuilon({"forces", database, "--material", "STEEL", "--csv"}).out,
            RunQuilon({"forces", database, "--set", "ESTEEL", "--csv"}).out);
  EXPECT_EQ(RunQuilon({"forces", database, "--material", "GOLD"}).err,
            "quilon: error: " + database + ": no material 'GOLD', expected one of STEEL, ALUMINIUM\n");
}

}  // namespace
