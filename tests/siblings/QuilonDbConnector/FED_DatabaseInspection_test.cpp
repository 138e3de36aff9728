#include "bundled/FED_DatabaseInspection.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bundled/FED_FileLayer.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_DataBlock.h"

#include "store_support.h"
#include "stored_tensors.h"
#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto kScalar  = static_cast<FED_OnfId>(500);
constexpr auto kElement = static_cast<FED_OnfId>(595);

// Two steps of tensors at nodes 10, 20, 30, elements with nodes, a history; two commits, so two segments.
void MakeSample(const std::filesystem::path& folder)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (int step = 1; step <= 2; ++step) {
    FED_DataBlock& tensors = database.GetOrCreateDataBlock(Key(kTensor, step), 0);
    for (int node = 10; node <= 30; node += 10) {
      const double tensor[6] = {1000.0 * step + node, 2, 3, 4, 5, 6};
      tensors.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(0, node), tensor);
    }
    database.GetOrCreateDataBlock(Key(kScalar, 0), 0).SetScalarAt(static_cast<std::size_t>(step), 0.5 * step);
    FED_DataBlock&  elements = database.GetOrCreateDataBlock(Key(kElement, step), 0);
    FED_DataRecord* record   = elements.CreateDataRecord();
    FED_IntArray    nodes;
    nodes.Resize(2);
    nodes.GetData()[0] = 10;
    nodes.GetData()[1] = 20;
    record->SetIntList(1, nodes);
    elements.SetRecord(database.GetIdMapsPool().FindOrAddIndex(1, 7), *record);
    elements.DeleteDataRecord(record);
    database.SetUserKindName(static_cast<FED_OnfId>(1000), "wear");
    database.Commit();
  }
}

std::string ReadBytes(const std::filesystem::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// Flips a byte of a stored number, which the file has once.
void Damage(const std::filesystem::path& path, double number)
{
  const std::string bytes = ReadBytes(path);
  const std::size_t place = bytes.find(std::string(reinterpret_cast<const char*>(&number), sizeof(number)));
  ASSERT_NE(place, std::string::npos);
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(place));
  file.put(static_cast<char>(bytes[place] ^ 1));
}

double GetFirst(const FED_Database& database, const FED_DataDescriptor& descriptor, int node)
{
  double tensor[6] = {};
  database.GetConstDataBlock(descriptor).GetValuesAt(database.GetIdMapsPool().FindIndex(0, node), tensor);
  return tensor[0];
}

}  // namespace

TEST(DatabaseInspection, WholeDatabaseHasNoFindings)
{
  const TempFolder folder;
  MakeSample(folder / "a.fed");
  std::ofstream(folder / "a.fed" / "segment-000009.h5") << "left";
  const FED_DatabaseReport report = FED_InspectDatabase(folder / "a.fed");
  EXPECT_THAT(report.findings, IsEmpty());
  EXPECT_THAT(report.leftovers, ElementsAre("segment-000009.h5"));
  EXPECT_EQ(report.generation, 2u);
  EXPECT_EQ(report.segments, 2u);
  EXPECT_EQ(report.blocks, 5u);
  EXPECT_EQ(report.records, 3u + 3u + 2u + 1u + 1u);
}

TEST(DatabaseInspection, ACommitThatIsGivenUpMeanwhileIsNoDamage)
{
  const TempFolder            folder;
  const std::filesystem::path manifest = folder / "a.fed" / "manifest";
  MakeSample(folder / "a.fed");
  // Whole, and without its line yet.
  const std::size_t line = ReadBytes(manifest).find("\ncommit ");
  ASSERT_NE(line, std::string::npos);
  std::filesystem::resize_file(manifest, line + 1);
  EXPECT_EQ(FED_InspectDatabase(folder / "a.fed").segments, 2u);
  GivenUpCommit            files;
  const FED_DatabaseReport report = FED_InspectDatabase(folder / "a.fed", &files);
  EXPECT_THAT(report.findings, IsEmpty());
  EXPECT_THAT(report.leftovers, IsEmpty());
  EXPECT_EQ(report.segments, 1u);
}

TEST(DatabaseInspection, DamagedChunkIsNamedAndTheRestSalvaged)
{
  const TempFolder folder;
  MakeSample(folder / "a.fed");
  Damage(folder / "a.fed" / "segment-000002.h5", 2020.0);
  const FED_DatabaseReport report = FED_InspectDatabase(folder / "a.fed");
  ASSERT_EQ(report.findings.size(), 1u);
  EXPECT_THAT(report.findings[0], HasSubstr((folder / "a.fed" / "segment-000002.h5").string() +
                                            ": chunk 0 (rows 0 to 2) of block " + Key(kTensor, 2).ToString()));

  FED_ResultDatabase      target;
  const FED_SalvageReport salvage = FED_SalvageDatabase(folder / "a.fed", target);
  EXPECT_TRUE(salvage.hasManifest);
  EXPECT_EQ(salvage.blocks, 5u);
  EXPECT_EQ(salvage.records, 7u);
  EXPECT_EQ(salvage.lostRecords, 3u);
  EXPECT_EQ(salvage.losses, report.findings);
  EXPECT_EQ(GetFirst(target, Key(kTensor, 1), 30), 1030.0);
  EXPECT_EQ(target.GetDataBlock(Key(kScalar, 0)).GetScalarAt(2), 1.0);
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1000)), "wear");
  const FED_DataBlock& elements = target.GetDataBlock(Key(kElement, 2));
  FED_ConstDataRecord* record   = elements.CreateConstDataRecord();
  elements.GetRecord(target.GetIdMapsPool().FindIndex(1, 7), *record);
  FED_IntArray nodes;
  record->GetIntList(1, nodes);
  ASSERT_EQ(nodes.GetSize(), 2u);
  EXPECT_EQ(nodes.GetData()[1], 20);
  elements.DeleteDataRecord(record);
}

TEST(DatabaseInspection, WithoutAManifestAllWholeSegmentsAreSalvaged)
{
  const TempFolder folder;
  MakeSample(folder / "a.fed");
  std::filesystem::resize_file(folder / "a.fed" / "manifest", 20);
  EXPECT_THAT(FED_InspectDatabase(folder / "a.fed").findings,
              ElementsAre((folder / "a.fed" / "manifest").string() + ": damaged: it has no checksum"));
  FED_ResultDatabase      target;
  const FED_SalvageReport salvage = FED_SalvageDatabase(folder / "a.fed", target);
  EXPECT_FALSE(salvage.hasManifest);
  EXPECT_EQ(salvage.records, 10u);
  EXPECT_EQ(salvage.lostRecords, 0u);
  EXPECT_EQ(GetFirst(target, Key(kTensor, 2), 20), 2020.0);
}

TEST(DatabaseInspection, MissingSegmentIsNamedAndTheOthersSalvaged)
{
  const TempFolder folder;
  MakeSample(folder / "a.fed");
  std::filesystem::remove(folder / "a.fed" / "segment-000001.h5");
  const FED_DatabaseReport report = FED_InspectDatabase(folder / "a.fed");
  ASSERT_FALSE(report.findings.empty());
  EXPECT_EQ(report.findings[0],
            (folder / "a.fed" / "segment-000001.h5").string() + ": cannot open: No such file or directory");
  FED_ResultDatabase      target;
  const FED_SalvageReport salvage = FED_SalvageDatabase(folder / "a.fed", target);
  // The id maps were in the missing segment, and the first appearance of the scalars' block.
  EXPECT_EQ(salvage.records, 4u);
  EXPECT_FALSE(target.HasDataBlock(Key(kScalar, 0)));
  EXPECT_EQ(target.GetDataBlock(Key(kElement, 2)).GetSize(), 1u);
  EXPECT_THAT(salvage.losses,
              testing::IsSupersetOf({"the id map of entity kind 0: 3 records are kept at indices without an id",
                                     "the id map of entity kind 1: 1 records are kept at indices without an id"}));
}

TEST(DatabaseInspection, ASegmentWithoutAWholeIndexIsNamedOnceAndTheOthersSalvaged)
{
  const TempFolder            folder;
  const std::filesystem::path path = folder / "a.fed" / "segment-000002.h5";
  MakeSample(folder / "a.fed");
  const std::string bytes = ReadBytes(path);
  for (const std::size_t at : {48u, 72u}) {  // where the header tells of the index, and of its copy
    std::uint64_t offset = 0;
    std::memcpy(&offset, bytes.data() + at, sizeof(offset));
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(offset) + 20);
    file.put(static_cast<char>(bytes[static_cast<std::size_t>(offset) + 20] ^ 1));
  }
  const FED_DatabaseReport report = FED_InspectDatabase(folder / "a.fed");
  ASSERT_FALSE(report.findings.empty());
  EXPECT_THAT(report.findings[0],
              testing::MatchesRegex(".*segment-000002.h5: its index .bytes [0-9]+ to [0-9]+. is damaged"));
  EXPECT_THAT(report.findings, testing::Contains(HasSubstr("its index (bytes")).Times(1));
  FED_ResultDatabase target;
  EXPECT_TRUE(FED_SalvageDatabase(folder / "a.fed", target).hasManifest);
  EXPECT_EQ(GetFirst(target, Key(kTensor, 1), 30), 1030.0);
  EXPECT_FALSE(target.HasDataBlock(Key(kTensor, 2)));
}

TEST(DatabaseInspection, VectorsAreSalvaged)
{
  const TempFolder         folder;
  const FED_DataDescriptor places(0, static_cast<FED_OnfId>(516));
  const double             expected[3] = {1.0, -2.0, 0.5};
  {
    FED_ResultDatabase database(folder / "a.fed", FED_ResultDatabase::Create);
    database.GetOrCreateDataBlock(places, 0).SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(0, 7), expected);
    database.Commit();
  }
  FED_ResultDatabase target;
  EXPECT_EQ(FED_SalvageDatabase(folder / "a.fed", target).records, 1u);
  double found[3] = {};
  target.GetConstDataBlock(places).GetValuesAt(target.GetIdMapsPool().FindIndex(0, 7), found);
  EXPECT_THAT(found, testing::ElementsAreArray(expected));
}

TEST(DatabaseInspection, EveryFlippedByteOfDataOrIndexIsFound)
{
  const TempFolder folder;
  MakeSample(folder / "a.fed");
  const std::filesystem::path path  = folder / "a.fed" / "segment-000001.h5";
  const std::string           bytes = ReadBytes(path);
  std::uint64_t               place[2];  // offset and size of the index
  std::memcpy(place, bytes.data() + 48, sizeof(place));
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  const auto   put = [&](std::uint64_t at, char byte) {
    file.seekp(static_cast<std::streamoff>(at));
    file.put(byte);
    file.flush();
  };
  for (std::uint64_t at = place[0]; at < place[0] + place[1]; ++at) {
    put(at, static_cast<char>(bytes[at] ^ 4));
    EXPECT_FALSE(FED_InspectDatabase(folder / "a.fed").findings.empty()) << at;
    put(at, bytes[at]);
  }
  EXPECT_THAT(FED_InspectDatabase(folder / "a.fed").findings, IsEmpty());
}
