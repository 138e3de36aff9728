#include "Segment.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Checksum.h"

namespace {

constexpr std::size_t kPartBytes = std::size_t{1} << 20;

// @param allBytes which places may reach
SegmentIndex ReadIndex(const StoreFile& file, const SegmentEntry& entry, std::uint64_t allBytes)
{
  const std::uint64_t size = file.GetSize();
  if (size != entry.fileBytes)
    ThrowFileFailure(file.GetPath(),
                     "the file has " + std::to_string(size) + " bytes, expected " + std::to_string(entry.fileBytes));
  if (entry.indexBytes > size || entry.indexOffset > size - entry.indexBytes)
    ThrowFileFailure(file.GetPath(), "its index is damaged: it is beyond the file's end");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(entry.indexBytes));
  file.ReadAt(entry.indexOffset, bytes.data(), bytes.size());
  if (GetChecksum(bytes.data(), bytes.size()) != entry.indexChecksum)
    ThrowFileFailure(file.GetPath(), "its index is damaged: the checksum is wrong");
  return DecodeIndex(bytes.data(), bytes.size(), allBytes, file.GetPath());
}

SegmentIndex ReadLinkIndex(const StoreFile& file, const StoreFile& own, const SegmentEntry& entry)
{
  if (const std::uint64_t size = file.GetSize(); size != entry.linkedBytes)
    ThrowFileFailure(file.GetPath(),
                     "the file has " + std::to_string(size) + " bytes, expected " + std::to_string(entry.linkedBytes));
  SegmentEntry inOwn = entry;
  inOwn.fileBytes -= entry.linkedBytes;
  inOwn.indexOffset -= entry.linkedBytes;
  SegmentIndex index = ReadIndex(own, inOwn, entry.fileBytes);
  VisitPlaces(index, [&](const StoredBytes& place) {
    if (place.offset < entry.linkedBytes && place.bytes > entry.linkedBytes - place.offset)
      ThrowFileFailure(own.GetPath(), "its index is damaged: a place is in two files");
  });
  return index;
}

}  // namespace

Segment::Segment(StoreFile file, const SegmentEntry& entry)
    : file_(std::move(file)), entry_(entry), index_(ReadIndex(file_, entry, entry.fileBytes))
{}

Segment::Segment(StoreFile file, StoreFile own, const SegmentEntry& entry)
    : file_(std::move(file)), own_(std::move(own)), entry_(entry), index_(ReadLinkIndex(file_, own_, entry))
{}

Segment::Segment(StoreFile file, const SegmentEntry& entry, SegmentIndex index) noexcept
    : file_(std::move(file)), entry_(entry), index_(std::move(index))
{}

Segment::Segment(StoreFile file, StoreFile own, const SegmentEntry& entry, SegmentIndex index) noexcept
    : file_(std::move(file)), own_(std::move(own)), entry_(entry), index_(std::move(index))
{}

std::vector<std::filesystem::path> Segment::GetPaths() const
{
  if (!entry_.IsLinked()) return {file_.GetPath()};
  return {file_.GetPath(), own_.GetPath()};
}

void Segment::ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const
{
  if (entry_.IsLinked() && offset >= entry_.linkedBytes)
    own_.ReadAt(offset - entry_.linkedBytes, bytes, count);
  else
    file_.ReadAt(offset, bytes, count);
}

void Segment::ThrowDamage(const StoredBytes& stored, const std::string& what) const
{
  const bool          isInOwn = entry_.IsLinked() && stored.offset >= entry_.linkedBytes;
  const std::uint64_t offset  = isInOwn ? stored.offset - entry_.linkedBytes : stored.offset;
  ThrowFileFailure((isInOwn ? own_ : file_).GetPath(), what + " is damaged: the checksum of " +
                                                           std::to_string(stored.bytes) + " bytes from " +
                                                           std::to_string(offset) + " is wrong");
}

std::uint64_t Segment::GetExtentBytes(std::size_t extent) const noexcept
{
  const IndexExtent& rows  = index_.extents[extent];
  std::uint64_t      bytes = rows.keys.bytes;
  for (std::size_t i = 0; i < rows.columnCount; ++i) bytes += index_.columns[rows.firstColumn + i].bytes.bytes;
  return bytes;
}

void Segment::Read(const StoredBytes& stored, void* out, const std::function<std::string()>& what) const
{
  const auto count = static_cast<std::size_t>(stored.bytes);
  ReadAt(stored.offset, out, count);
  if (GetChecksum(out, count) != stored.checksum) ThrowDamage(stored, what());
}

void Segment::Visit(const StoredBytes& stored, std::uint64_t begin, std::uint64_t end,
                    const ExtentRows::TakeBytes& take, const std::function<std::string()>& what) const
{
  std::vector<std::uint8_t> part(static_cast<std::size_t>(std::min<std::uint64_t>(stored.bytes, kPartBytes)));
  RunningChecksum           checksum;
  for (std::uint64_t done = 0; done < stored.bytes;) {
    const std::uint64_t count = std::min<std::uint64_t>(stored.bytes - done, part.size());
    ReadAt(stored.offset + done, part.data(), static_cast<std::size_t>(count));
    checksum.Add(part.data(), static_cast<std::size_t>(count));
    const std::uint64_t from = std::max(begin, done);
    const std::uint64_t to   = std::min(end, done + count);
    if (from < to) take(part.data() + (from - done), static_cast<std::size_t>(to - from));
    done += count;
  }
  if (checksum.Get() != stored.checksum) ThrowDamage(stored, what());
}
