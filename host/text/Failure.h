#pragma once

/// @file
/// How the host reports what is wrong.

#include <string>

namespace quilon {

/// @throws FED_Failure with the message as it stands: the file (and line) or the argument first, then what was expected
[[noreturn]] void Fail(const std::string& message);

}  // namespace quilon
