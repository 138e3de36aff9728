#pragma once

/// @file
/// The keywords that the solver knows.

#include <string>
#include <string_view>
#include <vector>

namespace quilon::calculix {

/// A keyword card that the solver knows.
struct DeckKeyword
{
  /// What the card is to a model.
  enum Role : int
  {
    Other,
    Procedure,  ///< says what a step computes
    Property,   ///< numbers of a material
    Section,    ///< what the elements of a set are made of
    Load        ///< belongs to a step, as a procedure does
  };

  const char* name;  ///< upper case, without blanks
  Role        role = Other;
};

/// The solver compares as many characters as its keyword has: "STATICS" is STATIC to it.
/// @param name without asterisk and blanks, upper case
/// @return the longest keyword that the name begins with, null when there is none
const DeckKeyword* FindDeckKeyword(std::string_view name) noexcept;

/// @return ", did you mean 'x'?" for a keyword that is nearly right, else nothing
std::string SuggestDeckKeyword(std::string_view name);

}  // namespace quilon::calculix
