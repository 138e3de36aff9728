#include <string>

#include <gtest/gtest.h>

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
  ExpectRefusal({"export", fed_, "displacement", "--groups", "lines", "-o", Out("job.vtkhdf")}, "lines");
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
