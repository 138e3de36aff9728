#include "QuilonUtilities/FED_YaleMatrix.h"

#include <utility>

FED_YaleMatrix::FED_YaleMatrix() = default;

FED_YaleMatrix::FED_YaleMatrix(const FED_YaleMatrix& other) = default;

// The counts go with the arrays: a matrix that was moved from is 0 x 0 and not one whose arrays are missing.
FED_YaleMatrix::FED_YaleMatrix(FED_YaleMatrix&& other) noexcept
    : numRows_(std::exchange(other.numRows_, 0)),
      numColumns_(std::exchange(other.numColumns_, 0)),
      values_(std::move(other.values_)),
      rowPointers_(std::move(other.rowPointers_)),
      columnIndices_(std::move(other.columnIndices_))
{}

FED_YaleMatrix& FED_YaleMatrix::operator=(const FED_YaleMatrix& other)
{
  // Copy first: if this throws, the matrix is unchanged.
  return *this = FED_YaleMatrix(other);
}

FED_YaleMatrix& FED_YaleMatrix::operator=(FED_YaleMatrix&& other) noexcept
{
  if (this != &other) {
    numRows_       = std::exchange(other.numRows_, 0);
    numColumns_    = std::exchange(other.numColumns_, 0);
    values_        = std::move(other.values_);
    rowPointers_   = std::move(other.rowPointers_);
    columnIndices_ = std::move(other.columnIndices_);
  }
  return *this;
}

FED_YaleMatrix::~FED_YaleMatrix() = default;

std::size_t FED_YaleMatrix::GetNumRows() const { return numRows_; }

std::size_t FED_YaleMatrix::GetNumColumns() const { return numColumns_; }

const FED_DoubleArray& FED_YaleMatrix::GetValues() const { return values_; }

const FED_IntArray& FED_YaleMatrix::GetRowPointers() const { return rowPointers_; }

const FED_IntArray& FED_YaleMatrix::GetColumnIndices() const { return columnIndices_; }

void FED_YaleMatrix::SetInternalData(std::size_t numRows, std::size_t numColumns, FED_DoubleArray&& values,
                                     FED_IntArray&& rowPointers, FED_IntArray&& columnIndices)
{
  numRows_       = numRows;
  numColumns_    = numColumns;
  values_        = std::move(values);
  rowPointers_   = std::move(rowPointers);
  columnIndices_ = std::move(columnIndices);
}
