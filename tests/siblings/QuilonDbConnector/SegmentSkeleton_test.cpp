#include "SegmentSkeleton.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <hdf5.h>

#include "TempFolder.h"

namespace {

using quilon_test::TempFolder;

constexpr std::size_t kUserBlock = 512;
constexpr std::size_t kTail      = 40;

// Writes the structure, and into each data set bytes that count up from its position.
void WriteFile(const std::filesystem::path& path, std::vector<SkeletonData>& data)
{
  const SegmentSkeleton skeleton(kUserBlock, kTail, data);
  std::string           bytes(skeleton.GetFileBytes(), '\0');
  std::memcpy(bytes.data() + kUserBlock, skeleton.GetBytes().data(), skeleton.GetBytes().size());
  std::uint64_t end = kUserBlock + skeleton.GetBytes().size();
  for (std::size_t i = 0; i < data.size(); ++i) {
    EXPECT_EQ(data[i].offset, (end + 7) / 8 * 8) << data[i].path;
    end = data[i].offset + data[i].GetBytes();
    for (std::size_t k = 0; k < data[i].GetBytes(); ++k) bytes[data[i].offset + k] = static_cast<char>(i + k);
  }
  EXPECT_EQ(bytes.size(), (end + 7) / 8 * 8 + kTail);
  std::ofstream(path, std::ios::binary) << bytes;
}

hid_t TypeOf(const SkeletonData& data)
{
  if (data.type == SkeletonData::Bytes) return H5Tcopy(H5T_STD_U8LE);
  switch (data.element) {
    case StoredColumn::Int32:
      return H5Tcopy(H5T_STD_I32LE);
    case StoredColumn::UInt32:
      return H5Tcopy(H5T_STD_U32LE);
    case StoredColumn::Float32:
      return H5Tcopy(H5T_IEEE_F32LE);
    case StoredColumn::Float64:
      return H5Tcopy(H5T_IEEE_F64LE);
    default: {
      const hid_t type = H5Tcopy(H5T_C_S1);
      H5Tset_strpad(type, H5T_STR_NULLPAD);
      return type;
    }
  }
}

// All data sets are found by their paths, have their type, shape and place, and read back; nothing else is there.
void ExpectReadable(const std::filesystem::path& path, const std::vector<SkeletonData>& data)
{
  const hid_t file = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  ASSERT_GE(file, 0);
  std::set<std::string> expected{"."};
  for (std::size_t i = 0; i < data.size(); ++i) {
    const SkeletonData& one = data[i];
    for (std::size_t end = one.path.find('/', 1); end != std::string::npos; end = one.path.find('/', end + 1))
      expected.insert(one.path.substr(1, end - 1));
    expected.insert(one.path.substr(1));
    const hid_t set = H5Dopen2(file, one.path.c_str(), H5P_DEFAULT);
    ASSERT_GE(set, 0) << one.path;
    EXPECT_EQ(H5Dget_offset(set), one.offset) << one.path;
    const hid_t type  = H5Dget_type(set);
    const hid_t ours  = TypeOf(one);
    const hid_t space = H5Dget_space(set);
    EXPECT_GT(H5Tequal(type, ours), 0) << one.path;
    hsize_t shape[2] = {};
    ASSERT_EQ(H5Sget_simple_extent_ndims(space), one.width == 1 ? 1 : 2) << one.path;
    H5Sget_simple_extent_dims(space, shape, nullptr);
    EXPECT_EQ(shape[0], one.rows) << one.path;
    if (one.width != 1) {
      EXPECT_EQ(shape[1], one.width) << one.path;
    }
    std::string bytes(one.GetBytes(), '\0');
    EXPECT_GE(H5Dread(set, ours, H5S_ALL, H5S_ALL, H5P_DEFAULT, bytes.data()), 0) << one.path;
    for (std::size_t k = 0; k < bytes.size(); ++k) ASSERT_EQ(bytes[k], static_cast<char>(i + k)) << one.path;
    H5Sclose(space);
    H5Tclose(ours);
    H5Tclose(type);
    H5Dclose(set);
  }
  std::set<std::string> found;
  const auto            visit = [](hid_t, const char* name, const H5O_info_t*, void* names) -> herr_t {
    static_cast<std::set<std::string>*>(names)->insert(name);
    return 0;
  };
  EXPECT_GE(H5Ovisit(file, H5_INDEX_NAME, H5_ITER_INC, visit, &found), 0);
  EXPECT_EQ(found, expected);
  H5Fclose(file);
}

}  // namespace

TEST(SegmentSkeleton, EveryTypeAndShapeIsHdf5s)
{
  const TempFolder          folder;
  std::vector<SkeletonData> data = {
      {"/index", SkeletonData::Bytes, StoredColumn::Char, 13, 1, 0},
      {"/stress/lc1_sub3/values", SkeletonData::Values, StoredColumn::Float64, 5, 6, 0},
      {"/stress/lc1_sub3/keys", SkeletonData::Values, StoredColumn::UInt32, 5, 1, 0},
      {"/stress/lc1_sub4/values", SkeletonData::Values, StoredColumn::Float64, 1, 3, 0},
      {"/names/all/values", SkeletonData::Values, StoredColumn::Char, 7, 1, 0},
      {"/small/ID/field1", SkeletonData::Values, StoredColumn::Int32, 3, 1, 0},
      {"/small/ID/field2", SkeletonData::Values, StoredColumn::Float64, 3, 1, 0},
      {"/small/F/values", SkeletonData::Values, StoredColumn::Float32, 9, 1, 0},
  };
  WriteFile(folder / "a.h5", data);
  ExpectReadable(folder / "a.h5", data);
}

// To the bits that HDF5 passes over: files of equal data are equal, whoever writes them.
TEST(SegmentSkeleton, BytesOfAStructureStayAsTheyAre)
{
  std::vector<SkeletonData> data = {
      {"/index", SkeletonData::Bytes, StoredColumn::Char, 13, 1, 0},
      {"/names/all/values", SkeletonData::Values, StoredColumn::Char, 7, 1, 0},
      {"/small/F/values", SkeletonData::Values, StoredColumn::Float32, 9, 1, 0},
      {"/small/U/keys", SkeletonData::Values, StoredColumn::UInt32, 5, 1, 0},
  };
  for (int i = 0; i < 70; ++i)
    data.push_back({"/kind/lc" + std::to_string(i) + "/values", SkeletonData::Values,
                    i % 2 == 0 ? StoredColumn::Int32 : StoredColumn::Float64, 3, i % 3 == 0 ? 1u : 6u, 0});
  const SegmentSkeleton skeleton(kUserBlock, kTail, data);
  std::uint64_t         print = 14695981039346656037u;
  for (const std::uint8_t byte : skeleton.GetBytes()) print = (print ^ byte) * 1099511628211u;
  EXPECT_EQ(skeleton.GetBytes().size(), 40248u);
  EXPECT_EQ(print, 7217109519427449754u);  // FNV-1a
}

// Nodes of names have four places, and so have nodes of the trees above them: one more needs a level more.
TEST(SegmentSkeleton, GroupsOfAnySizeAreSearchedByName)
{
  const TempFolder folder;
  for (const int count : {1, 2, 3, 4, 5, 8, 15, 16, 17, 63, 64, 65, 255, 256, 257, 1025}) {
    std::vector<SkeletonData> data;
    for (int i = 0; i < count; ++i)
      data.push_back(
          {"/kind/lc" + std::to_string(i * 7919 % 10007), SkeletonData::Values, StoredColumn::Int32, 1, 1, 0});
    const std::filesystem::path path = folder / (std::to_string(count) + ".h5");
    WriteFile(path, data);
    ExpectReadable(path, data);
  }
}

TEST(SegmentSkeleton, NamesSortByTheirBytes)
{
  const TempFolder          folder;
  std::vector<SkeletonData> data;
  for (const char* name : {"/z", "/a", "/\xc3\xa9", "/_", "/A", "/a b", "/ab", "/12345678", "/1234567"})
    data.push_back({name, SkeletonData::Values, StoredColumn::Float64, 2, 1, 0});
  WriteFile(folder / "a.h5", data);
  ExpectReadable(folder / "a.h5", data);
}
