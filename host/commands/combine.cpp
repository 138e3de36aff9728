#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "answers/CombinationFile.h"
#include "answers/Combine.h"
#include "answers/Envelope.h"
#include "answers/Region.h"
#include "calculix/deck/ReadDeckModel.h"
#include "commands/AxesOption.h"
#include "commands/Command.h"
#include "commands/EnvelopePrinting.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "commands/WaitOption.h"
#include "database/ModelCopy.h"
#include "database/Publication.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  RegionOptions    region;
  std::string      cases;
  std::string      output;
  std::string      deck;
  bool             allowOutside   = false;
  bool             allowNonlinear = false;
  bool             envelope       = false;
  std::string      axes;
  WaitOptions      wait;
  TableForm        form;
};

CombineRequest MakeRequest(const Options& options, const KindTable& kinds, const FED_Database& database)
{
  CombineRequest request;
  request.database       = options.database;
  request.caseFile       = options.cases;
  request.combinations   = ReadCombinations(std::filesystem::path(options.cases));
  request.hasSelection   = !options.selection.text.empty();
  request.selection      = options.envelope ? options.selection.Parse(kinds) : options.selection.ParseBlocks(kinds);
  request.allowNonlinear = options.allowNonlinear;
  request.axes           = options.axes;
  if (options.deck.empty()) {
    request.linearity = ReadStepLinearity(database);
  } else {
    calculix::DeckOptions deckOptions;
    deckOptions.allowOutside = options.allowOutside;
    request.linearity        = StepLinearityOf(calculix::ReadDeckModel(options.deck, deckOptions));
  }
  return request;
}

/// @return "1.35*lc1/4 + -1.5*lc2/1": which substeps were taken
std::string FormulaOf(const Combination& combination, const std::map<CaseName, FED_DataDescriptor>& cases)
{
  std::string text;
  for (const Combination::Term& term : combination.terms) {
    const FED_DataDescriptor& step = cases.at(term.loadCase);
    text += (text.empty() ? "" : " + ") + FormatNumber(term.factor) + "*lc" +
            std::to_string(step.GetInteger(FED_DataDescriptor::LoadCase)) + '/' +
            std::to_string(step.GetInteger(FED_DataDescriptor::Substep));
  }
  return text;
}

void Report(const Options& options, Output& output, const CombineRequest& request, const CombinePlan& plan,
            std::size_t written)
{
  const auto& cases = plan.cases.begin()->second;
  if (options.form.json) {
    Json report{{"output", options.output}, {"blocks", written}, {"combinations", Json::array()}};
    for (const Combination& combination : request.combinations) {
      report["combinations"].push_back({{"name", combination.name},
                                        {"load-case", combination.loadCase},
                                        {"formula", FormulaOf(combination, cases)}});
    }
    return output.Write(JsonText(report, 2) + '\n');
  }
  output.Write(options.output + ": " + Counted(written, "block") + " written\n");
  for (const Combination& combination : request.combinations)
    output.Write("  " + Printable(combination.name) + ": load case " + std::to_string(combination.loadCase) + " = " +
                 FormulaOf(combination, cases) + '\n');
}

void TellPartial(const CombineReport& report, Console& console)
{
  if (report.numPartial > 0)
    console.Note(Counted(report.numPartial, "record") +
                 " left out: of ids that not all load cases of their combination have");
}

void Run(const Options& options, CommandContext& context)
{
  if (options.output.empty() && !options.envelope) Fail("-o is missing, expected where to write, or --envelope");
  if (!options.envelope && !options.axes.empty())
    Fail("--axes is of --envelope, expected none: combinations are written in the axes of their load cases");
  std::optional<Publication> publication;
  if (!options.output.empty())
    publication.emplace(options.output, Publication::AnyDatabase, PatienceOf(options.wait, context.console));
  OpenedDatabase  database(options.database, context.console);
  const KindTable kinds(database.Get());
  CombineRequest  request = MakeRequest(options, kinds, database.Get());
  const auto      blocks  = database.RequireBlocks(request.selection, options.selection.ToString());
  Region          region(database.Get(), options.region, options.database);
  region.RequireIds(blocks, options.selection.ToString());
  request.region         = &region;
  request.selectionText  = options.selection.text.empty() ? "the database" : options.selection.ToString();
  const CombinePlan plan = PlanCombinations(database.Get(), blocks, request);
  for (const std::string& note : plan.notes) context.console.Note(note);
  TellNotes(region, context.console);

  if (publication) CopyModel(database.Get(), plan.iterations, publication->Target());
  if (!options.envelope) {
    TellPartial(CombineInto(database.Get(), plan, request, publication->Target(), &context.console), context.console);
    return Report(options, context.output, request, plan, publication->Publish());
  }
  const bool           prints = !publication || options.form.json || options.form.csv || options.form.table;
  EnvelopePrinter      printer(context.output, options.form, kinds);
  CombineReport        report;
  const EnvelopeReport envelope = EnvelopeOfCombinations(
      database.Get(), plan, request, &context.console,
      [&](const EnvelopeSeries& series) {
        TellNotes(series, kinds, context.console);
        if (publication) WriteEnvelope(series, kinds, publication->Target());
        if (prints) printer.Print(series);
      },
      report);
  if (prints) printer.Finish();
  TellNotes(envelope, context.console);
  TellPartial(report, context.console);
  if (!publication) return;
  const std::size_t written = publication->Publish();
  if (prints)
    context.console.Note(options.output + ": " + Counted(written, "block") + " written");
  else
    Report(options, context.output, request, plan, written);
}

}  // namespace

CommandFunction DefineCombine(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_option("SELECTION", options->selection.text,
                 "Which kinds: KIND,...@KEY=VALUES,... (default: all that are linear in the loads)");
  AddRegionOptions(app, options->region);
  app.add_option("--cases", options->cases, "Combinations, one a line: NAME [LC] = 1.35*lc1 + 1.5*lc2/3")
      ->type_name("FILE")
      ->required();
  app.add_option("-o,--output", options->output, "Working database (.fed) or ONF folder to write")->type_name("OUT");
  app.add_flag("--envelope", options->envelope,
               "Least and greatest values over the combinations, which are not written themselves");
  AddAxesOption(app, options->axes);
  app.add_option("--deck", options->deck, "Deck of the job: it tells which steps are geometrically nonlinear")
      ->type_name("DECK");
  app.add_flag("--allow-outside", options->allowOutside, "Let the deck include files outside its folder");
  app.add_flag("--allow-nonlinear", options->allowNonlinear, "Add up results of nonlinear steps too");
  AddWriterOptions(app, options->wait);
  AddTableOptions(app, options->form);
  app.footer(
      "Tensors and vectors are added up, and principal values are those of the sums. Results have analysis 3, substep\n"
      "1 and the load case in brackets, else 10001, 10002, ... All is checked before anything is computed.\n"
      "\n"
      "Examples:\n"
      "  quilon combine bracket.fed --cases cases.txt -o combined.fed\n"
      "  quilon combine bracket.fed stress,displacement --cases cases.txt --deck bracket.inp -o combined.fed\n"
      "  quilon combine bracket.fed stress.mises --cases cases.txt --envelope --csv");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
