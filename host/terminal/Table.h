#pragma once

/// @file
/// Tables on standard output.

#include <cstddef>
#include <string>
#include <vector>

namespace quilon {

class Output;

enum class TableStyle
{
  Aligned,  ///< for people: columns padded, two blanks between them
  Plain,    ///< for programs: cells separated by tabs
  Csv       ///< RFC 4180: cells separated by commas, quoted where they need it; line feeds end the lines
};

struct TableColumn
{
  std::string name;
  bool        isText = false;  ///< texts stand to the left, numbers to the right
};

/// Writes a table row by row, its header first.
///
/// An aligned table is held back until its widths are known; beyond kRowsHeld rows the widths of these stand and a
/// wider cell sticks out.
class TableWriter
{
public:
  static constexpr std::size_t kRowsHeld = 4096;

  /// @param bold whether the header of an aligned table is bold
  TableWriter(Output& output, TableStyle style, bool bold, std::vector<TableColumn> columns);

  /// @param cells one for each column
  void Row(std::vector<std::string> cells);

  /// Writes what is held back. A table without rows has its header.
  void Finish();

private:
  void WriteHeld();
  void WriteRow(const std::vector<std::string>& cells, bool bold);

  Output&                               output_;
  TableStyle                            style_;
  bool                                  bold_;
  std::vector<TableColumn>              columns_;
  std::vector<std::size_t>              widths_;  // empty until known
  std::vector<std::vector<std::string>> held_;
};

}  // namespace quilon
