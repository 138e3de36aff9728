#pragma once

/// @file
/// A mesh and one step of its results in a file of VTK's XML (.vtu), and the list of such files (.pvd).

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

namespace quilon {

class GridSource;

/// Writes a step: a head of XML, then the numbers as they are in memory ("raw appended data"). Their sizes have 32
/// bits, or 64 where an array has 4 GiB or more.
/// @param step          0 <= step < source.NumSteps()
/// @param largestNarrow the most bytes of an array for which 32 bits do
void WriteVtu(GridSource& source, std::size_t step, std::ostream& out, std::uint64_t largestNarrow = 0xFFFFFFFFU);

/// @param times shape [files.size()]
/// @param files relative to the folder of the list
/// @return the text of the list
std::string PvdText(const std::vector<double>& times, const std::vector<std::filesystem::path>& files);

}  // namespace quilon
