// Parts of a database: segments that other stores write.

#include <algorithm>
#include <utility>

#include "QuilonUtilities/FED_Failure.h"

#include "SegmentStore.h"

namespace {

// Of a part. A part that goes to the disk again and again takes new numbers for what it merges.
constexpr std::uint64_t kPartSegments = 1000;
constexpr std::uint64_t kPartBlocks   = 1000000;

bool HasSegment(const FED_DatabasePart& part, std::uint64_t number) noexcept
{
  return number >= part.firstSegment && number - part.firstSegment < kPartSegments;
}

bool HasBlock(const FED_DatabasePart& part, BlockUid uid) noexcept
{
  return uid >= part.firstBlock && uid - part.firstBlock < kPartBlocks;
}

// A part has blocks of its own and rows of these, and nothing else.
bool IsOfPart(const SegmentIndex& index, const FED_DatabasePart& part)
{
  return index.deleted.empty() && index.ids.empty() && !index.hasNames &&
         std::all_of(index.blocks.begin(), index.blocks.end(),
                     [&](const StoredBlock& block) { return HasBlock(part, block.uid); }) &&
         std::all_of(index.extents.begin(), index.extents.end(),
                     [&](const IndexExtent& extent) { return HasBlock(part, extent.block); });
}

}  // namespace

SegmentStore::SegmentStore(const std::filesystem::path& folder, const FED_DatabasePart& part, FED_FileLayer& files)
    : folder_(folder), files_(&files), isWriter_(true), isPart_(true)
{
  nextSegment_ = part.firstSegment;
  nextBlock_   = part.firstBlock;
  reserved_.push_back(part);
}

FED_DatabasePart SegmentStore::ReservePart()
{
  RequireWriter();
  const FED_DatabasePart part{nextSegment_, nextBlock_};
  reserved_.push_back(part);
  nextSegment_ += kPartSegments;
  nextBlock_ += kPartBlocks;
  return part;
}

// The numbers behind those of a part are another one's, which may be written at this moment.
// @throws FED_Failure for a part that has taken all of its own
std::uint64_t SegmentStore::TakeSegmentNumber()
{
  if (isPart_ && !HasSegment(reserved_.front(), nextSegment_))
    ThrowFileFailure(folder_, "a part is written in more than " + std::to_string(kPartSegments) +
                                  " pieces, expected more memory for each");
  return nextSegment_++;
}

std::uint64_t SegmentStore::HandOver()
{
  RequireWriter();
  if (!isPart_) ThrowFileFailure(folder_, "the whole database is open for writing, expected a part of it");
  if (segments_.size() > 1) Merge({0, segments_.size()});
  RemoveGarbage();
  const FED_DatabasePart part = reserved_.front();
  if (nextBlock_ - part.firstBlock > kPartBlocks)
    ThrowFileFailure(folder_, "a part has more than " + std::to_string(kPartBlocks) + " blocks");
  // It is another store's from here on, which removes it where it does not publish it.
  isWriter_ = false;
  reserved_.clear();
  for (OpenSegment& open : segments_) open.isPublished = true;
  return segments_.empty() ? 0 : segments_.front().segment->GetEntry().number;
}

std::unique_ptr<Segment> SegmentStore::OpenPart(const FED_DatabasePart& part, std::uint64_t number) const
{
  const std::filesystem::path path = folder_ / GetSegmentName(number);
  StoreFile                   file(*files_, path, FED_FileLayer::Read);
  SegmentHeaderBytes          bytes{};
  file.ReadAt(0, bytes.data(), bytes.size());
  const SegmentEntry entry   = DecodeHeader(bytes, path).entry;
  auto               segment = std::make_unique<Segment>(std::move(file), entry);
  if (entry.number != number || !HasSegment(part, number) || !HasSegment(part, entry.first) ||
      !HasSegment(part, entry.last) || !IsOfPart(segment->GetIndex(), part))
    ThrowFileFailure(path, "not the segment of a part of the database");
  return segment;
}

void SegmentStore::TakePart(std::unique_ptr<Segment> segment)
{
  RequireWriter();
  MergeUnpublished();
  if (!segments_.empty() && segment->GetEntry().first <= segments_.back().segment->GetEntry().last)
    ThrowFileFailure(segment->GetPath(), "a part comes behind what was written later, expected parts in their order");
  mark_.reset();
  segments_.reserve(segments_.size() + 1);
  segments_.push_back({std::move(segment), false});
  // When memory runs out from here on, part of the rows counts as written and part does not.
  isOutOfStep_ = true;
  state_.Add(*segments_.back().segment);
  isOutOfStep_ = false;
}

// Files of parts that were not taken. Whoever wrote them has ended by now.
void SegmentStore::RemoveLostParts() noexcept
{
  if (reserved_.empty()) return;
  try {
    std::vector<std::string> names;
    if (files_->List(folder_, names)) return;
    for (const std::string& name : names) {
      if (!IsSegmentName(name)) continue;
      const std::uint64_t number = GetSegmentNumber(name);
      const bool          isOurs = std::any_of(segments_.begin(), segments_.end(), [&](const OpenSegment& open) {
        return open.segment->GetEntry().number == number;
      });
      const bool isLost = !isOurs && std::any_of(reserved_.begin(), reserved_.end(), [&](const FED_DatabasePart& part) {
        return HasSegment(part, number);
      });
      if (isLost) static_cast<void>(files_->Remove(folder_ / name));
    }
  } catch (...) {
    // They go when the next writer opens the database.
  }
}
