#include "SegmentSkeleton.h"

#include <hdf5.h>

#include "StoreFile.h"

namespace {

// An object of HDF5, closed in the end.
class Hdf5Object
{
public:
  using CloseCall = herr_t (*)(hid_t);

  Hdf5Object(hid_t id, CloseCall close) noexcept : id_(id), close_(close) {}
  Hdf5Object(const Hdf5Object&)            = delete;
  Hdf5Object& operator=(const Hdf5Object&) = delete;
  ~Hdf5Object() { Close(); }

       operator hid_t() const noexcept { return id_; }
  bool IsValid() const noexcept { return id_ >= 0; }

  bool Close() noexcept
  {
    const hid_t id = id_;
    id_            = -1;
    return id < 0 || close_(id) >= 0;
  }

private:
  hid_t     id_;
  CloseCall close_;
};

// HDF5 prints its errors by itself unless it is told not to. The setting is the caller's again afterwards.
class QuietHdf5
{
public:
  QuietHdf5() noexcept
  {
    H5Eget_auto2(H5E_DEFAULT, &print_, &data_);
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  }
  QuietHdf5(const QuietHdf5&)            = delete;
  QuietHdf5& operator=(const QuietHdf5&) = delete;
  ~QuietHdf5() { H5Eset_auto2(H5E_DEFAULT, print_, data_); }

private:
  H5E_auto2_t print_ = nullptr;
  void*       data_  = nullptr;
};

void Require(bool holds, const std::filesystem::path& path, const std::string& action)
{
  if (!holds) ThrowFileFailure(path, "HDF5 cannot " + action);
}

hid_t GetFileType(const SkeletonData& data)
{
  if (data.type == SkeletonData::Bytes) return H5T_STD_U8LE;
  switch (data.element) {
    case StoredColumn::Int32:
      return H5T_STD_I32LE;
    case StoredColumn::UInt32:
      return H5T_STD_U32LE;
    case StoredColumn::Float32:
      return H5T_IEEE_F32LE;
    case StoredColumn::Char:
      return H5T_C_S1;
    default:
      return H5T_IEEE_F64LE;
  }
}

}  // namespace

void MakeSegmentSkeleton(const std::filesystem::path& path, std::size_t headerBytes, std::vector<SkeletonData>& data)
{
  const QuietHdf5 quiet;
  Hdf5Object      access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
  Hdf5Object      creation(H5Pcreate(H5P_FILE_CREATE), H5Pclose);
  Hdf5Object      links(H5Pcreate(H5P_LINK_CREATE), H5Pclose);
  Hdf5Object      layout(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
  // The folder's own lock keeps other writers off; a file system without locks is no hindrance here.
  Require(H5Pset_file_locking(access, false, true) >= 0, path, "be set up");
  // The latest file format guards HDF5's own structures by checksums. Space is allocated at once, so that every data
  // set has its place, and not filled: the data are written there without HDF5. Times would make equal data differ.
  Require(H5Pset_libver_bounds(access, H5F_LIBVER_LATEST, H5F_LIBVER_LATEST) >= 0 &&
              H5Pset_userblock(creation, headerBytes) >= 0 && H5Pset_create_intermediate_group(links, 1) >= 0 &&
              H5Pset_layout(layout, H5D_CONTIGUOUS) >= 0 && H5Pset_alloc_time(layout, H5D_ALLOC_TIME_EARLY) >= 0 &&
              H5Pset_fill_time(layout, H5D_FILL_TIME_NEVER) >= 0 && H5Pset_obj_track_times(layout, false) >= 0,
          path, "be set up");
  Hdf5Object file(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, creation, access), H5Fclose);
  Require(file.IsValid(), path, "create the file");
  for (SkeletonData& entry : data) {
    const hsize_t shape[2] = {entry.rows, entry.width};
    Hdf5Object    space(H5Screate_simple(entry.width == 1 ? 1 : 2, shape, nullptr), H5Sclose);
    Hdf5Object    set(H5Dcreate2(file, entry.path.c_str(), GetFileType(entry), space, links, layout, H5P_DEFAULT),
                      H5Dclose);
    Require(set.IsValid(), path, "make " + entry.path);
    const haddr_t offset = H5Dget_offset(set);
    Require(offset != HADDR_UNDEF && set.Close(), path, "place " + entry.path);
    entry.offset = offset;
  }
  Require(file.Close(), path, "close the file");
}
