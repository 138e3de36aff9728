#pragma once

/// @file
/// Result blocks between ONF text results and the working (VTM) database.

#include "quilon_language.h"

#include <map>
#include <string>

#include <QuilonDbConnector/FED_DataDescriptor.h>
#include <QuilonDbConnector/FED_DataDescriptorPattern.h>
#include <QuilonUtilities/QuilonContainer.h>

#include "quilon_export.h"

class FED_Database;

/// Each function opens the ONF results at a path as a `QuilonOnfTxtDatabase`, and releases and closes them before it
/// returns. When something throws, they are closed without a release. What the databases throw passes through. The VTM
/// database is the caller's.
///
/// Ids: a record of an ONF id of entity kind 0 to 14 goes by its entity id, one of kind 15 or more by its block index.
///
/// Failures and log lines carry the tag "|%P|QuilonDbDataTools|QuilonOnfToVtm", log lines the source
/// "src/QuilonOnfToVtm".
namespace QuilonOnfToVtm {

/// Reads a block of scalars, by ascending block index.
///
/// The walk stops only after more than ids.GetSize() records, so a block with more records than the ids have room for
/// has one more written, at position ids.GetSize(). Callers give both arrays room for ids.GetSize() + 1 elements.
/// @param ids    receives the id of each record; the size of this span alone counts
/// @param values receives the value of each record
/// @throws FED_Failure "<path> ONF file not found."; "No blocks matching the pattern found" when there is no block of
///         the descriptor
QUILON_EXPORT void CopyOnfToScalar(const std::wstring& onfPath, QuilonContainer::Span<int> ids,
                                   QuilonContainer::Span<double> values, const FED_DataDescriptor& descriptor);

/// Reads a block of vectors as CopyOnfToScalar() does scalars; all four arrays have room for ids.GetSize() + 1
/// elements.
QUILON_EXPORT void CopyOnfToVector(const std::wstring& onfPath, QuilonContainer::Span<int> ids,
                                   QuilonContainer::Span<double> x, QuilonContainer::Span<double> y,
                                   QuilonContainer::Span<double> z, const FED_DataDescriptor& descriptor);

/// Copies the matching ONF blocks into the VTM database, in the order in which the ONF database lists them. A VTM
/// record with the id of a copied one is overwritten, other records stay. Records stay with their ids, whatever index
/// the VTM database gives them.
///
/// Logs "ONF has %Iu datablocks " (type 5, line 70) and for each block "Writing %s to VTM" (type 5, line 100). When
/// nothing matches, "No blocks matching the pattern found for pattern %s" (type 4, line 128) and nothing is copied:
/// that is no error here.
/// @param iteration      the iteration of blocks that have none; one that a block has stays
/// @param loadCaseOffset added to the load case of blocks that have one, after the map
/// @param loadCaseMap    replaces load cases that it holds as a key; null for none
/// @throws FED_Failure "<path> ONF file not found."; "VTM database does not exist or isn't initialized"; a load case
///         that leaves the range of int. Blocks written before stay.
QUILON_EXPORT void CopyOnfToVtm(const std::wstring& onfPath, FED_Database& vtm,
                                const FED_DataDescriptorPattern& pattern, int iteration, int loadCaseOffset,
                                const std::map<int, int>* loadCaseMap);

/// Copies the matching VTM blocks that have records to the ONF results at the path, which need not exist.
/// @throws FED_Failure "No blocks matching the pattern found" when nothing was copied; the results are then left as
///         they were
QUILON_EXPORT void CopyVtmToOnf(const std::wstring& onfPath, const FED_Database& vtm,
                                const FED_DataDescriptorPattern& pattern);

}  // namespace QuilonOnfToVtm
