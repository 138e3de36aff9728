#pragma once

/// @file
/// Parts of a database that several write at a time.

#include "quilon_language.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Numbers that the writer of a part alone takes. Plain: they travel to other processes.
struct FED_DatabasePart
{
  std::uint64_t firstSegment = 0;
  std::uint64_t firstBlock   = 0;
};

/// What records of parts go by: all ids and all names of user kinds of the database. Parts bring no others.
struct FED_PartBase
{
  std::vector<std::vector<int>> ids;  ///< by entity kind, in the order of their indices
  std::map<int, std::string>    userKindNames;
};
