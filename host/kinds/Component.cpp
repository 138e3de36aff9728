#include "kinds/Component.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <utility>

#include <bundled/FED_RecordFormat.h>
#include <bundled/OnfKinds.h>

#include "kinds/TensorBounds.h"
#include "kinds/TensorLanes.h"
#include "kinds/WideLoop.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

using Names = std::vector<std::string>;

const Names kVectorNames    = {"x", "y", "z"};
const Names kPrincipalNames = {"p1", "p2", "p3"};
const Names kTensorNames    = {"xx", "yy", "zz", "xy", "yz", "zx"};

constexpr double kStrainFactor = 2.0 / 3.0;
constexpr double kNaN          = std::numeric_limits<double>::quiet_NaN();

/// Numbers between these have squares and sums of a few squares that neither overflow nor lose digits.
constexpr double kLeastSquared    = 0x1p-400;
constexpr double kGreatestSquared = 0x1p+400;

/// @return the largest magnitude; nan when one of the values is
template <std::size_t N>
double LargestOf(const std::array<double, N>& values)
{
  double largest = 0.0;
  for (const double value : values) {
    const double magnitude = std::fabs(value);
    if (!(magnitude <= largest)) largest = magnitude;
    if (std::isnan(largest)) break;
  }
  return largest;
}

/// @return the exponent by which numbers of this largest magnitude are scaled to a size of one, 0 where they need not
/// be
int ScaleOf(double largest)
{
  if (largest == 0.0 || (largest > kLeastSquared && largest < kGreatestSquared)) return 0;
  int exponent = 0;
  std::frexp(largest, &exponent);
  return -exponent;
}

template <std::size_t N>
void Scale(std::array<double, N>& values, int exponent)
{
  if (exponent == 0) return;
  for (double& value : values) value = std::ldexp(value, exponent);
}

/// A tensor whose components are finite, scaled where its squares would not fit.
struct ScaledTensor
{
  explicit ScaledTensor(std::span<const double, 6> tensor)
  {
    std::copy(tensor.begin(), tensor.end(), values.begin());
    const double largest = LargestOf(values);
    isFinite             = std::isfinite(largest);
    if (!isFinite) return;
    exponent = ScaleOf(largest);
    Scale(values, exponent);
  }

  /// @return a number of the tensor's size as it is of the tensor that was given
  double Restore(double value) const { return exponent == 0 ? value : std::ldexp(value, -exponent); }

  std::array<double, 6> values;
  int                   exponent = 0;
  bool                  isFinite = true;
};

/// sqrt(3/2 s:s), s the deviator, from differences: of a nearly hydrostatic tensor nothing else keeps its digits.
double DeviatorSize(const std::array<double, 6>& t)
{
  std::array<double, 6> terms    = {t[0] - t[1], t[1] - t[2], t[2] - t[0], t[3], t[4], t[5]};
  const int             exponent = ScaleOf(LargestOf(terms));
  Scale(terms, exponent);
  const double normal = (terms[0] * terms[0] + terms[1] * terms[1] + terms[2] * terms[2]) / 2.0;
  const double shear  = 3.0 * (terms[3] * terms[3] + terms[4] * terms[4] + terms[5] * terms[5]);
  return std::ldexp(std::sqrt(normal + shear), -exponent);
}

/// @return whether what comes of this square without scaling is DeviatorSize(), bit by bit: scaling is exact. Not of a
///         nan
bool IsExactSquare(double square)
{
  constexpr double kLeast    = kLeastSquared * kLeastSquared * 0x1p+10;
  constexpr double kGreatest = kGreatestSquared * kGreatestSquared * 0x1p-10;
  return (square > kLeast) & (square < kGreatest);
}

double MeanOf(const std::array<double, 6>& t) { return (t[0] + t[1] + t[2]) / 3.0; }

/// @return whether ScaleOf() is 0; not of a nan
bool IsUnscaled(double largest) { return largest == 0.0 || (largest > kLeastSquared && largest < kGreatestSquared); }

/// One rotation of Jacobi's method makes a[p][q] zero. @param v collects the rotations, a column a direction
void Rotate(double (&a)[3][3], double (&v)[3][3], int p, int q)
{
  const double apq = a[p][q];
  if (apq == 0.0) return;
  const double theta = (a[q][q] - a[p][p]) / (2.0 * apq);
  // The smaller root of t^2 + 2 theta t - 1 = 0. Of a theta whose square overflows 1 / (2 theta) is left.
  const double t = std::isinf(theta * theta)
                       ? 0.5 / theta
                       : std::copysign(1.0, theta) / (std::fabs(theta) + std::sqrt(theta * theta + 1.0));
  const double c = 1.0 / std::sqrt(t * t + 1.0);
  const double s = t * c;
  a[p][p] -= t * apq;
  a[q][q] += t * apq;
  a[p][q] = a[q][p] = 0.0;
  const int    r    = 3 - p - q;
  const double arp  = a[r][p];
  const double arq  = a[r][q];
  a[r][p] = a[p][r] = c * arp - s * arq;
  a[r][q] = a[q][r] = s * arp + c * arq;
  for (auto& row : v) {
    const double vp = row[p];
    const double vq = row[q];
    row[p]          = c * vp - s * vq;
    row[q]          = s * vp + c * vq;
  }
}

/// Principal values, not sorted, of a tensor with finite components, and their directions as columns.
std::array<double, 3> Diagonalise(const std::array<double, 6>& t, double (&v)[3][3])
{
  double a[3][3] = {{t[0], t[3], t[5]}, {t[3], t[1], t[4]}, {t[5], t[4], t[2]}};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) v[i][j] = i == j ? 1.0 : 0.0;
  // Convergence is quadratic: four or five sweeps reach the last bit. What is below it changes no value.
  constexpr int    kSweeps     = 50;
  constexpr double kNegligible = 0x1p-60;
  const double     limit       = LargestOf(t) * kNegligible;
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    if (std::max({std::fabs(a[0][1]), std::fabs(a[1][2]), std::fabs(a[0][2])}) <= limit) break;
    Rotate(a, v, 0, 1);
    Rotate(a, v, 0, 2);
    Rotate(a, v, 1, 2);
  }
  return {a[0][0], a[1][1], a[2][2]};
}

std::array<double, 3> SortedValues(const std::array<double, 6>& t)
{
  if (t[3] != 0.0 || t[4] != 0.0 || t[5] != 0.0) {
    double                directions[3][3];
    std::array<double, 3> values = Diagonalise(t, directions);
    std::sort(values.begin(), values.end(), std::greater<>());
    return values;
  }
  std::array<double, 3> values = {t[0], t[1], t[2]};
  std::sort(values.begin(), values.end(), std::greater<>());
  return values;
}

/// p1 - p3. It is that of the tensor less a hydrostatic part, which has more digits where that part is large.
double ShearRange(const std::array<double, 6>& t)
{
  std::array<double, 6> shifted  = {t[0] - t[1], 0.0, t[2] - t[1], t[3], t[4], t[5]};
  const int             exponent = ScaleOf(LargestOf(shifted));
  Scale(shifted, exponent);
  const std::array<double, 3> values = SortedValues(shifted);
  return std::ldexp(values[0] - values[2], -exponent);
}

/// -1 where the principal value of largest magnitude is negative, else 1.
double SignOf(double p1, double p3)
{
  constexpr double kEqual = 1e-12;
  return -p3 > p1 + kEqual * std::fabs(p3) ? -1.0 : 1.0;
}

double SignOf(const std::array<double, 6>& t)
{
  const std::array<double, 3> p = SortedValues(t);
  return SignOf(p[0], p[2]);
}

std::array<double, 3> CrossProduct(const std::array<double, 3>& a, const std::array<double, 3>& b)
{
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

/// Length one, the component of largest magnitude positive.
std::array<double, 3> UnitDirection(std::array<double, 3> direction)
{
  const double length = std::hypot(direction[0], direction[1], direction[2]);
  const auto   place  = std::max_element(direction.begin(), direction.end(),
                                         [](double a, double b) { return std::fabs(a) < std::fabs(b); });
  const double factor = *place < 0.0 ? -1.0 / length : 1.0 / length;
  for (double& component : direction) component *= factor;
  return direction;
}

/// How many components a kind's records have, or the parts of its lists: 1, 3, 6; 0 for anything else.
struct KindForm
{
  std::size_t numValues = 0;
  bool        isList    = false;
};

KindForm FormOf(int onf)
{
  if (const int period = OnfKind::ListPeriodOf(onf); period > 1) return {static_cast<std::size_t>(period), true};
  const std::string& format = FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf)).GetRecordFormat();
  if (format.empty()) return {};
  const FED_RecordFormat parsed = FED_RecordFormat::Parse(format);
  return parsed.GetTypes().size() == 1 ? KindForm{parsed.GetDoubleCount(), false} : KindForm{};
}

Names OwnNamesOf(int onf, std::size_t numValues)
{
  switch (numValues) {
    case 1:
      return {"value"};
    case 3:
      return OnfKind::TensorOf(onf) != 0 ? kPrincipalNames : kVectorNames;
    case 6:
      return kTensorNames;
    default:
      return {};
  }
}

/// Drops the records that a test finds between their limits.
/// @param isBetween of the first value of a record and its limits
template <typename IsBetween>
void DropBetween(const double* values, std::size_t numValues, const ValueLimits& limits,
                 std::vector<std::uint32_t>& records, const IsBetween& isBetween)
{
  // Each is written, and overwritten by the next where it is dropped: which are is not foreseen.
  std::size_t kept = 0;
  for (const std::uint32_t record : records) {
    const std::size_t limit = record * limits.stride;
    records[kept]           = record;
    kept += isBetween(values + record * numValues, limits.low[limit], limits.high[limit]) ? 0 : 1;
  }
  records.resize(kept);
}

/// Columns of a few tensors, so that the compiler takes several at once.
struct TensorColumns
{
  static constexpr std::size_t kMany = 64;

  /// @param count at most kMany
  void Fill(const double* tensors, std::size_t count) noexcept
  {
    for (std::size_t i = 0; i < count; ++i)
      for (std::size_t k = 0; k < 6; ++k) t[k][i] = tensors[6 * i + k];
  }
  /// @param records positions of the tensors, ascending
  void Fill(const double* tensors, std::span<const std::uint32_t> records) noexcept
  {
    // Mostly none is left out.
    if (records.back() - records.front() + 1 == records.size())
      return Fill(tensors + std::size_t{6} * records.front(), records.size());
    for (std::size_t i = 0; i < records.size(); ++i)
      for (std::size_t k = 0; k < 6; ++k) t[k][i] = tensors[std::size_t{6} * records[i] + k];
  }
  TensorBounds::Tensor Get(std::size_t i) const noexcept
  {
    return {t[0][i], t[1][i], t[2][i], t[3][i], t[4][i], t[5][i]};
  }

  double t[6][kMany]{};
};

/// Drops tensors as a test tells, a few at a time, so that the compiler takes several at once.
/// @param fillLimits told which records are tested next
/// @param isBetween  of a TensorBounds::Tensor and its number among these; without branches
template <typename FillLimits, typename IsBetween>
void DropTensors(const double* tensors, std::vector<std::uint32_t>& records, const FillLimits& fillLimits,
                 const IsBetween& isBetween)
{
  constexpr std::size_t kMany = TensorColumns::kMany;
  TensorColumns         columns;
  std::int64_t          between[kMany]{};  // of the size of the values
  std::size_t           kept = 0;
  for (std::size_t first = 0; first < records.size(); first += kMany) {
    const auto own = std::span(records).subspan(first, std::min(kMany, records.size() - first));
    columns.Fill(tensors, own);
    fillLimits(own);
    RunMany([&] {
      for (std::size_t i = 0; i < kMany; ++i) between[i] = isBetween(columns.Get(i), i) ? 1 : 0;
    });
    if (std::accumulate(between, between + own.size(), std::int64_t{0}) == static_cast<std::int64_t>(own.size()))
      continue;
    for (std::size_t i = 0; i < own.size(); ++i) {
      records[kept] = own[i];
      kept += between[i] == 0 ? 1 : 0;
    }
  }
  records.resize(kept);
}

/// @param isBetween of a TensorBounds::Tensor and its limits; without branches
template <typename IsBetween>
void DropTensorsBetween(const double* tensors, const ValueLimits& limits, std::vector<std::uint32_t>& records,
                        const IsBetween& isBetween)
{
  using TensorBounds::Tensor;
  if (limits.stride == 0)
    return DropTensors(
        tensors, records, [](std::span<const std::uint32_t>) {},
        [&isBetween, low = *limits.low, high = *limits.high](const Tensor& t, std::size_t) {
          return isBetween(t, low, high);
        });
  double low[TensorColumns::kMany]{};
  double high[TensorColumns::kMany]{};
  DropTensors(
      tensors, records,
      [&](std::span<const std::uint32_t> own) {
        for (std::size_t i = 0; i < own.size(); ++i) {
          low[i]  = limits.low[own[i] * limits.stride];
          high[i] = limits.high[own[i] * limits.stride];
        }
      },
      [&](const Tensor& t, std::size_t i) { return isBetween(t, low[i], high[i]); });
}

/// The same by one test a limit: a search for the greatest or the least has only one.
/// @param isLess of a tensor and its greatest value; isMore of it and its least one
template <typename IsLess, typename IsMore>
void DropTensorsBySides(const double* tensors, const ValueLimits& limits, std::vector<std::uint32_t>& records,
                        const IsLess& isLess, const IsMore& isMore)
{
  using TensorBounds::Tensor;
  if (limits.stride == 0 && *limits.low == -TensorBounds::kInfinite)
    return DropTensorsBetween(tensors, limits, records,
                              [&](const Tensor& t, double, double high) { return isLess(t, high); });
  if (limits.stride == 0 && *limits.high == TensorBounds::kInfinite)
    return DropTensorsBetween(tensors, limits, records,
                              [&](const Tensor& t, double low, double) { return isMore(t, low); });
  DropTensorsBetween(tensors, limits, records, [&](const Tensor& t, double low, double high) {
    const bool isLessThanHigh = isLess(t, high);
    const bool isMoreThanLow  = isMore(t, low);
    return isLessThanHigh & isMoreThanLow;
  });
}

/// Drops by a test that settles most, then by one that settles almost all.
template <int Number>
void DropPrincipalsBetween(const double* tensors, const ValueLimits& limits, std::vector<std::uint32_t>& records)
{
  using TensorBounds::Tensor;
  constexpr int kOpposite = 4 - Number;
  DropTensorsBySides(
      tensors, limits, records,
      [](const Tensor& t, double high) { return TensorBounds::IsPrincipalFarBelow<Number>(t, high); },
      [](const Tensor& t, double low) {
        return TensorBounds::IsPrincipalFarBelow<kOpposite>(TensorBounds::Negate(t), -low);
      });
  DropTensorsBySides(
      tensors, limits, records,
      [](const Tensor& t, double high) { return TensorBounds::IsPrincipalBelow<Number>(t, high); },
      [](const Tensor& t, double low) {
        return TensorBounds::IsPrincipalBelow<kOpposite>(TensorBounds::Negate(t), -low);
      });
}

/// @param estimateOf of a TensorBounds::Tensor; without branches
template <typename EstimateOf>
void EstimateTensors(const double* tensors, std::span<double> estimates, std::span<double> errors,
                     const EstimateOf& estimateOf)
{
  constexpr std::size_t kMany = TensorColumns::kMany;
  TensorColumns         columns;
  double                value[kMany];
  double                error[kMany];
  for (std::size_t first = 0; first < estimates.size(); first += kMany) {
    const std::size_t count = std::min(kMany, estimates.size() - first);
    columns.Fill(tensors + 6 * first, count);
    RunMany([&] {
      for (std::size_t i = 0; i < kMany; ++i) {
        const TensorBounds::Estimate found = estimateOf(columns.Get(i));
        value[i]                           = found.value;
        error[i]                           = found.error;
      }
    });
    std::copy_n(value, count, &estimates[first]);
    std::copy_n(error, count, &errors[first]);
  }
}

/// A value, and whether it is the evaluated one bit by bit.
struct PlainValue
{
  double value;
  bool   isExact;
};

/// @param valueOf  of a TensorBounds::Tensor; without branches
/// @param evaluate what gives a tensor's value where that one is not exact
template <typename ValueOf, typename Evaluate>
void EvaluateTensors(const double* tensors, std::span<double> results, const ValueOf& valueOf, const Evaluate& evaluate)
{
  constexpr std::size_t kMany = TensorColumns::kMany;
  TensorColumns         columns;
  double                value[kMany];
  std::int64_t          isExact[kMany];  // of the size of the values
  for (std::size_t first = 0; first < results.size(); first += kMany) {
    const std::size_t count = std::min(kMany, results.size() - first);
    columns.Fill(tensors + 6 * first, count);
    RunMany([&] {
      for (std::size_t i = 0; i < kMany; ++i) {
        const PlainValue found = valueOf(columns.Get(i));
        value[i]               = found.value;
        isExact[i]             = found.isExact ? 1 : 0;
      }
    });
    std::copy_n(value, count, &results[first]);
    if (std::accumulate(isExact, isExact + count, std::int64_t{0}) == static_cast<std::int64_t>(count)) continue;
    for (std::size_t i = 0; i < count; ++i)
      if (isExact[i] == 0) results[first + i] = evaluate(std::span<const double, 6>(tensors + 6 * (first + i), 6));
  }
}

template <std::size_t N>
using LaneMarks = std::array<bool, N>;

/// Marks tensors that have to be scaled, or are not finite.
template <std::size_t N>
void MarkScaled(const TensorLanes::Lanes<N>& largest, LaneMarks<N>& marks)
{
  for (std::size_t i = 0; i < marks.size(); ++i) marks[i] = marks[i] || !IsUnscaled(largest[i]);
}

/// Finds the squares of the deviators, and marks those that come otherwise with scaling.
template <std::size_t N>
void FindSquares(const TensorLanes::Tensors<N>& t, TensorLanes::Lanes<N>& squares, LaneMarks<N>& marks)
{
  for (std::size_t i = 0; i < marks.size(); ++i) {
    squares[i] = TensorBounds::DeviatorSquare({t[0][i], t[1][i], t[2][i], t[3][i], t[4][i], t[5][i]});
    marks[i]   = marks[i] || !IsExactSquare(squares[i]);
  }
}

bool IsVariance(int onf) { return onf == OnfKind::NodalStressVariance || onf == OnfKind::NodalStrainVariance; }

/// @return the component that a user wrote
std::string ResolveName(std::string_view text, int onf)
{
  const Names       names = ComponentNamesOf(onf);
  const std::string word  = LowerCase(text);
  if (std::find(names.begin(), names.end(), word) != names.end()) return word;

  const std::string kind =
      FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf)).GetName() + " (" + std::to_string(onf) + ")";
  if (names.empty()) Fail("kind " + kind + " has no components, found '" + std::string(text) + "'");
  Names begun;
  for (const std::string& name : names)
    if (!word.empty() && name.compare(0, word.size(), word) == 0) begun.push_back(name);
  if (begun.size() == 1) return begun.front();
  if (begun.size() > 1)
    Fail("component '" + std::string(text) + "' of kind " + kind + " may be any of " + Enumerated(begun) +
         ": write more of the name");
  const std::string suggestion = DidYouMean(word, names);
  Fail("kind " + kind + " has no component '" + std::string(text) + "'" +
       (suggestion.empty() ? ", expected one of " : suggestion + " It has ") + Enumerated(names));
}

}  // namespace

bool IsStrain(int onf) noexcept
{
  switch (onf) {
    case OnfKind::NodalStrain:
    case OnfKind::NodalStrainSolver:
    case OnfKind::NodalStrainPrincipal:
    case OnfKind::ElementStrain:
    case OnfKind::ElementStrainPrincipal:
    case OnfKind::IntegrationPointStrain:
      return true;
    default:
      return false;
  }
}

std::vector<std::string> StoredComponentsOf(int onf)
{
  const KindForm form = FormOf(onf);
  return form.isList ? Names() : OwnNamesOf(onf, form.numValues);
}

std::vector<std::string> ValueComponentsOf(int onf) { return OwnNamesOf(onf, FormOf(onf).numValues); }

std::vector<std::string> ComponentNamesOf(int onf)
{
  const std::size_t numValues    = FormOf(onf).numValues;
  Names             names        = OwnNamesOf(onf, numValues);
  const bool        isPrincipals = OnfKind::TensorOf(onf) != 0;
  if (numValues == 3 && !isPrincipals) names.emplace_back("magnitude");
  if ((numValues != 6 && !isPrincipals) || IsVariance(onf)) return names;
  if (!isPrincipals) names.insert(names.end(), kPrincipalNames.begin(), kPrincipalNames.end());
  for (const char* name : {"mises", "signed-mises", "tresca", "max-shear", "hydrostatic", "octahedral-shear"})
    names.emplace_back(name);
  if (!IsStrain(onf)) names.emplace_back("triaxiality");
  if (IsStrain(onf) || OnfKind::IsUserKind(onf)) names.emplace_back("equivalent-strain");
  return names;
}

Component::Invariant Component::InvariantOf(std::string_view name) noexcept
{
  static constexpr std::pair<std::string_view, Invariant> kInvariants[] = {
      {"magnitude", Invariant::Magnitude},
      {"p1", Invariant::Principal1},
      {"p2", Invariant::Principal2},
      {"p3", Invariant::Principal3},
      {"mises", Invariant::Mises},
      {"signed-mises", Invariant::SignedMises},
      {"tresca", Invariant::Tresca},
      {"max-shear", Invariant::MaxShear},
      {"hydrostatic", Invariant::Hydrostatic},
      {"octahedral-shear", Invariant::OctahedralShear},
      {"triaxiality", Invariant::Triaxiality},
      {"equivalent-strain", Invariant::EquivalentStrain},
  };
  for (const auto& [known, invariant] : kInvariants)
    if (known == name) return invariant;
  return Invariant::None;
}

Component::Component(std::string_view name, int onf)
    : name_(ResolveName(name, onf)), numValues_(FormOf(onf).numValues), factor_(IsStrain(onf) ? kStrainFactor : 1.0)
{
  const Names stored = OwnNamesOf(onf, numValues_);
  const auto  found  = std::find(stored.begin(), stored.end(), name_);
  if (found != stored.end())
    position_ = static_cast<int>(found - stored.begin());
  else
    invariant_ = InvariantOf(name_);
}

double Component::Evaluate(std::span<const double> values) const
{
  if (values.size() != numValues_)
    Fail("component " + name_ + " is taken of " + std::to_string(numValues_) + " values, found " +
         std::to_string(values.size()));
  if (position_ >= 0) return values[static_cast<std::size_t>(position_)];
  if (invariant_ == Invariant::Magnitude) {
    const bool isFinite = std::isfinite(values[0]) && std::isfinite(values[1]) && std::isfinite(values[2]);
    return isFinite ? std::hypot(values[0], values[1], values[2]) : kNaN;
  }
  if (values.size() == 6) return EvaluateTensor(values.first<6>());
  // Principal values are a tensor in its own axes.
  return EvaluateTensor(std::array<double, 6>{values[0], values[1], values[2], 0.0, 0.0, 0.0});
}

/// @return what DeviatorSize() is multiplied by to give the invariant; 0 for one that is something else
double Component::DeviatorFactor() const noexcept
{
  switch (invariant_) {
    case Invariant::Mises:
      return factor_;
    case Invariant::EquivalentStrain:
      return kStrainFactor;
    case Invariant::OctahedralShear:
      return std::sqrt(2.0) / 3.0;
    default:
      return 0.0;
  }
}

void Component::EvaluateAll(std::span<const double> values, std::span<double> results) const
{
  if (values.size() != results.size() * numValues_)
    Fail("component " + name_ + " is taken of " + std::to_string(numValues_) + " values a record, found " +
         std::to_string(values.size()) + " of " + std::to_string(results.size()));
  if (position_ >= 0) {
    const double* value = values.data() + position_;
    for (std::size_t i = 0; i < results.size(); ++i) results[i] = value[i * numValues_];
    return;
  }
  if (HasEstimate()) return EvaluateRoots(values.data(), results);
  if (IsEvaluatedFast()) return EvaluatePlain(values.data(), results);
  for (std::size_t i = 0; i < results.size(); ++i) results[i] = Evaluate(values.subspan(i * numValues_, numValues_));
}

bool Component::IsEvaluatedFast() const noexcept
{
  const bool isMean = invariant_ == Invariant::Hydrostatic || invariant_ == Invariant::Triaxiality;
  return position_ >= 0 || (numValues_ == 6 && (isMean || DeviatorFactor() != 0.0));
}

/// Evaluates what is a mean, a root or both; tensors that need scaling alone.
void Component::EvaluatePlain(const double* tensors, std::span<double> results) const
{
  using TensorBounds::Tensor;
  const auto evaluate = [this](std::span<const double, 6> tensor) { return EvaluateTensor(tensor); };
  // Six times the largest component at most.
  const auto isUnscaled = [](double size) -> bool { return (size > 8.0 * kLeastSquared) & (size < kGreatestSquared); };
  if (invariant_ == Invariant::Hydrostatic) {
    const auto mean = [&](const Tensor& t) {
      return PlainValue{TensorBounds::MeanOf(t), isUnscaled(TensorBounds::SizeOf(t))};
    };
    EvaluateTensors(tensors, results, mean, evaluate);
  } else if (invariant_ == Invariant::Triaxiality) {
    const auto ratio = [&](const Tensor& t) {
      const double square  = TensorBounds::DeviatorSquare(t);
      const bool   isMean  = isUnscaled(TensorBounds::SizeOf(t));
      const bool   isRoot  = IsExactSquare(square);
      const bool   isExact = isMean & isRoot;
      return PlainValue{TensorBounds::MeanOf(t) / std::sqrt(square), isExact};
    };
    EvaluateTensors(tensors, results, ratio, evaluate);
  } else {
    const auto root = [factor = DeviatorFactor()](const Tensor& t) {
      const double square = TensorBounds::DeviatorSquare(t);
      return PlainValue{factor * std::sqrt(square), IsExactSquare(square)};
    };
    EvaluateTensors(tensors, results, root, evaluate);
  }
}

/// Evaluates what Jacobi's method gives, several tensors at a time.
void Component::EvaluateRoots(const double* tensors, std::span<double> results) const
{
  using TensorLanes::kFew;
  using TensorLanes::kMany;
  while (results.size() >= kMany) {
    EvaluateLanes<kMany>(tensors, results.first(kMany));
    tensors += 6 * kMany;
    results = results.subspan(kMany);
  }
  for (std::size_t first = 0; first < results.size(); first += kFew)
    EvaluateLanes<kFew>(tensors + 6 * first, results.subspan(first, std::min(kFew, results.size() - first)));
}

/// Those that need scaling go alone.
/// @param results at most N
template <std::size_t N>
void Component::EvaluateLanes(const double* tensors, std::span<double> results) const
{
  const bool              isRange = invariant_ == Invariant::Tresca || invariant_ == Invariant::MaxShear;
  TensorLanes::Tensors<N> t{};
  TensorLanes::Lanes<N>   largest;
  TensorLanes::Lanes<N>   squares{};
  TensorLanes::Values<N>  p;
  LaneMarks<N>            isAlone{};
  for (std::size_t i = 0; i < results.size(); ++i)
    for (std::size_t k = 0; k < 6; ++k) t[k][i] = tensors[6 * i + k];
  TensorLanes::FindLargest(t, largest);
  MarkScaled(largest, isAlone);
  if (invariant_ == Invariant::SignedMises) FindSquares(t, squares, isAlone);
  if (isRange) {
    TensorLanes::ShiftToDifferences(t);
    TensorLanes::FindLargest(t, largest);
    MarkScaled(largest, isAlone);
  }
  for (std::size_t i = 0; i < N; ++i)
    if (isAlone[i]) TensorLanes::Clear(t, largest, i);
  RunMany([&] { TensorLanes::FindPrincipalValues(t, largest, p); });
  for (std::size_t i = 0; i < results.size(); ++i)
    results[i] = isAlone[i] ? Evaluate(std::span(tensors + 6 * i, 6))
                            : OfPrincipalValues({p[0][i], p[1][i], p[2][i]}, squares[i]);
}

/// @param square of the deviator
double Component::OfPrincipalValues(const std::array<double, 3>& p, double square) const noexcept
{
  switch (invariant_) {
    case Invariant::Principal1:
      return p[0];
    case Invariant::Principal2:
      return p[1];
    case Invariant::Principal3:
      return p[2];
    case Invariant::SignedMises:
      return SignOf(p[0], p[2]) * factor_ * std::sqrt(square);
    case Invariant::MaxShear:
      return (p[0] - p[2]) / 2.0;
    default:
      return p[0] - p[2];
  }
}

void Component::KeepBeyond(std::span<const double> values, const ValueLimits& limits,
                           std::vector<std::uint32_t>& records) const
{
  const auto keep = [&](const auto& isBetween) { DropBetween(values.data(), numValues_, limits, records, isBetween); };
  if (position_ >= 0) {
    keep([position = position_](const double* record, double low, double high) {
      return (record[position] > low) & (record[position] < high);
    });
  } else if (invariant_ == Invariant::Magnitude) {
    keep([](const double* v, double low, double high) {
      return TensorBounds::IsRootBetween(v[0] * v[0] + v[1] * v[1] + v[2] * v[2], 1.0, low, high);
    });
  } else if (numValues_ == 6) {
    KeepTensorsBeyond(values.data(), limits, records);
  } else {
    keep([this](const double* record, double low, double high) {
      const double value = Evaluate(std::span(record, numValues_));
      return value > low && value < high;
    });
  }
}

void Component::KeepTensorsBeyond(const double* tensors, const ValueLimits& limits,
                                  std::vector<std::uint32_t>& records) const
{
  using TensorBounds::Tensor;
  const auto drop = [&](const auto& isBetween) { DropTensorsBetween(tensors, limits, records, isBetween); };
  switch (invariant_) {
    case Invariant::Principal1:
      return DropPrincipalsBetween<1>(tensors, limits, records);
    case Invariant::Principal2:
      return DropPrincipalsBetween<2>(tensors, limits, records);
    case Invariant::Principal3:
      return DropPrincipalsBetween<3>(tensors, limits, records);
    case Invariant::Mises:
    case Invariant::EquivalentStrain:
    case Invariant::OctahedralShear:
      return drop([inverse = 1.0 / DeviatorFactor()](const Tensor& t, double low, double high) {
        return TensorBounds::IsRootBetween(TensorBounds::DeviatorSquare(t), inverse, low, high);
      });
    case Invariant::SignedMises:
      drop([inverse = 1.0 / factor_](const Tensor& t, double low, double high) {
        const double square     = TensorBounds::DeviatorSquare(t);
        const bool   asPositive = TensorBounds::IsRootBetween(square, inverse, low, high);
        const bool   asNegative = TensorBounds::IsRootBetween(square, inverse, -high, -low);
        return asPositive & asNegative;
      });
      return drop([inverse = 1.0 / factor_](const Tensor& t, double low, double high) {
        return TensorBounds::IsSignedMisesBetween(t, inverse, low, high);
      });
    case Invariant::Tresca:
    case Invariant::MaxShear: {
      const double inverse = invariant_ == Invariant::Tresca ? 1.0 : 2.0;
      drop([inverse](const Tensor& t, double low, double high) {
        return TensorBounds::IsShearRangeNear(t, inverse, low, high);
      });
      return drop([inverse](const Tensor& t, double low, double high) {
        return TensorBounds::IsShearRangeBetween(t, inverse, low, high);
      });
    }
    case Invariant::Hydrostatic:
      return drop([](const Tensor& t, double low, double high) { return TensorBounds::IsMeanBetween(t, low, high); });
    case Invariant::Triaxiality:
      return DropTensorsBySides(
          tensors, limits, records,
          [](const Tensor& t, double high) { return TensorBounds::IsTriaxialityBelow(t, high); },
          [](const Tensor& t, double low) { return TensorBounds::IsTriaxialityBelow(TensorBounds::Negate(t), -low); });
    case Invariant::Magnitude:
    case Invariant::None:
      break;
  }
}

bool Component::HasEstimate() const noexcept
{
  switch (invariant_) {
    case Invariant::Principal1:
    case Invariant::Principal2:
    case Invariant::Principal3:
    case Invariant::SignedMises:
    case Invariant::Tresca:
    case Invariant::MaxShear:
      return numValues_ == 6;
    default:
      return false;
  }
}

void Component::EstimateAll(std::span<const double> values, std::span<double> estimates, std::span<double> errors) const
{
  using TensorBounds::Tensor;
  const auto estimate = [&](const auto& estimateOf) { EstimateTensors(values.data(), estimates, errors, estimateOf); };
  switch (HasEstimate() ? invariant_ : Invariant::None) {
    case Invariant::Principal1:
      return estimate([](const Tensor& t) { return TensorBounds::EstimatePrincipal<1>(t); });
    case Invariant::Principal2:
      return estimate([](const Tensor& t) { return TensorBounds::EstimatePrincipal<2>(t); });
    case Invariant::Principal3:
      return estimate([](const Tensor& t) { return TensorBounds::EstimatePrincipal<3>(t); });
    case Invariant::SignedMises:
      return estimate([factor = factor_](const Tensor& t) { return TensorBounds::EstimateSignedMises(t, factor); });
    case Invariant::Tresca:
      return estimate([](const Tensor& t) { return TensorBounds::EstimateShearRange(t, 1.0); });
    case Invariant::MaxShear:
      return estimate([](const Tensor& t) { return TensorBounds::EstimateShearRange(t, 0.5); });
    default:
      std::fill(errors.begin(), errors.end(), TensorBounds::kInfinite);
  }
}

double Component::EvaluateTensor(std::span<const double, 6> tensor) const
{
  const ScaledTensor scaled(tensor);
  if (!scaled.isFinite) return kNaN;
  const std::array<double, 6>& t = scaled.values;
  switch (invariant_) {
    case Invariant::Principal1:
      return scaled.Restore(SortedValues(t)[0]);
    case Invariant::Principal2:
      return scaled.Restore(SortedValues(t)[1]);
    case Invariant::Principal3:
      return scaled.Restore(SortedValues(t)[2]);
    case Invariant::Mises:
      return scaled.Restore(factor_ * DeviatorSize(t));
    case Invariant::EquivalentStrain:
      return scaled.Restore(kStrainFactor * DeviatorSize(t));
    case Invariant::SignedMises:
      return scaled.Restore(SignOf(t) * factor_ * DeviatorSize(t));
    case Invariant::Tresca:
      return scaled.Restore(ShearRange(t));
    case Invariant::MaxShear:
      return scaled.Restore(ShearRange(t) / 2.0);
    case Invariant::Hydrostatic:
      return scaled.Restore(MeanOf(t));
    case Invariant::OctahedralShear:
      return scaled.Restore(std::sqrt(2.0) / 3.0 * DeviatorSize(t));
    case Invariant::Triaxiality:
      return MeanOf(t) / DeviatorSize(t);
    case Invariant::Magnitude:
    case Invariant::None:
      break;
  }
  return kNaN;
}

PrincipalAxes PrincipalAxesOf(std::span<const double, 6> tensor)
{
  PrincipalAxes      axes{{kNaN, kNaN, kNaN}, {{{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}}};
  const ScaledTensor scaled(tensor);
  if (!scaled.isFinite) return axes;

  double                      columns[3][3];
  const std::array<double, 3> values = Diagonalise(scaled.values, columns);
  std::array<std::size_t, 3>  order  = {0, 1, 2};
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return values[a] > values[b]; });
  for (std::size_t i = 0; i < 3; ++i) axes.values[i] = scaled.Restore(values[order[i]]);
  for (std::size_t i = 0; i < 2; ++i)
    axes.directions[i] = UnitDirection({columns[0][order[i]], columns[1][order[i]], columns[2][order[i]]});
  axes.directions[2] = CrossProduct(axes.directions[0], axes.directions[1]);
  return axes;
}

std::array<double, 3> PrincipalValues(std::span<const double, 6> tensor)
{
  const ScaledTensor scaled(tensor);
  if (!scaled.isFinite) return {kNaN, kNaN, kNaN};
  std::array<double, 3> values = SortedValues(scaled.values);
  for (double& value : values) value = scaled.Restore(value);
  return values;
}

}  // namespace quilon
