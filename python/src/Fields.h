#pragma once

/// @file
/// The library's accumulators.

#include <pybind11/pybind11.h>

namespace quilon::python {

void DefineFields(pybind11::module_& module);

}  // namespace quilon::python
