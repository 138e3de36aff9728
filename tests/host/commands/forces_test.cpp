#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;
using nlohmann::json;

std::string Fixture(const std::string& name) { return std::string(QUILON_FIXTURES) + "/calculix/" + name; }

class ForcesCommand : public testing::Test
{
protected:
  /// Runs on the .dat of a fixture with its deck. The import of a .dat alone notes that it averages nothing; -q leaves
  /// notes out.
  RunResult RunOn(const std::string& stem, std::vector<std::string> more)
  {
    std::vector<std::string> arguments{"forces", Fixture(stem + ".dat"), "--deck", Fixture(stem + ".inp")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunQuilon(arguments);
  }

  /// Imports a fixture's results into a folder.
  void Import(const std::string& stem)
  {
    const RunResult run =
        RunQuilon({"import", Fixture(stem + ".frd"), Fixture(stem + ".dat"), "-o", onf_, "--request", "none"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
  }

  TempFolder  folder_;
  std::string onf_ = (folder_ / "job.onf").string();
  std::string out_ = (folder_ / "out.onf").string();
};

TEST_F(ForcesCommand, AddsForcesToAFolder)
{
  Import("forces/c3d8");
  const RunResult run = RunQuilon({"forces", onf_, "--deck", Fixture("forces/c3d8.inp")});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, onf_ + ": forces of 3 results\n");
  const json blocks = json::parse(RunQuilon({"ls", onf_, "580,582,595", "--json"}).out);
  ASSERT_EQ(blocks.size(), 7U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(blocks.at(i).at("onf"), 580);
    EXPECT_EQ(blocks.at(i).at("records"), 4);
  }
}

TEST_F(ForcesCommand, AddsForcesToAWorkingDatabase)
{
  const std::string fed = (folder_ / "job.fed").string();
  ASSERT_EQ(RunQuilon({"import", Fixture("forces/bar.frd"), Fixture("forces/bar.dat"), "-o", fed}).exitCode, 0);
  const json      before = json::parse(RunQuilon({"ls", fed, "--json"}).out);
  const RunResult run    = RunQuilon({"forces", fed, "--deck", Fixture("forces/bar.inp")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, fed + ": forces of 1 result\n");
  EXPECT_EQ(json::parse(RunQuilon({"ls", fed, "--json"}).out).size(), before.size() + 1);
  EXPECT_EQ(json::parse(RunQuilon({"ls", fed, "580", "--json"}).out).at(0).at("records"), 4);
}

TEST_F(ForcesCommand, NewFolderGetsEverything)
{
  Import("forces/c3d8");
  const std::string before = ReadTree(onf_);
  const RunResult   run    = RunQuilon({"forces", onf_, "--deck", Fixture("forces/c3d8.inp"), "-o", out_});
  EXPECT_EQ(run.out, out_ + ": forces of 3 results\n");
  EXPECT_EQ(ReadTree(onf_), before);
  const json all   = json::parse(RunQuilon({"ls", out_, "--json"}).out);
  const json there = json::parse(RunQuilon({"ls", onf_, "--json"}).out);
  EXPECT_EQ(all.size(), there.size() + 3);
}

TEST_F(ForcesCommand, NeedsAPlaceForForcesThatNobodyAskedToSee)
{
  const std::string dat = Fixture("forces/c3d8.dat");
  const RunResult   run = RunQuilon({"forces", dat, "--deck", Fixture("forces/c3d8.inp")});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + dat +
                         ": not a database to add forces to, expected a working database, an ONF folder, -o OUT, "
                         "--balance, --plane, --elements or --set\n");
}

TEST_F(ForcesCommand, BalanceHoldsWithinTheSolversDigits)
{
  for (const char* name : {"c3d4", "c3d6", "c3d8", "c3d10", "c3d15", "c3d20", "c3d20r"}) {
    const RunResult run = RunOn(std::string("forces/") + name, {"--balance", "--tol", "2e-6", "-q"});
    EXPECT_EQ(run.err, "") << name;
    EXPECT_EQ(run.exitCode, 0) << name << '\n' << run.out;
  }
}

TEST_F(ForcesCommand, BalanceThatDoesNotHoldIsADifference)
{
  EXPECT_EQ(RunOn("forces/c3d8", {"--balance", "--tol", "1e-12"}).exitCode, 1);
  // The geometry of the second step is not the undeformed one.
  EXPECT_EQ(RunOn("forces/c3d8", {"--balance", "--nlgeom", "none"}).exitCode, 1);
  EXPECT_EQ(RunOn("forces/c3d8", {"@lc=1", "--balance", "--nlgeom", "none"}).exitCode, 0);
  EXPECT_EQ(RunOn("forces/c3d8", {"--balance", "--nlgeom", "2"}).exitCode, 0);
}

TEST_F(ForcesCommand, BalanceEndsWithItsVerdict)
{
  const RunResult people = RunOn("forces/c3d8", {"@lc=1", "--balance", "--table", "--head", "1"});
  const auto      line   = people.out.rfind("\nbalance passed: largest residual ");
  ASSERT_NE(line, std::string::npos) << people.out;
  const std::string verdict = people.out.substr(line + 1);
  EXPECT_NE(verdict.find(" of the largest force, at node "), std::string::npos);
  EXPECT_EQ(verdict.substr(verdict.rfind(';')), "; limit 1e-05\n");
}

TEST_F(ForcesCommand, BalanceTellsProgramsItsVerdictBesideTheRows)
{
  const RunResult rows = RunOn("forces/c3d8", {"@lc=1", "--balance", "--csv", "--tol", "1e-12"});
  EXPECT_EQ(rows.exitCode, 1);
  EXPECT_EQ(rows.err.rfind("quilon: note: balance failed: largest residual ", 0), 0U) << rows.err;
  EXPECT_EQ(rows.out.find("balance"), std::string::npos);
  const json verdict =
      json::parse(RunOn("forces/c3d8", {"@lc=1", "--balance", "--json", "--tol", "1e-12"}).out).at("verdict");
  EXPECT_EQ(verdict.at("passed"), false);
  EXPECT_EQ(verdict.at("block"), "580@it=0,an=1,lc=1,sub=1");
  EXPECT_GT(verdict.at("residual").get<double>(), verdict.at("limit").get<double>());
  EXPECT_EQ(rows.err, "quilon: note: " + verdict.at("text").get<std::string>() + '\n');
}

// Coordinates of a .frd leave more open than a fraction of 1e-5.
TEST_F(ForcesCommand, BalanceWithoutDeckPassesWithinWhatItSaysIsUncertain)
{
  Import("forces/c3d20");
  const RunResult run = RunQuilon({"forces", onf_, "@lc=1", "--balance", "--json"});
  EXPECT_EQ(run.exitCode, 0);
  const json report  = json::parse(run.out);
  const json balance = report.at("steps").at(0).at("balance");
  EXPECT_EQ(balance.at("limit").get<double>(), 1e-5 * balance.at("largest-force").get<double>() +
                                                   report.at("steps").at(0).at("rounding-error").get<double>());
  EXPECT_NE(report.at("verdict").at("text").get<std::string>().find(" for the digits of coordinates"),
            std::string::npos);
}

TEST_F(ForcesCommand, BalanceOfNothingSaysWhy)
{
  EXPECT_EQ(RunOn("hex8r/hex8r", {"@lc=1", "--balance", "-q"}).err,
            "quilon: error: " + Fixture("hex8r/hex8r.dat") +
                ": no node to judge in any result: no rule for C3D8R (3 elements)\n");
  const RunResult run = RunOn("forces/c3d8i", {"--balance", "--json"});
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_NE(run.err.find("quilon: note: no node of 580@it=0,an=1,lc=2,sub=1 is judged: no rule for C3D8I in "
                         "geometrically nonlinear steps (4 elements)\n"),
            std::string::npos)
      << run.err;
  EXPECT_EQ(json::parse(run.out).at("steps").at(1).at("balance").at("holds"), json());
}

TEST_F(ForcesCommand, WritesNothingWhereNoElementHasForces)
{
  const RunResult run = RunOn("hex8r/hex8r", {"@lc=1", "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("quilon: error: " + Fixture("hex8r/hex8r.dat") +
                         ": no element has forces in any result: no rule for C3D8R (3 elements)\n"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(std::filesystem::exists(out_));
}

TEST_F(ForcesCommand, BalanceHasTheWorstNodesFirst)
{
  const RunResult run = RunOn("forces/c3d20r", {"@lc=1", "--balance", "--head", "0", "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const json report = json::parse(run.out);
  EXPECT_EQ(report.at("skipped"), json::array());
  EXPECT_EQ(report.at("rounded-coordinates"), false);
  ASSERT_EQ(report.at("steps").size(), 1U);
  const json& step = report.at("steps").at(0);
  EXPECT_EQ(step.at("block"), "580@it=0,an=1,lc=1,sub=1");
  EXPECT_EQ(step.at("deformed"), false);
  EXPECT_EQ(step.at("elements"), 2);
  const json& balance = step.at("balance");
  EXPECT_EQ(balance.at("holds"), true);
  EXPECT_EQ(balance.at("nodes-without-all-forces"), 0);
  EXPECT_EQ(balance.at("nodes-without-reaction"), 0);
  ASSERT_EQ(balance.at("nodes").size(), 32U);
  double former = balance.at("largest-residual").get<double>();
  for (const json& node : balance.at("nodes")) {
    double largest = 0.0;
    for (std::size_t k = 0; k < 3; ++k) {
      const double residual = node.at("residual").at(k).get<double>();
      EXPECT_EQ(residual, node.at("elements").at(k).get<double>() - node.at("external").at(k).get<double>());
      largest = std::max(largest, std::abs(residual));
    }
    EXPECT_LE(largest, former);
    former = largest;
  }
}

TEST_F(ForcesCommand, BalanceListsTenNodesUnlessAskedForMore)
{
  EXPECT_EQ(json::parse(RunOn("forces/c3d8", {"@lc=1", "--balance", "--json"}).out)
                .at("steps")
                .at(0)
                .at("balance")
                .at("nodes")
                .size(),
            10U);
  EXPECT_EQ(json::parse(RunOn("forces/c3d8", {"@lc=1", "--balance", "--json", "--head", "3"}).out)
                .at("steps")
                .at(0)
                .at("balance")
                .at("nodes")
                .size(),
            3U);
}

TEST_F(ForcesCommand, BalanceTableHasALineAboveForPeople)
{
  const RunResult run = RunOn("forces/c3d8", {"@lc=2,sub=last", "--balance", "--table", "--head", "1"});
  EXPECT_EQ(run.out.rfind("580@it=0,an=1,lc=2,sub=2  4 elements, deformed geometry, largest residual ", 0), 0U)
      << run.out;
  EXPECT_NE(run.out.find(" of the largest force\nnode "), std::string::npos) << run.out;
}

TEST_F(ForcesCommand, ElementsWithoutRuleAreToldAndTheirNodesNotJudged)
{
  const RunResult run = RunOn("mixed_linear/mixed_linear", {"@lc=1", "--balance", "--json", "--head", "0"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const json report = json::parse(run.out);
  ASSERT_EQ(report.at("skipped").size(), 1U);
  EXPECT_EQ(report.at("skipped").at(0).at("reason"), "no rule for C3D8R");
  EXPECT_NE(run.err.find("quilon: note: no forces of "), std::string::npos) << run.err;
  EXPECT_NE(run.err.find(", no rule for C3D8R: "), std::string::npos) << run.err;
  EXPECT_GT(report.at("steps").at(0).at("balance").at("nodes-without-all-forces"), 0);
}

TEST_F(ForcesCommand, WithoutDeckTellsWhatPrecisionIsLeft)
{
  Import("forces/c3d20");
  const RunResult run    = RunQuilon({"forces", onf_, "@lc=1", "--balance", "--json"});
  const json      report = json::parse(run.out);
  EXPECT_EQ(report.at("rounded-coordinates"), true);
  const json&  step  = report.at("steps").at(0);
  const double bound = step.at("rounding-error").get<double>();
  EXPECT_GT(bound, 0.0);
  // Rounded coordinates, and RF with the seven digits of the .dat: within what is told and those digits.
  EXPECT_LE(step.at("balance").at("largest-residual").get<double>(),
            bound + 1e-6 * step.at("balance").at("largest-force").get<double>());
  EXPECT_NE(
      run.err.find(onf_ +
                   ": coordinates have six digits; if a .frd rounded them, forces at nodes are uncertain by up to "),
      std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("all steps are taken as geometrically linear, --deck or --nlgeom tells which are not\n"),
            std::string::npos)
      << run.err;
}

// Two nonlinear steps, a linear one and modes: what the deck said at the import holds without it.
TEST_F(ForcesCommand, ADatabaseKnowsWhichStepsAreNonlinear)
{
  const std::string stem = Fixture("forces/steps");
  const std::string text = (folder_ / "copy.onf").string();
  ASSERT_EQ(
      RunQuilon({"import", stem + ".inp", stem + ".frd", stem + ".dat", "-o", onf_, "--request", "none"}).exitCode, 0);
  ASSERT_EQ(RunQuilon({"to-onf", onf_, text}).exitCode, 0);
  const json expected = json::parse(RunQuilon({"forces", onf_, "--deck", stem + ".inp", "--balance", "--json"}).out);
  for (const std::string& database : {onf_, text}) {
    const RunResult run = RunQuilon({"forces", database, "--balance", "--json"});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_EQ(run.err.find("geometrically linear"), std::string::npos) << run.err;
    const json steps = json::parse(run.out).at("steps");
    ASSERT_EQ(steps.size(), expected.at("steps").size());
    for (std::size_t i = 0; i < steps.size(); ++i)
      EXPECT_EQ(steps[i].at("deformed"), expected.at("steps")[i].at("deformed")) << i;
  }
  // Without a deck at the import nobody knows, and it is said.
  Import("forces/steps");
  EXPECT_NE(RunQuilon({"forces", onf_, "--balance"}).err.find("geometrically linear"), std::string::npos);
}

// What a contact exerts is in elements and not in the solver's RF: the deck tells which nodes these are, then or now.
TEST_F(ForcesCommand, NodesInContactAreJudgedApartWithTheDeckOrADatabaseThatKeepsThem)
{
  const std::string stem = Fixture("forces/contact");
  const std::string text = (folder_ / "copy.onf").string();
  ASSERT_EQ(RunQuilon({"import", stem + ".inp", stem + ".frd", stem + ".dat", "-o", onf_}).exitCode, 0);
  ASSERT_EQ(RunQuilon({"to-onf", onf_, text}).exitCode, 0);
  for (const std::vector<std::string>& model :
       {std::vector<std::string>{stem + ".dat", "--deck", stem + ".inp"}, {onf_}, {text}})
  {
    std::vector<std::string> arguments = {"forces", "--balance", "--json"};
    arguments.insert(arguments.begin() + 1, model.begin(), model.end());
    const RunResult run = RunQuilon(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_NE(run.err.find("8 nodes in contact judged apart"), std::string::npos) << run.err;
    const json report = json::parse(run.out);
    EXPECT_EQ(report.at("verdict").at("ties-known"), true);
    const json tied = report.at("steps").at(0).at("balance").at("tied");
    ASSERT_EQ(tied.size(), 1U);
    EXPECT_EQ(tied.at(0).at("how"), "contact");
    EXPECT_GT(tied.at(0).at("largest-residual"), 10.0);
  }
}

TEST_F(ForcesCommand, WithoutADeckTheVerdictSaysThatTiesMayBeTheCause)
{
  Import("forces/contact");
  const RunResult run = RunQuilon({"forces", onf_, "--balance", "--json"});
  EXPECT_EQ(run.exitCode, 1);
  const json verdict = json::parse(run.out).at("verdict");
  EXPECT_EQ(verdict.at("passed"), false);
  EXPECT_EQ(verdict.at("ties-known"), false);
  const auto text = verdict.at("text").get<std::string>();
  EXPECT_NE(
      text.find("; 8 of 16 nodes above it; which nodes are in contact, ties, equations, couplings and the like is "
                "not known without the deck, and what these exert counts as residual: --deck judges them apart"),
      std::string::npos)
      << text;
  // One that passes needs no such word.
  std::filesystem::remove_all(onf_);
  Import("forces/bar");
  EXPECT_EQ(RunQuilon({"forces", onf_, "--balance", "--table"}).out.find("not known"), std::string::npos);
}

TEST_F(ForcesCommand, FreeBodyOfASetHasTheCutThatTheDeckHasByHand)
{
  for (const std::vector<std::string>& part :
       {std::vector<std::string>{"--set", "etip"}, std::vector<std::string>{"--elements", "121,131"}})
  {
    std::vector<std::string> arguments = part;
    arguments.insert(arguments.end(), {"--about", "20,2,1", "--json"});
    const RunResult run = RunOn("forces/bar", arguments);
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const json   body      = json::parse(run.out).at("steps").at(0).at("free-body");
    const double force[3]  = {-12, -6, 5};
    const double moment[3] = {10, -100, -120};
    EXPECT_EQ(body.at("about"), json::array({20.0, 2.0, 1.0}));
    EXPECT_EQ(body.at("cut").at("nodes"), 4);
    EXPECT_EQ(body.at("other").at("nodes"), 8);
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(body.at("cut").at("force").at(k).get<double>(), force[k], 2e-5);
      EXPECT_NEAR(body.at("cut").at("moment").at(k).get<double>(), moment[k], 8e-4);
      EXPECT_NEAR(body.at("other").at("force").at(k).get<double>(), -force[k], 2e-5);
      EXPECT_NEAR(body.at("sum").at("force").at(k).get<double>(), 0.0, 1e-12);
    }
  }
}

TEST_F(ForcesCommand, PlaneTellsWhatOneSideExertsOnTheOther)
{
  const RunResult run = RunOn("forces/bar", {"--plane", "20,2,1,1,0,0", "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const json   plane     = json::parse(run.out).at("steps").at(0).at("plane");
  const double force[3]  = {12, 6, -5};
  const double moment[3] = {-10, 100, 120};
  EXPECT_EQ(plane.at("point"), json::array({20.0, 2.0, 1.0}));
  EXPECT_EQ(plane.at("normal"), json::array({1.0, 0.0, 0.0}));
  EXPECT_EQ(plane.at("elements"), json::array({111}));
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_NEAR(plane.at("force").at(k).get<double>(), force[k], 2e-5);
    EXPECT_NEAR(plane.at("moment").at(k).get<double>(), moment[k], 8e-4);
  }
  const RunResult part = RunOn("forces/bar", {"--plane", "10,2,1,0,1,0", "--elements", "111,121", "--json"});
  EXPECT_EQ(json::parse(part.out).at("steps").at(0).at("plane").at("elements"), json::array({111, 121}));
  EXPECT_EQ(RunOn("forces/bar", {"--plane", "20,2,1,1,0,0", "--csv"})
                .out.rfind("block,elements,fx,fy,fz,mx,my,mz\n\"580@it=0,an=1,lc=1,sub=1\",1,1", 0),
            0U);
}

TEST_F(ForcesCommand, FreeBodyOfASetOfTheDatabaseNeedsNoDeck)
{
  const std::string fed    = (folder_ / "job.fed").string();
  const std::string groups = (folder_ / "groups.txt").string();
  std::ofstream(groups) << "elements Tip part\n121 131\nelements nothing\n";
  std::vector<std::string> import{"import", "--groups", groups, "-o", fed};
  for (const char* extension : {".inp", ".frd", ".dat"})
    import.push_back(Fixture(std::string("forces/bar") + extension));
  ASSERT_EQ(RunQuilon(import).exitCode, 0);
  // A name of the deck in any case, one of a groups file as it was written.
  for (const char* name : {"ETIP", "etip", "Tip part"}) {
    const RunResult run = RunQuilon({"forces", fed, "--set", name, "--about", "20,2,1", "--json", "-q"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const json   body      = json::parse(run.out).at("steps").at(0).at("free-body");
    const double force[3]  = {-12, -6, 5};
    const double moment[3] = {10, -100, -120};
    EXPECT_EQ(body.at("cut").at("nodes"), 4);
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(body.at("cut").at("force").at(k).get<double>(), force[k], 2e-5);
      EXPECT_NEAR(body.at("cut").at("moment").at(k).get<double>(), moment[k], 8e-4);
    }
  }
  EXPECT_EQ(RunQuilon({"forces", fed, "--set", "Tip Part"}).err,
            "quilon: error: " + fed + ": no element set Tip Part, expected one of the database or --deck\n");
  EXPECT_EQ(RunQuilon({"forces", fed, "--set", "nothing"}).err,
            "quilon: error: --set is nothing, which has no elements\n");
}

// Stresses in a material's system are turned by the deck, which a .dat is read with; a database needed it when it was
// imported.
TEST_F(ForcesCommand, StressesInLocalSystemsNeedTheDeck)
{
  const std::string stem = "oriented/oriented";
  EXPECT_EQ(RunOn(stem, {"@lc=1", "--balance", "--tol", "1e-6", "-q"}).exitCode, 0);
  const std::string fed = (folder_ / "job.fed").string();
  ASSERT_EQ(RunQuilon({"import", "-o", fed, Fixture(stem + ".frd"), Fixture(stem + ".dat")}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"forces", fed, "--deck", Fixture(stem + ".inp"), "--balance", "-q"}).err,
            "quilon: error: " + fed +
                ": no stresses of integration points (582), only some in local systems, expected a database that the "
                "deck was imported into with them\n");
  const std::string        whole = (folder_ / "whole.fed").string();
  std::vector<std::string> import{"import", "-o", whole};
  for (const char* extension : {".inp", ".frd", ".dat"}) import.push_back(Fixture(stem + extension));
  ASSERT_EQ(RunQuilon(import).exitCode, 0);
  const RunResult run =
      RunQuilon({"forces", whole, "--deck", Fixture(stem + ".inp"), "--balance", "--tol", "5e-6", "-q"});
  EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
}

// What the import of a .dat alone says of a missing mesh is of no one who has given it.
TEST_F(ForcesCommand, DeckLeavesNothingToNote)
{
  const RunResult run = RunOn("forces/c3d8", {"--set", "EALL"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
}

// The database has the solids that the solver made of shells and beams, the deck has the shells and beams.
TEST_F(ForcesCommand, ExpandedElementsStandAsideWithDeckAndWithout)
{
  const std::string fed = (folder_ / "job.fed").string();
  for (const char* stem : {"c_shell_iso/c_shell_iso3d", "d_beam/d_beam3d", "c_shell/c_shell3d"}) {
    ASSERT_EQ(RunQuilon({"import", Fixture(std::string(stem) + ".frd"), Fixture(std::string(stem) + ".dat"), "-o", fed})
                  .exitCode,
              0);
    const std::string deck = Fixture(std::string(stem) + ".inp");
    for (const std::vector<std::string>& more : {std::vector<std::string>{}, {"--deck", deck}}) {
      std::vector<std::string> arguments{"forces", fed, "--balance", "-q"};
      arguments.insert(arguments.end(), more.begin(), more.end());
      const RunResult run = RunQuilon(arguments);
      EXPECT_EQ(run.exitCode, 2) << stem;
      // Either no stress is in global axes, or no element has a rule.
      const bool isLocal = run.err.find("only some in local systems") != std::string::npos;
      EXPECT_TRUE(isLocal || run.err.find(": no node to judge in any result: no rule for ") != std::string::npos)
          << run.err;
    }
    ASSERT_EQ(RunQuilon({"prune", fed, "all", "-q"}).exitCode, 0);
  }
}

TEST_F(ForcesCommand, WithoutForcesInAResultThoseOfAnEarlierRunGo)
{
  const std::string fed = (folder_ / "job.fed").string();
  ASSERT_EQ(RunQuilon({"import", Fixture("forces/c3d8i.frd"), Fixture("forces/c3d8i.dat"), "-o", fed}).exitCode, 0);
  const std::vector<std::string> command{"forces", fed, "@lc=1", "--deck", Fixture("forces/c3d8i.inp"), "-q"};
  EXPECT_EQ(RunQuilon(command).out, fed + ": forces of 1 result\n");
  ASSERT_EQ(json::parse(RunQuilon({"ls", fed, "580", "--json"}).out).size(), 1U);
  // Of this type of element there are none in deformed geometry.
  std::vector<std::string> deformed = command;
  deformed.insert(deformed.end(), {"--nlgeom", "all"});
  EXPECT_EQ(RunQuilon(deformed).out, fed + ": forces of 0 results\n");
  EXPECT_EQ(json::parse(RunQuilon({"ls", fed, "580", "--json"}).out).size(), 0U);
}

// What is wrong with an option is told before a long read.
TEST_F(ForcesCommand, OptionsAreJudgedBeforeFilesAreRead)
{
  EXPECT_EQ(RunQuilon({"forces", "none.dat", "--set", "A", "--about", "1,2"}).err,
            "quilon: error: --about is '1,2', expected three numbers X,Y,Z\n");
  EXPECT_EQ(RunQuilon({"forces", "none.dat", "--elements", "first"}).err,
            "quilon: error: --elements is 'first', expected ids, ranges of them or all\n");
}

TEST_F(ForcesCommand, FreeBodyTableHasThreeRows)
{
  const RunResult run = RunOn("forces/bar", {"--elements", "101-111", "--csv"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out.rfind("block,at,nodes,fx,fy,fz,mx,my,mz\n\"580@it=0,an=1,lc=1,sub=1\",cut,4,", 0), 0U) << run.out;
  EXPECT_NE(run.out.find("\n\"580@it=0,an=1,lc=1,sub=1\",other,8,"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("\n\"580@it=0,an=1,lc=1,sub=1\",sum,12,"), std::string::npos) << run.out;
}

TEST_F(ForcesCommand, ShowPrintsTheNodeOfEachForce)
{
  ASSERT_EQ(RunOn("forces/bar", {"-o", out_}).exitCode, 0);
  const json rows = json::parse(RunQuilon({"show", out_, "580", "--ids", "131", "--json"}).out).at(0).at("rows");
  ASSERT_EQ(rows.size(), 8U);
  const int nodes[8] = {35, 43, 47, 39, 37, 45, 49, 41};
  for (std::size_t n = 0; n < 8; ++n) EXPECT_EQ(rows.at(n).at("node"), nodes[n]);
}

struct UsageRow
{
  std::vector<std::string> arguments;
  std::string              message;
};

TEST_F(ForcesCommand, SaysWhatIsWrongWithItsArguments)
{
  const std::string deck   = Fixture("forces/bar.inp");
  const std::string dat    = Fixture("forces/bar.dat");
  const UsageRow    rows[] = {
         {{"--set", "ETIP", "--elements", "1"}, "--elements and --set exclude each other, expected one at most"},
         {{"--balance", "--set", "ETIP"}, "--balance is of the whole model, expected it without --elements and --set"},
         {{"--set", "ETIP", "--about", "1,2"}, "--about is '1,2', expected three numbers X,Y,Z"},
         {{"--set", "ETIP", "--about", "1,2,3,4"}, "--about is '1,2,3,4', expected three numbers X,Y,Z"},
         {{"--set", "ETIP", "--about", "1,nan,2"}, "--about is '1,nan,2', expected three numbers X,Y,Z"},
         {{"--set", ""}, "--set: empty, expected a value, see 'quilon forces --help'"},
         {{"--elements", ""}, "--elements: empty, expected a value, see 'quilon forces --help'"},
         {{"-o", ""}, "--output: empty, expected a value, see 'quilon forces --help'"},
         {{"--about", "1,2,3"}, "--about is of a free body, expected --elements or --set with it"},
         {{"--plane", "1,2,3,0,0"},
          "--plane is '1,2,3,0,0', expected six numbers PX,PY,PZ,NX,NY,NZ: a point and a normal that is not zero"},
         {{"--plane", "1,2,3,0,0,0"},
          "--plane is '1,2,3,0,0,0', expected six numbers PX,PY,PZ,NX,NY,NZ: a point and a normal that is not zero"},
         {{"--plane", ""}, "--plane: empty, expected a value, see 'quilon forces --help'"},
         {{"--plane", "1,2,3,1,0,0", "--balance"}, "--balance and --plane exclude each other, expected one at most"},
         {{"--plane", "1,2,3,1,0,0", "--about", "1,2,3"},
          "--about is of a free body, expected the point of --plane for its moment"},
         {{"--plane", "41,2,1,1,0,0"},
          "--plane passes no element, which lie from -41 to -1 along its normal, expected for example --plane "
             "20,2,1,1,0,0"},
         {{"--tol", "1e-6"}, "--tol requires --balance, see 'quilon forces --help'"},
         {{"--set", "ETIP", "--head", "3"}, "--head requires --balance, see 'quilon forces --help'"},
         {{"--set", "NOSUCH"}, deck + ": no element set NOSUCH"},
         {{"--elements", "101,7"}, dat + ": no element 7 in the mesh"},
         {{"--elements", "1-9"}, "--elements is '1-9', which names no element of the mesh"},
         {{"--elements", "last"}, "--elements is 'last', expected ids, ranges of them or all"},
         {{"--balance", "--nlgeom", "last"}, "--nlgeom is 'last', expected numbers of steps, all or none"},
         {{"--balance", "510"},
          dat + ": no stresses of integration points (582) in '510', expected a .dat with S of the solver"},
  };
  for (const UsageRow& row : rows) {
    std::vector<std::string> arguments = row.arguments;
    arguments.emplace_back("-q");
    const RunResult run = RunOn("forces/bar", arguments);
    EXPECT_EQ(run.exitCode, 2) << row.message;
    EXPECT_EQ(run.err, "quilon: error: " + row.message + '\n');
    EXPECT_EQ(run.out, "");
  }
}

TEST_F(ForcesCommand, NonlinearStepsAreStepsOfTheResults)
{
  const std::string dat = Fixture("forces/c3d8.dat");
  for (const auto& [steps, step] : {std::pair("99", "99"), {"2,98-99", "98-99"}}) {
    const RunResult run = RunOn("forces/c3d8", {"--balance", "--nlgeom", steps, "-q"});
    EXPECT_EQ(run.err, "quilon: error: --nlgeom is '" + std::string(step) + "', expected a step of the results in " +
                           dat + ": 1-2\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.exitCode, 2);
  }
  EXPECT_EQ(RunOn("forces/c3d8", {"@lc=1", "--balance", "--nlgeom", "2"}).exitCode, 2);
  EXPECT_EQ(RunOn("forces/c3d8", {"--balance", "--nlgeom", "2-99", "-q"}).exitCode, 0);
}

TEST_F(ForcesCommand, DeckWithFewerStepsThanTheResultsIsRefused)
{
  const std::string deck = Fixture("forces/bar.inp");
  const RunResult   run = RunQuilon({"forces", Fixture("forces/c3d8.dat"), "@lc=2", "--deck", deck, "--balance", "-q"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + deck + ": 1 step, expected a step 2 as in the results, or --nlgeom\n");
}

// The bar's elements have ids that the other mesh has not.
TEST_F(ForcesCommand, DeckOfAnotherMeshLeavesTheFolderAsItWas)
{
  Import("forces/c3d8");
  const std::string before = ReadTree(onf_);
  const RunResult   run    = RunQuilon({"forces", onf_, "@lc=1", "--deck", Fixture("forces/c3d20.inp"), "-o", onf_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.rfind("quilon: error: " + Fixture("forces/c3d20.inp") + ": element 12: ", 0), 0U) << run.err;
  EXPECT_EQ(ReadTree(onf_), before);
}

TEST_F(ForcesCommand, ResultsWithoutStressesAreRefused)
{
  const std::string frd = Fixture("forces/bar.frd");
  const RunResult   run = RunQuilon({"forces", frd, "--balance"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + frd +
                         ": no stresses of integration points (582), expected a .dat with S of the solver\n");
}

}  // namespace
