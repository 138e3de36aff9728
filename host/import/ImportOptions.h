#pragma once

/// @file
/// How solver result files are imported.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "results/InputDeck.h"

class OnfResultRequestFile;

namespace quilon {

class Crew;
class DatabaseParts;

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
  /// Who reads results of large files, where these can be read in parts, and the parts of the target. What is written
  /// is the same for any crew. Borrowed; null: this thread reads the file in one go.
  Crew*          crew  = nullptr;
  DatabaseParts* parts = nullptr;
  /// Phase name, work done and work in all (bytes or items). May throw to interrupt.
  std::function<void(const std::string& phase, std::uint64_t done, std::uint64_t total)> progress;
};

}  // namespace quilon
