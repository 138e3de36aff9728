#pragma once

/// @file
/// Files that are there whole or not at all.

#include <filesystem>
#include <fstream>
#include <string_view>

namespace quilon {

/// A file that is written beside its place and takes it at the end. What is not published leaves no trace.
///
/// A link leads to the file that is replaced. What is no plain file, as /dev/null or a pipe, is written as it is.
class OutputFile
{
public:
  /// @throws FED_Failure "PATH: ..." when the file cannot be opened
  explicit OutputFile(std::filesystem::path path);
  OutputFile(const OutputFile&)            = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// @throws FED_Failure "PATH: ..." when the system refuses the text
  void Write(std::string_view text);

  /// For what writes to streams. What the system refuses shows in Publish().
  std::ostream& Stream() noexcept { return out_; }

  /// Puts the file into its place; one that is there is replaced.
  /// @throws FED_Failure "PATH: ..."
  void Publish();

private:
  void Check() const;

  std::filesystem::path path_;
  std::filesystem::path place_;   // links followed
  std::filesystem::path beside_;  // empty: written in place
  std::ofstream         out_;
};

/// Writes the whole text of a file.
/// @throws FED_Failure "PATH: ..."; the file is then as it was
void WriteFile(const std::filesystem::path& path, std::string_view text);

}  // namespace quilon
