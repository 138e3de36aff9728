#include <FED_YaleMatrixText.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/NativePath.h>
#include <QuilonUtilities/FED_Failure.h>

#include "AllocationFailure.h"
#include "Permissions.h"
#include "TempFolder.h"

namespace {

using Ints    = std::vector<int>;
using Doubles = std::vector<double>;

class YaleMatrixText : public testing::Test
{
protected:
  FED_YaleMatrix Read(const std::string& text)
  {
    std::ofstream(path_, std::ios::binary) << text;
    return FED_YaleMatrixText::ReadYaleMatrix(path_.wstring());
  }

  /// @param message expected behind the file's path
  void ExpectFailure(const std::string& text, const std::string& message)
  {
    try {
      Read(text);
      ADD_FAILURE() << "nothing was thrown for " << text;
    } catch (const FED_Failure& failure) {
      EXPECT_EQ(failure.what(), path_.string() + message);
      EXPECT_EQ(failure.GetTag(), "|%P|QuilonDbDataTools|FED_YaleMatrixText");
    }
  }

  quilon_test::TempFolder folder_;
  std::filesystem::path   path_ = folder_ / "matrix.txt";
};

void ExpectMatrix(const FED_YaleMatrix& matrix, std::size_t rows, std::size_t columns, const Doubles& values,
                  const Ints& rowPointers, const Ints& columnIndices)
{
  EXPECT_EQ(matrix.GetNumRows(), rows);
  EXPECT_EQ(matrix.GetNumColumns(), columns);
  EXPECT_TRUE(matrix.GetValues() == FED_DoubleArray(values));
  EXPECT_TRUE(matrix.GetRowPointers() == FED_IntArray(rowPointers));
  EXPECT_TRUE(matrix.GetColumnIndices() == FED_IntArray(columnIndices));
}

// 5 at row 0, column 1; 7 at (1, 0); 9 at (1, 2).
void ExpectSmall(const FED_YaleMatrix& matrix) { ExpectMatrix(matrix, 2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0, 2}); }

}  // namespace

TEST_F(YaleMatrixText, ColumnIndicesStandBeforeRowPointers)
{
  ExpectSmall(Read("# 2 x 3\n3\n2\n3\n5.0\n7.0\n9.0\n1\n0\n2\n0\n1\n3\n"));
}

TEST_F(YaleMatrixText, CommentsAndBlankLinesStandAnywhere)
{
  ExpectSmall(
      Read("\n\n# a\n3\n#\n2\n\t \n3\n# values\n5.0\n#8\n7.0\n\n9.0\n  # 4\n1\n0\n\n2\n0\n# 6\n1\n3\n# end\n\n"));
}

TEST_F(YaleMatrixText, BlanksAndTabsAroundANumberDoNotMatter)
{
  ExpectSmall(Read(" 3\n2\t\n \t3 \n  5.0  \n7.0\n9.0\n1\n\t0\n2\n0\n1\n3"));
  ExpectSmall(Read("3\r\n2\r\n3\r\n5\r\n7\r\n9\r\n1\r\n0\r\n2\r\n0\r\n1\r\n3\r\n"));
}

TEST_F(YaleMatrixText, ANumberIsTakenFromTheStartOfItsEntry)
{
  ExpectSmall(Read("3 values\n2 # rows\n3.9\n5.0 N/mm\n7 8\n9e0x\n1#\n0\n2\n0\n1\n3,4\n"));
}

TEST_F(YaleMatrixText, EntriesBehindTheLastRowPointerAreIgnored)
{
  ExpectSmall(Read("3\n2\n3\n5\n7\n9\n1\n0\n2\n0\n1\n3\n4\nno number\n99999999999\n"));
}

TEST_F(YaleMatrixText, AMatrixWithoutValuesHasRowPointersOnly)
{
  ExpectMatrix(Read("0\n2\n3\n0\n0\n0\n"), 2, 3, {}, {0, 0, 0}, {});
  ExpectMatrix(Read("0\n0\n0\n0\n"), 0, 0, {}, {0}, {});
}

TEST_F(YaleMatrixText, IndicesAreTakenAsWritten)
{
  ExpectMatrix(Read("1\n1\n1\n2.5\n1\n1\n2\n"), 1, 1, {2.5}, {1, 2}, {1});
  ExpectMatrix(Read("1\n1\n1\n2.5\n-7\n2147483647\n-2147483648\n"), 1, 1, {2.5}, {INT_MAX, INT_MIN}, {-7});
}

TEST_F(YaleMatrixText, ValuesReadBackToTheirBits)
{
  const FED_YaleMatrix matrix = Read("4\n1\n4\n0.1\n-0\n1.7976931348623157e308\ninf\n0\n1\n2\n3\n0\n4\n");
  ASSERT_EQ(matrix.GetValues().GetSize(), 4u);
  const double* const values = matrix.GetValues().GetData();
  EXPECT_EQ(values[0], 0.1);
  EXPECT_TRUE(std::signbit(values[1]));
  EXPECT_EQ(values[2], std::numeric_limits<double>::max());
  EXPECT_EQ(values[3], INFINITY);
}

TEST_F(YaleMatrixText, APathBeyondAsciiIsRead)
{
  const std::wstring path = folder_.GetPath().wstring() + L"/M\u00e4trix \u03c3.txt";
  std::ofstream(NativePath(path.c_str()), std::ios::binary) << "3\n2\n3\n5\n7\n9\n1\n0\n2\n0\n1\n3\n";
  ExpectSmall(FED_YaleMatrixText::ReadYaleMatrix(path));
  try {
    FED_YaleMatrixText::ReadYaleMatrix(path + L"\u221e");
    ADD_FAILURE() << "nothing was thrown";
  } catch (const FED_Failure& failure) {
    EXPECT_EQ(failure.what(),
              folder_.GetPath().string() +
                  "/M\xc3\xa4trix \xcf\x83.txt\xe2\x88\x9e: cannot be read, expected a text file with a "
                  "sparse matrix: No such file or directory");
  }
}

TEST_F(YaleMatrixText, AMissingFileIsNamed)
{
  path_ = folder_ / "none" / "matrix.txt";
  ExpectFailure("", ": cannot be read, expected a text file with a sparse matrix: No such file or directory");
}

TEST_F(YaleMatrixText, AFileThatEndsBeforeItsCountsIsRefused)
{
  ExpectFailure("", ":1: the file ends after 0 entries, expected 1 up to the number of values");
  ExpectFailure("# none\n\n", ":2: the file ends after 0 entries, expected 1 up to the number of values");
  ExpectFailure("3\n", ":1: the file ends after 1 entries, expected 2 up to the number of rows");
  ExpectFailure("3\n\n2\n", ":3: the file ends after 2 entries, expected 3 up to the number of columns");
}

TEST_F(YaleMatrixText, EveryMissingEntryIsNoticed)
{
  const std::string lines[] = {"3", "2", "3", "5", "7", "9", "1", "0", "2", "0", "1"};
  std::string       text;
  for (int i = 0; i < 11; ++i) {
    text += lines[i] + "\n";
    if (i < 2) continue;
    ExpectFailure(text, ":" + std::to_string(i + 1) + ": the file ends after " + std::to_string(i + 1) +
                            " entries, expected 12 up to the last row pointer");
  }
}

TEST_F(YaleMatrixText, CountsThatTheFileCannotHoldAreRefusedBeforeMemoryIsAskedFor)
{
  const std::string expected[] = {
      ":4: the file ends after 4 entries, expected 4294967301 up to the last row pointer",
      ":4: the file ends after 4 entries, expected 2147483651 up to the last row pointer",
      ":4: the file ends after 4 entries, expected 6442450945 up to the last row pointer",
  };
  // 3 + 2 nnz + rows + 1 with nnz or rows or both at the limit.
  const std::string texts[] = {"2147483647\n3\n1\n0\n", "0\n2147483647\n1\n0\n", "2147483647\n2147483647\n1\n0\n"};
  for (int i = 0; i < 3; ++i) {
    std::ofstream(path_, std::ios::binary) << texts[i];
    const quilon_test::AllocationFailure counted(0);
    EXPECT_THROW(FED_YaleMatrixText::ReadYaleMatrix(path_.wstring()), FED_Failure);
    EXPECT_LT(counted.GetBytes(), 1000000u);
    ExpectFailure(texts[i], expected[i]);
  }
}

// A count is widened with its sign and not judged. A list of fewer than no entries is empty, and the next one begins
// where it would have.
TEST_F(YaleMatrixText, NegativeCountsAreTakenAsTheyStand)
{
  const auto widened = [](int count) { return static_cast<std::size_t>(count); };
  ExpectMatrix(Read("0\n2\n-2147483648\n0\n0\n0\n"), 2, widened(INT_MIN), {}, {0, 0, 0}, {});
  ExpectMatrix(Read("-1\n2\n3\n0\n4\n5\n"), 2, 3, {}, {0, 4, 5}, {});
  ExpectMatrix(Read("2\n-1\n3\n5.5\n7.5\n1\n0\n"), widened(-1), 3, {5.5, 7.5}, {}, {1, 0});
  ExpectMatrix(Read("0\n-2\n3\n"), widened(-2), 3, {}, {}, {});
  ExpectMatrix(Read("-2147483648\n-2147483648\n-1\n"), widened(INT_MIN), widened(-1), {}, {}, {});
  ExpectFailure("-2147483648\n0\n0\n", ":3: the file ends after 3 entries, expected 4 up to the last row pointer");
}

TEST_F(YaleMatrixText, AnEntryWithoutANumberIsRefused)
{
  ExpectFailure("x\n", ":1: number of values is \"x\", expected a 32-bit integer");
  ExpectFailure("3\nrows 2\n", ":2: number of rows is \"rows 2\", expected a 32-bit integer");
  ExpectFailure("0\n0\n-\n0\n", ":3: number of columns is \"-\", expected a 32-bit integer");
  ExpectFailure("1\n1\n1\n\nN 5\n0\n0\n1\n", ":5: value is \"N 5\", expected a number that fits a double");
  ExpectFailure("1\n1\n1\n5\n.\n0\n1\n", ":5: column index is \".\", expected a 32-bit integer");
  ExpectFailure("1\n1\n1\n5\n0\n0\n,1\n", ":7: row pointer is \",1\", expected a 32-bit integer");
}

TEST_F(YaleMatrixText, ANumberThatItsTypeCannotHoldIsRefused)
{
  ExpectFailure("2147483648\n", ":1: number of values is \"2147483648\", expected a 32-bit integer");
  ExpectFailure("1\n1\n1\n1e999\n0\n0\n1\n", ":4: value is \"1e999\", expected a number that fits a double");
  ExpectFailure("1\n1\n1\n5\n0\n0\n99999999999\n", ":7: row pointer is \"99999999999\", expected a 32-bit integer");
}

TEST_F(YaleMatrixText, ALongEntryIsCutInTheMessage)
{
  ExpectFailure(std::string(500, 'x'),
                ":1: number of values is \"" + std::string(40, 'x') + "\", expected a 32-bit integer");
}

#ifdef __linux__
TEST_F(YaleMatrixText, AFileThatMayNotBeReadIsNamedWithTheReason)
{
  Read("0\n0\n0\n0\n");
  std::filesystem::permissions(path_, std::filesystem::perms::none);
  const quilon_test::HoldPermissions held;
  ExpectFailure("", ": cannot be read, expected a text file with a sparse matrix: Permission denied");
}
#endif

TEST_F(YaleMatrixText, AFolderIsNoTextFile)
{
  path_ = folder_.GetPath();
  ExpectFailure("", ": cannot be read, expected a text file with a sparse matrix: Is a directory");
}
