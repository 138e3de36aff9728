#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <bundled/OnfKinds.h>
#include <CLI/CLI.hpp>

#include "answers/ComponentAxes.h"
#include "answers/ModelNames.h"
#include "answers/Region.h"
#include "commands/AxesOption.h"
#include "commands/Command.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/RecordRows.h"
#include "database/ScratchRecord.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "plot/TextChart.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "terminal/Terminal.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

constexpr CellStyle kForPeople = {.listLimit = 8, .isRounded = true};

struct Options
{
  std::string                database;
  SelectionOptions           selection;
  RegionOptions              region;
  std::string                axes;
  std::optional<std::size_t> head;
  TableForm                  form;
  bool                       spark = false;
};

/// The axes that components are shown in, those of one iteration at a time.
class ShownAxes
{
public:
  ShownAxes(const FED_Database& database, std::string text) : database_(database), text_(std::move(text)) {}

  bool IsGlobal() const noexcept { return text_.empty(); }

  /// @return what turns the records of a block. It borrows the axes until the next call.
  RecordTurn TurnOf(const FED_DataDescriptor& block, Region& region)
  {
    const int iteration    = block.GetInteger(FED_DataDescriptor::Iteration);
    const int onf          = block.GetInteger(FED_DataDescriptor::OnfId);
    axes_                  = ComponentAxes(text_, database_, iteration);
    const Mesh* mesh       = axes_.NeedsPlaces() ? &region.GetMesh(iteration) : nullptr;
    const auto  turner     = std::make_shared<RecordTurner>(axes_, onf, mesh);
    const bool  isOfTensor = ValueComponentsOf(onf).size() == 6;
    const bool  isList     = OnfKind::ListPeriodOf(onf) > 1;
    const bool  tellsAxes  = isOfTensor && axes_.GetForm() == ComponentAxes::Principal;
    RecordTurn  turn;
    if (tellsAxes) turn.columns = {"x1", "y1", "z1", "x2", "y2", "z2", "x3", "y3", "z3"};
    turn.turn = [this, turner, isList, tellsAxes](int id, std::size_t part, std::size_t numParts,
                                                  std::span<double> values, std::vector<Cell>& behind) {
      if (tellsAxes)
        for (const auto& direction : PrincipalAxesOf(values.first<6>()).directions)
          behind.insert(behind.end(), direction.begin(), direction.end());
      if (!(isList ? turner->TurnPart(id, part, numParts, values) : turner->Turn(id, values))) ++numWithout_;
    };
    return turn;
  }

  void TellNotes(Console& console) const
  {
    if (const std::string text = axes_.Describe(); !text.empty()) console.Note(text);
    if (numWithout_ > 0)
      console.Note(Counted(numWithout_, "value") + " at places where the axes are none, or that are not known");
  }

private:
  const FED_Database& database_;
  std::string         text_;
  ComponentAxes       axes_;
  std::size_t         numWithout_ = 0;
};

/// Blocks are shown one after the other, and the keys of one are all that memory holds.
struct Shown
{
  FED_Database&                   database;
  const KindTable&                kinds;
  const Selection&                selection;
  const StepTimes&                times;
  const ModelNames&               names;
  Region&                         region;
  ShownAxes&                      axes;
  std::optional<std::size_t>      head;
  std::vector<FED_DataDescriptor> descriptors;

  /// Calls visit(record) for each of the records, which is valid during the call only.
  template <typename Visit>
  void ForEachRecord(const FED_DataBlock& block, const std::vector<RecordKey>& keys, const Visit& visit) const
  {
    const ScratchRecord scratch(block);
    for (const RecordKey& key : keys) {
      ThrowIfInterrupted();
      block.GetRecord(key.index, *scratch);
      visit(key.id, *scratch);
    }
  }

  /// @return the chosen records of a block, by ascending id
  std::vector<RecordKey> Choose(const FED_DataBlock& block) const
  {
    std::vector<RecordKey> keys = GetRecordKeys(block, database.GetIdMapsPool());
    if (!region.IsEverything()) {
      const RegionFilter filter = region.FilterOf(block);
      std::erase_if(keys, [&](const RecordKey& key) { return !filter.Holds(key.id); });
    }
    if (head && keys.size() > *head) keys.resize(*head);
    return keys;
  }

  RecordRows RowsOf(const FED_DataBlock& block) const
  {
    std::vector<Component> components = ComponentsOf(selection, block.GetDescriptor());
    if (axes.IsGlobal()) return RecordRows(block, kinds, database, std::move(components));
    const int onf = block.GetDescriptor().GetInteger(FED_DataDescriptor::OnfId);
    if (components.empty())
      for (const std::string& name : ValueComponentsOf(onf)) components.emplace_back(name, onf);
    return RecordRows(block, kinds, database, std::move(components), axes.TurnOf(block.GetDescriptor(), region));
  }

  /// Calls visit(row) for each row of the records, with names for numbers; valid during the call only.
  template <typename Visit>
  void ForEachRow(const FED_DataBlock& block, const std::vector<RecordKey>& keys, const RecordRows& rows,
                  const Visit& visit) const
  {
    std::vector<std::vector<Cell>> ofRecord;
    ForEachRecord(block, keys, [&](int id, const FED_ConstDataRecord& record) {
      rows.GetRows(id, record, ofRecord);
      for (std::vector<Cell>& row : ofRecord) {
        names.Replace(block.GetDescriptor(), row);
        visit(row);
      }
    });
  }

  /// @return the name of what StepTimes tells of the blocks, where it tells something: "time", or "frequency" where all
  ///         of them have one
  std::optional<std::string> GetTimeName() const { return NameOfTimes(times, descriptors, kinds); }
};

struct JsonCell
{
  Json operator()(double value) const { return JsonNumber(value); }
  Json operator()(float value) const { return JsonNumber(value); }
  Json operator()(const std::vector<double>& values) const
  {
    Json list = Json::array();
    for (const double value : values) list.push_back(JsonNumber(value));
    return list;
  }
  template <typename T>
  Json operator()(const T& value) const
  {
    return Json(value);
  }
};

/// Rows are written one by one, so that a large block is never a large text in memory.
void PrintJson(Output& output, const Shown& shown)
{
  output.Write("[");
  const char* beforeBlock = "\n";
  for (const FED_DataDescriptor& descriptor : shown.descriptors) {
    Json head;
    head["block"] = ToSelectionText(descriptor);
    head["onf"]   = descriptor.GetInteger(FED_DataDescriptor::OnfId);
    head["kind"]  = shown.kinds.GetName(descriptor);
    for (const IndexKey& key : GetIndexKeys())
      if (descriptor.IsSet(key.index)) head[key.key] = descriptor.GetInteger(key.index);
    if (const std::optional<double> time = shown.times.TimeOf(descriptor)) head["time"] = JsonNumber(*time);
    std::string text = JsonText(head);
    text.pop_back();  // its closing brace: the rows follow
    output.Write(beforeBlock + text + ",\"rows\":[");
    beforeBlock = ",\n";

    const FED_DataBlock& block     = shown.database.GetConstDataBlock(descriptor);
    const RecordRows     rows      = shown.RowsOf(block);
    const char*          beforeRow = "\n  ";
    shown.ForEachRow(block, shown.Choose(block), rows, [&](const std::vector<Cell>& row) {
      Json object;
      for (std::size_t i = 0; i < row.size(); ++i) object[rows.GetColumns()[i]] = std::visit(JsonCell(), row[i]);
      output.Write(beforeRow + JsonText(object));
      beforeRow = ",\n  ";
    });
    output.Write("]}");
  }
  output.Write("\n]\n");
}

/// Tells the blocks of one table apart: the keys that any of them has set, and the kind.
std::vector<IndexKey> KeyColumns(const std::vector<FED_DataDescriptor>& descriptors)
{
  std::vector<IndexKey> keys;
  for (const IndexKey& key : GetIndexKeys())
    if (std::any_of(descriptors.begin(), descriptors.end(),
                    [&](const FED_DataDescriptor& descriptor) { return descriptor.IsSet(key.index); }))
      keys.push_back(key);
  return keys;
}

void WriteRows(TableWriter& table, const Shown& shown, const FED_DataBlock& block, const std::vector<RecordKey>& keys,
               const RecordRows& rows, const std::vector<std::string>& before, const std::vector<std::string>& behind,
               const CellStyle& style)
{
  // Texts keep their room from row to row.
  std::vector<std::string> cells = before;
  shown.ForEachRow(block, keys, rows, [&](const std::vector<Cell>& row) {
    cells.resize(before.size() + row.size() + behind.size());
    auto text = cells.begin() + static_cast<std::ptrdiff_t>(before.size());
    for (const Cell& cell : row) {
      text->clear();
      AppendCell(*text++, cell, style);
    }
    std::copy(behind.begin(), behind.end(), text);
    table.Row(cells);
  });
}

std::vector<TableColumn> NumberColumns(const std::vector<std::string>& names)
{
  std::vector<TableColumn> columns;
  for (const std::string& name : names) columns.push_back({name, false});
  return columns;
}

/// A table per block with a line above it.
void PrintForPeople(Output& output, const TableForm& form, const Shown& shown)
{
  const char* before = "";
  for (const FED_DataDescriptor& descriptor : shown.descriptors) {
    const FED_DataBlock&         block = shown.database.GetConstDataBlock(descriptor);
    const std::vector<RecordKey> keys  = shown.Choose(block);
    const RecordRows             rows  = shown.RowsOf(block);
    const std::optional<double>  time  = shown.times.TimeOf(descriptor);
    output.Write(
        before + Printable(shown.kinds.GetName(descriptor)) + "  " + ToSelectionText(descriptor) + "  " +
        (time ? *NameOfTimes(shown.times, {descriptor}, shown.kinds) + ' ' + FormatRounded(*time) + "  " : "") +
        Counted(keys.size(), "record") + '\n');
    TableWriter table = MakeTable(output, form, NumberColumns(rows.GetColumns()));
    WriteRows(table, shown, block, keys, rows, {}, {}, kForPeople);
    table.Finish();
    before = "\n";
  }
}

/// One table for all blocks; where there are several, kind, keys and time stand in front of each row. Of a single one
/// the time stands behind: what is shown of one block has its columns in their places, whatever step it is of. Blocks
/// with other columns start another table behind an empty line.
void PrintForPrograms(Output& output, const TableForm& form, const Shown& shown)
{
  const bool                  areSeveral = shown.descriptors.size() > 1;
  const std::vector<IndexKey> keys       = areSeveral ? KeyColumns(shown.descriptors) : std::vector<IndexKey>();
  const std::string           none       = form.csv ? "" : "-";
  const auto                  timeName   = shown.GetTimeName();
  std::vector<std::string>    former;
  std::optional<TableWriter>  table;
  for (const FED_DataDescriptor& descriptor : shown.descriptors) {
    const FED_DataBlock&     block = shown.database.GetConstDataBlock(descriptor);
    const RecordRows         rows  = shown.RowsOf(block);
    std::vector<TableColumn> columns;
    std::vector<std::string> before;
    std::vector<std::string> behind;
    if (areSeveral) {
      columns.push_back({"kind", true});
      before.push_back(shown.kinds.GetName(descriptor));
    }
    for (const IndexKey& key : keys) {
      columns.push_back({key.key, false});
      const bool isSet = descriptor.IsSet(key.index);
      before.push_back(isSet ? std::to_string(descriptor.GetInteger(key.index)) : none);
    }
    if (timeName) {
      const std::optional<double> time = shown.times.TimeOf(descriptor);
      if (areSeveral) columns.push_back({*timeName, false});
      (areSeveral ? before : behind).push_back(time ? FormatNumber(*time) : none);
    }
    if (!table || rows.GetColumns() != former) {
      if (table) output.Write("\n");
      const std::vector<TableColumn> values = NumberColumns(rows.GetColumns());
      columns.insert(columns.end(), values.begin(), values.end());
      if (!behind.empty()) columns.push_back({*timeName, false});
      table.emplace(MakeTable(output, form, std::move(columns)));
      former = rows.GetColumns();
    }
    WriteRows(*table, shown, block, shown.Choose(block), rows, before, behind, CellStyle());
  }
}

/// @return the number of a cell; nothing for a text and a list
std::optional<double> NumberOf(const Cell& cell)
{
  if (const auto* const value = std::get_if<double>(&cell)) return *value;
  if (const auto* const value = std::get_if<float>(&cell)) return *value;
  if (const auto* const value = std::get_if<int>(&cell)) return *value;
  return std::nullopt;
}

/// For each block a line a column of numbers: least, a bar a record or several, greatest. Memory holds the numbers of a
/// block.
void PrintSparklines(Output& output, const Shown& shown)
{
  constexpr int kMost   = 64;
  constexpr int kBeside = 40;  // names and numbers
  const auto    width   = static_cast<std::size_t>(std::clamp(GetTerminalWidth() - kBeside, 8, kMost));
  const char*   before  = "";
  for (const FED_DataDescriptor& descriptor : shown.descriptors) {
    const FED_DataBlock&             block = shown.database.GetConstDataBlock(descriptor);
    const std::vector<RecordKey>     keys  = shown.Choose(block);
    const RecordRows                 rows  = shown.RowsOf(block);
    std::vector<std::vector<double>> columns(rows.GetColumns().size());
    shown.ForEachRow(block, keys, rows, [&](const std::vector<Cell>& row) {
      for (std::size_t i = 1; i < row.size(); ++i)
        if (const std::optional<double> number = NumberOf(row[i])) columns[i].push_back(*number);
    });
    output.Write(before + Printable(shown.kinds.GetName(descriptor)) + "  " + ToSelectionText(descriptor) + "  " +
                 Counted(keys.size(), "record") + '\n');
    before             = "\n";
    std::size_t widest = 0;
    for (const std::string& name : rows.GetColumns()) widest = std::max(widest, name.size());
    for (std::size_t i = 1; i < columns.size(); ++i) {
      std::vector<double> finite;
      std::copy_if(columns[i].begin(), columns[i].end(), std::back_inserter(finite),
                   [](double value) { return std::isfinite(value); });
      if (finite.empty()) continue;
      const auto [least, greatest]  = std::minmax_element(finite.begin(), finite.end());
      const std::string&    name    = rows.GetColumns()[i];
      const std::string     low     = FormatRounded(*least);
      constexpr std::size_t kDigits = 12;
      output.Write("  " + Printable(name) + std::string(widest - name.size() + 1, ' ') +
                   std::string(low.size() < kDigits ? kDigits - low.size() : 0, ' ') + low + "  " +
                   DrawSparkline(columns[i], width, MayUseUnicode()) + "  " + FormatRounded(*greatest) + '\n');
    }
  }
}

void Run(const Options& options, CommandContext& context)
{
  OpenedDatabase   database(options.database, context.console);
  const KindTable  kinds(database.Get());
  const Selection  selection = options.selection.Parse(kinds);
  const StepTimes  times(database.Get());
  const ModelNames names(database.Get());
  Region           region(database.Get(), options.region, options.database);
  ShownAxes        axes(database.Get(), options.axes);
  Shown            shown{
      database.Get(), kinds,        selection,
      times,          names,        region,
      axes,           options.head, options.selection.Choose(database.Get(), selection, times, options.database)};
  std::erase_if(shown.descriptors, [&](const FED_DataDescriptor& block) { return !region.AppliesTo(block); });
  region.RequireIds(shown.descriptors, options.selection.ToString());
  if (options.region.HasPlace() && !HoldsRecords(region, database.Get(), shown.descriptors))
    region.FailEmpty(options.selection.ToString());

  if (options.spark)
    PrintSparklines(context.output, shown);
  else if (options.form.json)
    PrintJson(context.output, shown);
  else if (StyleOf(options.form) == TableStyle::Aligned)
    PrintForPeople(context.output, options.form, shown);
  else
    PrintForPrograms(context.output, options.form, shown);
  TellNotes(region, context.console);
  axes.TellNotes(context.console);
}

}  // namespace

CommandFunction DefineShow(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  AddSelectionArguments(app, options->database, options->selection);
  AddRegionOptions(app, options->region);
  AddAxesOption(app, options->axes);
  app.add_option("--head", options->head, "Only the first N records of each block")
      ->type_name("N")
      ->check([](const std::string& text) {
        const bool isCount = text.find_first_not_of("0123456789") == std::string::npos;
        return isCount ? std::string() : "'" + text + "', expected a count, 0 or more";
      });
  const std::array<CLI::Option*, 3> tables = AddTableOptions(app, options->form);
  CLI::Option* const                spark =
      app.add_flag("--spark", options->spark, "A line of bars for each column, from its least value to its greatest");
  for (CLI::Option* const table : tables) spark->excludes(table);
  app.footer(
      "Numbers are printed in the shortest form that reads back to the same bits, in aligned tables with six digits.\n"
      "\n"
      "Examples:\n"
      "  quilon show bracket.onf stress@lc=2,sub=last --ids 1,5-9\n"
      "  quilon show bracket.onf stress.mises,stress.p1 --time last --set FIX\n"
      "  quilon show bracket.onf 582@lc=1 --head 3\n"
      "  quilon show bracket.onf displacement@lc=1 --spark\n"
      "  quilon show modes.onf eigenvalue --json");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
