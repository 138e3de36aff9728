// Any bytes as a file of combinations. What is accepted has finite factors, each load case once and in order, and means
// the same when it is written without names.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "answers/CombinationFile.h"
#include "QuilonUtilities/FED_Failure.h"
#include "text/Format.h"

namespace {

using quilon::CaseName;
using quilon::Combination;

void RequireOrdered(const std::vector<Combination>& combinations)
{
  std::set<std::string> names;
  std::set<int>         loadCases;
  for (const Combination& combination : combinations) {
    if (!names.insert(combination.name).second || !loadCases.insert(combination.loadCase).second) std::abort();
    if (combination.terms.empty()) std::abort();
    for (std::size_t i = 0; i < combination.terms.size(); ++i) {
      if (!std::isfinite(combination.terms[i].factor)) std::abort();
      if (i > 0 && !(combination.terms[i - 1].loadCase < combination.terms[i].loadCase)) std::abort();
    }
  }
}

std::string Rewritten(const std::vector<Combination>& combinations)
{
  // A mark of bytes in order belongs to the name that it precedes, unless the file begins with it.
  std::string text = "# again\n";
  for (const Combination& combination : combinations) {
    text += combination.name + " [" + std::to_string(combination.loadCase) + "] = ";
    const char* before = "";
    for (const Combination::Term& term : combination.terms) {
      text += (std::signbit(term.factor) ? "-" : before) + quilon::FormatNumber(std::abs(term.factor)) + '*' +
              term.loadCase.ToString();
      before = "+";
    }
    text += '\n';
  }
  return text;
}

bool IsSame(const std::vector<Combination>& a, const std::vector<Combination>& b)
{
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Combination& left, const Combination& right) {
    return left.name == right.name && left.loadCase == right.loadCase &&
           std::equal(left.terms.begin(), left.terms.end(), right.terms.begin(), right.terms.end(),
                      [](const Combination::Term& one, const Combination::Term& other) {
                        return one.factor == other.factor && one.loadCase == other.loadCase;
                      });
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  std::istringstream       in(std::string(reinterpret_cast<const char*>(data), size));
  std::vector<Combination> combinations;
  try {
    combinations = quilon::ReadCombinations(in, "fuzz");
  } catch (const FED_Failure&) {
    return 0;  // what is refused is told: that is all there is to it
  }
  RequireOrdered(combinations);
  std::istringstream again(Rewritten(combinations));
  if (!IsSame(combinations, quilon::ReadCombinations(again, "again"))) std::abort();
  return 0;
}
