#include "matrix/MatrixFacts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace quilon::matrix {

namespace {

void FindDiagonal(const std::vector<Entry>& entries, Facts& facts)
{
  for (const Entry& entry : entries) {
    if (entry.row != entry.column) continue;
    ++facts.numDiagonal;
    if (std::isnan(entry.value)) continue;
    facts.leastDiagonal    = facts.hasDiagonalRange ? std::min(facts.leastDiagonal, entry.value) : entry.value;
    facts.greatestDiagonal = facts.hasDiagonalRange ? std::max(facts.greatestDiagonal, entry.value) : entry.value;
    facts.hasDiagonalRange = true;
  }
}

void FindBandwidth(const std::vector<Entry>& entries, Facts& facts)
{
  for (const Entry& entry : entries) {
    if (entry.value == 0.0) {
      ++facts.numZeros;
      continue;
    }
    const std::int64_t distance = std::int64_t{entry.column} - entry.row;
    facts.upperBandwidth        = std::max(facts.upperBandwidth, distance);
    facts.lowerBandwidth        = std::max(facts.lowerBandwidth, -distance);
  }
}

void FindAsymmetry(std::vector<Entry> entries, Facts& facts)
{
  std::vector<Entry> transposed = entries;
  for (Entry& entry : transposed) std::swap(entry.row, entry.column);
  std::sort(entries.begin(), entries.end());
  std::sort(transposed.begin(), transposed.end());
  double largest    = 0.0;
  double difference = 0.0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].row != transposed[i].row || entries[i].column != transposed[i].column) return;
    const double here = std::abs(entries[i].value - transposed[i].value);
    if (std::isnan(here)) difference = here;
    difference = std::max(difference, here);
    largest    = std::max(largest, std::abs(entries[i].value));
  }
  facts.isPatternSymmetric = true;
  facts.asymmetry          = largest == 0.0 ? 0.0 : difference / largest;  // zeros may differ in their signs
}

char Mark(std::int64_t count, std::int64_t places)
{
  if (count == 0) return ' ';
  if (16 * count < places) return '.';
  if (4 * count < places) return ':';
  if (2 * count < places) return '+';
  return count < places ? '*' : '#';
}

/// Places of a grid cell along one side.
std::int64_t Extent(std::int64_t cell, std::int64_t numCells, std::int64_t size)
{
  const auto begin = [&](std::int64_t c) { return (c * size + numCells - 1) / numCells; };
  return begin(cell + 1) - begin(cell);
}

}  // namespace

Facts FindFacts(const RowView& rows)
{
  Facts facts;
  facts.numRows    = rows.NumRows();
  facts.numColumns = rows.NumColumns();
  facts.numValues  = rows.NumValues();
  for (std::int64_t row = 0; row < rows.NumRows(); ++row)
    if (rows.Begin(row) == rows.Begin(row + 1)) ++facts.numEmptyRows;

  const std::vector<Entry> entries  = rows.List();
  const bool               isSquare = facts.numRows == facts.numColumns;
  FindDiagonal(entries, facts);
  FindBandwidth(entries, facts);
  facts.symmetry = FindSymmetry(entries, isSquare);
  if (isSquare && facts.symmetry == Symmetry::General) FindAsymmetry(entries, facts);
  return facts;
}

std::vector<std::string> DrawPattern(const RowView& rows, int maxWidth, int maxHeight)
{
  const std::int64_t        width  = std::min<std::int64_t>(rows.NumColumns(), maxWidth);
  const std::int64_t        height = std::min<std::int64_t>(rows.NumRows(), maxHeight);
  std::vector<std::int64_t> counts(static_cast<std::size_t>(width * height));
  for (std::int64_t row = 0; row < rows.NumRows(); ++row)
    for (std::int64_t i = rows.Begin(row); i < rows.Begin(row + 1); ++i) {
      if (rows.Value(i) == 0.0) continue;
      const std::int64_t line = row * height / rows.NumRows();
      const std::int64_t mark = rows.Column(i) * width / rows.NumColumns();
      ++counts[static_cast<std::size_t>(line * width + mark)];
    }

  std::vector<std::string> picture;
  for (std::int64_t line = 0; line < height; ++line) {
    std::string text;
    for (std::int64_t mark = 0; mark < width; ++mark) {
      const std::int64_t places = Extent(line, height, rows.NumRows()) * Extent(mark, width, rows.NumColumns());
      text += Mark(counts[static_cast<std::size_t>(line * width + mark)], places);
    }
    picture.push_back(std::move(text));
  }
  return picture;
}

}  // namespace quilon::matrix
