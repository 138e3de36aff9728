#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include <bundled/NativePath.h>
#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/NumberOptions.h"
#include "commands/WaitOption.h"
#include "commands/WriteReport.h"
#include "database/DatabaseFolder.h"
#include "database/Publication.h"
#include "database/ScratchDatabase.h"
#include "diff/Verification.h"
#include "import/OpenedDatabase.h"
#include "kinds/UserKinds.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "QuilonOnfToVtm.h"
#include "selection/LoadCaseMap.h"
#include "terminal/Console.h"
#include "text/Failure.h"

namespace quilon {

namespace {

struct Options
{
  std::string onf;
  std::string output;
  int         iteration      = 0;
  int         loadCaseOffset = 0;
  std::string loadCaseMap;
  bool        verify = false;
  WaitOptions wait;
  bool        json = false;
};

/// @return the key that the copy of a block has
FED_DataDescriptor KeyOfCopy(FED_DataDescriptor key, const Options& options, const std::map<int, int>& loadCaseMap)
{
  if (!key.IsSet(FED_DataDescriptor::Iteration)) key.SetInteger(FED_DataDescriptor::Iteration, options.iteration);
  if (!key.IsSet(FED_DataDescriptor::LoadCase)) return key;
  const int  loadCase = key.GetInteger(FED_DataDescriptor::LoadCase);
  const auto found    = loadCaseMap.find(loadCase);
  key.SetInteger(FED_DataDescriptor::LoadCase,
                 (found == loadCaseMap.end() ? loadCase : found->second) + options.loadCaseOffset);
  return key;
}

void Run(const Options& options, CommandContext& context)
{
  Publication publication(options.output, Publication::AnyDatabase, PatienceOf(options.wait, context.console));
  const std::map<int, int> loadCaseMap = ParseLoadCaseMap(options.loadCaseMap);
  if (!IsOnfFolder(options.onf)) Fail(options.onf + ": not an ONF folder");
  const auto        onf    = OpenOnf(options.onf);
  const std::size_t before = onf->GetDataDescriptors(FED_DataDescriptorPattern()).size();
  if (before == 0) Fail(options.onf + ": holds no blocks");

  FED_Database& working = publication.Target();
  CopyUserKindNames(*onf, working);
  const LargeOnfOnDisk large;
  QuilonOnfToVtm::CopyOnfToVtm(WidePath(options.onf), working, FED_DataDescriptorPattern(), options.iteration,
                               options.loadCaseOffset, &loadCaseMap);
  // Blocks that come to have one key are mixed record by record: never what anybody wants.
  const std::size_t after = working.GetDataDescriptors(FED_DataDescriptorPattern()).size();
  if (after != before)
    Fail(options.onf + ": " + std::to_string(before) + " blocks would become " + std::to_string(after) +
         ", expected a load case map and an iteration that keep them apart");
  const std::size_t written = publication.Publish();
  if (options.verify) {
    const auto     keyOf = [&](const FED_DataDescriptor& key) { return KeyOfCopy(key, options, loadCaseMap); };
    OpenedDatabase result(options.output, context.console);
    VerifyWritten(*onf, onf->GetDataDescriptors(FED_DataDescriptorPattern()), options.onf, result.Get(), options.output,
                  keyOf);
  }
  ReportWritten(context.output, options.json, options.output, written, options.verify);
}

}  // namespace

CommandFunction DefineFromOnf(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("ONF", options->onf, "ONF folder to read")->required();
  app.add_option("-o,--output", options->output,
                 "Working database (.fed) or ONF folder to write; blocks of equal keys are replaced")
      ->required()
      ->type_name("OUT");
  AddIntegerOption(app, "--iteration", options->iteration, "Iteration of blocks that have none (default: 0)");
  app.add_option("--load-case-map", options->loadCaseMap, "Load cases that become others: 4:2,5:3")
      ->type_name("OLD:NEW,...");
  AddIntegerOption(app, "--load-case-offset", options->loadCaseOffset, "Added to every load case, after the map");
  app.add_flag("--verify", options->verify, "Read back what was written and compare every value with the folder");
  AddWriterOptions(app, options->wait);
  app.add_flag("--json", options->json, "Print JSON");
  app.footer(
      "An iteration that a block has stays. Load cases go through the map first; one that the map does not hold "
      "stays,\n"
      "and the offset is added to both.\n"
      "\n"
      "Example:\n"
      "  quilon from-onf wing.onf -o all.fed --iteration 3 --load-case-map 4:2,5:3 --load-case-offset 100");
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
