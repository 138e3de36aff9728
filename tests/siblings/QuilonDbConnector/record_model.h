#pragma once

/// @file
/// Blocks and records as plain containers, beside which random work on a database is done.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_DataRecord.h"

using Value       = std::variant<int, float, std::vector<double>, std::string, std::vector<int>>;
using ModelRecord = std::vector<Value>;

struct ModelBlock
{
  std::vector<int>                   types;  // empty while the block has no format
  std::map<std::size_t, ModelRecord> records;
};

class Random
{
public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int    Int(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  double Double() { return std::uniform_real_distribution<double>(-1e6, 1e6)(engine_); }

private:
  std::mt19937 engine_;
};

inline std::size_t DoublesOf(int type) { return FED_FieldType::GetDoubleCount(FED_FieldType::GetClass(type)); }

inline ModelRecord MakeRecord(const std::vector<int>& types, Random& random)
{
  ModelRecord record;
  for (const int type : types) {
    const auto length = static_cast<std::size_t>(random.Int(0, random.Int(0, 9) == 0 ? 400 : 12));
    switch (FED_FieldType::GetClass(type)) {
      case FED_FieldType::Integer:
        record.emplace_back(random.Int(-1000, 1000));
        break;
      case FED_FieldType::Float:
        record.emplace_back(static_cast<float>(random.Int(-1000, 1000)) / 8.0f);
        break;
      case FED_FieldType::String:
        record.emplace_back(std::string(length, static_cast<char>(random.Int(1, 120))));
        break;
      case FED_FieldType::IntList: {
        std::vector<int> list(length);
        for (int& value : list) value = random.Int(-9, 9);
        record.emplace_back(list);
        break;
      }
      default: {
        std::vector<double> values(DoublesOf(type) == 0 ? length : DoublesOf(type));
        for (double& value : values) value = random.Double();
        record.emplace_back(values);
        break;
      }
    }
  }
  return record;
}

inline void SetFields(FED_DataRecord& record, const std::vector<int>& types, const ModelRecord& model)
{
  for (std::size_t i = 0; i < types.size(); ++i) {
    switch (FED_FieldType::GetClass(types[i])) {
      case FED_FieldType::Integer:
        record.SetInteger(i + 1, std::get<int>(model[i]));
        break;
      case FED_FieldType::Float:
        record.SetFloat(i + 1, std::get<float>(model[i]));
        break;
      case FED_FieldType::String:
        record.SetString(i + 1, std::get<std::string>(model[i]));
        break;
      case FED_FieldType::IntList:
        record.SetIntList(i + 1, std::get<std::vector<int>>(model[i]));
        break;
      case FED_FieldType::Double:
        record.SetDouble(i + 1, std::get<std::vector<double>>(model[i])[0]);
        break;
      case FED_FieldType::Vector:
        record.SetVector(i + 1, std::get<std::vector<double>>(model[i]).data());
        break;
      case FED_FieldType::Tensor:
        record.SetTensor(i + 1, std::get<std::vector<double>>(model[i]).data());
        break;
      default:
        record.SetDoubleList(i + 1, std::get<std::vector<double>>(model[i]));
        break;
    }
  }
}

inline ModelRecord GetFields(const FED_ConstDataRecord& record)
{
  ModelRecord model;
  for (std::size_t field = 1; field <= record.GetFieldCount(); ++field) {
    std::vector<double> values(DoublesOf(record.GetFieldType(field)));
    FED_IntArray        integers;
    FED_DoubleArray     doubles;
    switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
      case FED_FieldType::Integer:
        model.emplace_back(record.GetInteger(field));
        break;
      case FED_FieldType::Float:
        model.emplace_back(record.GetFloat(field));
        break;
      case FED_FieldType::String:
        model.emplace_back(record.GetString(field));
        break;
      case FED_FieldType::IntList:
        record.GetIntList(field, integers);
        model.emplace_back(std::vector<int>(integers.GetData(), integers.GetData() + integers.GetSize()));
        break;
      case FED_FieldType::Double:
        values[0] = record.GetDouble(field);
        model.emplace_back(values);
        break;
      case FED_FieldType::Vector:
        record.GetVector(field, values.data());
        model.emplace_back(values);
        break;
      case FED_FieldType::Tensor:
        record.GetTensor(field, values.data());
        model.emplace_back(values);
        break;
      default:
        record.GetDoubleList(field, doubles);
        model.emplace_back(std::vector<double>(doubles.GetData(), doubles.GetData() + doubles.GetSize()));
        break;
    }
  }
  return model;
}

inline void ExpectSame(const FED_DataBlock& block, const ModelBlock& model)
{
  FED_ConstDataRecord* record = block.CreateConstDataRecord();
  std::size_t          count  = 0;
  for (const std::size_t index : dynamic_cast<const FED_ColumnDataBlock&>(block).GetIndices()) {
    const auto found = model.records.find(index);
    ASSERT_NE(found, model.records.end()) << index;
    block.GetRecord(index, *record);
    ASSERT_TRUE(GetFields(*record) == found->second) << "index " << index;
    ++count;
  }
  ASSERT_EQ(count, model.records.size());
  ASSERT_EQ(block.GetMaxIndex(), model.records.empty() ? 0u : model.records.rbegin()->first);
  ASSERT_EQ(FED_RecordFormat::FromRecord(*record).GetTypes(), model.types);
  block.DeleteDataRecord(record);
}

/// Statistics of a record field by walking all records.
inline FED_FieldStatistics CountField(const ModelBlock& twin, std::size_t field)
{
  FED_FieldStatistics statistics;
  const auto          add = [&statistics](double value) {
    if (std::isnan(value)) {
      ++statistics.nans;
      return;
    }
    statistics.least    = statistics.hasRange ? std::min(statistics.least, value) : value;
    statistics.greatest = statistics.hasRange ? std::max(statistics.greatest, value) : value;
    statistics.hasRange = true;
  };
  for (const auto& [index, record] : twin.records) {
    const Value& value = record[field - 1];
    if (const auto* text = std::get_if<std::string>(&value)) {
      statistics.elements += text->size();
    } else if (const auto* doubles = std::get_if<std::vector<double>>(&value)) {
      statistics.elements += doubles->size();
      for (const double part : *doubles) add(part);
    } else if (const auto* integers = std::get_if<std::vector<int>>(&value)) {
      statistics.elements += integers->size();
      for (const int part : *integers) add(part);
    } else {
      ++statistics.elements;
      add(std::holds_alternative<int>(value) ? std::get<int>(value) : static_cast<double>(std::get<float>(value)));
    }
  }
  return statistics;
}
