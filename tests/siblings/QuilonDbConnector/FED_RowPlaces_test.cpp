#include "bundled/FED_RowPlaces.h"

#include <cstring>
#include <fstream>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <QuilonUtilities/FED_Failure.h>

#include "bundled/FED_ResultDatabase.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

FED_DataDescriptor Key(int onf, int substep = 1)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::Substep, substep);
  return key;
}

using Records = std::map<std::size_t, std::vector<double>>;

Records RecordsOf(const FED_DataBlock& block, std::size_t numValues)
{
  Records records;
  for (auto index = block.Begin(); index != block.End(); ++index) {
    records[*index].resize(numValues);
    block.GetValuesAt(*index, records[*index].data());
  }
  return records;
}

/// What stands in the files at the places, without the database.
Records ReadPlaces(const std::vector<FED_RowPlace>& places)
{
  Records records;
  for (const FED_RowPlace& place : places) {
    std::ifstream file(place.file, std::ios::binary);
    file.seekg(static_cast<std::streamoff>(place.offset));
    for (const std::uint32_t index : place.indices) {
      std::vector<char> bytes(place.rowBytes);
      file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      std::vector<double> values(bytes.size() / sizeof(double));
      std::memcpy(values.data(), bytes.data(), bytes.size());
      EXPECT_TRUE(records.emplace(index, values).second) << "record " << index << " has two places";
    }
  }
  return records;
}

TEST(FED_FindRows, LeadsToEveryValueInTheFiles)
{
  const TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    FED_DataBlock&     scalars = database.GetOrCreateDataBlock(Key(514), 0);
    for (std::size_t i = 1; i <= 5000; ++i) scalars.SetScalarAt(i, 0.5 * static_cast<double>(i));
    FED_DataBlock& tensors = database.GetOrCreateDataBlock(Key(521), 0);
    for (const std::size_t i : {7U, 5U, 3U, 1U}) {
      const double t        = static_cast<double>(i);
      const double values[] = {t, 2, 3, 4, 5, 6};
      tensors.SetValuesAt(i, values);
    }
    database.GetOrCreateDataBlock(Key(510), 0);  // empty
    database.Commit();
    // Some rows anew, some more, in a segment of their own.
    for (std::size_t i = 100; i <= 200; ++i) scalars.SetScalarAt(i, -1.0);
    scalars.SetScalarAt(9000, 9.0);
    database.Commit();
  }
  FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::ReadOnly);
  const auto         places = FED_FindRows(folder / "a.fed", {Key(521), Key(514), Key(510)});
  ASSERT_EQ(places.size(), 3U);
  EXPECT_EQ(ReadPlaces(places[0]), RecordsOf(database.GetConstDataBlock(Key(521)), 6));
  EXPECT_EQ(ReadPlaces(places[1]), RecordsOf(database.GetConstDataBlock(Key(514)), 1));
  EXPECT_TRUE(places[2].empty());
}

TEST(FED_FindRows, RefusesOtherRecordsAndBlocks)
{
  const TempFolder folder;
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    database.CreateDataBlock(Key(595), 0, 0, "lb");
    database.Commit();
  }
  const auto message = [&](const FED_DataDescriptor& key) {
    try {
      FED_FindRows(folder / "a.fed", {key});
    } catch (const FED_Failure& failure) {
      return std::string(failure.what());
    }
    return std::string();
  };
  EXPECT_NE(message(Key(595)).find("its records are 'lb', expected a scalar, a vector or a tensor of doubles"),
            std::string::npos);
  EXPECT_NE(message(Key(510)).find("the database has no such block"), std::string::npos);
  EXPECT_THROW(FED_FindRows(folder / "none.fed", {}), FED_Failure);
}

}  // namespace
