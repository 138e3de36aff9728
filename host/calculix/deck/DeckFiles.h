#pragma once

/// @file
/// The files of a deck, without what they say.

#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

#include "calculix/deck/DeckModel.h"

namespace quilon::calculix {

/// Reads a deck for its include statements.
/// @return the deck first, then the files in the order of reading; a file that is included twice is there twice
/// @throws FED_Failure "PATH:LINE: ..." when an include statement cannot be followed
std::vector<DeckFile> ReadDeckFiles(const std::filesystem::path& deck, const DeckOptions& options);

/// Lines of one file that follow each other, in an expanded deck and in the file they come from.
struct DeckLineRun
{
  std::int64_t  first = 0;  ///< line of the expanded deck, from 1
  std::int64_t  last  = 0;
  std::uint32_t file  = 0;  ///< position in DeckExpansion::files
  std::int64_t  line  = 0;  ///< that the first one is in the file
};

struct DeckExpansion
{
  std::vector<DeckFile>    files;
  std::vector<DeckLineRun> runs;  ///< ascending, without gaps
};

/// Hands out the lines of a deck in the order in which the solver reads them: in place of each include statement stand
/// the lines of its file.
/// @param write receives each line with its line feed
/// @throws as ReadDeckFiles(), and what write throws
DeckExpansion ExpandDeck(const std::filesystem::path& deck, const DeckOptions& options,
                         const std::function<void(std::string_view line)>& write);

}  // namespace quilon::calculix
