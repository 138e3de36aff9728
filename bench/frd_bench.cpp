// How fast a text .frd file is read.
//   scan   a bare pass over the same file that only converts its columns with std::from_chars
//   read   ReadFrd into a sink that keeps nothing
//   import ImportResults into a database in memory, nothing derived
// Flags: --megabytes N  size of the file (default 4; 500 says more)
//        --repeats N    passes of each case (default 3)
//        --folder PATH  where the file is written (default: the temporary folder); it is deleted at the end
// Prints best and median MB/s of each case and how they compare with the scan, best with best. The first pass warms the
// page cache.

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>

#include "calculix/FrdReader.h"
#include "file_bench_options.h"
#include "import/ResultImport.h"

namespace {

namespace fs = std::filesystem;
using quilon::calculix::FrdDataset;
using quilon::calculix::FrdElement;

// Nodes, tetrahedra, then displacements and stresses of increment after increment until the size is reached. One value
// in eight is tiny, as rounding leaves them where a result is zero.
void WriteFile(const fs::path& path, std::uint64_t bytes)
{
  std::FILE* file = std::fopen(path.string().c_str(), "wb");
  if (file == nullptr) {
    std::perror(path.string().c_str());
    std::exit(1);
  }
  std::mt19937_64                        random(20);
  std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
  const auto                             value = [&] {
    const int exponent = random() % 8 == 0 ? -18 - static_cast<int>(random() % 8) : 3 - static_cast<int>(random() % 8);
    return mantissa(random) * std::pow(10.0, exponent);
  };
  const int numNodes = static_cast<int>(std::clamp<std::uint64_t>(bytes / 4000, 10, 200000));
  std::fprintf(file, "    1C\n    2C                  %12d                                     1\n", numNodes);
  for (int id = 1; id <= numNodes; ++id)
    std::fprintf(file, " -1%10d%12.5E%12.5E%12.5E\n", id, mantissa(random), mantissa(random), mantissa(random));
  std::fprintf(file, " -3\n    3C                  %12d                                     1\n", numNodes - 3);
  for (int id = 1; id <= numNodes - 3; ++id)
    std::fprintf(file, " -1%10d%5d%5d%5d\n -2%10d%10d%10d%10d\n", id, 3, 0, 1, id, id + 1, id + 2, id + 3);
  std::fprintf(file, " -3\n");
  int counter = 0;
  for (int increment = 1; static_cast<std::uint64_t>(std::ftell(file)) < bytes; ++increment) {
    for (const int numValues : {3, 6}) {
      std::fprintf(file, "    1PSTEP              %12d%12d%12d\n", ++counter, increment, 1);
      std::fprintf(file, "  100CL%5d%12.5E%12d                     0%5d           1\n", 100 + increment % 900,
                   static_cast<double>(increment), numNodes, increment % 100000);
      std::fprintf(file, " -4  %-8s%5d%5d\n", numValues == 3 ? "DISP" : "STRESS", numValues, 1);
      for (int i = 0; i < numValues; ++i) std::fprintf(file, " -5  C%-7d%5d%5d%5d%5d\n", i + 1, 1, 2, i + 1, 0);
      for (int id = 1; id <= numNodes; ++id) {
        std::fprintf(file, " -1%10d", id);
        for (int i = 0; i < numValues; ++i) std::fprintf(file, "%12.5E", value());
        std::fputc('\n', file);
      }
      std::fprintf(file, " -3\n");
    }
  }
  std::fprintf(file, " 9999\n");
  std::fclose(file);
}

// The least that any reader of the file does: finds its lines and converts their columns, and checks nothing.
double Scan(const fs::path& path)
{
  std::ifstream     in(path, std::ios::binary);
  std::vector<char> buffer(std::size_t{1} << 20);
  std::size_t       kept = 0;
  double            sum  = 0.0;
  while (in) {
    in.read(buffer.data() + kept, static_cast<std::streamsize>(buffer.size() - kept));
    const char* at  = buffer.data();
    const char* end = buffer.data() + kept + in.gcount();
    for (;;) {
      const auto* newline = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at)));
      if (newline == nullptr) break;
      if (newline - at > 25 && std::memcmp(at, " -1", 3) == 0 && (newline - at - 13) % 12 == 0) {
        int id = 0;
        std::from_chars(std::find_if(at + 3, at + 13, [](char c) { return c != ' '; }), at + 13, id);
        sum += id;
        for (const char* column = at + 13; column < newline; column += 12) {
          double value = 0.0;
          std::from_chars(column + (*column == ' ' ? 1 : 0), column + 12, value);
          sum += value;
        }
      }
      at = newline + 1;
    }
    kept = static_cast<std::size_t>(end - at);
    std::memmove(buffer.data(), at, kept);
  }
  return sum;
}

class NullSink : public quilon::calculix::FrdSink
{
public:
  double sum = 0.0;

  void OnNodes(std::span<const int> ids, std::span<const double> coordinates) override
  {
    sum += ids.front() + coordinates.back();
  }
  void OnElements(std::span<const FrdElement> elements) override { sum += elements.front().nodes[0]; }
  bool OnDatasetBegin(const FrdDataset&) override { return true; }
  void OnRows(const FrdDataset&, std::span<const int> ids, std::span<const double> values, std::int64_t) override
  {
    sum += ids.front() + values.back();
  }
  void OnDatasetEnd(const FrdDataset&) override {}
};

double Read(const fs::path& path)
{
  NullSink sink;
  quilon::calculix::ReadFrd(path, sink);
  return sink.sum;
}

double Import(const fs::path& path)
{
  FED_ResultDatabase    database;
  OnfResultRequestFile  nothing;
  quilon::ImportOptions options;
  options.requests = &nothing;
  return static_cast<double>(quilon::ImportResults({path}, database, options).blocks);
}

// Best and median seconds of some passes.
struct Timing
{
  double best   = 0.0;
  double median = 0.0;
};

template <class Case>
Timing Measure(int repeats, double& used, Case&& run)
{
  std::vector<double> seconds;
  for (int i = 0; i < repeats; ++i) {
    const auto start = std::chrono::steady_clock::now();
    used += run();
    seconds.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::sort(seconds.begin(), seconds.end());
  return {seconds.front(), seconds[seconds.size() / 2]};
}

}  // namespace

int main(int argc, char** argv)
{
  std::uint64_t megabytes = 4;
  const auto    options =
      quilon_bench::ReadFileBenchOptions(argc, argv, {{"--megabytes", &megabytes, "size of the file"}});
  const fs::path path = quilon_bench::ScratchPath(options.folder, ".frd");
  WriteFile(path, megabytes * 1000000);
  const double size = static_cast<double>(fs::file_size(path)) / 1e6;

  double       used     = Scan(path);  // warms the page cache
  const Timing scan     = Measure(options.repeats, used, [&] { return Scan(path); });
  const Timing read     = Measure(options.repeats, used, [&] { return Read(path); });
  const Timing imported = Measure(options.repeats, used, [&] { return Import(path); });
  fs::remove(path);

  std::printf("%.1f MB, %d passes (checksum %g)\n", size, options.repeats, used);
  const auto print = [&](const char* name, const Timing& timing) {
    std::printf("%-7sbest %8.1f MB/s  median %8.1f MB/s  %5.2f times as fast as the scan\n", name, size / timing.best,
                size / timing.median, scan.best / timing.best);
  };
  print("scan", scan);
  print("read", read);
  print("import", imported);
  return 0;
}
