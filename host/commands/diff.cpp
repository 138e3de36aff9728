#include <charconv>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <CLI/CLI.hpp>

#include "answers/RegionCopy.h"
#include "commands/Command.h"
#include "commands/DiffPrinting.h"
#include "commands/ExitCode.h"
#include "commands/JobsOption.h"
#include "commands/NumberOptions.h"
#include "commands/PageArguments.h"
#include "commands/RegionArguments.h"
#include "commands/SelectionOptions.h"
#include "commands/TableOptions.h"
#include "database/Publication.h"
#include "diff/Compare.h"
#include "diff/Report.h"
#include "import/OpenedDatabase.h"
#include "quilon_version.h"
#include "report/Report.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/OutputFile.h"

namespace quilon {

namespace {

using namespace diff;

struct Options
{
  std::vector<std::string>   databases;
  SelectionOptions           selection;
  RegionOptions              region;
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
  std::string                stepsA;
  std::string                stepsB;
  std::optional<std::string> timeTolerance;
  bool                       interpolate = false;
  std::size_t                maxRecords  = QuilonDataBlockDiff::CompareInfo().maxDiffsPerBlock;
  std::size_t                maxBlocks   = QuilonDataBlockDiff::CompareInfo().maxBlockDiffs;
  bool                       norms       = false;
  bool                       brief       = false;
  std::string                ignoreMissing;  ///< a, b, both or empty
  std::string                junit;
  std::string                html;
  bool                       learn = false;
  std::string                output;
  std::optional<std::string> factor;
  JobsOption                 jobs;
  TableForm                  form;
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

/// @throws FED_Failure for options that do not go together
void CheckOptions(const Options& options)
{
  if (options.match == "index" && options.pointTolerance)
    Fail("--match index and --match-points exclude each other, expected one at most");
  if (options.brief && (options.form.csv || options.form.table)) Fail("--brief goes without --csv and --table");
  if (!options.selection.steps.empty() && (!options.stepsA.empty() || !options.stepsB.empty()))
    Fail("--steps goes without --steps-a and --steps-b");
  if (options.interpolate && !options.timeTolerance) Fail("--interpolate goes with --match-time");
  if (!options.learn) {
    if (options.databases.size() != 2) Fail("expected two databases to compare, A and B");
    if (options.factor) Fail("--factor goes with --learn");
    return;
  }
  const std::string terms = TermsOf(options);
  if ((!terms.empty() && terms != "mode-sign") || !options.rules.empty() || !options.ruleFile.empty())
    Fail("--learn writes rules and takes none, expected --mode-sign at most");
  if (!options.html.empty()) Fail("--learn writes no page, expected it without --html");
  if (!options.junit.empty() || options.brief || options.norms || !options.ignoreMissing.empty() || options.form.json ||
      options.form.csv || options.form.table)
    Fail(
        "--learn reports nothing, expected it without --junit, --json, --csv, --table, --norms, --brief and "
        "--ignore-missing");
  if (options.databases.size() < 2) Fail("--learn: expected two accepted runs or more");
  if (options.output.empty()) Fail("--learn: -o is missing, expected the rules file to write");
}

MatchOptions ReadMatch(const Options& options)
{
  MatchOptions match;
  match.selection = options.selection.text;
  match.steps     = options.selection.steps;
  match.stepsA    = options.stepsA;
  match.stepsB    = options.stepsB;
  if (options.timeTolerance) match.timeTolerance = ParseNumber(*options.timeTolerance, "--match-time", 0.0);
  match.interpolates = options.interpolate;
  match.records      = options.match == "index" ? RecordMatcher::ByIndex : RecordMatcher::ById;
  if (options.pointTolerance) match.pointTolerance = ParseNumber(*options.pointTolerance, "--match-points", 0.0);
  return match;
}

/// The databases of the command line. A large result takes its time: they are opened when all options have been read.
class Databases
{
public:
  /// @param crew borrowed
  Databases(const Options& options, Crew& crew, Console& console)
  {
    for (const std::string& path : options.databases) {
      opened_.push_back(std::make_unique<OpenedDatabase>(path, console));
      if (options.region.IsEverything()) {
        named_.push_back({opened_.back()->Get(), path, opened_.back()->GetReaders(crew)});
        continue;
      }
      // What is compared is in memory: a region is mostly small.
      Region region(opened_.back()->Get(), options.region, path);
      copies_.push_back(std::make_unique<FED_ResultDatabase>());
      CopyRegion(opened_.back()->Get(), region, *copies_.back());
      TellNotes(region, console);
      named_.push_back({*copies_.back(), path, {&crew}});
    }
  }

  const std::vector<NamedDatabase>& Get() const noexcept { return named_; }

private:
  std::vector<std::unique_ptr<OpenedDatabase>>     opened_;
  std::vector<std::unique_ptr<FED_ResultDatabase>> copies_;  // of what is in the region
  std::vector<NamedDatabase>                       named_;
};

bool IsOneFile(const std::filesystem::path& a, const std::filesystem::path& b)
{
  std::error_code ignored;  // what is not there yet is no other
  return std::filesystem::equivalent(a, b, ignored);
}

/// The difference would replace what it was made of.
void RequireAnother(const std::string& output, const std::string& database)
{
  if (IsOneFile(output, database)) Fail(output + ": is compared itself, expected another place for the difference");
}

/// A report or rules would replace what they were made of, a file of an ONF folder too.
/// @throws FED_Failure before anything is read, also for what is no place for a file
void CheckFile(const std::string& file, const Options& options, const std::string& what)
{
  CheckOutputFile(file);
  const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
  for (const std::string& database : options.databases) {
    if (IsOneFile(file, database) || IsOneFile(folder, database))
      Fail(file + ": is compared itself, expected another place for the " + what);
  }
  if (!options.ruleFile.empty() && IsOneFile(file, options.ruleFile))
    Fail(file + ": has the rules, expected another place for the " + what);
}

/// Writes the page of a comparison.
void WritePage(const Options& options, const Databases& databases, const Report& report, const FED_Database& difference,
               Console& console)
{
  const NamedDatabase& first = databases.Get().front();
  const PageComparison comparison{&databases.Get().back().database, &difference, &report, databases.Get().back().name};
  const ReportResult   result = WriteComparison(first.database, first.name, comparison, !options.selection.text.empty(),
                                                options.html, std::string("quilon ") + kQuilonVersion, console);
  console.ClearProgress();
  NoteInside(result, options.html, console);
}

void RunComparison(const Options& options, CommandContext& context)
{
  CompareOptions    compare;
  const std::string terms = TermsOf(options);
  if (!terms.empty()) compare.rule = ParseRule(terms, "");
  compare.match             = ReadMatch(options);
  compare.ruleFile          = options.ruleFile;
  compare.kindRules         = options.rules;
  compare.ignoresMissingInA = options.ignoreMissing == "a" || options.ignoreMissing == "both";
  compare.ignoresMissingInB = options.ignoreMissing == "b" || options.ignoreMissing == "both";
  compare.maxRecords        = options.maxRecords;
  compare.maxBlocks         = options.maxBlocks;
  compare.allNorms          = options.norms || (options.form.json && !options.brief);
  compare.listener          = &context.console;

  const bool isPrinted = options.junit == kStandardOutput;
  if (isPrinted && options.form.json) Fail("--junit - and --json exclude each other, expected a file for one of them");
  if (!options.junit.empty() && !isPrinted) CheckFile(options.junit, options, "report");
  CommandCrew                crew(options.jobs, context);
  std::optional<Publication> publication;
  if (!options.output.empty() && crew.Get().Leads()) {
    for (const std::string& path : options.databases) RequireAnother(options.output, path);
    compare.difference = &publication.emplace(options.output).Target();
    compare.parts      = publication->GetParts();
  }
  // A page shows the difference, whether it is kept or not.
  FED_ResultDatabase forPage;
  if (!options.html.empty()) {
    CheckFile(options.html, options, "page");
    if (compare.difference == nullptr) compare.difference = &forPage;
  }
  const Databases databases(options, crew.Get(), context.console);
  const Report    report = Compare(databases.Get()[0], databases.Get()[1], compare);
  if (!options.html.empty()) WritePage(options, databases, report, *compare.difference, context.console);
  if (publication) context.console.Note(options.output + ": " + Counted(publication->Publish(), "block") + " written");
  if (!options.junit.empty() && !isPrinted) WriteFile(options.junit, ToJUnit(report));
  if (isPrinted)
    context.output.Write(ToJUnit(report));
  else if (options.form.json)
    PrintReportAsJson(context.output, report, options.brief);
  else if (options.brief)
    context.output.Write(report.Summarize() + '\n');
  else
    PrintReport(context.output, options.form, report, options.norms);
  context.exitCode = report.isSame ? ExitSuccess : ExitDifferent;
}

void RunLearning(const Options& options, CommandContext& context)
{
  LearnOptions learn;
  learn.match = ReadMatch(options);
  if (options.factor) learn.factor = ParseNumber(*options.factor, "--factor", 1.0);
  learn.modeSign = options.modeSign;
  learn.listener = &context.console;

  const bool isPrinted = options.output == kStandardOutput;
  if (!isPrinted) CheckFile(options.output, options, "rules");
  CommandCrew     crew(options.jobs, context);
  const Databases databases(options, crew.Get(), context.console);
  if (isPrinted) return context.output.Write(LearnRules(databases.Get(), learn));
  WriteFile(options.output, LearnRules(databases.Get(), learn));
  context.output.Write(options.output + ": rules learnt from " + Counted(databases.Get().size(), "run") + '\n');
}

void Run(const Options& options, CommandContext& context)
{
  CheckOptions(options);
  if (options.learn)
    RunLearning(options, context);
  else
    RunComparison(options, context);
}

constexpr const char* kFooter =
    "Two values a and b are judged by the rule\n"
    "  default    |a-b| <= 2e-5 * P, P the largest finite magnitude in the block, in that of A or B where it is "
    "smaller:\n"
    "             two units of the sixth digit, the last that the solver writes\n"
    "Rules to choose from; of several all have to hold (--all), or one (--any):\n"
    "  --abs T    |a-b| <= T\n"
    "  --rel T    |a-b| <= T * max(|a|,|b|)\n"
    "  --peak T   |a-b| <= T * P\n"
    "  --ulps N   at most N steps from a to b through the representable numbers; -0 and 0 are one. Two fields of "
    "floats\n"
    "             count theirs, any others the doubles\n"
    "  --exact    a == b\n"
    "Equal values always pass; an infinity and anything else never do. Integers and texts have to be equal.\n"
    "--rule library: |a-b| <= 1e-6, and where both are positive |a-b| / min(a,b) <= 1e-6, as the library compares. A "
    "NaN\n"
    "passes, and each one that did is named. Two empty lists of numbers are different.\n"
    "--nan equal: a NaN equals a NaN and nothing else (all rules but the library's). different: a NaN equals nothing.\n"
    "forbid: the same, and blocks that are ignored or have no counterpart are searched, too.\n"
    "--mode-sign: results of modes (analysis 2 or none set) may have the other sign, one for each mode. The "
    "displacement\n"
    "decides by its sum of products; without one each block does. Principal values are negated in reverse order.\n"
    "--rule 'KIND,...: TERMS', in a file (--rules) one a line, '#' before comments. TERMS are abs=T rel=T peak=T "
    "ulps=N\n"
    "any all exact default library ignore nan=equal|different|forbid mode-sign; '*', or no kind, stands for all "
    "others.\n"
    "--learn takes runs that are accepted as equal and writes rules: for each kind the largest |a-b|, as a fraction of "
    "P up\n"
    "to 0.01, else as it is, times --factor (10).\n"
    "--steps-a last --steps-b last: the kept steps are the same in their order.\n"
    "--match-time TOL: by their times, with --interpolate also between two steps of B. Histories take no part then.\n"
    "--match-points TOL: nodes are the same at the same place, elements between the same nodes.\n"
    "\n"
    "Exit codes: 0 same, 1 different, 2 trouble.\n"
    "\n"
    "Examples:\n"
    "  quilon diff old.onf new.onf\n"
    "  quilon diff before.frd after.fed --ignore-missing\n"
    "  quilon diff old.frd new.frd --peak 1e-6 --abs 1e-12 --any\n"
    "  quilon diff a.onf b.onf --rule 'stress: peak=1e-5' --rule 'time: ignore' --junit diff.xml\n"
    "  quilon diff coarse.fed fine.fed --match-time 1e-6 --interpolate -o difference.fed\n"
    "  quilon diff before.fed after.fed --html difference.html\n"
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
  app.add_option("--nan", options->nan, "What a NaN equals")->type_name("equal|different|forbid");
  app.add_flag("--mode-sign", options->modeSign, "Modes may have the other sign");
  app.add_option("--rule", options->rules,
                 "A rule for kinds ('stress: peak=1e-6') or for all ('library'); may be repeated")
      ->type_name("RULE")
      ->take_all();
  app.add_option("--rules", options->ruleFile, "A file of rules")->type_name("FILE");
  app.add_flag("--ignore-missing{both}", options->ignoreMissing,
               "What one of the two lacks is no difference: what A lacks (=a), what B lacks (=b) or either (=both)")
      ->check(CLI::IsMember({"a", "b", "both"}));
  app.add_option("--match", options->match, "What records are the same by: id (the default) or index")
      ->type_name("id|index")
      ->check(CLI::IsMember({"id", "index"}));
  app.add_option("--match-points", options->pointTolerance, "Nodes are the same up to this distance apart")
      ->type_name("TOL");
  app.add_option("--select", options->selection.text, "Which blocks: KIND,...@KEY=VALUES,... (default: all)")
      ->type_name("SELECTION");
  AddStepsOption(app, options->selection);
  AddRegionOptions(app, options->region);
  app.add_option("--steps-a", options->stepsA, "Steps of A by position; those of B by the same order stand for them")
      ->type_name("STEPS");
  app.add_option("--steps-b", options->stepsB, "Steps of B by position")->type_name("STEPS");
  app.add_option("--match-time", options->timeTolerance, "Steps are the same up to this difference of their times")
      ->type_name("TOL");
  app.add_flag("--interpolate", options->interpolate, "Take what lies between two steps of B where no time is near");
  AddCountOption(app, "--max", options->maxRecords, "How many records of one block to report (10)");
  AddCountOption(app, "--max-blocks", options->maxBlocks, "How many blocks to report (10)");
  app.add_flag("--norms", options->norms, "Print the norms of equal blocks, too");
  app.add_flag("--brief", options->brief, "Print the summary alone");
  AddJobsOption(app, options->jobs);
  AddTableOptions(app, options->form);
  app.add_option("--junit", options->junit, "Write a JUnit report, a test case for each block")->type_name("FILE");
  app.add_option("--html", options->html, "Write both and their difference as a page for a browser")->type_name("FILE");
  app.add_flag("--learn", options->learn, "Write rules from two accepted runs or more");
  app.add_option("-o,--output", options->output, "A database for the difference B - A, with --learn the rules file")
      ->type_name("OUT");
  app.add_option("--factor", options->factor, "What --learn multiplies differences by (10)")->type_name("F");
  app.footer(kFooter);
  return [options](CommandContext& context) { Run(*options, context); };
}

}  // namespace quilon
