#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/MatrixCommands.h"
#include "commands/MatrixSelection.h"
#include "commands/NumberOptions.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "matrix/MatrixBlocks.h"
#include "matrix/MatrixEntries.h"
#include "matrix/MatrixFacts.h"
#include "plot/SparsityPicture.h"
#include "progress/Interrupt.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

struct Options
{
  std::string     database;
  MatrixSelection selection;
  int             width = 64;
  bool            json  = false;
  std::string     plot;
};

const char* NameOf(const matrix::Facts& facts)
{
  switch (facts.symmetry) {
    case matrix::Symmetry::Symmetric:
      return "symmetric";
    case matrix::Symmetry::SkewSymmetric:
      return "skew-symmetric";
    case matrix::Symmetry::General:
      break;
  }
  return facts.isPatternSymmetric ? "pattern" : "none";
}

std::string SymmetryText(const matrix::Facts& facts)
{
  if (facts.symmetry != matrix::Symmetry::General) return NameOf(facts);
  if (!facts.isPatternSymmetric) return "none";
  return "of the pattern; values differ by up to " + FormatRounded(facts.asymmetry) + " of the largest";
}

std::string DiagonalText(const matrix::Facts& facts)
{
  const std::string count =
      std::to_string(facts.numDiagonal) + " of " + std::to_string(std::min(facts.numRows, facts.numColumns));
  if (!facts.hasDiagonalRange) return count;
  return count + ", " + FormatNumber(facts.leastDiagonal) + " to " + FormatNumber(facts.greatestDiagonal);
}

void PrintText(Output& output, const std::string& title, const matrix::Facts& facts,
               const std::vector<std::string>& picture)
{
  const auto line = [&output](const char* label, const std::string& text) { output.Write(label + text + '\n'); };
  output.Write(title + '\n');
  line("  size       ", std::to_string(facts.numRows) + " x " + std::to_string(facts.numColumns));
  line("  values     ", std::to_string(facts.numValues) + ", of which " + std::to_string(facts.numZeros) + " are zero");
  line("  nonzeros   ", std::to_string(facts.numValues - facts.numZeros));
  if (facts.numEmptyRows > 0) line("  empty rows ", std::to_string(facts.numEmptyRows));
  line("  symmetry   ", SymmetryText(facts));
  line("  bandwidth  ", std::to_string(facts.lowerBandwidth) + " below and " + std::to_string(facts.upperBandwidth) +
                            " above the diagonal");
  line("  diagonal   ", DiagonalText(facts));
  if (picture.empty()) return;
  const std::string edge = "  +" + std::string(picture.front().size(), '-') + "+\n";
  output.Write(edge);
  for (const std::string& row : picture) output.Write("  |" + row + "|\n");
  output.Write(edge);
}

Json ToJson(const SelectedMatrix& selected, const std::string& kind, const matrix::Facts& facts,
            const std::vector<std::string>& picture)
{
  Json json{{"block", ToSelectionText(selected.descriptor)},
            {"kind", kind},
            {selected.Place(), selected.number},
            {"rows", facts.numRows},
            {"columns", facts.numColumns},
            {"values", facts.numValues},
            {"zeros", facts.numZeros},
            {"empty-rows", facts.numEmptyRows},
            {"symmetry", NameOf(facts)}};
  if (facts.isPatternSymmetric) json["asymmetry"] = JsonNumber(facts.asymmetry);
  json["lower-bandwidth"] = facts.lowerBandwidth;
  json["upper-bandwidth"] = facts.upperBandwidth;
  json["diagonal"]        = Json{{"entries", facts.numDiagonal},
                          {"least", facts.hasDiagonalRange ? JsonNumber(facts.leastDiagonal) : Json()},
                          {"greatest", facts.hasDiagonalRange ? JsonNumber(facts.greatestDiagonal) : Json()}};
  json["picture"]         = picture;
  return json;
}

/// @return "stiffness-matrix, index 1: 54 x 54, 1764 values"
std::string TitleOf(const SelectedMatrix& selected, const KindTable& kinds, const matrix::RowView& rows)
{
  return Printable(kinds.GetName(selected.descriptor)) + ", " + selected.Place() + ' ' +
         std::to_string(selected.number) + ": " + std::to_string(rows.NumRows()) + " \u00D7 " +
         std::to_string(rows.NumColumns()) + ", " + Counted(static_cast<std::size_t>(rows.NumValues()), "value");
}

void Run(const Options& options, CommandContext& context)
{
  constexpr int kLeastWidth = 1;
  constexpr int kMostWidth  = 1000;
  if (options.width < kLeastWidth || options.width > kMostWidth)
    Fail("--width is " + std::to_string(options.width) + ", expected 1 to 1000");
  if (!options.plot.empty()) {
    static_cast<void>(PictureFormatOf(options.plot));
    CheckOutputFile(options.plot);
  }
  OpenedDatabase                    database(options.database, context.console, OpenedDatabase::DeriveNothing);
  const KindTable                   kinds(database.Get());
  Json                              list     = Json::array();
  const char*                       before   = "";
  const std::vector<SelectedMatrix> matrices = options.selection.Select(database, options.database);
  if (!options.plot.empty() && matrices.size() != 1)
    Fail("--plot is of one matrix, found " + std::to_string(matrices.size()) +
         ", expected a narrower selection or --index");
  for (const SelectedMatrix& selected : matrices) {
    ThrowIfInterrupted();
    const std::string     name   = selected.Name(options.database);
    const FED_YaleMatrix  matrix = LoadMatrix(database.Get(), selected, name);
    const matrix::RowView rows(matrix, name);
    if (!options.plot.empty()) {
      WriteFile(options.plot, DrawSparsity(rows, TitleOf(selected, kinds, rows), PictureFormatOf(options.plot)));
      return;
    }
    const matrix::Facts facts = FindFacts(rows);
    // Characters are about twice as high as wide.
    const std::vector<std::string> picture =
        DrawPattern(rows, options.width, options.width > 1 ? options.width / 2 : 1);
    const std::string kind = kinds.GetName(selected.descriptor);
    if (options.json) {
      list.push_back(ToJson(selected, kind, facts, picture));
      continue;
    }
    PrintText(context.output,
              before + Printable(kind) + "  " + ToSelectionText(selected.descriptor) + "  " + selected.Place() + ' ' +
                  std::to_string(selected.number),
              facts, picture);
    before = "\n";
  }
  if (options.json) PrintJson(context.output, list);
}

}  // namespace

CommandFunction DefineMatrixShow(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed) or ONF folder")->required();
  AddMatrixSelection(app, options->selection);
  AddIntegerOption(app, "--width", options->width, "Most characters in a line of the picture (default: 64)");
  CLI::Option* const plot =
      app.add_option("--plot", options->plot, "Draw where values are instead: .png, .svg or .pdf")->type_name("FILE");
  app.add_flag("--json", options->json, "Print JSON")->excludes(plot);
  app.footer(
      "Prints size, values, symmetry, bandwidth, the diagonal and a picture of where values other than zero are: a\n"
      "character stands for a part of the matrix, ' ' for none, '.', ':', '+' and '*' for less than 1/16, 1/4, 1/2 "
      "and\n"
      "all of its places, '#' for all.\n"
      "\n"
      "Examples:\n"
      "  quilon matrix show job.onf\n"
      "  quilon matrix show job.onf stiffness-matrix --index 1 --width 100\n"
      "  quilon matrix show job.onf --element 12");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
