// Files and folders that the user may not read or write: commands give the system's reason, and write nothing.

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Permissions.h"
#include "program_support.h"
#include "TempFolder.h"

using quilon_test::ReadAll;
using quilon_test::ReadTree;
using quilon_test::RunQuilon;
using quilon_test::RunResult;
using quilon_test::TempFolder;

namespace {

namespace fs = std::filesystem;

const std::string kHex = QUILON_FIXTURES "/calculix/b_hex/b_hex";

using Arguments = std::vector<std::string>;

/// Runs the program as somebody to whom permissions apply.
RunResult RunAsAnyUser(const Arguments& arguments)
{
  const TempFolder folder;
  const pid_t      child = fork();
  if (child == 0) {
    if (!quilon_test::HoldPermissionsForGood()) _exit(126);
    const RunResult run = RunQuilon(arguments);
    std::ofstream(folder / "out", std::ios::binary) << run.out;
    std::ofstream(folder / "err", std::ios::binary) << run.err;
    _exit(run.exitCode);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  return {WEXITSTATUS(status), ReadAll(folder / "out"), ReadAll(folder / "err")};
}

class Permissions : public testing::Test
{
protected:
  void SetUp() override
  {
    for (const char* extension : {".inp", ".frd", ".dat", ".sta"}) fs::copy(kHex + extension, Name("job") + extension);
    ASSERT_EQ(RunQuilon({"import", Name("job.frd"), "-o", Name("job.fed")}).exitCode, 0);
    ASSERT_EQ(RunQuilon({"to-onf", Name("job.fed"), Name("onf")}).exitCode, 0);
    fs::create_directory(folder_ / "closed");
    for (const char* name : {"rules", "cases", "groups", "yale.txt", "part.inc"}) std::ofstream(folder_ / name) << '\n';
    std::ofstream(folder_ / "whole.inp") << "*INCLUDE, INPUT=part.inc\n";
  }

  std::string Name(const std::string& name) const { return (folder_ / name).string(); }

  /// Runs the command while a file or folder has other permissions.
  RunResult RunWith(const std::string& name, fs::perms permissions, const Arguments& arguments) const
  {
    const fs::path  path   = folder_ / name;
    const fs::perms before = fs::status(path).permissions();
    fs::permissions(path, permissions);
    RunResult run = RunAsAnyUser(arguments);
    fs::permissions(path, before);
    return run;
  }

  /// @param expected the message without the program's name; '@' stands for the test's folder
  void ExpectRefused(const std::string& name, fs::perms permissions, const Arguments& arguments, std::string expected)
  {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const std::string before = ReadTree(folder_.GetPath());
    const RunResult   run    = RunWith(name, permissions, arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    for (std::size_t at = expected.find('@'); at != std::string::npos; at = expected.find('@'))
      expected.replace(at, 1, folder_.GetPath().string());
    EXPECT_EQ(run.err, "quilon: error: " + expected + ": Permission denied\n");
    EXPECT_EQ(ReadTree(folder_.GetPath()), before);
  }

  TempFolder folder_;
};

}  // namespace

TEST_F(Permissions, FilesThatMayNotBeReadAreNamedWithTheReason)
{
  const auto expect = [this](const std::string& name, const Arguments& arguments, const std::string& expected) {
    ExpectRefused(name, fs::perms::none, arguments, expected);
  };
  expect("job.frd", {"ls", Name("job.frd")}, "@/job.frd: expected a file that can be read");
  expect("job.inp", {"deck", "tree", Name("job.inp")}, "@/job.inp: expected a deck that can be read");
  expect("part.inc", {"deck", "tree", Name("whole.inp")}, "@/whole.inp:1: include file @/part.inc cannot be read");
  // What is imported is named in the database with its checksum, which comes first.
  expect("job.dat", {"import", Name("job"), "-o", Name("new.fed")}, "@/job.dat: cannot open");
  expect("job.sta", {"import", Name("job.frd"), Name("job.dat"), "-o", Name("new.fed")}, "@/job.sta: cannot open");
  expect("groups", {"import", Name("job.inp"), "--groups", Name("groups"), "-o", Name("new.fed")},
         "@/groups: cannot open");
  expect("rules", {"diff", Name("job.fed"), Name("job.fed"), "--rules", Name("rules")},
         "@/rules: cannot be read, expected a file of rules");
  expect("cases", {"combine", Name("job.fed"), "--cases", Name("cases"), "-o", Name("new.fed")},
         "@/cases: expected a file that can be read");
  expect("yale.txt", {"matrix", "import", Name("yale.txt"), "--as", "stiffness", "-o", Name("new.fed")},
         "@/yale.txt: expected a file that can be read");
}

TEST_F(Permissions, DatabasesThatMayNotBeReadAreNamedWithTheReason)
{
  const auto expect = [this](const std::string& name, const std::string& database, const std::string& expected) {
    ExpectRefused(name, fs::perms::none, {"ls", Name(database)}, expected);
  };
  expect("job.fed", "job.fed", "@/job.fed/manifest");
  expect("job.fed/manifest", "job.fed", "@/job.fed/manifest: cannot open");
  expect("job.fed/segment-000001.h5", "job.fed", "@/job.fed/segment-000001.h5: cannot open");
  expect("onf/index", "onf", "@/onf/index: cannot open");
  expect("onf/coordinates_it0.onf", "onf", "@/onf/coordinates_it0.onf: cannot open");
}

TEST_F(Permissions, FoldersThatMayNotBeWrittenToAreNamedWithTheReason)
{
  const auto expect = [this](const Arguments& arguments, const std::string& expected) {
    ExpectRefused("closed", fs::perms::owner_read | fs::perms::owner_exec, arguments, expected);
  };
  expect({"import", Name("job.frd"), "-o", Name("closed/new.fed")}, "@/closed/new.fed: cannot create");
  expect({"to-onf", Name("job.fed"), Name("closed/onf")}, "@/closed/onf: cannot create");
  expect({"export", Name("job.fed"), "-o", Name("closed/a.vtu")},
         "@/closed/a.vtu: expected a file that can be written");
  expect({"report", Name("job.fed"), "-o", Name("closed/a.html")},
         "@/closed/a.html: expected a file that can be written");
  expect({"deck", "expand", Name("job.inp"), "-o", Name("closed/a.inp")},
         "@/closed/a.inp: expected a file that can be written");
}
