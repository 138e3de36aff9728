#include "export/Hdf5File.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <iterator>
#include <limits>
#include <system_error>
#include <type_traits>
#include <utility>

#include <hdf5.h>

#include "text/Failure.h"

namespace quilon {

namespace {

static_assert(std::is_same_v<hid_t, std::int64_t>, "identifiers of HDF5 are kept as 64-bit integers");

/// Something of HDF5 that is closed at the end of its scope.
class Handle
{
public:
  Handle(hid_t id, herr_t (*close)(hid_t)) noexcept : id_(id), close_(close) {}
  Handle(const Handle&)            = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { close_(id_); }

  operator hid_t() const noexcept { return id_; }

private:
  hid_t id_;
  herr_t (*close_)(hid_t);
};

hid_t StoredType(Hdf5Type type)
{
  switch (type) {
    case Hdf5Type::UInt8:
      return H5T_STD_U8LE;
    case Hdf5Type::Int32:
      return H5T_STD_I32LE;
    case Hdf5Type::Int64:
      return H5T_STD_I64LE;
    case Hdf5Type::Float64:
      return H5T_IEEE_F64LE;
  }
  return -1;
}

hid_t MemoryType(hid_t stored)
{
  if (H5Tequal(stored, H5T_STD_U8LE) > 0) return H5T_NATIVE_UINT8;
  if (H5Tequal(stored, H5T_STD_I32LE) > 0) return H5T_NATIVE_INT32;
  if (H5Tequal(stored, H5T_STD_I64LE) > 0) return H5T_NATIVE_INT64;
  return H5T_NATIVE_DOUBLE;
}

}  // namespace

/// The bytes of a file on their way to the disk. HDF5 is told that every write succeeds: after one that fails it can
/// neither close the file nor end without a crash. The first error is kept here instead, and told by us.
struct Hdf5File::Sink
{
  FED_FileLayer         system;
  FED_FileLayer*        files  = nullptr;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  std::error_code       error  = {};
  std::uint64_t         size   = 0;

  ~Sink()
  {
    if (handle != FED_FileLayer::kNoHandle) files->Close(handle);
  }

  void Close()
  {
    // Network file systems tell only now that bytes were lost.
    const std::error_code closed = files->Close(std::exchange(handle, FED_FileLayer::kNoHandle));
    if (!error) error = closed;
  }

  void Write(std::uint64_t offset, const void* bytes, std::size_t count)
  {
    if (!error) error = files->WriteAt(handle, offset, bytes, count);
    size = std::max(size, offset + count);
  }

  /// Bytes that were never written are zero.
  void Read(std::uint64_t offset, void* bytes, std::size_t count)
  {
    std::memset(bytes, 0, count);
    std::size_t done = 0;
    if (!error) error = files->ReadAt(handle, offset, bytes, count, done);
  }
};

/// The driver by which HDF5 reaches a sink.
class Hdf5File::Driver
{
public:
  /// What HDF5 hands on from the one who opens a file.
  struct Info
  {
    Sink* sink;
  };

  static hid_t Register()
  {
    static const H5FD_class_t kClass = Describe();
    return H5FDregister(&kClass);
  }

private:
  /// Begins with what HDF5 wants to find.
  struct File
  {
    H5FD_t  head = {};
    Sink*   sink = nullptr;
    haddr_t end  = 0;  ///< of what HDF5 has given out
  };

  static Sink& SinkOf(H5FD_t* file) { return *reinterpret_cast<File*>(file)->sink; }

  static H5FD_t* Open(const char*, unsigned, hid_t access, haddr_t)
  {
    const void* info = H5Pget_driver_info(access);
    if (info == nullptr) return nullptr;
    auto file  = std::make_unique<File>();
    file->sink = static_cast<const Info*>(info)->sink;
    return &file.release()->head;
  }

  static herr_t Close(H5FD_t* file)
  {
    const std::unique_ptr<File> closed(reinterpret_cast<File*>(file));
    return 0;
  }

  static herr_t Query(const H5FD_t*, unsigned long* flags)
  {
    *flags = H5FD_FEAT_AGGREGATE_METADATA | H5FD_FEAT_ACCUMULATE_METADATA | H5FD_FEAT_AGGREGATE_SMALLDATA |
             H5FD_FEAT_DATA_SIEVE | H5FD_FEAT_DEFAULT_VFD_COMPATIBLE;
    return 0;
  }

  static haddr_t GetEnd(const H5FD_t* file, H5FD_mem_t) { return reinterpret_cast<const File*>(file)->end; }
  static herr_t  SetEnd(H5FD_t* file, H5FD_mem_t, haddr_t end)
  {
    reinterpret_cast<File*>(file)->end = end;
    return 0;
  }
  static haddr_t GetSize(const H5FD_t* file, H5FD_mem_t) { return reinterpret_cast<const File*>(file)->sink->size; }

  static herr_t Read(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t offset, std::size_t count, void* bytes)
  {
    SinkOf(file).Read(offset, bytes, count);
    return 0;
  }
  static herr_t Write(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t offset, std::size_t count, const void* bytes)
  {
    SinkOf(file).Write(offset, bytes, count);
    return 0;
  }

  /// A file that is shorter than what was given out is no whole one.
  static herr_t Truncate(H5FD_t* file, hid_t, hbool_t)
  {
    constexpr char kZero = 0;
    const haddr_t  end   = reinterpret_cast<File*>(file)->end;
    if (SinkOf(file).size < end) SinkOf(file).Write(end - 1, &kZero, 1);
    return 0;
  }

  static H5FD_class_t Describe()
  {
    H5FD_class_t         driver = {};
    constexpr H5FD_mem_t map[]  = H5FD_FLMAP_DICHOTOMY;
    std::copy(std::begin(map), std::end(map), driver.fl_map);
    driver.name      = "quilon";
    driver.maxaddr   = std::numeric_limits<std::int64_t>::max();
    driver.fc_degree = H5F_CLOSE_WEAK;
    driver.fapl_size = sizeof(Info);
    driver.open      = Open;
    driver.close     = Close;
    driver.query     = Query;
    driver.get_eoa   = GetEnd;
    driver.set_eoa   = SetEnd;
    driver.get_eof   = GetSize;
    driver.read      = Read;
    driver.write     = Write;
    driver.truncate  = Truncate;
    return driver;
  }
};

void Hdf5File::FailToWrite() const
{
  Fail(name_ + ": expected a file that can be written" + (sink_->error ? ": " + sink_->error.message() : ""));
}

Hdf5File::Hdf5File(const std::filesystem::path& path, std::string name, FED_FileLayer* files)
    : name_(std::move(name)), sink_(std::make_unique<Sink>())
{
  sink_->files = files == nullptr ? &sink_->system : files;
  sink_->error = sink_->files->Open(path, FED_FileLayer::Change, sink_->handle);
  if (sink_->error) FailToWrite();

  // Failures are thrown by us; without this HDF5 prints them as well.
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  const Handle       driver(Require(Driver::Register()), H5FDunregister);
  const Handle       access(Require(H5Pcreate(H5P_FILE_ACCESS)), H5Pclose);
  const Driver::Info info = {sink_.get()};
  Require(H5Pset_driver(access, driver, &info));
  const Handle creation(Require(H5Pcreate(H5P_FILE_CREATE)), H5Pclose);
  Require(H5Pset_obj_track_times(creation, false));
  file_ = Require(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, creation, access));
}

Hdf5File::~Hdf5File()
{
  if (file_ >= 0) H5Fclose(file_);
}

std::vector<Hdf5File::PlacedDataset> Hdf5File::ListDatasets(const std::filesystem::path& path)
{
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  const auto require = [&path](auto result) {
    if (result < 0) Fail(path.string() + ": expected an HDF5 file");
    return result;
  };
  const Handle               file(require(H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT)), H5Fclose);
  std::vector<PlacedDataset> datasets;
  const H5L_iterate_t        visit = [](hid_t root, const char* name, const H5L_info_t*, void* list) -> herr_t {
    H5O_info_t info;
    if (H5Oget_info_by_name2(root, name, &info, H5O_INFO_BASIC, H5P_DEFAULT) < 0) return -1;
    if (info.type != H5O_TYPE_DATASET) return 0;
    const Handle  dataset(H5Dopen2(root, name, H5P_DEFAULT), H5Dclose);
    const Handle  type(H5Dget_type(dataset), H5Tclose);
    const Handle  space(H5Dget_space(dataset), H5Sclose);
    const haddr_t offset = H5Dget_offset(dataset);
    if (offset == HADDR_UNDEF || H5Tequal(type, H5T_IEEE_F64LE) <= 0) return 0;
    const int numDimensions = H5Sget_simple_extent_ndims(space);
    if (numDimensions < 1 || numDimensions > 2) return 0;
    hsize_t sizes[2] = {0, 0};
    if (H5Sget_simple_extent_dims(space, sizes, nullptr) < 0) return -1;
    static_cast<std::vector<PlacedDataset>*>(list)->push_back(
               {offset, '/' + std::string(name), sizes[0], static_cast<std::size_t>(sizes[1])});
    return 0;
  };
  require(H5Lvisit(file, H5_INDEX_NAME, H5_ITER_INC, visit, &datasets));
  std::sort(datasets.begin(), datasets.end(),
            [](const PlacedDataset& a, const PlacedDataset& b) { return a.offset < b.offset; });
  return datasets;
}

/// What a data set is made of: its space, the link to it, which makes groups on the way, and how it is kept, without
/// times.
struct Hdf5File::NewDataset
{
  const Hdf5File&            file;
  const std::vector<hsize_t> sizes;
  const Handle               space;
  const Handle               links;
  const Handle               creation;

  NewDataset(const Hdf5File& ofFile, const std::vector<std::uint64_t>& shape)
      : file(ofFile),
        sizes(shape.begin(), shape.end()),
        space(file.Require(H5Screate_simple(static_cast<int>(sizes.size()), sizes.data(), nullptr)), H5Sclose),
        links(file.Require(H5Pcreate(H5P_LINK_CREATE)), H5Pclose),
        creation(file.Require(H5Pcreate(H5P_DATASET_CREATE)), H5Pclose)
  {
    file.Require(H5Pset_create_intermediate_group(links, 1));
    file.Require(H5Pset_char_encoding(links, H5T_CSET_UTF8));
    file.Require(H5Pset_obj_track_times(creation, false));
  }

  void Create(const std::string& path, hid_t type) const
  {
    const Handle dataset(file.Require(H5Dcreate2(file.file_, path.c_str(), type, space, links, creation, H5P_DEFAULT)),
                         H5Dclose);
  }
};

void Hdf5File::CreateDataset(const std::string& path, Hdf5Type type, const std::vector<std::uint64_t>& shape)
{
  const NewDataset made(*this, shape);
  Require(H5Pset_fill_time(made.creation, H5D_FILL_TIME_NEVER));
  made.Create(path, StoredType(type));
}

void Hdf5File::CreateVirtualDataset(const std::string& path, const std::vector<std::uint64_t>& shape,
                                    const std::vector<VirtualPart>& parts)
{
  const NewDataset made(*this, shape);
  constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();
  Require(H5Pset_fill_value(made.creation, H5T_NATIVE_DOUBLE, &kNoValue));
  const hsize_t numColumns = made.sizes.size() == 2 ? made.sizes[1] : 1;
  for (const VirtualPart& part : parts) {
    const hsize_t first[] = {part.firstRow, 0};
    const hsize_t count[] = {part.numRows, numColumns};
    Require(H5Sselect_hyperslab(made.space, H5S_SELECT_SET, first, nullptr, count, nullptr));
    const hsize_t sourceSizes[] = {part.numSourceRows, part.numSourceColumns};
    const hsize_t sourceFirst[] = {part.sourceRow, part.firstColumn};
    const Handle  source(Require(H5Screate_simple(part.numSourceColumns == 0 ? 1 : 2, sourceSizes, nullptr)), H5Sclose);
    Require(H5Sselect_hyperslab(source, H5S_SELECT_SET, sourceFirst, nullptr, count, nullptr));
    Require(H5Pset_virtual(made.creation, made.space, part.file.c_str(), part.dataset.c_str(), source));
  }
  Require(H5Sselect_all(made.space));
  made.Create(path, H5T_IEEE_F64LE);
}

void Hdf5File::WriteRows(const std::string& path, std::uint64_t firstRow, std::span<const std::byte> bytes)
{
  if (bytes.empty()) return;
  const Handle dataset(Require(H5Dopen2(file_, path.c_str(), H5P_DEFAULT)), H5Dclose);
  const Handle type(Require(H5Dget_type(dataset)), H5Tclose);
  const Handle space(Require(H5Dget_space(dataset)), H5Sclose);
  hsize_t      count[2] = {1, 1};
  Require(H5Sget_simple_extent_dims(space, count, nullptr));
  const std::size_t rowBytes = H5Tget_size(type) * static_cast<std::size_t>(count[1]);
  assert(bytes.size() % rowBytes == 0);
  count[0]              = bytes.size() / rowBytes;
  const hsize_t first[] = {firstRow, 0};
  Require(H5Sselect_hyperslab(space, H5S_SELECT_SET, first, nullptr, count, nullptr));
  const Handle memory(Require(H5Screate_simple(2, count, nullptr)), H5Sclose);
  Require(H5Dwrite(dataset, MemoryType(type), memory, space, H5P_DEFAULT, bytes.data()));
  if (sink_->error) FailToWrite();  // nothing of what follows would be kept
}

void Hdf5File::WriteAttribute(const std::string& path, const std::string& name, const std::vector<std::int64_t>& values,
                              bool isScalar)
{
  const hsize_t size[] = {values.size()};
  const Handle  space(Require(isScalar ? H5Screate(H5S_SCALAR) : H5Screate_simple(1, size, nullptr)), H5Sclose);
  const Handle  group(Require(H5Oopen(file_, path.c_str(), H5P_DEFAULT)), H5Oclose);
  const Handle  attribute(Require(H5Acreate2(group, name.c_str(), H5T_STD_I64LE, space, H5P_DEFAULT, H5P_DEFAULT)),
                          H5Aclose);
  Require(H5Awrite(attribute, H5T_NATIVE_INT64, values.data()));
}

void Hdf5File::WriteAttribute(const std::string& path, const std::string& name, const std::string& text)
{
  const Handle type(Require(H5Tcopy(H5T_C_S1)), H5Tclose);
  Require(H5Tset_size(type, std::max<std::size_t>(1, text.size())));
  Require(H5Tset_strpad(type, H5T_STR_NULLPAD));
  const Handle space(Require(H5Screate(H5S_SCALAR)), H5Sclose);
  const Handle group(Require(H5Oopen(file_, path.c_str(), H5P_DEFAULT)), H5Oclose);
  const Handle attribute(Require(H5Acreate2(group, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT)), H5Aclose);
  Require(H5Awrite(attribute, type, text.data()));
}

void Hdf5File::Close()
{
  Require(H5Fclose(std::exchange(file_, -1)));
  sink_->Close();
  if (sink_->error) FailToWrite();
}

}  // namespace quilon
