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
    Section     ///< what the elements of a set are made of
  };

  const char* name;  ///< upper case, without blanks
  Role        role = Other;
};

/// @param name without asterisk and blanks, upper case
/// @return null for a keyword that is not known
const DeckKeyword* FindDeckKeyword(std::string_view name) noexcept;

/// @return ", did you mean 'x'?" for a keyword that is nearly right, else nothing
std::string SuggestDeckKeyword(std::string_view name);

}  // namespace quilon::calculix
