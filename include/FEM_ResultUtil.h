#pragma once

/// @file
/// Single results into a database, and results derived from others.

#include "quilon_language.h"

#include <array>
#include <set>
#include <utility>
#include <vector>

#include <QuilonDbConnector/FED_DataDescriptor.h>

#include "FEM_AvgField.h"
#include "FEM_AvgUtil.h"
#include "quilon_export.h"

class FED_Database;
class OnfResultRequestFile;

/// Writers of single results and of derived ones. Databases are borrowed for a call; what they throw passes through:
/// records written before stay, and no scratch record or id view is left. Failures carry the tag
/// "|%P|BrevanFem|FEM_ResultUtil"; log lines too, with the source "src/FEM_ResultUtil".
namespace FEM_ResultUtil {

/// The six descriptors of the element matrices of one result step and of their descriptions.
///
/// For i = 0, 1, 2: pairs[i].first has ONF id 597 + i, pairs[i].second has 590 + i. Load case, substep and analysis are
/// not set in either, and in `first` the increment is not set either: what it describes is shared by all increments.
/// The values of those indices stay behind their clear mask bits, where order and equality of descriptors still see
/// them. Every other index is as given.
struct QUILON_EXPORT MatricesOnfLoc
{
  /// Not explicit: callers hand a descriptor where the six are asked for.
  MatricesOnfLoc(const FED_DataDescriptor& desc);

  std::array<std::pair<FED_DataDescriptor, FED_DataDescriptor>, 3> pairs;
};

/// Adds a scalar to the history of its result step: stores it in the block of `desc` with ONF id 500 and substep 1, at
/// the block index that is the substep of `desc`.
/// @param desc its ONF id is not kept. A negative substep is no index: the database refuses it.
QUILON_EXPORT void SetResultScalar(FED_Database& db, const FED_DataDescriptor& desc, double value);

/// Writes an element matrix into the block of `desc`: field 1 is `size`, field 2 the values. Neither is checked.
/// @param id     element
/// @param size   rows or leading dimension, as the caller defines it
/// @param values in the caller's order
QUILON_EXPORT void SetResultMatrix(FED_Database& db, const FED_DataDescriptor& desc, int id, int size,
                                   const std::vector<double>& values);

/// Writes the description of an element matrix into the block of `desc`: field 1 is the flags packed by
/// `FED_IntegerCodedBoolVector::BoolVecToInt`, field 2 the list.
/// @param flags at most 32
QUILON_EXPORT void SetElementMatrixInfo(FED_Database& db, const FED_DataDescriptor& desc, int elementId,
                                        const std::vector<bool>& flags, const std::vector<int>& intList);

/// Checks an element's nodes against the list that is stored in field 1 of its record.
/// @param nodes in order. A stored list may be longer: its first entries are compared.
/// @return whether the element has a record; a block of `desc` is created when there is none
/// @throws FED_Failure "The Node ID order within the element definition is different from the previously defined." when
///         an entry differs or the stored list is shorter
QUILON_EXPORT bool AreElementNodesDefined(FED_Database& db, const FED_DataDescriptor& desc, int elementId,
                                          const std::vector<int>& nodes);

/// Derives the requested result kinds of an iteration from blocks that are there.
///
/// Principal values, from tensor blocks:      560 of 561, 520 of 521, 570 of 571, 530 of 531. A block of principal
///     values that exists is kept as it is. They come from FEM_PrincipalValue::Calculate(), whose absolute thresholds
///     are made for stresses: derive those of strains beforehand from scaled tensors.
/// Sums, into scalar blocks that are there:   540 += 903, 541 += 913. Only indices with a record in both blocks are
///     added; the added block is then deleted, with it what had no counterpart.
///
/// Logs its start (type 5), each sum (type 5) and each block of principal values with its set indices (type 6).
/// @param requests which target kinds are wanted
/// @param iteration blocks of other iterations are left alone
/// @param unused    ignored
QUILON_EXPORT void CalculateAdditionalResults(FED_Database& db, OnfResultRequestFile& requests, int iteration,
                                              int unused);

/// Saves an error measure of averaged nodal stresses: per node the largest principal value of the tensor of standard
/// errors e, where e = sqrt(m2 / n^2) for each component, n being the number of stresses averaged; 0 for n <= 0.
/// @param desc      descriptor of the error block; its layer index is dropped
/// @param stats     stresses by node, six components; layer 0 alone is read
/// @param blockFlag handed to the id view of the block
/// @param written   null, or receives the descriptor of the block
QUILON_EXPORT void CalculateNodalStressError(FED_Database& db, const FED_DataDescriptor& desc,
                                             const FEM_AvgField<int, FEM_AvgUtil::StatData<6>, 6>& stats,
                                             bool blockFlag, std::set<FED_DataDescriptor>* written);

}  // namespace FEM_ResultUtil
