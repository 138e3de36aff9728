#include "groups_text.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "text_cursor.h"

namespace {

using Group = OnfGroupsFile::Group;
using Range = OnfGroupsFile::Range;

constexpr std::string_view kBlanks = " \t\r";

std::string_view WithoutComment(std::string_view line)
{
  line = line.substr(0, line.find('#'));
  return line.substr(0, line.find_last_not_of(kBlanks) + 1);
}

/// Takes a positive integer from the front of a word.
/// @return false when there is none
bool TakeInteger(std::string_view& word, int& value)
{
  const auto result = std::from_chars(word.data(), word.data() + word.size(), value);
  if (result.ec != std::errc() || value <= 0) return false;
  word.remove_prefix(static_cast<std::size_t>(result.ptr - word.data()));
  return true;
}

/// Takes a character and a positive integer behind it, when the word goes on with that character.
bool TakeOptional(std::string_view& word, char sign, int& value)
{
  if (word.empty() || word.front() != sign) return true;
  word.remove_prefix(1);
  return TakeInteger(word, value);
}

/// @param word "7", "7-12" or "7-12:2"
Range ReadRange(const TextCursor& in, std::string_view word)
{
  Range            range;
  std::string_view rest = word;
  bool             good = TakeInteger(rest, range.first);
  range.last            = range.first;
  const bool isOne      = rest.empty() || rest.front() != '-';
  good                  = good && TakeOptional(rest, '-', range.last);
  good                  = good && (isOne || TakeOptional(rest, ':', range.step));
  if (!good || !rest.empty())
    in.Fail("expected an id, FIRST-LAST or FIRST-LAST:STEP of positive 32-bit integers, found " +
            QuoteForMessage(word));
  if (range.last < range.first)
    in.Fail("expected a range whose last id is not below its first, found " + QuoteForMessage(word));
  return range;
}

void ReadIds(const TextCursor& in, std::string_view line, Group& group)
{
  while (!line.empty()) {
    const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
    group.ranges.push_back(ReadRange(in, word));
    line.remove_prefix(word.size());
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
  }
}

/// @return the name behind the keyword, empty when the line begins with anything else
std::string_view ReadName(const TextCursor& in, std::string_view keyword, std::string_view line)
{
  if (line.substr(0, line.find_first_of(kBlanks)) != keyword) return {};
  if (line == keyword) in.Fail("expected a name behind " + QuoteForMessage(keyword));
  return line.substr(line.find_first_not_of(kBlanks, keyword.size()));
}

}  // namespace

std::vector<Group> ReadGroups(TextCursor& in)
{
  std::vector<Group>                                                       groups;
  std::map<std::pair<OnfGroupsFile::EntityKind, std::string>, std::string> places;  // of the heads
  while (!in.AtEnd()) {
    const std::string_view line     = WithoutComment(in.ReadRestOfLine());
    const std::string_view nodes    = ReadName(in, "nodes", line);
    const std::string_view elements = ReadName(in, "elements", line);
    if (!nodes.empty() || !elements.empty()) {
      Group group;
      group.kind                = nodes.empty() ? OnfGroupsFile::Elements : OnfGroupsFile::Nodes;
      group.name                = nodes.empty() ? elements : nodes;
      group.place               = in.GetPlace();
      const auto [known, isNew] = places.try_emplace({group.kind, group.name}, group.place);
      if (!isNew)
        in.Fail("expected a new name, " + QuoteForMessage(group.name) + " is a group already, at " + known->second);
      groups.push_back(std::move(group));
    } else if (!line.empty()) {
      if (groups.empty()) in.Fail("expected \"nodes NAME\" or \"elements NAME\", found " + QuoteForMessage(line));
      ReadIds(in, line, groups.back());
    }
    if (!in.AtEnd()) in.ReadLineEnd();  // the last line may lack its line feed
  }
  return groups;
}
