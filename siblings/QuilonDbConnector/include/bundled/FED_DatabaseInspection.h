#pragma once

/// @file
/// The health of a database on disk, and what can be had from a damaged one.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "quilon_contract_export.h"

class FED_Database;
class FED_FileLayer;

/// What was found in a database's folder. Texts name file, block and chunk.
struct FED_DatabaseReport
{
  std::uint64_t            generation = 0;  ///< of the manifest
  std::size_t              segments   = 0;  ///< that belong to the database
  std::uint64_t            fileBytes  = 0;  ///< of them
  std::uint64_t            deadBytes  = 0;  ///< of data that compacting gives back
  std::size_t              blocks     = 0;
  std::uint64_t            records    = 0;
  std::uint64_t            extents    = 0;  ///< runs of rows that were checked
  std::vector<std::string> leftovers;       ///< files of commits that did not happen; the next writer removes them
  std::vector<std::string> findings;        ///< what is wrong; empty for a whole database
};

/// An inspection in parts, so that several may share the work: each has an inspector of its own, of one generation.
/// Changes nothing; a writer may be at work.
///
/// Threads: one at a time per inspector.
class QUILON_DB_CONNECTOR_API FED_DatabaseInspector
{
public:
  /// Reads manifest and indices.
  /// @param files null: the operating system's files; borrowed
  /// @throws FED_Failure when the folder cannot be listed
  explicit FED_DatabaseInspector(const std::filesystem::path& folder, FED_FileLayer* files = nullptr);
  FED_DatabaseInspector(const FED_DatabaseInspector&)            = delete;
  FED_DatabaseInspector& operator=(const FED_DatabaseInspector&) = delete;
  ~FED_DatabaseInspector();

  /// @return what manifest and indices tell
  const FED_DatabaseReport& GetFrame() const noexcept;
  /// @return how many parts the rest has; 0 without a whole manifest
  std::size_t CountParts() const noexcept;
  /// Reads and checks a part.
  /// @param part 0 <= part < CountParts()
  /// @return its findings and counts alone
  FED_DatabaseReport CheckPart(std::size_t part) const;

private:
  struct State;

  std::unique_ptr<State> state_;
};

/// Adds what was found in a part; parts go in their order.
QUILON_DB_CONNECTOR_API void FED_AddPart(const FED_DatabaseReport& part, FED_DatabaseReport& report);

/// Reads and checks all of a database: manifest, every byte of every segment, lengths of lists against their elements,
/// statistics against values, and that no id, no record index and no block is there twice. What is damaged but concerns
/// no value is told as such. Changes nothing; a writer may be at work.
/// @param files null: the operating system's files
/// @throws FED_Failure when the folder cannot be listed
QUILON_DB_CONNECTOR_API FED_DatabaseReport FED_InspectDatabase(const std::filesystem::path& folder,
                                                               FED_FileLayer*               files = nullptr);

/// What was copied, and what was not.
struct FED_SalvageReport
{
  bool                     hasManifest = false;
  std::size_t              blocks      = 0;
  std::uint64_t            records     = 0;
  std::uint64_t            lostRecords = 0;  ///< as far as they are known: those of a lost index are not
  std::vector<std::string> losses;           ///< what is damaged or missing, and what is lost with it
};

/// Copies every whole run of rows of a damaged database. Ids and indices stay as they are; where an id map is damaged,
/// the records whose ids are known are kept under new indices. A segment whose end is missing, or one of whose copies
/// of header and index is damaged, gives all else. Without a whole manifest all segments of the folder count, also
/// those of a commit that did not happen.
/// @param target an empty database; the caller commits it
/// @param files  null: the operating system's files
/// @throws FED_Failure when the folder cannot be listed, or the target fails
QUILON_DB_CONNECTOR_API FED_SalvageReport FED_SalvageDatabase(const std::filesystem::path& folder, FED_Database& target,
                                                              FED_FileLayer* files = nullptr);
