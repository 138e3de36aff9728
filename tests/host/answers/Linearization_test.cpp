#include "answers/Linearization.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace quilon;

/// Tensors along a wall of which each component is the same function of the place, 0 to 1, times its number from 1.
template <typename Function>
std::vector<double> Sample(std::size_t numPoints, const Function& function)
{
  std::vector<double> tensors;
  for (std::size_t i = 0; i < numPoints; ++i) {
    const double place = static_cast<double>(i) / static_cast<double>(numPoints - 1);
    for (int k = 1; k <= 6; ++k) tensors.push_back(k * function(place));
  }
  return tensors;
}

void ExpectTensor(const LinearizedStress::Tensor& tensor, double first, double tolerance, const char* what)
{
  for (std::size_t k = 0; k < 6; ++k)
    EXPECT_NEAR(tensor[k], first * static_cast<double>(k + 1), tolerance) << what << " " << k;
}

TEST(Linearization, WeightsAreExactForCubics)
{
  for (std::size_t n = kFewestLinearized; n <= 12; ++n) {
    const std::vector<double> weights = QuadratureWeights(n);
    for (int power = 0; power <= 3; ++power) {
      double integral = 0.0;
      for (std::size_t i = 0; i < n; ++i)
        integral += weights[i] * std::pow(static_cast<double>(i) / static_cast<double>(n - 1), power);
      EXPECT_NEAR(integral, 1.0 / (power + 1), 1e-15) << n << " points, power " << power;
    }
  }
}

TEST(Linearization, AConstantIsMembraneAndALineIsMembraneAndBending)
{
  for (const std::size_t n : {3u, 4u, 5u, 6u, 7u, 20u, 47u}) {
    const LinearizedStress constant = Linearize(Sample(n, [](double) { return 5.0; }));
    ExpectTensor(constant.membrane, 5.0, 1e-13, "membrane");
    ExpectTensor(constant.bendingStart, 0.0, 1e-13, "bending");
    ExpectTensor(constant.peakEnd, 0.0, 1e-13, "peak");

    const LinearizedStress line = Linearize(Sample(n, [](double x) { return 7.0 - 4.0 * x; }));
    ExpectTensor(line.membrane, 5.0, 1e-13, "membrane");
    ExpectTensor(line.bendingStart, 2.0, 1e-13, "bending at the start");
    ExpectTensor(line.bendingEnd, -2.0, 1e-13, "bending at the end");
    ExpectTensor(line.membraneBendingStart, 7.0, 1e-13, "both at the start");
    ExpectTensor(line.membraneBendingEnd, 3.0, 1e-13, "both at the end");
    ExpectTensor(line.peakStart, 0.0, 1e-13, "peak at the start");
    ExpectTensor(line.peakEnd, 0.0, 1e-13, "peak at the end");
  }
}

// x^2: membrane 1/3, bending 6 (1/2 * 1/3 - 1/4) = -1/2 at the start; the peak is what is left of 0 and 1.
TEST(Linearization, AParabolaIsExact)
{
  for (const std::size_t n : {3u, 4u, 5u, 8u, 11u}) {
    const LinearizedStress parabola = Linearize(Sample(n, [](double x) { return x * x; }));
    ExpectTensor(parabola.membrane, 1.0 / 3.0, 1e-14, "membrane");
    ExpectTensor(parabola.bendingStart, -0.5, 1e-14, "bending");
    ExpectTensor(parabola.peakStart, 1.0 / 6.0, 1e-14, "peak at the start");
    ExpectTensor(parabola.peakEnd, 1.0 / 6.0, 1e-14, "peak at the end");
  }
}

// Thick cylinder under inner pressure p, radii a and b: hoop stress A + B / r^2 with A = p a^2 / (b^2 - a^2), B = A b^2
// (G. Lame, B. Clapeyron, 1833). Through the wall, t = b - a:
//     membrane         A + B / (a b)
//     bending at a     6 / t^2 times the integral of B / r^2 (t/2 - (r - a)) dr = 6 B / t^2 ((a + b)^2 / (2 a b) - ...)
// whose integral of (c - r) / r^2, c = (a + b) / 2, is c (1/a - 1/b) - ln(b / a).
TEST(Linearization, TheHoopStressOfAThickCylinderIsItsClosedForm)
{
  const double a        = 100.0;
  const double b        = 150.0;
  const double t        = b - a;
  const double A        = 10.0 * a * a / (b * b - a * a);
  const double B        = A * b * b;
  const double membrane = A + B / (a * b);
  const double bending  = 6.0 * B / (t * t) * (0.5 * (a + b) * (1.0 / a - 1.0 / b) - std::log(b / a));
  const auto   hoop     = [&](double x) {
    const double r = a + t * x;
    return A + B / (r * r);
  };
  const LinearizedStress wall = Linearize(Sample(101, hoop));
  // The error of Simpson's rule is h^4 / 180 times the fourth derivative, 120 B / a^6 t^4 at most: 8e-9 of the whole.
  ExpectTensor(wall.membrane, membrane, 1e-6, "membrane");
  ExpectTensor(wall.bendingStart, bending, 1e-6, "bending");
  ExpectTensor(wall.peakStart, hoop(0.0) - membrane - bending, 1e-6, "peak at the start");
  ExpectTensor(wall.peakEnd, hoop(1.0) - membrane + bending, 1e-6, "peak at the end");
  // Membrane is what the pressure demands: p a / t.
  EXPECT_NEAR(membrane, 10.0 * a / t, 1e-12);
}

}  // namespace
