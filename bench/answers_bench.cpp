// What an answer costs beside a checked read of the same bytes, in one run.
//   read       the database opened and every tensor's chunk fetched, which checks it
//   max ...    opened, and the greatest value of a component found with its place in time (`quilon max`)
// Flags: --megabytes N  of tensors, in steps of 8 MB (default 16; 1000 says more)
//        --repeats N    passes of each case (default 3)
//        --folder PATH  where the database is written (default: the temporary folder); it is deleted at the end
// Prints best and median of each case, and its speed as a part of that of the read, best with best. Reads come from the
// page cache.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "answers/Extremes.h"
#include "answers/Region.h"
#include "database/StepTimes.h"
#include "file_bench_options.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"

namespace {

namespace fs = std::filesystem;
using namespace quilon;

constexpr std::size_t kTensorBytes = 6 * sizeof(double);
constexpr int         kTensors     = 8000000 / kTensorBytes;  // of a step

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

FED_DataDescriptor StepBlock(int substep)
{
  FED_DataDescriptor descriptor(0, OnfKind::NodalStress);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, 1);
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 1);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  return descriptor;
}

void Fill(const fs::path& folder, int steps)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (int step = 1; step <= steps; ++step) {
    FED_IdDataBlock view(database.GetOrCreateDataBlock(StepBlock(step), kTensors), database.GetIdMapsPool(), true);
    for (int id = 1; id <= kTensors; ++id) {
      const double angle     = 1e-3 * id + step;
      const double tensor[6] = {
          std::sin(angle), std::cos(angle), std::sin(2 * angle), 0.3 * std::cos(3 * angle), 0.1, -0.2};
      view.SetTensor(id, tensor);
    }
    database.Commit();
  }
}

double Read(const fs::path& folder)
{
  const double             start = Now();
  const FED_ResultDatabase database(folder, FED_ResultDatabase::ReadOnly);
  double                   sum = 0.0;
  for (const FED_DataDescriptor& block : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    FED_ForEachSpan(database.GetConstDataBlock(block),
                    [&sum](const FED_BlockSpan& span) { sum += span.GetDoubles(1).GetData()[0]; });
  const double seconds = Now() - start;
  if (sum == 0.5) std::puts("");  // the sum is used
  return seconds;
}

double Max(const fs::path& folder, const std::string& component)
{
  const double             start = Now();
  const FED_ResultDatabase database(folder, FED_ResultDatabase::ReadOnly);
  ExtremeRequest           request;
  request.selection = Selection("stress." + component, KindTable(database));
  Region              region(database, {}, "bench");
  const ExtremeReport report =
      FindExtremes(database, request.selection.Apply(database.GetDataDescriptors(FED_DataDescriptorPattern())),
                   StepTimes(database), region, request, nullptr);
  const double seconds = Now() - start;
  if (report.rows.size() != 1) std::puts("answers_bench: no value");
  return seconds;
}

struct Times
{
  double best;
  double median;
};

Times Measure(int repeats, const std::function<double()>& run)
{
  std::vector<double> seconds;
  for (int i = 0; i < repeats; ++i) seconds.push_back(run());
  std::sort(seconds.begin(), seconds.end());
  return {seconds.front(), seconds[seconds.size() / 2]};
}

}  // namespace

int main(int argc, char** argv)
{
  std::uint64_t megabytes = 16;
  const auto    options   = quilon_bench::ReadFileBenchOptions(
           argc, argv, {{"--megabytes", &megabytes, "tensors that are read, in steps of 8 MB"}});
  const fs::path database = quilon_bench::ScratchPath(options.folder, ".fed");
  const int      steps    = static_cast<int>(std::max<std::uint64_t>(megabytes / 8, 1));
  Fill(database, steps);
  const double bytes = static_cast<double>(steps) * kTensors * static_cast<double>(kTensorBytes);
  const Times  read  = Measure(options.repeats, [&] { return Read(database); });
  const auto   print = [&](const std::string& name, const Times& times) {
    std::printf("%-22s best %9.3f ms, median %9.3f ms, %8.1f MB/s, %5.2f of the read's speed\n", name.c_str(),
                  1e3 * times.best, 1e3 * times.median, 1e-6 * bytes / times.best, read.best / times.best);
  };
  print("read", read);
  for (const char* component : {"xx", "mises", "p1", "tresca"})
    print(std::string("max ") + component, Measure(options.repeats, [&] { return Max(database, component); }));
  fs::remove_all(database);
}
