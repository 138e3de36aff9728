#pragma once

/// @file
/// From solver result files to a database.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "QuilonUtilities/FED_Failure.h"
#include "results/InputDeck.h"

class FED_Database;
class OnfResultRequestFile;

namespace quilon {

/// Borders that nodal averages stop at. The average over all elements of a node is written all the same.
struct AverageBy
{
  enum Border : int
  {
    Nothing,
    Material,  ///< one average per material number
    Section,   ///< one per section of the deck
    Sets       ///< one per named set of elements
  };

  Border                   border = Nothing;
  std::vector<std::string> sets;  ///< names, with Sets
};

/// Of 200 jobs that one run wrote each, no value is off by more than its digits, and no average by more than 2e-5 of
/// the field's largest magnitude; another load, material or mesh makes more than this.
inline constexpr double kMaxDeviation = 1e-3;

struct ImportOptions
{
  int  iteration      = 0;
  bool strict         = false;  ///< anything skipped is a failure
  bool keepWholeSteps = false;  ///< on bad input keep the steps that were whole, then fail all the same
  /// How far files of a job may be apart, as a fraction of the field's largest magnitude, before nobody believes that
  /// one run wrote them: values at nodes, and our averages of one file beside the program's own in the other.
  double                maxDeviation = kMaxDeviation;
  AverageBy             averageBy;
  DeckOptions           deck;    ///< how a deck among the files is read
  std::filesystem::path groups;  ///< a groups file whose groups become sets of the deck; empty: none
  /// Which results to derive at the end; null derives all that can be.
  OnfResultRequestFile* requests = nullptr;
  /// Phase name, work done and work in all (bytes or items). May throw to interrupt.
  std::function<void(const std::string& phase, std::uint64_t done, std::uint64_t total)> progress;
};

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

/// Reads `.frd` and `.dat` files (a `.sta` beside them helps to match times) into the database and derives what is
/// requested. Files of one job share their stem, and the stem alone stands for those that are there; several jobs are
/// read one after the other, as given. One of the files may be the deck `.inp` of the jobs: it then says what the mesh
/// is, and without results it is imported alone.
/// @throws FED_Failure for bad input; the database then holds what was read before, and the caller drops it
/// @throws BrokenBehindResults for bad input that is met while results are listed, before they are read
/// @throws RefusedImport where all was read and the options forbid what was found
ImportReport ImportResults(const std::vector<std::filesystem::path>& files, FED_Database& target,
                           const ImportOptions& options);

}  // namespace quilon
