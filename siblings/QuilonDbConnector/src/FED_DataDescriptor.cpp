#include "QuilonDbConnector/FED_DataDescriptor.h"

#include <algorithm>
#include <iterator>

#include "ResultIndexNames.h"

FED_DataDescriptor::FED_DataDescriptor() { Init(); }

FED_DataDescriptor::FED_DataDescriptor(int iteration, FED_OnfId onf)
{
  Init();
  SetInteger(Iteration, iteration);
  SetInteger(OnfId, onf);
}

void FED_DataDescriptor::Init()
{
  std::fill(std::begin(values), std::end(values), 0);
  mask = 0;
  std::fill(std::begin(cached), std::end(cached), -1);
}

int FED_DataDescriptor::GetInteger(ResultIndex index) const
{
  RequireResultIndex(index, "FED_DataDescriptor::GetInteger");
  return values[index];
}

void FED_DataDescriptor::SetInteger(ResultIndex index, int value)
{
  RequireResultIndex(index, "FED_DataDescriptor::SetInteger");
  values[index] = value;
  mask |= 1u << index;
  std::fill(std::begin(cached), std::end(cached), -1);
}

bool FED_DataDescriptor::IsSet(ResultIndex index) const
{
  RequireResultIndex(index, "FED_DataDescriptor::IsSet");
  return (mask >> index & 1u) != 0;
}

bool FED_DataDescriptor::operator<(const FED_DataDescriptor& other) const noexcept
{
  const auto [mine, theirs] = std::mismatch(std::begin(values), std::end(values), std::begin(other.values));
  return mine == std::end(values) ? mask < other.mask : *mine < *theirs;
}

bool FED_DataDescriptor::operator==(const FED_DataDescriptor& other) const noexcept
{
  return mask == other.mask && std::equal(std::begin(values), std::end(values), std::begin(other.values));
}

std::string FED_DataDescriptor::ToString() const
{
  std::string text;
  for (int index = 0; index < kNumIndices; ++index) {
    if ((mask >> index & 1u) == 0) continue;
    if (!text.empty()) text += ' ';
    text += GetResultIndexName(index) + '=' + std::to_string(values[index]);
  }
  return text.empty() ? "(no index set)" : text;
}
