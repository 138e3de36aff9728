// Random work on a database and on plain maps beside it: after every step both say the same.

#include <array>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"
#include "QuilonUtilities/FED_Failure.h"

#include "record_model.h"

namespace {

const char* const kFormats[] = {"", "D", "V", "T", "DdV", "I", "iFS", "Lb", "lbDb", "IIbDbLbLb", "SSDb"};

}  // namespace

TEST(DatabaseModel, RandomWorkOnBlocksMatchesPlainMaps)
{
  const char* const given = std::getenv("QUILON_MODEL_SEEDS");
  const unsigned    last  = given == nullptr ? 60 : static_cast<unsigned>(std::strtoul(given, nullptr, 10));
  for (unsigned seed = 1; seed <= last; ++seed) {
    SCOPED_TRACE(seed);
    Random                                   random(seed);
    FED_ResultDatabase                       database;
    std::map<FED_DataDescriptor, ModelBlock> model;
    const int                                spread = std::array<int, 4>{5, 60, 3000, 2147483647}[seed % 4];
    for (int step = 0; step < 400; ++step) {
      FED_DataDescriptor key(random.Int(0, 2), FED_OnfId_ScalarHistory);
      const int          action = random.Int(0, 19);
      if (action == 0) {
        ASSERT_EQ(database.HasDataBlock(key), model.erase(key) == 1);
        if (database.HasDataBlock(key)) database.DeleteDataBlock(key);
        continue;
      }
      if (model.find(key) == model.end()) {
        const char* format = kFormats[random.Int(0, 10)];
        database.CreateDataBlock(key, static_cast<std::size_t>(random.Int(0, 300)), 0, format);
        model[key].types = FED_RecordFormat::Parse(format).GetTypes();
      }
      FED_DataBlock&    block   = database.GetDataBlock(key);
      ModelBlock&       twin    = model[key];
      const auto        index   = static_cast<std::size_t>(random.Int(0, spread));
      const std::size_t doubles = twin.types.empty() ? 0 : FED_RecordFormat(twin.types).GetDoubleCount();
      if (action < 4 && (twin.types.empty() || doubles == 1)) {
        const double value = random.Double();
        block.SetScalarAt(index, value);
        if (twin.types.empty()) twin.types = {2};
        twin.records[index] = {std::vector<double>{value}};
      } else if (action < 8 && doubles > 0) {
        const ModelRecord   record = MakeRecord(twin.types, random);
        std::vector<double> values;
        for (const Value& value : record)
          for (const double part : std::get<std::vector<double>>(value)) values.push_back(part);
        block.SetValuesAt(index, values.data());
        twin.records[index] = record;
      } else {
        if (twin.types.empty()) twin.types = FED_RecordFormat::Parse("IDSLbV").GetTypes();
        const ModelRecord record  = MakeRecord(twin.types, random);
        FED_DataRecord*   scratch = block.CreateDataRecord();
        SetFields(*scratch, twin.types, record);
        block.SetRecord(index, *scratch);
        if (random.Int(0, 1) == 0) block.DeleteDataRecord(scratch);  // the others go with the block
        twin.records[index] = record;
      }
      ASSERT_TRUE(block.HasRecord(index));
      if (step % 20 == 0) ExpectSame(block, twin);
      if (HasFatalFailure()) return;
    }
    ASSERT_EQ(database.GetDataDescriptors({}).size(), model.size());
    for (const auto& [key, twin] : model) ExpectSame(database.GetDataBlock(key), twin);
    if (HasFatalFailure()) return;
  }
}

TEST(DatabaseModel, RandomIdsMatchPlainMapsAndSurviveACopy)
{
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    Random                                random(seed);
    FED_ResultDatabase                    source, target;
    std::map<std::pair<int, int>, double> model;  // ONF id and entity id to value
    const int                             low  = std::array<int, 3>{1, -50, -2147483647 - 1}[seed % 3];
    const int                             high = std::array<int, 3>{300, 50, 2147483647}[seed % 3];
    const int kinds[] = {514, 540, 541, 77};  // two of nodes, one of elements, one of no known kind
    for (int i = 0; i < 50; ++i) target.GetIdMapsPool().FindOrAddIndex(0, random.Int(low, high));
    for (int step = 0; step < 600; ++step) {
      const FED_DataDescriptor key(0, static_cast<FED_OnfId>(kinds[random.Int(0, 3)]));
      FED_IdDataBlock          view(source.GetOrCreateDataBlock(key, 0), source.GetIdMapsPool(), true);
      const int                id    = random.Int(low, high);
      const double             value = random.Double();
      view.SetScalar(id, value);
      model[{key.values[1], id}] = value;
    }
    QuilonDatabaseUtils::copy_datablocks(source, target, {}, QuilonDatabaseUtils::SkipEmptyBlocks);
    for (FED_ResultDatabase* database : {&source, &target}) {
      std::size_t count = 0;
      for (const FED_DataBlock* block : database->GetDataBlocks({})) {
        const FED_ConstIdDataBlock view(*block, database->GetIdMapsPool());
        for (const std::size_t index : dynamic_cast<const FED_ColumnDataBlock&>(*block).GetIndices()) {
          const int  id    = view.GetId(index);
          const auto found = model.find({block->GetDescriptor().values[1], id});
          ASSERT_NE(found, model.end()) << id;
          double value = 0.0;
          view.GetScalar(id, value);
          ASSERT_EQ(value, found->second) << id;
          ++count;
        }
      }
      ASSERT_EQ(count, model.size());
    }
  }
}
