#pragma once

/// @file
/// NumPy arrays over memory of ours.

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include "text/Failure.h"

namespace quilon::python {

namespace py = pybind11;

using Doubles  = py::array_t<double, py::array::c_style>;
using Integers = py::array_t<int, py::array::c_style>;

inline void MakeReadOnly(py::array& array) { array.attr("setflags")(py::arg("write") = false); }

/// @param owner lives as long as anything looks at the array
/// @param shape of memory in C order
template <typename T>
py::array_t<T, py::array::c_style> ViewOf(const T* data, std::vector<py::ssize_t> shape,
                                          std::shared_ptr<const void> owner)
{
  auto              kept = std::make_unique<std::shared_ptr<const void>>(std::move(owner));
  const py::capsule base(kept.get(), [](void* pointer) { delete static_cast<std::shared_ptr<const void>*>(pointer); });
  kept.release();
  py::array_t<T, py::array::c_style> array(std::move(shape), data, base);
  MakeReadOnly(array);
  return array;
}

/// An array that takes a vector over.
template <typename T>
py::array_t<T, py::array::c_style> ArrayOf(std::vector<T> values, std::vector<py::ssize_t> shape)
{
  const auto kept = std::make_shared<const std::vector<T>>(std::move(values));
  return ViewOf(kept->data(), std::move(shape), kept);
}

template <typename T>
py::array_t<T, py::array::c_style> ArrayOf(std::vector<T> values)
{
  const auto size = static_cast<py::ssize_t>(values.size());
  return ArrayOf(std::move(values), {size});
}

template <typename T>
std::span<const T> SpanOf(const py::array_t<T, py::array::c_style>& array)
{
  return {array.data(), static_cast<std::size_t>(array.size())};
}

}  // namespace quilon::python
