#pragma once

/// @file
/// Import and comparison.

#include <pybind11/pybind11.h>

namespace quilon::python {

void DefineImport(pybind11::module_& module);
void DefineDiff(pybind11::module_& module);

}  // namespace quilon::python
