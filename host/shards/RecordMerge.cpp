#include "shards/RecordMerge.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <vector>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_RecordFormat.h>

#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

/// Puts one record to another by a rule, field by field.
class RecordMerger
{
public:
  RecordMerger(const BorderRule& rule, const ShardBlock& block) : rule_(rule), block_(block) {}

  /// @param merged what the shards before have, which is changed
  void Merge(int id, const FED_ConstDataRecord& record, FED_DataRecord& merged)
  {
    if (rule_.form == BorderRule::First) return;
    id_ = id;
    for (std::size_t field = 1; field <= merged.GetFieldCount(); ++field) MergeField(field, record, merged);
  }

private:
  [[noreturn]] void Refuse(const std::string& text) const
  {
    Fail(block_.shardName + ": " + block_.text + ", record " + std::to_string(id_) + ' ' + text);
  }

  void MergeField(std::size_t field, const FED_ConstDataRecord& record, FED_DataRecord& merged)
  {
    switch (FED_FieldType::GetClass(merged.GetFieldType(field))) {
      case FED_FieldType::Integer:
        return RequireEqual(record.GetInteger(field), merged.GetInteger(field));
      case FED_FieldType::String:
        return RequireEqual('\'' + record.GetString(field) + '\'', '\'' + merged.GetString(field) + '\'');
      case FED_FieldType::Float: {
        double value = static_cast<double>(merged.GetFloat(field));
        MergeNumber(static_cast<double>(record.GetFloat(field)), value);
        return merged.SetFloat(field, static_cast<float>(value));
      }
      case FED_FieldType::IntList:
        return MergeIds(field, record, merged);
      case FED_FieldType::DoubleList:
        return MergeList(field, record, merged);
      default:
        return MergeDoubles(field, record, merged);
    }
  }

  template <typename T>
  void RequireEqual(const T& here, const T& before) const
  {
    if (here == before) return;
    if constexpr (std::is_arithmetic_v<T>)
      Refuse("has " + std::to_string(here) + ", the shards before it " + std::to_string(before) +
             ": expected the same");
    else
      Refuse("has " + Printable(here) + ", the shards before it " + Printable(before) + ": expected the same");
  }

  void MergeNumber(double here, double& merged) const
  {
    switch (rule_.form) {
      case BorderRule::Sum:
        merged += here;
        return;
      case BorderRule::Average:
        Refuse("has no counts of values: only averages at nodes with counts can be averaged");
      default:
        break;
    }
    const bool bothNan = std::isnan(here) && std::isnan(merged);
    if (here == merged || bothNan || std::abs(here - merged) <= rule_.tolerance) return;
    Refuse("has " + FormatNumber(here) + ", the shards before it " + FormatNumber(merged) +
           (rule_.tolerance > 0.0 ? ": expected a difference of at most " + FormatNumber(rule_.tolerance)
                                  : std::string(": expected the same")));
  }

  void MergeDoubles(std::size_t field, const FED_ConstDataRecord& record, FED_DataRecord& merged) const
  {
    std::array<double, 6> here{};
    std::array<double, 6> both{};
    const auto            fieldClass = FED_FieldType::GetClass(merged.GetFieldType(field));
    Get(record, field, fieldClass, here.data());
    Get(merged, field, fieldClass, both.data());
    for (std::size_t i = 0; i < FED_FieldType::GetDoubleCount(fieldClass); ++i) MergeNumber(here[i], both[i]);
    if (fieldClass == FED_FieldType::Double)
      merged.SetDouble(field, both[0]);
    else if (fieldClass == FED_FieldType::Vector)
      merged.SetVector(field, both.data());
    else
      merged.SetTensor(field, both.data());
  }

  static void Get(const FED_ConstDataRecord& record, std::size_t field, FED_FieldType::Class fieldClass, double* out)
  {
    if (fieldClass == FED_FieldType::Double)
      *out = record.GetDouble(field);
    else if (fieldClass == FED_FieldType::Vector)
      record.GetVector(field, out);
    else
      record.GetTensor(field, out);
  }

  void MergeList(std::size_t field, const FED_ConstDataRecord& record, FED_DataRecord& merged) const
  {
    FED_DoubleArray here;
    FED_DoubleArray both;
    record.GetDoubleList(field, here);
    merged.GetDoubleList(field, both);
    RequireEqual(here.GetSize(), both.GetSize());
    for (std::size_t i = 0; i < both.GetSize(); ++i) MergeNumber(here.GetData()[i], both.GetData()[i]);
    merged.SetDoubleList(field, both);
  }

  void MergeIds(std::size_t field, const FED_ConstDataRecord& record, FED_DataRecord& merged) const
  {
    FED_IntArray here;
    FED_IntArray before;
    record.GetIntList(field, here);
    merged.GetIntList(field, before);
    std::vector<int> a(here.GetData(), here.GetData() + here.GetSize());
    std::vector<int> b(before.GetData(), before.GetData() + before.GetSize());
    if (a == b) return;
    if (rule_.form != BorderRule::Union) Refuse("has another list than the shards before it: expected the same");
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    std::vector<int> both;
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
    merged.SetIntList(field, both);
  }

  BorderRule        rule_;
  const ShardBlock& block_;
  int               id_ = 0;
};

}  // namespace

MergedRecords MergeBlock(const ShardBlock& block, const std::optional<BorderRule>& rule, FED_Database& target)
{
  const FED_DataBlock& from = block.shard.GetConstDataBlock(block.descriptor);
  FED_DataBlock&       to   = target.GetDataBlock(block.descriptor);
  FED_ConstIdDataBlock fromView(from, block.shard.GetIdMapsPool(), true);
  FED_IdDataBlock      toView(to, target.GetIdMapsPool(), true);
  auto&                record = fromView.CreateConstIdDataRecord();
  auto&                merged = toView.CreateIdDataRecord();
  RecordMerger         merger(rule.value_or(BorderRule()), block);
  MergedRecords        result;
  FED_ForEachSpan(from, block.shard.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    for (std::size_t i = 0; i < span.GetCount(); ++i) {
      const int id = span.GetIds().GetData()[i];
      fromView.GetRecord(id, record);
      ++result.records;
      if (!toView.HasRecord(id)) {
        merged = record;
        toView.SetRecord(id, merged);
        continue;
      }
      if (!rule)
        Fail(block.shardName + ": " + block.text + ", record " + std::to_string(id) +
             " is in a shard before it as well, expected a rule: --rule 'KIND: first', 'average', 'sum' or 'must-agree "
             "TOL'");
      ++result.shared;
      toView.GetRecord(id, merged);
      merger.Merge(id, record.GetDataRecord(), merged.GetDataRecord());
      toView.SetRecord(id, merged);
    }
  });
  return result;
}

}  // namespace quilon
