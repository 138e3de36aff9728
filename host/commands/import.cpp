#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/DeckArguments.h"
#include "commands/JobsOption.h"
#include "commands/NumberOptions.h"
#include "commands/WaitOption.h"
#include "database/DatabaseFolder.h"
#include "import/DatabaseImport.h"
#include "progress/Interrupt.h"
#include "quilon_version.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "terminal/Table.h"
#include "terminal/Terminal.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::vector<std::string>   files;
  std::string                output;
  std::optional<std::string> requests;
  std::optional<std::string> averageBy;
  std::optional<std::string> groups;
  DeckArguments              deck;
  int                        iteration = 0;
  bool                       strict    = false;
  WaitOptions                wait;
  double                     maxDeviation   = kMaxDeviation;
  bool                       keepWholeSteps = false;
  bool                       replace        = false;
  bool                       keepOthers     = false;
  bool                       json           = false;
  JobsOption                 jobs;
};

std::string FormatDeviation(double deviation)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.1e", deviation);
  return text;
}

void PrintJson(Output& output, const std::string& folder, const DatabaseImportReport& import)
{
  const ImportReport& report = import.results;
  Json                json{{"output", folder}, {"blocks", import.blocks}, {"unchanged", import.isUnchanged}};
  json["replaced"] = import.numReplaced;
  json["gone"]     = Json::array();
  for (const FED_DataDescriptor& block : import.gone) json["gone"].push_back(ToSelectionText(block));
  json["deviations"] = Json::array();
  for (const AverageDeviation& deviation : report.deviations)
    json["deviations"].push_back({{"element-type", deviation.elementType},
                                  {"quantity", deviation.quantity},
                                  {"nodes", deviation.nodes},
                                  {"largest", JsonNumber(deviation.largest)}});
  json["disagreements"] = Json::array();
  for (const ValueDisagreement& one : report.disagreements)
    json["disagreements"].push_back({{"quantity", one.quantity},
                                     {"nodes", one.nodes},
                                     {"largest", JsonNumber(one.largest)},
                                     {"step", one.step},
                                     {"first-nodes", one.firstNodes}});
  json["skipped"] = Json::array();
  for (const SkippedRows& skipped : report.skipped)
    json["skipped"].push_back({{"reason", skipped.reason}, {"rows", skipped.rows}});
  json["notices"] = report.notices;
  PrintJson(output, json);
}

/// @return "displacement (2), time (1)"; behind a dozen kinds dots stand for the rest
std::string ListKinds(const std::map<std::string, std::size_t>& counts)
{
  constexpr std::size_t kNamed = 12;
  std::string           text;
  std::size_t           named = 0;
  for (const auto& [kind, count] : counts) {
    if (named++ == kNamed) return text + ", ...";
    text += (text.empty() ? "" : ", ") + kind + " (" + std::to_string(count) + ')';
  }
  return text;
}

/// What became of results that the database had; empty where it had none.
std::string DescribeFormer(const Options& options, const DatabaseImportReport& import)
{
  if (import.numReplaced == 0 && import.gone.empty()) return "";
  std::string text = options.output + ": iteration " + std::to_string(options.iteration) + " held results" +
                     (import.formerFiles.empty() ? "" : " of " + import.formerFiles) + ", " +
                     Counted(import.numReplaced, "block") + " replaced";
  if (!import.gone.empty())
    text += ", " + Counted(import.gone.size(), "block") + " removed: " + ListKinds(import.goneByKind);
  return text;
}

/// A report for people, whatever standard output is: programs have --json.
void PrintText(Output& output, const Options& options, const DatabaseImportReport& import)
{
  const ImportReport& report = import.results;
  const bool          bold   = output.HasColours();
  if (import.isUnchanged) {
    output.Write(options.output + ": unchanged, nothing written: iteration " + std::to_string(options.iteration) +
                 " is of these files already\n");
    return;
  }
  output.Write(options.output + ": " + Counted(import.blocks, "block") + " written\n");
  if (!report.deviations.empty()) {
    output.Write("\nOur nodal averages beside the solver's own, as a fraction of the largest magnitude:\n");
    TableWriter table(output, TableStyle::Aligned, bold,
                      {{"element type", true}, {"quantity", true}, {"nodes", false}, {"largest deviation", false}});
    for (const AverageDeviation& deviation : report.deviations)
      table.Row({deviation.elementType, deviation.quantity, std::to_string(deviation.nodes),
                 FormatDeviation(deviation.largest)});
    table.Finish();
  }
  if (!report.skipped.empty()) {
    output.Write("\nSkipped:\n");
    TableWriter table(output, TableStyle::Aligned, bold, {{"rows", false}, {"reason", true}});
    for (const SkippedRows& skipped : report.skipped) table.Row({std::to_string(skipped.rows), skipped.reason});
    table.Finish();
  }
}

AverageBy ParseAverageBy(const std::string& text)
{
  if (text == "material") return {AverageBy::Material, {}};
  if (text == "section") return {AverageBy::Section, {}};
  AverageBy          by{AverageBy::Sets, {}};
  std::istringstream names(text);
  for (std::string name; std::getline(names, name, ',');) by.sets.emplace_back(Trimmed(name));
  if (by.sets.empty()) Fail("--average-by is empty, expected material, section or names of element sets");
  return by;
}

void Run(const Options& options, CommandContext& context)
{
  RequireDatabaseName(options.output);
  if (options.replace && options.keepOthers)
    Fail("--replace and --keep-others exclude each other, expected one at most");

  CommandCrew           crew(options.jobs, context);
  DatabaseImportOptions request;
  request.program = std::string("quilon ") + kQuilonVersion;
  request.request = options.requests;
  if (options.replace) request.former = FormerResults::Replaced;
  if (options.keepOthers) request.former = FormerResults::Kept;
  ImportOptions& importOptions = request.import;
  importOptions.crew           = &crew.Get();
  importOptions.iteration      = options.iteration;
  importOptions.strict         = options.strict;
  importOptions.keepWholeSteps = options.keepWholeSteps;
  importOptions.maxDeviation   = options.maxDeviation;
  importOptions.deck           = ToDeckOptions(options.deck, context.console);
  if (options.averageBy) importOptions.averageBy = ParseAverageBy(*options.averageBy);
  if (options.groups) importOptions.groups = *options.groups;
  importOptions.progress = [&](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    context.console.Progress(phase, done, total);
  };
  const DatabaseImportReport report =
      ImportIntoDatabase({options.files.begin(), options.files.end()}, options.output, request,
                         PatienceOf(options.wait, context.console), context.console);
  if (options.json) return PrintJson(context.output, options.output, report);
  for (const std::string& notice : report.results.notices) context.console.Note(notice);
  if (const std::string former = DescribeFormer(options, report); !former.empty()) context.console.Note(former);
  PrintText(context.output, options, report);
}

}  // namespace

CommandFunction DefineImport(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("FILE", options->files,
                 "The solver's deck .inp and its result files .frd and .dat; results of one job share a stem,\n"
                 "which alone stands for those that are there")
      ->required();
  app.add_option("-o,--output", options->output,
                 "Working database (.fed) or ONF folder to write; what it has of the iteration is replaced")
      ->required()
      ->type_name("OUT");
  AddIntegerOption(app, "--iteration", options->iteration, "Design iteration of the results (default: 0)");
  app.add_option("--request", options->requests,
                 "What to derive: kinds, the path of a request file, all or none (default: all)")
      ->type_name("KIND,...|FILE");
  app.add_option("--average-by", options->averageBy,
                 "One more nodal average for every material or section, or for each of the named element sets")
      ->type_name("material|section|SET,...");
  app.add_option("--groups", options->groups, "A groups file: its groups become sets of the deck")->type_name("GROUPS");
  AddIncludeArguments(app, options->deck);
  app.add_flag("--strict", options->strict, "Anything that has to be skipped is an error");
  AddMagnitudeOption(
      app, "--max-deviation", options->maxDeviation,
      "How far the files may be apart, as a fraction of the largest value: more is of two runs (default: "
      "1e-3)");
  app.add_flag("--keep-whole-steps", options->keepWholeSteps,
               "On bad input write the steps that were whole, and fail all the same");
  app.add_flag("--replace", options->replace,
               "Replace what OUT has of the iteration, even when it is of other nodes or elements");
  app.add_flag("--keep-others", options->keepOthers, "Leave blocks of the iteration that these files do not bring");
  AddWriterOptions(app, options->wait);
  AddJobsOption(app, options->jobs);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Everything is written at the end, in one step: bad input writes nothing. A .sta file beside a result file "
      "helps\n"
      "to match times.\n"
      "\n"
      "Examples:\n"
      "  quilon import bracket.inp bracket.frd bracket.dat -o bracket.fed\n"
      "  quilon import bracket.inp bracket.frd bracket.dat -o bracket.fed --average-by material\n"
      "  quilon import job.dat -o job.onf --iteration 3 --request stress-principal");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
