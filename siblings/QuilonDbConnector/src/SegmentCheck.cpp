#include "SegmentCheck.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QuilonUtilities/FED_Failure.h"

#include "Checksum.h"

namespace {

using Texts = std::vector<std::string>;

constexpr std::size_t kPieceBytes = std::size_t{1} << 18;

constexpr const char* kNoValue = "; no value is concerned";

std::string DescribeBytes(std::uint64_t offset, std::uint64_t bytes)
{
  return "(bytes " + std::to_string(offset) + " to " + std::to_string(offset + (bytes - 1)) + ")";
}

// What the call makes of bytes that are in memory; nothing when they are not what it expects.
template <typename Call>
auto TryDecode(const Call& call) -> std::optional<decltype(call())>
{
  try {
    return call();
  } catch (const FED_Failure&) {
    return std::nullopt;
  }
}

// @param bytes kSegmentHeaderBytes, or kSegmentTailBytes of the copy
std::optional<SegmentHeader> ReadHeader(const StoreFile& file, std::uint64_t offset, std::size_t count,
                                        std::uint64_t size)
{
  SegmentHeaderBytes bytes{};
  if (size < count || offset > size - count) return std::nullopt;
  file.ReadAt(offset, bytes.data(), count);
  return TryDecode([&] { return DecodeHeader(bytes, file.GetPath()); });
}

// Bytes of the file by pieces, as far as it reaches.
template <typename Take>
bool VisitPieces(const StoreFile& file, std::uint64_t offset, std::uint64_t bytes, std::uint64_t size, const Take& take)
{
  if (bytes > size || offset > size - bytes) return false;
  std::vector<std::uint8_t> piece(static_cast<std::size_t>(std::min<std::uint64_t>(bytes, kPieceBytes)));
  for (std::uint64_t done = 0; done < bytes;) {
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes - done, piece.size()));
    file.ReadAt(offset + done, piece.data(), count);
    if (!take(piece.data(), count)) return false;
    done += count;
  }
  return true;
}

bool IsWhole(const StoreFile& file, const StoredBytes& place, std::uint64_t size)
{
  RunningChecksum checksum;
  return VisitPieces(file, place.offset, place.bytes, size,
                     [&](const std::uint8_t* bytes, std::size_t count) {
                       checksum.Add(bytes, count);
                       return true;
                     }) &&
         checksum.Get() == place.checksum;
}

bool IsZero(const StoreFile& file, std::uint64_t offset, std::uint64_t bytes, std::uint64_t size)
{
  return VisitPieces(file, offset, bytes, size, [](const std::uint8_t* piece, std::size_t count) {
    return std::all_of(piece, piece + count, [](std::uint8_t byte) { return byte == 0; });
  });
}

// Where the second copy of an index lies: in front of the header's, which is the end of the file.
std::uint64_t FindCopy(const SegmentEntry& entry) noexcept
{
  return entry.fileBytes - kSegmentTailBytes - ((entry.indexBytes + 7) & ~std::uint64_t{7});
}

std::optional<SegmentIndex> ReadIndex(const StoreFile& file, const SegmentEntry& entry, std::uint64_t offset,
                                      std::uint64_t size)
{
  if (entry.indexBytes > size || offset > size - entry.indexBytes) return std::nullopt;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(entry.indexBytes));
  file.ReadAt(offset, bytes.data(), bytes.size());
  if (GetChecksum(bytes.data(), bytes.size()) != entry.indexChecksum) return std::nullopt;
  return TryDecode([&] { return DecodeIndex(bytes.data(), bytes.size(), entry.fileBytes, file.GetPath()); });
}

// A part of a segment that has to be what it was when it was written.
struct Part
{
  StoredBytes place;
  const char* name;
  bool        isChecked;  // by somebody else
};

}  // namespace

FoundSegment FindSegment(StoreFile file, const SegmentEntry* entry)
{
  FoundSegment        found;
  const std::uint64_t size = file.GetSize();
  const auto add = [&](const std::string& text) { found.findings.push_back(file.GetPath().string() + ": " + text); };
  const std::optional<SegmentHeader> head       = ReadHeader(file, 0, kSegmentHeaderBytes, size);
  const std::uint64_t                tailOffset = size < kSegmentTailBytes ? 0 : size - kSegmentTailBytes;
  const std::optional<SegmentHeader> tail =
      head && head->version == 1 ? std::nullopt : ReadHeader(file, tailOffset, kSegmentTailBytes, size);
  found.header = head ? head : tail;
  if (!head) add("its header " + DescribeBytes(0, kSegmentHeaderBytes) + " is damaged" + kNoValue);
  if (entry != nullptr && found.header && !(found.header->entry == *entry)) add("its header and the manifest differ");
  std::vector<SegmentEntry> entries;  // the manifest's first
  if (entry != nullptr) entries.push_back(*entry);
  if (found.header && (entries.empty() || !(found.header->entry == *entry))) entries.push_back(found.header->entry);
  if (!entries.empty() && size != entries.front().fileBytes)
    add("the file has " + std::to_string(size) + " bytes, expected " + std::to_string(entries.front().fileBytes));
  for (const SegmentEntry& known : entries) {
    constexpr std::uint64_t kLeast = kSegmentHeaderBytes + kSegmentTailBytes;
    if (known.fileBytes < kLeast || known.indexBytes > known.fileBytes - kLeast) continue;
    std::optional<SegmentIndex> index = ReadIndex(file, known, known.indexOffset, size);
    if (!index) {
      const std::string text = "its index " + DescribeBytes(known.indexOffset, known.indexBytes) + " is damaged";
      index                  = ReadIndex(file, known, FindCopy(known), size);
      add(text + (index ? std::string(", its copy is whole") + kNoValue : ""));
    }
    if (!index) continue;
    found.segment = std::make_unique<Segment>(std::move(file), known, *std::move(index));
    return found;
  }
  if (entries.empty()) add("nothing tells where its index is");
  return found;
}

std::vector<std::string> FindDamage(const Segment& segment, const SegmentHeader& header,
                                    const IsCheckedElsewhere& isChecked)
{
  const StoreFile&    file  = segment.GetFile();
  const SegmentIndex& index = segment.GetIndex();
  const SegmentEntry& entry = segment.GetEntry();
  const std::uint64_t size  = file.GetSize();
  std::vector<Part>   parts;
  const bool          isFirst = header.version == 1;  // of the first format version
  if (!isFirst) {
    parts.push_back({header.structure, "its HDF5 structure", false});
    parts.push_back({{entry.indexOffset, entry.indexBytes, entry.indexChecksum}, "its index", true});
    parts.push_back({{header.copyOffset, entry.indexBytes, entry.indexChecksum}, "the copy of its index", false});
  }
  for (const IndexIds& ids : index.ids) parts.push_back({ids.ids, "an id map", isChecked != nullptr});
  for (std::size_t i = 0; i < index.extents.size(); ++i) {
    const IndexExtent&    extent = index.extents[i];
    constexpr const char* kName  = "what no row needs any more";
    const bool            isDone = isChecked != nullptr && isChecked(i);
    parts.push_back({extent.keys, kName, isDone});
    for (std::size_t column = 0; column < extent.columnCount; ++column)
      parts.push_back({index.columns[extent.firstColumn + column].bytes, kName, isDone});
  }
  std::sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) { return a.place.offset < b.place.offset; });
  Texts      findings;
  const auto add = [&](const std::string& name, std::uint64_t offset, std::uint64_t bytes, const std::string& text) {
    findings.push_back(segment.GetPath().string() + ": " + name + " " + DescribeBytes(offset, bytes) + text + kNoValue);
  };
  std::uint64_t end = kSegmentHeaderBytes;
  for (const Part& part : parts) {
    const StoredBytes& place = part.place;
    if (place.bytes == 0) continue;
    // HDF5 itself laid the first version out: what is between its data is not known to us.
    if (!isFirst && place.offset > end && !IsZero(file, end, place.offset - end, size))
      add("what lies between its parts", end, place.offset - end, " is not zero");
    if (!part.isChecked && !IsWhole(file, place, size)) add(part.name, place.offset, place.bytes, " is damaged");
    end = std::max(end, place.offset + place.bytes);
  }
  SegmentHeaderBytes head{};
  if (isFirst) {
    constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'H', 'D', 'F', '\r', '\n', 0x1a, '\n'};
    std::array<std::uint8_t, 8>           bytes{};
    if (size < kSegmentHeaderBytes + bytes.size()) return findings;
    file.ReadAt(kSegmentHeaderBytes, bytes.data(), bytes.size());
    if (bytes != kSignature) add("its HDF5 structure", kSegmentHeaderBytes, bytes.size(), " is damaged");
    return findings;
  }
  const std::uint64_t tail = entry.fileBytes - kSegmentTailBytes;
  if (tail > end && !IsZero(file, end, tail - end, size))
    add("what lies between its parts", end, tail - end, " is not zero");
  head                  = EncodeHeader(header);
  const StoredBytes all = {tail, kSegmentTailBytes, GetChecksum(head.data(), kSegmentTailBytes)};
  if (!IsWhole(file, all, size)) add("the copy of its header", all.offset, all.bytes, " is damaged");
  return findings;
}

std::optional<SegmentHeader> FindWholeCommit(StoreFile file)
{
  const std::uint64_t size = file.GetSize();
  if (size > kMaxCommitBytes) return std::nullopt;
  const std::optional<SegmentHeader> header = ReadHeader(file, 0, kSegmentHeaderBytes, size);
  if (!header || !header->commit || header->entry.fileBytes != size) return std::nullopt;
  const FoundSegment found = FindSegment(std::move(file), &header->entry);
  if (!found.findings.empty() || found.segment == nullptr) return std::nullopt;
  if (!FindDamage(*found.segment, *header, nullptr).empty()) return std::nullopt;
  return header;
}
