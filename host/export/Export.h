#pragma once

/// @file
/// Results for other tools: `quilon export`.

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <string>
#include <vector>

#include "database/Readers.h"
#include "export/ExportPlan.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

class Listener;

struct ExportRequest
{
  std::string                     name;    ///< of the database, for messages
  std::vector<FED_DataDescriptor> blocks;  ///< what is exported; kinds without values of nodes or elements stay behind
  ExportComponents                components;
  ExportGroupForm                 groups = ExportGroupForm::Arrays;
  /// Its extension tells the format: .vtkhdf (or .hdf), .vtu, .pvd or .csv. Beside NAME.pvd stand NAME-1.vtu,
  /// NAME-2.vtu, ...
  std::filesystem::path output;
  /// A working database on disk, opened as the database: the file points at its values in place of having them, which
  /// a .vtkhdf alone can. Empty: they are written.
  std::filesystem::path linkedFolder = {};
  /// Borrowed: a table goes here, and `output` is its name alone. Null: everything goes into files.
  std::ostream* table = nullptr;
  /// Of the database: share the steps of a .pvd, with the same files for any. Where they are processes, those that do
  /// not lead do not return from Export().
  Readers readers = {};
};

struct ExportReport
{
  std::vector<std::filesystem::path> files;          ///< that were written, the one asked for first
  std::size_t                        numPoints = 0;  ///< 0 of a table, as cells
  std::size_t                        numCells  = 0;
  std::vector<std::string>           arrays;                ///< names, without ids, materials and sets
  std::vector<double>                times;                 ///< of the steps
  bool                               areTimesKnown = true;  ///< else they are positions
  std::vector<std::string>           leftOut;  ///< names of selected kinds that are no values of nodes or elements
};

/// Refuses, before any work, what Export() would refuse of an output at its end.
/// @throws FED_Failure for an unknown extension, a folder, and a place in a working database
void CheckExportOutput(const std::filesystem::path& output);

/// @throws FED_Failure for a database that is no working database on disk, and an output that is no .vtkhdf
void CheckLink(const std::filesystem::path& database, const std::filesystem::path& output);

/// @return whether files of the format are made by several, a step each
bool IsSharedExport(const std::filesystem::path& output);

/// Writes results and their mesh into files. They take their places when all of them are whole; what fails leaves
/// everything as it was. Equal databases give equal bytes.
///
/// Memory: the mesh and one array, of a table one step; whatever the number of steps. Likewise for each reader.
/// @param listener is told the progress, and what a user may not expect
/// @throws FED_Failure for a selection or component that gives nothing, a mesh without coordinates, several steps for
///         one .vtu, and an output that cannot be written
ExportReport Export(const FED_Database& database, const ExportRequest& request, Listener& listener);

}  // namespace quilon
