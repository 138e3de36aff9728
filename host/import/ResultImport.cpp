#include "import/ResultImport.h"

#include <algorithm>
#include <cctype>
#include <exception>
#include <optional>

#include <bundled/NativePath.h>
#include <QuilonDbConnector/FED_Database.h>
#include <QuilonOnfEngine/OnfGroupsFile.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/FED_LogMacros.h>

#include "import/DatResultFile.h"
#include "import/DeckImporter.h"
#include "import/Derivation.h"
#include "import/FrdResultFile.h"
#include "import/ImportJob.h"
#include "text/Case.h"
#include "text/Failure.h"

namespace quilon {

namespace {

using calculix::DatResultFile;
using calculix::DeckImporter;
using calculix::ElementGroups;
using calculix::FrdResultFile;
using calculix::ImportContext;
using calculix::ImportedDeck;
using calculix::ImportJob;
using calculix::ImportRecord;

constexpr char kTag[] = "|%P|QuilonHost|ResultImport";

/// The files of one job; paths that are not given are empty.
struct JobFiles
{
  std::filesystem::path stem;
  std::filesystem::path frd;
  std::filesystem::path dat;
  std::filesystem::path sta;
};

class EveryRequest : public OnfResultRequestFile
{
public:
  bool typeIsRequested(int) const override { return true; }
};

/// The files of an import.
struct ImportFiles
{
  std::filesystem::path deck;  // empty without a deck
  std::vector<JobFiles> jobs;
};

ImportFiles GroupByStem(const std::vector<std::filesystem::path>& files)
{
  ImportFiles            found;
  std::vector<JobFiles>& jobs = found.jobs;
  for (const std::filesystem::path& file : files) {
    const std::string extension = LowerExtension(file);
    if (extension == ".inp") {
      if (!found.deck.empty() && found.deck != file)
        Fail("expected one deck, found " + found.deck.string() + " and " + file.string());
      found.deck = file;
      continue;
    }
    // Absolute, so that "./job.frd" belongs to "job.dat" and a file that is named twice is read once.
    const std::filesystem::path stem = std::filesystem::absolute(file).lexically_normal().replace_extension();
    auto job = std::find_if(jobs.begin(), jobs.end(), [&stem](const JobFiles& known) { return known.stem == stem; });
    if (job == jobs.end()) job = jobs.insert(jobs.end(), JobFiles{stem, {}, {}, {}});

    if (extension == ".frd") {
      job->frd = file;
    } else if (extension == ".dat") {
      job->dat = file;
    } else if (extension == ".sta") {
      job->sta = file;
    } else {
      Fail(file.string() + ": expected a result file .frd, .dat or .sta, or a deck .inp");
    }
  }

  for (JobFiles& job : jobs) {
    if (job.frd.empty() && job.dat.empty()) {
      Fail(job.sta.string() + ": expected a .frd or .dat of the same name with it");
    }
    std::filesystem::path beside = job.frd.empty() ? job.dat : job.frd;  // named as the user names the job
    beside.replace_extension(".sta");
    if (job.sta.empty() && std::filesystem::exists(beside)) job.sta = beside;
  }
  return found;
}

/// Reads the deck, makes sets of the groups and writes what the deck says beside its mesh.
void ReadDeck(const std::filesystem::path& path, FED_Database& target, const ImportOptions& options, ImportedDeck& deck)
{
  DeckImporter importer(path, options.deck, deck, target, options.iteration);
  importer.ReadModel();
  importer.CheckModel();
  if (!options.groups.empty()) importer.CreateFEMSets(OnfGroupsFile(WidePath(options.groups)));
  importer.ConvertModel();
}

/// Reads the files of one job one after the other.
class JobReader
{
public:
  JobReader(const JobFiles& files, ImportJob& job) : files_(files), job_(job) {}

  /// @throws FED_Failure for bad input. With keepWholeSteps the results before the bad one are complete by then.
  void Read()
  {
    if (files_.dat.empty()) {
      ReadFrdPass(FrdResultFile::PassAll);
    } else {
      if (!files_.frd.empty()) {
        ReadFrdPass(FrdResultFile::PassMesh);
      } else {
        job_.SaveMesh();
      }
      if (!files_.sta.empty()) job_.Steps().AddStatusFile(files_.sta);
      ReadDatFile();
      // Last, because the solver's averages go elsewhere where there are ours, and are compared with them.
      if (!files_.frd.empty()) ReadFrdPass(FrdResultFile::PassResults);
    }
    if (job_.NumOverwritten() > 0) {
      job_.Record().Notice(files_.stem.filename().string() + ": " + std::to_string(job_.NumOverwritten()) +
                           " blocks of results that the database had already are written over");
    }
    const std::size_t numWhole = job_.DropBroken();
    job_.WriteScalars();
    if (failure_) {
      FED_LogMacros::log_msg(FED_LogMacros::LogNotice, "host/ResultImport", __LINE__, kTag,
                             "keeping %Iu whole results of %s, what follows is broken", numWhole,
                             files_.stem.filename().string().c_str());
      std::rethrow_exception(failure_);
    }
  }

private:
  void ReadFrdPass(FrdResultFile::Pass pass)
  {
    FrdResultFile file(files_.frd, pass, job_);
    ReadOrLimit(file);
  }

  void ReadDatFile()
  {
    if (job_.Mesh().IsEmpty()) {
      job_.Record().Notice(files_.dat.filename().string() +
                           ": neither a .frd nor a deck with its mesh, nothing is averaged at nodes");
    }
    DatResultFile file(files_.dat, job_);
    ReadOrLimit(file);
  }

  /// Keeping whole steps is the one reason to hold a failure back: what precedes the broken result is still completed
  /// from the job's other files, and the failure follows then.
  template <typename ResultFile>
  void ReadOrLimit(ResultFile& file)
  {
    try {
      file.Read();
    } catch (const FED_Failure&) {
      if (!job_.Options().keepWholeSteps) throw;
      if (!failure_) failure_ = std::current_exception();
      job_.LimitTo(file.Current().value_or(calculix::StepKey{}));
    }
  }

  const JobFiles&    files_;
  ImportJob&         job_;
  std::exception_ptr failure_;
};

void RefuseSkipped(const ImportRecord& record)
{
  std::string message;
  for (const SkippedRows& skipped : record.Skipped()) {
    message += (message.empty() ? "" : "; ") + std::to_string(skipped.rows) + " x " + skipped.reason;
  }
  if (!message.empty()) Fail("expected to read everything, left out: " + message);
}

void Derive(FED_Database& target, const ImportOptions& options)
{
  if (options.requests != nullptr) {
    DeriveResults(target, *options.requests, options.iteration);
  } else {
    EveryRequest everything;
    DeriveResults(target, everything, options.iteration);
  }
}

std::size_t CountBlocks(const FED_Database& database, int iteration)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::Iteration, iteration);
  return database.GetDataDescriptors(pattern).size();
}

}  // namespace

ImportReport ImportResults(const std::vector<std::filesystem::path>& files, FED_Database& target,
                           const ImportOptions& options)
{
  const ImportFiles found = GroupByStem(files);
  if (found.deck.empty() && !options.groups.empty())
    Fail("groups become sets of a deck: expected the deck among the files");
  ImportedDeck  deck;
  ImportContext context;
  if (!found.deck.empty()) {
    ReadDeck(found.deck, target, options, deck);
    context.deck = &deck;
  }
  context.groups = ElementGroups(options.averageBy, context.deck);

  ImportRecord record;
  UserKindPool kinds(target);
  if (found.jobs.empty()) ImportJob(target, options, context, kinds, record, {}).SaveMesh();
  for (const JobFiles& jobFiles : found.jobs) {
    ImportJob job(target, options, context, kinds, record, jobFiles.frd);
    try {
      JobReader(jobFiles, job).Read();
    } catch (const FED_Failure&) {
      if (options.keepWholeSteps) Derive(target, options);
      throw;
    }
  }
  if (options.strict) RefuseSkipped(record);

  Derive(target, options);
  ImportReport report = record.Take();
  report.blocks       = CountBlocks(target, options.iteration);
  return report;
}

}  // namespace quilon
