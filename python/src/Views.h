#pragma once

/// @file
/// Files for people and other programs to look at: exports, pictures, pages.

#include <pybind11/pybind11.h>

namespace quilon::python {

void DefineViews(pybind11::module_& module);

}  // namespace quilon::python
