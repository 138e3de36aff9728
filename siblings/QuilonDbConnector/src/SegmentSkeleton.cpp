#include "SegmentSkeleton.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <limits>
#include <map>
#include <new>
#include <set>

#include <hdf5.h>
#if H5_VERSION_GE(1, 13, 0)
#  include <H5FDdevelop.h>
#endif

#include "bundled/StoreFile.h"

/// What HDF5 wrote of a file, in pages. All other bytes are zeros.
class FileImage
{
public:
  std::uint64_t GetSize() const noexcept { return size_; }
  void          SetSize(std::uint64_t size) noexcept { size_ = size; }
  bool          IsWhole() const noexcept { return isWhole_; }

  void Read(std::uint64_t offset, void* bytes, std::size_t count) const noexcept
  {
    auto* to = static_cast<std::uint8_t*>(bytes);
    ForEachPage(offset, count, [&](std::uint64_t page, std::size_t begin, std::size_t part) {
      const auto found = pages_.find(page);
      if (found == pages_.end())
        std::memset(to, 0, part);
      else
        std::memcpy(to, found->second.data() + begin, part);
      to += part;
    });
  }

  // HDF5 is never told that memory ran out, because it could then not close the file. The image knows.
  void Write(std::uint64_t offset, const void* bytes, std::size_t count) noexcept
  {
    const auto* from = static_cast<const std::uint8_t*>(bytes);
    try {
      ForEachPage(offset, count, [&](std::uint64_t page, std::size_t begin, std::size_t part) {
        std::memcpy(pages_[page].data() + begin, from, part);
        from += part;
      });
      size_ = std::max(size_, offset + count);
    } catch (const std::bad_alloc&) {
      isWhole_ = false;
    }
  }

  void Visit(const SegmentSkeleton::TakeBytes& take) const
  {
    for (const auto& [page, bytes] : pages_)
      if (const std::uint64_t offset = page * kPageBytes; offset < size_)
        take(offset, bytes.data(), static_cast<std::size_t>(std::min<std::uint64_t>(kPageBytes, size_ - offset)));
  }

private:
  static constexpr std::size_t kPageBytes = 4096;

  template <typename Visit>
  static void ForEachPage(std::uint64_t offset, std::size_t count, const Visit& visit)
  {
    while (count > 0) {
      const auto        begin = static_cast<std::size_t>(offset % kPageBytes);
      const std::size_t part  = std::min(count, kPageBytes - begin);
      visit(offset / kPageBytes, begin, part);
      offset += part;
      count -= part;
    }
  }

  std::map<std::uint64_t, std::array<std::uint8_t, kPageBytes>> pages_;
  std::uint64_t                                                 size_    = 0;
  bool                                                          isWhole_ = true;
};

namespace {

// An image as HDF5's file drivers know their files.
struct ImageFile : H5FD_t
{
  std::shared_ptr<FileImage> image;
  haddr_t                    end = 0;  // of what HDF5 has given away
};

// How the image reaches the driver: a property of the access.
struct ImageAccess
{
  const std::shared_ptr<FileImage>* image;
};

ImageFile&       ToImage(H5FD_t* file) noexcept { return *static_cast<ImageFile*>(file); }
const ImageFile& ToImage(const H5FD_t* file) noexcept { return *static_cast<const ImageFile*>(file); }

// HDF5 first asks for a file that is there.
H5FD_t* OpenImage(const char*, unsigned flags, hid_t access, haddr_t)
{
  const auto* const given = static_cast<const ImageAccess*>(H5Pget_driver_info(access));
  if (given == nullptr || (flags & H5F_ACC_CREAT) == 0) return nullptr;
  try {
    auto file   = std::make_unique<ImageFile>();
    file->image = *given->image;
    return file.release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

herr_t CloseImage(H5FD_t* file)
{
  delete &ToImage(file);
  return 0;
}

// As for plain files: metadata lie together.
herr_t QueryImage(const H5FD_t*, unsigned long* flags)
{
  *flags = H5FD_FEAT_AGGREGATE_METADATA | H5FD_FEAT_ACCUMULATE_METADATA | H5FD_FEAT_DATA_SIEVE |
           H5FD_FEAT_AGGREGATE_SMALLDATA | H5FD_FEAT_DEFAULT_VFD_COMPATIBLE;
  return 0;
}

haddr_t GetImageEnd(const H5FD_t* file, H5FD_mem_t) { return ToImage(file).end; }

herr_t SetImageEnd(H5FD_t* file, H5FD_mem_t, haddr_t end)
{
  ToImage(file).end = end;
  return 0;
}

haddr_t GetImageSize(const H5FD_t* file, H5FD_mem_t) { return ToImage(file).image->GetSize(); }

herr_t ReadImage(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t offset, size_t count, void* bytes)
{
  ToImage(file).image->Read(offset, bytes, count);
  return 0;
}

herr_t WriteImage(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t offset, size_t count, const void* bytes)
{
  ToImage(file).image->Write(offset, bytes, count);
  return 0;
}

herr_t TruncateImage(H5FD_t* file, hid_t, hbool_t)
{
  ToImage(file).image->SetSize(ToImage(file).end);
  return 0;
}

hid_t RegisterImageDriver()
{
  constexpr H5FD_mem_t kFreeLists[] = H5FD_FLMAP_DICHOTOMY;
  H5FD_class_t         driver{};
#ifdef H5FD_CLASS_VERSION
  driver.version = H5FD_CLASS_VERSION;
  driver.value   = 600;  // of those that are free for programs
#endif
  driver.name      = "quilon_image";
  driver.maxaddr   = static_cast<haddr_t>(std::numeric_limits<std::int64_t>::max());
  driver.fc_degree = H5F_CLOSE_WEAK;
  driver.fapl_size = sizeof(ImageAccess);
  driver.open      = OpenImage;
  driver.close     = CloseImage;
  driver.query     = QueryImage;
  driver.get_eoa   = GetImageEnd;
  driver.set_eoa   = SetImageEnd;
  driver.get_eof   = GetImageSize;
  driver.read      = ReadImage;
  driver.write     = WriteImage;
  driver.truncate  = TruncateImage;
  std::copy(std::begin(kFreeLists), std::end(kFreeLists), std::begin(driver.fl_map));
  return H5FDregister(&driver);
}

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

// Makes the groups of data sets. Those that HDF5 makes by itself on the way to a data set have times.
class GroupMaker
{
public:
  GroupMaker(const std::filesystem::path& path, hid_t file)
      : path_(path), file_(file), creation_(H5Pcreate(H5P_GROUP_CREATE), H5Pclose)
  {
    Require(H5Pset_obj_track_times(creation_, false) >= 0, path_, "be set up");
  }

  void MakeAbove(const std::string& dataPath)
  {
    for (std::size_t end = dataPath.find('/', 1); end != std::string::npos; end = dataPath.find('/', end + 1)) {
      const std::string group = dataPath.substr(0, end);
      if (!made_.insert(group).second) continue;
      Hdf5Object made(H5Gcreate2(file_, group.c_str(), H5P_DEFAULT, creation_, H5P_DEFAULT), H5Gclose);
      Require(made.IsValid() && made.Close(), path_, "make " + group);
    }
  }

private:
  const std::filesystem::path& path_;
  hid_t                        file_;
  Hdf5Object                   creation_;
  std::set<std::string>        made_;
};

}  // namespace

SegmentSkeleton::SegmentSkeleton(const std::filesystem::path& path, std::size_t headerBytes,
                                 std::vector<SkeletonData>& data)
{
  const auto        image = std::make_shared<FileImage>();
  const ImageAccess imageAccess{&image};
  const QuietHdf5   quiet;
  Hdf5Object        driver(RegisterImageDriver(), H5FDunregister);
  Hdf5Object        access(H5Pcreate(H5P_FILE_ACCESS), H5Pclose);
  Hdf5Object        creation(H5Pcreate(H5P_FILE_CREATE), H5Pclose);
  Hdf5Object        layout(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
  Require(driver.IsValid() && H5Pset_driver(access, driver, &imageAccess) >= 0, path, "be set up");
  // The latest file format guards HDF5's own structures by checksums. Space is allocated at once, so that every data
  // set has its place, and not filled: the data are written there without HDF5. Times would make equal data differ.
  Require(H5Pset_libver_bounds(access, H5F_LIBVER_LATEST, H5F_LIBVER_LATEST) >= 0 &&
              H5Pset_userblock(creation, headerBytes) >= 0 && H5Pset_obj_track_times(creation, false) >= 0 &&
              H5Pset_layout(layout, H5D_CONTIGUOUS) >= 0 && H5Pset_alloc_time(layout, H5D_ALLOC_TIME_EARLY) >= 0 &&
              H5Pset_fill_time(layout, H5D_FILL_TIME_NEVER) >= 0 && H5Pset_obj_track_times(layout, false) >= 0,
          path, "be set up");
  Hdf5Object file(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, creation, access), H5Fclose);
  Require(file.IsValid(), path, "create the file");
  GroupMaker groups(path, file);
  for (SkeletonData& entry : data) {
    groups.MakeAbove(entry.path);
    const hsize_t shape[2] = {entry.rows, entry.width};
    Hdf5Object    space(H5Screate_simple(entry.width == 1 ? 1 : 2, shape, nullptr), H5Sclose);
    Hdf5Object    set(H5Dcreate2(file, entry.path.c_str(), GetFileType(entry), space, H5P_DEFAULT, layout, H5P_DEFAULT),
                      H5Dclose);
    Require(set.IsValid(), path, "make " + entry.path);
    const haddr_t offset = H5Dget_offset(set);
    Require(offset != HADDR_UNDEF && set.Close(), path, "place " + entry.path);
    entry.offset = offset;
  }
  Require(file.Close(), path, "close the file");
  if (!image->IsWhole()) throw std::bad_alloc();
  image_ = image;
}

std::uint64_t SegmentSkeleton::GetSize() const noexcept { return image_->GetSize(); }

void SegmentSkeleton::Visit(const TakeBytes& take) const { image_->Visit(take); }
