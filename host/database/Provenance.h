#pragma once

/// @file
/// What made the results of a database: its imports (kinds 605 and 606).

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class FED_Database;

namespace quilon {

/// A file that an import has read.
struct ImportedFile
{
  std::string   role;      ///< one of ImportRole
  std::string   name;      ///< of an include relative to the folder of the deck, of others without folders
  std::uint64_t size = 0;  ///< bytes
  std::string   checksum;  ///< 16 hexadecimal digits; empty for what is no plain file
  std::string   changed;   ///< when the bytes changed last, as "2026-03-01T17:04:59Z"; empty for what is no plain file

  /// @return whether the two have the same bytes under one name in one role, whenever they were written
  bool IsSameAs(const ImportedFile& other) const;
};

namespace ImportRole {

inline constexpr char Deck[]     = "deck";
inline constexpr char Include[]  = "include";   ///< of the deck
inline constexpr char Results[]  = "results";   ///< the mesh, and fields that name their steps
inline constexpr char Prints[]   = "prints";    ///< fields that know their time or their mode alone
inline constexpr char Status[]   = "status";    ///< steps and their times
inline constexpr char Groups[]   = "groups";    ///< groups that became sets
inline constexpr char Requests[] = "requests";  ///< what was to be derived

}  // namespace ImportRole

/// The program, an option that was not the default, or what else the import was made with.
struct ImportSetting
{
  std::string name;
  std::string value;

  bool operator==(const ImportSetting&) const = default;
};

namespace ImportSettingName {

inline constexpr char Program[] = "program";  ///< "quilon 1.2.0"
inline constexpr char Blocks[]  = "blocks";   ///< how many the iteration had behind the import
inline constexpr char IsWhole[] = "whole";    ///< "no" where bad input left the steps before it

}  // namespace ImportSettingName

/// One import.
struct ImportProvenance
{
  std::vector<ImportedFile>  files;  ///< a deck, its includes, and the files of the jobs, as they were read
  std::vector<ImportSetting> settings;

  /// @return null when there is none of this name
  const std::string* FindSetting(const std::string& name) const;
  bool               HasRole(const std::string& role) const;
  /// @return the files that the user named or that stood beside them: all but includes
  std::vector<ImportedFile> MainFiles() const;
  /// @return "job.inp, job.frd": the deck and the files with results
  std::string ListFiles() const;
};

/// What made the results of one iteration: several imports where one was put beside what others had written.
struct IterationProvenance
{
  int                           iteration = 0;
  std::vector<ImportProvenance> imports;  ///< in the order in which they were made
};

/// @return for each iteration that keeps it what made its results, by ascending iterations. Databases of earlier
///         versions, and those that no import made, have nothing.
/// @throws FED_Failure for records that this version did not write
std::vector<IterationProvenance> ReadProvenance(const FED_Database& database);

/// @return the imports of one iteration; none where the database does not keep them
std::vector<ImportProvenance> ReadProvenance(const FED_Database& database, int iteration);

/// @return whether a deck was among the files of each import of the iteration, and there was one
bool WasImportedWithDeck(const FED_Database& database, int iteration);

/// Writes what made an iteration, in place of what stood there.
void WriteProvenance(FED_Database& database, const IterationProvenance& provenance);

/// Reads the whole file.
/// @param onBytes called with the bytes read so far; may be empty, and may throw to stop
/// @throws FED_Failure for a file that cannot be read. What is no plain file, or is not there, has neither size nor
///         checksum: only a reader can tell of it
ImportedFile DescribeFile(const std::filesystem::path& path, const std::string& role, const std::string& name,
                          const std::function<void(std::uint64_t bytes)>& onBytes = {});

}  // namespace quilon
