#pragma once

/// @file
/// Questions to databases: envelopes, combinations, lines through the model.

#include <pybind11/pybind11.h>

namespace quilon::python {

void DefineAnswers(pybind11::module_& module);

}  // namespace quilon::python
