#include "answers/CombinationFile.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using namespace quilon;

std::vector<Combination> Read(const std::string& text)
{
  std::istringstream in(text);
  return ReadCombinations(in, "cases.txt");
}

std::string FailureOf(const std::string& text)
{
  try {
    Read(text);
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return "no failure";
}

/// "NAME[LC]=FACTOR*lcN+..."
std::string Describe(const Combination& combination)
{
  std::ostringstream text;
  text << combination.name << '[' << combination.loadCase << "]=";
  for (const Combination::Term& term : combination.terms)
    text << (&term == &combination.terms.front() ? "" : " ") << term.factor << '*' << term.loadCase.ToString();
  return text.str();
}

TEST(CombinationFile, ReadsFactorsLoadCasesSubstepsAndNumbers)
{
  const auto combinations = Read(
      "# all of the building\n"
      "\n"
      "ULS1 = 1.35*lc1 + 1.5*lc2   # the worst\n"
      "  ULS2 [101]=lc1-.5*lc3/2\r\n"
      "last_one.2 = -lc12 + +2e-1 * LC7 - -1*lc8");
  ASSERT_EQ(combinations.size(), 3u);
  EXPECT_EQ(Describe(combinations[0]), "ULS1[10001]=1.35*lc1 1.5*lc2");
  EXPECT_EQ(Describe(combinations[1]), "ULS2[101]=1*lc1 -0.5*lc3/2");
  EXPECT_EQ(Describe(combinations[2]), "last_one.2[10003]=0.2*lc7 1*lc8 -1*lc12");
  EXPECT_EQ(combinations[1].line, 4);
  EXPECT_EQ(combinations[1].terms[1].line, 4);
}

TEST(CombinationFile, NamesStandForTheirSumsWhereverTheyAreDefined)
{
  const auto combinations = Read(
      "B = 2*A - lc3\n"
      "A = 3*lc1 + lc2\n"
      "C = 10*B*0.5 + A + lc1\n");
  EXPECT_EQ(Describe(combinations[0]), "B[10001]=6*lc1 2*lc2 -1*lc3");
  EXPECT_EQ(Describe(combinations[1]), "A[10002]=3*lc1 1*lc2");
  EXPECT_EQ(Describe(combinations[2]), "C[10003]=34*lc1 11*lc2 -5*lc3");
  EXPECT_EQ(combinations[2].terms[2].line, 1) << "where the load case is named";
}

TEST(CombinationFile, ATermThatIsThereTwiceCountsTwice)
{
  EXPECT_EQ(Describe(Read("A = lc1 + 2*lc1 - lc2 + lc2\n")[0]), "A[10001]=3*lc1 0*lc2");
  EXPECT_EQ(Describe(Read("A = lc1 + lc1/1\n")[0]), "A[10001]=1*lc1 1*lc1/1") << "the last substep is not known here";
}

TEST(CombinationFile, FollowsChainsOfAnyLength)
{
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "N" + std::to_string(i) + " = N" + std::to_string(i + 1) + "\n";
  const auto combinations = Read(text + "N20000 = 2*lc5\n");
  EXPECT_EQ(Describe(combinations[0]), "N0[10001]=2*lc5");
}

TEST(CombinationFile, TellsWhereALineDoesNotParse)
{
  EXPECT_EQ(FailureOf("A = lc1\nB lc1\n"),
            "cases.txt:2: expected '=' behind the name, as in 'NAME = 1.35*lc1 + 1.5*lc2', found 'lc1'");
  EXPECT_EQ(FailureOf("= lc1\n"), "cases.txt:1: expected the name of a combination, found '= lc1'");
  EXPECT_EQ(FailureOf("A =\n"),
            "cases.txt:1: expected a number, a load case such as lc1, or a name, found the end of the line");
  EXPECT_EQ(FailureOf("A = 1.35\n"),
            "cases.txt:1: expected '*' and a load case or a name behind a number, found the end of the line");
  EXPECT_EQ(FailureOf("A = 1.35 lc1\n"),
            "cases.txt:1: expected '*' and a load case or a name behind a number, found 'lc1'");
  EXPECT_EQ(FailureOf("A = 1,35*lc1\n"), "cases.txt:1: expected a point in a number, no comma, found ',35*lc1'");
  EXPECT_EQ(FailureOf("A = lc1 lc2\n"), "cases.txt:1: expected '+', '-' or '*', found 'lc2'");
  EXPECT_EQ(FailureOf("A = lc1*lc2\n"), "cases.txt:1: expected one load case or name in a product, found 'lc2'");
  EXPECT_EQ(FailureOf("A = lc1 +\n"),
            "cases.txt:1: expected a number, a load case such as lc1, or a name, found the end of the line");
  EXPECT_EQ(FailureOf("A = lc1/x\n"), "cases.txt:1: expected a substep, a number from 1 to 2147483647, found 'x'");
  EXPECT_EQ(FailureOf("A [0] = lc1\n"),
            "cases.txt:1: expected the load case to write, a number from 1 to 2147483647, found '0] = lc1'");
  EXPECT_EQ(FailureOf("A [7 = lc1\n"), "cases.txt:1: expected ']' behind the load case to write, found '= lc1'");
  EXPECT_EQ(FailureOf("lc5 = lc1\n"),
            "cases.txt:1: 'lc5' is the name of a load case, expected another name for a combination, as in "
            "'NAME = 1.35*lc1 + 1.5*lc2'");
  EXPECT_EQ(FailureOf("A = inf*lc1\n"), "cases.txt:1: expected one load case or name in a product, found 'lc1'")
      << "inf is a name";
  EXPECT_EQ(FailureOf("A = 1e999*lc1\n"), "cases.txt:1: expected a number, found '1e999*lc1'");
  EXPECT_EQ(FailureOf("A = 1e300*1e300*lc1\n"), "cases.txt:1: a factor is no finite number");
  EXPECT_EQ(FailureOf("A = lc99999999999\n"),
            "cases.txt:1: 'lc99999999999' is no load case, expected a number to 2147483647 behind lc");
  EXPECT_EQ(FailureOf("A-B = lc1\n"),
            "cases.txt:1: expected '=' behind the name, as in 'NAME = 1.35*lc1 + 1.5*lc2', found '-B = lc1'");
}

TEST(CombinationFile, AFileWithoutCombinationsIsAFailure)
{
  EXPECT_EQ(FailureOf("# nothing\n"),
            "cases.txt:2: expected a combination such as 'NAME = 1.35*lc1 + 1.5*lc2', found the end of the file");
}

TEST(CombinationFile, ANameOrNumberThatIsThereTwiceIsAFailure)
{
  EXPECT_EQ(FailureOf("A = lc1\nB = lc2\nA = lc3\n"),
            "cases.txt:3: 'A' is defined twice, first in line 1, expected another name");
  EXPECT_EQ(FailureOf("A [5] = lc1\nB [5] = lc2\n"),
            "cases.txt:2: 'B' is written as load case 5, as is 'A' of line 1, expected one of its own");
  EXPECT_EQ(FailureOf("A [10002] = lc1\nB = lc2\n"),
            "cases.txt:2: 'B' is written as load case 10002, as is 'A' of line 1, expected one of its own");
}

TEST(CombinationFile, ANameThatNothingDefinesIsAFailure)
{
  EXPECT_EQ(FailureOf("ULS1 = lc1\nB = ULS2\n"), "cases.txt:2: 'ULS2' is defined nowhere, did you mean 'ULS1'?");
  EXPECT_EQ(FailureOf("A = wind\n"),
            "cases.txt:1: 'wind' is defined nowhere, expected a load case such as lc1 or the name of a combination");
  EXPECT_EQ(FailureOf("A = lc\n"),
            "cases.txt:1: 'lc' is defined nowhere, expected a load case such as lc1 or the name of a combination");
}

TEST(CombinationFile, ACircleOfNamesIsAFailure)
{
  EXPECT_EQ(FailureOf("A = lc1 + A\n"), "cases.txt:1: 'A' is made of itself, expected load cases or other names");
  EXPECT_EQ(FailureOf("A = lc1 + B\nB = C\nC = 2*A\n"),
            "cases.txt:3: 'C' is made of 'A', which is made of it, through line 1, expected names that lead to load "
            "cases");
}

TEST(CombinationFile, AFactorThatGrowsBeyondAllNumbersIsAFailure)
{
  EXPECT_EQ(FailureOf("A = 1e200*lc1\nB = 1e200*A\n"), "cases.txt:2: the factor of lc1 in 'B' is no finite number");
}

}  // namespace
