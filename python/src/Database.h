#pragma once

/// @file
/// Databases as Python sees them.

#include <map>
#include <string>

#include <pybind11/pybind11.h>

#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "Store.h"

namespace quilon::python {

/// Values of a block's key by their names, "lc" or "load-case".
using KeyValues = std::map<std::string, int>;

/// @return the key of a block: iteration 0 unless it is given
/// @throws FED_Failure for what is no kind or no key
FED_DataDescriptor MakeDescriptor(Store& store, const std::string& kind, const KeyValues& key);

void DefineDatabase(py::module_& module);

}  // namespace quilon::python
