#include "terminal/Sheet.h"

#include <algorithm>
#include <cstddef>

#include "terminal/Output.h"
#include "text/Format.h"

namespace quilon {

namespace {

struct ToJsonValue
{
  Json operator()(std::monostate) const { return {}; }
  Json operator()(double value) const { return JsonNumber(value); }
  Json operator()(float value) const { return JsonNumber(value); }
  Json operator()(ByteCount value) const { return value.bytes; }
  template <typename T>
  Json operator()(const T& value) const
  {
    return value;
  }
};

struct ToCell
{
  TableStyle style;

  std::string operator()(std::monostate) const { return style == TableStyle::Csv ? "" : "-"; }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(ByteCount value) const
  {
    return style == TableStyle::Aligned ? FormatBytes(value.bytes) : std::to_string(value.bytes);
  }
  template <std::integral T>
  std::string operator()(T value) const
  {
    return std::to_string(value);
  }
  template <std::floating_point T>
  std::string operator()(T value) const
  {
    return style == TableStyle::Aligned ? FormatRounded(static_cast<double>(value)) : FormatNumber(value);
  }
};

}  // namespace

bool Sheet::HasValues(std::size_t column) const
{
  return std::any_of(rows_.begin(), rows_.end(), [&](const auto& row) { return !row[column].IsEmpty(); });
}

bool Sheet::IsText(std::size_t column) const
{
  return std::any_of(rows_.begin(), rows_.end(),
                     [&](const auto& row) { return std::holds_alternative<std::string>(row[column].Get()); });
}

Json Sheet::ToJson() const
{
  Json list = quilon::Json::array();
  for (const std::vector<SheetValue>& row : rows_) {
    Json object = quilon::Json::object();
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const SheetColumn& column = columns_[i];
      if (column.form == SheetColumn::Tables || (column.isOptional && row[i].IsEmpty())) continue;
      object[column.name] = std::visit(ToJsonValue(), row[i].Get());
    }
    list.push_back(std::move(object));
  }
  return list;
}

void Sheet::PrintTable(Output& output, const TableForm& form) const
{
  std::vector<std::size_t> shown;
  std::vector<TableColumn> header;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    if (columns_[i].form == SheetColumn::Json || (columns_[i].isOptional && !HasValues(i))) continue;
    shown.push_back(i);
    header.push_back({columns_[i].name, IsText(i)});
  }
  const ToCell toCell{StyleOf(form)};
  TableWriter  table = MakeTable(output, form, std::move(header));
  for (const std::vector<SheetValue>& row : rows_) {
    std::vector<std::string> cells;
    for (const std::size_t i : shown) cells.push_back(std::visit(toCell, row[i].Get()));
    table.Row(std::move(cells));
  }
  table.Finish();
}

void PrintJson(Output& output, const Json& json) { output.Write(JsonText(json, 2) + '\n'); }

}  // namespace quilon
