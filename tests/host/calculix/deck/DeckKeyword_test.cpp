// The table of cards: which keyword a card is, and which form its data have.

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "calculix/deck/DeckKeyword.h"
#include "calculix/deck/DeckText.h"

namespace {

using namespace quilon::calculix;

/// @return what the first four fields of a card's last line hold: I an integer, # a number, D a degree of freedom, n a
/// node's id, O a node or set, E an element or set, X that or a surface, S a surface, L a label, N another name
std::string FieldsOf(std::string_view card, std::initializer_list<std::string_view> lines)
{
  const DeckCard     parsed  = ParseDeckCard(card);
  const DeckKeyword* keyword = FindDeckKeyword(parsed.keyword);
  EXPECT_NE(keyword, nullptr) << card;
  DeckFormWalk walk;
  walk.Begin(*keyword, parsed);
  std::string contents;
  for (const std::string_view line : lines) {
    const DeckForm::Line& form = walk.Next(line);
    contents.clear();
    for (std::size_t i = 0; i < 4; ++i) contents += ".NLI#DnOEXS"[form[i].content];
  }
  return contents;
}

TEST(DeckKeywordTest, KeywordIsTheLongestThatBeginsTheName)
{
  EXPECT_STREQ(FindDeckKeyword("STATICS")->name, "STATIC");
  EXPECT_STREQ(FindDeckKeyword("BOUNDARYF")->name, "BOUNDARYF");
  EXPECT_STREQ(FindDeckKeyword("BOUNDARY")->name, "BOUNDARY");
  EXPECT_STREQ(FindDeckKeyword("NODEPRINT")->name, "NODEPRINT");
  EXPECT_STREQ(FindDeckKeyword("NODES")->name, "NODE");
  EXPECT_EQ(FindDeckKeyword("NOD"), nullptr);
  EXPECT_EQ(FindDeckKeyword(""), nullptr);
  EXPECT_EQ(FindDeckKeyword("ZZZ"), nullptr);
}

TEST(DeckKeywordTest, FormFollowsParametersLabelsAndLines)
{
  EXPECT_EQ(FieldsOf("*BOUNDARY", {"1,1"}), "ODD#");
  EXPECT_EQ(FieldsOf("*NSET, NSET=A", {"1"}), "OOOO");
  EXPECT_EQ(FieldsOf("*NSET, NSET=A, GENERATE", {"1,2"}), "nnI.");
  EXPECT_EQ(FieldsOf("*NSET, NSET=A, GENERATE=", {"1,2"}), "nnI.");
  EXPECT_EQ(FieldsOf("*ELASTIC, TYPE=ORTHOTROPIC", {"1"}), "####");
  EXPECT_EQ(FieldsOf("*ELASTIC, TYPE=ORTHO", {"1", "2"}), "##..");
  EXPECT_EQ(FieldsOf("*ELASTIC, TYPE=ORTHO", {"1", "2", "3"}), "####") << "the next temperature";
  EXPECT_EQ(FieldsOf("*DLOAD", {"1, p3, 5."}), "XL#.");
  EXPECT_EQ(FieldsOf("*DLOAD", {"1, P3NP, 5"}), "XLn.");
  EXPECT_EQ(FieldsOf("*DLOAD", {"1, P3, 5.", "E, GRAV, 1"}), "XL##") << "each line has a label of its own";
  EXPECT_EQ(FieldsOf("*DLOAD", {"1"}), "XL..");
  EXPECT_EQ(FieldsOf("*MPC", {"PLANE,1,2"}), "NOOO");
  EXPECT_EQ(FieldsOf("*MPC", {"PLANE,1,2", "3,4"}), "OOOO");
  EXPECT_EQ(FieldsOf("*ORIENTATION, NAME=O", {"1,0,0,0,1,0", "3,45."}), "I#..");
  EXPECT_EQ(FieldsOf("*ORIENTATION, NAME=O", {"1,0,0,0,1,0", "3,45.", "3,45."}), "I#..");
  EXPECT_EQ(FieldsOf("*HEADING", {"anything"}), "....");
}

TEST(DeckKeywordTest, CardsHaveRulesOfTheirOwnForParameters)
{
  EXPECT_EQ(FindDeckKeyword("CLOAD")->FindParameter("AMPLITUDE")->meaning, DeckParameterRule::Amplitude);
  EXPECT_EQ(FindDeckKeyword("STEP")->FindParameter("AMPLITUDE")->meaning, DeckParameterRule::Plain);
  EXPECT_EQ(FindDeckKeyword("NODEPRINT")->FindParameter("NSET")->meaning, DeckParameterRule::NodeSet);
  EXPECT_EQ(FindDeckKeyword("NSET")->FindParameter("NSET")->meaning, DeckParameterRule::Own);
  EXPECT_EQ(FindDeckKeyword("RIGIDBODY")->FindParameter("REFNODE")->meaning, DeckParameterRule::NodeId);
  EXPECT_EQ(FindDeckKeyword("CLOAD")->FindParameter("REFNODE"), nullptr);
}

}  // namespace
