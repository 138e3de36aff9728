#include "QuilonDataBlockDiff.h"

#include <cstdio>

#include "QuilonDataRecordDiff.h"
#include "scratch_record.h"

QuilonDataBlockDiff::CompareInfo::CompareInfo() = default;

std::string QuilonDataBlockDiff::CompareInfo::ToString() const
{
  // Room for two tolerances of 309 digits each.
  char buffer[800];
  // The semicolon after "Rel tol" has always stood there, and what reads these lines knows it. Limits print signed.
  // Test: ThePrintedSettingsAreOneLineWithASemicolonInIt.
  std::snprintf(buffer, sizeof buffer,
                "Abs tol: %f, Rel tol; %f, Use exact compare: %s, Max diffs per block: %zd, Max block diffs: %zd",
                absTol, relTol, useExactCompare ? "YES" : "NO", maxDiffsPerBlock, maxBlockDiffs);
  return buffer;
}

QuilonDataBlockDiff::DataBlockDiff::DataBlockDiff(const CompareInfo& info, const FED_DataBlock& first,
                                                  const FED_DataBlock& second)
    : info_(info), first_(first), second_(second)
{}

QuilonDataBlockDiff::DataBlockDiff::~DataBlockDiff() = default;

std::vector<std::size_t> QuilonDataBlockDiff::DataBlockDiff::CompareBlocks()
{
  std::vector<std::size_t>           differing;
  const ScratchRecord                firstRecord(first_);
  const ScratchRecord                secondRecord(second_);
  const FED_DataBlock::IndexIterator end = first_.End();
  for (FED_DataBlock::IndexIterator it = first_.Begin(); it != end; ++it) {
    const std::size_t index = *it;
    if (!second_.HasRecord(index)) {
      differing.push_back(index);
      continue;
    }
    first_.GetRecord(index, *firstRecord);
    second_.GetRecord(index, *secondRecord);
    if (!QuilonDataRecordDiff::EqualOrNearDataRecord(*firstRecord, *secondRecord, info_)) differing.push_back(index);
  }
  return differing;
}
