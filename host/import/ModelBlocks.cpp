#include "import/ModelBlocks.h"

#include <string>
#include <vector>

#include <QuilonDbConnector/FED_Database.h>

#include "import/ImportRecord.h"

namespace quilon {

RecordWriter::RecordWriter(FED_Database& database, int iteration, int onf, std::size_t expectedRecords)
    : view_(database.GetOrCreateDataBlock(FED_DataDescriptor(iteration, static_cast<FED_OnfId>(onf)), expectedRecords),
            database.GetIdMapsPool(), true),
      record_(view_.CreateIdDataRecord())
{}

void ModelBlocks::AddMaterials(std::span<const ModelMaterial> materials)
{
  if (!IsFirst(OnfKind::Material, materials.size(), "materials")) return;
  RecordWriter writer(database_, iteration_, OnfKind::Material, materials.size());
  int          number = 0;
  for (const ModelMaterial& material : materials) {
    writer.Fields().SetString(1, std::string(material.name));
    writer.Fields().SetDouble(2, material.density);
    writer.Fields().SetDouble(3, material.youngsModulus);
    writer.Fields().SetDouble(4, material.poissonRatio);
    writer.Write(++number);
  }
}

void ModelBlocks::AddSets(int onf, std::span<const ModelSet> sets)
{
  if (!IsFirst(onf, sets.size(), onf == OnfKind::NodeSet ? "sets of nodes" : "sets of elements")) return;
  RecordWriter writer(database_, iteration_, onf, sets.size());
  int          number = 0;
  for (const ModelSet& set : sets) {
    writer.Fields().SetString(1, std::string(set.name));
    writer.Fields().SetIntList(2, std::vector<int>(set.ids.begin(), set.ids.end()));
    writer.Write(++number);
  }
}

/// @return whether there are some and nobody has told any before
bool ModelBlocks::IsFirst(int onf, std::size_t count, const char* what)
{
  if (count == 0) return false;
  if (told_.insert(onf).second) return true;
  record_.Skip(std::string(what) + " that another file has told already", count);
  return false;
}

}  // namespace quilon
