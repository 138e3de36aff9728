#include "database/Maintenance.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include <bundled/FED_ResultDatabase.h>

#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/FolderSize.h"
#include "database/Publication.h"
#include "kinds/KindTable.h"
#include "progress/Jobs.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "text/Failure.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

/// Files of a folder whose reading is progress.
WatchedFiles WatchedFilesOf(const fs::path& folder, const char* phase, Listener& listener, LockPatience patience = {})
{
  const std::uint64_t total = FolderSize(folder);
  return WatchedFiles([phase, total, &listener](std::uint64_t bytes) { listener.Progress(phase, bytes, total); },
                      std::move(patience));
}

}  // namespace

FED_DatabaseReport CheckWorkingDatabase(const fs::path& path, Listener& listener, std::size_t jobs)
{
  struct Inspection
  {
    WatchedFiles          files;
    FED_DatabaseInspector inspector;

    explicit Inspection(const fs::path& folder) : inspector(folder, &files) {}
  };
  // All of one generation: when a writer comes between, those that are open by then do the work.
  std::vector<std::unique_ptr<Inspection>> open;
  open.push_back(std::make_unique<Inspection>(path));
  const FED_DatabaseReport& frame = open.front()->inspector.GetFrame();
  const std::size_t         parts = open.front()->inspector.CountParts();
  while (open.size() < std::min(jobs, parts)) {
    auto        next   = std::make_unique<Inspection>(path);
    const auto& other  = next->inspector;
    const bool  isSame = other.GetFrame().generation == frame.generation && other.CountParts() == parts;
    if (!isSame) break;
    open.push_back(std::move(next));
  }
  std::vector<FED_DatabaseReport> reports(parts);
  std::atomic<std::size_t>        taken = 0;
  const auto                      make  = [&]() -> Worker {
    return [&reports, &own = open[taken++]->inspector](std::size_t part) { reports[part] = own.CheckPart(part); };
  };
  ShareWork(open.size(), parts, make, [&](std::size_t done) { listener.Progress("checking", done, parts, "parts"); });
  FED_DatabaseReport report = frame;
  for (const FED_DatabaseReport& part : reports) FED_AddPart(part, report);
  return report;
}

FED_DatabaseReport CheckByReading(const FED_Database& database)
{
  FED_DatabaseReport report;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
    ++report.blocks;
    try {
      report.records += Summarize(database.GetConstDataBlock(descriptor)).records;
    } catch (const FED_Failure& failure) {
      report.findings.push_back(failure.GetMessage());
    }
  }
  return report;
}

FED_SalvageReport Salvage(const fs::path& path, const fs::path& output, Listener& listener)
{
  if (StatusOf(path).kind != FED_FileStatus::Folder) Fail(path.string() + ": not the folder of a working database");
  if (StatusOf(output).kind != FED_FileStatus::Nothing)
    Fail(output.string() + ": exists, expected the name of a new database");
  Publication       publication(output.string());
  WatchedFiles      files  = WatchedFilesOf(path, "salvaging", listener);
  FED_SalvageReport report = FED_SalvageDatabase(path, publication.Target(), &files);
  if (report.blocks == 0) Fail(path.string() + ": nothing whole was found, nothing is written");
  report.blocks = publication.Publish();  // those of which nothing is left are not written
  return report;
}

CompactionReport Compact(const fs::path& path, Listener& listener, LockPatience patience)
{
  if (!IsWorkingDatabaseFolder(path)) Fail(path.string() + ": not a working database (.fed)");
  CompactionReport report;
  report.bytesBefore = FolderSize(path);
  WatchedFiles files = WatchedFilesOf(path, "compacting", listener, std::move(patience));
  FED_ResultDatabase(path, FED_ResultDatabase::ReadWrite, files.GetOptions()).Compact();
  report.bytesAfter = FolderSize(path);
  return report;
}

std::vector<ListedBlock> Prune(const fs::path& path, const PruneOptions& options)
{
  if (!IsWorkingDatabaseFolder(path))
    Fail(path.string() + ": not a working database (.fed), expected one to take blocks out of");
  const auto               access = options.dryRun ? FED_ResultDatabase::ReadOnly : FED_ResultDatabase::ReadWrite;
  WatchedFiles             files({}, options.patience);
  FED_ResultDatabase       database(path, access, files.GetOptions());
  const KindTable          kinds(database);
  std::vector<ListedBlock> blocks = ListBlocks(database, options.selection(kinds), kinds);
  if (options.dryRun || blocks.empty()) return blocks;
  for (const ListedBlock& block : blocks) database.DeleteDataBlock(block.descriptor);
  database.Commit();
  return blocks;
}

}  // namespace quilon
