// A second import under one name, and what a database keeps of the imports that made it.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using namespace quilon_test;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

/// What makes a deck of the element set E.
constexpr const char* kSection = "*SOLID SECTION, ELSET=E, MATERIAL=M\n*MATERIAL, NAME=M\n*ELASTIC\n1,0\n";

/// A tetrahedron at so many times; displacements are 1, 2, ... at all nodes.
std::string FrdText(std::size_t numTimes, bool isWider = false)
{
  // Columns: " -1", an id of ten, values of twelve.
  std::string text = "    1C\n    2C                             4                                     1\n";
  const auto  row  = [](int id, double x, double y, double z) {
    char line[80];
    std::snprintf(line, sizeof line, " -1%10d%12.5E%12.5E%12.5E\n", id, x, y, z);
    return std::string(line);
  };
  const int last = isWider ? 5 : 4;
  text += row(1, 0, 0, 0) + row(2, 1, 0, 0) + row(3, 0, 1, 0) + row(last, 0, 0, 1) + " -3\n";
  text += "    3C                             1                                     1\n";
  text += " -1         1    3    0    1\n -2         1         2         3         " + std::to_string(last) + "\n -3\n";
  for (std::size_t i = 1; i <= numTimes; ++i) {
    char line[120];
    std::snprintf(line, sizeof line, "    1PSTEP%26zu%12zu%12d\n", i, i, 1);
    text += line;
    std::snprintf(line, sizeof line, "  100CL  %3zu%12.5E           4                     0%5zu           1\n", 100 + i,
                  static_cast<double>(i), i);
    text += line;
    text +=
        " -4  DISP        4    1\n -5  D1          1    2    1    0\n -5  D2          1    2    2    0\n"
        " -5  D3          1    2    3    0\n -5  ALL         1    2    0    0    1ALL\n";
    for (const int id : {1, 2, 3, last}) {
      const auto value = static_cast<double>(i);
      text += row(id, value, value, value);
    }
    text += " -3\n";
  }
  return text + " 9999\n";
}

class Reimport : public testing::TestWithParam<const char*>
{
protected:
  std::string Write(const std::string& name, const std::string& text) const
  {
    const std::string path = (folder_ / name).string();
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  json Blocks(const std::vector<std::string>& more = {}) const
  {
    std::vector<std::string> arguments = {"ls", out_, "--json"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return json::parse(RunQuilon(arguments).out);
  }

  TempFolder  folder_;
  std::string out_ = (folder_ / GetParam()).string();
};

INSTANTIATE_TEST_SUITE_P(Into, Reimport, testing::Values("job.fed", "job.onf"),
                         [](const auto& param) { return std::string(param.param) == "job.fed" ? "Fed" : "Onf"; });

// Four results, then a run with two: nothing of the third and the fourth stays.
TEST_P(Reimport, OfOneJobReplacesAllThatItWrote)
{
  const std::string frd = Write("job.frd", FrdText(4));
  ASSERT_EQ(RunQuilon({"import", frd, "-o", out_}).exitCode, 0);
  EXPECT_EQ(Blocks({"displacement"}).size(), 4U);

  Write("job.frd", FrdText(2));
  const RunResult run = RunQuilon({"import", frd, "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.err, "quilon: note: " + out_ +
                         ": iteration 0 held results of job.frd, 6 blocks replaced, 2 blocks removed: "
                         "displacement (2)\n");
  EXPECT_EQ(Blocks({"displacement"}).size(), 2U);
  EXPECT_EQ(RunQuilon({"show", out_, "time"}).out, "index\ttime\n1\t1\n2\t2\n");

  const std::string fresh = (folder_ / ("fresh" + fs::path(out_).extension().string())).string();
  RunQuilon({"import", frd, "-o", fresh});
  EXPECT_EQ(RunQuilon({"ls", out_}).out, RunQuilon({"ls", fresh}).out);
}

TEST_P(Reimport, OfOtherNodesOrElementsIsRefusedWithTheWaysOut)
{
  const std::string first  = Write("a.frd", FrdText(2));
  const std::string second = Write("b.frd", FrdText(1, true));
  RunQuilon({"import", first, "-o", out_});
  const std::string before = ReadTree(out_);
  const RunResult   run    = RunQuilon({"import", second, "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + out_ +
                         ": iteration 0 holds another mesh, 2 nodes (4-5) and 1 element (1) differ; --replace puts "
                         "this import in its place, --iteration N beside it, --keep-others mixes the two\n");
  EXPECT_EQ(ReadTree(out_), before);

  EXPECT_EQ(RunQuilon({"import", second, "-o", out_, "--iteration", "1"}).exitCode, 0);
  EXPECT_EQ(Blocks({"displacement"}).size(), 3U);
  EXPECT_EQ(RunQuilon({"import", second, "-o", out_, "--replace"}).exitCode, 0);
  EXPECT_EQ(Blocks({"displacement@it=0"}).size(), 1U);
  EXPECT_EQ(Blocks({"displacement@it=1"}).size(), 1U) << "another iteration is no business of this import";
  EXPECT_EQ(RunQuilon({"import", first, "-o", out_, "--keep-others"}).exitCode, 0);
  EXPECT_EQ(Blocks({"displacement@it=0"}).size(), 2U);
  EXPECT_EQ(RunQuilon({"import", first, "-o", out_, "--keep-others", "--replace"}).err,
            "quilon: error: --replace and --keep-others exclude each other, expected one at most\n");
}

// Without a mesh on both sides only the names of the files tell whether results belong together.
TEST_P(Reimport, WithoutAMeshGoesByTheNamesOfTheFiles)
{
  const std::string dat = Write("job.dat",
                                "\n displacements (vx,vy,vz) for set NALL and time  0.1000000E+01\n\n"
                                "         1  1.000000E+00  0.000000E+00  0.000000E+00\n");
  RunQuilon({"import", Write("job.frd", FrdText(1)), "-o", out_});
  const RunResult run = RunQuilon({"import", dat, "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_THAT(run.err, HasSubstr("iteration 0 holds results of job.frd, and no mesh tells whether those of job.dat "
                                 "belong to them; --replace "));
  EXPECT_EQ(RunQuilon({"import", dat, "-o", out_, "--keep-others"}).exitCode, 0);
  EXPECT_EQ(Blocks({"coordinates"}).size(), 1U);
  EXPECT_EQ(RunQuilon({"import", dat, "-o", out_, "--replace"}).exitCode, 0);
  EXPECT_EQ(Blocks({"coordinates"}).size(), 0U);
  std::ofstream(dat, std::ios::app) << "         2  1.000000E+00  0.000000E+00  0.000000E+00\n";
  EXPECT_EQ(RunQuilon({"import", dat, "-o", out_}).exitCode, 0) << "the same file, run again";
}

TEST_P(Reimport, OfUnchangedFilesSaysSoAndWritesNothing)
{
  const std::string frd = Write("job.frd", FrdText(2));
  RunQuilon({"import", frd, "-o", out_});
  const std::string before = ReadTree(out_);
  fs::last_write_time(frd, fs::last_write_time(frd) + std::chrono::hours(1));
  const RunResult run = RunQuilon({"import", frd, "-o", out_});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, out_ + ": unchanged, nothing written: iteration 0 is of these files already\n");
  EXPECT_EQ(ReadTree(out_), before);
  EXPECT_EQ(json::parse(RunQuilon({"import", frd, "-o", out_, "--json"}).out).at("unchanged"), true);

  // Other options, another program's version or missing blocks make it another import.
  EXPECT_THAT(RunQuilon({"import", frd, "-o", out_, "--request", "none"}).out, Not(HasSubstr("unchanged")));
  EXPECT_THAT(RunQuilon({"import", frd, "-o", out_, "--request", "none"}).out, HasSubstr("unchanged"));
  EXPECT_THAT(RunQuilon({"import", frd, "-o", out_, "--replace"}).out, Not(HasSubstr("unchanged")));
  if (out_.ends_with(".fed")) {
    RunQuilon({"prune", out_, "displacement@sub=2"});
    EXPECT_THAT(RunQuilon({"import", frd, "-o", out_}).out, Not(HasSubstr("unchanged")));
    EXPECT_EQ(Blocks({"displacement"}).size(), 2U);
  }
}

TEST_P(Reimport, SeesThatAnIncludeHasChanged)
{
  fs::create_directory(folder_ / "parts");
  const std::string deck = Write(
      "job.inp", "*INCLUDE, INPUT=parts/mesh.inc\n*ELEMENT, TYPE=C3D4, ELSET=E\n1,1,2,3,4\n" + std::string(kSection));
  const auto write = [this](const std::string& x) {
    Write("parts/mesh.inc", "*NODE\n1,0,0,0\n2," + x + ",0,0\n3,0,1,0\n4,0,0,1\n");
  };
  write("1.0");
  ASSERT_EQ(RunQuilon({"import", deck, "-o", out_}).exitCode, 0);
  EXPECT_THAT(RunQuilon({"import", deck, "-o", out_}).out, HasSubstr("unchanged"));
  write("1.5");
  EXPECT_THAT(RunQuilon({"import", deck, "-o", out_}).out, Not(HasSubstr("unchanged")));
  EXPECT_THAT(RunQuilon({"show", out_, "coordinates", "--ids", "2"}).out, HasSubstr("1.5"));
  EXPECT_THAT(RunQuilon({"show", out_, "import-file"}).out, HasSubstr("\tinclude\tparts/mesh.inc\t"));
}

// The deck has a node more than the results: a spring's other end. Which of the two came first plays no part.
TEST_P(Reimport, WithADeckMoreIsTheSameMesh)
{
  const std::string frd  = Write("job.frd", FrdText(1));
  const std::string deck = Write("job.inp",
                                 "*NODE\n1,0,0,0\n2,1,0,0\n3,0,1,0\n4,0,0,1\n9,5,5,5\n"
                                 "*ELEMENT, TYPE=C3D4, ELSET=E\n1,1,2,3,4\n" +
                                     std::string(kSection) + "*STEP\n*STATIC\n*END STEP\n");
  ASSERT_EQ(RunQuilon({"import", frd, "-o", out_}).exitCode, 0);
  RunResult run = RunQuilon({"import", deck, frd, "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  run = RunQuilon({"import", frd, "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.err, HasSubstr("blocks removed: element-section (1), element-set (1), material (1)"));
}

// Names of types that an import left are not those of the types that the next one brings.
TEST_P(Reimport, NamesOfTypesGoWithTheTypes)
{
  const std::string fixture = QUILON_FIXTURES "/calculix/hex8r/hex8r.inp";
  std::ifstream     in(fixture, std::ios::binary);
  std::string       deck((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  const std::string reduced = Write("reduced.inp", deck);
  deck.replace(deck.find("C3D8R,"), 6, "C3D8,");
  const std::string full  = Write("full.inp", deck);
  const auto        types = [this] { return json::parse(RunQuilon({"info", out_, "--json"}).out).at("elements"); };
  ASSERT_EQ(RunQuilon({"import", reduced, "-o", out_}).exitCode, 0);
  EXPECT_EQ(types().begin().key(), "C3D8R");
  ASSERT_EQ(RunQuilon({"import", full, "--keep-others", "-o", out_}).exitCode, 0);
  EXPECT_EQ(types().begin().key(), "C3D8");
  ASSERT_EQ(RunQuilon({"import", reduced, "-o", out_}).exitCode, 0);
  EXPECT_EQ(types().begin().key(), "C3D8R");
}

TEST_P(Reimport, LeavesStoredMatricesWhereTheMeshStays)
{
  const std::string frd = Write("job.frd", FrdText(1));
  const std::string mtx = Write("k.mtx", "%%MatrixMarket matrix coordinate real general\n2 2 1\n1 1 5\n");
  const std::string dof = Write("k.dof", "1.1\n1.2\n");
  ASSERT_EQ(RunQuilon({"matrix", "import", mtx, "-o", out_, "--as", "stiffness", "--dof", dof}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"import", frd, "-o", out_}).exitCode, 0) << "matrices are no results of another job";
  Write("job.frd", FrdText(2));
  EXPECT_EQ(RunQuilon({"import", frd, "-o", out_}).exitCode, 0);
  EXPECT_EQ(Blocks({"stiffness-matrix"}).size(), 1U);
  EXPECT_EQ(Blocks({"matrix-dofs"}).size(), 1U);
  EXPECT_EQ(RunQuilon({"import", frd, "-o", out_, "--replace"}).exitCode, 0);
  EXPECT_EQ(Blocks({"stiffness-matrix"}).size(), 0U) << "of another mesh, for all that is known";
}

TEST_P(Reimport, LeavesARecordOfEveryImport)
{
  const std::string frd = Write("job.frd", FrdText(1));
  RunQuilon({"import", frd, "-o", out_, "--request", "none"});
  const std::size_t size = fs::file_size(frd);

  EXPECT_EQ(RunQuilon({"ls", out_}).out.find("import-file"), std::string::npos);
  const std::string told = RunQuilon({"ls", out_, "--verbose"}).out;
  EXPECT_THAT(told, HasSubstr("\niteration 0, import 1: program=quilon " QUILON_VERSION " request=none blocks=5\n"
                              "  results job.frd, " +
                              std::to_string(size) + " bytes, checksum "));

  // Through text and back.
  const std::string text = (folder_ / "copy.onf").string();
  const std::string back = (folder_ / "back.fed").string();
  EXPECT_EQ(RunQuilon({"to-onf", out_, text}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"from-onf", text, "-o", back}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"ls", back, "-v"}).out, told);
  EXPECT_THAT(RunQuilon({"import", frd, "-o", back, "--request", "none"}).out, HasSubstr("unchanged"));

  RunQuilon({"import", Write("other.frd", FrdText(2)), "-o", out_, "--keep-others"});
  EXPECT_THAT(RunQuilon({"ls", out_, "-v"}).out,
              testing::AllOf(HasSubstr("import 1: program="), HasSubstr("import 2: program="), HasSubstr("other.frd")));
}

// The same results at another time, under another name and with other options are the same results.
TEST_P(Reimport, DifferencesOfWhatMadeThemAreNoneOfTheResults)
{
  RunQuilon({"import", Write("job.frd", FrdText(2)), "-o", out_});
  const std::string other = (folder_ / "other.fed").string();
  RunQuilon({"import", Write("rerun.frd", FrdText(2)), "-o", other, "--strict"});
  const RunResult run = RunQuilon({"diff", out_, other, "--exact"});
  EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
  EXPECT_EQ(RunQuilon({"diff", out_, other, "--select", "import-file", "--exact"}).exitCode, 1)
      << "unless they are asked for";
}

}  // namespace
