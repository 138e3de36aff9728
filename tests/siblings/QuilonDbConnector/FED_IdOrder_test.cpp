// Orders by id: what is read there is what the blocks have, and what is wrong with them harms nobody.

#include "bundled/FED_IdOrder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"
#include "stored_tensors.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

constexpr auto        kScalar = static_cast<FED_OnfId>(514);
constexpr auto        kVector = static_cast<FED_OnfId>(510);
constexpr auto        kTensor = static_cast<FED_OnfId>(521);
constexpr auto        kPoints = static_cast<FED_OnfId>(582);
constexpr std::size_t kEnough = std::size_t{1} << 26;

std::vector<FED_DataDescriptor> Steps(FED_OnfId onf, int count)
{
  std::vector<FED_DataDescriptor> steps;
  for (int step = 1; step <= count; ++step) steps.push_back(Key(onf, step));
  return steps;
}

void SetTensor(FED_ResultDatabase& database, int step, int id, double value)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(Key(kTensor, step), 0), database.GetIdMapsPool(), true);
  const double    tensor[6] = {value, 1.0 * id, 1.0 * step, 0, 0, -value};
  view.SetTensor(id, tensor);
}

/// Records by block and index, "step:index" to values.
using Records = std::map<std::string, std::vector<double>>;

std::string NameOf(std::size_t block, std::size_t index) { return std::to_string(block) + ':' + std::to_string(index); }

/// The second method: block by block, record by record.
Records ReadBlocks(const FED_ResultDatabase& database, const std::vector<FED_DataDescriptor>& blocks, std::size_t width)
{
  Records records;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const FED_DataBlock& block = database.GetConstDataBlock(blocks[i]);
    for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
      std::vector<double> values(width);
      block.GetValuesAt(*it, values.data());
      records[NameOf(i, *it)] = values;
    }
  }
  return records;
}

Records ReadOrder(const FED_IdOrder& order, std::uint32_t lastIndex)
{
  Records records;
  for (std::uint32_t index = 0; index <= lastIndex; ++index)
    order.Visit(index, [&](std::size_t block, const double* values) {
      records[NameOf(block, index)] = {values, values + order.GetWidth()};
    });
  return records;
}

class IdOrders : public testing::Test
{
protected:
  /// Writes an order and compares it with the blocks.
  FED_IdOrderReport WriteAndCompare(const std::vector<FED_DataDescriptor>& blocks, std::size_t width,
                                    std::size_t memory = kEnough) const
  {
    FED_ResultDatabase      database(path_, FED_ResultDatabase::ReadWrite);
    const FED_IdOrderReport report = database.WriteIdOrder(blocks, memory);
    const FED_IdOrder       order(files_, path_ / report.file);
    EXPECT_EQ(order.GetBlocks().size(), blocks.size());
    EXPECT_EQ(order.GetWidth(), width);
    EXPECT_EQ(order.GetFileBytes(), report.fileBytes);
    EXPECT_EQ(order.GetFileBytes(), fs::file_size(path_ / report.file));
    for (const FED_OrderedBlock& block : order.GetBlocks()) EXPECT_TRUE(database.IsAsItWas(block));
    const Records expected = ReadBlocks(database, blocks, width);
    EXPECT_EQ(ReadOrder(order, 5000), expected);
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(FED_InspectDatabase(path_).findings, std::vector<std::string>());
    EXPECT_EQ(FED_InspectDatabase(path_).leftovers, std::vector<std::string>());
    return report;
  }

  /// Two steps of 300 tensors.
  void MakeSmall() const
  {
    FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
    for (int step = 1; step <= 2; ++step)
      for (int id = 1; id <= 300; ++id) SetTensor(database, step, id, 0.5 * id);
    database.Commit();
  }

  std::string OrderOfSmall() const
  {
    return FED_ResultDatabase(path_, FED_ResultDatabase::ReadWrite).WriteIdOrder(Steps(kTensor, 2), kEnough).file;
  }

  mutable FED_FileLayer files_;
  TempFolder            folder_;
  fs::path              path_ = folder_ / "a.fed";
};

TEST_F(IdOrders, HaveTheRecordsOfTheirBlocks)
{
  FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
  for (int step = 1; step <= 70; ++step)  // more than one word of bits
    for (int id = 1; id <= 40; ++id) {
      SetTensor(database, step, id, 1.0 / id);
      FED_IdDataBlock(database.GetOrCreateDataBlock(Key(kScalar, step), 0), database.GetIdMapsPool(), true)
          .SetScalar(id, 0.1 * id + step);
      const double vector[3] = {1.0 * step, -1.0 * id, 1e-300};
      FED_IdDataBlock(database.GetOrCreateDataBlock(Key(kVector, step), 0), database.GetIdMapsPool(), true)
          .SetVector(id, vector);
    }
  database.Commit();
  const auto write = [&](FED_OnfId onf, std::size_t width) {
    const FED_IdOrderReport report = database.WriteIdOrder(Steps(onf, 70), kEnough);
    EXPECT_EQ(report.rows, 40U);
    EXPECT_EQ(ReadOrder(FED_IdOrder(files_, path_ / report.file), 100), ReadBlocks(database, Steps(onf, 70), width));
  };
  write(kTensor, 6);
  write(kVector, 3);
  write(kScalar, 1);
  EXPECT_EQ(database.OpenIdOrders().orders.size(), 3U);
}

TEST_F(IdOrders, TakeRecordsInAnyOrderAndBlocksThatLackSome)
{
  std::mt19937 random(11);
  {
    FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
    for (int step = 1; step <= 9; ++step) {
      std::vector<int> ids(400);
      for (int& id : ids) id = static_cast<int>(random() % 1000);
      for (const int id : ids) SetTensor(database, step, id, 0.25 * id);
    }
    database.Commit();
    for (int step = 2; step <= 4; ++step)
      for (int id = 5; id < 1000; id += 7) SetTensor(database, step, id, -1.0 * id);
    database.Commit();
  }
  WriteAndCompare(Steps(kTensor, 9), 6);
}

TEST_F(IdOrders, GoThroughATemporaryFileWhereMemoryIsShort)
{
  {
    FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
    for (int step = 1; step <= 6; ++step) {
      for (int id = 1; id <= 900; ++id)
        if (id % 10 != step) SetTensor(database, step, id, 1.0 * id / step);
      if (step == 3) database.Commit();
    }
    database.Commit();
  }
  const FED_IdOrderReport all = WriteAndCompare(Steps(kTensor, 6), 6);
  EXPECT_EQ(all.temporaryBytes, 0U);
  std::ifstream     in(path_ / all.file, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  for (const std::size_t memory : {std::size_t{1}, std::size_t{200'000}}) {
    const FED_IdOrderReport report = WriteAndCompare(Steps(kTensor, 6), 6, memory);
    EXPECT_GT(report.temporaryBytes, 0U);
    EXPECT_EQ(report.file, all.file);
    std::ifstream again(path_ / report.file, std::ios::binary);
    EXPECT_TRUE((std::string{std::istreambuf_iterator<char>(again), std::istreambuf_iterator<char>()} == bytes));
  }
}

TEST_F(IdOrders, TellWhichBlocksHaveChanged)
{
  MakeSmall();
  const std::string name   = OrderOfSmall();
  const auto        ofStep = [&](FED_ResultDatabase& database, std::size_t position) {
    return database.IsAsItWas(FED_IdOrder(files_, path_ / name).GetBlocks()[position]);
  };
  FED_ResultDatabase database(path_, FED_ResultDatabase::ReadWrite);
  // New steps and new ids change nothing.
  SetTensor(database, 3, 7000, 1.0);
  database.Commit();
  EXPECT_TRUE(ofStep(database, 0) && ofStep(database, 1));
  SetTensor(database, 2, 7, -7.0);
  database.Commit();
  EXPECT_TRUE(ofStep(database, 0));
  EXPECT_FALSE(ofStep(database, 1));
  // Half of it is true, so it stays.
  EXPECT_EQ(database.RemoveStaleIdOrders(), std::vector<std::string>());
  database.Compact();
  EXPECT_TRUE(ofStep(database, 0));
  database.DeleteDataBlock(Key(kTensor, 1));
  database.Commit();
  EXPECT_FALSE(ofStep(database, 0));
  EXPECT_EQ(database.RemoveStaleIdOrders(), std::vector<std::string>{name});
  EXPECT_FALSE(fs::exists(path_ / name));
  // What is committed counts.
  SetTensor(database, 2, 8, -8.0);
  const FED_IdOrderReport report = database.WriteIdOrder({Key(kTensor, 2), Key(kTensor, 3)}, kEnough);
  EXPECT_EQ(database.OpenIdOrders().orders.size(), 1U);
  EXPECT_EQ(database.RemoveIdOrders(), std::vector<std::string>{report.file});
}

TEST_F(IdOrders, AreOfDoublesOfOneFormat)
{
  FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
  SetTensor(database, 1, 1, 1.0);
  database.GetOrCreateDataBlock(Key(kScalar, 1), 0).SetScalarAt(1, 1.0);
  database.CreateDataBlock(Key(kTensor, 2), 0, 0, "T");
  FED_DataBlock&        points = database.GetOrCreateDataBlock(Key(kPoints, 1), 0);
  FED_DataRecord* const record = points.CreateDataRecord();
  record->SetInteger(1, 1);
  record->SetDoubleList(2, std::vector<double>(6, 1.0));
  points.SetRecord(1, *record);
  points.DeleteDataRecord(record);
  database.Commit();
  EXPECT_THROW(database.WriteIdOrder({Key(kTensor, 1), Key(kScalar, 1)}, kEnough), FED_Failure);
  EXPECT_THROW(database.WriteIdOrder({Key(kTensor, 2)}, kEnough), FED_Failure);
  EXPECT_THROW(database.WriteIdOrder({Key(kPoints, 1)}, kEnough), FED_Failure);
  EXPECT_THROW(database.WriteIdOrder({Key(kTensor, 9)}, kEnough), FED_Failure);
  EXPECT_THROW(database.WriteIdOrder({}, kEnough), FED_Failure);
  FED_ResultDatabase inMemory;
  SetTensor(inMemory, 1, 1, 1.0);
  EXPECT_THROW(inMemory.WriteIdOrder({Key(kTensor, 1)}, kEnough), FED_Failure);
  EXPECT_TRUE(inMemory.OpenIdOrders().orders.empty());
  EXPECT_TRUE(inMemory.RemoveStaleIdOrders().empty());
  EXPECT_THROW(FED_ResultDatabase(path_, FED_ResultDatabase::ReadOnly).WriteIdOrder({Key(kTensor, 1)}, kEnough),
               FED_Failure);
}

/// Every byte that is changed, and every length that the file is cut to, is told by reading or checking it.
TEST_F(IdOrders, DamageIsTold)
{
  {
    FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
    for (const int id : {1, 2, 5}) SetTensor(database, 1, id, 1.5 * id);
    const double tensor[6] = {9, 8, 7, 6, 5, 4};
    database.GetDataBlock(Key(kTensor, 1)).SetValuesAt(9, tensor);  // so that the indices are no run
    SetTensor(database, 2, 2, 2.5);
    database.Commit();
  }
  const fs::path    file = path_ / OrderOfSmall();
  std::ifstream     in(file, std::ios::binary);
  const std::string whole{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const auto        isTold = [&] {
    const FED_DatabaseReport report = FED_InspectDatabase(path_);
    return report.findings.size() == 1 && report.findings[0].find(file.filename().string()) != std::string::npos;
  };
  ASSERT_EQ(FED_InspectDatabase(path_).findings, std::vector<std::string>());
  for (std::size_t i = 0; i < whole.size(); ++i) {
    std::string changed = whole;
    changed[i]          = static_cast<char>(changed[i] ^ 0x41);
    std::ofstream(file, std::ios::binary) << changed;
    EXPECT_TRUE(isTold()) << i;
  }
  for (std::size_t size = 0; size < whole.size(); ++size) {
    std::ofstream(file, std::ios::binary) << whole.substr(0, size);
    EXPECT_TRUE(isTold()) << size;
  }
  // It can go at any time, and goes with the next order.
  FED_ResultDatabase database(path_, FED_ResultDatabase::ReadWrite);
  EXPECT_EQ(database.OpenIdOrders().failures.size(), 1U);
  EXPECT_EQ(database.RemoveStaleIdOrders().size(), 1U);
  EXPECT_EQ(FED_InspectDatabase(path_).findings, std::vector<std::string>());
}

/// A disk that fails at one call of those that change something.
class FailingDisk : public FED_FileLayer
{
public:
  int calls = 0;
  int fails = -1;

  std::error_code Open(const fs::path& path, Mode mode, Handle& handle) override
  {
    if (mode != Read && Fails()) {
      handle = kNoHandle;
      return std::make_error_code(std::errc::no_space_on_device);
    }
    return FED_FileLayer::Open(path, mode, handle);
  }
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override
  {
    return Fails() ? std::make_error_code(std::errc::no_space_on_device)
                   : FED_FileLayer::WriteAt(handle, offset, bytes, count);
  }
  std::error_code Flush(Handle handle) override
  {
    return Fails() ? std::make_error_code(std::errc::io_error) : FED_FileLayer::Flush(handle);
  }
  std::error_code Rename(const fs::path& from, const fs::path& to) override
  {
    return Fails() ? std::make_error_code(std::errc::io_error) : FED_FileLayer::Rename(from, to);
  }

private:
  bool Fails() { return calls++ == fails; }
};

TEST_F(IdOrders, ADiskThatFailsLeavesNothing)
{
  MakeSmall();
  for (int call = 0;; ++call) {
    FailingDisk               disk;
    FED_ResultDatabaseOptions options;
    options.files = &disk;
    FED_ResultDatabase database(path_, FED_ResultDatabase::ReadWrite, options);
    disk.calls = 0;
    disk.fails = call;
    try {
      database.WriteIdOrder(Steps(kTensor, 2), 1);
      EXPECT_GT(call, 5);
      break;
    } catch (const FED_Failure&) {
      EXPECT_TRUE(database.OpenIdOrders().orders.empty()) << call;
      EXPECT_FALSE(fs::exists(path_ / "order.new")) << call;
      EXPECT_FALSE(fs::exists(path_ / "order.tiles")) << call;
    }
  }
}

/// A disk on which orders cannot be opened or read.
class UnreadableOrders : public FED_FileLayer
{
public:
  enum Fails : int
  {
    Nothing,
    Opening,
    Reading
  };

  Fails fails = Nothing;

  std::error_code Open(const fs::path& path, Mode mode, Handle& handle) override
  {
    const bool isOrder = path.extension() == ".order";
    if (isOrder && fails == Opening) {
      handle = kNoHandle;
      return std::make_error_code(std::errc::too_many_files_open);
    }
    const std::error_code error = FED_FileLayer::Open(path, mode, handle);
    if (isOrder) order_ = handle;
    return error;
  }
  std::error_code ReadAt(Handle handle, std::uint64_t offset, void* bytes, std::size_t count,
                         std::size_t& done) override
  {
    done = 0;
    return fails == Reading && handle == order_ ? std::make_error_code(std::errc::io_error)
                                                : FED_FileLayer::ReadAt(handle, offset, bytes, count, done);
  }

private:
  Handle order_ = kNoHandle;
};

// That one cannot be read now says nothing about it.
TEST_F(IdOrders, ThoseThatCannotBeReadStayAndAreTold)
{
  MakeSmall();
  const std::string         name = OrderOfSmall();
  UnreadableOrders          disk;
  FED_ResultDatabaseOptions options;
  options.files = &disk;
  FED_ResultDatabase database(path_, FED_ResultDatabase::ReadWrite, options);
  for (const auto& [fails, text] : {std::pair(UnreadableOrders::Opening, ": cannot open: "),
                                    std::pair(UnreadableOrders::Reading, ": cannot read: ")})
  {
    disk.fails                = fails;
    const std::string message = MessageOf([&] { database.RemoveStaleIdOrders(); });
    EXPECT_EQ(message.find((path_ / name).string() + text), 0U) << message;
    EXPECT_TRUE(fs::exists(path_ / name));
    EXPECT_EQ(database.OpenIdOrders().failures.size(), 1U);
  }
  disk.fails = UnreadableOrders::Nothing;
  EXPECT_EQ(database.RemoveStaleIdOrders(), std::vector<std::string>());
  EXPECT_EQ(database.OpenIdOrders().orders.size(), 1U);
}

// Blocks of several chunks, of which each lacks other records, one of them behind a chunk's end.
TEST_F(IdOrders, TakeBlocksOfSeveralChunks)
{
  constexpr int kIds = 70'000;  // a chunk has 65,536
  {
    FED_ResultDatabase database(path_, FED_ResultDatabase::Create);
    for (int step = 1; step <= 3; ++step)
      for (int id = 1; id <= kIds; ++id)
        if (id % 20'000 != step) SetTensor(database, step, id, 0.5 * id);
    for (int id = kIds + 10; id > kIds; --id) SetTensor(database, 3, id, 1.0);  // these do not ascend
    database.Commit();
  }
  FED_ResultDatabase                    database(path_, FED_ResultDatabase::ReadWrite);
  const std::vector<FED_DataDescriptor> blocks = Steps(kTensor, 3);
  const FED_IdOrderReport               report = database.WriteIdOrder(blocks, kEnough);
  EXPECT_EQ(report.rows, kIds + 10U);
  const FED_IdOrder order(files_, path_ / report.file);
  std::size_t       wrong = 0;
  for (std::uint32_t index = 1; index <= kIds + 10; index += index % 10'000 < 10 || index > 65'500 ? 1 : 7) {
    std::vector<bool> isThere(blocks.size());
    order.Visit(index, [&](std::size_t block, const double* values) {
      double expected[6] = {};
      isThere[block]     = true;
      database.GetConstDataBlock(blocks[block]).GetValuesAt(index, expected);
      wrong += std::equal(values, values + 6, expected) ? 0 : 1;
    });
    for (std::size_t i = 0; i < blocks.size(); ++i)
      wrong += isThere[i] == database.GetConstDataBlock(blocks[i]).HasRecord(index) ? 0 : 1;
  }
  EXPECT_EQ(wrong, 0U);
}

TEST_F(IdOrders, WhatADeadWriterLeftGoesWithTheNext)
{
  MakeSmall();
  std::ofstream(path_ / "order.new") << "half";
  std::ofstream(path_ / "order.tiles") << "half";
  EXPECT_EQ(FED_InspectDatabase(path_).leftovers, (std::vector<std::string>{"order.new", "order.tiles"}));
  OrderOfSmall();
  EXPECT_EQ(FED_InspectDatabase(path_).leftovers, std::vector<std::string>());
}

}  // namespace
}  // namespace quilon_test
