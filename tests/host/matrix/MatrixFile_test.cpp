#include "matrix/MatrixFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "../calculix/ReaderSupport.h"
#include "matrix/YaleText.h"
#include "MatrixSupport.h"
#include "TempFolder.h"

namespace {

using namespace quilon::matrix;
using quilon_test::FailureOf;
using quilon_test::MakeMatrix;
using quilon_test::SameBits;
using quilon_test::Shown;

class MatrixFileTest : public testing::Test
{
protected:
  std::string Write(const std::string& name, const std::string& text)
  {
    std::ofstream(folder_ / name, std::ios::binary) << text;
    return (folder_ / name).string();
  }

  std::string ReadText(const std::string& name)
  {
    std::ifstream in(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  MatrixFile Read(const std::string& path, const std::string& dofs = {}) { return ReadMatrixFile(path, dofs, {}); }

  quilon_test::TempFolder folder_;
};

using YaleText = MatrixFileTest;

const char* const kSolver = "1 1 2.0\n1 2 -1.0\n2 2 4.0\n";
const char* const kYale   = "3\n2\n3\n5\n7\n9\n1\n0\n2\n0\n1\n3\n";
const char* const kMarket = "%%MatrixMarket matrix coordinate real general\n1 1 1\n1 1 5\n";

}  // namespace

TEST_F(MatrixFileTest, ExtensionsAndBannerTellTheFormat)
{
  const MatrixFile stiffness = Read(Write("a.sti", kSolver));
  EXPECT_EQ(stiffness.role, MatrixFile::Stiffness);
  EXPECT_EQ(Shown(stiffness.matrix), "2 x 2 | 2 -1 -1 4 | 0 2 4 | 0 1 0 1");
  EXPECT_EQ(Read(Write("b.MAS", kSolver)).role, MatrixFile::Mass);

  const MatrixFile market = Read(Write("any.name", kMarket));
  EXPECT_EQ(market.role, MatrixFile::Untold);
  EXPECT_EQ(Shown(market.matrix), "1 x 1 | 5 | 0 1 | 0");

  const MatrixFile yale = Read(Write("a.mtx", kYale));
  EXPECT_EQ(yale.role, MatrixFile::Untold);
  EXPECT_EQ(Shown(yale.matrix), "2 x 3 | 5 7 9 | 0 1 3 | 1 0 2");
}

TEST_F(MatrixFileTest, TheDofFileBesideNamesTheRows)
{
  const std::string path = Write("a.sti", kSolver);
  EXPECT_TRUE(Read(path).dofs.empty());
  Write("a.dof", "7.1\n7.2\n");
  EXPECT_EQ(Read(path).dofs, (std::vector<Dof>{{7, 1}, {7, 2}}));
  EXPECT_EQ(Read(path, Write("b.dof", "9.1\n9.2\n")).dofs, (std::vector<Dof>{{9, 1}, {9, 2}}))
      << "unless another is told";
  EXPECT_TRUE(Read(Write("a.mtx", kMarket)).dofs.empty()) << "of other files none is looked for";
}

TEST_F(MatrixFileTest, DofsAndMatrixHaveOneSize)
{
  const std::string path = Write("a.sti", kSolver);
  EXPECT_EQ(FailureOf([&] { Read(path, Write("b.dof", "7.1\n")); }),
            path + ":2: column is '2', expected an integer from 1 to 1");
  EXPECT_EQ(FailureOf([&] { Read(path, Write("c.dof", "7.1\n7.2\n7.3\n")); }),
            path + ":4: expected the diagonal entry of row 3, found the end of the file");
  const std::string dofs = Write("d.dof", "7.1\n7.2\n");
  EXPECT_EQ(FailureOf([&] { Read(Write("a.mtx", kMarket), dofs); }),
            dofs + ": 2 degrees of freedom for a matrix of 1 rows, expected one each");
}

TEST_F(MatrixFileTest, WhatCannotBeReadIsNamed)
{
  const std::string folder = folder_.GetPath().string();
  EXPECT_EQ(FailureOf([&] { Read(folder); }), folder + ": a folder, expected a file with a matrix");
  EXPECT_EQ(FailureOf([&] { Read(folder + "/none.sti"); }),
            folder + "/none.sti: expected a file that can be read: No such file or directory");
  EXPECT_EQ(FailureOf([&] { Read(Write("a.sti", kSolver), folder + "/none.dof"); }),
            folder + "/none.dof: expected a file that can be read: No such file or directory");
}

TEST_F(MatrixFileTest, AFileTakesItsPlaceWhenItIsWhole)
{
  const std::string path = Write("out.txt", "former");
  EXPECT_THROW(ReplaceFile(path,
                           [](std::ostream& out) {
                             out << "half";
                             throw std::runtime_error("stop");
                           }),
               std::runtime_error);
  EXPECT_EQ(ReadText("out.txt"), "former");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.GetPath()), {}), 1) << "nothing is left beside";
  ReplaceFile(path, [](std::ostream& out) { out << "whole"; });
  EXPECT_EQ(ReadText("out.txt"), "whole");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.GetPath()), {}), 1);
}

TEST_F(MatrixFileTest, AFileThatCannotBeWrittenIsNamed)
{
  const std::string folder = folder_.GetPath().string();
  const auto        write  = [](std::ostream& out) { out << "text"; };
  EXPECT_EQ(FailureOf([&] { ReplaceFile(folder, write); }), folder + ": expected a file to write, found a folder");
  EXPECT_EQ(FailureOf([&] { ReplaceFile(folder + "/none/out.txt", write); }),
            folder + "/none/out.txt: expected a file that can be written: No such file or directory");
}

TEST_F(YaleText, WritesCountsAndArraysInTheOrderOfTheFormat)
{
  std::ostringstream out;
  WriteYaleText(out, MakeMatrix(2, 3, {5, 0.1, 9}, {0, 1, 3}, {1, 0, 2}));
  EXPECT_EQ(out.str(),
            "# number of values, rows, columns\n3\n2\n3\n# values, row by row\n5\n0.1\n9\n# column indices\n1\n0\n2\n"
            "# row pointers\n0\n1\n3\n");
}

TEST_F(YaleText, ArraysKeepTheirBaseOnBothWays)
{
  const FED_YaleMatrix zero  = MakeMatrix(2, 3, {5, -0.0, 9}, {0, 1, 3}, {1, 2, 0});
  const FED_YaleMatrix one   = MakeMatrix(2, 3, {5, 0.1, 1e-310}, {1, 2, 4}, {2, 1, 3});
  const FED_YaleMatrix empty = MakeMatrix(1, 0, {}, {0, 0}, {});
  for (const FED_YaleMatrix* matrix : {&zero, &one, &empty}) {
    ReplaceFile(folder_ / "a.txt", [&](std::ostream& out) { WriteYaleText(out, *matrix); });
    EXPECT_TRUE(SameBits(ReadYaleText(folder_ / "a.txt"), *matrix));
  }
}

TEST_F(YaleText, AnEntryThatStandsTwiceIsRefused)
{
  const std::string path = Write("a.txt", "4\n2\n3\n5\n6\n7\n9\n1\n2\n0\n2\n0\n2\n4\n");
  EXPECT_EQ(ReadYaleText(path).GetValues().GetSize(), 4u) << "column 2 in both rows";
  EXPECT_EQ(FailureOf([&] { ReadYaleText(Write("b.txt", "4\n2\n3\n5\n6\n7\n9\n1\n2\n0\n2\n0\n1\n4\n")); }),
            (folder_ / "b.txt").string() + ": row 2, column 3 stands twice, expected each entry once");
}

TEST_F(YaleText, ArraysThatDoNotFitAreRefused)
{
  const std::string path = Write("a.txt", "1\n1\n1\n5\n1\n0\n1\n");
  EXPECT_EQ(FailureOf([&] { ReadYaleText(path); }), path + ": column index 1 is 1, expected 0 to 0");
  EXPECT_EQ(FailureOf([&] { ReadYaleText(Write("a.txt", "1\n1\n1\n5\n0\n0\n")); }),
            path + ":6: the file ends after 6 entries, expected 7 up to the last row pointer");
}
