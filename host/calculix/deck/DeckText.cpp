#include "calculix/deck/DeckText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "text/Case.h"
#include "text/ColumnText.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kNumberCharacters = 20;

bool IsBlank(char c) noexcept { return c == ' ' || c == '\t'; }

std::string_view Trimmed(std::string_view text) noexcept
{
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// @return the text behind a word in front of it, blanks inside and case ignored; nothing when the word is not there
std::optional<std::string_view> Behind(std::string_view text, std::string_view upperWord) noexcept
{
  std::size_t at = 0;
  for (const char expected : upperWord) {
    while (at < text.size() && IsBlank(text[at])) ++at;
    if (at == text.size() || ToUpper(text[at]) != expected) return std::nullopt;
    ++at;
  }
  return Trimmed(text.substr(at));
}

/// @return what stands between double quotes, or all of a value that does not begin with one; nothing without the
///         closing quote
std::optional<std::string_view> PathIn(std::string_view value) noexcept
{
  if (value.empty() || value.front() != '"') return value;
  const std::size_t end = value.find('"', 1);
  if (end == std::string_view::npos) return std::nullopt;
  return Trimmed(value.substr(1, end - 1));  // what follows is nothing to the solver
}

/// @return whether from_chars() reads a number here and nothing that is not finite
bool BeginsNumber(std::string_view text) noexcept
{
  if (!text.empty() && text.front() == '-') text.remove_prefix(1);
  return !text.empty() && (IsDigit(text.front()) || text.front() == '.');
}

}  // namespace

DeckLineKind KindOfDeckLine(std::string_view line) noexcept
{
  std::size_t at = 0;
  while (at < line.size() && IsBlank(line[at])) ++at;
  if (at == line.size()) return DeckLineKind::Blank;
  if (line[at] != '*') return DeckLineKind::Data;
  ++at;
  while (at < line.size() && IsBlank(line[at])) ++at;
  if (at < line.size() && line[at] == '*') return DeckLineKind::Comment;
  // As with all keywords, what follows its letters is nothing to the solver.
  return Behind(line.substr(at), "INCLUDE") ? DeckLineKind::Include : DeckLineKind::Card;
}

std::string WithoutBlanks(std::string_view text)
{
  std::string result;
  result.reserve(text.size());
  std::copy_if(text.begin(), text.end(), std::back_inserter(result), [](char c) { return !IsBlank(c); });
  return result;
}

std::string Compact(std::string_view text)
{
  std::string result = WithoutBlanks(text);
  std::transform(result.begin(), result.end(), result.begin(), ToUpper);
  return result;
}

const DeckParameter* DeckCard::Find(std::string_view name) const noexcept
{
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [name](const auto& parameter) { return parameter.name == name; });
  return found == parameters.end() ? nullptr : &*found;
}

std::string_view DeckCard::ValueOf(std::string_view name) const noexcept
{
  const DeckParameter* parameter = Find(name);
  return parameter == nullptr ? std::string_view() : std::string_view(parameter->value);
}

DeckCard ParseDeckCard(std::string_view line)
{
  const std::string compact = Compact(line);
  DeckFields        fields(compact);
  std::string_view  field;
  DeckCard          card;
  if (fields.Next(field)) card.keyword = field.substr(field.starts_with('*') ? 1 : 0);
  while (fields.Next(field)) {
    if (field.empty()) continue;
    const std::size_t equals = field.find('=');
    DeckParameter     parameter;
    parameter.name = field.substr(0, equals);
    if (equals != std::string_view::npos) parameter.value = field.substr(equals + 1);
    card.parameters.push_back(std::move(parameter));
  }
  return card;
}

std::optional<DeckIncludePath> ParseDeckInclude(std::string_view line)
{
  // A comma may be part of the path, so that only the first ones part parameters.
  for (std::size_t comma = line.find(','); comma != std::string_view::npos; comma = line.find(',', comma + 1)) {
    auto value = Behind(line.substr(comma + 1), "INPUT=");
    if (!value) value = Behind(line.substr(comma + 1), "FILE=");
    if (!value) continue;
    const auto path = PathIn(*value);
    if (!path) return std::nullopt;
    return DeckIncludePath{WithoutBlanks(*path), std::string(*path)};
  }
  return std::nullopt;
}

bool DeckFields::Next(std::string_view& field) noexcept
{
  if (!hasMore_) return false;
  const std::size_t comma = rest_.find(',');
  field                   = Trimmed(rest_.substr(0, comma));
  if (comma != std::string_view::npos) {
    rest_.remove_prefix(comma + 1);
    return true;
  }
  hasMore_ = false;
  return !field.empty();
}

bool ReadDeckInteger(std::string_view field, int& value)
{
  const char* first       = field.data();
  const char* last        = first + field.size();
  int         read        = 0;
  const auto [end, error] = std::from_chars(first, last, read);
  if (error == std::errc() && end == last) {
    value = read;
    return true;
  }
  return ReadInteger(WithoutBlanks(field), value);
}

bool ReadDeckNumber(std::string_view field, double& value)
{
  double read = 0.0;
  if (BeginsNumber(field)) {
    const char* first       = field.data();
    const char* last        = first + field.size();
    const auto [end, error] = std::from_chars(first, last, read);
    if (error == std::errc() && end == last) {
      value = read;
      return true;
    }
  }
  if (!ReadDouble(WithoutBlanks(field), read) || !std::isfinite(read)) return false;
  value = read;
  return true;
}

bool IsCutBySolver(std::string_view field, double value)
{
  if (field.size() <= kNumberCharacters) return false;
  const std::string whole = WithoutBlanks(field);
  if (whole.size() <= kNumberCharacters) return false;
  // Digits behind the seventeenth are no loss, an exponent is.
  double cut = 0.0;
  return !ReadDeckNumber(std::string_view(whole).substr(0, kNumberCharacters), cut) ||
         std::abs(cut - value) > 1e-12 * std::abs(value);
}

}  // namespace quilon::calculix
