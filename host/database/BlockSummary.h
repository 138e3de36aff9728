#pragma once

/// @file
/// What a block holds, in a few numbers.

#include <cstddef>

class FED_DataBlock;

namespace quilon {

struct BlockSummary
{
  std::size_t records   = 0;
  std::size_t bytes     = 0;      ///< of the records' values, counted as QuilonDataBlockSize counts them
  bool        hasValues = false;  ///< whether there is a least and a greatest value
  double      least     = 0.0;
  double      greatest  = 0.0;
  std::size_t nans      = 0;
};

/// Asks the block's columns, which a database on disk answers from its indices. Least and greatest are over all
/// floating-point values that are numbers, or over all integers where the format has no floating-point fields.
BlockSummary Summarize(const FED_DataBlock& block);

/// @return whether the block has a record
bool HasRecords(const FED_DataBlock& block);

}  // namespace quilon
