#include <charconv>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "commands/Command.h"
#include "commands/NumberOptions.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "diff/DatabaseComparison.h"
#include "diff/MeshMatching.h"
#include "diff/Report.h"
#include "diff/ReportPrinting.h"
#include "diff/RuleLearning.h"
#include "Failure.h"
#include "OpenedDatabase.h"
#include "OutputFile.h"
#include "Program.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/KindTable.h"
#include "terminal/Console.h"
#include "terminal/Format.h"
#include "terminal/Output.h"

namespace quilon {

namespace {

using namespace diff;

struct Options
{
  std::vector<std::string>   databases;
  SelectionOptions           selection;
  std::optional<std::string> abs;
  std::optional<std::string> rel;
  std::optional<std::string> peak;
  std::optional<std::string> ulps;
  std::optional<std::string> nan;
  bool                       any      = false;
  bool                       all      = false;
  bool                       exact    = false;
  bool                       modeSign = false;
  std::vector<std::string>   rules;
  std::string                ruleFile;
  std::string                match = "id";
  std::optional<std::string> pointTolerance;
  std::size_t                maxRecords = QuilonDataBlockDiff::CompareInfo().maxDiffsPerBlock;
  std::size_t                maxBlocks  = QuilonDataBlockDiff::CompareInfo().maxBlockDiffs;
  bool                       norms      = false;
  bool                       brief      = false;
  std::string                junit;
  bool                       learn = false;
  std::string                output;
  std::optional<std::string> factor;
  TableOptions               form;
};

double ParseNumber(const std::string& text, const std::string& option, double least)
{
  double     number = 0.0;
  const auto taken  = std::from_chars(text.data(), text.data() + text.size(), number);
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size() || !std::isfinite(number) || number < least)
    Fail(option + ": '" + text + "', expected a finite number, " + FormatNumber(least) + " or more");
  return number;
}

/// @return the terms that the options spell; empty when none is given
std::string TermsOf(const Options& options)
{
  std::string terms;
  const auto  add = [&terms](const std::string& term) { terms += (terms.empty() ? "" : " ") + term; };
  if (options.exact) add("exact");
  if (options.abs) add("abs=" + *options.abs);
  if (options.rel) add("rel=" + *options.rel);
  if (options.peak) add("peak=" + *options.peak);
  if (options.ulps) add("ulps=" + *options.ulps);
  if (options.any) add("any");
  if (options.all) add("all");
  if (options.nan) add("nan=" + *options.nan);
  if (options.modeSign) add("mode-sign");
  return terms;
}

/// What the options say, read before the databases are opened: a large result takes its time.
struct Request
{
  std::optional<ComparisonRule> rule;            ///< for all kinds; nothing when no option says it
  std::optional<double>         pointTolerance;  ///< to match meshes by; nothing when they are not
};

/// @throws FED_Failure for options that do not go together
void CheckOptions(const Options& options)
{
  if (options.match == "index" && options.pointTolerance)
    Fail("--match index and --match-points exclude each other, expected one at most");
  if (options.brief && (options.form.json || options.form.csv || options.form.table))
    Fail("--brief goes without --json, --csv and --table");
  if (!options.learn) {
    if (options.databases.size() != 2) Fail("expected two databases to compare, A and B");
    if (!options.output.empty()) Fail("-o goes with --learn");
    if (options.factor) Fail("--factor goes with --learn");
    return;
  }
  const std::string terms = TermsOf(options);
  if ((!terms.empty() && terms != "mode-sign") || !options.rules.empty() || !options.ruleFile.empty())
    Fail("--learn writes rules and takes none, expected --mode-sign at most");
  if (!options.junit.empty() || options.brief || options.norms || options.form.json || options.form.csv ||
      options.form.table)
    Fail("--learn reports nothing, expected it without --junit, --json, --csv, --table, --norms and --brief");
  if (options.databases.size() < 2) Fail("--learn: expected two accepted runs or more");
  if (options.output.empty()) Fail("--learn: -o is missing, expected the rules file to write");
}

Request ReadRequest(const Options& options)
{
  CheckOptions(options);
  Request           request;
  const std::string terms = TermsOf(options);
  if (!terms.empty()) request.rule = ParseRule(terms, "");
  if (options.pointTolerance) request.pointTolerance = ParseNumber(*options.pointTolerance, "--match-points", 0.0);
  return request;
}

/// What is said on the command line replaces what a file says.
RuleSet MakeRules(const Options& options, const Request& request, const KindTable& kinds)
{
  const KindResolver resolve = [&kinds](std::string_view text) { return kinds.Resolve(text); };
  RuleSet            rules;
  if (!options.ruleFile.empty()) ReadRuleFile(options.ruleFile, resolve, rules);
  if (request.rule) {
    if (options.exact || options.abs || options.rel || options.peak || options.ulps) {
      rules.fallback = *request.rule;
    } else {
      // --nan and --mode-sign alone leave the tolerances of the file.
      if (request.rule->nan) rules.fallback.nan = request.rule->nan;
      rules.fallback.modeSign = rules.fallback.modeSign || request.rule->modeSign;
    }
  }
  for (const std::string& rule : options.rules) rules.Add(rule, resolve, "--rule: ");
  return rules;
}

/// A database that takes part.
struct Participant
{
  Participant(const std::string& path, Console& console)
      : name(path), opened(path, console), kinds(opened.Get()), allKinds(kinds)
  {}

  ComparedDatabase GetCompared() { return {opened.Get(), blocks}; }

  std::string                     name;
  OpenedDatabase                  opened;
  KindTable                       kinds;
  KindTable                       allKinds;  ///< with those that only the other databases name
  std::vector<FED_DataDescriptor> blocks;    ///< the selected ones
};

using Participants = std::vector<std::unique_ptr<Participant>>;

Participants OpenAll(const Options& options, Console& console)
{
  Participants all;
  for (const std::string& path : options.databases) all.push_back(std::make_unique<Participant>(path, console));
  bool        any = options.selection.ToString().empty();
  std::string names;
  for (const auto& one : all) {
    for (const auto& other : all) one->allKinds.AddForeign(other->kinds);
    const Selection selection = options.selection.Parse(one->allKinds);
    one->blocks               = selection.Apply(one->opened.Get().GetDataDescriptors(FED_DataDescriptorPattern()));
    any                       = any || !one->blocks.empty();
    names += (names.empty() ? "" : ", ") + one->name;
  }
  // Two selections of nothing are no proof that anything is the same.
  if (!any) Fail(names + ": no block matches '" + options.selection.ToString() + "'");
  return all;
}

/// Compares the pair. The rules are set already.
DatabaseOutcome ComparePair(Participant& first, Participant& second, ComparisonTerms terms, const Options& options,
                            const Request& request, Console& console)
{
  MeshMatch mesh;
  if (request.pointTolerance) {
    MeshMatchReport report;
    mesh =
        MatchMeshes(first.opened.Get(), second.opened.Get(), *request.pointTolerance, first.name, second.name, report);
    terms.mesh = &mesh;
    console.Note("matched " + Counted(report.nodes, "node") + " and " + Counted(report.elements, "element") +
                 " by their places");
    if (report.ambiguousNodes > 0)
      console.Note(Counted(report.ambiguousNodes, "node") + " had several candidates: the nearest was taken");
  }
  terms.matching              = options.match == "index" ? RecordMatcher::ByIndex : RecordMatcher::ById;
  terms.info.maxDiffsPerBlock = options.maxRecords;
  terms.info.maxBlockDiffs    = options.maxBlocks;
  terms.progress              = [&console](std::size_t done, std::size_t total) {
    console.Progress("comparing", done, total, "blocks");
  };
  return CompareDatabases(first.GetCompared(), second.GetCompared(), terms);
}

void RunComparison(const Options& options, CommandContext& context)
{
  const Request      request      = ReadRequest(options);
  const Participants participants = OpenAll(options, context.console);
  Participant&       first        = *participants[0];
  Participant&       second       = *participants[1];
  ComparisonTerms    terms;
  terms.rules                              = MakeRules(options, request, first.allKinds);
  const DatabaseOutcome            outcome = ComparePair(first, second, terms, options, request, context.console);
  QuilonDataBlockDiff::CompareInfo limits;
  limits.maxBlockDiffs = options.maxBlocks;
  const Report report = MakeReport(outcome, first.GetCompared(), second.GetCompared(), first.name, second.name, limits);
  if (!options.junit.empty()) WriteFile(options.junit, ToJUnit(report));
  if (options.brief)
    context.output.Write(report.Summarize() + '\n');
  else if (options.form.json)
    PrintReportAsJson(context.output, report);
  else
    PrintReport(context.output, options.form, report, options.norms);
  context.exitCode = report.isSame ? ExitSuccess : ExitDifferent;
}

void RunLearning(const Options& options, CommandContext& context)
{
  const Request request = ReadRequest(options);
  const double  factor  = options.factor ? ParseNumber(*options.factor, "--factor", 1.0) : 10.0;

  const Participants runs = OpenAll(options, context.console);
  RuleLearner        learner(runs.front()->kinds, factor, options.modeSign);
  ComparisonTerms    terms;
  terms.rules = learner.GetRules();
  for (std::size_t i = 0; i < runs.size(); ++i)
    for (std::size_t j = i + 1; j < runs.size(); ++j)
      learner.Add(ComparePair(*runs[i], *runs[j], terms, options, request, context.console), runs[i]->kinds,
                  runs[i]->name + " and " + runs[j]->name);

  std::string head = "# Differences among accepted runs, times " + FormatNumber(factor) + ":\n";
  for (const std::string& path : options.databases) head += "#   " + Printable(path) + '\n';
  WriteFile(options.output, learner.WriteRules(head));
  context.output.Write(options.output + ": rules learnt from " + Counted(runs.size(), "run") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  if (options.learn)
    RunLearning(options, context);
  else
    RunComparison(options, context);
}

constexpr const char* kFooter =
    "Without options the rule of the library judges two values a and b:\n"
    "  default    |a-b| <= 1e-6, and where both are positive |a-b| / min(a,b) <= 1e-6. A NaN passes, and each one "
    "that\n"
    "             did is named. Two empty lists of numbers are different.\n"
    "Rules to choose from; of several all have to hold (--all), or one (--any):\n"
    "  --abs T    |a-b| <= T\n"
    "  --rel T    |a-b| <= T * max(|a|,|b|)\n"
    "  --peak T   |a-b| <= T * P, P the largest finite magnitude in the block, in that of A or B where it is smaller\n"
    "  --ulps N   at most N steps from a to b through the representable numbers, counted in 64 bits; -0 and 0 are one\n"
    "  --exact    a == b\n"
    "Equal values always pass; an infinity and anything else never do. Integers and texts have to be equal.\n"
    "--nan equal: a NaN equals a NaN and nothing else (the default with --abs, --rel, --peak and --ulps). different: "
    "a\n"
    "NaN equals nothing (the default with --exact). forbid: the same, and blocks that are ignored or have no "
    "counterpart\n"
    "are searched, too.\n"
    "--mode-sign: results of modes (analysis 2 or none set) may have the other sign, one for each mode. The "
    "displacement\n"
    "decides by its sum of products; without one each block does. Principal values are negated in reverse order.\n"
    "--rule 'KIND,...: TERMS', in a file (--rules) one a line, '#' before comments. TERMS are abs=T rel=T peak=T "
    "ulps=N "
    "any\n"
    "all exact default ignore nan=equal|different|forbid mode-sign; '*' stands for all other kinds.\n"
    "--learn takes runs that are accepted as equal and writes rules: for each kind the largest |a-b|, as a fraction of "
    "P up\n"
    "to 0.01, else as it is, times --factor (10).\n"
    "--match-points TOL: nodes are the same at the same place, elements between the same nodes.\n"
    "\n"
    "Exit codes: 0 same, 1 different, 2 trouble.\n"
    "\n"
    "Examples:\n"
    "  quilon diff old.onf new.onf\n"
    "  quilon diff old.frd new.frd --peak 1e-6 --abs 1e-12 --any --nan equal\n"
    "  quilon diff a.onf b.onf --rule 'stress: peak=1e-5' --rule 'time: ignore' --junit diff.xml\n"
    "  quilon diff --learn run1.onf run2.onf run3.onf -o accepted.rules";

}  // namespace

CommandFunction DefineDiff(CLI::App& app)
{
  const auto options = std::make_shared<Options>();
  app.add_option("DB", options->databases,
                 "Two databases A and B: working databases (.fed), ONF folders or solver result files (.frd, .dat)")
      ->required();
  app.add_option("--abs", options->abs, "Largest absolute difference")->type_name("T");
  app.add_option("--rel", options->rel, "Largest relative difference")->type_name("T");
  app.add_option("--peak", options->peak, "Largest difference relative to the block's largest magnitude")
      ->type_name("T");
  app.add_option("--ulps", options->ulps, "Largest difference in units in the last place")->type_name("N");
  app.add_flag("--any", options->any, "One of these rules suffices");
  app.add_flag("--all", options->all, "All of these rules have to hold (the default)");
  app.add_flag("--exact", options->exact, "Values have to be equal");
  app.add_option("--nan", options->nan, "What a NaN equals: equal, different or forbid")->type_name("POLICY");
  app.add_flag("--mode-sign", options->modeSign, "Modes may have the other sign");
  app.add_option("--rule", options->rules, "A rule for kinds: 'stress: peak=1e-6'; may be repeated")
      ->type_name("RULE")
      ->take_all();
  app.add_option("--rules", options->ruleFile, "A file of rules")->type_name("FILE");
  app.add_option("--match", options->match, "What records are the same by: id (the default) or index")
      ->type_name("id|index")
      ->check(CLI::IsMember({"id", "index"}));
  app.add_option("--match-points", options->pointTolerance, "Nodes are the same up to this distance apart")
      ->type_name("TOL");
  app.add_option("--select", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)")
      ->type_name("SELECTION");
  AddStepsOption(app, options->selection);
  AddCountOption(app, "--max", options->maxRecords, "How many records of one block to report (10)");
  AddCountOption(app, "--max-blocks", options->maxBlocks, "How many blocks to report (10)");
  app.add_flag("--norms", options->norms, "Print the norms of equal blocks, too");
  app.add_flag("--brief", options->brief, "Print the summary alone");
  AddTableOptions(app, options->form);
  app.add_option("--junit", options->junit, "Write a JUnit report, a test case for each block")->type_name("FILE");
  app.add_flag("--learn", options->learn, "Write rules from two accepted runs or more");
  app.add_option("-o,--output", options->output, "The rules file that --learn writes")->type_name("RULES");
  app.add_option("--factor", options->factor, "What --learn multiplies differences by (10)")->type_name("F");
  app.footer(kFooter);
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
