#pragma once

/// @file
/// Wide paths as the file system takes them, and back.

#include "quilon_language.h"

#include <filesystem>
#include <string>

#include "quilon_contract_export.h"

/// The standard library converts wide paths by the process's locale, which knows no letter beyond ASCII until a program
/// sets one.
/// @return the path; characters that are none become U+FFFD, so that no conversion fails and the path names nothing
QUILON_UTILITIES_API std::filesystem::path NativePath(const std::wstring& path);

/// The way back: UTF-8 whatever the locale of the process.
/// @throws FED_Failure if the path holds bytes that are no UTF-8: another path would come of them
QUILON_UTILITIES_API std::wstring WidePath(const std::filesystem::path& path);
