#pragma once

/// @file
/// ONF text straight from other databases.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

/// Publishes blocks of databases in an ONF folder without the copy of them in memory that a QuilonOnfTxtDatabase makes:
/// a database on disk may be larger than the memory.
namespace OnfTextExport {

/// A block of a database with blocks of columns (FED_ColumnDataBlock); the database is borrowed.
struct Block
{
  const FED_Database* database;
  FED_DataDescriptor  descriptor;
};

/// Publishes the blocks in one step, with the names of the user kinds that they refer to. Blocks of equal keys are
/// replaced, other blocks of the folder stay. The folder may be the one that a block is read from.
/// @param blocks  no key twice; a block without records empties the one of its key
/// @param onBlock called before each block is written, with its position; what it throws passes through, and nothing is
///                published then
/// @throws FED_Failure that names the folder, the file or the block; what is published is then as it was
QUILON_ONF_ENGINE_API void Publish(const std::filesystem::path& folder, const std::vector<Block>& blocks,
                                   const std::function<void(std::size_t)>& onBlock = {});

}  // namespace OnfTextExport
