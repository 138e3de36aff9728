#pragma once

/// @file
/// What `quilon diff` does, for programs: two databases compared, rules learnt from accepted runs.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "database/Readers.h"
#include "diff/ComparisonRule.h"
#include "diff/RecordMatching.h"
#include "diff/Report.h"

class FED_Database;

namespace quilon {
class DatabaseParts;
class Listener;
}  // namespace quilon

namespace quilon::diff {

/// A database that takes part. Borrowed.
struct NamedDatabase
{
  const FED_Database& database;
  std::string         name;          ///< for messages and the report
  Readers             readers = {};  ///< see ComparedDatabase
};

/// Which blocks take part, and what stands for what.
struct MatchOptions
{
  std::string selection;  ///< KIND,...@KEY=VALUES,... as a Selection takes it; empty: all blocks
  std::string steps;      ///< result steps by position, as Selection::SetSteps() takes them; empty: all steps

  /// Where either is set, result steps are matched by their position among those that are kept, whatever their keys.
  std::string stepsA;
  std::string stepsB;
  /// Steps whose times are at most so far apart are one, whatever their keys; 0 or more. Goes with positions as a
  /// choice.
  std::optional<double> timeTolerance;
  /// Whether a step of A that finds none by its time is compared with what lies between two steps of B.
  bool interpolates = false;

  RecordMatcher::Mode   records = RecordMatcher::ById;
  std::optional<double> pointTolerance;  ///< nodes at most so far apart are one, whatever their ids; 0 or more
};

/// Histories take no part where steps are matched by positions or times: they stand for all steps of a load case.
struct CompareOptions
{
  MatchOptions match;

  /// For all kinds, in place of that of the file; one without tolerances changes what the file says of NaNs and signs.
  std::optional<ComparisonRule> rule;
  std::filesystem::path         ruleFile;   ///< empty: none
  std::vector<std::string>      kindRules;  ///< "KIND,...: TERMS"; stand above all others

  /// Whether blocks and records that one of the two lacks are no difference. They are told all the same.
  bool ignoresMissingInA = false;
  bool ignoresMissingInB = false;

  std::size_t maxRecords = 10;  ///< of one block in the report
  std::size_t maxBlocks  = 10;  ///< with differences in the report

  bool allNorms = true;  ///< whether norms of blocks without a difference are wanted; without, they may be 0

  /// Gets B - A of what is compared, see DifferenceWriter; borrowed; null: nothing.
  FED_Database*  difference = nullptr;
  DatabaseParts* parts      = nullptr;  ///< of it, where several may write it; borrowed

  Listener* listener = nullptr;  ///< borrowed; may be null
};

/// Compares two databases.
///
/// Memory: a number per record and database, and the rows that the databases keep in memory themselves.
/// @throws FED_Failure for options that make no sense or do not fit the databases, such as a selection of which neither
///         has a block, and what reading the databases throws
Report Compare(const NamedDatabase& a, const NamedDatabase& b, const CompareOptions& options);

struct LearnOptions
{
  MatchOptions match;
  double       factor   = 10.0;  ///< what differences are multiplied by, at least 1
  bool         modeSign = false;
  Listener*    listener = nullptr;  ///< borrowed; may be null
};

/// Learns rules from runs that are accepted as equal, see RuleLearner.
/// @param runs two or more
/// @return the text of a rules file
/// @throws FED_Failure where the runs differ in more than numbers
std::string LearnRules(const std::vector<NamedDatabase>& runs, const LearnOptions& options);

}  // namespace quilon::diff
