#include "OutputFile.h"

#include <string>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "Failure.h"

namespace quilon {

OutputFile::OutputFile(std::filesystem::path path)
    : path_(std::move(path)), beside_(path_.string() + ".tmp" + std::to_string(getpid()))
{
  if (std::filesystem::is_directory(path_)) Fail(path_.string() + ": expected a file to write, found a folder");
  out_.open(beside_, std::ios::binary);
  Check();
}

OutputFile::~OutputFile()
{
  out_.close();
  std::error_code ignored;  // gone when it was published
  std::filesystem::remove(beside_, ignored);
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
  std::filesystem::rename(beside_, path_);
}

void OutputFile::Check() const
{
  if (!out_) Fail(path_.string() + ": expected a file that can be written");
}

}  // namespace quilon
