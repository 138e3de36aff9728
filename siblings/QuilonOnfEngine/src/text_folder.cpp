#include "text_folder.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "block_file.h"
#include "QuilonUtilities/FED_Failure.h"
#include "text_cursor.h"
#include "text_output.h"
#include "text_syntax.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kTag            = "|%P|QuilonOnfEngine|text_folder";
constexpr int         kVersion        = 1;
constexpr int         kFirstUserKind  = 1000;
constexpr int         kLastUserKind   = 1999;
constexpr const char* kVersionKey     = "onf-text-index";
constexpr const char* kIndexName      = "index";
constexpr const char* kNewIndexName   = "index.new";
constexpr const char* kBlockExtension = ".onf";
constexpr const char* kNewExtension   = ".new";
constexpr const char* kNewBlockEnding = ".onf.new";

/// What the file `index` says.
struct FolderIndex
{
  UserKindNames            userKindNames;
  std::vector<std::string> files;
};

bool EndsWith(std::string_view text, std::string_view ending)
{
  return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

/// Only names that this format makes are opened: an index cannot lead out of its folder.
bool IsBlockFileName(std::string_view name)
{
  const auto isAllowed = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
  };
  return !name.empty() && name[0] != '.' && std::all_of(name.begin(), name.end(), isAllowed) &&
         (EndsWith(name, kBlockExtension) || EndsWith(name, kNewBlockEnding));
}

/// The name of a block's file once it is in its place.
std::string FinishedName(const std::string& fileName)
{
  return EndsWith(fileName, kNewBlockEnding)
             ? fileName.substr(0, fileName.size() - std::string_view(kNewExtension).size())
             : fileName;
}

UserKindNames ReadUserKindNames(TextCursor& in)
{
  UserKindNames names;
  ReadRequiredKey(in, "names");
  const std::size_t count = in.ReadCount("the number of names");
  in.ReadLineEnd();
  for (std::size_t i = 0; i < count; ++i) {
    ReadRequiredKey(in, "name");
    const int onf = in.ReadInteger();
    if (!names.empty() && onf <= names.rbegin()->first)
      in.Fail("the name of " + std::to_string(onf) + " follows that of " + std::to_string(names.rbegin()->first) +
              ", expected ascending ids");
    if (onf < kFirstUserKind || onf > kLastUserKind)
      in.Fail("ONF id " + std::to_string(onf) + " takes no name, expected a user kind, 1000 to 1999");
    names[onf] = in.ReadString();
    if (names[onf].empty()) in.Fail("the name of " + std::to_string(onf) + " is empty");
    in.ReadLineEnd();
  }
  return names;
}

std::vector<std::string> ReadFileNames(TextCursor& in)
{
  std::vector<std::string> files;
  ReadRequiredKey(in, "blocks");
  const std::size_t count = in.ReadCount("the number of blocks");
  in.ReadLineEnd();
  for (std::size_t i = 0; i < count; ++i) {
    ReadRequiredKey(in, "block");
    std::string name(in.ReadWord());
    if (!IsBlockFileName(name))
      in.Fail(QuoteForMessage(name) +
              " is no name of a block file, expected letters a to z, digits, '-', '_' and '.', ending in .onf");
    if (!files.empty() && FinishedName(name) <= FinishedName(files.back()))
      in.Fail(QuoteForMessage(name) + " follows " + QuoteForMessage(files.back()) + ", expected ascending names");
    files.push_back(std::move(name));
    in.ReadLineEnd();
  }
  return files;
}

FolderIndex ReadIndex(const fs::path& folder)
{
  const fs::path path = folder / kIndexName;
  const FileText text = ReadFileText(path);
  TextCursor     in(DisplayPath(path), {text.bytes.get(), text.size});
  FolderIndex    index;
  ReadVersion(in, kVersionKey, kVersion);
  index.userKindNames = ReadUserKindNames(in);
  index.files         = ReadFileNames(in);
  if (!in.AtEnd()) in.FailExpected("the end of the file behind " + std::to_string(index.files.size()) + " blocks");
  return index;
}

std::string FormatIndex(const FolderIndex& index)
{
  std::string text = std::string(kVersionKey) + ": " + std::to_string(kVersion) + "\n";
  text += "names: " + std::to_string(index.userKindNames.size()) + "\n";
  for (const auto& [onf, name] : index.userKindNames)
    text += "name: " + std::to_string(onf) + " " + QuoteString(name) + "\n";
  text += "blocks: " + std::to_string(index.files.size()) + "\n";
  for (const std::string& file : index.files) text += "block: " + file + "\n";
  return text;
}

/// The first lines of a file, to the last one of a block's header; nothing when the file is not there.
std::optional<std::string> FindHeaderText(const fs::path& path)
{
  // Beyond this no header is whole: it has a line for each index and four more.
  constexpr int kMaxLines = 32;
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string text;
  std::string line;
  for (int i = 0; i < kMaxLines && std::getline(in, line); ++i) {
    text += line;
    if (!in.eof()) text += '\n';
    if (line.rfind("records:", 0) == 0) break;
  }
  return text;
}

/// A block's file as the folder has it now, and its header.
struct FoundBlock
{
  fs::path    path;
  FileStamp   stamp;
  std::string headerText;
};

FoundBlock FindBlock(const fs::path& folder, const std::string& fileName)
{
  const std::vector<fs::path> paths = GetBlockPaths(folder, fileName);
  for (const fs::path& path : paths) {
    const std::optional<FileStamp> stamp = FindFileStamp(path);
    if (!stamp) continue;
    std::optional<std::string> text = FindHeaderText(path);
    if (text) return {path, *stamp, std::move(*text)};
  }
  throw FED_Failure(DisplayPath(paths.back()) + ": no such file, but the index names it", kTag);
}

FolderState ReadFolderOnce(const fs::path& folder)
{
  FolderIndex index = ReadIndex(folder);
  FolderState state;
  state.userKindNames = std::move(index.userKindNames);
  for (std::string& file : index.files) {
    const FoundBlock  found = FindBlock(folder, file);
    TextCursor        in(DisplayPath(found.path), found.headerText);
    const BlockHeader header     = ReadBlockHeader(in);
    const auto [position, isNew] = state.blocks.emplace(header.descriptor, FolderBlock{std::move(file), found.stamp});
    if (!isNew) throw FED_Failure(DisplayPath(found.path) + ": has the same key as " + position->second.fileName, kTag);
  }
  return state;
}

void RequireFolderOrNothing(const fs::path& path)
{
  std::error_code error;
  if (fs::exists(path, error) && !fs::is_directory(path, error))
    throw FED_Failure(DisplayPath(path) + ": not an ONF text database, which is a folder", kTag);
}

bool IsLeftover(const std::string& name) { return name == kNewIndexName || EndsWith(name, kNewBlockEnding); }

/// The steps from one state of a folder to the next. The index names the file of each block; a block's new text is
/// written beside its old one, as NAME.onf.new, and the index that names it there is the moment of publication. What
/// follows only tidies up: the files move to their finished names and the index says so. A reader that finds no
/// NAME.onf.new takes NAME.onf, so that it reads the new state at any instant of the tidying.
class Publication
{
public:
  Publication(const fs::path& folder, Disk& disk) : folder_(folder), disk_(disk) {}
  Publication(const Publication&)            = delete;
  Publication& operator=(const Publication&) = delete;

  /// What no index names goes away again.
  ~Publication()
  {
    for (const fs::path& path : unnamed_) disk_.Remove(path);
    if (madeFolder_) disk_.Remove(folder_);
  }

  void Run(const std::vector<NewBlock>& blocks, const UserKindNames& userKindNames);

private:
  /// Finishes what a publication that died after its index was in place left to do.
  void Settle(const FolderIndex& index);
  void WriteFile(const std::string& name, const std::function<void(TextOutput&)>& write);
  void ReplaceIndex(const FolderIndex& index);
  void MoveToPlace(FolderIndex& index);
  void RemoveLeftovers(const std::set<std::string>& replaced);

  fs::path                  folder_;
  Disk&                     disk_;
  std::optional<FolderLock> lock_;                ///< goes last, behind the tidying up
  std::vector<fs::path>     unnamed_;             ///< files written that no index names yet
  bool                      madeFolder_ = false;  ///< and no index stands in it yet
};

void Publication::WriteFile(const std::string& name, const std::function<void(TextOutput&)>& write)
{
  const fs::path path = folder_ / name;
  unnamed_.push_back(path);
  const auto file = disk_.CreateFile(path);
  TextOutput out(*file);
  write(out);
  out.Flush();
  file->Close();
}

void Publication::ReplaceIndex(const FolderIndex& index)
{
  WriteFile(kNewIndexName, [&index](TextOutput& out) { out.Append(FormatIndex(index)); });
  // What the index names is on the disk before the index is.
  for (const fs::path& path : unnamed_) disk_.SyncFile(path);
  disk_.SyncFolder(folder_);
  // From here on the files may belong to the folder's state, even if the next step fails.
  unnamed_.clear();
  madeFolder_ = false;
  disk_.Rename(folder_ / kNewIndexName, folder_ / kIndexName);
  disk_.SyncFolder(folder_);
}

void Publication::MoveToPlace(FolderIndex& index)
{
  bool moved = false;
  for (std::string& file : index.files) {
    const std::string finished = FinishedName(file);
    if (finished == file) continue;
    moved = true;
    std::error_code error;
    // A name that is gone was moved before an earlier publication died.
    if (fs::exists(folder_ / file, error)) disk_.Rename(folder_ / file, folder_ / finished);
    file = finished;
  }
  if (moved) ReplaceIndex(index);
}

void Publication::Settle(const FolderIndex& index)
{
  FolderIndex settled = index;
  MoveToPlace(settled);
}

void Publication::RemoveLeftovers(const std::set<std::string>& replaced)
{
  std::vector<fs::path> leftovers;
  std::error_code       error;
  for (fs::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error))
    if (IsLeftover(DisplayPath(entry->path().filename()))) leftovers.push_back(entry->path());
  for (const std::string& name : replaced) leftovers.push_back(folder_ / name);
  for (const fs::path& path : leftovers) disk_.Remove(path);
}

void Publication::Run(const std::vector<NewBlock>& blocks, const UserKindNames& userKindNames)
{
  RequireFolderOrNothing(folder_);
  madeFolder_ = disk_.CreateFolder(folder_);
  lock_.emplace(folder_);
  // Read behind the lock: what another program has just published stays.
  FolderState     state = ReadFolderToWrite(folder_);
  std::error_code error;
  if (fs::exists(folder_ / kIndexName, error)) Settle(ReadIndex(folder_));

  std::set<std::string> replaced;
  for (const NewBlock& block : blocks) {
    const auto old = state.blocks.find(block.descriptor);
    if (old == state.blocks.end()) continue;
    replaced.insert(FinishedName(old->second.fileName));
    state.blocks.erase(old);
  }
  std::set<std::string> staying;
  for (const auto& [descriptor, block] : state.blocks) staying.insert(FinishedName(block.fileName));

  FolderIndex next;
  next.files.assign(staying.begin(), staying.end());
  for (const NewBlock& block : blocks) {
    const std::string stem = GetBlockFileStem(block.descriptor);
    std::string       name = stem + kBlockExtension;
    // A file that somebody renamed by hand may stand in the way.
    for (int n = 2; !staying.insert(name).second; ++n) name = stem + "_" + std::to_string(n) + kBlockExtension;
    replaced.erase(name);
    WriteFile(name + kNewExtension, block.write);
    next.files.push_back(name + kNewExtension);
  }
  std::sort(next.files.begin(), next.files.end(),
            [](const std::string& a, const std::string& b) { return FinishedName(a) < FinishedName(b); });

  next.userKindNames = std::move(state.userKindNames);
  for (const auto& [onf, name] : userKindNames) {
    if (name.empty())
      next.userKindNames.erase(onf);
    else
      next.userKindNames[onf] = name;
  }

  ReplaceIndex(next);
  MoveToPlace(next);
  RemoveLeftovers(replaced);
}

}  // namespace

std::vector<fs::path> GetBlockPaths(const fs::path& folder, const std::string& fileName)
{
  std::vector<fs::path> paths = {folder / fileName};
  if (FinishedName(fileName) != fileName) paths.push_back(folder / FinishedName(fileName));
  return paths;
}

FolderState ReadFolder(const fs::path& folder)
{
  std::error_code error;
  if (!fs::exists(folder, error)) throw FED_Failure(DisplayPath(folder) + ": no such ONF text database", kTag);
  RequireFolderOrNothing(folder);
  const fs::path index = folder / kIndexName;
  if (!fs::exists(index, error))
    throw FED_Failure(DisplayPath(folder) + ": not an ONF text database, it has no file named index", kTag);

  constexpr int kMaxTries = 10;
  for (int i = 0; i < kMaxTries; ++i) {
    const std::optional<FileStamp> before = FindFileStamp(index);
    try {
      FolderState state = ReadFolderOnce(folder);
      if (FindFileStamp(index) == before) return state;
    } catch (const FED_Failure&) {
      // A file that goes away under a reader tells of a publication when the index has changed as well.
      if (FindFileStamp(index) == before) throw;
    }
  }
  throw FED_Failure(DisplayPath(folder) + ": changes all the time, another program writes to it", kTag);
}

FolderState ReadFolderToWrite(const fs::path& folder)
{
  std::error_code error;
  RequireFolderOrNothing(folder);
  if (!fs::exists(folder, error)) return {};
  if (fs::exists(folder / kIndexName, error)) return ReadFolder(folder);
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    // A first publication that died leaves such files and nothing else.
    const std::string name = DisplayPath(entry->path().filename());
    if (!IsLeftover(name))
      throw FED_Failure(DisplayPath(folder) + ": not an ONF text database, it holds " + QuoteForMessage(name) +
                            " but no file named index",
                        kTag);
  }
  if (error) throw FED_Failure(DisplayPath(folder) + ": cannot be listed: " + error.message(), kTag);
  return {};
}

void PublishBlocks(const fs::path& folder, const std::vector<NewBlock>& blocks, const UserKindNames& userKindNames,
                   Disk& disk)
{
  Publication(folder, disk).Run(blocks, userKindNames);
}
