#include <string>
#include <vector>

#include <sys/resource.h>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

const std::string kDeck = std::string(QUILON_FIXTURES) + "/calculix/a_tet/a_tet";

class ExportCommand : public testing::Test
{
protected:
  void SetUp() override
  {
    ASSERT_EQ(
        RunQuilon({"import", kDeck + ".inp", kDeck + ".frd", kDeck + ".dat", "-o", fed_, "--average-by", "material"})
            .exitCode,
        0);
  }

  /// What is in the folder beside the database.
  std::string Outputs() const
  {
    std::filesystem::create_directory(folder_ / "out");
    return ReadTree(folder_ / "out");
  }
  std::string Out(const std::string& name) const
  {
    std::filesystem::create_directory(folder_ / "out");
    return (folder_ / "out" / name).string();
  }

  void ExpectRefusal(const std::vector<std::string>& arguments, const std::string& message)
  {
    const std::string before = Outputs();
    const RunResult   run    = RunQuilon(arguments);
    EXPECT_EQ(run.exitCode, 2) << run.out;
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
    EXPECT_EQ(Outputs(), before);
  }

  TempFolder  folder_;
  std::string fed_ = (folder_ / "job.fed").string();
};

TEST_F(ExportCommand, ATableGoesToStandardOutput)
{
  ASSERT_EQ(RunQuilon({"export", fed_, "stress.mises@lc=1", "-o", Out("t.csv")}).exitCode, 0);
  const RunResult run = RunQuilon({"export", fed_, "stress.mises@lc=1", "-o", "-"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, ReadAll(Out("t.csv")));
  EXPECT_FALSE(std::filesystem::exists("-"));
  ExpectRefusal({"export", fed_, "stress", "-o", "-", "--json"}, "-o - prints the table, expected a file with --json");
  ExpectRefusal({"export", fed_, "-o", "-", "--link"}, "--link is of a .vtkhdf");
  ExpectRefusal({"to-onf", fed_, "-"}, "-: expected the name of a working database (.fed) or of an ONF folder (.onf)");
}

TEST_F(ExportCommand, TellsWhatItWrote)
{
  EXPECT_EQ(RunQuilon({"export", fed_, "displacement,stress", "-o", Out("job.vtkhdf")}).out,
            Out("job.vtkhdf") + ": 3 arrays of 3 steps, 63 points, 144 cells\n");
  EXPECT_EQ(RunQuilon({"export", fed_, "displacement", "-o", Out("job.pvd")}).out,
            Out("job.pvd") + ": 1 array of 3 steps, 63 points, 144 cells\n" + Out("job-1.vtu") + " to " +
                Out("job-3.vtu") + ": the steps\n");
  EXPECT_EQ(RunQuilon({"export", fed_, "coordinates", "-o", Out("mesh.vtu")}).out,
            Out("mesh.vtu") + ": 0 arrays, 63 points, 144 cells\n");
  EXPECT_EQ(RunQuilon({"export", fed_, "stress@lc=1", "--component", "mises,p1", "-o", Out("t.csv"), "--json"}).out,
            "{\n"
            "  \"files\": [\n"
            "    \"" +
                Out("t.csv") +
                "\"\n"
                "  ],\n"
                "  \"arrays\": [\n"
                "    \"nodal-stress-mises\",\n"
                "    \"nodal-stress-p1\",\n"
                "    \"nodal-stress-group-STEEL-mises\",\n"
                "    \"nodal-stress-group-STEEL-p1\"\n"
                "  ],\n"
                "  \"times\": [\n"
                "    1.0\n"
                "  ],\n"
                "  \"steps\": 1,\n"
                "  \"left-out\": []\n"
                "}\n");
}

TEST_F(ExportCommand, TakesComponentsAndTimesFromTheSelection)
{
  const RunResult run =
      RunQuilon({"export", fed_, "displacement,stress.mises", "--time", "1.5", "-o", Out("job.vtu"), "--json"});
  EXPECT_NE(run.out.find("\"arrays\": [\n    \"displacement\",\n    \"nodal-stress-mises\",\n"), std::string::npos)
      << run.out << run.err;
  EXPECT_NE(run.out.find("\"times\": [\n    1.5\n  ]"), std::string::npos) << run.out;
}

TEST_F(ExportCommand, NotesSelectedKindsThatCannotBeExported)
{
  const RunResult named = RunQuilon({"export", fed_, "displacement,582", "--steps", "1", "-o", Out("job.vtu")});
  EXPECT_EQ(named.err,
            "quilon: note: left out integration-point-stress: expected a scalar, vector or tensor of each "
            "node or element\n");
  EXPECT_EQ(RunQuilon({"export", fed_, "-o", Out("job.vtkhdf")}).err, "");
}

TEST_F(ExportCommand, RefusesWhatGivesNothing)
{
  ExpectRefusal({"export", fed_, "582", "-o", Out("job.vtu")}, "the selection has no values of nodes or elements");
  ExpectRefusal({"export", fed_, "displacement@lc=9", "-o", Out("job.vtu")}, "displacement@lc=9");
  ExpectRefusal({"export", fed_, "displacement", "--component", "mises", "-o", Out("job.vtu")}, "magnitude");
  ExpectRefusal({"export", fed_, "displacement", "-o", Out("job.vtu")}, "expected one step for a .vtu, found 3");
  ExpectRefusal({"export", fed_, "displacement", "-o", Out("job.xyz")}, ".vtkhdf, .vtu, .pvd or .csv");
  ExpectRefusal({"export", fed_, "displacement,540", "-o", Out("job.csv")}, "values of nodes or of elements");
  ExpectRefusal({"export", fed_, "displacement", "--groups", "lines", "-o", Out("job.vtkhdf")},
                "--groups is 'lines', expected arrays or points");
}

TEST_F(ExportCommand, LinksPointAtAWorkingDatabase)
{
  const RunResult run = RunQuilon({"export", fed_, "displacement,stress", "--link", "-o", Out("job.vtkhdf")});
  EXPECT_EQ(run.out, Out("job.vtkhdf") + ": 3 arrays of 3 steps, 63 points, 144 cells\n");
  EXPECT_NE(run.err.find("quilon: note: " + Out("job.vtkhdf") + " shows values of " + fed_ + " (segment-000001.h5)"),
            std::string::npos)
      << run.err;
  ExpectRefusal({"export", fed_, "stress.mises", "--link", "-o", Out("mises.vtkhdf")},
                "nodal-stress-mises: a link shows what the database holds, expected stored components");
  ExpectRefusal({"export", fed_, "stress", "--link", "--groups", "points", "-o", Out("points.vtkhdf")},
                "nodal-stress-group: a link shows what the database holds, expected --groups arrays");
  ExpectRefusal({"export", fed_, "stress", "--link", "-o", Out("job.pvd")}, "expected a .vtkhdf for --link");
  ExpectRefusal({"export", kDeck + ".frd", "displacement", "--link", "-o", Out("other.vtkhdf")},
                "expected a working database (.fed) for --link");
}

TEST_F(ExportCommand, RefusesPlacesThatCannotBeWritten)
{
  for (const std::string name : {"job.vtkhdf", "job.pvd", "job.csv"}) {
    ExpectRefusal({"export", fed_, "displacement", "-o", Out("nowhere/" + name)}, name);
    ExpectRefusal({"export", fed_, "displacement", "-o", fed_ + "/" + name}, "inside a working database");
  }
}

TEST_F(ExportCommand, AFullDiskLeavesNothingBehind)
{
  for (const std::string name : {"job.vtkhdf", "job.pvd", "job.csv", "job.vtu"}) {
    for (const std::size_t limit : {1000U, 5000U, 20000U}) {
      const std::string before = Outputs();
      const RunResult   run =
          RunQuilon({"export", fed_, "stress", "--steps", name == "job.vtu" ? "1" : "all", "-o", Out(name)},
                    {.fileLimit = limit});
      if (run.exitCode == 0) continue;  // small enough
      EXPECT_EQ(run.exitCode, 2) << name << " " << limit;
      EXPECT_NE(run.err.find("expected a file that can be written"), std::string::npos) << run.err;
      EXPECT_EQ(Outputs(), before) << name << " " << limit;
    }
  }
}

#ifndef QUILON_SANITIZED  // sanitizers keep freed memory for a while

// A reader of a database keeps up to 32 MiB of rows, so that both runs have more than that to read.
TEST(ExportMemory, DoesNotGrowWithTheSteps)
{
  constexpr int     kNodes = 25000;
  constexpr int     kSteps = 100;
  const TempFolder  folder;
  const std::string fed  = (folder / "long.fed").string();
  const auto        peak = [] {
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_maxrss);
  };
  {
    FED_ResultDatabase  database(fed, FED_ResultDatabase::Create);
    std::vector<double> values = {1, 2, 3, 4, 5, 6};
    FED_IdDataBlock     coordinates(
            database.GetOrCreateDataBlock(FED_DataDescriptor(0, static_cast<FED_OnfId>(516)), kNodes),
            database.GetIdMapsPool(), true);
    for (int node = 1; node <= kNodes; ++node) coordinates.SetVector(node, values.data());
    for (int step = 1; step <= kSteps; ++step) {
      FED_DataDescriptor key(0, static_cast<FED_OnfId>(521));
      key.SetInteger(FED_DataDescriptor::LoadCase, 1);
      key.SetInteger(FED_DataDescriptor::Substep, step);
      FED_DataBlock& block = database.GetOrCreateDataBlock(key, kNodes);
      for (std::size_t node = 1; node <= kNodes; ++node) block.SetValuesAt(node, values.data());
      if (step % 10 == 0) database.Commit();
    }
  }
  for (const std::string name : {"long.vtkhdf", "long.pvd"}) {
    const std::string output = (folder / name).string();
    ASSERT_EQ(RunQuilon({"export", fed, "stress", "--steps", "1-30", "-o", output}).exitCode, 0);
    const double few = peak();
    ASSERT_EQ(RunQuilon({"export", fed, "stress", "-o", output}).exitCode, 0);
    EXPECT_LE(peak(), 1.1 * few) << name << ", KiB";
  }
}

#endif

TEST_F(ExportCommand, AnInterruptLeavesNothingBehind)
{
  for (const std::string name : {"job.vtkhdf", "job.pvd", "job.csv"}) {
    const std::string before = Outputs();
    const RunResult   run    = RunQuilon({"export", fed_, "stress", "-o", Out(name)}, {.interrupted = true});
    EXPECT_NE(run.exitCode, 0) << name;
    EXPECT_EQ(Outputs(), before) << name;
  }
}

}  // namespace
