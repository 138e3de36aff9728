// A database of your own with the least effort: derive from FED_Database, keep blocks in the bundled database in
// memory, and fill a block from your own source when it is asked for. The library works on it as on any other.
//
//     own_database
//
// Two stress tensors come from a table in the place of your files; the library derives their principal values.

#include <cmath>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <FEM_ResultUtil.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_Failure.h>

namespace {

constexpr auto kNodalStress          = static_cast<FED_OnfId>(521);  // tensors
constexpr auto kNodalStressPrincipal = static_cast<FED_OnfId>(520);  // derived from them

/// What stands for your own store: a tensor (xx, yy, zz, xy, yz, zx) of each node, by load case.
struct StoredTensor
{
  int    loadCase;
  int    node;
  double values[6];
};

constexpr StoredTensor kStore[] = {
    {1, 10, {30.0, 20.0, 10.0, 0.0, 0.0, 0.0}},
    {2, 10, {0.0, 0.0, 0.0, 5.0, 0.0, 0.0}},
};

FED_DataDescriptor KeyOf(int loadCase, FED_OnfId onf)
{
  FED_DataDescriptor key(0, onf);
  key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  return key;
}

/// Shows what the store has as blocks, and loads one when it is first asked for. New blocks stay in memory.
class OwnDatabase final : public FED_Database
{
public:
  OwnDatabase()
  {
    for (const StoredTensor& tensor : kStore) unloaded_.insert(KeyOf(tensor.loadCase, kNodalStress));
  }

  bool IsInitialized() const override { return true; }

  FED_DataBlock* CreateDataBlock(const FED_DataDescriptor& key, std::size_t firstSize, std::size_t secondSize,
                                 const std::string& format) override
  {
    Load(key);
    return memory_.CreateDataBlock(key, firstSize, secondSize, format);
  }
  FED_DataBlock& GetOrCreateDataBlock(const FED_DataDescriptor& key, std::size_t expectedRecords) override
  {
    Load(key);
    return memory_.GetOrCreateDataBlock(key, expectedRecords);
  }
  bool HasDataBlock(const FED_DataDescriptor& key) const override
  {
    return unloaded_.contains(key) || memory_.HasDataBlock(key);
  }
  const FED_DataBlock& GetConstDataBlock(const FED_DataDescriptor& key) const override
  {
    Load(key);
    return memory_.GetConstDataBlock(key);
  }
  FED_DataBlock& GetDataBlock(const FED_DataDescriptor& key) override
  {
    Load(key);
    return memory_.GetDataBlock(key);
  }
  std::vector<FED_DataBlock*> GetDataBlocks(const FED_DataDescriptorPattern& pattern) override
  {
    for (const FED_DataDescriptor& key : GetDataDescriptors(pattern)) Load(key);
    return memory_.GetDataBlocks(pattern);
  }
  void DeleteDataBlock(const FED_DataDescriptor& key) override
  {
    if (unloaded_.erase(key) == 0) memory_.DeleteDataBlock(key);
  }
  /// Ascending, as the contract asks for.
  std::vector<FED_DataDescriptor> GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const override
  {
    const std::vector<FED_DataDescriptor> loaded = memory_.GetDataDescriptors(pattern);
    std::set<FED_DataDescriptor>          all(loaded.begin(), loaded.end());
    for (const FED_DataDescriptor& key : unloaded_)
      if (pattern.Matches(key)) all.insert(key);
    return {all.begin(), all.end()};
  }

  /// One pool for all blocks: an id means the same entity in each.
  FED_IdMapsPool&       GetIdMapsPool() override { return memory_.GetIdMapsPool(); }
  const FED_IdMapsPool& GetIdMapsPool() const override
  {
    return static_cast<const FED_Database&>(memory_).GetIdMapsPool();
  }

private:
  /// Loading changes nothing that a caller can tell, so reading may load.
  void Load(const FED_DataDescriptor& key) const
  {
    if (unloaded_.erase(key) == 0) return;
    FED_IdDataBlock view(memory_.GetOrCreateDataBlock(key, 0), memory_.GetIdMapsPool(), true);
    for (const StoredTensor& tensor : kStore)
      if (KeyOf(tensor.loadCase, kNodalStress) == key) view.SetTensor(tensor.node, tensor.values);
  }

  mutable FED_ResultDatabase           memory_;
  mutable std::set<FED_DataDescriptor> unloaded_;
};

/// Asks for principal stresses without a request file.
class PrincipalStresses : public OnfResultRequestFile
{
public:
  bool typeIsRequested(int onf) const override { return onf == kNodalStressPrincipal; }
};

/// @return whether a node's principal values are these
bool Check(const OwnDatabase& database, int loadCase, int node, const double (&expected)[3])
{
  const FED_DataBlock&       block = database.GetConstDataBlock(KeyOf(loadCase, kNodalStressPrincipal));
  const FED_ConstIdDataBlock view(block, database.GetIdMapsPool());
  double                     values[3];
  view.GetVector(node, values);
  std::printf("load case %d, node %d: %g %g %g\n", loadCase, node, values[0], values[1], values[2]);
  for (int k = 0; k < 3; ++k)
    if (!(std::abs(values[k] - expected[k]) < 1e-9)) return false;
  return true;
}

}  // namespace

int main()
{
  try {
    OwnDatabase       database;
    PrincipalStresses requests;
    FEM_ResultUtil::CalculateAdditionalResults(database, requests, 0, 0);
    // By hand: a diagonal tensor sorted, and pure shear of 5.
    const bool first  = Check(database, 1, 10, {30.0, 20.0, 10.0});
    const bool second = Check(database, 2, 10, {5.0, 0.0, -5.0});
    return first && second ? 0 : 1;
  } catch (const FED_Failure& failure) {
    std::fprintf(stderr, "own_database: %s\n", failure.what());
    return 1;
  }
}
