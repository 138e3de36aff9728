#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "calculix/deck/DeckConverter.h"
#include "commands/DeckArguments.h"
#include "commands/DeckCommands.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  DeckArguments arguments;
  std::string   suffix;
  std::string   output;
  std::string   outFolder;
  std::string   units;
  int           firstNode      = 0;
  bool          renumbersNodes = false;
  bool          hasOutFolder   = false;
  bool          keepLineEnds   = false;
  bool          stripComments  = false;
};

void Run(const Options& options, CommandContext& context)
{
  // A script's empty variable; without the folder the copies would lie among the sources.
  if (options.hasOutFolder && options.outFolder.empty()) Fail("--out-dir is empty, expected a folder");
  if (options.output == "-") Fail("-o is '-', expected a file: a deck is written with its includes beside it");
  calculix::DeckConversion conversion;
  conversion.suffix       = options.suffix;
  conversion.output       = options.output;
  conversion.outFolder    = options.outFolder;
  conversion.keepLineEnds = options.keepLineEnds;
  if (!options.units.empty()) conversion.lengthExponent = calculix::ParseLengthUnits(options.units);
  if (options.renumbersNodes) conversion.firstNode = options.firstNode;
  conversion.stripComments = options.stripComments;

  const calculix::DeckConversionReport report =
      calculix::ConvertDeck(options.arguments.deck, ToDeckOptions(options.arguments, context.console), conversion);
  for (const std::filesystem::path& file : report.files) context.output.Write(Printable(file.string()) + '\n');
}

}  // namespace

CommandFunction DefineDeckConvert(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDeckArguments(app, options->arguments);
  app.add_option("-o,--output", options->output, "The copy of the deck, in the folder that the solver runs in")
      ->type_name("FILE")
      ->required();
  app.add_option("--suffix", options->suffix, "Names the copies of included files: mesh.inc becomes mesh_SUFFIX.inc")
      ->type_name("SUFFIX")
      ->required();
  CLI::Option* folder =
      app.add_option("--out-dir", options->outFolder, "Copy the files here first and work on the copies")
          ->type_name("FOLDER");
  app.add_flag("--keep-line-ends", options->keepLineEnds, "Line ends as they are (default: a line feed everywhere)");
  app.add_option("--units", options->units, "Convert lengths, as mm:m; forces, times and temperatures stay")
      ->type_name("FROM:TO");
  CLI::Option* first =
      app.add_option("--renumber-nodes", options->firstNode, "The number that the least node gets; the others follow")
          ->type_name("FIRST");
  app.add_flag("--strip-comments", options->stripComments, "Leave comments out");
  app.footer(
      "Writes a copy of the deck and, beside each included file, a copy of that; include statements name the copies.\n"
      "Lines stay as they are unless a conversion asks for a change, and then all but the changed numbers stays.\n"
      "\n"
      "With --units the unit of length changes and those of force and time stay, so that N, mm, t, s, MPa become\n"
      "N, m, kg, s, Pa. A keyword whose numbers are not known is an error that names it. Prints the files written.\n"
      "\n"
      "Examples:\n"
      "  quilon deck convert bracket.inp --suffix m -o bracket_m.inp --units mm:m\n"
      "  quilon deck convert bracket.inp --suffix b -o b.inp --out-dir part_b --renumber-nodes 100001");
  return [options, first, folder](CommandContext& context) {
    options->renumbersNodes = first->count() > 0;
    options->hasOutFolder   = folder->count() > 0;
    Run(*options, context);
  };
}

}  // namespace quilon
