#include "block_file.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include <bundled/OnfKinds.h>

#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_DataRecord.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "QuilonUtilities/FED_Failure.h"
#include "text_cursor.h"
#include "text_output.h"
#include "text_syntax.h"

namespace {

constexpr const char* kTag        = "|%P|QuilonOnfEngine|block_file";
constexpr int         kVersion    = 1;
constexpr const char* kVersionKey = "onf-text-block";

struct IndexName
{
  const char* key;      ///< in the header
  const char* fileTag;  ///< in the file name
};

// The names of the result indices are part of the format.
constexpr IndexName kIndexNames[] = {
    {"iteration", "it"}, {"onf", "onf"},       {"index-2", "i2"},   {"load-case", "lc"}, {"substep", "sub"},
    {"analysis", "an"},  {"increment", "inc"}, {"index-7", "i7"},   {"index-8", "i8"},   {"layer", "lay"},
    {"index-10", "i10"}, {"index-11", "i11"},  {"index-12", "i12"}, {"index-13", "i13"},
};
static_assert(std::size(kIndexNames) == FED_DataDescriptor::kNumIndices);

constexpr std::size_t kOnfIndex = FED_DataDescriptor::OnfId;

const FED_OnfMetaData& GetInfo(const FED_DataDescriptor& descriptor)
{
  return FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(descriptor.values[kOnfIndex]));
}

bool UsesIds(const FED_DataDescriptor& descriptor) { return OnfKind::HasIds(OnfKind::OnfOf(descriptor)); }

bool IsBitSet(const FED_DataDescriptor& descriptor, std::size_t index) { return (descriptor.mask >> index & 1u) != 0; }

void WriteHeader(const BlockHeader& header, TextOutput& out)
{
  const FED_DataDescriptor& descriptor = header.descriptor;
  if (descriptor.mask >> FED_DataDescriptor::kNumIndices != 0)
    throw FED_Failure(descriptor.ToString() + ": the mask has bits above the fourteen indices", kTag);
  out.Append(std::string(kVersionKey) + ": " + std::to_string(kVersion) + "\n");
  for (std::size_t i = 0; i < std::size(kIndexNames); ++i) {
    const bool isSet = IsBitSet(descriptor, i);
    const int  value = descriptor.values[i];
    // A value left under a clear bit is part of the key.
    if (!isSet && value == 0 && i != kOnfIndex) continue;
    out.Append(std::string(isSet ? "" : kUnsetPrefix) + kIndexNames[i].key + ": " + std::to_string(value));
    if (i == kOnfIndex) out.Append(" " + GetInfo(descriptor).GetName());
    out.AppendChar('\n');
  }
  out.Append("record-format: " + (header.recordFormat.IsEmpty() ? "-" : header.recordFormat.ToString()) + "\n");
  out.Append(std::string("records-by: ") + (header.usesIds ? "id" : "index") + "\n");
  out.Append("records: " + std::to_string(header.numRecords) + "\n");
}

void WriteDoubles(const double* values, std::size_t count, TextOutput& out)
{
  for (std::size_t i = 0; i < count; ++i) {
    out.AppendChar(' ');
    out.AppendDouble(values[i]);
  }
}

void WriteListCount(std::size_t count, TextOutput& out)
{
  out.Append(" [");
  out.AppendInteger(static_cast<long long>(count));
  out.AppendChar(']');
}

void WriteField(const FED_ConstDataRecord& record, std::size_t field, TextOutput& out)
{
  double values[6];
  switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
    case FED_FieldType::Integer:
      out.AppendChar(' ');
      out.AppendInteger(record.GetInteger(field));
      break;
    case FED_FieldType::Float:
      out.AppendChar(' ');
      out.AppendFloat(record.GetFloat(field));
      break;
    case FED_FieldType::Double:
      values[0] = record.GetDouble(field);
      WriteDoubles(values, 1, out);
      break;
    case FED_FieldType::String:
      out.AppendChar(' ');
      out.AppendString(record.GetString(field));
      break;
    case FED_FieldType::Vector:
      record.GetVector(field, values);
      WriteDoubles(values, 3, out);
      break;
    case FED_FieldType::Tensor:
      record.GetTensor(field, values);
      WriteDoubles(values, 6, out);
      break;
    case FED_FieldType::IntList: {
      FED_IntArray list;
      record.GetIntList(field, list);
      WriteListCount(list.GetSize(), out);
      for (std::size_t i = 0; i < list.GetSize(); ++i) {
        out.AppendChar(' ');
        out.AppendInteger(list.GetData()[i]);
      }
      break;
    }
    case FED_FieldType::DoubleList: {
      FED_DoubleArray list;
      record.GetDoubleList(field, list);
      WriteListCount(list.GetSize(), out);
      WriteDoubles(list.GetData(), list.GetSize(), out);
      break;
    }
    case FED_FieldType::None:
      break;  // no format holds one
  }
}

/// A row of plain doubles passes through no scratch record.
void WriteDoubleRecords(const FED_DataBlock& block, std::span<const RecordPlace> places, std::size_t count,
                        TextOutput& out)
{
  std::vector<double> values(count);
  for (const RecordPlace& place : places) {
    block.GetValuesAt(place.index, values.data());
    out.AppendInteger(place.key);
    WriteDoubles(values.data(), count, out);
    out.AppendChar('\n');
  }
}

void WriteMixedRecords(const FED_DataBlock& block, std::span<const RecordPlace> places, std::size_t numFields,
                       TextOutput& out)
{
  FED_ConstDataRecord* const scratch = block.CreateConstDataRecord();  // freed with the block if an exception passes
  for (const RecordPlace& place : places) {
    block.GetRecord(place.index, *scratch);
    out.AppendInteger(place.key);
    for (std::size_t field = 1; field <= numFields; ++field) WriteField(*scratch, field, out);
    out.AppendChar('\n');
  }
  block.DeleteDataRecord(scratch);
}

/// Reads ids or indices of records, each greater than the one before.
class KeyReader
{
public:
  explicit KeyReader(bool usesIds) : usesIds_(usesIds) {}

  int Read(TextCursor& in)
  {
    const int key = in.ReadInteger();
    if (!usesIds_ && key < 0) in.Fail("record index is " + std::to_string(key) + ", expected 0 or more");
    if (hasLast_ && key <= last_)
      in.Fail(key == last_ ? "record " + std::to_string(key) + " stands twice"
                           : "record " + std::to_string(key) + " follows record " + std::to_string(last_) +
                                 ", expected ascending order");
    hasLast_ = true;
    last_    = key;
    return key;
  }

private:
  bool usesIds_;
  bool hasLast_ = false;
  int  last_    = 0;
};

FED_RecordFormat ReadRecordFormat(TextCursor& in)
{
  const std::string text(in.ReadWord());
  if (text.empty()) in.FailExpected("a record format, or - for none");
  FED_RecordFormat format;
  try {
    if (text != "-") format = FED_RecordFormat::Parse(text);
  } catch (const FED_Failure& failure) {
    in.Fail(failure.GetMessage());  // the parser does not know the file
  }
  in.ReadLineEnd();
  return format;
}

void ReadDoubles(TextCursor& in, double* values, std::size_t count)
{
  for (std::size_t i = 0; i < count; ++i) values[i] = in.ReadFloat<double>();
}

void ReadField(TextCursor& in, FED_DataRecord& record, std::size_t field)
{
  double values[6];
  switch (FED_FieldType::GetClass(record.GetFieldType(field))) {
    case FED_FieldType::Integer:
      record.SetInteger(field, in.ReadInteger());
      break;
    case FED_FieldType::Float:
      record.SetFloat(field, in.ReadFloat<float>());
      break;
    case FED_FieldType::Double:
      record.SetDouble(field, in.ReadFloat<double>());
      break;
    case FED_FieldType::String:
      record.SetString(field, in.ReadString());
      break;
    case FED_FieldType::Vector:
      ReadDoubles(in, values, 3);
      record.SetVector(field, values);
      break;
    case FED_FieldType::Tensor:
      ReadDoubles(in, values, 6);
      record.SetTensor(field, values);
      break;
    case FED_FieldType::IntList: {
      FED_IntArray list;
      list.Resize(in.ReadListCount());
      for (std::size_t i = 0; i < list.GetSize(); ++i) list.GetData()[i] = in.ReadInteger();
      record.SetIntList(field, list);
      break;
    }
    case FED_FieldType::DoubleList: {
      FED_DoubleArray list;
      list.Resize(in.ReadListCount());
      ReadDoubles(in, list.GetData(), list.GetSize());
      record.SetDoubleList(field, list);
      break;
    }
    case FED_FieldType::None:
      break;  // no format holds one
  }
}

}  // namespace

std::string GetBlockFileStem(const FED_DataDescriptor& descriptor)
{
  std::string stem = GetInfo(descriptor).GetName();
  for (std::size_t i = 0; i < std::size(kIndexNames); ++i) {
    const bool isSet = IsBitSet(descriptor, i);
    const int  value = descriptor.values[i];
    // The kind's name tells a set ONF id.
    if (i == kOnfIndex ? isSet : !isSet && value == 0) continue;
    stem += std::string(isSet ? "_" : "_u") + kIndexNames[i].fileTag;
    if (i != kOnfIndex) stem += std::to_string(value);
  }
  return stem;
}

std::vector<RecordPlace> SortedRecords(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool)
{
  const FED_DataDescriptor& descriptor = block.GetDescriptor();
  const int                 kind       = GetInfo(descriptor).GetEntityKind();
  const bool                usesIds    = UsesIds(descriptor);
  std::vector<RecordPlace>  places;
  places.reserve(block.GetRecordCount());
  // Indices of the store are at most the greatest int.
  for (const std::size_t index : block.GetIndices())
    places.push_back({usesIds ? pool.GetId(kind, index) : static_cast<int>(index), index});
  const auto byKey = [](const RecordPlace& a, const RecordPlace& b) { return a.key < b.key; };
  if (!std::is_sorted(places.begin(), places.end(), byKey)) std::sort(places.begin(), places.end(), byKey);
  // In kind 14 an index that no id maps to reads as itself and may meet the id of another record.
  const auto twin = std::adjacent_find(places.begin(), places.end(),
                                       [](const RecordPlace& a, const RecordPlace& b) { return a.key == b.key; });
  if (twin != places.end())
    throw FED_Failure(descriptor.ToString() + ": two records have the id " + std::to_string(twin->key), kTag);
  return places;
}

void WriteRecords(const FED_ColumnDataBlock& block, const std::vector<RecordPlace>& places, std::size_t first,
                  std::size_t count, TextOutput& out)
{
  const FED_RecordFormat& format     = block.GetRecordFormat();
  const std::size_t       numDoubles = format.GetDoubleCount();
  const auto              some       = std::span(places).subspan(first, count);
  if (first == 0) WriteHeader({block.GetDescriptor(), format, UsesIds(block.GetDescriptor()), places.size()}, out);
  if (numDoubles != 0)
    WriteDoubleRecords(block, some, numDoubles, out);
  else
    WriteMixedRecords(block, some, format.GetTypes().size(), out);
}

void WriteBlock(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool, TextOutput& out)
{
  const std::vector<RecordPlace> places = SortedRecords(block, pool);
  WriteRecords(block, places, 0, places.size(), out);
}

BlockHeader ReadBlockHeader(TextCursor& in)
{
  BlockHeader header;
  ReadVersion(in, kVersionKey, kVersion);
  std::string_view key = in.ReadKey();
  for (std::size_t i = 0; i < std::size(kIndexNames); ++i) {
    const std::string name    = kIndexNames[i].key;
    const bool        isSet   = key == name;
    const bool        isUnset = key == kUnsetPrefix + name;
    if (!isSet && !isUnset) {
      if (i == kOnfIndex) FailMissingKey(in, key, name);
      continue;
    }
    header.descriptor.values[i] = in.ReadInteger();
    if (isSet) header.descriptor.mask |= 1u << i;
    // The name of the kind behind its id is for people.
    if (i == kOnfIndex) in.ReadRestOfLine();
    in.ReadLineEnd();
    key = in.ReadKey();
  }

  if (key != "record-format") FailMissingKey(in, key, "record-format");
  header.recordFormat = ReadRecordFormat(in);

  ReadRequiredKey(in, "records-by");
  const bool             usesIds    = UsesIds(header.descriptor);
  const char* const      expected   = usesIds ? "id" : "index";
  const std::string_view addressing = in.ReadWord();
  if (addressing != expected)
    in.Fail("records of " + GetInfo(header.descriptor).GetName() + " go by " + expected + ", found " +
            QuoteForMessage(addressing));
  header.usesIds = usesIds;
  in.ReadLineEnd();

  ReadRequiredKey(in, "records");
  header.numRecords = in.ReadCount("the number of records");
  if (header.numRecords != 0 && header.recordFormat.IsEmpty()) in.Fail("records need a record format");
  in.ReadLineEnd();
  return header;
}

void CheckRecordCount(const TextCursor& in, const BlockHeader& header)
{
  // The shortest record is a digit, a blank and a byte for each field, and a line feed.
  const std::size_t minRecordSize = 2 + 2 * header.recordFormat.GetTypes().size();
  if (header.numRecords > in.GetRemaining() / minRecordSize)
    in.Fail(std::to_string(header.numRecords) + " records cannot stand in the " + std::to_string(in.GetRemaining()) +
            " bytes that follow");
}

void ReadBlockRecords(TextCursor& in, const BlockHeader& header, FED_DataBlock& block, FED_IdMapsPool& pool)
{
  const int             kind      = GetInfo(header.descriptor).GetEntityKind();
  FED_DataRecord* const scratch   = block.CreateDataRecord();
  const std::size_t     numFields = header.recordFormat.GetTypes().size();
  std::vector<double>   values(header.recordFormat.GetDoubleCount());
  KeyReader             keys(header.usesIds);
  for (std::size_t i = 0; i < header.numRecords; ++i) {
    if (in.AtEnd())
      in.Fail("expected " + std::to_string(header.numRecords) + " records, found the end of the file behind " +
              std::to_string(i));
    const int key = keys.Read(in);
    if (!values.empty()) {
      ReadDoubles(in, values.data(), values.size());
    } else {
      for (std::size_t field = 1; field <= numFields; ++field) ReadField(in, *scratch, field);
    }
    in.ReadLineEnd();
    // The id is added when its line is known to be whole.
    const std::size_t index = header.usesIds ? pool.FindOrAddIndex(kind, key) : static_cast<std::size_t>(key);
    if (!values.empty())
      block.SetValuesAt(index, values.data());
    else
      block.SetRecord(index, *scratch);
  }
  if (!in.AtEnd()) in.FailExpected("the end of the file behind " + std::to_string(header.numRecords) + " records");
  block.DeleteDataRecord(scratch);
}
