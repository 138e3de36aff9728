#pragma once

/// @file
/// What commands that write a database say at their end.

#include <cstddef>
#include <string>

namespace quilon {

class Output;

/// Prints "OUT: 3 blocks written", or an object with "output" and "blocks".
/// @param verified whether the blocks were read back and found equal, which is told then
void ReportWritten(Output& output, bool json, const std::string& folder, std::size_t blocks, bool verified = false);

}  // namespace quilon
