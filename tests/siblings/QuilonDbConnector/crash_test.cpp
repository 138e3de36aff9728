// Whatever fails in a commit, and wherever: the database is then as before the commit or as after it, and whole.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

#include "database_state.h"
#include "FaultyFiles.h"
#include "stored_tensors.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

constexpr auto kScalar     = static_cast<FED_OnfId>(514);
constexpr auto kPointLists = static_cast<FED_OnfId>(582);
constexpr auto kUserKind   = static_cast<FED_OnfId>(1000);

void SetPoints(FED_ResultDatabase& database, int substep, int element, std::size_t numPoints)
{
  FED_DataBlock&        block  = database.GetOrCreateDataBlock(Key(kPointLists, substep), 0);
  FED_DataRecord* const record = block.CreateDataRecord();
  record->SetInteger(1, static_cast<int>(numPoints));
  FED_DoubleArray values;
  values.Resize(6 * numPoints);
  for (std::size_t i = 0; i < values.GetSize(); ++i) values.GetData()[i] = 0.25 * static_cast<double>(i);
  record->SetDoubleList(2, values);
  block.SetRecord(database.GetIdMapsPool().FindOrAddIndex(1, element), *record);
  block.DeleteDataRecord(record);
}

/// Seven commits, so that an eighth merges what is there.
void MakeBase(const fs::path& folder)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (int substep = 1; substep <= 7; ++substep) {
    SetTensors(database, substep, 10, 14, substep);
    SetPoints(database, 1, 100 + substep, 2);
    database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(static_cast<std::size_t>(substep), 20.0);
    database.Commit();
  }
}

/// Adds, changes and deletes blocks, replaces one, lets id maps grow and names a user kind.
void Change(FED_ResultDatabase& database)
{
  SetTensors(database, 8, 10, 20, 8.0);
  SetTensors(database, 2, 12, 13, -1.0);
  SetPoints(database, 1, 103, 3);
  SetPoints(database, 1, 200, 1);
  database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(3, 21.0);
  database.DeleteDataBlock(Key(kTensor, 4));
  database.DeleteDataBlock(Key(kTensor, 5));
  SetTensors(database, 5, 11, 11, 55.0);
  database.GetOrCreateDataBlock(Key(kUserKind, 1), 0).SetScalarAt(2, 0.5);
  database.SetUserKindName(kUserKind, "Wear depth");
}

State Read(const fs::path& folder) { return StateOf(FED_ResultDatabase(folder, FED_ResultDatabase::ReadOnly)); }

/// The files that the manifest makes necessary: names of segments, the manifest and the lock.
std::set<std::string> NeededFiles(const fs::path& folder)
{
  std::set<std::string> names = {"manifest", "lock"};
  std::ifstream         manifest(folder / "manifest");
  for (std::string line; std::getline(manifest, line);) {
    std::istringstream words(line);
    std::string        word;
    unsigned           generation = 0;
    unsigned           nextBlock  = 0;
    unsigned           number     = 0;
    words >> word;
    if (word == "commit") words >> generation >> nextBlock;
    if ((word != "segment" && word != "commit") || !(words >> number)) continue;
    char name[32];
    std::snprintf(name, sizeof name, "segment-%06u.h5", number);
    names.insert(name);
  }
  return names;
}

std::set<std::string> FilesOf(const fs::path& folder)
{
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
  return names;
}

/// A session whose every call is made to fail in turn.
struct Scenario
{
  std::string                              name;
  std::function<void(const fs::path&)>     makeBase;  ///< may make nothing
  FED_ResultDatabase::Access               access      = FED_ResultDatabase::ReadWrite;
  std::size_t                              memoryLimit = std::size_t{1} << 20;
  std::function<void(FED_ResultDatabase&)> work;  ///< everything but the commit
  bool                                     compacts = false;
  std::uint64_t                            room     = 0;  ///< of a piece, where it compacts in pieces
};

class CommitUnderFaults
{
public:
  explicit CommitUnderFaults(const Scenario& scenario) : scenario_(scenario)
  {
    if (scenario.makeBase) {
      scenario.makeBase(base_);
      before_ = Read(base_);
    }
    const fs::path done = folder_ / "done.fed";
    Prepare(done);
    FaultyFiles files;
    Run(done, files);
    after_ = Read(done);
  }

  /// @return the positions tried
  std::size_t TryAll(Fault fault)
  {
    std::size_t position = 0;
    for (bool hasFailed = true; hasFailed && !testing::Test::HasFailure();) {
      ++position;
      SCOPED_TRACE(scenario_.name + ", fault " + std::to_string(static_cast<int>(fault)) + ", call " +
                   std::to_string(position));
      hasFailed = Try(fault, position);
    }
    return position - 1;
  }

private:
  void Prepare(const fs::path& trial) const
  {
    fs::remove_all(trial);
    if (scenario_.makeBase) fs::copy(base_, trial);
  }

  std::unique_ptr<FED_ResultDatabase> Open(const fs::path& trial, FaultyFiles& files) const
  {
    FED_ResultDatabaseOptions options;
    options.files       = &files;
    options.memoryLimit = scenario_.memoryLimit;
    return std::make_unique<FED_ResultDatabase>(trial, scenario_.access, options);
  }

  void Publish(FED_ResultDatabase& database) const
  {
    if (scenario_.room > 0)
      while (database.CompactPiece(scenario_.room).segments > 0) {
      }
    else if (scenario_.compacts)
      database.Compact();
    else
      database.Commit();
  }

  void Run(const fs::path& trial, FaultyFiles& files) const
  {
    const auto database = Open(trial, files);
    scenario_.work(*database);
    Publish(*database);
  }

  /// @return whether a call failed: none does behind the last one
  bool Try(Fault fault, std::size_t position)
  {
    const fs::path trial = folder_ / "trial.fed";
    Prepare(trial);
    FaultyFiles files;
    files.Arm(fault, position);
    bool isCommitted = false;
    try {
      const auto database = Open(trial, files);
      scenario_.work(*database);
      try {
        Publish(*database);
        isCommitted = true;
      } catch (const FED_Failure& failure) {
        if (!files.IsDead()) {
          CheckMessage(failure, trial);
          files.LetPass();
          CommitAgain(*database, trial);
        }
      }
    } catch (const FED_Failure& failure) {
      // Opening failed, or a spill: the session is over.
      if (!files.IsDead()) CheckMessage(failure, trial);
    }
    const bool hasFailed = files.HasFailed();
    // Behind the last call the power may go as well: what a commit was told to keep is on the disk.
    if (files.IsDead() || !hasFailed) files.Bury();
    CheckOldOrNew(trial, isCommitted);
    return hasFailed;
  }

  /// Only where the message says so a commit that failed may be in force. That of a piece is behind the commit.
  void CheckMessage(const FED_Failure& failure, const fs::path& trial) const
  {
    if (scenario_.room > 0 || failure.GetMessage().find("may be in force") != std::string::npos) return;
    EXPECT_EQ(fs::exists(trial / "manifest") ? Read(trial) : State(), before_) << failure.GetMessage();
  }

  /// The fault has passed: the same object commits everything.
  void CommitAgain(FED_ResultDatabase& database, const fs::path& trial)
  {
    CheckOldOrNew(trial, false, false);
    Publish(database);
    EXPECT_EQ(Read(trial), after_);
    EXPECT_EQ(StateOf(database), after_);
  }

  void CheckOldOrNew(const fs::path& trial, bool isCommitted, bool clearsUp = true)
  {
    if (!fs::exists(trial / "manifest")) {
      EXPECT_FALSE(isCommitted);
      EXPECT_TRUE(before_.empty());
      if (!clearsUp) return;
      // The next one that makes this database is not held up by what is left.
      FED_ResultDatabase(trial, FED_ResultDatabase::Create).Commit();
    } else {
      const State found = Read(trial);
      EXPECT_EQ(FED_InspectDatabase(trial).findings, std::vector<std::string>());
      if (isCommitted) {
        EXPECT_EQ(found, after_);
      } else {
        EXPECT_TRUE(found == before_ || found == after_);
      }
      if (!clearsUp) return;
      const FED_ResultDatabase next(trial, FED_ResultDatabase::ReadWrite);
      EXPECT_EQ(StateOf(next), found);
    }
    EXPECT_EQ(FilesOf(trial), NeededFiles(trial));
  }

  const Scenario& scenario_;
  TempFolder      folder_;
  fs::path        base_ = folder_ / "base.fed";
  State           before_;
  State           after_;
};

void TryAllFaults(const Scenario& scenario)
{
  CommitUnderFaults commit(scenario);
  std::size_t       positions = 0;
  for (const Fault fault :
       {Fault::InputOutputError, Fault::DiskFull, Fault::Outage, Fault::ShortWrite, Fault::Death, Fault::DeathBehind,
        Fault::PowerLoss, Fault::PowerLossButRenames, Fault::PowerLossButRemovals})
    positions += commit.TryAll(fault);
  std::cout << scenario.name << ": " << positions << " positions tried\n";
  testing::Test::RecordProperty("positions", std::to_string(positions));
  EXPECT_GT(positions, 90U);  // ten calls at the least for each of nine faults
}

TEST(CommitUnderFaults, AChangeOfEverythingThatMergesSegmentsHappensWhollyOrNotAtAll)
{
  TryAllFaults({.name = "change", .makeBase = MakeBase, .work = Change});
}

TEST(CommitUnderFaults, ASmallCommitThatIsAppendedHappensWhollyOrNotAtAll)
{
  TryAllFaults({.name = "append",
                .makeBase =
                    [](const fs::path& folder) {
                      FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
                      SetTensors(database, 1, 10, 14, 1.0);
                      database.Commit();
                      SetTensors(database, 2, 10, 14, 2.0);  // appended behind an appended one
                      database.Commit();
                    },
                .work = [](FED_ResultDatabase& database) { SetTensors(database, 3, 10, 20, 3.0); }});
}

TEST(CommitUnderFaults, ADatabaseIsMadeWhollyOrNotAtAll)
{
  TryAllFaults({.name     = "create",
                .makeBase = nullptr,
                .access   = FED_ResultDatabase::Create,
                .work     = [](FED_ResultDatabase& database) {
                  SetTensors(database, 1, 1, 9, 1.0);
                  SetPoints(database, 1, 5, 4);
                  database.SetUserKindName(kUserKind, "Wear depth");
                }});
}

TEST(CommitUnderFaults, WorkThatDoesNotFitIntoMemoryHappensWhollyOrNotAtAll)
{
  TryAllFaults({.name = "spill", .makeBase = MakeBase, .memoryLimit = 1, .work = [](FED_ResultDatabase& database) {
                  Change(database);
                  for (int substep = 30; substep < 42; ++substep) SetTensors(database, substep, 1, 30, substep);
                }});
}

TEST(CommitUnderFaults, CompactionHappensWhollyOrNotAtAll)
{
  TryAllFaults({.name = "compact", .makeBase = MakeBase, .work = Change, .compacts = true});
}

/// Three files, of each of which something is deleted or replaced by the fourth.
void MakeWorn(const fs::path& folder)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (int substep = 1; substep <= 3; ++substep) {
    SetTensors(database, substep, 10, 40, substep);
    SetTensors(database, 10 + substep, 10, 20, -substep);
    database.Commit();
  }
  SetTensors(database, 2, 12, 13, -1.0);
  database.DeleteDataBlock(Key(kTensor, 11));
  database.DeleteDataBlock(Key(kTensor, 13));
  database.Commit();
}

// The commit happens wholly or not at all; none of the pieces behind it changes what the database holds.
TEST(CommitUnderFaults, CompactionInPiecesKeepsWhatIsThere)
{
  constexpr std::uint64_t kOneFile = 7000;
  {
    const TempFolder folder;
    MakeWorn(folder / "a.fed");
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadWrite);
    ASSERT_EQ(FED_InspectDatabase(folder / "a.fed").segments, 4U);
    EXPECT_GT(database.CompactPiece(kOneFile).segments, 0U);
    EXPECT_GT(database.CompactPiece(kOneFile).segments, 0U);
    while (database.CompactPiece(kOneFile).segments > 0) {
    }
    EXPECT_EQ(database.CompactPiece(0).keptSegments, 0U);
  }
  TryAllFaults({.name     = "compact in pieces",
                .makeBase = MakeWorn,
                .work     = [](FED_ResultDatabase& database) { SetTensors(database, 3, 10, 10, 4.0); },
                .room     = kOneFile});
}

}  // namespace
}  // namespace quilon_test
