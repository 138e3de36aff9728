#include "database/MemoryLimit.h"

#include <charconv>
#include <limits>
#include <string>
#include <system_error>

#include <bundled/FED_ResultDatabase.h>

#include "text/Failure.h"

namespace quilon {

namespace {

// Of the program, like what signals have told it.
std::size_t allowed = FED_ResultDatabaseOptions::kUsualLimit;

/// @return how many bits the unit shifts by, -1 for none
int ShiftOf(std::string_view unit) noexcept
{
  constexpr std::string_view kUnits = "KMG";
  if (unit.empty() || unit == "B") return 0;
  const std::size_t at =
      kUnits.find(unit[0] >= 'a' && unit[0] <= 'z' ? static_cast<char>(unit[0] - 'a' + 'A') : unit[0]);
  const auto rest = unit.substr(1);
  if (at == std::string_view::npos || !(rest.empty() || rest == "B" || rest == "iB")) return -1;
  return 10 * (static_cast<int>(at) + 1);
}

}  // namespace

MemoryLimit::MemoryLimit(std::size_t bytes) noexcept : former_(allowed) { allowed = bytes; }

MemoryLimit::~MemoryLimit() { allowed = former_; }

std::size_t MemoryLimit::Get() noexcept { return allowed; }

std::size_t MemoryLimit::GetOr(std::size_t usual) noexcept
{
  return allowed == FED_ResultDatabaseOptions::kUsualLimit ? usual : allowed;
}

std::size_t MemoryLimit::Parse(std::string_view text)
{
  std::size_t number      = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const int shift = error == std::errc() ? ShiftOf(text.substr(static_cast<std::size_t>(end - text.data()))) : -1;
  if (shift < 0 || number > std::numeric_limits<std::size_t>::max() >> shift ||
      number << shift == FED_ResultDatabaseOptions::kUsualLimit)
    Fail("size is '" + std::string(text) + "', expected a number of bytes such as 64M or 1G");
  return number << shift;
}

}  // namespace quilon
