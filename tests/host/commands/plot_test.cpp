#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;
using testing::HasSubstr;

class PlotCommand : public testing::Test
{
protected:
  /// Expects that a run fails with this message and writes nothing.
  void ExpectTrouble(std::vector<std::string> arguments, const std::string& message)
  {
    arguments.insert(arguments.begin(), {"-q", "plot"});
    quilon_test::ExpectTrouble(arguments, message);
    EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
  }

  TempFolder        folder_;
  const std::string picture_ = (folder_ / "a.png").string();
  const std::string job_     = std::string(QUILON_FIXTURES) + "/calculix/hex8/hex8.frd";
  const std::string deck_    = std::string(QUILON_FIXTURES) + "/calculix/hex8/hex8.inp";
};

TEST_F(PlotCommand, DrawsAResultFileInEveryFormatTheSameEachTime)
{
  for (const char* name : {"a.png", "a.svg", "a.pdf"}) {
    const std::string file = (folder_ / name).string();
    const RunResult   run  = RunQuilon(
           {"plot", job_, "displacement.z", "-o", file, "--deform", "auto", "--size", "300x200", "--view", "30,20"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "quilon: note: the last of 3 steps is shown\n");
    const std::string first = ReadAll(file);
    RunQuilon({"plot", job_, "displacement.z", "-o", file, "--deform", "auto", "--size", "300x200", "--view", "30,20"});
    EXPECT_EQ(ReadAll(file), first) << name;
  }
}

TEST_F(PlotCommand, HelpHasALineForEachView)
{
  EXPECT_THAT(RunQuilon({"plot", "--help"}).out, HasSubstr("parallel projections:\n"
                                                           "  front   along +y: x to the right, z up (as 0,0)\n"
                                                           "  right   along -x: y to the right, z up (as 90,0)\n"
                                                           "  top     against +z: x to the right, y up (as 0,90)\n"
                                                           "  back, left, bottom: from the other side\n"
                                                           "  iso     all axes equally long (as 45,35.26)\n"));
}

TEST_F(PlotCommand, ShowsOneStepWithoutANote)
{
  EXPECT_EQ(RunQuilon({"plot", job_, "stress", "--step", "1", "-o", picture_, "--size", "200x150"}).err, "");
  const std::string first = ReadAll(picture_);
  EXPECT_EQ(RunQuilon({"plot", job_, "stress", "--time", "1", "-o", picture_, "--size", "200x150"}).err, "");
  EXPECT_EQ(ReadAll(picture_), first) << "the first step is that at time 1";
}

TEST_F(PlotCommand, SaysWhatIsWrongBeforeItReads)
{
  ExpectTrouble({job_, "stress", "-o", (folder_ / "a.jpg").string()},
                (folder_ / "a.jpg").string() + ": expected a name that ends in .png, .svg or .pdf");
  ExpectTrouble(
      {job_, "stress", "-o", (folder_ / "no" / "a.png").string()},
      (folder_ / "no" / "a.png").string() + ": expected a file that can be written: No such file or directory");
  ExpectTrouble({job_, "stress", "-o", picture_, "--view", "topp"}, "'topp' is no view, did you mean 'top'?");
  ExpectTrouble({job_, "stress", "-o", picture_, "--size", "12"},
                "'12' is no size of a picture, expected WxH such as 1200x900, 100 to 10000 each");
  ExpectTrouble({job_, "stress", "-o", picture_, "--range", "2,1"},
                "--range is '2,1', expected two numbers LEAST,GREATEST, the lesser first");
  ExpectTrouble(
      {job_, "stress", "-o", picture_, "--cut", "0,0,0,0,0,0"},
      "--cut is '0,0,0,0,0,0', expected six numbers PX,PY,PZ,NX,NY,NZ: a point and a normal that is not zero");
  ExpectTrouble({job_, "stress", "-o", picture_, "--deform", "much"}, "--deform is 'much', expected a factor or auto");
  ExpectTrouble({job_, "-o", picture_, "--step", "1"},
                "--step and --time are of a result, expected a selection with them");
}

TEST_F(PlotCommand, SaysWhatTheResultsDoNotHave)
{
  const std::vector<std::string> base = {job_, "stress", "-o", picture_};
  const auto                     with = [&](const std::string& option, const std::string& value) {
    std::vector<std::string> arguments = base;
    arguments.insert(arguments.end(), {option, value});
    return arguments;
  };
  ExpectTrouble(with("--cut", "0,0,500,0,0,1"),
                job_ +
                    ": the plane misses the model, which lies from -500 to -492 along its normal, counted from its "
                    "point");
  EXPECT_EQ(RunQuilon({"plot", job_, "stress", "-o", picture_, "--component", "zy"}).exitCode, 2);
  ExpectTrouble({job_, "time", "-o", picture_},
                job_ +
                    ": 'time' selects no values at nodes or elements, found time, expected a kind such as "
                    "displacement, nodal-stress or element-energy");
  // A kind that the .frd does not have, and the names of components that a kind has.
  EXPECT_THAT(RunQuilon({"plot", job_, "stress.zy", "-o", picture_}).err, HasSubstr("zx"));
  EXPECT_THAT(RunQuilon({"plot", job_, "stress", "-o", picture_, "--set", "NONE"}).err, HasSubstr("NONE"));
  EXPECT_THAT(RunQuilon({"plot", job_, "stress", "-o", picture_, "--step", "9"}).err,
              HasSubstr("step 9 is not there, expected positions from 1 to 3"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
  // A result file without a mesh.
  const std::string dat = job_.substr(0, job_.size() - 3) + "dat";
  ExpectTrouble({dat, "-o", picture_},
                dat + ": no coordinates (block 516), expected the mesh of a .frd or a deck, as quilon import reads it");
}

TEST_F(PlotCommand, DrawsWhatALogOfTheSolverTells)
{
  const std::string log = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet.sta";
  EXPECT_EQ(RunQuilon({"plot", "--convergence", log, "-o", picture_}).exitCode, 0);
  EXPECT_TRUE(std::filesystem::exists(picture_));
  const RunResult run = RunQuilon({"plot", "--convergence", log, "-o", "-"}, {.environment = {"LC_ALL=C"}});
  EXPECT_THAT(run.out, testing::StartsWith("Convergence of a_tet.sta\niterations\n"));
  EXPECT_THAT(run.out, testing::Not(HasSubstr("\u2500")));
  EXPECT_THAT(RunQuilon({"plot", "--convergence", log, "-o", "-"}, {.environment = {"LC_ALL=C.UTF-8"}}).out,
              HasSubstr("\u2500"));
  std::filesystem::remove(picture_);
  ExpectTrouble({job_, "--convergence", log, "-o", picture_},
                "--convergence is of a log of the solver, expected it without a database: " + job_);
  ExpectTrouble({"--convergence", job_, "-o", picture_},
                job_ + ": expected a log of the solver that ends in .cvg or .sta");
  ExpectTrouble({"-o", picture_}, "DB is missing, see 'quilon plot --help'");
}

}  // namespace
