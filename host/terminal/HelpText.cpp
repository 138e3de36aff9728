#include "terminal/HelpText.h"

#include <algorithm>
#include <vector>

#include "text/Format.h"

namespace quilon {

namespace {

using Lines = std::vector<std::string_view>;

/// Blanks that a line of a meaning begins with at least.
constexpr std::size_t kContinuation = 10;

std::size_t IndentOf(std::string_view line) { return std::min(line.find_first_not_of(' '), line.size()); }

/// Where meanings of options begin: a name that ends right before has but one blank behind it.
constexpr std::size_t kMeaningOfOptions = 30;

/// @return where the meaning of an entry begins; 0 without one
std::size_t MeaningOf(std::string_view line)
{
  const bool isOption = line.starts_with("  -") && line.size() > kMeaningOfOptions;
  if (isOption && line[kMeaningOfOptions - 1] == ' ' && line[kMeaningOfOptions] != ' ') return kMeaningOfOptions;
  const std::size_t gap = line.find("  ", IndentOf(line));
  return gap == std::string_view::npos ? 0 : std::min(line.find_first_not_of(' ', gap), line.size());
}

std::size_t WordLength(std::string_view words) { return std::min(words.find(' '), words.size()); }

/// @return the length of the first word, with the one behind it where that is the value of an option
std::size_t ArgumentLength(std::string_view words)
{
  const std::size_t length = WordLength(words);
  if (words.front() != '-' || length == words.size() || words[length + 1] == '-') return length;
  return length + 1 + WordLength(words.substr(length + 1));
}

/// Appends words in lines of this width.
/// @param line   what stands in the first line already
/// @param indent blanks before the further lines
/// @param end    behind each line that goes on; of a command line, where options keep their values
void Wrap(std::string_view words, std::string line, std::size_t indent, std::size_t width, std::string_view end,
          std::string& text)
{
  bool isEmpty = line.size() <= indent;
  while (!words.empty()) {
    const std::size_t      length = end.empty() ? WordLength(words) : ArgumentLength(words);
    const std::string_view word   = words.substr(0, length);
    words.remove_prefix(std::min(words.find_first_not_of(' ', length), words.size()));
    const std::size_t room = width - (words.empty() ? 0 : end.size());
    if (!isEmpty && line.size() + 1 + word.size() > room) {
      text.append(line).append(end) += '\n';
      line.assign(indent, ' ');
      isEmpty = true;
    }
    if (!isEmpty) line += ' ';
    line += word;
    isEmpty = false;
  }
  text += line + '\n';
}

std::string Joined(const Lines& lines)
{
  std::string joined;
  for (const std::string_view line : lines) joined.append(joined.empty() ? "" : " ").append(Trimmed(line));
  return joined;
}

void WrapEntry(const Lines& lines, std::size_t width, std::string& text)
{
  const std::string_view head    = lines.front();
  const std::size_t      meaning = MeaningOf(head);
  if (meaning == 0 && lines.size() == 1) {
    constexpr std::size_t kMoreIndent = 4;
    const std::size_t     indent      = IndentOf(head);
    return Wrap(head.substr(indent), std::string(indent, ' '), indent + kMoreIndent, width, " \\", text);
  }
  if (meaning == 0) {
    // A name that leaves no room for its meaning.
    text.append(head) += '\n';
    const std::size_t indent = IndentOf(lines[1]);
    return Wrap(Joined({lines.begin() + 1, lines.end()}), std::string(indent, ' '), indent, width, "", text);
  }
  Lines meanings = lines;
  meanings.front().remove_prefix(meaning);
  Wrap(Joined(meanings), std::string(head.substr(0, meaning)), meaning, width, "", text);
}

/// Lines that are wrapped as one.
void Append(const Lines& lines, std::size_t width, std::string& text)
{
  const bool fits = std::all_of(lines.begin(), lines.end(), [width](auto line) { return line.size() <= width; });
  if (fits)
    for (const std::string_view line : lines) text.append(line) += '\n';
  else if (lines.front().front() == ' ')
    WrapEntry(lines, width, text);
  else
    Wrap(Joined(lines), "", 0, width, "", text);
}

/// @return whether the line goes on with what the lines before it began
bool Continues(const Lines& lines, std::string_view line)
{
  if (lines.empty() || line.empty() || lines.front().empty()) return false;
  if (lines.front().front() == ' ') return IndentOf(line) >= kContinuation;
  return line.front() != ' ' && !line.starts_with("--") && !line.starts_with("Usage:");
}

}  // namespace

std::string FitHelp(std::string_view text, std::size_t width)
{
  std::string fitted;
  Lines       lines;
  while (!text.empty()) {
    const std::size_t      end  = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!lines.empty() && !Continues(lines, line)) {
      Append(lines, width, fitted);
      lines.clear();
    }
    if (line.empty())
      fitted += '\n';
    else
      lines.push_back(line);
  }
  if (!lines.empty()) Append(lines, width, fitted);
  return fitted;
}

}  // namespace quilon
