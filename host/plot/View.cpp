#include "plot/View.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "elements/Vector.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/NumberList.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

constexpr struct
{
  const char* name;
  double      azimuth;
  double      elevation;
} kViews[] = {{"top", 0, 90},
              {"bottom", 0, -90},
              {"front", 0, 0},
              {"back", 180, 0},
              {"right", 90, 0},
              {"left", -90, 0},
              {"iso", 45, 35.264389682754654}};

/// Sine and cosine, exact where a right angle makes them 0 or 1: axes that are parallel to the picture stay so.
std::array<double, 2> SineCosine(double degrees)
{
  const double turned = std::remainder(degrees, 360.0);
  const double kRight = 90.0;
  if (std::remainder(turned, kRight) == 0.0) {
    const int quarter = (static_cast<int>(turned / kRight) + 4) % 4;
    return {quarter == 1 ? 1.0 : quarter == 3 ? -1.0 : 0.0, quarter == 0 ? 1.0 : quarter == 2 ? -1.0 : 0.0};
  }
  const double angle = turned * std::numbers::pi / 180.0;
  return {std::sin(angle), std::cos(angle)};
}

}  // namespace

Point3 View::Project(const Point3& point) const noexcept
{
  return {Dot(right, point), Dot(up, point), Dot(toward, point)};
}

View MakeView(double azimuth, double elevation)
{
  const auto [sinAz, cosAz] = SineCosine(azimuth);
  const auto [sinEl, cosEl] = SineCosine(elevation);
  View view;
  view.right  = {cosAz, sinAz, 0.0};
  view.toward = {sinAz * cosEl, -cosAz * cosEl, sinEl};
  view.up     = {-sinAz * sinEl, cosAz * sinEl, cosEl};
  return view;
}

View ParseView(const std::string& text)
{
  constexpr const char*    kExpected = "expected top, bottom, front, back, left, right, iso or two angles AZ,EL";
  std::vector<std::string> names;
  for (const auto& view : kViews) {
    if (LowerCase(text) == view.name) return MakeView(view.azimuth, view.elevation);
    names.emplace_back(view.name);
  }
  std::array<double, 2> angles{};
  if (!ParseNumbers(text, angles)) {
    const std::string suggestion = DidYouMean(LowerCase(text), names);
    Fail("'" + text + "' is no view" + (suggestion.empty() ? std::string(", ") + kExpected : suggestion));
  }
  if (std::abs(angles[1]) > 90.0)
    Fail("the view '" + text + "' has an elevation beyond 90 degrees, expected -90 to 90");
  return MakeView(angles[0], angles[1]);
}

}  // namespace quilon
