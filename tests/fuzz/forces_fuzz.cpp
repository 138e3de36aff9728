// Elements with any coordinates and any stresses: nodal values and forces are made without a fault, and where every
// number is small enough for sums to be finite, forces are in equilibrium, a stress that is the same everywhere is the
// same at the nodes, and no bound of an error is negative.
//
// The first byte chooses the element, the others are coordinates and stresses, eight bytes a number; where they end,
// small numbers that differ from each other follow.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <vector>

#include "elements/ElementShape.h"
#include "elements/Extrapolation.h"
#include "elements/IntegrationRule.h"

namespace {

struct Element
{
  int         frdType;
  std::size_t numPoints;
};

constexpr Element kElements[] = {{1, 8}, {2, 2}, {3, 1}, {4, 8}, {4, 27}, {5, 9}, {6, 4}, {1, 1}};

/// Beyond it products of three coordinates and a stress are no numbers any more.
constexpr double kMost = 1e60;

void Require(bool holds)
{
  if (!holds) std::abort();
}

class Numbers
{
public:
  Numbers(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::vector<double> Take(std::size_t count)
  {
    std::vector<double> numbers(count);
    for (double& number : numbers) number = TakeOne();
    return numbers;
  }

private:
  double TakeOne()
  {
    double number = 0.0;
    if (size_ < sizeof number) return std::fmod(0.37 * static_cast<double>(++numMade_), 1.0);
    std::memcpy(&number, data_, sizeof number);
    data_ += sizeof number;
    size_ -= sizeof number;
    return number;
  }

  const std::uint8_t* data_;
  std::size_t         size_;
  std::size_t         numMade_ = 0;
};

double LargestOf(const std::vector<double>& numbers)
{
  double largest = 0.0;
  for (const double number : numbers) {
    if (!(std::abs(number) <= kMost)) return HUGE_VAL;
    largest = std::max(largest, std::abs(number));
  }
  return largest;
}

void CheckForces(const quilon::IntegrationRule& rule, Numbers& numbers, const std::vector<double>& stress)
{
  const std::size_t         numNodes    = quilon::NumNodes(rule.shape);
  const std::vector<double> coordinates = numbers.Take(3 * numNodes);
  std::vector<double>       forces(3 * numNodes);
  quilon::CalculateNodalForces(rule, coordinates, stress, forces);
  std::vector<double> tolerance(3 * numNodes, 1e-6);
  std::vector<double> bounds(3 * numNodes);
  quilon::BoundForceErrors(rule, coordinates, stress, tolerance, bounds);

  const double size = LargestOf(coordinates);
  const double most = LargestOf(stress);
  if (std::isinf(size) || std::isinf(most)) return;
  // Of each sum no term exceeds this: two coordinates, as differences of shape functions, times a stress.
  const double scale = 1e3 * static_cast<double>(numNodes * numNodes * rule.points.size()) * size * size * most;
  for (std::size_t c = 0; c < 3; ++c) {
    double sum = 0.0;
    for (std::size_t node = 0; node < numNodes; ++node) sum += forces[3 * node + c];
    Require(std::abs(sum) <= 1e-13 * scale + std::numeric_limits<double>::min());
  }
  for (const double bound : bounds) Require(bound >= 0.0);
}

void CheckNodalValues(const quilon::ExtrapolationRule& rule, std::vector<double> stress)
{
  std::vector<double> nodes(6 * rule.NumNodes());
  quilon::Extrapolate(rule, stress, nodes);
  // The first point's stress at all of them. Weights have five figures, and numbers below the normal ones fewer.
  if (std::isinf(LargestOf(stress))) return;
  for (std::size_t i = 6; i < stress.size(); ++i) stress[i] = stress[i % 6];
  quilon::Extrapolate(rule, stress, nodes);
  for (std::size_t i = 0; i < nodes.size(); ++i)
    Require(std::abs(nodes[i] - stress[i % 6]) <= 1e-3 * std::abs(stress[i % 6]) + std::numeric_limits<double>::min());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  if (size == 0) return 0;
  const Element&            element = kElements[data[0] % std::size(kElements)];
  Numbers                   numbers(data + 1, size - 1);
  const std::vector<double> stress = numbers.Take(6 * element.numPoints);
  if (const auto* rule = quilon::FindIntegrationRule(element.frdType, element.numPoints))
    CheckForces(*rule, numbers, stress);
  if (const auto* rule = quilon::FindExtrapolation(element.frdType, element.numPoints)) CheckNodalValues(*rule, stress);
  return 0;
}
