// What can be saved of segments that were cut or whose bytes were changed: everything that is still there.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"

#include "Manifest.h"
#include "SegmentIndex.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

constexpr int kBlocks  = 20;  // of a commit
constexpr int kRecords = 12;

FED_DataDescriptor Key(int block)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(block % 4 == 0 ? 521 : 500));
  descriptor.SetInteger(FED_DataDescriptor::Substep, block);
  return descriptor;
}

double ValueOf(int block, std::size_t index) { return 1000.0 * block + 0.5 * static_cast<double>(index); }

// Histories at indices that are no run and tensors at nodes, of which the first commit adds the ids.
void MakeDatabase(const std::filesystem::path& folder)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (int block = 0; block < 2 * kBlocks; ++block) {
    FED_DataBlock& to = database.GetOrCreateDataBlock(Key(block), 0);
    for (int i = 1; i <= kRecords; ++i) {
      if (block % 4 != 0) {
        const auto index = static_cast<std::size_t>(3 * i);
        to.SetScalarAt(index, ValueOf(block, index));
        continue;
      }
      const std::size_t index     = database.GetIdMapsPool().FindOrAddIndex(0, 100 + i);
      const double      tensor[6] = {ValueOf(block, index), 2, 3, 4, 5, 6};
      to.SetValuesAt(index, tensor);
    }
    if (block == kBlocks - 1) database.Commit();
  }
  database.Commit();
}

// Where a segment's data lie.
struct SegmentPlaces
{
  std::filesystem::path                        path;
  std::uint64_t                                fileBytes = 0;
  StoredBytes                                  ids;
  std::map<BlockUid, std::vector<StoredBytes>> blocks;
};

class Salvage : public testing::Test
{
protected:
  void SetUp() override
  {
    MakeDatabase(database_);
    const Manifest manifest = DecodeManifest(Read(database_ / "manifest"), "manifest").manifest;
    ASSERT_EQ(manifest.segments.size(), 2u);
    for (const SegmentEntry& entry : manifest.segments) {
      SegmentPlaces places;
      places.path             = database_ / GetSegmentName(entry.number);
      const std::string bytes = Read(places.path);
      const auto*       data  = reinterpret_cast<const std::uint8_t*>(bytes.data());
      const auto        index = DecodeIndex(data + entry.indexOffset, entry.indexBytes, bytes.size(), places.path);
      places.fileBytes        = bytes.size();
      if (!index.ids.empty()) places.ids = index.ids.front().ids;
      for (const IndexExtent& extent : index.extents) {
        std::vector<StoredBytes>& block = places.blocks[extent.block];
        if (extent.keys.bytes > 0) block.push_back(extent.keys);
        for (std::size_t i = 0; i < extent.columnCount; ++i)
          block.push_back(index.columns[extent.firstColumn + i].bytes);
      }
      segments_.push_back(places);
    }
  }

  static std::string Read(const std::filesystem::path& path)
  {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  // Blocks have the numbers 1, 2, ... in the order in which they were made.
  void ExpectSaved(const SegmentPlaces& damaged, std::uint64_t begin, std::uint64_t end)
  {
    const auto isHit = [&](const StoredBytes& place) {
      return place.offset < end && begin < place.offset + place.bytes;
    };
    const bool              idsAreLost = damaged.ids.bytes > 0 && isHit(damaged.ids);
    FED_ResultDatabase      target;
    const FED_SalvageReport report = FED_SalvageDatabase(database_, target);
    std::uint64_t           saved  = 0;
    for (const SegmentPlaces& segment : segments_)
      for (const auto& [uid, places] : segment.blocks) {
        const int block  = static_cast<int>(uid) - 1;
        bool      isLost = idsAreLost && block % 4 == 0;
        for (const StoredBytes& place : places) isLost = isLost || (segment.path == damaged.path && isHit(place));
        if (isLost) continue;
        saved += kRecords;
        ASSERT_TRUE(target.HasDataBlock(Key(block)));
        const FED_DataBlock& from = target.GetConstDataBlock(Key(block));
        for (int i = 1; i <= kRecords; ++i) {
          const std::size_t index =
              block % 4 == 0 ? target.GetIdMapsPool().FindIndex(0, 100 + i) : static_cast<std::size_t>(3 * i);
          double tensor[6] = {};
          ASSERT_TRUE(from.HasRecord(index));
          if (block % 4 == 0)
            from.GetValuesAt(index, tensor);
          else
            tensor[0] = from.GetScalarAt(index);
          ASSERT_EQ(tensor[0], ValueOf(block, block % 4 == 0 ? static_cast<std::size_t>(i) : index));
        }
      }
    EXPECT_EQ(report.records, saved);
    EXPECT_FALSE(report.losses.empty());
  }

  TempFolder                 folder_;
  std::filesystem::path      database_ = folder_ / "a.fed";
  std::vector<SegmentPlaces> segments_;
};

}  // namespace

TEST_F(Salvage, SavesAllThatStandsBeforeACutAnywhere)
{
  std::mt19937 random(1);
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    const SegmentPlaces& segment = segments_[static_cast<std::size_t>(round % 2)];
    const std::string    bytes   = Read(segment.path);
    // In front of the index there is nothing to be found by; behind it one cut in ten is within the last bytes.
    const std::uint64_t first = segment.blocks.begin()->second.front().offset;
    const std::uint64_t last  = segment.fileBytes - 1;
    const std::uint64_t size  = round % 10 == 0 ? last - random() % 200 : first + random() % (last - first);
    SCOPED_TRACE(segment.path.filename().string() + " cut to " + std::to_string(size));
    if (round % 4 == 3) std::filesystem::rename(database_ / "manifest", folder_ / "manifest");
    std::filesystem::resize_file(segment.path, size);
    ExpectSaved(segment, size, segment.fileBytes);
    std::ofstream(segment.path, std::ios::binary | std::ios::trunc) << bytes;
    if (round % 4 == 3) std::filesystem::rename(folder_ / "manifest", database_ / "manifest");
  }
}

TEST_F(Salvage, SavesAllButWhatAChangedByteBelongsTo)
{
  std::mt19937 random(2);
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    const SegmentPlaces& segment = segments_[static_cast<std::size_t>(round % 2)];
    const std::uint64_t  at      = random() % segment.fileBytes;
    SCOPED_TRACE(segment.path.filename().string() + " byte " + std::to_string(at));
    if (round % 4 == 3) std::filesystem::rename(database_ / "manifest", folder_ / "manifest");
    std::fstream file(segment.path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekg(static_cast<std::streamoff>(at));
    const int byte = file.get();
    file.seekp(static_cast<std::streamoff>(at));
    file.put(static_cast<char>(byte ^ 0x10)).flush();
    // Without a manifest nobody looks at what belongs to no value.
    FED_ResultDatabase target;
    if (round % 4 != 3 && FED_SalvageDatabase(database_, target).losses.empty())
      EXPECT_FALSE(FED_InspectDatabase(database_).findings.empty());
    else
      ExpectSaved(segment, at, at + 1);
    file.seekp(static_cast<std::streamoff>(at));
    file.put(static_cast<char>(byte)).flush();
    if (round % 4 == 3) std::filesystem::rename(folder_ / "manifest", database_ / "manifest");
  }
}

TEST_F(Salvage, SavesEverythingWhenTheLastTenBytesAreMissing)
{
  std::filesystem::resize_file(segments_[1].path, segments_[1].fileBytes - 10);
  FED_ResultDatabase      target;
  const FED_SalvageReport report = FED_SalvageDatabase(database_, target);
  EXPECT_EQ(report.records, 2u * kBlocks * kRecords);
  EXPECT_EQ(report.losses, std::vector<std::string>{segments_[1].path.string() + ": the file has " +
                                                    std::to_string(segments_[1].fileBytes - 10) + " bytes, expected " +
                                                    std::to_string(segments_[1].fileBytes)});
}

TEST_F(Salvage, SavesEverythingWhenAnIndexIsOverwritten)
{
  for (const SegmentPlaces& segment : segments_) {
    const std::string bytes = Read(segment.path);
    const std::size_t at    = bytes.find("QUILIDX\n");
    std::fstream      file(segment.path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(at));
    file << std::string(64, '\0');
  }
  FED_ResultDatabase target;
  EXPECT_EQ(FED_SalvageDatabase(database_, target).records, 2u * kBlocks * kRecords);
  const std::vector<std::string> findings = FED_InspectDatabase(database_).findings;
  ASSERT_EQ(findings.size(), 2u);
  EXPECT_NE(findings[0].find(" is damaged, its copy is whole; no value is concerned"), std::string::npos);
}

TEST_F(Salvage, DestroyedStructureIsToldOfAndConcernsNoValue)
{
  std::fstream file(segments_[0].path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(512);
  file << std::string(96, '\0');
  file.close();
  const std::vector<std::string> findings = FED_InspectDatabase(database_).findings;
  ASSERT_EQ(findings.size(), 1u);
  EXPECT_EQ(findings[0].rfind(segments_[0].path.string() + ": its HDF5 structure (bytes 512 to ", 0), 0u);
  EXPECT_NE(findings[0].find(") is damaged; no value is concerned"), std::string::npos);
}
