#pragma once

/// @file
/// Components of vectors and tensors by name: those that are stored, and invariants.
///
/// Of a symmetric tensor T with components xx, yy, zz, xy, yz, zx and principal values p1 >= p2 >= p3:
///
///     hydrostatic       (xx + yy + zz) / 3
///     mises             sqrt(((xx-yy)^2 + (yy-zz)^2 + (zz-xx)^2) / 2 + 3 (xy^2 + yz^2 + zx^2)) = sqrt(3/2 s:s), s the
///                       deviator; R. von Mises, Nachr. Ges. Wiss. Goettingen, Math.-Phys. Kl. (1913) 582-592
///     tresca            p1 - p3, twice the largest shear; H. Tresca, C. R. Acad. Sci. 59 (1864) 754-758
///     max-shear         (p1 - p3) / 2
///     octahedral-shear  sqrt((p1-p2)^2 + (p2-p3)^2 + (p3-p1)^2) / 3 = sqrt(2)/3 sqrt(3/2 s:s); A. Nadai, J. Appl.
///                       Phys. 8 (1937) 205-213
///     triaxiality       hydrostatic / mises; infinite where mises is zero, nan where both are
///     signed-mises      mises with the sign of the principal value of largest magnitude; positive where p1 and -p3 are
///                       that within 1e-12 of it (pure shear)
///
/// Of a strain e, stored with tensor shears (xy is half of the engineering shear), mises is the equivalent strain
/// sqrt(2/3 e':e'), e' the deviator: 2/3 of the formula above. It is the axial strain of uniaxial tension without
/// change of volume. Its other name is equivalent-strain. A strain has no triaxiality.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quilon {

/// A least and a greatest value for each record, or for all. Borrowed.
struct ValueLimits
{
  const double* low;
  const double* high;
  std::size_t   stride = 0;  ///< from a record's limits to those of the next; 0: they are the same for all
};

/// One number taken from a record: a stored component or an invariant.
class Component
{
public:
  /// @param name "xx" to "zx", "x", "y", "z", "magnitude", "p1", "p2", "p3", "mises", ..., see ComponentNamesOf();
  ///             letters count without their case, and the beginning of exactly one name is enough
  /// @param onf  the kind. The tensors of user kinds are of an unknown quantity: they have the invariants of a stress,
  ///             and equivalent-strain.
  /// @throws FED_Failure when the kind has no such component: what it has, and a near name
  Component(std::string_view name, int onf);

  /// @return the name as ComponentNamesOf() has it
  const std::string& GetName() const noexcept { return name_; }

  /// @return the position of a stored component, from 0; -1 for an invariant
  int GetPosition() const noexcept { return position_; }

  /// @return how many values Evaluate() expects: 1, 3 or 6
  std::size_t NumValues() const noexcept { return numValues_; }

  /// @param values of one record in stored order: 1 of a scalar, 3 of a vector, 6 of a tensor (xx yy zz xy yz zx); of a
  ///               kind with a list of vectors or tensors, one of these
  /// @return a stored component bit by bit; an invariant of values of any size without overflow on the way, nan where
  ///         one of them is no finite number
  double Evaluate(std::span<const double> values) const;

  /// Does the same for many records, in less time.
  /// @param values  shape [results.size(), NumValues()]
  /// @param results receives what Evaluate() returns of each, bit by bit
  void EvaluateAll(std::span<const double> values, std::span<double> results) const;

  /// @return whether EvaluateAll() takes no longer than KeepBeyond()
  bool IsEvaluatedFast() const noexcept;

  /// Drops records of which it is certain that low < Evaluate() < high, mostly without evaluating them: see
  /// TensorBounds. A nan is not between limits, and nothing is between limits of which one is nan.
  /// @param values  shape [any, NumValues()]
  /// @param records positions in the values; those that are left keep their order
  void KeepBeyond(std::span<const double> values, const ValueLimits& limits, std::vector<std::uint32_t>& records) const;

  /// @return whether EstimateAll() takes a fraction of the time of EvaluateAll()
  bool HasEstimate() const noexcept;

  /// Tells many values almost: |Evaluate() - estimates[i]| <= errors[i]. The error is infinite, and the estimate any,
  /// where nothing can be said, as of what is no number. Of components that HasEstimate(), it is about a millionth.
  /// @param values shape [estimates.size(), NumValues()]
  void EstimateAll(std::span<const double> values, std::span<double> estimates, std::span<double> errors) const;

private:
  enum class Invariant
  {
    None,
    Magnitude,
    Principal1,
    Principal2,
    Principal3,
    Mises,
    SignedMises,
    Tresca,
    MaxShear,
    Hydrostatic,
    OctahedralShear,
    Triaxiality,
    EquivalentStrain
  };
  static Invariant InvariantOf(std::string_view name) noexcept;

  double EvaluateTensor(std::span<const double, 6> tensor) const;
  double DeviatorFactor() const noexcept;
  void   EvaluatePlain(const double* tensors, std::span<double> results) const;
  void   EvaluateRoots(const double* tensors, std::span<double> results) const;
  template <std::size_t N>
  void   EvaluateLanes(const double* tensors, std::span<double> results) const;
  double OfPrincipalValues(const std::array<double, 3>& p, double square) const noexcept;
  void   KeepTensorsBeyond(const double* tensors, const ValueLimits& limits, std::vector<std::uint32_t>& records) const;

  std::string name_;
  int         position_  = -1;
  std::size_t numValues_ = 0;
  Invariant   invariant_ = Invariant::None;
  double      factor_    = 1.0;  // of mises: 2/3 for a strain
};

/// @return the names of the components as stored ("x", "y", "z"; "p1", "p2", "p3" of principal values; "xx" to "zx";
///         "value" of a scalar); nothing for a kind of lists and for one whose fields are no components
std::vector<std::string> StoredComponentsOf(int onf);

/// @return the names of all components that a kind has, stored ones first, then invariants. Kinds of lists that hold a
///         vector or a tensor a point (integration points, forces at the nodes of elements) have those of one of them.
std::vector<std::string> ComponentNamesOf(int onf);

/// @return the names of the values that a kind's records hold, vector by vector or tensor by tensor in a kind of lists
///         of these: StoredComponentsOf(), and those of one of them
std::vector<std::string> ValueComponentsOf(int onf);

/// @return whether the kind is known to hold a strain
bool IsStrain(int onf) noexcept;

/// Principal values and where they point.
struct PrincipalAxes
{
  /// p1 >= p2 >= p3
  std::array<double, 3> values;
  /// directions[i] belongs to values[i]. Orthonormal and right-handed: the first two have their component of largest
  /// magnitude (the first of equals) positive, the third is their vector product.
  std::array<std::array<double, 3>, 3> directions;
};

/// By Jacobi's method (C. G. J. Jacobi, J. reine angew. Math. 30 (1846) 51-94) on the tensor scaled by a power of two,
/// which is exact: near double and triple roots, too, values are right to 1e-12 of the tensor's largest component.
/// @return all values nan when a component is no finite number, and the directions those of the axes
PrincipalAxes PrincipalAxesOf(std::span<const double, 6> tensor);

/// @return the principal values, descending; see PrincipalAxesOf()
std::array<double, 3> PrincipalValues(std::span<const double, 6> tensor);

}  // namespace quilon
