#pragma once

/// @file
/// Writing of orders by id.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "bundled/FED_FileLayer.h"
#include "bundled/FED_IdOrder.h"

class ResultDataBlock;

/// A block to be written into an order.
struct IdOrderSource
{
  FED_OrderedBlock       block;
  const ResultDataBlock* rows;  ///< borrowed
};

/// What was written.
struct WrittenIdOrder
{
  std::string   file;
  std::uint64_t rowCount       = 0;
  std::uint64_t fileBytes      = 0;
  std::uint64_t temporaryBytes = 0;  ///< that were on the disk at most beside it
};

/// Writes an order and flushes it. Each chunk of a block is read once; what does not fit into the memory goes through a
/// temporary file in the same folder.
/// @param sources at least one; all of one record format of doubles
/// @param memory  bytes for rows, nearly
/// @throws FED_Failure that names the file; nothing is left unless removing it fails as well
WrittenIdOrder WriteIdOrder(FED_FileLayer& files, const std::filesystem::path& folder,
                            const std::vector<IdOrderSource>& sources, std::size_t width, std::size_t memory);
