#include "terminal/Output.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include "text/Failure.h"

namespace quilon {

namespace {

[[noreturn]] void FailToWrite(int error)
{
  if (error == EPIPE) throw BrokenPipe();
  Fail("standard output: " + std::generic_category().message(error));
}

}  // namespace

void Output::Write(std::string_view text)
{
  if (prepare_) prepare_();
  if (std::fwrite(text.data(), 1, text.size(), file_) != text.size()) FailToWrite(errno);
}

void Output::Flush()
{
  if (std::fflush(file_) != 0) FailToWrite(errno);
}

}  // namespace quilon
