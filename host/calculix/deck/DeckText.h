#pragma once

/// @file
/// The lines of a deck: kinds, keyword cards, fields and numbers, as the solver understands them.
///
/// Blanks and tabs mean nothing anywhere, not even inside numbers, and case means nothing outside of include paths.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quilon::calculix {

enum class DeckLineKind
{
  Blank,
  Comment,  ///< begins with "**"
  Include,  ///< an include statement
  Card,     ///< any other keyword card
  Data
};

DeckLineKind KindOfDeckLine(std::string_view line) noexcept;

/// @return the text without blanks and tabs
std::string WithoutBlanks(std::string_view text);

/// @return the text without blanks and tabs, ASCII letters in upper case
std::string Compact(std::string_view text);

struct DeckParameter
{
  std::string name;   ///< upper case
  std::string value;  ///< upper case, quotes kept; empty where there is none
};

/// A keyword card.
struct DeckCard
{
  std::string                keyword;  ///< upper case, without the asterisk and without blanks: "SOLIDSECTION"
  std::vector<DeckParameter> parameters;

  /// @return null when the card does not have the parameter
  const DeckParameter* Find(std::string_view name) const noexcept;
  /// @return the parameter's value; empty without the parameter
  std::string_view ValueOf(std::string_view name) const noexcept;
};

/// @param line of kind Card or Include
DeckCard ParseDeckCard(std::string_view line);

/// What an include statement names.
struct DeckIncludePath
{
  std::string asTheSolverReads;  ///< without blanks and double quotes; without them, quotes and commas belong to it
  std::string asWritten;         ///< with the blanks inside, without those around it and without the double quotes
};

/// @return nothing when the statement has no parameter INPUT (or FILE), or no quote that closes the path
std::optional<DeckIncludePath> ParseDeckInclude(std::string_view line);

/// Walks the fields of a data line: what stands between its commas, without the blanks around it. A comma at the end
/// of the line begins no field.
class DeckFields
{
public:
  explicit DeckFields(std::string_view line) noexcept : rest_(line) {}

  /// @return false when there is no field left
  bool Next(std::string_view& field) noexcept;

private:
  std::string_view rest_;
  bool             hasMore_ = true;
};

/// Reads a decimal integer, blanks inside allowed.
/// @return false, value untouched, for anything else and for a number past 32 bits
bool ReadDeckInteger(std::string_view field, int& value);

/// Reads a number: "1", ".3", "2.1E5", "2.1d5", "2.1+5", blanks inside allowed.
/// @return false, value untouched, for anything else, for what is not finite and for more than 64 characters in a form
///         that only Fortran knows
bool ReadDeckNumber(std::string_view field, double& value);

/// The solver reads the first twenty characters of a number.
/// @return whether it reads another number than the field holds
bool IsCutBySolver(std::string_view field, double value);

/// Lines longer than this are two lines to the solver.
inline constexpr std::size_t kLongestDeckLine = 1319;

}  // namespace quilon::calculix
