#include "plot/View.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::ParseView;
using quilon::Point3;
using quilon::View;

double Dot(const Point3& a, const Point3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Point3 Cross(const Point3& a, const Point3& b)
{
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// Table: where the picture's right, up and the direction toward who looks point for each name.
TEST(View, NamesHaveTheirAxesExactly)
{
  struct Row
  {
    const char* name;
    Point3      right, up, toward;
  };
  const Row rows[] = {
      {"top", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},     {"bottom", {1, 0, 0}, {0, -1, 0}, {0, 0, -1}},
      {"front", {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},  {"back", {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
      {"right", {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},   {"left", {0, -1, 0}, {0, 0, 1}, {-1, 0, 0}},
      {"FRONT", {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},  {"0,90", {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
      {"0,-90", {1, 0, 0}, {0, -1, 0}, {0, 0, -1}}, {"90,0", {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
      {"-270,0", {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},  {"540,0", {-1, 0, 0}, {0, 0, 1}, {0, 1, 0}},
      {"90,90", {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}},
  };
  for (const Row& row : rows) {
    const View view = ParseView(row.name);
    EXPECT_EQ(view.right, row.right) << row.name;
    EXPECT_EQ(view.up, row.up) << row.name;
    EXPECT_EQ(view.toward, row.toward) << row.name;
  }
}

TEST(View, IsoShowsTheAxesEquallyLong)
{
  const View   view = ParseView("iso");
  const double half = std::sqrt(0.5);
  const double leg  = std::sqrt(1.0 / 6.0);
  const Point3 x    = view.Project({1, 0, 0});
  const Point3 y    = view.Project({0, 1, 0});
  const Point3 z    = view.Project({0, 0, 1});
  EXPECT_NEAR(x[0], half, 1e-15);
  EXPECT_NEAR(x[1], -leg, 1e-15);
  EXPECT_NEAR(y[0], half, 1e-15);
  EXPECT_NEAR(y[1], leg, 1e-15);
  EXPECT_NEAR(z[0], 0.0, 1e-15);
  EXPECT_NEAR(z[1], 2 * leg, 1e-15);
}

TEST(View, AnyAnglesGiveAxesAtRightAnglesThatAreRightHanded)
{
  for (const double azimuth : {-170.0, -31.5, 0.0, 12.0, 89.9, 200.0})
    for (const double elevation : {-90.0, -33.0, 0.0, 45.0, 89.0}) {
      const View   view  = quilon::MakeView(azimuth, elevation);
      const Point3 cross = Cross(view.right, view.up);
      for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(cross[i], view.toward[i], 1e-15);
      EXPECT_NEAR(Dot(view.right, view.right), 1.0, 1e-15);
      EXPECT_NEAR(Dot(view.up, view.up), 1.0, 1e-15);
      EXPECT_NEAR(Dot(view.right, view.up), 0.0, 1e-15);
      EXPECT_GE(view.up[2], 0.0) << "z points up";
    }
}

TEST(View, WhatIsNoViewIsRefused)
{
  const auto messageOf = [](const std::string& text) {
    try {
      ParseView(text);
    } catch (const FED_Failure& failure) {
      return std::string(failure.what());
    }
    return std::string("nothing thrown");
  };
  const std::string expected = "expected top, bottom, front, back, left, right, iso or two angles AZ,EL";
  EXPECT_EQ(messageOf("fromt"), "'fromt' is no view, did you mean 'front'?");
  EXPECT_EQ(messageOf(""), "'' is no view, " + expected);
  EXPECT_EQ(messageOf("30"), "'30' is no view, " + expected);
  EXPECT_EQ(messageOf("30,20,10"), "'30,20,10' is no view, " + expected);
  EXPECT_EQ(messageOf("nan,0"), "'nan,0' is no view, " + expected);
  EXPECT_EQ(messageOf("0,91"), "the view '0,91' has an elevation beyond 90 degrees, expected -90 to 90");
}

}  // namespace
