// Whole databases under right checksums: values, keys, lists, texts, id maps and indices of two segments are changed,
// then every checksum is made right again. Opening and reading, checking and salvaging answer or throw FED_Failure, and
// agree: what has no finding is read to its last value, and salvage saves the very same.
//
// The input is a row of changes of five bytes: which part, where in it (two bytes), how, and with what.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "Checksum.h"
#include "database_state.h"
#include "Manifest.h"
#include "SegmentIndex.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kEditBytes = 5;

void Require(bool holds)
{
  if (!holds) std::abort();
}

FED_DataDescriptor Key(int onf, int loadCase)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  if (loadCase != 0) key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return key;
}

std::string ReadBytes(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void WriteBytes(const fs::path& path, const std::string& bytes)
{
  std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), std::ssize(bytes));
}

void AddLists(FED_ResultDatabase& database)
{
  FED_DataBlock&  lists  = database.GetOrCreateDataBlock(Key(595, 0), 0);
  FED_DataRecord* record = lists.CreateDataRecord();
  record->SetIntList(1, FED_IntArray(std::vector<int>{1, 2, 3, 4}));
  for (std::size_t index = 1; index < 4; ++index) lists.SetRecord(index, *record);
  lists.DeleteDataRecord(record);

  FED_DataBlock&  sets = database.GetOrCreateDataBlock(Key(600, 0), 0);
  FED_DataRecord* set  = sets.CreateDataRecord();
  set->SetString(1, "a set");
  set->SetIntList(2, FED_IntArray(std::vector<int>{7, 12}));
  sets.SetRecord(1, *set);
  sets.DeleteDataRecord(set);
}

/// What a segment is made of, as it was written.
struct Original
{
  std::string  name;
  std::string  bytes;
  SegmentEntry entry;
};

/// A database of two commits with fields, lists, texts and ids; the second replaces rows of the first.
class Base
{
public:
  Base()
  {
    {
      FED_ResultDatabase database(folder_ / "base.fed", FED_ResultDatabase::Create);
      for (const int id : {7, -3, 12, 5}) database.GetIdMapsPool().FindOrAddIndex(0, id);
      for (const std::size_t index : {4U, 2U, 3U})
        database.GetOrCreateDataBlock(Key(514, 1), 0).SetScalarAt(index, 0.5 * static_cast<double>(index));
      const std::array<double, 6> tensor = {1.0, -2.0, 3.0, 0.5, 0.25, -0.125};
      for (const std::size_t index : {1U, 2U, 3U})
        database.GetOrCreateDataBlock(Key(521, 1), 0).SetValuesAt(index, tensor.data());
      AddLists(database);
      database.SetUserKindName(static_cast<FED_OnfId>(1000), "a kind");
      database.Commit();
      database.GetOrCreateDataBlock(Key(514, 1), 0).SetScalarAt(2, 8.0);
      database.GetOrCreateDataBlock(Key(514, 2), 0).SetScalarAt(1, -1.0);
      database.GetIdMapsPool().FindOrAddIndex(0, 99);
      database.Commit();
    }
    // Commits that follow each other in the manifest alone: what a segment says of itself as a commit is checked by
    // every byte of it, and nothing that is changed would be read.
    const FED_ResultDatabase reader(folder_ / "base.fed", FED_ResultDatabase::ReadOnly);
    std::vector<fs::path>    paths;
    for (const auto& file : fs::directory_iterator(folder_ / "base.fed"))
      if (IsSegmentName(file.path().filename().string())) paths.push_back(file.path());
    std::sort(paths.begin(), paths.end());
    for (const fs::path& path : paths) {
      Original           original{path.filename().string(), ReadBytes(path), {}};
      SegmentHeaderBytes header{};
      std::memcpy(header.data(), original.bytes.data(), header.size());
      original.entry = DecodeHeader(header, path).entry;
      segments_.push_back(std::move(original));
    }
    manifest_ = DecodeManifest(ReadBytes(folder_ / "base.fed" / "manifest"), "manifest").manifest;
    manifest_.segments.clear();
    manifest_.nextSegment = segments_.size() + 1;
    manifest_.nextBlock   = 100;
    fs::create_directory(GetTrial());
  }

  fs::path                     GetTrial() const { return folder_ / "trial.fed"; }
  const std::vector<Original>& GetSegments() const { return segments_; }
  const Manifest&              GetManifest() const { return manifest_; }

private:
  quilon_test::TempFolder folder_;
  std::vector<Original>   segments_;
  Manifest                manifest_;
};

/// Bytes of a segment that a change may reach.
struct Part
{
  std::size_t segment;
  std::size_t offset;
  std::size_t size;
  bool        isIndex;
};

SegmentIndex DecodeIndexOf(const std::string& bytes, const SegmentEntry& entry)
{
  return DecodeIndex(reinterpret_cast<const std::uint8_t*>(bytes.data()) + entry.indexOffset,
                     static_cast<std::size_t>(entry.indexBytes), bytes.size(), "segment");
}

std::vector<Part> ListParts(const std::vector<Original>& segments)
{
  std::vector<Part> parts;
  for (std::size_t i = 0; i < segments.size(); ++i) {
    const SegmentEntry& entry = segments[i].entry;
    parts.push_back({i, static_cast<std::size_t>(entry.indexOffset), static_cast<std::size_t>(entry.indexBytes), true});
    VisitPlaces(DecodeIndexOf(segments[i].bytes, entry), [&](const StoredBytes& place) {
      if (place.bytes != 0)
        parts.push_back({i, static_cast<std::size_t>(place.offset), static_cast<std::size_t>(place.bytes), false});
    });
  }
  return parts;
}

void Change(char& byte, std::uint8_t how, std::uint8_t with)
{
  auto value = static_cast<std::uint8_t>(byte);
  switch (how % 4) {
    case 0:
      value = with;
      break;
    case 1:
      value = static_cast<std::uint8_t>(value ^ with);
      break;
    case 2:
      value = static_cast<std::uint8_t>(value + with);
      break;
    default:
      value = static_cast<std::uint8_t>(value - with);
      break;
  }
  byte = static_cast<char>(value);
}

/// Makes the checksums of all that the index names right, where the index can be read and is not longer or shorter.
void RepairPlaces(std::string& bytes, const SegmentEntry& entry)
{
  try {
    SegmentIndex index = DecodeIndexOf(bytes, entry);
    const auto   fix   = [&bytes](StoredBytes& place) {
      place.checksum = GetChecksum(bytes.data() + place.offset, static_cast<std::size_t>(place.bytes));
    };
    for (IndexColumn& column : index.columns) fix(column.bytes);
    for (IndexExtent& extent : index.extents) fix(extent.keys);
    for (IndexIds& ids : index.ids) fix(ids.ids);
    const std::vector<std::uint8_t> again = EncodeIndex(index);
    if (again.size() == entry.indexBytes) std::memcpy(bytes.data() + entry.indexOffset, again.data(), again.size());
  } catch (const FED_Failure&) {
    // An index that cannot be read is to be refused as such.
  }
}

void WriteTrial(const Base& base, const std::uint8_t* data, std::size_t size)
{
  static const std::vector<Part> kParts   = ListParts(base.GetSegments());
  std::vector<Original>          segments = base.GetSegments();
  for (; size >= kEditBytes; data += kEditBytes, size -= kEditBytes) {
    const Part&       part = kParts[data[0] % kParts.size()];
    const std::size_t at   = (data[1] + std::size_t{256} * data[2]) % part.size;
    Change(segments[part.segment].bytes[part.offset + at], data[3], data[4]);
  }
  Manifest manifest = base.GetManifest();
  for (Original& segment : segments) {
    RepairPlaces(segment.bytes, segment.entry);
    const char* const index     = segment.bytes.data() + segment.entry.indexOffset;
    segment.entry.indexChecksum = GetChecksum(index, static_cast<std::size_t>(segment.entry.indexBytes));
    SegmentHeaderBytes bytes{};
    std::memcpy(bytes.data(), segment.bytes.data(), bytes.size());
    SegmentHeader header = DecodeHeader(bytes, "segment");
    header.entry         = segment.entry;
    header.commit.reset();
    bytes = EncodeHeader(header);
    std::memcpy(segment.bytes.data(), bytes.data(), bytes.size());
    std::memmove(segment.bytes.data() + header.copyOffset, index, static_cast<std::size_t>(segment.entry.indexBytes));
    std::memcpy(segment.bytes.data() + segment.bytes.size() - kSegmentTailBytes, bytes.data(), kSegmentTailBytes);
    manifest.segments.push_back(segment.entry);
    WriteBytes(base.GetTrial() / segment.name, segment.bytes);
  }
  WriteBytes(base.GetTrial() / "manifest", EncodeManifest(manifest));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const Base kBase;
  WriteTrial(kBase, data, size);

  quilon_test::State state;
  bool               isRead = true;
  try {
    state = quilon_test::StateOf(FED_ResultDatabase(kBase.GetTrial(), FED_ResultDatabase::ReadOnly));
  } catch (const FED_Failure&) {
    isRead = false;
  }
  const FED_DatabaseReport report = FED_InspectDatabase(kBase.GetTrial());
  Require(isRead || !report.findings.empty());

  FED_ResultDatabase      saved;
  const FED_SalvageReport salvage = FED_SalvageDatabase(kBase.GetTrial(), saved);
  const auto              found   = quilon_test::StateOf(saved);
  if (report.findings.empty()) Require(salvage.losses.empty() && found == state);
  return 0;
}
