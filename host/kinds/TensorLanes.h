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

/// How many at once: the operations of one tensor wait for each other, those of others fill the time.
constexpr std::size_t kMany = 32;
constexpr std::size_t kFew  = 8;  ///< where there are no more: those that are missing take their time, too

template <std::size_t N>
using Lanes = std::array<double, N>;
template <std::size_t N>
using Tensors = std::array<Lanes<N>, 6>;  // xx yy zz xy yz zx
template <std::size_t N>
using Values = std::array<Lanes<N>, 3>;

inline double Greater(double a, double b) noexcept { return a > b ? a : b; }
inline double Lesser(double a, double b) noexcept { return a < b ? a : b; }

/// The largest magnitude of each tensor's components; nan where one of them is not finite.
template <std::size_t N>
void FindLargest(const Tensors<N>& t, Lanes<N>& largest) noexcept
{
  for (std::size_t i = 0; i < N; ++i) {
    double most    = 0.0;
    double nothing = 0.0;
    for (const Lanes<N>& component : t) {
      most = Greater(std::fabs(component[i]), most);
      nothing += 0.0 * component[i];
    }
    largest[i] = most + nothing;
  }
}

/// Takes yy from all normal components: differences of principal values stay.
template <std::size_t N>
void ShiftToDifferences(Tensors<N>& t) noexcept
{
  for (std::size_t i = 0; i < N; ++i) {
    t[0][i] -= t[1][i];
    t[2][i] -= t[1][i];
    t[1][i] = 0.0;
  }
}

/// Makes a tensor zero: there is nothing to do for it.
template <std::size_t N>
void Clear(Tensors<N>& t, Lanes<N>& largest, std::size_t lane) noexcept
{
  for (Lanes<N>& component : t) component[lane] = 0.0;
  largest[lane] = 0.0;
}

/// One rotation makes pq zero, in lanes that are not done.
/// @param pp, qq, pq, rp, rq components by row and column, r the third axis
template <std::size_t N>
void Rotate(const Lanes<N>& isDone, Lanes<N>& pp, Lanes<N>& qq, Lanes<N>& pq, Lanes<N>& rp, Lanes<N>& rq) noexcept
{
  for (std::size_t i = 0; i < N; ++i) {
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

/// Finds whether no rotation that is left changes a component of the diagonal, d: whether what beside it, at most b, is
/// so small. A rotation adds |t pq| <= pq^2 / |pp - qq|, and what is added to d stays without effect below 2^-54 |d|.
/// It leaves the sum of the squares beside the diagonal, at most 3 b^2, as it is or makes it less. So 4 b^2 < 2^-54 |d|
/// times the least difference says it of all that come, rounding included, as long as no product is lost.
inline bool IsSettled(double xx, double yy, double zz, double beside) noexcept
{
  constexpr double kEffect = 0x1p-56;
  constexpr double kLeast  = 0x1p-900;
  const double     size    = Lesser(Lesser(std::fabs(xx), std::fabs(yy)), std::fabs(zz));
  const double     apart   = Lesser(Lesser(std::fabs(xx - yy), std::fabs(yy - zz)), std::fabs(zz - xx));
  const double     limit   = size * apart * kEffect;
  return (limit > kLeast) & (beside * beside < limit);
}

/// @param t       finite, and no squares of them overflow; is used up
/// @param largest see FindLargest()
/// @param values  receives the principal values, descending
template <std::size_t N>
void FindPrincipalValues(Tensors<N>& t, const Lanes<N>& largest, Values<N>& values) noexcept
{
  auto& [xx, yy, zz, xy, yz, zx] = t;

  constexpr int    kSweeps     = 50;
  constexpr double kNegligible = 0x1p-60;
  Lanes<N>         isDone;
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    double done = 1.0;
    for (std::size_t i = 0; i < N; ++i) {
      const double limit = largest[i] * kNegligible;
      const double most  = Greater(Greater(std::fabs(xy[i]), std::fabs(yz[i])), std::fabs(zx[i]));
      const bool   is    = (most <= limit) | IsSettled(xx[i], yy[i], zz[i], most);
      isDone[i]          = is ? 1.0 : 0.0;
      done               = is ? done : 0.0;
    }
    if (done != 0.0) break;
    Rotate(isDone, xx, yy, xy, zx, yz);
    Rotate(isDone, xx, zz, zx, xy, yz);
    Rotate(isDone, yy, zz, yz, xy, zx);
  }
  for (std::size_t i = 0; i < N; ++i) {
    const double first  = yy[i] > xx[i] ? yy[i] : xx[i];
    const double second = yy[i] > xx[i] ? xx[i] : yy[i];
    const double middle = zz[i] > second ? zz[i] : second;
    values[2][i]        = zz[i] > second ? second : zz[i];
    values[0][i]        = middle > first ? middle : first;
    values[1][i]        = middle > first ? first : middle;
  }
}

}  // namespace quilon::TensorLanes
