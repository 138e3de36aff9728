#include "database/Publication.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/NativePath.h>
#include <bundled/StoreFile.h>

#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/FreshDatabase.h"
#include "database/StoredDatabase.h"
#include "database/WatchedFiles.h"
#include "kinds/KindTable.h"
#include "kinds/UserKinds.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "text/Failure.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

const char* NameOf(bool isOnf) { return isOnf ? "an ONF folder" : "a working database"; }

template <typename IsMeant>
bool HasOnly(const fs::path& folder, const IsMeant& isMeant)
{
  FED_FileLayer            files;
  std::vector<std::string> names;
  RequireSuccess(files.List(folder, names), folder, "list");
  return std::all_of(names.begin(), names.end(), isMeant);
}

/// The texts of blocks, made by readers in slices of many records, one behind the other.
class TextSlices
{
public:
  TextSlices(const FED_Database& database, const std::vector<OnfTextExport::Block>& blocks, const Readers& readers)
  {
    for (const OnfTextExport::Block& block : blocks) {
      const auto& columns = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(block.descriptor));
      const std::size_t records = columns.GetRecordCount();
      const std::size_t before  = slices_.size();
      for (std::size_t first = 0; first < records; first += kRecords)
        slices_.push_back({block.descriptor, first, std::min(kRecords, records - first)});
      counts_.push_back(slices_.size() - before);
    }
    Plan<std::string> plan;
    plan.units      = slices_.size();
    plan.ahead      = 2 * readers.crew->GetSize();
    plan.makeWorker = [this, &database, open = readers.open](bool isFirst) -> Plan<std::string>::Worker {
      struct Own
      {
        std::unique_ptr<StoredDatabase> stored;
        OnfTextExport::BlockTexts       texts;
      };
      std::unique_ptr<StoredDatabase> stored = isFirst ? nullptr : open();
      if (!isFirst && !stored) return {};
      const FED_Database& own    = isFirst ? database : stored->Get();
      const auto          worker = std::shared_ptr<Own>(new Own{std::move(stored), OnfTextExport::BlockTexts(own)});
      return [this, worker](std::size_t unit) {
        ThrowIfInterrupted();
        std::string text;
        worker->texts.Write(slices_[unit].descriptor, slices_[unit].first, slices_[unit].count,
                            [&text](std::string_view piece) { text += piece; });
        return text;
      };
    };
    texts_.emplace(*readers.crew, std::move(plan));
  }
  /// Hands out the text of a block; called for all of them in their order.
  void Write(std::size_t block, const OnfTextExport::TextSink& append)
  {
    for (std::size_t i = 0; i < counts_[block]; ++i) append(texts_->Next());
  }

  TextSlices(const TextSlices&)            = delete;
  TextSlices& operator=(const TextSlices&) = delete;
  ~TextSlices()                            = default;

private:
  static constexpr std::size_t kRecords = std::size_t{1} << 13;  // a megabyte of text

  struct Slice
  {
    FED_DataDescriptor descriptor;
    std::size_t        first;
    std::size_t        count;
  };

  std::vector<Slice>                  slices_;
  std::vector<std::size_t>            counts_;  // of slices, by block
  std::optional<Results<std::string>> texts_;
};

/// An empty file in a new working database until its first commit. Segments beside it have never been part of a
/// database: whoever put it there was killed, or is still at work, which the lock tells.
constexpr char kUnpublished[] = "unpublished";

/// Of files that a first publication leaves when it is killed, those that hold nothing anybody could want back.
bool IsLeftover(const std::string& name, bool isOnf)
{
  if (FED_LockFileLayer::IsFolderHolderName(name)) return true;
  return isOnf ? name == "index.new" || name.ends_with(".onf.new")
               : name == "lock" || name == "manifest.new" || name == kUnpublished;
}

}  // namespace

Publication::Publication(const fs::path& folder, Form form, LockPatience patience)
    : folder_(folder.has_filename() || !folder.has_relative_path() ? folder : folder.parent_path()),  // "new.onf/"
      isOnf_(!IsWorkingDatabaseName(folder_)),
      names_(std::make_unique<FED_ResultDatabase>()),
      files_({}, std::move(patience))
{
  CheckFolder(form);
  if (isOnf_) {
    onf_      = std::make_unique<OnfTextExport::Writer>(folder_, &files_);
    database_ = std::make_unique<FED_ResultDatabase>();
    if (!IsOnfFolder(folder_)) return;
    CopyUserKindNames(*OpenOnf(folder_), *names_);
    CopyUserKindNames(*names_, *database_);
  } else {
    const auto access = IsWorkingDatabase(folder_) ? FED_ResultDatabase::ReadWrite : FED_ResultDatabase::Create;
    database_         = std::make_unique<FED_ResultDatabase>(folder_, access, files_.GetOptions());
    MarkUnpublished();
    CopyUserKindNames(*database_, *names_);
    fresh_ = std::make_unique<FreshDatabase>(*database_);
    parts_.emplace(folder_, *database_, fresh_.get());
  }
}

// The mark goes before the database, which takes a folder that it made and that has nothing else with it.
Publication::~Publication()
{
  if (isMarked_) static_cast<void>(files_.Remove(folder_ / kUnpublished));
}

void Publication::MarkUnpublished()
{
  const fs::path mark = folder_ / kUnpublished;
  if (IsWorkingDatabase(folder_)) {
    // Who was killed right behind the first commit left it.
    if (StatusOf(mark).kind == FED_FileStatus::File) RequireSuccess(files_.Remove(mark), mark, "remove");
    return;
  }
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  RequireSuccess(files_.Open(mark, FED_FileLayer::Create, handle), mark, "create");
  isMarked_ = true;
  RequireSuccess(files_.Close(handle), mark, "close");
}

FED_Database& Publication::Target() noexcept
{
  if (fresh_) return *fresh_;
  return *database_;
}

std::size_t Publication::Publish(const std::vector<FED_DataDescriptor>& gone)
{
  ForEachUserKind([&](FED_OnfId onf) { CheckUserKindName(*database_, onf); });
  const FED_Database&             target = Target();
  std::vector<FED_DataDescriptor> going  = gone;
  std::erase_if(going, [&target](const FED_DataDescriptor& descriptor) { return target.HasDataBlock(descriptor); });
  if (!isOnf_) return CommitTarget(going);
  return PublishOnf(*database_, database_->GetDataDescriptors(FED_DataDescriptorPattern()), going);
}

std::size_t Publication::Publish(const FED_Database& database, const std::vector<FED_DataDescriptor>& gone)
{
  return PublishBlocks(database, database.GetDataDescriptors(FED_DataDescriptorPattern()), gone);
}

std::size_t Publication::PublishBlocks(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                       const std::vector<FED_DataDescriptor>& gone, const Readers& readers)
{
  std::set<int> kinds;
  for (const FED_DataDescriptor& descriptor : blocks) {
    kinds.insert(descriptor.GetInteger(FED_DataDescriptor::OnfId));
    kinds.insert(GetQuantity(descriptor));
  }
  for (const int kind : kinds) CheckUserKindName(database, static_cast<FED_OnfId>(kind));
  if (isOnf_) return PublishOnf(database, blocks, gone, OnfTextExport::OthersStay, readers);
  for (const FED_DataDescriptor& descriptor : blocks) {
    ThrowIfInterrupted();
    if (HasRecords(database.GetConstDataBlock(descriptor))) FED_CopyBlock(database, *fresh_, descriptor);
  }
  return CommitTarget(gone);
}

std::size_t Publication::MirrorBlocks(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                      const Readers& readers)
{
  return PublishOnf(database, blocks, {}, OnfTextExport::OthersGo, readers);
}

void Publication::CheckFolder(Form form) const
{
  const std::string name     = folder_.string();
  const std::string expected = std::string("expected ") + NameOf(isOnf_) + " or the name of a new one";
  if (name.empty()) Fail("the output folder has no name");
  if (form == OnfFolder && !isOnf_) Fail(name + ": a working database, expected the name of an ONF folder");
  if (isOnf_) WidePath(folder_);  // a name that no text database could be opened by is told of
  const fs::path parent = fs::absolute(folder_).lexically_normal().parent_path();
  if (IsWorkingDatabaseName(parent)) Fail(name + ": inside a working database, expected a place outside");
  RequireDatabaseName(folder_);
  const FED_FileStatus::Kind kind = StatusOf(folder_).kind;
  if (kind == FED_FileStatus::Nothing) {
    if (StatusOf(parent).kind != FED_FileStatus::Folder)
      Fail(name + ": no folder " + parent.string() + " to make it in");
    return;
  }
  if (kind != FED_FileStatus::Folder) Fail(name + ": not a folder, " + expected);
  const auto isDatabase = [&] { return isOnf_ ? IsOnfFolder(folder_) : IsWorkingDatabase(folder_); };
  if (isDatabase()) return;
  const auto isLeftover = [&](const std::string& file) { return IsLeftover(file, isOnf_); };
  if (HasOnly(folder_, isLeftover)) return;
  // A database that lost its manifest: who writes here would remove what can be saved of it.
  const auto isSegment = [](const std::string& file) {
    return file.starts_with("segment-") && (file.ends_with(".h5") || file.ends_with(".index"));
  };
  const bool hasSegments =
      !isOnf_ && HasOnly(folder_, [&](const std::string& file) { return isLeftover(file) || isSegment(file); });
  if (isDatabase()) return;  // another program has made it meanwhile
  // The lock tells whether it is still at work; if not, the database removes what it left.
  if (hasSegments && StatusOf(folder_ / kUnpublished).kind == FED_FileStatus::File) return;
  if (hasSegments)
    Fail(name + ": segments without a manifest, of a damaged database, " + expected +
         "; 'quilon salvage' saves what is whole of them");
  Fail(name + ": a folder with other files, " + expected);
}

void Publication::CheckUserKindName(const FED_Database& database, FED_OnfId onf) const
{
  const std::string there = names_->GetUserKindName(onf);
  const std::string here  = database.GetUserKindName(onf);
  if (!there.empty() && !here.empty() && there != here)
    Fail(folder_.string() + ": kind " + std::to_string(onf) + " is '" + there + "' here and '" + here +
         "' in what is written, expected one name");
}

std::size_t Publication::PublishOnf(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                    const std::vector<FED_DataDescriptor>& gone, OnfTextExport::Others others,
                                    const Readers& readers)
{
  const std::set<FED_DataDescriptor> going(gone.begin(), gone.end());
  std::vector<OnfTextExport::Block>  written;
  for (const FED_DataDescriptor& descriptor : blocks)
    if (!going.contains(descriptor) && HasRecords(database.GetConstDataBlock(descriptor)))
      written.push_back({&database, descriptor});
  const std::size_t         count = written.size();
  std::optional<TextSlices> slices;
  if (readers.crew != nullptr) slices.emplace(database, written, readers);
  for (const FED_DataDescriptor& descriptor : going) written.push_back({nullptr, descriptor});
  const auto onBlock = [](std::size_t) { ThrowIfInterrupted(); };
  if (slices)
    onf_->PublishTexts(
        written, [&](std::size_t block, const OnfTextExport::TextSink& append) { slices->Write(block, append); },
        onBlock, others);
  else
    onf_->Publish(written, onBlock, others);
  return count;
}

std::size_t Publication::CommitTarget(const std::vector<FED_DataDescriptor>& gone)
{
  for (const FED_DataDescriptor& descriptor : gone)
    if (database_->HasDataBlock(descriptor)) database_->DeleteDataBlock(descriptor);
  std::size_t count = 0;
  for (const FED_DataDescriptor& descriptor : fresh_->GetDataDescriptors(FED_DataDescriptorPattern())) {
    const FED_DataBlock& block = fresh_->GetConstDataBlock(descriptor);
    if (HasRecords(block))
      ++count;
    else
      fresh_->DeleteDataBlock(descriptor);
  }
  database_->Commit();
  // What is committed is, whether or not the mark goes: the next writer removes it.
  if (std::exchange(isMarked_, false)) static_cast<void>(files_.Remove(folder_ / kUnpublished));
  return count;
}

}  // namespace quilon
