#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "Derivation.h"
#include "Failure.h"
#include "OpenedDatabase.h"
#include "Publication.h"
#include "selection/KindRequests.h"
#include "selection/KindTable.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"
#include "terminal/JsonText.h"
#include "terminal/Output.h"

namespace quilon {

namespace {

struct Options
{
  std::string database;
  std::string output;
  std::string requests = "all";
  bool        json     = false;
};

using Descriptors = std::set<FED_DataDescriptor>;

Descriptors DescriptorsOf(const FED_Database& database)
{
  const auto list = database.GetDataDescriptors(FED_DataDescriptorPattern());
  return Descriptors(list.begin(), list.end());
}

/// Kinds whose blocks are added to those of another kind and then removed, and the kind that they are added to.
const std::map<int, int> kContributions = {{903, 540}, {913, 541}};

/// What derivation made of a database.
struct Changes
{
  std::vector<FED_DataDescriptor> added;
  std::vector<FED_DataDescriptor> summed;   // contributions have been added to them
  std::vector<FED_DataDescriptor> removed;  // these contributions
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

/// Leaves only what a folder that has the rest does not have yet.
void KeepChanged(FED_ResultDatabase& database, const Changes& changes)
{
  Descriptors changed(changes.added.begin(), changes.added.end());
  changed.insert(changes.summed.begin(), changes.summed.end());
  for (const FED_DataDescriptor& descriptor : DescriptorsOf(database))
    if (!changed.contains(descriptor)) database.DeleteDataBlock(descriptor);
}

void Report(const Options& options, Output& output, const Changes& changes, const KindTable& kinds)
{
  std::map<std::string, std::size_t> blocksOfKind;
  for (const auto* list : {&changes.added, &changes.summed})
    for (const FED_DataDescriptor& descriptor : *list) ++blocksOfKind[kinds.GetName(descriptor)];
  const std::string& folder = options.output.empty() ? options.database : options.output;
  const std::size_t  count  = changes.added.size() + changes.summed.size();
  if (options.json) {
    Json report{{"output", folder}, {"blocks", count}, {"kinds", Json::object()}};
    for (const auto& [kind, blocks] : blocksOfKind) report["kinds"][kind] = blocks;
    return output.Write(JsonText(report, 2) + '\n');
  }
  output.Write(folder + ": " + Counted(count, "block") + " derived\n");
  for (const auto& [kind, blocks] : blocksOfKind)
    output.Write("  " + Printable(kind) + ": " + std::to_string(blocks) + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  if (options.output.empty() && !IsOnfFolder(options.database) && !IsWorkingDatabase(options.database))
    Fail(options.database + ": not a database to add results to, expected a working database, an ONF folder or -o OUT");
  const bool      inPlace = options.output.empty();
  Publication     publication(inPlace ? options.database : options.output);
  OpenedDatabase  database(options.database, context.console, OpenedDatabase::DeriveNothing);
  const KindTable kinds(database.Get());
  KindRequests    requests(options.requests, kinds);

  const auto        copy   = database.Copy(database.Get().GetDataDescriptors(FED_DataDescriptorPattern()));
  const Descriptors before = DescriptorsOf(*copy);
  std::set<int>     iterations;
  for (const FED_DataDescriptor& descriptor : before)
    iterations.insert(descriptor.GetInteger(FED_DataDescriptor::Iteration));
  for (const int iteration : iterations) {
    ThrowIfInterrupted();
    DeriveResults(*copy, requests, iteration);
  }

  const Changes changes = Compare(before, DescriptorsOf(*copy));
  if (!inPlace) {
    publication.Publish(*copy);
  } else if (!changes.added.empty() || !changes.summed.empty()) {
    KeepChanged(*copy, changes);
    publication.Publish(*copy, changes.removed);
  }
  Report(options, context.output, changes, kinds);
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
