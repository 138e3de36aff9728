#include <memory>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

#include "commands/MatrixCommands.h"
#include "commands/NumberOptions.h"
#include "commands/WaitOption.h"
#include "matrix/MatrixImport.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

struct Options
{
  matrix::MatrixImportOptions import;
  std::string                 output;
  std::string                 dofs;
  WaitOptions                 wait;
  bool                        json = false;
};

Json ToJson(const Options& options, const matrix::MatrixImportReport& report, const char* place)
{
  Json list = Json::array();
  for (const matrix::StoredMatrix& one : report.matrices)
    list.push_back({{"file", one.file},
                    {"block", ToSelectionText(one.descriptor)},
                    {place, one.index},
                    {"rows", one.numRows},
                    {"columns", one.numColumns},
                    {"values", one.numValues}});
  return Json{{"output", options.output}, {"blocks", report.blocks}, {"matrices", std::move(list)}};
}

void PrintText(Output& output, const Options& options, const matrix::MatrixImportReport& report, const char* place)
{
  output.Write(options.output + ": " + Counted(report.blocks, "block") + " written\n");
  for (const matrix::StoredMatrix& one : report.matrices)
    output.Write("  " + ToSelectionText(one.descriptor) + ", " + place + ' ' + std::to_string(one.index) + ": " +
                 std::to_string(one.numRows) + " x " + std::to_string(one.numColumns) + ", " +
                 Counted(one.numValues, "value") + " of " + one.file + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  matrix::MatrixImportOptions import = options.import;
  import.output                      = options.output;
  import.dofs                        = options.dofs;
  import.patience                    = PatienceOf(options.wait, context.console);

  const matrix::MatrixImportReport report = ImportMatrices(import, context.console);
  const char* const                place  = import.element ? "element" : "index";
  if (options.json)
    PrintJson(context.output, ToJson(options, report, place));
  else
    PrintText(context.output, options, report, place);
}

}  // namespace

CommandFunction DefineMatrixImport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("FILE", options->import.files, "Matrices: .sti and .mas of the solver, Matrix Market, Yale text")
      ->required();
  app.add_option("-o,--output", options->output,
                 "Database to write, .fed or ONF folder; other matrices and blocks of it stay")
      ->required()
      ->type_name("OUT");
  app.add_option("--as", options->import.target,
                 "What it is: stiffness, mass, an ONF id or a name of your own, and its keys (default: by extension)")
      ->type_name("KIND@KEY=VALUE,...");
  AddIntegerOption(app, "--index", options->import.index, "Matrix index in its block (default: 1)");
  app.add_option("--dof", options->dofs, "The .dof file that names the rows (default: the one beside a .sti or .mas)")
      ->type_name("FILE");
  AddIntegerOption(app, "--element", options->import.element, "Keep it in full as the matrix of this element");
  AddIntegerOption(app, "--pair", options->import.pair, "Which matrix of the element: 1 (.sti), 2 (.mas) or 3");
  app.add_flag("--swapped", options->import.isSwapped,
               "Matrix in the first half of the pair, description in the second");
  AddWriterOptions(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "The degrees of freedom of a .dof file are kept beside the matrix, in a block 'matrix-dofs' with the same keys.\n"
      "\n"
      "Examples:\n"
      "  quilon matrix import job.sti job.mas -o job.onf\n"
      "  quilon matrix import damping.mtx --as damping@lc=2 -o job.onf\n"
      "  quilon matrix import part.sti --element 12 -o job.onf");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
