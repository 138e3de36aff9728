#pragma once

/// @file
/// Cells of CSV (RFC 4180).

#include <string>
#include <string_view>

namespace quilon {

/// @param isText whether it may hold any text: what a spreadsheet would take for a formula then begins with an
///               apostrophe
/// @return the cell, quoted where it needs it; what drives a terminal as its escape, but ends of lines and tabs
std::string CsvCell(std::string_view cell, bool isText);

/// Writes it behind a line.
void AppendCsvCell(std::string& line, std::string_view cell, bool isText);

}  // namespace quilon
