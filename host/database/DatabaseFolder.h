#pragma once

/// @file
/// Folders that hold a database.

#include <filesystem>
#include <memory>

#include <bundled/FED_FileLayer.h>

class QuilonOnfTxtDatabase;

namespace quilon {

/// @return what stands at the path, links followed
/// @throws FED_Failure that names it when the system does not tell: that is no sign that nothing is there
FED_FileStatus StatusOf(const std::filesystem::path& path);

/// @return whether the path is a folder that holds a working database
bool IsWorkingDatabase(const std::filesystem::path& path);

/// @return whether a working database is meant by this name: it ends in .fed
bool IsWorkingDatabaseName(const std::filesystem::path& path);

/// @return whether the path is a folder that holds a working database, or has at least the name of one: what it lacks
///         is told when it is opened
bool IsWorkingDatabaseFolder(const std::filesystem::path& path);

/// @return whether the path is a folder that holds an ONF text database
bool IsOnfFolder(const std::filesystem::path& path);

/// Looks at the name of a database to be made. A folder of text results may have any name; a new one that looks like a
/// file of another program is a slip.
/// @throws FED_Failure for a name with another extension than .fed and .onf where nothing is there yet
void RequireDatabaseName(const std::filesystem::path& path);

/// Opens an ONF text database to read it.
std::unique_ptr<QuilonOnfTxtDatabase> OpenOnf(const std::filesystem::path& path);

}  // namespace quilon
