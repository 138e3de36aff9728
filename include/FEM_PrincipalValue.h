#pragma once

/// @file
/// Principal values of symmetric tensors.

#include "quilon_language.h"

#include "quilon_export.h"

namespace FEM_PrincipalValue {

/// Computes the three principal values (eigenvalues) of a real symmetric 3 x 3 tensor in closed form, without
/// iteration.
///
/// Zero, uniaxial and plane tensors are recognised and give exact zeros instead of rounding noise. All other tensors go
/// by the trigonometric solution of the characteristic cubic x^3 - I1 x^2 + I2 x - I3 = 0 (F. Viete; see R. W. D.
/// Nickalls, A new approach to solving the cubic, Math. Gaz. 77 (1993) 354-359), except that a determinant I3 below the
/// threshold counts as zero and leaves a quadratic.
///
/// Thresholds are absolute and made for stresses: a component or a determinant counts as zero when its magnitude is
/// less than 1e-15. A tensor of small numbers, such as strains of 1e-5, has a determinant below that, and its results
/// are off by a good part of their size. Scale such a tensor first by a power of two that brings its largest component
/// near 1, and the result back: both are exact.
///
/// Accuracy is that of the closed form, relative to the tensor's largest component: about 1e-15 with separate principal
/// values, about 3e-8 near a double one and 1e-5 near a triple one.
///
/// A NaN never counts as zero and never disappears: at least one result is then a NaN. Components beyond about 1e102
/// may overflow the invariants, and the results are then not finite.
/// @param tensor    shape [6]: xx, yy, zz, xy, yz, zx
/// @param principal shape [3]: receives the principal values, largest first, in the tensor's unit; may be `tensor`
QUILON_EXPORT void Calculate(const double* tensor, double* principal);

}  // namespace FEM_PrincipalValue
