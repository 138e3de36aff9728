#pragma once

/// @file
/// Names that are nearly right.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quilon {

/// How many insertions, deletions, replacements and swaps of neighbours turn one word into the other (the restricted
/// Damerau-Levenshtein distance: no place is edited twice).
std::size_t EditDistance(std::string_view a, std::string_view b);

/// @return ", did you mean 'x'?" for the candidate nearest to the word, the first of equals; empty when none is near: a
///         third of the word's letters, at least one, may be wrong
std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates);

/// Finds what a user means by a name, whose case does not matter.
/// @param known names in lower case
/// @param wrong "is no colour map", for example
/// @return the position of the name among those known
/// @throws FED_Failure "'NAME' <wrong>" with the nearest name, or else ", expected <expected>"
std::size_t FindName(const std::string& name, const std::vector<std::string>& known, const std::string& wrong,
                     const std::string& expected);

}  // namespace quilon
