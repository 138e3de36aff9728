#include "commands/DiffPrinting.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "diff/Report.h"
#include "terminal/Output.h"
#include "terminal/Sheet.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

std::vector<std::string> NameCells(const BlockName& name, const TableForm& form)
{
  const auto cell = [&](const std::string& text) { return form.csv && text == "-" ? std::string() : text; };
  return {form.csv ? name.kind : Printable(name.kind), cell(name.step), cell(name.layer)};
}

std::vector<TableColumn> NameColumns() { return {{"kind", true}, {"step", true}, {"layer", false}}; }

TableWriter StartTable(Output& output, const TableForm& form, const std::vector<TableColumn>& columns)
{
  std::vector<TableColumn> all = NameColumns();
  all.insert(all.end(), columns.begin(), columns.end());
  return MakeTable(output, form, std::move(all));
}

/// @return the text of a cell that may have nothing to say, which CSV leaves empty
std::string CellText(const std::string& text, const TableForm& form)
{
  return text.empty() || text == "-" ? form.csv ? "" : "-" : form.csv ? text : Printable(text);
}

void PrintDifferences(Output& output, const TableForm& form, const Report& report)
{
  TableWriter table =
      StartTable(output, form, {{"id", false}, {"component", true}, {"A", false}, {"B", false}, {"rule", true}});
  const auto add = [&](const BlockName& name, const std::vector<std::string>& texts) {
    std::vector<std::string> cells = NameCells(name, form);
    for (const std::string& text : texts) cells.push_back(CellText(text, form));
    table.Row(std::move(cells));
  };
  if (form.csv)
    for (const OneSidedRow& row : report.oneSided)
      if (!(row.isSecond ? report.ignoresAdditional : report.ignoresMissing))
        add(row.name, {"", "", "", "", row.isSecond ? "block only in B" : "block missing in B"});
  for (const DifferenceRow& row : report.worst)
    add(row.name, {row.id ? std::to_string(*row.id) : "", row.component, ToText(row.a), ToText(row.b), row.rule});
  table.Finish();
}

void PrintComponents(Output& output, const TableForm& form, const Report& report)
{
  TableWriter table = StartTable(output, form,
                                 {{"worst of component", true},
                                  {"different", false},
                                  {"id", false},
                                  {"A", false},
                                  {"B", false},
                                  {"|A-B|", false},
                                  {"times", false}});
  for (const ComponentRow& row : report.components) {
    const DifferenceRow&     worst = row.worst;
    std::vector<std::string> cells = NameCells(worst.name, form);
    for (const std::string& text :
         {worst.component, std::to_string(row.differingValues), worst.id ? std::to_string(*worst.id) : "",
          ToText(worst.a), ToText(worst.b), FormatRounded(worst.distance), FormatRounded(worst.excess)})
      cells.push_back(CellText(text, form));
    table.Row(std::move(cells));
  }
  table.Finish();
}

void PrintNorms(Output& output, const TableForm& form, const std::vector<NormRow>& norms)
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

void PrintNans(Output& output, const TableForm& form, const Report& report)
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

struct ValueToJson
{
  Json operator()(std::monostate) const { return {}; }
  Json operator()(NotStated) const { return {}; }
  Json operator()(int number) const { return number; }
  // In the digits of a float, not in those that it has as a double.
  Json operator()(float number) const { return JsonNumber(number); }
  Json operator()(double number) const { return JsonNumber(number); }
  Json operator()(const std::string& text) const { return text; }
};

Json ValueJson(const ReportedValue& value) { return std::visit(ValueToJson(), value); }

/// @return the place of a difference and what stands there
Json DifferenceJson(const DifferenceRow& row)
{
  Json json         = NameJson(row.name);
  json["id"]        = row.id ? Json(*row.id) : Json();
  json["component"] = row.component.empty() ? Json() : Json(row.component);
  json["a"]         = ValueJson(row.a);
  json["b"]         = ValueJson(row.b);
  json["distance"]  = JsonNumber(row.distance);
  json["times"]     = JsonNumber(row.excess);
  json["rule"]      = row.rule;
  return json;
}

Json CountsJson(std::size_t compared, std::size_t different, std::size_t onlyInA, std::size_t onlyInB)
{
  return {{"compared", compared}, {"different", different}, {"only-in-a", onlyInA}, {"only-in-b", onlyInB}};
}

Json NormJson(const NormRow& row)
{
  Json json        = NameJson(row.name);
  json["values"]   = row.norms.values;
  json["max"]      = JsonNumber(row.norms.largest);
  json["rms"]      = JsonNumber(row.norms.GetRms());
  json["relative"] = JsonNumber(row.norms.GetRelative());
  json["peak"]     = JsonNumber(row.norms.peak);
  json["sign"]     = row.isNegated ? -1 : 1;
  return json;
}

void AddLists(Json& json, const Report& report)
{
  json["differences"] = Json::array();
  for (const DifferenceRow& row : report.worst) json["differences"].push_back(DifferenceJson(row));
  json["components"] = Json::array();
  for (const ComponentRow& row : report.components) {
    Json entry         = DifferenceJson(row.worst);
    entry["different"] = row.differingValues;
    json["components"].push_back(std::move(entry));
  }
  json["norms"] = Json::array();
  for (const NormRow& row : report.norms) json["norms"].push_back(NormJson(row));
  json["one-sided"] = Json::array();
  for (const OneSidedRow& row : report.oneSided) {
    Json entry       = NameJson(row.name);
    entry["side"]    = row.isSecond ? "B" : "A";
    entry["records"] = row.records;
    json["one-sided"].push_back(std::move(entry));
  }
  json["passed-nans"] = Json::array();
  for (const NanRow& row : report.nans) {
    Json entry         = NameJson(report.all[row.block].name);
    entry["id"]        = row.id;
    entry["component"] = row.component;
    entry["side"]      = row.GetSide();
    json["passed-nans"].push_back(std::move(entry));
  }
}

}  // namespace

void PrintReport(Output& output, const TableForm& form, const Report& report, bool allNorms)
{
  if (form.csv) return PrintDifferences(output, form, report);
  bool       isFirst = true;
  const auto part    = [&](bool isThere, const auto& print) {
    if (!isThere) return;
    if (!isFirst) output.Write("\n");
    isFirst = false;
    print();
  };
  part(!report.worst.empty(), [&] { PrintDifferences(output, form, report); });
  part(!report.components.empty(), [&] { PrintComponents(output, form, report); });
  std::vector<NormRow> norms;
  std::copy_if(report.norms.begin(), report.norms.end(), std::back_inserter(norms),
               [&](const NormRow& row) { return allNorms || row.isDifferent; });
  part(!norms.empty(), [&] { PrintNorms(output, form, norms); });
  part(!report.nans.empty(), [&] { PrintNans(output, form, report); });
  part(true, [&] {
    for (const bool isSecond : {false, true}) {
      const std::string line = report.SummarizeOneSided(isSecond);
      if (!line.empty()) output.Write(line + '\n');
    }
    output.Write(report.Summarize() + '\n');
  });
}

void PrintReportAsJson(Output& output, const Report& report, bool isBrief)
{
  Json json;
  json["a"]       = report.a;
  json["b"]       = report.b;
  json["verdict"] = report.isSame ? "same" : "different";
  json["summary"] = report.Summarize();
  json["ignored"] = Json::array();
  if (report.ignoresMissing) json["ignored"].push_back("only-in-a");
  if (report.ignoresAdditional) json["ignored"].push_back("only-in-b");
  json["blocks"] = CountsJson(report.blocks, report.differingBlocks, report.missingBlocks, report.additionalBlocks);
  json["blocks"]["ignored"] = report.ignoredBlocks;
  json["records"] =
      CountsJson(report.records, report.differingRecords, report.missingRecords, report.additionalRecords);
  json["values"] = Json{{"compared", report.values}, {"different", report.differingValues}};
  if (!isBrief) AddLists(json, report);
  PrintJson(output, json);
}

}  // namespace quilon::diff
