#include "export/Hdf5File.h"

#include <fstream>
#include <iterator>

#include "ExportSupport.h"
#include "FaultyFiles.h"
#include "TempFolder.h"

namespace quilon {
namespace {

using namespace quilon_test;

/// Enough for several writes of data and of what HDF5 keeps about it.
void WriteSome(const std::filesystem::path& path, FED_FileLayer* files)
{
  Hdf5File file(path, "out.vtkhdf", files);
  for (const char* name : {"/a/values", "/a/more", "/b/c/values"})
    file.WriteDataset(name, Hdf5Type::Float64, {10000}, std::vector<double>(10000, 0.5));
  file.CreateDataset("/rows", Hdf5Type::Int32, {4, 3});
  const std::vector<int> row = {1, 2, 3};
  file.WriteRows("/rows", 2, std::as_bytes(std::span(row)));
  file.WriteAttribute("/a", "version", std::vector<std::int64_t>{1, 0});
  file.Close();
}

// HDF5 itself can neither close a file that it failed to write, nor end.
TEST(Hdf5File, TellsOfEveryCallThatFailsAndGoesOn)
{
  const TempFolder  folder;
  const auto        path = folder / "out";
  FaultyFiles       files;
  const std::string expected = "out.vtkhdf: expected a file that can be written: ";
  for (const Fault fault : {Fault::InputOutputError, Fault::DiskFull, Fault::ShortWrite}) {
    std::size_t position = 0;
    std::string message;
    do {
      std::ofstream(path).close();
      files.Arm(fault, ++position);
      message = FailureOf([&] { WriteSome(path, &files); });
      if (files.HasFailed()) {
        EXPECT_EQ(message.substr(0, expected.size()), expected) << "call " << position;
      }
    } while (files.HasFailed());
    EXPECT_EQ(message, "");
    EXPECT_GT(position, 5U);
  }
}

TEST(Hdf5File, EqualCallsGiveEqualBytes)
{
  const TempFolder folder;
  const auto       bytes = [&](const char* name) {
    std::ofstream(folder / name).close();
    WriteSome(folder / name, nullptr);
    std::ifstream file(folder / name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  };
  EXPECT_EQ(bytes("a"), bytes("b"));
}

TEST(Hdf5File, FindsItsDataSetsAgain)
{
  const TempFolder folder;
  std::ofstream(folder / "out").close();
  WriteSome(folder / "out", nullptr);
  const auto datasets = Hdf5File::ListDatasets(folder / "out");
  ASSERT_EQ(datasets.size(), 3U);  // doubles alone
  for (const auto& dataset : datasets) {
    EXPECT_EQ(dataset.numRows, 10000U);
    EXPECT_EQ(dataset.numColumns, 0U);
    std::ifstream file(folder / "out", std::ios::binary);
    file.seekg(static_cast<std::streamoff>(dataset.offset));
    double value = 0;
    file.read(reinterpret_cast<char*>(&value), sizeof value);
    EXPECT_EQ(value, 0.5) << dataset.path;
  }
  EXPECT_EQ(FailureOf([&] { Hdf5File::ListDatasets(folder / "none"); }),
            (folder / "none").string() + ": expected an HDF5 file");
}

}  // namespace
}  // namespace quilon
