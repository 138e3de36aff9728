#include "text_folder.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include <bundled/OnfKinds.h>

#include "block_file.h"
#include "bundled/FED_LockFileLayer.h"
#include "QuilonUtilities/FED_Failure.h"
#include "text_cursor.h"
#include "text_output.h"
#include "text_syntax.h"

namespace fs = std::filesystem;

/// What the file `index` says.
struct FolderIndex
{
  UserKindNames            userKindNames;
  std::vector<std::string> files;
};

namespace {

constexpr const char* kTag            = "|%P|QuilonOnfEngine|text_folder";
constexpr int         kVersion        = 1;
constexpr const char* kVersionKey     = "onf-text-index";
constexpr const char* kIndexName      = "index";
constexpr const char* kNewIndexName   = "index.new";
constexpr const char* kBlockExtension = ".onf";
constexpr const char* kNewExtension   = ".new";
constexpr const char* kNewBlockEnding = ".onf.new";

/// So many files are flushed one by one; more of them with all that the disk has not written yet, in one call for each
/// four thousand: 10,000 files took 50 s one by one. In portions, so that an interrupt is not kept waiting.
constexpr std::size_t kFlushedOneByOne = 16;
constexpr std::size_t kFlushedAtOnce   = 4096;

/// Only names that this format makes are opened: an index cannot lead out of its folder.
bool IsBlockFileName(std::string_view name)
{
  const auto isAllowed = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_' || c == '.';
  };
  return !name.empty() && name[0] != '.' && std::all_of(name.begin(), name.end(), isAllowed) &&
         (name.ends_with(kBlockExtension) || name.ends_with(kNewBlockEnding));
}

/// The name of a block's file once it is in its place.
std::string FinishedName(const std::string& fileName)
{
  return fileName.ends_with(kNewBlockEnding)
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
    if (!OnfKind::IsUserKind(onf))
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

FolderIndex ReadIndex(const StoreFile& file)
{
  const FileText text = ReadAllOf(file);
  TextCursor     in(DisplayPath(file.GetPath()), {text.bytes.get(), text.size});
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

/// The first lines of a file, to the last one of a block's header.
std::string ReadHeaderText(const StoreFile& file, std::uint64_t size)
{
  // Beyond this no header is whole: it has a line for each index and four more.
  constexpr int         kMaxLines = 32;
  constexpr std::size_t kPiece    = 1024;
  std::string           text;
  std::size_t           lineStart = 0;
  for (int line = 0; line < kMaxLines;) {
    const std::size_t lineEnd = text.find('\n', lineStart);
    if (lineEnd != std::string::npos) {
      const bool isLast = text.compare(lineStart, 8, "records:") == 0;
      lineStart         = lineEnd + 1;
      if (isLast) break;
      ++line;
      continue;
    }
    const std::size_t have = text.size();
    if (have == size) return text;
    const auto more = static_cast<std::size_t>(std::min<std::uint64_t>(kPiece, size - have));
    text.resize(have + more);
    file.ReadAt(have, text.data() + have, more);
  }
  text.resize(lineStart);
  return text;
}

/// A block's file as the folder has it now, and its header.
struct FoundBlock
{
  fs::path       path;
  FED_FileStatus status;
  std::string    headerText;
};

FoundBlock FindBlock(FED_FileLayer& files, const fs::path& folder, const std::string& fileName)
{
  const std::vector<fs::path> paths = GetBlockPaths(folder, fileName);
  for (const fs::path& path : paths) {
    const std::optional<StoreFile> file = FindFile(files, path);
    if (!file) continue;
    const FED_FileStatus status = file->GetStatus();
    return {path, status, ReadHeaderText(*file, status.size)};
  }
  throw FED_Failure(DisplayPath(paths.back()) + ": no such file, but the index names it", kTag);
}

FolderState ReadFolderOnce(FED_FileLayer& files, const fs::path& folder, const StoreFile& indexFile)
{
  FolderIndex index = ReadIndex(indexFile);
  FolderState state;
  state.userKindNames = std::move(index.userKindNames);
  for (std::string& file : index.files) {
    const FoundBlock  found = FindBlock(files, folder, file);
    TextCursor        in(DisplayPath(found.path), found.headerText);
    const BlockHeader header     = ReadBlockHeader(in);
    const auto [position, isNew] = state.blocks.emplace(header.descriptor, FolderBlock{std::move(file), found.status});
    if (!isNew) throw FED_Failure(DisplayPath(found.path) + ": has the same key as " + position->second.fileName, kTag);
  }
  return state;
}

/// @return whether a folder is there
bool RequireFolderOrNothing(FED_FileLayer& files, const fs::path& path)
{
  const FED_FileStatus::Kind kind = GetFileStatus(files, path).kind;
  if (kind != FED_FileStatus::Nothing && kind != FED_FileStatus::Folder)
    throw FED_Failure(DisplayPath(path) + ": not an ONF text database, which is a folder", kTag);
  return kind == FED_FileStatus::Folder;
}

std::vector<std::string> ListFolder(FED_FileLayer& files, const fs::path& folder)
{
  std::vector<std::string> names;
  RequireSuccess(files.List(folder, names), folder, "list");
  return names;
}

fs::path GetFolderAbove(const fs::path& folder) { return folder.has_parent_path() ? folder.parent_path() : "."; }

bool IsLeftover(const std::string& name) { return name == kNewIndexName || name.ends_with(kNewBlockEnding); }

}  // namespace

TextFolderWriter::TextFolderWriter(const fs::path& folder, FED_FileLayer& files)
    : folder_(folder.has_filename() || !folder.has_parent_path() ? folder : folder.parent_path()),
      files_(files),
      out_([this](std::string_view text) {
        file_.WriteAt(written_, text.data(), text.size());
        written_ += text.size();
      })
{
  try {
    LockFolder();
    ReadFolderToWrite(files_, folder_);
  } catch (...) {
    Abandon();
    throw;
  }
}

TextFolderWriter::~TextFolderWriter() { Abandon(); }

/// What cannot be removed goes with the next writer.
void TextFolderWriter::Abandon() noexcept
{
  // A folder that another writer has locked is that one's by now.
  if (isBusy_) return;
  for (const fs::path& path : unnamed_) static_cast<void>(files_.Remove(path));
  if (madeFolders_.empty()) return;
  // A file that stands for the lock is in the way. Who takes the folder once it is gone has one there or finds nothing.
  if (files_.Remove(madeFolders_.back())) lock_ = StoreFile();
  for (; !madeFolders_.empty(); madeFolders_.pop_back()) static_cast<void>(files_.Remove(madeFolders_.back()));
}

void TextFolderWriter::LockFolder()
{
  // A writer that fails removes the folder that it made, perhaps between our two steps.
  constexpr int         kMaxTries = 10;
  FED_FileLayer::Handle handle    = FED_FileLayer::kNoHandle;
  std::error_code       error;
  for (int i = 0; i < kMaxTries && (i == 0 || error == std::errc::no_such_file_or_directory); ++i) {
    MakeFolders();
    error = files_.LockFolder(folder_, handle);
  }
  isBusy_ = error == std::errc::resource_unavailable_try_again;
  if (isBusy_) ThrowLocked(files_, folder_, folder_, "another program writes to the ONF folder");
  RequireSuccess(error, folder_, "lock");
  lock_ = StoreFile(files_, folder_, handle);
}

void TextFolderWriter::MakeFolders()
{
  std::vector<fs::path> missing;
  for (fs::path path = folder_; !path.empty() && !RequireFolderOrNothing(files_, path); path = path.parent_path())
    missing.push_back(path);
  for (; !missing.empty(); missing.pop_back()) {
    bool                  made  = false;
    const std::error_code error = files_.MakeFolder(missing.back(), made);
    if (made) madeFolders_.push_back(missing.back());
    RequireSuccess(error, missing.back(), "create");
  }
}

void TextFolderWriter::WriteFile(const std::string& name, const FED_FileStatus& replaced,
                                 const std::function<void(TextOutput&)>& write)
{
  const fs::path path = folder_ / name;
  unnamed_.push_back(path);
  unflushed_.push_back(path);
  file_    = StoreFile(files_, path, replaced);
  written_ = 0;
  out_.Clear();
  write(out_);
  out_.Flush();
  file_.Close();
  if (unflushed_.size() == kFlushedAtOnce) FlushFiles();
}

void TextFolderWriter::FlushFiles()
{
  if (unflushed_.size() > kFlushedOneByOne) {
    const std::error_code error = files_.FlushAll(folder_);
    if (error != std::errc::function_not_supported) RequireSuccess(error, folder_, "flush");
    if (!error) unflushed_.clear();
  }
  for (const fs::path& path : unflushed_) StoreFile(files_, path, FED_FileLayer::Read).Flush();
  unflushed_.clear();
}

void TextFolderWriter::ReplaceIndex(const FolderIndex& index)
{
  const fs::path       path   = folder_ / kIndexName;
  const FED_FileStatus former = GetFileStatus(files_, path);
  WriteFile(kNewIndexName, former, [&index](TextOutput& out) { out.Append(FormatIndex(index)); });
  // What the index names is on the disk before the index is, and so is the way to it.
  FlushFiles();
  RequireSuccess(files_.FlushFolder(folder_), folder_, "flush");
  if (former.kind == FED_FileStatus::Nothing) {
    const fs::path above = GetFolderAbove(folder_);
    RequireSuccess(files_.FlushFolder(above), above, "flush");
    for (const fs::path& made : madeFolders_)
      if (made != folder_) RequireSuccess(files_.FlushFolder(GetFolderAbove(made)), GetFolderAbove(made), "flush");
  }
  const auto belong = [&] {
    unnamed_.clear();
    madeFolders_.clear();
  };
  bool isInDoubt = false;
  try {
    ReplaceFile(files_, folder_ / kNewIndexName, path, isInDoubt);
  } catch (...) {
    // The files may belong to the folder's state all the same.
    if (isInDoubt) belong();
    throw;
  }
  belong();
  if (const std::error_code error = files_.FlushFolder(folder_))
    ThrowFileFailure(folder_, "cannot flush: " + error.message() + kWritingMayBeInForce);
}

void TextFolderWriter::MoveToPlace(FolderIndex& index)
{
  bool moved = false;
  for (std::string& file : index.files) {
    const std::string finished = FinishedName(file);
    if (finished == file) continue;
    moved = true;
    // A name that is gone was moved before an earlier publication died.
    const fs::path from = folder_ / file;
    if (GetFileStatus(files_, from).kind != FED_FileStatus::Nothing)
      RequireSuccess(files_.Rename(from, folder_ / finished), from, "rename");
    file = finished;
  }
  if (moved) ReplaceIndex(index);
}

void TextFolderWriter::Settle()
{
  const std::optional<StoreFile> file = FindFile(files_, folder_ / kIndexName);
  if (!file) return;
  FolderIndex index = ReadIndex(*file);
  MoveToPlace(index);
}

void TextFolderWriter::RemoveLeftovers(const std::vector<std::string>& named, OtherBlocks others)
{
  const std::set<std::string> kept(named.begin(), named.end());
  for (const std::string& name : ListFolder(files_, folder_)) {
    const bool isStray = others == OtherBlocks::Go && IsBlockFileName(name) && kept.count(name) == 0;
    if (IsLeftover(name) || isStray) RequireSuccess(files_.Remove(folder_ / name), folder_ / name, "remove");
  }
}

void TextFolderWriter::Publish(const std::vector<NewBlock>& blocks, const UserKindNames& userKindNames,
                               OtherBlocks others)
{
  // Read behind the lock: what another program has just published stays.
  FolderState state = ReadFolderToWrite(files_, folder_);
  Settle();

  std::map<FED_DataDescriptor, FED_FileStatus> replaced;
  std::set<std::string>                        goingNames;
  for (const NewBlock& block : blocks) {
    const auto old = state.blocks.find(block.descriptor);
    if (old == state.blocks.end()) continue;
    replaced[block.descriptor] = old->second.status;
    goingNames.insert(FinishedName(old->second.fileName));
    state.blocks.erase(old);
  }
  if (others == OtherBlocks::Go) {
    state.blocks.clear();
    state.userKindNames.clear();
  }
  std::set<std::string> staying;
  for (const auto& [descriptor, block] : state.blocks) staying.insert(FinishedName(block.fileName));

  FolderIndex next;
  next.files.assign(staying.begin(), staying.end());
  for (const NewBlock& block : blocks) {
    if (!block.write) continue;
    const std::string stem = GetBlockFileStem(block.descriptor);
    std::string       name = stem + kBlockExtension;
    // A file that somebody renamed by hand may stand in the way.
    for (int n = 2; !staying.insert(name).second; ++n) name = stem + "_" + std::to_string(n) + kBlockExtension;
    goingNames.erase(name);
    const auto old = replaced.find(block.descriptor);
    WriteFile(name + kNewExtension, old == replaced.end() ? FED_FileStatus() : old->second, block.write);
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
  try {
    MoveToPlace(next);
    for (const std::string& name : goingNames) RequireSuccess(files_.Remove(folder_ / name), folder_ / name, "remove");
    RemoveLeftovers(next.files, others);
  } catch (const FED_Failure& failure) {
    throw FED_Failure(failure.GetMessage() + "; what was written is in force, and the next writer tidies up", kTag);
  }
}

std::vector<fs::path> GetBlockPaths(const fs::path& folder, const std::string& fileName)
{
  std::vector<fs::path> paths = {folder / fileName};
  if (FinishedName(fileName) != fileName) paths.push_back(folder / FinishedName(fileName));
  return paths;
}

FolderState ReadFolder(FED_FileLayer& files, const fs::path& folder)
{
  if (!RequireFolderOrNothing(files, folder))
    throw FED_Failure(DisplayPath(folder) + ": no such ONF text database", kTag);
  const fs::path path      = folder / kIndexName;
  constexpr int  kMaxTries = 10;
  for (int i = 0; i < kMaxTries; ++i) {
    const std::optional<StoreFile> index = FindFile(files, path);
    if (!index) throw FED_Failure(DisplayPath(folder) + ": not an ONF text database, it has no file named index", kTag);
    // As long as it is open its number is no other file's.
    const FileStamp before  = GetStamp(index->GetStatus());
    const auto      isStill = [&] { return GetStamp(GetFileStatus(files, path)) == before; };
    try {
      FolderState state = ReadFolderOnce(files, folder, *index);
      if (isStill()) return state;
    } catch (const FED_Failure&) {
      // A file that goes away under a reader tells of a publication when the index has changed as well.
      if (isStill()) throw;
    }
  }
  throw FED_Failure(DisplayPath(folder) + ": changes all the time, another program writes to it", kTag);
}

FolderState ReadFolderToWrite(FED_FileLayer& files, const fs::path& folder)
{
  if (!RequireFolderOrNothing(files, folder)) return {};
  if (GetFileStatus(files, folder / kIndexName).kind != FED_FileStatus::Nothing) return ReadFolder(files, folder);
  for (const std::string& name : ListFolder(files, folder)) {
    // A first publication that died leaves such files and nothing else; one at work has its lock there.
    if (!IsLeftover(name) && !FED_LockFileLayer::IsFolderHolderName(name))
      throw FED_Failure(DisplayPath(folder) + ": not an ONF text database, it holds " + QuoteForMessage(name) +
                            " but no file named index",
                        kTag);
  }
  return {};
}
