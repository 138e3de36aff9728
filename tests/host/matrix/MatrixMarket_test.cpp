#include "matrix/MatrixMarket.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "../calculix/ReaderSupport.h"
#include "MatrixSupport.h"

namespace {

using quilon::matrix::ReadMatrixMarket;
using quilon::matrix::Symmetry;
using quilon::matrix::WriteMatrixMarket;
using quilon_test::FailureOf;
using quilon_test::MakeMatrix;
using quilon_test::SameBits;
using quilon_test::Shown;

FED_YaleMatrix Read(const std::string& text)
{
  std::istringstream in(text);
  return ReadMatrixMarket(in, "a.mtx");
}

std::string ReadShown(const std::string& text) { return Shown(Read(text)); }

std::string Failure(const std::string& text)
{
  return FailureOf([&] { Read(text); });
}

std::string Written(const FED_YaleMatrix& matrix, Symmetry symmetry = Symmetry::General)
{
  std::ostringstream out;
  WriteMatrixMarket(out, matrix, symmetry, "a");
  return out.str();
}

const std::string kCoordinate = "%%MatrixMarket matrix coordinate ";
const std::string kArray      = "%%MatrixMarket matrix array ";

}  // namespace

TEST(MatrixMarket, ReadsGeneralCoordinatesInAnyOrder)
{
  EXPECT_EQ(ReadShown(kCoordinate + "real general\n2 3 3\n2 3 9\n1 2 5\n2 1 7\n"), "2 x 3 | 5 7 9 | 0 1 3 | 1 0 2");
}

// Arrays are made for the order of rows; whatever comes first that is not in it, the matrix is the same.
TEST(MatrixMarket, TheOrderOfEntriesDoesNotMatterWhereverItBreaks)
{
  const std::string head     = kCoordinate + "real general\n5 4 5\n";
  const std::string expected = "5 x 4 | 5 -7.5 9 1e+20 -0 | 0 0 1 3 3 5 | 3 0 2 1 3";
  EXPECT_EQ(ReadShown(head + "2 4 5\n3 1 -7.5\n3 3 9\n5 2 1e20\n5 4 -0\n"), expected);
  EXPECT_EQ(ReadShown(head + "2 4 5\n3 1 -7.5\n3 3 9\n5 4 -0\n5 2 1e20\n"), expected);
  EXPECT_EQ(ReadShown(head + "5 4 -0\n2 4 5\n3 1 -7.5\n3 3 9\n5 2 1e20\n"), expected);
  EXPECT_EQ(ReadShown(head + "2 4 5\n3 3 9\n5 2 1e20\n3 1 -7.5\n5 4 -0\n"), expected);
  // Numbers as other programs write them.
  EXPECT_EQ(ReadShown(head + "2 4 +5.\n+3 1 -7.5D0 \n 3 3 0900E-2\n5\t\t2 1.+20\n00005 4 -.0\n"), expected);
}

TEST(MatrixMarket, FillsBothTrianglesOfASymmetricMatrix)
{
  const std::string expected = "2 x 2 | 1 2 2 4 | 0 2 4 | 0 1 0 1";
  EXPECT_EQ(ReadShown(kCoordinate + "real symmetric\n2 2 3\n1 1 1\n2 1 2\n2 2 4\n"), expected);
  EXPECT_EQ(ReadShown(kCoordinate + "real symmetric\n2 2 3\n1 1 1\n1 2 2\n2 2 4\n"), expected) << "upper triangle";
  EXPECT_EQ(ReadShown(kCoordinate + "real hermitian\n2 2 3\n1 1 1\n2 1 2\n2 2 4\n"), expected);
}

TEST(MatrixMarket, NegatesTheOtherTriangleOfASkewSymmetricMatrix)
{
  EXPECT_EQ(ReadShown(kCoordinate + "real skew-symmetric\n2 2 1\n2 1 2.5\n"), "2 x 2 | -2.5 2.5 | 0 1 2 | 1 0");
  EXPECT_EQ(ReadShown(kArray + "real skew-symmetric\n3 3\n21\n31\n32\n"),
            "3 x 3 | -21 -31 21 -32 31 32 | 0 2 4 6 | 1 2 0 2 0 1");
  EXPECT_EQ(ReadShown(kArray + "real skew-symmetric\n1 1\n"), "1 x 1 | | 0 0 |");
}

TEST(MatrixMarket, ReadsArraysColumnByColumn)
{
  EXPECT_EQ(ReadShown(kArray + "real general\n2 3\n11\n21\n12\n22\n13\n23\n"),
            "2 x 3 | 11 12 13 21 22 23 | 0 3 6 | 0 1 2 0 1 2");
  EXPECT_EQ(ReadShown(kArray + "integer symmetric\n3 3\n11\n21\n31\n22\n32\n33\n"),
            "3 x 3 | 11 21 31 21 22 32 31 32 33 | 0 3 6 9 | 0 1 2 0 1 2 0 1 2");
}

TEST(MatrixMarket, EntriesOfAPatternAreOne)
{
  EXPECT_EQ(ReadShown(kCoordinate + "pattern general\n2 2 2\n1 2\n2 2\n"), "2 x 2 | 1 1 | 0 1 2 | 1 1");
  EXPECT_EQ(ReadShown(kCoordinate + "pattern symmetric\n2 2 1\n2 1\n"), "2 x 2 | 1 1 | 0 1 2 | 1 0");
}

TEST(MatrixMarket, ReadsIntegersThatADoubleHolds)
{
  EXPECT_EQ(ReadShown(kCoordinate + "integer general\n1 3 3\n1 1 -9007199254740992\n1 2 +3\n1 3 0\n"),
            "1 x 3 | -9007199254740992 3 0 | 0 3 | 0 1 2");
  const std::string head = kCoordinate + "integer general\n1 1 1\n1 1 ";
  const std::string tail = "', expected an integer from -2^53 to 2^53";
  EXPECT_EQ(Failure(head + "9007199254740993\n"), "a.mtx:3: value is '9007199254740993" + tail);
  EXPECT_EQ(Failure(head + "1.5\n"), "a.mtx:3: value is '1.5" + tail);
  EXPECT_EQ(Failure(head + "+-1\n"), "a.mtx:3: value is '+-1" + tail);
}

TEST(MatrixMarket, TheBannerIsReadWithoutCase)
{
  EXPECT_EQ(ReadShown("%%matrixmarket MATRIX Coordinate Double GENERAL\n1 1 1\n1 1 2\n"), "1 x 1 | 2 | 0 1 | 0");
}

TEST(MatrixMarket, CommentsBlankLinesBlanksAndTabsDoNotMatter)
{
  EXPECT_EQ(ReadShown(kCoordinate + "real general\n% a\n\n%\n 2\t3  3 \r\n\n2 3 9\n% b\n1 2\t5\n \t\n2 1 7\n\n% end\n"),
            "2 x 3 | 5 7 9 | 0 1 3 | 1 0 2");
}

TEST(MatrixMarket, ZerosThatAreWrittenAreKept)
{
  const FED_YaleMatrix matrix = Read(kCoordinate + "real general\n1 2 2\n1 1 0\n1 2 -0.0\n");
  ASSERT_EQ(matrix.GetValues().GetSize(), 2u);
  EXPECT_TRUE(std::signbit(matrix.GetValues().GetData()[1]));
}

TEST(MatrixMarket, ReadsMatricesWithoutEntriesOrRows)
{
  EXPECT_EQ(ReadShown(kCoordinate + "real general\n2 3 0\n"), "2 x 3 | | 0 0 0 |");
  EXPECT_EQ(ReadShown(kCoordinate + "real symmetric\n0 0 0\n"), "0 x 0 | | 0 |");
  EXPECT_EQ(ReadShown(kArray + "real general\n0 2147483647\n"), "0 x 2147483647 | | 0 |");
}

TEST(MatrixMarket, EveryTruncationIsRefused)
{
  const std::string coordinates = kCoordinate + "real symmetric\n2 2 3\n1 1 10\n2 1 20\n2 2 40\n";
  const std::string arrays      = kArray + "real general\n2 2\n10\n20\n30\n40\n";
  for (const std::string& whole : {coordinates, arrays})
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const std::string message = Failure(whole.substr(0, size));
      EXPECT_TRUE(quilon_test::NamesLine(message, "a.mtx")) << size << ": " << message;
    }
}

TEST(MatrixMarket, AFileThatEndsEarlySaysWhatIsMissing)
{
  EXPECT_EQ(Failure(kCoordinate + "real general\n2 2 3\n1 1 10\n"),
            "a.mtx:4: expected entry 2 of 3, found the end of the file");
  EXPECT_EQ(Failure(kArray + "real symmetric\n2 2\n10\n"), "a.mtx:4: expected entry 2 of 3, found the end of the file");
  EXPECT_EQ(Failure(kCoordinate + "real general\n1 1 1\n1 1 10"),
            "a.mtx:3: the file ends within a line, expected a line end");
  EXPECT_EQ(Failure(kCoordinate + "real general\n% only\n"),
            "a.mtx:3: expected rows, columns and number of entries, found the end of the file");
}

TEST(MatrixMarket, AFileThatGoesOnIsRefused)
{
  EXPECT_EQ(Failure(kCoordinate + "real general\n1 1 1\n1 1 10\n1 1 10\n"),
            "a.mtx:4: expected the end of the file, found '1 1 10'");
}

TEST(MatrixMarket, OtherBannersAreRefused)
{
  const std::string expected = "'%%MatrixMarket matrix coordinate|array real|integer|pattern SYMMETRY'";
  EXPECT_EQ(Failure(""), "a.mtx:1: expected " + expected + ", found the end of the file");
  EXPECT_EQ(Failure("1 1 1\n"), "a.mtx:1: expected " + expected + ", found '1 1 1'");
  EXPECT_EQ(Failure("%%MatrixMarket vector array real general\n"),
            "a.mtx:1: expected " + expected + ", found '%%MatrixMarket vector array real general'");
  EXPECT_EQ(Failure("%%MatrixMarket matrix dense real general\n"),
            "a.mtx:1: format is 'dense', expected coordinate or array");
  EXPECT_EQ(Failure(kCoordinate + "rational general\n"),
            "a.mtx:1: field is 'rational', expected real, integer or pattern");
  EXPECT_EQ(Failure(kCoordinate + "real triangular\n"),
            "a.mtx:1: symmetry is 'triangular', expected general, symmetric, skew-symmetric or hermitian");
  EXPECT_EQ(Failure(kArray + "pattern general\n"), "a.mtx:1: an array without numbers, expected real or integer");
  EXPECT_EQ(Failure(kCoordinate + "pattern skew-symmetric\n"),
            "a.mtx:1: a skew-symmetric matrix without numbers, expected real or integer");
}

TEST(MatrixMarket, ComplexMatricesAreRefused)
{
  for (const char* symmetry : {"general", "hermitian"})
    EXPECT_EQ(Failure(kCoordinate + "complex " + symmetry + "\n1 1 1\n1 1 1 0\n"),
              "a.mtx:1: the matrix is complex, expected real, integer or pattern");
}

TEST(MatrixMarket, EntriesOutOfPlaceAreRefused)
{
  const std::string general = kCoordinate + "real general\n2 3 1\n";
  EXPECT_EQ(Failure(general + "3 1 5\n"), "a.mtx:3: row is '3', expected an integer from 1 to 2");
  EXPECT_EQ(Failure(general + "1 0 5\n"), "a.mtx:3: column is '0', expected an integer from 1 to 3");
  EXPECT_EQ(Failure(general + "1 1\n"), "a.mtx:3: expected row, column and value, found '1 1'");
  EXPECT_EQ(Failure(general + "1 1 5 6\n"), "a.mtx:3: expected row, column and value, found '1 1 5 6'");
  EXPECT_EQ(Failure(general + "1 1 x\n"), "a.mtx:3: value is 'x', expected a number");
  EXPECT_EQ(Failure(kCoordinate + "pattern general\n1 1 1\n1 1 1\n"),
            "a.mtx:3: expected row and column, found '1 1 1'");
  EXPECT_EQ(Failure(kCoordinate + "real symmetric\n2 3 1\n1 1 1\n"),
            "a.mtx:2: expected as many columns as rows in a symmetric matrix, found '2 3 1'");
  EXPECT_EQ(Failure(kCoordinate + "real skew-symmetric\n2 2 1\n1 1 0\n"),
            "a.mtx:3: an entry on the diagonal, expected none in a skew-symmetric matrix");
}

TEST(MatrixMarket, AnEntryThatStandsTwiceIsRefused)
{
  EXPECT_EQ(Failure(kCoordinate + "real general\n2 2 3\n1 2 5\n2 2 5\n1 2 5\n"),
            "a.mtx:5: row 1, column 2 is given again, expected each entry once (first in line 3)");
  EXPECT_EQ(Failure(kCoordinate + "real general\n%\n2 2 3\n1 2 5\n\n%\n2 2 5\n2 2 6\n"),
            "a.mtx:8: row 2, column 2 is given again, expected each entry once (first in line 7)");
  EXPECT_EQ(Failure(kCoordinate + "real general\n2 2 4\n1 1 5\n\n%\n2 1 5\n2 2 6\n\n1 1 3\n"),
            "a.mtx:9: row 1, column 1 is given again, expected each entry once (first in line 3)");
  EXPECT_EQ(Failure(kCoordinate + "real general\n2 2 4\n1 1 5\n\n%\n2 1 5\n2 2 6\n\n2 2 3\n"),
            "a.mtx:9: row 2, column 2 is given again, expected each entry once (first in line 7)");
  EXPECT_EQ(Failure(kCoordinate + "real symmetric\n2 2 2\n1 2 5\n2 1 5\n"),
            "a.mtx:4: row 1, column 2 is given again, expected each entry once (first in line 3)");
}

TEST(MatrixMarket, CountsAreHeldAgainstTheFileBeforeMemoryIsAskedFor)
{
  EXPECT_EQ(Failure(kCoordinate + "real general\n2147483647 2147483647 2147483647\n1 1 1\n"),
            "a.mtx:4: expected entry 2 of 2147483647, found the end of the file");
  EXPECT_EQ(Failure(kArray + "real general\n2147483647 2147483647\n1\n"),
            "a.mtx:4: expected entry 2 of 4611686014132420609, found the end of the file");
  EXPECT_EQ(Failure(kCoordinate + "real general\n2147483647 1 1\n1 1 1\n"),
            "a.mtx: 2147483647 rows for 1 values, expected at most 10000000 more rows than values");
  EXPECT_EQ(Failure(kCoordinate + "real general\n2147483648 1 0\n"),
            "a.mtx:2: number of rows is '2147483648', expected an integer from 0 to 2147483647");
  EXPECT_EQ(Failure(kCoordinate + "real general\n1 1 -1\n"),
            "a.mtx:2: number of entries is '-1', expected an integer from 0 to 2147483647");
}

TEST(MatrixMarket, WritesRowsInShortestNumbers)
{
  EXPECT_EQ(Written(MakeMatrix(2, 3, {0.1, -7, 1e300}, {0, 1, 3}, {1, 0, 2})),
            "%%MatrixMarket matrix coordinate real general\n2 3 3\n1 2 0.1\n2 1 -7\n2 3 1e+300\n");
}

TEST(MatrixMarket, WritesTheLowerTriangleOfASymmetricMatrix)
{
  EXPECT_EQ(Written(MakeMatrix(2, 2, {1, 2, 2, 4}, {0, 2, 4}, {0, 1, 0, 1}), Symmetry::Symmetric),
            "%%MatrixMarket matrix coordinate real symmetric\n2 2 3\n1 1 1\n2 1 2\n2 2 4\n");
  EXPECT_EQ(Written(MakeMatrix(2, 2, {-2, 2}, {0, 1, 2}, {1, 0}), Symmetry::SkewSymmetric),
            "%%MatrixMarket matrix coordinate real skew-symmetric\n2 2 1\n2 1 2\n");
}

TEST(MatrixMarket, WritesNoEntryTwice)
{
  EXPECT_EQ(FailureOf([] {
              Written(MakeMatrix(1, 2, {5, 7}, {0, 2}, {1, 1}));
            }),
            "a: row 1, column 2 stands twice, expected each entry once");
}

TEST(MatrixMarket, WritesIndicesFromOneWhateverTheBase)
{
  EXPECT_EQ(Written(MakeMatrix(2, 3, {5, 7, 9}, {1, 2, 4}, {2, 1, 3})),
            Written(MakeMatrix(2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0, 2})));
}

TEST(MatrixMarket, WhatIsWrittenReadsBackToTheSameBits)
{
  const double         least = std::numeric_limits<double>::denorm_min();
  const FED_YaleMatrix odd =
      MakeMatrix(2, 4, {-0.0, least, -least, 0.1, INFINITY, 1.0 / 3.0, 1e22}, {0, 4, 7}, {0, 1, 2, 3, 0, 1, 3});
  EXPECT_TRUE(SameBits(Read(Written(odd)), odd));
  const FED_YaleMatrix skew = MakeMatrix(2, 2, {-0.0, 0.0}, {0, 1, 2}, {1, 0});
  EXPECT_TRUE(SameBits(Read(Written(skew, Symmetry::SkewSymmetric)), skew));
  EXPECT_TRUE(SameBits(Read(Written(FED_YaleMatrix(MakeMatrix(3, 2, {}, {0, 0, 0, 0}, {})))),
                       MakeMatrix(3, 2, {}, {0, 0, 0, 0}, {})));
}
