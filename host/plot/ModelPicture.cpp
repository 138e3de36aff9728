#include "plot/ModelPicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <span>

#include <bundled/OnfKinds.h>

#include "database/StepTimes.h"
#include "kinds/KindTable.h"
#include "mesh/Mesh.h"
#include "mesh/Surface.h"
#include "plot/ColourBar.h"
#include "plot/Patches.h"
#include "plot/Raster.h"
#include "plot/Ticks.h"
#include "progress/Interrupt.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

// Lines on faces, in units of the sheet. A line is drawn where nothing is nearer by more than the bias.
constexpr Colour kFeatureInk{0.05, 0.05, 0.07, 0.85};
constexpr Colour kMeshInk{0.05, 0.05, 0.07, 0.38};
constexpr double kFeatureWidth = 1.3;
constexpr double kMeshWidth    = 0.9;
constexpr double kBias         = 1.2;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Least and greatest of what is added.
struct Bounds
{
  double least    = kInfinity;
  double greatest = -kInfinity;

  void Add(double value) noexcept
  {
    least    = std::min(least, value);
    greatest = std::max(greatest, value);
  }
  double Size() const noexcept { return greatest > least ? greatest - least : 0.0; }
};

/// Where things go on the sheet.
struct Layout
{
  double left   = 0.0;  // of the area for the model
  double top    = 0.0;
  double width  = 0.0;
  double height = 0.0;
  Spot   bar;  // top left of the colour bar itself
  double barHeight = 0.0;
  double legend    = 0.0;  // left of the column to the right
};

/// @return 1, 2 or 5 times a power of ten, the greatest not above the number
double RoundedDown(double number)
{
  const double power = std::pow(10.0, std::floor(std::log10(number)));
  const double times = number / power;
  return (times >= 5.0 ? 5.0 : times >= 2.0 ? 2.0 : 1.0) * power;
}

/// @return "load case 1, substep 2, time 1.5"
std::string LabelOf(const FED_DataDescriptor& block, const StepTimes& times)
{
  std::string label;
  const auto  add = [&label](const std::string& text) { label += (label.empty() ? "" : ", ") + text; };
  for (const IndexKey& key : GetIndexKeys()) {
    const bool isOfStep = key.index == FED_DataDescriptor::LoadCase || key.index == FED_DataDescriptor::Increment ||
                          key.index == FED_DataDescriptor::Substep;
    if (!isOfStep || !block.IsSet(key.index)) continue;
    std::string name = key.name;
    std::replace(name.begin(), name.end(), '-', ' ');
    add(name + ' ' + std::to_string(block.GetInteger(key.index)));
  }
  if (const std::optional<double> time = times.TimeOf(block)) {
    const int quantity = times.QuantityOf(block);
    add(std::string(quantity == OnfKind::Frequency        ? "frequency "
                    : quantity == OnfKind::BucklingFactor ? "buckling factor "
                                                          : "time ") +
        PrintedNumber(*time, 6));
  }
  return label;
}

class Drawing
{
public:
  Drawing(const FED_Database& database, int iteration, const std::optional<FieldChoice>& choice,
          const ModelPictureOptions& options, PictureFormat format, const std::string& name)
      : options_(options),
        name_(name),
        mesh_(ReadMesh(database, iteration, name)),
        canvas_(format, options.size, options.background),
        ink_(IsBright(options.background) ? Colour{0.13, 0.13, 0.15, 1} : Colour{0.94, 0.94, 0.96, 1})
  {
    if (mesh_.NumElements() == 0)
      Fail(name +
           ": the mesh has no elements (blocks 595 and 596), expected those of a .frd or a deck, as quilon import "
           "reads it");
    if (choice) {
      const Component component(options.component.empty() ? DefaultComponentOf(choice->GetOnf()) : options.component,
                                choice->GetOnf());
      picture_.component = component.GetName();
      field_.emplace(database, mesh_, *choice, component, name);
      title_ = KindTable(database).GetName(choice->blocks.front());
      if (picture_.component != "value") title_ += ' ' + picture_.component;
      label_ = LabelOf(choice->blocks.front(), StepTimes(database));
    } else {
      title_ = "mesh";
    }
    title_ = Printable(options.title.empty() ? title_ : options.title);
    if (options.deformation) {
      if (!choice) Fail("--deform is of a result step, expected a selection with it");
      displacements_ = ReadDisplacements(database, mesh_, choice->blocks.front(), name);
    }
  }

  ModelPicture Run()
  {
    ChooseElements();
    LeaveOutEmptyElements();
    surface_ = ExtractSurface(mesh_, isShown_);
    patches_ = CollectPatches(mesh_, surface_);
    if (patches_.empty() && surface_.beams.empty())
      Fail(name_ + ": nothing to draw, expected solids, shells or beams among the elements that are shown");
    if (options_.cut) CutModel();
    ChooseFactor();
    FindValues();
    MakeLayout();
    PlaceNodes();

    const int    ppu    = canvas_.GetPixelsPerUnit();
    const double pixels = layout_.width * layout_.height * ppu * ppu;
    // Three samples along a side of a pixel make smooth edges; very large pictures do with fewer.
    constexpr double kMostSamples = 64e6;
    const int        wanted       = ppu == 1 ? 3 : 2;
    const int        samples      = std::clamp(static_cast<int>(std::sqrt(kMostSamples / pixels)), 1, wanted);
    Raster           raster(static_cast<int>(layout_.width) * ppu, static_cast<int>(layout_.height) * ppu, samples);
    DrawFaces(raster);
    DrawLines(raster);
    canvas_.DrawBitmap({layout_.left, layout_.top}, layout_.width, layout_.height, raster.Resolve());
    DrawTexts();
    if (options_.hasAxes) DrawTriad();
    if (field_) {
      DrawBar();
      PlaceMarks(raster);
    }
    picture_.bytes     = canvas_.Finish();
    const double units = canvas_.GetSize().width / static_cast<double>(options_.size.width);
    for (std::optional<ExtremeMark>* mark : {&picture_.least, &picture_.greatest})
      if (*mark) (*mark)->place = {(*mark)->place.x / units, (*mark)->place.y / units};
    return std::move(picture_);
  }

private:
  bool IsShown(std::size_t element) const { return isShown_.empty() || isShown_[element]; }

  void ChooseElements()
  {
    if (!options_.elements) return;
    isShown_.assign(mesh_.NumElements(), false);
    bool hasOne = false;
    for (const int id : *options_.elements)
      if (const auto position = mesh_.FindElement(id)) {
        isShown_[*position] = true;
        hasOne              = true;
      }
    if (!hasOne) Fail(name_ + ": the part that is asked for has no elements in the mesh");
  }

  /// Takes away elements none of whose nodes has a value, such as those that the solver expanded to others.
  void LeaveOutEmptyElements()
  {
    if (!field_) return;
    std::vector<bool> hasValues(mesh_.NumElements(), false);
    ForEachElementNode([&](std::size_t element, std::size_t node) {
      if (std::isfinite(field_->At(element, node))) hasValues[element] = true;
    });
    std::size_t numEmpty = 0;
    std::size_t numShown = 0;
    for (std::size_t element = 0; element < hasValues.size(); ++element) {
      if (!IsShown(element)) continue;
      ++numShown;
      if (!hasValues[element]) ++numEmpty;
    }
    if (numEmpty == 0 || numEmpty == numShown) return;
    isShown_ = std::move(hasValues);
    picture_.notes.push_back(Counted(numEmpty, "element") + " without a value left out");
  }

  /// Calls visit(element, node) for each node of each element that is drawn, positions both.
  template <typename Visit>
  void ForEachElementNode(const Visit& visit) const
  {
    for (std::size_t element = 0; element < mesh_.NumElements(); ++element) {
      if (!IsShown(element)) continue;
      for (const std::size_t node : mesh_.NodesOf(mesh_.Elements()[element])) visit(element, node);
    }
  }

  void CutModel()
  {
    sides_ = SidesOf(mesh_, *options_.cut);
    Bounds bounds;
    ForEachElementNode([&](std::size_t, std::size_t node) { bounds.Add(sides_[node]); });
    if (!(bounds.least < 0.0 && bounds.greatest >= 0.0)) {
      Fail(name_ + ": the plane misses the model, which lies from " + FormatRounded(bounds.least) + " to " +
           FormatRounded(bounds.greatest) + " along its normal, counted from its point");
    }
    const PlaneSection section;
    for (std::size_t element = 0; element < mesh_.NumElements(); ++element) {
      if (!IsShown(element)) continue;
      SolidCut cut = section.Cut(mesh_, mesh_.Elements()[element], sides_);
      if (!cut.triangles.empty()) sections_.emplace_back(element, std::move(cut));
    }
  }

  double SideOf(std::size_t node) const { return sides_.empty() ? -1.0 : sides_[node]; }

  void ChooseFactor()
  {
    if (!options_.deformation) return;
    if (options_.deformation->factor) {
      picture_.factor = *options_.deformation->factor;
      return;
    }
    std::array<Bounds, 3> box;
    double                largest = 0.0;
    ForEachElementNode([&](std::size_t, std::size_t node) {
      for (std::size_t k = 0; k < 3; ++k) box[k].Add(mesh_.Points()[node][k]);
      const auto&  d      = displacements_[node];
      const double length = std::hypot(d[0], d[1], d[2]);
      if (std::isfinite(length)) largest = std::max(largest, length);
    });
    constexpr double kShare = 0.1;
    const double     size   = std::hypot(box[0].Size(), box[1].Size(), box[2].Size());
    picture_.factor         = largest > 0.0 ? RoundedDown(kShare * size / largest) : 1.0;
  }

  /// What the picture shows of the field: the range of its colours, and where its extremes are.
  void FindValues()
  {
    if (!field_) return;
    Bounds      bounds;
    std::size_t atLeast[2]    = {0, 0};  // element, node
    std::size_t atGreatest[2] = {0, 0};
    ForEachElementNode([&](std::size_t element, std::size_t node) {
      if (SideOf(node) > 0.0) return;
      const double value = field_->At(element, node);
      if (!std::isfinite(value)) return;
      if (value < bounds.least) {
        atLeast[0] = element;
        atLeast[1] = node;
      }
      if (value > bounds.greatest) {
        atGreatest[0] = element;
        atGreatest[1] = node;
      }
      bounds.Add(value);
    });
    if (bounds.least > bounds.greatest)
      Fail(name_ + ": the elements that are shown have no values of " + picture_.component +
           ", expected another selection or another part");
    if (HasGaps()) picture_.notes.push_back("grey: no value");
    const auto markOf = [&](double value, const std::size_t(&at)[2]) {
      return ExtremeMark{value, field_->IsAtNodes() ? mesh_.NodeIds()[at[1]] : mesh_.Elements()[at[0]].id, {}, false};
    };
    picture_.least    = markOf(bounds.least, atLeast);
    picture_.greatest = markOf(bounds.greatest, atGreatest);
    leastAt_          = {atLeast[0], atLeast[1]};
    greatestAt_       = {atGreatest[0], atGreatest[1]};
    picture_.range    = options_.range ? *options_.range : ValueRange{bounds.least, bounds.greatest};
    scale_.emplace(options_.map ? *options_.map : ColourScale::Choose(*picture_.range), *picture_.range);
  }

  /// @return whether something that is drawn has no value
  bool HasGaps() const
  {
    const auto isGap = [this](std::size_t element, std::size_t node) {
      return !std::isfinite(field_->At(element, node));
    };
    const auto hasGap = [&](const Patch& patch) {
      const auto nodes = std::span(patch.nodes).first(patch.NumNodes());
      return std::any_of(nodes.begin(), nodes.end(), [&](std::size_t node) { return isGap(patch.element, node); });
    };
    return std::any_of(patches_.begin(), patches_.end(), hasGap) ||
           std::any_of(surface_.beams.begin(), surface_.beams.end(), [&](const Surface::Line& beam) {
             return isGap(beam.element, beam.nodes[0]) || isGap(beam.element, beam.nodes[1]);
           });
  }

  ColourBar MakeBar() const
  {
    return {*scale_, picture_.component, options_.unit,
            picture_.least->value<picture_.range->least, picture_.greatest->value> picture_.range->greatest, ink_};
  }

  std::vector<std::string> MarkLines(const ExtremeMark& mark) const
  {
    const std::string unit = options_.unit.empty() ? "" : "\u2009" + options_.unit;
    return {PrintedNumber(mark.value) + unit,
            std::string(field_->IsAtNodes() ? "node " : "element ") + std::to_string(mark.id)};
  }

  void MakeLayout()
  {
    const double     width   = canvas_.GetSize().width;
    const double     height  = canvas_.GetSize().height;
    constexpr double kMargin = 20.0;
    layout_.top              = 62.0;
    layout_.left             = kMargin;
    layout_.height           = std::max(20.0, height - layout_.top - kMargin);
    double column            = 0.0;
    if (field_) {
      // The bar stands in the upper part, the extremes below it.
      layout_.barHeight   = std::max(60.0, 0.62 * layout_.height - 40.0);
      const ColourBar bar = MakeBar();
      column              = bar.GetWidth(canvas_, layout_.barHeight);
      if (options_.hasMarks)
        for (const auto& mark : {*picture_.greatest, *picture_.least})
          for (const std::string& line : MarkLines(mark))
            column = std::max(column, 18.0 + canvas_.GetTextWidth(line, {12.0, ink_}));
      column = std::min(column + kMargin, 0.4 * width);
    }
    // Whole units, so that the pixels of the model are those of the picture.
    layout_.width  = std::max(20.0, std::floor(width - layout_.left - kMargin - column));
    layout_.height = std::floor(layout_.height);
    layout_.legend = width - column;
    layout_.bar    = {std::floor(layout_.legend) + 0.5, layout_.top + 56.5};
  }

  std::array<double, 3> DeformedPoint(std::size_t node) const
  {
    std::array<double, 3> point = mesh_.Points()[node];
    if (!displacements_.empty())
      for (std::size_t k = 0; k < 3; ++k) point[k] += picture_.factor * displacements_[node][k];
    return point;
  }

  /// Projects all nodes into the area for the model.
  void PlaceNodes()
  {
    Bounds     across;
    Bounds     up;
    const auto add = [&](const std::array<double, 3>& point) {
      const Point3 place = options_.view.Project(point);
      if (!std::isfinite(place[0] + place[1] + place[2]))
        Fail(name_ + ": the picture would have no end, expected finite coordinates and displacements");
      across.Add(place[0]);
      up.Add(place[1]);
    };
    for (const std::size_t node : surface_.nodes) {
      add(DeformedPoint(node));
      if (ShowsUndeformed()) add(mesh_.Points()[node]);
    }
    // Room for the labels of extremes and the triad.
    constexpr double kShare  = 0.90;
    const double     wide    = across.Size() > 0.0 ? layout_.width / across.Size() : kInfinity;
    const double     high    = up.Size() > 0.0 ? layout_.height / up.Size() : kInfinity;
    const double     smaller = std::min(wide, high);
    const int        ppu     = canvas_.GetPixelsPerUnit();
    scaling_                 = (std::isfinite(smaller) ? kShare * smaller : 1.0) * ppu;
    middle_                  = {0.5 * (across.least + across.greatest), 0.5 * (up.least + up.greatest)};

    nodes_.reserve(mesh_.NumNodes());
    for (std::size_t node = 0; node < mesh_.NumNodes(); ++node) {
      RasterPoint point = Place(DeformedPoint(node));
      point.side        = SideOf(node);
      nodes_.push_back(point);
    }
  }

  bool ShowsUndeformed() const { return options_.showsUndeformed && !displacements_.empty(); }

  RasterPoint Place(const std::array<double, 3>& point) const
  {
    const Point3 place = options_.view.Project(point);
    const int    ppu   = canvas_.GetPixelsPerUnit();
    return {0.5 * layout_.width * ppu + (place[0] - middle_[0]) * scaling_,
            0.5 * layout_.height * ppu - (place[1] - middle_[1]) * scaling_, place[2] * scaling_, 0.0, -1.0};
  }

  /// How bright a face is that is spanned by two directions.
  double LightOf(const RasterPoint& a, const RasterPoint& b, const RasterPoint& c) const
  {
    if (!options_.isLit) return 1.0;
    // Up is against y.
    const std::array<double, 3> u = {b.x - a.x, a.y - b.y, b.depth - a.depth};
    const std::array<double, 3> v = {c.x - a.x, a.y - c.y, c.depth - a.depth};
    std::array<double, 3>       n = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
    const double                length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (!(length > 0.0)) return 1.0;
    // Of both sides of a face the one that is seen. The light comes from behind the left shoulder, of length 1.
    const double turn    = n[2] < 0.0 ? -1.0 / length : 1.0 / length;
    const double diffuse = std::max(0.0, turn * (-0.31 * n[0] + 0.43 * n[1] + 0.848 * n[2]));
    return std::min(1.0, 0.68 + 0.36 * diffuse);
  }

  Colour PlainColour(std::size_t element) const
  {
    // Soft colours by material.
    constexpr std::array<Colour, 6> kColours = {{{0.71, 0.77, 0.84, 1},
                                                 {0.87, 0.78, 0.64, 1},
                                                 {0.70, 0.82, 0.71, 1},
                                                 {0.84, 0.72, 0.76, 1},
                                                 {0.68, 0.82, 0.84, 1},
                                                 {0.80, 0.80, 0.66, 1}}};
    const int                       material = mesh_.Elements()[element].material;
    return kColours[static_cast<std::size_t>(std::max(material - 1, 0)) % kColours.size()];
  }

  RasterPaint PaintOf(std::size_t element, double light) const
  {
    if (field_) return {&*scale_, {}, light};
    return {nullptr, PlainColour(element), light};
  }

  /// How finely faces are divided: so that a step is a few pixels, as far as there are not too many.
  std::size_t ChooseSteps() const
  {
    constexpr double kPixels    = 10.0;
    constexpr double kTriangles = 1e6;
    const double     area  = layout_.width * layout_.height * canvas_.GetPixelsPerUnit() * canvas_.GetPixelsPerUnit();
    const double     count = static_cast<double>(std::max<std::size_t>(patches_.size(), 1));
    const double     side  = 1.5 * std::sqrt(area / count);
    std::size_t      steps = 1;
    while (steps < 16 && side > kPixels * static_cast<double>(steps) &&
           2.0 * count * static_cast<double>(4 * steps * steps) <= kTriangles)
      steps *= 2;
    return steps;
  }

  /// The mean length of a patch's first side in pixels of the picture.
  double MeanSide() const
  {
    if (patches_.empty()) return 0.0;
    double sum = 0.0;
    for (const Patch& patch : patches_) {
      const RasterPoint& a = nodes_[patch.nodes[0]];
      const RasterPoint& b = nodes_[patch.nodes[1]];
      sum += std::hypot(a.x - b.x, a.y - b.y);
    }
    return sum / static_cast<double>(patches_.size()) / canvas_.GetPixelsPerUnit();
  }

  /// A point between nodes.
  /// @param weights as many as nodes
  RasterPoint Combine(std::size_t element, std::span<const std::size_t> nodes, std::span<const double> weights) const
  {
    RasterPoint point{0, 0, 0, 0, 0};
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      const RasterPoint& node = nodes_[nodes[i]];
      point.x += weights[i] * node.x;
      point.y += weights[i] * node.y;
      point.depth += weights[i] * node.depth;
      point.side += weights[i] * node.side;
      if (field_ && weights[i] != 0.0) point.value += weights[i] * field_->At(element, nodes[i]);
    }
    return point;
  }

  void DrawFaces(Raster& raster)
  {
    const PatchGrids         grids(ChooseSteps());
    std::vector<RasterPoint> points;
    for (const Patch& patch : patches_) {
      ThrowIfInterrupted();
      const auto nodes = std::span(patch.nodes).first(patch.NumNodes());
      if (std::all_of(nodes.begin(), nodes.end(), [&](std::size_t node) { return SideOf(node) > 0.0; })) continue;
      const PatchGrid& grid = grids.Of(patch);
      points.clear();
      for (const PatchGrid::Weights& weights : grid.points)
        points.push_back(Combine(patch.element, nodes, std::span(weights).first(nodes.size())));
      for (const auto& triangle : grid.triangles) {
        const std::array<RasterPoint, 3> corners = {points[triangle[0]], points[triangle[1]], points[triangle[2]]};
        raster.DrawTriangle(corners, PaintOf(patch.element, LightOf(corners[0], corners[1], corners[2])));
      }
    }
    const double thick = RodWidth();
    for (const Surface::Line& beam : surface_.beams) {
      std::array<RasterPoint, 2> ends = {nodes_[beam.nodes[0]], nodes_[beam.nodes[1]]};
      if (field_)
        for (std::size_t i = 0; i < 2; ++i) ends[i].value = field_->At(beam.element, beam.nodes[i]);
      raster.DrawRod(ends[0], ends[1], thick, PaintOf(beam.element, 1.0));
    }
    for (const auto& [element, section] : sections_) {
      const auto nodes = mesh_.NodesOf(mesh_.Elements()[element]);
      for (const auto& triangle : section.triangles) {
        std::array<RasterPoint, 3> corners;
        for (std::size_t i = 0; i < 3; ++i) {
          corners[i]      = Combine(element, nodes, std::span(triangle[i]).first(nodes.size()));
          corners[i].side = -1.0;
        }
        raster.DrawTriangle(corners, PaintOf(element, LightOf(corners[0], corners[1], corners[2])));
      }
    }
  }

  double RodWidth() const { return 5.0 * canvas_.GetPixelsPerUnit(); }

  /// @return whether one sees the outside of the patch
  bool LooksAtUs(const Patch& patch) const
  {
    const RasterPoint& a    = nodes_[patch.nodes[0]];
    const RasterPoint& b    = nodes_[patch.nodes[1]];
    const RasterPoint& c    = nodes_[patch.nodes[2]];
    double             area = (b.x - a.x) * (a.y - c.y) - (a.y - b.y) * (c.x - a.x);
    if (patch.corners == 4) {
      const RasterPoint& d = nodes_[patch.nodes[3]];
      area += (c.x - a.x) * (a.y - d.y) - (a.y - c.y) * (d.x - a.x);
    }
    return area > 0.0;
  }

  void DrawLines(Raster& raster)
  {
    MeshLines lines = options_.lines;
    // Lines that are nearer than this would darken the colours.
    constexpr double kApart = 7.0;
    if (lines == MeshLines::Auto) lines = MeanSide() >= kApart ? MeshLines::All : MeshLines::Outline;
    if (lines == MeshLines::None && !ShowsUndeformed()) return;
    const std::vector<PatchEdge> edges = CollectEdges(mesh_, patches_);
    const PatchGrids             grids(patches_.size() < 20000 ? 8 : 2);
    if (ShowsUndeformed()) DrawUndeformed(raster, edges, grids);
    if (lines == MeshLines::None) return;
    for (const PatchEdge& edge : edges)
      if (edge.isFeature || lines == MeshLines::All) DrawEdge(raster, edge, grids);
    DrawRims(raster, grids);
    if (lines == MeshLines::All) DrawSectionEdges(raster);
  }

  /// The outline of the undeformed model, with what it hides.
  void DrawUndeformed(Raster& raster, const std::vector<PatchEdge>& edges, const PatchGrids& grids) const
  {
    const double unit   = canvas_.GetPixelsPerUnit();
    Colour       colour = Blend(ink_, options_.background.alpha > 0 ? options_.background : Colour{1, 1, 1, 1}, 0.45);
    colour.alpha        = 0.8;
    const auto draw     = [&](const std::array<double, 3>& from, const std::array<double, 3>& to) {
      raster.DrawLine(Place(from), Place(to), unit, colour, unit);
    };
    for (const PatchEdge& edge : edges)
      if (edge.isFeature) ForEachSegment(edge, grids, draw);
    for (const Surface::Line& beam : surface_.beams) draw(mesh_.Points()[beam.nodes[0]], mesh_.Points()[beam.nodes[1]]);
  }

  /// An edge of the surface, unless it is on the far side of a solid.
  void DrawEdge(Raster& raster, const PatchEdge& edge, const PatchGrids& grids) const
  {
    const Patch& patch = patches_[edge.patch];
    if (edge.isOfSolid && !LooksAtUs(patch) && !LooksAtUs(patches_[edge.other])) return;
    const double     unit  = canvas_.GetPixelsPerUnit();
    const auto       nodes = std::span(patch.nodes).first(patch.NumNodes());
    const PatchGrid& grid  = grids.Of(patch);
    const auto&      side  = grid.sides[edge.side];
    const auto       at    = [&](std::size_t i) {
      return Combine(patch.element, nodes, std::span(grid.points[side[i]]).first(nodes.size()));
    };
    const Colour& colour = edge.isFeature ? kFeatureInk : kMeshInk;
    const double  width  = (edge.isFeature ? kFeatureWidth : kMeshWidth) * unit;
    // A straight side is one line.
    const std::size_t step = patch.isCurved ? 1 : side.size() - 1;
    for (std::size_t i = 0; i + step < side.size(); i += step)
      raster.DrawLine(at(i), at(i + step), width, colour, kBias * unit);
  }

  /// Sides of elements on the cut.
  void DrawSectionEdges(Raster& raster) const
  {
    const double unit = canvas_.GetPixelsPerUnit();
    for (const auto& [element, section] : sections_) {
      const auto nodes = mesh_.NodesOf(mesh_.Elements()[element]);
      for (const auto& segment : section.edges) {
        std::array<RasterPoint, 2> ends;
        for (std::size_t i = 0; i < 2; ++i) {
          ends[i]      = Combine(element, nodes, std::span(segment[i]).first(nodes.size()));
          ends[i].side = -1.0;
        }
        raster.DrawLine(ends[0], ends[1], kMeshWidth * unit, kMeshInk, kBias * unit);
      }
    }
  }

  /// Where the plane cuts the surface.
  void DrawRims(Raster& raster, const PatchGrids& grids) const
  {
    if (sides_.empty()) return;
    const double unit = canvas_.GetPixelsPerUnit();
    for (const Patch& patch : patches_) {
      const auto       nodes  = std::span(patch.nodes).first(patch.NumNodes());
      const PatchGrid& grid   = grids.Of(patch);
      const auto       isKept = [this](std::size_t node) { return sides_[node] < 0.0; };
      if (std::all_of(nodes.begin(), nodes.end(), isKept) || std::none_of(nodes.begin(), nodes.end(), isKept)) continue;
      for (const auto& triangle : grid.triangles) {
        std::array<RasterPoint, 2> ends;
        std::size_t                count = 0;
        for (std::size_t i = 0; i < 3 && count < 2; ++i) {
          const auto at = [&](std::size_t corner) {
            return Combine(patch.element, nodes, std::span(grid.points[triangle[corner % 3]]).first(nodes.size()));
          };
          const RasterPoint a = at(i);
          const RasterPoint b = at(i + 1);
          if ((a.side < 0.0) == (b.side < 0.0)) continue;
          const double share = a.side / (a.side - b.side);
          ends[count++] = {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share, a.depth + (b.depth - a.depth) * share,
                           0.0, -1.0};
        }
        if (count == 2) raster.DrawLine(ends[0], ends[1], kFeatureWidth * unit, kFeatureInk, kBias * unit);
      }
    }
  }

  /// Calls take(from, to) for the segments of an edge of the undeformed model.
  template <typename Take>
  void ForEachSegment(const PatchEdge& edge, const PatchGrids& grids, const Take& take) const
  {
    const Patch&     patch = patches_[edge.patch];
    const PatchGrid& grid  = grids.Of(patch);
    const auto&      side  = grid.sides[edge.side];
    const auto       at    = [&](std::size_t i) {
      std::array<double, 3> point{};
      for (std::size_t n = 0; n < patch.NumNodes(); ++n)
        for (std::size_t k = 0; k < 3; ++k) point[k] += grid.points[side[i]][n] * mesh_.Points()[patch.nodes[n]][k];
      return point;
    };
    const std::size_t step = patch.isCurved ? 1 : side.size() - 1;
    for (std::size_t i = 0; i + step < side.size(); i += step) take(at(i), at(i + step));
  }

  void DrawTexts()
  {
    canvas_.DrawText({layout_.left, 30.0}, title_, {17.0, ink_, true});
    std::string below = std::filesystem::path(name_).filename().string();
    if (!label_.empty()) below += "  \u00B7  " + label_;
    if (!displacements_.empty()) below += "  \u00B7  deformed \u00D7\u2009" + PrintedNumber(picture_.factor);
    if (options_.cut) below += "  \u00B7  cut";
    for (const std::string& note : picture_.notes) below += "  \u00B7  " + note;
    const Colour faint = Blend(ink_, options_.background.alpha > 0 ? options_.background : Colour{1, 1, 1, 1}, 0.3);
    canvas_.DrawText({layout_.left, 50.0}, Printable(below), {12.0, faint});
  }

  /// The axes of the model in the lower left corner.
  void DrawTriad()
  {
    constexpr double kLength = 34.0;
    const Spot       origin{layout_.left + 44.0, layout_.top + layout_.height - 40.0};
    struct Axis
    {
      const char* name;
      Point3      direction;
      Colour      colour;
    };
    const bool          isBright = IsBright(options_.background);
    std::array<Axis, 3> axes     = {{{"x", options_.view.Project({1, 0, 0}), {0.80, 0.15, 0.13, 1}},
                                     {"y", options_.view.Project({0, 1, 0}), {0.13, 0.55, 0.20, 1}},
                                     {"z", options_.view.Project({0, 0, 1}), {0.16, 0.36, 0.80, 1}}}};
    if (!isBright)
      for (Axis& axis : axes) axis.colour = Blend(axis.colour, {1, 1, 1, 1}, 0.35);
    // What points away is drawn first.
    std::sort(axes.begin(), axes.end(), [](const Axis& a, const Axis& b) { return a.direction[2] < b.direction[2]; });
    for (const Axis& axis : axes) {
      const double x      = axis.direction[0];
      const double y      = -axis.direction[1];
      const double length = std::hypot(x, y);
      if (length < 0.02) {
        // Toward us a dot in a ring, away from us a ring alone.
        canvas_.FillCircle(origin, 4.5, options_.background.alpha > 0 ? options_.background : Colour{1, 1, 1, 1});
        canvas_.DrawCircle(origin, 4.5, {axis.colour, 1.6, false});
        if (axis.direction[2] > 0.0) canvas_.FillCircle(origin, 1.8, axis.colour);
        canvas_.DrawText({origin.x - 10.0, origin.y + 14.0}, axis.name, {12.0, axis.colour, true, Align::Centre});
        continue;
      }
      const Spot   tip{origin.x + kLength * x, origin.y + kLength * y};
      const double ux   = x / length;
      const double uy   = y / length;
      const double head = std::min(8.0, kLength * length);
      canvas_.DrawLine(std::array<Spot, 2>{{origin, {tip.x - 0.7 * head * ux, tip.y - 0.7 * head * uy}}},
                       {axis.colour, 2.0, false});
      canvas_.FillPolygon(
          std::array<Spot, 3>{{tip,
                               {tip.x - head * ux - 0.4 * head * uy, tip.y - head * uy + 0.4 * head * ux},
                               {tip.x - head * ux + 0.4 * head * uy, tip.y - head * uy - 0.4 * head * ux}}},
          axis.colour);
      canvas_.DrawText({tip.x + 9.0 * ux, tip.y + 9.0 * uy + 4.0}, axis.name, {12.0, axis.colour, true, Align::Centre});
    }
  }

  void DrawBar() { MakeBar().Draw(canvas_, layout_.bar, layout_.barHeight); }

  /// @return the place of a node, or of the centre of an element
  RasterPoint PlaceOf(const std::array<std::size_t, 2>& at) const
  {
    if (field_->IsAtNodes()) return nodes_[at[1]];
    RasterPoint centre{0, 0, 0, 0, 0};
    const auto  nodes = mesh_.NodesOf(mesh_.Elements()[at[0]]);
    for (const std::size_t node : nodes) {
      centre.x += nodes_[node].x / static_cast<double>(nodes.size());
      centre.y += nodes_[node].y / static_cast<double>(nodes.size());
      centre.depth += nodes_[node].depth / static_cast<double>(nodes.size());
    }
    return centre;
  }

  void PlaceMarks(const Raster& raster)
  {
    const double ppu   = canvas_.GetPixelsPerUnit();
    const auto   place = [&](ExtremeMark& mark, const std::array<std::size_t, 2>& at) {
      const RasterPoint point = PlaceOf(at);
      mark.place              = {layout_.left + point.x / ppu, layout_.top + point.y / ppu};
      // Faces that meet in the node fill pixels beside it: the nearest of those around tells whether it is hidden.
      constexpr double kSlack = 2.5;
      bool             isSeen = false;
      bool             hasAny = false;
      for (const double dx : {-1.0, 0.0, 1.0})
        for (const double dy : {-1.0, 0.0, 1.0}) {
          const std::optional<double> depth = raster.GetDepth(point.x + dx * ppu, point.y + dy * ppu);
          hasAny                            = hasAny || depth;
          isSeen                            = isSeen || (depth && *depth <= point.depth + kSlack * ppu);
        }
      mark.isHidden = hasAny && !isSeen;
    };
    place(*picture_.least, leastAt_);
    place(*picture_.greatest, greatestAt_);
    if (!options_.hasMarks) return;
    DrawMark(*picture_.least, false);
    DrawMark(*picture_.greatest, true);

    const double bottom = layout_.bar.y + layout_.barHeight + 44.0;
    DrawMarkLegend(*picture_.greatest, true, bottom);
    DrawMarkLegend(*picture_.least, false, bottom + 48.0);
  }

  /// A triangle that stands on its base for the greatest, on its tip for the least.
  void DrawSymbol(const Spot& at, bool isUp, bool isHollow)
  {
    const double              s      = isUp ? -1.0 : 1.0;
    const std::array<Spot, 4> points = {
        {{at.x, at.y + 6.5 * s}, {at.x + 6.0, at.y - 4.5 * s}, {at.x - 6.0, at.y - 4.5 * s}, {at.x, at.y + 6.5 * s}}};
    canvas_.DrawLine(points, {{1, 1, 1, 1}, 4.0, false});
    canvas_.FillPolygon(points, isHollow ? Colour{1, 1, 1, 1} : Colour{0.07, 0.07, 0.09, 1});
    canvas_.DrawLine(points, {{0.07, 0.07, 0.09, 1}, 1.4, false});
  }

  void DrawMark(const ExtremeMark& mark, bool isGreatest)
  {
    DrawSymbol(mark.place, isGreatest, mark.isHidden);
    const std::string text = PrintedNumber(mark.value);
    const TextStyle   style{12.5, {0.07, 0.07, 0.09, 1}, true};
    const double      width = canvas_.GetTextWidth(text, style);
    const bool        fits  = mark.place.x + 16.0 + width < layout_.left + layout_.width;
    const double      x     = fits ? mark.place.x + 12.0 : mark.place.x - 12.0 - width;
    const double      y     = mark.place.y + 4.5;
    // A plate, so that the number can be read on any colour.
    canvas_.FillPolygon(
        std::array<Spot, 4>{
            {{x - 3.0, y - 12.5}, {x + width + 3.0, y - 12.5}, {x + width + 3.0, y + 3.5}, {x - 3.0, y + 3.5}}},
        {1, 1, 1, 0.8});
    canvas_.DrawText({x, y}, text, style);
  }

  void DrawMarkLegend(const ExtremeMark& mark, bool isGreatest, double y)
  {
    if (y + 20.0 > canvas_.GetSize().height) return;  // a picture that is too small for it
    DrawSymbol({layout_.bar.x + 7.0, y - 4.0}, isGreatest, mark.isHidden);
    const std::vector<std::string> lines = MarkLines(mark);
    canvas_.DrawText({layout_.bar.x + 20.0, y}, lines[0], {12.0, ink_, true});
    canvas_.DrawText({layout_.bar.x + 20.0, y + 16.0}, lines[1], {12.0, ink_});
    if (mark.isHidden) canvas_.DrawText({layout_.bar.x + 20.0, y + 30.0}, "hidden", {10.5, ink_});
  }

  const ModelPictureOptions&                    options_;
  const std::string&                            name_;
  std::string                                   label_;  // of the step
  std::string                                   title_;
  Mesh                                          mesh_;
  Canvas                                        canvas_;
  Colour                                        ink_;
  std::optional<ModelField>                     field_;
  std::vector<std::array<double, 3>>            displacements_;  // empty: undeformed
  std::vector<bool>                             isShown_;        // empty: all
  Surface                                       surface_;
  std::vector<Patch>                            patches_;
  std::vector<double>                           sides_;  // empty: not cut
  std::vector<std::pair<std::size_t, SolidCut>> sections_;
  std::array<std::size_t, 2>                    leastAt_{};  // element, node
  std::array<std::size_t, 2>                    greatestAt_{};
  std::optional<ColourScale>                    scale_;
  Layout                                        layout_;
  double                                        scaling_ = 1.0;  // pixels of the raster to a unit of the model
  std::array<double, 2>                         middle_{};
  std::vector<RasterPoint>                      nodes_;  // of the mesh, in the raster
  ModelPicture                                  picture_;
};

}  // namespace

MeshLines ParseMeshLines(const std::string& name)
{
  constexpr MeshLines kLines[] = {MeshLines::Auto, MeshLines::All, MeshLines::Outline, MeshLines::None};
  return kLines[FindName(name, {"auto", "mesh", "outline", "none"}, "are no mesh lines",
                         "auto, mesh, outline or none")];
}

ModelPicture DrawModel(const FED_Database& database, int iteration, const std::optional<FieldChoice>& choice,
                       const ModelPictureOptions& options, PictureFormat format, const std::string& name)
{
  return Drawing(database, iteration, choice, options, format, name).Run();
}

}  // namespace quilon
