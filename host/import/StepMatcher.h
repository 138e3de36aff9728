#pragma once

/// @file
/// Which result of a job a field belongs to.

#include <array>
#include <compare>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "results/ResultReader.h"

namespace quilon {

/// What identifies one result of a job, in the order in which a job writes them.
struct StepKey
{
  int loadCase = 0;  ///< step
  int analysis = AnalysisTime;
  int substep  = 0;  ///< increment; mode number of modes; running number within the step of other results

  auto operator<=>(const StepKey&) const = default;
};

/// The results of one job as its files list them, and the place among them of fields that tell their time or their mode
/// alone.
///
/// A listed result goes by its step and its increment or mode; what has neither (harmonic response, sensitivities) is
/// numbered as it comes.
///
/// A printed field has a total time, or stands under a mode's number. Fields come in the order of the results, so a
/// match never goes back, and of several results at one time a field that its result has already had goes to the next.
class StepMatcher
{
public:
  /// What a printed field belongs to.
  struct Match
  {
    StepKey key;
    double  value    = 0.0;    ///< total time, or what the solver gives instead of it
    bool    repeated = false;  ///< the result has had a field of this identity already
  };

  /// @param hasFields whether the file that lists the result has its fields
  /// @return the key of the result, which is added when it is new
  StepKey AddListed(const ResultStep& step, bool hasFields);

  /// @param identity of the field
  /// @return nothing when results are known and the field belongs to none of them
  std::optional<Match> MatchPrinted(const ResultStep& step, const std::string& identity);

  /// Puts a field that repeats one of its result, and is another, to a result of its own.
  /// @return nothing where results in time are listed: what is not among them is none
  std::optional<Match> MatchRepeated(const ResultStep& step, const std::string& identity);

  /// @return the step of an eigenvalue table: the next step with modes, or a step of its own that no result uses
  int MatchModeTable();

  /// @return the last result of the key's step and analysis that a file with its fields lists behind the key, nothing
  /// when there is none
  std::optional<StepKey> LastBehind(const StepKey& key) const;

  /// @return the first of those results
  std::optional<StepKey> FirstBehind(const StepKey& key) const;

  /// @return whether results in time were numbered because no file lists them
  bool HasNumbered() const noexcept { return numbered_; }

private:
  struct Entry
  {
    StepKey key;
    double  value     = 0.0;
    double  tolerance = 0.0;  ///< of the value as printed
    bool    hasFields = false;
  };

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  static bool IsBehind(const Entry& entry, const StepKey& key);
  StepKey     KeyOf(const ResultStep& step);
  std::size_t Insert(const StepKey& key, double value, double tolerance, bool hasFields);
  std::size_t Place(const ResultStep& step, bool repeated);
  std::size_t PlaceMode(const ResultStep& step, bool repeated);
  std::size_t PlaceTime(const ResultStep& step, bool repeated);
  std::size_t FindTime(const ResultStep& step, std::size_t from) const;
  std::size_t FindMode(int mode, std::size_t from) const;
  bool        IsLastMode(std::size_t entry) const;
  std::size_t AddMode(int mode);
  std::size_t AddNumbered(const ResultStep& step);
  Match       MoveTo(std::size_t place, const ResultStep& step, const std::string& identity);
  int         FreeLoadCase() const;

  std::vector<Entry>                    entries_;             // ascending keys
  std::map<std::array<int, 3>, StepKey> numberedSteps_;       // by step, analysis and running output number
  bool                                  fromFiles_  = false;  // a file lists results
  bool                                  modesKnown_ = false;  // a file lists modes
  bool                                  numbered_   = false;
  std::size_t                           cursor_     = kNone;  // entry of the latest field
  double                                cursorTime_ = 0.0;    // as that field printed it
  int                                   staleMode_  = 0;      // banner that no longer counts: its step is over
  int                                   tableStep_  = 0;      // step of the latest eigenvalue table
  std::set<std::string>                 seen_;                // identities of the cursor's fields
};

}  // namespace quilon
