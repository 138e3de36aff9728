#include "commands/TableOptions.h"

#include <utility>

#include <CLI/CLI.hpp>

#include "Failure.h"
#include "terminal/Terminal.h"

namespace quilon {

void AddTableOptions(CLI::App& app, TableOptions& options)
{
  app.add_flag("--json", options.json, "Print JSON");
  app.add_flag("--csv", options.csv, "Print CSV with a header");
  app.add_flag("--table", options.table, "Print an aligned table even where standard output is no terminal");
  app.parse_complete_callback([&options] {
    if (int{options.json} + int{options.csv} + int{options.table} > 1)
      Fail("--json, --csv and --table exclude each other, expected one at most");
  });
}

TableStyle StyleOf(const TableOptions& options)
{
  if (options.csv) return TableStyle::Csv;
  return options.table || IsTerminal(StandardStream::Output) ? TableStyle::Aligned : TableStyle::Plain;
}

TableWriter MakeTable(Output& output, const TableOptions& options, std::vector<TableColumn> columns)
{
  return TableWriter(output, StyleOf(options), MayColour(StandardStream::Output), std::move(columns));
}

}  // namespace quilon
