#pragma once

/// @file
/// Components of arrays of vectors and tensors.

#include <pybind11/pybind11.h>

namespace quilon::python {

void DefineTensors(pybind11::module_& module);

}  // namespace quilon::python
