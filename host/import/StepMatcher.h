#pragma once

/// @file
/// Which result of a job a block of a .dat belongs to.

#include <array>
#include <compare>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quilon::calculix {

struct DatBlock;
struct FrdDataset;

/// Values of result index 5.
enum Analysis : int
{
  AnalysisTime  = 1,
  AnalysisModes = 2,
  AnalysisOther = 3
};

/// What identifies one result of a job, in the order in which a job writes them.
struct StepKey
{
  int loadCase = 0;  ///< step
  int analysis = AnalysisTime;
  int substep  = 0;  ///< increment; mode number of modes; running number within the step of other results

  auto operator<=>(const StepKey&) const = default;
};

/// The results of one job as its .frd and .sta list them, and the place of each .dat block among them.
///
/// Keys of data sets: kind 0 is time, with the increment as the .frd says it, and so is kind 1 (dynamics) where it has
/// an increment; without, it is a harmonic response. Kind 2 is modes. In a buckling step (kind 4) the value 0 is the
/// preload, a result in time, and every other value a buckling mode, numbered as it comes. The rest (harmonic response,
/// sensitivities) has no increment to go by and is numbered as it comes.
///
/// A .dat block prints total time alone, or stands under a mode's banner. Blocks come in the order of the results, so a
/// match never goes back, and of several results at one time a block that its result has already had goes to the next.
class StepMatcher
{
public:
  /// What a .dat block belongs to.
  struct Match
  {
    StepKey key;
    double  value    = 0.0;    ///< total time, or what the solver gives instead of it
    bool    repeated = false;  ///< the result has had a block of this title and set already
  };

  /// @return the data set's result, which is added when it is new
  StepKey AddDataset(const FrdDataset& dataset);

  /// Adds the increments of a .sta that no data set told of.
  /// @throws FED_Failure "FILE:LINE: what was expected"
  void AddStatusFile(const std::filesystem::path& path);

  /// @return nothing when results are known and the block belongs to none of them
  std::optional<Match> MatchBlock(const DatBlock& block);

  /// @return the step of an eigenvalue table: the next step with modes, or a step of its own that no result uses
  int MatchModeTable();

  /// @return the last result of the key's step and analysis that the .frd lists behind the key, nothing when there is
  /// none
  std::optional<StepKey> LastBehind(const StepKey& key) const;

  /// @return whether results in time were numbered for want of a .frd and a .sta
  bool HasNumbered() const noexcept { return numbered_; }

private:
  struct Entry
  {
    StepKey key;
    double  value     = 0.0;
    double  tolerance = 0.0;  ///< of the value as printed
    bool    isInFrd   = false;
  };

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  StepKey     DatasetKey(const FrdDataset& dataset);
  std::size_t Insert(const StepKey& key, double value, double tolerance, bool isInFrd);
  std::size_t Place(const DatBlock& block, bool repeated);
  std::size_t PlaceMode(const DatBlock& block, bool repeated);
  std::size_t PlaceTime(const DatBlock& block, bool repeated);
  std::size_t FindTime(double time, std::size_t from) const;
  std::size_t FindMode(int mode, std::size_t from) const;
  bool        IsLastMode(std::size_t entry) const;
  std::size_t AddMode(int mode);
  std::size_t AddNumbered(double time);
  int         FreeLoadCase() const;

  std::vector<Entry>                    entries_;             // ascending keys
  std::map<std::array<int, 3>, StepKey> numberedDatasets_;    // by step, analysis and running output number
  bool                                  fromFiles_  = false;  // a .frd or a .sta told of results in time
  bool                                  modesKnown_ = false;  // a .frd told of modes
  bool                                  numbered_   = false;
  std::size_t                           cursor_     = kNone;  // entry of the latest block
  double                                cursorTime_ = 0.0;    // as that block printed it
  int                                   staleMode_  = 0;      // banner that no longer counts: its step is over
  int                                   tableStep_  = 0;      // step of the latest eigenvalue table
  std::set<std::string>                 seen_;                // titles and sets of the cursor's blocks
};

}  // namespace quilon::calculix
