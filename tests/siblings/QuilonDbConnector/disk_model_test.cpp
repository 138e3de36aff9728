// Random work on a database on disk and on plain containers beside it: commits, reopenings, losses of what was not
// committed, compactions, and readers that keep what they opened.

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_FileLayer.h"
#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"

#include "record_model.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

const char* const kFormats[] = {"", "D", "T", "DdV", "iFS", "Lb", "IIbDbLbLb"};
// A first record gives plain codes.
const char* const kFirstRecords[] = {"D", "TV", "IFS", "LbDb"};

// The tests ask for what is where, not for its survival of a power cut.
class UnflushedFiles : public FED_FileLayer
{
public:
  std::error_code Flush(Handle) override { return {}; }
  std::error_code FlushFolder(const std::filesystem::path&) override { return {}; }
};

// All that a database holds.
struct Model
{
  std::map<FED_DataDescriptor, ModelBlock> blocks;
  std::array<std::vector<int>, 2>          ids;  // of nodes and elements
  std::map<int, std::string>               names;
};

void ExpectSame(FED_ResultDatabase& database, const Model& model)
{
  ASSERT_EQ(database.GetDataDescriptors({}).size(), model.blocks.size());
  for (const auto& [key, block] : model.blocks) {
    ASSERT_TRUE(database.HasDataBlock(key));
    ExpectSame(database.GetDataBlock(key), block);
    if (testing::Test::HasFatalFailure()) return;
  }
  for (int kind = 0; kind < 2; ++kind) {
    const std::vector<int>& ids = model.ids[static_cast<std::size_t>(kind)];
    ASSERT_EQ(database.GetIdMapsPool().GetCount(kind), ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) ASSERT_EQ(database.GetIdMapsPool().GetId(kind, i + 1), ids[i]);
  }
  for (int onf = 1000; onf < 1003; ++onf) {
    const auto name = model.names.find(onf);
    ASSERT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(onf)), name == model.names.end() ? "" : name->second);
  }
}

// One run of random work. A failure depends on its steps from 0 on alone, so that of all runs that fail the shortest
// can be told: Run() stops at the first step that differs.
class RandomWork
{
public:
  RandomWork(unsigned seed, std::size_t memoryLimit) : random_(seed)
  {
    options_.memoryLimit = memoryLimit;
    options_.files       = &files_;
    Open(FED_ResultDatabase::Create);
    Commit();
  }

  void Run(int steps)
  {
    for (int step = 0; step < steps; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      Step();
      if (testing::Test::HasFatalFailure()) return;
    }
    Commit();
    Open(FED_ResultDatabase::ReadOnly);
    ExpectSame(*database_, now_);
    EXPECT_TRUE(FED_InspectDatabase(folder_ / "a.fed").findings.empty());
  }

private:
  void Open(FED_ResultDatabase::Access access)
  {
    database_.reset();
    database_ = std::make_unique<FED_ResultDatabase>(folder_ / "a.fed", access, options_);
  }

  void Commit()
  {
    database_->Commit();
    committed_ = now_;
  }

  void Step()
  {
    const int action = random_.Int(0, 99);
    if (action < 60)
      WriteRecords();
    else if (action < 68)
      DeleteBlock();
    else if (action < 76)
      AddIds();
    else if (action < 78)
      SetName();
    else if (action < 90)
      Commit();
    else if (action < 93) {
      database_->Compact();
      committed_ = now_;
    } else if (action < 96) {
      // What was not committed is lost.
      Open(FED_ResultDatabase::ReadWrite);
      now_ = committed_;
      ExpectSame(*database_, now_);
    } else if (action < 98) {
      snapshot_      = std::make_unique<FED_ResultDatabase>(folder_ / "a.fed", FED_ResultDatabase::ReadOnly, options_);
      snapshotModel_ = committed_;
    } else {
      if (snapshot_ != nullptr) ExpectSame(*snapshot_, snapshotModel_);
      ExpectSame(*database_, now_);
    }
  }

  FED_DataDescriptor RandomKey()
  {
    FED_DataDescriptor key(0, FED_OnfId_ScalarHistory);
    key.SetInteger(FED_DataDescriptor::Substep, random_.Int(0, 5));
    return key;
  }

  void WriteRecords()
  {
    const FED_DataDescriptor key = RandomKey();
    if (now_.blocks.find(key) == now_.blocks.end()) {
      const char* format = kFormats[random_.Int(0, 6)];
      database_->CreateDataBlock(key, 0, 0, format);
      now_.blocks[key].types = FED_RecordFormat::Parse(format).GetTypes();
    }
    FED_DataBlock& block = database_->GetDataBlock(key);
    ModelBlock&    twin  = now_.blocks[key];
    if (twin.types.empty()) twin.types = FED_RecordFormat::Parse(kFirstRecords[random_.Int(0, 3)]).GetTypes();
    const bool      isRun   = random_.Int(0, 2) > 0;  // behind the last record, else anywhere
    const int       count   = random_.Int(1, random_.Int(0, 9) == 0 ? 600 : 20);
    FED_DataRecord* scratch = block.CreateDataRecord();
    for (int i = 0; i < count; ++i) {
      const auto        index  = isRun ? (twin.records.empty() ? 1 : twin.records.rbegin()->first + 1)
                                       : static_cast<std::size_t>(random_.Int(0, 1000));
      const ModelRecord record = MakeRecord(twin.types, random_);
      SetFields(*scratch, twin.types, record);
      block.SetRecord(index, *scratch);
      twin.records[index] = record;
    }
    block.DeleteDataRecord(scratch);
  }

  void DeleteBlock()
  {
    const FED_DataDescriptor key = RandomKey();
    if (now_.blocks.erase(key) > 0) database_->DeleteDataBlock(key);
  }

  void AddIds()
  {
    const int         kind = random_.Int(0, 1);
    std::vector<int>& ids  = now_.ids[static_cast<std::size_t>(kind)];
    for (int i = random_.Int(1, 30); i > 0; --i) {
      const int id = random_.Int(-500, 500);
      if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
      database_->GetIdMapsPool().FindOrAddIndex(kind, id);
    }
  }

  void SetName()
  {
    const int         onf  = random_.Int(1000, 1002);
    const std::string name = random_.Int(0, 3) == 0 ? "" : "name " + std::to_string(random_.Int(0, 99));
    database_->SetUserKindName(static_cast<FED_OnfId>(onf), name);
    if (name.empty())
      now_.names.erase(onf);
    else
      now_.names[onf] = name;
  }

  Random                              random_;
  TempFolder                          folder_;
  UnflushedFiles                      files_;
  FED_ResultDatabaseOptions           options_;
  std::unique_ptr<FED_ResultDatabase> database_;
  Model                               now_;
  Model                               committed_;
  std::unique_ptr<FED_ResultDatabase> snapshot_;
  Model                               snapshotModel_;
};

}  // namespace

TEST(DiskModel, RandomWorkCommitsAndReopeningsMatchPlainContainers)
{
  for (unsigned seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomWork(seed, std::size_t{1} << 30).Run(200);
    if (HasFatalFailure()) return;
  }
}

TEST(DiskModel, RandomWorkInLittleMemoryMatchesPlainContainers)
{
  for (unsigned seed = 101; seed <= 106; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomWork(seed, 1).Run(200);
    if (HasFatalFailure()) return;
  }
}
