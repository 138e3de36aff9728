#include "calculix/deck/DeckText.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace quilon::calculix;

std::vector<std::string> FieldsOf(std::string_view line)
{
  std::vector<std::string> all;
  DeckFields               fields(line);
  std::string_view         field;
  while (fields.Next(field)) all.emplace_back(field);
  return all;
}

TEST(DeckText, KindOfALineIgnoresBlanksAndCase)
{
  struct Row
  {
    const char*  line;
    DeckLineKind kind;
  };
  const Row rows[] = {
      {"", DeckLineKind::Blank},
      {" \t ", DeckLineKind::Blank},
      {"**", DeckLineKind::Comment},
      {"** a comment", DeckLineKind::Comment},
      {"  ** an indented comment", DeckLineKind::Comment},
      {"* * a comment too", DeckLineKind::Comment},
      {"*NODE", DeckLineKind::Card},
      {"\t * node, nset=a", DeckLineKind::Card},
      {"*", DeckLineKind::Card},
      {"*INCLUDE, INPUT=a.inc", DeckLineKind::Include},
      {" *in clude,input=a.inc", DeckLineKind::Include},
      {"*INCLUDE", DeckLineKind::Include},
      {"*INCLUDES, INPUT=a.inc", DeckLineKind::Include},  // the solver compares no more than its own letters
      {"*INCLUD", DeckLineKind::Card},
      {"1, 2.", DeckLineKind::Data},
      {"a title", DeckLineKind::Data},
      {"# no comment", DeckLineKind::Data},
  };
  for (const Row& row : rows) EXPECT_EQ(KindOfDeckLine(row.line), row.kind) << row.line;
}

TEST(DeckText, CardHasKeywordAndParametersWithoutBlanksInUpperCase)
{
  const DeckCard card = ParseDeckCard(" *Solid  Section , elset = e 1,material=\"M\", COMPOSITE,");
  EXPECT_EQ(card.keyword, "SOLIDSECTION");
  ASSERT_EQ(card.parameters.size(), 3U);
  EXPECT_EQ(card.ValueOf("ELSET"), "E1");
  EXPECT_EQ(card.ValueOf("MATERIAL"), "\"M\"");
  ASSERT_NE(card.Find("COMPOSITE"), nullptr);
  EXPECT_EQ(card.ValueOf("COMPOSITE"), "");
  EXPECT_EQ(card.Find("ORIENTATION"), nullptr);
  EXPECT_EQ(card.ValueOf("ORIENTATION"), "");
}

TEST(DeckText, CardWithoutAWordHasAnEmptyKeyword)
{
  EXPECT_EQ(ParseDeckCard("*").keyword, "");
  EXPECT_EQ(ParseDeckCard("*,a=b=c").keyword, "");
  EXPECT_EQ(ParseDeckCard("*,a=b=c").ValueOf("A"), "B=C");
}

TEST(DeckText, IncludePathKeepsCaseAndLosesDoubleQuotesAndBlanks)
{
  struct Row
  {
    const char* line;
    const char* solver;
    const char* written;
  };
  const Row rows[] = {
      {"*INCLUDE, INPUT=Mesh.Inc", "Mesh.Inc", "Mesh.Inc"},
      {"*include,input = sub/mesh.inc  ", "sub/mesh.inc", "sub/mesh.inc"},
      {"*INCLUDE, INPUT=\"has space.inc\"", "hasspace.inc", "has space.inc"},
      {"*INCLUDE, INPUT='single.inc'", "'single.inc'", "'single.inc'"},
      {"*INCLUDE, INPUT=mesh.inc,", "mesh.inc,", "mesh.inc,"},
      {"*INCLUDE, FOO, INP UT=mesh.inc", "mesh.inc", "mesh.inc"},
      {"*INCLUDE, INPUT=", "", ""},
      {"*INCLUDE, INPUT=\"\"", "", ""},
      {"*INCLUDE, INPUT=\" mesh.inc \",", "mesh.inc", "mesh.inc"},
      {"*INCLUDE, INPUT=\"mesh.inc\"x, FOO=BAR", "mesh.inc", "mesh.inc"},
      {"*INCLUDE, INPUT=mesh.inc\"", "mesh.inc\"", "mesh.inc\""},
      {"*INCLUDE, file=mesh.inc", "mesh.inc", "mesh.inc"},
  };
  for (const Row& row : rows) {
    const auto path = ParseDeckInclude(row.line);
    ASSERT_TRUE(path.has_value()) << row.line;
    EXPECT_EQ(path->asTheSolverReads, row.solver) << row.line;
    EXPECT_EQ(path->asWritten, row.written) << row.line;
  }
  EXPECT_FALSE(ParseDeckInclude("*INCLUDE").has_value());
  EXPECT_FALSE(ParseDeckInclude("*INCLUDE, mesh.inc").has_value());
  EXPECT_FALSE(ParseDeckInclude("*INCLUDE, INPUT=\"mesh.inc").has_value());
}

TEST(DeckText, FieldsStandBetweenCommas)
{
  using Fields = std::vector<std::string>;
  EXPECT_EQ(FieldsOf("1,2,3"), (Fields{"1", "2", "3"}));
  EXPECT_EQ(FieldsOf("  1 ,\t2 3 , x\t"), (Fields{"1", "2 3", "x"}));
  EXPECT_EQ(FieldsOf("1,,3"), (Fields{"1", "", "3"}));
  EXPECT_EQ(FieldsOf("1,2,"), (Fields{"1", "2"}));
  EXPECT_EQ(FieldsOf("1,2, "), (Fields{"1", "2"}));
  EXPECT_EQ(FieldsOf("1,,"), (Fields{"1", ""}));
  EXPECT_EQ(FieldsOf(","), (Fields{""}));
  EXPECT_EQ(FieldsOf(""), Fields());
}

TEST(DeckText, IntegersMayHaveBlanksInside)
{
  struct Row
  {
    const char* field;
    int         value;
  };
  const Row rows[] = {{"1", 1}, {"+12", 12}, {"-3", -3}, {"1 2", 12}, {"2147483647", std::numeric_limits<int>::max()}};
  for (const Row& row : rows) {
    int value = 0;
    EXPECT_TRUE(ReadDeckInteger(row.field, value)) << row.field;
    EXPECT_EQ(value, row.value) << row.field;
  }
  for (const char* field : {"", "a", "1.", "1e2", "2147483648", "1-2", "--1"}) {
    int value = 77;
    EXPECT_FALSE(ReadDeckInteger(field, value)) << field;
    EXPECT_EQ(value, 77) << field;
  }
}

TEST(DeckText, NumbersOfAllFormsAreEqual)
{
  struct Row
  {
    const char* field;
    double      value;
  };
  const Row rows[] = {{".3", 0.3},         {"1", 1.0},        {"1.", 1.0},       {"-1.5", -1.5},     {"+1.5", 1.5},
                      {"2.1E5", 210000},   {"2.1e5", 210000}, {"2.1D5", 210000}, {"2.1d+5", 210000}, {"2.1+5", 210000},
                      {"2.1E-05", 2.1e-5}, {"2.1-5", 2.1e-5}, {"1 . 5", 1.5},    {"2.1 E5", 210000}, {"0", 0.0}};
  for (const Row& row : rows) {
    double value = 77.0;
    EXPECT_TRUE(ReadDeckNumber(row.field, value)) << row.field;
    EXPECT_EQ(value, row.value) << row.field;
  }
  for (const char* field : {"", "a", "1.2.3", "1e", "inf", "-inf", "nan", "1e400", "0x10", ".", "-", "1.,2"}) {
    double value = 77.0;
    EXPECT_FALSE(ReadDeckNumber(field, value)) << field;
    EXPECT_EQ(value, 77.0) << field;
  }
}

TEST(DeckText, SolverReadsTwentyCharactersOfANumber)
{
  EXPECT_FALSE(IsCutBySolver("0.10000000000000E+01", 1.0));                  // twenty characters
  EXPECT_TRUE(IsCutBySolver("0.100000000000000E+01", 1.0));                  // the second exponent digit is lost
  EXPECT_FALSE(IsCutBySolver("1.00000000000000000000000000", 1.0));          // zeros are lost
  EXPECT_FALSE(IsCutBySolver("0.3333333333333333333333333333", 1.0 / 3.0));  // digits that do not matter
  EXPECT_TRUE(IsCutBySolver("0.0000000000000000000000001", 1e-25));          // all of it
  EXPECT_FALSE(IsCutBySolver("1 . 0               0", 1.0));                 // blanks are no characters
}

}  // namespace
