#pragma once

/// @file
/// Result steps by their time.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

namespace quilon {

class StepTimes;

/// Keeps blocks by the time of their result step, or its frequency or buckling factor (StepTimes). Iterations and
/// analyses have time scales of their own:
///
/// - "0.8": of each scale the steps whose time is nearest, no further away than a thousandth of what was asked for;
/// - "0.2:0.8", "0.2:", ":0.8": the steps between, both ends included, up to 1e-9 of the end for its rounding;
/// - "last": of each scale the steps of the greatest time.
class TimeChoice
{
public:
  /// Keeps everything.
  TimeChoice() = default;
  /// @throws FED_Failure for another text
  explicit TimeChoice(std::string_view text);

  bool IsEverything() const noexcept { return form_ == Everything; }

  /// Blocks that belong to all steps stay. A history stays where a kept step has its iteration, analysis and load case;
  /// where no block has a result step, the steps of all blocks of the database are asked.
  /// @param blocks   selected, in any order
  /// @param all      those of the whole database
  /// @param database its name, for messages
  /// @return what is kept, in the order given
  /// @throws FED_Failure when no step is kept: what was asked for and which times there are
  std::vector<FED_DataDescriptor> Keep(const std::vector<FED_DataDescriptor>& blocks,
                                       const std::vector<FED_DataDescriptor>& all, const StepTimes& times,
                                       const std::string& database) const;

  /// How far a step may be from the time that was asked for, as a part of that time.
  static constexpr double kTolerance = 1e-3;

private:
  enum Form
  {
    Everything,
    Nearest,
    Range,
    Last
  };

  /// @param target of the scale of the time; of a range it plays no part
  bool                            Holds(double time, double target) const;
  std::vector<FED_DataDescriptor> KeptSteps(const std::vector<FED_DataDescriptor>& blocks, const StepTimes& times,
                                            const std::string& database) const;

  Form                  form_ = Everything;
  std::string           text_;
  std::optional<double> from_;  // of Nearest the time
  std::optional<double> to_;
};

}  // namespace quilon
