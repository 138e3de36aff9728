#pragma once

/// @file
/// Names that every format can hold.

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace quilon {

/// A slash parts folders in HDF5, a dot names one, and control characters are no part of an XML file.
inline std::string ToArrayName(std::string name)
{
  const auto isBad = [](char c) { return c == '/' || c == '.' || static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
  std::replace_if(name.begin(), name.end(), isBad, '_');
  return name;
}

/// Lets no two arrays of points, nor of cells, have one name: a second one gets a number.
class UniqueNames
{
public:
  std::string Take(bool ofCells, const std::string& name)
  {
    std::string unique = name;
    for (int number = 2; !taken_.emplace(ofCells, unique).second; ++number)
      unique = name + '-' + std::to_string(number);
    return unique;
  }

private:
  std::set<std::pair<bool, std::string>> taken_;
};

}  // namespace quilon
