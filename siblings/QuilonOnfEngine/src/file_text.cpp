#include "file_text.h"

#include <utility>

#include "QuilonUtilities/FED_Failure.h"

FileStamp GetStamp(const FED_FileStatus& status) { return {status.size, status.number, status.changed}; }

FED_FileStatus GetFileStatus(FED_FileLayer& files, const std::filesystem::path& path)
{
  FED_FileStatus status;
  RequireSuccess(files.GetStatus(path, status), path, "look at");
  return status;
}

std::optional<StoreFile> FindFile(FED_FileLayer& files, const std::filesystem::path& path)
{
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  const std::error_code error  = files.Open(path, FED_FileLayer::Read, handle);
  if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) return std::nullopt;
  if (error == std::errc::is_a_directory) ThrowFileFailure(path, "no plain file: " + error.message());
  if (error == FED_FileLayer::NotAFile()) ThrowFileFailure(path, "no plain file");
  RequireSuccess(error, path, "open");
  return StoreFile(files, path, handle);
}

FileText ReadAllOf(const StoreFile& file)
{
  FileText text;
  text.size = static_cast<std::size_t>(file.GetSize());
  // Not a vector: filling a hundred megabytes with zeros first takes as long as reading them.
  text.bytes = std::make_unique_for_overwrite<char[]>(text.size);
  file.ReadAt(0, text.bytes.get(), text.size);
  return text;
}

FileText ReadFileText(FED_FileLayer& files, const std::filesystem::path& path)
{
  const std::optional<StoreFile> file = FindFile(files, path);
  if (!file) ThrowFileFailure(path, "no such file");
  return ReadAllOf(*file);
}
