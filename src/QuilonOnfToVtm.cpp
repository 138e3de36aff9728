#include "QuilonOnfToVtm.h"

#include <cstddef>
#include <limits>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DatabaseDefs.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_DataBlockSet.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/FED_IdDataRecord.h>
#include <QuilonDbConnector/QuilonDatabaseUtils.h>
#include <QuilonOnfEngine/QuilonOnfTxtDatabase.h>
#include <QuilonOnfSpecification/FED_OnfInfoPool.h>
#include <QuilonUtilities/QuilonFileUtil.h>
#include <QuilonUtilities/QuilonStringUtil.h>

#include "descriptor_edit.h"
#include "failure.h"
#include "log_line.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbDataTools|QuilonOnfToVtm";
constexpr LogSource   kSource{"src/QuilonOnfToVtm", kTag};
constexpr std::size_t kCacheSize        = 1024;
constexpr int         kFirstIndexedKind = 15;  // kinds from here on have no ids: the block index stands for the id

void RequireOnf(const std::wstring& path)
{
  if (!QuilonFileUtil::FileExists(path)) {
    ThrowFailure(kTag, "%s ONF file not found.", QuilonStringUtil::wide_to_utf8(path.c_str()).c_str());
  }
}

void Open(QuilonOnfTxtDatabase& onf, FED_DatabaseDefs::AccessMode mode)
{
  onf.InitDb(mode, kCacheSize, std::wstring(), nullptr);
}

// Turns the indices of one block into ids.
class IdRule
{
public:
  IdRule(const FED_ConstIdDataBlock& view, const FED_DataDescriptor& descriptor)
      : view_(view), hasIds_(EntityKind(descriptor) < kFirstIndexedKind)
  {}

  int operator()(std::size_t index) const { return hasIds_ ? view_.GetId(index) : static_cast<int>(index); }

private:
  static int EntityKind(const FED_DataDescriptor& descriptor)
  {
    const int onf = descriptor.GetInteger(FED_DataDescriptor::OnfId);
    return FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf)).GetEntityKind();
  }

  const FED_ConstIdDataBlock& view_;
  bool                        hasIds_;
};

// Opens the ONF results and calls store(view, id, n) for the n-th record of the descriptor's block, its id written to
// ids[n] before. Counter is the type of n.
template <typename Counter, typename Store>
void ReadBlock(const std::wstring& path, const FED_DataDescriptor& descriptor, QuilonContainer::Span<int> ids,
               const Store& store)
{
  RequireOnf(path);
  QuilonOnfTxtDatabase onf(path);
  Open(onf, FED_DatabaseDefs::ReadAccess);
  {
    FED_DataBlock* const block = onf.GetDataBlockSet().GetDataBlockInstance(descriptor);
    if (block == nullptr) ThrowFailure(kTag, "No blocks matching the pattern found");

    FED_IdDataBlock view(*block, onf.GetIdMapsPool(), false);
    // Never filled: the values go straight to the caller's arrays.
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    const IdRule      idOf(view, view.GetDescriptor());

    Counter                            n   = 0;
    const FED_DataBlock::IndexIterator end = block->End();
    for (FED_DataBlock::IndexIterator index = block->Begin(); index != end; ++index) {
      // Greater, not greater or equal: one record more than the ids have room for is still written, at position
      // ids.GetSize(). Callers size their arrays accordingly.
      // Test: OneElementBehindTheSpanIsWritten.
      if (static_cast<std::size_t>(n) > ids.GetSize()) break;
      const int id     = idOf(*index);
      ids.GetData()[n] = id;
      store(view, id, n);
      ++n;
    }
    view.DeleteIdDataRecord(record);
  }
  onf.ReleaseDb(false);
}

int MapLoadCase(int loadCase, int offset, const std::map<int, int>* map)
{
  if (map != nullptr) {
    const auto found = map->find(loadCase);
    if (found != map->end()) loadCase = found->second;
  }
  const long long sum = static_cast<long long>(loadCase) + offset;
  if (sum < std::numeric_limits<int>::min() || sum > std::numeric_limits<int>::max()) {
    ThrowFailure(kTag, "Load case %d with offset %d is %lld, expected a 32-bit integer", loadCase, offset, sum);
  }
  return static_cast<int>(sum);
}

void CopyRecords(const FED_DataBlock& block, const FED_ConstIdDataBlock& source, FED_IdDataRecord& sourceRecord,
                 FED_IdDataBlock& target, FED_IdDataRecord& targetRecord, const IdRule& idOf)
{
  const FED_ConstIdDataRecord&       read = sourceRecord;
  const FED_DataBlock::IndexIterator end  = block.End();
  for (FED_DataBlock::IndexIterator index = block.Begin(); index != end; ++index) {
    const int id = idOf(*index);
    source.GetRecord(id, sourceRecord);
    targetRecord = read;
    target.SetRecord(id, targetRecord);
  }
}

void CopyBlockToVtm(FED_DataBlock& block, FED_IdMapsPool& onfIdMaps, FED_Database& vtm, int iteration,
                    int loadCaseOffset, const std::map<int, int>* loadCaseMap)
{
  FED_IdDataBlock    source(block, onfIdMaps, false);
  FED_DataDescriptor descriptor = source.GetDescriptor();
  if (!quilon_descriptor::IsIndexSet(descriptor, FED_DataDescriptor::Iteration)) {
    quilon_descriptor::SetIndexInPlace(descriptor, FED_DataDescriptor::Iteration, iteration);
  }
  FED_IdDataRecord& sourceRecord = source.CreateIdDataRecord();
  if (quilon_descriptor::IsIndexSet(descriptor, FED_DataDescriptor::LoadCase)) {
    const int loadCase = descriptor.GetInteger(FED_DataDescriptor::LoadCase);
    quilon_descriptor::SetIndexInPlace(descriptor, FED_DataDescriptor::LoadCase,
                                       MapLoadCase(loadCase, loadCaseOffset, loadCaseMap));
  }
  Log(kSource, FED_LogMacros::LogVerbose, 100, "Writing %s to VTM", descriptor.ToString().c_str());

  FED_DataBlock&    vtmBlock = vtm.GetOrCreateDataBlock(descriptor, 0);
  FED_IdDataBlock   target(vtmBlock, vtm.GetIdMapsPool(), false);
  FED_IdDataRecord& targetRecord = target.CreateIdDataRecord();
  CopyRecords(block, source, sourceRecord, target, targetRecord, IdRule(source, descriptor));
  source.DeleteIdDataRecord(sourceRecord);
  target.DeleteIdDataRecord(targetRecord);
}

}  // namespace

void QuilonOnfToVtm::CopyOnfToScalar(const std::wstring& onfPath, QuilonContainer::Span<int> ids,
                                     QuilonContainer::Span<double> values, const FED_DataDescriptor& descriptor)
{
  ReadBlock<std::size_t>(onfPath, descriptor, ids, [&](const FED_ConstIdDataBlock& view, int id, std::size_t n) {
    view.GetScalar(id, values.GetData()[n]);
  });
}

void QuilonOnfToVtm::CopyOnfToVector(const std::wstring& onfPath, QuilonContainer::Span<int> ids,
                                     QuilonContainer::Span<double> x, QuilonContainer::Span<double> y,
                                     QuilonContainer::Span<double> z, const FED_DataDescriptor& descriptor)
{
  // The counter is an int; no block has more records than it counts. Compared with the span's size it is widened.
  ReadBlock<int>(onfPath, descriptor, ids, [&](const FED_ConstIdDataBlock& view, int id, int n) {
    double vector[3] = {};
    view.GetVector(id, vector);
    x.GetData()[n] = vector[0];
    y.GetData()[n] = vector[1];
    z.GetData()[n] = vector[2];
  });
}

void QuilonOnfToVtm::CopyOnfToVtm(const std::wstring& onfPath, FED_Database& vtm,
                                  const FED_DataDescriptorPattern& pattern, int iteration, int loadCaseOffset,
                                  const std::map<int, int>* loadCaseMap)
{
  RequireOnf(onfPath);
  if (!vtm.IsInitialized()) ThrowFailure(kTag, "VTM database does not exist or isn't initialized");

  QuilonOnfTxtDatabase onf(onfPath);
  Open(onf, FED_DatabaseDefs::ReadAccess);
  const std::vector<FED_DataBlock*> blocks = onf.GetDataBlocks(pattern);
  Log(kSource, FED_LogMacros::LogVerbose, 70, "ONF has %Iu datablocks ", blocks.size());
  if (blocks.empty()) {
    Log(kSource, FED_LogMacros::LogNotice, 128, "No blocks matching the pattern found for pattern %s",
        pattern.ToString().c_str());
  }
  for (FED_DataBlock* const block : blocks) {
    CopyBlockToVtm(*block, onf.GetIdMapsPool(), vtm, iteration, loadCaseOffset, loadCaseMap);
  }
  onf.ReleaseDb(false);
}

void QuilonOnfToVtm::CopyVtmToOnf(const std::wstring& onfPath, const FED_Database& vtm,
                                  const FED_DataDescriptorPattern& pattern)
{
  QuilonOnfTxtDatabase onf(onfPath);
  Open(onf, FED_DatabaseDefs::WriteAccess);
  // Unlike the other direction, nothing to copy is a failure: an export that writes nothing has gone wrong, while an
  // import finds what there is. The ONF database goes without a release, which would publish it.
  // Test: NothingToCopyToOnfIsAFailure.
  if (QuilonDatabaseUtils::copy_datablocks(vtm, onf, pattern, QuilonDatabaseUtils::SkipEmptyBlocks) == 0) {
    ThrowFailure(kTag, "No blocks matching the pattern found");
  }
  onf.ReleaseDb(false);
}
