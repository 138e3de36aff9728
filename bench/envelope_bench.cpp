// What an envelope costs beside reading the same bytes, in one run, on a database of tensors at nodes.
//   read      the database opened and every record handed out with its id, which checks every byte
//   xx .. zx  the envelope of all stored components
//   mises .. triaxiality  the envelope of one invariant
// Flags: --tensors N  of a step (default 20000)
//        --steps N    (default 10; 1000000 tensors and 20 steps are 1 GB)
//        --repeats N  passes of each case (default 3)
//        --folder PATH  where the database is written (default: the temporary folder); it is deleted at the end
// Prints best and median of each case in processor time, how fast it is beside reading, best with best, and the most
// memory that was used. Reads come from the page cache.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "answers/Envelope.h"
#include "file_bench_options.h"
#include "kinds/KindTable.h"

namespace {

namespace fs = std::filesystem;

/// Of the processor: what else the machine does counts for nothing.
double Now() { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

double PeakMebibytes()
{
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

FED_DataDescriptor StepKey(int step)
{
  FED_DataDescriptor descriptor(0, OnfKind::NodalStress);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, 1);
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 1);
  descriptor.SetInteger(FED_DataDescriptor::Substep, step);
  return descriptor;
}

/// A commit a step, so that memory holds one.
void WriteDatabase(const fs::path& folder, std::uint64_t numTensors, std::uint64_t numSteps)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (std::uint64_t step = 1; step <= numSteps; ++step) {
    FED_DataBlock& block = database.GetOrCreateDataBlock(StepKey(static_cast<int>(step)), numTensors);
    for (std::uint64_t i = 1; i <= numTensors; ++i) {
      double tensor[6];
      for (std::size_t k = 0; k < 6; ++k)
        tensor[k] = std::sin(static_cast<double>(i + 7 * step) * 0.001 + static_cast<double>(k));
      block.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(0, static_cast<int>(i)), tensor);
    }
    database.Commit();
  }
}

double Read(const fs::path& folder)
{
  const FED_ResultDatabase database(folder, FED_ResultDatabase::ReadOnly);
  double                   sum = 0.0;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    FED_ForEachSpan(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(),
                    [&sum](const FED_BlockSpan& span) {
                      const double* values = span.GetDoubles(1).GetData();
                      for (std::size_t i = 0; i < 6 * span.GetCount(); ++i) sum += values[i];
                      sum += span.GetIds().GetData()[0];
                    });
  return sum;
}

double Envelop(const fs::path& folder, const char* selection)
{
  const FED_ResultDatabase      database(folder, FED_ResultDatabase::ReadOnly);
  const quilon::EnvelopeRequest request{"bench", quilon::Selection(selection, quilon::KindTable()), ""};
  double                        sum = 0.0;
  quilon::CalculateEnvelopes(database, database.GetDataDescriptors(FED_DataDescriptorPattern()), request, nullptr,
                             [&sum](const quilon::EnvelopeSeries& series) {
                               for (std::size_t row = 0; row < series.field.NumIds(); ++row)
                                 sum += series.field.GetLeast(row, 0).value + series.field.GetGreatest(row, 0).value;
                             });
  return sum;
}

}  // namespace

int main(int argc, char** argv)
{
  std::uint64_t numTensors = 20000;
  std::uint64_t numSteps   = 10;
  const auto    options    = quilon_bench::ReadFileBenchOptions(
            argc, argv, {{"--tensors", &numTensors, "of a step"}, {"--steps", &numSteps, "result steps"}});
  const fs::path folder = quilon_bench::ScratchPath(options.folder, ".fed");
  // In a process of its own: what a writer keeps in memory is not what is asked here.
  const pid_t writer = fork();
  if (writer == 0) {
    WriteDatabase(folder, numTensors, numSteps);
    _exit(0);
  }
  int status = 1;
  if (writer < 0 || waitpid(writer, &status, 0) != writer || status != 0) {
    std::fprintf(stderr, "envelope_bench: the database could not be written\n");
    return 1;
  }
  const double megabytes = static_cast<double>(numTensors * numSteps * 48) / 1e6;
  std::printf("%llu steps of %llu tensors, %.0f MB\n", static_cast<unsigned long long>(numSteps),
              static_cast<unsigned long long>(numTensors), megabytes);

  const std::pair<const char*, std::function<double()>> cases[] = {
      {"read", [&] { return Read(folder); }},
      {"xx .. zx", [&] { return Envelop(folder, "stress"); }},
      {"mises", [&] { return Envelop(folder, "stress.mises"); }},
      {"p1", [&] { return Envelop(folder, "stress.p1"); }},
      {"p2", [&] { return Envelop(folder, "stress.p2"); }},
      {"p3", [&] { return Envelop(folder, "stress.p3"); }},
      {"tresca", [&] { return Envelop(folder, "stress.tresca"); }},
      {"signed", [&] { return Envelop(folder, "stress.signed-mises"); }},
      {"hydrostatic", [&] { return Envelop(folder, "stress.hydrostatic"); }},
      {"triaxiality", [&] { return Envelop(folder, "stress.triaxiality"); }}};
  std::vector<std::vector<double>> times(std::size(cases));
  double                           checksum = 0.0;
  for (int repeat = 0; repeat < options.repeats; ++repeat) {
    for (std::size_t c = 0; c < std::size(cases); ++c) {
      const double start = Now();
      checksum += cases[c].second();
      times[c].push_back(Now() - start);
    }
  }
  double reading = 0.0;
  for (std::size_t c = 0; c < std::size(cases); ++c) {
    std::sort(times[c].begin(), times[c].end());
    const double best = times[c].front();
    if (c == 0) reading = best;
    std::printf("%-11s best %7.3f s  median %7.3f s  %7.0f MB/s  %.2f times as fast as reading\n", cases[c].first, best,
                times[c][times[c].size() / 2], megabytes / best, reading / best);
  }
  std::printf("most memory %.0f MiB (checksum %g)\n", PeakMebibytes(), checksum);
  fs::remove_all(folder);
  return 0;
}
