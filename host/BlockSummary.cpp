#include "BlockSummary.h"

#include <algorithm>
#include <cmath>

#include <bundled/FED_RecordFormat.h>

#include "QuilonDataBlockSize.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "ScratchRecord.h"
#include "terminal/Interrupt.h"

namespace quilon {

namespace {

/// Values of one sort: floating-point numbers or integers.
class Range
{
public:
  void Add(double value)
  {
    if (std::isnan(value)) {
      ++nans;
      return;
    }
    least    = any ? std::min(least, value) : value;
    greatest = any ? std::max(greatest, value) : value;
    any      = true;
  }

  void Add(const double* values, std::size_t count)
  {
    for (std::size_t i = 0; i < count; ++i) Add(values[i]);
  }

  bool        any      = false;
  double      least    = 0.0;
  double      greatest = 0.0;
  std::size_t nans     = 0;
};

struct Ranges
{
  Range reals;
  Range integers;
  bool  hasReals = false;  // whether the format has fields for them
};

void AddField(const FED_ConstDataRecord& record, std::size_t field, Ranges& ranges)
{
  double values[6];
  switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
    case FED_FieldType::Integer:
      return ranges.integers.Add(record.GetInteger(field));
    case FED_FieldType::IntList: {
      FED_IntArray list;
      record.GetIntList(field, list);
      for (std::size_t i = 0; i < list.GetSize(); ++i) ranges.integers.Add(list.GetData()[i]);
      return;
    }
    case FED_FieldType::Float:
      values[0] = static_cast<double>(record.GetFloat(field));
      break;
    case FED_FieldType::Double:
      values[0] = record.GetDouble(field);
      break;
    case FED_FieldType::Vector:
      record.GetVector(field, values);
      break;
    case FED_FieldType::Tensor:
      record.GetTensor(field, values);
      break;
    case FED_FieldType::DoubleList: {
      FED_DoubleArray list;
      record.GetDoubleList(field, list);
      ranges.hasReals = true;
      return ranges.reals.Add(list.GetData(), list.GetSize());
    }
    case FED_FieldType::String:
    case FED_FieldType::None:
      return;
  }
  ranges.hasReals       = true;
  const auto fieldClass = FED_FieldType::GetClass(record.GetFieldType(field));
  ranges.reals.Add(values, std::max<std::size_t>(1, FED_FieldType::GetDoubleCount(fieldClass)));
}

}  // namespace

BlockSummary Summarize(const FED_DataBlock& block)
{
  BlockSummary        summary;
  Ranges              ranges;
  const ScratchRecord scratch(block);
  for (auto index = block.Begin(); index != block.End(); ++index) {
    ThrowIfInterrupted();
    block.GetRecord(*index, *scratch);
    ++summary.records;
    summary.bytes += QuilonDataBlockSize::DataRecordSizeOf(*scratch);
    for (std::size_t field = 1; field <= scratch->GetFieldCount(); ++field) AddField(*scratch, field, ranges);
  }
  const Range& range = ranges.hasReals ? ranges.reals : ranges.integers;
  summary.hasValues  = range.any;
  summary.least      = range.least;
  summary.greatest   = range.greatest;
  summary.nans       = range.nans;
  return summary;
}

}  // namespace quilon
