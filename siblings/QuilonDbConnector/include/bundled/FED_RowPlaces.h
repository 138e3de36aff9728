#pragma once

/// @file
/// Where the values of a database on disk lie, for who reads its files without it.

#include "quilon_language.h"

#include <cstdint>
#include <filesystem>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_FileLayer;

/// Rows of a block that lie side by side in a file.
struct FED_RowPlace
{
  std::filesystem::path      file;
  std::uint64_t              offset   = 0;  ///< of the first row's values, in bytes
  std::uint32_t              rowBytes = 0;
  std::vector<std::uint32_t> indices;  ///< of the records, row by row
};

/// Finds the values of blocks whose records are a scalar, a vector or a tensor of doubles. A record has one place:
/// where rows were written anew, the last one counts. Places hold until a later commit merges or removes their files.
/// @param folder of a working database; a writer may be at work
/// @param blocks that the database has
/// @param files  null: the operating system's files
/// @return shape [blocks.size()], the places of each in the order of its rows
/// @throws FED_Failure that names the folder, a file in it or the block: when it cannot be read, is not there, or has
///         records of another form
QUILON_DB_CONNECTOR_API std::vector<std::vector<FED_RowPlace>> FED_FindRows(
    const std::filesystem::path& folder, const std::vector<FED_DataDescriptor>& blocks, FED_FileLayer* files = nullptr);
