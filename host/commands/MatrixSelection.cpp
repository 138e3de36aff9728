#include "commands/MatrixSelection.h"

#include <cstddef>

#include <CLI/CLI.hpp>

#include <bundled/OnfKinds.h>

#include "commands/NumberOptions.h"
#include "FED_YaleMatrixStorage.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "matrix/MatrixBlocks.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "text/Failure.h"

namespace quilon {

std::string SelectedMatrix::Name(const std::string& database) const
{
  return database + ": " + ToSelectionText(descriptor) + ", " + Place() + ' ' + std::to_string(number);
}

std::vector<SelectedMatrix> MatrixSelection::Select(OpenedDatabase& database, const std::string& name) const
{
  if (index && element) Fail("--index and --element exclude each other, expected one at most");
  if (index && *index < 0) Fail("--index is " + std::to_string(*index) + ", expected 0 or more");
  const Selection selection = blocks.ParseBlocks(KindTable(database.Get()));
  const auto      selected  = database.RequireBlocks(selection, blocks.ToString());
  return element ? SelectOfElement(database, selected, name) : SelectSparse(database, selected, name);
}

std::vector<SelectedMatrix> MatrixSelection::SelectSparse(OpenedDatabase&                        database,
                                                          const std::vector<FED_DataDescriptor>& selected,
                                                          const std::string&                     name) const
{
  std::vector<SelectedMatrix> matrices;
  const KindTable             kinds(database.Get());
  for (const FED_DataDescriptor& descriptor : selected) {
    if (!OnfKind::HoldsMatrices(descriptor.GetInteger(FED_DataDescriptor::OnfId))) continue;
    // They are kept as a matrix, which nobody means who does not name it.
    if (blocks.text.empty() && kinds.GetName(descriptor) == matrix::kDofKindName) continue;
    bool isThere = false;
    for (const std::size_t one : matrix::MatrixIndices(database.Get().GetConstDataBlock(descriptor))) {
      if (index && one != static_cast<std::size_t>(*index)) continue;
      matrices.push_back({descriptor, false, static_cast<std::int64_t>(one)});
      isThere = true;
    }
    if (index && !isThere) Fail(name + ": no matrix " + std::to_string(*index) + " in " + ToSelectionText(descriptor));
  }
  if (matrices.empty())
    Fail(name + ": no sparse matrices" + (blocks.text.empty() ? "" : " in '" + blocks.ToString() + "'") +
         ", expected a block of kind 593, 594 or 1900 to 1999, or --element");
  return matrices;
}

std::vector<SelectedMatrix> MatrixSelection::SelectOfElement(OpenedDatabase&                        database,
                                                             const std::vector<FED_DataDescriptor>& selected,
                                                             const std::string&                     name) const
{
  std::vector<SelectedMatrix> matrices;
  for (const FED_DataDescriptor& descriptor : selected)
    if (matrix::HoldsElementMatrix(database.Get(), descriptor, *element))
      matrices.push_back({descriptor, true, *element});
  if (matrices.empty())
    Fail(name + ": no matrix of element " + std::to_string(*element) +
         (blocks.text.empty() ? "" : " in '" + blocks.ToString() + "'") +
         ", expected one in a block of kind 590 to 592 or 597 to 599");
  return matrices;
}

void AddMatrixSelection(CLI::App& app, MatrixSelection& selection)
{
  app.add_option("SELECTION", selection.blocks.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all matrices)");
  AddIntegerOption(app, "--index", selection.index, "Which matrix of a block (default: all)");
  AddIntegerOption(app, "--element", selection.element, "The matrices of this element, in place of sparse ones");
}

FED_YaleMatrix LoadMatrix(const FED_Database& database, const SelectedMatrix& selected, const std::string& name)
{
  if (selected.isOfElement)
    return matrix::LoadElementMatrix(database, selected.descriptor, static_cast<int>(selected.number), name);
  FED_YaleMatrix matrix;
  FED_YaleMatrixStorage::Restore(database, selected.descriptor, static_cast<std::size_t>(selected.number), matrix);
  return matrix;
}

}  // namespace quilon
