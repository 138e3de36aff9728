#pragma once

/// @file
/// The values that a picture of a model shows.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kinds/Component.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

class KindTable;
class Mesh;

/// Which result a picture shows: a block, or one block a group of elements.
struct FieldChoice
{
  std::vector<FED_DataDescriptor> blocks;            ///< by group
  bool                            isAtNodes = true;  ///< else at elements
  int                             numSteps  = 1;     ///< that were selected, of which the last is shown

  int GetOnf() const { return blocks.front().GetInteger(FED_DataDescriptor::OnfId); }
  int GetIteration() const { return blocks.front().GetInteger(FED_DataDescriptor::Iteration); }
};

/// Chooses what a picture shows of the selected blocks: a kind with values at nodes or elements, of the last step. Of
/// nodal averages that over all elements, where it is selected, else those of the groups.
/// @param selected not empty
/// @param text     the selection, for messages
/// @param name     of the database, for messages
/// @throws FED_Failure when nothing that a picture can show, several kinds, or several blocks of a step are selected
FieldChoice ChooseField(const std::vector<FED_DataDescriptor>& selected, const KindTable& kinds,
                        const std::string& text, const std::string& name);

/// @return the component that a kind is shown by when none is named: mises of tensors, the magnitude of vectors
std::string DefaultComponentOf(int onf);

/// Values at nodes or elements. A NaN where there is none.
class ModelField
{
public:
  /// Reads the chosen blocks. Those of groups are at elements of the material that the group has the number of.
  /// @throws FED_Failure when blocks of groups are of no materials
  ModelField(const FED_Database& database, const Mesh& mesh, const FieldChoice& choice, const Component& component,
             const std::string& name);

  bool IsAtNodes() const noexcept { return isAtNodes_; }

  /// @param element, node positions in the mesh
  double At(std::size_t element, std::size_t node) const noexcept
  {
    if (!isAtNodes_) return values_.front()[element];
    return values_[groups_.empty() ? 0 : groups_[element]][node];
  }

private:
  bool                             isAtNodes_;
  std::vector<std::vector<double>> values_;  // shape [groups, nodes or elements]; with groups a last one without values
  std::vector<std::uint32_t>       groups_;  // of elements; empty: one for all
};

/// Displacements of the nodes at a step.
/// @param step of the block whose step is meant
/// @return shape [mesh.NumNodes()], zero where there is none
/// @throws FED_Failure when the step has no displacements
std::vector<std::array<double, 3>> ReadDisplacements(const FED_Database& database, const Mesh& mesh,
                                                     const FED_DataDescriptor& step, const std::string& name);

}  // namespace quilon
