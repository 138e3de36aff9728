#pragma once

/// @file
/// File input that knows its position.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ios>
#include <memory>
#include <streambuf>

/// Reads ahead of a file buffer and answers where the stream stands from what it has read. The file buffer itself asks
/// the system each time, which costs more than reading the line does.
class PositionedBuffer : public std::streambuf
{
public:
  /// @param file open and at its beginning; borrowed, and read and moved through this buffer alone
  explicit PositionedBuffer(std::filebuf& file);

protected:
  int_type        underflow() override;
  std::streamsize showmanyc() override;
  pos_type        seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode which) override;
  pos_type        seekpos(pos_type position, std::ios::openmode which) override;

private:
  std::filebuf&           file_;
  std::unique_ptr<char[]> buffer_;  // the last character of the former read, then what was read ahead
  off_type                end_;  // where in the file the read-ahead part ends; -1 in what has no positions, as a pipe
};

/// A std::ifstream, opened in binary mode, whose tellg() costs no call of the system. The stream's own file buffer
/// holds the open file: is_open() and close() say and do what they do elsewhere.
class FileInput : public std::ifstream
{
public:
  /// In the fail state when the file cannot be opened.
  explicit FileInput(const std::filesystem::path& path);
  ~FileInput() override;

private:
  PositionedBuffer buffer_;
};
