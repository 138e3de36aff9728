#pragma once

/// @file
/// What commands that write a database say at their end.

#include <cstddef>
#include <string>

namespace quilon {

class Output;

/// Prints "OUT: 3 blocks written", or an object with "output" and "blocks".
void ReportWritten(Output& output, bool json, const std::string& folder, std::size_t blocks);

}  // namespace quilon
