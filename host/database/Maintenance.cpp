#include "database/Maintenance.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include <bundled/FED_ResultDatabase.h>

#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/FolderSize.h"
#include "database/Publication.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

template <typename Parcel>
static void Travel(Parcel& parcel, FED_DatabaseReport& report)
{
  parcel(report.generation, report.segments, report.fileBytes, report.deadBytes, report.blocks, report.records,
         report.extents, report.leftovers, report.findings);
}

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

/// @param compact (database, report) gives bytes back
template <typename Work>
CompactionReport CompactBy(const Work& compact, const fs::path& path, Listener& listener, LockPatience patience)
{
  if (!IsWorkingDatabaseFolder(path)) Fail(path.string() + ": not a working database (.fed)");
  CompactionReport report;
  report.bytesBefore       = FolderSize(path);
  WatchedFiles       files = WatchedFilesOf(path, "compacting", listener, std::move(patience));
  FED_ResultDatabase database(path, FED_ResultDatabase::ReadWrite, files.GetOptions());
  compact(database, report);
  database.RemoveStaleIdOrders();
  report.bytesAfter = FolderSize(path);
  return report;
}

}  // namespace

FED_DatabaseReport CheckWorkingDatabase(const fs::path& path, Listener& listener, Crew* crew)
{
  struct Inspection
  {
    WatchedFiles          files;
    FED_DatabaseInspector inspector;

    explicit Inspection(const fs::path& folder) : inspector(folder, &files) {}
  };
  const auto               own    = std::make_shared<Inspection>(path);
  FED_DatabaseReport       report = own->inspector.GetFrame();
  const std::uint64_t      state  = report.generation;
  const std::size_t        parts  = own->inspector.CountParts();
  Plan<FED_DatabaseReport> plan;
  plan.units      = parts;
  plan.state      = std::to_string(state);
  plan.makeWorker = [&](bool isFirst) -> Plan<FED_DatabaseReport>::Worker {
    const auto inspection = isFirst ? own : std::make_shared<Inspection>(path);
    // All of one generation: when a writer comes between, those that are open by then do the work.
    const FED_DatabaseInspector& inspector = inspection->inspector;
    if (inspector.GetFrame().generation != state || inspector.CountParts() != parts) return {};
    return [inspection](std::size_t part) { return inspection->inspector.CheckPart(part); };
  };
  plan.onProgress = [&](std::size_t done) { listener.Progress("checking", done, parts, "parts"); };
  CrewOrSelf workers(crew);
  CarryOut(workers.Get(), std::move(plan),
           [&report](std::size_t, const FED_DatabaseReport& part) { FED_AddPart(part, report); });
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
  return CompactBy([](FED_ResultDatabase& database, CompactionReport&) { database.Compact(); }, path, listener,
                   std::move(patience));
}

CompactionReport CompactInPieces(const fs::path& path, std::uint64_t room, Listener& listener, LockPatience patience)
{
  const auto compact = [room, &listener](FED_ResultDatabase& database, CompactionReport& report) {
    // Told before anything is written: whoever has more room can stop and begin again with it.
    if (const FED_CompactionPiece rest = database.GetCompactionRest(room); rest.roomForAll > 0)
      listener.Note(Counted(rest.keptSegments, "file") + " with " + FormatBytes(rest.keptBytes) +
                    " to give back stay as they are: a room of " + FormatBytes(room) + " is less than the " +
                    FormatBytes(rest.roomForAll) + " that they need");
    for (;;) {
      const FED_CompactionPiece piece = database.CompactPiece(room);
      report.keptSegments             = piece.keptSegments;
      report.keptBytes                = piece.keptBytes;
      report.roomForAll               = piece.roomForAll;
      if (piece.segments == 0) break;
      ++report.pieces;
    }
  };
  return CompactBy(compact, path, listener, std::move(patience));
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
