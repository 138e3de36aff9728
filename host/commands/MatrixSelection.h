#pragma once

/// @file
/// Which matrices of a database a command works on.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "commands/SelectionOptions.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonUtilities/FED_YaleMatrix.h"

class FED_Database;

namespace CLI {
class App;
}

namespace quilon {

class OpenedDatabase;

/// A matrix of a block: a sparse one by its matrix index, or that of an element.
struct SelectedMatrix
{
  FED_DataDescriptor descriptor;
  bool               isOfElement = false;
  std::int64_t       number      = 0;  ///< of the index or the element

  /// What the number counts.
  const char* Place() const noexcept { return isOfElement ? "element" : "index"; }

  /// @param database name of the database
  /// @return "job.onf: 593@it=0, index 1"
  std::string Name(const std::string& database) const;
};

struct MatrixSelection
{
  SelectionOptions   blocks;
  std::optional<int> index;
  std::optional<int> element;

  /// @param name of the database, for messages
  /// @return at least one, by block, then index
  /// @throws FED_Failure when no block, or none that holds sparse matrices, is selected, when a block has no matrix at
  ///         the index, and when none has a matrix of the element
  std::vector<SelectedMatrix> Select(OpenedDatabase& database, const std::string& name) const;

  /// @return what the user wrote, for messages
  std::string ToString() const { return blocks.ToString(); }

private:
  std::vector<SelectedMatrix> SelectSparse(OpenedDatabase& database, const std::vector<FED_DataDescriptor>& selected,
                                           const std::string& name) const;
  std::vector<SelectedMatrix> SelectOfElement(OpenedDatabase& database, const std::vector<FED_DataDescriptor>& selected,
                                              const std::string& name) const;
};

/// Adds the selection, --index and --element. The options outlive the parsing.
void AddMatrixSelection(CLI::App& app, MatrixSelection& selection);

/// @param name of the matrix, for messages
FED_YaleMatrix LoadMatrix(const FED_Database& database, const SelectedMatrix& selected, const std::string& name);

}  // namespace quilon
