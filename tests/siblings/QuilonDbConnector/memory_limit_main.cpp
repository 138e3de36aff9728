// Writes a database larger than the memory that it may use, walks it by index and by column, and measures the memory of
// this process meanwhile.
//
// usage: memory_limit RECORDS LIMIT_MIB

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>

#include <sys/resource.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "TempFolder.h"

namespace {

constexpr int         kBlocks = 4;
constexpr std::size_t kMiB    = std::size_t{1} << 20;

// The chunks touched last stay whatever the limit is, and one more is on its way in: five of 3 MiB. The rest is what
// keys, indices and the writing of a segment take.
constexpr std::size_t kAllowance = 32 * kMiB;

std::size_t PeakMemory()
{
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
}

FED_DataDescriptor KeyOf(int block)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(521));
  key.SetInteger(FED_DataDescriptor::Substep, block);
  return key;
}

// The six components of record i of a block are v, v + 1, ..., v + 5.
double FirstValue(int block, std::size_t index) { return 0.25 * static_cast<double>(index) + block; }

class Clock
{
public:
  void Print(const char* what)
  {
    const auto now = std::chrono::steady_clock::now();
    std::printf("%-24s %6.2f s, peak memory %zu MiB\n", what, std::chrono::duration<double>(now - last_).count(),
                PeakMemory() / kMiB);
    last_ = now;
  }

private:
  std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

void Write(FED_ResultDatabase& database, std::size_t recordsPerBlock)
{
  for (int block = 0; block < kBlocks; ++block) {
    FED_DataBlock& tensors = database.GetOrCreateDataBlock(KeyOf(block), recordsPerBlock);
    for (std::size_t index = 1; index <= recordsPerBlock; ++index) {
      const double first     = FirstValue(block, index);
      const double tensor[6] = {first, first + 1, first + 2, first + 3, first + 4, first + 5};
      tensors.SetValuesAt(index, tensor);
    }
  }
}

bool WalkIndices(const FED_ResultDatabase& database, std::size_t recordsPerBlock)
{
  for (int block = 0; block < kBlocks; ++block) {
    const FED_DataBlock& tensors = database.GetConstDataBlock(KeyOf(block));
    for (std::size_t index = 1; index <= recordsPerBlock; ++index) {
      double tensor[6];
      tensors.GetValuesAt(index, tensor);
      for (int i = 0; i < 6; ++i)
        if (tensor[i] != FirstValue(block, index) + i) return false;
    }
  }
  return true;
}

// All blocks side by side.
bool WalkColumns(const FED_ResultDatabase& database)
{
  const auto& first = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(KeyOf(0)));
  for (std::size_t chunk = 0; chunk < first.GetChunkCount(); ++chunk)
    for (int block = 0; block < kBlocks; ++block) {
      const auto&       columns = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(KeyOf(block)));
      const auto        values  = columns.GetDoubleChunk(1, chunk);
      const std::size_t row     = chunk * columns.GetRowsPerChunk();
      for (std::size_t i = 0; i < values.GetSize(); ++i)
        if (values.GetData()[i] != FirstValue(block, row + i / 6 + 1) + static_cast<double>(i % 6)) return false;
    }
  return true;
}

int Run(std::size_t records, std::size_t limit)
{
  const quilon_test::TempFolder folder;
  const std::size_t             recordsPerBlock = records / kBlocks;
  FED_ResultDatabaseOptions     options;
  options.memoryLimit        = limit;
  const std::size_t baseline = PeakMemory();
  Clock             clock;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create, options);
    Write(database, recordsPerBlock);
    clock.Print("written");
    database.Commit();
    clock.Print("committed");
  }
  const FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadOnly, options);
  clock.Print("opened");
  const bool isSame = WalkIndices(database, recordsPerBlock);
  clock.Print("walked by index");
  const bool isSameByColumn = WalkColumns(database);
  clock.Print("walked by column");
  const std::size_t used = PeakMemory() - baseline;
  std::printf("%zu MiB of records, limit %zu MiB: %zu MiB were used\n", records * 48 / kMiB, limit / kMiB, used / kMiB);
  if (!isSame || !isSameByColumn) std::printf("values came back changed\n");
  if (used > limit + kAllowance) std::printf("more than the limit and %zu MiB\n", kAllowance / kMiB);
  return isSame && isSameByColumn && used <= limit + kAllowance ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
  try {
    if (argc == 3) return Run(std::stoul(argv[1]), std::stoul(argv[2]) * kMiB);
    std::fprintf(stderr, "usage: memory_limit RECORDS LIMIT_MIB\n");
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "memory_limit: %s\n", failure.what());
  }
  return 2;
}
