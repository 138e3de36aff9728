// Random work on a database on disk - writes, deletions, commits, compactions, reopenings, readers that keep what they
// have opened - and on plain containers beside it. What fails is reported as the shortest sequence that fails.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_FileLayer.h"
#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "record_model.h"
#include "shrink.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

// Nothing crashes here, so nothing waits for the disk.
class UnflushedFiles final : public FED_FileLayer
{
public:
  std::error_code Flush(Handle) override { return {}; }
  std::error_code FlushFolder(const std::filesystem::path&) override { return {}; }
};

struct Model
{
  std::map<FED_DataDescriptor, ModelBlock> blocks;
  std::map<int, std::vector<int>>          ids;  // by kind
  std::map<int, std::string>               names;
};

struct Operation
{
  enum Kind : int
  {
    Write,
    WriteLong,  // lists of tens of thousands of elements
    Create,
    Delete,
    AddId,
    Rename,
    Commit,
    Compact,
    Reopen,  // what was not committed is lost
    OpenReader,
    CheckReader,
    Check
  };

  Kind        kind;
  int         block;   // or the entity kind, or the user kind less 1000
  std::size_t index;   // or the id
  unsigned    number;  // chooses values, format or name
};

constexpr std::array<const char*, 12> kFormats = {"",    "D",  "V",    "T",         "DdV",  "I",
                                                  "iFS", "Lb", "lbDb", "IIbDbLbLb", "SSDb", "IiFDdVTSLblbDb"};

std::string ToString(const Operation& operation)
{
  static constexpr std::array<const char*, 12> kNames = {"Write",  "WriteLong",  "Create",      "Delete",
                                                         "AddId",  "Rename",     "Commit",      "Compact",
                                                         "Reopen", "OpenReader", "CheckReader", "Check"};
  return std::string(kNames[static_cast<std::size_t>(operation.kind)]) + " block " + std::to_string(operation.block) +
         " index " + std::to_string(operation.index) + " number " + std::to_string(operation.number);
}

FED_DataDescriptor KeyOf(int block) { return FED_DataDescriptor(block, static_cast<FED_OnfId>(590)); }

std::vector<Operation> MakeOperations(unsigned seed, int count)
{
  Random                 random(seed);
  std::vector<Operation> operations;
  const int              spread = std::array<int, 4>{5, 60, 3000, 2147483647}[seed % 4];
  for (int i = 0; i < count; ++i) {
    const int draw = random.Int(0, 99);
    Operation operation{Operation::Write, random.Int(0, 7), static_cast<std::size_t>(random.Int(0, spread)),
                        static_cast<unsigned>(random.Int(0, 1000000))};
    const std::pair<int, Operation::Kind> kinds[] = {
        {60, Operation::Write},  {62, Operation::WriteLong},  {65, Operation::Create},      {69, Operation::Delete},
        {76, Operation::AddId},  {78, Operation::Rename},     {86, Operation::Commit},      {88, Operation::Compact},
        {91, Operation::Reopen}, {93, Operation::OpenReader}, {96, Operation::CheckReader}, {99, Operation::Check}};
    for (const auto& [last, kind] : kinds) {
      operation.kind = kind;
      if (draw <= last) break;
    }
    operations.push_back(operation);
  }
  return operations;
}

void LengthenLists(ModelRecord& record)
{
  for (Value& value : record) {
    if (auto* integers = std::get_if<std::vector<int>>(&value)) integers->resize(70000, 5);
    if (auto* text = std::get_if<std::string>(&value)) text->resize(70000, 'x');
  }
}

// @return what differs, empty when nothing does
std::string CompareBlock(const FED_DataBlock& block, const ModelBlock& twin)
{
  const auto&       columns = dynamic_cast<const FED_ColumnDataBlock&>(block);
  const std::string name    = block.GetDescriptor().ToString();
  if (columns.GetRecordFormat().GetTypes() != twin.types) return name + " has another format";
  if (columns.GetRecordCount() != twin.records.size())
    return name + " has " + std::to_string(columns.GetRecordCount()) + " records";
  const std::size_t greatest = twin.records.empty() ? 0 : twin.records.rbegin()->first;
  if (block.GetMaxIndex() != greatest) return name + " has the greatest index " + std::to_string(block.GetMaxIndex());
  for (std::size_t field = 1; field <= twin.types.size(); ++field) {
    const FED_FieldStatistics actual   = columns.GetFieldStatistics(field);
    const FED_FieldStatistics expected = CountField(twin, field);
    if (actual.elements != expected.elements || actual.hasRange != expected.hasRange || actual.nans != expected.nans ||
        actual.least != expected.least || actual.greatest != expected.greatest)
      return name + " has other statistics of record field " + std::to_string(field);
  }
  FED_ConstDataRecord* const record = block.CreateConstDataRecord();
  std::string                difference;
  for (const auto& [index, expected] : twin.records) {
    if (!block.HasRecord(index)) {
      difference = name + " has no record at index " + std::to_string(index);
      break;
    }
    block.GetRecord(index, *record);
    if (!(GetFields(*record) == expected)) {
      difference = name + " has another record at index " + std::to_string(index);
      break;
    }
  }
  block.DeleteDataRecord(record);
  return difference;
}

std::string Compare(const FED_ResultDatabase& database, const Model& model)
{
  const std::vector<FED_DataDescriptor> keys = database.GetDataDescriptors({});
  if (keys.size() != model.blocks.size()) return std::to_string(keys.size()) + " blocks";
  for (const FED_DataDescriptor& key : keys) {
    const auto found = model.blocks.find(key);
    if (found == model.blocks.end()) return "a block " + key.ToString();
    const std::string difference = CompareBlock(database.GetConstDataBlock(key), found->second);
    if (!difference.empty()) return difference;
  }
  const FED_ResultIdMapsPool& pool = database.GetIdMapsPool();
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind) {
    const auto              found = model.ids.find(kind);
    const std::vector<int>& ids   = found == model.ids.end() ? std::vector<int>{} : found->second;
    if (pool.GetCount(kind) != ids.size())
      return std::to_string(pool.GetCount(kind)) + " ids of kind " + std::to_string(kind);
    for (std::size_t i = 0; i < ids.size(); ++i)
      if (pool.GetId(kind, i + 1) != ids[i] || pool.FindIndex(kind, ids[i]) != i + 1)
        return "another id of kind " + std::to_string(kind) + " at index " + std::to_string(i + 1);
  }
  for (int kind = 1000; kind < 1010; ++kind) {
    const auto found = model.names.find(kind);
    if (database.GetUserKindName(static_cast<FED_OnfId>(kind)) != (found == model.names.end() ? "" : found->second))
      return "another name of kind " + std::to_string(kind);
  }
  return {};
}

// A database and its model, and what stands in the last commit.
class Work
{
public:
  Work(const std::filesystem::path& folder, std::size_t memoryLimit) : folder_(folder)
  {
    options_.memoryLimit = memoryLimit;
    options_.files       = &files_;
    database_            = std::make_unique<FED_ResultDatabase>(folder_, FED_ResultDatabase::Create, options_);
    Begin();
  }

  // @return what differs from the model, empty when nothing does
  std::string Do(const Operation& operation)
  {
    switch (operation.kind) {
      case Operation::Write:
      case Operation::WriteLong:
        Write(operation);
        return {};
      case Operation::Create:
        GetBlock(operation);
        return {};
      case Operation::Delete:
        if (model_.blocks.erase(KeyOf(operation.block)) == 1) database_->DeleteDataBlock(KeyOf(operation.block));
        return {};
      case Operation::AddId: {
        const int         id  = static_cast<int>(operation.index) - 30;
        std::vector<int>& ids = model_.ids[operation.block];
        if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
        database_->GetIdMapsPool().FindOrAddIndex(operation.block, id);
        return {};
      }
      case Operation::Rename: {
        const int         kind = 1000 + operation.block;
        const std::string name = operation.number % 3 == 0 ? "" : "name " + std::to_string(operation.number);
        database_->SetUserKindName(static_cast<FED_OnfId>(kind), name);
        model_.names.erase(kind);
        if (!name.empty()) model_.names[kind] = name;
        return {};
      }
      case Operation::Commit:
      case Operation::Compact:
        if (operation.kind == Operation::Commit)
          database_->Commit();
        else
          database_->Compact();
        committed_ = model_;
        return {};
      case Operation::Reopen:
        database_.reset();
        database_ = std::make_unique<FED_ResultDatabase>(folder_, FED_ResultDatabase::ReadWrite, options_);
        model_    = committed_;
        return {};
      case Operation::OpenReader:
        reader_   = std::make_unique<FED_ResultDatabase>(folder_, FED_ResultDatabase::ReadOnly, options_);
        snapshot_ = committed_;
        return {};
      case Operation::CheckReader: {
        const std::string difference = reader_ == nullptr ? std::string() : Compare(*reader_, snapshot_);
        return difference.empty() ? difference : "the reader: " + difference;
      }
      case Operation::Check:
        return Compare(*database_, model_);
    }
    return "an operation that is none";
  }

private:
  // Commits blocks without records and a segment that is too large to merge with the small ones behind it: what comes
  // later for these blocks merges without their first segment.
  void Begin()
  {
    for (int block = 0; block < 4; ++block) GetBlock({Operation::Create, block, 0, static_cast<unsigned>(block)});
    Operation large{Operation::WriteLong, 100, 1, 10};  // two strings
    Write(large);
    database_->Commit();
    committed_ = model_;
  }

  FED_DataBlock& GetBlock(const Operation& operation)
  {
    const FED_DataDescriptor key = KeyOf(operation.block);
    if (model_.blocks.find(key) != model_.blocks.end()) return database_->GetDataBlock(key);
    const char* const format = kFormats[operation.number % kFormats.size()];
    model_.blocks[key].types = FED_RecordFormat::Parse(format).GetTypes();
    return *database_->CreateDataBlock(key, operation.number % 300, 0, format);
  }

  void Write(const Operation& operation)
  {
    FED_DataBlock& block = GetBlock(operation);
    ModelBlock&    twin  = model_.blocks.at(KeyOf(operation.block));
    if (twin.types.empty()) twin.types = FED_RecordFormat::Parse("IDSLbV").GetTypes();
    Random      random(operation.number);
    ModelRecord record = MakeRecord(twin.types, random);
    if (operation.kind == Operation::WriteLong) LengthenLists(record);
    FED_DataRecord* const scratch = block.CreateDataRecord();
    SetFields(*scratch, twin.types, record);
    block.SetRecord(operation.index, *scratch);
    block.DeleteDataRecord(scratch);
    twin.records[operation.index] = std::move(record);
  }

  UnflushedFiles                      files_;
  std::filesystem::path               folder_;
  FED_ResultDatabaseOptions           options_;
  std::unique_ptr<FED_ResultDatabase> database_, reader_;
  Model                               model_, committed_, snapshot_;
};

// @return how the sequence fails, empty when it does not
std::string FindFailure(const std::vector<Operation>& operations, std::size_t memoryLimit)
{
  const TempFolder folder;
  try {
    Work work(folder / "a.fed", memoryLimit);
    for (const Operation& operation : operations) {
      const std::string difference = work.Do(operation);
      if (!difference.empty()) return ToString(operation) + ": the database has " + difference;
    }
    const Operation::Kind last[] = {Operation::Check,  Operation::CheckReader, Operation::Commit,
                                    Operation::Reopen, Operation::Check,       Operation::CheckReader};
    for (const Operation::Kind kind : last) {
      const std::string difference = work.Do({kind, 0, 0, 0});
      if (!difference.empty()) return "in the end the database has " + difference;
    }
    const FED_DatabaseReport report = FED_InspectDatabase(folder / "a.fed");
    if (!report.findings.empty()) return "in the end: " + report.findings.front();
  } catch (const FED_Failure& failure) {
    return std::string("failure: ") + failure.what();
  }
  return {};
}

}  // namespace

TEST(Shrink, FindsTheFewestOperationsThatFail)
{
  std::vector<int> operations(100);
  for (std::size_t i = 0; i < operations.size(); ++i) operations[i] = static_cast<int>(i);
  int        runs  = 0;
  const auto fails = [&runs](const std::vector<int>& some) {
    ++runs;
    const auto has = [&some](int one) { return std::find(some.begin(), some.end(), one) != some.end(); };
    return has(3) && has(42) && has(97);
  };
  EXPECT_EQ(Shrink(operations, fails), (std::vector<int>{3, 42, 97}));
  EXPECT_LT(runs, 200);
}

TEST(Shrink, LeavesNothingWhereNothingFailsToo)
{
  EXPECT_EQ(Shrink(std::vector<int>{1, 2, 3}, [](const std::vector<int>&) { return true; }), std::vector<int>{});
}

TEST(DatabaseOnDiskModel, RandomWorkMatchesPlainContainersAcrossCommitsReopeningsAndCompactions)
{
  // The long form goes over more of them.
  const char* const seeds = std::getenv("QUILON_MODEL_SEEDS");
  const unsigned    last  = seeds == nullptr ? 24 : static_cast<unsigned>(std::stoul(seeds));
  for (unsigned seed = 1; seed <= last; ++seed) {
    const std::size_t            memoryLimit = std::array<std::size_t, 3>{1, 300000, std::size_t{1} << 30}[seed % 3];
    const std::vector<Operation> operations  = MakeOperations(seed, 250);
    const std::string            failure     = FindFailure(operations, memoryLimit);
    if (failure.empty()) continue;
    const std::vector<Operation> fewest =
        Shrink(operations, [&](const std::vector<Operation>& some) { return !FindFailure(some, memoryLimit).empty(); });
    std::string text;
    for (const Operation& operation : fewest) text += "\n  " + ToString(operation);
    FAIL() << "seed " << seed << ", memory limit " << memoryLimit << ": " << FindFailure(fewest, memoryLimit) << text
           << "\nat first: " << failure;
  }
}
