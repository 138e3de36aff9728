#pragma once

/// @file
/// Decks of a test and what is said about them.

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "calculix/deck/DeckModel.h"
#include "TempFolder.h"

namespace quilon_test {

/// A folder to write decks into. Messages are compared without the folder's name.
class DeckFolder
{
public:
  /// Writes a file, and the folders above it.
  std::filesystem::path Write(const std::string& name, std::string_view text) const
  {
    const std::filesystem::path path = folder_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }

  /// @return the text with "" for "FOLDER/" and "." for "FOLDER"
  std::string WithoutFolder(std::string text) const
  {
    const std::string folder = folder_.GetPath().string();
    for (std::size_t at = text.find(folder); at != std::string::npos; at = text.find(folder, at)) {
      const bool isWhole = text.compare(at + folder.size(), 1, "/") == 0;
      text.replace(at, folder.size() + (isWhole ? 1 : 0), isWhole ? "" : ".");
    }
    return text;
  }

private:
  TempFolder folder_;
};

}  // namespace quilon_test
