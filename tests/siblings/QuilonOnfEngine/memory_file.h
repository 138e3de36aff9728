#pragma once

/// @file
/// Blocks to text and back without a disk.

#include <map>
#include <string>

#include "block_file.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_ResultDatabase.h"
#include "disk.h"
#include "text_cursor.h"
#include "text_output.h"

/// A file that is a string.
class MemoryFile : public OutputFile
{
public:
  void Write(const char* data, std::size_t size) override { text.append(data, size); }
  void Close() override {}

  std::string text;
};

inline std::string WriteToText(const FED_ResultDatabase& database, const FED_DataDescriptor& key)
{
  MemoryFile file;
  TextOutput out(file);
  WriteBlock(dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(key)), database.GetIdMapsPool(), out);
  out.Flush();
  return file.text;
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
