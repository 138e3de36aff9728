#pragma once

/// @file
/// Who is told how long work goes on.

#include <cstdint>
#include <string>

namespace quilon {

/// Told of what a user should know while work goes on. Functions of the rooms below the commands report through it and
/// print nothing themselves.
class Listener
{
public:
  virtual ~Listener() = default;

  virtual void Note(const std::string& message) = 0;

  /// @param phase what is being done
  /// @param unit  what `done` and `total` count; "B" for bytes
  virtual void Progress(const std::string& phase, std::uint64_t done, std::uint64_t total,
                        const std::string& unit = "B") = 0;
};

}  // namespace quilon
