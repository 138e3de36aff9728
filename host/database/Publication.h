#pragma once

/// @file
/// Writing a database to its folder.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include <bundled/OnfTextExport.h>

#include "database/DatabaseParts.h"
#include "database/Readers.h"
#include "database/WatchedFiles.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;
class FED_ResultDatabase;

namespace quilon {

class FreshDatabase;

/// A database that results go to: an ONF folder or a working database on disk (`NAME.fed`). It is looked at before the
/// work begins: what cannot be written is told early. All of it is published in one step, or nothing: a publication
/// that goes without Publish() leaves everything as it was.
class Publication
{
public:
  enum Form : int
  {
    AnyDatabase,
    OnfFolder
  };

  /// @throws FED_Failure for a path where neither a database of this form stands nor one can be made, for one inside a
  ///         working database, and for a database that another program writes longer than the patience lasts
  explicit Publication(const std::filesystem::path& folder, Form form = AnyDatabase, LockPatience patience = {});
  Publication(const Publication&)            = delete;
  Publication& operator=(const Publication&) = delete;
  ~Publication();

  /// An empty database to be filled; what has a name among the user kinds of the published one keeps it. Memory stays
  /// flat where a working database is written.
  FED_Database& Target() noexcept;

  /// @return parts of the target, for several to write; null where one has to write all, into an ONF folder
  DatabaseParts* GetParts() noexcept { return parts_ ? &*parts_ : nullptr; }

  /// Publishes all blocks of the target that have records. Blocks of equal keys are replaced, other blocks stay.
  /// @param gone blocks that are published already and go, but those that the target has; others are passed over
  /// @return the number of blocks with records
  /// @throws FED_Failure when a user kind has had another name or the disk fails; what was published is then as it was
  std::size_t Publish(const std::vector<FED_DataDescriptor>& gone = {});

  /// Publishes blocks of a database, likewise.
  /// @param gone blocks that are published already and go, even when the database has them: their values have been
  ///             added to others, for instance
  std::size_t Publish(const FED_Database& database, const std::vector<FED_DataDescriptor>& gone = {});

  /// Publishes these blocks of a database, likewise. They are not copied in memory.
  /// @param readers of the database, share what is to be done for an ONF folder; what is written is the same for any
  std::size_t PublishBlocks(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                            const std::vector<FED_DataDescriptor>& gone = {}, const Readers& readers = {});

  /// Publishes these blocks of a database in an ONF folder, likewise, and nothing else: other blocks go, and names of
  /// user kinds that they had.
  std::size_t MirrorBlocks(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                           const Readers& readers = {});

private:
  void        CheckFolder(Form form) const;
  void        MarkUnpublished();
  void        CheckUserKindName(const FED_Database& database, FED_OnfId onf) const;
  std::size_t PublishOnf(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                         const std::vector<FED_DataDescriptor>& gone,
                         OnfTextExport::Others others = OnfTextExport::OthersStay, const Readers& readers = {});
  std::size_t CommitTarget(const std::vector<FED_DataDescriptor>& gone);

  std::filesystem::path                  folder_;
  bool                                   isOnf_;
  std::unique_ptr<FED_ResultDatabase>    names_;  // of user kinds, as they are published
  WatchedFiles                           files_;
  std::unique_ptr<OnfTextExport::Writer> onf_;       // of an ONF folder
  std::unique_ptr<FED_ResultDatabase>    database_;  // the target, or what it is a view of
  std::unique_ptr<FreshDatabase>         fresh_;     // of a working database on disk
  std::optional<DatabaseParts>           parts_;     // of one
  bool                                   isMarked_ = false;
};

}  // namespace quilon
