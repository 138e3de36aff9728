#include "text/Suggestion.h"

#include <algorithm>

#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

std::size_t EditDistance(std::string_view a, std::string_view b)
{
  // Three rows of the table of distances between the first i letters of a and the first j letters of b.
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    beforeLast.swap(last);
    last.swap(row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      row[j]                     = std::min({replaced, last[j] + 1, row[j - 1] + 1});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
  }
  return row[b.size()];
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates)
{
  const std::size_t  limit    = std::max<std::size_t>(1, word.size() / 3);
  std::size_t        distance = limit + 1;
  const std::string* nearest  = nullptr;
  for (const std::string& candidate : candidates) {
    // Lengths that differ by more than the limit cannot be near, and need no table.
    if (candidate.size() > word.size() + limit || word.size() > candidate.size() + limit) continue;
    const std::size_t found = EditDistance(word, candidate);
    if (found < distance && found < candidate.size()) {
      distance = found;
      nearest  = &candidate;
    }
  }
  return nearest == nullptr ? std::string() : ", did you mean '" + *nearest + "'?";
}

std::size_t FindName(const std::string& name, const std::vector<std::string>& known, const std::string& wrong,
                     const std::string& expected)
{
  const std::string word  = LowerCase(name);
  const auto        found = std::find(known.begin(), known.end(), word);
  if (found != known.end()) return static_cast<std::size_t>(found - known.begin());
  const std::string suggestion = DidYouMean(word, known);
  Fail("'" + name + "' " + wrong + (suggestion.empty() ? ", expected " + expected : suggestion));
}

}  // namespace quilon
