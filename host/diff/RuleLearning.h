#pragma once

/// @file
/// Rules from runs that are accepted as equal.

#include <map>
#include <string>

#include "diff/DatabaseComparison.h"
#include "kinds/KindTable.h"

namespace quilon::diff {

/// Gathers how far accepted runs are apart and writes the rules that let them pass.
///
/// Each block counts by the largest of its |a - b|: as a fraction of the block's peak where that is at most a
/// hundredth, else as it is, for a block whose difference is of the size of its values holds nothing but noise. A kind
/// gets the largest of both over all its blocks, times a factor, as "peak=... abs=... any"; a kind without any
/// difference gets "abs=0".
class RuleLearner
{
public:
  /// @param kinds  what the rules call kinds by: those of the first run. Borrowed.
  /// @param factor at least 1
  RuleLearner(const KindTable& kinds, double factor, bool modeSign)
      : kinds_(kinds), factor_(factor), modeSign_(modeSign)
  {}

  /// @param outcome     of comparing under GetRules()
  /// @param kinds       of the first of the two
  /// @param description of the pair, for messages
  /// @throws FED_Failure where the runs differ in more than numbers: in blocks, records, integers, texts or NaNs
  void Add(const DatabaseOutcome& outcome, const KindTable& kinds, const std::string& description);

  /// @return what to compare accepted runs by: numbers may differ as they like
  RuleSet GetRules() const;

  /// @param head comment lines for the beginning
  /// @return the text of a rules file
  std::string WriteRules(const std::string& head) const;

private:
  struct Noise
  {
    double peak = 0.0;
    double abs  = 0.0;
  };

  const KindTable&     kinds_;
  double               factor_;
  bool                 modeSign_;
  std::map<int, Noise> noise_;
};

}  // namespace quilon::diff
