#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/NumberOptions.h"
#include "commands/PageArguments.h"
#include "import/OpenedDatabase.h"
#include "quilon_version.h"
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
  PageArguments page;
  std::string   output;
  std::size_t   maxSteps = 0;
  int           bits     = 32;
  bool          noInside = false;
};

void Run(const Options& options, CommandContext& context)
{
  const std::string extension = LowerExtension(options.output);
  if (extension != ".html" && extension != ".htm") Fail(options.output + ": expected a name that ends in .html");
  if (options.bits != 16 && options.bits != 32)
    Fail("--bits is " + std::to_string(options.bits) + ", expected 16 or 32");
  CheckOutputFile(options.output);
  OpenedDatabase database(options.page.database, context.console);
  PageRequest    request  = MakePageRequest(options.page, database.Get());
  request.maxSteps        = options.maxSteps;
  request.bits            = options.bits == 16 ? BlobBits::Half : BlobBits::Full;
  request.leavesOutInside = options.noInside;
  const ReportResult result =
      WriteReport(request, options.output, std::string("quilon ") + kQuilonVersion, context.console);
  context.console.ClearProgress();
  NoteInside(result, options.output, context.console);
  context.output.Write(options.output + ": " + Counted(result.numSteps, "step") + ", " +
                       Counted(result.numPoints, "point") + ", " + Counted(result.numTriangles, "triangle") + ", " +
                       FormatBytes(result.bytes) + "\n");
}

}  // namespace

CommandFunction DefineReport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddPageArguments(app, options->page);
  app.add_option("-o,--output", options->output, "Page to write: .html")->required()->type_name("FILE");
  AddCountOption(app, "--max-steps", options->maxSteps,
                 "As many steps at most, evenly chosen, the first and the last among them (default: all)");
  AddIntegerOption(app, "--bits", options->bits, "Of a value: 32, or 16 for half the bytes (default: 32)")
      ->type_name("16|32");
  app.add_flag("--no-inside", options->noInside,
               "Leave out the inside of solids: a smaller page, whose cuts show no section");
  app.footer(
      "The page is one file that needs nothing else and asks for nothing: it opens by\n"
      "a double-click, without a network. It has at most 25 MB; the inside of solids,\n"
      "of which cuts show sections, is in it where there is room. The same input gives\n"
      "the same file.\n"
      "\n"
      "Examples:\n"
      "  quilon report bracket.fed -o bracket.html\n"
      "  quilon report bracket.fed displacement,stress -o b.html --max-steps 9 --bits 16");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
