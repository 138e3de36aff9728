#pragma once

/// @file
/// Parts of file names.

#include "quilon_language.h"

#include "quilon_contract_export.h"

namespace QuilonFileNameUtil {

/// @param path null-terminated
/// @return the last '.' behind the last '/' or '\\', or the terminating null when the file name has no '.'
QUILON_UTILITIES_API const wchar_t* path_find_ext(const wchar_t* path);

}  // namespace QuilonFileNameUtil
