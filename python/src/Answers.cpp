#include "Answers.h"

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "answers/Combine.h"
#include "answers/Envelope.h"
#include "answers/Extremes.h"
#include "answers/Path.h"
#include "answers/Region.h"
#include "Arrays.h"
#include "Block.h"
#include "Chosen.h"
#include "database/DatabaseFolder.h"
#include "database/ModelCopy.h"
#include "database/Publication.h"
#include "database/StepTimes.h"
#include "kinds/KindTable.h"
#include "Text.h"

namespace quilon::python {

namespace {

/// An envelope as arrays.
struct EnvelopeArrays
{
  FED_DataDescriptor              key;
  std::string                     kind;
  std::vector<std::string>        components;
  std::vector<FED_DataDescriptor> steps;
  std::vector<int>                ids;
  std::vector<double>             least, greatest, largest;  // shape [ids, components]
  std::vector<int>                leastStep, greatestStep;   // likewise; -1 where no value was a number
};

EnvelopeArrays ToArrays(const EnvelopeSeries& series, const KindTable& kinds)
{
  EnvelopeArrays arrays{series.key, kinds.GetName(series.key), {}, series.steps, {}, {}, {}, {}, {}, {}};
  for (const Component& component : series.field.GetComponents()) arrays.components.push_back(component.GetName());
  const auto toStep = [](const EnvelopeField::Extreme& extreme) {
    return extreme.step == EnvelopeField::kNoStep ? -1 : static_cast<int>(extreme.step);
  };
  for (const std::size_t row : series.field.SortedRows()) {
    arrays.ids.push_back(series.field.GetId(row));
    for (std::size_t k = 0; k < arrays.components.size(); ++k) {
      const EnvelopeField::Extreme least    = series.field.GetLeast(row, k);
      const EnvelopeField::Extreme greatest = series.field.GetGreatest(row, k);
      arrays.least.push_back(least.value);
      arrays.greatest.push_back(greatest.value);
      arrays.largest.push_back(series.field.GetLargest(row, k).value);
      arrays.leastStep.push_back(toStep(least));
      arrays.greatestStep.push_back(toStep(greatest));
    }
  }
  return arrays;
}

py::list Envelopes(const std::shared_ptr<Store>& store, const std::string& text, const std::string& steps,
                   const std::string& axes, py::object progress)
{
  CallListener                listener(std::move(progress));
  std::vector<EnvelopeArrays> found;
  Work([&] {
    store->Use([&] {
      const Chosen          chosen = Choose(*store, text, steps);
      const EnvelopeRequest request{store->GetName(), chosen.selection, axes};
      CalculateEnvelopes(chosen.database, chosen.blocks, request, &listener,
                         [&](const EnvelopeSeries& series) { found.push_back(ToArrays(series, chosen.kinds)); });
    });
  });
  py::list list;
  for (EnvelopeArrays& arrays : found) {
    py::list keys;
    for (const FED_DataDescriptor& step : arrays.steps) keys.append(KeyOf(step));
    const std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(arrays.ids.size()),
                                         static_cast<py::ssize_t>(arrays.components.size())};
    py::dict                       entry;
    entry["kind"]          = TextOf(arrays.kind);
    entry["onf"]           = arrays.key.GetInteger(FED_DataDescriptor::OnfId);
    entry["key"]           = KeyOf(arrays.key);
    entry["components"]    = py::tuple(py::cast(arrays.components));
    entry["steps"]         = py::tuple(keys);
    entry["ids"]           = ArrayOf(std::move(arrays.ids));
    entry["least"]         = ArrayOf(std::move(arrays.least), shape);
    entry["greatest"]      = ArrayOf(std::move(arrays.greatest), shape);
    entry["largest"]       = ArrayOf(std::move(arrays.largest), shape);
    entry["least_step"]    = ArrayOf(std::move(arrays.leastStep), shape);
    entry["greatest_step"] = ArrayOf(std::move(arrays.greatestStep), shape);
    list.append(std::move(entry));
  }
  return list;
}

/// @param combinations lines as a file has them
/// @return blocks written, and what the user should know
py::tuple CombineToDatabase(const std::shared_ptr<Store>& store, const std::string& combinations,
                            const std::string& name, const std::string& output, const std::string& text,
                            bool allowsNonlinear, py::object progress)
{
  CallListener             listener(std::move(progress));
  std::vector<std::string> notes;
  const std::size_t        blocks = Work([&] {
    RequireDatabaseName(output);
    Publication publication(output);
    return store->Use([&] {
      const Chosen   chosen = Choose(*store, text, "");
      CombineRequest request;
      request.database     = store->GetName();
      request.selection    = chosen.selection;
      request.hasSelection = !text.empty();
      request.caseFile     = name;
      std::istringstream lines(combinations);
      request.combinations   = ReadCombinations(lines, name);
      request.linearity      = ReadStepLinearity(chosen.database);
      request.allowNonlinear = allowsNonlinear;
      const CombinePlan plan = PlanCombinations(chosen.database, chosen.blocks, request);
      notes                  = plan.notes;
      CopyModel(chosen.database, plan.iterations, publication.Target());
      const CombineReport report = CombineInto(chosen.database, plan, request, publication.Target(), &listener);
      if (report.numPartial > 0)
        notes.push_back(std::to_string(report.numPartial) +
                               " records left out: of ids that not all load cases of their combination have");
      return publication.Publish();
    });
  });
  py::list                 told;
  for (const std::string& note : notes) told.append(TextOf(note));
  return py::make_tuple(blocks, told);
}

py::dict Follow(const std::shared_ptr<Store>& store, const std::string& text, const std::string& steps,
                const Doubles& places, const std::string& axes, bool linearizes)
{
  PathRequest request;
  request.database  = store->GetName();
  request.axes      = axes;
  request.linearize = linearizes;
  // Elements tell which places are outside, and places may be asked one by one.
  request.mayBeOutside = true;
  for (py::ssize_t i = 0; i < places.shape(0); ++i)
    request.places.push_back({places.at(i, 0), places.at(i, 1), places.at(i, 2)});
  PathReport                         report;
  std::vector<std::optional<double>> times;
  Work([&] {
    store->Use([&] {
      const Chosen chosen = Choose(*store, text, steps);
      request.selection   = chosen.selection;
      report              = FollowPath(chosen.database, chosen.blocks, request);
      const StepTimes& of = store->RequireReading().GetTimes();
      for (const PathStep& step : report.steps) times.push_back(of.TimeOf(step.blocks.front()));
    });
  });
  std::vector<double> s;
  std::vector<int>    elements;
  for (const PathPoint& point : report.points) {
    s.push_back(point.s);
    elements.push_back(point.element.value_or(0));
  }
  py::list list;
  for (std::size_t i = 0; i < report.steps.size(); ++i) {
    const PathStep&     step = report.steps[i];
    std::vector<double> values;
    for (const auto& row : step.rows)
      for (const std::optional<double>& value : row)
        values.push_back(value.value_or(std::numeric_limits<double>::quiet_NaN()));
    py::object linearization = py::none();
    if (step.linearization) {
      py::dict parts;
      for (const PathLinearization::Part& part : step.linearization->parts)
        parts[part.name] =
            py::make_tuple(ArrayOf(std::vector<double>(part.tensor.begin(), part.tensor.end())), part.mises);
      linearization = parts;
    }
    const std::vector<py::ssize_t> shape{static_cast<py::ssize_t>(step.rows.size()),
                                         static_cast<py::ssize_t>(step.columns.size())};
    list.append(py::make_tuple(KeyOf(step.key), times[i], py::tuple(py::cast(step.columns)),
                               ArrayOf(std::move(values), shape), linearization));
  }
  py::dict result;
  result["s"]        = ArrayOf(std::move(s));
  result["elements"] = ArrayOf(std::move(elements));
  result["steps"]    = list;
  return result;
}

ExtremeRequest::Measure MeasureOf(const std::string& name)
{
  if (name == "least") return ExtremeRequest::Least;
  return name == "magnitude" ? ExtremeRequest::Magnitude : ExtremeRequest::Greatest;
}

ExtremeRequest::Per PartOf(const std::string& name)
{
  if (name == "step") return ExtremeRequest::Step;
  if (name == "material") return ExtremeRequest::Material;
  if (name == "set") return ExtremeRequest::Set;
  return name == "group" ? ExtremeRequest::Group : ExtremeRequest::Whole;
}

/// @param region ids, sets, materials, box and near of RegionOptions
py::tuple FindWorst(const std::shared_ptr<Store>& store, const std::string& text, const std::string& steps,
                    const std::string& measure, std::size_t head, const std::string& per, const py::dict& region,
                    py::object progress)
{
  CallListener  listener(std::move(progress));
  RegionOptions options;
  options.ids       = region["ids"].cast<std::string>();
  options.sets      = region["sets"].cast<std::vector<std::string>>();
  options.materials = region["materials"].cast<std::vector<std::string>>();
  options.box       = region["box"].cast<std::optional<std::array<double, 6>>>();
  options.near      = region["near"].cast<std::optional<std::array<double, 3>>>();
  ExtremeReport report;
  Work([&] {
    store->Use([&] {
      const Chosen   chosen = Choose(*store, text, steps);
      ExtremeRequest request;
      request.selection     = chosen.selection;
      request.selectionText = text;
      request.measure       = MeasureOf(measure);
      request.head          = head;
      request.per           = PartOf(per);
      Region part(chosen.database, options, store->GetName());
      part.RequireIds(chosen.blocks, text);
      report =
          FindExtremes(chosen.database, chosen.blocks, store->RequireReading().GetTimes(), part, request, &listener);
    });
  });
  py::list rows;
  for (const Extreme& extreme : report.rows) {
    py::dict row;
    row["block"]     = ToSelectionText(extreme.block);
    row["kind"]      = TextOf(extreme.kind);
    row["component"] = extreme.component;
    row["value"]     = extreme.value;
    row["id"]        = extreme.id;
    row["point"]     = extreme.point == 0 ? py::object(py::none()) : py::object(py::int_(extreme.point));
    row["place"]     = extreme.place ? py::object(py::tuple(py::cast(*extreme.place))) : py::object(py::none());
    row["type"]      = extreme.type;
    row["material"]  = TextOf(extreme.material);
    row["sets"]      = py::tuple(py::cast(extreme.sets));
    row["time"]      = extreme.time;
    row["key"]       = KeyOf(extreme.step);
    row["part"]      = TextOf(extreme.part);
    row["ties"]      = extreme.ties;
    rows.append(std::move(row));
  }
  return py::make_tuple(rows, report.values, report.nans);
}

/// @return places of equal distance, both ends included
Doubles LineOf(const PathPlace& start, const PathPlace& end, std::size_t count)
{
  std::vector<double> values;
  for (const PathPlace& place : PlacesOnLine(start, end, count))
    values.insert(values.end(), place.begin(), place.end());
  return ArrayOf(std::move(values), {static_cast<py::ssize_t>(count), 3});
}

}  // namespace

void DefineAnswers(py::module_& module)
{
  module.def("max", &FindWorst);
  module.def("envelope", &Envelopes);
  module.def("combine", &CombineToDatabase);
  module.def("path", &Follow);
  module.def("line", &LineOf);
}

}  // namespace quilon::python
