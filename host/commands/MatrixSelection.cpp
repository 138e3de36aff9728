#include "commands/MatrixSelection.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "Failure.h"
#include "FED_YaleMatrixStorage.h"
#include "matrix/MatrixBlocks.h"
#include "OpenedDatabase.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/KindTable.h"
#include "selection/Selection.h"

namespace quilon {

std::vector<SelectedMatrix> MatrixSelection::Select(OpenedDatabase& database, const std::string& name) const
{
  const Selection             selection = blocks.Parse(KindTable(database.Get()));
  std::vector<SelectedMatrix> selected;
  for (const FED_DataDescriptor& descriptor : database.RequireBlocks(selection, blocks.ToString())) {
    if (!matrix::HoldsMatrices(descriptor.GetInteger(FED_DataDescriptor::OnfId))) continue;
    const std::vector<std::size_t> indices = matrix::MatrixIndices(database.Get().GetConstDataBlock(descriptor));
    if (index && std::find(indices.begin(), indices.end(), *index) == indices.end())
      Fail(name + ": no matrix " + std::to_string(*index) + " in " + ToSelectionText(descriptor));
    for (const std::size_t one : indices)
      if (!index || one == *index) selected.push_back({descriptor, one});
  }
  if (selected.empty())
    Fail(name + ": no sparse matrices" + (blocks.text.empty() ? "" : " in '" + blocks.ToString() + "'") +
         ", expected a block of kind 593, 594 or 1900 to 1999");
  return selected;
}

void AddMatrixSelection(CLI::App& app, MatrixSelection& selection)
{
  app.add_option("SELECTION", selection.blocks.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all matrices)");
  app.add_option("--index", selection.index, "Which matrix of a block (default: all)")->type_name("N");
}

FED_YaleMatrix LoadMatrix(const FED_Database& database, const SelectedMatrix& selected)
{
  FED_YaleMatrix matrix;
  FED_YaleMatrixStorage::Restore(database, selected.descriptor, selected.index, matrix);
  return matrix;
}

}  // namespace quilon
