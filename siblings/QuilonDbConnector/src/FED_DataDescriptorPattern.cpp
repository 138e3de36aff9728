#include "QuilonDbConnector/FED_DataDescriptorPattern.h"

#include "QuilonUtilities/FED_Failure.h"

#include "ResultIndexNames.h"

namespace {

constexpr int kEqualMode = 0;
constexpr int kAnyMode   = -1;

}  // namespace

FED_DataDescriptorPattern::FED_DataDescriptorPattern() = default;

void FED_DataDescriptorPattern::SetEqual(FED_DataDescriptor::ResultIndex index, int value)
{
  RequireResultIndex(index, "FED_DataDescriptorPattern::SetEqual");
  criteria[index] = {kEqualMode, value};
}

bool FED_DataDescriptorPattern::Matches(const FED_DataDescriptor& descriptor) const
{
  bool matches = true;
  // Every criterion is looked at, so that an unknown mode is a failure whatever the descriptor.
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    const Criterion& criterion = criteria[index];
    if (criterion.mode == kAnyMode) continue;
    if (criterion.mode != kEqualMode)
      throw FED_Failure("FED_DataDescriptorPattern::Matches: match mode of " + GetResultIndexName(index) + " is " +
                            std::to_string(criterion.mode) + ", expected 0 (equal) or -1 (any)",
                        "|%P|QuilonDbConnector|FED_DataDescriptorPattern");
    matches = matches && descriptor.values[index] == criterion.value;
  }
  return matches;
}

std::string FED_DataDescriptorPattern::ToString() const
{
  std::string text;
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    const Criterion& criterion = criteria[index];
    if (criterion.mode == kAnyMode) continue;
    if (!text.empty()) text += ' ';
    text += GetResultIndexName(index) + '=' + std::to_string(criterion.value);
    if (criterion.mode != kEqualMode) text += " (mode " + std::to_string(criterion.mode) + ')';
  }
  return text.empty() ? "(any)" : text;
}
