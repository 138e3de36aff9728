#include "FEM_PrincipalValue.h"

#include <array>
#include <cmath>

#include "QuilonUtilities/QuilonMathUtil.h"

namespace {

using Values = std::array<double, 3>;

constexpr double kZeroTolerance = 1e-15;
constexpr double kThird         = 1.0 / 3.0;
constexpr double kTwo27ths      = 2.0 / 27.0;
constexpr double kTwoPi         = 6.283185307179586;
constexpr double kFourPi        = 12.566370614359172;
/// Five units in the last place above 1: up to here the excess over 1 is rounding of a double root.
constexpr double kDoubleRootLimit = 1.0 + 5.0 * 0x1p-52;

bool IsZero(double component) { return kZeroTolerance > std::fabs(component); }

/// Plane tensor with in-plane components a, b and shear c.
Values PlaneValues(double a, double b, double c)
{
  const double r = std::sqrt((a - b) * 0.25 * (a - b) + c * c);
  return {(a + b) * 0.5 + r, (a + b) * 0.5 - r, 0.0};
}

/// Roots of the reduced cubic z^3 + 3 Q z + 2 R = 0, which has three real ones in exact arithmetic.
Values ReducedCubicRoots(double Q, double R)
{
  if (Q >= 0) return {0.0, 0.0, 0.0};

  double y = std::sqrt(std::fabs(Q));
  if (!(R >= 0)) y = -y;
  const double t = R / (y * y * y);
  if (t < 1) {
    const double phi = std::acos(t);
    return {-2.0 * y * std::cos(phi * kThird), -2.0 * y * std::cos((phi + kTwoPi) * kThird),
            -2.0 * y * std::cos((phi + kFourPi) * kThird)};
  }
  if (t < kDoubleRootLimit) return {-2.0 * y, y, y};
  // Rounding of nearly equal principal values makes t larger still. The real root and the real part of the complex pair
  // lie within that rounding, so they stand; a failure would stop a whole result file for one such tensor.
  // Test: RatioAboveTheDoubleRootLimitTakesTheRealParts.
  const double h = std::cosh(QuilonMathUtil::acosh(t) * kThird);
  return {-2.0 * y * h, y * h, y * h};
}

/// General tensor: roots of x^3 + P2 x^2 + I2 x - I3 = 0.
Values GeneralValues(double a, double b, double c, double dxy, double eyz, double fzx)
{
  const double I1 = a + b + c;
  const double I2 = a * c + a * b + b * c - dxy * dxy - eyz * eyz - fzx * fzx;
  const double I3 = c * (a * b) - eyz * a * eyz - fzx * b * fzx - dxy * c * dxy + 2.0 * dxy * eyz * fzx;
  const double P2 = -I1;

  if (kZeroTolerance > std::fabs(I3)) {
    // The discriminant of a symmetric tensor is not negative; by rounding it may come out so, and its absolute value
    // keeps the square root real. Test: NegativeDiscriminantIsTakenByItsAbsoluteValue.
    const double s = std::sqrt(std::fabs(I1 * I1 - 4.0 * I2));
    return {(s - P2) * 0.5, (I1 - s) * 0.5, 0.0};
  }

  const double Q = (I2 - P2 * P2 * kThird) * kThird;
  const double R = (P2 * P2 * P2 * kTwo27ths - I2 * P2 * kThird - I3) * 0.5;

  Values values = ReducedCubicRoots(Q, R);
  for (double& value : values) value -= P2 * kThird;
  return values;
}

Values Candidates(const double* tensor)
{
  const double xx = tensor[0], yy = tensor[1], zz = tensor[2];
  const double xy = tensor[3], yz = tensor[4], zx = tensor[5];

  const bool noZ = IsZero(zz) && IsZero(yz) && IsZero(zx);
  const bool noY = IsZero(yy) && IsZero(xy) && IsZero(yz);
  const bool noX = IsZero(xx) && IsZero(xy) && IsZero(zx);

  switch (3 - static_cast<int>(noZ) - static_cast<int>(noY) - static_cast<int>(noX)) {
    case 0:
      return {0.0, 0.0, 0.0};
    case 1:
      return {xx, yy, zz};
    case 2:
      if (noZ) return PlaneValues(xx, yy, xy);
      if (noY) return PlaneValues(xx, zz, zx);
      return PlaneValues(yy, zz, yz);
    default:
      return GeneralValues(xx, yy, zz, xy, yz, zx);
  }
}

}  // namespace

void FEM_PrincipalValue::Calculate(const double* tensor, double* principal)
{
  const auto [first, second, third] = Candidates(tensor);

  // Plain comparisons: of equal values the later one comes first, and a NaN is never greater.
  const double larger  = first > second ? first : second;
  const double smaller = first > second ? second : first;
  if (smaller > third) {
    principal[0] = larger;
    principal[1] = smaller;
    principal[2] = third;
  } else if (third > larger) {
    principal[0] = third;
    principal[1] = larger;
    principal[2] = smaller;
  } else {
    principal[0] = larger;
    principal[1] = third;
    principal[2] = smaller;
  }
}
