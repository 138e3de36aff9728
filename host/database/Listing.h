#pragma once

/// @file
/// What a database holds, block by block, and how large it is.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "database/BlockSummary.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

class KindTable;
class Selection;

struct ListedBlock
{
  FED_DataDescriptor descriptor;
  std::string        kind;  ///< its name
  BlockSummary       summary;
};

/// Lists the selected blocks in the order of their descriptors. A database on disk answers from its indices: blocks
/// whose values cannot be read any more are listed, too.
/// @param progress called before each block with the number of those listed and of all; may be empty
/// @throws Interrupted
std::vector<ListedBlock> ListBlocks(const FED_Database& database, const Selection& selection, const KindTable& kinds,
                                    const std::function<void(std::size_t done, std::size_t total)>& progress = {});

/// Blocks that are counted together.
struct BlockTotal
{
  std::string name;  ///< what they share
  std::size_t blocks = 0;
  std::size_t bytes  = 0;
};

/// Sizes of blocks as QuilonDataBlockSize counts them; the largest first, those of one size in the order of their
/// descriptors or names.
struct BlockSizes
{
  std::vector<ListedBlock> blocks;
  std::vector<BlockTotal>  kinds;
  std::vector<BlockTotal>  steps;  ///< by StepText()
  std::size_t              bytes = 0;
};

BlockSizes SumSizes(std::vector<ListedBlock> blocks);

/// @return the block's keys without its kind: "it=0,lc=1"; "-" without any
std::string StepText(const FED_DataDescriptor& descriptor);

}  // namespace quilon
