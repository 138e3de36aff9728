#pragma once

/// @file
/// The folder of a text database: its index, and how a new state takes the place of the old one.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "bundled/FED_FileLayer.h"
#include "bundled/StoreFile.h"
#include "file_text.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "text_output.h"

struct FolderIndex;

/// The names that a database keeps for user kinds, by ONF id.
using UserKindNames = std::map<int, std::string>;

/// A block as a folder has it.
struct FolderBlock
{
  std::string    fileName;  ///< as the index spells it
  FED_FileStatus status;    ///< of the state that the folder was read in
};

/// What a folder holds, without the records.
struct FolderState
{
  UserKindNames                             userKindNames;
  std::map<FED_DataDescriptor, FolderBlock> blocks;
};

/// A block to publish.
struct NewBlock
{
  FED_DataDescriptor               descriptor;
  std::function<void(TextOutput&)> write;  ///< empty: the block of this key goes
};

/// Reads the index and the header of every block. A folder that another program publishes to meanwhile is read again
/// until it stands still.
/// @throws FED_Failure that names the folder, or file and line
FolderState ReadFolder(FED_FileLayer& files, const std::filesystem::path& folder);

/// Where the file of a block is, in the order of looking: one whose new state is not renamed yet stands under another
/// name than the finished one, and may move there at any time.
std::vector<std::filesystem::path> GetBlockPaths(const std::filesystem::path& folder, const std::string& fileName);

/// What a writer finds at the path: a text database, or nothing yet where one can be made.
/// @throws FED_Failure when something else is there
FolderState ReadFolderToWrite(FED_FileLayer& files, const std::filesystem::path& folder);

/// What becomes of blocks that a publication does not bring.
enum class OtherBlocks
{
  Stay,
  Go  ///< their names and stray block files too
};

/// The one writer of a folder: keeps others off from its making to its end.
///
/// The index names the file of each block; a block's new text is written beside its old one, as NAME.onf.new, and the
/// index that names it there is the moment of publication. What follows only tidies up: the files move to their
/// finished names and the index says so. A reader that finds no NAME.onf.new takes NAME.onf, so that it reads the new
/// state at any instant of the tidying.
class TextFolderWriter
{
public:
  /// Makes the folder, and those above it, if need be.
  /// @param files borrowed
  /// @throws FED_Failure when another writer is at work, saying who as far as the system tells, and when something else
  ///         than a text database is there
  TextFolderWriter(const std::filesystem::path& folder, FED_FileLayer& files);
  TextFolderWriter(const TextFolderWriter&)            = delete;
  TextFolderWriter& operator=(const TextFolderWriter&) = delete;
  /// What no index names goes away again, and so does a folder that was made in vain.
  ~TextFolderWriter();

  /// Publishes blocks in one step: until the new index is in place the folder has its old state, from then on the new
  /// one. Blocks of equal keys are replaced. Names of user kinds stay where nothing else is said, and an empty name
  /// removes one.
  /// @throws FED_Failure when the disk fails; the state is then the old one, or the new one if only tidying up was
  /// left,
  ///         and the message says so
  void Publish(const std::vector<NewBlock>& blocks, const UserKindNames& userKindNames,
               OtherBlocks others = OtherBlocks::Stay);

private:
  void LockFolder();
  void MakeFolders();
  void Abandon() noexcept;
  /// Finishes what a publication that died after its index was in place left to do.
  void Settle();
  void WriteFile(const std::string& name, const FED_FileStatus& replaced,
                 const std::function<void(TextOutput&)>& write);
  void FlushFiles();
  void ReplaceIndex(const FolderIndex& index);
  void MoveToPlace(FolderIndex& index);
  void RemoveLeftovers(const std::vector<std::string>& named, OtherBlocks others);

  std::filesystem::path              folder_;
  FED_FileLayer&                     files_;
  StoreFile                          lock_;            ///< goes last, behind the tidying up
  StoreFile                          file_;            ///< being written
  std::uint64_t                      written_ = 0;     ///< bytes of it
  TextOutput                         out_;             ///< in front of it; one for all files, for its size
  bool                               isBusy_ = false;  ///< another writer is at work
  std::vector<std::filesystem::path> madeFolders_;     ///< the topmost first, and no index stands in them yet
  std::vector<std::filesystem::path> unnamed_;         ///< files written that no index names yet
  std::vector<std::filesystem::path> unflushed_;       ///< of these
};
