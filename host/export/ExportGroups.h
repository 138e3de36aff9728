#pragma once

/// @file
/// What the numbers of groups stand for.

#include <map>
#include <string>
#include <vector>

#include "mesh/Mesh.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

/// The groups of elements that nodal averages are over (key `group`). A database keeps their numbers alone, not whether
/// they count materials, sections or sets. So those are taken whose nodes hold all nodes that have an average, and
/// the fewest others; of equals materials, then sections.
class ExportGroups
{
public:
  /// No groups.
  ExportGroups() = default;

  /// @param blocks those of which the names of groups are asked; others than averages over a group are passed over
  ExportGroups(const FED_Database& database, int iteration, const Mesh& mesh,
               const std::vector<FED_DataDescriptor>& blocks);

  /// @return "STEEL" or "EALL", "section-2", or the number where nobody knows
  std::string NameOf(int group) const;

  /// @return whether it is known which elements are in a group
  bool AreKnown() const noexcept { return areKnown_; }

  /// @return by position of the element the group that it is in, 0 none; the least of several sets. Empty without
  ///         groups.
  const std::vector<int>& ElementGroups() const noexcept { return elementGroups_; }

private:
  std::map<int, std::string> names_;
  bool                       areKnown_ = false;
  std::vector<int>           elementGroups_;
};

}  // namespace quilon
