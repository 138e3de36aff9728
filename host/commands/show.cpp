#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <bundled/OnfKinds.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/RecordRows.h"
#include "database/ScratchRecord.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

constexpr CellStyle kForPeople = {.listLimit = 8, .isRounded = true};

struct Options
{
  std::string                database;
  SelectionOptions           selection;
  std::string                ids;
  std::optional<std::size_t> head;
  TableForm                  form;
};

/// Which records of a block are shown.
class RecordChoice
{
public:
  explicit RecordChoice(const Options& options) : head_(options.head)
  {
    if (options.ids.empty()) return;
    ranges_ = ParseNumberRanges(options.ids, "a record id");
    for (const NumberRange& range : ranges_) {
      if (range.form == NumberRange::None)
        Fail("a record id is 'none', expected a number, a range, first, last or all");
      if (range.form == NumberRange::Numbers && range.first == range.last) single_.insert(range.first);
    }
  }

  /// @return the chosen records of a block, by ascending id
  std::vector<RecordKey> Choose(const FED_DataBlock& block, const FED_IdMapsPool& pool) const
  {
    std::vector<RecordKey> keys = GetRecordKeys(block, pool);
    if (!ranges_.empty() && !keys.empty()) {
      const int first = keys.front().id;
      const int last  = keys.back().id;
      std::erase_if(keys, [&](const RecordKey& key) { return !IsChosen(key.id, first, last); });
    }
    if (head_ && keys.size() > *head_) keys.resize(*head_);
    return keys;
  }

  /// An id that is asked for by its number and that no block holds.
  template <typename HasRecord>
  std::optional<int> FindMissing(const HasRecord& hasRecord) const
  {
    for (const int id : single_)
      if (!hasRecord(id)) return id;
    return std::nullopt;
  }

private:
  bool IsChosen(int id, int first, int last) const
  {
    return std::any_of(ranges_.begin(), ranges_.end(), [&](const NumberRange& range) {
      switch (range.form) {
        case NumberRange::First:
          return id == first;
        case NumberRange::Last:
          return id == last;
        case NumberRange::All:
          return true;
        case NumberRange::None:
          return false;
        case NumberRange::Numbers:
          break;
      }
      return range.Holds(id);
    });
  }

  std::vector<NumberRange>   ranges_;  // empty: all
  std::set<int>              single_;
  std::optional<std::size_t> head_;
};

/// Blocks are shown one after the other, and the keys of one are all that memory holds.
struct Shown
{
  FED_Database&                   database;
  const KindTable&                kinds;
  const RecordChoice&             choice;
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

  std::vector<RecordKey> Choose(const FED_DataBlock& block) const
  {
    return choice.Choose(block, database.GetIdMapsPool());
  }
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
    std::string text = JsonText(head);
    text.pop_back();  // its closing brace: the rows follow
    output.Write(beforeBlock + text + ",\"rows\":[");
    beforeBlock = ",\n";

    const FED_DataBlock& block = shown.database.GetConstDataBlock(descriptor);
    const RecordRows     rows(block, shown.kinds, shown.database);
    const char*          beforeRow = "\n  ";
    shown.ForEachRecord(block, shown.Choose(block), [&](int id, const FED_ConstDataRecord& record) {
      for (const std::vector<Cell>& row : rows.GetRows(id, record)) {
        Json object;
        for (std::size_t i = 0; i < row.size(); ++i) object[rows.GetColumns()[i]] = std::visit(JsonCell(), row[i]);
        output.Write(beforeRow + JsonText(object));
        beforeRow = ",\n  ";
      }
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
               const RecordRows& rows, const std::vector<std::string>& before, const CellStyle& style)
{
  shown.ForEachRecord(block, keys, [&](int id, const FED_ConstDataRecord& record) {
    for (const std::vector<Cell>& row : rows.GetRows(id, record)) {
      std::vector<std::string> cells = before;
      for (const Cell& cell : row) cells.push_back(FormatCell(cell, style));
      table.Row(std::move(cells));
    }
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
    const RecordRows             rows(block, shown.kinds, shown.database);
    output.Write(before + Printable(shown.kinds.GetName(descriptor)) + "  " + ToSelectionText(descriptor) + "  " +
                 Counted(keys.size(), "record") + '\n');
    TableWriter table = MakeTable(output, form, NumberColumns(rows.GetColumns()));
    WriteRows(table, shown, block, keys, rows, {}, kForPeople);
    table.Finish();
    before = "\n";
  }
}

/// One table for all blocks; where there are several, kind and keys stand in front of each row. Blocks with other
/// columns start another table behind an empty line.
void PrintForPrograms(Output& output, const TableForm& form, const Shown& shown)
{
  const bool                  areSeveral = shown.descriptors.size() > 1;
  const std::vector<IndexKey> keys       = areSeveral ? KeyColumns(shown.descriptors) : std::vector<IndexKey>();
  std::vector<std::string>    former;
  std::optional<TableWriter>  table;
  for (const FED_DataDescriptor& descriptor : shown.descriptors) {
    const FED_DataBlock&     block = shown.database.GetConstDataBlock(descriptor);
    const RecordRows         rows(block, shown.kinds, shown.database);
    std::vector<TableColumn> columns;
    std::vector<std::string> before;
    if (areSeveral) {
      columns.push_back({"kind", true});
      before.push_back(shown.kinds.GetName(descriptor));
    }
    for (const IndexKey& key : keys) {
      columns.push_back({key.key, false});
      const bool isSet = descriptor.IsSet(key.index);
      before.push_back(isSet ? std::to_string(descriptor.GetInteger(key.index)) : form.csv ? "" : "-");
    }
    if (!table || rows.GetColumns() != former) {
      if (table) output.Write("\n");
      const std::vector<TableColumn> values = NumberColumns(rows.GetColumns());
      columns.insert(columns.end(), values.begin(), values.end());
      table.emplace(MakeTable(output, form, std::move(columns)));
      former = rows.GetColumns();
    }
    WriteRows(*table, shown, block, shown.Choose(block), rows, before, CellStyle());
  }
}

/// @return whether one of the blocks has a record of this id, or at this index where it has no ids
bool HasRecord(const Shown& shown, int id)
{
  return std::any_of(shown.descriptors.begin(), shown.descriptors.end(), [&](const FED_DataDescriptor& descriptor) {
    const FED_DataBlock& block = shown.database.GetConstDataBlock(descriptor);
    if (OnfKind::HasIds(descriptor.GetInteger(FED_DataDescriptor::OnfId)))
      return FED_ConstIdDataBlock(block, shown.database.GetIdMapsPool()).HasRecord(id);
    return id >= 0 && block.HasRecord(static_cast<std::size_t>(id));
  });
}

void Run(const Options& options, CommandContext& context)
{
  const RecordChoice choice(options);
  OpenedDatabase     database(options.database, context.console);
  const KindTable    kinds(database.Get());
  const Shown        shown{database.Get(), kinds, choice,
                    database.RequireBlocks(options.selection.Parse(kinds), options.selection.ToString())};
  if (const std::optional<int> id = choice.FindMissing([&](int asked) { return HasRecord(shown, asked); }))
    Fail(options.database + ": no record " + std::to_string(*id) + " in the blocks of '" +
         options.selection.ToString() + "'");

  if (options.form.json)
    PrintJson(context.output, shown);
  else if (StyleOf(options.form) == TableStyle::Aligned)
    PrintForPeople(context.output, options.form, shown);
  else
    PrintForPrograms(context.output, options.form, shown);
}

}  // namespace

CommandFunction DefineShow(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed), ONF folder or solver result file (.frd, .dat)")
      ->required();
  app.add_option("SELECTION", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,...")->required();
  AddStepsOption(app, options->selection);
  app.add_option("--ids", options->ids, "Only these records: 1,5-9 or first, last")->type_name("IDS");
  app.add_option("--head", options->head, "Only the first N records of each block")
      ->type_name("N")
      ->check([](const std::string& text) {
        const bool isCount = text.find_first_not_of("0123456789") == std::string::npos;
        return isCount ? std::string() : "'" + text + "', expected a count, 0 or more";
      });
  AddTableOptions(app, options->form);
  app.footer(
      "Numbers are printed in the shortest form that reads back to the same bits, in aligned tables with six digits.\n"
      "\n"
      "Examples:\n"
      "  quilon show bracket.onf stress@lc=2,sub=last --ids 1,5-9\n"
      "  quilon show bracket.onf 582@lc=1 --head 3\n"
      "  quilon show modes.onf eigenvalue --json");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
