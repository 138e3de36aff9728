#include "text/CsvText.h"

#include <algorithm>
#include <string_view>

#include "text/ColumnText.h"
#include "text/Format.h"

namespace quilon {

namespace {

/// @return whether a spreadsheet may take the beginning of a text for that of a formula
bool BeginsFormula(std::string_view text)
{
  return text.size() > 1 && std::string_view("=+-@").find(text.front()) != std::string_view::npos;
}

/// The text as a terminal and a spreadsheet can take it: ends of lines and tabs stay, and what a spreadsheet would take
/// for a formula begins with an apostrophe.
std::string CsvText(std::string_view text, bool isText)
{
  constexpr std::string_view kKept = "\r\n\t";
  std::string                safe;
  double                     number = 0.0;
  if (isText && BeginsFormula(text) && !ReadDouble(text, number)) safe += '\'';
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(kKept), text.size());
    safe += Printable(text.substr(0, end));
    safe += text.substr(end, 1);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return safe;
}

}  // namespace

std::string CsvCell(std::string_view cell, bool isText)
{
  const std::string text = CsvText(cell, isText);
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

void AppendCsvCell(std::string& line, std::string_view cell, bool isText)
{
  // Most cells are what they are.
  const bool isBare = IsPlain(cell) && cell.find_first_of(",\"") == std::string_view::npos;
  if (isBare && !(isText && BeginsFormula(cell)))
    line += cell;
  else
    line += CsvCell(cell, isText);
}

}  // namespace quilon
