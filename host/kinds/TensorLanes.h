#pragma once

/// @file
/// Principal values of several tensors at once.
///
/// The steps are those of Jacobi's method as PrincipalAxesOf() takes them, one tensor a lane: the same operations in
/// the same order, hence the same bits, but for lanes that are done, which wait for the others. All is without
/// branches, for compilers that take several lanes at once: hence "&" and "|" between comparisons.

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace quilon::TensorLanes {

constexpr std::size_t kMany = 8;

using Lanes   = std::array<double, kMany>;
using Tensors = std::array<Lanes, 6>;  // xx yy zz xy yz zx
using Values  = std::array<Lanes, 3>;

inline double Greater(double a, double b) noexcept { return a > b ? a : b; }

/// The largest magnitude of each tensor's components; nan where one of them is not finite.
inline void FindLargest(const Tensors& t, Lanes& largest) noexcept
{
  for (std::size_t i = 0; i < kMany; ++i) {
    double most    = 0.0;
    double nothing = 0.0;
    for (const Lanes& component : t) {
      most = Greater(std::fabs(component[i]), most);
      nothing += 0.0 * component[i];
    }
    largest[i] = most + nothing;
  }
}

/// Takes yy from all normal components: differences of principal values stay.
inline void ShiftToDifferences(Tensors& t) noexcept
{
  for (std::size_t i = 0; i < kMany; ++i) {
    t[0][i] -= t[1][i];
    t[2][i] -= t[1][i];
    t[1][i] = 0.0;
  }
}

/// Makes a tensor zero: there is nothing to do for it.
inline void Clear(Tensors& t, Lanes& largest, std::size_t lane) noexcept
{
  for (Lanes& component : t) component[lane] = 0.0;
  largest[lane] = 0.0;
}

/// One rotation makes pq zero, in lanes that are not done.
/// @param pp, qq, pq, rp, rq components by row and column, r the third axis
inline void Rotate(const Lanes& isDone, Lanes& pp, Lanes& qq, Lanes& pq, Lanes& rp, Lanes& rq) noexcept
{
  for (std::size_t i = 0; i < kMany; ++i) {
    const double apq    = pq[i];
    const bool   turns  = (isDone[i] == 0.0) & (apq != 0.0);
    const double theta  = (qq[i] - pp[i]) / (2.0 * apq);
    const double square = theta * theta;
    const bool   isFar  = square > std::numeric_limits<double>::max();
    const double above  = isFar ? 0.5 : std::copysign(1.0, theta);
    const double below  = isFar ? theta : std::fabs(theta) + std::sqrt(square + 1.0);
    const double t      = above / below;
    const double c      = 1.0 / std::sqrt(t * t + 1.0);
    const double s      = t * c;
    const double arp    = rp[i];
    const double arq    = rq[i];
    pp[i]               = turns ? pp[i] - t * apq : pp[i];
    qq[i]               = turns ? qq[i] + t * apq : qq[i];
    pq[i]               = turns ? 0.0 : apq;
    rp[i]               = turns ? c * arp - s * arq : arp;
    rq[i]               = turns ? s * arp + c * arq : arq;
  }
}

/// @param t       finite, and no squares of them overflow; is used up
/// @param largest see FindLargest()
/// @param values  receives the principal values, descending
inline void FindPrincipalValues(Tensors& t, const Lanes& largest, Values& values) noexcept
{
  auto& [xx, yy, zz, xy, yz, zx] = t;

  constexpr int    kSweeps     = 50;
  constexpr double kNegligible = 0x1p-60;
  Lanes            isDone;
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    double done = 1.0;
    for (std::size_t i = 0; i < kMany; ++i) {
      const double limit = largest[i] * kNegligible;
      const double most  = Greater(Greater(std::fabs(xy[i]), std::fabs(yz[i])), std::fabs(zx[i]));
      const bool   is    = most <= limit;
      isDone[i]          = is ? 1.0 : 0.0;
      done               = is ? done : 0.0;
    }
    if (done != 0.0) break;
    Rotate(isDone, xx, yy, xy, zx, yz);
    Rotate(isDone, xx, zz, zx, xy, yz);
    Rotate(isDone, yy, zz, yz, xy, zx);
  }
  for (std::size_t i = 0; i < kMany; ++i) {
    const double first  = yy[i] > xx[i] ? yy[i] : xx[i];
    const double second = yy[i] > xx[i] ? xx[i] : yy[i];
    const double middle = zz[i] > second ? zz[i] : second;
    values[2][i]        = zz[i] > second ? second : zz[i];
    values[0][i]        = middle > first ? middle : first;
    values[1][i]        = middle > first ? first : middle;
  }
}

}  // namespace quilon::TensorLanes
