#pragma once

/// @file
/// Text for Python.

#include <string>

#include <pybind11/pybind11.h>

namespace quilon::python {

namespace py = pybind11;

/// @return the text; bytes that are no UTF-8 become U+FFFD
inline py::str TextOf(const std::string& text)
{
  return py::reinterpret_steal<py::str>(
      PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), "replace"));
}

}  // namespace quilon::python
