#pragma once

/// @file
/// Reader of the solver's .sta files: which total time an increment of a step has.

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace quilon::calculix {

/// One increment as the solver logged it.
struct StaRow
{
  int          step          = 0;
  int          increment     = 0;
  int          attempt       = 0;
  int          iterations    = 0;
  double       totalTime     = 0.0;   ///< from the start of the job
  double       stepTime      = 0.0;   ///< from the start of the step
  double       incrementTime = 0.0;   ///< length of the increment
  bool         converged     = true;  ///< false for an attempt that the solver cut back
  std::int64_t line          = 0;     ///< from 1
};

/// Reads all rows in the file's order. An increment that is logged twice is there twice.
/// @throws FED_Failure "FILE:LINE: what was expected" for a file that ends within a row or has a damaged one
std::vector<StaRow> ReadSta(const std::filesystem::path& path);

/// The same from a seekable stream.
/// @param name stands for the file in messages
std::vector<StaRow> ReadSta(std::istream& in, const std::string& name);

}  // namespace quilon::calculix
