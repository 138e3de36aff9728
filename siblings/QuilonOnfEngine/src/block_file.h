#pragma once

/// @file
/// The text of one block: docs/onf-text-format.md.

#include <cstddef>
#include <string>
#include <vector>

#include "bundled/FED_RecordFormat.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_ColumnDataBlock;
class FED_DataBlock;
class FED_IdMapsPool;
class TextCursor;
class TextOutput;

/// What stands above the records.
struct BlockHeader
{
  FED_DataDescriptor descriptor;
  FED_RecordFormat   recordFormat;       ///< empty when the block has none yet
  bool               usesIds    = true;  ///< whether records are addressed by entity id, else by index
  std::size_t        numRecords = 0;
};

/// The file name of a block, without the extension: the kind's name, then a tag for each index, such as
/// "nodal-stress_it0_lc1_sub3_an1". Different descriptors of one catalogue have different names.
std::string GetBlockFileStem(const FED_DataDescriptor& descriptor);

/// A record and what stands in front of its line.
struct RecordPlace
{
  int         key;  ///< id, or index for kinds without ids
  std::size_t index;
};

/// @return the records of a block by ascending key
/// @throws FED_Failure for two records of one id and for an index that no id has
std::vector<RecordPlace> SortedRecords(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool);

/// Writes some of a block's records, a line each; the header goes before the first one.
/// @param places all of them, as SortedRecords() gives them
/// @throws FED_Failure for a mask with more bits than indices
void WriteRecords(const FED_ColumnDataBlock& block, const std::vector<RecordPlace>& places, std::size_t first,
                  std::size_t count, TextOutput& out);

/// Writes a block: header, then a line a record by ascending id, or index for kinds without ids.
/// @throws FED_Failure for a mask with more bits than indices, for two records of one id and for an index that no id
/// has
void WriteBlock(const FED_ColumnDataBlock& block, const FED_IdMapsPool& pool, TextOutput& out);

/// Reads the header; the cursor stands on the first record afterwards.
/// @throws FED_Failure that names file, line and what was expected
BlockHeader ReadBlockHeader(TextCursor& in);

/// Fails when the header claims more records than the text behind it has room for. Call it before anything is allocated
/// for them.
void CheckRecordCount(const TextCursor& in, const BlockHeader& header);

/// Reads the records behind a header into an empty block of the header's format, to the end of the text.
void ReadBlockRecords(TextCursor& in, const BlockHeader& header, FED_DataBlock& block, FED_IdMapsPool& pool);
