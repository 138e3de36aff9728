#include "forces/PlaneCut.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "forces/ForceMesh.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

constexpr std::size_t kNowhere = IdRadixMap<Vector>::npos;
// Of the model's size: deck coordinates are as exact as they were written, and no element is so thin.
constexpr double kOnPlane = 1e-6;

/// Nodes beside a plane.
class Sides
{
public:
  Sides(const ForceMesh& mesh, const ForceStep& step, const CutPlane& plane)
  {
    double length = 0.0;
    for (const double component : plane.normal) length = std::hypot(length, component);
    for (std::size_t k = 0; k < 3; ++k) normal_[k] = plane.normal[k] / length;

    Vector low;
    Vector high;
    low.fill(std::numeric_limits<double>::infinity());
    high.fill(-std::numeric_limits<double>::infinity());
    distances_.reserve(step.positions.size());
    for (const Vector& position : step.positions) {
      const Vector arm = Minus(position, plane.point);
      distances_.push_back(arm[0] * normal_[0] + arm[1] * normal_[1] + arm[2] * normal_[2]);
      for (std::size_t k = 0; k < 3; ++k) {
        low[k]  = std::min(low[k], position[k]);
        high[k] = std::max(high[k], position[k]);
      }
    }
    double size = 0.0;
    for (std::size_t k = 0; k < 3; ++k) size = std::hypot(size, high[k] - low[k]);

    isAhead_.reserve(distances_.size());
    for (std::size_t node = 0; node < distances_.size(); ++node) {
      double tolerance = kOnPlane * size;
      for (std::size_t k = 0; k < 3 && mesh.isRounded; ++k)
        tolerance += std::abs(normal_[k]) * RoundingOf(step.positions[node][k]);
      isAhead_.push_back(distances_[node] >= -tolerance);
    }
  }

  /// @return whether a node is on the plane or on the side that the normal points to
  bool IsAhead(std::size_t node) const { return isAhead_[node]; }

  double        Distance(std::size_t node) const { return distances_[node]; }
  const Vector& Normal() const noexcept { return normal_; }

private:
  Vector              normal_ = {};  // of length 1
  std::vector<double> distances_;    // by position in the mesh's nodes
  std::vector<bool>   isAhead_;      // likewise
};

std::string PlaneText(const Vector& point, const Vector& normal)
{
  std::string text;
  for (const Vector* vector : {&point, &normal})
    for (const double component : *vector) text += (text.empty() ? "" : ",") + FormatRounded(component);
  return text;
}

[[noreturn]] void FailWithoutElements(const CutPlane& plane, const Sides& sides, double least, double greatest,
                                      bool isOfPart)
{
  Vector middle = plane.point;
  for (std::size_t k = 0; k < 3; ++k) middle[k] += 0.5 * (least + greatest) * sides.Normal()[k];
  Fail("--plane passes no element" + std::string(isOfPart ? " of the part" : "") + ", which lie from " +
       FormatRounded(least) + " to " + FormatRounded(greatest) + " along its normal, expected for example --plane " +
       PlaneText(middle, plane.normal));
}

/// @return for each element of the mesh whether it has nodes on both sides
/// @throws FED_Failure when none has
std::vector<bool> FindPassedElements(const ForceMesh& mesh, const CutPlane& plane, const Sides& sides,
                                     const std::optional<std::set<int>>& part)
{
  std::vector<bool> isPassed;
  double            least    = std::numeric_limits<double>::infinity();
  double            greatest = -least;
  for (const auto& [id, element] : mesh.elements.Entries()) {
    isPassed.push_back(false);
    if (part && !part->contains(id)) continue;
    bool hasAhead  = false;
    bool hasBehind = false;
    for (const int nodeId : mesh.NodesOf(element)) {
      const std::size_t node = mesh.nodes.Find(nodeId);
      if (node == kNowhere) continue;
      (sides.IsAhead(node) ? hasAhead : hasBehind) = true;
      least                                        = std::min(least, sides.Distance(node));
      greatest                                     = std::max(greatest, sides.Distance(node));
    }
    isPassed.back() = hasAhead && hasBehind;
  }
  if (std::find(isPassed.begin(), isPassed.end(), true) == isPassed.end())
    FailWithoutElements(plane, sides, least, greatest, part.has_value());
  return isPassed;
}

}  // namespace

PlaneCut CalculatePlaneCut(const FED_Database& database, const ForceMesh& mesh, const ForceStep& step,
                           const CutPlane& plane, const std::optional<std::set<int>>& part, const std::string& name)
{
  if (part) {
    for (const int id : *part)
      if (mesh.elements.Find(id) == kNowhere) Fail(name + ": no element " + std::to_string(id) + " in the mesh");
  }
  const Sides             sides(mesh, step, plane);
  const std::vector<bool> isPassed = FindPassedElements(mesh, plane, sides, part);
  PlaneCut                cut;
  std::set<int>           withoutForces;
  std::size_t             at = 0;
  for (const auto& [id, element] : mesh.elements.Entries()) {
    const std::size_t position = at++;
    if (!isPassed[position]) continue;
    cut.elements.push_back(id);
    if (!step.hasForces[position]) withoutForces.insert(id);
  }
  if (!withoutForces.empty()) {
    Fail(name + ": no forces of " + Counted(withoutForces.size(), "element") + " that the plane passes in " +
         ToSelectionText(step.forces) + ": " + FormatIds(withoutForces) +
         ", expected forces of all, or --elements or --set with those that have them");
  }

  std::vector<bool> isCounted(step.positions.size(), false);
  ForEachForce(database, mesh, step, [&](std::size_t element, std::size_t node, const double* force) {
    if (!isPassed[element] || !sides.IsAhead(node)) return;
    cut.resultant.Add(Minus(step.positions[node], plane.point), force);
    if (!isCounted[node]) ++cut.resultant.numNodes;
    isCounted[node] = true;
  });
  return cut;
}

}  // namespace quilon
