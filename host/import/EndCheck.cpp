#include "import/EndCheck.h"

#include "elements/Extrapolation.h"
#include "text/Failure.h"

namespace quilon {

void EndCheck::Fail(const std::string& message) const
{
  quilon::Fail(path_.string() + ":" + std::to_string(cutLine_) + ": " + message);
}

void EndCheck::BeginField(const std::optional<StepKey>& key)
{
  numRows_ = 0;
  cutShort_.clear();
  if (!key) return;
  if (current_ != key) {
    const bool sameStep = current_ && current_->loadCase == key->loadCase && current_->analysis == key->analysis;
    numExpected_        = sameStep ? numBlocks_ : 0;
    numBlocks_          = 0;
    current_            = key;
  }
  ++numBlocks_;
}

void EndCheck::AddElement(int id, int type, std::size_t numPoints)
{
  std::set<std::size_t>& counts = pointsOfType_[type];
  cutShort_.clear();
  if (!counts.empty() && numPoints < *counts.begin() && FindExtrapolation(type, numPoints) == nullptr) {
    cutShort_ = "expected " + std::to_string(*counts.begin()) + " integration points of element " + std::to_string(id) +
                ", the file ends after " + std::to_string(numPoints);
  }
  counts.insert(numPoints);
}

void EndCheck::EndField(const ResultField& field)
{
  // The sets of a job stay as they are, so a block has the rows that it had in earlier results.
  const auto [known, isNew] = rowsOfField_.try_emplace(field.identity, numRows_, field.line);
  const auto [rows, line]   = known->second;
  if (!isNew && numRows_ < rows) {
    cutShort_ = "expected " + std::to_string(rows) + " rows as in the block at line " + std::to_string(line) +
                ", the file ends after " + std::to_string(numRows_);
  }
  cutLine_ = field.line;
}

void EndCheck::Finish()
{
  if (!cutShort_.empty()) Fail(cutShort_);
  if (!current_) return;
  if (numBlocks_ < numExpected_) {
    Fail("expected " + std::to_string(numExpected_) + " blocks as in the result before, the file ends after " +
         std::to_string(numBlocks_));
  }
  if (const std::optional<StepKey> last = steps_.LastBehind(*current_)) {
    // A run that diverged: the other file lists the increment that did not converge, too.
    firstMissing_ = steps_.FirstBehind(*current_);
    Fail("expected results of step " + std::to_string(last->loadCase) + " up to substep " +
         std::to_string(last->substep) + " as in " + other_ + ", the file ends after substep " +
         std::to_string(current_->substep));
  }
}

}  // namespace quilon
