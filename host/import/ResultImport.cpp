#include "import/ResultImport.h"

#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include <QuilonDbConnector/FED_Database.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>
#include <QuilonUtilities/FED_Failure.h>
#include <QuilonUtilities/FED_LogMacros.h>

#include "import/DeckImporter.h"
#include "import/Derivation.h"
#include "import/ImportJob.h"
#include "import/ModelBlocks.h"
#include "import/PartImport.h"
#include "import/ResultFile.h"
#include "readers/Readers.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

constexpr char kTag[] = "|%P|QuilonHost|ResultImport";

class EveryRequest : public OnfResultRequestFile
{
public:
  bool typeIsRequested(int) const override { return true; }
};

/// Reads the deck, makes sets of the groups and writes what the deck says beside its mesh.
ImportedDeck ReadDeck(const InputDeckReader& reader, FED_Database& target, const ImportOptions& options,
                      ModelBlocks& blocks, ImportRecord& record)
{
  ImportedDeck deck(reader.Read(options.deck, options.groups));
  SaveModel(deck, blocks, target, options.iteration);
  for (const std::filesystem::path& file : deck->Includes()) record.AddInclude(file);
  return deck;
}

/// Reads the files of one job one after the other.
class JobReader
{
public:
  explicit JobReader(ImportJob& job) : files_(job.files), job_(job) {}

  /// @throws FED_Failure for bad input. With keepWholeSteps the results before the bad one are complete by then.
  void Read()
  {
    if (!files_.prints) {
      ReadResults();
    } else {
      if (files_.results) {
        ReadFile(*files_.results, ResultFile::PassMesh);
      } else {
        job_.SaveMesh();
      }
      if (files_.status) ResultFile(*files_.status, ResultFile::PassSteps, job_).Read();
      if (job_.mesh.IsEmpty()) {
        job_.record.Notice(files_.prints->Path().filename().string() + ": neither " + files_.resultsName +
                           " nor a deck with its mesh, nothing is averaged at nodes");
      }
      ReadFile(*files_.prints, ResultFile::PassResults);
      // Last, because the program's averages go elsewhere where there are ours, and are compared with them.
      if (files_.results) ReadFile(*files_.results, ResultFile::PassResults);
    }
    const std::string name = files_.stem.filename().string();
    if (job_.blocks.NumOverwritten() > 0) {
      job_.record.Notice(name + ": " + std::to_string(job_.blocks.NumOverwritten()) +
                         " blocks of results that the database had already are written over");
    }
    const std::size_t numWhole = job_.blocks.DropBroken();
    job_.blocks.WriteScalars();
    if (failure_) {
      FED_LogMacros::log_msg(FED_LogMacros::LogNotice, "host/ResultImport", __LINE__, kTag,
                             "keeping %Iu whole results of %s, what follows is broken", numWhole, name.c_str());
      std::rethrow_exception(failure_);
    }
  }

private:
  void ReadResults()
  {
    if (!MayBeDivided(job_)) return ReadFile(*files_.results, ResultFile::PassAll);
    if (!ReadInParts(job_, ReadHeads())) ReadFile(*files_.results, ResultFile::PassResults);
  }

  std::vector<ResultFile::Head> ReadHeads()
  {
    ResultFile file(*files_.results, ResultFile::PassHeads, job_);
    try {
      return file.ReadHeads();
    } catch (const FED_Failure& failure) {
      if (!file.HasWhole()) throw;
      throw BrokenBehindResults(failure.GetMessage(), failure.GetTag());
    }
  }

  /// Keeping whole steps is the one reason to hold a failure back: what precedes the broken result is still completed
  /// from the job's other files, and the failure follows then.
  void ReadFile(const ResultReader& reader, ResultFile::Pass pass)
  {
    ResultFile file(reader, pass, job_);
    try {
      file.Read();
    } catch (const FED_Failure& failure) {
      if (!job_.options.keepWholeSteps && pass == ResultFile::PassMesh && file.HasWhole())
        throw BrokenBehindResults(failure.GetMessage(), failure.GetTag());
      if (!job_.options.keepWholeSteps) throw;
      if (!failure_) failure_ = std::current_exception();
      job_.blocks.LimitTo(file.FirstBroken().value_or(StepKey{}));
    }
  }

  const ResultJob&   files_;
  ImportJob&         job_;
  std::exception_ptr failure_;
};

[[noreturn]] void Refuse(const std::string& message) { throw RefusedImport(message, kTag); }

std::string FormatDeviation(double deviation)
{
  char text[32];
  std::snprintf(text, sizeof text, "%.2g", deviation);
  return text;
}

/// @return "displacement of 63 nodes (29, 50, 71, ...), by up to 0.41 of its largest value (step 1, increment 1)"
std::string Describe(const ValueDisagreement& one)
{
  std::string nodes;
  for (const int node : one.firstNodes) nodes += (nodes.empty() ? "" : ", ") + std::to_string(node);
  if (one.nodes > one.firstNodes.size()) nodes += ", ...";
  return one.quantity + " of " + Counted(one.nodes, "node") + " (" + nodes + "), by up to " +
         FormatDeviation(one.largest) + " of its largest value (" + one.step + ")";
}

/// Six digits of the solver's averages and seven of the values that ours are made of make less; of 200 jobs the largest
/// was 2e-5.
constexpr double kDigitsOfAverages = 5e-5;

/// @return "averages of stress (C3D4), by up to 0.01 of its largest value"
std::string Describe(const AverageDeviation& one)
{
  return "averages of " + one.quantity + " (" + one.elementType + "), by up to " + FormatDeviation(one.largest) +
         " of its largest value";
}

/// Says where two files of a job disagree. What is far apart is of two runs, and mixing them helps nobody.
void JudgeDeviations(const ImportOptions& options, ImportRecord& record)
{
  std::string apart;
  const auto  add = [&apart](const std::string& text) { apart += (apart.empty() ? "" : "; ") + text; };
  for (const ValueDisagreement& one : record.Report().disagreements) {
    record.Notice("the files disagree on the " + Describe(one) + "; the value of " + one.kept + " is kept");
    if (!(one.largest <= options.maxDeviation)) add(Describe(one));
  }
  for (const AverageDeviation& one : record.Report().deviations) {
    if (one.largest <= kDigitsOfAverages) continue;
    if (!(one.largest <= options.maxDeviation)) add(Describe(one));
    record.Notice("the files disagree on the " + Describe(one) + "; ours are kept");
    record.Skip("averages that files disagree on (ours kept)", one.nodes);
  }
  if (!apart.empty())
    Refuse("the files are not of one run, they disagree on: " + apart + "; expected at most " +
           FormatDeviation(options.maxDeviation) + ", which --max-deviation sets");
}

void RefuseSkipped(const ImportRecord& record)
{
  std::string message;
  for (const SkippedRows& skipped : record.Skipped()) {
    message += (message.empty() ? "" : "; ") + std::to_string(skipped.rows) + " x " + skipped.reason;
  }
  if (!message.empty()) Refuse("expected to read everything, left out: " + message);
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
  const JobFiles found = FindReaders(files);
  if (!found.deck && !options.groups.empty()) Fail("groups become sets of a deck: expected the deck among the files");
  ImportRecord                record;
  std::optional<ImportedDeck> deck;
  ModelBlocks                 model(target, options.iteration, record);
  ImportContext               context{nullptr, {}, model, found.jobs.size() == 1};
  if (found.deck) context.deck = &deck.emplace(ReadDeck(*found.deck, target, options, model, record));
  context.groups = ElementGroups(options.averageBy, context.deck);

  for (const std::filesystem::path& file : found.passedOver)
    record.Notice(file.string() + ": no result file and no deck, passed over");
  for (const std::filesystem::path& file : found.empty) record.Notice(file.string() + ": empty, passed over");
  UserKindPool kinds(target);
  if (found.jobs.empty()) ImportJob(target, options, context, kinds, record, ResultJob()).SaveMesh();
  for (const ResultJob& jobFiles : found.jobs) {
    ImportJob job(target, options, context, kinds, record, jobFiles);
    try {
      JobReader(job).Read();
    } catch (const FED_Failure&) {
      if (options.keepWholeSteps) Derive(target, options);
      throw;
    }
  }
  JudgeDeviations(options, record);
  if (options.strict) RefuseSkipped(record);

  Derive(target, options);
  ImportReport report = record.Take();
  report.blocks       = CountBlocks(target, options.iteration);
  return report;
}

}  // namespace quilon
