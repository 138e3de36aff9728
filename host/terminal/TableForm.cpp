#include "terminal/TableForm.h"

#include <utility>

#include "terminal/Output.h"
#include "terminal/Terminal.h"

namespace quilon {

TableStyle StyleOf(const TableForm& form)
{
  if (form.csv) return TableStyle::Csv;
  return form.table || IsTerminal(StandardStream::Output) ? TableStyle::Aligned : TableStyle::Plain;
}

TableWriter MakeTable(Output& output, const TableForm& form, std::vector<TableColumn> columns)
{
  return TableWriter(output, StyleOf(form), output.HasColours(), std::move(columns));
}

}  // namespace quilon
