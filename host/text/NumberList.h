#pragma once

/// @file
/// A few numbers between commas, as options take points and directions.

#include <span>
#include <string>
#include <string_view>

namespace quilon {

/// Reads "1,2.5,-3e2": finite numbers without blanks.
/// @return whether there are as many as are wanted and nothing else
bool ParseNumbers(std::string_view text, std::span<double> numbers);

/// The same of an option's text.
/// @throws FED_Failure "OPTION is 'TEXT', expected <expected>": "three numbers X,Y,Z", for example
void ParseNumbers(const std::string& option, const std::string& text, std::span<double> numbers,
                  const std::string& expected);

/// @return "1,2.5,-300", six digits each
std::string FormatNumbers(std::span<const double> numbers);

}  // namespace quilon
