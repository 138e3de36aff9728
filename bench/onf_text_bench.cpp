// ONF text against bare scans and streams. A block of tensors with ids from 1, six doubles of 16 or 17 digits a row.
//
// Cases, named <operation>/<rows>/<contestant>, time per row, MB/s of text:
//   read      the block's file becomes records
//   write     records become the block's file
// Contestants:
//   database  the text database: opened, the block asked for; or published, brought to the disk and renamed
//   scan      the file in one buffer and std::from_chars, the numbers summed and not kept; or std::to_chars into one
//             buffer, written at once and not brought to the disk
//   stream    std::ifstream and operator>>; or std::ofstream and operator<< with 17 digits
//
// Flags: --least=N and --most=N for the rows, which double (131072), and those of Google Benchmark.

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "id_patterns.h"
#include "keep_memory.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "ratio_reporter.h"
#include "TempFolder.h"

namespace {

constexpr std::size_t kComponents = 6;
constexpr const char* kBlockFile  = "nodal-stress_it0.onf";

const FED_DataDescriptor& Key()
{
  static const FED_DataDescriptor key(0, static_cast<FED_OnfId>(521));
  return key;
}

/// Shape [rows, 6].
std::vector<double> MakeValues(std::size_t rows)
{
  std::mt19937_64                  random(20250104);
  std::normal_distribution<double> stress(0.0, 100.0);
  std::vector<double>              values(rows * kComponents);
  for (double& value : values) value = stress(random);
  return values;
}

void Collect(QuilonOnfTxtDatabase& database, const std::vector<double>& values)
{
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, L"", nullptr);
  const std::size_t rows  = values.size() / kComponents;
  FED_DataBlock&    block = database.GetOrCreateDataBlock(Key(), rows);
  for (std::size_t row = 0; row < rows; ++row)
    block.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(0, static_cast<int>(row) + 1),
                      &values[row * kComponents]);
}

void Report(benchmark::State& state, std::size_t rows, const std::filesystem::path& file)
{
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(rows));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(file)));
}

/// A folder with the block.
class Folder
{
public:
  explicit Folder(std::size_t rows)
  {
    QuilonOnfTxtDatabase database(GetDatabasePath());
    Collect(database, MakeValues(rows));
    database.ReleaseDb(true);
  }

  std::wstring          GetDatabasePath() const { return (temp_ / "onf").wstring(); }
  std::filesystem::path GetFile() const { return temp_ / "onf" / kBlockFile; }

private:
  quilon_test::TempFolder temp_;
};

void ReadDatabase(benchmark::State& state, std::size_t rows)
{
  const Folder folder(rows);
  for (auto _ : state) {
    QuilonOnfTxtDatabase database(folder.GetDatabasePath());
    database.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
    benchmark::DoNotOptimize(&database.GetDataBlock(Key()));
  }
  Report(state, rows, folder.GetFile());
}

void ReadScan(benchmark::State& state, std::size_t rows)
{
  const Folder folder(rows);
  for (auto _ : state) {
    const std::size_t             size = std::filesystem::file_size(folder.GetFile());
    const std::unique_ptr<char[]> text = std::make_unique_for_overwrite<char[]>(size);
    std::ifstream(folder.GetFile(), std::ios::binary).read(text.get(), static_cast<std::streamsize>(size));
    const char* const end = text.get() + size;
    const char*       at  = text.get() + std::string_view(text.get(), size).find("records: ") + 9;
    at                    = std::string_view(at, 20).find('\n') + at + 1;
    double sum            = 0;
    while (at != end) {
      double value = 0;
      at           = std::from_chars(at, end, value).ptr + 1;
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  Report(state, rows, folder.GetFile());
}

void ReadStream(benchmark::State& state, std::size_t rows)
{
  const Folder folder(rows);
  for (auto _ : state) {
    std::ifstream in(folder.GetFile());
    std::string   line;
    while (std::getline(in, line) && line.rfind("records: ", 0) != 0) continue;
    double value = 0;
    double sum   = 0;
    while (in >> value) sum += value;
    benchmark::DoNotOptimize(sum);
  }
  Report(state, rows, folder.GetFile());
}

void WriteDatabase(benchmark::State& state, std::size_t rows)
{
  const quilon_test::TempFolder temp;
  const std::vector<double>     values = MakeValues(rows);
  for (auto _ : state) {
    state.PauseTiming();
    QuilonOnfTxtDatabase database((temp / "onf").wstring());
    Collect(database, values);
    state.ResumeTiming();
    database.ReleaseDb(false);
  }
  Report(state, rows, temp / "onf" / kBlockFile);
}

void WriteScan(benchmark::State& state, std::size_t rows)
{
  const quilon_test::TempFolder temp;
  const std::vector<double>     values = MakeValues(rows);
  for (auto _ : state) {
    constexpr std::size_t         kMaxRow = 12 + kComponents * 25;
    const std::unique_ptr<char[]> text    = std::make_unique_for_overwrite<char[]>(rows * kMaxRow);
    char*                         at      = text.get();
    for (std::size_t row = 0; row < rows; ++row) {
      at = std::to_chars(at, at + kMaxRow, row + 1).ptr;
      for (std::size_t i = 0; i < kComponents; ++i) {
        *at++ = ' ';
        at    = std::to_chars(at, at + kMaxRow, values[row * kComponents + i]).ptr;
      }
      *at++ = '\n';
    }
    std::ofstream(temp / "file", std::ios::binary).write(text.get(), at - text.get());
  }
  Report(state, rows, temp / "file");
}

void WriteStream(benchmark::State& state, std::size_t rows)
{
  const quilon_test::TempFolder temp;
  const std::vector<double>     values = MakeValues(rows);
  for (auto _ : state) {
    std::ofstream out(temp / "file");
    out.precision(17);
    for (std::size_t row = 0; row < rows; ++row) {
      out << row + 1;
      for (std::size_t i = 0; i < kComponents; ++i) out << ' ' << values[row * kComponents + i];
      out << '\n';
    }
  }
  Report(state, rows, temp / "file");
}

struct Case
{
  const char* operation;
  const char* contestant;
  void (*run)(benchmark::State&, std::size_t);
};

constexpr Case kCases[] = {
    {"read", "database", ReadDatabase},   {"read", "scan", ReadScan},   {"read", "stream", ReadStream},
    {"write", "database", WriteDatabase}, {"write", "scan", WriteScan}, {"write", "stream", WriteStream},
};

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 131072, 131072);
  const std::string              rows  = quilon_bench::TakeRowsFile(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  for (const std::size_t size : sizes)
    for (const Case& one : kCases)
      benchmark::RegisterBenchmark(
          (std::string(one.operation) + '/' + std::to_string(size) + '/' + one.contestant).c_str(),
          [=, run = one.run](benchmark::State& state) { run(state, size); })
          ->Unit(benchmark::kMillisecond);

  quilon_bench::RatioReporter reporter("onf-text", {"database", "scan", "stream"}, rows);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
