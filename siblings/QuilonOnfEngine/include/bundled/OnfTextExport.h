#pragma once

/// @file
/// ONF text straight from other databases.

#include "quilon_language.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;
class FED_FileLayer;

/// Publishes blocks of databases in an ONF folder without the copy of them in memory that a QuilonOnfTxtDatabase makes:
/// a database on disk may be larger than the memory.
namespace OnfTextExport {

/// Takes the next bytes of a text.
using TextSink = std::function<void(std::string_view)>;

/// A block of a database with blocks of columns (FED_ColumnDataBlock).
struct Block
{
  const FED_Database* database;  ///< borrowed; null: the folder's block of this key goes, if it has one
  FED_DataDescriptor  descriptor;
};

/// The texts of blocks in pieces. Whoever makes several pieces at once has an object for each thread, of databases of
/// their own that are in one state.
///
/// Threads: one at a time.
class QUILON_ONF_ENGINE_API BlockTexts
{
public:
  /// @param database borrowed; not written meanwhile
  explicit BlockTexts(const FED_Database& database);
  BlockTexts(const BlockTexts&)            = delete;
  BlockTexts& operator=(const BlockTexts&) = delete;
  ~BlockTexts();

  /// Makes the lines of `count` records from `first` on, which counts by ascending id; before record 0 stands the
  /// header. All of them one behind the other are the text. What is known of a block is kept until another one is asked
  /// for.
  /// @param first, count within the block's records
  /// @throws FED_Failure for two records of one id and for an index that no id has
  void Write(const FED_DataDescriptor& descriptor, std::size_t first, std::size_t count, const TextSink& append);

private:
  struct State;
  std::unique_ptr<State> state_;
};

/// What becomes of blocks of the folder that a publication does not bring.
enum Others : int
{
  OthersStay,
  OthersGo  ///< and names of user kinds, and files that look like blocks but belong to none
};

/// The one writer of an ONF folder, as long as it lives.
class QUILON_ONF_ENGINE_API Writer
{
public:
  /// Makes the folder if need be; it goes again when nothing is published.
  /// @param files what reaches the disk passes through it; null: the layer in force (OnfFileLayer). Borrowed.
  /// @throws FED_Failure that names the folder: another program writes to it, or it is no ONF folder
  explicit Writer(const std::filesystem::path& folder, FED_FileLayer* files = nullptr);
  Writer(const Writer&)            = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer();

  /// Publishes the blocks in one step, with the names of the user kinds that they refer to. Blocks of equal keys are
  /// replaced. The folder may be the one that a block is read from.
  /// @param blocks  no key twice; a block without records empties the one of its key
  /// @param onBlock called before each block is written, with its position; what it throws passes through, and nothing
  ///                is published then
  /// @throws FED_Failure that names the folder, the file or the block; what is published is then as it was, or the
  ///         message says that only tidying up was left
  void Publish(const std::vector<Block>& blocks, const std::function<void(std::size_t)>& onBlock = {},
               Others others = OthersStay);

  /// The same with texts that BlockTexts have made.
  /// @param text hands out the text of the block of a position; called for each that has a database, in their order
  void PublishTexts(const std::vector<Block>&                                                blocks,
                    const std::function<void(std::size_t position, const TextSink& append)>& text,
                    const std::function<void(std::size_t)>& onBlock = {}, Others others = OthersStay);

private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

/// Publishes blocks by a writer of its own.
QUILON_ONF_ENGINE_API void Publish(const std::filesystem::path& folder, const std::vector<Block>& blocks,
                                   const std::function<void(std::size_t)>& onBlock = {});

}  // namespace OnfTextExport
