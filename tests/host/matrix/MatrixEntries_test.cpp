#include "matrix/MatrixEntries.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "../calculix/ReaderSupport.h"
#include "matrix/MatrixFacts.h"
#include "MatrixSupport.h"

namespace {

using namespace quilon::matrix;
using quilon_test::FailureOf;
using quilon_test::MakeMatrix;
using Picture = std::vector<std::string>;

std::string Failure(const FED_YaleMatrix& matrix)
{
  return FailureOf([&] { RowView(matrix, "a"); });
}

Symmetry SymmetryOf(const FED_YaleMatrix& matrix)
{
  const RowView rows(matrix, "a");
  return FindSymmetry(rows.List(), rows.NumRows() == rows.NumColumns());
}

Facts FactsOf(const FED_YaleMatrix& matrix) { return FindFacts(RowView(matrix, "a")); }

Picture Draw(const FED_YaleMatrix& matrix, int width, int height)
{
  return DrawPattern(RowView(matrix, "a"), width, height);
}

/// n x n with ones on its diagonal.
FED_YaleMatrix Identity(int n)
{
  std::vector<int> pointers = {0};
  std::vector<int> columns;
  for (int i = 0; i < n; ++i) {
    columns.push_back(i);
    pointers.push_back(i + 1);
  }
  const auto size = static_cast<std::size_t>(n);
  return MakeMatrix(size, size, std::vector<double>(size, 1.0), pointers, columns);
}

/// Some entries of a matrix of 40 rows, a third of them without any, row by row. Lines count from 1.
std::vector<Entry> SomeEntries()
{
  std::mt19937       random(5);
  std::vector<Entry> entries;
  for (int row = 0; row < 40; row += 1 + row % 3 / 2)
    for (int column = 0; column < 50; ++column)
      if (random() % 3 == 0) entries.push_back({row, column, 0.5 * static_cast<double>(random()), 0});
  return entries;
}

/// The same by sorting all at once.
void ExpectAssembled(std::vector<Entry> entries)
{
  std::int64_t line = 0;
  for (Entry& entry : entries) entry.line = ++line;
  const FED_YaleMatrix matrix = Assemble({40, 50, entries}, "a");
  std::sort(entries.begin(), entries.end());
  const std::vector<Entry> assembled = RowView(matrix, "a").List();
  ASSERT_EQ(assembled.size(), entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) {
    EXPECT_EQ(assembled[i].row, entries[i].row);
    EXPECT_EQ(assembled[i].column, entries[i].column);
    EXPECT_EQ(assembled[i].value, entries[i].value);
  }
}

TEST(Assemble, TakesEntriesInAnyOrder)
{
  std::vector<Entry> entries = SomeEntries();
  ExpectAssembled(entries);
  const auto byColumn = [](const Entry& a, const Entry& b) {
    return std::tie(a.column, a.row) < std::tie(b.column, b.row);
  };
  std::sort(entries.begin(), entries.end(), byColumn);
  ExpectAssembled(entries);
  std::reverse(entries.begin(), entries.end());
  ExpectAssembled(entries);
  std::shuffle(entries.begin(), entries.end(), std::mt19937(7));
  ExpectAssembled(entries);
  ExpectAssembled({});
}

TEST(Assemble, NamesBothLinesOfATwinInAnyOrder)
{
  const std::string expected = "a:3: row 2, column 1 is given again, expected each entry once (first in line 2)";
  EXPECT_EQ(FailureOf([] { Assemble({2, 2, {{0, 0, 1.0, 1}, {1, 0, 2.0, 2}, {1, 0, 3.0, 3}}}, "a"); }), expected);
  EXPECT_EQ(FailureOf([] {
              Assemble({2, 2, {{1, 1, 1.0, 1}, {1, 0, 2.0, 2}, {1, 0, 3.0, 3}, {0, 0, 1.0, 4}}}, "a");
            }),
            expected);
}

}  // namespace

TEST(RowView, AnArrayThatDoesNotFitTheOthersIsRefused)
{
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0, 2})), "no failure");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, 3}, {1, 0, 2})), "a: 2 row pointers, expected 3");
  EXPECT_EQ(Failure(FED_YaleMatrix()), "a: 0 row pointers, expected 1");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0})),
            "a: 2 column indices for 3 values, expected one each");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {2, 3, 5}, {1, 0, 2})),
            "a: the first row pointer is 2, expected 0 or 1");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, 4, 3}, {1, 0, 2})), "a: row pointer 3 is 3, expected 4 or more");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, 1, 2}, {1, 0, 2})), "a: the last row pointer is 2, expected 3");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {1, 2, 3}, {2, 1, 3})), "a: the last row pointer is 3, expected 4");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0, 3})), "a: column index 3 is 3, expected 0 to 2");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {1, 2, 4}, {1, 0, 3})), "a: column index 2 is 0, expected 1 to 3");
  EXPECT_EQ(Failure(MakeMatrix(2, 3, {5, 7, 9}, {0, INT_MIN, 3}, {1, 0, 2})),
            "a: row pointer 2 is -2147483648, expected 0 or more");
}

TEST(RowView, SizesThatWereCutTo32BitsAreRefused)
{
  EXPECT_EQ(Failure(MakeMatrix(static_cast<std::size_t>(-5), 1, {}, {0}, {})),
            "a: 18446744073709551611 rows and 1 columns, expected at most 2147483647");
}

TEST(RowView, CountsFromZeroWhateverTheBase)
{
  const FED_YaleMatrix zero = MakeMatrix(2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0, 2});
  const FED_YaleMatrix one  = MakeMatrix(2, 3, {5, 7, 9}, {1, 2, 4}, {2, 1, 3});
  for (const FED_YaleMatrix* matrix : {&zero, &one}) {
    const std::vector<Entry> entries = RowView(*matrix, "a").List();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].row, 0);
    EXPECT_EQ(entries[0].column, 1);
    EXPECT_EQ(entries[2].row, 1);
    EXPECT_EQ(entries[2].column, 2);
    EXPECT_EQ(entries[2].value, 9.0);
  }
}

TEST(FindSymmetry, GoesByBits)
{
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {1, 2, 2, 4}, {0, 2, 4}, {0, 1, 0, 1})), Symmetry::Symmetric);
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {2, 1, 2, 4}, {0, 2, 4}, {1, 0, 0, 1})), Symmetry::Symmetric)
      << "whatever the order in a row";
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {2, std::nextafter(2.0, 3.0)}, {0, 1, 2}, {1, 0})), Symmetry::General);
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {0.0, -0.0}, {0, 1, 2}, {1, 0})), Symmetry::SkewSymmetric);
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {-3, 3}, {0, 1, 2}, {1, 0})), Symmetry::SkewSymmetric);
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {0, -3, 3}, {0, 2, 3}, {0, 1, 0})), Symmetry::General)
      << "an entry on the diagonal would be lost";
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {1, 2}, {0, 2, 2}, {0, 1})), Symmetry::General);
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 3, {}, {0, 0, 0}, {})), Symmetry::General);
  EXPECT_EQ(SymmetryOf(MakeMatrix(2, 2, {}, {0, 0, 0}, {})), Symmetry::Symmetric);
}

TEST(MatrixFacts, CountsValuesZerosRowsAndBandwidth)
{
  // 4 . 0 .
  // . . . .
  // . 7 -2 .
  // 5 . . 0
  const Facts facts = FactsOf(MakeMatrix(4, 4, {4, 0, 7, -2, 5, 0}, {0, 2, 2, 4, 6}, {0, 2, 1, 2, 0, 3}));
  EXPECT_EQ(facts.numValues, 6);
  EXPECT_EQ(facts.numZeros, 2);
  EXPECT_EQ(facts.numEmptyRows, 1);
  EXPECT_EQ(facts.lowerBandwidth, 3);
  EXPECT_EQ(facts.upperBandwidth, 0) << "a zero widens no band";
  EXPECT_EQ(facts.numDiagonal, 3);
  EXPECT_TRUE(facts.hasDiagonalRange);
  EXPECT_EQ(facts.leastDiagonal, -2.0);
  EXPECT_EQ(facts.greatestDiagonal, 4.0);
  EXPECT_EQ(facts.symmetry, Symmetry::General);
  EXPECT_FALSE(facts.isPatternSymmetric);
}

TEST(MatrixFacts, AsymmetryIsAFractionOfTheLargestMagnitude)
{
  const Facts facts = FactsOf(MakeMatrix(2, 2, {1, 2, 2.5, -5}, {0, 2, 4}, {0, 1, 0, 1}));
  EXPECT_TRUE(facts.isPatternSymmetric);
  EXPECT_EQ(facts.asymmetry, 0.1);
  const Facts zeros = FactsOf(MakeMatrix(2, 2, {1, 0.0, -0.0}, {0, 2, 3}, {0, 1, 0}));
  EXPECT_TRUE(zeros.isPatternSymmetric);
  EXPECT_EQ(zeros.asymmetry, 0.0);
  EXPECT_EQ(FactsOf(MakeMatrix(2, 2, {0.0, -0.0, 0.0}, {0, 2, 3}, {0, 1, 0})).asymmetry, 0.0);
  EXPECT_TRUE(std::isnan(FactsOf(MakeMatrix(2, 2, {1, std::nan(""), 2}, {0, 2, 3}, {0, 1, 0})).asymmetry));
}

TEST(MatrixFacts, ADiagonalOfNaNsHasNoRange)
{
  const Facts facts = FactsOf(MakeMatrix(1, 1, {std::nan("")}, {0, 1}, {0}));
  EXPECT_EQ(facts.numDiagonal, 1);
  EXPECT_FALSE(facts.hasDiagonalRange);
}

TEST(MatrixFacts, APictureHasACharacterForEveryPlaceWhereThereIsRoom)
{
  EXPECT_EQ(Draw(MakeMatrix(2, 3, {5, 7, 0}, {0, 1, 3}, {1, 0, 2}), 10, 10), (Picture{" # ", "#  "}));
  EXPECT_EQ(Draw(MakeMatrix(0, 3, {}, {0}, {}), 10, 10), Picture{});
  EXPECT_EQ(Draw(MakeMatrix(2, 0, {}, {0, 0, 0}, {}), 10, 10), (Picture{"", ""}));
}

TEST(MatrixFacts, APictureMarksThePartOfThePlacesThatAreTaken)
{
  // Diagonal blocks of side n have 1/n of their places taken.
  EXPECT_EQ(Draw(Identity(4), 2, 2), (Picture{"* ", " *"}));
  EXPECT_EQ(Draw(Identity(6), 2, 2), (Picture{"+ ", " +"}));
  EXPECT_EQ(Draw(Identity(10), 2, 2), (Picture{": ", " :"}));
  EXPECT_EQ(Draw(Identity(34), 2, 2), (Picture{". ", " ."}));
  EXPECT_EQ(Draw(Identity(4), 4, 2), (Picture{"**  ", "  **"}));
  EXPECT_EQ(Draw(Identity(3), 2, 2), (Picture{"* ", " #"})) << "a part of two rows, then one of one row";
}
