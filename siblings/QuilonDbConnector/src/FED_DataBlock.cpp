#include "QuilonDbConnector/FED_DataBlock.h"

namespace {

// Where every iterator stands that has passed its last index: a block that grows during a walk moves no end.
constexpr std::size_t kEnd = FED_DataBlock::npos;

std::size_t FindRecordFrom(const FED_DataBlock& block, std::size_t index, std::size_t maxIndex)
{
  return index == kEnd ? kEnd : block.FindNextIndex(index, maxIndex);
}

}  // namespace

FED_DataBlock::IndexIterator::IndexIterator(const FED_DataBlock& block, std::size_t index, std::size_t maxIndex)
    : index_(FindRecordFrom(block, index, maxIndex)), maxIndex_(maxIndex), block_(&block)
{}

FED_DataBlock::IndexIterator& FED_DataBlock::IndexIterator::operator++()
{
  if (index_ != kEnd) index_ = FindRecordFrom(*block_, index_ + 1, maxIndex_);
  return *this;
}

FED_DataBlock::FED_DataBlock(const FED_DataDescriptor& descriptor) : descriptor_(descriptor) {}

FED_DataBlock::~FED_DataBlock() = default;

const FED_DataDescriptor& FED_DataBlock::GetDescriptor() const noexcept { return descriptor_; }

FED_DataBlock::IndexIterator FED_DataBlock::Begin() const { return IndexIterator(*this, 0, GetMaxIndex()); }

FED_DataBlock::IndexIterator FED_DataBlock::End() const { return IndexIterator(*this, kEnd, 0); }

std::size_t FED_DataBlock::FindNextIndex(std::size_t first, std::size_t last) const
{
  for (std::size_t index = first; index <= last && index != npos; ++index)
    if (HasRecord(index)) return index;
  return npos;
}
