#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_YaleMatrix.h"

namespace {

/// 2 x 3 with 5 at (0, 1), 7 at (1, 0) and 9 at (1, 2).
FED_YaleMatrix MakeMatrix()
{
  FED_YaleMatrix matrix;
  matrix.SetInternalData(2, 3, FED_DoubleArray(std::vector<double>{5.0, 7.0, 9.0}),
                         FED_IntArray(std::vector<int>{0, 1, 3}), FED_IntArray(std::vector<int>{1, 0, 2}));
  return matrix;
}

void ExpectIsTheMatrix(const FED_YaleMatrix& matrix)
{
  EXPECT_EQ(matrix.GetNumRows(), 2U);
  EXPECT_EQ(matrix.GetNumColumns(), 3U);
  EXPECT_TRUE(matrix.GetValues() == FED_DoubleArray(std::vector<double>{5.0, 7.0, 9.0}));
  EXPECT_TRUE(matrix.GetRowPointers() == FED_IntArray(std::vector<int>{0, 1, 3}));
  EXPECT_TRUE(matrix.GetColumnIndices() == FED_IntArray(std::vector<int>{1, 0, 2}));
}

void ExpectIsEmpty(const FED_YaleMatrix& matrix)
{
  EXPECT_EQ(matrix.GetNumRows(), 0U);
  EXPECT_EQ(matrix.GetNumColumns(), 0U);
  EXPECT_EQ(matrix.GetValues().GetSize(), 0U);
  EXPECT_EQ(matrix.GetRowPointers().GetSize(), 0U);
  EXPECT_EQ(matrix.GetColumnIndices().GetSize(), 0U);
}

TEST(YaleMatrix, IsZeroByZeroByDefault) { ExpectIsEmpty(FED_YaleMatrix()); }

TEST(YaleMatrix, KeepsWhatItIsGiven) { ExpectIsTheMatrix(MakeMatrix()); }

TEST(YaleMatrix, TakesTheArraysOverWithoutCopying)
{
  FED_DoubleArray     values(std::vector<double>{1.0});
  const double* const data = values.GetData();
  FED_YaleMatrix      matrix;
  matrix.SetInternalData(1, 1, std::move(values), FED_IntArray(std::vector<int>{0, 1}),
                         FED_IntArray(std::vector<int>{0}));
  EXPECT_EQ(matrix.GetValues().GetData(), data);
}

TEST(YaleMatrix, ReplacesItsWholeContentUnchecked)
{
  FED_YaleMatrix matrix = MakeMatrix();
  matrix.SetInternalData(9, 8, FED_DoubleArray(), FED_IntArray(std::vector<int>{-4}), FED_IntArray());
  EXPECT_EQ(matrix.GetNumRows(), 9U);
  EXPECT_EQ(matrix.GetNumColumns(), 8U);
  EXPECT_EQ(matrix.GetValues().GetSize(), 0U);
  EXPECT_TRUE(matrix.GetRowPointers() == FED_IntArray(std::vector<int>{-4}));
  EXPECT_EQ(matrix.GetColumnIndices().GetSize(), 0U);
}

TEST(YaleMatrix, CopiesAreDeep)
{
  FED_YaleMatrix       matrix = MakeMatrix();
  const FED_YaleMatrix copy(matrix);
  FED_YaleMatrix       assigned;
  assigned = matrix;
  matrix.SetInternalData(0, 0, FED_DoubleArray(), FED_IntArray(), FED_IntArray());
  ExpectIsTheMatrix(copy);
  ExpectIsTheMatrix(assigned);
}

TEST(YaleMatrix, MovingLeavesZeroByZero)
{
  FED_YaleMatrix matrix = MakeMatrix();
  FED_YaleMatrix moved(std::move(matrix));
  ExpectIsTheMatrix(moved);
  ExpectIsEmpty(matrix);  // NOLINT(bugprone-use-after-move): the state after a move is what is tested
  FED_YaleMatrix assigned;
  assigned = std::move(moved);
  ExpectIsTheMatrix(assigned);
  ExpectIsEmpty(moved);  // NOLINT(bugprone-use-after-move)
}

TEST(YaleMatrix, SurvivesAssignmentToItself)
{
  FED_YaleMatrix        matrix = MakeMatrix();
  FED_YaleMatrix* const self   = &matrix;
  matrix                       = *self;
  ExpectIsTheMatrix(matrix);
  matrix = std::move(*self);
  ExpectIsTheMatrix(matrix);
}

/// The library reaches a matrix through the virtual operations alone.
class DerivedMatrix : public FED_YaleMatrix
{
public:
  explicit DerivedMatrix(bool& destroyed) : destroyed_(destroyed) {}
  ~DerivedMatrix() override { destroyed_ = true; }
  std::size_t GetNumRows() const override { return 42; }

private:
  bool& destroyed_;
};

TEST(YaleMatrix, IsPolymorphicWithAVirtualDestructor)
{
  bool destroyed = false;
  {
    const std::unique_ptr<FED_YaleMatrix> matrix = std::make_unique<DerivedMatrix>(destroyed);
    EXPECT_EQ(matrix->GetNumRows(), 42U);
  }
  EXPECT_TRUE(destroyed);
}

}  // namespace
