#include "terminal/Table.h"

#include <algorithm>
#include <utility>

#include "terminal/Output.h"
#include "text/CsvText.h"
#include "text/Format.h"

namespace quilon {

namespace {

/// Characters of a UTF-8 text: its bytes without the continuations.
std::size_t Width(const std::string& text)
{
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace

TableWriter::TableWriter(Output& output, TableStyle style, bool bold, std::vector<TableColumn> columns)
    : output_(output), style_(style), bold_(bold), columns_(std::move(columns))
{
  if (style_ == TableStyle::Aligned) return;
  std::vector<std::string> names;
  for (const TableColumn& column : columns_) names.push_back(column.name);
  WriteRow(names, false);
}

void TableWriter::Row(std::vector<std::string> cells)
{
  if (style_ == TableStyle::Aligned && widths_.empty()) {
    held_.push_back(std::move(cells));
    if (held_.size() == kRowsHeld) WriteHeld();
  } else {
    WriteRow(cells, false);
  }
}

void TableWriter::Finish()
{
  if (style_ == TableStyle::Aligned && widths_.empty()) WriteHeld();
}

void TableWriter::WriteHeld()
{
  std::vector<std::string> names;
  for (const TableColumn& column : columns_) {
    names.push_back(column.name);
    widths_.push_back(Width(column.name));
  }
  for (std::vector<std::string>& row : held_)
    for (std::size_t i = 0; i < row.size(); ++i) widths_[i] = std::max(widths_[i], Width(Printable(row[i])));
  WriteRow(names, bold_);
  for (const std::vector<std::string>& row : held_) WriteRow(row, false);
  held_.clear();
}

void TableWriter::WriteRow(const std::vector<std::string>& cells, bool bold)
{
  std::string line;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (style_ == TableStyle::Csv) {
      line += (i == 0 ? "" : ",") + CsvCell(cells[i], columns_[i].isText);
    } else if (style_ == TableStyle::Plain) {
      line += (i == 0 ? "" : "\t") + Printable(cells[i]);
    } else {
      const std::string cell  = Printable(cells[i]);
      const std::size_t width = Width(cell);
      const std::string padding(widths_[i] > width ? widths_[i] - width : 0, ' ');
      const bool        isLast = i + 1 == cells.size();
      line += i == 0 ? "" : "  ";
      line += columns_[i].isText ? cell + (isLast ? "" : padding) : padding + cell;
    }
  }
  output_.Write(bold ? "\x1b[1m" + line + "\x1b[0m\n" : line + '\n');
}

}  // namespace quilon
