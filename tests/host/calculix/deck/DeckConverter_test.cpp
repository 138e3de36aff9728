#include "calculix/deck/DeckConverter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonUtilities/FED_Failure.h>

#include "DeckSupport.h"

namespace {

namespace fs = std::filesystem;
using namespace quilon::calculix;
using quilon_test::DeckFolder;

const fs::path kFixture = fs::path(QUILON_FIXTURES) / "calculix/conversion";

std::string ReadText(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

class DeckConversions : public testing::Test
{
protected:
  void SetUp() override
  {
    conversion_.suffix = "c";
    conversion_.output = folder_ / "out.inp";
  }

  DeckConversionReport Convert(const fs::path& deck) { return ConvertDeck(deck, options_, conversion_); }

  std::string FailureOf(const fs::path& deck)
  {
    try {
      Convert(deck);
    } catch (const FED_Failure& failure) {
      return folder_.WithoutFolder(failure.GetMessage());
    }
    return "no failure";
  }

  std::string TextOf(const std::string& name) const { return ReadText(folder_ / name); }

  /// The names of all files below the folder.
  std::set<std::string> Names() const
  {
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder_ / ""))
      if (!entry.is_directory()) names.insert(entry.path().lexically_relative(folder_ / "").string());
    return names;
  }

  /// A deck that includes a file that includes another one.
  fs::path WriteTree() const
  {
    folder_.Write("sub/nodes.inc", "1,0,0,0\r\n2,1,0,0");
    folder_.Write("mesh.v1.inc", "** mesh\n*NODE\n*INCLUDE, INPUT=sub/nodes.inc\n** done\n");
    return folder_.Write("job.inp", "*HEADING\r\na job\r\n*include,input = \"mesh.v1.inc\"\r\n\r\n*NSET, NSET=N\n1");
  }

  DeckFolder     folder_;
  DeckOptions    options_;
  DeckConversion conversion_;
};

// ---- copies

TEST_F(DeckConversions, TheCopyOfATreeNamesItsCopies)
{
  const DeckConversionReport report = Convert(WriteTree());
  EXPECT_EQ(TextOf("out.inp"), "*HEADING\na job\n*include,input = \"mesh.v1_c.inc\"\n\n*NSET, NSET=N\n1\n");
  EXPECT_EQ(TextOf("mesh.v1_c.inc"), "** mesh\n*NODE\n*INCLUDE, INPUT=sub/nodes_c.inc\n** done\n");
  EXPECT_EQ(TextOf("sub/nodes_c.inc"), "1,0,0,0\n2,1,0,0\n");
  EXPECT_EQ(report.files,
            (std::vector<fs::path>{folder_ / "out.inp", folder_ / "mesh.v1_c.inc", folder_ / "sub/nodes_c.inc"}));
  EXPECT_EQ(report.lines, 12u);
}

TEST_F(DeckConversions, LineEndsCanStayAsTheyAre)
{
  conversion_.keepLineEnds = true;
  Convert(WriteTree());
  EXPECT_EQ(TextOf("out.inp"), "*HEADING\r\na job\r\n*include,input = \"mesh.v1_c.inc\"\r\n\r\n*NSET, NSET=N\n1");
  EXPECT_EQ(TextOf("mesh.v1_c.inc"), "** mesh\n*NODE\n*INCLUDE, INPUT=sub/nodes_c.inc\n** done\n");
  EXPECT_EQ(TextOf("sub/nodes_c.inc"), "1,0,0,0\r\n2,1,0,0");
}

TEST_F(DeckConversions, LineEndsStayAroundIncludesToo)
{
  conversion_.keepLineEnds = true;
  // Mixed ends on both sides of every border, empty lines, and include statements as last lines.
  folder_.Write("a.inc", "\r\n\n1,0,0,0\n\r\n");
  folder_.Write("b.inc", "2,0,0,0\r\n*INCLUDE, INPUT=a.inc\r\n");
  folder_.Write("d.inc", "3,0,0,0\n*INCLUDE, INPUT=a.inc");
  folder_.Write("e.inc", "4,0,0,0\r");
  folder_.Write("f.inc", "");
  Convert(folder_.Write("job.inp",
                        "*NODE\r\n*INCLUDE, INPUT=b.inc\n*INCLUDE, INPUT=d.inc\r\n\r\n*INCLUDE, INPUT=e.inc\n"
                        "*INCLUDE, INPUT=f.inc\r\n*INCLUDE, INPUT=a.inc"));
  EXPECT_EQ(TextOf("a_c.inc"), "\r\n\n1,0,0,0\n\r\n");
  EXPECT_EQ(TextOf("b_c.inc"), "2,0,0,0\r\n*INCLUDE, INPUT=a_c.inc\r\n");
  EXPECT_EQ(TextOf("d_c.inc"), "3,0,0,0\n*INCLUDE, INPUT=a_c.inc");
  EXPECT_EQ(TextOf("e_c.inc"), "4,0,0,0\r");
  EXPECT_EQ(TextOf("f_c.inc"), "");
  EXPECT_EQ(TextOf("out.inp"),
            "*NODE\r\n*INCLUDE, INPUT=b_c.inc\n*INCLUDE, INPUT=d_c.inc\r\n\r\n*INCLUDE, INPUT=e_c.inc\n"
            "*INCLUDE, INPUT=f_c.inc\r\n*INCLUDE, INPUT=a_c.inc");
}

TEST_F(DeckConversions, DoubledCarriageReturnsAreOneLineEnd)
{
  folder_.Write("a.inc", "1,0,0,0\r\r\n2,0,0,0\r\r");
  const fs::path deck = folder_.Write("job.inp", "*NODE\r\r\r\n*INCLUDE, INPUT=a.inc\r\r\n*HEADING\r\r\n\r\r\n");
  Convert(deck);
  EXPECT_EQ(TextOf("out.inp"), "*NODE\n*INCLUDE, INPUT=a_c.inc\n*HEADING\n\n");
  EXPECT_EQ(TextOf("a_c.inc"), "1,0,0,0\n2,0,0,0\n");
  conversion_.keepLineEnds = true;
  Convert(deck);
  EXPECT_EQ(TextOf("out.inp"), "*NODE\r\r\r\n*INCLUDE, INPUT=a_c.inc\r\r\n*HEADING\r\r\n\r\r\n");
  EXPECT_EQ(TextOf("a_c.inc"), "1,0,0,0\r\r\n2,0,0,0\r\r");
}

TEST_F(DeckConversions, AnIncludeAsLastLineLeavesEveryLineInItsOwnCopy)
{
  folder_.Write("a.inc", "1,0,0,0\n*INCLUDE, INPUT=b.inc\n");
  folder_.Write("b.inc", "2,0,0,0\n*INCLUDE, INPUT=d.inc\n");
  folder_.Write("d.inc", "3,0,0,0\n4,0,0,0\n5,0,0,0\n");
  Convert(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n6,0,0,0\n"));
  EXPECT_EQ(TextOf("d_c.inc"), "3,0,0,0\n4,0,0,0\n5,0,0,0\n");
  EXPECT_EQ(TextOf("b_c.inc"), "2,0,0,0\n*INCLUDE, INPUT=d_c.inc\n");
  EXPECT_EQ(TextOf("a_c.inc"), "1,0,0,0\n*INCLUDE, INPUT=b_c.inc\n");
  EXPECT_EQ(TextOf("out.inp"), "*NODE\n*INCLUDE, INPUT=a_c.inc\n6,0,0,0\n");
}

TEST_F(DeckConversions, AFileFoundBesideItsIncludingFileKeepsItsSpelling)
{
  folder_.Write("sub/a b.inc", "1,0,0,0\n");
  folder_.Write("sub/mesh.inc", "*INCLUDE, INPUT=\"a b.inc\"\n");
  Convert(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=sub/mesh.inc\n"));
  EXPECT_EQ(TextOf("sub/mesh_c.inc"), "*INCLUDE, INPUT=\"a b_c.inc\"\n");
  EXPECT_EQ(TextOf("sub/a b_c.inc"), "1,0,0,0\n");
}

TEST_F(DeckConversions, AFolderWithBlanksKeepsThem)
{
  folder_.Write("my parts/mesh.inc", "1,0,0,0\n");
  Convert(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=\"my parts/mesh.inc\"\n"));
  EXPECT_EQ(TextOf("out.inp"), "*NODE\n*INCLUDE, INPUT=\"my parts/mesh_c.inc\"\n");
  EXPECT_EQ(TextOf("my parts/mesh_c.inc"), "1,0,0,0\n");

  folder_.Write("myparts/mesh.inc", "2,0,0,0\n");
  Convert(folder_ / "job.inp");
  EXPECT_EQ(TextOf("out.inp"), "*NODE\n*INCLUDE, INPUT=\"myparts/mesh_c.inc\"\n") << "the solver's reading comes first";
  EXPECT_EQ(TextOf("myparts/mesh_c.inc"), "2,0,0,0\n");
}

TEST_F(DeckConversions, AFileIncludedTwiceIsCopiedOnce)
{
  folder_.Write("a.inc", "1,0,0,0\n");
  const DeckConversionReport report =
      Convert(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n*NODE\n*INCLUDE, INPUT=a.inc\n"));
  EXPECT_EQ(report.files, (std::vector<fs::path>{folder_ / "out.inp", folder_ / "a_c.inc"}));
  EXPECT_EQ(TextOf("a_c.inc"), "1,0,0,0\n");
}

TEST_F(DeckConversions, AFileThatMeansTwoThingsIsNamed)
{
  conversion_.lengthExponent = -3;
  folder_.Write("a.inc", "1,2,3\n");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp",
                                    "*NODE\n*INCLUDE, INPUT=a.inc\n2,0,0\n3,0,0\n*NSET, NSET=N\n"
                                    "*INCLUDE, INPUT=a.inc\n")),
            "job.inp:6: a.inc is included more than once, and what becomes of it differs: expected files of their own");
  EXPECT_EQ(Names(), (std::set<std::string>{"a.inc", "job.inp"}));
}

TEST_F(DeckConversions, AFileUnderTwoNamesIsOneFile)
{
  conversion_.lengthExponent = -3;
  folder_.Write("a.inc", "1,2,3\n");
  fs::create_directory(folder_ / "sub");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp",
                                    "*NODE\n*INCLUDE, INPUT=a.inc\n2,0,0\n3,0,0\n*NSET, NSET=N\n"
                                    "*INCLUDE, INPUT=sub/../a.inc\n")),
            "job.inp:6: sub/../a.inc is included more than once, and what becomes of it differs: expected files of "
            "their own");
  const DeckConversionReport report =
      Convert(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n*INCLUDE, INPUT=sub/../a.inc\n"));
  EXPECT_EQ(report.files, (std::vector<fs::path>{folder_ / "out.inp", folder_ / "a_c.inc"}));
}

TEST_F(DeckConversions, WhatIsMissingBehindACardIsReportedAtTheCard)
{
  conversion_.lengthExponent = -3;
  const std::string mesh =
      "*NODE\n1,0,0\n2,1,0\n3,0,1\n*ELEMENT, TYPE=CPS3, ELSET=E\n1,1,2,3\n"
      "*MATERIAL, NAME=M\n*ELASTIC\n1.,.3\n";
  folder_.Write("a.inc", "*SOLID SECTION, ELSET=E, MATERIAL=M\n");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", mesh + "*INCLUDE, INPUT=a.inc\n**\n*HEADING\n")),
            "a.inc:1: cannot convert *SOLIDSECTION of plane elements: expected their thickness, the solver takes 1 for "
            "none and 0");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", mesh + "*INCLUDE, INPUT=a.inc\n")).substr(0, 9), "a.inc:1: ")
      << "at the end of the deck too";
}

TEST_F(DeckConversions, CommentsAreLeftOutOnRequest)
{
  conversion_.stripComments = true;
  folder_.Write("a.inc", "** one\n1,0,0,0\n ** two\n");
  Convert(
      folder_.Write("job.inp", "** head\n*NODE\n\n*INCLUDE, INPUT=a.inc\n*HEADING\n** no title\n* * none\ntitle\n"));
  EXPECT_EQ(TextOf("out.inp"), "*NODE\n\n*INCLUDE, INPUT=a_c.inc\n*HEADING\ntitle\n");
  EXPECT_EQ(TextOf("a_c.inc"), "1,0,0,0\n");
}

TEST_F(DeckConversions, NodesMoveTogether)
{
  conversion_.firstNode = 101;
  folder_.Write("a.inc", "2,0,0,0\n");
  Convert(folder_.Write("job.inp", "*NODE\n7,1,0,0\n*INCLUDE, INPUT=a.inc\n*NSET, NSET=N\n7,2\n*BOUNDARY\n2,1,3\n"));
  EXPECT_EQ(TextOf("out.inp"),
            "*NODE\n106,1,0,0\n*INCLUDE, INPUT=a_c.inc\n*NSET, NSET=N\n106,101\n*BOUNDARY\n101,1,3\n");
  EXPECT_EQ(TextOf("a_c.inc"), "101,0,0,0\n");
}

TEST_F(DeckConversions, AnOutFolderHoldsTheFilesAndTheirCopies)
{
  conversion_.outFolder             = folder_ / "there";
  conversion_.output                = "out.inp";
  const DeckConversionReport report = Convert(WriteTree());
  EXPECT_EQ(Names(), (std::set<std::string>{"job.inp", "mesh.v1.inc", "sub/nodes.inc", "there/job.inp",
                                            "there/mesh.v1.inc", "there/sub/nodes.inc", "there/mesh.v1_c.inc",
                                            "there/out.inp", "there/sub/nodes_c.inc"}));
  EXPECT_EQ(TextOf("there/sub/nodes_c.inc"), "1,0,0,0\n2,1,0,0\n");
  EXPECT_EQ(TextOf("there/job.inp"), TextOf("job.inp"));
  EXPECT_EQ(report.files.front(), folder_ / "there/out.inp");
}

// ---- refusals, all of them before a file is written

TEST_F(DeckConversions, ACopyOverASourceIsRefusedBeforeAnythingIsWritten)
{
  const fs::path tree   = WriteTree();
  const auto     before = Names();

  conversion_.output = tree;
  EXPECT_EQ(FailureOf(tree), "job.inp: expected a file that the deck does not read");
  conversion_.output = folder_ / "mesh.v1.inc";
  EXPECT_EQ(FailureOf(tree), "mesh.v1.inc: expected a file that the deck does not read");
  conversion_.output = folder_ / "sub/../mesh.v1.inc";
  EXPECT_EQ(FailureOf(tree).substr(0, 20), "sub/../mesh.v1.inc: ");
  conversion_.output = folder_ / "mesh.v1_c.inc";
  EXPECT_EQ(FailureOf(tree), "mesh.v1_c.inc: is the copy of mesh.v1.inc too");
  EXPECT_EQ(Names(), before);

  folder_.Write("plain", "1,0,0,0\n");
  conversion_.output = folder_ / "out.inp";
  EXPECT_EQ(FailureOf(folder_.Write("two.inp", "*NODE\n*INCLUDE, INPUT=plain\n")),
            "plain: its copy would overwrite it, expected a name with an extension");

  folder_.Write("a.inc", "1,0,0,0\n");
  folder_.Write("a_c.inc", "2,0,0,0\n");
  EXPECT_EQ(FailureOf(folder_.Write("three.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n*INCLUDE, INPUT=a_c.inc\n")),
            "a.inc: its copy would overwrite a_c.inc, which the deck reads");
  EXPECT_EQ(TextOf("a_c.inc"), "2,0,0,0\n");
  EXPECT_FALSE(fs::exists(folder_ / "out.inp"));
}

TEST_F(DeckConversions, OtherNamesOfASourceAreSeenThrough)
{
  folder_.Write("a.inc", "1,0,0,0\n");
  const fs::path deck = folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n");
  fs::create_symlink(folder_ / "a.inc", folder_ / "a_c.inc");
  EXPECT_EQ(FailureOf(deck), "a.inc: its copy would overwrite a_c.inc, which the deck reads");
  fs::remove(folder_ / "a_c.inc");
  fs::create_hard_link(folder_ / "a.inc", folder_ / "a_c.inc");
  EXPECT_EQ(FailureOf(deck), "a.inc: its copy would overwrite a_c.inc, which the deck reads");
  EXPECT_EQ(TextOf("a.inc"), "1,0,0,0\n");
}

TEST_F(DeckConversions, ASuffixIsAPartOfAName)
{
  const fs::path deck = WriteTree();
  for (const char* suffix : {"", "a/b", "a b", "a.b", "..", "\xc3\xa4"}) {
    conversion_.suffix = suffix;
    EXPECT_EQ(FailureOf(deck), "--suffix is '" + std::string(suffix) + "', expected letters, digits, '-' and '_'");
  }
}

TEST_F(DeckConversions, TheCopyLiesWhereItsIncludesAreFound)
{
  const fs::path deck = WriteTree();
  fs::create_directory(folder_ / "other");
  conversion_.output = folder_ / "other/out.inp";
  EXPECT_EQ(FailureOf(deck),
            "other/out.inp: expected a file in ., from where the include statements of the copy are read");
  Convert(folder_.Write("alone.inp", "*NODE\n1,0,0,0\n"));
  EXPECT_EQ(TextOf("other/out.inp"), "*NODE\n1,0,0,0\n") << "a deck without includes goes anywhere";
}

TEST_F(DeckConversions, AnOutFolderStaysAsItIsWhenSomethingIsWrong)
{
  const fs::path tree   = WriteTree();
  const auto     before = Names();
  conversion_.outFolder = folder_ / "there";
  conversion_.output    = "sub/out.inp";
  EXPECT_EQ(FailureOf(tree),
            "there/sub/out.inp: expected a file in there, from where the include statements of the copy are read");
  EXPECT_FALSE(fs::exists(folder_ / "there"));

  conversion_.output = "out.inp";
  fs::create_directories(folder_ / "there/sub/nodes_c.inc");
  EXPECT_EQ(FailureOf(tree), "there/sub/nodes_c.inc: cannot be written");
  EXPECT_EQ(Names(), before) << "neither the files nor their copies are left";

  conversion_.output = "";
  EXPECT_EQ(FailureOf(tree), "-o is empty, expected the file to write");
}

TEST_F(DeckConversions, AnOutFolderTakesOnlyWhatLiesBelowTheDeck)
{
  conversion_.outFolder = folder_ / "there";
  conversion_.output    = "out.inp";
  folder_.Write("a.inc", "1,0,0,0\n");
  const std::string absolute = (folder_ / "a.inc").string();
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=" + absolute + "\n")),
            "--out-dir: expected files below . named by relative paths, found a.inc");
  EXPECT_FALSE(fs::exists(folder_ / "there"));

  conversion_.outFolder = folder_ / "";
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n")),
            "--out-dir: would overwrite job.inp");
}

TEST_F(DeckConversions, WhatCannotBeConvertedIsFoundBeforeAnythingIsWritten)
{
  conversion_.lengthExponent = -3;
  folder_.Write("a.inc", "1,0,0,0\n*MADE UP\n");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*NODE\n*INCLUDE, INPUT=a.inc\n**\n3.\n")),
            "job.inp:4: cannot convert the data of *MADEUP: which of its numbers hold lengths is not known");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*NODE\n1,0,0,0\n*MATERIAL, NAME=M\n*HYPERELASTIC, NEO HOOKE\n5.,1.\n")),
            "job.inp:5: cannot convert the data of *HYPERELASTIC: which of its numbers hold lengths is not known");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*INCLUDE, INPUT=missing.inc\n")),
            "job.inp:1: include file 'missing.inc' is not there, looked for missing.inc");
  EXPECT_EQ(Names(), (std::set<std::string>{"a.inc", "job.inp"}));
}

// ---- disks

#ifdef __linux__
TEST_F(DeckConversions, AFullDiskIsAnErrorAndLeavesNoCopy)
{
  std::string many = "*NODE\n";
  for (int i = 1; i < 20000; ++i) many += std::to_string(i) + ",0,0,0\n";
  const auto full = [&](const std::string& name) { fs::create_symlink("/dev/full", folder_ / name); };

  conversion_.output = folder_ / "full.inp";
  full("full.inp");
  EXPECT_EQ(FailureOf(folder_.Write("few.inp", "*NODE\n")), "full.inp: cannot be written");
  EXPECT_EQ(FailureOf(folder_.Write("many.inp", many)), "full.inp: cannot be written");

  folder_.Write("a.inc", many);
  folder_.Write("b.inc", "** last\n");
  const fs::path tree = folder_.Write("tree.inp", "*INCLUDE, INPUT=a.inc\n*INCLUDE, INPUT=b.inc\n");
  EXPECT_EQ(FailureOf(tree), "full.inp: cannot be written") << "the statement does not fit";
  EXPECT_FALSE(fs::exists(folder_ / "a_c.inc"));

  conversion_.output = folder_ / "out.inp";
  full("b_c.inc");
  EXPECT_EQ(FailureOf(tree), "b_c.inc: cannot be written");
  EXPECT_FALSE(fs::exists(folder_ / "out.inp"));
  EXPECT_FALSE(fs::exists(folder_ / "a_c.inc"));
  EXPECT_TRUE(fs::exists("/dev/full"));
}
#endif

TEST_F(DeckConversions, ACopyThatCannotBeOpenedIsAnError)
{
  const fs::path tree = WriteTree();
  fs::create_directory(folder_ / "sub/nodes_c.inc");
  EXPECT_EQ(FailureOf(tree), "sub/nodes_c.inc: cannot be written");
  EXPECT_FALSE(fs::exists(folder_ / "out.inp"));
  EXPECT_FALSE(fs::exists(folder_ / "mesh.v1_c.inc"));
}

#ifdef __linux__
TEST_F(DeckConversions, WhatCanBeReadOnceIsNotConverted)
{
  EXPECT_EQ(FailureOf("/dev/null"), "/dev/null: expected a file that can be read more than once");
  fs::create_symlink("/dev/null", folder_ / "a.inc");
  options_.allowOutside = true;
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*INCLUDE, INPUT=a.inc\n")),
            "a.inc: expected a file that can be read more than once");
  EXPECT_FALSE(fs::exists(folder_ / "out.inp"));
}

TEST_F(DeckConversions, WhatCannotBeOpenedStaysAsItIs)
{
  fs::create_directory(folder_ / "out.inp");
  EXPECT_EQ(FailureOf(folder_.Write("job.inp", "*NODE\n")), "out.inp: cannot be written");
  EXPECT_TRUE(fs::is_directory(folder_ / "out.inp"));
}
#endif

TEST(DeckUnits, AreNamedInPairs)
{
  EXPECT_EQ(ParseLengthUnits("mm:m"), -3);
  EXPECT_EQ(ParseLengthUnits("m:mm"), 3);
  EXPECT_EQ(ParseLengthUnits("um:km"), -9);
  EXPECT_EQ(ParseLengthUnits("cm:dm"), -1);
  EXPECT_EQ(ParseLengthUnits("m:m"), 0);
  for (const char* text : {"", "mm", "mm:", ":m", "mm:m:m", "in:mm", "MM:M"}) {
    try {
      ParseLengthUnits(text);
      ADD_FAILURE() << text;
    } catch (const FED_Failure& failure) {
      EXPECT_EQ(failure.GetMessage(),
                "--units is '" + std::string(text) + "', expected FROM:TO of um, mm, cm, dm, m and km");
    }
  }
}

// ---- the solver judges: it has run the decks that these tests convert to, and its outputs lie beside them

class ConversionOracle : public testing::Test
{
protected:
  /// Converts the fixture and expects the tree that lies beside it under the suffix.
  void ExpectTree(const std::string& suffix, DeckConversion conversion)
  {
    for (const char* name : {"job.inp", "parts/mesh.inc", "parts/load.inc", "parts/deep/thin.nodes.inc"})
      folder_.Write(name, ReadText(kFixture / name));
    conversion.suffix                 = suffix;
    conversion.output                 = folder_ / ("job_" + suffix + ".inp");
    const DeckConversionReport report = ConvertDeck(folder_ / "job.inp", {}, conversion);
    EXPECT_EQ(report.files.size(), 4u);
    for (const fs::path& file : report.files) {
      const fs::path name = file.lexically_relative(folder_ / "");
      EXPECT_EQ(ReadText(file), ReadText(kFixture / name)) << name;
    }
  }

  DeckFolder folder_;
};

/// A line of a .dat taken apart.
struct DatLine
{
  std::vector<std::string> words;
  std::vector<double>      numbers;           // from the first word that is a number with a point
  std::vector<std::string> ids;               // integers before them
  bool                     isHeader = false;  // a row in a local system ends with a word, too
};

DatLine TakeApart(const std::string& line)
{
  DatLine            result;
  std::istringstream in(line);
  for (std::string word; in >> word;) {
    double      value        = 0.0;
    const char* end          = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, value);
    const bool isNumber      = error == std::errc() && stop == end;
    if (isNumber && word.find('.') != std::string::npos) {
      result.numbers.push_back(value);
    } else if (isNumber) {
      result.ids.push_back(word);
    } else {
      result.isHeader = result.isHeader || (result.ids.empty() && result.numbers.empty());
      result.words.push_back(word);
    }
  }
  return result;
}

/// Of a block by the first words of its header: the power of the length in its values.
std::optional<int> PowerOf(const std::vector<std::string>& words)
{
  static const std::vector<std::pair<std::string, int>> kPowers = {{"displacements", 1},
                                                                   {"total force", 0},
                                                                   {"forces", 0},
                                                                   {"stresses", -2},
                                                                   {"strains", 0},
                                                                   {"temperatures", 0},
                                                                   {"heat generation", 1},
                                                                   {"heat flux", -1},
                                                                   {"internal energy density", -2},
                                                                   {"internal energy (", 1},
                                                                   {"total internal energy", 1},
                                                                   {"volume", 3},
                                                                   {"total volume", 3},
                                                                   {"equivalent plastic", 0}};
  std::string                                           header;
  for (const std::string& word : words) header += word + ' ';
  for (const auto& [begin, power] : kPowers)
    if (header.rfind(begin, 0) == 0) return power;
  return std::nullopt;
}

bool IsOfNodes(const std::vector<std::string>& words)
{
  const std::string& first = words.front();
  return first == "displacements" || first == "forces" || first == "temperatures" ||
         (first == "heat" && words.at(1) == "generation");
}

/// Compares two .dat files line by line, value by value.
/// @param lengthFactor what a length is multiplied by
/// @param nodeOffset   of the ids in blocks of nodes
/// @param tolerance    of a value, relative to the largest of its block
/// @return the number of values compared
std::size_t CompareDat(const fs::path& before, const fs::path& after, double lengthFactor, int nodeOffset,
                       double tolerance)
{
  std::istringstream                     first(ReadText(before));
  std::istringstream                     second(ReadText(after));
  std::string                            a;
  std::string                            b;
  std::size_t                            compared = 0;
  double                                 factor   = 1.0;
  bool                                   isNodes  = false;
  double                                 largest  = 0.0;
  std::vector<std::pair<double, double>> values;
  const auto                             finish = [&] {
    for (const auto& [expected, found] : values) EXPECT_NEAR(found, expected, tolerance * largest);
    compared += values.size();
    values.clear();
    largest = 0.0;
  };
  while (std::getline(first, a)) {
    if (!std::getline(second, b)) {
      ADD_FAILURE() << "the second file ends early";
      return 0;
    }
    const DatLine one = TakeApart(a);
    const DatLine two = TakeApart(b);
    EXPECT_EQ(one.words, two.words);
    EXPECT_EQ(one.numbers.size(), two.numbers.size()) << a << '\n' << b;
    if (one.numbers.size() != two.numbers.size()) return 0;
    if (one.isHeader) {
      finish();
      const auto power = PowerOf(one.words);
      EXPECT_TRUE(power.has_value()) << a;
      factor  = std::pow(lengthFactor, power.value_or(0));
      isNodes = IsOfNodes(one.words);
      EXPECT_EQ(one.numbers, two.numbers) << "times";
      continue;
    }
    for (std::size_t i = 0; i < one.numbers.size(); ++i) {
      values.emplace_back(one.numbers[i] * factor, two.numbers[i]);
      largest = std::max(largest, std::abs(values.back().first));
    }
    std::vector<std::string> ids = one.ids;
    if (isNodes && !ids.empty()) ids.front() = std::to_string(std::stoi(ids.front()) + nodeOffset);
    EXPECT_EQ(ids, two.ids);
  }
  finish();
  EXPECT_FALSE(std::getline(second, b));
  return compared;
}

TEST_F(ConversionOracle, MetresGiveTheSameResultsScaled)
{
  DeckConversion conversion;
  conversion.lengthExponent = ParseLengthUnits("mm:m");
  ExpectTree("m", conversion);
  // The solver prints seven digits, so a last one that is rounded the other way is at most a millionth.
  EXPECT_GT(CompareDat(kFixture / "job.dat", kFixture / "job_m.dat", 1e-3, 0, 1e-6), 1500u);
}

TEST_F(ConversionOracle, OtherNodeNumbersGiveTheSameResults)
{
  DeckConversion conversion;
  conversion.firstNode     = 5001;
  conversion.stripComments = true;
  ExpectTree("r", conversion);
  EXPECT_GT(CompareDat(kFixture / "job.dat", kFixture / "job_r.dat", 1.0, 4990, 0.0), 1500u);
}

// Thin: gradients across shells and beams, nodal thicknesses, and the rotations of a rigid body, which are translations
// of a node of its own. Heat: all ways into a body, and time. Touch: contact with friction.
TEST_F(ConversionOracle, OtherPhysicsGivesTheSameResultsToo)
{
  const std::pair<const char*, std::size_t> decks[] = {{"thin", 700}, {"heat", 200}, {"touch", 400}};
  for (const auto& [name, numValues] : decks) {
    SCOPED_TRACE(name);
    const auto path    = [name = std::string(name)](const std::string& end) { return kFixture / (name + end); };
    const auto convert = [&](const std::string& suffix, DeckConversion conversion) {
      conversion.suffix = suffix;
      conversion.output = folder_ / "out.inp";
      ConvertDeck(path(".inp"), {}, conversion);
      EXPECT_EQ(ReadText(folder_ / "out.inp"), ReadText(path("_" + suffix + ".inp")));
    };
    DeckConversion metres;
    metres.lengthExponent = ParseLengthUnits("mm:m");
    convert("m", metres);
    EXPECT_GT(CompareDat(path(".dat"), path("_m.dat"), 1e-3, 0, 1e-6), numValues);

    DeckConversion renumbered;
    renumbered.firstNode     = 5001;
    renumbered.stripComments = true;
    convert("r", renumbered);
    EXPECT_GT(CompareDat(path(".dat"), path("_r.dat"), 1.0, 5000, 0.0), numValues);
  }
}

TEST_F(ConversionOracle, WithoutCommentsTheSolverReadsTheSameDeck)
{
  DeckConversion conversion;
  conversion.stripComments = true;
  ExpectTree("s", conversion);
  EXPECT_EQ(ReadText(kFixture / "job.dat"), ReadText(kFixture / "job_s.dat"));
}

}  // namespace
