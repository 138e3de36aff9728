// Random work on a database on disk and on plain containers beside it: commits, reopenings, losses of what was not
// committed, compactions, and readers that keep what they opened.

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_FileLayer.h"
#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

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

// Thrown where the database and the model differ.
struct Difference
{
  std::string what;
};

void Require(bool same, const std::string& what)
{
  if (!same) throw Difference{what};
}

void RequireSame(const FED_DataBlock& block, const ModelBlock& model)
{
  const std::string name    = "block " + block.GetDescriptor().ToString();
  const auto        indices = dynamic_cast<const FED_ColumnDataBlock&>(block).GetIndices();
  Require(indices.size() == model.records.size(), name + " has another number of records");
  FED_ConstDataRecord* record = block.CreateConstDataRecord();
  for (const std::size_t index : indices) {
    const auto found = model.records.find(index);
    Require(found != model.records.end(), name + " has a record too many at " + std::to_string(index));
    block.GetRecord(index, *record);
    Require(GetFields(*record) == found->second, name + " has another record at " + std::to_string(index));
  }
  Require(FED_RecordFormat::FromRecord(*record).GetTypes() == model.types, name + " has another record format");
  block.DeleteDataRecord(record);
}

void RequireSame(FED_ResultDatabase& database, const Model& model)
{
  Require(database.GetDataDescriptors({}).size() == model.blocks.size(), "another number of blocks");
  for (const auto& [key, block] : model.blocks) {
    Require(database.HasDataBlock(key), "no block " + key.ToString());
    RequireSame(database.GetDataBlock(key), block);
  }
  for (int kind = 0; kind < 2; ++kind) {
    const std::vector<int>& ids = model.ids[static_cast<std::size_t>(kind)];
    Require(database.GetIdMapsPool().GetCount(kind) == ids.size(), "another number of ids");
    for (std::size_t i = 0; i < ids.size(); ++i)
      Require(database.GetIdMapsPool().GetId(kind, i + 1) == ids[i], "another id at " + std::to_string(i + 1));
  }
  for (int onf = 1000; onf < 1003; ++onf) {
    const auto name = model.names.find(onf);
    Require(database.GetUserKindName(static_cast<FED_OnfId>(onf)) == (name == model.names.end() ? "" : name->second),
            "another name of a user kind");
  }
}

// Random work on one database. Each step draws from its own seed, so that steps can be left out and the others stay.
class RandomWork
{
public:
  RandomWork(unsigned seed, std::size_t memoryLimit) : seed_(seed)
  {
    options_.memoryLimit = memoryLimit;
    options_.files       = &files_;
  }

  // @return how the database differs from the model, empty when it does not
  std::string Run(const std::vector<unsigned>& steps)
  {
    try {
      Open(FED_ResultDatabase::Create);
      Begin();
      for (const unsigned step : steps) {
        random_ = Random(1000 * seed_ + step);
        Step();
      }
      Commit();
      Open(FED_ResultDatabase::ReadOnly);
      RequireSame(*database_, now_);
      const FED_DatabaseReport report = FED_InspectDatabase(folder_ / "a.fed");
      return report.findings.empty() ? std::string() : report.findings.front();
    } catch (const Difference& difference) {
      return difference.what;
    } catch (const FED_Failure& failure) {
      return failure.what();
    }
  }

private:
  void Open(FED_ResultDatabase::Access access)
  {
    database_.reset();
    database_ = std::make_unique<FED_ResultDatabase>(folder_ / "a.fed", access, options_);
  }

  // Commits a segment that is too large to merge with the small ones behind it, and blocks whose later segments merge
  // without it.
  void Begin()
  {
    const FED_DataDescriptor key(0, FED_OnfId_ScalarHistory);
    FED_DataBlock&           block = database_->GetOrCreateDataBlock(key, 0);
    now_.blocks[key].types         = {2};
    for (std::size_t i = 0; i < 9000; ++i) block.SetScalarAt(i, 0.5);
    for (std::size_t i = 0; i < 9000; ++i) now_.blocks[key].records[i] = {std::vector<double>{0.5}};
    for (int substep = 0; substep < 4; ++substep) {
      const FED_DataDescriptor empty = MakeKey(substep);
      database_->CreateDataBlock(empty, 0, 0, kFormats[substep]);
      now_.blocks[empty].types = FED_RecordFormat::Parse(kFormats[substep]).GetTypes();
    }
    Commit();
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
      RequireSame(*database_, now_);
    } else if (action < 98) {
      snapshot_      = std::make_unique<FED_ResultDatabase>(folder_ / "a.fed", FED_ResultDatabase::ReadOnly, options_);
      snapshotModel_ = committed_;
    } else {
      if (snapshot_ != nullptr) RequireSame(*snapshot_, snapshotModel_);
      RequireSame(*database_, now_);
    }
  }

  static FED_DataDescriptor MakeKey(int substep)
  {
    FED_DataDescriptor key(0, FED_OnfId_ScalarHistory);
    key.SetInteger(FED_DataDescriptor::Substep, substep);
    return key;
  }

  FED_DataDescriptor RandomKey() { return MakeKey(random_.Int(0, 5)); }

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

  unsigned                            seed_;
  Random                              random_{0};
  TempFolder                          folder_;
  UnflushedFiles                      files_;
  FED_ResultDatabaseOptions           options_;
  std::unique_ptr<FED_ResultDatabase> database_;
  Model                               now_;
  Model                               committed_;
  std::unique_ptr<FED_ResultDatabase> snapshot_;
  Model                               snapshotModel_;
};

std::string RunSteps(unsigned seed, std::size_t memoryLimit, const std::vector<unsigned>& steps)
{
  return RandomWork(seed, memoryLimit).Run(steps);
}

// @return the steps that are left when none more can be left out without the difference going
std::vector<unsigned> Shrink(unsigned seed, std::size_t memoryLimit, std::vector<unsigned> steps)
{
  for (std::size_t size = steps.size(); size > 0; size /= 2)
    for (std::size_t first = 0; first + size <= steps.size();) {
      std::vector<unsigned> fewer = steps;
      const auto            begin = fewer.begin() + static_cast<std::ptrdiff_t>(first);
      fewer.erase(begin, begin + static_cast<std::ptrdiff_t>(size));
      if (RunSteps(seed, memoryLimit, fewer).empty())
        first += size;
      else
        steps = std::move(fewer);
    }
  return steps;
}

void ExpectNoDifference(unsigned seed, std::size_t memoryLimit, unsigned count)
{
  std::vector<unsigned> steps(count);
  std::iota(steps.begin(), steps.end(), 0u);
  if (RunSteps(seed, memoryLimit, steps).empty()) return;
  steps = Shrink(seed, memoryLimit, steps);
  ADD_FAILURE() << "seed " << seed << ", steps " << testing::PrintToString(steps) << ": "
                << RunSteps(seed, memoryLimit, steps);
}

}  // namespace

TEST(DiskModel, RandomWorkCommitsAndReopeningsMatchPlainContainers)
{
  for (unsigned seed = 1; seed <= 8; ++seed) ExpectNoDifference(seed, std::size_t{1} << 30, 200);
}

TEST(DiskModel, RandomWorkInLittleMemoryMatchesPlainContainers)
{
  for (unsigned seed = 101; seed <= 106; ++seed) ExpectNoDifference(seed, 1, 200);
}
