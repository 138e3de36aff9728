#pragma once

/// @file
/// A rule for each kind of result.

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "diff/ComparisonRule.h"

namespace quilon::diff {

/// Finds the ONF id of a kind that a user wrote; throws FED_Failure for one that nobody knows.
using KindResolver = std::function<int(std::string_view)>;

/// The rules of one comparison. Scalar histories go by the ONF id of their quantity.
class RuleSet
{
public:
  /// The rule of kinds that have none of their own.
  ComparisonRule fallback;

  /// Takes "KIND,KIND: TERMS"; "*" for the kinds, or terms alone, mean the fallback. A rule replaces the kind's former
  /// one.
  /// @param where in front of messages: "FILE:LINE: " or empty
  void Add(std::string_view line, const KindResolver& resolve, const std::string& where);

  /// Takes every line of a rules file. Empty lines and what follows a "#" say nothing.
  /// @param name of the file, for messages
  /// @throws FED_Failure for a line that is no rule, naming file and line
  void AddText(std::string_view text, const KindResolver& resolve, const std::string& name);

  /// @return the kind's rule, with the fallback's treatment of NaNs and of signs where it has none
  ComparisonRule Find(int kind) const;

private:
  std::map<int, ComparisonRule> byKind_;
};

/// Reads a rules file into the set.
void ReadRuleFile(const std::filesystem::path& file, const KindResolver& resolve, RuleSet& rules);

}  // namespace quilon::diff
