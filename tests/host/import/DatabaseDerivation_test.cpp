// Results that are derived beside those that a database holds, by one or several.

#include "import/DatabaseDerivation.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "database/MemoryLimit.h"
#include "DistantCrew.h"
#include "ImportTestSupport.h"
#include "progress/Crew.h"
#include "progress/Listener.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

using quilon::DerivationOptions;
using quilon::DerivedBlock;
using quilon::MemoryLimit;
using quilon::ThreadCrew;

constexpr std::size_t kLittle   = std::size_t{256} << 10;  // parts of 64 KiB of results
constexpr int         kNumNodes = 700;                     // 16.4 KiB of results a step
constexpr int         kNumSteps = 24;

class Silence final : public quilon::Listener
{
public:
  void Note(const std::string&) override {}
  void Progress(const std::string&, std::uint64_t, std::uint64_t, const std::string&) override {}
};

FED_DataDescriptor Key(int onf, int step)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 1);
  descriptor.SetInteger(FED_DataDescriptor::Substep, step);
  return descriptor;
}

std::map<std::string, std::string> FilesOf(const fs::path& folder)
{
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::directory_iterator(folder))
    files[entry.path().filename().string()] = ReadText(entry.path());
  return files;
}

std::size_t CountSegments(const fs::path& folder)
{
  std::size_t segments = 0;
  for (const auto& [name, bytes] : FilesOf(folder)) segments += name.starts_with("segment-") ? 1 : 0;
  return segments;
}

/// Values by block and id: blocks of vectors and tensors that have records.
std::map<std::string, std::map<int, std::vector<double>>> Read(const fs::path& folder)
{
  const FED_ResultDatabase                                  database(folder, FED_ResultDatabase::ReadOnly);
  std::map<std::string, std::map<int, std::vector<double>>> blocks;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    const FED_DataBlock&       block = database.GetConstDataBlock(descriptor);
    const FED_ConstIdDataBlock view(block, database.GetIdMapsPool());
    for (auto index = block.Begin(); index != block.End(); ++index) {
      std::vector<double>& values = blocks[descriptor.ToString()][view.GetId(*index)];
      values.resize(descriptor.GetInteger(FED_DataDescriptor::OnfId) == 561 ? 6 : 3);
      block.GetValuesAt(*index, values.data());
    }
  }
  return blocks;
}

/// A database of stresses at nodes, the last step of which has none.
class DatabaseDerivation : public testing::Test
{
protected:
  DatabaseDerivation()
  {
    FED_ResultDatabase database(source_, FED_ResultDatabase::Create);
    for (int step = 1; step <= kNumSteps; ++step) {
      FED_IdDataBlock view(database.GetOrCreateDataBlock(Key(561, step), 0), database.GetIdMapsPool(), true);
      for (int node = kNumNodes; node >= 1 && step < kNumSteps; --node) {
        const double tensor[6] = {1.0 * step * node, -1.0 * node, 0.25, 1.0 * node, 2.0 / node, 1.0 * step};
        view.SetTensor(3 * node, tensor);
      }
    }
    database.Commit();
  }

  /// @param jobs 0: in one go
  std::vector<DerivedBlock> Derive(std::size_t jobs, const fs::path& database, const fs::path& output = {})
  {
    ThreadCrew crew(jobs);
    return DeriveBy(jobs == 0 ? nullptr : &crew, database, output);
  }
  /// @param crew null: in one go
  static std::vector<DerivedBlock> DeriveBy(quilon::Crew* crew, const fs::path& database, const fs::path& output = {})
  {
    std::optional<MemoryLimit> limit;
    if (crew != nullptr) limit.emplace(kLittle);
    DerivationOptions options;
    options.database = database;
    options.output   = output;
    options.crew     = crew;
    Silence silence;
    return DeriveDatabase(options, silence);
  }

  fs::path Copy(const std::string& name)
  {
    fs::remove_all(place_ / name);
    fs::copy(source_, place_ / name);
    return place_ / name;
  }

  TempFolder place_;
  fs::path   source_ = place_ / "job.fed";
};

TEST_F(DatabaseDerivation, InPartsWritesTheSameFilesWhoeverShares)
{
  const fs::path                  one     = Copy("one.fed");
  const std::vector<DerivedBlock> derived = Derive(1, one);
  EXPECT_EQ(derived.size(), static_cast<std::size_t>(kNumSteps) - 1) << "a step without tensors has no values";
  EXPECT_GE(CountSegments(one), CountSegments(source_) + 2) << "it is derived in parts";
  for (const std::size_t jobs : {2U, 5U, 16U}) {
    const fs::path many = Copy("many.fed");
    EXPECT_EQ(Derive(jobs, many).size(), derived.size());
    EXPECT_TRUE(FilesOf(many) == FilesOf(one)) << jobs;
  }
  DistantCrew    distant;
  const fs::path far = Copy("far.fed");
  DeriveBy(&distant, far);
  EXPECT_TRUE(FilesOf(far) == FilesOf(one));
  EXPECT_TRUE(Derive(2, one).empty()) << "what is there is kept";
  EXPECT_TRUE(FilesOf(one) == FilesOf(place_ / "many.fed"));
}

TEST_F(DatabaseDerivation, InPartsHoldsWhatIsDerivedInOneGo)
{
  const fs::path parts = Copy("parts.fed"), whole = Copy("whole.fed");
  Derive(3, parts);
  Derive(0, whole);
  EXPECT_LT(CountSegments(whole), CountSegments(parts));
  EXPECT_TRUE(Read(parts) == Read(whole));
}

TEST_F(DatabaseDerivation, IntoACopyInPartsHoldsTheSame)
{
  const fs::path whole = Copy("whole.fed");
  Derive(0, whole);
  Derive(1, source_, place_ / "one.fed");
  EXPECT_TRUE(Read(place_ / "one.fed") == Read(whole));
  Derive(4, source_, place_ / "four.fed");
  EXPECT_TRUE(FilesOf(place_ / "four.fed") == FilesOf(place_ / "one.fed"));
  Derive(2, source_, place_ / "two.onf");
  Derive(0, source_, place_ / "none.onf");
  EXPECT_TRUE(FilesOf(place_ / "two.onf") == FilesOf(place_ / "none.onf")) << "text is written in one go";
}

// Ids of the copy have other indices than those of the source where it had others before.
TEST_F(DatabaseDerivation, IntoADatabaseWithIdsOfItsOwnGoesByIds)
{
  const auto make = [&](const std::string& name) {
    FED_ResultDatabase database(place_ / name, FED_ResultDatabase::Create);
    for (int id = 1; id <= 3000; ++id) database.GetIdMapsPool().FindOrAddIndex(0, id);
    const double vector[3] = {1, 2, 3};
    FED_IdDataBlock(database.GetOrCreateDataBlock(Key(510, 1), 0), database.GetIdMapsPool(), true).SetVector(5, vector);
    database.Commit();
    return place_ / name;
  };
  const fs::path parts = make("parts.fed"), whole = make("whole.fed");
  Derive(2, source_, parts);
  Derive(0, source_, whole);
  EXPECT_TRUE(Read(parts) == Read(whole));
}

// In the middle of a part that another thread may read.
TEST_F(DatabaseDerivation, OfDamagedTensorsLeavesTheDatabaseAsItWas)
{
  const fs::path broken = Copy("broken.fed");
  for (const auto& entry : fs::directory_iterator(broken)) {
    if (entry.path().extension() != ".h5") continue;
    std::string bytes = ReadText(entry.path());
    for (std::size_t at = bytes.size() / 3; at < bytes.size() / 2; ++at) bytes[at] = static_cast<char>(bytes[at] ^ 1);
    WriteText(entry.path(), bytes);
  }
  const auto  before = FilesOf(broken);
  std::string first;
  for (const std::size_t jobs : {1U, 2U, 4U}) {
    std::string message = "no failure";
    try {
      Derive(jobs, broken);
    } catch (const FED_Failure& failure) {
      message = failure.GetMessage();
    }
    EXPECT_NE(message.find("segment-"), std::string::npos) << message;
    if (first.empty()) first = message;
    EXPECT_EQ(message, first) << jobs;
    EXPECT_TRUE(FilesOf(broken) == before) << jobs;
  }
}

}  // namespace
}  // namespace quilon_test
