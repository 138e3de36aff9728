#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <utility>

#include <CLI/CLI.hpp>

#include "answers/Region.h"
#include "commands/ChartArguments.h"
#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "plot/ConvergenceChart.h"
#include "plot/ModelPicture.h"
#include "plot/SelectedPicture.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "text/Failure.h"
#include "text/NumberList.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

struct Options
{
  std::string      database;
  SelectionOptions selection;
  std::string      output;
  std::string      component;
  std::string      view       = "iso";
  std::string      size       = "1200x900";
  std::string      background = "white";
  std::string      deform;
  bool             undeformed = false;
  std::string      lines      = "auto";
  std::string      range;
  std::string      map = "auto";
  std::string      unit;
  std::string      title;
  bool             noMarks = false;
  bool             noAxes  = false;
  bool             flat    = false;
  std::string      cut;
  RegionOptions    part;
  std::string      convergence;
};

Deformation ParseDeformation(const std::string& text)
{
  if (text == "auto") return {};
  double factor = 0.0;
  if (!ParseNumbers(text, {&factor, 1})) Fail("--deform is '" + text + "', expected a factor or auto");
  return {factor};
}

ValueRange ParseRange(const std::string& text)
{
  std::array<double, 2> ends{};
  if (!ParseNumbers(text, ends) || !(ends[0] < ends[1]))
    Fail("--range is '" + text + "', expected two numbers LEAST,GREATEST, the lesser first");
  return {ends[0], ends[1]};
}

SectionPlane ParseCut(const std::string& text)
{
  std::array<double, 6> numbers{};
  if (!ParseNumbers(text, numbers) || std::hypot(numbers[3], numbers[4], numbers[5]) == 0.0)
    Fail("--cut is '" + text + "', expected six numbers PX,PY,PZ,NX,NY,NZ: a point and a normal that is not zero");
  return {{numbers[0], numbers[1], numbers[2]}, {numbers[3], numbers[4], numbers[5]}};
}

/// Everything that can be told before files are read is told here.
ModelPictureOptions MakePictureOptions(const Options& options)
{
  ModelPictureOptions picture;
  picture.component  = options.component;
  picture.view       = ParseView(options.view);
  picture.size       = ParsePictureSize(options.size);
  picture.background = ParseColour(options.background);
  if (!options.deform.empty()) picture.deformation = ParseDeformation(options.deform);
  picture.showsUndeformed = options.undeformed;
  picture.lines           = ParseMeshLines(options.lines);
  if (!options.range.empty()) picture.range = ParseRange(options.range);
  if (options.map != "auto") picture.map = ParseColourMap(options.map);
  picture.unit     = options.unit;
  picture.title    = options.title;
  picture.hasMarks = !options.noMarks;
  picture.hasAxes  = !options.noAxes;
  picture.isLit    = !options.flat;
  if (!options.cut.empty()) picture.cut = ParseCut(options.cut);
  return picture;
}

void DrawConvergence(const Options& options, CommandContext& context)
{
  if (!options.database.empty())
    Fail("--convergence is of a log of the solver, expected it without a database: " + options.database);
  const ChartOptions chart{options.output};
  CheckChart(chart);
  WriteChart(MakeConvergenceChart(options.convergence), chart, context);
}

void Run(const Options& options, CommandContext& context)
{
  if (!options.convergence.empty()) {
    DrawConvergence(options, context);
    return;
  }
  if (options.database.empty()) Fail("DB is missing, see 'quilon plot --help'");
  if (options.selection.text.empty() && !(options.selection.steps.empty() && options.selection.time.empty()))
    Fail("--step and --time are of a result, expected a selection with them");
  const PictureFormat format  = PictureFormatOf(options.output);
  ModelPictureOptions picture = MakePictureOptions(options);
  CheckOutputFile(options.output);
  OpenedDatabase  database(options.database, context.console);
  SelectedPicture request;
  request.name    = options.database;
  request.part    = options.part;
  request.options = std::move(picture);
  if (!options.selection.text.empty()) {
    const KindTable kinds(database.Get());
    request.selection = options.selection.Parse(kinds);
    request.text      = options.selection.ToString();
    request.blocks =
        options.selection.Choose(database.Get(), request.selection, StepTimes(database.Get()), options.database);
  }
  const ModelPicture drawn = DrawSelected(database.Get(), std::move(request), format);
  for (const std::string& note : drawn.notes) context.console.Note(note);
  WriteFile(options.output, drawn.bytes);
}

}  // namespace

CommandFunction DefinePlot(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddDatabaseArgument(app, options->database)->required(false);
  app.add_option("SELECTION", options->selection.text, "Which result: KIND@KEY=VALUES,... (default: the mesh alone)");
  app.add_option("-o,--output", options->output, "Picture to write: .png, .svg or .pdf")->type_name("FILE")->required();
  app.add_option("--step", options->selection.steps, "Result step by position, or last (default: the last selected)")
      ->type_name("STEP");
  AddTimeOption(app, options->selection);
  app.add_option("--component", options->component, "What is shown (default: mises, magnitude or the value)")
      ->type_name("NAME");
  app.add_option("--view", options->view, "Where it is looked from; AZ,EL are degrees (default: iso)")
      ->type_name("top|bottom|front|back|left|right|iso|AZ,EL");
  CLI::Option* const deform =
      app.add_option("--deform", options->deform, "Deform the model, displacements times FACTOR")
          ->type_name("FACTOR|auto");
  app.add_flag("--undeformed", options->undeformed, "With --deform, the outline of the undeformed model too")
      ->needs(deform);
  app.add_option("--lines", options->lines, "Which lines are drawn (default: auto)")
      ->type_name("auto|mesh|outline|none");
  app.add_option("--set", options->part.sets, "Only the elements of this set; again: either")
      ->type_name("NAME")
      ->expected(1)
      ->take_all();
  app.add_option("--material", options->part.materials,
                 "Only elements of this material, by name or number; again: either")
      ->type_name("NAME")
      ->expected(1)
      ->take_all();
  app.add_option("--cut", options->cut, "Take away what the normal points to, show the cut")
      ->type_name("PX,PY,PZ,NX,NY,NZ");
  app.add_option("--range", options->range, "Values of the ends of the colours")->type_name("LEAST,GREATEST");
  app.add_option("--map", options->map, "Colours (default: auto)")->type_name("viridis|coolwarm|grey|auto");
  app.add_option("--unit", options->unit, "Unit of the values, for the colour bar")->type_name("UNIT");
  app.add_option("--title", options->title, "Title (default: kind and component)")->type_name("TEXT");
  app.add_option("--size", options->size, "Pixels, or points of a PDF or SVG (default: 1200x900)")->type_name("WxH");
  app.add_option("--background", options->background, "white, black, transparent or #rrggbb (default: white)")
      ->type_name("COLOUR");
  app.add_flag("--no-marks", options->noMarks, "Do not mark the greatest and the least value");
  app.add_flag("--no-axes", options->noAxes, "Do not draw the axes of the model");
  app.add_flag("--flat", options->flat, "No light: the colours are exactly those of the bar");
  app.add_option("--convergence", options->convergence, "A chart of the iterations that a .cvg or .sta logs; -o - too")
      ->type_name("LOG");
  app.footer(
      "Without a selection the mesh is drawn. Of several steps the last is shown. Views are parallel projections:\n"
      "  front   along +y: x to the right, z up (as 0,0)\n"
      "  right   along -x: y to the right, z up (as 90,0)\n"
      "  top     against +z: x to the right, y up (as 0,90)\n"
      "  back, left, bottom: from the other side\n"
      "  iso     all axes equally long (as 45,35.26)\n"
      "The plane of --cut goes through the undeformed model. Colours are viridis, or coolwarm about zero where both\n"
      "signs matter. The same input gives the same file.\n"
      "\n"
      "Examples:\n"
      "  quilon plot bracket.fed nodal-stress -o stress.png --unit MPa\n"
      "  quilon plot bracket.fed displacement.z@lc=2 -o z.svg --deform auto --undeformed --view front\n"
      "  quilon plot bracket.fed stress --component p1 --time 0.5 --set EBOLT --cut 0,0,40,0,0,1 -o bolt.pdf\n"
      "  quilon plot bracket.fed -o mesh.png\n"
      "  quilon plot --convergence bracket.cvg -o -");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
