#pragma once

/// @file
/// The suite's sparse matrix in compressed-row (Yale) form.

#include "quilon_language.h"

#include <cstddef>

#include "quilon_contract_export.h"
#include "QuilonUtilities/FED_DoubleArray.h"
#include "QuilonUtilities/FED_IntArray.h"

/// A sparse matrix: values row by row, row pointers, and the column of each value.
///
/// Shapes: row pointers have one entry more than the matrix has rows, the last one being the number of values; column
/// indices have one entry per value. The index base is the caller's: the class neither converts nor checks it.
class QUILON_UTILITIES_API FED_YaleMatrix
{
public:
  /// 0 x 0, all arrays empty.
  FED_YaleMatrix();
  FED_YaleMatrix(const FED_YaleMatrix& other);
  FED_YaleMatrix(FED_YaleMatrix&& other) noexcept;
  FED_YaleMatrix& operator=(const FED_YaleMatrix& other);
  FED_YaleMatrix& operator=(FED_YaleMatrix&& other) noexcept;
  virtual ~FED_YaleMatrix();

  virtual std::size_t            GetNumRows() const;
  virtual std::size_t            GetNumColumns() const;
  virtual const FED_DoubleArray& GetValues() const;
  virtual const FED_IntArray&    GetRowPointers() const;
  virtual const FED_IntArray&    GetColumnIndices() const;

  /// Replaces the whole content and takes the three arrays over. Nothing is checked.
  virtual void SetInternalData(std::size_t numRows, std::size_t numColumns, FED_DoubleArray&& values,
                               FED_IntArray&& rowPointers, FED_IntArray&& columnIndices);

private:
  std::size_t     numRows_    = 0;
  std::size_t     numColumns_ = 0;
  FED_DoubleArray values_;
  FED_IntArray    rowPointers_;
  FED_IntArray    columnIndices_;
};
