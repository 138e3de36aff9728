#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "program_support.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;

class MatrixCommand : public testing::Test
{
protected:
  std::string Write(const std::string& name, const std::string& text)
  {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return (folder_ / name).string();
  }

  /// Expects that a run fails with this message and leaves the database as it is.
  void ExpectTrouble(const std::vector<std::string>& arguments, const std::string& message)
  {
    const bool        isThere = std::filesystem::exists(onf_);
    const std::string before  = isThere ? ReadTree(onf_) : "";
    quilon_test::ExpectTrouble(arguments, message);
    EXPECT_EQ(std::filesystem::exists(onf_), isThere);
    if (isThere) {
      EXPECT_EQ(ReadTree(onf_), before);
    }
  }

  void ImportSmall(const std::string& as = "mine") { RunQuilon({"matrix", "import", small_, "--as", as, "-o", onf_}); }

  TempFolder        folder_;
  const std::string onf_      = (folder_ / "job.onf").string();
  const std::string fixtures_ = std::string(QUILON_FIXTURES) + "/calculix/e_matrix/";
  const std::string small_    = Write("small.mtx",
                                      "%%MatrixMarket matrix coordinate real symmetric\n3 3 4\n1 1 2\n2 1 -1\n2 2 2\n"
                                         "3 3 0.5\n");
};

TEST_F(MatrixCommand, ImportsWhatTheSolverStores)
{
  const std::string sti = fixtures_ + "e_matrix.sti";
  const std::string mas = fixtures_ + "e_matrix.mas";
  const RunResult   run = RunQuilon({"matrix", "import", sti, mas, "-o", onf_});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, onf_ + ": 3 blocks written\n  593@it=0, index 1: 54 x 54, 1764 values of " + sti +
                         "\n  594@it=0, index 1: 54 x 54, 1764 values of " + mas + "\n");
  EXPECT_EQ(run.exitCode, 0);
  // The largest magnitude of each matrix and the directions of the .dof file.
  EXPECT_EQ(RunQuilon({"ls", onf_}).out,
            "onf\tkind\tit\trecords\tsize\tleast\tgreatest\tnan\n"
            "593\tstiffness-matrix\t0\t1\t21408\t-1027523.8275935\t1838808.6461965\t0\n"
            "594\tmass-matrix\t0\t1\t21408\t0\t4.2969524014995e-07\t0\n"
            "1900\tmatrix-dofs\t0\t1\t888\t1\t3\t0\n");
}

TEST_F(MatrixCommand, DegreesOfFreedomAreNoMatrixUnlessTheyAreNamed)
{
  RunQuilon({"matrix", "import", fixtures_ + "e_matrix.sti", "-o", onf_});
  const std::string all = RunQuilon({"matrix", "show", onf_}).out;
  EXPECT_EQ(all, RunQuilon({"matrix", "show", onf_, "stiffness"}).out);
  EXPECT_EQ(all.find("matrix-dofs"), std::string::npos);
  EXPECT_EQ(RunQuilon({"matrix", "show", onf_, "matrix-dofs"}).out.rfind("matrix-dofs  1900@it=0  index 1\n", 0), 0u);
  const std::string picture = (folder_ / "k.svg").string();
  EXPECT_EQ(RunQuilon({"matrix", "show", onf_, "--plot", picture}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "-o", (folder_ / "k.mtx").string()}).exitCode, 0);
}

TEST_F(MatrixCommand, AnotherIndexGoesBesideTheFirst)
{
  ImportSmall();
  EXPECT_EQ(RunQuilon({"matrix", "import", small_, "--as", "mine", "--index", "4", "-o", onf_, "--json"}).out,
            "{\n  \"output\": \"" + onf_ + "\",\n  \"blocks\": 1,\n  \"matrices\": [\n    {\n      \"file\": \"" +
                small_ +
                "\",\n      \"block\": \"1900@it=0\",\n      \"index\": 4,\n      \"rows\": 3,\n"
                "      \"columns\": 3,\n      \"values\": 5\n    }\n  ]\n}\n");
  EXPECT_EQ(RunQuilon({"show", onf_, "mine", "--csv", "--ids", "1,4"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"matrix", "import", small_, "--as", "other@lc=2", "-o", onf_}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"ls", onf_, "--csv"}).out,
            "onf,kind,it,lc,records,size,least,greatest,nan\n"
            "1900,mine,0,,2,192,-1,2,0\n"
            "1901,other,0,2,1,96,-1,2,0\n");
}

TEST_F(MatrixCommand, ImportingAtAnIndexAgainReplacesItsMatrixOnly)
{
  ImportSmall();
  RunQuilon({"matrix", "import", small_, "--as", "mine", "--index", "2", "-o", onf_});
  const std::string one = Write("one.mtx", "%%MatrixMarket matrix array real general\n1 1\n8\n");
  RunQuilon({"matrix", "import", one, "--as", "mine", "--index", "1", "-o", onf_});
  const std::string out = (folder_ / "out.mtx").string();
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "mine", "--index", "1", "-o", out}).exitCode, 0);
  EXPECT_EQ(ReadAll(out), "%%MatrixMarket matrix coordinate real symmetric\n1 1 1\n1 1 8\n");
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "mine", "--index", "2", "-o", out}).exitCode, 0);
  EXPECT_EQ(ReadAll(out), ReadAll(small_));
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "mine", "--index", "2", "--to", "mtx", "-o", "-"}).out, ReadAll(out));
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "mine", "--index", "2", "-o", "-", "--json"}).exitCode, 2);
}

TEST_F(MatrixCommand, ExportWritesWhatImportReadsBitForBit)
{
  RunQuilon({"matrix", "import", fixtures_ + "e_matrix.sti", "-o", onf_});
  for (const std::string name : {"k.mtx", "k.txt"}) {
    const std::string file  = (folder_ / name).string();
    const std::string other = (folder_ / (name + ".onf")).string();
    EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "stiffness", "-o", file}).out,
              file + ": 54 x 54, 1764 values written\n");
    EXPECT_EQ(RunQuilon({"matrix", "import", file, "--as", "stiffness", "-o", other}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"show", other, "stiffness", "--json"}).out,
              RunQuilon({"show", onf_, "stiffness", "--json"}).out);
  }
}

TEST_F(MatrixCommand, AWorkingDatabaseKeepsMatricesLikeAnOnfFolder)
{
  const std::string fed = (folder_ / "job.fed").string();
  for (const std::string& database : {onf_, fed}) {
    EXPECT_EQ(RunQuilon({"matrix", "import", fixtures_ + "e_matrix.sti", "-o", database}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"matrix", "import", small_, "--as", "stiffness", "--index", "2", "-o", database}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"matrix", "import", small_, "--element", "3", "--pair", "1", "-o", database}).exitCode, 0);
    EXPECT_EQ(RunQuilon({"matrix", "import", small_, "--element", "4", "--pair", "1", "-o", database}).exitCode, 0);
  }
  EXPECT_EQ(RunQuilon({"show", fed, "all", "--json"}).out, RunQuilon({"show", onf_, "all", "--json"}).out);
  EXPECT_EQ(RunQuilon({"ls", fed, "--csv"}).out,
            "onf,kind,it,records,size,least,greatest,nan\n"
            "590,element-matrix-590,0,2,160,-1,2,0\n"
            "593,stiffness-matrix,0,2,21504,-1027523.8275935,1838808.6461965,0\n"
            "597,element-matrix-597,0,2,16,1,1,0\n"
            "1900,matrix-dofs,0,1,888,1,3,0\n");
}

TEST_F(MatrixCommand, ExportChoosesItsFormat)
{
  ImportSmall();
  const std::string out = (folder_ / "out.dat").string();
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "-o", out, "--to", "mtx", "--general"}).exitCode, 0);
  EXPECT_EQ(ReadAll(out),
            "%%MatrixMarket matrix coordinate real general\n3 3 5\n1 1 2\n1 2 -1\n2 1 -1\n2 2 2\n3 3 0.5\n");
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "-o", out, "--json"}).out,
            "{\n  \"output\": \"" + out +
                "\",\n  \"block\": \"1900@it=0\",\n  \"index\": 1,\n  \"rows\": 3,\n  \"columns\": 3,\n"
                "  \"values\": 5\n}\n");
  EXPECT_EQ(
      ReadAll(out),
      "# number of values, rows, columns\n5\n3\n3\n# values, row by row\n2\n-1\n-1\n2\n0.5\n# column indices\n0\n1\n"
      "0\n1\n2\n# row pointers\n0\n2\n4\n5\n");
  ExpectTrouble({"matrix", "export", onf_, "-o", out, "--to", "csv"}, "--to is 'csv', expected mtx or yale");
}

TEST_F(MatrixCommand, ExportTakesOneMatrix)
{
  ImportSmall();
  RunQuilon({"matrix", "import", small_, "--as", "mine", "--index", "2", "-o", onf_});
  const std::string out = (folder_ / "out.mtx").string();
  ExpectTrouble({"matrix", "export", onf_, "mine", "-o", out},
                onf_ + ": 2 matrices in 'mine', expected one: 1900@it=0 --index 1, 1900@it=0 --index 2");
  ExpectTrouble({"matrix", "export", onf_, "mine", "--index", "3", "-o", out}, onf_ + ": no matrix 3 in 1900@it=0");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(MatrixCommand, ShowTellsWhatAMatrixIsLike)
{
  ImportSmall();
  EXPECT_EQ(RunQuilon({"matrix", "show", onf_}).out,
            "mine  1900@it=0  index 1\n"
            "  size       3 x 3\n"
            "  values     5, of which 0 are zero\n"
            "  nonzeros   5\n"
            "  symmetry   symmetric\n"
            "  bandwidth  1 below and 1 above the diagonal\n"
            "  diagonal   3 of 3, 0.5 to 2\n"
            "  +---+\n"
            "  |## |\n"
            "  |## |\n"
            "  |  #|\n"
            "  +---+\n");
}

TEST_F(MatrixCommand, ShowAsJson)
{
  const std::string file =
      Write("a.mtx", "%%MatrixMarket matrix coordinate real general\n3 3 3\n1 2 4\n2 1 3\n1 1 nan\n");
  RunQuilon({"matrix", "import", file, "--as", "mass", "-o", onf_});
  EXPECT_EQ(
      RunQuilon({"matrix", "show", onf_, "--json", "--width", "2"}).out,
      "[\n  {\n    \"block\": \"594@it=0\",\n    \"kind\": \"mass-matrix\",\n    \"index\": 1,\n    \"rows\": 3,\n"
      "    \"columns\": 3,\n    \"values\": 3,\n    \"zeros\": 0,\n    \"empty-rows\": 1,\n"
      "    \"symmetry\": \"pattern\",\n    \"asymmetry\": \"nan\",\n    \"lower-bandwidth\": 1,\n"
      "    \"upper-bandwidth\": 1,\n    \"diagonal\": {\n      \"entries\": 1,\n      \"least\": null,\n"
      "      \"greatest\": null\n    },\n    \"picture\": [\n      \"* \"\n    ]\n  }\n]\n");
  ExpectTrouble({"matrix", "show", onf_, "--width", "0"}, "--width is 0, expected 1 to 1000");
}

TEST_F(MatrixCommand, AnElementsMatrixGoesToEitherHalfOfAPair)
{
  const std::string sti = fixtures_ + "e_matrix.sti";
  EXPECT_EQ(RunQuilon({"matrix", "import", sti, "--element", "12", "-o", onf_}).out,
            onf_ + ": 2 blocks written\n  590@it=0, element 12: 54 x 54, 1764 values of " + sti + "\n");
  RunQuilon({"matrix", "import", small_, "--element", "12", "--pair", "3", "--swapped", "--as", "@inc=2", "-o", onf_});
  RunQuilon({"matrix", "import", small_, "--element", "7", "--pair", "3", "--swapped", "--as", "@inc=2", "-o", onf_});
  // 54 rows in full are 2916 values; the small one has 9.
  EXPECT_EQ(RunQuilon({"ls", onf_, "--csv"}).out,
            "onf,kind,it,inc,records,size,least,greatest,nan\n"
            "590,element-matrix-590,0,,1,23336,-1027523.8275935,1838808.6461965,0\n"
            "592,element-matrix-592,0,2,2,16,1,1,0\n"
            "597,element-matrix-597,0,,1,440,1,51,0\n"
            "599,element-matrix-599,0,,2,160,-1,2,0\n");
}

TEST_F(MatrixCommand, AnElementsMatrixIsExportedAndShownFromEitherHalf)
{
  RunQuilon({"matrix", "import", small_, "--element", "12", "--pair", "1", "-o", onf_});
  RunQuilon({"matrix", "import", small_, "--element", "-1", "--pair", "3", "--swapped", "-o", onf_});
  const std::string out = (folder_ / "out.mtx").string();
  const std::string whole =
      "%%MatrixMarket matrix coordinate real symmetric\n3 3 6\n1 1 2\n2 1 -1\n2 2 2\n3 1 0\n"
      "3 2 0\n3 3 0.5\n";
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "--element", "12", "-o", out}).out,
            out + ": 3 x 3, 9 values written\n");
  EXPECT_EQ(ReadAll(out), whole);
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "599", "--element", "-1", "-o", out, "--json"}).out,
            "{\n  \"output\": \"" + out +
                "\",\n  \"block\": \"599@it=0\",\n  \"element\": -1,\n  \"rows\": 3,\n  \"columns\": 3,\n"
                "  \"values\": 9\n}\n");
  EXPECT_EQ(ReadAll(out), whole);
  EXPECT_EQ(RunQuilon({"matrix", "show", onf_, "--element", "12"})
                .out.rfind("element-matrix-590  590@it=0  element 12\n  size       3 x 3\n", 0),
            0u);

  ExpectTrouble({"matrix", "export", onf_, "597", "--element", "12", "-o", out},
                onf_ + ": no matrix of element 12 in '597', expected one in a block of kind 590 to 592 or 597 to 599");
  ExpectTrouble({"matrix", "show", onf_, "--element", "7"},
                onf_ + ": no matrix of element 7, expected one in a block of kind 590 to 592 or 597 to 599");
  ExpectTrouble({"matrix", "show", onf_, "--element", "12", "--index", "1"},
                "--index and --element exclude each other, expected one at most");
  RunQuilon({"matrix", "import", small_, "--element", "12", "--pair", "2", "-o", onf_});
  ExpectTrouble({"matrix", "export", onf_, "--element", "12", "-o", out},
                onf_ + ": 2 matrices, expected one: 590@it=0 --element 12, 591@it=0 --element 12");
}

TEST_F(MatrixCommand, AMatrixIsChosenByAnIndexThatIsThere)
{
  ImportSmall();
  ExpectTrouble({"matrix", "show", onf_, "--index", "-1"}, "--index is -1, expected 0 or more");
  ExpectTrouble({"matrix", "show", onf_, "--index", "5"}, onf_ + ": no matrix 5 in 1900@it=0");
}

// A link stays one, and what is no file is not replaced by a file.
TEST_F(MatrixCommand, ExportNeverReplacesAFileOfAWorkingDatabase)
{
  const std::string fed = (folder_ / "k.fed").string();
  ASSERT_EQ(RunQuilon({"matrix", "import", small_, "--as", "mine", "-o", fed}).exitCode, 0);
  const std::string before = ReadTree(fed);
  // Refused before anything is read: the database that is named is not there.
  const std::string segment = fed + "/segment-000001.h5";
  for (const std::string& database : {fed, (folder_ / "none").string()})
    ExpectTrouble({"matrix", "export", database, "mine", "-o", segment},
                  segment + ": inside a working database, expected a place outside");
  EXPECT_EQ(ReadTree(fed), before);
}

TEST_F(MatrixCommand, ExportKeepsLinksAndDevices)
{
  ImportSmall();
  const std::string file = Write("file.mtx", "former");
  const std::string link = (folder_ / "link.mtx").string();
  std::filesystem::create_symlink(file, link);
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "-o", link}).exitCode, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(ReadAll(file), ReadAll(small_));

  const std::string null = (folder_ / "null").string();
  std::filesystem::create_symlink("/dev/null", null);
  EXPECT_EQ(RunQuilon({"matrix", "export", onf_, "-o", null}).exitCode, 0);
  EXPECT_TRUE(std::filesystem::is_character_file(null));
}

TEST_F(MatrixCommand, WhatIsMissingOrContradictoryIsRefused)
{
  ImportSmall();
  const std::string sti = fixtures_ + "e_matrix.sti";
  ExpectTrouble({"matrix", "import", small_, "-o", onf_},
                small_ +
                    ": nothing says what the matrix is, expected --as KIND, such as stiffness, mass or a name of "
                    "your own");
  ExpectTrouble({"matrix", "import", small_, small_, "--as", "mass", "-o", onf_},
                small_ + ": a matrix for 594@it=0 was given before, expected one for each");
  ExpectTrouble({"matrix", "import", small_, "--as", "mass", "--index", "-1", "-o", onf_},
                "--index is -1, expected 0 or more");
  ExpectTrouble({"matrix", "import", small_, "--element", "1", "-o", onf_},
                small_ + ": nothing says which matrix of the element it is, expected --pair 1, 2 or 3");
  ExpectTrouble({"matrix", "import", sti, "--pair", "1", "-o", onf_},
                "--pair and --swapped are for the matrix of an element, expected --element ID with them");
  ExpectTrouble({"matrix", "import", sti, "--element", "1", "--pair", "4", "-o", onf_},
                "--pair is 4, expected 1, 2 or 3");
}

TEST_F(MatrixCommand, AMissingKindIsToldBeforeAnyFileIsRead)
{
  const std::string cut = Write("cut.sti", "1 1\n");  // which reading would refuse
  ExpectTrouble({"matrix", "import", cut, small_, "-o", onf_},
                small_ +
                    ": nothing says what the matrix is, expected --as KIND, such as stiffness, mass or a name of "
                    "your own");
  ExpectTrouble({"matrix", "import", cut, small_, "--element", "1", "-o", onf_},
                small_ + ": nothing says which matrix of the element it is, expected --pair 1, 2 or 3");
}

TEST_F(MatrixCommand, BadInputNamesFileAndLineAndLeavesTheDatabase)
{
  const std::string cut      = Write("cut.mtx", "%%MatrixMarket matrix coordinate real general\n2 2 3\n1 1 2\n");
  const std::string expected = cut + ":4: expected entry 2 of 3, found the end of the file";
  ExpectTrouble({"matrix", "import", cut, "--as", "mass", "-o", onf_}, expected);
  ImportSmall("mass");
  ExpectTrouble({"matrix", "import", small_, cut, "--as", "mass@lc=1", "-o", onf_}, expected);
  const std::string yale = Write("bad.txt", "1\n1\n1\nx\n");
  ExpectTrouble({"matrix", "import", yale, "--as", "mass", "-o", onf_},
                yale + ":4: the file ends after 4 entries, expected 7 up to the last row pointer");
}

TEST_F(MatrixCommand, DegreesOfFreedomOfOneBlockAreTheSame)
{
  const std::string a = Write("a.sti", "1 1 2.0\n");
  const std::string b = Write("b.mas", "1 1 3.0\n");
  Write("a.dof", "7.1\n");
  Write("b.dof", "7.2\n");
  ExpectTrouble({"matrix", "import", a, b, "-o", onf_},
                b + ": its degrees of freedom are not those of the matrix before it, expected the same or other keys");
}

TEST_F(MatrixCommand, ADatabaseWithoutMatricesSaysSo)
{
  WriteSmallOnf(onf_);
  ExpectTrouble({"matrix", "show", onf_},
                onf_ + ": no sparse matrices, expected a block of kind 593, 594 or 1900 to 1999, or --element");
  ExpectTrouble(
      {"matrix", "show", onf_, "stress"},
      onf_ + ": no sparse matrices in 'stress', expected a block of kind 593, 594 or 1900 to 1999, or --element");
}

TEST_F(MatrixCommand, OtherBlocksOfTheFolderStay)
{
  WriteSmallOnf(onf_);
  const std::string before = RunQuilon({"ls", onf_, "@it=0"}).out;
  ImportSmall("mass@it=1");
  EXPECT_EQ(RunQuilon({"ls", onf_, "@it=0"}).out, before);
  EXPECT_EQ(RunQuilon({"matrix", "show", onf_}).exitCode, 0);
}

TEST_F(MatrixCommand, ExplainsItselfAndNamesWhatItDoesNotKnow)
{
  EXPECT_EQ(RunQuilon({"matrix", "--help"}).exitCode, 0);
  for (const char* command : {"import", "export", "show"})
    EXPECT_NE(RunQuilon({"matrix", command, "--help"}).out.find("Examples:\n  quilon matrix " + std::string(command)),
              std::string::npos);
  ExpectTrouble({"matrix"}, "the command is missing, see 'quilon matrix --help'");
  ExpectTrouble({"matrix", "shwo"}, "unknown command 'shwo', did you mean 'show'?");
  ExpectTrouble({"matrix", "show", "--jsno"}, "unknown option '--jsno', did you mean '--json'?");
  ExpectTrouble({"matrix", "show"}, "DB is missing, see 'quilon matrix show --help'");
}

TEST_F(MatrixCommand, ShowsWhereValuesAreAsAPicture)
{
  ImportSmall();
  const std::string picture = (folder_ / "a.png").string();
  const RunResult   run     = RunQuilon({"matrix", "show", onf_, "--plot", picture});
  EXPECT_EQ(run.err + run.out, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(ReadAll(picture).substr(1, 3), "PNG");
  ImportSmall("other");
  ExpectTrouble({"matrix", "show", onf_, "--plot", picture},
                "--plot is of one matrix, found 2, expected a narrower selection or --index");
  ExpectTrouble({"matrix", "show", onf_, "--plot", "a.gif"}, "a.gif: expected a name that ends in .png, .svg or .pdf");
}

}  // namespace
