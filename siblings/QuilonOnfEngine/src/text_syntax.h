#pragma once

/// @file
/// What the header of a block and the index have in common.

#include <string>
#include <string_view>

class TextCursor;

/// Stands in front of the name of an index whose mask bit is clear.
constexpr const char* kUnsetPrefix = "unset ";

/// Fails with 'expected the key "<expected>", found "<key>"'; an empty key means that the line has none.
[[noreturn]] void FailMissingKey(TextCursor& in, std::string_view key, const std::string& expected);

/// Reads "key:" and fails when the line begins with anything else.
void ReadRequiredKey(TextCursor& in, const std::string& key);

/// Reads the first line of a file, "key: version". A version newer than the one known is a failure that names both.
void ReadVersion(TextCursor& in, const std::string& key, int knownVersion);
