#include "text/LineFile.h"

#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include <bundled/FED_FileLayer.h>

#include "text/ColumnText.h"
#include "text/Failure.h"

namespace quilon {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 20;

/// @param reason see SystemReason()
[[noreturn]] void FailToRead(const std::string& name, const std::string& reason)
{
  quilon::Fail(name + ": expected a file that can be read" + reason);
}

/// @return why what stands at a path cannot be read as a file; empty for a file
std::string ReasonAgainst(const std::filesystem::path& path)
{
  FED_FileLayer  files;
  FED_FileStatus status;
  if (const std::error_code error = files.GetStatus(path, status)) return ": " + error.message();
  switch (status.kind) {
    case FED_FileStatus::Nothing:
      return SystemReason(ENOENT);
    case FED_FileStatus::Folder:
      return SystemReason(EISDIR);
    case FED_FileStatus::Other:
      return ": it is a pipe or a device";
    case FED_FileStatus::File:
      break;
  }
  return "";
}

}  // namespace

std::ifstream OpenLineFile(const std::filesystem::path& path)
{
  // A pipe has no end to seek, and one that nobody writes to keeps who opens it waiting.
  if (const std::string reason = ReasonAgainst(path); !reason.empty()) FailToRead(path.string(), reason);
  errno = 0;
  std::ifstream in(path, std::ios::binary);
  if (!in) FailToRead(path.string(), SystemReason(errno));
  return in;
}

LineFile::LineFile(std::istream& in, std::string name, const ReadProgress& progress)
    : in_(in), name_(std::move(name)), progress_(progress)
{
  in_.seekg(0, std::ios::end);
  const std::streamoff size = in_.tellg();
  in_.seekg(0, std::ios::beg);
  if (!in_ || size < 0) FailToRead(name_, "");
  total_  = static_cast<std::uint64_t>(size);
  unread_ = total_;
  buffer_.resize(total_ < kBufferSize ? static_cast<std::size_t>(total_) + 1 : kBufferSize);
}

void LineFile::Fill()
{
  std::memmove(buffer_.data(), buffer_.data() + at_, end_ - at_);
  end_ -= at_;
  at_   = 0;
  errno = 0;
  in_.read(buffer_.data() + end_, static_cast<std::streamsize>(buffer_.size() - end_));
  const auto count = static_cast<std::size_t>(in_.gcount());
  if (in_.bad() || (in_.fail() && !in_.eof())) FailToRead(name_, SystemReason(errno));
  end_ += count;
  // A file that shrinks or grows under the reader ends where the stream ends.
  unread_ = in_.eof() || count > unread_ ? 0 : unread_ - count;
  if (progress_) progress_(total_ - (unread_ < total_ ? unread_ : total_), total_);
}

bool LineFile::NextLine()
{
  const char* newline  = nullptr;
  std::size_t searched = 0;
  for (;;) {
    const char* from = buffer_.data() + at_;
    newline          = static_cast<const char*>(std::memchr(from + searched, '\n', end_ - at_ - searched));
    if (newline != nullptr || unread_ == 0) break;
    searched = end_ - at_;
    if (searched == buffer_.size()) {
      FailAt(line_ + 1, "expected a line of at most " + std::to_string(buffer_.size()) + " bytes");
    }
    Fill();
  }
  if (newline == nullptr && at_ == end_) return false;

  const char* from = buffer_.data() + at_;
  isWhole_         = newline != nullptr;
  std::size_t size = isWhole_ ? static_cast<std::size_t>(newline - from) : end_ - at_;
  at_ += size + (isWhole_ ? 1 : 0);
  if (size > 0 && from[size - 1] == '\r') --size;
  text_ = {from, size};
  ++line_;
  return true;
}

void LineFile::GoTo(std::uint64_t position, std::int64_t line)
{
  const std::uint64_t buffered = total_ - unread_ - end_;  // where the buffer begins
  line_                        = line;
  text_                        = {};
  if (position >= buffered && position <= buffered + end_) {
    at_ = static_cast<std::size_t>(position - buffered);
    return;
  }
  in_.clear();
  in_.seekg(static_cast<std::streamoff>(position));
  if (!in_) FailToRead(name_, "");
  at_ = end_ = 0;
  unread_    = total_ - position;
}

const char* LineFile::Peek(std::size_t count)
{
  while (end_ - at_ < count && unread_ > 0) Fill();
  return end_ - at_ < count ? nullptr : buffer_.data() + at_;
}

void LineFile::Fail(const std::string& message) const { FailAt(line_, message); }

void LineFile::FailAt(std::int64_t line, const std::string& message) const
{
  quilon::Fail(name_ + ":" + std::to_string(line) + ": " + message);
}

void LineFile::FailExpected(const std::string& expected) const
{
  Fail("expected " + expected + ", found '" + Shown(text_) + "'");
}

void LineFile::FailAtEnd(const std::string& expected) const
{
  FailAt(line_ + 1, "expected " + expected + ", found the end of the file");
}

void LineFile::FailColumn(const char* what, std::size_t first, std::size_t width) const
{
  FailAt(line_, "expected " + std::string(what) + " of " + std::to_string(width) + " columns from column " +
                    std::to_string(first) + ", found '" + Shown(Columns(text_, first, width)) + "'");
}

void LineFile::ExpectTitles(std::initializer_list<std::string_view> titles)
{
  for (const std::string_view title : titles) {
    const std::string expected = "the title '" + std::string(title) + "'";
    if (!NextLine()) FailAtEnd(expected);
    if (WithoutTrailingBlanks(text_) != title) FailExpected(expected);
  }
}

void LineFile::ExpectWidth(std::size_t width) const
{
  const std::size_t found = WithoutTrailingBlanks(text_).size();
  if (found != width) Fail("expected a row of " + std::to_string(width) + " columns, found " + std::to_string(found));
}

double LineFile::GetDouble(std::size_t first, std::size_t width) const
{
  const std::string_view column = Columns(text_, first, width);
  double                 value  = 0.0;
  if (column.size() != width || !ReadDouble(column, value)) FailColumn("a number", first, width);
  return value;
}

int LineFile::GetInteger(std::size_t first, std::size_t width) const
{
  const std::string_view column = Columns(text_, first, width);
  int                    value  = 0;
  if (column.size() != width || !ReadInteger(column, value)) FailColumn("a 32-bit integer", first, width);
  return value;
}

}  // namespace quilon
