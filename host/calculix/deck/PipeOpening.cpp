#include "calculix/deck/PipeOpening.h"

#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include "progress/Interrupt.h"

namespace quilon::calculix {

PipeOpening::PipeOpening(const std::filesystem::path& path)
{
  // Short beside the time in which people notice that Ctrl-C does nothing.
  constexpr int   kMilliseconds = 50;
  std::error_code ignored;  // whoever opens the file says what is wrong with it
  if (!std::filesystem::is_fifo(path, ignored)) return;
  reading_ = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (reading_ < 0) return;
  try {
    // Bytes, or a writer that has gone again without any.
    pollfd news = {reading_, POLLIN, 0};
    do ThrowIfInterrupted();
    while (poll(&news, 1, kMilliseconds) <= 0);
  } catch (...) {
    close(reading_);
    throw;
  }
  writing_ = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
}

PipeOpening::~PipeOpening()
{
  if (writing_ >= 0) close(writing_);
  if (reading_ >= 0) close(reading_);
}

}  // namespace quilon::calculix
