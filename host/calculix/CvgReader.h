#pragma once

/// @file
/// Reader of the solver's .cvg files: how the iterations of increments converge.

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace quilon::calculix {

/// One iteration as the solver logged it. Residuals and corrections are percentages; 0 where there is none.
struct CvgRow
{
  int          step            = 0;
  int          increment       = 0;
  int          attempt         = 0;
  int          iteration       = 0;
  int          contactElements = 0;
  double       residualForce   = 0.0;
  double       correctionDisp  = 0.0;
  double       residualFlux    = 0.0;
  double       correctionTemp  = 0.0;
  std::int64_t line            = 0;  ///< from 1
};

/// Reads all rows in the file's order.
/// @throws FED_Failure "FILE:LINE: what was expected" for a file that ends within a row or has a damaged one
std::vector<CvgRow> ReadCvg(const std::filesystem::path& path);

/// The same from a seekable stream.
/// @param name stands for the file in messages
std::vector<CvgRow> ReadCvg(std::istream& in, const std::string& name);

}  // namespace quilon::calculix
