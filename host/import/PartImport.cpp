#include "import/PartImport.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <bundled/FED_ResultDatabase.h>

#include "database/DatabaseFolder.h"
#include "database/DatabaseParts.h"
#include "import/Derivation.h"
#include "import/ImportJob.h"
#include "import/ImportOptions.h"
#include "import/ImportReport.h"
#include "import/ModelBlocks.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "readers/Readers.h"
#include "selection/KindRequests.h"

namespace quilon {

namespace {

/// Fields of whole results.
using Fields = std::vector<FieldMark>;

/// @return parts of about the same size, by the file alone; nothing where a result comes back behind another one
std::vector<Fields> Divide(const std::vector<ResultFile::Head>& heads)
{
  std::set<StepKey>          seen;
  std::vector<Fields>        results;
  std::vector<std::uint64_t> bytes;  // of each result
  for (std::size_t i = 0; i < heads.size(); ++i) {
    if (i == 0 || heads[i].key != heads[i - 1].key) {
      if (!seen.insert(heads[i].key).second) return {};
      results.emplace_back();
      bytes.push_back(0);
    }
    results.back().push_back(heads[i].mark);
    bytes.back() += heads[i].mark.bytes;
  }
  std::vector<Fields> parts;
  std::size_t         next = 0;
  for (const std::size_t end : DivideIntoParts(bytes, kMostDatabaseParts)) {
    Fields& part = parts.emplace_back();
    for (; next < end; ++next) part.insert(part.end(), results[next].begin(), results[next].end());
  }
  return parts;
}

}  // namespace

template <typename Parcel>
void Travel(Parcel& parcel, FieldMark& mark)
{
  parcel(mark.position, mark.line, mark.bytes);
}

template <typename Parcel>
void Travel(Parcel& parcel, ResultStep& step)
{
  parcel(step.step, step.analysis, step.substep, step.number, step.meaning, step.value, step.tolerance);
}

template <typename Parcel>
void Travel(Parcel& parcel, SkippedRows& skipped)
{
  parcel(skipped.reason, skipped.rows);
}

namespace {

struct Part
{
  PartTicket ticket;
  Fields     fields;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Part& part)
  {
    parcel(part.ticket, part.fields);
  }
};

/// What those who read parts have to know beside the command line.
struct Brief
{
  FED_PartBase            base;
  std::vector<ResultStep> steps;  ///< all, in the order of the file
  std::vector<Part>       parts;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, Brief& brief)
  {
    parcel(brief.base, brief.steps, brief.parts);
  }
};

/// What became of a part.
struct ReadPart
{
  std::uint64_t            segment = 0;
  std::vector<SkippedRows> skipped;

  template <typename Parcel>
  friend void Travel(Parcel& parcel, ReadPart& part)
  {
    parcel(part.segment, part.skipped);
  }
};

/// Reads parts, one thread its own.
class PartReader
{
public:
  /// All borrowed.
  /// @param mesh of the job
  PartReader(const ResultJob& files, const ImportOptions& options, const Brief& brief, const ResultMesh& mesh)
      : files_(files), options_(options), brief_(brief), mesh_(mesh)
  {}

  ReadPart Read(std::size_t number) const
  {
    const Part&   part = brief_.parts[number];
    WrittenPart   written(part.ticket, brief_.base);
    FED_Database& database = written.Get();
    ImportRecord  record;
    ModelBlocks   model(database, options_.iteration, record);
    ImportContext context{nullptr, {}, model, false, &mesh_};
    UserKindPool  kinds(database);
    ImportJob     job(database, options_, context, kinds, record, files_);
    for (const ResultStep& step : brief_.steps) job.steps.AddListed(step, true);
    ResultFile file(*files_.results, ResultFile::PassResults, job);
    for (const FieldMark& mark : part.fields) file.ReadField(mark);
    if (options_.requests != nullptr) {
      quilon::DerivePrincipals(database, *options_.requests, {});
    } else {
      KindRequests all("all", KindTable());
      quilon::DerivePrincipals(database, all, {});
    }
    return {written.Finish(), record.Skipped()};
  }

private:
  const ResultJob&     files_;
  const ImportOptions& options_;
  const Brief&         brief_;
  const ResultMesh&    mesh_;
};

/// @return what tells whether all have found the same file
std::string StateOf(const ResultJob& files)
{
  return files.results ? std::to_string(StatusOf(files.results->Path()).size) : std::string();
}

/// @return the results of the file, each once
std::vector<ResultStep> ListSteps(const std::vector<ResultFile::Head>& heads)
{
  std::vector<ResultStep> steps;
  for (std::size_t i = 0; i < heads.size(); ++i)
    if (i == 0 || heads[i].key != heads[i - 1].key) steps.push_back(heads[i].step);
  return steps;
}

}  // namespace

bool MayBeDivided(const ImportJob& job)
{
  const ImportOptions& options = job.options;
  return options.crew != nullptr && options.parts != nullptr && !options.keepWholeSteps && job.isAlone &&
         job.files.results && !job.files.prints && job.files.results->HasMarks() &&
         StatusOf(job.files.results->Path()).size >= 2 * LeastPartBytes();
}

bool ReadInParts(ImportJob& job, const std::vector<ResultFile::Head>& heads)
{
  std::vector<Fields> fields = Divide(heads);
  if (fields.size() < 2) return false;
  const ImportOptions&          options = job.options;
  const std::vector<PartTicket> tickets = options.parts->GiveOut(fields.size());
  Brief                         brief{options.parts->GetBase(), ListSteps(heads), {}};
  for (std::size_t i = 0; i < fields.size(); ++i) brief.parts.push_back({tickets[i], std::move(fields[i])});

  Plan<ReadPart> plan;
  plan.units     = tickets.size();
  plan.state     = StateOf(job.files);
  plan.makeBrief = [&] {
    std::vector<int> nodes = job.mesh.ListNodes();
    ParcelWriter     parcel;
    parcel(brief, nodes);
    return parcel.Take();
  };
  plan.makeWorker = [&](bool) -> Plan<ReadPart>::Worker {
    return [reader = PartReader(job.files, options, brief, job.mesh)](std::size_t part) { return reader.Read(part); };
  };
  if (options.progress)
    plan.onProgress = [&](std::size_t done) {
      options.progress("reading " + job.files.results->Path().filename().string(), done, tickets.size());
    };
  CarryOut(*options.crew, std::move(plan), [&](std::size_t part, const ReadPart& read) {
    options.parts->Take(tickets[part], read.segment);
    for (const SkippedRows& skipped : read.skipped) job.record.Skip(skipped.reason, skipped.rows);
  });
  return true;
}

void HelpToReadParts(const std::vector<std::filesystem::path>& files, const ImportOptions& options)
{
  Brief          brief;
  ResultMesh     mesh({});
  const JobFiles found = FindReaders(files);
  if (found.jobs.empty()) return LeaveToLeader(*options.crew);
  Plan<ReadPart> plan;
  plan.state     = StateOf(found.jobs.front());
  plan.takeBrief = [&](std::string_view bytes) {
    std::vector<int> nodes;
    ParcelReader     parcel(bytes);
    parcel(brief, nodes);
    mesh.AddNodes(nodes, std::vector<double>(3 * nodes.size()));
  };
  plan.makeWorker = [&](bool) -> Plan<ReadPart>::Worker {
    return
        [reader = PartReader(found.jobs.front(), options, brief, mesh)](std::size_t part) { return reader.Read(part); };
  };
  CarryOut(*options.crew, std::move(plan), [](std::size_t, const ReadPart&) {});
}

}  // namespace quilon
