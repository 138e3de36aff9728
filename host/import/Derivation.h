#pragma once

/// @file
/// Results derived from tensors of any magnitude.

#include "database/Readers.h"

class FED_Database;
class OnfResultRequestFile;

namespace quilon {

class DatabaseParts;

/// Principal values of a symmetric tensor of any magnitude, largest first.
///
/// FEM_PrincipalValue::Calculate() carries absolute thresholds made for stresses of some units of size: a strain of
/// 1e-5 or a stress in GPa has a determinant below them and lands in the wrong branch. So the tensor is scaled by a
/// power of two that brings its largest component to between 0.5 and 1, and the result is scaled back, both exact in
/// binary. Of a nearly hydrostatic tensor the deviator is taken, scaled by its own exponent, and the mean is added: the
/// closed form loses the small differences of large values otherwise. A tensor that is zero or not finite passes as it
/// is.
///
/// Off by at most 5e-8 of the largest component, at double and triple roots too, for sizes from 1e-300 to 1e300.
/// @param tensor    xx, yy, zz, xy, yz, zx
/// @param principal receives three values
void CalculateScaledPrincipals(const double* tensor, double* principal);

/// Another database with the tensors that results are derived from, and who reads it.
struct TensorSource
{
  const FED_Database* database = nullptr;  ///< null: the one that results go to. Borrowed
  Readers             readers  = {};       ///< those that cannot open the source leave the work to this thread
  /// Of the database that results go to: where there are many, readers write them. Borrowed; null: this thread writes
  /// all.
  DatabaseParts* parts = nullptr;
};

/// Derives the principal values of all iterations that are requested, as DeriveResults() does.
/// @param database gets the results; it holds the tensors, too
/// @param source   where tensors are read from; what is written is the same for any readers
void DerivePrincipals(FED_Database& database, OnfResultRequestFile& requests, const TensorSource& source);

/// In a process that does not lead: derives principal values for the one that does.
/// @param source  as its TensorSource has it, or the database itself
/// @param readers of it
void HelpToDerivePrincipals(const FED_Database& source, const Readers& readers);

/// Derives what is requested of an iteration: principal values (560 of 561, 520 of 521, 570 of 571, 530 of 531) from
/// scaled tensors, then the rest by FEM_ResultUtil::CalculateAdditionalResults(). Blocks that exist are kept.
void DeriveResults(FED_Database& database, OnfResultRequestFile& requests, int iteration);

}  // namespace quilon
