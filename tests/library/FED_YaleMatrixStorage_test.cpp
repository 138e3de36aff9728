#include <FED_YaleMatrixStorage.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/FED_YaleMatrix.h>

#include "RecordingDatabase.h"
#include "Snapshot.h"

namespace {

using quilon_test::Detail;
using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;
using Lines   = std::vector<std::string>;
using Ints    = std::vector<int>;
using Doubles = std::vector<double>;

FED_DataDescriptor Stiffness() { return FED_DataDescriptor(1, static_cast<FED_OnfId>(593)); }

FED_YaleMatrix Matrix(std::size_t rows, std::size_t columns, const Doubles& values, const Ints& rowPointers,
                      const Ints& columnIndices)
{
  FED_YaleMatrix matrix;
  matrix.SetInternalData(rows, columns, FED_DoubleArray(values), FED_IntArray(rowPointers),
                         FED_IntArray(columnIndices));
  return matrix;
}

// Row 0 holds 5 at column 1, row 1 holds 7 at 0 and 9 at 2.
FED_YaleMatrix Small() { return Matrix(2, 3, {5, 7, 9}, {0, 1, 3}, {1, 0, 2}); }

bool SameBits(const FED_DoubleArray& a, const FED_DoubleArray& b)
{
  return a.GetSize() == b.GetSize() &&
         (a.GetSize() == 0 || std::memcmp(a.GetData(), b.GetData(), a.GetSize() * sizeof(double)) == 0);
}

void ExpectSame(const FED_YaleMatrix& a, const FED_YaleMatrix& b)
{
  EXPECT_EQ(a.GetNumRows(), b.GetNumRows());
  EXPECT_EQ(a.GetNumColumns(), b.GetNumColumns());
  EXPECT_TRUE(SameBits(a.GetValues(), b.GetValues()));
  EXPECT_TRUE(a.GetRowPointers() == b.GetRowPointers());
  EXPECT_TRUE(a.GetColumnIndices() == b.GetColumnIndices());
}

void ExpectRoundTrip(const FED_YaleMatrix& matrix)
{
  FED_ResultDatabase db;
  FED_YaleMatrixStorage::Store(matrix, db, Stiffness(), 0);
  FED_YaleMatrix restored = Matrix(9, 9, {1}, {1}, {1});
  ASSERT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 0, restored));
  ExpectSame(restored, matrix);
}

}  // namespace

TEST(YaleMatrixStorage, StoringCreatesTheBlockFillsTheFieldsInOrderAndFreesItsRecord)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Records);
  FED_YaleMatrixStorage::Store(Small(), db, Stiffness(), 4);
  EXPECT_EQ(db.GetLines(), (Lines{"db.CreateDataBlock(<593 it=1>, 1, 20, \"IIbDbLbLb\")",
                                  "block<593 it=1>.CreateDataRecord()", "record<593 it=1>.SetInteger(1, 2)",
                                  "record<593 it=1>.SetInteger(2, 3)", "record<593 it=1>.SetDoubleList(3, (5 7 9))",
                                  "record<593 it=1>.SetIntList(4, (0 1 3))", "record<593 it=1>.SetIntList(5, (1 0 2))",
                                  "block<593 it=1>.SetRecord(4, [I 2; I 3; Db 5 7 9; Lb 0 1 3; Lb 1 0 2])",
                                  "block<593 it=1>.DeleteDataRecord()"}));
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
}

TEST(YaleMatrixStorage, RestoringReadsTheFieldsInOrderAndFreesItsRecord)
{
  FED_ResultDatabase inner;
  FED_YaleMatrixStorage::Store(Small(), inner, Stiffness(), 4);
  RecordingDatabase db(inner, Detail::Records);
  FED_YaleMatrix    restored;
  EXPECT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 4, restored));
  EXPECT_EQ(db.GetLines(), (Lines{"db.HasDataBlock(<593 it=1>)", "db.GetConstDataBlock(<593 it=1>)",
                                  "block<593 it=1>.CreateConstDataRecord()", "block<593 it=1>.GetRecord(4)",
                                  "record<593 it=1>.GetInteger(1)", "record<593 it=1>.GetInteger(2)",
                                  "record<593 it=1>.GetDoubleList(3)", "record<593 it=1>.GetIntList(4)",
                                  "record<593 it=1>.GetIntList(5)", "block<593 it=1>.DeleteDataRecord()"}));
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
  ExpectSame(restored, Small());
}

TEST(YaleMatrixStorage, AStoredMatrixComesBackBitForBit)
{
  ExpectRoundTrip(Small());
  ExpectRoundTrip(Matrix(1, 5, {-0.0, std::nan(""), INFINITY, std::numeric_limits<double>::denorm_min(), 0.1}, {0, 5},
                         {0, 1, 2, 3, 4}));
}

TEST(YaleMatrixStorage, AMatrixWithoutValuesComesBack)
{
  ExpectRoundTrip(Matrix(3, 2, {}, {0, 0, 0, 0}, {}));
  ExpectRoundTrip(FED_YaleMatrix());
}

TEST(YaleMatrixStorage, IndicesKeepTheirBase) { ExpectRoundTrip(Matrix(2, 3, {5, 7, 9}, {1, 2, 4}, {2, 1, 3})); }

TEST(YaleMatrixStorage, AnInconsistentMatrixIsKeptAsItIs)
{
  ExpectRoundTrip(Matrix(7, 1, {1, 2}, {5, -3, 99}, {-1, INT_MAX, INT_MIN}));
}

TEST(YaleMatrixStorage, ABlockKeepsAMatrixPerIndex)
{
  FED_ResultDatabase   db;
  const FED_YaleMatrix other = Matrix(1, 1, {2.5}, {0, 1}, {0});
  FED_YaleMatrixStorage::Store(Small(), db, Stiffness(), 0);
  FED_YaleMatrixStorage::Store(other, db, Stiffness(), 1);
  FED_YaleMatrix first;
  FED_YaleMatrix second;
  EXPECT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 0, first));
  EXPECT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 1, second));
  ExpectSame(first, Small());
  ExpectSame(second, other);
}

TEST(YaleMatrixStorage, StoringAtAnIndexAgainReplacesItsMatrixOnly)
{
  FED_ResultDatabase   db;
  const FED_YaleMatrix other = Matrix(1, 1, {2.5}, {0, 1}, {0});
  FED_YaleMatrixStorage::Store(Small(), db, Stiffness(), 0);
  FED_YaleMatrixStorage::Store(Small(), db, Stiffness(), 1);
  FED_YaleMatrixStorage::Store(other, db, Stiffness(), 0);
  FED_YaleMatrix first;
  FED_YaleMatrix second;
  EXPECT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 0, first));
  EXPECT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 1, second));
  ExpectSame(first, other);
  ExpectSame(second, Small());
}

TEST(YaleMatrixStorage, RestoringWithoutABlockIsFalseAndLeavesTheMatrix)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Records);
  FED_YaleMatrix     matrix = Small();
  EXPECT_FALSE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 0, matrix));
  ExpectSame(matrix, Small());
  EXPECT_EQ(db.GetLines(), Lines{"db.HasDataBlock(<593 it=1>)"});
}

TEST(YaleMatrixStorage, AnIndexWithoutARecordIsTheDatabasesToRefuse)
{
  FED_ResultDatabase inner;
  FED_YaleMatrixStorage::Store(Small(), inner, Stiffness(), 0);
  RecordingDatabase db(inner, Detail::Records);
  FED_YaleMatrix    matrix = Small();
  EXPECT_THROW(FED_YaleMatrixStorage::Restore(db, Stiffness(), 5, matrix), FED_Failure);
  ExpectSame(matrix, Small());
  EXPECT_EQ(db.GetLines().back(), "block<593 it=1>.GetRecord(5)") << "HasRecord is not asked";
}

TEST(YaleMatrixStorage, ARowCountBeyond32BitsIsNotRestored)
{
  // Cut to 32 bits and extended by its sign on the way back.
  constexpr std::size_t kLimit = 2147483647;
  struct Row
  {
    std::size_t stored;
    std::size_t restored;
  };
  const Row rows[] = {{kLimit, kLimit}, {kLimit + 1, ~kLimit}, {2 * kLimit + 2 + 5, 5}};
  for (const Row& row : rows) {
    FED_ResultDatabase db;
    FED_YaleMatrixStorage::Store(Matrix(row.stored, row.stored, {}, {}, {}), db, Stiffness(), 0);
    FED_YaleMatrix matrix;
    ASSERT_TRUE(FED_YaleMatrixStorage::Restore(db, Stiffness(), 0, matrix));
    EXPECT_EQ(matrix.GetNumRows(), row.restored);
    EXPECT_EQ(matrix.GetNumColumns(), row.restored);
  }
}

TEST(YaleMatrixStorage, AFormatThatDiffersIsTheDatabasesToRefuse)
{
  FED_ResultDatabase db;
  db.CreateDataBlock(Stiffness(), 1, 20, "D");
  EXPECT_THROW(FED_YaleMatrixStorage::Store(Small(), db, Stiffness(), 0), FED_Failure);
}

TEST(YaleMatrixStorage, AFailingDatabaseKeepsTheFormerMatrixAndLeavesTheTarget)
{
  const auto prepare = [] {
    auto db = std::make_unique<FED_ResultDatabase>();
    FED_YaleMatrixStorage::Store(Small(), *db, Stiffness(), 0);
    return db;
  };
  const auto           before = Snapshot(*prepare());
  const FED_YaleMatrix other  = Matrix(1, 1, {2.5}, {0, 1}, {0});
  // Eight calls to store and nine to restore, freeing not counted.
  for (std::size_t call = 1; call <= 8; ++call) {
    const auto        inner = prepare();
    RecordingDatabase db(*inner, Detail::Records);
    db.FailAt(call);
    EXPECT_THROW(FED_YaleMatrixStorage::Store(other, db, Stiffness(), 0), FED_Failure) << call;
    EXPECT_EQ(db.GetCallCount(), call);
    EXPECT_EQ(Snapshot(*inner), before);
  }
  for (std::size_t call = 1; call <= 9; ++call) {
    const auto        inner = prepare();
    RecordingDatabase db(*inner, Detail::Records);
    db.FailAt(call);
    FED_YaleMatrix matrix = other;
    EXPECT_THROW(FED_YaleMatrixStorage::Restore(db, Stiffness(), 0, matrix), FED_Failure) << call;
    EXPECT_EQ(db.GetCallCount(), call);
    ExpectSame(matrix, other);
  }
}
