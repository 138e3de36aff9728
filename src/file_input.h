#pragma once

/// @file
/// File input that knows its position.

#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <streambuf>
#include <string>

/// Reads ahead of a file buffer and answers where the stream stands from what it has read. The file buffer itself asks
/// the system each time, which costs more than reading the line does.
class PositionedBuffer : public std::streambuf
{
public:
  /// @param file open and at its beginning; borrowed, and read and moved through this buffer alone
  explicit PositionedBuffer(std::filebuf& file);

  /// FileInput::TakeLine() as far as the buffer is concerned.
  bool TakeLine(std::string& line, std::streamoff& position)
  {
    const char* const begin = gptr();
    const std::size_t size  = static_cast<std::size_t>(egptr() - begin);
    if (size == 0 || end_ < 0) return false;
    const auto* feed = static_cast<const char*>(std::memchr(begin, '\n', size));
    if (feed == nullptr) return false;

    position                 = end_ - static_cast<off_type>(size);
    const std::size_t length = static_cast<std::size_t>(feed - begin);
    line.assign(begin, length - (length > 0 && feed[-1] == '\r' ? 1 : 0));
    gbump(static_cast<int>(length + 1));
    return true;
  }

protected:
  int_type        underflow() override;
  int_type        pbackfail(int_type c) override;
  std::streamsize showmanyc() override;
  pos_type        seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode which) override;
  pos_type        seekpos(pos_type position, std::ios::openmode which) override;

private:
  std::filebuf&           file_;
  std::unique_ptr<char[]> buffer_;
  off_type                end_;  // where in the file the buffer ends; -1 in what has no positions, as a pipe
};

/// A std::ifstream, opened in binary mode, whose tellg() costs no call of the system. The stream's own file buffer
/// holds the open file: is_open() and close() say and do what they do elsewhere.
class FileInput final : public std::ifstream
{
public:
  /// In the fail state when the file cannot be opened.
  explicit FileInput(const std::filesystem::path& path);
  ~FileInput() override;

  /// tellg() and getline_dosunix() in one, for most lines: those that have been read ahead to their line feed. The two
  /// calls take twice as long as the line itself does.
  /// @param line     replaced by the line
  /// @param position replaced by the place of its first byte
  /// @return false when it takes more than that, also to find out that there is no line; nothing has changed then
  bool TakeLine(std::string& line, std::streamoff& position)
  {
    return good() && is_open() && tie() == nullptr && std::ios::rdbuf() == &buffer_ && buffer_.TakeLine(line, position);
  }

private:
  PositionedBuffer buffer_;
};
