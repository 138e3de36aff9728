#include "diff/ReportPrinting.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "diff/Report.h"
#include "terminal/Format.h"
#include "terminal/JsonText.h"
#include "terminal/Output.h"

namespace quilon::diff {

namespace {

std::vector<std::string> NameCells(const BlockName& name, const TableOptions& form)
{
  const auto cell = [&](const std::string& text) { return form.csv && text == "-" ? std::string() : text; };
  return {form.csv ? name.kind : Printable(name.kind), cell(name.step), cell(name.layer)};
}

std::vector<TableColumn> NameColumns() { return {{"kind", true}, {"step", true}, {"layer", false}}; }

TableWriter StartTable(Output& output, const TableOptions& form, const std::vector<TableColumn>& columns)
{
  std::vector<TableColumn> all = NameColumns();
  all.insert(all.end(), columns.begin(), columns.end());
  return MakeTable(output, form, std::move(all));
}

void PrintDifferences(Output& output, const TableOptions& form, const Report& report)
{
  TableWriter table =
      StartTable(output, form, {{"id", false}, {"component", true}, {"A", false}, {"B", false}, {"rule", true}});
  for (const DifferenceRow& row : report.worst) {
    std::vector<std::string> cells = NameCells(row.name, form);
    for (const std::string* text : {&row.id, &row.component, &row.a, &row.b, &row.rule})
      cells.push_back(form.csv ? *text == "-" ? std::string() : *text : Printable(*text));
    table.Row(std::move(cells));
  }
  table.Finish();
}

void PrintNorms(Output& output, const TableOptions& form, const std::vector<NormRow>& norms)
{
  TableWriter table = StartTable(output, form,
                                 {{"values", false},
                                  {"max|A-B|", false},
                                  {"rms(A-B)", false},
                                  {"|A-B|/|A|", false},
                                  {"peak", false},
                                  {"sign", false}});
  for (const NormRow& row : norms) {
    std::vector<std::string> cells = NameCells(row.name, form);
    cells.push_back(std::to_string(row.norms.values));
    for (const double value : {row.norms.largest, row.norms.GetRms(), row.norms.GetRelative(), row.norms.peak})
      cells.push_back(FormatRounded(value));
    cells.emplace_back(row.isNegated ? "-1" : "1");
    table.Row(std::move(cells));
  }
  table.Finish();
}

void PrintNans(Output& output, const TableOptions& form, const Report& report)
{
  TableWriter table = StartTable(output, form, {{"id", false}, {"component", true}, {"nan let pass", true}});
  for (const NanRow& row : report.nans) {
    std::vector<std::string> cells = NameCells(report.all[row.block].name, form);
    cells.insert(cells.end(), {std::to_string(row.id), Printable(row.component), row.GetSide()});
    table.Row(std::move(cells));
  }
  table.Finish();
}

Json NameJson(const BlockName& name)
{
  Json json;
  json["block"] = name.block;
  json["kind"]  = name.kind;
  json["step"]  = name.step;
  json["layer"] = name.layer == "-" ? Json() : Json(std::stoi(name.layer));
  return json;
}

Json IdJson(const std::string& id) { return id == "-" ? Json() : Json(std::stoi(id)); }

Json TextJson(const std::string& text) { return text == "-" ? Json() : Json(text); }

}  // namespace

void PrintReport(Output& output, const TableOptions& form, const Report& report, bool allNorms)
{
  if (!report.worst.empty() || form.csv) PrintDifferences(output, form, report);
  if (form.csv) return;
  std::vector<NormRow> norms;
  std::copy_if(report.norms.begin(), report.norms.end(), std::back_inserter(norms),
               [&](const NormRow& row) { return allNorms || row.isDifferent; });
  if (!norms.empty()) {
    if (!report.worst.empty()) output.Write("\n");
    PrintNorms(output, form, norms);
  }
  if (!report.nans.empty()) {
    if (!report.worst.empty() || !norms.empty()) output.Write("\n");
    PrintNans(output, form, report);
  }
  if (!report.worst.empty() || !norms.empty() || !report.nans.empty()) output.Write("\n");
  output.Write(report.Summarize() + '\n');
}

void PrintReportAsJson(Output& output, const Report& report)
{
  Json json;
  json["a"]       = report.a;
  json["b"]       = report.b;
  json["verdict"] = report.isSame ? "same" : "different";
  json["summary"] = report.Summarize();
  json["blocks"]  = Json{{"compared", report.blocks},
                        {"different", report.differingBlocks},
                        {"missing in B", report.missingBlocks},
                        {"only in B", report.additionalBlocks},
                        {"ignored", report.ignoredBlocks}};
  json["records"] = Json{{"compared", report.records},
                         {"different", report.differingRecords},
                         {"missing in B", report.missingRecords},
                         {"only in B", report.additionalRecords}};
  json["values"]  = Json{{"compared", report.values}, {"different", report.differingValues}};

  json["differences"] = Json::array();
  for (const DifferenceRow& row : report.worst) {
    Json entry         = NameJson(row.name);
    entry["id"]        = IdJson(row.id);
    entry["component"] = TextJson(row.component);
    entry["a"]         = TextJson(row.a);
    entry["b"]         = TextJson(row.b);
    entry["rule"]      = row.rule;
    json["differences"].push_back(std::move(entry));
  }
  json["norms"] = Json::array();
  for (const NormRow& row : report.norms) {
    Json entry        = NameJson(row.name);
    entry["values"]   = row.norms.values;
    entry["max"]      = JsonNumber(row.norms.largest);
    entry["rms"]      = JsonNumber(row.norms.GetRms());
    entry["relative"] = JsonNumber(row.norms.GetRelative());
    entry["peak"]     = JsonNumber(row.norms.peak);
    entry["sign"]     = row.isNegated ? -1 : 1;
    json["norms"].push_back(std::move(entry));
  }
  json["nans let pass"] = Json::array();
  for (const NanRow& row : report.nans) {
    Json entry         = NameJson(report.all[row.block].name);
    entry["id"]        = row.id;
    entry["component"] = TextJson(row.component);
    entry["side"]      = row.GetSide();
    json["nans let pass"].push_back(std::move(entry));
  }
  output.Write(JsonText(json, 2) + '\n');
}

}  // namespace quilon::diff
