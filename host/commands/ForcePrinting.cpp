#include "commands/ForcePrinting.h"

#include <string>
#include <utility>
#include <vector>

#include "forces/ForceCalculation.h"
#include "selection/Selection.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "terminal/Table.h"
#include "text/Format.h"

namespace quilon {

namespace {

Json JsonVector(const Vector& vector)
{
  return Json::array({JsonNumber(vector[0]), JsonNumber(vector[1]), JsonNumber(vector[2])});
}

Json JsonBalance(const ForceBalance& balance)
{
  Json nodes = Json::array();
  for (const NodeBalance& node : balance.nodes) {
    nodes.push_back({{"node", node.node},
                     {"elements", JsonVector(node.elements)},
                     {"external", JsonVector(node.external)},
                     {"residual", JsonVector(node.residual)}});
  }
  Json tied = Json::array();
  for (const TiedNodes& one : balance.tied)
    tied.push_back({{"how", one.how},
                    {"nodes", one.numNodes},
                    {"largest-residual", JsonNumber(one.largestResidual)},
                    {"worst-node", one.worstNode}});
  return {{"holds", balance.IsJudged() ? Json(balance.Holds()) : Json()},
          {"largest-residual", JsonNumber(balance.largestResidual)},
          {"largest-force", JsonNumber(balance.largestForce)},
          {"limit", JsonNumber(balance.limit)},
          {"total", JsonVector(balance.total)},
          {"nodes-above-limit", balance.numAbove},
          {"nodes-without-all-forces", balance.numIncomplete},
          {"nodes-without-reaction", balance.numUnknown},
          {"tied", std::move(tied)},
          {"nodes", std::move(nodes)}};
}

Json JsonVerdict(const ForceRequest& request, const ForceReport& report)
{
  const ForceStepReport& worst = *report.FindWorstBalance();
  return {{"passed", report.Holds()},
          {"block", ToSelectionText(worst.step.forces)},
          {"node", worst.balance->nodes.front().node},
          {"residual", JsonNumber(worst.balance->largestResidual)},
          {"limit", JsonNumber(worst.balance->limit)},
          {"ties-known", report.areTiesKnown},
          {"text", DescribeVerdict(request, report)}};
}

Json JsonResultant(const Resultant& resultant)
{
  return {
      {"nodes", resultant.numNodes}, {"force", JsonVector(resultant.force)}, {"moment", JsonVector(resultant.moment)}};
}

void PrintJson(Output& output, const ForceRequest& request, const ForceReport& report)
{
  Json steps = Json::array();
  for (const ForceStepReport& told : report.steps) {
    Json step{{"block", ToSelectionText(told.step.forces)},
              {"deformed", told.step.deformed},
              {"elements", told.step.numElements},
              {"largest-force", JsonNumber(told.step.largestSum)},
              {"rounding-error", JsonNumber(told.step.errorBound)}};
    if (told.balance) step["balance"] = JsonBalance(*told.balance);
    if (told.body) {
      step["free-body"] = {{"about", JsonVector(request.about)},
                           {"cut", JsonResultant(told.body->cut)},
                           {"other", JsonResultant(told.body->other)},
                           {"sum", JsonResultant(told.body->sum)}};
    }
    if (told.cut) {
      step["plane"] = {{"point", JsonVector(request.plane->point)},
                       {"normal", JsonVector(request.plane->normal)},
                       {"force", JsonVector(told.cut->resultant.force)},
                       {"moment", JsonVector(told.cut->resultant.moment)},
                       {"elements", told.cut->elements}};
    }
    steps.push_back(std::move(step));
  }
  Json skipped = Json::array();
  for (const auto& [reason, ids] : report.skipped) skipped.push_back({{"reason", reason}, {"elements", ids}});
  Json json{{"rounded-coordinates", report.isRounded}, {"skipped", std::move(skipped)}, {"steps", std::move(steps)}};
  if (request.balance) json["verdict"] = JsonVerdict(request, report);
  PrintJson(output, json);
}

std::vector<const char*> NamesOfColumns(const ForceRequest& request)
{
  if (request.balance) {
    return {"node",       "fx",         "fy",         "fz",         "external-x",
            "external-y", "external-z", "residual-x", "residual-y", "residual-z"};
  }
  if (request.plane) return {"elements", "fx", "fy", "fz", "mx", "my", "mz"};
  return {"at", "nodes", "fx", "fy", "fz", "mx", "my", "mz"};
}

/// The columns of a table of balances, of free bodies or of cuts.
std::vector<TableColumn> ColumnsOf(const ForceRequest& request, bool forPeople)
{
  std::vector<TableColumn> columns;
  if (!forPeople) columns.push_back({"block", true});
  const std::vector<const char*> names = NamesOfColumns(request);
  for (const char* name : names) columns.push_back({name, std::string(name) == "at"});
  return columns;
}

void WriteRows(TableWriter& table, const ForceStepReport& told, bool forPeople)
{
  const auto append = [forPeople](std::vector<std::string>& cells, const Vector& vector) {
    for (const double value : vector) cells.push_back(forPeople ? FormatRounded(value) : FormatNumber(value));
  };
  std::vector<std::string> before;
  if (!forPeople) before.push_back(ToSelectionText(told.step.forces));
  if (told.balance) {
    for (const NodeBalance& node : told.balance->nodes) {
      std::vector<std::string> cells = before;
      cells.push_back(std::to_string(node.node));
      append(cells, node.elements);
      append(cells, node.external);
      append(cells, node.residual);
      table.Row(std::move(cells));
    }
  }
  if (told.cut) {
    std::vector<std::string> cells = before;
    cells.push_back(std::to_string(told.cut->elements.size()));
    append(cells, told.cut->resultant.force);
    append(cells, told.cut->resultant.moment);
    table.Row(std::move(cells));
  }
  if (told.body) {
    const std::pair<const char*, const Resultant*> rows[] = {
        {"cut", &told.body->cut}, {"other", &told.body->other}, {"sum", &told.body->sum}};
    for (const auto& [name, resultant] : rows) {
      std::vector<std::string> cells = before;
      cells.emplace_back(name);
      cells.push_back(std::to_string(resultant->numNodes));
      append(cells, resultant->force);
      append(cells, resultant->moment);
      table.Row(std::move(cells));
    }
  }
}

/// The line above the table of a result.
std::string HeadLine(const ForceStepReport& told)
{
  std::string line = ToSelectionText(told.step.forces) + "  " + Counted(told.step.numElements, "element") +
                     (told.step.deformed ? ", deformed geometry" : "");
  if (told.balance) {
    const ForceBalance& balance = *told.balance;
    if (!balance.IsJudged()) return line + ", no node judged\n";
    line += ", largest residual " + FormatRounded(balance.largestResidual) + ", " +
            FormatRounded(balance.RelativeResidual()) + " of the largest force";
    if (balance.numIncomplete > 0) line += "; " + Counted(balance.numIncomplete, "node") + " without all forces";
    if (balance.numUnknown > 0) line += "; " + Counted(balance.numUnknown, "node") + " without RF";
  }
  return line + '\n';
}

void PrintTables(Output& output, const TableForm& form, const ForceRequest& request, const ForceReport& report)
{
  const bool forPeople = StyleOf(form) == TableStyle::Aligned;
  if (!forPeople) {
    TableWriter table = MakeTable(output, form, ColumnsOf(request, forPeople));
    for (const ForceStepReport& told : report.steps) WriteRows(table, told, forPeople);
    return table.Finish();
  }
  const char* before = "";
  for (const ForceStepReport& told : report.steps) {
    output.Write(before + HeadLine(told));
    TableWriter table = MakeTable(output, form, ColumnsOf(request, forPeople));
    WriteRows(table, told, forPeople);
    table.Finish();
    before = "\n";
  }
  if (request.balance) output.Write('\n' + DescribeVerdict(request, report) + '\n');
}

}  // namespace

void PrintForces(Output& output, const TableForm& form, const ForceRequest& request, const ForceReport& report)
{
  if (form.json) {
    PrintJson(output, request, report);
  } else {
    PrintTables(output, form, request, report);
  }
}

}  // namespace quilon
