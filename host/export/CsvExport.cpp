#include "export/CsvExport.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include <bundled/FED_BlockSpans.h>
#include <QuilonDbConnector/FED_Database.h>

#include "export/BlockValues.h"
#include "export/ExportPlan.h"
#include "mesh/IdPositions.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "text/CsvText.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

const std::vector<ExportArray::Source>& SourcesOf(const ExportArray& array, std::size_t step)
{
  return array.sources[array.isStatic ? 0 : step];
}

std::vector<int> IdsOf(const FED_Database& database, const ExportPlan& plan, std::size_t step)
{
  std::vector<int> ids;
  for (const ExportArray& array : plan.arrays) {
    for (const ExportArray::Source& source : SourcesOf(array, step)) {
      FED_ForEachSpan(database.GetConstDataBlock(source.block), database.GetIdMapsPool(),
                      [&](const FED_BlockSpan& span) {
                        const auto own = span.GetIds();
                        ids.insert(ids.end(), own.GetData(), own.GetData() + own.GetSize());
                      });
      std::sort(ids.begin(), ids.end());
      ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    }
  }
  return ids;
}

/// The values of one array at one step.
struct Column
{
  std::size_t         numValues = 0;
  std::vector<double> values;   ///< shape [ids, numValues]
  std::vector<bool>   isThere;  ///< shape [ids]
};

Column ReadColumn(const FED_Database& database, const ExportArray& array, std::size_t step, const IdPositions& ids)
{
  Column column{array.NumValues(), {}, {}};
  column.values.resize(column.numValues * ids.GetIds().size());
  column.isThere.resize(ids.GetIds().size());
  for (const ExportArray::Source& source : SourcesOf(array, step)) {
    ForEachValue(database, array, source, [&](int id, const double* values) {
      const std::size_t position = *ids.Find(id);
      column.isThere[position]   = true;
      std::copy_n(values, column.numValues, &column.values[column.numValues * position]);
    });
  }
  return column;
}

/// @throws FED_Failure for arrays of nodes and of elements
void RequireOneEntity(const ExportPlan& plan)
{
  const auto ofElements = [](const ExportArray& array) { return array.ofElements; };
  const auto ofElement  = std::find_if(plan.arrays.begin(), plan.arrays.end(), ofElements);
  const auto ofNode     = std::find_if_not(plan.arrays.begin(), plan.arrays.end(), ofElements);
  if (ofElement != plan.arrays.end() && ofNode != plan.arrays.end())
    Fail("a table has values of nodes or of elements, found both: " + ofNode->name + " and " + ofElement->name);
}

std::string HeaderOf(const ExportPlan& plan, bool areSeveral)
{
  std::string line = areSeveral ? "step,time,id" : "id";
  for (const ExportArray& array : plan.arrays)
    for (const std::string& component : array.components)
      line += ',' + CsvCell(array.component ? array.name : array.name + '-' + component, true);
  return line + '\n';
}

/// @param before what begins each row
void WriteRows(const IdPositions& ids, const std::vector<Column>& columns, const std::string& before, std::ostream& out)
{
  std::string line;
  for (std::size_t row = 0; row < ids.GetIds().size(); ++row) {
    if (row % 4096 == 0) ThrowIfInterrupted();
    line = before + std::to_string(ids.GetIds()[row]);
    for (const Column& column : columns) {
      for (std::size_t c = 0; c < column.numValues; ++c) {
        line += ',';
        if (column.isThere[row]) line += FormatNumber(column.values[column.numValues * row + c]);
      }
    }
    line += '\n';
    out << line;
  }
}

}  // namespace

void WriteCsv(const FED_Database& database, const ExportPlan& plan, std::ostream& out, Listener& listener)
{
  RequireOneEntity(plan);
  const bool areSeveral = plan.steps.size() > 1;
  out << HeaderOf(plan, areSeveral);
  const std::size_t numSteps = std::max<std::size_t>(1, plan.steps.size());
  for (std::size_t step = 0; step < numSteps; ++step) {
    listener.Progress("export", step, numSteps, "steps");
    const IdPositions   ids(IdsOf(database, plan, step));
    std::vector<Column> columns;
    for (const ExportArray& array : plan.arrays) columns.push_back(ReadColumn(database, array, step, ids));
    std::string before;
    if (areSeveral)
      before = std::to_string(step + 1) + ',' + (plan.areTimesKnown ? FormatNumber(plan.times[step]) : "") + ',';
    WriteRows(ids, columns, before, out);
  }
}

}  // namespace quilon
