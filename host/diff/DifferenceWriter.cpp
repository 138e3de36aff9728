#include "diff/DifferenceWriter.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "database/ModelCopy.h"
#include "kinds/UserKinds.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"
#include "selection/Selection.h"

namespace quilon::diff {

namespace {

using Class = FED_FieldType::Class;

bool IsReal(Class fieldClass)
{
  return fieldClass == Class::Float || fieldClass == Class::DoubleList ||
         FED_FieldType::GetDoubleCount(fieldClass) != 0;
}

/// Fills a record with differences.
class Subtraction
{
public:
  Subtraction(const std::vector<int>& types, FED_DataRecord& record) : types_(types), record_(record) {}

  void Begin() { isWhole_ = true; }
  bool IsWhole() const noexcept { return isWhole_; }

  void Values(std::size_t field, const double* a, const double* b, std::size_t count, ValueSort)
  {
    difference_.resize(count);
    std::transform(a, a + count, b, difference_.begin(), [](double x, double y) { return y - x; });
    switch (FED_FieldType::GetClass(types_[field - 1])) {
      case Class::Float:
        return record_.SetFloat(field, static_cast<float>(difference_[0]));
      case Class::Double:
        return record_.SetDouble(field, difference_[0]);
      case Class::Vector:
        return record_.SetVector(field, difference_.data());
      case Class::Tensor:
        return record_.SetTensor(field, difference_.data());
      default:
        return record_.SetDoubleList(field, FED_DoubleArray(difference_));
    }
  }
  void Mismatch(std::size_t, std::size_t, const char*, const Value&, const Value&) { isWhole_ = false; }

private:
  const std::vector<int>& types_;
  FED_DataRecord&         record_;
  std::vector<double>     difference_;
  bool                    isWhole_ = true;
};

/// Copies what is no floating-point field.
void CopyOthers(const FED_ConstDataRecord& from, const std::vector<int>& types, FED_DataRecord& to)
{
  FED_IntArray list;
  for (std::size_t field = 1; field <= types.size(); ++field) {
    switch (FED_FieldType::GetClass(types[field - 1])) {
      case Class::Integer:
        to.SetInteger(field, from.GetInteger(field));
        break;
      case Class::String:
        to.SetString(field, from.GetString(field));
        break;
      case Class::IntList:
        from.GetIntList(field, list);
        to.SetIntList(field, list);
        break;
      default:
        break;
    }
  }
}

}  // namespace

DifferenceWriter::DifferenceWriter(const FED_Database& first, FED_Database& target) : first_(first), target_(target)
{
  CopyUserKindNames(first, target);
}

void DifferenceWriter::Write(const FED_DataBlock& first, const FED_DataBlock& second, const RecordPairs& pairs,
                             const Transformation& transformation)
{
  const FED_DataDescriptor& descriptor = first.GetDescriptor();
  if (BelongsToAllSteps(descriptor)) return FED_CopyBlock(first_, target_, descriptor);
  const auto&             columns = dynamic_cast<const FED_ColumnDataBlock&>(first);
  const FED_RecordFormat& format  = columns.GetRecordFormat();
  const std::vector<int>& types   = format.GetTypes();
  const auto              isReal  = [](int type) { return IsReal(FED_FieldType::GetClass(type)); };
  if (std::none_of(types.begin(), types.end(), isReal)) return;

  iterations_.insert(descriptor.GetInteger(FED_DataDescriptor::Iteration));
  FED_DataBlock&          block  = *target_.CreateDataBlock(descriptor, columns.GetRecordCount(), 0, format.ToString());
  FED_DataRecord* const   record = block.CreateDataRecord();
  const ScratchRecord     scratch(first);
  const bool              hasOthers = !std::all_of(types.begin(), types.end(), isReal);
  Subtraction             subtraction(types, *record);
  RecordWalk<Subtraction> walk(first, second, transformation, FieldTypes::AlikeCodes);
  pairs.ForEach([&](const RecordPair& pair) {
    ThrowIfInterrupted();
    subtraction.Begin();
    walk.Walk(pair, subtraction);
    if (!subtraction.IsWhole()) return;
    if (hasOthers) {
      first.GetRecord(pair.first, *scratch);
      CopyOthers(*scratch, types, *record);
    }
    block.SetRecord(FindOrAddIndex(descriptor, pair.first), *record);
  });
  block.DeleteDataRecord(record);
}

bool DifferenceWriter::AddAllIds()
{
  const auto* const first = dynamic_cast<const FED_ResultDatabase*>(&first_);
  if (first == nullptr) return false;
  const FED_ResultIdMapsPool& ids = first->GetIdMapsPool();
  for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind)
    for (std::size_t index = 1; index <= ids.GetCount(kind); ++index)
      target_.GetIdMapsPool().FindOrAddIndex(kind, ids.GetId(kind, index));
  return true;
}

void DifferenceWriter::Finish()
{
  for (const int iteration : iterations_) {
    const auto hasCompared = [&](FED_OnfId onf) { return target_.HasDataBlock(FED_DataDescriptor(iteration, onf)); };
    if (!hasCompared(OnfKind::Coordinates) || !hasCompared(OnfKind::ElementNodes))
      CopyModel(first_, {iteration}, target_);
  }
}

std::size_t DifferenceWriter::FindOrAddIndex(const FED_DataDescriptor& descriptor, std::size_t index)
{
  const int entity = OnfKind::EntityOf(descriptor);
  if (entity >= OnfKind::HistoryEntity) return index;
  return target_.GetIdMapsPool().FindOrAddIndex(entity, first_.GetIdMapsPool().GetId(entity, index));
}

}  // namespace quilon::diff
