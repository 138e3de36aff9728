#pragma once

/// @file
/// From where a picture looks at a model.

#include <array>
#include <string>

namespace quilon {

using Point3 = std::array<double, 3>;

/// Directions of a picture in the model, of length 1, at right angles: right x up = toward. Parallel projection.
struct View
{
  Point3 right  = {1, 0, 0};
  Point3 up     = {0, 0, 1};
  Point3 toward = {0, -1, 0};  ///< from the model to who looks

  /// @return how far the point lies to the right, up, and toward who looks
  Point3 Project(const Point3& point) const noexcept;
};

/// @param azimuth   degrees about z: 0 looks along +y with x to the right, 90 against +x (as the view "right")
/// @param elevation degrees above the xy plane, -90 to 90: 90 looks against +z
View MakeView(double azimuth, double elevation);

/// Reads a view: angles "AZ,EL", or a name:
///   top     looks against +z, x to the right, y up       bottom  looks along +z, x to the right, y down
///   front   looks along +y, x to the right, z up         back    looks along -y, x to the left, z up
///   right   looks along -x, y to the right, z up         left    looks along +x, y to the left, z up
///   iso     45,35.264...: the three axes are equally long, z up
/// @throws FED_Failure for anything else
View ParseView(const std::string& text);

}  // namespace quilon
