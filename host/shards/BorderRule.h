#pragma once

/// @file
/// What becomes of records that several shards of a database have.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quilon {

/// A rule as users write it:
///
///     first            the record of the first shard that has it
///     average          that of all values averaged, from means, variances and counts of the shards
///     sum              the sum, added up in the order of the shards
///     union            lists of ids put together, ascending; all else has to be equal
///     must-agree TOL   the first; all numbers of the others within TOL of it, all else equal. Without TOL: equal
struct BorderRule
{
  enum Form : int
  {
    First,
    Average,
    Sum,
    Union,
    MustAgree
  };

  Form   form      = MustAgree;
  double tolerance = 0.0;  ///< of MustAgree
};

/// @throws FED_Failure for anything that is no rule
BorderRule ParseBorderRule(std::string_view text);

/// Finds the ONF id of a kind that a user wrote; throws FED_Failure for one that nobody knows.
using KindResolver = std::function<int(std::string_view)>;

/// The rules of a join. What makes up the model has a rule that fits it: coordinates and nodes of elements have to
/// agree, sets are united. Results have none until somebody says how they were cut.
class BorderRules
{
public:
  /// Takes "KIND,KIND: RULE"; "*" for the kinds, or a rule alone, mean all kinds without a rule of their own. A rule
  /// replaces the kind's former one.
  /// @throws FED_Failure for a line that is no rule
  void Add(std::string_view line, const KindResolver& resolve);

  /// @param kind scalar histories go by the ONF id of their quantity
  /// @return nothing for a kind that has none
  std::optional<BorderRule> Find(int kind) const;

private:
  std::map<int, BorderRule> byKind_;
  std::optional<BorderRule> fallback_;
};

/// @return the rule of a kind that makes up the model or tells of its time; nothing for results
std::optional<BorderRule> FindModelRule(int kind);

}  // namespace quilon
