#pragma once

/// @file
/// The bundled result database.

#include "quilon_language.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bundled/FED_DatabasePart.h"
#include "bundled/FED_IdOrder.h"
#include "bundled/FED_ResultIdMapsPool.h"
#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_Database.h"

class FED_FileLayer;
class FED_RecordFormat;
class ResultDataBlock;

/// How a database on disk is kept.
struct FED_ResultDatabaseOptions
{
  /// Stands for 64 MiB where the database may be written and for 16 MiB where it is only read. Where rows are come back
  /// to out of order the limit grows, up to 1 GiB.
  static constexpr std::size_t kUsualLimit = static_cast<std::size_t>(-1);

  /// Bytes of rows that stay in memory; beyond it rows go to disk and come back when they are asked for. A few chunks
  /// (of at most 4 MiB each, and 16 MiB in databases of older versions) stay whatever the limit is. Keys that
  /// come from disk stay up to the same limit beside it, those of a few blocks whatever it is; those that were written
  /// and id maps are not counted.
  std::size_t memoryLimit = kUsualLimit;

  /// Databases that work side by side and share what kUsualLimit stands for: this one gets its part, and at least 8
  /// MiB. At least 1; other limits are each database's own.
  std::size_t shares = 1;

  /// What reaches the disk passes through it; null: the operating system's files. Borrowed.
  FED_FileLayer* files = nullptr;
};

/// What became of the files of blocks that were linked.
struct FED_LinkReport
{
  std::size_t   segments    = 0;  ///< files
  std::size_t   copies      = 0;  ///< of them that were copied: the file system gave them no second name
  std::uint64_t linkedBytes = 0;  ///< of files that both databases have now
  std::uint64_t copiedBytes = 0;
};

/// What one piece of a compaction did, and what is left that cannot be done.
struct FED_CompactionPiece
{
  std::size_t   segments     = 0;  ///< neighbours that were written anew as one; 0: there is nothing left to do
  std::uint64_t bytesBefore  = 0;  ///< of their files
  std::uint64_t bytesAfter   = 0;
  std::size_t   keptSegments = 0;  ///< that have bytes to give back and stay, since they are linked or need more room
  std::uint64_t keptBytes    = 0;  ///< to be given back in those
  std::uint64_t roomForAll   = 0;  ///< that those which are not linked need, one at a time; 0: all of them are
};

/// Orders by id that lie beside a database on disk.
struct FED_IdOrders
{
  std::vector<FED_IdOrder> orders;
  std::vector<std::string> failures;  ///< what is wrong with those that cannot be read
};

/// An order by id that was written.
struct FED_IdOrderReport
{
  std::string   file;                ///< its name, in the database's folder
  std::uint64_t rows           = 0;  ///< record indices
  std::uint64_t fileBytes      = 0;
  std::uint64_t temporaryBytes = 0;  ///< that were on the disk beside it, at most
};

/// A database in memory or on disk. Blocks are columns (see FED_ColumnDataBlock); a block object stays where it is
/// until the block is deleted.
///
/// On disk: a folder of immutable segments and a manifest, see docs/database-format.md. Opening costs the segments'
///          indices. Rows are read, and checked, when they are first asked for, and leave the memory beyond a limit;
///          changed ones then go to the disk without being part of the database before Commit().
///
/// Indices: 0 to 2147483647; any other is a FED_Failure before anything is allocated. They need not be dense: a lone
///          record at a great index costs no more than one at 1.
/// Hints:   expected records reserve memory, at most 256 MiB a block.
/// Errors:  FED_Failure that names the block's descriptor. A failed write, one that runs out of memory too, leaves the
///          block as it was.
/// Threads: one at a time.
class QUILON_DB_CONNECTOR_API FED_ResultDatabase : public FED_Database
{
public:
  enum Access : int
  {
    ReadOnly,   ///< the last commit, as it stands now, whatever is written later; every change is a FED_Failure
    ReadWrite,  ///< the last commit, to be changed; one writer at a time
    Create      ///< a new, empty database: the folder is not there yet or empty
  };

  /// In memory.
  FED_ResultDatabase();

  /// On disk: a folder `NAME.fed`. What is written since the last Commit() is lost with the object.
  /// @throws FED_Failure that names the folder or the file in it: not a database, damaged, of a newer format version,
  ///         in use by another writer, not writable
  FED_ResultDatabase(const std::filesystem::path& folder, Access access, const FED_ResultDatabaseOptions& options = {});

  /// A part of a database on disk that another object has open to write: as empty as one of Create, with the ids and
  /// names of the base. It is FinishPart() that keeps what is written.
  /// @param folder of the database
  /// @param part   of ReserveParts(), used once
  /// @throws FED_Failure that names the file
  FED_ResultDatabase(const std::filesystem::path& folder, const FED_DatabasePart& part, const FED_PartBase& base,
                     const FED_ResultDatabaseOptions& options = {});
  FED_ResultDatabase(const FED_ResultDatabase&)            = delete;
  FED_ResultDatabase& operator=(const FED_ResultDatabase&) = delete;
  ~FED_ResultDatabase() override;

  bool IsInitialized() const override;

  /// Makes all changes since the last commit durable, in one step: after a crash at any instant the database is as
  /// before or as after. A database in memory has nothing to do.
  /// @throws FED_Failure when the disk fails; what is stored is then as before, unless the message says that the commit
  ///         may be in force, and so are the changes in memory
  void Commit();

  /// Commits, and rewrites what is alive into one segment: bytes of deleted and replaced rows are given back. Readers
  /// keep what they have opened.
  void Compact();

  /// Commits, and then gives back some of the bytes of deleted and replaced rows, with little room: neighbouring files
  /// that hold such bytes become one, which is a commit by itself. Calls until nothing is left give back all that can
  /// be; whoever stops in between has lost nothing, and any later call goes on. Linked files, whose bytes may be
  /// another database's as well, stay. Readers keep what they have opened, and with it the room of files that went.
  /// @param room most bytes that the new file may have, next to which the old ones stay until it counts
  /// @return what was done; without effect for a database in memory
  FED_CompactionPiece CompactPiece(std::uint64_t room);

  /// @return what of the last commit such pieces of a room cannot give back, before any of them
  FED_CompactionPiece GetCompactionRest(std::uint64_t room) const;

  /// Takes blocks of another database on disk in without reading a value: the segments that hold them get a second name
  /// in this database's folder, or are copied where the file system gives none, and an index beside each tells which of
  /// its rows are here and by which record indices. Ids of the other database are added; records stay with their ids.
  /// Names of user kinds are not taken. All of it becomes part of the database with Commit().
  /// @param source      folder of a database of its own, as its last commit left it
  /// @param descriptors that it has and this one has not
  /// @throws FED_Failure that names the folder, a file or a block: for a descriptor that is missing there or present
  ///         here, and for a record at an index that no id has where the other's indices are not those here. When a
  ///         file fails, what was not committed is lost and this object writes no more.
  FED_LinkReport LinkBlocks(const std::filesystem::path& source, const std::vector<FED_DataDescriptor>& descriptors);

  /// Sets numbers aside for parts of this database, which other objects write meanwhile, in this process or in others
  /// that see the folder. This object writes nothing until it has taken all of them: what it writes ends the taking.
  /// @return numbers, to be taken in this order
  /// @throws FED_Failure for a database in memory
  std::vector<FED_DatabasePart> ReserveParts(std::size_t count);

  /// @return what parts that are reserved now go by
  FED_PartBase GetPartBase() const;

  /// Of a part: writes what is left, as one segment, and closes it for writing.
  /// @return the segment's number; 0 for a part without blocks
  /// @throws FED_Failure that names the file, and where the part has an id or a name that its base has not
  std::uint64_t FinishPart();

  /// Takes a part in that is finished; a block that is here under the key of one of its blocks goes. All of it becomes
  /// part of the database with Commit(). Parts that are not taken leave nothing behind: their files go with this
  /// object.
  /// @param segment of FinishPart()
  /// @return the part's blocks, ascending
  /// @throws FED_Failure that names the file: where it is not that of the part, and behind a part of greater numbers
  std::vector<FED_DataDescriptor> TakePart(const FED_DatabasePart& part, std::uint64_t segment);

  /// Tells blocks of databases on disk that have the same values, in the same order, under the same ids, from others,
  /// by checksums of what was committed. It costs a look at the indices. Blocks whose values lie apart in another way,
  /// or whose id maps differ elsewhere, have other prints though their records may be equal.
  /// @throws FED_Failure where there is no such block on disk
  std::uint64_t GetBlockPrint(const FED_DataDescriptor& descriptor) const;

  /// As GetBlockPrint(), of values and record indices alone, whatever ids these have.
  std::uint64_t GetRowPrint(const FED_DataDescriptor& descriptor) const;

  /// Opens the orders by id that lie beside the database now, be their blocks as they were or not.
  /// @throws FED_Failure when the folder cannot be listed; none in memory
  FED_IdOrders OpenIdOrders() const;

  /// @return whether the block is there and has the records that an order by id has of it
  bool IsAsItWas(const FED_OrderedBlock& block) const;

  /// Writes an order by id of blocks as they were committed last.
  /// @param descriptors blocks of one record format with a single field of one, three or six doubles, with records
  /// @param memory      bytes for rows; what does not fit goes through a temporary file beside
  /// @throws FED_Failure for other blocks, when a reader asks, and when a file fails; what was there is as it was
  FED_IdOrderReport WriteIdOrder(const std::vector<FED_DataDescriptor>& descriptors, std::size_t memory);

  /// Removes orders by id less than half of whose blocks are as they were, and those whose head is damaged.
  /// @return their names
  /// @throws FED_Failure when a reader asks, and when a file cannot be read or removed
  std::vector<std::string> RemoveStaleIdOrders();
  /// Likewise all of them.
  std::vector<std::string> RemoveIdOrders();

  /// @return how many commits the database on disk had had when it was opened or last committed: two objects that tell
  ///         the same are in one state. 0 for one in memory
  std::uint64_t GetGeneration() const noexcept;

  /// @param firstSize    expected records
  /// @param secondSize   without effect
  /// @param recordFormat empty: the block has no format until its first record, or keeps the one it has. A block that
  ///                     has none takes this one.
  FED_DataBlock* CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize, std::size_t secondSize,
                                 const std::string& recordFormat) override;
  FED_DataBlock& GetOrCreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t expectedRecords) override;
  bool           HasDataBlock(const FED_DataDescriptor& descriptor) const override;
  const FED_DataBlock& GetConstDataBlock(const FED_DataDescriptor& descriptor) const override;
  FED_DataBlock&       GetDataBlock(const FED_DataDescriptor& descriptor) override;
  /// In ascending order of the descriptors.
  std::vector<FED_DataBlock*> GetDataBlocks(const FED_DataDescriptorPattern& pattern) override;
  void                        DeleteDataBlock(const FED_DataDescriptor& descriptor) override;
  /// In ascending order.
  std::vector<FED_DataDescriptor> GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const override;

  FED_ResultIdMapsPool&       GetIdMapsPool() override;
  const FED_ResultIdMapsPool& GetIdMapsPool() const override;

  std::string GetUserKindName(FED_OnfId onf) const override;
  /// An empty name removes the kind's name.
  /// @throws FED_Failure unless 1000 <= onf <= 1999
  void SetUserKindName(FED_OnfId onf, const std::string& name) override;

private:
  struct Disk;

  struct Entry
  {
    std::uint64_t                            uid = 0;  // on disk
    mutable std::unique_ptr<ResultDataBlock> block;    // null while the block is on disk and was not asked for
  };

  void             RequireWriter() const;
  ResultDataBlock* FindBlock(const FED_DataDescriptor& descriptor) const;
  ResultDataBlock& Open(const Entry& entry) const;
  ResultDataBlock& RequireBlock(const FED_DataDescriptor& descriptor) const;
  ResultDataBlock& MakeBlock(const FED_DataDescriptor& descriptor, const FED_RecordFormat& format,
                             std::size_t expectedRecords);

  std::vector<std::string> RemoveIdOrders(const std::function<bool(const std::filesystem::path&)>& isUnwanted);

  void WriteRows();
  void WriteChanges(bool isCommit);
  void Publish(bool compacts);

  std::unique_ptr<Disk>               disk_;  // null in memory; outlives the blocks
  std::map<FED_DataDescriptor, Entry> blocks_;
  FED_ResultIdMapsPool                idMaps_;
  std::map<int, std::string>          userKindNames_;
};
