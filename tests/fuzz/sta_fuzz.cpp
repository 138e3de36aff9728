// Any bytes as a .sta file: they are read to their end or refused with a FED_Failure. There is a row for each line that
// is not blank, with the line's number, and its columns say what the row says when they are read another way.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "calculix/StaReader.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

void Require(bool holds)
{
  if (!holds) std::abort();
}

/// Lines without their ends; a carriage return before a line feed belongs to the end.
std::vector<std::string> LinesOf(const std::string& text)
{
  std::vector<std::string> lines;
  std::istringstream       in(text);
  for (std::string line; std::getline(in, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

/// A number of a row as the C library reads it, which knows no exponent behind a 'D'.
bool Says(const std::string& line, std::size_t begin, std::size_t size, double value)
{
  std::string text = line.substr(begin, size);
  for (char& character : text)
    if (character == 'D' || character == 'd') character = 'e';
  char*        end  = nullptr;
  const double read = std::strtod(text.c_str(), &end);
  return end != text.c_str() && std::memcmp(&read, &value, sizeof read) == 0;
}

void CheckRow(const std::vector<std::string>& lines, const quilon::calculix::StaRow& row)
{
  Require(row.line >= 3 && static_cast<std::size_t>(row.line) <= lines.size());
  const std::string& line = lines[static_cast<std::size_t>(row.line) - 1];
  Require(line.size() >= 71 && row.converged == (line[23] != 'U'));
  Require(std::atoi(line.substr(2, 5).c_str()) == row.step && std::atoi(line.substr(8, 10).c_str()) == row.increment);
  Require(std::atoi(line.substr(19, row.converged ? 5 : 4).c_str()) == row.attempt);
  Require(Says(line, 31, 13, row.totalTime) && Says(line, 45, 13, row.stepTime));
  Require(Says(line, 59, 13, row.incrementTime));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  const std::string  text(reinterpret_cast<const char*>(data), size);
  std::istringstream in(text);
  try {
    const auto   rows   = quilon::calculix::ReadSta(in, "fuzz.sta");
    const auto   lines  = LinesOf(text);
    std::int64_t former = 2;
    for (const quilon::calculix::StaRow& row : rows) {
      Require(row.line > former);
      former = row.line;
      CheckRow(lines, row);
    }
  } catch (const FED_Failure& failure) {
    if (failure.GetMessage().rfind("fuzz.sta:", 0) != 0) std::abort();
  }
  return 0;
}
