#include <cstddef>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/MatrixCommands.h"
#include "commands/MatrixSelection.h"
#include "import/OpenedDatabase.h"
#include "matrix/MatrixBlocks.h"
#include "matrix/MatrixEntries.h"
#include "matrix/MatrixFile.h"
#include "matrix/MatrixMarket.h"
#include "matrix/YaleText.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

struct Options
{
  std::string     database;
  MatrixSelection selection;
  std::string     output;
  std::string     format;
  bool            general = false;
  bool            json    = false;
};

bool IsMatrixMarket(const Options& options)
{
  if (options.format == "mtx") return true;
  if (options.format == "yale") return false;
  if (!options.format.empty()) Fail("--to is '" + options.format + "', expected mtx or yale");
  const std::string extension = std::filesystem::path(options.output).extension().string();
  return extension == ".mtx" || extension == ".mm";
}

void RequireOne(const std::vector<SelectedMatrix>& selected, const Options& options)
{
  if (selected.size() == 1) return;
  const auto choice = [](const SelectedMatrix& one) {
    return ToSelectionText(one.descriptor) + " --" + one.Place() + ' ' + std::to_string(one.number);
  };
  const std::string within = options.selection.ToString();
  Fail(options.database + ": " + std::to_string(selected.size()) + " matrices" +
       (within.empty() ? "" : " in '" + within + "'") + ", expected one: " + choice(selected[0]) + ", " +
       choice(selected[1]) + (selected.size() > 2 ? ", ..." : ""));
}

matrix::Symmetry SymmetryToWrite(const Options& options, const matrix::RowView& rows)
{
  if (options.general) return matrix::Symmetry::General;
  return matrix::FindSymmetry(rows.List(), rows.NumRows() == rows.NumColumns());
}

void Run(const Options& options, CommandContext& context)
{
  const bool isMatrixMarket = IsMatrixMarket(options);
  const bool isPrinted      = options.output == kStandardOutput;
  if (isPrinted && options.json) Fail("-o - prints the matrix, expected a file with --json");
  if (!isPrinted) CheckOutputFile(options.output);
  OpenedDatabase                    database(options.database, context.console, OpenedDatabase::DeriveNothing);
  const std::vector<SelectedMatrix> selected = options.selection.Select(database, options.database);
  RequireOne(selected, options);

  const std::string     name   = selected[0].Name(options.database);
  const FED_YaleMatrix  matrix = LoadMatrix(database.Get(), selected[0], name);
  const matrix::RowView rows(matrix, name);
  const auto            write = [&](std::ostream& out) {
    if (isMatrixMarket)
      matrix::WriteMatrixMarket(out, matrix, SymmetryToWrite(options, rows), name);
    else
      matrix::WriteYaleText(out, matrix);
  };
  if (isPrinted) return write(OutputStream(context.output).Get());
  matrix::ReplaceFile(options.output, write);

  if (options.json) {
    const Json report{{"output", options.output},
                      {"block", ToSelectionText(selected[0].descriptor)},
                      {selected[0].Place(), selected[0].number},
                      {"rows", rows.NumRows()},
                      {"columns", rows.NumColumns()},
                      {"values", rows.NumValues()}};
    return PrintJson(context.output, report);
  }
  context.output.Write(options.output + ": " + std::to_string(rows.NumRows()) + " x " +
                       std::to_string(rows.NumColumns()) + ", " +
                       Counted(static_cast<std::size_t>(rows.NumValues()), "value") + " written\n");
}

}  // namespace

CommandFunction DefineMatrixExport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed) or ONF folder")->required();
  AddMatrixSelection(app, options->selection);
  app.add_option("-o,--output", options->output,
                 "File to write; .mtx is Matrix Market, anything else Yale text; - prints it")
      ->required()
      ->type_name("FILE");
  app.add_option("--to", options->format, "Format whatever the name")->type_name("mtx|yale");
  app.add_flag("--general", options->general, "Matrix Market: write both triangles of a symmetric matrix");
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Numbers have the shortest form that reads back to the same bits. A matrix whose triangles are equal bit for "
      "bit\n"
      "goes to Matrix Market as symmetric, with its lower triangle.\n"
      "\n"
      "Examples:\n"
      "  quilon matrix export job.onf stiffness-matrix -o stiffness.mtx\n"
      "  quilon matrix export job.onf damping@lc=2 --index 3 -o damping.txt\n"
      "  quilon matrix export job.onf 590 --element 12 -o element.mtx");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
