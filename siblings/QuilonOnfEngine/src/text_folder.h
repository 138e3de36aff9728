#pragma once

/// @file
/// The folder of a text database: its index, and how a new state takes the place of the old one.

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "disk.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class TextOutput;

/// The names that a database keeps for user kinds, by ONF id.
using UserKindNames = std::map<int, std::string>;

/// A block as a folder has it.
struct FolderBlock
{
  std::string fileName;  ///< as the index spells it
  FileStamp   stamp;     ///< of the state that the folder was read in
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
  std::function<void(TextOutput&)> write;
};

/// Reads the index and the header of every block. A folder that another program publishes to meanwhile is read again
/// until it stands still.
/// @throws FED_Failure that names the folder, or file and line
FolderState ReadFolder(const std::filesystem::path& folder);

/// Where the file of a block is, in the order of looking: one whose new state is not renamed yet stands under another
/// name than the finished one, and may move there at any time.
std::vector<std::filesystem::path> GetBlockPaths(const std::filesystem::path& folder, const std::string& fileName);

/// What a writer finds at the path: a text database, or nothing yet where one can be made.
/// @throws FED_Failure when something else is there
FolderState ReadFolderToWrite(const std::filesystem::path& folder);

/// Publishes blocks in one step: until the new index is in place the folder has its old state, from then on the new
/// one. Blocks of equal keys are replaced, all others stay; so do names, and an empty name removes one.
///
/// Publications of one folder wait for each other (where the system locks folders), and each keeps what the one before
/// published. Readers may be at work meanwhile.
/// @throws FED_Failure when the disk fails; the state is then the old one, or the new one if only tidying up was left
void PublishBlocks(const std::filesystem::path& folder, const std::vector<NewBlock>& blocks,
                   const UserKindNames& userKindNames, Disk& disk);
