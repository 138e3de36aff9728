#pragma once

/// @file
/// A second order of storage: the records of many blocks, those of one index side by side.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bundled/FED_FileLayer.h"
#include "bundled/StoreFile.h"
#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

/// A block whose records stand in an order by id.
struct FED_OrderedBlock
{
  FED_DataDescriptor descriptor;
  std::uint64_t      print = 0;  ///< FED_ResultDatabase::GetRowPrint() of the records that stand there
};

/// A file beside the segments of a database with the records of many blocks of one record format of doubles: for each
/// record index those of all blocks, one behind the other. Who asks for few indices of many blocks reads a page each
/// here, and there a chunk of every block.
///
/// It is no part of the database, which can do without, and says of each block which records it is of: a block that is
/// another since has another print. See docs/database-format.md.
///
/// Errors:  FED_Failure that names the file.
/// Threads: one at a time.
class QUILON_DB_CONNECTOR_API FED_IdOrder
{
public:
  /// Reads the head.
  /// @param files borrowed
  /// @throws FED_Failure for a file that is none, or damaged
  FED_IdOrder(FED_FileLayer& files, const std::filesystem::path& path);

  /// @return nothing for a file that is none of a version that is known, or whose head is damaged
  /// @throws FED_Failure when the file cannot be read, which says nothing about it
  static std::optional<FED_IdOrder> Find(FED_FileLayer& files, const std::filesystem::path& path);

  const std::filesystem::path& GetPath() const noexcept { return file_.GetPath(); }
  /// @return blocks, in the order in which their records stand
  const std::vector<FED_OrderedBlock>& GetBlocks() const noexcept { return blocks_; }
  /// @return doubles of a record: 1, 3 or 6
  std::size_t   GetWidth() const noexcept { return width_; }
  std::uint64_t GetRowCount() const noexcept { return rowCount_; }  ///< indices at which any block has a record
  std::uint64_t GetFileBytes() const noexcept { return fileBytes_; }
  std::uint64_t GetPageBytes() const noexcept;  ///< that are read for an index
  std::uint64_t GetPageCount() const noexcept { return (rowCount_ + rowsPerPage_ - 1) / rowsPerPage_; }

  /// @param block  position in GetBlocks()
  /// @param values GetWidth() doubles; valid during the call
  using Take = std::function<void(std::size_t block, const double* values)>;

  /// Calls take for each block that has a record at the index, in their order.
  /// @throws FED_Failure for a page that is damaged, before any call
  void Visit(std::uint32_t index, const Take& take) const;

  /// Reads a page. @param page 0 <= page < GetPageCount() @throws FED_Failure when it is damaged
  void CheckPage(std::uint64_t page) const;

private:
  explicit FED_IdOrder(StoreFile file);

  std::string   ReadHead();
  std::size_t   GetStride() const noexcept;
  std::uint64_t CountRows(std::uint64_t page) const noexcept;

  StoreFile                         file_;
  std::vector<FED_OrderedBlock>     blocks_;
  std::vector<std::uint32_t>        keys_;  // of the rows, ascending; empty where they are a run
  std::uint32_t                     firstKey_    = 0;
  std::size_t                       width_       = 1;
  std::uint64_t                     rowCount_    = 0;
  std::uint64_t                     rowsPerPage_ = 1;
  std::uint64_t                     headBytes_   = 0;
  std::uint64_t                     fileBytes_   = 0;
  mutable std::vector<std::uint8_t> page_;  // that was read last
  mutable std::uint64_t             pageNumber_ = static_cast<std::uint64_t>(-1);
};
