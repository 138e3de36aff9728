#include "terminal/Table.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "terminal/Output.h"
#include "text/CsvText.h"
#include "text/Format.h"

namespace quilon {

namespace {

/// Characters of a UTF-8 text: its bytes without the continuations.
std::size_t Width(std::string_view text)
{
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

constexpr std::size_t kIndent = 4;  // of lines that go on

/// @return a text of at most so many characters, its end as "..." where it has more
std::string Cut(const std::string& text, std::size_t most)
{
  if (Width(text) <= most) return text;
  std::size_t end   = 0;
  std::size_t count = 0;
  for (; end < text.size(); ++end) {
    const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
    if (begins && count++ == most - 3) break;
  }
  return text.substr(0, end) + "...";
}

}  // namespace

TableWriter::TableWriter(Output& output, TableStyle style, bool bold, std::vector<TableColumn> columns,
                         std::size_t width)
    : output_(output), style_(style), bold_(bold), columns_(std::move(columns)), width_(width)
{
  if (style_ == TableStyle::Aligned) return;
  std::vector<std::string> names;
  for (const TableColumn& column : columns_) names.push_back(column.name);
  WriteRow(names, false);
}

void TableWriter::Row(std::vector<std::string>&& cells)
{
  if (!Holds()) return WriteRow(cells, false);
  held_.push_back(std::move(cells));
  if (held_.size() == kRowsHeld) WriteHeld();
}

void TableWriter::Row(const std::vector<std::string>& cells)
{
  if (!Holds()) return WriteRow(cells, false);
  Row(std::vector<std::string>(cells));
}

void TableWriter::Finish()
{
  if (Holds()) WriteHeld();
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
  FitWidths();
  WriteRow(names, bold_);
  for (const std::vector<std::string>& row : held_) WriteRow(row, false);
  held_.clear();
}

void TableWriter::FitWidths()
{
  begins_.assign(columns_.size(), false);
  const auto total = [this] {
    return std::accumulate(widths_.begin(), widths_.end(), std::size_t{0}) + gap_ * (widths_.size() - 1);
  };
  if (widths_.empty() || total() <= width_) return;
  gap_                                 = 1;
  const std::vector<std::size_t> whole = widths_;
  while (total() > width_) {
    std::size_t widest = 0;
    for (std::size_t i = 1; i < widths_.size(); ++i)
      if (columns_[i].isText && (!columns_[widest].isText || widths_[i] > widths_[widest])) widest = i;
    if (!columns_[widest].isText || widths_[widest] <= kLeastText) break;
    --widths_[widest];
    cutsTexts_ = true;
  }
  if (total() <= width_) return;

  widths_          = whole;
  cutsTexts_       = false;
  gap_             = 2;
  std::size_t used = widths_.front();
  for (std::size_t i = 1; i < widths_.size(); ++i) {
    begins_[i] = used + gap_ + widths_[i] > width_;
    used       = begins_[i] ? kIndent + widths_[i] : used + gap_ + widths_[i];
  }
}

void TableWriter::WriteRow(const std::vector<std::string>& cells, bool bold)
{
  line_.clear();
  if (bold) line_ += "\x1b[1m";
  if (style_ == TableStyle::Aligned) {
    AppendAligned(cells);
  } else {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i != 0) line_ += style_ == TableStyle::Csv ? ',' : '\t';
      if (style_ == TableStyle::Csv)
        AppendCsvCell(line_, cells[i], columns_[i].isText);
      else
        AppendPrintable(line_, cells[i]);
    }
  }
  if (bold) line_ += "\x1b[0m";
  line_ += '\n';
  output_.Write(line_);
}

void TableWriter::AppendAligned(const std::vector<std::string>& cells)
{
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const bool isLast = i + 1 == cells.size() || begins_[i + 1];
    if (begins_[i])
      line_.append(1, '\n').append(kIndent, ' ');
    else if (i != 0)
      line_.append(gap_, ' ');
    if (IsPlain(cells[i]) && !(cutsTexts_ && columns_[i].isText)) {
      AppendCell(cells[i], i, isLast);
      continue;
    }
    std::string cell = Printable(cells[i]);
    if (cutsTexts_ && columns_[i].isText) cell = Cut(cell, widths_[i]);
    AppendCell(cell, i, isLast);
  }
}

/// @param isLast of a line
void TableWriter::AppendCell(std::string_view cell, std::size_t column, bool isLast)
{
  const std::size_t width   = Width(cell);
  const std::size_t padding = widths_[column] > width ? widths_[column] - width : 0;
  if (!columns_[column].isText) line_.append(padding, ' ');
  line_ += cell;
  if (columns_[column].isText && !isLast) line_.append(padding, ' ');
}

}  // namespace quilon
