#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class DeckConvert : public testing::Test
{
protected:
  std::string Write(const std::string& name, std::string_view text) const
  {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return (folder_ / name).string();
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }

  TempFolder folder_;
};

TEST_F(DeckConvert, PrintsTheFilesItWrites)
{
  Write("nodes.inc", "** nodes\n7,1.5,0,0\n");
  const std::string deck = Write("job.inp", "*NODE\n*INCLUDE, INPUT=nodes.inc\n");
  const RunResult run = RunQuilon({"deck", "convert", deck, "--suffix", "c", "-o", PathOf("out.inp"), "--units", "mm:m",
                                   "--renumber-nodes", "101", "--strip-comments"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, PathOf("out.inp") + "\n" + PathOf("nodes_c.inc") + "\n");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(ReadAll(PathOf("out.inp")), "*NODE\n*INCLUDE, INPUT=nodes_c.inc\n");
  EXPECT_EQ(ReadAll(PathOf("nodes_c.inc")), "101,0.0015,0,0\n");
}

// At the place that the user names, at those of the copies, and in another folder.
TEST_F(DeckConvert, DoesNotWriteThroughALink)
{
  Write("nodes.inc", "7,1.5,0,0\n");
  const std::string deck   = Write("job.inp", "*NODE\n*INCLUDE, INPUT=nodes.inc\n");
  const std::string victim = Write("victim", "precious\n");
  std::filesystem::create_directory(PathOf("dir"));
  const std::vector<std::string> inPlace  = {"deck", "convert", deck, "--suffix", "c", "-o", PathOf("out.inp")};
  const std::string              expected = ": a link, expected a file to write or the name of a new one\n";
  for (const char* name : {"out.inp", "nodes_c.inc"}) {
    std::filesystem::create_symlink(victim, PathOf(name));
    EXPECT_EQ(RunQuilon(inPlace).err, "quilon: error: " + PathOf(name) + expected);
    std::filesystem::remove(PathOf(name));
  }
  EXPECT_EQ(ReadAll(victim), "precious\n");
  EXPECT_EQ(RunQuilon({"deck", "convert", deck, "--suffix", "c", "-o", "/dev/stdout", "--strip-comments"}).exitCode,
            2);  // includes are read from the folder of the copy
  const std::string alone = Write("alone.inp", "*NODE\n7,1.5,0,0\n");
  EXPECT_EQ(RunQuilon({"deck", "convert", alone, "--suffix", "c", "-o", "/dev/stdout"}).exitCode, 0);
}

TEST_F(DeckConvert, WhatCannotBeDoneIsAnErrorAndWritesNothing)
{
  const std::string deck = Write("job.inp", "*NODE\n7,0,0,0\n*MADE UP\n3.\n");
  const auto        run  = [&](const std::string& option, const std::string& value) {
    const RunResult result =
        RunQuilon({"deck", "convert", deck, "--suffix", "c", "-o", PathOf("out.inp"), option, value});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(std::filesystem::exists(PathOf("out.inp")));
    return result.err;
  };
  EXPECT_EQ(run("--units", "mm:m").substr(0, 15), "quilon: error: ");
  EXPECT_NE(run("--units", "mm:m").find("*MADEUP"), std::string::npos);
  EXPECT_EQ(run("--units", "mm"), "quilon: error: --units is 'mm', expected FROM:TO of um, mm, cm, dm, m and km\n");
  EXPECT_EQ(run("--out-dir", ""), "quilon: error: --out-dir is empty, expected a folder\n");
  EXPECT_EQ(run("--renumber-nodes", "0"), "quilon: error: --renumber-nodes is 0, expected a number from 1\n");
}

}  // namespace
