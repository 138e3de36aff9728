#include <cstddef>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/MatrixCommands.h"
#include "commands/MatrixSelection.h"
#include "Failure.h"
#include "matrix/MatrixBlocks.h"
#include "matrix/MatrixEntries.h"
#include "matrix/MatrixFile.h"
#include "matrix/MatrixMarket.h"
#include "matrix/YaleText.h"
#include "OpenedDatabase.h"
#include "selection/Selection.h"
#include "terminal/Format.h"
#include "terminal/JsonText.h"
#include "terminal/Output.h"

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

void Run(const Options& options, CommandContext& context)
{
  const bool                        isMatrixMarket = IsMatrixMarket(options);
  OpenedDatabase                    database(options.database, context.console, OpenedDatabase::DeriveNothing);
  const std::vector<SelectedMatrix> selected = options.selection.Select(database, options.database);
  if (selected.size() != 1)
    Fail(options.database + ": " + std::to_string(selected.size()) + " matrices in '" + options.selection.ToString() +
         "', expected one: " + ToSelectionText(selected[0].descriptor) + " --index " +
         std::to_string(selected[0].index) + ", " + ToSelectionText(selected[1].descriptor) + " --index " +
         std::to_string(selected[1].index) + (selected.size() > 2 ? ", ..." : ""));

  const std::string     name   = matrix::MatrixName(options.database, selected[0].descriptor, selected[0].index);
  const FED_YaleMatrix  matrix = LoadMatrix(database.Get(), selected[0]);
  const matrix::RowView rows(matrix, name);
  const bool            isSquare = rows.NumRows() == rows.NumColumns();
  const auto symmetry = options.general ? matrix::Symmetry::General : matrix::FindSymmetry(rows.List(), isSquare);
  matrix::ReplaceFile(options.output, [&](std::ostream& out) {
    if (isMatrixMarket)
      matrix::WriteMatrixMarket(out, matrix, symmetry, name);
    else
      matrix::WriteYaleText(out, matrix);
  });

  if (options.json) {
    const Json report{{"output", options.output},     {"block", ToSelectionText(selected[0].descriptor)},
                      {"index", selected[0].index},   {"rows", rows.NumRows()},
                      {"columns", rows.NumColumns()}, {"values", rows.NumValues()}};
    return context.output.Write(JsonText(report, 2) + '\n');
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
  app.add_option("-o,--output", options->output, "File to write; .mtx is Matrix Market, anything else Yale text")
      ->required()
      ->type_name("FILE");
  app.add_option("--to", options->format, "Format whatever the name: mtx or yale")->type_name("FORMAT");
  app.add_flag("--general", options->general, "Matrix Market: write both triangles of a symmetric matrix");
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Numbers have the shortest form that reads back to the same bits. A matrix whose triangles are equal bit for "
      "bit\n"
      "goes to Matrix Market as symmetric, with its lower triangle.\n"
      "\n"
      "Examples:\n"
      "  quilon matrix export job.onf stiffness-matrix -o stiffness.mtx\n"
      "  quilon matrix export job.onf damping@lc=2 --index 3 -o damping.txt");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
