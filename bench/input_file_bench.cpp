// How fast a deck is read line by line, beside other ways to find the same lines.
//   reader  FEMInputFile::ReadLine() until the end
//   getline std::getline() on a std::ifstream
//   tellg   std::getline() and tellg() on a std::ifstream, a position per line as the reader has one
//   fgets   std::fgets()
//   memchr  a walk over the mapped file
// Flags: --megabytes N  size of the deck (default 4; 200 says more)
//        --repeats N    passes of each case (default 3)
//        --folder PATH  where the deck is written (default: the temporary folder); it is deleted at the end
// Prints best and median MB/s of each case on a deck with LF and one with CR LF, and how they compare with getline,
// best with best. The passes of the cases take turns, so that a busy machine slows them alike; a first round warms the
// page cache.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "FEMInputFile.h"
#include "file_bench_options.h"

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& path)
{
  std::perror(path.string().c_str());
  std::exit(1);
}

// Three lines of nodes for each line of an element: what decks consist of.
void WriteDeck(const fs::path& path, std::uint64_t bytes, const char* lineEnd)
{
  std::FILE* file = std::fopen(path.string().c_str(), "wb");
  if (file == nullptr) Fail(path);
  std::mt19937_64                        random(20);
  std::uniform_real_distribution<double> value(-1000.0, 1000.0);
  std::fprintf(file, "*HEADING%s", lineEnd);
  for (int id = 1; static_cast<std::uint64_t>(std::ftell(file)) < bytes; ++id) {
    if (id % 4 != 0) {
      std::fprintf(file, "%d, %.9E, %.9E, %.9E%s", id, value(random), value(random), value(random), lineEnd);
    } else {
      std::fprintf(file, "%d, %d, %d, %d, %d, %d, %d, %d, %d%s", id, id, id + 1, id + 2, id + 3, id + 4, id + 5, id + 6,
                   id + 7, lineEnd);
    }
  }
  std::fclose(file);
}

class Reader : public FEMInputFile
{
public:
  explicit Reader(const fs::path& path) : FEMInputFile(L"bench", path.wstring(), L"", 0) {}

  std::uint64_t CountBytes()
  {
    Initialize();
    std::uint64_t bytes = 0;
    while (true) {
      ReadLine();
      if (end_of_file()) return bytes;
      bytes += GetCurrentLine().size() + 1;
    }
  }

  void ReadModel() override {}
  void CheckModel() override {}
  void ConvertModel() override {}
};

std::uint64_t ReadWithReader(const fs::path& path) { return Reader(path).CountBytes(); }

std::uint64_t ReadWithGetline(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  std::uint64_t bytes = 0;
  for (std::string line; std::getline(in, line);) bytes += line.size() + 1;
  return bytes;
}

std::uint64_t ReadWithTellg(const fs::path& path)
{
  std::ifstream  in(path, std::ios::binary);
  std::uint64_t  bytes     = 0;
  std::streamoff positions = 0;
  for (std::string line; std::getline(in, line);) {
    bytes += line.size() + 1;
    positions ^= in.tellg();
  }
  return positions == 0 ? 0 : bytes;
}

std::uint64_t ReadWithFgets(const fs::path& path)
{
  std::FILE* file = std::fopen(path.string().c_str(), "rb");
  if (file == nullptr) Fail(path);
  char          line[1024];
  std::uint64_t bytes = 0;
  while (std::fgets(line, sizeof line, file) != nullptr) bytes += std::strlen(line);
  std::fclose(file);
  return bytes;
}

std::uint64_t ReadWithMemchr(const fs::path& path)
{
  const int file = ::open(path.string().c_str(), O_RDONLY);
  if (file < 0) Fail(path);
  const std::size_t size = fs::file_size(path);
  void* const       map  = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
  if (map == MAP_FAILED) Fail(path);
  std::uint64_t     bytes = 0;
  const char*       at    = static_cast<const char*>(map);
  const char* const end   = at + size;
  while (at < end) {
    const auto* newline = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
    bytes += static_cast<std::uint64_t>(newline - at) + 1;
    at = newline + 1;
  }
  ::munmap(map, size);
  ::close(file);
  return bytes;
}

struct Case
{
  const char* name;
  std::uint64_t (*read)(const fs::path&);
  std::vector<double> seconds;
};

// Every line counts, with one byte for its line feed; of a carriage return only the reader and the file know.
void CompareCases(const fs::path& path, const char* title, int repeats)
{
  Case          cases[]  = {{"reader", ReadWithReader, {}},
                            {"getline", ReadWithGetline, {}},
                            {"tellg", ReadWithTellg, {}},
                            {"fgets", ReadWithFgets, {}},
                            {"memchr", ReadWithMemchr, {}}};
  std::uint64_t checksum = 0;
  for (int pass = 0; pass <= repeats; ++pass) {
    for (Case& one : cases) {
      const auto begin = std::chrono::steady_clock::now();
      checksum += one.read(path);
      const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
      if (pass > 0) one.seconds.push_back(seconds.count());
    }
  }
  const double megabytes = static_cast<double>(fs::file_size(path)) / 1e6;
  std::printf("%s: %.1f MB, %d passes (checksum %llu)\n", title, megabytes, repeats,
              static_cast<unsigned long long>(checksum));
  for (Case& one : cases) std::sort(one.seconds.begin(), one.seconds.end());
  for (const Case& one : cases) {
    std::printf("  %-8sbest %8.1f MB/s  median %8.1f MB/s  %5.3f times as fast as getline\n", one.name,
                megabytes / one.seconds.front(), megabytes / one.seconds[one.seconds.size() / 2],
                cases[1].seconds.front() / one.seconds.front());
  }
}

}  // namespace

int main(int argc, char** argv)
{
  std::uint64_t megabytes = 4;
  const auto    options =
      quilon_bench::ReadFileBenchOptions(argc, argv, {{"--megabytes", &megabytes, "size of the file"}});
  const fs::path path = quilon_bench::ScratchPath(options.folder, ".inp");
  for (const bool isDos : {false, true}) {
    WriteDeck(path, megabytes * 1000000, isDos ? "\r\n" : "\n");
    CompareCases(path, isDos ? "CR LF" : "LF", options.repeats);
  }
  fs::remove(path);
  return 0;
}
