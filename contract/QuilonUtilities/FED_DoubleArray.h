#pragma once

/// @file
/// The database's list of doubles.

#include "quilon_language.h"

#include <cstddef>
#include <vector>

#include "quilon_contract_export.h"

/// A contiguous, resizable list of doubles, indexed from 0. Owns its elements; copies are deep.
class QUILON_UTILITIES_API FED_DoubleArray
{
public:
  FED_DoubleArray();
  /// Copies the elements. Not explicit: callers hand a vector wherever an array is asked for.
  FED_DoubleArray(const std::vector<double>& values);
  FED_DoubleArray(const FED_DoubleArray& other);
  FED_DoubleArray(FED_DoubleArray&& other) noexcept;
  FED_DoubleArray& operator=(const FED_DoubleArray& other);
  FED_DoubleArray& operator=(FED_DoubleArray&& other) noexcept;
  ~FED_DoubleArray();

  /// @return the first element; valid until the next Resize() or assignment. May be null when GetSize() is 0.
  double*       GetData() noexcept;
  const double* GetData() const noexcept;

  /// @return the number of elements
  std::size_t GetSize() const noexcept;

  /// Keeps the first elements; new ones are 0.0.
  void Resize(std::size_t size);

  /// Same length and elements equal as doubles: 0.0 equals -0.0, a NaN equals nothing.
  bool operator==(const FED_DoubleArray& other) const noexcept;

private:
  std::vector<double> values_;
};
