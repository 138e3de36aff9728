#pragma once

/// @file
/// Arrays that stay in a working database and are only pointed at.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <bundled/FED_RowPlaces.h>

#include "export/ExportPlan.h"
#include "export/Hdf5File.h"
#include "mesh/Mesh.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

/// Finds the rows of arrays in the segments of a database, which are HDF5 files.
class LinkedRows
{
public:
  /// The most pieces that an array may be made of.
  static constexpr std::size_t kMostPieces = 10000;

  /// @param database opened from the folder; borrowed, as mesh and plan
  /// @param folder   of a working database
  /// @param output   the file that is to point at it
  /// @throws FED_Failure when the database cannot be read, and for arrays that it does not hold as they are: invariants
  ///         and averages of groups as points
  LinkedRows(const FED_Database& database, const Mesh& mesh, const ExportPlan& plan,
             const std::filesystem::path& folder, const std::filesystem::path& output);

  /// @param firstRow of the step in the virtual data set
  /// @return where the values of an array at a step are; those that are not in the mesh are left out
  /// @throws FED_Failure where the rows lie in too many pieces
  std::vector<Hdf5File::VirtualPart> Find(const ExportArray& array, std::size_t step, std::uint64_t firstRow);

  /// Names of the segments that were pointed at.
  const std::set<std::string>& GetFiles() const noexcept { return files_; }

private:
  const Hdf5File::PlacedDataset& FindDataset(const FED_RowPlace& place);
  void                           AddPlace(const ExportArray& array, const FED_RowPlace& place, std::uint64_t firstRow,
                                          std::vector<Hdf5File::VirtualPart>& parts);

  const FED_Database&                                                   database_;
  const Mesh&                                                           mesh_;
  std::filesystem::path                                                 outputFolder_;
  std::map<FED_DataDescriptor, std::vector<FED_RowPlace>>               places_;
  std::map<std::filesystem::path, std::vector<Hdf5File::PlacedDataset>> datasets_;
  std::set<std::string>                                                 files_;
};

}  // namespace quilon
