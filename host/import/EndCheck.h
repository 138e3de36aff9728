#pragma once

/// @file
/// Detection of files that end early.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "import/StepMatcher.h"
#include "results/ResultReader.h"

namespace quilon {

/// Tells a whole file without an end mark from one that was cut. A step asks for the same in all its results, and for
/// the job's other files at the same times: what the last result lacks beside the one before it is missing.
class EndCheck
{
public:
  /// @param path  for messages
  /// @param other name of the file that lists the results, for messages
  /// @param steps borrowed
  EndCheck(std::filesystem::path path, std::string other, const StepMatcher& steps)
      : path_(std::move(path)), other_(std::move(other)), steps_(steps)
  {}

  /// @param key the result of the field that begins, nothing where it has none
  void BeginField(const std::optional<StepKey>& key);
  void AddRows(std::size_t numRows) { numRows_ += numRows; }
  /// The last element of a file that was cut has fewer points than others of its type.
  void AddElement(int id, int type, std::size_t numPoints);
  void EndField(const ResultField& field);

  /// @throws FED_Failure naming the last block and what is missing
  void Finish();

  /// @return the first result that the file has not at all, when Finish() failed for it and all results before are
  /// whole
  const std::optional<StepKey>& FirstMissing() const noexcept { return firstMissing_; }

private:
  [[noreturn]] void Fail(const std::string& message) const;

  std::filesystem::path  path_;
  std::string            other_;
  const StepMatcher&     steps_;
  std::optional<StepKey> current_;
  std::optional<StepKey> firstMissing_;
  std::size_t            numBlocks_   = 0;                                   // of the current result
  std::size_t            numExpected_ = 0;                                   // of the result before in the same step
  std::size_t            numRows_     = 0;                                   // of the current field
  std::map<std::string, std::pair<std::size_t, std::int64_t>> rowsOfField_;  // and its line, by identity
  std::map<int, std::set<std::size_t>>                        pointsOfType_;
  std::string                                                 cutShort_;  // what the latest field lacks, if anything
  std::int64_t                                                cutLine_ = 0;
};

}  // namespace quilon
