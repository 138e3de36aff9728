#pragma once

/// @file
/// Help that fits a terminal.

#include <cstddef>
#include <string>
#include <string_view>

namespace quilon {

/// Wraps what is wider than a terminal and leaves the rest as it is. Lines without an indent that follow each other are
/// a paragraph, except that "--" and "Usage:" begin a new one. An indented line is an entry: a name, two blanks or
/// more, and what it means, which goes on in lines of ten blanks or more. An entry without a meaning is a command line
/// of an example and goes on behind a backslash. Words longer than the line stick out.
/// @param width in bytes
std::string FitHelp(std::string_view text, std::size_t width = 80);

}  // namespace quilon
