#include "FEM_ResultUtil.h"

#include <cmath>
#include <cstddef>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_DataDescriptorPattern.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/FED_IdDataRecord.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_IntArray.h>
#include <QuilonUtilities/FED_IntegerCodedBoolVector.h>

#include "additional_results.h"
#include "descriptor_edit.h"
#include "failure.h"
#include "FEM_AvgFieldDefs.h"
#include "FEM_PrincipalValue.h"
#include "log_line.h"

namespace {

constexpr const char* kTag = "|%P|BrevanFem|FEM_ResultUtil";
constexpr LogSource   kSource{"src/FEM_ResultUtil", kTag};

struct DerivedKind
{
  int targetOnf;
  int sourceOnf;
};

constexpr DerivedKind kPrincipalValues[] = {{560, 561}, {520, 521}, {570, 571}, {530, 531}};
constexpr DerivedKind kScalarSums[]      = {{540, 903}, {541, 913}};

FED_DataDescriptorPattern SelectOnf(int iteration, int onf)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Iteration, iteration);
  pattern.SetEqual(FED_DataDescriptor::OnfId, onf);
  return pattern;
}

FED_DataDescriptor WithOnf(FED_DataDescriptor descriptor, int onf)
{
  quilon_descriptor::SetIndexInPlace(descriptor, FED_DataDescriptor::OnfId, onf);
  return descriptor;
}

void LogBlock(const FED_DataDescriptor& descriptor)
{
  struct Row
  {
    FED_DataDescriptor::ResultIndex index;
    int                             line;
    const char*                     format;
  };
  static constexpr Row kRows[] = {
      {FED_DataDescriptor::Iteration, 241, "    Iteration: %3d"},
      {FED_DataDescriptor::Analysis, 243, "    Analysis:  %3d"},
      {FED_DataDescriptor::LoadCase, 245, "    Load case: %3d"},
      {FED_DataDescriptor::Substep, 247, "    Substep:   %3d"},
      {FED_DataDescriptor::Increment, 249, "    Increment: %3d"},
      {FED_DataDescriptor::Layer, 251, "    Layer:     %3d"},
  };
  Log(kSource, FED_LogMacros::LogDetail, 239, "Processing:");
  for (const Row& row : kRows) {
    if (quilon_descriptor::IsIndexSet(descriptor, row.index)) {
      Log(kSource, FED_LogMacros::LogDetail, row.line, row.format, descriptor.GetInteger(row.index));
    }
  }
}

// The largest principal value of the standard errors of the mean, sqrt(m2 / n^2) in magnitude.
double StressError(const FEM_AvgUtil::StatData<6>& stress)
{
  const int count = stress.count;
  if (count <= 0) return 0.0;

  double error[6];
  for (int component = 0; component < 6; ++component) {
    error[component] = std::sqrt(std::abs(stress.m2[component] / count / count));
  }
  double principal[3];
  FEM_PrincipalValue::Calculate(error, principal);
  return principal[0];
}

}  // namespace

FEM_ResultUtil::MatricesOnfLoc::MatricesOnfLoc(const FED_DataDescriptor& desc)
{
  for (int i = 0; i < 3; ++i) {
    auto& [first, second] = pairs[static_cast<std::size_t>(i)];

    second = desc;
    second.SetInteger(FED_DataDescriptor::OnfId, 590 + i);
    quilon_descriptor::ClearIndexInPlace(second, FED_DataDescriptor::LoadCase);
    quilon_descriptor::ClearIndexInPlace(second, FED_DataDescriptor::Substep);
    quilon_descriptor::ClearIndexInPlace(second, FED_DataDescriptor::Analysis);

    // The first of a pair drops the increment as well. Test: OnlyTheFirstOfAPairDropsTheIncrement.
    first = second;
    first.SetInteger(FED_DataDescriptor::OnfId, 597 + i);
    quilon_descriptor::ClearIndexInPlace(first, FED_DataDescriptor::Increment);
  }
}

void FEM_ResultUtil::SetResultScalar(FED_Database& db, const FED_DataDescriptor& desc, double value)
{
  FED_DataDescriptor history  = desc;
  const int          position = history.GetInteger(FED_DataDescriptor::Substep);
  history.SetInteger(FED_DataDescriptor::Substep, 1);
  history.SetInteger(FED_DataDescriptor::OnfId, FED_OnfId_ScalarHistory);
  // A negative substep widens to an index beyond all limits, which is the database's to refuse.
  db.GetOrCreateDataBlock(history, 0).SetScalarAt(static_cast<std::size_t>(position), value);
}

void FEM_ResultUtil::SetResultMatrix(FED_Database& db, const FED_DataDescriptor& desc, int id, int size,
                                     const std::vector<double>& values)
{
  FED_IdMapsPool&   idMaps = db.GetIdMapsPool();
  FED_IdDataBlock   view(db.GetOrCreateDataBlock(desc, 0), idMaps, true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  record.SetInteger(1, size);
  record.SetDoubleList(2, values);
  view.SetRecord(id, record);
  view.DeleteIdDataRecord(record);
}

void FEM_ResultUtil::SetElementMatrixInfo(FED_Database& db, const FED_DataDescriptor& desc, int elementId,
                                          const std::vector<bool>& flags, const std::vector<int>& intList)
{
  FED_IdMapsPool&   idMaps = db.GetIdMapsPool();
  FED_IdDataBlock   view(db.GetOrCreateDataBlock(desc, 0), idMaps, true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  unsigned int      code   = 0;
  FED_IntegerCodedBoolVector::BoolVecToInt(flags, code);
  record.SetInteger(1, static_cast<int>(code));
  record.SetIntList(2, intList);
  view.SetRecord(elementId, record);
  view.DeleteIdDataRecord(record);
}

bool FEM_ResultUtil::AreElementNodesDefined(FED_Database& db, const FED_DataDescriptor& desc, int elementId,
                                            const std::vector<int>& nodes)
{
  FED_IdMapsPool& idMaps = db.GetIdMapsPool();
  FED_IdDataBlock view(db.GetOrCreateDataBlock(desc, 0), idMaps, true);
  if (!view.HasRecord(elementId)) return false;

  FED_IdDataRecord& record = view.CreateIdDataRecord();
  view.GetRecord(elementId, record);
  FED_IntArray stored;
  record.GetIntList(1, stored);
  // A longer stored list agrees when its first entries do: readers may know an element's corner nodes only. A shorter
  // one is a difference. Tests: ALongerStoredListAgrees, AShorterStoredListDiffers.
  for (std::size_t k = 0; k < nodes.size(); ++k) {
    if (k >= stored.GetSize() || nodes[k] != stored.GetData()[k]) {
      ThrowFailure(kTag, "The Node ID order within the element definition is different from the previously defined.");
    }
  }
  view.DeleteIdDataRecord(record);
  return true;
}

void FEM_ResultUtil::CalculateAdditionalResults(FED_Database& db, OnfResultRequestFile& requests, int iteration,
                                                int /*unused*/)
{
  Log(kSource, FED_LogMacros::LogVerbose, 196, "Calculating additional results.");
  for (const DerivedKind& kind : kPrincipalValues) {
    if (requests.typeIsRequested(kind.targetOnf)) {
      quilon_results::DerivePrincipalValues(db, iteration, kind.sourceOnf, kind.targetOnf, true);
    }
  }
  for (const DerivedKind& kind : kScalarSums) {
    if (requests.typeIsRequested(kind.targetOnf)) {
      quilon_results::AddScalarFields(db, iteration, kind.targetOnf, kind.sourceOnf, true);
    }
  }
}

void quilon_results::DerivePrincipalValues(FED_Database& db, int iteration, int sourceOnf, int targetOnf,
                                           bool skipExisting)
{
  for (FED_DataBlock* const source : db.GetDataBlocks(SelectOnf(iteration, sourceOnf))) {
    const FED_DataDescriptor descriptor = WithOnf(source->GetDescriptor(), targetOnf);
    if (skipExisting && db.HasDataBlock(descriptor)) continue;

    LogBlock(descriptor);
    FED_DataBlock&    target = db.GetOrCreateDataBlock(descriptor, 0);
    const std::size_t size   = source->GetSize();
    for (std::size_t i = 1; i <= size; ++i) {
      if (!source->HasRecord(i)) continue;
      double tensor[6] = {};
      double principal[3];
      source->GetValuesAt(i, tensor);
      FEM_PrincipalValue::Calculate(tensor, principal);
      target.SetValuesAt(i, principal);
    }
  }
}

void quilon_results::AddScalarFields(FED_Database& db, int iteration, int targetOnf, int sourceOnf, bool deleteSource)
{
  Log(kSource, FED_LogMacros::LogVerbose, 276, "Adding scalar field(s) from ONF %d to ONF %d", sourceOnf, targetOnf);
  for (FED_DataBlock* const target : db.GetDataBlocks(SelectOnf(iteration, targetOnf))) {
    const FED_DataDescriptor descriptor = WithOnf(target->GetDescriptor(), sourceOnf);
    if (!db.HasDataBlock(descriptor)) continue;

    const FED_DataBlock& source = db.GetDataBlock(descriptor);
    const std::size_t    size   = target->GetSize();
    for (std::size_t i = 1; i <= size; ++i) {
      if (!target->HasRecord(i) || !source.HasRecord(i)) continue;
      const double added = source.GetScalarAt(i);
      target->SetScalarAt(i, added + target->GetScalarAt(i));
    }
    if (deleteSource) db.DeleteDataBlock(descriptor);
  }
}

void FEM_ResultUtil::CalculateNodalStressError(FED_Database& db, const FED_DataDescriptor& desc,
                                               const FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6>& stats,
                                               bool blockFlag, std::set<FED_DataDescriptor>* written)
{
  std::vector<int>                      ids;
  std::vector<FEM_AvgUtil::StatData<6>> stresses;
  if (stats.NumLayers() > 0) stats.DumpField(0, ids, stresses);

  FEM_AvgField<int, FEM_AvgUtil::AvgData<1>, 1> errors(1);
  for (std::size_t k = 0; k < ids.size(); ++k) {
    const double error[1] = {StressError(stresses[k])};
    errors.AddValue(ids[k], 0, error);
  }
  errors.SaveField(db, desc, FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Average, blockFlag, written);
}
