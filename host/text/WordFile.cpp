#include "text/WordFile.h"

#include "text/ColumnText.h"

namespace quilon {

WordFile::WordFile(std::istream& in, const std::string& name, char comment, const ReadProgress& progress)
    : name_(name), file_(in, name, progress), comment_(comment)
{}

int WordFile::GetInteger(std::size_t i, const char* what, int least, int greatest) const
{
  int value = 0;
  if (!ReadInteger(words_[i], value) || value < least || value > greatest)
    file_.Fail(std::string(what) + " is '" + Shown(words_[i]) + "', expected an integer from " + std::to_string(least) +
               " to " + std::to_string(greatest));
  return value;
}

double WordFile::GetDouble(std::size_t i, const char* what) const
{
  double value = 0.0;
  if (!ReadDouble(words_[i], value))
    file_.Fail(std::string(what) + " is '" + Shown(words_[i]) + "', expected a number");
  return value;
}

void WordFile::RequireWords(std::size_t count, const char* expected) const
{
  if (numWords_ != count) file_.FailExpected(expected);
}

void WordFile::RequireWholeLine() const
{
  if (!file_.IsWholeLine()) file_.Fail("the file ends within a line, expected a line end");
}

void WordFile::SplitLine()
{
  // Character by character: searching for one of several costs a call each.
  const auto             isBlank = [](char c) { return c == ' ' || c == '\t'; };
  const std::string_view text    = file_.Text();
  numWords_                      = 0;
  for (std::size_t at = 0; numWords_ < words_.size();) {
    while (at < text.size() && isBlank(text[at])) ++at;
    if (at == text.size()) return;
    const std::size_t first = at;
    while (at < text.size() && !isBlank(text[at])) ++at;
    words_[numWords_++] = text.substr(first, at - first);
  }
}

}  // namespace quilon
