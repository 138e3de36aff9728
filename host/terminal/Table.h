#pragma once

/// @file
/// Tables on standard output.

#include <cstddef>
#include <string>
#include <string_view>
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
/// wider cell sticks out. One that is wider than it may be has one blank between columns; then its texts are cut, the
/// widest first and to no less than kLeastText characters; and where that is not enough, nothing is cut and rows and
/// header go on in further lines that begin with four blanks.
class TableWriter
{
public:
  static constexpr std::size_t kRowsHeld   = 4096;
  static constexpr std::size_t kLeastText  = 16;
  static constexpr std::size_t kUsualWidth = 80;

  /// @param bold  whether the header of an aligned table is bold
  /// @param width most characters of a line of an aligned table
  TableWriter(Output& output, TableStyle style, bool bold, std::vector<TableColumn> columns,
              std::size_t width = kUsualWidth);

  /// @param cells one for each column
  void Row(std::vector<std::string>&& cells);
  /// The same for who writes row after row with the same texts.
  void Row(const std::vector<std::string>& cells);

  /// Writes what is held back. A table without rows has its header.
  void Finish();

private:
  bool Holds() const noexcept { return style_ == TableStyle::Aligned && widths_.empty(); }
  void WriteHeld();
  void WriteRow(const std::vector<std::string>& cells, bool bold);
  void AppendAligned(const std::vector<std::string>& cells);
  void AppendCell(std::string_view cell, std::size_t column, bool isLast);
  void FitWidths();

  Output&                               output_;
  TableStyle                            style_;
  bool                                  bold_;
  std::vector<TableColumn>              columns_;
  std::size_t                           width_;
  std::vector<std::size_t>              widths_;             // empty until known
  std::size_t                           gap_       = 2;      // blanks between columns
  bool                                  cutsTexts_ = false;  // to their widths
  std::vector<bool>                     begins_;             // whether a column begins a line
  std::vector<std::vector<std::string>> held_;
  std::string                           line_;  // that is written
};

}  // namespace quilon
