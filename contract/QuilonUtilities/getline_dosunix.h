#pragma once

/// @file
/// Lines of either convention.

#include "quilon_language.h"

#include <istream>
#include <string>

#include "quilon_contract_export.h"

/// std::getline(), then removes one carriage return at the line's end.
/// @return the stream, its state as std::getline() left it
QUILON_UTILITIES_API std::istream& getline_dosunix(std::istream& in, std::string& line);
