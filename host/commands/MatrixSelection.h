#pragma once

/// @file
/// Which matrices of a database a command works on.

#include <cstddef>
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

struct SelectedMatrix
{
  FED_DataDescriptor descriptor;
  std::size_t        index;
};

struct MatrixSelection
{
  SelectionOptions           blocks;
  std::optional<std::size_t> index;

  /// @param name of the database, for messages
  /// @return at least one, by block, then index
  /// @throws FED_Failure when no block, or none that holds sparse matrices, is selected, and when a block has no matrix
  ///         at the index
  std::vector<SelectedMatrix> Select(OpenedDatabase& database, const std::string& name) const;

  /// @return what the user wrote, for messages
  std::string ToString() const { return blocks.ToString(); }
};

/// Adds the selection and --index. The options outlive the parsing.
void AddMatrixSelection(CLI::App& app, MatrixSelection& selection);

FED_YaleMatrix LoadMatrix(const FED_Database& database, const SelectedMatrix& selected);

}  // namespace quilon
