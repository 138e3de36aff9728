#include "answers/RegionCopy.h"

#include <vector>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_RecordFormat.h>
#include <bundled/OnfKinds.h>

#include "answers/Region.h"
#include "database/ScratchRecord.h"
#include "kinds/UserKinds.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"

namespace quilon {

namespace {

void CopyField(const FED_ConstDataRecord& from, std::size_t field, FED_FieldType::Class fieldClass, FED_DataRecord& to)
{
  double          values[6];
  FED_IntArray    integers;
  FED_DoubleArray doubles;
  switch (fieldClass) {
    case FED_FieldType::Integer:
      return to.SetInteger(field, from.GetInteger(field));
    case FED_FieldType::Float:
      return to.SetFloat(field, from.GetFloat(field));
    case FED_FieldType::Double:
      return to.SetDouble(field, from.GetDouble(field));
    case FED_FieldType::String:
      return to.SetString(field, from.GetString(field));
    case FED_FieldType::Vector:
      from.GetVector(field, values);
      return to.SetVector(field, values);
    case FED_FieldType::Tensor:
      from.GetTensor(field, values);
      return to.SetTensor(field, values);
    case FED_FieldType::IntList:
      from.GetIntList(field, integers);
      return to.SetIntList(field, integers);
    case FED_FieldType::DoubleList:
      from.GetDoubleList(field, doubles);
      return to.SetDoubleList(field, doubles);
    case FED_FieldType::None:
      return;
  }
}

/// @return whether a record is in the region
bool CopyRecords(const FED_Database& source, const FED_DataBlock& block, const RegionFilter& filter, int entity,
                 FED_Database& target)
{
  const FED_DataDescriptor&  descriptor = block.GetDescriptor();
  const FED_ConstIdDataBlock view(block, source.GetIdMapsPool());
  const ScratchRecord        scratch(block);
  const FED_RecordFormat     format = dynamic_cast<const FED_ColumnDataBlock&>(block).GetRecordFormat();
  FED_DataBlock*             copy   = nullptr;
  FED_DataRecord*            record = nullptr;
  for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
    ThrowIfInterrupted();
    const int id = view.GetId(*it);
    if (!filter.Holds(id)) continue;
    if (copy == nullptr) {
      copy   = target.CreateDataBlock(descriptor, 1, 0, format.ToString());
      record = copy->CreateDataRecord();
    }
    block.GetRecord(*it, *scratch);
    for (std::size_t field = 1; field <= format.GetTypes().size(); ++field)
      CopyField(*scratch, field, FED_FieldType::GetClass(format.GetTypes()[field - 1]), *record);
    copy->SetRecord(target.GetIdMapsPool().FindOrAddIndex(entity, id), *record);
  }
  if (copy != nullptr) copy->DeleteDataRecord(record);
  return copy != nullptr;
}

}  // namespace

void CopyRegion(const FED_Database& source, Region& region, FED_Database& target)
{
  CopyUserKindNames(source, target);
  bool any = false;
  for (const FED_DataDescriptor& descriptor : source.GetDataDescriptors(FED_DataDescriptorPattern())) {
    const int onf    = OnfKind::OnfOf(descriptor);
    const int entity = OnfKind::EntityOf(onf);
    if (entity == OnfKind::HistoryEntity && !OnfKind::IsProvenance(onf)) FED_CopyBlock(source, target, descriptor);
    if (!OnfKind::IsOfMesh(onf)) continue;
    if (entity == OnfKind::ElementEntity && region.IsOfNodesAlone(descriptor.GetInteger(FED_DataDescriptor::Iteration)))
      continue;
    const FED_DataBlock& block = source.GetConstDataBlock(descriptor);
    any                        = CopyRecords(source, block, region.FilterOf(block), entity, target) || any;
  }
  if (!any) region.FailEmpty("the database");
}

}  // namespace quilon
