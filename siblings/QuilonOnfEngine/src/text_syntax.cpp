#include "text_syntax.h"

#include "text_cursor.h"

void FailMissingKey(TextCursor& in, std::string_view key, const std::string& expected)
{
  const std::string wanted = "the key \"" + expected + "\"";
  if (key.empty()) in.FailExpected(wanted);
  in.Fail("expected " + wanted + ", found " + QuoteForMessage(key));
}

void ReadRequiredKey(TextCursor& in, const std::string& key)
{
  const std::string_view found = in.ReadKey();
  if (found != key) FailMissingKey(in, found, key);
}

void ReadVersion(TextCursor& in, const std::string& key, int knownVersion)
{
  ReadRequiredKey(in, key);
  const int version = in.ReadInteger();
  if (version > knownVersion)
    in.Fail("format version " + std::to_string(version) + " is newer than " + std::to_string(knownVersion) +
            ", the newest that this program reads");
  if (version < 1) in.Fail("format version is " + std::to_string(version) + ", expected 1 or more");
  in.ReadLineEnd();
}
