#include "Store.h"

#include <algorithm>
#include <utility>

#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "database/StepTimes.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_Database.h"
#include "text/Failure.h"

namespace quilon::python {

namespace {

// Lists of ids that are kept for the next block while anybody looks at them: of nodes, elements and a few parts.
constexpr std::size_t kRememberedIds = 8;

}  // namespace

Reading::Reading(const std::filesystem::path& path, Listener& listener, const std::filesystem::path& deck)
    : opened_(std::make_unique<OpenedDatabase>(path, listener, OpenedDatabase::DeriveAll, CompanionDeck{deck}))
{}

Reading::~Reading() = default;

FED_Database& Reading::Get() noexcept { return opened_->Get(); }

const KindTable& Reading::GetKinds()
{
  if (!kinds_) kinds_ = std::make_unique<KindTable>(Get());
  return *kinds_;
}

const StepTimes& Reading::GetTimes()
{
  if (!times_) times_ = std::make_unique<StepTimes>(Get());
  return *times_;
}

std::shared_ptr<const IdTable> Reading::FindIds(IdTable ids)
{
  std::erase_if(ids_, [](const std::weak_ptr<const IdTable>& known) { return known.expired(); });
  for (const std::weak_ptr<const IdTable>& known : ids_)
    if (std::shared_ptr<const IdTable> table = known.lock(); table->ids == ids.ids && table->rows == ids.rows)
      return table;
  const auto table = std::make_shared<const IdTable>(std::move(ids));
  if (ids_.size() == kRememberedIds) ids_.erase(ids_.begin());
  ids_.push_back(table);
  return table;
}

void Reading::LetGo(std::unique_ptr<FED_HeldChunk> chunk)
{
  const std::lock_guard lock(releasedMutex_);
  released_.push_back(std::move(chunk));
}

void Reading::Tidy()
{
  std::vector<std::unique_ptr<FED_HeldChunk>> released;
  const std::lock_guard                       lock(releasedMutex_);
  released.swap(released_);
}

Store::Store(const std::filesystem::path& path, Mode mode, Listener& listener, const std::filesystem::path& deck)
    : path_(path), mode_(mode)
{
  if (mode == Write) {
    RequireDatabaseName(path);
    // Before it is read: what the lock lets in comes no earlier than the last commit of whoever had it.
    publication_ = std::make_unique<Publication>(path);
    if (!IsWorkingDatabase(path) && !IsOnfFolder(path)) return;
  }
  OpenReading(listener, deck);
}

Store::~Store() = default;

void Store::OpenReading(Listener& listener, const std::filesystem::path& deck)
{
  reading_ = std::make_shared<Reading>(path_, listener, deck);
}

void Store::RequireOpen() const
{
  if (isClosed_) Fail(GetName() + ": the database is closed, expected an open one");
}

void Store::Close()
{
  if (isClosed_) return;
  Use([this] {
    isClosed_ = true;
    publication_.reset();
    kinds_.reset();
    reading_.reset();
  });
}

std::size_t Store::Commit()
{
  Target();
  const std::size_t blocks = publication_->Publish();
  publication_.reset();
  kinds_.reset();
  CallListener nobody{py::object()};
  OpenReading(nobody, {});
  return blocks;
}

Reading& Store::RequireReading()
{
  if (!reading_) Fail(GetName() + ": nothing is stored yet, expected a commit before");
  return *reading_;
}

FED_Database& Store::Target()
{
  if (mode_ != Write) Fail(GetName() + ": open to read, expected a database that is open to write (mode \"w\")");
  if (!publication_) publication_ = std::make_unique<Publication>(path_);
  kinds_.reset();
  return publication_->Target();
}

std::vector<FED_DataDescriptor> Store::List()
{
  std::vector<FED_DataDescriptor> blocks;
  if (reading_) blocks = reading_->Get().GetDataDescriptors(FED_DataDescriptorPattern());
  if (publication_) {
    for (const FED_DataDescriptor& written : publication_->Target().GetDataDescriptors(FED_DataDescriptorPattern()))
      blocks.push_back(written);
    std::sort(blocks.begin(), blocks.end());
    blocks.erase(std::unique(blocks.begin(), blocks.end()), blocks.end());
  }
  return blocks;
}

const KindTable& Store::GetKinds()
{
  if (!publication_) return RequireReading().GetKinds();
  if (!kinds_) kinds_ = std::make_unique<KindTable>(publication_->Target());
  return *kinds_;
}

Store::Place Store::Find(const FED_DataDescriptor& descriptor)
{
  if (publication_ && publication_->Target().HasDataBlock(descriptor))
    return {publication_->Target().GetConstDataBlock(descriptor), publication_->Target(), false};
  FED_Database& stored = RequireReading().Get();
  return {stored.GetConstDataBlock(descriptor), stored, true};
}

FED_DataBlock& Store::Replace(const FED_DataDescriptor& descriptor, std::size_t records)
{
  FED_Database& target = Target();
  Drop(descriptor);
  return target.GetOrCreateDataBlock(descriptor, records);
}

void Store::Drop(const FED_DataDescriptor& descriptor)
{
  FED_Database& target = publication_->Target();
  if (target.HasDataBlock(descriptor)) target.DeleteDataBlock(descriptor);
}

Store::Turn::Turn(Store& store) : store_(store)
{
  if (store_.user_ == std::this_thread::get_id())
    Fail(store_.GetName() + ": the database is at work, expected no call from within its progress");
  store_.mutex_.lock();
  store_.user_ = std::this_thread::get_id();
  try {
    store_.RequireOpen();
    if (store_.reading_) store_.reading_->Tidy();
  } catch (...) {
    store_.user_ = std::thread::id();
    store_.mutex_.unlock();
    throw;
  }
}

Store::Turn::~Turn()
{
  store_.user_ = std::thread::id();
  store_.mutex_.unlock();
}

}  // namespace quilon::python
