#include "Views.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "Arrays.h"
#include "Chosen.h"
#include "export/Export.h"
#include "plot/SelectedPicture.h"
#include "report/Report.h"
#include "Text.h"
#include "text/OutputFile.h"

namespace quilon::python {

namespace {

py::tuple Texts(const std::vector<std::string>& texts)
{
  py::list list;
  for (const std::string& text : texts) list.append(TextOf(text));
  return py::tuple(list);
}

py::dict ExportToFiles(const std::shared_ptr<Store>& store, const std::string& output, const std::string& text,
                       const std::string& steps, const std::vector<std::string>& components, bool asPoints, bool links,
                       py::object progress)
{
  CallListener             listener(std::move(progress));
  const ExportReport       report = Work([&] {
    CheckExportOutput(output);
    if (links) CheckLink(store->GetPath(), output);
    return store->Use([&] {
      const Chosen  chosen = Choose(*store, text, steps);
      ExportRequest request;
      request.name              = store->GetName();
      request.output            = output;
      request.blocks            = chosen.blocks;
      request.groups            = asPoints ? ExportGroupForm::Points : ExportGroupForm::Arrays;
      request.components.forAll = components;
      if (links) request.linkedFolder = store->GetPath();
      for (const FED_DataDescriptor& block : request.blocks) {
        const int onf                  = block.GetInteger(FED_DataDescriptor::OnfId);
        request.components.ofKind[onf] = chosen.selection.ComponentsOf(onf);
      }
      return Export(chosen.database, request, listener);
    });
  });
  std::vector<std::string> files;
  for (const auto& file : report.files) files.push_back(file.string());
  py::dict result;
  result["files"]    = Texts(files);
  result["points"]   = report.numPoints;
  result["cells"]    = report.numCells;
  result["arrays"]   = Texts(report.arrays);
  result["times"]    = report.areTimesKnown ? py::object(py::tuple(py::cast(report.times))) : py::object(py::none());
  result["left_out"] = Texts(report.leftOut);
  result["notes"]    = Texts(listener.GetNotes());
  return result;
}

ModelPictureOptions PictureOptionsOf(const py::dict& given)
{
  ModelPictureOptions options;
  options.component  = given["component"].cast<std::string>();
  options.view       = ParseView(given["view"].cast<std::string>());
  options.size       = ParsePictureSize(given["size"].cast<std::string>());
  options.background = ParseColour(given["background"].cast<std::string>());
  if (given["is_deformed"].cast<bool>())
    options.deformation = Deformation{given["factor"].cast<std::optional<double>>()};
  options.showsUndeformed = given["undeformed"].cast<bool>();
  options.lines           = ParseMeshLines(given["lines"].cast<std::string>());
  if (const auto range = given["range"].cast<std::optional<std::array<double, 2>>>())
    options.range = ValueRange{range->front(), range->back()};
  if (const auto map = given["map"].cast<std::string>(); map != "auto") options.map = ParseColourMap(map);
  options.unit     = given["unit"].cast<std::string>();
  options.title    = given["title"].cast<std::string>();
  options.hasMarks = given["marks"].cast<bool>();
  options.hasAxes  = given["axes"].cast<bool>();
  options.isLit    = given["light"].cast<bool>();
  if (const auto cut = given["cut"].cast<std::optional<std::array<double, 6>>>()) {
    const auto [px, py, pz, nx, ny, nz] = *cut;
    options.cut                         = SectionPlane{{px, py, pz}, {nx, ny, nz}};
  }
  return options;
}

/// @return value and id; None where nothing has a value
py::object MarkOf(const std::optional<ExtremeMark>& mark)
{
  if (!mark) return py::none();
  return py::make_tuple(mark->value, mark->id);
}

py::dict Plot(const std::shared_ptr<Store>& store, const std::string& output, const std::string& text,
              const std::string& steps, const py::dict& given)
{
  SelectedPicture request;
  request.name             = store->GetName();
  request.text             = text;
  request.options          = PictureOptionsOf(given);
  request.part.sets        = given["sets"].cast<std::vector<std::string>>();
  request.part.materials   = given["materials"].cast<std::vector<std::string>>();
  const ModelPicture drawn = Work([&] {
    const PictureFormat format = PictureFormatOf(output);
    CheckOutputFile(output);
    ModelPicture picture = store->Use([&] {
      if (text.empty()) return DrawSelected(store->RequireReading().Get(), std::move(request), format);
      const Chosen chosen = Choose(*store, text, steps);
      request.selection   = chosen.selection;
      request.blocks      = chosen.blocks;
      return DrawSelected(chosen.database, std::move(request), format);
    });
    WriteFile(output, picture.bytes);
    return picture;
  });
  py::object         range = py::none();
  if (drawn.range) range = py::make_tuple(drawn.range->least, drawn.range->greatest);
  py::dict result;
  result["component"] = drawn.component;
  result["range"]     = range;
  result["least"]     = MarkOf(drawn.least);
  result["greatest"]  = MarkOf(drawn.greatest);
  result["factor"]    = drawn.factor;
  result["notes"]     = Texts(drawn.notes);
  return result;
}

py::dict WritePage(const std::shared_ptr<Store>& store, const std::string& output, const std::string& text,
                   const std::string& steps, std::size_t maxSteps, bool inHalves, bool leavesOutInside,
                   py::object progress)
{
  CallListener       listener(std::move(progress));
  const ReportResult result = Work([&] {
    CheckOutputFile(output);
    return store->Use([&] {
      const Chosen chosen = Choose(*store, text, steps);
      PageRequest  request;
      request.database        = &chosen.database;
      request.name            = store->GetName();
      request.blocks          = ChoosePageBlocks(chosen.blocks, !text.empty());
      request.maxSteps        = maxSteps;
      request.bits            = inHalves ? BlobBits::Half : BlobBits::Full;
      request.leavesOutInside = leavesOutInside;
      return WriteReport(request, output, "quilon " QUILON_VERSION, listener);
    });
  });
  py::dict           told;
  told["bytes"]      = result.bytes;
  told["steps"]      = result.numSteps;
  told["points"]     = result.numPoints;
  told["triangles"]  = result.numTriangles;
  told["has_inside"] = result.hasInside;
  return told;
}

}  // namespace

void DefineViews(py::module_& module)
{
  module.def("export", &ExportToFiles);
  module.def("plot", &Plot);
  module.def("report", &WritePage);
}

}  // namespace quilon::python
