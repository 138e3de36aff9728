#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>
#include <CLI/CLI.hpp>

#include "calculix/deck/ReadDeckModel.h"
#include "commands/Command.h"
#include "commands/ExitCode.h"
#include "commands/ForcePrinting.h"
#include "commands/NumberOptions.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "commands/WaitOption.h"
#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "forces/ForceCalculation.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/NumberList.h"

namespace quilon {

namespace {

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
  RegionOptions    region;
  std::string      about;
  std::string      plane;
  WaitOptions      wait;
  TableForm        form;

  bool HasPart() const { return !elements.empty() || !set.empty() || region.HasPlace(); }
  /// Whether something is asked that is printed.
  bool IsAsked() const { return balance || HasPart() || !plane.empty(); }
};

CutPlane ParsePlane(const std::string& text)
{
  std::array<double, 6> numbers{};
  const bool            isPlane = ParseNumbers(text, numbers) &&
                       std::any_of(numbers.begin() + 3, numbers.end(), [](double number) { return number != 0.0; });
  if (!isPlane)
    Fail("--plane is '" + text + "', expected six numbers PX,PY,PZ,NX,NY,NZ: a point and a normal that is not zero");
  return {{numbers[0], numbers[1], numbers[2]}, {numbers[3], numbers[4], numbers[5]}};
}

/// What is asked for, without the deck. Everything that can be told before files are read is told here.
ForceRequest MakeRequest(const Options& options)
{
  if (!options.elements.empty() && !options.set.empty())
    Fail("--elements and --set exclude each other, expected one at most");
  if (options.balance && options.HasPart())
    Fail("--balance is of the whole model, expected it without --elements and --set");
  if (options.balance && !options.plane.empty()) Fail("--balance and --plane exclude each other, expected one at most");

  ForceRequest request;
  request.database  = options.database;
  request.deckName  = options.deck;
  request.balance   = options.balance;
  request.tolerance = options.tolerance;
  request.numWorst  = static_cast<std::size_t>(std::max(options.head, 0));
  request.part.set  = options.set;
  request.part.text = options.elements;
  if (!options.elements.empty()) request.part.elements = ParseElementIds(options.elements);
  if (!options.about.empty()) {
    if (!options.plane.empty()) Fail("--about is of a free body, expected the point of --plane for its moment");
    if (!options.HasPart()) Fail("--about is of a free body, expected --elements or --set with it");
    ParseNumbers("--about", options.about, request.about, "three numbers X,Y,Z");
  }
  if (!options.plane.empty()) request.plane = ParsePlane(options.plane);
  if (!options.nlgeom.empty()) request.nonlinearSteps = ParseNonlinearSteps(options.nlgeom);
  return request;
}

/// @return the elements of a region; those of --elements or --set are the ones that it is of
ForcePart FindPart(const Options& options, const FED_Database& database, int iteration, Console& console)
{
  RegionOptions described = options.region;
  described.ids           = options.elements;
  if (!options.set.empty()) described.sets = {options.set};
  Region    region(database, described, options.database);
  ForcePart part;
  part.text = described.ToString();
  for (const int id : region.ElementsOf(iteration)) {
    if (part.elements.empty() || part.elements.back().last != id - 1)
      part.elements.push_back({NumberRange::Numbers, id, id, 1});
    part.elements.back().last = id;
  }
  if (part.elements.empty()) region.FailEmpty("the elements");
  TellNotes(region, console);
  return part;
}

/// @return those that the database has
std::vector<FED_DataDescriptor> OutdatedBlocks(const FED_Database& database, const ForceReport& report)
{
  std::vector<FED_DataDescriptor> blocks = report.outdated;
  std::erase_if(blocks, [&database](const FED_DataDescriptor& block) { return !database.HasDataBlock(block); });
  return blocks;
}

void Run(const Options& options, CommandContext& context)
{
  ForceRequest request = MakeRequest(options);
  const bool   isAsked = options.IsAsked();
  const bool   inPlace = options.output.empty() && !isAsked;
  if (inPlace && !IsOnfFolder(options.database) && !IsWorkingDatabase(options.database)) {
    Fail(options.database +
         ": not a database to add forces to, expected a working database, an ONF folder, -o OUT, --balance, --plane, "
         "--elements or --set");
  }
  std::optional<Publication> publication;
  const bool                 leads = context.processes == nullptr || context.processes->Leads();
  if (leads && (inPlace || !options.output.empty()))
    publication.emplace(inPlace ? options.database : options.output, Publication::AnyDatabase,
                        PatienceOf(options.wait, context.console));

  std::optional<calculix::DeckModel> deck;
  if (!options.deck.empty()) {
    calculix::DeckOptions deckOptions;
    deckOptions.allowOutside = options.allowOutside;
    deck                     = calculix::ReadDeckModel(options.deck, deckOptions);
    request.deck             = &*deck;
  }

  OpenedDatabase                        database(options.database, context.console, OpenedDatabase::DeriveNothing,
                                                 {options.deck, options.allowOutside});
  const KindTable                       kinds(database.Get());
  const std::vector<FED_DataDescriptor> results = ChooseForceResults(
      database.Get(), database.RequireBlocks(options.selection.ParseBlocks(kinds), options.selection.ToString()),
      options.database, options.selection.ToString());
  if (options.region.HasPlace())
    request.part =
        FindPart(options, database.Get(), results.front().GetInteger(FED_DataDescriptor::Iteration), context.console);
  const bool          keepsAll = !options.output.empty();
  FED_Database* const target   = publication ? &publication->Target() : nullptr;
  if (target != nullptr && keepsAll)
    database.CopyTo(*target, database.Get().GetDataDescriptors(FED_DataDescriptorPattern()));
  ForceSource source{database.Get()};
  if (context.processes != nullptr) source.readers = database.GetReaders(*context.processes);
  const ForceReport report = CalculateForces(source, target, results, request, &context.console);

  const std::vector<FED_DataDescriptor> outdated = OutdatedBlocks(database.Get(), report);
  if (publication && report.NumWithForces() == 0 && (keepsAll || outdated.empty()))
    Fail(options.database + ": no element has forces in any result: " + DescribeSkipped(report.skipped));
  if (publication) publication->Publish(outdated);
  for (const std::string& note : ListForceNotes(request, report)) context.console.Note(note);
  if (options.form.json || isAsked) {
    PrintForces(context.output, options.form, request, report);
    // A table for programs has rows alone.
    if (options.balance && !options.form.json && StyleOf(options.form) != TableStyle::Aligned)
      context.console.Note(DescribeVerdict(request, report));
  } else {
    context.output.Write((inPlace ? options.database : options.output) + ": forces of " +
                         Counted(report.NumWithForces(), "result") + '\n');
  }
  context.exitCode = report.Holds() ? ExitSuccess : ExitDifferent;
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
  app.add_option(
         "--nlgeom", options->nlgeom,
         "Geometrically nonlinear steps (default: as the deck says, or the\ndatabase that it was imported into)")
      ->type_name("STEPS|all|none");
  AddTextOption(app, "-o,--output", options->output,
                "Working database (.fed) or ONF folder for everything (default: add to DB)")
      ->type_name("OUT");
  CLI::Option* const balance = app.add_flag("--balance", options->balance,
                                            "Compare the forces at each node with what acts on it, worst nodes first");
  // Alone --tol and --head would leave a run that adds to DB and judges nothing.
  AddMagnitudeOption(app, "--tol", options->tolerance,
                     "Largest residual that --balance accepts, as a fraction of the largest force, beyond what rounded "
                     "coordinates leave open (default: 1e-5)")
      ->needs(balance);
  AddIntegerOption(app, "--head", options->head, "Nodes that --balance lists of each result, 0 for all (default: 10)")
      ->needs(balance);
  AddTextOption(app, "--elements,--ids", options->elements, "Free body of these elements: 1,5-9")->type_name("IDS");
  AddTextOption(app, "--set", options->set, "Free body of an element set")->type_name("NAME");
  AddPlaceOptions(app, options->region);
  AddTextOption(app, "--about", options->about, "Point that moments of a free body are taken about (default: 0,0,0)")
      ->type_name("X,Y,Z");
  AddTextOption(app, "--plane", options->plane,
                "Force and moment that the side the normal points to exerts on the other")
      ->type_name("PX,PY,PZ,NX,NY,NZ");
  AddWriterOptions(app, options->wait);
  AddTableOptions(app, options->form);
  app.footer(
      "Integrates the stresses at integration points (582) to forces at the nodes of each element (580).\n"
      "--balance, --plane, --elements and --set print; they save only with -o. Exit code 1: a residual is above "
      "--tol.\n"
      "\n"
      "Examples:\n"
      "  quilon forces bracket.onf --deck bracket.inp\n"
      "  quilon forces bracket.dat --deck bracket.inp --balance --tol 2e-6\n"
      "  quilon forces bracket.dat @lc=2,sub=last --deck bracket.inp --set EBOLT --about 0,0,40\n"
      "  quilon forces bracket.dat --deck bracket.inp --plane 0,0,40,0,0,1");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
