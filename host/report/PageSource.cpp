#include "report/PageSource.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <utility>

#include <bundled/OnfKinds.h>

#include "answers/Overview.h"
#include "answers/Region.h"
#include "database/StepTimes.h"
#include "export/ExportGroups.h"
#include "export/ExportPlan.h"
#include "export/GridSource.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "plot/ModelField.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "selection/Selection.h"
#include "text/Failure.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

using OnfKind::OnfOf;

/// @return the blocks of as many steps as are wanted, evenly spread, the first and the last among them
std::vector<Descriptor> ThinOut(std::vector<Descriptor> blocks, std::size_t maxSteps)
{
  const std::vector<Descriptor> steps = ListResultSteps(blocks);
  if (maxSteps == 0 || steps.size() <= maxSteps) return blocks;
  std::set<Descriptor> kept;
  for (std::size_t i = 0; i < maxSteps; ++i)
    kept.insert(maxSteps == 1 ? steps.back() : steps[i * (steps.size() - 1) / (maxSteps - 1)]);
  std::erase_if(blocks,
                [&](const Descriptor& block) { return HasResultStep(block) && !kept.contains(GetResultStep(block)); });
  return blocks;
}

/// @return "load case 1, substep 2"
std::string LabelOf(const Descriptor& step)
{
  std::string label;
  for (const IndexKey& key : GetIndexKeys()) {
    if (!step.IsSet(key.index) || key.index == Descriptor::Iteration || key.index == Descriptor::Analysis) continue;
    std::string name = key.name;
    std::replace(name.begin(), name.end(), '-', ' ');
    label += (label.empty() ? "" : ", ") + name + ' ' + std::to_string(step.GetInteger(key.index));
  }
  return label;
}

/// @return the block of the first step that has the array
const Descriptor& AnyBlockOf(const ExportArray& array)
{
  const auto has = std::find_if(array.sources.begin(), array.sources.end(), [](const auto& of) { return !of.empty(); });
  return has->front().block;
}

/// @return the middle of the mesh's box: floats keep the digits of what is near it
Mesh::Point MiddleOf(const Mesh& mesh)
{
  const std::optional<MeshBox> box = BoxOf(mesh);
  Mesh::Point                  middle{};
  for (std::size_t k = 0; k < 3; ++k) middle[k] = box->least[k] / 2.0 + box->greatest[k] / 2.0;
  return middle;
}

std::string NameOf(int material, const std::map<int, std::string>& names)
{
  const auto named = names.find(material);
  if (named != names.end() && !named->second.empty()) return named->second;
  return material == 0 ? "no material" : "material " + std::to_string(material);
}

bool HasGroups(const std::vector<Descriptor>& blocks)
{
  return std::any_of(blocks.begin(), blocks.end(),
                     [](const Descriptor& block) { return block.IsSet(OnfIndex::Group) && IsExported(OnfOf(block)); });
}

}  // namespace

/// A database's mesh and values, in the order in which their parts need each other.
class FieldSource
{
public:
  explicit FieldSource(const PageRequest& request)
      : database(*request.database),
        blocks(ThinOut(request.blocks, request.maxSteps)),
        iteration(IterationOf(blocks, request.name)),
        mesh(ReadMesh(database, iteration, request.name)),
        sets(ReadSets(database, iteration)),
        groups(database, iteration, mesh, blocks),
        plan(
            MakeExportPlan(database, blocks, {}, groups,
                           HasGroups(blocks) && groups.AreKnown() ? ExportGroupForm::Points : ExportGroupForm::Arrays)),
        grid(database, mesh, sets, plan, groups)
  {
    if (request.comparison == nullptr) return;
    difference.emplace(plan, *request.comparison->difference);
    changes.emplace(difference->database, mesh, sets, difference->plan, groups);
  }

  /// The same arrays and steps of what a comparison has written.
  struct Difference
  {
    Difference(const ExportPlan& ofFirst, const FED_Database& ofDifference) : database(ofDifference), plan(ofFirst)
    {
      for (ExportArray& array : plan.arrays)
        for (auto& sources : array.sources)
          std::erase_if(sources,
                        [&](const ExportArray::Source& source) { return !database.HasDataBlock(source.block); });
    }
    const FED_Database& database;
    ExportPlan          plan;
  };

  const FED_Database&           database;
  const std::vector<Descriptor> blocks;
  const int                     iteration;
  const Mesh                    mesh;
  const std::vector<NamedSet>   sets;
  const ExportGroups            groups;
  const ExportPlan              plan;
  GridSource                    grid;
  std::optional<Difference>     difference;
  std::optional<GridSource>     changes;
};

std::vector<FED_DataDescriptor> ChoosePageBlocks(std::vector<FED_DataDescriptor> selected, bool isAsked)
{
  std::set<Descriptor> there(selected.begin(), selected.end());
  std::erase_if(selected, [&](const Descriptor& block) {
    const int onf = OnfOf(block);
    if (!IsExported(onf) || onf == OnfKind::Coordinates || onf == OnfKind::ElementType) return true;
    const int tensor = OnfKind::TensorOf(onf);
    if (isAsked || tensor == 0) return false;
    Descriptor ofTensor = block;
    ofTensor.SetInteger(Descriptor::OnfId, tensor);
    return there.contains(ofTensor);
  });
  return selected;
}

PageSource::PageSource(const PageRequest& request, Listener& listener)
    : fields_(std::make_unique<FieldSource>(request)), bits_(request.bits)
{
  listener.Progress("model", 0, 1, "meshes");
  model_ = MakePageModel(fields_->mesh, fields_->sets, fields_->grid);
  if (model_.points.empty())
    Fail(request.name + ": nothing to draw, expected a mesh with solids, shells or beams (blocks 595 and 596)");
  nodeSets_ = ListPageNodeSets(fields_->mesh, fields_->sets, fields_->grid, model_);
  MakeModelHeader();
  MakeStepHeader();
  MakeFieldHeader();
  numOutside_ = blobs_.size();
  if (!model_.solids.empty() && !request.leavesOutInside) MakeInsideHeader();
}

PageSource::~PageSource() = default;

void PageSource::MakeModelHeader()
{
  Json json;
  json["origin"]       = Json(MiddleOf(fields_->mesh));
  json["blobs"]        = ListBlobs({{"points", Content::Points},
                                    {"ids", Content::Ids},
                                    {"triangles", Content::Triangles},
                                    {"triangleElements", Content::TriangleElements},
                                    {"edges", Content::Edges},
                                    {"beams", Content::Beams},
                                    {"beamElements", Content::BeamElements},
                                    {"elementIds", Content::ElementIds},
                                    {"setNodes", Content::SetNodes}},
                                   false);
  json["numPoints"]    = model_.points.size();
  json["numTriangles"] = model_.triangleElements.size();
  json["numEdges"]     = model_.edges.size() / 2;
  json["numBeams"]     = model_.beamElements.size();
  json["numElements"]  = model_.elements.size();

  std::map<int, std::string> materials;
  Region                     region(fields_->database, {}, "");
  for (const ModelName& name : ListModelNames(fields_->database, region))
    if (name.what == "material" && name.iteration == fields_->iteration) materials[name.number] = name.name;
  json["materials"] = Json::array();
  std::map<int, std::size_t>           numbers;  // of those that parts are of
  std::map<std::uint32_t, std::size_t> setNumbers;
  for (const PagePart& part : model_.parts) {
    for (const std::uint32_t set : part.sets) setNumbers.try_emplace(set, 0);
    if (numbers.try_emplace(part.material, numbers.size()).second)
      json["materials"].push_back(NameOf(part.material, materials));
  }
  json["sets"] = Json::array();
  for (auto& [set, number] : setNumbers) {
    number = std::get<Json::Array>(json["sets"].Get()).size();
    json["sets"].push_back(fields_->sets[set].name);
  }
  json["parts"] = Json::array();
  for (const PagePart& part : model_.parts) {
    Json ofSets = Json::array();
    for (const std::uint32_t set : part.sets) ofSets.push_back(setNumbers.at(set));
    const auto rows = [](const PagePart::Rows& of) { return Json::array({of.first, of.count}); };
    json["parts"].push_back({{"material", numbers.at(part.material)},
                             {"sets", std::move(ofSets)},
                             {"triangles", rows(part.triangles)},
                             {"edges", rows(part.edges)},
                             {"beams", rows(part.beams)},
                             {"solids", rows(part.solids)}});
  }
  json["leavesOutSets"] = model_.leavesOutSets;
  json["nodeSets"]      = Json::array();
  for (const PageNodeSet& set : nodeSets_.sets)
    json["nodeSets"].push_back({{"name", fields_->sets[set.number].name},
                                {"nodes", set.numNodes},
                                {"points", Json::array({set.points.first, set.points.count})}});
  header_["model"] = std::move(json);
}

void PageSource::MakeStepHeader()
{
  const StepTimes times(fields_->database);
  const KindTable kinds;
  Json            steps = Json::array();
  for (const Descriptor& step : fields_->plan.steps) {
    Json                        one{{"label", LabelOf(step)}};
    const std::optional<double> time = times.TimeOf(step);
    one["time"]                      = time ? JsonNumber(*time) : Json();
    if (const int quantity = times.QuantityOf(step)) one["quantity"] = kinds.GetName(quantity);
    steps.push_back(std::move(one));
  }
  numSteps_        = fields_->grid.NumSteps();
  header_["steps"] = std::move(steps);
}

void PageSource::MakeFieldHeader()
{
  const KindTable kinds(fields_->database);
  header_["bits"]   = bits_ == BlobBits::Full ? 32 : 16;
  header_["fields"] = Json::array();
  for (std::size_t array = 0; array < fields_->grid.Arrays().size(); ++array) {
    const ExportArray* field = fields_->grid.FieldOf(array);
    if (field == nullptr) continue;
    const Descriptor& block = AnyBlockOf(*field);
    Json              one   = {{"name", field->name},
                               {"onf", OnfOf(block)},
                               {"kind", kinds.GetName(block)},
                               {"ofElements", field->ofElements},
                               {"components", field->components},
                               {"all", ComponentNamesOf(OnfOf(block))},
                               {"start", DefaultComponentOf(OnfOf(block))},
                               {"isStrain", IsStrain(OnfOf(block))},
                               {"blobs", ListValues(array, false, false)}};
    if (fields_->changes) one["differences"] = ListValues(array, false, true);
    header_["fields"].push_back(std::move(one));
  }
}

void PageSource::MakeInsideHeader()
{
  Json json;
  json["numPoints"]   = model_.insidePoints.size();
  json["numElements"] = model_.insideElements.size();
  json["blobs"]       = ListBlobs({{"points", Content::Points},
                                   {"ids", Content::Ids},
                                   {"elementIds", Content::ElementIds},
                                   {"solidTypes", Content::SolidTypes},
                                   {"solidElements", Content::SolidElements},
                                   {"solidPoints", Content::SolidPoints}},
                                  true);
  json["fields"]      = Json::array();
  for (std::size_t array = 0; array < fields_->grid.Arrays().size(); ++array) {
    if (fields_->grid.FieldOf(array) == nullptr) continue;
    Json one{{"blobs", ListValues(array, true, false)}};
    if (fields_->changes) one["differences"] = ListValues(array, true, true);
    json["fields"].push_back(std::move(one));
  }
  header_["inside"] = std::move(json);
}

Json PageSource::ListBlobs(const std::vector<std::pair<const char*, Content>>& contents, bool isInside)
{
  Json numbers = Json::object();
  for (const auto& [name, content] : contents) {
    numbers[name] = blobs_.size();
    blobs_.push_back({content, isInside});
  }
  return numbers;
}

Json PageSource::ListValues(std::size_t array, bool isInside, bool ofDifference)
{
  const GridSource& grid     = ofDifference ? *fields_->changes : fields_->grid;
  const bool        isStatic = grid.FieldOf(array)->isStatic;
  Json              blobs    = Json::array();
  for (std::size_t step = 0; step < numSteps_; ++step) {
    if (!grid.HasValues(array, step)) {
      blobs.push_back(Json());
      continue;
    }
    if (!isStatic || step == 0) blobs_.push_back({Content::Values, isInside, array, step, !isStatic, ofDifference});
    blobs.push_back(blobs_.size() - 1);
  }
  return blobs;
}

std::optional<PageSource::Place> PageSource::FindBlock(const std::string& block) const
{
  const auto isIt = [&](const ExportArray::Source& source) { return ToSelectionText(source.block) == block; };
  for (const ExportArray& array : fields_->plan.arrays)
    for (std::size_t step = 0; step < array.sources.size(); ++step)
      if (std::any_of(array.sources[step].begin(), array.sources[step].end(), isIt))
        return Place{array.name, array.ofElements, step};
  return std::nullopt;
}

bool PageSource::IsOfStep(std::size_t blob) const { return blobs_.at(blob).isOfStep; }

std::string PageSource::MakeBlob(std::size_t number)
{
  ThrowIfInterrupted();
  const Blob& blob = blobs_.at(number);
  switch (blob.content) {
    case Content::Points:
      return MakePoints(blob.isInside);
    case Content::Ids:
      return MakeIds(blob.isInside);
    case Content::ElementIds:
      return MakeElementIds(blob.isInside);
    case Content::Triangles:
      return EncodeIntegers(model_.triangles);
    case Content::TriangleElements:
      return EncodeIntegers(model_.triangleElements);
    case Content::Edges:
      return EncodeIntegers(model_.edges);
    case Content::Beams:
      return EncodeIntegers(model_.beams);
    case Content::BeamElements:
      return EncodeIntegers(model_.beamElements);
    case Content::SetNodes:
      return EncodeIntegers(nodeSets_.points);
    case Content::SolidTypes:
      return EncodeIntegers(ListPageSolids(fields_->mesh, fields_->grid, model_).types);
    case Content::SolidElements:
      return EncodeIntegers(ListPageSolids(fields_->mesh, fields_->grid, model_).elements);
    case Content::SolidPoints:
      return EncodeIntegers(ListPageSolids(fields_->mesh, fields_->grid, model_).points);
    case Content::Values:
      break;
  }
  return MakeValues(blob);
}

std::string PageSource::MakePoints(bool isInside) const
{
  const auto          middle = MiddleOf(fields_->mesh);
  const auto          all    = fields_->grid.Points();
  std::vector<double> points;
  points.reserve(3 * PointsOf(isInside).size());
  for (const std::size_t point : PointsOf(isInside))
    for (std::size_t k = 0; k < 3; ++k) points.push_back(all[3 * point + k] - middle[k]);
  return EncodeValues(points, 3, BlobBits::Full);
}

std::string PageSource::MakeIds(bool isInside)
{
  const std::vector<int>     all = ReadPointIds(fields_->grid);
  std::vector<std::uint32_t> ids;
  ids.reserve(PointsOf(isInside).size());
  for (const std::size_t point : PointsOf(isInside)) ids.push_back(static_cast<std::uint32_t>(all[point]));
  return EncodeIntegers(ids);
}

std::string PageSource::MakeElementIds(bool isInside) const
{
  std::vector<std::uint32_t> ids;
  for (const std::uint32_t element : ElementsOf(isInside))
    ids.push_back(static_cast<std::uint32_t>(fields_->mesh.Elements()[element].id));
  return EncodeIntegers(ids);
}

std::string PageSource::MakeValues(const Blob& of)
{
  GridSource&                       grid          = of.isDifference ? *fields_->changes : fields_->grid;
  const bool                        ofElements    = grid.FieldOf(of.array)->ofElements;
  const std::size_t                 numComponents = grid.FieldOf(of.array)->NumValues();
  const std::vector<std::uint32_t>& kept          = ofElements ? ElementsOf(of.isInside) : PointsOf(of.isInside);
  const auto                        bytes         = grid.Read(of.array, of.step);
  std::vector<double>               values(kept.size() * numComponents);
  for (std::size_t i = 0; i < kept.size(); ++i)
    std::memcpy(&values[i * numComponents], bytes.data() + sizeof(double) * numComponents * kept[i],
                sizeof(double) * numComponents);
  return EncodeValues(values, numComponents, bits_);
}

}  // namespace quilon
