#pragma once

/// @file
/// A block between two others.

#include <bundled/FED_ResultDatabase.h>

class FED_DataBlock;

namespace quilon::diff {

/// The values between those of two blocks of one kind: (1 - weight) a + weight b, of the records that both hold, under
/// the indices that they have. What is not made of doubles alone is taken from the first.
///
/// Memory: the values of one block.
class BlendedBlock
{
public:
  BlendedBlock(const FED_DataBlock& first, const FED_DataBlock& second, double weight);

  const FED_DataBlock& Get() const noexcept { return *block_; }

private:
  FED_ResultDatabase   database_;
  const FED_DataBlock* block_;
};

}  // namespace quilon::diff
