#include "QuilonDbConnector/QuilonDatabaseUtils.h"

#include <string>
#include <vector>

#include <bundled/OnfKinds.h>

#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"

#include "bundled/FED_BlockCopy.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_RecordFormat.h"
#include "ResultDataBlock.h"
#include "ResultRecord.h"
#include "ScratchGuard.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|QuilonDatabaseUtils";

std::vector<std::size_t> GetIndices(const FED_DataBlock& block)
{
  // Our own blocks know their indices; others are asked for each up to the last.
  if (const auto* columns = dynamic_cast<const FED_ColumnDataBlock*>(&block)) return columns->GetIndices();
  std::vector<std::size_t>           indices;
  const FED_DataBlock::IndexIterator end = block.End();
  for (FED_DataBlock::IndexIterator it = block.Begin(); it != end; ++it) indices.push_back(*it);
  return indices;
}

// Where each record goes: ids are looked up in ascending order of the source's indices, so that a target without ids
// gets the source's order of first use.
std::vector<std::size_t> TranslateIndices(const FED_Database& source, FED_Database& target, int kind,
                                          const std::vector<std::size_t>& indices)
{
  if (kind >= OnfKind::HistoryEntity) return indices;
  const FED_IdMapsPool& sourcePool = source.GetIdMapsPool();
  std::vector<int>      ids;
  ids.reserve(indices.size());
  // All ids are known before the first one is added to the target.
  for (const std::size_t index : indices) ids.push_back(sourcePool.GetId(kind, index));
  FED_IdMapsPool&          targetPool = target.GetIdMapsPool();
  std::vector<std::size_t> translated;
  translated.reserve(ids.size());
  for (const int id : ids) translated.push_back(targetPool.FindOrAddIndex(kind, id));
  return translated;
}

// Whole columns go between blocks of ours whose rows are in the order of the indices, which is that of the copy.
bool CopyRows(const FED_DataBlock& source, FED_DataBlock& target, int kind,
              const std::vector<std::size_t>& targetIndices)
{
  const auto* from = dynamic_cast<const ResultDataBlock*>(&source);
  auto*       to   = dynamic_cast<ResultDataBlock*>(&target);
  if (from == nullptr || to == nullptr || !from->RowsAscend()) return false;
  // An index of the unknown kind that no id has reads as an id, which another index may have.
  if (kind == OnfKind::UnknownEntity) return false;
  to->AppendRows(*from, targetIndices);
  return true;
}

void CopyRecords(const FED_DataBlock& source, FED_DataBlock& target, const FED_RecordFormat& format, int kind,
                 const std::vector<std::size_t>& sourceIndices, const std::vector<std::size_t>& targetIndices)
{
  if (CopyRows(source, target, kind, targetIndices)) return;
  if (format.GetDoubleCount() > 0) {
    std::vector<double> values(format.GetDoubleCount());
    for (std::size_t i = 0; i < sourceIndices.size(); ++i) {
      source.GetValuesAt(sourceIndices[i], values.data());
      target.SetValuesAt(targetIndices[i], values.data());
    }
    return;
  }
  const ScratchGuard<FED_ConstDataRecord> from(source, source.CreateConstDataRecord());
  const ScratchGuard<FED_DataRecord>      to(target, target.CreateDataRecord());
  for (std::size_t i = 0; i < sourceIndices.size(); ++i) {
    source.GetRecord(sourceIndices[i], *from);
    CopyRecord(*from, *to);
    target.SetRecord(targetIndices[i], *to);
  }
}

void CopyUserKindName(const FED_Database& source, FED_Database& target, FED_OnfId onf)
{
  const std::string name = source.GetUserKindName(onf);
  if (!name.empty()) target.SetUserKindName(onf, name);
}

void CopyBlock(const FED_Database& source, FED_Database& target, const FED_DataBlock& block,
               const std::vector<std::size_t>& indices)
{
  const FED_DataDescriptor& descriptor = block.GetDescriptor();
  const auto                onf        = static_cast<FED_OnfId>(descriptor.values[FED_DataDescriptor::OnfId]);
  FED_RecordFormat          format;
  {
    const ScratchGuard<FED_ConstDataRecord> record(block, block.CreateConstDataRecord());
    format = FED_RecordFormat::FromRecord(*record);
  }
  const int                      kind          = OnfKind::EntityOf(onf);
  const std::vector<std::size_t> targetIndices = TranslateIndices(source, target, kind, indices);
  if (target.HasDataBlock(descriptor)) target.DeleteDataBlock(descriptor);
  FED_DataBlock* copy = target.CreateDataBlock(descriptor, indices.size(), 0, format.ToString());
  CopyRecords(block, *copy, format, kind, indices, targetIndices);
  CopyUserKindName(source, target, onf);
  // A scalar history says in result index 10 which scalar it holds; a user kind may stand nowhere else.
  const auto quantity = OnfIndex::Quantity;
  if (onf == FED_OnfId_ScalarHistory && descriptor.IsSet(quantity))
    CopyUserKindName(source, target, static_cast<FED_OnfId>(descriptor.GetInteger(quantity)));
}

}  // namespace

std::size_t QuilonDatabaseUtils::copy_datablocks(const FED_Database& source, FED_Database& target,
                                                 const FED_DataDescriptorPattern& pattern, EmptyBlockAction action)
{
  if (&source == &target) throw FED_Failure("copy_datablocks: source and target are one database, expected two", kTag);
  std::size_t copied = 0;
  for (const FED_DataDescriptor& descriptor : source.GetDataDescriptors(pattern)) {
    const FED_DataBlock&           block   = source.GetConstDataBlock(descriptor);
    const std::vector<std::size_t> indices = GetIndices(block);
    if (indices.empty() && action == SkipEmptyBlocks) continue;
    CopyBlock(source, target, block, indices);
    ++copied;
  }
  return copied;
}

void FED_CopyBlock(const FED_Database& source, FED_Database& target, const FED_DataDescriptor& descriptor)
{
  const FED_DataBlock& block = source.GetConstDataBlock(descriptor);
  CopyBlock(source, target, block, GetIndices(block));
}
