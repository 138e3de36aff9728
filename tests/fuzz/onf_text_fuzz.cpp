// The readers of ONF text on any bytes: they read or throw FED_Failure. The first byte chooses what the others are:
//   b  a block file; what reads is written, read and written again, and both texts are equal
//   i  the index of a folder with one block file, a.onf
//   r  a request file

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "memory_file.h"
#include "QuilonOnfEngine/OnfResultRequestFile.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

FED_DataDescriptor OnlyKey(const FED_ResultDatabase& database)
{
  return database.GetDataDescriptors(FED_DataDescriptorPattern()).front();
}

void ReadBlock(std::string_view text)
{
  FED_ResultDatabase first;
  ReadFromText(std::string(text), first);
  const std::string  written = WriteToText(first, OnlyKey(first));
  FED_ResultDatabase second;
  ReadFromText(written, second);
  if (WriteToText(second, OnlyKey(second)) != written) std::abort();
}

void WriteBytes(const std::filesystem::path& path, std::string_view bytes)
{
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out.flush()) std::abort();
}

/// The folder of the process, with a block file in it.
class FuzzFolder : public quilon_test::TempFolder
{
public:
  FuzzFolder()
  {
    WriteBytes(*this / "a.onf",
               "onf-text-block: 1\nonf: 514 temperature\nrecord-format: D\nrecords-by: id\nrecords: 1\n1 2\n");
  }
};

const FuzzFolder& GetFolder()
{
  static const FuzzFolder folder;
  return folder;
}

void ReadIndex(std::string_view text)
{
  WriteBytes(GetFolder() / "index", text);
  QuilonOnfTxtDatabase database(GetFolder().GetPath().wstring());
  database.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
  database.GetDataBlocks(FED_DataDescriptorPattern());
}

void ReadRequest(std::string_view text)
{
  WriteBytes(GetFolder() / "request", text);
  OnfResultRequestFile((GetFolder() / "request").wstring()).typeIsRequested(520);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  if (size == 0) return 0;
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  try {
    switch (data[0]) {
      case 'b':
        ReadBlock(text);
        break;
      case 'i':
        ReadIndex(text);
        break;
      case 'r':
        ReadRequest(text);
        break;
      default:
        break;
    }
  } catch (const FED_Failure&) {
    // said what is wrong
  }
  return 0;
}
