#include "text/OutputFile.h"

#include <string>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "text/Failure.h"

namespace quilon {

OutputFile::OutputFile(std::filesystem::path path) : path_(std::move(path)), place_(path_)
{
  std::error_code                    ignored;  // a file that is not there yet is as good as a plain one
  const std::filesystem::file_status status = std::filesystem::status(path_, ignored);
  if (is_directory(status)) Fail(path_.string() + ": expected a file to write, found a folder");
  if (is_regular_file(status)) place_ = std::filesystem::canonical(path_);
  if (is_regular_file(status) || !exists(status)) beside_ = place_.string() + ".tmp" + std::to_string(getpid());
  out_.open(beside_.empty() ? place_ : beside_, std::ios::binary);
  Check();
}

OutputFile::~OutputFile()
{
  out_.close();
  std::error_code ignored;  // gone when it was published
  if (!beside_.empty()) std::filesystem::remove(beside_, ignored);
}

void OutputFile::Write(std::string_view text)
{
  out_.write(text.data(), static_cast<std::streamsize>(text.size()));
  Check();
}

void OutputFile::Publish()
{
  out_.close();
  Check();
  if (beside_.empty()) return;
  std::error_code error;
  std::filesystem::rename(beside_, place_, error);
  if (error) Fail(path_.string() + ": expected a place for a file: " + error.message());
}

void OutputFile::Check() const
{
  if (!out_) Fail(path_.string() + ": expected a file that can be written");
}

void WriteFile(const std::filesystem::path& path, std::string_view text)
{
  OutputFile file(path);
  file.Write(text);
  file.Publish();
}

}  // namespace quilon
