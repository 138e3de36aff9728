#include "commands/TableOptions.h"

#include <CLI/CLI.hpp>

#include "text/Failure.h"

namespace quilon {

std::array<CLI::Option*, 3> AddTableOptions(CLI::App& app, TableForm& form)
{
  const std::array<CLI::Option*, 3> options = {
      app.add_flag("--json", form.json, "Print JSON"), app.add_flag("--csv", form.csv, "Print CSV with a header"),
      app.add_flag("--table", form.table, "Print an aligned table even where standard output is no terminal")};
  app.parse_complete_callback([&form] {
    if (int{form.json} + int{form.csv} + int{form.table} > 1)
      Fail("--json, --csv and --table exclude each other, expected one at most");
  });
  return options;
}

}  // namespace quilon
