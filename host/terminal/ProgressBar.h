#pragma once

/// @file
/// How far long work is.

#include <cstdint>
#include <functional>
#include <string>

namespace quilon {

/// Turns progress into a line of text, now and then. Work shorter than a second shows nothing.
class ProgressBar
{
public:
  /// @param clock seconds since any moment, ascending
  explicit ProgressBar(std::function<double()> clock);

  /// @param phase what is being done; a new phase starts its own rate
  /// @param total of the same unit as `done`; 0 when nobody knows
  /// @param unit  what is counted; of bytes, which "B" stands for, the rate is in kB, MB and so on
  /// @return the line to show, such as "reading job.dat [########            ]  40 % 12.3 MB/s 0:14 left"; empty when
  ///         there is nothing new to show
  std::string Update(const std::string& phase, std::uint64_t done, std::uint64_t total, const std::string& unit = "B");

private:
  std::function<double()> clock_;
  std::string             phase_;
  double                  workStart_  = -1.0;  // of everything; negative until the first update
  double                  phaseStart_ = 0.0;
  double                  lastShown_  = 0.0;
};

}  // namespace quilon
