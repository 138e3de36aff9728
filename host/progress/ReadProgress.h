#pragma once

/// @file
/// How far a reader has come.

#include <cstdint>
#include <functional>

namespace quilon {

/// Bytes read so far of all bytes; called now and then. May throw to stop the reading.
using ReadProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;

}  // namespace quilon
