#include "diff/BlendedBlock.h"

#include <cstddef>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>

#include "progress/Interrupt.h"

namespace quilon::diff {

BlendedBlock::BlendedBlock(const FED_DataBlock& first, const FED_DataBlock& second, double weight) : block_(&first)
{
  const auto&            firstColumns  = dynamic_cast<const FED_ColumnDataBlock&>(first);
  const auto&            secondColumns = dynamic_cast<const FED_ColumnDataBlock&>(second);
  const FED_RecordFormat format        = firstColumns.GetRecordFormat();
  const std::size_t      width         = format.GetDoubleCount();
  if (width == 0 || !(format == secondColumns.GetRecordFormat())) return;
  FED_DataBlock& blended =
      *database_.CreateDataBlock(first.GetDescriptor(), firstColumns.GetRecordCount(), 0, format.ToString());
  std::vector<double> a(width);
  std::vector<double> b(width);
  for (const std::size_t index : firstColumns.GetIndices()) {
    ThrowIfInterrupted();
    if (!second.HasRecord(index)) continue;
    first.GetValuesAt(index, a.data());
    second.GetValuesAt(index, b.data());
    for (std::size_t i = 0; i < width; ++i) a[i] = (1.0 - weight) * a[i] + weight * b[i];
    blended.SetValuesAt(index, a.data());
  }
  block_ = &blended;
}

}  // namespace quilon::diff
