#include "answers/Path.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <utility>

#include <bundled/OnfKinds.h>

#include "answers/ChosenComponents.h"
#include "answers/ComponentAxes.h"
#include "answers/PointLocator.h"
#include "answers/Region.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "text/ColumnText.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/LineFile.h"
#include "text/NumberList.h"

namespace quilon {

namespace {

constexpr std::size_t kNumComponents = 6;  // of a tensor: no record has more

using Values = std::array<double, kNumComponents>;

using OnfKind::OnfOf;

/// One kind of a step: where its values come from and which components are told.
struct Source
{
  FED_DataDescriptor       block;  // that is interpolated: of principal values the tensors'
  int                      onf          = 0;
  bool                     isOfElements = false;
  std::size_t              numRead      = 0;  // values of a record of the block
  std::vector<Component>   components;
  std::vector<std::string> columns;
};

/// The key of a block without its kind.
FED_DataDescriptor StepOf(const FED_DataDescriptor& block)
{
  FED_DataDescriptor key;
  for (const IndexKey& index : GetIndexKeys())
    if (block.IsSet(index.index)) key.SetInteger(index.index, block.GetInteger(index.index));
  return key;
}

/// "stress" of nodal-stress.
std::string ShortName(const KindTable& kinds, int onf)
{
  constexpr std::string_view kNodal = "nodal-";
  const std::string          name   = kinds.GetName(onf);
  return name.starts_with(kNodal) ? name.substr(kNodal.size()) : name;
}

/// Reads records of one block one by one, by id.
class BlockReader
{
public:
  BlockReader(const FED_Database& database, const FED_DataDescriptor& descriptor)
      : block_(database.GetConstDataBlock(descriptor)), pool_(database.GetIdMapsPool())
  {
    entity_ = OnfKind::EntityOf(descriptor);
  }

  /// @return whether there is a record
  bool Read(int id, double* values) const
  {
    const std::size_t index = pool_.FindIndex(entity_, id);
    if (index == FED_IdMapsPool::npos || !block_.HasRecord(index)) return false;
    block_.GetValuesAt(index, values);
    return true;
  }

private:
  const FED_DataBlock&  block_;
  const FED_IdMapsPool& pool_;
  int                   entity_ = 0;
};

/// What is known of the line before values are read.
struct Line
{
  const Mesh&                                     mesh;
  std::vector<std::optional<PointLocator::Place>> places;
  std::vector<PathPoint>                          points;
};

/// Values of one source at one place, in global axes.
/// @return whether all that is needed is there
bool ReadValues(const Source& source, const BlockReader& reader, const Mesh& mesh, const PointLocator::Place& place,
                std::span<double> values)
{
  const Mesh::Element& element = mesh.Elements()[place.element];
  if (source.isOfElements) return reader.Read(element.id, values.data());
  std::array<double, kNumComponents * PointLocator::kMostNodes> nodal{};
  std::size_t                                                   n = 0;
  for (const std::size_t node : mesh.NodesOf(element)) {
    const bool hasWeight = place.weights[n] != 0.0;
    if (hasWeight && !reader.Read(mesh.NodeIds()[node], &nodal[source.numRead * n])) return false;
    ++n;
  }
  place.Interpolate(std::span(nodal).first(source.numRead * n), values);
  return true;
}

class PathWalk
{
public:
  PathWalk(const FED_Database& database, const PathRequest& request)
      : database_(database), kinds_(database), request_(request)
  {}

  PathReport Run(const std::vector<FED_DataDescriptor>& blocks)
  {
    std::map<FED_DataDescriptor, std::vector<Source>> steps = FindSources(blocks);
    NameColumns(steps);
    std::optional<Mesh> mesh;
    std::optional<int>  iteration;
    std::optional<Line> line;
    for (const auto& [key, sources] : steps) {
      const int current = key.GetInteger(FED_DataDescriptor::Iteration);
      if (!iteration || *iteration != current) {
        iteration = current;
        mesh      = ReadMesh(database_, current, request_.database);
        line.emplace(FindPlaces(*mesh, current));
        if (!report_.points.empty() && !HaveSameElements(report_.points, line->points))
          Fail(request_.database + ": iterations with other meshes, expected one: '@it=" + std::to_string(current) +
               "'");
        report_.points = line->points;
        axes_          = request_.axes.empty() ? ComponentAxes() : ComponentAxes(request_.axes, database_, current);
        report_.axes   = axes_.Describe();
      }
      report_.steps.push_back(WalkStep(key, sources, *line));
    }
    return std::move(report_);
  }

private:
  static bool HaveSameElements(const std::vector<PathPoint>& a, const std::vector<PathPoint>& b)
  {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const PathPoint& p, const PathPoint& q) { return p.element == q.element; });
  }

  std::map<FED_DataDescriptor, std::vector<Source>> FindSources(const std::vector<FED_DataDescriptor>& blocks)
  {
    std::map<FED_DataDescriptor, std::vector<Source>> steps;
    std::set<std::string>                             skipped;
    for (const FED_DataDescriptor& block : blocks) {
      if (std::optional<Source> source = FindSource(block))
        steps[StepOf(block)].push_back(std::move(*source));
      else
        skipped.insert(kinds_.GetName(block));
    }
    report_.skippedKinds.assign(skipped.begin(), skipped.end());
    if (!steps.empty()) return steps;
    std::string list;
    for (const std::string& name : skipped) list += (list.empty() ? "" : ", ") + Printable(name);
    Fail(request_.database + ": no values along a line in " + list +
         ", expected scalars, vectors or tensors of nodes or elements");
  }

  std::optional<Source> FindSource(const FED_DataDescriptor& block) const
  {
    Source    source;
    const int onf = OnfOf(block);
    if (!OnfKind::IsOfMesh(onf)) return std::nullopt;
    source.components = ChosenComponents(request_.selection, onf);
    if (source.components.empty()) return std::nullopt;
    source.block        = block;
    source.onf          = onf;
    source.isOfElements = OnfKind::EntityOf(onf) == OnfKind::ElementEntity;
    source.numRead      = source.components.front().NumValues();
    const int tensor    = OnfKind::TensorOf(onf);
    if (tensor == 0) return source;
    source.numRead = kNumComponents;
    source.block.SetInteger(FED_DataDescriptor::OnfId, tensor);
    if (!database_.HasDataBlock(source.block)) {
      Fail(request_.database + ": no tensors (" + ToSelectionText(source.block) + ") behind " + ToSelectionText(block) +
           ", expected them: principal values along a line are those of the interpolated " + "tensor");
    }
    return source;
  }

  void NameColumns(std::map<FED_DataDescriptor, std::vector<Source>>& steps)
  {
    std::set<int> tensors;
    for (const auto& [key, sources] : steps)
      for (const Source& source : sources)
        if (IsTensor(source)) tensors.insert(source.onf);
    for (auto& [key, sources] : steps) {
      for (Source& source : sources) {
        const std::string kind = ShortName(kinds_, source.onf);
        for (const Component& component : source.components) {
          const bool isBare = IsTensor(source) && tensors.size() == 1;
          source.columns.push_back(source.numRead == 1 ? kind
                                   : isBare            ? component.GetName()
                                                       : kind + '-' + component.GetName());
        }
      }
    }
  }

  /// Where a tensor's principal values point: of the first x1, y1, z1. What stands before its components stands here,
  /// too.
  static void AddDirectionColumns(const Source& source, std::vector<std::string>& columns)
  {
    const std::string& first  = source.columns.front();
    const std::string  before = first.substr(0, first.size() - source.components.front().GetName().size());
    for (const char* name : {"x1", "y1", "z1", "x2", "y2", "z2", "x3", "y3", "z3"}) columns.push_back(before + name);
  }

  /// Principal values count as their tensor.
  static bool IsTensor(const Source& source) { return source.numRead == kNumComponents; }

  Line FindPlaces(const Mesh& mesh, int iteration) const
  {
    std::optional<std::vector<int>> elements;
    if (request_.region != nullptr && !request_.region->IsEverything())
      elements = request_.region->ElementsOf(iteration);
    const PointLocator locator(mesh, elements ? &*elements : nullptr);
    if (!locator.HasSolids() && elements)
      Fail(request_.database + ": no solid element is in " + request_.region->GetOptions().ToString() +
           ", expected a region that holds one");
    if (!locator.HasSolids())
      Fail(request_.database + ": no solid elements, expected the mesh of a .frd or a deck (blocks 595 and 596)");
    Line   line{mesh, {}, {}};
    double s = 0.0;
    for (const PathPlace& place : request_.places) {
      ThrowIfInterrupted();
      if (!line.points.empty()) {
        const PathPlace& former = line.points.back().place;
        s += std::hypot(place[0] - former[0], place[1] - former[1], place[2] - former[2]);
      }
      const std::optional<PointLocator::Place> found = locator.Find(place);
      line.points.push_back({place, s, {}});
      if (found) line.points.back().element = mesh.Elements()[found->element].id;
      line.places.push_back(found);
    }
    if (!request_.mayBeOutside &&
        std::none_of(line.places.begin(), line.places.end(), [](const auto& found) { return found.has_value(); }))
      FailOutside(line, locator, elements.has_value());
    return line;
  }

  /// Says that no point of a line is in a solid, and where the solids are.
  [[noreturn]] void FailOutside(const Line& line, const PointLocator& locator, bool isRegion) const
  {
    constexpr double           kFar  = std::numeric_limits<double>::infinity();
    const PathPlace&           first = line.points.front().place;
    PathPlace                  least{kFar, kFar, kFar};
    PathPlace                  greatest{-kFar, -kFar, -kFar};
    double                     distance = kFar;
    std::optional<std::size_t> nearest;
    for (const std::size_t solid : locator.Solids()) {
      for (const std::size_t node : line.mesh.NodesOf(line.mesh.Elements()[solid])) {
        const PathPlace& at = line.mesh.Points()[node];
        for (std::size_t k = 0; k < 3; ++k) {
          least[k]    = std::min(least[k], at[k]);
          greatest[k] = std::max(greatest[k], at[k]);
        }
        const double far = std::hypot(at[0] - first[0], at[1] - first[1], at[2] - first[2]);
        // Of nodes that are as near the one of the least id: positions ascend with ids.
        if (far > distance || (far == distance && node > *nearest)) continue;
        distance = far;
        nearest  = node;
      }
    }
    const std::size_t count = line.points.size();
    Fail(request_.database + ": " + (count == 1 ? "the point is" : "all " + Counted(count, "point") + " are") +
         " outside of all solid elements" + (isRegion ? " of " + request_.region->GetOptions().ToString() : "") +
         ", which are from " + FormatNumbers(least) + " to " + FormatNumbers(greatest) + "; nearest to " +
         FormatNumbers(first) + " is node " + std::to_string(line.mesh.NodeIds()[*nearest]) + " at " +
         FormatNumbers(line.mesh.Points()[*nearest]) + ", " + FormatRounded(distance) +
         " away. Expected a line that passes one");
  }

  enum class Value
  {
    Found,
    Missing,  ///< at a place outside, or of a node without a record
    OnAxis    ///< where the axes are none
  };

  /// Adds what one source has at a point.
  /// @param row     receives the components, and the directions of principal axes where they are told
  /// @param tensors receives what was read, in the axes
  Value AddValues(const Source& source, const BlockReader& reader, const RecordTurner& turner, const Line& line,
                  std::size_t point, std::vector<std::optional<double>>& row, std::vector<double>& tensors) const
  {
    Values                  values{};
    const std::span<double> own = std::span(values).first(source.numRead);
    if (!line.places[point] || !ReadValues(source, reader, line.mesh, *line.places[point], own)) return Value::Missing;
    const bool          tellsAxes  = TellsAxes(source);
    const PrincipalAxes directions = tellsAxes ? PrincipalAxesOf(std::span<const double, 6>(values)) : PrincipalAxes();
    if (!turner.TurnAt(line.points[point].place, own)) return Value::OnAxis;
    tensors.insert(tensors.end(), own.begin(), own.end());
    const bool            isPrincipal = OnfKind::TensorOf(source.onf) != 0;
    std::array<double, 3> principal{};
    if (isPrincipal) principal = PrincipalValues(std::span<const double, 6>(values));
    const std::span<const double> told = isPrincipal ? std::span<const double>(principal) : own;
    for (const Component& component : source.components) row.emplace_back(component.Evaluate(told));
    if (tellsAxes)
      for (const auto& direction : directions.directions) row.insert(row.end(), direction.begin(), direction.end());
    return Value::Found;
  }

  bool TellsAxes(const Source& source) const { return IsTensor(source) && axes_.GetForm() == ComponentAxes::Principal; }

  PathStep WalkStep(const FED_DataDescriptor& key, const std::vector<Source>& sources, const Line& line)
  {
    PathStep step;
    step.key = key;
    step.rows.resize(line.points.size());
    std::vector<bool>                                          isMissing(line.points.size(), false);
    std::vector<bool>                                          isOnAxis(line.points.size(), false);
    std::vector<std::pair<const Source*, std::vector<double>>> stresses;  // of places that have one
    for (const Source& source : sources) {
      ThrowIfInterrupted();
      step.blocks.push_back(source.block);
      step.columns.insert(step.columns.end(), source.columns.begin(), source.columns.end());
      if (TellsAxes(source)) AddDirectionColumns(source, step.columns);
      const std::size_t   numColumns = step.columns.size();
      const BlockReader   reader(database_, source.block);
      const RecordTurner  turner(axes_, OnfOf(source.block), &line.mesh);
      std::vector<double> tensors;
      for (std::size_t p = 0; p < line.points.size(); ++p) {
        const Value value = AddValues(source, reader, turner, line, p, step.rows[p], tensors);
        isMissing[p]      = isMissing[p] || (value == Value::Missing && line.places[p].has_value());
        isOnAxis[p]       = isOnAxis[p] || value == Value::OnAxis;
        step.rows[p].resize(numColumns);
      }
      if (IsTensor(source)) stresses.emplace_back(&source, std::move(tensors));
    }
    step.numWithoutValues = static_cast<std::size_t>(std::count(isMissing.begin(), isMissing.end(), true));
    step.numWithoutAxes   = static_cast<std::size_t>(std::count(isOnAxis.begin(), isOnAxis.end(), true));
    if (request_.linearize) step.linearization = LinearizeStep(key, stresses, line, step.numWithoutAxes);
    return step;
  }

  PathLinearization LinearizeStep(const FED_DataDescriptor&                                         key,
                                  const std::vector<std::pair<const Source*, std::vector<double>>>& stresses,
                                  const Line& line, std::size_t numWithoutAxes) const
  {
    std::set<int> tensorKinds;
    for (const auto& [source, tensors] : stresses) tensorKinds.insert(OnfOf(source->block));
    if (tensorKinds.size() != 1 || IsStrain(*tensorKinds.begin()))
      Fail("--linearize is of one kind of stress, expected one in the selection, such as stress@lc=1,sub=last");
    if (axes_.GetForm() == ComponentAxes::Principal)
      Fail("--linearize adds up components in axes that stay, expected other --axes than principal ones");
    if (line.points.size() < kFewestLinearized)
      Fail("--linearize needs " + std::to_string(kFewestLinearized) + " points or more, found " +
           std::to_string(line.points.size()));
    if (numWithoutAxes > 0)
      Fail("--linearize: " + Counted(numWithoutAxes, "point") +
           " on the axis of --axes, where no direction is radial, expected a line beside it");
    const std::vector<double>& tensors = stresses.front().second;
    if (tensors.size() != kNumComponents * line.points.size())
      FailWithoutValues(key, stresses.front().first->block, line);

    const LinearizedStress result = Linearize(tensors);
    const Component        mises("mises", OnfOf(stresses.front().first->block));
    PathLinearization      linearization{kinds_.GetName(OnfOf(stresses.front().first->block)), {}};
    const auto             add = [&](const char* name, const LinearizedStress::Tensor& tensor) {
      linearization.parts.push_back({name, tensor, mises.Evaluate(tensor)});
    };
    add("membrane", result.membrane);
    add("bending-start", result.bendingStart);
    add("bending-end", result.bendingEnd);
    add("membrane-bending-start", result.membraneBendingStart);
    add("membrane-bending-end", result.membraneBendingEnd);
    add("peak-start", result.peakStart);
    add("peak-end", result.peakEnd);
    return linearization;
  }

  [[noreturn]] void FailWithoutValues(const FED_DataDescriptor& key, const FED_DataDescriptor& block,
                                      const Line& line) const
  {
    std::size_t numOutside = 0;
    std::string first;
    for (const PathPoint& point : line.points) {
      if (point.element) continue;
      if (numOutside++ == 0) first = FormatNumbers(point.place) + " (s = " + FormatRounded(point.s) + ")";
    }
    if (numOutside > 0)
      Fail("--linearize: " + Counted(numOutside, "point") + " of " + std::to_string(line.points.size()) +
           " outside of all solid elements, the first at " + first + ", expected a line through one wall");
    Fail("--linearize: points without a stress in " + ToSelectionText(key).substr(1) +  // a key has no kind, "0@it=0"
         ": nodes of their elements have none, expected a line whose points all have one" +
         (HasAveragesOfAll(block) ? ", or the averages over all elements: '@group=none'" : ""));
  }

  /// @return whether the block is of a group's averages, which end where the group does, and others are over all
  /// elements
  bool HasAveragesOfAll(FED_DataDescriptor block) const
  {
    if (!block.IsSet(OnfIndex::Group)) return false;
    block.SetInteger(OnfIndex::Group, 0);
    block.mask &= ~(1U << static_cast<unsigned>(OnfIndex::Group));
    return database_.HasDataBlock(block);
  }

  const FED_Database& database_;
  const KindTable     kinds_;
  const PathRequest&  request_;
  ComponentAxes       axes_;
  PathReport          report_;
};

}  // namespace

std::vector<PathPlace> PlacesOnLine(const PathPlace& from, const PathPlace& to, std::size_t count)
{
  if (count < 2) Fail("--points is " + std::to_string(count) + ", expected 2 or more");
  if (from == to) Fail("--from and --to are both " + FormatNumbers(from) + ", expected two places");
  std::vector<PathPlace> places(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double part = static_cast<double>(i) / static_cast<double>(count - 1);
    for (std::size_t k = 0; k < 3; ++k) places[i][k] = (1.0 - part) * from[k] + part * to[k];
  }
  return places;
}

std::vector<PathPlace> ReadPlaces(std::istream& in, const std::string& name)
{
  const ReadProgress     none;
  LineFile               file(in, name, none);
  std::vector<PathPlace> places;
  while (file.NextLine()) {
    std::string text(Trimmed(file.Text().substr(0, file.Text().find('#'))));
    if (text.empty()) continue;
    // A comma, with blanks or without, or blanks alone stand between two numbers.
    std::string list;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find_first_of(" \t,", at), text.size());
      list += text.substr(at, end - at);
      at = end;
      if (at == text.size()) break;
      list += ',';
      at = text.find_first_not_of(" \t", at);
      if (text[at] == ',') at = text.find_first_not_of(" \t", at + 1);
      if (at == std::string::npos) at = text.size();
    }
    PathPlace place{};
    if (!ParseNumbers(list, place)) file.FailExpected("the three coordinates of a place");
    places.push_back(place);
  }
  if (places.empty()) file.FailAtEnd("a place: three numbers");
  return places;
}

std::vector<PathPlace> ReadPlaces(const std::filesystem::path& path)
{
  std::ifstream in = OpenLineFile(path);
  return ReadPlaces(in, path.string());
}

PathReport FollowPath(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                      const PathRequest& request)
{
  return PathWalk(database, request).Run(blocks);
}

}  // namespace quilon
