#pragma once

/// @file
/// The second order of storage of a working database, by id.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "database/WatchedFiles.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;
class FED_ResultDatabase;

namespace quilon {

class KindTable;
class Listener;
class Selection;

struct IdIndexOptions
{
  /// Makes the selection for the kinds of the database.
  std::function<Selection(const KindTable& kinds)> selection;
  bool                                             drop     = false;  ///< take the orders out and write none
  LockPatience                                     patience = {};
};

/// An order that was written: blocks of one kind.
struct WrittenOrder
{
  std::string   kind;
  std::string   file;  ///< its name in the database's folder
  std::size_t   blocks = 0;
  std::uint64_t rows   = 0;  ///< records of each block, those that some lack included
  std::uint64_t bytes  = 0;
};

struct IdIndexReport
{
  std::vector<WrittenOrder> orders;
  std::vector<std::string>  removed;             ///< files that were no longer true, or are not wanted any more
  std::size_t               present        = 0;  ///< selected blocks that an order had already
  std::size_t               others         = 0;  ///< selected blocks that have no place in one
  std::uint64_t             mostInAddition = 0;  ///< bytes that were on the disk beside an order while it was written
};

/// Writes the records of selected blocks once more, those of one id side by side: of each kind with one, three or six
/// numbers a record that has two blocks at least. Blocks that an order has as they are now are left out.
/// @throws FED_Failure for what is no working database
IdIndexReport IndexById(const std::filesystem::path& path, const IdIndexOptions& options, Listener& listener);

/// Records that are wanted of a block.
struct WantedRecords
{
  FED_DataDescriptor      block;
  const std::vector<int>* ids;  ///< ascending; borrowed: many blocks share them
};

/// Reads records from orders by id, where that takes fewer bytes than their blocks do.
/// @param onNote told of orders that could not be used; may be empty
/// @return a database in memory with those of the blocks that were read so, which have the wanted records alone; null
///         where there are none
std::unique_ptr<FED_ResultDatabase> ReadFromOrders(const FED_Database&                            database,
                                                   const std::vector<WantedRecords>&              wanted,
                                                   const std::function<void(const std::string&)>& onNote);

}  // namespace quilon
