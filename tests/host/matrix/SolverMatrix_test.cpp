#include "matrix/SolverMatrix.h"

#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "../calculix/ReaderSupport.h"
#include "MatrixSupport.h"

namespace {

using quilon::matrix::Dof;
using quilon::matrix::DofMatrix;
using quilon::matrix::ReadDofs;
using quilon::matrix::ReadSolverMatrix;
using quilon_test::FailureOf;
using quilon_test::Fixture;
using quilon_test::Shown;

FED_YaleMatrix Read(const std::string& text, int numRows = 0)
{
  std::istringstream in(text);
  return ReadSolverMatrix(in, "a.sti", numRows);
}

std::string Failure(const std::string& text, int numRows = 0)
{
  return FailureOf([&] { Read(text, numRows); });
}

std::vector<Dof> Dofs(const std::string& text)
{
  std::istringstream in(text);
  return ReadDofs(in, "a.dof");
}

std::string DofFailure(const std::string& text)
{
  return FailureOf([&] { Dofs(text); });
}

}  // namespace

TEST(SolverMatrix, FillsBothTriangles)
{
  EXPECT_EQ(Shown(Read("1 1  2.0000000000000e+00\n1 2 -1.0000000000000e+00\n2 2  4.0000000000000e+00\n"
                       "3 3  0.0000000000000e+00\n")),
            Shown(Read("3 3 0\n1 2 -1\n2 2 4\n1 1 2\n")));
  EXPECT_EQ(Shown(Read("1 1  2.0e+00\n1 2 -1.0e+00\n2 2  4.0e+00\n3 3  0.0e+00\n")),
            "3 x 3 | 2 -1 -1 4 0 | 0 2 4 5 | 0 1 0 1 2");
}

TEST(SolverMatrix, ReadsWhatTheSolverWrites)
{
  // Counted in the files: 54 rows, 909 entries, 54 of them on the diagonal.
  for (const char* name : {"e_matrix/e_matrix.sti", "e_matrix/e_matrix.mas"}) {
    const FED_YaleMatrix matrix = Read(Fixture(name), 54);
    EXPECT_EQ(matrix.GetNumRows(), 54u);
    EXPECT_EQ(matrix.GetNumColumns(), 54u);
    EXPECT_EQ(matrix.GetValues().GetSize(), 2u * 909u - 54u);
  }
  // The first lines of the file.
  const FED_YaleMatrix stiffness = Read(Fixture("e_matrix/e_matrix.sti"));
  EXPECT_EQ(stiffness.GetNumRows(), 54u);
  EXPECT_EQ(stiffness.GetValues().GetData()[0], 5.6178491459794e+05);
  EXPECT_EQ(stiffness.GetValues().GetData()[1], 3.3249867657738e+04);
}

TEST(SolverMatrix, EveryTruncationIsRefused)
{
  const std::string whole = "1 1 2.5e+00\n1 2 -1.5e+00\n2 2 4.5e+00\n";
  for (std::size_t size = 0; size < whole.size(); ++size)
    EXPECT_TRUE(quilon_test::NamesLine(Failure(whole.substr(0, size), 2), "a.sti")) << size;
  EXPECT_EQ(Failure(whole.substr(0, 12), 2),
            "a.sti:2: expected the diagonal entry of row 2, found the end of the file");
  EXPECT_EQ(Failure(whole.substr(0, whole.size() - 1), 2), "a.sti:3: the file ends within a line, expected a line end");
  EXPECT_EQ(Failure(whole.substr(0, 25)), "a.sti:3: expected the diagonal entry of row 2, found the end of the file");
}

TEST(SolverMatrix, EntriesOutOfPlaceAreRefused)
{
  EXPECT_EQ(Failure(""), "a.sti:1: expected row, column and value, found the end of the file");
  EXPECT_EQ(Failure("1 1\n"), "a.sti:1: expected row, column and value, found '1 1'");
  EXPECT_EQ(Failure("2 1 5\n"), "a.sti:1: row is '2', expected an integer from 1 to 1");
  EXPECT_EQ(Failure("0 1 5\n"), "a.sti:1: row is '0', expected an integer from 1 to 1");
  EXPECT_EQ(Failure("1 3 5\n", 2), "a.sti:1: column is '3', expected an integer from 1 to 2");
  EXPECT_EQ(Failure("1 1 five\n"), "a.sti:1: value is 'five', expected a number");
  EXPECT_EQ(Failure("1 1 5\n1 1 5\n"),
            "a.sti:2: row 1, column 1 is given again, expected each entry once (first in line 1)");
}

TEST(SolverMatrix, ADamagedIndexAsksForNoMemory)
{
  EXPECT_EQ(Failure("1 2147483647 5\n"), "a.sti:2: expected the diagonal entry of row 1, found the end of the file");
}

TEST(SolverMatrix, DegreesOfFreedomAreReadAsTextsAtTheDot)
{
  EXPECT_EQ(Dofs("10.1\n10.2\n7.3\n"), (std::vector<Dof>{{10, 1}, {10, 2}, {7, 3}}));
  const std::vector<Dof> dofs = Dofs(Fixture("e_matrix/e_matrix.dof"));
  ASSERT_EQ(dofs.size(), 54u);
  EXPECT_EQ(dofs.front(), (Dof{7, 1}));
  EXPECT_EQ(dofs.back(), (Dof{51, 3}));
}

TEST(SolverMatrix, WhatIsNoDegreeOfFreedomIsRefused)
{
  for (const char* line : {"7", "7.", ".1", "7.1.1", "7.1 2", "a.1", "0.1", "-1.1", "7.-1", "7.10", "2147483647.1"})
    EXPECT_EQ(DofFailure("5.1\n" + std::string(line) + "\n"),
              "a.dof:2: expected NODE.DIRECTION, found '" + std::string(line) + "'");
  EXPECT_EQ(DofFailure(""), "a.dof:1: expected NODE.DIRECTION, found the end of the file");
  EXPECT_EQ(DofFailure("7.1\n7.2"), "a.dof:2: the file ends within a line, expected a line end");
  EXPECT_EQ(DofFailure("7.1\n7.2\n7.1\n"),
            "a.dof:3: '7.1' is given again, expected each degree of freedom once (first in line 1)");
}

TEST(SolverMatrix, DegreesOfFreedomAreKeptAsAMatrixOfDirections)
{
  EXPECT_EQ(Shown(DofMatrix({{3, 1}, {3, 2}, {1, 3}})), "3 x 4 | 1 2 3 | 0 1 2 3 | 3 3 1");
}
