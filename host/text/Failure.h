#pragma once

/// @file
/// How the host reports what is wrong.

#include <string>

namespace quilon {

/// @throws FED_Failure with the message as it stands: the file (and line) or the argument first, then what was expected
[[noreturn]] void Fail(const std::string& message);

/// @param error what the system left in errno, 0 where it left nothing
/// @return ": Permission denied", to stand behind a message; empty for 0
std::string SystemReason(int error);

}  // namespace quilon
