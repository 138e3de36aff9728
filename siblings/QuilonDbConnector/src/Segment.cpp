#include "Segment.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Checksum.h"

namespace {

constexpr std::size_t kPartBytes = std::size_t{1} << 20;

SegmentIndex ReadIndex(const StoreFile& file, const SegmentEntry& entry)
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
  return DecodeIndex(bytes.data(), bytes.size(), size, file.GetPath());
}

[[noreturn]] void ThrowDamage(const StoreFile& file, const StoredBytes& stored, const std::string& what)
{
  ThrowFileFailure(file.GetPath(), what + " is damaged: the checksum of " + std::to_string(stored.bytes) +
                                       " bytes from " + std::to_string(stored.offset) + " is wrong");
}

}  // namespace

Segment::Segment(StoreFile file, const SegmentEntry& entry)
    : file_(std::move(file)), entry_(entry), index_(ReadIndex(file_, entry))
{}

Segment::Segment(StoreFile file, const SegmentEntry& entry, SegmentIndex index) noexcept
    : file_(std::move(file)), entry_(entry), index_(std::move(index))
{}

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
  file_.ReadAt(stored.offset, out, count);
  if (GetChecksum(out, count) != stored.checksum) ThrowDamage(file_, stored, what());
}

void Segment::Visit(const StoredBytes& stored, std::uint64_t begin, std::uint64_t end,
                    const ExtentRows::TakeBytes& take, const std::function<std::string()>& what) const
{
  std::vector<std::uint8_t> part(static_cast<std::size_t>(std::min<std::uint64_t>(stored.bytes, kPartBytes)));
  RunningChecksum           checksum;
  for (std::uint64_t done = 0; done < stored.bytes;) {
    const std::uint64_t count = std::min<std::uint64_t>(stored.bytes - done, part.size());
    file_.ReadAt(stored.offset + done, part.data(), static_cast<std::size_t>(count));
    checksum.Add(part.data(), static_cast<std::size_t>(count));
    const std::uint64_t from = std::max(begin, done);
    const std::uint64_t to   = std::min(end, done + count);
    if (from < to) take(part.data() + (from - done), static_cast<std::size_t>(to - from));
    done += count;
  }
  if (checksum.Get() != stored.checksum) ThrowDamage(file_, stored, what());
}
