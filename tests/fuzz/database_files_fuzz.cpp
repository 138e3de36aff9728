// The readers of a database's files on any bytes: they read or throw FED_Failure. The first byte chooses what the
// others are:
//   m  a manifest without its last line, which is put behind it, so that the checksum hides nothing
//   h  the header of a segment, likewise
//   i  the index of a segment; what reads is put together with itself, and encodes to an index that reads again

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "QuilonUtilities/FED_Failure.h"

#include "Checksum.h"
#include "Manifest.h"
#include "Segment.h"
#include "SegmentIndex.h"
#include "StoredState.h"

namespace {

constexpr std::uint64_t kFileBytes = std::uint64_t{1} << 40;

void ReadManifest(std::string text)
{
  text += "checksum " + FormatChecksum(GetChecksum(text.data(), text.size())) + '\n';
  const Manifest manifest = DecodeManifest(text, "manifest").manifest;
  ManifestState  again    = DecodeManifest(EncodeManifest(manifest), "manifest");
  if (!(again.manifest == manifest)) std::abort();
  if (manifest.nextSegment == 0) return;
  const std::string line = AppendCommit(again, SegmentEntry{manifest.nextSegment, 0, 0, 1, 2, 3, 4}, 5);
  if (DecodeManifest(EncodeManifest(manifest) + line, "manifest").commits != 1) std::abort();
}

void ReadHeader(const std::string& text)
{
  SegmentHeaderBytes bytes{};
  // The first format version has a shorter one.
  const std::size_t used = text.size() > 8 && text[8] == 1 ? 72 : kSegmentTailBytes - 8;
  std::memcpy(bytes.data(), text.data(), std::min(text.size(), used));
  const std::uint64_t checksum = GetChecksum(bytes.data(), used);
  for (std::size_t i = 0; i < 8; ++i) bytes[used + i] = static_cast<std::uint8_t>(checksum >> (8 * i));
  const SegmentHeader header = DecodeHeader(bytes, "segment");
  const SegmentHeader again  = DecodeHeader(EncodeHeader(header), "segment");
  if (!(again.entry == header.entry) || again.commit != header.commit) std::abort();
}

void ReadIndex(const std::string& text)
{
  const auto*        bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const SegmentIndex index = DecodeIndex(bytes, text.size(), kFileBytes, "segment");
  // Not the same bytes: record formats have more than one spelling.
  const std::vector<std::uint8_t> again = EncodeIndex(index);
  if (EncodeIndex(DecodeIndex(again.data(), again.size(), kFileBytes, "segment")) != again) std::abort();
  Segment     segment(StoreFile(), SegmentEntry(), index);
  StoredState lenient([](const Segment&, const std::string&) {});
  lenient.Add(segment);
  lenient.Add(segment);
  lenient.RequireAllRows();
  StoredState strict;
  strict.Add(segment);
  strict.RequireAllRows();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  if (size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    if (data[0] == 'm') ReadManifest(text);
    if (data[0] == 'h') ReadHeader(text);
    if (data[0] == 'i') ReadIndex(text);
  } catch (const FED_Failure&) {
    // Named, as it should be.
  }
  return 0;
}
