#pragma once

/// @file
/// The database's list of 32-bit integers.

#include "quilon_language.h"

#include <cstddef>
#include <vector>

#include "quilon_contract_export.h"

/// A contiguous, resizable list of 32-bit integers, indexed from 0. Owns its elements; copies are deep.
class QUILON_UTILITIES_API FED_IntArray
{
public:
  FED_IntArray();
  /// Copies the elements. Not explicit: callers hand a vector wherever an array is asked for.
  FED_IntArray(const std::vector<int>& values);
  FED_IntArray(const FED_IntArray& other);
  FED_IntArray(FED_IntArray&& other) noexcept;
  FED_IntArray& operator=(const FED_IntArray& other);
  FED_IntArray& operator=(FED_IntArray&& other) noexcept;
  ~FED_IntArray();

  /// @return the first element; valid until the next Resize() or assignment. May be null when GetSize() is 0.
  int*       GetData() noexcept;
  const int* GetData() const noexcept;

  /// @return the number of elements
  std::size_t GetSize() const noexcept;

  /// Keeps the first elements; new ones are 0.
  void Resize(std::size_t size);

  /// Same length and same elements.
  bool operator==(const FED_IntArray& other) const noexcept;

private:
  std::vector<int> values_;
};
