#include "terminal/TableForm.h"

#include <cstddef>
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
  const std::size_t width =
      IsTerminal(StandardStream::Output) ? static_cast<std::size_t>(GetTerminalWidth()) : TableWriter::kUsualWidth;
  return TableWriter(output, StyleOf(form), output.HasColours(), std::move(columns), width);
}

}  // namespace quilon
