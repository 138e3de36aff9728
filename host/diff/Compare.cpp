#include "diff/Compare.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <bundled/OnfKinds.h>

#include "diff/DatabaseComparison.h"
#include "diff/DifferenceWriter.h"
#include "diff/MeshMatching.h"
#include "diff/RuleLearning.h"
#include "diff/RuleSet.h"
#include "diff/StepMatching.h"
#include "kinds/KindTable.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

/// A database with what is known of its kinds.
struct Participant
{
  explicit Participant(const NamedDatabase& named)
      : database(named.database), name(named.name), kinds(named.database), allKinds(kinds), readers(named.readers)
  {}

  ComparedDatabase GetCompared() const { return {database, blocks, readers}; }

  const FED_Database&             database;
  std::string                     name;
  KindTable                       kinds;
  KindTable                       allKinds;  ///< with those that only the other databases name
  std::vector<FED_DataDescriptor> blocks;    ///< the selected ones
  Readers                         readers;
};

/// @return the selection as its user wrote it
std::string ToText(const MatchOptions& match)
{
  std::string text = match.selection;
  const auto  add  = [&text](const char* option, const std::string& steps) {
    if (!steps.empty()) text += (text.empty() ? "" : " ") + std::string(option) + ' ' + steps;
  };
  add("--steps", match.steps);
  add("--steps-a", match.stepsA);
  add("--steps-b", match.stepsB);
  return text;
}

bool MatchesSteps(const MatchOptions& match)
{
  return !match.stepsA.empty() || !match.stepsB.empty() || match.timeTolerance;
}

std::vector<FED_DataDescriptor> AllBlocks(const FED_Database& database)
{
  return database.GetDataDescriptors(FED_DataDescriptorPattern());
}

std::vector<FED_DataDescriptor> Select(const Participant& participant, const MatchOptions& match,
                                       const std::string& steps)
{
  Selection selection = match.selection.empty() ? Selection() : Selection(match.selection, participant.allKinds);
  if (!steps.empty()) selection.SetSteps(steps);
  std::vector<FED_DataDescriptor> blocks = selection.Apply(AllBlocks(participant.database));
  // What made the results is no result. It is compared when its kind is asked for by name.
  if (!selection.NamesKinds())
    std::erase_if(blocks, [](const FED_DataDescriptor& descriptor) {
      return OnfKind::IsProvenance(descriptor.GetInteger(FED_DataDescriptor::OnfId));
    });
  if (MatchesSteps(match))
    std::erase_if(blocks, [](const FED_DataDescriptor& descriptor) {
      return !HasResultStep(descriptor) && !BelongsToAllSteps(descriptor);
    });
  return blocks;
}

/// @return the result steps that the positions keep, whatever else is selected
std::vector<FED_DataDescriptor> ListSteps(const FED_Database& database, const std::string& steps)
{
  Selection selection;
  if (!steps.empty()) selection.SetSteps(steps);
  return ListResultSteps(selection.Apply(AllBlocks(database)));
}

/// @return the positions that are kept of the first or of the second database
const std::string& StepsOf(const MatchOptions& match, bool isSecond)
{
  const std::string& own = isSecond ? match.stepsB : match.stepsA;
  return own.empty() ? match.steps : own;
}

std::vector<Participant> Admit(const std::vector<NamedDatabase>& databases, const MatchOptions& match)
{
  std::vector<Participant> all(databases.begin(), databases.end());
  const std::string        text = ToText(match);
  bool                     any  = text.empty();
  std::string              names;
  for (std::size_t i = 0; i < all.size(); ++i) {
    Participant& one = all[i];
    for (const Participant& other : all) one.allKinds.AddForeign(other.kinds);
    one.blocks = Select(one, match, StepsOf(match, i > 0));
    any        = any || !one.blocks.empty();
    names += (names.empty() ? "" : ", ") + one.name;
  }
  // Two selections of nothing are no proof that anything is the same.
  if (!any) Fail(names + ": no block matches '" + text + "'");
  return all;
}

/// @return what stands for the steps of the first database; nothing where each stands for itself
std::optional<StepMatch> MatchSteps(const Participant& first, const Participant& second, const MatchOptions& match)
{
  if (!MatchesSteps(match)) return std::nullopt;
  const std::vector<FED_DataDescriptor> firstSteps  = ListSteps(first.database, StepsOf(match, false));
  const std::vector<FED_DataDescriptor> secondSteps = ListSteps(second.database, StepsOf(match, true));
  if (!match.timeTolerance) return MatchStepsByPosition(firstSteps, secondSteps, first.name, second.name);
  return MatchStepsByTime(first.database, second.database, firstSteps, secondSteps, *match.timeTolerance,
                          match.interpolates, first.name, second.name);
}

/// What is said for all kinds replaces what the file says, and what is said for one kind replaces both.
RuleSet MakeRules(const CompareOptions& options, const KindTable& kinds)
{
  const KindResolver resolve = [&kinds](std::string_view text) { return kinds.Resolve(text); };
  RuleSet            rules;
  if (!options.ruleFile.empty()) ReadRuleFile(options.ruleFile, resolve, rules);
  if (options.rule && options.rule->form != ComparisonRule::Default) {
    rules.fallback = *options.rule;
  } else if (options.rule) {
    // NaNs and signs alone leave the tolerances of the file.
    if (options.rule->nan) rules.fallback.nan = options.rule->nan;
    rules.fallback.modeSign = rules.fallback.modeSign || options.rule->modeSign;
  }
  for (const std::string& rule : options.kindRules) rules.Add(rule, resolve, "--rule: ");
  return rules;
}

MeshMatch Match(const Participant& first, const Participant& second, double tolerance, Listener* listener)
{
  MeshMatchReport report;
  MeshMatch       mesh = MatchMeshes(first.database, second.database, tolerance, first.name, second.name, report);
  if (listener == nullptr) return mesh;
  listener->Note("matched " + Counted(report.nodes, "node") + " and " + Counted(report.elements, "element") +
                 " by their places");
  if (report.ambiguousNodes > 0)
    listener->Note(Counted(report.ambiguousNodes, "node") + " had several candidates: the nearest was taken");
  return mesh;
}

/// @param terms rules and limits
DatabaseOutcome ComparePair(const Participant& first, const Participant& second, ComparisonTerms terms,
                            const MatchOptions& match, Listener* listener)
{
  MeshMatch mesh;
  if (match.pointTolerance) {
    mesh       = Match(first, second, *match.pointTolerance, listener);
    terms.mesh = &mesh;
  }
  const std::optional<StepMatch> steps = MatchSteps(first, second, match);
  if (steps) terms.steps = &*steps;
  terms.matching = match.records;
  if (listener != nullptr) {
    terms.progress = [listener](std::size_t done, std::size_t total) {
      listener->Progress("comparing", done, total, "blocks");
    };
  }
  return CompareDatabases(first.GetCompared(), second.GetCompared(), terms);
}

}  // namespace

Report Compare(const NamedDatabase& a, const NamedDatabase& b, const CompareOptions& options)
{
  const std::vector<Participant> participants = Admit({a, b}, options.match);
  const Participant&             first        = participants[0];
  const Participant&             second       = participants[1];
  ComparisonTerms                terms;
  terms.rules                  = MakeRules(options, first.allKinds);
  terms.ignoresMissingInFirst  = options.ignoresMissingInA;
  terms.ignoresMissingInSecond = options.ignoresMissingInB;
  terms.allNorms               = options.allNorms;
  terms.info.maxDiffsPerBlock  = options.maxRecords;
  terms.info.maxBlockDiffs     = options.maxBlocks;
  std::optional<DifferenceWriter> writer;
  if (options.difference != nullptr) terms.difference = &writer.emplace(first.database, *options.difference);
  terms.parts                   = options.parts;
  const DatabaseOutcome outcome = ComparePair(first, second, terms, options.match, options.listener);
  if (writer) writer->Finish();
  return MakeReport(outcome, first.GetCompared(), second.GetCompared(), first.name, second.name, terms.info);
}

std::string LearnRules(const std::vector<NamedDatabase>& runs, const LearnOptions& options)
{
  const std::vector<Participant> participants = Admit(runs, options.match);
  RuleLearner                    learner(participants.front().kinds, options.factor, options.modeSign);
  ComparisonTerms                terms;
  terms.rules = learner.GetRules();
  for (std::size_t i = 0; i < participants.size(); ++i)
    for (std::size_t j = i + 1; j < participants.size(); ++j)
      learner.Add(ComparePair(participants[i], participants[j], terms, options.match, options.listener),
                  participants[i].kinds, participants[i].name + " and " + participants[j].name);

  std::string head = "# Differences among accepted runs, times " + FormatNumber(options.factor) + ":\n";
  for (const Participant& run : participants) head += "#   " + Printable(run.name) + '\n';
  return learner.WriteRules(head);
}

}  // namespace quilon::diff
