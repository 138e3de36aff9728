#pragma once

/// @file
/// What the tests of the solver's file readers share.

#include <charconv>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

#include <gtest/gtest.h>

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

/// A change of a file and the message that it brings about.
struct Damage
{
  const char* old;
  const char* now;
  const char* message;
};

/// Makes each change by itself.
/// @param messageOf the reader's message for a text
template <class MessageOf>
void ExpectMessages(std::span<const Damage> damages, const std::string& file, MessageOf&& messageOf)
{
  for (const auto& [old, now, message] : damages) {
    const std::string text = Replaced(file, old, now);
    ASSERT_NE(text, file) << old;
    EXPECT_EQ(messageOf(text), message) << old << " -> " << now;
  }
}

/// Any damage ends in a message or in a file that is read to its end: nothing else is thrown, nothing runs away.
/// @param name of the file in messages
template <class MessageOf>
void DamageEachByte(const std::string& file, const std::string& name, MessageOf&& messageOf)
{
  for (std::size_t at = 0; at < file.size(); ++at) {
    for (const char byte : {' ', '9', '-', 'E', '\n', '\0', '\xff'}) {
      std::string text          = file;
      text[at]                  = byte;
      const std::string message = messageOf(text);
      ASSERT_TRUE(message == "no failure" || NamesLine(message, name)) << at << ": " << message;
    }
  }
}

}  // namespace quilon_test
