#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <pybind11/stl.h>

#include "diff/Compare.h"
#include "diff/Report.h"
#include "report/Report.h"
#include "Reports.h"
#include "Store.h"
#include "Text.h"
#include "text/JsonText.h"
#include "text/OutputFile.h"

namespace quilon::python {

namespace {

struct ToPython
{
  py::object operator()(std::monostate) const { return py::none(); }
  py::object operator()(diff::NotStated) const { return py::none(); }
  py::object operator()(int value) const { return py::int_(value); }
  // In the digits of a float, as everywhere that the program shows one.
  py::object operator()(float value) const
  {
    const Json          json(value);
    const double* const digits = std::get_if<double>(&json.Get());
    return py::float_(digits != nullptr ? *digits : static_cast<double>(value));
  }
  py::object operator()(double value) const { return py::float_(value); }
  py::object operator()(const std::string& value) const { return TextOf(value); }
};

py::dict NameOf(const diff::BlockName& name)
{
  py::dict entry;
  entry["block"] = name.block;
  entry["kind"]  = TextOf(name.kind);
  entry["step"]  = name.step;
  entry["layer"] = name.layer == "-" ? py::object(py::none()) : py::object(py::int_(std::stoi(name.layer)));
  return entry;
}

py::dict DifferenceOf(const diff::DifferenceRow& row)
{
  py::dict entry     = NameOf(row.name);
  entry["id"]        = row.id;
  entry["component"] = row.component.empty() ? py::object(py::none()) : py::object(TextOf(row.component));
  entry["a"]         = std::visit(ToPython(), row.a);
  entry["b"]         = std::visit(ToPython(), row.b);
  entry["distance"]  = row.distance;
  entry["times"]     = row.excess;
  entry["rule"]      = row.rule;
  return entry;
}

py::dict CountsOf(std::size_t compared, std::size_t different, std::size_t onlyInA, std::size_t onlyInB)
{
  py::dict counts;
  counts["compared"]  = compared;
  counts["different"] = different;
  counts["only_in_a"] = onlyInA;
  counts["only_in_b"] = onlyInB;
  return counts;
}

py::dict Describe(const diff::Report& report)
{
  py::list differences, norms, oneSided;
  for (const diff::DifferenceRow& row : report.worst) differences.append(DifferenceOf(row));
  for (const diff::NormRow& row : report.norms) {
    py::dict entry    = NameOf(row.name);
    entry["values"]   = row.norms.values;
    entry["max"]      = row.norms.largest;
    entry["rms"]      = row.norms.GetRms();
    entry["relative"] = row.norms.GetRelative();
    entry["peak"]     = row.norms.peak;
    entry["sign"]     = row.isNegated ? -1 : 1;
    norms.append(std::move(entry));
  }
  for (const diff::OneSidedRow& row : report.oneSided) {
    py::dict entry   = NameOf(row.name);
    entry["side"]    = row.isSecond ? "B" : "A";
    entry["records"] = row.records;
    oneSided.append(std::move(entry));
  }
  py::dict result;
  result["same"]    = report.isSame;
  result["summary"] = TextOf(report.Summarize());
  result["blocks"]  = CountsOf(report.blocks, report.differingBlocks, report.missingBlocks, report.additionalBlocks);
  result["records"] =
      CountsOf(report.records, report.differingRecords, report.missingRecords, report.additionalRecords);
  result["values"]      = py::make_tuple(report.values, report.differingValues);
  result["differences"] = differences;
  result["norms"]       = norms;
  result["one_sided"]   = oneSided;
  return result;
}

py::dict Compare(const std::shared_ptr<Store>& a, const std::shared_ptr<Store>& b, const py::dict& given,
                 py::object progress)
{
  diff::CompareOptions options;
  options.kindRules            = given["rules"].cast<std::vector<std::string>>();
  options.match.selection      = given["selection"].cast<std::string>();
  options.match.steps          = given["steps"].cast<std::string>();
  options.ruleFile             = given["rule_file"].cast<std::string>();
  options.match.timeTolerance  = given["match_time"].cast<std::optional<double>>();
  options.match.pointTolerance = given["match_points"].cast<std::optional<double>>();
  options.ignoresMissingInA    = given["ignore_missing_in_a"].cast<bool>();
  options.ignoresMissingInB    = given["ignore_missing_in_b"].cast<bool>();
  options.maxRecords           = given["max_records"].cast<std::size_t>();
  options.maxBlocks            = given["max_blocks"].cast<std::size_t>();
  const auto   page            = given["html"].cast<std::string>();
  CallListener listener(std::move(progress));
  options.listener = &listener;
  FED_ResultDatabase forPage;
  if (!page.empty()) options.difference = &forPage;

  const diff::Report report = Work([&] {
    if (!page.empty()) CheckOutputFile(page);
    const auto compare = [&] {
      const FED_Database& first  = a->RequireReading().Get();
      const FED_Database& second = b->RequireReading().Get();
      diff::Report        found  = diff::Compare({first, a->GetName()}, {second, b->GetName()}, options);
      if (!page.empty())
        WriteComparison(first, a->GetName(), {&second, &forPage, &found, b->GetName()},
                        !options.match.selection.empty(), page, "quilon " QUILON_VERSION, listener);
      return found;
    };
    if (a == b) return a->Use(compare);
    // In one order, whoever comes first, so that two comparisons do not wait for each other.
    Store& first  = a < b ? *a : *b;
    Store& second = a < b ? *b : *a;
    return first.Use([&] { return second.Use(compare); });
  });
  return Describe(report);
}

}  // namespace

void DefineDiff(py::module_& module) { module.def("diff", &Compare); }

}  // namespace quilon::python
