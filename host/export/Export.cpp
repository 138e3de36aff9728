#include "export/Export.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string_view>
#include <utility>

#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_Database.h>

#include "database/DatabaseFolder.h"
#include "database/StoredDatabase.h"
#include "export/CsvExport.h"
#include "export/ExportGroups.h"
#include "export/GridSource.h"
#include "export/LinkedRows.h"
#include "export/VtkHdfExport.h"
#include "export/VtuExport.h"
#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "progress/Crew.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

enum class Format
{
  VtkHdf,
  Vtu,
  Pvd,
  Csv
};

Format FormatOf(const std::filesystem::path& output)
{
  const std::string extension = LowerExtension(output);
  if (extension == ".vtkhdf" || extension == ".hdf") return Format::VtkHdf;
  if (extension == ".vtu") return Format::Vtu;
  if (extension == ".pvd") return Format::Pvd;
  if (extension == ".csv") return Format::Csv;
  Fail(output.string() + ": expected a name that ends in .vtkhdf, .vtu, .pvd or .csv");
}

bool HasGroups(const std::vector<FED_DataDescriptor>& blocks)
{
  return std::any_of(blocks.begin(), blocks.end(), [](const FED_DataDescriptor& block) {
    return block.IsSet(OnfIndex::Group) && IsExported(block.GetInteger(FED_DataDescriptor::OnfId));
  });
}

/// @return the selected blocks that become arrays of a mesh: its coordinates are the points themselves
std::vector<FED_DataDescriptor> WithoutCoordinates(std::vector<FED_DataDescriptor> blocks)
{
  std::erase_if(blocks, [](const FED_DataDescriptor& block) {
    return block.GetInteger(FED_DataDescriptor::OnfId) == OnfKind::Coordinates;
  });
  return blocks;
}

void NoteIds(Listener& listener, const std::set<int>& ids, const std::string& entity)
{
  if (ids.empty()) return;
  listener.Note(Counted(ids.size(), entity) + " with values, but not in the mesh: " + FormatIds(ids));
}

void NoteTimes(Listener& listener, const ExportPlan& plan)
{
  if (plan.steps.size() < 2) return;
  if (!plan.areTimesKnown)
    listener.Note("the times of some steps are not known: the steps are counted from 1 instead");
  else if (std::adjacent_find(plan.times.begin(), plan.times.end(), std::greater_equal<>()) != plan.times.end())
    listener.Note("the times of the steps do not ascend, which other tools expect: select one analysis or load case");
}

void NoteLinks(Listener& listener, const ExportRequest& request, const LinkedRows& links)
{
  std::string files;
  for (const std::string& file : links.GetFiles()) files += (files.empty() ? "" : ", ") + file;
  listener.Note(request.output.string() + " shows values of " + request.linkedFolder.string() + " (" + files +
                "): they read as nan when these files are gone, as after a merge, prune or compact");
}

/// The mesh of a database with what is exported on it, one thread its own.
class ExportedGrid
{
public:
  /// @param database borrowed
  ExportedGrid(const FED_Database& database, int iteration, Mesh mesh, ExportGroups groups, ExportPlan plan)
      : mesh_(std::move(mesh)),
        groups_(std::move(groups)),
        plan_(std::move(plan)),
        sets_(ReadSets(database, iteration)),
        source_(database, mesh_, sets_, plan_, groups_)
  {}
  ExportedGrid(const ExportedGrid&)            = delete;
  ExportedGrid& operator=(const ExportedGrid&) = delete;
  ~ExportedGrid()                              = default;

  const Mesh& GetMesh() const noexcept { return mesh_; }
  GridSource& GetSource() noexcept { return source_; }

private:
  Mesh                  mesh_;
  ExportGroups          groups_;
  ExportPlan            plan_;
  std::vector<NamedSet> sets_;
  GridSource            source_;
};

/// A file of one step.
struct StepFile
{
  std::string path;
  std::string beside;  ///< where it is written

  template <typename Parcel>
  friend void Travel(Parcel& parcel, StepFile& file)
  {
    parcel(file.path, file.beside);
  }
};

/// What the file of a step leaves to be told.
struct WrittenStep
{
  std::set<int> nodesWithout;
  std::set<int> elementsWithout;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, WrittenStep& written)
  {
    parcel(written.nodesWithout, written.elementsWithout);
  }
};

/// @param grid     for the thread that asks; borrowed, as the files
/// @param makeGrid makes the same of another database, for any other
Plan<WrittenStep> MakeStepPlan(ExportedGrid& grid, const Readers& readers, const std::vector<StepFile>& files,
                               std::function<std::shared_ptr<ExportedGrid>(const FED_Database&)> makeGrid)
{
  Plan<WrittenStep> plan;
  plan.units      = grid.GetSource().NumSteps();
  plan.state      = readers.state;
  plan.makeWorker = [&grid, &files, open = readers.open,
                     makeGrid = std::move(makeGrid)](bool isFirst) -> Plan<WrittenStep>::Worker {
    std::shared_ptr<StoredDatabase> stored = isFirst || !open ? nullptr : open();
    if (!isFirst && !stored) return {};
    const std::shared_ptr<ExportedGrid> own = isFirst ? nullptr : makeGrid(stored->Get());
    return [stored, own, &source = isFirst ? grid.GetSource() : own->GetSource(), &files](std::size_t step) {
      ThrowIfInterrupted();
      OutputFile::WriteBeside(files[step].beside, files[step].path,
                              [&](std::ostream& out) { WriteVtu(source, step, out); });
      return WrittenStep{source.NodesWithout(), source.ElementsWithout()};
    };
  };
  return plan;
}

/// Writes one step a file, then their list.
/// @return all that the files leave to be told
WrittenStep WritePvd(const GridSource& source, Plan<WrittenStep> plan, Crew& crew, std::vector<StepFile>& stepFiles,
                     const std::filesystem::path& output, ExportReport& report, Listener& listener)
{
  const std::size_t                        numSteps = source.NumSteps();
  const std::size_t                        width    = std::to_string(numSteps).size();
  OutputFile                               list(output);
  std::vector<std::unique_ptr<OutputFile>> files;
  std::vector<std::filesystem::path>       names;
  for (std::size_t step = 0; step < numSteps; ++step) {
    std::string number = std::to_string(step + 1);
    number.insert(0, width - number.size(), '0');
    names.push_back(output.stem().string() + '-' + number + ".vtu");
    report.files.push_back(output.parent_path() / names.back());
    files.push_back(std::make_unique<OutputFile>(report.files.back()));
    stepFiles.push_back({report.files.back().string(), files.back()->PathToWrite().string()});
    // There may be more steps than files that a process may have open.
    files.back()->Finish();
  }
  plan.makeBrief = [&stepFiles] {
    ParcelWriter parcel;
    parcel(stepFiles);
    return parcel.Take();
  };
  plan.onProgress = [&](std::size_t done) { listener.Progress("export", done, numSteps, "steps"); };
  WrittenStep all;
  CarryOut(crew, std::move(plan), [&all](std::size_t, const WrittenStep& written) {
    all.nodesWithout.insert(written.nodesWithout.begin(), written.nodesWithout.end());
    all.elementsWithout.insert(written.elementsWithout.begin(), written.elementsWithout.end());
  });
  list.Write(PvdText(source.Plan().times.empty() ? std::vector<double>{0.0} : source.Plan().times, names));
  list.Finish();
  // The list comes last: all that it names is there.
  for (const auto& file : files) file->Publish();
  list.Publish();
  return all;
}

}  // namespace

void CheckExportOutput(const std::filesystem::path& output)
{
  static_cast<void>(FormatOf(output));
  CheckOutputFile(output);
}

bool IsSharedExport(const std::filesystem::path& output) { return FormatOf(output) == Format::Pvd; }

void CheckLink(const std::filesystem::path& database, const std::filesystem::path& output)
{
  if (FormatOf(output) != Format::VtkHdf) Fail(output.string() + ": expected a .vtkhdf for --link");
  if (!IsWorkingDatabase(database)) Fail(database.string() + ": expected a working database (.fed) for --link");
}

ExportReport Export(const FED_Database& database, const ExportRequest& request, Listener& listener)
{
  const Format format    = request.table != nullptr ? Format::Csv : FormatOf(request.output);
  const bool   isTable   = format == Format::Csv;
  const int    iteration = IterationOf(request.blocks, request.name);
  const auto   blocks    = isTable ? request.blocks : WithoutCoordinates(request.blocks);
  if (isTable && request.groups == ExportGroupForm::Points && HasGroups(blocks))
    Fail("a table has no points: expected --groups arrays");

  // A table of groups takes their names from the mesh, where there is one.
  const bool hasMesh = database.HasDataBlock(FED_DataDescriptor(iteration, OnfKind::Coordinates));
  Mesh       mesh;
  if (!isTable || (hasMesh && HasGroups(blocks))) mesh = ReadMesh(database, iteration, request.name);
  ExportGroups groups(database, iteration, mesh, blocks);
  ExportPlan   plan = MakeExportPlan(database, blocks, request.components, groups, request.groups);

  ExportReport    report;
  const KindTable kinds(database);
  for (const int onf : plan.leftOut) report.leftOut.push_back(kinds.GetName(onf));
  for (const ExportArray& array : plan.arrays) report.arrays.push_back(array.name);
  report.times         = plan.times;
  report.areTimesKnown = plan.areTimesKnown;
  report.files.push_back(request.output);
  NoteTimes(listener, plan);

  if (request.table != nullptr) {
    WriteCsv(database, plan, *request.table, listener);
    return report;
  }
  if (isTable) {
    OutputFile file(request.output);
    WriteCsv(database, plan, file.Stream(), listener);
    file.Publish();
    return report;
  }

  ExportedGrid grid(database, iteration, std::move(mesh), std::move(groups), std::move(plan));
  GridSource&  source = grid.GetSource();
  report.numPoints    = source.NumPoints();
  report.numCells     = source.NumCells();
  if (format == Format::Vtu && source.NumSteps() > 1)
    Fail(request.output.string() + ": expected one step for a .vtu, found " + std::to_string(source.NumSteps()) +
         "; a .pvd or .vtkhdf holds all of them, --steps last selects one");
  WrittenStep without;
  if (format == Format::Pvd) {
    std::vector<StepFile> files;
    CrewOrSelf            crew(request.readers.crew);
    Plan<WrittenStep>     steps = MakeStepPlan(grid, request.readers, files, [&](const FED_Database& own) {
      Mesh         ownMesh = ReadMesh(own, iteration, request.name);
      ExportGroups ownGroups(own, iteration, ownMesh, blocks);
      ExportPlan   ownPlan = MakeExportPlan(own, blocks, request.components, ownGroups, request.groups);
      return std::make_shared<ExportedGrid>(own, iteration, std::move(ownMesh), std::move(ownGroups),
                                            std::move(ownPlan));
    });
    if (crew.Get().Leads()) {
      without = WritePvd(source, std::move(steps), crew.Get(), files, request.output, report, listener);
    } else {
      steps.takeBrief = [&files](std::string_view bytes) {
        ParcelReader parcel(bytes);
        parcel(files);
      };
      CarryOut(crew.Get(), std::move(steps), [](std::size_t, const WrittenStep&) {});
    }
  } else {
    OutputFile file(request.output);
    if (format == Format::Vtu) {
      WriteVtu(source, 0, file.Stream());
    } else if (request.linkedFolder.empty()) {
      WriteVtkHdf(source, file.PathToWrite(), request.output.string(), listener);
    } else {
      LinkedRows links(database, grid.GetMesh(), source.Plan(), request.linkedFolder, request.output);
      WriteVtkHdf(source, file.PathToWrite(), request.output.string(), listener, &links);
      NoteLinks(listener, request, links);
    }
    file.Publish();
    without = {source.NodesWithout(), source.ElementsWithout()};
  }
  NoteIds(listener, without.nodesWithout, "node");
  NoteIds(listener, without.elementsWithout, "element");
  return report;
}

}  // namespace quilon
