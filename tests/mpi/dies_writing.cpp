// Loaded into a process before all else, it kills the process at its first write into a segment of a database.

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

bool IsSegment(int file)
{
  char          path[4096];
  const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path - 1);
  if (length <= 0) return false;
  path[length] = '\0';
  return std::strstr(path, "/segment-") != nullptr;
}

template <typename Call>
ssize_t Write(const char* name, int file, const void* bytes, size_t count, off64_t offset)
{
  if (IsSegment(file)) std::raise(SIGKILL);
  void* const found = dlsym(RTLD_NEXT, name);
  Call        call  = nullptr;
  std::memcpy(&call, &found, sizeof call);
  return call(file, bytes, count, offset);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] ssize_t pwrite(int file, const void* bytes, size_t count, off_t offset)
{
  return Write<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite", file, bytes, count, offset);
}

extern "C" [[gnu::visibility("default")]] ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t offset)
{
  return Write<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64", file, bytes, count, offset);
}
