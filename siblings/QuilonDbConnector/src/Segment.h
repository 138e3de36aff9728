#pragma once

/// @file
/// An open segment: what it holds, and reading it with checks.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bundled/StoreFile.h"
#include "ChunkStore.h"
#include "Manifest.h"
#include "SegmentIndex.h"

/// A whole segment whose file is open. Its rows stay readable when the file is removed meanwhile.
///
/// A linked segment has two files, one behind the other as far as places are concerned: one that is a segment of
/// another database as well, of which it shows some rows, and one of its own with the index, and with record indices
/// where they are others than there.
class Segment
{
public:
  /// Reads and checks the index.
  /// @param file open for reading
  /// @throws FED_Failure that names the file when it is not what the entry says
  Segment(StoreFile file, const SegmentEntry& entry);
  /// A linked one.
  /// @param own its own file, which has the index
  Segment(StoreFile file, StoreFile own, const SegmentEntry& entry);
  /// One that was just written.
  Segment(StoreFile file, const SegmentEntry& entry, SegmentIndex index) noexcept;
  Segment(StoreFile file, StoreFile own, const SegmentEntry& entry, SegmentIndex index) noexcept;

  const SegmentEntry&          GetEntry() const noexcept { return entry_; }
  const SegmentIndex&          GetIndex() const noexcept { return index_; }
  const StoreFile&             GetFile() const noexcept { return file_; }
  const std::filesystem::path& GetPath() const noexcept { return file_.GetPath(); }

  /// Of a linked segment the file of its own.
  const StoreFile& GetOwnFile() const noexcept { return own_; }

  /// @return bytes of the file that has the values
  std::uint64_t GetValueFileBytes() const noexcept { return entry_.IsLinked() ? entry_.linkedBytes : entry_.fileBytes; }

  /// @return all files of the segment
  std::vector<std::filesystem::path> GetPaths() const;

  /// @return bytes of data of an extent, keys and all
  std::uint64_t GetExtentBytes(std::size_t extent) const noexcept;
  /// @return bytes of data that no row needs any more
  std::uint64_t GetDeadBytes() const noexcept { return deadBytes_; }
  /// No row needs this extent any more.
  void MarkDead(std::size_t extent) noexcept { deadBytes_ += GetExtentBytes(extent); }

  /// @param out  receives all bytes
  /// @param what "chunk 3 of block ...", for messages
  /// @throws FED_Failure that names the file unless they are those written
  void Read(const StoredBytes& stored, void* out, const std::function<std::string()>& what) const;

  /// Hands the bytes from `begin` to `end` out in parts; reads and checks all. Parts are whole numbers of 8 bytes but
  /// for the first and the last.
  /// @throws FED_Failure as Read(), only behind the last part
  void Visit(const StoredBytes& stored, std::uint64_t begin, std::uint64_t end, const ExtentRows::TakeBytes& take,
             const std::function<std::string()>& what) const;

private:
  void              ReadAt(std::uint64_t offset, void* bytes, std::size_t count) const;
  [[noreturn]] void ThrowDamage(const StoredBytes& stored, const std::string& what) const;

  StoreFile     file_;
  StoreFile     own_;  // of a linked segment
  SegmentEntry  entry_;
  SegmentIndex  index_;
  std::uint64_t deadBytes_ = 0;
};
