// Large result files, which several read and write in parts.

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "database/MemoryLimit.h"
#include "import/DatabaseImport.h"
#include "ImportTestSupport.h"
#include "progress/Crew.h"
#include "progress/Listener.h"
#include "QuilonUtilities/FED_Failure.h"
#include "Snapshot.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

using quilon::DatabaseImportOptions;
using quilon::DatabaseImportReport;
using quilon::ImportIntoDatabase;
using quilon::MemoryLimit;
using quilon::ThreadCrew;

constexpr std::size_t kLittle   = std::size_t{256} << 10;  // parts of 64 KiB of text
constexpr int         kNumNodes = 300;
constexpr int         kNumSteps = 12;

class Silence final : public quilon::Listener
{
public:
  void Note(const std::string&) override {}
  void Progress(const std::string&, std::uint64_t, std::uint64_t, const std::string&) override {}
};

std::string Integer(int value, std::size_t width)
{
  const std::string digits = std::to_string(value);
  return std::string(width - digits.size(), ' ') + digits;
}

std::string Real(double value)
{
  char text[32];
  std::snprintf(text, sizeof text, "%12.5E", value);
  return text;
}

std::string Row(int node, const std::vector<double>& values)
{
  std::string text = " -1" + Integer(node, 10);
  for (const double value : values) text += Real(value);
  return text + '\n';
}

/// What stands before the rows.
std::string Head(int increment, const std::string& name, const std::vector<std::string>& components)
{
  std::string text = "    1PSTEP" + Integer(increment, 26) + Integer(increment, 12) + Integer(1, 12) + '\n';
  text += "  100CL  101" + Real(increment) + Integer(kNumNodes, 12) + Integer(0, 22) + Integer(increment, 5) +
          Integer(1, 12) + '\n';
  text += " -4  " + name + std::string(8 - name.size(), ' ') + Integer(static_cast<int>(components.size()), 5) +
          Integer(1, 5) + '\n';
  for (const std::string& component : components)
    text += " -5  " + component + std::string(8 - component.size(), ' ') + "    1    2    1    0\n";
  return text;
}

/// Displacements, stresses and, in every third increment, one of two fields of no known kind.
std::string MakeResults(int first = 1)
{
  std::string text = "    1C\n    2C" + Integer(kNumNodes, 30) + Integer(1, 38) + '\n';
  for (int id = 1; id <= kNumNodes; ++id) text += Row(7 * id, {1.0 * id, 0.5 * id, -1.0});
  text += " -3\n    3C" + Integer(1, 30) + Integer(1, 38) + "\n -1         1    3    0    1\n -2" + Integer(7, 10) +
          Integer(14, 10) + Integer(21, 10) + Integer(28, 10) + "\n -3\n";
  for (int step = first; step < first + kNumSteps; ++step) {
    text += Head(step, "DISP", {"D1", "D2", "D3"});
    for (int id = 1; id <= kNumNodes; ++id) text += Row(7 * id, {1.0 * step * id, -1.0 * id, 1e-9 * id});
    text += " -3\n" + Head(step, "STRESS", {"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"});
    for (int id = 1; id <= kNumNodes; ++id)
      text += Row(7 * id, {1.0 * step * id, -1.0 * id, 1e-3 * id, 1.0 * id, 2.0 / id, 1.0 * step});
    text += " -3\n";
    if (step % 3 != 0) continue;
    text += Head(step, "MINE" + std::to_string(step % 2), {"A"});
    for (int id = 1; id <= kNumNodes; ++id) text += Row(7 * id, {1.0 * step - id});
    text += " -3\n";
  }
  return text + " 9999\n";
}

/// Names and bytes of all files.
std::map<std::string, std::string> FilesOf(const fs::path& folder)
{
  std::map<std::string, std::string> files;
  if (fs::exists(folder))
    for (const auto& entry : fs::directory_iterator(folder))
      files[entry.path().filename().string()] = ReadText(entry.path());
  return files;
}

/// Records, blocks and names of user kinds.
std::map<std::string, std::string> Read(const fs::path& folder)
{
  const FED_ResultDatabase           database(folder, FED_ResultDatabase::ReadOnly);
  std::map<std::string, std::string> state = Snapshot(database);
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    state["block " + descriptor.ToString()];
  for (int kind = 1000; kind <= 1999; ++kind)
    state["name " + std::to_string(kind)] = database.GetUserKindName(static_cast<FED_OnfId>(kind));
  return state;
}

class PartImport : public testing::Test
{
protected:
  PartImport() { WriteText(frd_, MakeResults()); }

  /// @param jobs 0: in one go
  DatabaseImportReport Import(std::size_t jobs, const fs::path& output, DatabaseImportOptions options = {})
  {
    std::optional<MemoryLimit> limit;
    ThreadCrew                 crew(jobs);
    if (jobs > 0) {
      limit.emplace(kLittle);
      options.import.crew = &crew;
    }
    Silence silence;
    return ImportIntoDatabase(files_, output, options, {}, silence);
  }

  std::string FailureOfImport(std::size_t jobs, const fs::path& output)
  {
    try {
      Import(jobs, output);
    } catch (const FED_Failure& failure) {
      return failure.GetMessage();
    }
    return "no failure";
  }

  TempFolder            place_;
  fs::path              frd_   = place_ / "job.frd";
  std::vector<fs::path> files_ = {frd_};
};

TEST_F(PartImport, WritesTheSameFilesWhoeverShares)
{
  Import(1, place_ / "one.fed");
  const auto  one      = FilesOf(place_ / "one.fed");
  std::size_t segments = 0;
  for (const auto& [name, bytes] : one) segments += name.starts_with("segment-") ? 1 : 0;
  EXPECT_GE(segments, 2U) << "it is read in parts";
  for (const std::size_t jobs : {2U, 5U, 16U}) {
    Import(jobs, place_ / "many.fed");
    EXPECT_TRUE(FilesOf(place_ / "many.fed") == one) << jobs;
    fs::remove_all(place_ / "many.fed");
  }
}

TEST_F(PartImport, HoldsWhatIsReadInOneGo)
{
  const DatabaseImportReport parts = Import(3, place_ / "parts.fed");
  const DatabaseImportReport whole = Import(0, place_ / "whole.fed");
  EXPECT_TRUE(Read(place_ / "parts.fed") == Read(place_ / "whole.fed"));
  EXPECT_EQ(parts.blocks, whole.blocks);
  EXPECT_EQ(parts.results.notices, whole.results.notices);
}

TEST_F(PartImport, ReplacesFormerResultsAsInOneGo)
{
  for (const char* folder : {"former", "now"}) fs::create_directory(place_ / folder);
  WriteText(place_ / "former" / "job.frd", MakeResults(5));
  WriteText(place_ / "now" / "job.frd", MakeResults());
  for (const std::size_t jobs : {0U, 2U}) {
    const fs::path output = place_ / ("again" + std::to_string(jobs) + ".fed");
    files_                = {place_ / "former" / "job.frd"};
    Import(jobs, output);
    files_                            = {place_ / "now" / "job.frd"};
    const DatabaseImportReport report = Import(jobs, output);
    EXPECT_GT(report.numReplaced, 0U);
    EXPECT_EQ(report.gone.size(), 4U * 3U + 1U) << "displacement, stress, principal values of four; MINE1 of one";
  }
  EXPECT_TRUE(Read(place_ / "again2.fed") == Read(place_ / "again0.fed"));
}

TEST_F(PartImport, OfBadInputTellsTheFirstAndWritesNothing)
{
  Import(1, place_ / "before.fed");
  const auto  before = FilesOf(place_ / "before.fed");
  std::string text   = MakeResults();
  std::size_t at     = 0;
  for (int step = 1; step <= 10; ++step) {
    at = text.find("-3.00000E+01 3.00000E-08\n", at + 1);
    if (step == 4 || step == 10) text[at] = 'x';
  }
  WriteText(frd_, text);
  const std::string whole = FailureOfImport(0, place_ / "before.fed");
  EXPECT_NE(whole.find("expected a number of 12 columns"), std::string::npos);
  for (const std::size_t jobs : {1U, 4U}) {
    EXPECT_EQ(FailureOfImport(jobs, place_ / "before.fed"), whole);
    EXPECT_TRUE(FilesOf(place_ / "before.fed") == before);
    EXPECT_EQ(FailureOfImport(jobs, place_ / "new.fed"), whole);
    EXPECT_FALSE(fs::exists(place_ / "new.fed"));
  }
  // Behind a row of a field in the middle.
  WriteText(frd_, MakeResults().substr(0, text.find('\n', text.size() / 2) + 1));
  EXPECT_EQ(FailureOfImport(4, place_ / "new.fed"), FailureOfImport(0, place_ / "new.fed"));
}

TEST_F(PartImport, GoesIntoTextInOneGo)
{
  Import(0, place_ / "whole.onf");
  Import(3, place_ / "parts.onf");
  EXPECT_TRUE(FilesOf(place_ / "parts.onf") == FilesOf(place_ / "whole.onf"));
}

TEST_F(PartImport, StopsWhenItIsToldTo)
{
  DatabaseImportOptions options;
  options.import.progress = [](const std::string&, std::uint64_t done, std::uint64_t total) {
    if (total < 100 && done > 1) throw FED_Failure("stopped", "");
  };
  EXPECT_THROW(Import(2, place_ / "new.fed", options), FED_Failure);
  EXPECT_FALSE(fs::exists(place_ / "new.fed"));
}

}  // namespace
}  // namespace quilon_test
