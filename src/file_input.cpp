#include "file_input.h"

#include <algorithm>

namespace {

constexpr std::size_t kReadAhead = std::size_t{1} << 16;

}  // namespace

PositionedBuffer::PositionedBuffer(std::filebuf& file)
    : file_(file), buffer_(new char[kReadAhead]), end_(file.pubseekoff(0, std::ios::cur, std::ios::in))
{}

PositionedBuffer::int_type PositionedBuffer::underflow()
{
  if (gptr() < egptr()) return traits_type::to_int_type(*gptr());

  std::streamsize wanted = kReadAhead;
  if (end_ < 0) {
    // What is there, not what would fill the buffer: a pipe or a terminal delivers its lines as they come.
    wanted = traits_type::eq_int_type(file_.sgetc(), traits_type::eof()) ? 0 : std::min(file_.in_avail(), wanted);
  }

  const std::streamsize count = file_.sgetn(buffer_.get(), wanted);
  if (count == 0) return traits_type::eof();

  setg(buffer_.get(), buffer_.get(), buffer_.get() + count);
  if (end_ >= 0) end_ += count;
  return traits_type::to_int_type(*gptr());
}

PositionedBuffer::int_type PositionedBuffer::pbackfail(int_type c)
{
  if (gptr() > eback()) {
    gbump(-1);
  } else {
    const off_type here = off_type(seekoff(0, std::ios::cur, std::ios::in));
    if (here <= 0 || off_type(seekoff(here - 1, std::ios::beg, std::ios::in)) < 0) return traits_type::eof();
    if (traits_type::eq_int_type(underflow(), traits_type::eof())) return traits_type::eof();
  }
  if (!traits_type::eq_int_type(c, traits_type::eof())) *gptr() = traits_type::to_char_type(c);
  return traits_type::not_eof(c);
}

std::streamsize PositionedBuffer::showmanyc() { return file_.in_avail(); }

PositionedBuffer::pos_type PositionedBuffer::seekoff(off_type offset, std::ios::seekdir from, std::ios::openmode)
{
  const pos_type failed(off_type(-1));
  if (!file_.is_open()) {
    setg(nullptr, nullptr, nullptr);  // a closed file delivers nothing more, what was read ahead included
    return failed;
  }
  if (from == std::ios::cur) {
    if (end_ < 0) return failed;
    const off_type here = end_ - (egptr() - gptr());
    if (offset == 0) return pos_type(here);
    offset += here;
    from = std::ios::beg;
  }
  const pos_type moved = file_.pubseekoff(offset, from, std::ios::in);
  if (moved == failed) return failed;  // and the stream stays where it is
  setg(nullptr, nullptr, nullptr);
  end_ = off_type(moved);
  return moved;
}

PositionedBuffer::pos_type PositionedBuffer::seekpos(pos_type position, std::ios::openmode which)
{
  return seekoff(off_type(position), std::ios::beg, which);
}

FileInput::FileInput(const std::filesystem::path& path) : std::ifstream(path, std::ios::binary), buffer_(*rdbuf())
{
  // Not the stream's own rdbuf(), which cannot be exchanged, but the one that all reading goes through. Exchanging it
  // clears the state.
  const std::ios::iostate state = rdstate();
  std::ios::rdbuf(&buffer_);
  setstate(state);
}

// The stream outlives the buffer by its base class's destructor.
FileInput::~FileInput() { std::ios::rdbuf(std::ifstream::rdbuf()); }
