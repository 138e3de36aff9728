#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <CLI/CLI.hpp>

#include "calculix/deck/DeckModel.h"
#include "commands/Command.h"
#include "commands/ExitCode.h"
#include "commands/NumberOptions.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "database/ScratchRecord.h"
#include "forces/ElementForces.h"
#include "forces/ForceBalance.h"
#include "forces/ForceMesh.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "kinds/UserKinds.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

using calculix::DeckModel;

constexpr int kDisplacement  = 510;
constexpr int kReaction      = 511;
constexpr int kCoordinates   = 516;
constexpr int kPointStress   = 582;
constexpr int kElementNodes  = 595;
constexpr int kElementType   = 596;
constexpr int kElementSet    = 601;
constexpr int kResultsInTime = 1;  // value of result index 5

struct Options
{
  std::string      database;
  SelectionOptions selection;
  std::string      deck;
  bool             allowOutside = false;
  std::string      nlgeom;
  std::string      output;
  bool             balance   = false;
  double           tolerance = 1e-5;
  int              head      = 10;
  std::string      elements;
  std::string      set;
  std::string      about;
  Vector           point = {};  // of `about`, the origin without it
  TableForm        form;

  bool HasPart() const { return !elements.empty() || !set.empty(); }
};

/// What is told of one result.
struct StepReport
{
  ForceStep                   step;
  std::optional<ForceBalance> balance;
  std::optional<FreeBody>     body;
};

/// What is told in all.
struct Report
{
  std::vector<StepReport> steps;
  SkippedElements         skipped;
  bool                    isRounded = false;  // coordinates have six digits
};

Vector ParsePoint(const std::string& text)
{
  Vector      point{};
  const char* at  = text.data();
  const char* end = text.data() + text.size();
  for (std::size_t k = 0; k < 3; ++k) {
    const auto taken = std::from_chars(at, end, point[k]);
    const bool ends  = k == 2 ? taken.ptr == end : taken.ptr != end && *taken.ptr == ',';
    if (taken.ec != std::errc() || !ends || !std::isfinite(point[k]))
      Fail("--about is '" + text + "', expected three numbers X,Y,Z");
    at = taken.ptr + 1;
  }
  return point;
}

std::vector<NumberRange> ParseElements(const Options& options)
{
  std::vector<NumberRange> ranges = ParseNumberRanges(options.elements, "an element");
  for (const NumberRange& range : ranges) {
    if (range.form != NumberRange::All && range.form != NumberRange::Numbers)
      Fail("--elements is '" + options.elements + "', expected ids, ranges of them or all");
  }
  return ranges;
}

/// Everything that can be told before files are read.
void CheckUsage(Options& options)
{
  if (!options.elements.empty() && !options.set.empty())
    Fail("--elements and --set exclude each other, expected one at most");
  if (options.balance && options.HasPart())
    Fail("--balance is of the whole model, expected it without --elements and --set");
  if (!options.elements.empty()) ParseElements(options);
  if (options.about.empty()) return;
  if (!options.HasPart()) Fail("--about is of a free body, expected --elements or --set with it");
  options.point = ParsePoint(options.about);
}

/// Which results are of the deformed geometry.
class Nonlinearity
{
public:
  /// @param deck may be null
  Nonlinearity(const Options& options, const DeckModel* deck) : deckName_(options.deck), deck_(deck)
  {
    if (options.nlgeom.empty()) return;
    ranges_ = ParseNumberRanges(options.nlgeom, "a step of --nlgeom");
    for (const NumberRange& range : *ranges_) {
      if (range.form == NumberRange::First || range.form == NumberRange::Last)
        Fail("--nlgeom is '" + options.nlgeom + "', expected numbers of steps, all or none");
    }
  }

  bool IsKnown() const { return deck_ != nullptr || ranges_; }

  bool IsDeformed(const FED_DataDescriptor& result) const
  {
    // Modes, preloaded ones too, are of the undeformed geometry.
    if (result.GetInteger(FED_DataDescriptor::Analysis) != kResultsInTime) return false;
    const int number = result.GetInteger(FED_DataDescriptor::LoadCase);
    if (ranges_) {
      return std::any_of(ranges_->begin(), ranges_->end(), [number](const NumberRange& range) {
        return range.form == NumberRange::All || (range.form == NumberRange::Numbers && range.Holds(number));
      });
    }
    if (deck_ == nullptr) return false;
    if (number < 1 || static_cast<std::size_t>(number) > deck_->steps.size()) {
      Fail(deckName_ + ": " + Counted(deck_->steps.size(), "step") + ", expected a step " + std::to_string(number) +
           " as in the results, or --nlgeom");
    }
    const calculix::DeckStep& step = deck_->steps[static_cast<std::size_t>(number) - 1];
    return step.nlgeom && !step.perturbation;
  }

private:
  std::string                             deckName_;
  const DeckModel*                        deck_;
  std::optional<std::vector<NumberRange>> ranges_;
};

FED_DataDescriptor WithKind(FED_DataDescriptor descriptor, int onf)
{
  descriptor.SetInteger(FED_DataDescriptor::OnfId, onf);
  return descriptor;
}

int KindOf(const FED_DataDescriptor& descriptor) { return descriptor.GetInteger(FED_DataDescriptor::OnfId); }

bool HoldsLocalStresses(const FED_Database& database, const FED_DataDescriptor& descriptor)
{
  return database.GetUserKindName(static_cast<FED_OnfId>(KindOf(descriptor))) == kLocalStresses;
}

/// @return the selected blocks of stresses
std::vector<FED_DataDescriptor> ChooseResults(const Options& options, OpenedDatabase& database, const KindTable& kinds)
{
  std::vector<FED_DataDescriptor> results =
      database.RequireBlocks(options.selection.Parse(kinds), options.selection.ToString());
  const bool hasLocal = std::any_of(results.begin(), results.end(), [&](const FED_DataDescriptor& descriptor) {
    return HoldsLocalStresses(database.Get(), descriptor);
  });
  std::erase_if(results, [](const FED_DataDescriptor& descriptor) { return KindOf(descriptor) != kPointStress; });
  if (results.empty()) {
    const std::string selected = options.selection.ToString();
    Fail(options.database + ": no stresses of integration points (582)" +
         (selected.empty() ? "" : " in '" + selected + "'") +
         (hasLocal ? ", only some in local systems, expected a database that the deck was imported into with them"
                   : ", expected a .dat with S of the solver"));
  }
  return results;
}

/// @return what the forces of these results are made of
std::vector<FED_DataDescriptor> Ingredients(FED_Database& database, const std::vector<FED_DataDescriptor>& results)
{
  const std::set<FED_DataDescriptor> stresses(results.begin(), results.end());
  std::vector<FED_DataDescriptor>    ingredients;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    const int  kind   = KindOf(descriptor);
    const bool isMesh = kind == kCoordinates || kind == kElementNodes || kind == kElementType || kind == kElementSet;
    const bool isResult =
        kind == kPointStress || kind == kDisplacement || kind == kReaction || HoldsLocalStresses(database, descriptor);
    if (isMesh || (isResult && stresses.contains(WithKind(descriptor, kPointStress))))
      ingredients.push_back(descriptor);
  }
  return ingredients;
}

using Ids = std::set<int>;

/// Sets of a deck have names in upper case, those of a groups file have them as written.
/// @return the elements of a set of the iteration; nothing when the database has none of this name
std::optional<Ids> FindStoredSet(FED_Database& database, int iteration, const std::string& name)
{
  const FED_DataDescriptor sets(iteration, static_cast<FED_OnfId>(kElementSet));
  if (!database.HasDataBlock(sets)) return std::nullopt;
  const FED_DataBlock& block = database.GetConstDataBlock(sets);
  const ScratchRecord  record(block);
  for (auto index = block.Begin(); index != block.End(); ++index) {
    block.GetRecord(*index, *record);
    if (record->GetString(1) != name) continue;
    FED_IntArray ids;
    record->GetIntList(2, ids);
    return Ids(ids.GetData(), ids.GetData() + ids.GetSize());
  }
  return std::nullopt;
}

/// @return the elements of a set of the deck, or of the database where none is given
std::optional<Ids> FindSet(const DeckModel* deck, FED_Database& database, int iteration, const std::string& name)
{
  if (deck == nullptr) return FindStoredSet(database, iteration, name);
  const calculix::DeckSet* set = deck->FindElementSet(name);
  return set == nullptr ? std::nullopt : std::optional<Ids>(std::in_place, set->ids.begin(), set->ids.end());
}

Ids ChosenBySet(const Options& options, const DeckModel* deck, FED_Database& database, int iteration)
{
  const std::string& name = options.set;
  std::optional<Ids> ids  = FindSet(deck, database, iteration, name);
  if (!ids) ids = FindSet(deck, database, iteration, UpperCase(name));
  if (!ids && deck != nullptr) Fail(options.deck + ": no element set " + name);
  if (!ids) Fail(options.database + ": no element set " + name + ", expected one of the database or --deck");
  if (ids->empty()) Fail("--set is " + name + ", which has no elements");
  return *ids;
}

Ids ChosenById(const Options& options, const ForceMesh& mesh)
{
  Ids chosen;
  for (const NumberRange& range : ParseElements(options)) {
    // A single id is asked for by name, so that a missing one is told.
    const bool isSingle = range.form == NumberRange::Numbers && range.first == range.last;
    if (isSingle) chosen.insert(range.first);
    for (const auto& entry : mesh.elements.Entries())
      if (!isSingle && (range.form == NumberRange::All || range.Holds(entry.first))) chosen.insert(entry.first);
  }
  if (chosen.empty()) Fail("--elements is '" + options.elements + "', which names no element of the mesh");
  return chosen;
}

void Merge(const SkippedElements& from, SkippedElements& to)
{
  for (const auto& [reason, ids] : from) to[reason].insert(ids.begin(), ids.end());
}

/// Calculates and saves all results of one iteration.
/// @return whether node lists were added
bool CalculateIteration(const Options& options, const DeckModel* deck, const Nonlinearity& nonlinearity,
                        FED_ResultDatabase& database, const std::vector<FED_DataDescriptor>& results, Console& console,
                        Report& report)
{
  const std::string name      = deck != nullptr ? options.deck : options.database;
  const int         iteration = results.front().GetInteger(FED_DataDescriptor::Iteration);
  const ForceMesh mesh = deck != nullptr ? MakeForceMesh(*deck) : ReadForceMesh(database, iteration, options.database);
  ElementForces   forces(database, mesh, iteration, name);
  Ids             part;
  if (!options.set.empty()) part = ChosenBySet(options, deck, database, iteration);
  if (!options.elements.empty()) part = ChosenById(options, mesh);

  std::uint64_t done = 0;
  for (const FED_DataDescriptor& result : results) {
    console.Progress("calculating forces", done++, results.size(), "steps");
    StepReport told;
    told.step = forces.Calculate(result, nonlinearity.IsDeformed(result));
    if (options.balance) {
      told.balance = CalculateBalance(database, mesh, told.step, options.database);
      if (options.head > 0 && told.balance->nodes.size() > static_cast<std::size_t>(options.head))
        told.balance->nodes.resize(static_cast<std::size_t>(options.head));
    }
    if (options.HasPart())
      told.body = CalculateFreeBody(database, mesh, told.step, part, options.point, options.database);
    // Only numbers are told later: the geometry of many results need not be held.
    told.step.hasForces.clear();
    told.step.positions.clear();
    report.steps.push_back(std::move(told));
  }
  Merge(forces.Skipped(), report.skipped);
  report.isRounded = report.isRounded || mesh.isRounded;
  return forces.AddsNodeLists();
}

void Note(const Options& options, const Nonlinearity& nonlinearity, const Report& report, Console& console)
{
  for (const auto& [reason, ids] : report.skipped)
    console.Note("no forces of " + Counted(ids.size(), "element") + ", " + reason + ": " + FormatIds(ids));
  if (!nonlinearity.IsKnown())
    console.Note("all steps are taken as geometrically linear, --deck or --nlgeom tells which are not");
  if (!report.isRounded) return;
  double largest = 0.0;
  for (const StepReport& told : report.steps) {
    if (told.step.largestSum > 0.0) largest = std::max(largest, told.step.errorBound / told.step.largestSum);
  }
  console.Note(options.database +
               ": coordinates have six digits; if a .frd rounded them, forces at nodes are uncertain by up to " +
               FormatRounded(largest) + " of the largest one, and --deck gives all digits");
}

Json JsonVector(const Vector& vector)
{
  return Json::array({JsonNumber(vector[0]), JsonNumber(vector[1]), JsonNumber(vector[2])});
}

bool Holds(const ForceBalance& balance, double tolerance)
{
  return balance.largestResidual <= tolerance * balance.largestForce;
}

double RelativeResidual(const ForceBalance& balance)
{
  return balance.largestForce > 0.0 ? balance.largestResidual / balance.largestForce : balance.largestResidual;
}

Json JsonBalance(const ForceBalance& balance, double tolerance)
{
  Json nodes = Json::array();
  for (const NodeBalance& node : balance.nodes) {
    nodes.push_back({{"node", node.node},
                     {"elements", JsonVector(node.elements)},
                     {"external", JsonVector(node.external)},
                     {"residual", JsonVector(node.residual)}});
  }
  return {{"holds", Holds(balance, tolerance)},
          {"largest-residual", JsonNumber(balance.largestResidual)},
          {"largest-force", JsonNumber(balance.largestForce)},
          {"total", JsonVector(balance.total)},
          {"nodes-without-all-forces", balance.numIncomplete},
          {"nodes-without-reaction", balance.numUnknown},
          {"nodes", std::move(nodes)}};
}

Json JsonResultant(const Resultant& resultant)
{
  return {
      {"nodes", resultant.numNodes}, {"force", JsonVector(resultant.force)}, {"moment", JsonVector(resultant.moment)}};
}

void PrintJson(const Options& options, Output& output, const Report& report)
{
  Json steps = Json::array();
  for (const StepReport& told : report.steps) {
    Json step{{"block", ToSelectionText(told.step.forces)},
              {"deformed", told.step.deformed},
              {"elements", told.step.numElements},
              {"largest-force", JsonNumber(told.step.largestSum)},
              {"rounding-error", JsonNumber(told.step.errorBound)}};
    if (told.balance) step["balance"] = JsonBalance(*told.balance, options.tolerance);
    if (told.body) {
      step["free-body"] = {{"about", JsonVector(options.point)},
                           {"cut", JsonResultant(told.body->cut)},
                           {"other", JsonResultant(told.body->other)},
                           {"sum", JsonResultant(told.body->sum)}};
    }
    steps.push_back(std::move(step));
  }
  Json skipped = Json::array();
  for (const auto& [reason, ids] : report.skipped) skipped.push_back({{"reason", reason}, {"elements", ids}});
  Json json{{"rounded-coordinates", report.isRounded}, {"skipped", std::move(skipped)}, {"steps", std::move(steps)}};
  output.Write(JsonText(json, 2) + '\n');
}

/// The columns of a table of balances or of free bodies.
std::vector<TableColumn> ColumnsOf(const Options& options, bool forPeople)
{
  std::vector<TableColumn> columns;
  if (!forPeople) columns.push_back({"block", true});
  const std::vector<const char*> names =
      options.balance ? std::vector<const char*>{"node",       "fx",         "fy",         "fz",         "external-x",
                                                 "external-y", "external-z", "residual-x", "residual-y", "residual-z"}
                      : std::vector<const char*>{"at", "nodes", "fx", "fy", "fz", "mx", "my", "mz"};
  for (const char* name : names) columns.push_back({name, std::string(name) == "at"});
  return columns;
}

void WriteRows(TableWriter& table, const StepReport& told, bool forPeople)
{
  const auto append = [forPeople](std::vector<std::string>& cells, const Vector& vector) {
    for (const double value : vector) cells.push_back(forPeople ? FormatRounded(value) : FormatNumber(value));
  };
  std::vector<std::string> before;
  if (!forPeople) before.push_back(ToSelectionText(told.step.forces));
  if (told.balance) {
    for (const NodeBalance& node : told.balance->nodes) {
      std::vector<std::string> cells = before;
      cells.push_back(std::to_string(node.node));
      append(cells, node.elements);
      append(cells, node.external);
      append(cells, node.residual);
      table.Row(std::move(cells));
    }
  }
  if (told.body) {
    const std::pair<const char*, const Resultant*> rows[] = {
        {"cut", &told.body->cut}, {"other", &told.body->other}, {"sum", &told.body->sum}};
    for (const auto& [name, resultant] : rows) {
      std::vector<std::string> cells = before;
      cells.emplace_back(name);
      cells.push_back(std::to_string(resultant->numNodes));
      append(cells, resultant->force);
      append(cells, resultant->moment);
      table.Row(std::move(cells));
    }
  }
}

/// The line above the table of a result.
std::string HeadLine(const StepReport& told)
{
  std::string line = ToSelectionText(told.step.forces) + "  " + Counted(told.step.numElements, "element") +
                     (told.step.deformed ? ", deformed geometry" : "");
  if (told.balance) {
    const ForceBalance& balance = *told.balance;
    line += ", largest residual " + FormatRounded(balance.largestResidual) + ", " +
            FormatRounded(RelativeResidual(balance)) + " of the largest force";
    if (balance.numIncomplete > 0) line += "; " + Counted(balance.numIncomplete, "node") + " without all forces";
    if (balance.numUnknown > 0) line += "; " + Counted(balance.numUnknown, "node") + " without RF";
  }
  return line + '\n';
}

void PrintTables(const Options& options, Output& output, const Report& report)
{
  const bool forPeople = StyleOf(options.form) == TableStyle::Aligned;
  if (!forPeople) {
    TableWriter table = MakeTable(output, options.form, ColumnsOf(options, forPeople));
    for (const StepReport& told : report.steps) WriteRows(table, told, forPeople);
    return table.Finish();
  }
  const char* before = "";
  for (const StepReport& told : report.steps) {
    output.Write(before + HeadLine(told));
    TableWriter table = MakeTable(output, options.form, ColumnsOf(options, forPeople));
    WriteRows(table, told, forPeople);
    table.Finish();
    before = "\n";
  }
}

/// @return the blocks that an earlier run left for results in which no element has forces now
std::vector<FED_DataDescriptor> OutdatedBlocks(const FED_Database& database, const Report& report)
{
  std::vector<FED_DataDescriptor> blocks;
  for (const StepReport& told : report.steps)
    if (told.step.numElements == 0 && database.HasDataBlock(told.step.forces)) blocks.push_back(told.step.forces);
  return blocks;
}

/// Leaves only what a folder that has the rest does not have yet.
void KeepAdded(FED_ResultDatabase& database, const Report& report, bool withNodeLists)
{
  std::set<FED_DataDescriptor> added;
  for (const StepReport& told : report.steps) added.insert(told.step.forces);
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    const bool isNodeLists = withNodeLists && KindOf(descriptor) == kElementNodes;
    if (!isNodeLists && !added.contains(descriptor)) database.DeleteDataBlock(descriptor);
  }
}

void Run(Options& options, CommandContext& context)
{
  CheckUsage(options);
  const bool isAsked = options.balance || options.HasPart();
  const bool inPlace = options.output.empty() && !isAsked;
  if (inPlace && !IsOnfFolder(options.database) && !IsWorkingDatabase(options.database)) {
    Fail(options.database +
         ": not a database to add forces to, expected a working database, an ONF folder, -o OUT, --balance, --elements "
         "or --set");
  }
  std::optional<Publication> publication;
  if (inPlace || !options.output.empty()) publication.emplace(inPlace ? options.database : options.output);

  std::optional<DeckModel> deck;
  if (!options.deck.empty()) {
    calculix::DeckOptions deckOptions;
    deckOptions.allowOutside = options.allowOutside;
    deck                     = calculix::ReadDeckModel(options.deck, deckOptions);
  }
  const DeckModel*   deckOrNull = deck ? &*deck : nullptr;
  const Nonlinearity nonlinearity(options, deckOrNull);

  OpenedDatabase                        database(options.database, context.console, OpenedDatabase::DeriveNothing);
  const KindTable                       kinds(database.Get());
  const std::vector<FED_DataDescriptor> results  = ChooseResults(options, database, kinds);
  const bool                            keepsAll = !options.output.empty();
  const auto copy = database.Copy(keepsAll ? database.Get().GetDataDescriptors(FED_DataDescriptorPattern())
                                           : Ingredients(database.Get(), results));

  std::map<int, std::vector<FED_DataDescriptor>> byIteration;
  for (const FED_DataDescriptor& result : results)
    byIteration[result.GetInteger(FED_DataDescriptor::Iteration)].push_back(result);
  Report report;
  bool   addsNodeLists = false;
  for (const auto& entry : byIteration) {
    addsNodeLists =
        CalculateIteration(options, deckOrNull, nonlinearity, *copy, entry.second, context.console, report) ||
        addsNodeLists;
  }

  if (inPlace) KeepAdded(*copy, report, addsNodeLists);
  if (publication) publication->Publish(*copy, OutdatedBlocks(database.Get(), report));
  Note(options, nonlinearity, report, context.console);
  const auto numWithForces = std::count_if(report.steps.begin(), report.steps.end(),
                                           [](const StepReport& told) { return told.step.numElements > 0; });
  if (options.form.json) {
    PrintJson(options, context.output, report);
  } else if (isAsked) {
    PrintTables(options, context.output, report);
  } else {
    context.output.Write((inPlace ? options.database : options.output) + ": forces of " +
                         Counted(static_cast<std::size_t>(numWithForces), "result") + '\n');
  }
  const bool holds = std::all_of(report.steps.begin(), report.steps.end(), [&options](const StepReport& told) {
    return !told.balance || Holds(*told.balance, options.tolerance);
  });
  context.exitCode = holds ? ExitSuccess : ExitDifferent;
}

/// An option that is not empty: without its value a run that prints would become one that writes to DB.
CLI::Option* AddTextOption(CLI::App& app, const std::string& name, std::string& target, const std::string& description)
{
  return app.add_option(name, target, description)->check([](const std::string& text) {
    return text.empty() ? std::string("empty, expected a value") : std::string();
  });
}

}  // namespace

CommandFunction DefineForces(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed), ONF folder or solver result file (.dat)")
      ->required();
  app.add_option("SELECTION", options->selection.text, "Which results: @KEY=VALUES,... (default: all)");
  AddStepsOption(app, options->selection);
  app.add_option("--deck", options->deck, "Deck of the job: coordinates with all digits, element types, NLGEOM, sets")
      ->type_name("DECK");
  app.add_flag("--allow-outside", options->allowOutside, "Let the deck include files outside its folder");
  app.add_option("--nlgeom", options->nlgeom, "Geometrically nonlinear steps (default: as the deck says)")
      ->type_name("STEPS|all|none");
  AddTextOption(app, "-o,--output", options->output,
                "Working database (.fed) or ONF folder for everything (default: add to DB)")
      ->type_name("OUT");
  app.add_flag("--balance", options->balance,
               "Compare the forces at each node with what acts on it, worst nodes first");
  AddMagnitudeOption(app, "--tol", options->tolerance,
                     "Largest residual that --balance accepts, as a fraction of the largest force (default: 1e-5)");
  AddIntegerOption(app, "--head", options->head, "Nodes that --balance lists of each result, 0 for all (default: 10)");
  AddTextOption(app, "--elements", options->elements, "Free body of these elements: 1,5-9")->type_name("IDS");
  AddTextOption(app, "--set", options->set, "Free body of an element set")->type_name("NAME");
  AddTextOption(app, "--about", options->about, "Point that moments of a free body are taken about (default: 0,0,0)")
      ->type_name("X,Y,Z");
  // Alone they would leave a run that adds to DB and judges nothing.
  for (const char* option : {"--tol", "--head"}) app.get_option(option)->needs("--balance");
  AddTableOptions(app, options->form);
  app.footer(
      "Integrates the stresses at integration points (582) to forces at the nodes of each element (580).\n"
      "--balance, --elements and --set print; they save only with -o. Exit code 1: a residual is above --tol.\n"
      "\n"
      "Examples:\n"
      "  quilon forces bracket.onf --deck bracket.inp\n"
      "  quilon forces bracket.dat --deck bracket.inp --balance --tol 2e-6\n"
      "  quilon forces bracket.dat @lc=2,sub=last --deck bracket.inp --set EBOLT --about 0,0,40");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
