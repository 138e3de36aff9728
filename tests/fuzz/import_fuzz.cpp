// Any bytes as the files of one job: they are imported with all that derives from them, or refused with a FED_Failure.
// What was imported reads to its last value, and its element forces are calculated or refused. Lines "%%" part deck,
// .frd, .dat and .sta; an empty part is no file.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <bundled/FED_ResultDatabase.h>

#include "forces/ForceCalculation.h"
#include "import/ResultImport.h"
#include "QuilonUtilities/FED_Failure.h"
#include "Snapshot.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

// A deck may generate sets of many more ids than it has bytes.
constexpr std::size_t kMostBytes = 32768;
constexpr std::size_t kMostIds   = 10000;

std::vector<fs::path> WriteFiles(const fs::path& folder, std::string_view text)
{
  std::vector<fs::path> files;
  for (const char* name : {"job.inp", "job.frd", "job.dat", "job.sta"}) {
    const std::size_t      end  = text.find("\n%%\n");
    const std::string_view part = text.substr(0, end);
    const fs::path         path = folder / name;
    fs::remove(path);
    if (!part.empty()) {
      std::ofstream(path, std::ios::binary) << part << '\n';
      files.push_back(path);
    }
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 4);
  }
  return files;
}

void CalculateAllForces(FED_ResultDatabase& database)
{
  quilon::ForceRequest request;
  request.database = "fuzz";
  request.balance  = true;
  try {
    const auto results =
        quilon::ChooseForceResults(database, database.GetDataDescriptors(FED_DataDescriptorPattern()), "fuzz", "");
    const quilon::ForceReport report = quilon::CalculateForces(database, results, request, nullptr);
    if (quilon::DescribeVerdict(request, report).empty()) std::abort();
    quilon::ListForceNotes(request, report);
  } catch (const FED_Failure&) {
    // What is missing is told.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon_test::TempFolder folder;
  const std::vector<fs::path>          files =
      WriteFiles(folder.GetPath(), {reinterpret_cast<const char*>(data), std::min(size, kMostBytes)});
  FED_ResultDatabase    database;
  quilon::ImportOptions options;
  options.deck.mostIdsInSets = kMostIds;
  options.averageBy.border   = size % 2 == 0 ? quilon::AverageBy::Nothing : quilon::AverageBy::Material;
  try {
    quilon::ImportResults(files, database, options);
  } catch (const FED_Failure& failure) {
    if (failure.GetMessage().empty()) std::abort();
    return 0;
  }
  quilon_test::Snapshot(database);
  CalculateAllForces(database);
  quilon_test::Snapshot(database);
  return 0;
}
