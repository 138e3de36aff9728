#pragma once

/// @file
/// From solver result files to a database.

#include <filesystem>
#include <vector>

#include "import/ImportOptions.h"
#include "import/ImportReport.h"

class FED_Database;

namespace quilon {

/// Reads `.frd` and `.dat` files (a `.sta` beside them helps to match times) into the database and derives what is
/// requested. Files of one job share their stem, and the stem alone stands for those that are there; several jobs are
/// read one after the other, as given. One of the files may be the deck `.inp` of the jobs: it then says what the mesh
/// is, and without results it is imported alone.
/// @throws FED_Failure for bad input; the database then holds what was read before, and the caller drops it
/// @throws BrokenBehindResults for bad input that is met while results are listed, before they are read
/// @throws RefusedImport where all was read and the options forbid what was found
ImportReport ImportResults(const std::vector<std::filesystem::path>& files, FED_Database& target,
                           const ImportOptions& options);

}  // namespace quilon
