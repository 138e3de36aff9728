#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "program_support.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using namespace quilon_test;

class ImportCommand : public testing::Test
{
protected:
  static std::string Fixture(const std::string& name) { return std::string(QUILON_FIXTURES) + "/calculix/" + name; }

  /// A file that ends in the middle of its last result.
  std::string CutShort(const std::string& fixture, double part)
  {
    const std::string text = ReadAll(Fixture(fixture));
    const std::string path = (folder_ / fs::path(fixture).filename()).string();
    std::ofstream(path, std::ios::binary) << text.substr(0, static_cast<std::size_t>(part * double(text.size())));
    return path;
  }

  TempFolder  folder_;
  std::string out_ = (folder_ / "out.onf").string();
  std::string frd_ = Fixture("a_tet/a_tet.frd");
  std::string dat_ = Fixture("a_tet/a_tet.dat");
};

TEST_F(ImportCommand, ReportsDeviationsOfTheAverages)
{
  const RunResult run = RunQuilon({"import", frd_, dat_, "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find(" written\n\nOur nodal averages beside the solver's own"), std::string::npos) << run.out;
}

// The deck has 63 nodes with stresses at 3 result times, all of C3D4; the solver prints six digits.
TEST_F(ImportCommand, JsonReportHasTheDeviations)
{
  const RunResult run = RunQuilon({"import", frd_, dat_, "-o", out_, "--json"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const nlohmann::json report = nlohmann::json::parse(run.out);
  EXPECT_EQ(report.at("output"), out_);
  ASSERT_EQ(report.at("deviations").size(), 1U);
  const nlohmann::json& deviation = report.at("deviations").at(0);
  EXPECT_EQ(deviation.at("element-type"), "C3D4");
  EXPECT_EQ(deviation.at("quantity"), "stress");
  EXPECT_EQ(deviation.at("nodes"), 189);
  EXPECT_LE(deviation.at("largest").get<double>(), 2e-6);
}

TEST_F(ImportCommand, BlocksWrittenAreBlocksListed)
{
  const RunResult      run    = RunQuilon({"import", frd_, dat_, "-o", out_, "--json"});
  const nlohmann::json report = nlohmann::json::parse(run.out);
  const nlohmann::json blocks = nlohmann::json::parse(RunQuilon({"ls", out_, "--json"}).out);
  EXPECT_EQ(report.at("blocks"), blocks.size());
}

TEST_F(ImportCommand, FilesOfAJobBelongTogetherHoweverTheirFolderIsWritten)
{
  const fs::path job = folder_ /
                       "j\xC3\xB6"
                       "b 1";
  fs::create_directory(job);
  for (const char* extension : {".frd", ".dat"})
    fs::copy(Fixture(std::string("a_tet/a_tet") + extension), job / (std::string("a") + extension));
  const std::string frd = (job / "a.frd").string();
  const RunResult   run =
      RunQuilon({"import", frd, (job / "." / "a.frd").string(), (job / "." / "a.dat").string(), "-o", out_});
  EXPECT_EQ(run.err, "");
  const std::string once = (folder_ / "once.onf").string();
  EXPECT_EQ(RunQuilon({"import", frd, (job / "a.dat").string(), "-o", once}).err, "");
  EXPECT_EQ(ReadTree(out_), ReadTree(once));
}

TEST_F(ImportCommand, IterationStandsInEveryBlock)
{
  RunQuilon({"import", frd_, "-o", out_, "--iteration", "3"});
  const nlohmann::json blocks = nlohmann::json::parse(RunQuilon({"ls", out_, "--json"}).out);
  ASSERT_GT(blocks.size(), 0U);
  for (const nlohmann::json& block : blocks) EXPECT_EQ(block.at("it"), 3) << block;
}

TEST_F(ImportCommand, SeveralIterationsShareAFolder)
{
  RunQuilon({"import", frd_, "-o", out_, "--iteration", "1"});
  const std::size_t one = nlohmann::json::parse(RunQuilon({"ls", out_, "--json"}).out).size();
  RunQuilon({"import", frd_, "-o", out_, "--iteration", "2"});
  EXPECT_EQ(nlohmann::json::parse(RunQuilon({"ls", out_, "--json"}).out).size(), 2 * one);
}

TEST_F(ImportCommand, RequestsDecideWhatIsDerived)
{
  const auto Derived = [&](const std::string& request) {
    fs::remove_all(out_);
    RunQuilon({"import", frd_, dat_, "-o", out_, "--request", request});
    std::size_t count = 0;
    for (const nlohmann::json& block : nlohmann::json::parse(RunQuilon({"ls", out_, "--json"}).out))
      count += block.at("onf") == 520 || block.at("onf") == 560 ? 1 : 0;
    return count;
  };
  EXPECT_EQ(Derived("none"), 0U);
  EXPECT_EQ(Derived("stress-principal"), 3U);
  EXPECT_EQ(Derived("all"), 6U);
}

TEST_F(ImportCommand, UnknownRequestIsToldBeforeAnythingIsRead)
{
  const RunResult run = RunQuilon({"import", "none.frd", "-o", out_, "--request", "banana"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: unknown kind 'banana', expected an ONF id or the name of a kind\n");
}

TEST_F(ImportCommand, BadInputWritesNothing)
{
  const RunResult run = RunQuilon({"import", CutShort("a_tet/a_tet.frd", 0.95), "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.rfind("quilon: error: " + (folder_ / "a_tet.frd:").string(), 0), 0U) << run.err;
  EXPECT_TRUE(run.err.ends_with("; --keep-whole-steps writes the results before it that are whole\n")) << run.err;
  EXPECT_FALSE(fs::exists(out_));
}

// Cut right behind the only result that it has: the message names the cut and the way to the result.
TEST_F(ImportCommand, AResultThatTheFileWasCutBehindIsKeptWhereAskedFor)
{
  const std::string cut  = CutShort("a_tet/a_tet.frd", 1);
  std::string       text = ReadAll(cut);
  std::size_t       at   = text.find("    1PSTEP                         7");
  ASSERT_NE(at, std::string::npos);
  std::ofstream(cut, std::ios::binary) << text.substr(0, at);
  RunResult run = RunQuilon({"import", cut, "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_TRUE(
      run.err.ends_with("found the end of the file; --keep-whole-steps writes the results before it that are "
                        "whole\n"))
      << run.err;
  EXPECT_FALSE(fs::exists(out_));
  run = RunQuilon({"import", cut, "-o", out_, "--keep-whole-steps"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(nlohmann::json::parse(RunQuilon({"ls", out_, "stress", "--json"}).out).size(), 1U);
}

// With a .dat the mesh of the .frd is read first, and the cut is met before any result is written.
TEST_F(ImportCommand, TheWayToWholeStepsIsToldBesideADatToo)
{
  const std::string cut = CutShort("a_tet/a_tet.frd", 0.95);
  fs::copy(dat_, folder_ / "a_tet.dat");
  RunResult run = RunQuilon({"import", cut, (folder_ / "a_tet.dat").string(), "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_TRUE(run.err.ends_with("; --keep-whole-steps writes the results before it that are whole\n")) << run.err;

  // Nothing is whole before the first result.
  run = RunQuilon({"import", CutShort("a_tet/a_tet.frd", 0.2), (folder_ / "a_tet.dat").string(), "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.find("--keep-whole-steps"), std::string::npos) << run.err;
}

TEST_F(ImportCommand, WholeStepsAreKeptWhereAskedForAndTheImportStillFails)
{
  const RunResult run = RunQuilon({"import", CutShort("a_tet/a_tet.frd", 0.95), "-o", out_, "--keep-whole-steps"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.rfind("quilon: note: " + out_ + ": kept ", 0), 0U) << run.err;
  EXPECT_NE(run.err.find("\nquilon: error: " + (folder_ / "a_tet.frd:").string()), std::string::npos) << run.err;
  EXPECT_GT(nlohmann::json::parse(RunQuilon({"ls", out_, "displacement", "--json"}).out).size(), 0U);
}

TEST_F(ImportCommand, NothingWholeIsNothingWritten)
{
  const RunResult run = RunQuilon({"import", CutShort("a_tet/a_tet.frd", 0.01), "-o", out_, "--keep-whole-steps"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.rfind("quilon: error: " + (folder_ / "a_tet.frd:").string(), 0), 0U) << run.err;
  EXPECT_FALSE(fs::exists(out_));
}

TEST_F(ImportCommand, StrictRefusesWhatHasToBeSkipped)
{
  const std::string shell = Fixture("c_shell/c_shell3d");
  const RunResult   run   = RunQuilon({"import", shell + ".frd", shell + ".dat", "-o", out_, "--strict"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_FALSE(fs::exists(out_));
  EXPECT_EQ(RunQuilon({"import", shell + ".frd", shell + ".dat", "-o", out_}).exitCode, 0);
}

TEST_F(ImportCommand, SkippedRowsAreToldByReason)
{
  const std::string shell = Fixture("c_shell/c_shell3d");
  const RunResult   run   = RunQuilon({"import", shell + ".frd", shell + ".dat", "-o", out_});
  EXPECT_NE(run.out.find("\nSkipped:\nrows  reason\n"), std::string::npos) << run.out;
}

TEST_F(ImportCommand, ResultFileIsADatabaseForEveryCommand)
{
  RunQuilon({"import", frd_, "-o", out_});
  EXPECT_EQ(RunQuilon({"ls", frd_}).out, RunQuilon({"ls", out_}).out);
  EXPECT_EQ(RunQuilon({"show", frd_, "displacement@lc=last,sub=last"}).out,
            RunQuilon({"show", out_, "displacement@lc=last,sub=last"}).out);
  const std::string copy = (folder_ / "copy.onf").string();
  EXPECT_EQ(RunQuilon({"to-onf", frd_, copy}).exitCode, 0);
  const RunResult same = RunQuilon({"diff", copy, out_, "--exact"});
  EXPECT_EQ(same.exitCode, 0) << same.out << same.err;
}

// One block for each of the deck's three result times, and nothing else than what is requested.
TEST_F(ImportCommand, DerivationFromAResultFileDerivesOnlyWhatIsRequested)
{
  EXPECT_EQ(RunQuilon({"derive", dat_, "-o", out_, "--request", "element-stress-principal"}).out,
            out_ + ": 3 blocks derived\n  element-stress-principal: 3\n");
  EXPECT_EQ(RunQuilon({"ls", out_, "520,530,570", "--json"}).out, "[]\n");
}

TEST_F(ImportCommand, FileThatIsNotThereIsAnError)
{
  const RunResult run = RunQuilon({"import", "none.frd", "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err.rfind("quilon: error: none.frd", 0), 0U) << run.err;
  EXPECT_FALSE(fs::exists(out_));
}

TEST_F(ImportCommand, FileWithoutResultsIsAnError)
{
  const std::string frd = Fixture("e_matrix/e_matrix.frd");
  const RunResult   run = RunQuilon({"import", frd, "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + frd + ": no results, nothing is written\n");
  EXPECT_FALSE(fs::exists(out_));
}

TEST_F(ImportCommand, AStemStandsForTheFilesOfTheJob)
{
  const RunResult whole = RunQuilon({"import", Fixture("a_tet/a_tet.inp"), frd_, dat_, "-o", out_, "--json"});
  const RunResult stem = RunQuilon({"import", Fixture("a_tet/a_tet"), "-o", (folder_ / "stem.onf").string(), "--json"});
  ASSERT_EQ(stem.exitCode, 0) << stem.err;
  EXPECT_EQ(nlohmann::json::parse(stem.out).at("blocks"), nlohmann::json::parse(whole.out).at("blocks"));
}

// The solver leaves one where it dies.
TEST_F(ImportCommand, AnEmptyStatusFileIsPassedOverHoweverItIsFound)
{
  for (const char* extension : {".frd", ".dat"})
    fs::copy(Fixture("a_tet/a_tet") + extension, folder_ / ("job" + std::string(extension)));
  const auto        path   = [this](const char* name) { return (folder_ / name).string(); };
  const std::string status = path("job.sta");
  std::ofstream{status};
  for (const std::vector<std::string>& files : std::vector<std::vector<std::string>>{
           {path("job")}, {path("job.dat"), path("job.frd"), status}, {path("job.frd"), status}})
  {
    std::vector<std::string> arguments = {"import", "-o", out_, "--replace"};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const RunResult run = RunQuilon(arguments);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_NE(run.err.find("quilon: note: " + status + ": empty, passed over\n"), std::string::npos) << run.err;
  }
  const RunResult alone = RunQuilon({"import", status, "-o", out_});
  EXPECT_EQ(alone.exitCode, 2);
  EXPECT_EQ(alone.err, "quilon: error: " + status + ": expected a .frd or .dat of the same name with it\n");
}

TEST_F(ImportCommand, OtherFilesOfTheJobArePassedOver)
{
  for (const char* extension : {".frd", ".dat"})
    fs::copy(Fixture("a_tet/a_tet") + extension, folder_ / ("job" + std::string(extension)));
  for (const char* extension : {".12d", ".cvg", ".sta"}) std::ofstream(folder_ / ("job" + std::string(extension)));
  const auto      path = [this](const char* name) { return (folder_ / name).string(); };
  const RunResult run =
      RunQuilon({"import", path("job.12d"), path("job.cvg"), path("job.dat"), path("job.frd"), "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.err.find(path("job.12d") + ": no result file and no deck, passed over\n"), std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find(path("job.cvg")), std::string::npos) << run.err;
  // Copies that people keep.
  const RunResult kept = RunQuilon({"import", path("job.dat"), path("job.frd"), path("job.frd.gz"), path("job.inp.bak"),
                                    "-o", (folder_ / "kept.onf").string()});
  EXPECT_EQ(kept.exitCode, 0) << kept.err;
  EXPECT_NE(kept.err.find(path("job.frd.gz") + ": no result file and no deck, passed over\n"), std::string::npos)
      << kept.err;

  const RunResult other = RunQuilon({"import", path("job.dat"), path("notes.txt"), "-o", (folder_ / "b.onf").string()});
  EXPECT_EQ(other.exitCode, 2);
  EXPECT_EQ(other.err,
            "quilon: error: " + path("notes.txt") + ": expected a result file .frd, .dat or .sta, or a deck .inp\n");
}

TEST_F(ImportCommand, ADeckWithoutACardIsAnErrorUnlessAStemFoundItEmpty)
{
  for (const char* extension : {".frd", ".dat"})
    fs::copy(Fixture("a_tet/a_tet") + extension, folder_ / ("job" + std::string(extension)));
  const auto        path = [this](const char* name) { return (folder_ / name).string(); };
  const std::string deck = path("job.inp");
  for (const char* text : {"", "** to be written\n\n"}) {
    std::ofstream(deck, std::ios::trunc) << text;
    const RunResult run = RunQuilon({"import", deck, path("job.frd"), path("job.dat"), "-o", out_});
    EXPECT_EQ(run.err, "quilon: error: " + deck + ":1: the deck is empty: it has no keyword card\n");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_FALSE(fs::exists(out_));
  }
  EXPECT_EQ(RunQuilon({"import", path("job"), "-o", out_}).exitCode, 2);  // it has lines

  std::ofstream(deck, std::ios::trunc).close();
  const RunResult stem = RunQuilon({"import", path("job"), "-o", out_});
  EXPECT_EQ(stem.exitCode, 0) << stem.err;
  EXPECT_NE(stem.err.find("quilon: note: " + deck + ": empty, passed over\n"), std::string::npos) << stem.err;
}

TEST_F(ImportCommand, OutputWithAForeignExtensionIsASlip)
{
  const std::string csv = (folder_ / "out.csv").string();
  const RunResult   run = RunQuilon({"import", frd_, "-o", csv});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + csv +
                         ": expected the name of a working database (.fed) or of an ONF folder (.onf), found the "
                         "extension .csv\n");
  EXPECT_FALSE(fs::exists(csv));
  for (const char* name : {".", "..", "./"}) {
    const RunResult here = RunQuilon({"import", frd_, "-o", name});
    EXPECT_EQ(here.exitCode, 2) << name;
    EXPECT_EQ(here.err, "quilon: error: " + std::string(name) +
                            ": expected the name of a working database (.fed) or of an ONF folder (.onf)\n");
  }
}

TEST_F(ImportCommand, AnEmptyResultFileIsToldOfByEveryCommand)
{
  const std::string dat = (folder_ / "job.dat").string();
  std::ofstream(dat) << "\n";
  const RunResult run = RunQuilon({"ls", dat});
  EXPECT_NE(run.err.find(dat + ": holds no results\n"), std::string::npos) << run.err;
}

TEST_F(ImportCommand, OutputThatCannotBeWrittenIsToldBeforeAnythingIsRead)
{
  const std::string parent = folder_.GetPath().string();
  std::ofstream(folder_ / "other.txt") << "mine\n";
  const RunResult run = RunQuilon({"import", "none.frd", "-o", parent});
  EXPECT_EQ(run.err, "quilon: error: " + parent +
                         ": a folder with other files, expected an ONF folder or the name of a new one\n");
}

TEST_F(ImportCommand, InterruptWritesNothing)
{
  const RunResult run = RunQuilon({"import", frd_, dat_, "-o", out_}, {.interrupted = true});
  EXPECT_EQ(run.exitCode, 130);
  EXPECT_FALSE(fs::exists(out_));
}

TEST_F(ImportCommand, QuietTellsNoNotes)
{
  EXPECT_EQ(RunQuilon({"import", dat_, "-o", out_, "-q"}).err, "");
  const std::string loud = (folder_ / "loud.onf").string();
  EXPECT_EQ(RunQuilon({"import", dat_, "-o", loud}).err.rfind("quilon: note: ", 0), 0U);
}

/// A copy of a .dat in which the numbers of one block are others.
std::string Changed(std::string text, const std::string& block, const std::string& from, const std::string& to)
{
  const std::size_t at = text.find(from, text.find(block));
  return at == std::string::npos ? std::string() : text.replace(at, from.size(), to);
}

// Displacements of the .dat and the .frd are one run's; a digit of one of them is not.
TEST_F(ImportCommand, FilesOfTwoRunsAreRefused)
{
  const std::string dat = ReadAll(dat_);
  const std::string frd = (folder_ / "job.frd").string();
  const std::string job = (folder_ / "job.dat").string();
  fs::copy(frd_, frd);
  const auto write = [&job](const std::string& text) { std::ofstream(job, std::ios::binary) << text; };
  // Node 197 moves most in the first step, by this much along z.
  const std::string block = "displacements";
  const std::size_t row   = dat.find("\n       197", dat.find(block));
  ASSERT_NE(row, std::string::npos);
  const std::string line    = dat.substr(row, dat.find('\n', row + 1) - row);
  std::string       near    = line;
  near[near.rfind('E') - 4] = near[near.rfind('E') - 4] == '9' ? '8' : static_cast<char>(near[near.rfind('E') - 4] + 1);

  write(Changed(dat, block, line, near));
  RunResult run = RunQuilon({"import", frd, job, "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.err.find("note: the files disagree on the displacement of 1 node (197), by up to "), std::string::npos)
      << run.err;
  EXPECT_NE(run.out.find("values that files disagree on (one of them kept)"), std::string::npos) << run.out;
  run = RunQuilon({"import", frd, job, "-o", out_, "--replace", "--strict"});
  EXPECT_EQ(run.exitCode, 2);

  // Six times as large.
  std::string far         = line;
  far[far.rfind('E') + 3] = static_cast<char>(far[far.rfind('E') + 3] - 1);
  write(Changed(dat, block, line, far));
  fs::remove_all(out_);
  run = RunQuilon({"import", frd, job, "-o", out_, "--keep-whole-steps"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(
      run.err.find("error: the files are not of one run, they disagree on: displacement of 1 node (197), by up to "),
      std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("(step 1, increment 1); expected at most 0.001, which --max-deviation sets\n"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(fs::exists(out_));
  EXPECT_EQ(RunQuilon({"import", frd, job, "-o", out_, "--max-deviation", "100"}).exitCode, 0);
}

// Stresses of the .dat at twice their size: displacements agree, averages do not.
TEST_F(ImportCommand, StressesOfAnotherRunAreRefused)
{
  std::istringstream lines(ReadAll(dat_));
  std::string        scaled;
  bool               isStress = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.find(" for set ") != std::string::npos) isStress = line.rfind(" stresses", 0) == 0;
    const std::size_t last = line.rfind('E');
    // " 1.234567E+00" behind two numbers of ten columns: the digit before the point.
    const bool isRow = line.size() > 20 && std::isdigit(static_cast<unsigned char>(line[9])) != 0;
    if (isStress && isRow && last != std::string::npos) line[last - 8] = '9';
    scaled += line + '\n';
  }
  const std::string frd = (folder_ / "job.frd").string();
  const std::string job = (folder_ / "job.dat").string();
  fs::copy(frd_, frd);
  std::ofstream(job, std::ios::binary) << scaled;
  const RunResult run = RunQuilon({"import", frd, job, "-o", out_});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_NE(run.err.find("they disagree on: averages of stress (C3D4), by up to "), std::string::npos) << run.err;
}

// One stress is another, by less than what makes files of two runs: told, and with --strict an error.
TEST_F(ImportCommand, AveragesThatDisagreeALittleAreToldAndRefusedByStrict)
{
  const std::string frd  = (folder_ / "job.frd").string();
  const std::string job  = (folder_ / "job.dat").string();
  std::string       text = ReadAll(dat_);
  const std::size_t at   = text.find("-4.858096E+00");
  ASSERT_NE(at, std::string::npos);
  text.replace(at, 13, "-4.863096E+00");  // the largest stress of the result is 7.75
  fs::copy(frd_, frd);
  std::ofstream(job, std::ios::binary) << text;
  const RunResult run = RunQuilon({"import", frd, job, "-o", out_});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.err.find("quilon: note: the files disagree on the averages of stress (C3D4), by up to "),
            std::string::npos)
      << run.err;
  const RunResult strict = RunQuilon({"import", frd, job, "-o", (folder_ / "b.onf").string(), "--strict"});
  EXPECT_EQ(strict.exitCode, 2);
  EXPECT_NE(strict.err.find("averages that files disagree on (ours kept)"), std::string::npos) << strict.err;
  EXPECT_FALSE(fs::exists(folder_ / "b.onf"));
}

// Materials 1 and 2 meet at 12 of 36 nodes, which have a value on either side.
TEST_F(ImportCommand, AveragesBesideADeckStopAtBorders)
{
  const RunResult run = RunQuilon({"import", Fixture("hex8/hex8.inp"), Fixture("hex8/hex8.frd"),
                                   Fixture("hex8/hex8.dat"), "-o", out_, "--average-by", "material"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const nlohmann::json blocks =
      nlohmann::json::parse(RunQuilon({"ls", out_, "nodal-stress@lc=1,group=1-2", "--json"}).out);
  ASSERT_EQ(blocks.size(), 2U);
  EXPECT_EQ(blocks.at(0).at("records"), 24);
  EXPECT_EQ(blocks.at(1).at("group"), 2);
}

TEST_F(ImportCommand, GroupsBecomeSetsOfTheDeck)
{
  const std::string groups = (folder_ / "my.groups").string();
  std::ofstream(groups) << "elements left\n12-19\n";
  const RunResult run = RunQuilon({"import", Fixture("hex8/hex8.inp"), "-o", out_, "--groups", groups});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(RunQuilon({"show", out_, "element-set"}).out.find("left\t[2] 12 19\n"), std::string::npos);
  EXPECT_EQ(RunQuilon({"import", frd_, "-o", out_, "--groups", groups}).err,
            "quilon: error: groups become sets of a deck: expected the deck among the files\n");
  EXPECT_EQ(RunQuilon({"import", frd_, dat_, "-o", out_, "--average-by", ""}).err,
            "quilon: error: --average-by is empty, expected material, section or names of element sets\n");
}

// The includes of this deck are relative to its folder, in which the solver runs.
TEST_F(ImportCommand, IncludesOfTheDeckFollowTheRule)
{
  const std::string deck = Fixture("a_tet/a_tet.inp");
  EXPECT_EQ(RunQuilon({"import", deck, "-o", out_, "--include-rule", "solver"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"import", deck, "-o", out_, "--include-rule", "somewhere"}).exitCode, 2);
}

TEST_F(ImportCommand, FilesAndOutputAreNeeded)
{
  EXPECT_EQ(RunQuilon({"import", "-o", out_}).err, "quilon: error: FILE is missing, see 'quilon import --help'\n");
  EXPECT_EQ(RunQuilon({"import", frd_}).err, "quilon: error: --output is missing, see 'quilon import --help'\n");
}

TEST_F(ImportCommand, HelpHasAnExample)
{
  const RunResult run = RunQuilon({"import", "--help"});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_NE(run.out.find("  quilon import bracket.inp bracket.frd bracket.dat -o bracket.fed\n"), std::string::npos)
      << run.out;
}

}  // namespace
