#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/DeckArguments.h"
#include "commands/NumberOptions.h"
#include "commands/WaitOption.h"
#include "database/Publication.h"
#include "import/ResultImport.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/KindRequests.h"
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
  int                        iteration      = 0;
  bool                       strict         = false;
  double                     wait           = 0;
  bool                       keepWholeSteps = false;
  bool                       json           = false;
};

std::string FormatDeviation(double deviation)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.1e", deviation);
  return text;
}

void PrintJson(Output& output, const std::string& folder, std::size_t blocks, const ImportReport& report)
{
  Json json{{"output", folder}, {"blocks", blocks}};
  json["deviations"] = Json::array();
  for (const AverageDeviation& deviation : report.deviations)
    json["deviations"].push_back({{"element-type", deviation.elementType},
                                  {"quantity", deviation.quantity},
                                  {"nodes", deviation.nodes},
                                  {"largest", JsonNumber(deviation.largest)}});
  json["skipped"] = Json::array();
  for (const SkippedRows& skipped : report.skipped)
    json["skipped"].push_back({{"reason", skipped.reason}, {"rows", skipped.rows}});
  json["notices"] = report.notices;
  PrintJson(output, json);
}

/// A report for people, whatever standard output is: programs have --json.
void PrintText(Output& output, const std::string& folder, std::size_t blocks, const ImportReport& report)
{
  const bool bold = output.HasColours();
  output.Write(folder + ": " + Counted(blocks, "block") + " written\n");
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

/// A folder of text results may have any name; a new one that looks like a file of another program is a slip.
void CheckOutputName(const std::string& output)
{
  namespace fs                    = std::filesystem;
  const fs::path        name      = fs::path(output).lexically_normal();
  const std::string     last      = (name.has_filename() ? name : name.parent_path()).filename().string();
  const std::string     extension = LowerExtension(name);
  constexpr const char* kExpected = "expected the name of a working database (.fed) or of an ONF folder (.onf)";
  if (last == "." || last == "..") Fail(output + ": " + kExpected);
  const bool isOurs = extension.empty() || extension == ".fed" || extension == ".onf";
  if (!isOurs && name.has_filename() && !fs::exists(name))
    Fail(output + ": " + kExpected + ", found the extension " + extension);
}

void Run(const Options& options, CommandContext& context)
{
  CheckOutputName(options.output);
  Publication  publication(options.output, Publication::AnyDatabase, PatienceOf(options.wait, context.console));
  KindRequests requests = KindRequests::Nothing();
  if (options.requests) requests = KindRequests(*options.requests, KindTable());

  ImportOptions importOptions;
  importOptions.iteration      = options.iteration;
  importOptions.strict         = options.strict;
  importOptions.keepWholeSteps = options.keepWholeSteps;
  importOptions.deck           = ToDeckOptions(options.deck, context.console);
  if (options.averageBy) importOptions.averageBy = ParseAverageBy(*options.averageBy);
  if (options.groups) importOptions.groups = *options.groups;
  importOptions.requests = options.requests ? &requests : nullptr;
  importOptions.progress = [&](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    context.console.Progress(phase, done, total);
  };
  FED_Database& database = publication.Target();
  ImportReport  report;
  try {
    report = ImportResults({options.files.begin(), options.files.end()}, database, importOptions);
  } catch (const FED_Failure&) {
    const bool hasSteps = !database.GetDataDescriptors(FED_DataDescriptorPattern()).empty();
    if (options.keepWholeSteps && hasSteps) {
      const std::size_t kept = publication.Publish();
      context.console.Note(options.output + ": kept " + Counted(kept, "block") + " of the steps that were whole");
    }
    throw;
  }
  if (database.GetDataDescriptors(FED_DataDescriptorPattern()).empty())
    Fail(options.files.front() + ": no results, nothing is written");
  const std::size_t blocks = publication.Publish();
  if (options.json) return PrintJson(context.output, options.output, blocks, report);
  for (const std::string& notice : report.notices) context.console.Note(notice);
  PrintText(context.output, options.output, blocks, report);
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
                 "Working database (.fed) or ONF folder to write; blocks of equal keys are replaced")
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
  app.add_flag("--keep-whole-steps", options->keepWholeSteps,
               "On bad input write the steps that were whole, and fail all the same");
  AddWaitOption(app, options->wait);
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
