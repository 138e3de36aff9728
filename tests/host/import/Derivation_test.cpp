#include "import/Derivation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>

#include "FEM_PrincipalValue.h"
#include "LogCapture.h"

namespace quilon {
namespace {

class Requests : public OnfResultRequestFile
{
public:
  explicit Requests(std::set<int> kinds) : kinds_(std::move(kinds)) {}
  bool typeIsRequested(int onf) const override { return kinds_.contains(onf); }

private:
  std::set<int> kinds_;
};

FED_DataDescriptor Key(int onf, int iteration = 0)
{
  FED_DataDescriptor descriptor(iteration, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, 2);
  descriptor.SetInteger(FED_DataDescriptor::Substep, 3);
  return descriptor;
}

void SetTensor(FED_ResultDatabase& database, const FED_DataDescriptor& key, int id, const double* tensor)
{
  FED_IdDataBlock(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), true).SetTensor(id, tensor);
}

std::array<double, 3> GetVector(FED_ResultDatabase& database, const FED_DataDescriptor& key, int id)
{
  std::array<double, 3> values{};
  FED_ConstIdDataBlock(database.GetConstDataBlock(key), database.GetIdMapsPool()).GetVector(id, values.data());
  return values;
}

// R diag(3, 2, 1) R^T for the rotation by 45 degrees about z, then about x: entries by hand.
constexpr double kRoot = 0.70710678118654752440;

std::array<double, 6> Rotated(double scale)
{
  // About z by 45 degrees: xx = yy = 2.5, xy = 0.5, zz = 1. About x by 45 degrees: yy = zz = 1.75, yz = 0.75,
  // xy = zx = 0.5 / sqrt 2.
  return {2.5 * scale, 1.75 * scale, 1.75 * scale, 0.5 * kRoot * scale, 0.75 * scale, 0.5 * kRoot * scale};
}

TEST(CalculateScaledPrincipals, HoldsForTensorsOfAnyMagnitude)
{
  for (const double scale : {1.0, 1e-5, 1e-9, 1e-100, 1e-300, 1e100, 1e305}) {
    double principal[3];
    CalculateScaledPrincipals(Rotated(scale).data(), principal);
    // The closed form is good for about eight digits near no double root.
    EXPECT_NEAR(principal[0] / scale, 3.0, 1e-12) << scale;
    EXPECT_NEAR(principal[1] / scale, 2.0, 1e-12) << scale;
    EXPECT_NEAR(principal[2] / scale, 1.0, 1e-12) << scale;
  }
}

TEST(CalculateScaledPrincipals, CuresWhatTheUnscaledFormGetsWrongForStrains)
{
  const std::array<double, 6> strain = Rotated(1e-6);
  double                      unscaled[3];
  FEM_PrincipalValue::Calculate(strain.data(), unscaled);
  EXPECT_GT(std::abs(unscaled[2] - 1e-6), 1e-7) << "the determinant is below the form's threshold";

  double principal[3];
  CalculateScaledPrincipals(strain.data(), principal);
  EXPECT_NEAR(principal[2], 1e-6, 1e-17);
}

// Of tensors of all sizes, near and away from multiple roots, the eigenvalues are known by 50 digits.
TEST(CalculateScaledPrincipals, EqualsEigenvaluesOfFiftyDigitsAtAnySize)
{
  std::ifstream                 file(std::string(QUILON_FIXTURES) + "/tensors/principal_values.txt");
  std::map<std::string, double> largest;
  std::size_t                   count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) continue;
    std::istringstream    words(line);
    std::string           kind;
    std::array<double, 6> tensor{};
    std::array<double, 3> expected{};
    const auto            next = [&words] {
      std::string word;
      words >> word;
      return std::strtod(word.c_str(), nullptr);  // reads subnormal numbers where a stream fails
    };
    words >> kind;
    for (double& component : tensor) component = next();
    for (double& value : expected) value = next();
    ASSERT_TRUE(words) << line;

    std::array<double, 3> found{};
    CalculateScaledPrincipals(tensor.data(), found.data());
    const double norm = std::max(std::abs(expected[0]), std::abs(expected[2]));
    for (std::size_t k = 0; k < 3; ++k) {
      const double error = std::abs(found[k] / norm - expected[k] / norm);
      largest[kind]      = std::max(largest[kind], error);
      EXPECT_LE(error, 5e-8) << line;
    }
    ++count;
  }
  EXPECT_EQ(count, 435u);
  // At triple roots the error is a fraction of the deviator, which is at most 1e-5 of the norm there.
  EXPECT_EQ(largest.size(), 2u);
  EXPECT_LE(largest["triple"], 5e-13);
}

TEST(CalculateScaledPrincipals, AStressInGigapascalsHasItsOwnPrincipals)
{
  // The sum of the three is that of the diagonal, and the unscaled form gives 0 for the middle one.
  const double tensor[6] = {4.34e-6, 2.94e-6, -5.27e-6, 1.2e-6, -2.1e-6, 3.3e-6};
  double       unscaled[3];
  double       principal[3];
  FEM_PrincipalValue::Calculate(tensor, unscaled);
  EXPECT_EQ(unscaled[1], 0.0);
  CalculateScaledPrincipals(tensor, principal);
  EXPECT_NEAR(principal[0], 5.4957383782773848e-6, 1e-19);
  EXPECT_NEAR(principal[1], 3.3783500825109379e-6, 1e-19);
  EXPECT_NEAR(principal[2], -6.8640884607883227e-6, 1e-19);
}

TEST(CalculateScaledPrincipals, AHydrostaticTensorIsExact)
{
  const double tensor[6] = {-0.1, -0.1, -0.1, 0, 0, 0};
  double       principal[3];
  CalculateScaledPrincipals(tensor, principal);
  for (const double value : principal) EXPECT_EQ(value, -0.1);
}

TEST(CalculateScaledPrincipals, APowerOfTwoChangesNoDigit)
{
  double one[3];
  double small[3];
  CalculateScaledPrincipals(Rotated(1.0).data(), one);
  CalculateScaledPrincipals(Rotated(std::ldexp(1.0, -20)).data(), small);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(small[k], std::ldexp(one[k], -20));
}

TEST(CalculateScaledPrincipals, AUniaxialTensorIsExact)
{
  const double tensor[6] = {0, 0, -3e-7, 0, 0, 0};
  double       principal[3];
  CalculateScaledPrincipals(tensor, principal);
  EXPECT_EQ(principal[0], 0.0);
  EXPECT_EQ(principal[1], 0.0);
  EXPECT_EQ(principal[2], -3e-7);
}

TEST(CalculateScaledPrincipals, ZeroAndNonFiniteTensorsPassAsTheyAre)
{
  const double zero[6] = {};
  double       principal[3];
  CalculateScaledPrincipals(zero, principal);
  for (const double value : principal) EXPECT_EQ(value, 0.0);

  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double inf = std::numeric_limits<double>::infinity();
  for (const std::array<double, 6>& tensor :
       {std::array<double, 6>{nan, 1, 2, 3, 4, 5}, std::array<double, 6>{1, 2, 3, 4, 5, inf}})
  {
    double expected[3];
    FEM_PrincipalValue::Calculate(tensor.data(), expected);
    CalculateScaledPrincipals(tensor.data(), principal);
    for (int k = 0; k < 3; ++k) {
      EXPECT_TRUE(principal[k] == expected[k] || (std::isnan(principal[k]) && std::isnan(expected[k]))) << k;
    }
  }
}

TEST(DeriveResults, WritesPrincipalStrainsOfNodesAndElements)
{
  quilon_test::LogCapture log;
  FED_ResultDatabase      database;
  SetTensor(database, Key(531), 7, Rotated(1e-6).data());
  SetTensor(database, Key(531), 40, Rotated(-1e-9).data());
  SetTensor(database, Key(571), 9, Rotated(2e-6).data());
  Requests requests({530, 570});
  DeriveResults(database, requests, 0);

  EXPECT_NEAR(GetVector(database, Key(530), 7)[2], 1e-6, 1e-17);
  EXPECT_NEAR(GetVector(database, Key(530), 40)[0], -1e-9, 1e-20);
  EXPECT_NEAR(GetVector(database, Key(530), 40)[2], -3e-9, 1e-20);
  EXPECT_NEAR(GetVector(database, Key(570), 9)[0], 6e-6, 1e-17);
}

TEST(DeriveResults, WritesPrincipalsOfSmallStresses)
{
  quilon_test::LogCapture log;
  FED_ResultDatabase      database;
  SetTensor(database, Key(521), 7, Rotated(1e-6).data());
  SetTensor(database, Key(561), 9, Rotated(1e-200).data());
  Requests requests({520, 560});
  DeriveResults(database, requests, 0);

  EXPECT_NEAR(GetVector(database, Key(520), 7)[2], 1e-6, 1e-17);
  EXPECT_NEAR(GetVector(database, Key(560), 9)[2] / 1e-200, 1.0, 1e-11);
}

TEST(DeriveResults, LeavesOtherIterationsAndKindsThatNobodyRequested)
{
  quilon_test::LogCapture log;
  FED_ResultDatabase      database;
  SetTensor(database, Key(531, 4), 7, Rotated(1e-6).data());
  SetTensor(database, Key(571, 5), 7, Rotated(1e-6).data());
  SetTensor(database, Key(521, 4), 7, Rotated(1e-6).data());
  Requests requests({530, 570});
  DeriveResults(database, requests, 4);

  EXPECT_TRUE(database.HasDataBlock(Key(530, 4)));
  EXPECT_FALSE(database.HasDataBlock(Key(570, 5)));
  EXPECT_FALSE(database.HasDataBlock(Key(520, 4)));
}

TEST(DeriveResults, KeepsPrincipalStrainsThatExist)
{
  quilon_test::LogCapture log;
  FED_ResultDatabase      database;
  SetTensor(database, Key(531), 7, Rotated(1e-6).data());
  const double kept[3] = {1, 2, 3};
  FED_IdDataBlock(database.GetOrCreateDataBlock(Key(530), 0), database.GetIdMapsPool(), true).SetVector(7, kept);
  Requests requests({530});
  DeriveResults(database, requests, 0);
  EXPECT_EQ(GetVector(database, Key(530), 7), (std::array<double, 3>{1, 2, 3}));
}

TEST(DeriveResults, DerivesPrincipalStressesAndEnergySumsToo)
{
  quilon_test::LogCapture log;
  FED_ResultDatabase      database;
  SetTensor(database, Key(521), 7, Rotated(100.0).data());
  SetTensor(database, Key(561), 8, Rotated(200.0).data());
  database.GetOrCreateDataBlock(Key(540), 0).SetScalarAt(1, 1.5);
  database.GetOrCreateDataBlock(Key(903), 0).SetScalarAt(1, 0.25);
  Requests requests({520, 560, 540});
  DeriveResults(database, requests, 0);

  EXPECT_NEAR(GetVector(database, Key(520), 7)[0], 300.0, 1e-10);
  EXPECT_NEAR(GetVector(database, Key(560), 8)[2], 200.0, 1e-10);
  EXPECT_EQ(database.GetDataBlock(Key(540)).GetScalarAt(1), 1.75);
  EXPECT_FALSE(database.HasDataBlock(Key(903)));
}

}  // namespace
}  // namespace quilon
