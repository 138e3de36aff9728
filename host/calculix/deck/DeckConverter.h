#pragma once

/// @file
/// Converted copies of a deck and of all files that it includes.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "calculix/deck/DeckModel.h"

namespace quilon::calculix {

struct DeckConversion
{
  /// Copies of included files are named with "_" and this before their extension: letters, digits, '-' and '_'.
  std::string           suffix;
  std::filesystem::path output;  ///< the copy of the deck itself, in the folder that the solver runs in
  /// The files of the deck are copied to this folder first, and the copies converted there; empty: beside the files. A
  /// relative `output` is then one of this folder.
  std::filesystem::path outFolder;
  bool                  keepLineEnds = false;  ///< line ends as they are in the deck; else a line feed everywhere

  int                lengthExponent = 0;  ///< a length of 1 becomes 10^lengthExponent; see DeckLineConverter
  std::optional<int> firstNode;           ///< number that the least node number becomes; the others follow
  bool               stripComments = false;
};

struct DeckConversionReport
{
  std::vector<std::filesystem::path> files;  ///< written, in the order of reading, each once
  std::size_t                        lines = 0;
};

/// @param text "mm:m": of um, mm, cm, dm, m, km
/// @return the exponent of ten that a length is multiplied by
/// @throws FED_Failure "--units is ..." for anything else
int ParseLengthUnits(const std::string& text);

/// Converts through the echo of the deck reader: the copies of included files lie beside the files, and include
/// statements name the copies. Whatever can be found out by reading is found out before a file is written.
/// @throws FED_Failure when the deck cannot be read or converted ("PATH:LINE: ..."), when a copy would overwrite a file
///         of the deck, and when a copy cannot be written; no copy is left then
DeckConversionReport ConvertDeck(const std::filesystem::path& deck, const DeckOptions& options,
                                 const DeckConversion& conversion);

}  // namespace quilon::calculix
