#pragma once

/// @file
/// Views of callers' arrays.

#include "quilon_language.h"

#include <cstddef>

namespace QuilonContainer {

/// A non-owning view of `size` elements at `data`; passed by value. The caller's array outlives it.
template <typename T>
class Span
{
public:
  Span(T* data, std::size_t size) noexcept : data_(data), size_(size) {}

  T*          GetData() const noexcept { return data_; }
  std::size_t GetSize() const noexcept { return size_; }

private:
  T*          data_;
  std::size_t size_;
};

}  // namespace QuilonContainer
