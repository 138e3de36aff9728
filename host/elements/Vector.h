#pragma once

/// @file
/// Arithmetic of vectors in space.

#include <array>
#include <cmath>

namespace quilon {

using Vector = std::array<double, 3>;

constexpr Vector Minus(const Vector& a, const Vector& b) noexcept { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }

constexpr double Dot(const Vector& a, const Vector& b) noexcept { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

constexpr Vector Cross(const Vector& a, const Vector& b) noexcept
{
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Length(const Vector& a) noexcept { return std::hypot(a[0], a[1], a[2]); }

}  // namespace quilon
