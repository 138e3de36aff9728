#pragma once

/// @file
/// What the tests of the solver's file readers share.

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "QuilonUtilities/FED_Failure.h"

namespace quilon_test {

/// @return the message of the FED_Failure that a call ends with, "no failure" when it does not fail
template <class Call>
std::string FailureOf(Call&& call)
{
  try {
    call();
  } catch (const FED_Failure& failure) {
    return failure.GetMessage();
  }
  return "no failure";
}

/// A number as a message or a log of a test shows it: the shortest text that reads back to the same bits.
inline std::string Short(double value)
{
  char       text[32];
  const auto end = std::to_chars(text, text + sizeof text, value).ptr;
  return {text, end};
}

/// Replaces the only place where old stands; a test that misses it says so by an unchanged text.
inline std::string Replaced(std::string text, const std::string& old, const std::string& now)
{
  const std::size_t at = text.find(old);
  return at == std::string::npos ? text : text.replace(at, old.size(), now);
}

/// @return a whole file of the fixtures
inline std::string Fixture(const std::string& name)
{
  std::ifstream in(std::filesystem::path(QUILON_FIXTURES) / "calculix" / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// Whether a message names a file and a line: "NAME:12: ...".
inline bool NamesLine(const std::string& message, const std::string& name)
{
  if (message.rfind(name + ":", 0) != 0) return false;
  const std::size_t first = name.size() + 1;
  const std::size_t end   = message.find_first_not_of("0123456789", first);
  return end != std::string::npos && end > first && message.compare(end, 2, ": ") == 0;
}

}  // namespace quilon_test
