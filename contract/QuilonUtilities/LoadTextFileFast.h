#pragma once

/// @file
/// Whole text files.

#include "quilon_language.h"

#include <cstddef>
#include <string>
#include <vector>

#include "quilon_contract_export.h"

/// Reads a text file in one piece and splits it at line feeds; a carriage return before one is removed.
/// @param path      null-terminated
/// @param lines     replaced by the file's lines; a last line without a line feed counts, an empty one does not
/// @param lineCount replaced by the number of lines
/// @return false when the file cannot be read; both outputs are then empty, and errno, where it is set, tells why
QUILON_UTILITIES_API bool LoadTextFileFast(const wchar_t* path, std::vector<std::string>& lines,
                                           std::size_t& lineCount);
