#include "kinds/Component.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "HostileTensors.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::Component;
using quilon::ComponentNamesOf;
using quilon::PrincipalAxesOf;
using quilon::PrincipalValues;
using quilon::StoredComponentsOf;
using Names                = std::vector<std::string>;
using Tensor               = std::array<double, 6>;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

double Of(const char* name, const Tensor& tensor, int onf = OnfKind::NodalStress)
{
  return Component(name, onf).Evaluate(tensor);
}

struct Reference
{
  const char* name;
  Tensor      tensor;
  // hydrostatic, mises, tresca, octahedral shear, p1, p2, p3
  std::array<double, 7> expected;
};

const Reference kReferences[] = {
#include "component_references.inc"
};

double LargestOf(const Tensor& tensor)
{
  double largest = 0.0;
  for (const double value : tensor) largest = std::fmax(largest, std::fabs(value));
  return largest;
}

std::string MessageOf(const std::string& name, int onf)
{
  try {
    const Component component(name, onf);
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(Component, InvariantsAreThoseOfSixtyDigits)
{
  const char* const names[] = {"hydrostatic", "mises", "tresca", "octahedral-shear", "p1", "p2", "p3"};
  for (const Reference& reference : kReferences) {
    // Subnormal numbers have few digits of their own.
    const double tolerance = 1e-12 * LargestOf(reference.tensor) + 2 * std::numeric_limits<double>::denorm_min();
    for (std::size_t i = 0; i < 7; ++i)
      EXPECT_NEAR(Of(names[i], reference.tensor), reference.expected[i], tolerance)
          << reference.name << ' ' << names[i];
    EXPECT_NEAR(Of("max-shear", reference.tensor), reference.expected[2] / 2, tolerance) << reference.name;
  }
}

TEST(Component, InvariantsOfTheDeviatorKeepTheirOwnDigits)
{
  // A nearly hydrostatic tensor: 1e-12 of the deviator, 13 orders below the tensor.
  for (const Reference& reference : kReferences) {
    if (reference.name != std::string("nearly hydrostatic")) continue;
    EXPECT_NEAR(Of("mises", reference.tensor) / reference.expected[1], 1.0, 1e-12);
    EXPECT_NEAR(Of("tresca", reference.tensor) / reference.expected[2], 1.0, 1e-12);
  }
}

TEST(Component, ClosedFormsHold)
{
  const Tensor uniaxial = {-100, 0, 0, 0, 0, 0};
  EXPECT_EQ(Of("mises", uniaxial), 100);
  EXPECT_EQ(Of("signed-mises", uniaxial), -100);
  EXPECT_EQ(Of("tresca", uniaxial), 100);
  EXPECT_EQ(Of("max-shear", uniaxial), 50);
  EXPECT_NEAR(Of("triaxiality", uniaxial), -1.0 / 3.0, 1e-15);
  EXPECT_EQ(Of("p3", uniaxial), -100);
  const Tensor shear = {0, 0, 0, 0, 0, 50};
  EXPECT_NEAR(Of("mises", shear), 50 * std::sqrt(3.0), 1e-13);
  EXPECT_EQ(Of("tresca", shear), 100);
  EXPECT_EQ(Of("triaxiality", shear), 0);
}

TEST(Component, SignOfPureShearIsPositiveWhateverItsAxes)
{
  // p1 and -p3 are equal but for rounding.
  for (const double angle : {0.0, 0.1, 0.7, 1.3, 2.9}) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    EXPECT_GT(Of("signed-mises", {c, -c, 0, s, 0, 0}), 0) << angle;
    EXPECT_GT(Of("signed-mises", {0, c, -c, 0, s, 0}), 0) << angle;
  }
  EXPECT_LT(Of("signed-mises", {1, -1 - 1e-11, 0, 0, 0, 0}), 0);
}

TEST(Component, HydrostaticTensorsHaveNoFiniteTriaxiality)
{
  EXPECT_EQ(Of("triaxiality", {2, 2, 2, 0, 0, 0}), std::numeric_limits<double>::infinity());
  EXPECT_EQ(Of("triaxiality", {-2, -2, -2, 0, 0, 0}), -std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(Of("triaxiality", {0, 0, 0, 0, 0, 0})));
}

TEST(Component, StrainIsMeasuredSoThatIncompressibleTensionIsItsOwnSize)
{
  // Tensor shears: a shear of 0.01 is an engineering shear of 0.02, whose equivalent is 0.02 / sqrt(3).
  for (const char* name : {"mises", "equivalent-strain"}) {
    EXPECT_NEAR(Of(name, {0.01, -0.005, -0.005, 0, 0, 0}, OnfKind::NodalStrain), 0.01, 1e-17) << name;
    EXPECT_NEAR(Of(name, {0, 0, 0, 0.01, 0, 0}, OnfKind::ElementStrain), 0.02 / std::sqrt(3.0), 1e-17) << name;
  }
  EXPECT_NEAR(Of("signed-mises", {-0.01, 0.005, 0.005, 0, 0, 0}, OnfKind::NodalStrain), -0.01, 1e-17);
  EXPECT_NEAR(Of("equivalent-strain", {0.01, -0.005, -0.005, 0, 0, 0}, OnfKind::UserNodeTensor), 0.01, 1e-17);
  EXPECT_NEAR(Of("mises", {0.01, -0.005, -0.005, 0, 0, 0}, OnfKind::UserNodeTensor), 0.015, 1e-17);
}

TEST(Component, StoredComponentsAreHandedOutAsTheyAre)
{
  const Tensor tensor  = {1, 2, 3, 4, 5, 6};
  const char*  names[] = {"xx", "yy", "zz", "xy", "yz", "zx"};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(Of(names[i], tensor), tensor[i]);
    EXPECT_EQ(Component(names[i], OnfKind::NodalStress).GetPosition(), static_cast<int>(i));
  }
  EXPECT_TRUE(std::isinf(Of("xx", {HUGE_VAL, 0, 0, 0, 0, 0})));
  const std::array<double, 3> vector = {3, -4, 12};
  EXPECT_EQ(Component("y", OnfKind::Displacement).Evaluate(vector), -4);
  EXPECT_EQ(Component("magnitude", OnfKind::Displacement).Evaluate(vector), 13);
  EXPECT_EQ(Component("value", OnfKind::Temperature).Evaluate(std::array<double, 1>{7}), 7);
}

TEST(Component, InvariantsOfWhatIsNoNumberAreNoNumber)
{
  for (const std::string& name : ComponentNamesOf(OnfKind::NodalStress)) {
    if (Component(name, OnfKind::NodalStress).GetPosition() >= 0) continue;
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL})
      EXPECT_TRUE(std::isnan(Of(name.c_str(), {1, 2, 3, 4, bad, 6}))) << name;
  }
  EXPECT_TRUE(
      std::isnan(Component("magnitude", OnfKind::Displacement).Evaluate(std::array<double, 3>{1, HUGE_VAL, 0})));
}

// Of any size, nearly hydrostatic, with what is no number: bit by bit.
TEST(Component, ManyRecordsAreEvaluatedAsOneByOne)
{
  std::vector<double> values;
  std::mt19937        random(7);
  for (const double size : {0.0, 4e-324, 1e-320, 1e-200, 1e-121, 1e-100, 1.0, 1e100, 1e121, 1e200, 1e307}) {
    for (int i = 0; i < 12; ++i) values.push_back(size * std::uniform_real_distribution<>(-1, 1)(random));
    for (const double off : {0.0, 1e-15}) values.insert(values.end(), {size, size, size * (1 + off), 0, size * off, 0});
  }
  for (const double odd : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    for (std::size_t k = 0; k < 6; ++k) {
      std::vector<double> tensor(6, 1.0);
      tensor[k] = odd;
      values.insert(values.end(), tensor.begin(), tensor.end());
    }
  for (const bool withExtremes : {false, true})
    for (const Tensor& tensor : quilon_test::HostileTensors(1003, 17, withExtremes))
      values.insert(values.end(), tensor.begin(), tensor.end());
  for (const int onf : {521, 531, 510, 520, 551}) {
    for (const std::string& name : ComponentNamesOf(onf)) {
      const Component     component(name, onf);
      const std::size_t   size = component.NumValues();
      std::vector<double> results(values.size() / size);
      component.EvaluateAll(values, results);
      for (std::size_t i = 0; i < results.size(); ++i) {
        const double expected = component.Evaluate(std::span(values).subspan(i * size, size));
        const bool   isSame   = results[i] == expected && std::signbit(results[i]) == std::signbit(expected);
        EXPECT_TRUE(isSame || (std::isnan(results[i]) && std::isnan(expected)))
            << name << ' ' << i << ": " << results[i] << ", expected " << expected;
      }
    }
  }
  const Component     mises("mises", 521);
  std::vector<double> results(2);
  EXPECT_THROW(mises.EvaluateAll(std::span(values).first(11), results), FED_Failure);
}

/// Values of records, and limits around them.
class Limits : public testing::Test
{
protected:
  /// Checks what is dropped between each two limits of the same, and between limits of each record around its value.
  void ExpectDroppedAreBetween(const std::string& name, int onf)
  {
    const Component     component(name, onf);
    const std::size_t   size = component.NumValues();
    std::vector<double> evaluated(values_.size() / size);
    component.EvaluateAll(std::span(values_).first(evaluated.size() * size), evaluated);
    std::vector<double> candidates = {-kInfinite, kInfinite, 0.0, -0.0, 1e-200, -1e-200, 1.0, std::nan("")};
    for (std::size_t i = 0; i < evaluated.size(); i += 41)
      candidates.insert(candidates.end(), {evaluated[i], std::nextafter(evaluated[i], kInfinite),
                                           std::nextafter(evaluated[i], -kInfinite), -evaluated[i]});
    for (std::size_t c = 0; c < candidates.size(); ++c) {
      const double value = candidates[c];
      const double other = candidates[(c * 7 + 3) % candidates.size()];
      Check(component, evaluated, {value}, {kInfinite});
      Check(component, evaluated, {-kInfinite}, {value});
      Check(component, evaluated, {-value}, {value});
      Check(component, evaluated, {value}, {other});
    }
    for (const double off : {0.0, 1e-16, 1e-14, 1e-12, 1e-9, 1.0}) {
      std::vector<double> lows;
      std::vector<double> highs;
      for (const double value : evaluated) {
        lows.push_back(value - off * std::fabs(value));
        highs.push_back(value + off * std::fabs(value));
      }
      Check(component, evaluated, lows, highs);
      Check(component, evaluated, lows, std::vector<double>(lows.size(), kInfinite));
      Check(component, evaluated, std::vector<double>(lows.size(), -kInfinite), highs);
    }
  }

  void Check(const Component& component, const std::vector<double>& evaluated, const std::vector<double>& lows,
             const std::vector<double>& highs)
  {
    const std::size_t          stride = lows.size() == 1 ? 0 : 1;
    std::vector<std::uint32_t> left(evaluated.size());
    std::iota(left.begin(), left.end(), 0U);
    component.KeepBeyond(values_, {lows.data(), highs.data(), stride}, left);
    ASSERT_TRUE(std::is_sorted(left.begin(), left.end()));
    std::size_t next = 0;
    for (std::size_t i = 0; i < evaluated.size(); ++i) {
      if (next < left.size() && left[next] == i) {
        ++next;
        continue;
      }
      ++numDropped_;
      ASSERT_TRUE(evaluated[i] > lows[i * stride] && evaluated[i] < highs[i * stride])
          << component.GetName() << ' ' << i << ": " << evaluated[i] << " is not between " << lows[i * stride]
          << " and " << highs[i * stride];
    }
    ASSERT_EQ(next, left.size());
  }

  void Fill(const std::vector<Tensor>& tensors)
  {
    values_.clear();
    for (const Tensor& tensor : tensors) values_.insert(values_.end(), tensor.begin(), tensor.end());
  }

  std::vector<double> values_;
  std::size_t         numDropped_ = 0;
};

TEST_F(Limits, WhatIsDroppedIsBetweenThem)
{
  for (const bool withExtremes : {false, true}) {
    Fill(quilon_test::HostileTensors(300, 11, withExtremes));
    for (const int onf : {521, 531, 510}) {
      for (const std::string& name : ComponentNamesOf(onf)) {
        if (onf == 531 && name != "equivalent-strain") continue;  // the others are those of a stress
        numDropped_ = 0;
        ExpectDroppedAreBetween(name, onf);
        EXPECT_GT(numDropped_, 0u) << name;
      }
    }
  }
}

TEST_F(Limits, WhatIsFarFromThemIsDropped)
{
  std::mt19937                     random(5);
  std::uniform_real_distribution<> uniform(-1.0, 1.0);
  values_.resize(6 * 1000);
  for (double& value : values_) value = uniform(random);
  for (const std::string& name : ComponentNamesOf(OnfKind::NodalStress)) {
    const Component     component(name, OnfKind::NodalStress);
    std::vector<double> evaluated(1000);
    component.EvaluateAll(values_, evaluated);
    std::sort(evaluated.begin(), evaluated.end());
    // Between the tenth and the tenth to last value, each farther than a millionth from its neighbour.
    for (const auto& [low, high] : {std::pair(-kInfinite, evaluated[989]), std::pair(evaluated[10], kInfinite),
                                    std::pair(evaluated[10], evaluated[989])})
    {
      std::vector<std::uint32_t> left(1000);
      std::iota(left.begin(), left.end(), 0U);
      component.KeepBeyond(values_, {&low, &high}, left);
      EXPECT_EQ(left.size(), std::isinf(low) || std::isinf(high) ? 11u : 22u) << name << ' ' << low << ' ' << high;
    }
  }
}

TEST(Component, EstimatesAreWithinTheirErrors)
{
  std::vector<double> values;
  for (const bool withExtremes : {false, true})
    for (const Tensor& tensor : quilon_test::HostileTensors(2000, 13, withExtremes))
      values.insert(values.end(), tensor.begin(), tensor.end());
  const std::size_t   count = values.size() / 6;
  std::vector<double> evaluated(count);
  std::vector<double> estimates(count);
  std::vector<double> errors(count);
  for (const int onf : {521, 531}) {
    for (const std::string& name : ComponentNamesOf(onf)) {
      const Component component(name, onf);
      component.EvaluateAll(values, evaluated);
      component.EstimateAll(values, estimates, errors);
      std::size_t numClose = 0;
      for (std::size_t i = 0; i < count; ++i) {
        if (std::isinf(errors[i])) continue;
        EXPECT_LE(std::fabs(evaluated[i] - estimates[i]), errors[i]) << name << ' ' << i;
        numClose += errors[i] < 1e-5 * LargestOf({values[6 * i], values[6 * i + 1], values[6 * i + 2],
                                                  values[6 * i + 3], values[6 * i + 4], values[6 * i + 5]});
      }
      EXPECT_EQ(component.HasEstimate(), numClose > count / 2) << name << ' ' << numClose;
    }
  }
}

TEST(Component, MagnitudeOfAnySizeIsWhole)
{
  const Component magnitude("magnitude", OnfKind::Displacement);
  EXPECT_NEAR(magnitude.Evaluate(std::array<double, 3>{3e300, 4e300, 0}) / 5e300, 1.0, 1e-15);
  EXPECT_NEAR(magnitude.Evaluate(std::array<double, 3>{3e-300, 0, 4e-300}) / 5e-300, 1.0, 1e-15);
}

TEST(Component, PrincipalValuesHaveTheInvariantsOfTheirTensor)
{
  const Tensor                tensor = {120, -40, 10, 35, -20, 15};
  const std::array<double, 3> p      = PrincipalValues(tensor);
  for (const char* name : {"p1", "p2", "p3", "mises", "signed-mises", "tresca", "max-shear", "hydrostatic",
                           "octahedral-shear", "triaxiality"})
    EXPECT_NEAR(Component(name, OnfKind::NodalStressPrincipal).Evaluate(p), Of(name, tensor), 1e-11) << name;
}

TEST(Component, DirectionsAreOrthonormalRightHandedAndRebuildTheTensor)
{
  for (const Reference& reference : kReferences) {
    const quilon::PrincipalAxes axes        = PrincipalAxesOf(reference.tensor);
    const auto&                 d           = axes.directions;
    const double                largest     = LargestOf(reference.tensor);
    const int                   pairs[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {1, 2}, {2, 0}};
    for (std::size_t k = 0; k < 6; ++k) {
      const auto i   = static_cast<std::size_t>(pairs[k][0]);
      const auto j   = static_cast<std::size_t>(pairs[k][1]);
      double     sum = 0.0;
      double     dot = 0.0;
      for (std::size_t a = 0; a < 3; ++a) {
        sum += axes.values[a] * d[a][i] * d[a][j];
        dot += d[i][a] * d[j][a];
      }
      EXPECT_NEAR(dot, i == j ? 1.0 : 0.0, 1e-15) << reference.name;
      // Products with tiny values lose what is below the least number.
      EXPECT_NEAR(sum, reference.tensor[k], 1e-12 * largest + 1e-322) << reference.name << ' ' << k;
    }
    const double determinant = d[0][0] * (d[1][1] * d[2][2] - d[1][2] * d[2][1]) -
                               d[0][1] * (d[1][0] * d[2][2] - d[1][2] * d[2][0]) +
                               d[0][2] * (d[1][0] * d[2][1] - d[1][1] * d[2][0]);
    EXPECT_NEAR(determinant, 1.0, 1e-15) << reference.name;
  }
}

TEST(Component, FirstDirectionsHaveTheirLargestComponentPositive)
{
  const quilon::PrincipalAxes axes = PrincipalAxesOf(Tensor{-3, 5, 1, 0, 0, 0});
  EXPECT_EQ(axes.values, (std::array<double, 3>{5, 1, -3}));
  EXPECT_EQ(axes.directions[0], (std::array<double, 3>{0, 1, 0}));
  EXPECT_EQ(axes.directions[1], (std::array<double, 3>{0, 0, 1}));
  EXPECT_EQ(axes.directions[2], (std::array<double, 3>{1, 0, 0}));
}

TEST(Component, KindsHaveTheComponentsOfTheirRecords)
{
  EXPECT_EQ(StoredComponentsOf(OnfKind::Displacement), (Names{"x", "y", "z"}));
  EXPECT_EQ(StoredComponentsOf(OnfKind::NodalStrainPrincipal), (Names{"p1", "p2", "p3"}));
  EXPECT_EQ(StoredComponentsOf(OnfKind::ElementStress), (Names{"xx", "yy", "zz", "xy", "yz", "zx"}));
  EXPECT_EQ(StoredComponentsOf(OnfKind::Temperature), Names{"value"});
  for (const int onf : {int{OnfKind::ElementNodes}, int{OnfKind::ElementType}, int{OnfKind::StiffnessMatrix},
                        int{OnfKind::IntegrationPointStress}, int{OnfKind::ElementMatrix590}, 77})
    EXPECT_EQ(StoredComponentsOf(onf), Names()) << onf;
  EXPECT_EQ(ComponentNamesOf(OnfKind::ElementNodes), Names());
  EXPECT_EQ(ComponentNamesOf(OnfKind::Displacement), (Names{"x", "y", "z", "magnitude"}));
  EXPECT_EQ(ComponentNamesOf(OnfKind::ElementForces), (Names{"x", "y", "z", "magnitude"}));
  EXPECT_EQ(ComponentNamesOf(OnfKind::NodalStressVariance), StoredComponentsOf(OnfKind::NodalStressVariance));
  EXPECT_EQ(ComponentNamesOf(OnfKind::IntegrationPointStress), ComponentNamesOf(OnfKind::NodalStress));
  EXPECT_EQ(ComponentNamesOf(OnfKind::NodalStrain),
            (Names{"xx", "yy", "zz", "xy", "yz", "zx", "p1", "p2", "p3", "mises", "signed-mises", "tresca", "max-shear",
                   "hydrostatic", "octahedral-shear", "equivalent-strain"}));
}

TEST(Component, NamesMayBeBegunAndInAnyCase)
{
  EXPECT_EQ(Component("MISES", OnfKind::NodalStress).GetName(), "mises");
  EXPECT_EQ(Component("hydro", OnfKind::NodalStress).GetName(), "hydrostatic");
  EXPECT_EQ(Component("equivalent", OnfKind::NodalStrain).GetName(), "equivalent-strain");
  EXPECT_EQ(MessageOf("t", OnfKind::NodalStress),
            "component 't' of kind nodal-stress (521) may be any of tresca, triaxiality: write more of the name");
}

TEST(Component, UnknownNamesAreToldWithWhatThereIs)
{
  EXPECT_EQ(
      MessageOf("msies", OnfKind::NodalStressPrincipal),
      "kind nodal-stress-principal (520) has no component 'msies', did you mean 'mises'? It has p1, p2, p3, mises, "
      "signed-mises, tresca, max-shear, hydrostatic, octahedral-shear, triaxiality");
  EXPECT_EQ(MessageOf("mises", OnfKind::Displacement),
            "kind displacement (510) has no component 'mises', expected one of x, y, z, magnitude");
  EXPECT_EQ(MessageOf("", OnfKind::Displacement),
            "kind displacement (510) has no component '', expected one of x, y, z, magnitude");
  EXPECT_EQ(MessageOf("x", OnfKind::ElementNodes), "kind element-nodes (595) has no components, found 'x'");
}

}  // namespace
