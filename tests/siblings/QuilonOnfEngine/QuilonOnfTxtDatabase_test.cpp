#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bundled/FED_ResultDatabase.h"
#include "bundled/OnfStores.h"
#include "gtest/gtest.h"
#include "onf_text_support.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"

namespace {

constexpr int kTemperature = 514;  // nodes, one double
constexpr int kStress      = 521;  // nodes, a tensor
constexpr int kHistory     = 500;  // index-addressed, one double

const std::string kEmptyIndex = "onf-text-index: 1\nnames: 0\nblocks: 0\n";

/// Writes one temperature under id 1 and publishes it.
void WriteTemperature(const std::filesystem::path& folder, int loadCase, double value)
{
  QuilonOnfTxtDatabase database(folder.wstring());
  OpenToWrite(database);
  SetScalar(database, MakeKey(kTemperature, loadCase), 1, value);
  database.ReleaseDb(false);
}

/// Knows how many bytes it was asked for, and which stores there are.
class CountedStores final : public OnfStores
{
public:
  CountedStores() : former_(Set(this)) {}
  CountedStores(const CountedStores&)            = delete;
  CountedStores& operator=(const CountedStores&) = delete;
  ~CountedStores() override { EXPECT_EQ(Set(former_), this); }

  std::unique_ptr<OnfStore> MakeStore(std::uint64_t bytes) override
  {
    asked.push_back(bytes);
    return hasAny ? std::make_unique<Store>(*this) : nullptr;
  }

  std::vector<std::uint64_t> asked;
  bool                       hasAny = true;
  FED_ResultDatabase*        last   = nullptr;  ///< store that is there

private:
  class Store final : public OnfStore
  {
  public:
    explicit Store(CountedStores& stores) : stores_(stores) { stores_.last = &database_; }
    Store(const Store&)            = delete;
    Store& operator=(const Store&) = delete;
    ~Store() override { stores_.last = nullptr; }

    FED_ResultDatabase& Get() noexcept override { return database_; }

  private:
    CountedStores&     stores_;
    FED_ResultDatabase database_;
  };

  OnfStores* former_;
};

}  // namespace

TEST(QuilonOnfTxtDatabase, WhatIsReadStaysWhereItIsToldTo)
{
  const quilon_test::TempFolder test;
  const std::filesystem::path   folder = test / "onf";
  CountedStores                 stores;
  WriteTemperature(folder, 1, 20.5);
  WriteTemperature(folder, 2, 21.5);
  EXPECT_TRUE(stores.asked.empty());  // who writes is not asked
  std::uint64_t bytes = 0;
  for (const auto& [name, text] : ReadAllFiles(folder)) bytes += name == "index" ? 0 : text.size();
  {
    QuilonOnfTxtDatabase database(folder.wstring());
    OpenToRead(database);
    EXPECT_EQ(stores.asked, (std::vector<std::uint64_t>{bytes}));
    EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 2), 1), 21.5);
    ASSERT_NE(stores.last, nullptr);
    EXPECT_EQ(stores.last->GetDataDescriptors({}), (std::vector{MakeKey(kTemperature, 2)}));
    EXPECT_EQ(&database.GetIdMapsPool(), &stores.last->GetIdMapsPool());
    database.ReleaseDb(false);
    EXPECT_NE(stores.last, nullptr);  // for those who hold blocks
  }
  EXPECT_EQ(stores.last, nullptr);
  stores.hasAny = false;
  QuilonOnfTxtDatabase database(folder.wstring());
  OpenToRead(database);
  EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 1), 20.5);
}

TEST(QuilonOnfTxtDatabase, ABlockIsAHeaderAndALineARecordByAscendingId)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  OpenToWrite(database);
  FED_DataDescriptor key = MakeKey(kStress, 1);
  key.SetInteger(FED_DataDescriptor::Substep, 3);
  key.SetInteger(FED_DataDescriptor::Analysis, 1);
  FED_IdDataBlock view(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), false);
  const double    second[] = {-2.25, 1e-300, 0.1, 1e22, 100000, 123456789};
  const double    first[]  = {1, 0, 0, 0, 0, 0.5};
  view.SetTensor(17, second);
  view.SetTensor(4, first);
  database.ReleaseDb(false);

  const std::map<std::string, std::string> expected = {{"index",
                                                        "onf-text-index: 1\n"
                                                        "names: 0\n"
                                                        "blocks: 1\n"
                                                        "block: nodal-stress_it0_lc1_sub3_an1.onf\n"},
                                                       {"nodal-stress_it0_lc1_sub3_an1.onf",
                                                        "onf-text-block: 1\n"
                                                        "iteration: 0\n"
                                                        "onf: 521 nodal-stress\n"
                                                        "load-case: 1\n"
                                                        "substep: 3\n"
                                                        "analysis: 1\n"
                                                        "record-format: T\n"
                                                        "records-by: id\n"
                                                        "records: 2\n"
                                                        "4 1 0 0 0 0 0.5\n"
                                                        "17 -2.25 1e-300 0.1 1e+22 1e+05 123456789\n"}};
  EXPECT_EQ(ReadAllFiles(test / "onf"), expected);
}

TEST(QuilonOnfTxtDatabase, EveryFieldTypeIsWrittenAndReadBack)
{
  const quilon_test::TempFolder test;
  const FED_DataDescriptor      key = MakeKey(5000, 1);  // an id without a catalogue entry
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    FED_DataBlock&  block    = *database.CreateDataBlock(key, 0, 0, "IiFDdSVTLblbDb");
    FED_DataRecord& record   = *block.CreateDataRecord();
    const double    values[] = {1, 2, 3, 4, 5, 6};
    record.SetInteger(1, -7);
    record.SetInteger(2, 42);
    record.SetFloat(3, 0.1f);
    record.SetDouble(4, 0.1);
    record.SetDouble(5, -0.0);
    record.SetString(6, "say \"a\\b\"\n");
    record.SetVector(7, values);
    record.SetTensor(8, values);
    record.SetIntList(9, std::vector<int>{3, 1, 2});
    record.SetIntList(10, std::vector<int>{});
    record.SetDoubleList(11, std::vector<double>{0.5, 1e100});
    block.SetRecord(database.GetIdMapsPool().FindOrAddIndex(14, 9), record);
    database.ReleaseDb(true);
  }
  EXPECT_EQ(ReadBytes(test / "onf" / "onf-5000_it0_lc1.onf"),
            "onf-text-block: 1\n"
            "iteration: 0\n"
            "onf: 5000 onf-5000\n"
            "load-case: 1\n"
            "record-format: IiFDdSVTLblbDb\n"
            "records-by: id\n"
            "records: 1\n"
            "9 -7 42 0.1 0.1 -0 \"say \\\"a\\\\b\\\"\\n\" 1 2 3 1 2 3 4 5 6 [3] 3 1 2 [0] [2] 0.5 1e+100\n");

  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  const FED_DataBlock& block  = database.GetConstDataBlock(key);
  FED_ConstDataRecord& record = *block.CreateConstDataRecord();
  block.GetRecord(database.GetIdMapsPool().FindIndex(14, 9), record);
  const int types[] = {1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9};
  ASSERT_EQ(record.GetFieldCount(), std::size(types));
  for (std::size_t i = 0; i < std::size(types); ++i) EXPECT_EQ(record.GetFieldType(i + 1), types[i]);
  EXPECT_EQ(record.GetInteger(1), -7);
  EXPECT_EQ(record.GetInteger(2), 42);
  EXPECT_EQ(record.GetFloat(3), 0.1f);
  EXPECT_EQ(record.GetDouble(4), 0.1);
  EXPECT_TRUE(std::signbit(record.GetDouble(5)));
  EXPECT_EQ(record.GetString(6), "say \"a\\b\"\n");
  double tensor[6] = {};
  record.GetTensor(8, tensor);
  EXPECT_EQ(std::vector<double>(tensor, tensor + 6), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  FED_IntArray    ints;
  FED_DoubleArray doubles;
  record.GetIntList(9, ints);
  EXPECT_TRUE(ints == FED_IntArray(std::vector<int>{3, 1, 2}));
  EXPECT_EQ(record.GetIntListLen(10), 0u);
  record.GetDoubleList(11, doubles);
  EXPECT_TRUE(doubles == FED_DoubleArray(std::vector<double>{0.5, 1e100}));
}

TEST(QuilonOnfTxtDatabase, EveryByteOfAStringSurvives)
{
  const quilon_test::TempFolder test;
  std::string                   all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const FED_DataDescriptor key = MakeKey(5000, 1);
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    FED_DataBlock&  block  = *database.CreateDataBlock(key, 0, 0, "S");
    FED_DataRecord& record = *block.CreateDataRecord();
    record.SetString(1, all);
    block.SetRecord(1, record);
    database.ReleaseDb(true);
  }
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  const FED_DataBlock& block  = database.GetConstDataBlock(key);
  FED_ConstDataRecord& record = *block.CreateConstDataRecord();
  block.GetRecord(*block.Begin(), record);
  EXPECT_EQ(record.GetString(1), all);
}

TEST(QuilonOnfTxtDatabase, NegativeIdsComeFirst)
{
  const quilon_test::TempFolder test;
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    for (const int id : {5, -1, 2147483647, 0, -2147483647 - 1}) SetScalar(database, MakeKey(kTemperature, 1), id, id);
    database.ReleaseDb(false);
  }
  const std::string text = ReadBytes(test / "onf" / "temperature_it0_lc1.onf");
  EXPECT_EQ(text.substr(text.find("records: ")),
            "records: 5\n-2147483648 -2147483648\n-1 -1\n0 0\n5 5\n2147483647 2147483647\n");
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  for (const int id : {5, -1, 2147483647, 0, -2147483647 - 1})
    EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), id), id);
}

TEST(QuilonOnfTxtDatabase, KindsWithoutIdsGoByIndexFromZeroToTheGreatest)
{
  const quilon_test::TempFolder test;
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    FED_DataBlock& block = database.GetOrCreateDataBlock(MakeKey(kHistory, 1), 0);
    for (const std::size_t index : {2147483647u, 3u, 0u}) block.SetScalarAt(index, static_cast<double>(index));
    database.ReleaseDb(false);
  }
  const std::string text = ReadBytes(test / "onf" / "scalar-history_it0_lc1.onf");
  EXPECT_EQ(text.substr(text.find("records-by")), "records-by: index\nrecords: 3\n0 0\n3 3\n2147483647 2147483647\n");
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  const FED_DataBlock& block = database.GetConstDataBlock(MakeKey(kHistory, 1));
  for (const std::size_t index : {0u, 3u, 2147483647u}) EXPECT_EQ(block.GetScalarAt(index), static_cast<double>(index));
  EXPECT_FALSE(block.HasRecord(1));
}

TEST(QuilonOnfTxtDatabase, BlocksWithoutRecordsAndWithoutFormatAreKept)
{
  const quilon_test::TempFolder test;
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    database.GetOrCreateDataBlock(MakeKey(kStress, 1), 0);
    database.GetOrCreateDataBlock(MakeKey(590, 1), 0);  // takes its format from its first record
    database.ReleaseDb(false);
  }
  const std::string text = ReadBytes(test / "onf" / "element-matrix-590_it0_lc1.onf");
  EXPECT_NE(text.find("record-format: -\nrecords-by: id\nrecords: 0\n"), std::string::npos) << text;
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  FED_DataBlock& known = database.GetDataBlock(MakeKey(kStress, 1));
  EXPECT_EQ(known.CreateConstDataRecord()->GetFieldType(1), 6);
  EXPECT_TRUE(known.Begin() == known.End());
  FED_DataBlock& unknown = database.GetDataBlock(MakeKey(590, 1));
  EXPECT_EQ(unknown.CreateConstDataRecord()->GetFieldCount(), 0u);
  EXPECT_TRUE(unknown.Begin() == unknown.End());
}

TEST(QuilonOnfTxtDatabase, ValuesLeftUnderClearBitsMakeBlocksOfTheirOwn)
{
  const quilon_test::TempFolder   test;
  std::vector<FED_DataDescriptor> keys(6, FED_DataDescriptor(0, static_cast<FED_OnfId>(kTemperature)));
  keys[1].SetInteger(FED_DataDescriptor::Layer, 0);
  keys[2].SetInteger(FED_DataDescriptor::Layer, -4);
  keys[3] = keys[2];
  keys[3].mask &= ~(1u << FED_DataDescriptor::Layer);  // -4 stays behind
  keys[4].mask = 0;
  keys[5].mask = 1u << FED_DataDescriptor::OnfId;
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    for (std::size_t i = 0; i < keys.size(); ++i) SetScalar(database, keys[i], 1, static_cast<double>(i));
    database.ReleaseDb(false);
  }
  EXPECT_EQ(ReadBytes(test / "onf" / "index"),
            "onf-text-index: 1\nnames: 0\nblocks: 6\n"
            "block: temperature.onf\n"
            "block: temperature_it0.onf\n"
            "block: temperature_it0_lay-4.onf\n"
            "block: temperature_it0_lay0.onf\n"
            "block: temperature_it0_ulay-4.onf\n"
            "block: temperature_uonf.onf\n");
  const std::string text = ReadBytes(test / "onf" / "temperature_it0_ulay-4.onf");
  EXPECT_EQ(text.substr(0, text.find("record-format")),
            "onf-text-block: 1\niteration: 0\nonf: 514 temperature\nunset layer: -4\n");
  EXPECT_EQ(ReadBytes(test / "onf" / "temperature_uonf.onf").substr(0, 41),
            "onf-text-block: 1\nunset onf: 514 temperat");

  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  for (std::size_t i = 0; i < keys.size(); ++i) EXPECT_EQ(GetScalar(database, keys[i], 1), static_cast<double>(i));
  std::sort(keys.begin(), keys.end());
  EXPECT_TRUE(database.GetDataDescriptors(FED_DataDescriptorPattern()) == keys);
}

TEST(QuilonOnfTxtDatabase, TheLongestKeyHasAFileNameThatFits)
{
  const quilon_test::TempFolder test;
  FED_DataDescriptor            key;
  for (int& value : key.values) value = -2147483647 - 1;
  key.values[FED_DataDescriptor::OnfId] = 903;  // the longest name of the catalogue
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    SetScalar(database, key, 1, 2.5);
    database.ReleaseDb(false);
  }
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  EXPECT_EQ(GetScalar(database, key, 1), 2.5);
}

TEST(QuilonOnfTxtDatabase, EqualDatabasesHaveEqualBytesInAnyOrderOfWriting)
{
  const quilon_test::TempFolder test;
  for (const bool reversed : {false, true}) {
    QuilonOnfTxtDatabase database((test / (reversed ? "b" : "a")).wstring());
    OpenToWrite(database);
    std::vector<int> numbers = {1, 2, 3, 700, -5};
    if (reversed) std::reverse(numbers.begin(), numbers.end());
    for (const int loadCase : numbers)
      for (const int id : numbers) SetScalar(database, MakeKey(kTemperature, loadCase), id, loadCase * 10 + id);
    for (const int number : numbers) database.SetUserKindName(static_cast<FED_OnfId>(1100 + number), "kind");
    database.ReleaseDb(false);
  }
  EXPECT_EQ(ReadAllFiles(test / "a").size(), 6u);
  EXPECT_EQ(ReadAllFiles(test / "a"), ReadAllFiles(test / "b"));
}

TEST(QuilonOnfTxtDatabase, PublishingReplacesEqualKeysAndLeavesOthers)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "steps", 1, 1.0);
  WriteTemperature(test / "steps", 2, 2.0);
  WriteTemperature(test / "steps", 1, 3.0);
  {
    QuilonOnfTxtDatabase database((test / "once").wstring());
    OpenToWrite(database);
    SetScalar(database, MakeKey(kTemperature, 2), 1, 2.0);
    SetScalar(database, MakeKey(kTemperature, 1), 1, 3.0);
    database.ReleaseDb(false);
  }
  EXPECT_EQ(ReadAllFiles(test / "steps"), ReadAllFiles(test / "once"));
  QuilonOnfTxtDatabase database((test / "steps").wstring());
  OpenToRead(database);
  EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 1), 3.0);
  EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 2), 1), 2.0);
}

TEST(QuilonOnfTxtDatabase, AFileRenamedByHandIsReadAndNotOverwrittenByAnotherKey)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  // Load case 1 now has the name that load case 2 would get.
  std::filesystem::rename(test / "onf" / "temperature_it0_lc1.onf", test / "onf" / "temperature_it0_lc2.onf");
  WriteBytes(test / "onf" / "index", "onf-text-index: 1\nnames: 0\nblocks: 1\nblock: temperature_it0_lc2.onf\n");
  WriteTemperature(test / "onf", 2, 2.0);
  EXPECT_EQ(ReadBytes(test / "onf" / "index"),
            "onf-text-index: 1\nnames: 0\nblocks: 2\n"
            "block: temperature_it0_lc2.onf\nblock: temperature_it0_lc2_2.onf\n");
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToRead(database);
    EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 1), 1.0);
    EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 2), 1), 2.0);
  }
  // Written again, load case 1 gets its own name and the file of the former one goes away.
  WriteTemperature(test / "onf", 1, 3.0);
  EXPECT_EQ(ReadBytes(test / "onf" / "index"),
            "onf-text-index: 1\nnames: 0\nblocks: 2\n"
            "block: temperature_it0_lc1.onf\nblock: temperature_it0_lc2_2.onf\n");
  EXPECT_EQ(ReadAllFiles(test / "onf").size(), 3u);
}

TEST(QuilonOnfTxtDatabase, DestroyedWithoutReleaseItLeavesTheFolderAsItWas)
{
  const quilon_test::TempFolder test;
  {
    QuilonOnfTxtDatabase database((test / "none").wstring());
    OpenToWrite(database);
    SetScalar(database, MakeKey(kTemperature, 1), 1, 1.0);
  }
  EXPECT_FALSE(std::filesystem::exists(test / "none"));

  WriteTemperature(test / "onf", 1, 1.0);
  const auto before = ReadAllFiles(test / "onf");
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    SetScalar(database, MakeKey(kTemperature, 1), 1, 2.0);
  }
  EXPECT_EQ(ReadAllFiles(test / "onf"), before);
}

TEST(QuilonOnfTxtDatabase, ReleasedWithoutBlocksItIsAnEmptyDatabase)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "deep" / "onf").wstring());
  OpenToWrite(database);
  database.ReleaseDb(false);
  EXPECT_EQ(ReadAllFiles(test / "deep" / "onf"), (std::map<std::string, std::string>{{"index", kEmptyIndex}}));
  OpenToRead(database);
  EXPECT_TRUE(database.GetDataDescriptors(FED_DataDescriptorPattern()).empty());
  EXPECT_TRUE(database.GetDataBlocks(FED_DataDescriptorPattern()).empty());
}

TEST(QuilonOnfTxtDatabase, ReleasingTwicePublishesOnce)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  database.ReleaseDb(false);  // not open yet: nothing to do
  EXPECT_FALSE(std::filesystem::exists(test / "onf"));
  EXPECT_FALSE(database.IsInitialized());
  OpenToWrite(database);
  EXPECT_TRUE(database.IsInitialized());
  SetScalar(database, MakeKey(kTemperature, 1), 1, 1.0);
  database.ReleaseDb(false);
  EXPECT_FALSE(database.IsInitialized());
  WriteTemperature(test / "onf", 1, 2.0);
  const auto published = ReadAllFiles(test / "onf");
  database.ReleaseDb(false);
  database.ReleaseDb(true);
  EXPECT_EQ(ReadAllFiles(test / "onf"), published);
}

TEST(QuilonOnfTxtDatabase, BlocksOutliveAReleaseThatKeepsThem)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  OpenToWrite(database);
  SetScalar(database, MakeKey(kTemperature, 1), 1, 1.5);
  const FED_DataBlock& block = database.GetConstDataBlock(MakeKey(kTemperature, 1));
  database.ReleaseDb(false);
  EXPECT_EQ(block.GetScalarAt(1), 1.5);
}

TEST(QuilonOnfTxtDatabase, AClosedDatabaseSaysSo)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  const FED_DataDescriptor      key      = MakeKey(kTemperature, 1);
  const std::string             expected = "ONF text database " + (test / "onf").string() + " is not open";
  EXPECT_EQ(MessageOf([&] { database.CreateDataBlock(key, 0, 0, "D"); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetOrCreateDataBlock(key, 0); }), expected);
  EXPECT_EQ(MessageOf([&] { database.HasDataBlock(key); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetConstDataBlock(key); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetDataBlock(key); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetDataBlocks(FED_DataDescriptorPattern()); }), expected);
  EXPECT_EQ(MessageOf([&] { database.DeleteDataBlock(key); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetDataDescriptors(FED_DataDescriptorPattern()); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetIdMapsPool(); }), expected);
  EXPECT_EQ(MessageOf([&] { std::as_const(database).GetIdMapsPool(); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetUserKindName(static_cast<FED_OnfId>(1000)); }), expected);
  EXPECT_EQ(MessageOf([&] { database.SetUserKindName(static_cast<FED_OnfId>(1000), "x"); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetDataBlockSet().GetDataBlockInstance(key); }), expected);
}

TEST(QuilonOnfTxtDatabase, OpenedToReadItTakesNothingNew)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  const std::string expected =
      "ONF text database " + (test / "onf").string() + " is open for reading, nothing can be created, deleted or named";
  EXPECT_EQ(MessageOf([&] { database.CreateDataBlock(MakeKey(kTemperature, 2), 0, 0, "D"); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetOrCreateDataBlock(MakeKey(kTemperature, 2), 0); }), expected);
  EXPECT_EQ(MessageOf([&] { database.DeleteDataBlock(MakeKey(kTemperature, 1)); }), expected);
  EXPECT_EQ(MessageOf([&] { database.SetUserKindName(static_cast<FED_OnfId>(1000), "x"); }), expected);
  EXPECT_EQ(&database.GetOrCreateDataBlock(MakeKey(kTemperature, 1), 0),
            &database.GetDataBlock(MakeKey(kTemperature, 1)));
  const auto before = ReadAllFiles(test / "onf");
  database.ReleaseDb(false);
  EXPECT_EQ(ReadAllFiles(test / "onf"), before);
}

TEST(QuilonOnfTxtDatabase, OpeningTwiceOrInAnUnknownModeFails)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  EXPECT_EQ(MessageOf([&] { database.InitDb(static_cast<FED_DatabaseDefs::AccessMode>(7), 0, L"", nullptr); }),
            "ONF text database " + (test / "onf").string() + " access mode is 7, expected 0 to read or 1 to write");
  OpenToWrite(database);
  EXPECT_EQ(MessageOf([&] { OpenToWrite(database); }),
            "ONF text database " + (test / "onf").string() + " is already open");
}

TEST(QuilonOnfTxtDatabase, WhatIsNoTextDatabaseIsNotOpenedAndNotTouched)
{
  const quilon_test::TempFolder test;
  const auto                    open = [](const std::filesystem::path& path, int mode) {
    QuilonOnfTxtDatabase database(path.wstring());
    return MessageOf([&] { database.InitDb(static_cast<FED_DatabaseDefs::AccessMode>(mode), 1024, L"", nullptr); });
  };
  EXPECT_EQ(open(test / "none", 0), (test / "none").string() + ": no such ONF text database");
  EXPECT_EQ(open(test / "none", 1), "");

  WriteBytes(test / "file", "text");
  EXPECT_EQ(open(test / "file", 0), (test / "file").string() + ": not an ONF text database, which is a folder");
  EXPECT_EQ(open(test / "file", 1), (test / "file").string() + ": not an ONF text database, which is a folder");
  EXPECT_EQ(ReadBytes(test / "file"), "text");

  std::filesystem::create_directory(test / "empty");
  EXPECT_EQ(open(test / "empty", 0),
            (test / "empty").string() + ": not an ONF text database, it has no file named index");
  EXPECT_EQ(open(test / "empty", 1), "");

  std::filesystem::create_directory(test / "other");
  WriteBytes(test / "other" / "notes.txt", "mine");
  EXPECT_EQ(open(test / "other", 0),
            (test / "other").string() + ": not an ONF text database, it has no file named index");
  EXPECT_EQ(open(test / "other", 1),
            (test / "other").string() + ": not an ONF text database, it holds \"notes.txt\" but no file named index");
  EXPECT_EQ(ReadAllFiles(test / "other"), (std::map<std::string, std::string>{{"notes.txt", "mine"}}));

  WriteBytes(test / "other" / "index", "<html>\n");
  const std::string foreign =
      (test / "other" / "index").string() + ":1: expected the key \"onf-text-index\", found \"<html>\"";
  EXPECT_EQ(open(test / "other", 0), foreign);
  EXPECT_EQ(open(test / "other", 1), foreign);
  EXPECT_EQ(ReadAllFiles(test / "other").size(), 2u);
}

TEST(QuilonOnfTxtDatabase, FilesThatTheIndexDoesNotNameArePassedOver)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  WriteBytes(test / "onf" / "README", "mine");
  WriteBytes(test / "onf" / "temperature_it0_lc9.onf", "no block at all");
  WriteBytes(test / "onf" / "temperature_it0_lc1.onf.new", "half a block");
  WriteBytes(test / "onf" / "index.new", "half an index");
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToRead(database);
    EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 1), 1.0);
    EXPECT_EQ(database.GetDataDescriptors(FED_DataDescriptorPattern()).size(), 1u);
  }
  // The next writer removes what a dead one left, and nothing else.
  WriteTemperature(test / "onf", 2, 2.0);
  std::vector<std::string> names;
  for (const auto& [name, bytes] : ReadAllFiles(test / "onf")) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"README", "index", "temperature_it0_lc1.onf", "temperature_it0_lc2.onf",
                                             "temperature_it0_lc9.onf"}));
}

TEST(QuilonOnfTxtDatabase, AFolderWithNothingButLeftoversIsWrittenTo)
{
  const quilon_test::TempFolder test;
  std::filesystem::create_directory(test / "onf");
  WriteBytes(test / "onf" / "temperature_it0_lc1.onf.new", "half a block");
  WriteBytes(test / "onf" / "index.new", "half an index");
  WriteTemperature(test / "onf", 2, 2.0);
  std::vector<std::string> names;
  for (const auto& [name, bytes] : ReadAllFiles(test / "onf")) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"index", "temperature_it0_lc2.onf"}));
}

TEST(QuilonOnfTxtDatabase, AMissingBlockFileIsNamed)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  std::filesystem::remove(test / "onf" / "temperature_it0_lc1.onf");
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  EXPECT_EQ(MessageOf([&] { OpenToRead(database); }),
            (test / "onf" / "temperature_it0_lc1.onf").string() + ": no such file, but the index names it");
  EXPECT_FALSE(database.IsInitialized());
}

TEST(QuilonOnfTxtDatabase, TwoFilesOfOneKeyAreAFailure)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  std::filesystem::copy_file(test / "onf" / "temperature_it0_lc1.onf", test / "onf" / "twin.onf");
  WriteBytes(test / "onf" / "index",
             "onf-text-index: 1\nnames: 0\nblocks: 2\nblock: temperature_it0_lc1.onf\nblock: twin.onf\n");
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  EXPECT_EQ(MessageOf([&] { OpenToRead(database); }),
            (test / "onf" / "twin.onf").string() + ": has the same key as temperature_it0_lc1.onf");
}

TEST(QuilonOnfTxtDatabase, AMalformedBlockHidesNoOther)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  WriteTemperature(test / "onf", 2, 2.0);
  const std::filesystem::path path = test / "onf" / "temperature_it0_lc2.onf";
  WriteBytes(path, ReadBytes(path) + "2 3\n");
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 1), 1.0);
  EXPECT_TRUE(database.HasDataBlock(MakeKey(kTemperature, 2)));
  const std::string expected = path.string() + ":9: expected the end of the file behind 1 records, found \"2\"";
  EXPECT_EQ(MessageOf([&] { database.GetDataBlock(MakeKey(kTemperature, 2)); }), expected);
  EXPECT_EQ(MessageOf([&] { database.GetDataBlocks(FED_DataDescriptorPattern()); }), expected);
  EXPECT_TRUE(database.HasDataBlock(MakeKey(kTemperature, 2)));
}

TEST(QuilonOnfTxtDatabase, SeveralDatabasesOfOneFolderKeepApart)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  WriteTemperature(test / "onf", 2, 2.0);
  QuilonOnfTxtDatabase oldReader((test / "onf").wstring());
  OpenToRead(oldReader);
  EXPECT_EQ(GetScalar(oldReader, MakeKey(kTemperature, 1), 1), 1.0);
  {
    QuilonOnfTxtDatabase writer((test / "onf").wstring());
    OpenToWrite(writer);
    EXPECT_FALSE(writer.HasDataBlock(MakeKey(kTemperature, 1)));  // a writer sees what it collected
    SetScalar(writer, MakeKey(kTemperature, 1), 1, 10.0);
    SetScalar(writer, MakeKey(kTemperature, 3), 1, 30.0);
    writer.ReleaseDb(false);
  }
  QuilonOnfTxtDatabase newReader((test / "onf").wstring());
  OpenToRead(newReader);
  EXPECT_EQ(GetScalar(newReader, MakeKey(kTemperature, 1), 1), 10.0);
  EXPECT_EQ(GetScalar(newReader, MakeKey(kTemperature, 3), 1), 30.0);
  // The old reader keeps what it has read, reads what nobody replaced, and does not know the rest.
  EXPECT_EQ(GetScalar(oldReader, MakeKey(kTemperature, 1), 1), 1.0);
  EXPECT_EQ(GetScalar(oldReader, MakeKey(kTemperature, 2), 1), 2.0);
  EXPECT_FALSE(oldReader.HasDataBlock(MakeKey(kTemperature, 3)));
}

TEST(QuilonOnfTxtDatabase, AReaderDoesNotMixTwoStates)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 1.0);
  QuilonOnfTxtDatabase reader((test / "onf").wstring());
  OpenToRead(reader);
  WriteTemperature(test / "onf", 1, 2.0);
  EXPECT_EQ(MessageOf([&] { reader.GetDataBlock(MakeKey(kTemperature, 1)); }),
            (test / "onf" / "temperature_it0_lc1.onf").string() + ": has changed since the database was opened");
  reader.ReleaseDb(true);
  OpenToRead(reader);
  EXPECT_EQ(GetScalar(reader, MakeKey(kTemperature, 1), 1), 2.0);
}

TEST(QuilonOnfTxtDatabase, NamesOfUserKindsAreKeptReplacedAndRemoved)
{
  const quilon_test::TempFolder test;
  const auto                    first  = static_cast<FED_OnfId>(1000);
  const auto                    second = static_cast<FED_OnfId>(1999);
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    EXPECT_EQ(database.GetUserKindName(first), "");
    database.SetUserKindName(second, "last \"one\"");
    database.SetUserKindName(first, "first");
    EXPECT_EQ(database.GetUserKindName(first), "first");
    EXPECT_EQ(MessageOf([&] { database.SetUserKindName(static_cast<FED_OnfId>(999), "x"); }),
              "FED_ResultDatabase: ONF id 999 takes no name, expected a user kind, 1000 to 1999");
    database.ReleaseDb(false);
  }
  EXPECT_EQ(ReadBytes(test / "onf" / "index"),
            "onf-text-index: 1\nnames: 2\nname: 1000 \"first\"\nname: 1999 \"last \\\"one\\\"\"\nblocks: 0\n");
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToRead(database);
    EXPECT_EQ(database.GetUserKindName(first), "first");
    EXPECT_EQ(database.GetUserKindName(second), "last \"one\"");
  }
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    database.SetUserKindName(first, "");
    database.SetUserKindName(second, "renamed");
    database.ReleaseDb(false);
  }
  EXPECT_EQ(ReadBytes(test / "onf" / "index"), "onf-text-index: 1\nnames: 1\nname: 1999 \"renamed\"\nblocks: 0\n");
}

TEST(QuilonOnfTxtDatabase, GivenIdMapsComeFirst)
{
  const quilon_test::TempFolder test;
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    for (const int id : {10, 20, 30}) SetScalar(database, MakeKey(kTemperature, 1), id, id);
    database.ReleaseDb(false);
  }
  FED_ResultDatabase other;
  other.GetIdMapsPool().FindOrAddIndex(0, 30);
  other.GetIdMapsPool().FindOrAddIndex(0, -4);
  other.GetIdMapsPool().FindOrAddIndex(14, 3);
  other.GetIdMapsPool().FindOrAddIndex(14, 2);
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  database.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", &other.GetIdMapsPool());
  EXPECT_EQ(database.GetIdMapsPool().FindIndex(0, 30), 1u);
  EXPECT_EQ(database.GetIdMapsPool().FindIndex(0, -4), 2u);
  EXPECT_EQ(database.GetIdMapsPool().FindIndex(14, 3), 1u);
  EXPECT_EQ(database.GetIdMapsPool().FindIndex(14, 2), 2u);
  const FED_DataBlock& block = database.GetConstDataBlock(MakeKey(kTemperature, 1));
  EXPECT_EQ(block.GetScalarAt(1), 30.0);
  EXPECT_FALSE(block.HasRecord(2));
  EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 20), 20.0);
  EXPECT_EQ(other.GetIdMapsPool().FindIndex(0, 10), FED_IdMapsPool::npos);  // only read
}

TEST(QuilonOnfTxtDatabase, TwoRecordsOfOneIdAreNotPublished)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  OpenToWrite(database);
  const FED_DataDescriptor key   = MakeKey(5000, 1);
  FED_DataBlock&           block = *database.CreateDataBlock(key, 0, 0, "D");
  const double             value = 1.0;
  block.SetValuesAt(7, &value);                                               // no id has index 7: it reads as id 7
  block.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(14, 7), &value);  // id 7 has index 1
  EXPECT_EQ(MessageOf([&] { database.ReleaseDb(false); }), key.ToString() + ": two records have the id 7");
  EXPECT_FALSE(std::filesystem::exists(test / "onf"));
  EXPECT_TRUE(database.IsInitialized());
  database.DeleteDataBlock(key);
  database.ReleaseDb(false);
  EXPECT_EQ(ReadBytes(test / "onf" / "index"), kEmptyIndex);
}

TEST(QuilonOnfTxtDatabase, AnIndexWithoutIdAndAMaskWithoutMeaningAreNotPublished)
{
  const quilon_test::TempFolder test;
  QuilonOnfTxtDatabase          database((test / "onf").wstring());
  OpenToWrite(database);
  database.GetOrCreateDataBlock(MakeKey(kTemperature, 1), 0).SetScalarAt(3, 1.0);
  EXPECT_NE(MessageOf([&] { database.ReleaseDb(false); }).find("no id has the index 3"), std::string::npos);
  database.DeleteDataBlock(MakeKey(kTemperature, 1));

  FED_DataDescriptor odd = MakeKey(kTemperature, 1);
  odd.mask |= 1u << 14;
  database.GetOrCreateDataBlock(odd, 0);
  EXPECT_EQ(MessageOf([&] { database.ReleaseDb(false); }),
            odd.ToString() + ": the mask has bits above the fourteen indices");
  EXPECT_FALSE(std::filesystem::exists(test / "onf"));
}

TEST(QuilonOnfTxtDatabase, TheBlockSetAnswersNullForAnAbsentBlock)
{
  const quilon_test::TempFolder test;
  WriteTemperature(test / "onf", 1, 4.5);
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  const FED_DataBlockSet& set = database.GetDataBlockSet();
  EXPECT_EQ(set.GetDataBlockInstance(MakeKey(kTemperature, 2)), nullptr);
  FED_DataBlock* const block = set.GetDataBlockInstance(MakeKey(kTemperature, 1));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block, &database.GetDataBlock(MakeKey(kTemperature, 1)));
  EXPECT_EQ(block->GetScalarAt(1), 4.5);
}

TEST(QuilonOnfTxtDatabase, PatternsSelectBlocksWhetherTheyHaveBeenReadOrNot)
{
  const quilon_test::TempFolder test;
  for (const int loadCase : {3, 1, 2}) WriteTemperature(test / "onf", loadCase, loadCase);
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  database.GetDataBlock(MakeKey(kTemperature, 2));
  const std::vector<FED_DataBlock*> blocks = database.GetDataBlocks(FED_DataDescriptorPattern());
  ASSERT_EQ(blocks.size(), 3u);
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(blocks[static_cast<std::size_t>(i)]->GetDescriptor() == MakeKey(kTemperature, i + 1));
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::LoadCase, 3);
  ASSERT_EQ(database.GetDataBlocks(pattern).size(), 1u);
  EXPECT_EQ(database.GetDataBlocks(pattern)[0]->GetScalarAt(1), 3.0);
  pattern.SetEqual(FED_DataDescriptor::LoadCase, 4);
  EXPECT_TRUE(database.GetDataDescriptors(pattern).empty());
}

TEST(QuilonOnfTxtDatabase, BlocksTravelFromTheWorkingDatabaseAndBack)
{
  const quilon_test::TempFolder test;
  FED_ResultDatabase            source;
  for (const int id : {30, 10, 20}) SetScalar(source, MakeKey(kTemperature, 1), id, id / 7.0);
  source.GetOrCreateDataBlock(MakeKey(kTemperature, 2), 0);  // empty
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    EXPECT_EQ(QuilonDatabaseUtils::copy_datablocks(source, database, FED_DataDescriptorPattern(),
                                                   QuilonDatabaseUtils::SkipEmptyBlocks),
              1u);
    database.ReleaseDb(false);
  }
  QuilonOnfTxtDatabase database((test / "onf").wstring());
  OpenToRead(database);
  FED_ResultDatabase target;
  SetScalar(target, MakeKey(kTemperature, 9), 20, 0.0);  // another order of first use
  QuilonDatabaseUtils::copy_datablocks(database, target, FED_DataDescriptorPattern(),
                                       QuilonDatabaseUtils::SkipEmptyBlocks);
  for (const int id : {10, 20, 30}) EXPECT_EQ(GetScalar(target, MakeKey(kTemperature, 1), id), id / 7.0);
}

TEST(QuilonOnfTxtDatabase, APathMayHoldAnyCharacter)
{
  const quilon_test::TempFolder test;
  const std::wstring            path = (test / "").wstring() + L"Tr\u00e4ger \u9798.onf";
  {
    QuilonOnfTxtDatabase database(path);
    OpenToWrite(database);
    SetScalar(database, MakeKey(kTemperature, 1), 1, 1.0);
    database.ReleaseDb(false);
  }
  const std::filesystem::path native = test / "Tr\xc3\xa4ger \xe9\x9e\x98.onf";
  EXPECT_EQ(ReadAllFiles(native).size(), 2u);
  QuilonOnfTxtDatabase database(path);
  OpenToRead(database);
  EXPECT_EQ(GetScalar(database, MakeKey(kTemperature, 1), 1), 1.0);
  database.ReleaseDb(true);
  std::filesystem::remove_all(native);
  EXPECT_EQ(MessageOf([&] { OpenToRead(database); }), native.string() + ": no such ONF text database");
}
