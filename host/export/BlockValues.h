#pragma once

/// @file
/// The values that a block has for an array.

#include <cstddef>
#include <string>

#include <bundled/FED_BlockSpans.h>
#include <QuilonDbConnector/FED_Database.h>

#include "export/ExportPlan.h"
#include "progress/Interrupt.h"
#include "selection/Selection.h"
#include "text/Failure.h"

namespace quilon {

/// Calls visit(id, values) for each record of the block; values has shape [array.NumValues()].
/// @throws FED_Failure where records have another form than their kind
template <typename Visit>
void ForEachValue(const FED_Database& database, const ExportArray& array, const ExportArray::Source& source,
                  const Visit& visit)
{
  const std::size_t numStored = array.numStored;
  FED_ForEachSpan(database.GetConstDataBlock(source.block), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
    ThrowIfInterrupted();
    if (span.GetFormat().GetTypes().size() != 1 || span.GetFormat().GetDoubleCount() != numStored)
      Fail(ToSelectionText(source.block) + ": records are '" + span.GetFormat().ToString() + "', expected " +
           (numStored == 1   ? "'D'"
            : numStored == 3 ? "'V'"
                             : "'T'"));
    const double* stored = span.GetDoubles(1).GetData();
    const int*    ids    = span.GetIds().GetData();
    for (std::size_t i = 0; i < span.GetCount(); ++i, stored += numStored) {
      if (!array.component) {
        visit(ids[i], stored);
      } else {
        const double value = array.component->Evaluate({stored, numStored});
        visit(ids[i], &value);
      }
    }
  });
}

}  // namespace quilon
