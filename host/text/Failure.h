#pragma once

/// @file
/// How the host reports what is wrong.

#include <exception>
#include <string>

namespace quilon {

/// @throws FED_Failure with the message as it stands: the file (and line) or the argument first, then what was expected
[[noreturn]] void Fail(const std::string& message);

/// @param error what the system left in errno, 0 where it left nothing
/// @return ": Permission denied", to stand behind a message; empty for 0
std::string SystemReason(int error);

/// @return what users are told of an exception that nobody mends: "out of memory" for std::bad_alloc, path and reason
/// of
///         what the file system refused, otherwise its own words
std::string MessageOf(const std::exception& exception);

}  // namespace quilon
