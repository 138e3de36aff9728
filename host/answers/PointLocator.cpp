#include "answers/PointLocator.h"

#include <algorithm>
#include <cmath>

#include "elements/InverseMap.h"
#include "mesh/Mesh.h"

namespace quilon {

namespace {

constexpr double kReach = 1e-6;

using Coordinates = std::array<double, 3 * PointLocator::kMostNodes>;

/// @param coordinates receives shape [nodes, 3]
std::span<const double> CoordinatesOf(const Mesh& mesh, const Mesh::Element& element, Coordinates& coordinates)
{
  std::size_t at = 0;
  for (const std::size_t node : mesh.NodesOf(element)) {
    for (const double coordinate : mesh.Points()[node]) coordinates[at++] = coordinate;
  }
  return std::span(coordinates).first(at);
}

double ReachOf(const Mesh& mesh)
{
  if (mesh.Points().empty()) return 0.0;
  Box box{mesh.Points().front(), mesh.Points().front()};
  for (const Mesh::Point& point : mesh.Points()) {
    for (std::size_t k = 0; k < 3; ++k) {
      box.least[k]    = std::min(box.least[k], point[k]);
      box.greatest[k] = std::max(box.greatest[k], point[k]);
    }
  }
  return kReach *
         std::hypot(box.greatest[0] - box.least[0], box.greatest[1] - box.least[1], box.greatest[2] - box.least[2]);
}

/// @param ids ascending; null: all
std::vector<std::size_t> SolidsOf(const Mesh& mesh, const std::vector<int>* ids)
{
  const auto isMeant = [ids](int id) { return ids == nullptr || std::binary_search(ids->begin(), ids->end(), id); };
  std::vector<std::size_t> solids;
  for (std::size_t i = 0; i < mesh.NumElements(); ++i)
    if (FindShape(mesh.Elements()[i].frdType) && isMeant(mesh.Elements()[i].id)) solids.push_back(i);
  return solids;
}

std::vector<Box> BoxesOf(const Mesh& mesh, const std::vector<std::size_t>& solids, double reach)
{
  std::vector<Box> boxes;
  boxes.reserve(solids.size());
  Coordinates coordinates;
  for (const std::size_t solid : solids) {
    const Mesh::Element& element = mesh.Elements()[solid];
    Box                  box     = BoundElement(*FindShape(element.frdType), CoordinatesOf(mesh, element, coordinates));
    for (std::size_t k = 0; k < 3; ++k) {
      box.least[k] -= reach;
      box.greatest[k] += reach;
    }
    boxes.push_back(box);
  }
  return boxes;
}

}  // namespace

void PointLocator::Place::Interpolate(std::span<const double> values, std::span<double> result) const
{
  const std::size_t numValues = result.size();
  std::fill(result.begin(), result.end(), 0.0);
  for (std::size_t n = 0; n * numValues < values.size(); ++n) {
    if (weights[n] == 0.0) continue;  // at a node no other counts, whatever its value is
    for (std::size_t k = 0; k < numValues; ++k) result[k] += weights[n] * values[n * numValues + k];
  }
}

PointLocator::PointLocator(const Mesh& mesh, const std::vector<int>* elements)
    : mesh_(mesh), reach_(ReachOf(mesh)), solids_(SolidsOf(mesh, elements)), boxes_(BoxesOf(mesh, solids_, reach_))
{}

std::optional<PointLocator::Place> PointLocator::Find(const std::array<double, 3>& point) const
{
  Coordinates coordinates;
  for (const std::size_t candidate : boxes_.FindHolding(point)) {
    const std::size_t    position = solids_[candidate];
    const Mesh::Element& element  = mesh_.Elements()[position];
    const ElementShape   shape    = *FindShape(element.frdType);
    const auto           local    = FindLocalPlace(shape, CoordinatesOf(mesh_, element, coordinates), point, reach_);
    if (!local) continue;
    Place                              place;
    std::array<double, 3 * kMostNodes> derivatives;
    place.element = position;
    EvaluateShape(shape, *local, std::span(place.weights).first(element.count),
                  std::span(derivatives).first(3 * element.count));
    return place;
  }
  return std::nullopt;
}

}  // namespace quilon
