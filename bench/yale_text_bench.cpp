// Reading a sparse matrix from Yale text against other readers of the same matrix from Matrix Market text.
//
// Cases, named read/<number of values>/<contestant>, time per value:
//   quilon    FED_YaleMatrixText::ReadYaleMatrix()
//   market    Eigen's loadMarket(), where its headers are there
// The matrix is random, with 17 digits a value and 20 values a row. Both files lie in the temporary folder and are read
// from memory: a pass before the measurement warms the page cache.
//
// Flags: --least=N and --most=N for the sizes, which double (65536), --rows=FILE, and those of Google Benchmark.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef QUILON_BENCH_EIGEN
#  include <Eigen/SparseCore>
#  include <unsupported/Eigen/SparseExtra>
#endif

#include <FED_YaleMatrixText.h>

#include "file_bench_options.h"
#include "id_patterns.h"
#include "keep_memory.h"
#include "ratio_reporter.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPerRow = 20;

struct Files
{
  explicit Files(std::size_t numValues)
      : yale(quilon_bench::ScratchPath(fs::temp_directory_path(), ".txt")),
        market(quilon_bench::ScratchPath(fs::temp_directory_path(), ".mtx"))
  {
    const std::size_t                      numRows = (numValues + kPerRow - 1) / kPerRow;
    std::mt19937_64                        random(20250109);
    std::uniform_real_distribution<double> value(-1000.0, 1000.0);
    std::vector<double>                    values(numValues);
    for (double& one : values) one = value(random);
    const auto columnOf = [&](std::size_t i) { return (i / kPerRow + 37 * (i % kPerRow)) % (numRows + 740); };

    std::FILE* out = Open(yale);
    std::fprintf(out, "%zu\n%zu\n%zu\n", numValues, numRows, numRows + 740);
    for (const double one : values) std::fprintf(out, "%.17g\n", one);
    for (std::size_t i = 0; i < numValues; ++i) std::fprintf(out, "%zu\n", columnOf(i));
    for (std::size_t row = 0; row <= numRows; ++row) std::fprintf(out, "%zu\n", std::min(row * kPerRow, numValues));
    std::fclose(out);

    out = Open(market);
    std::fprintf(out, "%%%%MatrixMarket matrix coordinate real general\n%zu %zu %zu\n", numRows, numRows + 740,
                 numValues);
    for (std::size_t i = 0; i < numValues; ++i)
      std::fprintf(out, "%zu %zu %.17g\n", i / kPerRow + 1, columnOf(i) + 1, values[i]);
    std::fclose(out);
  }
  Files(const Files&)            = delete;
  Files& operator=(const Files&) = delete;
  ~Files()
  {
    fs::remove(yale);
    fs::remove(market);
  }

  const fs::path yale;
  const fs::path market;

private:
  static std::FILE* Open(const fs::path& path)
  {
    std::FILE* const file = std::fopen(path.string().c_str(), "wb");
    if (file != nullptr) return file;
    std::perror(path.string().c_str());
    std::exit(1);
  }
};

double ReadYale(const Files& files)
{
  return FED_YaleMatrixText::ReadYaleMatrix(files.yale.wstring()).GetValues().GetData()[0];
}

#ifdef QUILON_BENCH_EIGEN
double ReadMarket(const Files& files)
{
  Eigen::SparseMatrix<double, Eigen::RowMajor> matrix;
  if (!Eigen::loadMarket(matrix, files.market.string())) std::abort();
  return matrix.valuePtr()[0];
}
#endif

struct Contestant
{
  const char* name;
  double (*read)(const Files&);
};

constexpr Contestant kContestants[] = {
    {"quilon", ReadYale},
#ifdef QUILON_BENCH_EIGEN
    {"market", ReadMarket},
#endif
};

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 65536, 65536);
  const std::string              rows  = quilon_bench::TakeRowsFile(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  std::vector<std::unique_ptr<Files>> allFiles;
  for (const std::size_t size : sizes) {
    const Files& files = *allFiles.emplace_back(std::make_unique<Files>(size));
    for (const Contestant& contestant : kContestants) {
      benchmark::RegisterBenchmark(("read/" + std::to_string(size) + '/' + contestant.name).c_str(),
                                   [&files, size, read = contestant.read](benchmark::State& state) {
                                     double used = read(files);
                                     for (auto _ : state) used += read(files);
                                     benchmark::DoNotOptimize(used);
                                     state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(size));
                                   });
    }
  }

  quilon_bench::RatioReporter reporter("yale-text", {"quilon", "market"}, rows);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
