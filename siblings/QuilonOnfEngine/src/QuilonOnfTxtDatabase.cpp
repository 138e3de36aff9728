#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "block_file.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_ResultDatabase.h"
#include "bundled/NativePath.h"
#include "bundled/OnfFileLayer.h"
#include "bundled/OnfStores.h"
#include "file_text.h"
#include "QuilonUtilities/FED_Failure.h"
#include "text_cursor.h"
#include "text_folder.h"
#include "text_output.h"

namespace {

constexpr const char* kTag = "|%P|QuilonOnfEngine|QuilonOnfTxtDatabase";

/// Entity kinds below this have an id map.
constexpr int kNumMappedKinds = 15;

/// @return whether an id of the pool has this index; `id` is then the id
bool FindId(const FED_IdMapsPool& pool, int kind, std::size_t index, int& id)
{
  try {
    id = pool.GetId(kind, index);
  } catch (const FED_Failure&) {
    return false;  // a pool does not tell how many ids it has, so its end is found by asking
  }
  // For kind 14 an index that no id has reads as itself.
  return pool.FindIndex(kind, id) == index;
}

void CopyIds(const FED_IdMapsPool& source, FED_IdMapsPool& target)
{
  int id = 0;
  for (int kind = 0; kind < kNumMappedKinds; ++kind)
    for (std::size_t index = 1; FindId(source, kind, index, id); ++index) target.FindOrAddIndex(kind, id);
}

class StoreInMemory final : public OnfStore
{
public:
  FED_ResultDatabase& Get() noexcept override { return database_; }

private:
  FED_ResultDatabase database_;
};

std::unique_ptr<OnfStore> MakeStoreFor(const std::map<FED_DataDescriptor, FolderBlock>& blocks)
{
  std::uint64_t bytes = 0;
  for (const auto& [descriptor, block] : blocks) bytes += block.status.size;
  OnfStores* const          stores = OnfStores::Get();
  std::unique_ptr<OnfStore> store  = stores != nullptr ? stores->MakeStore(bytes) : nullptr;
  return store ? std::move(store) : std::make_unique<StoreInMemory>();
}

}  // namespace

/// Records live in a database in memory, or in one that is made for what is read. For reading, a block's file is read
/// when the block is first asked for: who wants one block of a large folder does not wait for the others.
class QuilonOnfTxtDatabase::Implementation
{
public:
  Implementation(const std::wstring& path, FED_Database& owner)
      : folder_(NativePath(path)), files_(OnfFileLayer::Get()), blockSet_(owner)
  {}

  bool                    IsOpen() const noexcept { return state_ != State::Closed; }
  const FED_DataBlockSet& GetBlockSet() const noexcept { return blockSet_; }

  void Open(FED_DatabaseDefs::AccessMode mode, const FED_IdMapsPool* idMaps)
  {
    if (IsOpen()) Fail("is already open");
    FolderState               folderState;
    std::unique_ptr<OnfStore> made;
    switch (mode) {
      case FED_DatabaseDefs::ReadAccess:
        folderState = ReadFolder(files_, folder_);
        made        = MakeStoreFor(folderState.blocks);
        break;
      case FED_DatabaseDefs::WriteAccess:
        ReadFolderToWrite(files_, folder_);
        made = std::make_unique<StoreInMemory>();
        break;
      default:
        Fail("access mode is " + std::to_string(static_cast<int>(mode)) + ", expected 0 to read or 1 to write");
    }
    FED_ResultDatabase& store = made->Get();
    if (idMaps != nullptr) CopyIds(*idMaps, store.GetIdMapsPool());
    for (const auto& [onf, name] : folderState.userKindNames) store.SetUserKindName(static_cast<FED_OnfId>(onf), name);
    unread_ = std::move(folderState.blocks);
    store_  = std::move(made);
    newNames_.clear();
    state_ = mode == FED_DatabaseDefs::ReadAccess ? State::Reading : State::Writing;
  }

  void Release(bool dropBlocks)
  {
    if (state_ == State::Writing) Publish();
    state_ = State::Closed;
    unread_.clear();
    if (dropBlocks) store_.reset();
  }

  /// @return the store of an open database
  FED_ResultDatabase& GetStore() const
  {
    if (!IsOpen()) Fail("is not open");
    return store_->Get();
  }

  FED_ResultDatabase& GetStoreToWrite() const
  {
    FED_ResultDatabase& store = GetStore();
    if (state_ != State::Writing) Fail("is open for reading, nothing can be created, deleted or named");
    return store;
  }

  bool IsUnread(const FED_DataDescriptor& descriptor) const { return unread_.count(descriptor) != 0; }

  bool HasBlock(const FED_DataDescriptor& descriptor) const
  {
    return GetStore().HasDataBlock(descriptor) || IsUnread(descriptor);
  }

  /// Reads the block's file if that has not happened yet.
  void Load(const FED_DataDescriptor& descriptor)
  {
    const auto found = unread_.find(descriptor);
    if (found == unread_.end()) return;
    LoadFile(descriptor, found->second);
    unread_.erase(found);
  }

  std::vector<FED_DataDescriptor> GetDescriptors(const FED_DataDescriptorPattern& pattern) const
  {
    std::vector<FED_DataDescriptor> descriptors = GetStore().GetDataDescriptors(pattern);
    for (const auto& [descriptor, block] : unread_)
      if (pattern.Matches(descriptor)) descriptors.push_back(descriptor);
    // The order does not tell which blocks have been read.
    std::sort(descriptors.begin(), descriptors.end());
    return descriptors;
  }

  void SetName(FED_OnfId onf, const std::string& name)
  {
    GetStoreToWrite().SetUserKindName(onf, name);
    newNames_[onf] = name;
  }

private:
  enum class State
  {
    Closed,
    Reading,
    Writing
  };

  [[noreturn]] void Fail(const std::string& what) const
  {
    throw FED_Failure("ONF text database " + DisplayPath(folder_) + " " + what, kTag);
  }

  /// The text of a block's file in the state that the database was opened in.
  std::pair<std::filesystem::path, FileText> FindBlockText(const FolderBlock& block) const
  {
    const std::vector<std::filesystem::path> paths = GetBlockPaths(folder_, block.fileName);
    std::optional<StoreFile>                 file;
    for (const std::filesystem::path& path : paths)
      if (!file) file = FindFile(files_, path);
    // A file that only moves keeps its stamp. One that is edited under the reader is found out behind the last byte.
    const FileStamp stamp = GetStamp(block.status);
    if (file && GetStamp(file->GetStatus()) == stamp) {
      FileText text = ReadAllOf(*file);
      if (GetStamp(file->GetStatus()) == stamp) return {file->GetPath(), std::move(text)};
    }
    throw FED_Failure(
        DisplayPath(file ? file->GetPath() : paths.back()) + ": has changed since the database was opened", kTag);
  }

  void LoadFile(const FED_DataDescriptor& descriptor, const FolderBlock& file)
  {
    const auto [path, text] = FindBlockText(file);
    TextCursor        in(DisplayPath(path), {text.bytes.get(), text.size});
    const BlockHeader header = ReadBlockHeader(in);
    CheckRecordCount(in, header);
    FED_ResultDatabase& store = store_->Get();
    FED_DataBlock& block = *store.CreateDataBlock(descriptor, header.numRecords, 0, header.recordFormat.ToString());
    try {
      ReadBlockRecords(in, header, block, store.GetIdMapsPool());
    } catch (...) {
      store.DeleteDataBlock(descriptor);  // half a block is none
      throw;
    }
  }

  void Publish()
  {
    FED_ResultDatabase&   store = store_->Get();
    std::vector<NewBlock> blocks;
    for (const FED_DataBlock* block : store.GetDataBlocks(FED_DataDescriptorPattern()))
      blocks.push_back({block->GetDescriptor(), [&store, block](TextOutput& out) {
                          WriteBlock(dynamic_cast<const FED_ColumnDataBlock&>(*block), store.GetIdMapsPool(), out);
                        }});
    TextFolderWriter(folder_, files_).Publish(blocks, newNames_);
  }

  std::filesystem::path                     folder_;
  FED_FileLayer&                            files_;
  FED_DataBlockSet                          blockSet_;
  State                                     state_ = State::Closed;
  std::unique_ptr<OnfStore>                 store_;     ///< stays behind Release() for those who hold blocks
  std::map<FED_DataDescriptor, FolderBlock> unread_;    ///< when reading: blocks whose files have not been read
  UserKindNames                             newNames_;  ///< when writing: names set since opening
};

QuilonOnfTxtDatabase::QuilonOnfTxtDatabase(const std::wstring& path)
    : implementation_(std::make_unique<Implementation>(path, *this))
{}

QuilonOnfTxtDatabase::~QuilonOnfTxtDatabase() = default;

bool QuilonOnfTxtDatabase::IsInitialized() const { return implementation_->IsOpen(); }

FED_DataBlock* QuilonOnfTxtDatabase::CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                                     std::size_t secondSize, const std::string& recordFormat)
{
  return implementation_->GetStoreToWrite().CreateDataBlock(descriptor, firstSize, secondSize, recordFormat);
}

FED_DataBlock& QuilonOnfTxtDatabase::GetOrCreateDataBlock(const FED_DataDescriptor& descriptor,
                                                          std::size_t               expectedRecords)
{
  if (implementation_->HasBlock(descriptor)) return GetDataBlock(descriptor);
  return implementation_->GetStoreToWrite().GetOrCreateDataBlock(descriptor, expectedRecords);
}

bool QuilonOnfTxtDatabase::HasDataBlock(const FED_DataDescriptor& descriptor) const
{
  return implementation_->HasBlock(descriptor);
}

const FED_DataBlock& QuilonOnfTxtDatabase::GetConstDataBlock(const FED_DataDescriptor& descriptor) const
{
  implementation_->Load(descriptor);
  return std::as_const(implementation_->GetStore()).GetConstDataBlock(descriptor);
}

FED_DataBlock& QuilonOnfTxtDatabase::GetDataBlock(const FED_DataDescriptor& descriptor)
{
  implementation_->Load(descriptor);
  return implementation_->GetStore().GetDataBlock(descriptor);
}

std::vector<FED_DataBlock*> QuilonOnfTxtDatabase::GetDataBlocks(const FED_DataDescriptorPattern& pattern)
{
  std::vector<FED_DataBlock*> blocks;
  for (const FED_DataDescriptor& descriptor : GetDataDescriptors(pattern)) blocks.push_back(&GetDataBlock(descriptor));
  return blocks;
}

void QuilonOnfTxtDatabase::DeleteDataBlock(const FED_DataDescriptor& descriptor)
{
  implementation_->GetStoreToWrite().DeleteDataBlock(descriptor);
}

std::vector<FED_DataDescriptor> QuilonOnfTxtDatabase::GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const
{
  return implementation_->GetDescriptors(pattern);
}

FED_IdMapsPool& QuilonOnfTxtDatabase::GetIdMapsPool() { return implementation_->GetStore().GetIdMapsPool(); }

const FED_IdMapsPool& QuilonOnfTxtDatabase::GetIdMapsPool() const
{
  return std::as_const(implementation_->GetStore()).GetIdMapsPool();
}

std::string QuilonOnfTxtDatabase::GetUserKindName(FED_OnfId onf) const
{
  return implementation_->GetStore().GetUserKindName(onf);
}

void QuilonOnfTxtDatabase::SetUserKindName(FED_OnfId onf, const std::string& name)
{
  implementation_->SetName(onf, name);
}

void QuilonOnfTxtDatabase::InitDb(FED_DatabaseDefs::AccessMode mode, std::size_t /*cacheSize*/,
                                  const std::wstring& /*name*/, const FED_IdMapsPool* idMaps)
{
  implementation_->Open(mode, idMaps);
}

void QuilonOnfTxtDatabase::ReleaseDb(bool dropCachedBlocks) { implementation_->Release(dropCachedBlocks); }

const FED_DataBlockSet& QuilonOnfTxtDatabase::GetDataBlockSet() const { return implementation_->GetBlockSet(); }
