#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <bundled/NativePath.h>
#include <bundled/OnfKinds.h>
#include <CLI/CLI.hpp>

#include "answers/Overview.h"
#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "database/DatabaseFolder.h"
#include "database/FolderSize.h"
#include "database/Provenance.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  bool        json = false;
};

using Imports = std::vector<IterationProvenance>;

/// More lines are no glance.
constexpr std::size_t kMostLines   = 25;
constexpr std::size_t kMostSteps   = 6;
constexpr std::size_t kMostNames   = 10;
constexpr std::size_t kMostImports = 3;

std::uint64_t SizeOf(const std::filesystem::path& path)
{
  const FED_FileStatus status = StatusOf(path);
  return status.kind == FED_FileStatus::File ? status.size : FolderSize(path);
}

std::string FormOf(const std::filesystem::path& path)
{
  if (IsWorkingDatabase(path)) return "working database";
  return IsOnfFolder(path) ? "ONF folder" : "result file";
}

Json JsonPoint(const Mesh::Point& point) { return Json::array({point[0], point[1], point[2]}); }

Json JsonImport(int iteration, const ImportProvenance& import)
{
  Json json;
  json["iteration"] = iteration;
  json["settings"]  = Json::object();
  for (const ImportSetting& setting : import.settings) json["settings"][setting.name] = setting.value;
  json["files"] = Json::array();
  for (const ImportedFile& file : import.files)
    json["files"].push_back({{"role", file.role},
                             {"name", file.name},
                             {"size", file.size},
                             {"checksum", file.checksum},
                             {"changed", file.changed}});
  return json;
}

Json MakeJson(const Overview& overview, const Options& options, std::uint64_t bytes, const Imports& imports)
{
  Json json;
  json["name"]       = options.database;
  json["form"]       = FormOf(options.database);
  json["size"]       = bytes;
  json["iteration"]  = overview.iteration;
  json["iterations"] = overview.iterations;
  json["nodes"]      = overview.nodes;
  json["elements"]   = Json::object();
  for (const auto& [type, count] : overview.elements) json["elements"][type] = count;
  json["bounding-box"] =
      overview.box ? Json::array({JsonPoint(overview.box->least), JsonPoint(overview.box->greatest)}) : Json();
  json["materials"]     = Json(overview.materials);
  json["sets"]          = Json(overview.sets);
  Json            steps = Json::array();
  const KindTable kinds;
  for (const OverviewStep& step : overview.steps) {
    Json one = {{"step", StepText(step.step)}, {"time", step.time ? JsonNumber(*step.time) : Json()}};
    if (step.quantity != 0) one["quantity"] = kinds.GetName(step.quantity);
    steps.push_back(std::move(one));
  }
  json["steps"]  = std::move(steps);
  Json kindsJson = Json::array();
  for (const KindSummary& kind : overview.kinds) {
    kindsJson.push_back({{"kind", kind.kind},
                         {"onf", kind.onf},
                         {"blocks", kind.blocks},
                         {"records", kind.records},
                         {"least", kind.hasValues ? JsonNumber(kind.least) : Json()},
                         {"greatest", kind.hasValues ? JsonNumber(kind.greatest) : Json()},
                         {"nan", kind.nans}});
  }
  json["kinds"]      = std::move(kindsJson);
  json["groups"]     = Json(overview.groups);
  json["deviations"] = Json::array();
  for (const SolverDeviation& deviation : overview.deviations)
    json["deviations"].push_back(
        {{"kind", deviation.kind}, {"step", StepText(deviation.step)}, {"deviation", JsonNumber(deviation.deviation)}});
  json["imports"] = Json::array();
  for (const IterationProvenance& iteration : imports)
    for (const ImportProvenance& import : iteration.imports)
      json["imports"].push_back(JsonImport(iteration.iteration, import));
  return json;
}

std::string PointText(const Mesh::Point& point)
{
  return '(' + FormatRounded(point[0]) + ", " + FormatRounded(point[1]) + ", " + FormatRounded(point[2]) + ')';
}

/// The steps of one analysis and load case in a line.
std::vector<std::string> StepLines(const Overview& overview)
{
  struct Run
  {
    std::string         keys;
    const OverviewStep* first = nullptr;
    const OverviewStep* last  = nullptr;
    std::size_t         count = 0;
  };
  std::vector<Run> runs;
  for (const OverviewStep& step : overview.steps) {
    FED_DataDescriptor key;
    for (const auto index : {FED_DataDescriptor::Iteration, FED_DataDescriptor::Analysis, FED_DataDescriptor::LoadCase})
      if (step.step.IsSet(index)) key.SetInteger(index, step.step.GetInteger(index));
    const std::string keys = StepText(key);
    if (runs.empty() || runs.back().keys != keys) runs.push_back({keys, &step, &step, 0});
    runs.back().last = &step;
    ++runs.back().count;
  }
  const KindTable          kinds;
  std::vector<std::string> lines;
  for (const Run& run : runs) {
    if (lines.size() + 1 == kMostSteps && runs.size() > kMostSteps) {
      lines.push_back("and " + Counted(runs.size() - lines.size(), "load case") + " more");
      break;
    }
    std::string line =
        run.keys + "  " +
        Counted(run.count, run.first->step.GetInteger(FED_DataDescriptor::Analysis) == 2 ? "mode" : "step");
    if (run.first->time && run.last->time)
      line += ", " + kinds.GetName(run.first->quantity) + ' ' + FormatRounded(*run.first->time) +
              (run.count > 1 ? " to " + FormatRounded(*run.last->time) : "");
    lines.push_back(std::move(line));
  }
  return lines;
}

/// Fields of the mesh first, which are what is looked for; histories may be many.
std::vector<std::string> KindLines(const Overview& overview, std::size_t most)
{
  std::vector<KindSummary> kinds = overview.kinds;
  std::stable_partition(kinds.begin(), kinds.end(),
                        [](const KindSummary& kind) { return OnfKind::IsOfMesh(kind.onf); });
  const std::size_t left = most > 0 && kinds.size() > most ? kinds.size() - (most - 1) : 0;
  kinds.resize(kinds.size() - left);

  std::size_t width = 0;
  for (const KindSummary& kind : kinds) width = std::max(width, Printable(kind.kind).size());
  std::vector<std::string> lines;
  for (const KindSummary& kind : kinds) {
    std::string line = Printable(kind.kind);
    line.resize(width, ' ');
    line += "  " + Counted(kind.blocks, "block");
    if (kind.hasValues) line += ", " + FormatRounded(kind.least) + " to " + FormatRounded(kind.greatest);
    if (kind.nans != 0) line += ", " + std::to_string(kind.nans) + " nan";
    lines.push_back(std::move(line));
  }
  if (left > 0) lines.push_back("and " + Counted(left, "kind") + " more, see quilon ls --summary");
  return lines;
}

/// The files of each import in a line, with the program that read them.
std::vector<std::string> ImportLines(const Imports& imports)
{
  std::vector<std::string> lines;
  for (const IterationProvenance& iteration : imports)
    for (const ImportProvenance& import : iteration.imports) {
      const std::string* const program = import.FindSetting(ImportSettingName::Program);
      lines.push_back("it=" + std::to_string(iteration.iteration) + ": " + Printable(import.ListFiles()) +
                      (program == nullptr ? "" : " by " + Printable(*program)));
    }
  if (lines.size() > kMostImports) {
    const std::size_t left = lines.size() - (kMostImports - 1);
    lines.resize(kMostImports - 1);
    lines.push_back("and " + Counted(left, "import") + " more, see quilon ls --verbose");
  }
  return lines;
}

void Print(Output& output, const Overview& overview, const Options& options, std::uint64_t bytes,
           const Imports& imports)
{
  std::vector<std::string> lines;
  const auto               add = [&lines](std::string label, const std::string& text) {
    constexpr std::size_t kLabelWidth = 11;
    label.resize(kLabelWidth, ' ');
    lines.push_back(label + text);
  };
  const auto addList = [&](const char* label, const std::vector<std::string>& list) {
    for (std::size_t i = 0; i < list.size(); ++i) add(i == 0 ? label : "", list[i]);
  };
  std::size_t numElements = 0;
  std::string types;
  for (const auto& [type, count] : overview.elements) {
    numElements += count;
    types += (types.empty() ? ": " : ", ") + std::to_string(count) + ' ' + type;
  }
  lines.push_back(options.database + ": " + FormOf(options.database) + ", " + FormatBytes(bytes) + " on disk" +
                  (overview.iterations > 1 ? ", " + Counted(overview.iterations, "iteration") + ", mesh of iteration " +
                                                 std::to_string(overview.iteration)
                                           : ""));
  addList("made of", ImportLines(imports));
  add("nodes", std::to_string(overview.nodes));
  add("elements", std::to_string(numElements) + types);
  if (overview.box) add("box", PointText(overview.box->least) + " to " + PointText(overview.box->greatest));
  if (!overview.materials.empty()) add("materials", Enumerated(overview.materials, kMostNames));
  if (!overview.sets.empty())
    add("sets", std::to_string(overview.sets.size()) + ": " + Enumerated(overview.sets, kMostNames));
  addList("steps", StepLines(overview));
  std::vector<std::string> tail;
  if (!overview.groups.empty()) tail.push_back("of groups " + Enumerated(overview.groups, kMostNames));
  for (const SolverDeviation& deviation : overview.deviations)
    tail.push_back(deviation.kind + " within " + FormatRounded(deviation.deviation) +
                   " of the solver's, of the largest magnitude, in " + StepText(deviation.step));
  addList("kinds", KindLines(overview, kMostLines - lines.size() - tail.size()));
  addList("averages", tail);
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  output.Write(text);
}

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase      database(options.database, context.console);
  const StepTimes     times(database.Get());
  const Overview      overview = MakeOverview(database.Get(), options.database, times);
  const std::uint64_t bytes    = SizeOf(options.database);
  const Imports       imports  = ReadProvenance(database.Get());
  context.console.ClearProgress();
  if (options.json)
    PrintJson(context.output, MakeJson(overview, options, bytes, imports));
  else
    Print(context.output, overview, options, bytes, imports);
}

}  // namespace

CommandFunction DefineInfo(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Prints at most 25 lines: what was imported, mesh, materials, sets, steps with their times, kinds with their "
      "range, averages and how far they are from the solver's own.\n"
      "\n"
      "Examples:\n"
      "  quilon info bracket.onf\n"
      "  quilon info job.frd --json");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
