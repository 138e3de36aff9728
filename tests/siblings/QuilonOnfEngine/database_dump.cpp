// Copies a text database to a working database on disk, in several commits, so that it has segments with deletions and
// rows that were written twice:
//   database_dump ONF_FOLDER NAME.fed

#include <string>

#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"

int main(int argc, char** argv)
{
  if (argc != 3) return 2;
  const std::string    folder = argv[1];
  QuilonOnfTxtDatabase text(std::wstring(folder.begin(), folder.end()));
  text.InitDb(FED_DatabaseDefs::ReadAccess, 1024, L"", nullptr);
  FED_ResultDatabase database(argv[2], FED_ResultDatabase::Create);
  const auto         copy = [&] {
    QuilonDatabaseUtils::copy_datablocks(text, database, FED_DataDescriptorPattern(),
                                                 QuilonDatabaseUtils::CopyEmptyBlocks);
    database.Commit();
  };
  copy();
  database.DeleteDataBlock(database.GetDataDescriptors(FED_DataDescriptorPattern()).front());
  database.Commit();
  copy();
  // The same value once more: its row is in two segments.
  for (FED_DataBlock* block : database.GetDataBlocks(FED_DataDescriptorPattern())) {
    const auto first = block->Begin();
    if (!(first != block->End())) continue;
    FED_DataRecord* const record = block->CreateDataRecord();
    block->GetRecord(*first, *record);
    block->SetRecord(*first, *record);
    block->DeleteDataRecord(record);
  }
  database.Commit();
  return 0;
}
