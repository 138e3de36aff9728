#pragma once

/// @file
/// The disk side of a database: a folder of segments.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "bundled/FED_DatabasePart.h"
#include "ChunkStore.h"
#include "Manifest.h"
#include "Segment.h"
#include "SegmentLink.h"
#include "SegmentMerge.h"
#include "SegmentWriter.h"
#include "StoredState.h"

/// @return the text of a database's manifest
/// @throws FED_Failure that names the folder or the file when it cannot be read
std::string ReadManifestText(FED_FileLayer& files, const std::filesystem::path& folder);

/// @return the path of a database's manifest
std::filesystem::path GetManifestPath(const std::filesystem::path& folder);

/// Adds the commits that the manifest does not tell of to those that it does: their segments say so themselves, and are
/// whole.
/// @param text of the manifest
/// @throws FED_Failure that names the file when the manifest is damaged, or a file cannot be read
ManifestState FindState(FED_FileLayer& files, const std::filesystem::path& folder, const std::string& text);

/// @param next the manifest's number of the block to come
/// @throws FED_Failure that names the segment's file where it declares or deletes a block of this number or above: the
///         block to come would be taken for that one
void RequireBlocksBelow(const Segment& segment, BlockUid next);

/// The folder of a database, opened by a reader or by its one writer.
///
/// What is written lies in new segments, readable at once but only in this process; Publish() makes all of it the
/// database's, in one step: the manifest that names the segments is replaced, or a small segment, which says itself
/// that it is the next commit, is found in the folder. Every segment is on the disk before it counts as written, so
/// whatever fails leaves the last published state. Segments that were not published go with the store, or with the next
/// writer.
class SegmentStore final : public ChunkStore
{
public:
  enum Access : int
  {
    ReadOnly,
    ReadWrite,
    Create
  };

  /// @param files borrowed
  /// @throws FED_Failure that names the folder or the file in it
  SegmentStore(const std::filesystem::path& folder, Access access, FED_FileLayer& files);
  /// Writes a part of a database that another store has open to write.
  /// @param part of ReservePart()
  SegmentStore(const std::filesystem::path& folder, const FED_DatabasePart& part, FED_FileLayer& files);
  SegmentStore(const SegmentStore&)            = delete;
  SegmentStore& operator=(const SegmentStore&) = delete;
  ~SegmentStore() override;

  bool                      IsWritable() const noexcept override { return isWriter_; }
  std::vector<StoredExtent> GetExtents(BlockUid block, std::uint32_t chunk) const override;
  std::uint64_t             GetBytes(const StoredExtent& extent, std::size_t column) const override;
  void                      Read(const StoredExtent& extent, std::size_t column, void* out) const override;
  void                      ReadKeys(const StoredExtent& extent, std::uint32_t* keys) const override;
  ColumnStatistics          GetStatistics(const StoredExtent& extent, std::size_t column) const override;
  /// Where the bytes of a column of an extent lie.
  struct Place
  {
    std::filesystem::path file;
    std::uint64_t         offset;
  };
  Place       GetPlace(const StoredExtent& extent, std::size_t column) const;
  std::size_t GetIdCount(int kind) const override;
  void        ReadIds(int kind, std::int32_t* ids) const override;

  /// @return all blocks, in no order; a pointer is valid until Write() that deletes the block
  std::vector<const StoredBlock*> GetBlocks() const;
  /// @return null when there is none
  const StoredBlock*                FindBlock(BlockUid uid) const noexcept;
  const std::map<int, std::string>& GetUserKindNames() const noexcept { return state_.GetNames(); }
  std::uint64_t                     GetGeneration() const noexcept { return published_.manifest.generation; }

  /// @throws FED_Failure that names the folder when a reader asks, or where memory ran out in a way that stops all
  /// writing
  void RequireWriter() const;

  /// @param kind of the ids of the block's records
  /// @return a checksum of all checksums of a block
  std::uint64_t GetPrint(BlockUid block, int kind) const;

  FED_FileLayer& GetFiles() const noexcept { return *files_; }

  const std::filesystem::path& GetFolder() const noexcept { return folder_; }

  /// @return a uid for a new block
  BlockUid TakeUid() noexcept { return nextBlock_++; }
  /// @return whether a block has to be among the contents' blocks: it is new, or has its format since
  bool IsUndeclared(const StoredBlock& block) const noexcept;

  /// Writes contents as a segment, to be published. When it throws, nothing of them counts as written.
  /// @param isLast Publish() follows at once
  /// @throws FED_Failure that names the file; without effect when a reader asks
  void Write(const SegmentContents& contents, bool isLast = false);

  /// Takes rows of blocks of another database as rows of blocks here, to be published. Values are not read. When it
  /// throws, all that was not published is lost, and nothing can be written any more.
  /// @param blocks new here; those without rows are not for this call
  /// @throws FED_Failure that names a file; without effect when a reader asks
  struct Linked
  {
    std::size_t   segments    = 0;
    std::size_t   copies      = 0;  ///< of files that got no second name
    std::uint64_t linkedBytes = 0;  ///< of files
    std::uint64_t copiedBytes = 0;
  };
  Linked Link(const SegmentStore& source, const std::vector<LinkedBlock>& blocks);

  /// @return numbers that this store takes no more
  FED_DatabasePart ReservePart();

  /// Of a part: makes one segment of all that was written. Nothing can be written any more.
  /// @return its number; 0 where there was nothing
  /// @throws FED_Failure that names the file, and for a part that takes more numbers than it has
  std::uint64_t HandOver();

  /// Opens the segment of a part.
  /// @throws FED_Failure that names the file where it says more than a part may, or is another one's
  std::unique_ptr<Segment> OpenPart(const FED_DatabasePart& part, std::uint64_t number) const;

  /// Takes a segment of OpenPart(), to be published.
  /// @throws FED_Failure that names the file where something behind it was taken or written before
  void TakePart(std::unique_ptr<Segment> segment);

  /// Makes everything that was written durable, and merges segments where they pile up.
  /// @param compacts merge all segments into one
  /// @throws FED_Failure that names the file; what is published is then as before, unless the message says that the
  ///         commit may be in force, and a later call may succeed
  void Publish(bool compacts);

  /// Writes neighbouring segments anew as one, of which some hold bytes that no row needs, and publishes that. Linked
  /// ones stay as they are. Whatever fails leaves what was published before. To be called when all is published.
  /// @param room bytes of what is written, until what it replaces is given back
  /// @throws FED_Failure as Publish()
  struct Piece
  {
    std::size_t   segments     = 0;  ///< that became one; 0: nothing is left to be done in the room
    std::uint64_t bytesBefore  = 0;
    std::uint64_t bytesAfter   = 0;
    std::size_t   keptSegments = 0;  ///< with such bytes that stay: linked, or larger than the room
    std::uint64_t keptBytes    = 0;  ///< that no row needs in those
    std::uint64_t roomForAll   = 0;  ///< that the largest of them needs which is not linked
  };
  Piece CompactPiece(std::uint64_t room);
  /// @return what CompactPiece() of that room will keep to the end
  Piece GetCompactionRest(std::uint64_t room) const;

private:
  struct OpenSegment
  {
    std::unique_ptr<Segment> segment;
    bool                     isPublished = false;
  };

  struct Merged;
  using Parts = std::vector<FED_DatabasePart>;

  std::uint64_t      TakeSegmentNumber();
  void               OpenForReading();
  bool               IsState(const std::string& manifest) const;
  void               OpenForWriting();
  void               CreateEmpty();
  std::string        ReadManifest() const { return ReadManifestText(*files_, folder_); }
  void               LockFolder();
  void               RemoveLeftovers();
  void               TakeState(ManifestState state);
  void               OpenSegments();
  void               LinkRows(const Segment& from, const std::vector<LinkedRows>& rows, const SegmentStore& source,
                              std::set<BlockUid>& declared, Linked& linked);
  bool               IsCompact() const;
  Segment&           FindSegment(const StoredExtent& extent) const;
  const IndexExtent& FindExtent(const StoredExtent& extent) const;
  std::vector<SegmentSize>   GetSizes(std::size_t first) const;
  std::size_t                CountPublished() const noexcept;
  void                       MergeUnpublished();
  void                       Merge(const MergeWindow& window);
  std::optional<CommitMark>  ChooseCommitMark(std::uint64_t number, std::uint64_t fileBytes) const;
  void                       PublishMarked();
  bool                       AppendLine(std::uint64_t offset, const std::string& line) noexcept;
  Merged                     PrepareMergeAtPublication(bool compacts);
  void                       PublishMerge(Merged& merged);
  std::vector<std::uint64_t> CountWaste() const;
  std::vector<Segment*>      GetSegments(const MergeWindow& window) const;
  std::optional<MergeWindow> FindPiece(std::uint64_t room, Piece& piece) const;
  MergeWindow   GrowPiece(std::size_t first, const std::vector<std::uint64_t>& waste, std::uint64_t room) const;
  std::uint64_t CountMerged(const MergeWindow& window) const;
  Manifest      MakeManifest(const Merged& merged) const;
  void          ReplaceManifest(const Manifest& manifest);
  void          PutManifestInForce();
  void          Undo(Merged& merged) noexcept;
  void          RemoveGarbage() noexcept;
  void          RemoveLostParts() noexcept;
  void          Abandon() noexcept;

  Merged PrepareMerge(const MergeWindow& window);
  void   ApplyMerge(Merged& merged) noexcept;

  std::filesystem::path     folder_;
  FED_FileLayer*            files_;
  bool                      isWriter_     = false;
  bool                      isPart_       = false;  // of a database that another store has open to write
  bool                      isInManifest_ = false;  // a manifest is there
  bool                      isFolderOurs_ = false;  // made, and no manifest yet
  bool                      isOutOfStep_  = false;  // memory ran out while the state grew
  bool                      isHalfLinked_ = false;  // of another database's rows some were taken
  bool                      isUncertain_  = false;  // a publication failed when it may have been in force already
  bool                      isLogBroken_  = false;  // a commit in force has no line in the manifest
  ManifestState             published_;
  std::uint64_t             nextSegment_ = 1;
  BlockUid                  nextBlock_   = 1;
  StoreFile                 lock_;
  Parts                     reserved_;
  std::vector<OpenSegment>  segments_;          // in their order, published ones first
  std::optional<CommitMark> mark_;              // of the last segment, while it is not published
  std::vector<std::filesystem::path> garbage_;  // files that nothing needs after the next publication
  StoredState                        state_;
};
