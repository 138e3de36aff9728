#include "OpenedDatabase.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/NativePath.h>

#include "Failure.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "ResultImport.h"
#include "selection/KindRequests.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"
#include "WatchedFiles.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

constexpr const char* kAccepted =
    "expected a working database (.fed), an ONF folder or a solver result file (.frd, .dat)";

std::string ExtensionOf(const fs::path& path)
{
  std::string extension = path.extension().string();
  for (char& c : extension)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return extension;
}

bool IsResultFile(const fs::path& path)
{
  const std::string extension = ExtensionOf(path);
  return extension == ".frd" || extension == ".dat";
}

std::unique_ptr<FED_ResultDatabase> ImportFile(const fs::path& path, Console& console,
                                               OpenedDatabase::Derivation derivation)
{
  KindRequests  nothing = KindRequests::Nothing();
  ImportOptions options;
  options.requests = derivation == OpenedDatabase::DeriveNothing ? &nothing : nullptr;
  options.progress = [&console](const std::string& phase, std::uint64_t done, std::uint64_t total) {
    ThrowIfInterrupted();
    console.Progress(phase, done, total);
  };
  auto               database = std::make_unique<FED_ResultDatabase>();
  const ImportReport report   = ImportResults({path}, *database, options);
  for (const std::string& notice : report.notices) console.Note(notice);
  for (const SkippedRows& skipped : report.skipped)
    console.Note("skipped " + Counted(skipped.rows, "row") + ": " + skipped.reason);
  return database;
}

}  // namespace

bool IsWorkingDatabase(const fs::path& path) { return fs::is_directory(path) && fs::exists(path / "manifest"); }

bool IsWorkingDatabaseName(const fs::path& path)
{
  return ExtensionOf(path.has_filename() ? path : path.parent_path()) == ".fed";  // "NAME.fed/" too
}

bool IsWorkingDatabaseFolder(const fs::path& path)
{
  return IsWorkingDatabase(path) || (IsWorkingDatabaseName(path) && fs::is_directory(path));
}

bool IsOnfFolder(const fs::path& path) { return fs::is_directory(path) && fs::exists(path / "index"); }

std::unique_ptr<QuilonOnfTxtDatabase> OpenOnf(const fs::path& path)
{
  constexpr std::size_t kCacheSize = 1024;
  auto                  database   = std::make_unique<QuilonOnfTxtDatabase>(WidePath(path));
  database->InitDb(FED_DatabaseDefs::ReadAccess, kCacheSize, std::wstring(), nullptr);
  return database;
}

OpenedDatabase::OpenedDatabase(const fs::path& path, Console& console, Derivation derivation) : path_(path)
{
  const std::string name = path.string();
  if (!fs::exists(path)) Fail(name + ": no such file or folder, " + kAccepted);
  if (IsWorkingDatabaseFolder(path)) {
    files_    = std::make_unique<WatchedFiles>();
    database_ = std::make_unique<FED_ResultDatabase>(path, FED_ResultDatabase::ReadOnly, files_->GetOptions());
  } else if (IsOnfFolder(path)) {
    database_ = OpenOnf(path);
  } else if (fs::is_directory(path)) {
    Fail(name + ": a folder without a file 'manifest' or 'index', " + kAccepted);
  } else if (IsResultFile(path)) {
    database_ = ImportFile(path, console, derivation);
  } else {
    Fail(name + ": not a database, " + kAccepted);
  }
}

OpenedDatabase::~OpenedDatabase() = default;

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
