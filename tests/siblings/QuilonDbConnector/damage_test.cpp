// Bytes that flip and files that end early: what is read is what was written, or a failure that says where.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_DatabaseInspection.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

#include "database_state.h"
#include "failure_message.h"
#include "TempFolder.h"

namespace quilon_test {
namespace {

namespace fs = std::filesystem;

FED_DataDescriptor Key(int onf, int substep)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  return descriptor;
}

/// Two segments with scalars at scattered nodes, tensors, lists, a deleted block and a name.
void MakeDatabase(const fs::path& folder)
{
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  FED_IdDataBlock    view(database.GetOrCreateDataBlock(Key(514, 1), 0), database.GetIdMapsPool(), true);
  for (const int id : {7, -3, 100000}) view.SetScalar(id, 0.1 * id);
  const double tensor[6] = {1, 2, 3, 4, 5, 6};
  for (const std::size_t index : {1U, 2U, 9U}) database.GetOrCreateDataBlock(Key(521, 1), 0).SetValuesAt(index, tensor);
  database.GetOrCreateDataBlock(Key(514, 2), 0).SetScalarAt(1, 1.0);
  database.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear");
  database.Commit();

  database.DeleteDataBlock(Key(514, 2));
  FED_DataBlock&        lists  = database.GetOrCreateDataBlock(Key(595, 0), 0);
  FED_DataRecord* const record = lists.CreateDataRecord();
  record->SetIntList(1, std::vector<int>{3, 1, 2});
  lists.SetRecord(4, *record);
  lists.DeleteDataRecord(record);
  database.GetDataBlock(Key(521, 1)).SetValuesAt(2, tensor + 0);
  database.Commit();
}

std::string ReadFile(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void WriteFile(const fs::path& path, const std::string& bytes)
{
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// In place: replacing whole files makes some file systems flush them.
void PutByte(const fs::path& path, std::size_t at, char byte)
{
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  file.seekp(static_cast<std::streamoff>(at));
  file.put(byte);
}

class Damage : public testing::Test
{
protected:
  void SetUp() override
  {
    MakeDatabase(database_);
    whole_ = StateOf(FED_ResultDatabase(database_, FED_ResultDatabase::ReadOnly));
    for (const auto& entry : fs::directory_iterator(database_))
      if (entry.path().filename() != "lock") files_.push_back(entry.path());
  }

  /// Reads all; the data have to be the whole ones, or the message has to name the damaged file.
  /// @return whether it failed
  bool ExpectWholeOrFailure(const fs::path& file)
  {
    std::string message;
    try {
      EXPECT_EQ(StateOf(FED_ResultDatabase(database_, FED_ResultDatabase::ReadOnly)), whole_);
      return false;
    } catch (const FED_Failure& failure) {
      message = failure.GetMessage();
    }
    EXPECT_EQ(message.rfind(file.string() + ": ", 0), 0U) << message;
    return true;
  }

  TempFolder            folder_;
  fs::path              database_ = folder_ / "a.fed";
  State                 whole_;
  std::vector<fs::path> files_;
};

// A reader does not look at all bytes: HDF5's structure, copies of index and header. A check does, and tells which part
// of which file it is. What was appended to the manifest stands in the segment's header as well.
TEST_F(Damage, AFlippedByteIsFoundOrChangesNothing)
{
  std::size_t flips = 0;
  std::size_t found = 0;
  for (const fs::path& file : files_) {
    const std::string bytes = ReadFile(file);
    for (std::size_t at = 0; at < bytes.size() && !HasFailure(); ++at) {
      SCOPED_TRACE(file.filename().string() + ", byte " + std::to_string(at));
      PutByte(file, at, static_cast<char>(bytes[at] ^ (at % 2 == 0 ? 0x01 : 0x80)));
      ++flips;
      if (ExpectWholeOrFailure(file)) ++found;
      const FED_DatabaseReport report = FED_InspectDatabase(database_);
      if (report.findings.empty()) {
        EXPECT_EQ(file.filename(), "manifest");
        EXPECT_EQ(report.leftovers.size(), 1U);
      }
      PutByte(file, at, bytes[at]);
    }
  }
  std::cout << flips << " flips tried, " << found << " found, the others changed nothing\n";
  EXPECT_GT(found, 1500U);  // the indices alone have more bytes
}

TEST_F(Damage, AFileThatEndsEarlyIsFound)
{
  std::size_t cuts = 0;
  for (const fs::path& file : files_) {
    const std::string bytes = ReadFile(file);
    for (std::size_t size = bytes.size(); size-- > 0 && !HasFailure();) {
      SCOPED_TRACE(file.filename().string() + ", cut to " + std::to_string(size));
      fs::resize_file(file, size);
      ++cuts;
      // Of the manifest, what was appended may go.
      if (!ExpectWholeOrFailure(file)) {
        EXPECT_EQ(file.filename(), "manifest");
      }
    }
    WriteFile(file, bytes + "x");
    EXPECT_EQ(ExpectWholeOrFailure(file), file.filename() != "manifest") << file;
    WriteFile(file, bytes);
  }
  std::cout << cuts << " truncations tried\n";
}

TEST_F(Damage, AFileThatIsMissingIsFound)
{
  for (const fs::path& file : files_) {
    if (file.filename() == "manifest") continue;
    const std::string bytes = ReadFile(file);
    fs::remove(file);
    EXPECT_TRUE(ExpectWholeOrFailure(file));
    WriteFile(file, bytes);
  }
}

TEST_F(Damage, DataNameFileBlockAndChunk)
{
  // The scalar of node 7 is the only double of this value.
  const double      value = 0.1 * 7;
  const std::string bytes(reinterpret_cast<const char*>(&value), sizeof value);
  for (const fs::path& file : files_) {
    std::string       content = ReadFile(file);
    const std::size_t at      = content.find(bytes);
    if (at == std::string::npos || file.extension() != ".h5") continue;
    content[at] = static_cast<char>(content[at] ^ 1);
    WriteFile(file, content);
    const FED_ResultDatabase database(database_, FED_ResultDatabase::ReadOnly);
    EXPECT_EQ(MessageOf([&] {
                database.GetConstDataBlock(Key(514, 1)).GetScalarAt(1);
              }).rfind(file.string() + ": chunk 0 (rows 0 to 2) of block iteration=0 onf=514 substep=1", 0),
              0U);
    // Other blocks are not concerned.
    EXPECT_TRUE(database.GetConstDataBlock(Key(521, 1)).HasRecord(9));
    return;
  }
  FAIL() << "the value is nowhere";
}

TEST_F(Damage, ANewerFormatVersionIsRefusedWithBothVersions)
{
  const fs::path manifest = database_ / "manifest";
  std::string    text     = ReadFile(manifest);
  ASSERT_EQ(text.rfind("quilon-database 2\n", 0), 0U);
  text.replace(0, 17, "quilon-database 4");
  WriteFile(manifest, text);
  const std::string message =
      manifest.string() + ": the database has format version 4, this program reads versions 1 to 3";
  for (const auto access : {FED_ResultDatabase::ReadOnly, FED_ResultDatabase::ReadWrite})
    EXPECT_EQ(MessageOf([&] { FED_ResultDatabase(database_, access); }), message);
  EXPECT_EQ(ReadFile(manifest), text);
}

}  // namespace
}  // namespace quilon_test
