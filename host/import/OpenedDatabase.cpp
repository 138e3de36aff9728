#include "import/OpenedDatabase.h"

#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/NativePath.h>

#include "database/DatabaseFolder.h"
#include "database/ScratchDatabase.h"
#include "database/StoredDatabase.h"
#include "import/ResultImport.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "selection/KindRequests.h"
#include "selection/Selection.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

constexpr const char* kAccepted =
    "expected a working database (.fed), an ONF folder or a solver result file (.frd, .dat)";

bool IsResultFile(const fs::path& path)
{
  const std::string extension = LowerExtension(path);
  return extension == ".frd" || extension == ".dat";
}

void ImportFile(const fs::path& path, FED_ResultDatabase& database, Listener& listener,
                OpenedDatabase::Derivation derivation, const CompanionDeck& deck)
{
  KindRequests  nothing = KindRequests::Nothing();
  ImportOptions options;
  options.requests = derivation == OpenedDatabase::DeriveNothing ? &nothing : nullptr;
  options.progress = [&listener](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    listener.Progress(phase, done, total);
  };
  options.deck.allowOutside = deck.allowOutside;
  std::vector<fs::path> files{path};
  if (!deck.path.empty()) files.push_back(deck.path);
  const ImportReport report = ImportResults(files, database, options);
  for (const std::string& notice : report.notices) listener.Note(notice);
  for (const SkippedRows& skipped : report.skipped)
    listener.Note("skipped " + Counted(skipped.rows, "row") + ": " + skipped.reason);
  if (report.blocks == 0) listener.Note(path.string() + ": holds no results");
}

}  // namespace

OpenedDatabase::OpenedDatabase(const fs::path& path, Listener& listener, Derivation derivation,
                               const CompanionDeck& deck)
    : path_(path)
{
  const std::string    name   = path.string();
  const FED_FileStatus status = StatusOf(path);
  const auto           kind   = status.kind;
  if (kind == FED_FileStatus::Nothing) Fail(name + ": no such file or folder, " + kAccepted);
  stored_ = StoredDatabase::OpenIfThere(path);
  if (stored_) {
    database_ = &stored_->Get();
    return;
  }
  if (kind == FED_FileStatus::Folder) Fail(name + ": a folder without a file 'manifest' or 'index', " + kAccepted);
  if (!IsResultFile(path)) Fail(name + ": not a database, " + kAccepted);
  FED_ResultDatabase* database = nullptr;
  if (ScratchDatabase::IsNeededFor(status.size)) {
    scratch_ = std::make_unique<ScratchDatabase>();
    database = &scratch_->Get();
  } else {
    imported_ = std::make_unique<FED_ResultDatabase>();
    database  = imported_.get();
  }
  ImportFile(path, *database, listener, derivation, deck);
  database_ = database;
}

OpenedDatabase::~OpenedDatabase() = default;

Readers OpenedDatabase::GetReaders(Crew& crew) const
{
  const auto open = [this, share = crew.GetSize()]() -> std::unique_ptr<StoredDatabase> {
    return stored_ ? stored_->OpenAgain(path_, share) : nullptr;
  };
  return {&crew, open, stored_ ? stored_->GetState() : std::string()};
}

std::unique_ptr<FED_ResultDatabase> OpenedDatabase::Copy(const std::vector<FED_DataDescriptor>& descriptors) const
{
  auto copy = std::make_unique<FED_ResultDatabase>();
  CopyTo(*copy, descriptors);
  return copy;
}

void OpenedDatabase::CopyTo(FED_Database& target, const std::vector<FED_DataDescriptor>& descriptors) const
{
  for (const FED_DataDescriptor& descriptor : descriptors) {
    ThrowIfInterrupted();
    FED_CopyBlock(*database_, target, descriptor);
  }
}

std::vector<FED_DataDescriptor> OpenedDatabase::RequireBlocks(const Selection& selection, const std::string& text) const
{
  std::vector<FED_DataDescriptor> selected =
      selection.Apply(database_->GetDataDescriptors(FED_DataDescriptorPattern()));
  if (selected.empty())
    Fail(path_.string() + (text.empty() ? ": holds no blocks" : ": no block matches '" + text + "'"));
  return selected;
}

}  // namespace quilon
