#pragma once

/// @file
/// Files of combinations of load cases.

#include <compare>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <string>
#include <vector>

namespace quilon {

/// A load case as a combination names it: "lc2", or "lc2/3" for its substep 3.
struct CaseName
{
  static constexpr int kLastSubstep = -1;

  int loadCase = 0;
  int substep  = kLastSubstep;

  auto operator<=>(const CaseName&) const = default;
  /// @return "lc2" or "lc2/3"
  std::string ToString() const;
};

/// A sum of load cases, each with a factor.
struct Combination
{
  struct Term
  {
    double       factor = 0.0;
    CaseName     loadCase;
    std::int64_t line = 0;  ///< of the file where the load case is first named
  };

  std::string       name;
  int               loadCase = 0;  ///< that it is written as
  std::vector<Term> terms;         ///< names of other combinations replaced; each load case once, in ascending order
  std::int64_t      line = 0;      ///< of the file
};

/// Reads combinations, one a line:
///
///     # blanks do not matter, and '#' begins a comment
///     DEAD       = 1.1*lc1 + lc2
///     ULS1 [101] = 1.35*DEAD - 1.5*lc3/4
///
/// A name begins with a letter or an underscore and goes on with those, digits and dots; letters count with their case.
/// A term is a load case or the name of any combination of the file, before or after it, times any number of factors.
/// In brackets stands the load case to write; without them it is 10000 and the combination's place in the file: 10001,
/// 10002, ... A term that is there twice counts twice.
/// @param name of the file, for messages
/// @return in the order of the file
/// @throws FED_Failure "NAME:LINE: what was expected" for anything else: a line that does not parse, a name or load
///         case to write that is there twice, a name that nothing defines, names that lead back to themselves, a factor
///         that is no finite number, a file without combinations
std::vector<Combination> ReadCombinations(std::istream& in, const std::string& name);
std::vector<Combination> ReadCombinations(const std::filesystem::path& path);

}  // namespace quilon
