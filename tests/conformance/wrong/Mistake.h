#pragma once

/// @file
/// The mistakes that a WrongDatabase can make.

#include <span>
#include <string>

namespace conformance {

enum class Mistake
{
  None,
  // of the database
  IsNeverInitialized,
  MakesAFreshBlockEachTime,
  HasBlocksByMaskedValues,
  MakesTheBlockThatIsAskedFor,
  EmptiesABlockThatIsMadeAgain,
  TakesAnyFormatForAnExistingBlock,
  TakesAFormatThatDoesNotParse,
  ForgetsTheCatalogue,
  ForgetsTheLettersOfPairs,
  MissesADescriptor,
  MissesABlock,
  MatchesByMaskedValues,
  DeletesNothing,
  DeletesTheKeyWithAnotherMaskToo,
  DeletesWhatIsNotThere,
  ForgetsNames,
  ShowsOtherMapsWhenConst,
  // of its id maps
  SharesIdsBetweenKinds,
  RejectsNegativeIds,
  AddsIdsThatAreLookedFor,
  CountsIndicesFromZero,
  InventsIds,
  KnowsNoIdsOfUnknownKinds,
  // of its blocks
  HasEveryRecord,
  VisitsEmptyIndices,
  PassesOverTheIndexAskedFor,
  CountsOneTooMany,
  TakesTheNumberOfRecordsForTheHighestIndex,
  RejectsIndexZero,
  KeepsTheFirstScalar,
  RoundsScalarsToFloat,
  ReadsMissingScalarsAsZero,
  DropsTheLastValue,
  TakesAnAbsurdIndex,
  AppendsARecordInsteadOfReplacing,
  KeepsTheScratchRecordItself,
  DropsTheLastListElement,
  ReadsMissingRecordsAsTheyWere,
  // of what it keeps
  LosesTheSignOfZeroOnDisk,
  LosesEmptyBlocksOnDisk,
  LosesValuesUnderClearBitsOnDisk,
  LosesIdsOnDisk,
  KeepsDeletedBlocksOnDisk,
  LosesNamesOnDisk
};

/// A mistake and the test of the kit that tells of it.
struct MistakeRow
{
  Mistake     mistake;
  const char* name;
  const char* failingTest;  ///< "Suite.Test"
};

/// All mistakes, None left out.
std::span<const MistakeRow> Mistakes();

/// @return the mistake of the name; None when there is no such
Mistake FindMistake(const std::string& name);

}  // namespace conformance
