#pragma once

/// @file
/// Results derived from others, strains included.

class FED_Database;
class OnfResultRequestFile;

namespace quilon {

/// Principal values of a symmetric tensor of any magnitude, largest first.
///
/// FEM_PrincipalValue::Calculate() carries absolute thresholds made for stresses: a strain tensor of 1e-5 has a
/// determinant below them and lands in the wrong branch. So the tensor is scaled by a power of two that brings its
/// largest component to between 0.5 and 1, and the result is scaled back, both exact in binary. A tensor that is zero
/// or not finite passes as it is.
/// @param tensor    xx, yy, zz, xy, yz, zx
/// @param principal receives three values
void CalculateScaledPrincipals(const double* tensor, double* principal);

/// Derives what is requested of an iteration: the principal values of strains (570 of 571, 530 of 531) from scaled
/// tensors, then the rest by FEM_ResultUtil::CalculateAdditionalResults(). Blocks that exist are kept.
void DeriveResults(FED_Database& database, OnfResultRequestFile& requests, int iteration);

}  // namespace quilon
