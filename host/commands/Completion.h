#pragma once

/// @file
/// What may stand at a place of the command line, for the shells.

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quilon {

struct Completions
{
  struct Candidate
  {
    std::string word;     ///< the whole word
    std::string meaning;  ///< may be empty
  };
  std::vector<Candidate> candidates;
  bool                   files = false;  ///< a path may stand there, too
};

/// @param words behind the program's name; the last one is being written and may be empty
/// @return commands, options, words that an option takes, and of the database that the words name (a working database
///         or an ONF folder: result files are not read for it) kinds, components, keys, steps, times, sets and
///         materials. They begin with what is written of the last word.
/// @throws FED_Failure when the database cannot be read
Completions Complete(const CLI::App& app, const std::vector<std::string>& words);

/// Completions as the scripts of packaging/completions/ read them: a line for each candidate, a tab before its meaning;
/// ":files" as the last line. Candidates with control characters are left out.
std::string ToText(const Completions& completions);

}  // namespace quilon
