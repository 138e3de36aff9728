#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/NumberOptions.h"
#include "commands/SelectionOptions.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "quilon_version.h"
#include "QuilonDbConnector/FED_Database.h"
#include "report/Report.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  std::string      output;
  std::size_t      maxSteps = 0;
  BlobBits         bits     = BlobBits::Full;
};

void Run(const Options& options, CommandContext& context)
{
  const std::string extension = LowerExtension(options.output);
  if (extension != ".html" && extension != ".htm") Fail(options.output + ": expected a name that ends in .html");
  CheckOutputFile(options.output);
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  PageRequest     request;
  request.database = &database.Get();
  request.name     = options.database;
  request.blocks   = ChoosePageBlocks(options.selection.Choose(database.Get(), options.selection.ParseBlocks(kinds),
                                                               StepTimes(database.Get()), options.database),
                                      !options.selection.text.empty());
  request.maxSteps = options.maxSteps;
  request.bits     = options.bits;
  const ReportResult result =
      WriteReport(request, options.output, std::string("quilon ") + kQuilonVersion, context.console);
  context.console.ClearProgress();
  context.output.Write(options.output + ": " + Counted(result.numSteps, "step") + ", " +
                       Counted(result.numPoints, "point") + ", " + Counted(result.numTriangles, "triangle") + ", " +
                       FormatBytes(result.bytes) + "\n");
}

}  // namespace

CommandFunction DefineReport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_option("SELECTION", options->selection.text,
                 "What the page shows: KIND,...@KEY=VALUES,... (default: all that has values of nodes or elements)");
  app.add_option("-o,--output", options->output, "Page to write: .html")->required()->type_name("FILE");
  AddStepsOption(app, options->selection);
  AddTimeOption(app, options->selection);
  AddCountOption(app, "--max-steps", options->maxSteps,
                 "As many steps at most, evenly chosen, the first and the last among them (default: all)");
  app.add_option("--bits", options->bits, "Of a value: 32, or 16 for half the bytes (default: 32)")
      ->type_name("16|32")
      ->transform(
          CLI::CheckedTransformer(std::map<std::string, BlobBits>{{"32", BlobBits::Full}, {"16", BlobBits::Half}}));
  app.footer(
      "The page is one file that needs nothing else and asks for nothing: it opens by\n"
      "a double-click, without a network. It has at most 25 MB. The same input gives\n"
      "the same file.\n"
      "\n"
      "Examples:\n"
      "  quilon report bracket.fed -o bracket.html\n"
      "  quilon report bracket.fed displacement,stress -o b.html --max-steps 9 --bits 16");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
