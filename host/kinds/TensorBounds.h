#pragma once

/// @file
/// Between which limits invariants of a tensor lie, told without roots.
///
/// A search for the worst of many tensors needs the value of few: of the others it is enough to know that they are not
/// among the worst. Each function says that a value is certainly between two limits, or that it may be anything. It
/// holds for the value as Component evaluates it, rounded, since it asks for more than rounding takes: limits are drawn
/// together by kMargin, 1.5e-11, of the numbers involved, where a principal value is right to 1e-12 of them and
/// everything else to 1e-13. Numbers that are not finite, or too large or small for products of three or six of them,
/// are never certain, and nothing is between limits of which one is nan.
///
/// Principal values. T has as many principal values below s as T - s 1 has negative ones (Sylvester's law of inertia;
/// J. J. Sylvester, Phil. Mag. 4 (1852) 138-142), which is the number of changes of sign in 1, D1, D2, D3, the leading
/// minors (C. G. J. Jacobi, J. reine angew. Math. 53 (1857) 265-270). With w the sum of the magnitudes in T - s 1,
/// rounding changes D2 by less than 4 u w^2 and D3 by less than 12 u w^3, u = 2^-53, so that minors beyond 2^-44 of
/// these powers have a certain sign. Taking s from the diagonal changes it by u of itself, which is within the margin.
/// Most is settled before that. All principal values lie in discs around the diagonal, whose radii are the sums of the
/// magnitudes beside it (S. Gershgorin, Izv. Akad. Nauk SSSR (1931) 749-754). With M the equivalent stress of Mises,
/// they are the mean plus 2/3 M cos(a), cos(a - 120 degrees) and cos(a + 120 degrees), a from 0 to 60 degrees (the
/// trigonometric solution of the cubic equation, F. Viete 1615), so that p1 lies from 1/3 to 2/3 M above the mean, p2
/// within 1/3 M of it and p3 from 2/3 to 1/3 M below it. Roots are spared by comparing squares.
///
/// Mises and its kin are a factor times the root of M^2 = 3/2 s:s, and compared as squares; the triaxiality, mean / M,
/// is compared as the mean with limits times M.
///
/// Tresca. R = p1 - p3 is at least M, and R^2 is the greatest root of x (x - M^2)^2 = D: the squares of the three
/// differences of principal values have the sum 2 M^2, the products of two of them the sum M^4, and the product D =
/// 4/27 M^6 - 27 det(s)^2, the discriminant of the characteristic polynomial. The left side grows beyond M^2: R < t if
/// M^2 < t^2 and t^2 (t^2 - M^2)^2 > D. Products of six are at most t^6, and their rounding 2^-47 of it. D is not
/// negative, so that R is at most sqrt(4/3) M.
///
/// Estimates of roots. The principal values are the mean plus 2/3 M times the roots of 4 c^3 - 3 c = r, r = 27/2 det(s)
/// / M^3. For r >= 0 the one of largest magnitude is c = cos(acos(r)/3), and 1 - c is 1 - r times a function without
/// singularities on [0, 1], here a polynomial through Chebyshev's points that is right to 4e-8; the other two are -c/2
/// plus and minus sqrt(3/4 (1 - c^2)). For r < 0 it is the same with all signs changed. Estimates are right to 3e-7 M.
///
/// All is without branches, for compilers that take several tensors at once: hence "&" and "|" between comparisons, of
/// which none holds for a nan.

#include <cmath>
#include <limits>

namespace quilon::TensorBounds {

/// A symmetric tensor.
struct Tensor
{
  double xx, yy, zz, xy, yz, zx;
};

constexpr double kMargin   = 0x1p-36;
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kThird = 1.0 / 3.0;  // a product takes a fraction of a quotient's time; the margins have room for it

/// Between these, powers of six and their margins are normal numbers.
constexpr double kLeast    = 0x1p-150;
constexpr double kGreatest = 0x1p+150;

/// The second number where it is a nan.
inline double Lesser(double a, double b) noexcept { return a < b ? a : b; }
inline double Greater(double a, double b) noexcept { return a > b ? a : b; }

/// The square of sqrt(3/2 s:s), s the deviator, as it comes without scaling.
inline double DeviatorSquare(const Tensor& t) noexcept
{
  const double a = t.xx - t.yy;
  const double b = t.yy - t.zz;
  const double c = t.zz - t.xx;
  return (a * a + b * b + c * c) / 2.0 + 3.0 * (t.xy * t.xy + t.yz * t.yz + t.zx * t.zx);
}

inline double MeanOf(const Tensor& t) noexcept { return (t.xx + t.yy + t.zz) / 3.0; }

/// The sum of the magnitudes of the components.
inline double SizeOf(const Tensor& t) noexcept
{
  return std::fabs(t.xx) + std::fabs(t.yy) + std::fabs(t.zz) + std::fabs(t.xy) + std::fabs(t.yz) + std::fabs(t.zx);
}

inline bool IsOrdinary(double size) noexcept { return (size > kLeast) & (size < kGreatest); }

/// @return whether x < h, and whether x > h, of a square x^2 and an h whose square is compared with margins
inline bool IsBelow(double square, double h) noexcept { return (h > 0.0) & (square < h * h * (1.0 - kMargin)); }
inline bool IsAbove(double square, double h) noexcept { return (h < 0.0) | (square > h * h * (1.0 + kMargin)); }

/// @return how many principal values are below a number and not at it; -1 where that is not certain
inline double CountBelow(const Tensor& t, double shift) noexcept
{
  constexpr double kCertain  = 0x1p-44;
  const double     a         = t.xx - shift;
  const double     b         = t.yy - shift;
  const double     c         = t.zz - shift;
  const double     w         = SizeOf({a, b, c, t.xy, t.yz, t.zx});
  const double     d2        = a * b - t.xy * t.xy;
  const double     d3        = c * d2 - a * t.yz * t.yz - b * t.zx * t.zx + 2.0 * t.xy * t.yz * t.zx;
  const double     count     = (a < 0.0 ? 1.0 : 0.0) + (a * d2 < 0.0 ? 1.0 : 0.0) + (d2 * d3 < 0.0 ? 1.0 : 0.0);
  const bool       isCertain = IsOrdinary(w) & (std::fabs(a) > kCertain * w) & (std::fabs(d2) > kCertain * w * w) &
                         (std::fabs(d3) > kCertain * w * w * w);
  return isCertain ? count : -1.0;
}

/// @return T with every sign changed: p1 >= p2 >= p3 are then -p3 >= -p2 >= -p1
inline Tensor Negate(const Tensor& t) noexcept { return {-t.xx, -t.yy, -t.zz, -t.xy, -t.yz, -t.zx}; }

/// @tparam Number 1 to 3 of p1 >= p2 >= p3
/// @return whether discs or the mean tell that the principal value is less than high
template <int Number>
bool IsPrincipalFarBelow(const Tensor& t, double high) noexcept
{
  const double xy     = std::fabs(t.xy);
  const double yz     = std::fabs(t.yz);
  const double zx     = std::fabs(t.zx);
  const double size   = SizeOf(t);
  const double disc   = Greater(Greater(t.xx + (xy + zx), t.yy + (xy + yz)), t.zz + (yz + zx)) + kMargin * size;
  const double square = DeviatorSquare(t) / 9.0;
  const double up     = (high - MeanOf(t)) - kMargin * (size + std::fabs(high));  // how far the mean may be exceeded
  const bool   byMean = Number == 1   ? IsBelow(4.0 * square, up)
                        : Number == 2 ? IsBelow(square, up)
                                      : IsAbove(square, -up);
  return IsOrdinary(size) & (byMean | (disc < high));
}

/// @return whether minors tell so
template <int Number>
bool IsPrincipalBelow(const Tensor& t, double high) noexcept
{
  const double size  = SizeOf(t);
  const double below = CountBelow(t, high - kMargin * (size + std::fabs(high)));
  return IsOrdinary(size) & ((high == kInfinite) | (below > 3.5 - Number));
}

/// @param square  of a value that is not negative, right to 1e-13 of itself where it is no less than kLeast^2
/// @param inverse what limits are multiplied by to be those of the value's root
/// @return whether the root is certainly greater than low and less than high
inline bool IsRootBetween(double square, double inverse, double low, double high) noexcept
{
  const double above  = Lesser(kGreatest, high * inverse);
  const double below  = Greater(kLeast, low * inverse);
  const bool   isLess = IsBelow(square, above);
  const bool   isMore = IsAbove(square, below);
  return (above > kLeast) & isLess & ((low < 0.0) | isMore);
}

/// @return whether the mean of the normal components is certainly greater than low and less than high
inline bool IsMeanBetween(const Tensor& t, double low, double high) noexcept
{
  const double size   = SizeOf(t);
  const double mean   = MeanOf(t);
  const double margin = kMargin * size;
  return IsOrdinary(size) & (mean - margin > low) & (mean + margin < high);
}

/// @return whether the triaxiality is certainly less than high; that of the negated tensor is the negative one
inline bool IsTriaxialityBelow(const Tensor& t, double high) noexcept
{
  const double size   = SizeOf(t);
  const double mean   = MeanOf(t);
  const double square = DeviatorSquare(t);
  const double most   = mean + kMargin * size;
  const bool   isLess = high > 0.0 ? (most <= 0.0) | (most * most < high * high * square * (1.0 - kMargin))
                                   : (most < 0.0) & (most * most > high * high * square * (1.0 + kMargin));
  return IsOrdinary(size) & (square > kLeast * kLeast) & isLess;
}

/// @return 1 or -1, the sign of the principal value of largest magnitude, which is that of p1 + p3, the trace less p2;
///         0 where it is not certain
inline double SignOfLargest(const Tensor& t) noexcept
{
  const double trace      = t.xx + t.yy + t.zz;
  const double margin     = kMargin * (SizeOf(t) + std::fabs(trace));
  const double above      = CountBelow(t, trace + margin);
  const bool   isNegative = (above > -0.5) & (above < 1.5);
  return (CountBelow(t, trace - margin) > 1.5 ? 1.0 : 0.0) - (isNegative ? 1.0 : 0.0);
}

/// @return whether mises with the sign of the principal value of largest magnitude is certainly greater than low and
///         less than high
inline bool IsSignedMisesBetween(const Tensor& t, double inverse, double low, double high) noexcept
{
  const double square     = DeviatorSquare(t);
  const double sign       = SignOfLargest(t);
  const bool   asPositive = IsRootBetween(square, inverse, low, high);
  const bool   asNegative = IsRootBetween(square, inverse, -high, -low);
  return (asPositive & asNegative) | (asPositive & (sign > 0.0)) | (asNegative & (sign < 0.0));
}

inline double DeterminantOfDeviator(const Tensor& t) noexcept
{
  const double a  = t.xx - t.yy;
  const double b  = t.yy - t.zz;
  const double c  = t.zz - t.xx;
  const double xx = (a - c) * kThird;
  const double yy = (b - a) * kThird;
  const double zz = (c - b) * kThird;
  return zz * (xx * yy - t.xy * t.xy) - xx * t.yz * t.yz - yy * t.zx * t.zx + 2.0 * t.xy * t.yz * t.zx;
}

/// The discriminant of a tensor whose DeviatorSquare() is given.
inline double DiscriminantOf(const Tensor& t, double square) noexcept
{
  const double third = DeterminantOfDeviator(t);
  return 4.0 / 27.0 * square * square * square - 27.0 * third * third;
}

/// @param inverse what limits are multiplied by to be those of p1 - p3
/// @return whether mises tells that p1 - p3 is greater than low and less than high
inline bool IsShearRangeNear(const Tensor& t, double inverse, double low, double high) noexcept
{
  const double square = DeviatorSquare(t);
  const bool   isLess = IsRootBetween(square * (4.0 / 3.0), inverse, -1.0, high);
  const bool   isMore = IsRootBetween(square, inverse, low, kInfinite);
  return isLess & isMore;
}

/// @return whether the discriminant tells so
inline bool IsShearRangeBetween(const Tensor& t, double inverse, double low, double high) noexcept
{
  constexpr double kRounding    = 0x1p-40;
  const double     square       = DeviatorSquare(t);
  const double     discriminant = DiscriminantOf(t, square);
  const double     above        = Lesser(kGreatest, high * inverse) * (1.0 - kMargin);
  const double     below        = Greater(kLeast, low * inverse) * (1.0 + kMargin);
  const double     x            = above * above;
  const double     y            = below * below;
  const bool       isLess =
      (above > kLeast) & (square < x) & (x * (x - square) * (x - square) - discriminant > kRounding * x * x * x);
  const bool isMore = (low < 0.0) | (square > y * (1.0 + kMargin)) |
                      (discriminant - y * (y - square) * (y - square) > kRounding * y * y * y);
  return isLess & isMore;
}

/// A value, and how far the evaluated one may be from it: infinitely where nothing can be said.
struct Estimate
{
  double value;
  double error;
};

/// Roots of 4 c^3 - 3 c = r, the greatest first, and what they are multiplied by.
struct EstimatedRoots
{
  double first, second, third;
  double scale;
  double error;  // of scale times a root
};

inline EstimatedRoots EstimateRoots(const Tensor& t) noexcept
{
  constexpr double kError = 0x1p-20;  // of M; three times what is stated above
  const double     size   = SizeOf(t);
  const double     square = DeviatorSquare(t);
  const double     root   = std::sqrt(square);
  const double     r      = 13.5 * DeterminantOfDeviator(t) / (square * root);
  const double     rest   = 1.0 - Lesser(1.0, std::fabs(r));
  const double     a      = 1.0 - rest;
  const double     q =
      0.133974557649 +
      a * (-0.0326882606156 +
           a * (0.0153569808154 +
                a * (-0.00885804233843 + a * (0.00495819419081 + a * (-0.00205064469651 + a * 0.000418347830655)))));
  const double c       = 1.0 - rest * q;
  const double apart   = std::sqrt(0.75 * rest * q * (1.0 + c));
  const double half    = c / 2.0;
  const bool   isPlus  = r >= 0.0;
  const bool   isKnown = IsOrdinary(size) & (square > kLeast * kLeast);
  return {isPlus ? c : half + apart, isPlus ? apart - half : half - apart, isPlus ? -half - apart : -c,
          root * (2.0 / 3.0), isKnown ? kError * root + kMargin * size : kInfinite};
}

/// @tparam Number 1 to 3 of p1 >= p2 >= p3
template <int Number>
Estimate EstimatePrincipal(const Tensor& t) noexcept
{
  const EstimatedRoots roots = EstimateRoots(t);
  const double         root  = Number == 1 ? roots.first : Number == 2 ? roots.second : roots.third;
  return {(t.xx + t.yy + t.zz) * kThird + roots.scale * root, roots.error};
}

/// Of factor (p1 - p3).
inline Estimate EstimateShearRange(const Tensor& t, double factor) noexcept
{
  const EstimatedRoots roots = EstimateRoots(t);
  return {factor * roots.scale * (roots.first - roots.third), 2.0 * factor * roots.error};
}

/// Of factor M with the sign of the principal value of largest magnitude.
inline Estimate EstimateSignedMises(const Tensor& t, double factor) noexcept
{
  const EstimatedRoots roots = EstimateRoots(t);
  const double         sum   = 2.0 * kThird * (t.xx + t.yy + t.zz) + roots.scale * (roots.first + roots.third);
  const double         value = factor * 1.5 * roots.scale;
  return {sum < 0.0 ? -value : value, std::fabs(sum) > 4.0 * roots.error ? kMargin * value : kInfinite};
}

}  // namespace quilon::TensorBounds
