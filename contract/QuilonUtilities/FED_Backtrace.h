#pragma once

/// @file
/// Back traces for exceptions.

#include "quilon_language.h"

#include <string>
#include <vector>

#include "quilon_contract_export.h"

namespace FED_Backtrace {

/// @return one printable line per stack frame, the caller first; empty where the platform offers none
QUILON_UTILITIES_API std::vector<std::string> GetBacktrace();

}  // namespace FED_Backtrace
