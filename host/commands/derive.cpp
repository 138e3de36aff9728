#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/WaitOption.h"
#include "database/BlockSummary.h"
#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "database/WatchedFiles.h"
#include "import/Derivation.h"
#include "import/OpenedDatabase.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/KindRequests.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  std::string output;
  std::string requests = "all";
  double      wait     = 0;
  bool        json     = false;
};

using Descriptors = std::set<FED_DataDescriptor>;

Descriptors DescriptorsOf(const FED_Database& database)
{
  const auto list = database.GetDataDescriptors(FED_DataDescriptorPattern());
  return Descriptors(list.begin(), list.end());
}

/// Kinds whose blocks are added to those of another kind and then removed, and the kind that they are added to.
const std::map<int, int> kContributions = {{OnfKind::ElementEnergyContribution, OnfKind::ElementEnergy},
                                           {OnfKind::NodeEnergyContribution, OnfKind::NodeEnergy}};

/// What derivation made of a database.
struct Changes
{
  std::vector<FED_DataDescriptor> added;
  std::vector<FED_DataDescriptor> summed;   // contributions have been added to them
  std::vector<FED_DataDescriptor> removed;  // these contributions

  bool IsEmpty() const noexcept { return added.empty() && summed.empty(); }

  std::vector<FED_DataDescriptor> GetWritten() const
  {
    std::vector<FED_DataDescriptor> written = added;
    written.insert(written.end(), summed.begin(), summed.end());
    return written;
  }
};

Changes Compare(const Descriptors& before, const Descriptors& after)
{
  Changes changes;
  for (const FED_DataDescriptor& descriptor : after)
    if (!before.contains(descriptor)) changes.added.push_back(descriptor);
  for (const FED_DataDescriptor& descriptor : before) {
    if (after.contains(descriptor)) continue;
    changes.removed.push_back(descriptor);
    FED_DataDescriptor sum = descriptor;
    sum.SetInteger(FED_DataDescriptor::OnfId, kContributions.at(descriptor.GetInteger(FED_DataDescriptor::OnfId)));
    changes.summed.push_back(sum);
  }
  return changes;
}

/// Derives what is requested of all iterations. Blocks without records are not kept.
Changes Derive(FED_Database& database, KindRequests& requests)
{
  const Descriptors before = DescriptorsOf(database);
  std::set<int>     iterations;
  for (const FED_DataDescriptor& descriptor : before)
    iterations.insert(descriptor.GetInteger(FED_DataDescriptor::Iteration));
  for (const int iteration : iterations) {
    ThrowIfInterrupted();
    DeriveResults(database, requests, iteration);
  }

  Changes changes = Compare(before, DescriptorsOf(database));
  std::erase_if(changes.added, [&database](const FED_DataDescriptor& descriptor) {
    if (HasRecords(database.GetConstDataBlock(descriptor))) return false;
    database.DeleteDataBlock(descriptor);
    return true;
  });
  return changes;
}

void Report(const Options& options, Output& output, const Changes& changes, const KindTable& kinds)
{
  const std::vector<FED_DataDescriptor> written = changes.GetWritten();
  std::map<std::string, std::size_t>    blocksOfKind;
  for (const FED_DataDescriptor& descriptor : written) ++blocksOfKind[kinds.GetName(descriptor)];
  const std::string& folder = options.output.empty() ? options.database : options.output;
  if (options.json) {
    Json report{{"output", folder}, {"blocks", written.size()}, {"kinds", Json::object()}};
    for (const auto& [kind, blocks] : blocksOfKind) report["kinds"][kind] = blocks;
    return output.Write(JsonText(report, 2) + '\n');
  }
  output.Write(folder + ": " + Counted(written.size(), "block") + " derived\n");
  for (const auto& [kind, blocks] : blocksOfKind)
    output.Write("  " + Printable(kind) + ": " + std::to_string(blocks) + '\n');
}

/// Results go where their sources are, so that memory stays flat.
void DeriveInWorkingDatabase(const Options& options, CommandContext& context)
{
  WatchedFiles       files({}, PatienceOf(options.wait, context.console));
  FED_ResultDatabase database(options.database, FED_ResultDatabase::ReadWrite, files.GetOptions());
  const KindTable    kinds(database);
  KindRequests       requests(options.requests, kinds);
  const Changes      changes = Derive(database, requests);
  if (!changes.IsEmpty()) database.Commit();
  Report(options, context.output, changes, kinds);
}

/// Without an output DB is an ONF folder, which gets only what it does not have yet.
void DeriveInCopy(const Options& options, CommandContext& context)
{
  const bool      inPlace = options.output.empty();
  Publication     publication(inPlace ? options.database : options.output, Publication::AnyDatabase,
                          PatienceOf(options.wait, context.console));
  OpenedDatabase  source(options.database, context.console, OpenedDatabase::DeriveNothing);
  const KindTable kinds(source.Get());
  KindRequests    requests(options.requests, kinds);
  const std::vector<FED_DataDescriptor> all    = source.Get().GetDataDescriptors(FED_DataDescriptorPattern());
  FED_Database&                         target = publication.Target();
  source.CopyTo(target, all);
  const Changes changes = Derive(target, requests);
  if (!inPlace)
    publication.Publish();
  else if (!changes.IsEmpty())
    publication.PublishBlocks(target, changes.GetWritten(), changes.removed);
  Report(options, context.output, changes, kinds);
}

void Run(const Options& options, CommandContext& context)
{
  const bool inPlace = options.output.empty();
  if (inPlace && IsWorkingDatabaseFolder(options.database)) return DeriveInWorkingDatabase(options, context);
  if (inPlace && !IsOnfFolder(options.database))
    Fail(options.database + ": not a database to add results to, expected a working database, an ONF folder or -o OUT");
  DeriveInCopy(options, context);
}

}  // namespace

CommandFunction DefineDerive(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->database, "Working database (.fed), ONF folder or solver result file (.frd, .dat)")
      ->required();
  app.add_option("-o,--output", options->output,
                 "Working database (.fed) or ONF folder for everything (default: add to DB)")
      ->type_name("OUT");
  app.add_option("--request", options->requests,
                 "What to derive: kinds, the path of a request file, all or none (default: all)")
      ->type_name("KIND,...|FILE");
  AddWaitOption(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "Derives principal values of stresses and strains (520, 530, 560, 570) and adds energy contributions to the\n"
      "energies (903 to 540, 913 to 541). Results that exist are kept.\n"
      "\n"
      "Examples:\n"
      "  quilon derive bracket.onf --request stress-principal,strain-principal\n"
      "  quilon derive job.dat --request all -o job.onf");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
