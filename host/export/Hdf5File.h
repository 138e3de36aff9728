#pragma once

/// @file
/// As much of HDF5 as writing needs, with failures that name the file.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <bundled/FED_FileLayer.h>

namespace quilon {

/// What a data set holds; all numbers have their least byte first.
enum class Hdf5Type
{
  UInt8,
  Int32,
  Int64,
  Float64
};

/// A new HDF5 file. Equal calls give equal bytes: nothing in it tells when it was made. Data sets are contiguous and
/// not compressed, so that a part of one is written without any other.
///
/// Paths are those within the file, "/VTKHDF/Points"; the groups of a path are made as they are needed. Everything
/// throws FED_Failure that names the file.
class Hdf5File
{
public:
  /// Rows of a data set in another file.
  struct VirtualPart
  {
    std::uint64_t firstRow = 0;  ///< in the virtual data set
    std::uint64_t numRows  = 0;
    std::string   file;                  ///< relative to the folder of this one, or absolute
    std::string   dataset;               ///< its path there
    std::uint64_t sourceRow        = 0;  ///< the first one
    std::uint64_t numSourceRows    = 0;  ///< that the data set has
    std::size_t   numSourceColumns = 0;  ///< 0: it has one dimension
    std::size_t   firstColumn      = 0;
  };

  /// A data set of doubles in a file: where its values begin, in bytes.
  struct PlacedDataset
  {
    std::uint64_t offset = 0;
    std::string   path;
    std::uint64_t numRows    = 0;
    std::size_t   numColumns = 0;  ///< 0: it has one dimension
  };

  /// @return the data sets of doubles that have values, by offset
  static std::vector<PlacedDataset> ListDatasets(const std::filesystem::path& path);

  /// @param path  of a file that is there and empty
  /// @param name  of the file for messages
  /// @param files what all bytes pass through; null: the operating system's files. Borrowed.
  Hdf5File(const std::filesystem::path& path, std::string name, FED_FileLayer* files = nullptr);
  Hdf5File(const Hdf5File&)            = delete;
  Hdf5File& operator=(const Hdf5File&) = delete;
  ~Hdf5File();

  /// @param shape rows, or rows and columns
  void CreateDataset(const std::string& path, Hdf5Type type, const std::vector<std::uint64_t>& shape);

  /// A data set of doubles without data of its own. What its sources do not have reads as nan.
  void CreateVirtualDataset(const std::string& path, const std::vector<std::uint64_t>& shape,
                            const std::vector<VirtualPart>& parts);

  /// Writes rows of a data set.
  /// @param bytes values of its type, as the machine has them; whole rows
  void WriteRows(const std::string& path, std::uint64_t firstRow, std::span<const std::byte> bytes);

  /// Creates a data set and writes all of it.
  template <typename T>
  void WriteDataset(const std::string& path, Hdf5Type type, const std::vector<std::uint64_t>& shape,
                    const std::vector<T>& values)
  {
    CreateDataset(path, type, shape);
    WriteRows(path, 0, std::as_bytes(std::span(values)));
  }

  /// @param path of a group
  void WriteAttribute(const std::string& path, const std::string& name, const std::vector<std::int64_t>& values,
                      bool isScalar = false);
  /// ASCII of fixed length.
  void WriteAttribute(const std::string& path, const std::string& name, const std::string& text);

  /// Hands everything to the system.
  void Close();

private:
  [[noreturn]] void FailToWrite() const;
  /// @return the result of a call that says by a negative number that it failed
  template <typename T>
  T Require(T result) const
  {
    if (result < 0) FailToWrite();
    return result;
  }

  struct Sink;
  class Driver;
  struct NewDataset;

  std::string           name_;
  std::unique_ptr<Sink> sink_;
  std::int64_t          file_ = -1;
};

}  // namespace quilon
