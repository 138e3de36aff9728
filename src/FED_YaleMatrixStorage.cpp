#include "FED_YaleMatrixStorage.h"

#include <utility>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_DataRecord.h>
#include <QuilonUtilities/FED_DoubleArray.h>
#include <QuilonUtilities/FED_IntArray.h>
#include <QuilonUtilities/FED_YaleMatrix.h>

namespace {

enum Field : std::size_t
{
  kNumRows       = 1,
  kNumColumns    = 2,
  kValues        = 3,
  kRowPointers   = 4,
  kColumnIndices = 5
};

}  // namespace

void FED_YaleMatrixStorage::Store(const FED_YaleMatrix& matrix, FED_Database& db, const FED_DataDescriptor& descriptor,
                                  std::size_t index)
{
  FED_DataBlock* const  block  = db.CreateDataBlock(descriptor, 1, 20, "IIbDbLbLb");
  FED_DataRecord* const record = block->CreateDataRecord();
  // Counts beyond 32 bits are cut: records are shared with programs that know no wider ones.
  // Test: ARowCountBeyond32BitsIsNotRestored.
  record->SetInteger(kNumRows, static_cast<int>(matrix.GetNumRows()));
  record->SetInteger(kNumColumns, static_cast<int>(matrix.GetNumColumns()));
  record->SetDoubleList(kValues, matrix.GetValues());
  record->SetIntList(kRowPointers, matrix.GetRowPointers());
  record->SetIntList(kColumnIndices, matrix.GetColumnIndices());
  block->SetRecord(index, *record);
  block->DeleteDataRecord(record);
}

bool FED_YaleMatrixStorage::Restore(const FED_Database& db, const FED_DataDescriptor& descriptor, std::size_t index,
                                    FED_YaleMatrix& matrix)
{
  if (!db.HasDataBlock(descriptor)) return false;

  const FED_DataBlock&       block  = db.GetConstDataBlock(descriptor);
  FED_ConstDataRecord* const record = block.CreateConstDataRecord();
  block.GetRecord(index, *record);
  const auto numRows    = static_cast<std::size_t>(record->GetInteger(kNumRows));
  const auto numColumns = static_cast<std::size_t>(record->GetInteger(kNumColumns));

  FED_DoubleArray values;
  FED_IntArray    rowPointers;
  FED_IntArray    columnIndices;
  record->GetDoubleList(kValues, values);
  record->GetIntList(kRowPointers, rowPointers);
  record->GetIntList(kColumnIndices, columnIndices);
  block.DeleteDataRecord(record);

  matrix.SetInternalData(numRows, numColumns, std::move(values), std::move(rowPointers), std::move(columnIndices));
  return true;
}
