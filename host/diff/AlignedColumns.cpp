#include "diff/AlignedColumns.h"

#include <cmath>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_RecordFormat.h>

namespace quilon::diff {

namespace {

/// @return 1, 3 or 6 for blocks whose records are that many doubles in one field, 0 otherwise
std::size_t GetCommonWidth(const FED_RecordFormat& first, const FED_RecordFormat& second, bool sameCodes)
{
  if (first.GetTypes().size() != 1 || second.GetTypes().size() != 1) return 0;
  const int a = first.GetTypes().front();
  const int b = second.GetTypes().front();
  if (FED_FieldType::GetClass(a) != FED_FieldType::GetClass(b) || (sameCodes && a != b)) return 0;
  return FED_FieldType::GetDoubleCount(FED_FieldType::GetClass(a));
}

/// @return whether the records of the second block pair by ascending index, as those of the first always do
bool PairsAscend(const std::vector<PairRun>& runs)
{
  return std::is_sorted(runs.begin(), runs.end(),
                        [](const PairRun& a, const PairRun& b) { return a.second < b.second; });
}

}  // namespace

std::optional<AlignedColumns> AlignedColumns::Find(const FED_DataBlock& first, const FED_DataBlock& second,
                                                   const RecordPairs& pairs, bool sameCodes)
{
  const auto* const a = dynamic_cast<const FED_ColumnDataBlock*>(&first);
  const auto* const b = dynamic_cast<const FED_ColumnDataBlock*>(&second);
  if (a == nullptr || b == nullptr || !pairs.firstOnly.empty() || !pairs.secondOnly.empty()) return std::nullopt;
  const std::size_t width = GetCommonWidth(a->GetRecordFormat(), b->GetRecordFormat(), sameCodes);
  if (width == 0 || !PairsAscend(pairs.runs) || !FED_SpansAscend(first) || !FED_SpansAscend(second))
    return std::nullopt;
  return AlignedColumns(*a, *b, width);
}

double AlignedColumns::FindPeak(const FED_ColumnDataBlock& block) const
{
  const FED_FieldStatistics statistics = block.GetFieldStatistics(1);
  if (!statistics.hasRange) return 0.0;
  if (std::isfinite(statistics.least) && std::isfinite(statistics.greatest))
    return std::max(std::fabs(statistics.least), std::fabs(statistics.greatest));
  double peak = 0.0;
  for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk) {
    const auto values = block.GetDoubleChunk(1, chunk);
    for (std::size_t i = 0; i < values.GetSize(); ++i)
      if (std::isfinite(values.GetData()[i])) peak = std::max(peak, std::fabs(values.GetData()[i]));
  }
  return peak;
}

}  // namespace quilon::diff
