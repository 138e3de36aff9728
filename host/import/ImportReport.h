#pragma once

/// @file
/// What an import tells.

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "QuilonUtilities/FED_Failure.h"

namespace quilon {

/// What an import left out and how often.
struct SkippedRows
{
  std::string reason;  ///< "element type without extrapolation: 3-node line with 50 points", ...
  std::size_t rows = 0;
};

/// Our nodal averages beside the solver's own, over every node and result time of one element type.
struct AverageDeviation
{
  std::string elementType;    ///< "C3D4", ...; nodes that several types share count for "mixed"
  std::string quantity;       ///< "stress" or "strain"
  std::size_t nodes   = 0;    ///< node and time pairs compared
  double      largest = 0.0;  ///< of |ours - theirs|, as a fraction of the field's largest magnitude at that time
};

/// What two files of a job say differently of one quantity, over all result times. Six digits and seven of one number
/// are no difference.
struct ValueDisagreement
{
  std::string      quantity;       ///< name of its kind
  std::size_t      nodes   = 0;    ///< node and time pairs that differ
  double           largest = 0.0;  ///< difference, as a fraction of the field's largest magnitude at that time
  std::string      step;           ///< where the largest is: "step 1, increment 2"
  std::string      kept;           ///< name of the file whose values are kept there
  std::vector<int> firstNodes;     ///< of the first result with a difference, some of the nodes that differ
};

struct ImportReport
{
  std::vector<SkippedRows>           skipped;
  std::vector<AverageDeviation>      deviations;
  std::vector<ValueDisagreement>     disagreements;
  std::vector<std::string>           notices;   ///< what a user should know, a line each
  std::vector<std::filesystem::path> includes;  ///< files that the deck has included, each once
  std::size_t                        blocks = 0;
};

/// Everything was read, and nothing of it is to be kept: files that are not of one run, or rows left out with `strict`.
class RefusedImport : public FED_Failure
{
public:
  using FED_Failure::FED_Failure;
};

/// Bad input behind results that are whole, of which nothing is in the database yet: `keepWholeSteps` keeps them.
class BrokenBehindResults : public FED_Failure
{
public:
  using FED_Failure::FED_Failure;
};

}  // namespace quilon
