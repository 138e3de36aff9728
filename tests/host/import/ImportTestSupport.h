#pragma once

/// @file
/// What the tests of the import share.

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "import/StepMatcher.h"

namespace quilon_test {

using quilon::StepKey;

inline std::filesystem::path Fixture(const std::string& name)
{
  return std::filesystem::path(QUILON_FIXTURES) / "calculix" / name;
}

inline FED_DataDescriptor Key(const StepKey& step, int onf, int iteration = 0)
{
  FED_DataDescriptor descriptor(iteration, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, step.loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, step.substep);
  descriptor.SetInteger(FED_DataDescriptor::Analysis, step.analysis);
  return descriptor;
}

/// A block of the mesh: iteration and ONF id alone.
inline FED_DataDescriptor MeshKey(int onf) { return FED_DataDescriptor(0, static_cast<FED_OnfId>(onf)); }

/// The history that holds a quantity of a step.
inline FED_DataDescriptor ScalarKey(int loadCase, int analysis, int quantity)
{
  FED_DataDescriptor descriptor = Key({loadCase, analysis, 1}, 500);
  descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), quantity);
  return descriptor;
}

/// Steps that have a block of the kind.
inline std::set<StepKey> StepsOf(FED_ResultDatabase& database, int onf)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, onf);
  std::set<StepKey> steps;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(pattern)) {
    steps.insert({descriptor.GetInteger(FED_DataDescriptor::LoadCase),
                  descriptor.GetInteger(FED_DataDescriptor::Analysis),
                  descriptor.GetInteger(FED_DataDescriptor::Substep)});
  }
  return steps;
}

/// The doubles of a block of scalars, vectors or tensors, by id.
inline std::map<int, std::vector<double>> ValuesOf(FED_ResultDatabase& database, const FED_DataDescriptor& key,
                                                   std::size_t numValues)
{
  std::map<int, std::vector<double>> values;
  const FED_DataBlock&               block = database.GetConstDataBlock(key);
  const FED_ConstIdDataBlock         view(block, database.GetIdMapsPool());
  for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
    std::vector<double> row(numValues);
    block.GetValuesAt(*it, row.data());
    values[view.GetId(*it)] = row;
  }
  return values;
}

/// The double lists in one field of a block, by id.
inline std::map<int, std::vector<double>> ListsOf(FED_ResultDatabase& database, const FED_DataDescriptor& key,
                                                  std::size_t field)
{
  std::map<int, std::vector<double>> lists;
  const FED_DataBlock&               block = database.GetConstDataBlock(key);
  const FED_ConstIdDataBlock         view(block, database.GetIdMapsPool());
  FED_ConstDataRecord*               record = block.CreateConstDataRecord();
  for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
    FED_DoubleArray list;
    block.GetRecord(*it, *record);
    record->GetDoubleList(field, list);
    lists[view.GetId(*it)].assign(list.GetData(), list.GetData() + list.GetSize());
  }
  block.DeleteDataRecord(record);
  return lists;
}

/// The nodes of every element.
inline std::map<int, std::vector<int>> ElementNodes(FED_ResultDatabase& database)
{
  std::map<int, std::vector<int>> elements;
  const FED_DataBlock&            block = database.GetConstDataBlock(MeshKey(595));
  const FED_ConstIdDataBlock      view(block, database.GetIdMapsPool());
  FED_ConstDataRecord*            record = block.CreateConstDataRecord();
  for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
    FED_IntArray nodes;
    block.GetRecord(*it, *record);
    record->GetIntList(1, nodes);
    elements[view.GetId(*it)].assign(nodes.GetData(), nodes.GetData() + nodes.GetSize());
  }
  block.DeleteDataRecord(record);
  return elements;
}

inline std::string ReadText(const std::filesystem::path& path)
{
  std::ifstream     in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

inline void WriteText(const std::filesystem::path& path, const std::string& text)
{
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace quilon_test
