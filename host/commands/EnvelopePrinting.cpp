#include "commands/EnvelopePrinting.h"

#include <cmath>
#include <utility>

#include "answers/Envelope.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "selection/Selection.h"
#include "terminal/Console.h"
#include "terminal/Output.h"
#include "text/Format.h"
#include "text/JsonText.h"

namespace quilon {

namespace {

using Extreme = EnvelopeField::Extreme;

/// @return what the steps of a series are called, by number
std::vector<std::string> NamesOfSteps(const EnvelopeSeries& series)
{
  std::vector<std::string> names;
  for (const FED_DataDescriptor& step : series.steps) names.push_back(KeyText(step));
  return names;
}

/// Calls visit(id, component, least, greatest, largest) for each row of the envelope.
template <typename Visit>
void ForEachRow(const EnvelopeSeries& series, const Visit& visit)
{
  const std::vector<Component>& components = series.field.GetComponents();
  for (const std::size_t row : series.field.SortedRows()) {
    ThrowIfInterrupted();
    for (std::size_t k = 0; k < components.size(); ++k)
      visit(series.field.GetId(row), components[k].GetName(), series.field.GetLeast(row, k),
            series.field.GetGreatest(row, k), series.field.GetLargest(row, k));
  }
}

}  // namespace

std::string KeyText(const FED_DataDescriptor& descriptor)
{
  const std::string text = ToSelectionText(descriptor);
  const std::size_t at   = text.find('@');
  return at == std::string::npos ? "" : text.substr(at + 1);
}

void EnvelopePrinter::Print(const EnvelopeSeries& series)
{
  if (form_.json)
    PrintJson(series);
  else
    PrintTable(series);
  isFirst_ = false;
}

void EnvelopePrinter::Finish()
{
  if (table_) table_->Finish();
  if (form_.json) output_.Write(isFirst_ ? "[]\n" : "\n]\n");
}

void EnvelopePrinter::PrintJson(const EnvelopeSeries& series)
{
  Json head;
  head["block"]    = ToSelectionText(series.key);
  head["onf"]      = series.key.GetInteger(FED_DataDescriptor::OnfId);
  head["kind"]     = kinds_.GetName(series.key);
  head["steps"]    = series.steps.size();
  std::string text = JsonText(head);
  text.pop_back();  // its closing brace: the rows follow
  output_.Write((isFirst_ ? "[\n" : ",\n") + text + ",\"rows\":[");
  const char*                    before = "\n  ";
  const std::vector<std::string> steps  = NamesOfSteps(series);
  ForEachRow(series, [&](int id, const std::string& component, const Extreme& least, const Extreme& greatest,
                         const Extreme& largest) {
    Json row;
    row["id"]                                               = id;
    row["component"]                                        = component;
    const std::pair<const char*, const Extreme*> extremes[] = {
        {"least", &least}, {"greatest", &greatest}, {"magnitude", &largest}};
    const auto isNone = [](const Extreme& extreme) { return extreme.step == EnvelopeField::kNoStep; };
    for (const auto& [name, extreme] : extremes) row[name] = isNone(*extreme) ? Json() : JsonNumber(extreme->value);
    for (const auto& [name, extreme] : extremes)
      row[std::string(name) + "-step"] = isNone(*extreme) ? Json() : Json(steps[extreme->step]);
    if (!series.names.empty())
      for (const auto& [name, extreme] : extremes)
        row[std::string(name) + "-combination"] = isNone(*extreme) ? Json() : Json(series.names[extreme->step]);
    output_.Write(before + JsonText(row));
    before = ",\n  ";
  });
  output_.Write("]}");
}

void EnvelopePrinter::PrintTable(const EnvelopeSeries& series)
{
  const bool isForPeople = StyleOf(form_) == TableStyle::Aligned;
  if (isForPeople) {
    table_.reset();
    output_.Write((isFirst_ ? "" : "\n") + Printable(kinds_.GetName(series.key)) + "  " + ToSelectionText(series.key) +
                  "  " + Counted(series.steps.size(), series.names.empty() ? "step" : "combination") + '\n');
  }
  if (!table_) {
    std::vector<TableColumn> columns;
    if (!isForPeople) columns.push_back({"block", true});
    for (const char* name :
         {"id", "component", "least", "least-step", "greatest", "greatest-step", "magnitude", "magnitude-step"})
    {
      const std::string_view column = name;
      columns.push_back({name, column == "component" || column.ends_with("-step")});
    }
    table_.emplace(MakeTable(output_, form_, std::move(columns)));
  }
  WriteRows(series, isForPeople);
  if (isForPeople) {
    table_->Finish();
    table_.reset();
  }
}

void EnvelopePrinter::WriteRows(const EnvelopeSeries& series, bool isForPeople)
{
  const std::string              none  = form_.csv ? "" : "-";
  const std::string              block = ToSelectionText(series.key);
  const std::vector<std::string> steps = series.names.empty() ? NamesOfSteps(series) : series.names;
  const std::size_t              first = isForPeople ? 0 : 1;
  constexpr std::size_t          kOwn  = 8;  // columns behind that of the block
  std::vector<std::string>       cells(first + kOwn);
  if (!isForPeople) cells.front() = block;
  ForEachRow(series, [&](int id, const std::string& component, const Extreme& least, const Extreme& greatest,
                         const Extreme& largest) {
    auto cell = cells.begin() + static_cast<std::ptrdiff_t>(first);
    *cell++   = std::to_string(id);
    *cell++   = component;
    for (const Extreme* extreme : {&least, &greatest, &largest}) {
      std::string& value = *cell++;
      std::string& step  = *cell++;
      if (extreme->step == EnvelopeField::kNoStep) {
        value = none;
        step  = none;
        continue;
      }
      value.clear();
      if (isForPeople)
        AppendRounded(value, extreme->value);
      else
        AppendNumber(value, extreme->value);
      step = steps[extreme->step];
    }
    table_->Row(cells);
  });
}

void TellNotes(const EnvelopeSeries& series, const KindTable& kinds, Console& console)
{
  const std::string name = Printable(kinds.GetName(series.key));
  if (series.field.NumNans() > 0)
    console.Note(name + ": " + Counted(series.field.NumNans(), "NaN") + " among the values, which govern nowhere");
  if (const std::size_t partial = series.field.CountPartial(); partial > 0)
    console.Note(name + ": " + Counted(partial, "id") + " without a record in some steps, governed by the others");
  if (series.numWithoutAxes > 0)
    console.Note(name + ": " + Counted(series.numWithoutAxes, "record") + " at places where the axes are none");
}

void TellNotes(const EnvelopeReport& report, Console& console)
{
  if (!report.axes.empty()) console.Note(report.axes);
  std::string list;
  for (const std::string& kind : report.skippedKinds) list += (list.empty() ? "" : ", ") + Printable(kind);
  if (!list.empty()) console.Note("no envelope of " + list);
}

}  // namespace quilon
