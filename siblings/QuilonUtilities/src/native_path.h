#pragma once

/// @file
/// Wide paths as the file system takes them.

#include <filesystem>
#include <string>

/// @return the path; characters that are none become U+FFFD, so that no conversion fails and the path names nothing
std::filesystem::path NativePath(const std::wstring& path);
