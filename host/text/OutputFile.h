#pragma once

/// @file
/// Files that are there whole or not at all.

#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>
#include <string_view>
#include <system_error>

#include <bundled/FED_FileLayer.h>

namespace quilon {

/// A file that is written beside its place, under a name that nobody can foresee, and takes it at the end with the
/// permissions of the file that it replaces. What is not published leaves no trace.
///
/// A link leads to the file that is replaced. What is no plain file, as /dev/null or a pipe, is written as it is.
/// The files of a working database are never replaced: see CheckOutputFile().
class OutputFile
{
public:
  /// @throws FED_Failure "PATH: ..." when the file cannot be opened or CheckOutputFile() refuses it
  explicit OutputFile(std::filesystem::path path);
  OutputFile(const OutputFile&)            = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();

  /// @throws FED_Failure "PATH: ..." when the system refuses the text
  void Write(std::string_view text);

  /// For what writes to streams. What the system refuses shows in Publish().
  std::ostream& Stream() noexcept { return out_; }

  /// For what writes files by their path: that of the file beside, in place of the stream.
  /// @throws FED_Failure "PATH: ..." for what is no plain file
  const std::filesystem::path& PathToWrite() const;

  /// Writes the text of a file beside that an object in this process or another has finished empty and will publish.
  /// @param beside of PathToWrite()
  /// @param path   of the file itself, for messages
  /// @throws FED_Failure "PATH: ..." when the system refuses the text
  static void WriteBeside(const std::filesystem::path& beside, const std::filesystem::path& path,
                          const std::function<void(std::ostream&)>& write);

  /// Closes the file, which Publish() then puts into its place. For many files that take their places together.
  /// @throws FED_Failure "PATH: ..." when the system refuses the text
  void Finish();

  /// Puts the file into its place; one that is there is replaced.
  /// @throws FED_Failure "PATH: ..."
  void Publish();

private:
  void Check() const;

  /// Text on its way to a file of the layer.
  class Buffer;
  class InPlaceBuffer;

  std::filesystem::path          path_;
  std::filesystem::path          place_;   // links followed
  std::filesystem::path          beside_;  // empty: written in place
  bool                           isFinished_ = false;
  std::error_code                openError_;
  FED_FileLayer                  files_;
  std::unique_ptr<InPlaceBuffer> inPlace_;
  std::unique_ptr<Buffer>        buffer_;  // of the file beside
  std::ostream                   out_{static_cast<std::streambuf*>(nullptr)};
};

/// For a file that is written at the end of long work, to be called before it.
/// @throws FED_Failure "PATH: ..." for a folder and for a file in the folder of a working database, links followed: one
///         whose name ends in .fed or that holds a manifest
void CheckOutputFile(const std::filesystem::path& path);

/// Writes the whole text of a file.
/// @throws FED_Failure "PATH: ..."; the file is then as it was
void WriteFile(const std::filesystem::path& path, std::string_view text);

}  // namespace quilon
