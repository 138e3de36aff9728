#pragma once

/// @file
/// Blocks to text and back without a disk.

#include <map>
#include <string>
#include <string_view>

#include "block_file.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_ResultDatabase.h"
#include "text_cursor.h"
#include "text_output.h"

inline std::string WriteToText(const FED_ResultDatabase& database, const FED_DataDescriptor& key)
{
  std::string text;
  TextOutput  out([&text](std::string_view part) { text += part; });
  WriteBlock(dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(key)), database.GetIdMapsPool(), out);
  out.Flush();
  return text;
}

inline void ReadFromText(const std::string& text, FED_ResultDatabase& database)
{
  TextCursor        in("text", text);
  const BlockHeader header = ReadBlockHeader(in);
  CheckRecordCount(in, header);
  ReadBlockRecords(in, header,
                   *database.CreateDataBlock(header.descriptor, header.numRecords, 0, header.recordFormat.ToString()),
                   database.GetIdMapsPool());
}
