#include "FEM_PrincipalValue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

using Tensor = std::array<double, 6>;  // xx, yy, zz, xy, yz, zx
using Values = std::array<double, 3>;  // largest first
using Exact  = std::array<long double, 3>;

constexpr double kNaN      = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

Values Principal(const Tensor& tensor)
{
  Values values = {kNaN, kNaN, kNaN};
  FEM_PrincipalValue::Calculate(tensor.data(), values.data());
  return values;
}

/// The second method: Jacobi rotations in long double, which share nothing with the closed form.
Exact JacobiEigenvalues(const Tensor& tensor)
{
  using Matrix = std::array<std::array<long double, 3>, 3>;
  Matrix a     = {
          {{tensor[0], tensor[3], tensor[5]}, {tensor[3], tensor[1], tensor[4]}, {tensor[5], tensor[4], tensor[2]}}};
  for (int sweep = 0; sweep < 30; ++sweep) {
    if (a[0][1] == 0 && a[1][2] == 0 && a[0][2] == 0) break;
    for (std::size_t p = 0; p < 2; ++p) {
      for (std::size_t q = p + 1; q < 3; ++q) {
        if (a[p][q] == 0) continue;
        const long double theta = (a[q][q] - a[p][p]) / (2 * a[p][q]);
        const long double t     = (theta >= 0 ? 1 : -1) / (std::fabs(theta) + std::hypot(theta, 1.0L));
        const long double c     = 1 / std::hypot(t, 1.0L);
        const long double s     = t * c;
        const std::size_t r     = 3 - p - q;
        a[p][p] -= t * a[p][q];
        a[q][q] += t * a[p][q];
        a[p][q] = a[q][p]    = 0;
        const long double rp = a[r][p];
        const long double rq = a[r][q];
        a[r][p] = a[p][r] = c * rp - s * rq;
        a[r][q] = a[q][r] = s * rp + c * rq;
      }
    }
  }
  Exact values = {a[0][0], a[1][1], a[2][2]};
  std::sort(values.begin(), values.end(), std::greater<>());
  return values;
}

/// Largest difference, relative to the largest principal value.
double RelativeError(const Tensor& tensor)
{
  const Exact       exact  = JacobiEigenvalues(tensor);
  const Values      values = Principal(tensor);
  const long double norm   = std::max(std::fabs(exact[0]), std::fabs(exact[2]));
  long double       error  = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    // Written so that a NaN is an error too.
    const long double difference = std::fabs(values[i] - exact[i]);
    if (!(difference <= error)) error = difference;
  }
  return static_cast<double>(error / norm);
}

/// Draws tensors of known kinds; the seed is fixed.
class Draw
{
public:
  double Uniform(double low, double high) { return std::uniform_real_distribution<double>(low, high)(random_); }
  double Sign() { return Uniform(-1, 1) < 0 ? -1.0 : 1.0; }
  /// A power of ten, its exponent uniform.
  double Magnitude(double lowExponent, double highExponent)
  {
    return std::pow(10.0, Uniform(lowExponent, highExponent));
  }

  /// A tensor of these principal values in directions drawn at random, rounded once.
  Tensor Rotated(const Exact& values)
  {
    std::normal_distribution<double> normal;
    long double                      w = normal(random_), x = normal(random_), y = normal(random_), z = normal(random_);
    const long double                length = std::sqrt(w * w + x * x + y * y + z * z);
    w /= length;
    x /= length;
    y /= length;
    z /= length;
    const std::array<std::array<long double, 3>, 3> r = {
        {{1 - 2 * (y * y + z * z), 2 * (x * y - z * w), 2 * (x * z + y * w)},
         {2 * (x * y + z * w), 1 - 2 * (x * x + z * z), 2 * (y * z - x * w)},
         {2 * (x * z - y * w), 2 * (y * z + x * w), 1 - 2 * (x * x + y * y)}}};
    const auto component = [&](std::size_t i, std::size_t j) {
      return static_cast<double>(r[i][0] * values[0] * r[j][0] + r[i][1] * values[1] * r[j][1] +
                                 r[i][2] * values[2] * r[j][2]);
    };
    return {component(0, 0), component(1, 1), component(2, 2), component(0, 1), component(1, 2), component(2, 0)};
  }

private:
  std::mt19937_64 random_{20250102};
};

constexpr int kPerFamily = 40000;

/// Largest relative error over a family of tensors.
double LargestError(const std::function<Tensor(Draw&)>& make)
{
  Draw   draw;
  double largest = 0;
  for (int i = 0; i < kPerFamily; ++i) largest = std::max(largest, RelativeError(make(draw)));
  return largest;
}

// Branches by the thresholds.

TEST(FEM_PrincipalValue, TheZeroTensorGivesZeros)
{
  EXPECT_THAT(Principal({0, 0, 0, 0, 0, 0}), ElementsAre(0.0, 0.0, 0.0));
}

TEST(FEM_PrincipalValue, ATensorWithinTheToleranceGivesPositiveZeros)
{
  for (const double value : Principal({-1e-16, 9e-16, -0.0, 1e-16, -9e-16, -1e-16})) {
    EXPECT_EQ(value, 0.0);
    EXPECT_FALSE(std::signbit(value));
  }
}

TEST(FEM_PrincipalValue, AUniaxialTensorGivesItsComponentAndExactZeros)
{
  EXPECT_THAT(Principal({5, 0, 0, 0, 0, 0}), ElementsAre(5.0, 0.0, 0.0));
  EXPECT_THAT(Principal({0, 5, 0, 0, 0, 0}), ElementsAre(5.0, 0.0, 0.0));
  EXPECT_THAT(Principal({0, 0, 5, 0, 0, 0}), ElementsAre(5.0, 0.0, 0.0));
  EXPECT_THAT(Principal({-2, 0, 0, 0, 0, 0}), ElementsAre(0.0, 0.0, -2.0));
  EXPECT_THAT(Principal({0, -2, 0, 0, 0, 0}), ElementsAre(0.0, 0.0, -2.0));
  EXPECT_THAT(Principal({0, 0, -2, 0, 0, 0}), ElementsAre(0.0, 0.0, -2.0));
}

TEST(FEM_PrincipalValue, AUniaxialTensorKeepsTheDiagonalAsItStands)
{
  EXPECT_THAT(Principal({5, 1e-16, -1e-16, 0, 0, 0}), ElementsAre(5.0, 1e-16, -1e-16));
}

TEST(FEM_PrincipalValue, APlaneTensorGivesTheCircleOfMohrAndAnExactZero)
{
  const double root     = std::sqrt(2.0);
  const Tensor planes[] = {{3, 1, 0, 1, 0, 0}, {3, 0, 1, 0, 0, 1}, {0, 3, 1, 0, 1, 0}};
  for (const Tensor& tensor : planes) {
    const Values values = Principal(tensor);
    EXPECT_DOUBLE_EQ(values[0], 2 + root);
    EXPECT_DOUBLE_EQ(values[1], 2 - root);
    EXPECT_EQ(values[2], 0.0);
  }
  EXPECT_THAT(Principal({-4, -1, 0, 0, 0, 0}), ElementsAre(0.0, -1.0, -4.0));
  EXPECT_THAT(Principal({-4, 0, -1, 0, 0, 0}), ElementsAre(0.0, -1.0, -4.0));
  EXPECT_THAT(Principal({0, -4, -1, 0, 0, 0}), ElementsAre(0.0, -1.0, -4.0));
  EXPECT_THAT(Principal({0, 0, 0, 7, 0, 0}), ElementsAre(7.0, 0.0, -7.0));
  EXPECT_THAT(Principal({0, 0, 0, 0, 7, 0}), ElementsAre(7.0, 0.0, -7.0));
  EXPECT_THAT(Principal({0, 0, 0, 0, 0, 7}), ElementsAre(7.0, 0.0, -7.0));
}

// In-plane components so large that an out-of-plane one of 1e-15 gives a determinant far from zero: the general path
// leaves rounding noise where the plane one has an exact zero.
TEST(FEM_PrincipalValue, AComponentOf1e16CountsAsZeroAndOneOf1e15DoesNot)
{
  struct Plane
  {
    Tensor                     tensor;
    std::array<std::size_t, 3> outOfPlane;
  };
  const Plane planes[] = {{{1e30, 3e30, 0, 1e30, 0, 0}, {2, 4, 5}},
                          {{1e30, 0, 3e30, 0, 0, 1e30}, {1, 3, 4}},
                          {{0, 1e30, 3e30, 0, 1e30, 0}, {0, 3, 5}}};
  for (const Plane& plane : planes) {
    for (const std::size_t component : plane.outOfPlane) {
      for (const double sign : {1.0, -1.0}) {
        Tensor tensor     = plane.tensor;
        tensor[component] = sign * 1e-16;
        EXPECT_EQ(Principal(tensor)[2], 0.0) << component;
        tensor[component] = sign * 1e-15;
        EXPECT_NE(Principal(tensor)[2], 0.0) << component;
      }
    }
  }
  // A second component above the tolerance makes a uniaxial tensor a plane one: its formula rounds 5 + 1e-15 to one
  // unit in the last place above 5, and 5 - 1e-15 to one below.
  EXPECT_EQ(Principal({5, 1e-15, 0, 0, 0, 0})[1], 0x1p-50);
}

TEST(FEM_PrincipalValue, AnIsotropicTensorGivesItsMeanThreeTimes)
{
  EXPECT_THAT(Principal({2, 2, 2, 0, 0, 0}), ElementsAre(2.0, 2.0, 2.0));
  EXPECT_THAT(Principal({-2, -2, -2, 0, 0, 0}), ElementsAre(-2.0, -2.0, -2.0));
}

TEST(FEM_PrincipalValue, AGeneralTensorGivesTheEigenvaluesOfItsMatrix)
{
  const Tensor tensor = {1, 2, 3, 0.5, 0.25, 0.75};
  const Exact  exact  = JacobiEigenvalues(tensor);
  const Values values = Principal(tensor);
  // A few roundings of the cosine and of the sum with I1 / 3.
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(values[i], static_cast<double>(exact[i]), 2e-15);
}

TEST(FEM_PrincipalValue, ExactDoubleRootsComeOutExactly)
{
  // I1 = 0, Q = -1, R = +-1: the ratio t is exactly 1. By way of the arc cosine the pair would miss by 4e-16.
  EXPECT_THAT(Principal({-2, 1, 1, 0, 0, 0}), ElementsAre(1.0, 1.0, -2.0));
  EXPECT_THAT(Principal({2, -1, -1, 0, 0, 0}), ElementsAre(2.0, -1.0, -1.0));
  EXPECT_THAT(Principal({1, -2, 1, 0, 0, 0}), ElementsAre(1.0, 1.0, -2.0));
}

TEST(FEM_PrincipalValue, ASmallDeterminantLeavesAQuadraticAndAnExactZero)
{
  EXPECT_THAT(Principal({1, 1, 0, 1, 0, 1e-14}), ElementsAre(2.0, 0.0, 0.0));
  // x^2 - 5 x + 4 = 0
  EXPECT_THAT(Principal({4, 1, 0, 0, 1e-10, 1e-10}), ElementsAre(4.0, 1.0, 0.0));
  EXPECT_THAT(Principal({-4, -1, 0, 0, 1e-10, 1e-10}), ElementsAre(0.0, -1.0, -4.0));
}

// I1 = 2 + 2^-51 and I2 = 1 + 2^-50 as rounded: I1^2 - 4 I2 = -2^-49.
TEST(FEM_PrincipalValue, NegativeDiscriminantIsTakenByItsAbsoluteValue)
{
  const Values values = Principal({1, 1, 5e-16, 0, 2e-15, 0});
  const double s      = std::sqrt(0x1p-49);
  EXPECT_DOUBLE_EQ(values[0], 1 + s / 2);
  EXPECT_DOUBLE_EQ(values[1], 1 - s / 2);
  EXPECT_EQ(values[2], 0.0);
}

// Close to a triple root the rounded cubic may have one real root. It satisfies that cubic, and the other two results
// are the real part of the pair, one and the same.
TEST(FEM_PrincipalValue, RatioAboveTheDoubleRootLimitTakesTheRealParts)
{
  int numSeen = 0;
  for (int i = 1; i <= 2000; ++i) {
    const double a  = 1 + i * 1e-8;
    const double I1 = a + 1 + 1;
    const double I2 = a + a + 1;
    const double Q  = (I2 - I1 * I1 * (1.0 / 3)) * (1.0 / 3);
    const double R  = (-I1 * I1 * I1 * (2.0 / 27) + I2 * I1 * (1.0 / 3) - a) * 0.5;
    if (!(Q < 0)) continue;
    const double y = std::copysign(std::sqrt(-Q), R);
    if (!(R / (y * y * y) > 1.01)) continue;

    ++numSeen;
    const Values values = Principal({a, 1, 1, 0, 0, 0});
    // Where R < 0 the real root is the largest value, otherwise the smallest.
    const double      real = R < 0 ? values[0] : values[2];
    const double      pair = R < 0 ? values[2] : values[0];
    const long double z    = static_cast<long double>(real) - static_cast<long double>(I1 * (1.0 / 3));
    // z is a difference of numbers near 1, so it keeps 16 digits less those of 1 / z; missing the factor h would leave
    // a residual above 0.01 / 2.
    EXPECT_NEAR(static_cast<double>((z * z * z + 3 * Q * z + 2 * R) / R), 0.0,
                static_cast<double>(20 * 2.3e-16L / std::fabs(z)))
        << i;
    EXPECT_EQ(values[1], pair) << i;
    EXPECT_NEAR(values[0] + values[1] + values[2], I1, 2e-15) << i;
  }
  EXPECT_GT(numSeen, 100);
}

// Order and special numbers.

TEST(FEM_PrincipalValue, ResultsAreSortedLargestFirst)
{
  Draw draw;
  for (int i = 0; i < 1000; ++i) {
    Tensor tensor;
    for (double& component : tensor) component = draw.Uniform(-1, 1);
    if (i % 3 == 1) tensor[2] = tensor[4] = tensor[5] = 0;
    if (i % 3 == 2) tensor[1] = tensor[2] = tensor[3] = tensor[4] = tensor[5] = 0;
    const Values values = Principal(tensor);
    EXPECT_GE(values[0], values[1]);
    EXPECT_GE(values[1], values[2]);
  }
}

// Only the signs of zeros tell equal candidates apart.
TEST(FEM_PrincipalValue, OfTwoEqualCandidatesTheSecondComesFirstAndTheThirdBetween)
{
  const auto signs = [](const Values& values) {
    return std::array<bool, 3>{std::signbit(values[0]), std::signbit(values[1]), std::signbit(values[2])};
  };
  EXPECT_THAT(signs(Principal({0.0, -0.0, 5, 0, 0, 0})), ElementsAre(false, true, false));
  EXPECT_THAT(signs(Principal({-0.0, 0.0, 5, 0, 0, 0})), ElementsAre(false, false, true));
  EXPECT_THAT(signs(Principal({-1, 0.0, -0.0, 0, 0, 0})), ElementsAre(false, true, true));
  EXPECT_THAT(signs(Principal({-1, -0.0, 0.0, 0, 0, 0})), ElementsAre(true, false, true));
}

TEST(FEM_PrincipalValue, ResultsMayReplaceTheTensor)
{
  Tensor tensor = {-4, -1, 0, 0, 0, 9};
  Values values = Principal(tensor);
  FEM_PrincipalValue::Calculate(tensor.data(), tensor.data());
  EXPECT_THAT(tensor, ElementsAre(values[0], values[1], values[2], 0.0, 0.0, 9.0));
}

TEST(FEM_PrincipalValue, ANaNNeverDisappears)
{
  const Tensor bases[] = {{0, 0, 0, 0, 0, 0}, {5, 0, 0, 0, 0, 0},         {3, 1, 0, 1, 0, 0},
                          {0, 3, 1, 0, 1, 0}, {1, 2, 3, 0.5, 0.25, 0.75}, {2, 2, 2, 0, 0, 0}};
  for (const Tensor& base : bases) {
    for (std::size_t component = 0; component < 6; ++component) {
      Tensor tensor       = base;
      tensor[component]   = kNaN;
      const Values values = Principal(tensor);
      EXPECT_TRUE(std::isnan(values[0]) || std::isnan(values[1]) || std::isnan(values[2])) << component;
    }
  }
}

TEST(FEM_PrincipalValue, AnInfiniteComponentIsNotZero)
{
  EXPECT_THAT(Principal({kInfinity, 0, 0, 0, 0, 0}), ElementsAre(kInfinity, 0.0, 0.0));
  EXPECT_THAT(Principal({0, 0, -kInfinity, 0, 0, 0}), ElementsAre(0.0, 0.0, -kInfinity));
}

// Against Jacobi rotations, by families. eps below is 2^-52; the invariants carry a rounding of a few eps.

TEST(FEM_PrincipalValue, SeparatePrincipalValuesAreAccurateToRounding)
{
  const auto family = [](double low, double high) {
    return LargestError([low, high](Draw& draw) {
      const double      size = draw.Magnitude(low, high);
      const long double mean = size;
      return draw.Rotated(
          {mean * draw.Sign() * draw.Uniform(0.9, 1), mean * draw.Uniform(0.2, 0.4), mean * draw.Uniform(-0.3, -0.1)});
    });
  };
  // With gaps of 0.3 of the norm nothing amplifies a rounding much: 7 eps.
  const double bound = 7 * 0x1p-52;
  EXPECT_LT(family(-4, -2), bound);
  EXPECT_LT(family(0, 6), bound);
  EXPECT_LT(family(90, 101), bound);
}

TEST(FEM_PrincipalValue, RandomComponentsAreAccurateToRoundingOverTheSmallestGap)
{
  // Among 40,000 such tensors the smallest gap is some hundredths of the norm, so a rounding grows a hundredfold.
  EXPECT_LT(LargestError([](Draw& draw) {
              Tensor tensor;
              for (double& component : tensor) component = draw.Uniform(-1000, 1000);
              return tensor;
            }),
            1e-13);
}

TEST(FEM_PrincipalValue, PlaneTensorsAreAccurateToTwoRoundings)
{
  for (int plane = 0; plane < 3; ++plane) {
    EXPECT_LT(LargestError([plane](Draw& draw) {
                const double size = draw.Magnitude(-9, 9);
                const double a = size * draw.Uniform(-1, 1), b = size * draw.Uniform(-1, 1),
                             c = size * draw.Uniform(-1, 1);
                if (plane == 0) return Tensor{a, b, 0, c, 0, 0};
                if (plane == 1) return Tensor{a, 0, b, 0, 0, c};
                return Tensor{0, a, b, 0, c, 0};
              }),
              4.5e-16);
  }
}

TEST(FEM_PrincipalValue, NearADoubleRootTheErrorIsTheSquareRootOfRounding)
{
  // A rounding of the invariants by eps moves a double root by the square root of eps, 1.5e-8, whatever the arithmetic
  // behind; the third value is at least the norm away.
  const double bound = 2 * std::sqrt(0x1p-52);
  EXPECT_LT(LargestError([](Draw& draw) {
              const long double size = draw.Magnitude(0, 6) * draw.Sign();
              const long double gap  = size * draw.Magnitude(-17, -2);
              return draw.Rotated({size, size - gap, size * draw.Uniform(-1, 0)});
            }),
            bound);
  EXPECT_LT(LargestError([](Draw& draw) {
              const long double size = draw.Magnitude(0, 6) * draw.Sign();
              const long double gap  = size * draw.Magnitude(-17, -2);
              const long double pair = size * draw.Uniform(-0.9, 0);
              return draw.Rotated({size, pair, pair - gap});
            }),
            bound);
}

TEST(FEM_PrincipalValue, NearATripleRootTheErrorIsTheCubeRootOfRounding)
{
  // As before with the cube root of eps, 6.1e-6, and the two or three eps that the invariants carry.
  EXPECT_LT(LargestError([](Draw& draw) {
              const long double size = draw.Magnitude(0, 6) * draw.Sign();
              return draw.Rotated({size, size * (1 + static_cast<long double>(draw.Sign() * draw.Magnitude(-17, -3))),
                                   size * (1 + static_cast<long double>(draw.Sign() * draw.Magnitude(-17, -3)))});
            }),
            2.5 * std::cbrt(0x1p-52));
}

TEST(FEM_PrincipalValue, ADeterminantAroundTheThresholdCostsNoAccuracyAtUnitSize)
{
  // Below the threshold the least value, at most 1e-15 / 0.24, is taken as zero; above, it is the rounding of the
  // cubic.
  EXPECT_LT(LargestError([](Draw& draw) {
              const long double first       = draw.Sign() * draw.Uniform(0.8, 1),
                                second      = draw.Sign() * draw.Uniform(0.3, 0.5);
              const long double determinant = draw.Sign() * draw.Magnitude(-17, -13);
              return draw.Rotated({first, second, determinant / (first * second)});
            }),
            1e-14);
}

TEST(FEM_PrincipalValue, ADeterminantBelowTheThresholdGivesAnExactZeroAndOneAboveDoesNot)
{
  Draw draw;
  for (int i = 0; i < kPerFamily; ++i) {
    const bool        below  = i % 2 == 0;
    const long double first  = draw.Sign() * draw.Uniform(0.8, 1);
    const long double second = draw.Sign() * draw.Uniform(0.3, 0.5);
    // The rounded tensor's determinant is off by up to 3e-16.
    const long double determinant = draw.Sign() * (below ? draw.Uniform(0, 5e-16) : draw.Uniform(2e-15, 1e-14));
    const Values      values      = Principal(draw.Rotated({first, second, determinant / (first * second)}));
    const bool        hasZero     = std::find(values.begin(), values.end(), 0.0) != values.end();
    EXPECT_EQ(hasZero, below) << static_cast<double>(determinant);
  }
}

TEST(FEM_PrincipalValue, ScalingByAPowerOfTwoScalesTheResultsBitForBit)
{
  Draw draw;
  for (int i = 0; i < 1000; ++i) {
    const Tensor tensor = draw.Rotated({draw.Uniform(2, 3), draw.Uniform(1, 1.5), draw.Uniform(-0.5, -0.25)});
    const Values values = Principal(tensor);
    for (const int exponent : {-14, -1, 1, 40, 330}) {
      Tensor scaled;
      for (std::size_t k = 0; k < 6; ++k) scaled[k] = std::ldexp(tensor[k], exponent);
      const Values results = Principal(scaled);
      for (std::size_t k = 0; k < 3; ++k) EXPECT_EQ(results[k], std::ldexp(values[k], exponent));
    }
  }
}

// Thresholds are absolute: the determinant of a strain tensor is below them and the quadratic has nothing to do with
// it.
TEST(FEM_PrincipalValue, AStrainTensorIsWrongUnlessItIsScaledFirst)
{
  Draw         draw;
  const Tensor strain = draw.Rotated({4e-6, 2e-6, 1e-6});
  EXPECT_EQ(Principal(strain)[2], 0.0);
  EXPECT_GT(RelativeError(strain), 0.1);

  Tensor scaled;
  for (std::size_t k = 0; k < 6; ++k) scaled[k] = std::ldexp(strain[k], 18);
  const Exact  exact  = JacobiEigenvalues(strain);
  const Values values = Principal(scaled);
  for (std::size_t k = 0; k < 3; ++k) EXPECT_NEAR(std::ldexp(values[k], -18), static_cast<double>(exact[k]), 4e-21);
}

}  // namespace
