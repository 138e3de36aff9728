#include "report/PageFacts.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include <bundled/FED_BlockCopy.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "answers/Overview.h"
#include "database/Listing.h"
#include "database/Provenance.h"
#include "database/StepTimes.h"
#include "forces/ForceCalculation.h"
#include "kinds/KindTable.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

Json DescribeOverview(const Overview& overview)
{
  Json json;
  json["nodes"]    = overview.nodes;
  json["elements"] = Json::array();
  for (const auto& [type, count] : overview.elements) json["elements"].push_back({{"type", type}, {"count", count}});
  if (overview.box) {
    json["least"]    = Json(overview.box->least);
    json["greatest"] = Json(overview.box->greatest);
  }
  json["steps"]  = overview.steps.size();
  json["groups"] = Json(overview.groups);
  return json;
}

Json DescribeBlocks(const FED_Database& database, Listener& listener)
{
  Json       blocks = Json::array();
  const auto listed = ListBlocks(
      database, Selection(), KindTable(database),
      [&listener](std::size_t done, std::size_t total) { listener.Progress("blocks", done, total, "blocks"); });
  for (const ListedBlock& block : listed) {
    if (OnfKind::IsProvenance(block.descriptor.GetInteger(Descriptor::OnfId))) continue;
    const BlockSummary& summary = block.summary;
    blocks.push_back({{"onf", block.descriptor.GetInteger(Descriptor::OnfId)},
                      {"kind", block.kind},
                      {"step", StepText(block.descriptor)},
                      {"records", summary.records},
                      {"bytes", summary.bytes},
                      {"least", summary.hasValues ? JsonNumber(summary.least) : Json()},
                      {"greatest", summary.hasValues ? JsonNumber(summary.greatest) : Json()},
                      {"nan", summary.nans}});
  }
  return blocks;
}

/// @return a block of another kind at the same result
Descriptor Beside(Descriptor result, int onf)
{
  result.SetInteger(Descriptor::OnfId, onf);
  return result;
}

Json DescribeResult(const ForceRequest& request, const ForceReport& report)
{
  const ForceBalance& balance = *report.steps.front().balance;
  Json                worst   = Json::array();
  for (const NodeBalance& node : balance.nodes)
    worst.push_back({{"node", node.node}, {"residual", JsonNumber(node.largest)}});
  return {{"verdict", DescribeVerdict(request, report)},
          {"holds", balance.Holds()},
          {"judged", balance.numJudged},
          {"incomplete", balance.numIncomplete},
          {"unknown", balance.numUnknown},
          {"largestForce", JsonNumber(balance.largestForce)},
          {"largestResidual", JsonNumber(balance.largestResidual)},
          {"limit", JsonNumber(balance.limit)},
          {"worst", worst}};
}

}  // namespace

Json DescribeDatabase(const FED_Database& database, const std::string& name, Listener& listener)
{
  const Overview overview = MakeOverview(database, name, StepTimes(database));
  Json           json;
  json["overview"]   = DescribeOverview(overview);
  json["deviations"] = Json::array();
  for (const SolverDeviation& deviation : overview.deviations)
    json["deviations"].push_back(
        {{"kind", deviation.kind}, {"step", StepText(deviation.step)}, {"deviation", JsonNumber(deviation.deviation)}});
  json["blocks"]  = DescribeBlocks(database, listener);
  json["imports"] = DescribeImports(database);
  return json;
}

Json DescribeImports(const FED_Database& database)
{
  Json imports = Json::array();
  for (const IterationProvenance& iteration : ReadProvenance(database)) {
    for (const ImportProvenance& import : iteration.imports) {
      Json files = Json::array();
      for (const ImportedFile& file : import.files)
        files.push_back({{"role", file.role},
                         {"name", file.name},
                         {"bytes", file.size},
                         {"checksum", file.checksum},
                         {"changed", file.changed}});
      Json settings = Json::array();
      for (const ImportSetting& setting : import.settings)
        settings.push_back({{"name", setting.name}, {"value", setting.value}});
      imports.push_back({{"iteration", iteration.iteration}, {"files", files}, {"settings", settings}});
    }
  }
  return imports;
}

Json JudgeBalance(const FED_Database& database, int iteration, const std::string& name, Listener& listener)
{
  const auto all = database.GetDataDescriptors(FED_DataDescriptorPattern());
  const auto has = [&](int onf) {
    return std::any_of(all.begin(), all.end(), [&](const Descriptor& block) {
      return block.GetInteger(Descriptor::OnfId) == onf && block.GetInteger(Descriptor::Iteration) == iteration;
    });
  };
  Json        json{{"results", Json::array()}};
  const char* reason = nullptr;
  if (!has(OnfKind::IntegrationPointStress))
    reason = "no stresses at integration points (582)";
  else if (!has(OnfKind::Reaction))
    reason = "no reactions of the solver (511)";
  else if (!has(OnfKind::ElementNodes) || !has(OnfKind::ElementType))
    reason = "no elements (595, 596)";
  if (reason != nullptr) {
    json["reason"] = reason;
    return json;
  }
  ForceRequest request;
  request.database = name;
  request.balance  = true;
  request.numWorst = 5;
  for (const Descriptor& result : all) {
    if (result.GetInteger(Descriptor::OnfId) != OnfKind::IntegrationPointStress ||
        result.GetInteger(Descriptor::Iteration) != iteration)
      continue;
    Json of;
    if (!database.HasDataBlock(Beside(result, OnfKind::Reaction))) {
      of["verdict"] = "not judged: no reactions of the solver (511)";
    } else {
      FED_ResultDatabase copy;
      for (const Descriptor& block : FindForceIngredients(database, {result})) FED_CopyBlock(database, copy, block);
      // What a result lacks to be judged, such as displacements or elements with a rule, is no reason to have no page.
      try {
        of = DescribeResult(request, CalculateForces(copy, {result}, request, &listener));
      } catch (const FED_Failure& failure) {
        of["verdict"] = "not judged: " + failure.GetMessage();
      }
    }
    of["step"] = StepText(GetResultStep(result));
    json["results"].push_back(std::move(of));
  }
  return json;
}

}  // namespace quilon
