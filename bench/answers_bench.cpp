// What an answer costs beside a checked read of the same bytes, in one run.
//   read       the database opened and every tensor's chunk fetched, which checks it
//   max ...    opened, and the greatest value of a component found with its place in time (`quilon max`)
// Flags: --megabytes N  of tensors, in steps of 8 MB (default 16; 1000 says more)
//        --repeats N    passes of each case (default 3)
//        --folder PATH  where the database is written (default: the temporary folder); it is deleted at the end
// Cases are measured in turns. Prints best and median of each, and its speed as a part of that of the read, best with
// best. Reads come from the page cache.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
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

}  // namespace

int main(int argc, char** argv)
{
  std::uint64_t megabytes = 16;
  const auto    options   = quilon_bench::ReadFileBenchOptions(
           argc, argv, {{"--megabytes", &megabytes, "tensors that are read, in steps of 8 MB"}});
  const fs::path database = quilon_bench::ScratchPath(options.folder, ".fed");
  const int      steps    = static_cast<int>(std::max<std::uint64_t>(megabytes / 8, 1));
  Fill(database, steps);
  const double                     bytes = static_cast<double>(steps) * kTensors * static_cast<double>(kTensorBytes);
  std::vector<std::string>         components = {"xx", "mises",  "signed-mises", "p1",         "p2",
                                                 "p3", "tresca", "hydrostatic",  "triaxiality"};
  std::vector<std::vector<double>> seconds(components.size() + 1);
  for (int repeat = 0; repeat < options.repeats; ++repeat) {
    seconds[0].push_back(Read(database));
    for (std::size_t c = 0; c < components.size(); ++c) seconds[c + 1].push_back(Max(database, components[c]));
  }
  double reading = 0.0;
  for (std::size_t c = 0; c < seconds.size(); ++c) {
    std::sort(seconds[c].begin(), seconds[c].end());
    const double best = seconds[c].front();
    if (c == 0) reading = best;
    std::printf("%-22s best %9.3f ms, median %9.3f ms, %8.1f MB/s, %5.2f of the read's speed\n",
                (c == 0 ? "read" : "max " + components[c - 1]).c_str(), 1e3 * best,
                1e3 * seconds[c][seconds[c].size() / 2], 1e-6 * bytes / best, reading / best);
  }
  fs::remove_all(database);
}
