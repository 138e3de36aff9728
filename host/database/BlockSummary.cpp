#include "database/BlockSummary.h"

#include <algorithm>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_RecordFormat.h>

#include "progress/Interrupt.h"

namespace quilon {

namespace {

/// Values of one sort: floating-point numbers or integers.
struct Range
{
  void Add(const FED_FieldStatistics& field)
  {
    nans += static_cast<std::size_t>(field.nans);
    if (!field.hasRange) return;
    least    = any ? std::min(least, field.least) : field.least;
    greatest = any ? std::max(greatest, field.greatest) : field.greatest;
    any      = true;
  }

  bool        any      = false;
  double      least    = 0.0;
  double      greatest = 0.0;
  std::size_t nans     = 0;
};

/// Bytes of an element, and those that a record takes beside its elements.
struct FieldSize
{
  std::size_t element;
  std::size_t record;
};

FieldSize SizeOf(FED_FieldType::Class fieldClass)
{
  switch (fieldClass) {
    case FED_FieldType::Integer:
    case FED_FieldType::Float:
      return {4, 0};
    case FED_FieldType::String:
      return {1, 4};
    case FED_FieldType::IntList:
      return {4, 4};
    case FED_FieldType::DoubleList:
      return {8, 4};
    default:
      return {8, 0};
  }
}

}  // namespace

BlockSummary Summarize(const FED_DataBlock& block)
{
  const auto&             columns = dynamic_cast<const FED_ColumnDataBlock&>(block);
  const std::vector<int>& types   = columns.GetRecordFormat().GetTypes();
  BlockSummary            summary;
  Range                   reals, integers;
  bool                    hasReals = false;
  summary.records                  = columns.GetRecordCount();
  for (std::size_t field = 1; field <= types.size(); ++field) {
    ThrowIfInterrupted();
    const FED_FieldType::Class fieldClass = FED_FieldType::GetClass(types[field - 1]);
    const FED_FieldStatistics  statistics = columns.GetFieldStatistics(field);
    const FieldSize            size       = SizeOf(fieldClass);
    summary.bytes += static_cast<std::size_t>(statistics.elements) * size.element + summary.records * size.record;
    if (fieldClass == FED_FieldType::String) continue;
    const bool isInteger = fieldClass == FED_FieldType::Integer || fieldClass == FED_FieldType::IntList;
    hasReals             = hasReals || !isInteger;
    (isInteger ? integers : reals).Add(statistics);
  }
  const Range& range = hasReals ? reals : integers;
  summary.hasValues  = range.any;
  summary.least      = range.least;
  summary.greatest   = range.greatest;
  summary.nans       = range.nans;
  return summary;
}

bool HasRecords(const FED_DataBlock& block) { return block.Begin() != block.End(); }

}  // namespace quilon
