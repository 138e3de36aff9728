#pragma once

/// @file
/// Writing a database to its folder.

#include <cstddef>
#include <filesystem>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

/// A folder that results go to, looked at before the work begins: what cannot be written is told early.
class Publication
{
public:
  /// @throws FED_Failure for a path where neither an ONF folder stands nor one can be made
  explicit Publication(const std::filesystem::path& folder);

  /// Gives the database the names that user kinds have in the folder, so that what has a name there keeps its ONF id.
  void TakeUserKindNames(FED_Database& database) const;

  /// Publishes all blocks of the database that have records in one step. Blocks of equal keys are replaced, other
  /// blocks of the folder stay.
  /// @param emptied blocks of the folder that are left without records: their values have been added to other blocks,
  /// and
  ///                a text database has no way to take a block out
  /// @return the number of blocks with records
  /// @throws FED_Failure when a user kind has another name in the folder or the disk fails; the folder is then as it
  /// was
  std::size_t Publish(const FED_Database& database, const std::vector<FED_DataDescriptor>& emptied = {}) const;

private:
  void CheckUserKindNames(const FED_Database& database) const;

  std::filesystem::path folder_;
};

}  // namespace quilon
