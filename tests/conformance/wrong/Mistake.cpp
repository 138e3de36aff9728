#include "Mistake.h"

namespace conformance {

namespace {

// clang-format off
constexpr MistakeRow kMistakes[] = {
    {Mistake::IsNeverInitialized,                 "is-never-initialized",            "DatabaseConformance.AFreshDatabaseIsInitialized"},
    {Mistake::MakesAFreshBlockEachTime,           "fresh-block-each-time",           "DatabaseConformance.GettingABlockTwiceGivesTheSameBlock"},
    {Mistake::HasBlocksByMaskedValues,            "has-blocks-by-masked-values",     "DatabaseConformance.KeysThatDifferUnderAClearBitAreDifferentBlocks"},
    {Mistake::MakesTheBlockThatIsAskedFor,        "makes-the-block-asked-for",       "DatabaseConformance.GettingABlockThatIsNotThereIsAFailureAndMakesNone"},
    {Mistake::EmptiesABlockThatIsMadeAgain,       "empties-block-made-again",        "DatabaseConformance.CreatingAnExistingBlockKeepsItsRecords"},
    {Mistake::TakesAnyFormatForAnExistingBlock,   "takes-any-format",                "DatabaseConformance.CreatingAnExistingBlockWithAnotherFormatIsAFailure"},
    {Mistake::TakesAFormatThatDoesNotParse,       "takes-bad-format",                "DatabaseConformance.AFormatThatDoesNotParseIsAFailureAndMakesNoBlock"},
    {Mistake::ForgetsTheCatalogue,                "forgets-the-catalogue",           "DatabaseConformance.TheCatalogueGivesANewBlockItsFormat"},
    {Mistake::ForgetsTheLettersOfPairs,           "forgets-letters-of-pairs",        "DatabaseConformance.EveryLetterOfAFormatStandsForItsType"},
    {Mistake::MissesADescriptor,                  "misses-a-descriptor",             "DatabaseConformance.ADefaultPatternListsTheWholeDatabase"},
    {Mistake::MissesABlock,                       "misses-a-block",                  "DatabaseConformance.DescriptorsAndBlocksOfAPatternAreTheSame"},
    {Mistake::MatchesByMaskedValues,              "matches-by-masked-values",        "DatabaseConformance.PatternsCompareRawValuesWhateverTheMaskSays"},
    {Mistake::DeletesNothing,                     "deletes-nothing",                 "DatabaseConformance.DeletingABlockRemovesIt"},
    {Mistake::DeletesTheKeyWithAnotherMaskToo,    "deletes-key-with-another-mask",   "DatabaseConformance.DeletingABlockLeavesTheOthersAlone"},
    {Mistake::DeletesWhatIsNotThere,              "deletes-what-is-not-there",       "DatabaseConformance.DeletingABlockThatIsNotThereIsAFailure"},
    {Mistake::ForgetsNames,                       "forgets-names",                   "DatabaseConformance.NamesOfUserKindsAreKeptWhereTheDatabaseHasRoomForThem"},
    {Mistake::ShowsOtherMapsWhenConst,            "other-maps-when-const",           "PoolConformance.AConstDatabaseShowsTheSameMaps"},
    {Mistake::SharesIdsBetweenKinds,              "shares-ids-between-kinds",        "PoolConformance.EveryKindHasAMapOfItsOwn"},
    {Mistake::RejectsNegativeIds,                 "rejects-negative-ids",            "PoolConformance.NegativeIdsAndTheEndsOfTheRangeAreIds"},
    {Mistake::AddsIdsThatAreLookedFor,            "adds-ids-looked-for",             "PoolConformance.FindingAnUnknownIdAddsNone"},
    {Mistake::CountsIndicesFromZero,              "counts-indices-from-zero",        "PoolConformance.IndicesCountFrom1InTheOrderOfFirstUse"},
    {Mistake::InventsIds,                         "invents-ids",                     "PoolConformance.AnIndexThatNoIdHasIsAFailure"},
    {Mistake::KnowsNoIdsOfUnknownKinds,           "no-ids-of-unknown-kinds",         "PoolConformance.AnIndexOfTheUnknownKindReadsAsItselfUntilAnIdHasIt"},
    {Mistake::HasEveryRecord,                     "has-every-record",                "BlockConformance.AnEmptyBlockHasNoRecordAndSizeZero"},
    {Mistake::VisitsEmptyIndices,                 "visits-empty-indices",            "BlockConformance.IterationVisitsTheIndicesWithRecordsAscending"},
    {Mistake::PassesOverTheIndexAskedFor,         "passes-over-the-index",           "BlockConformance.TheNextIndexIsTheLowestWithARecordFromThereOn"},
    {Mistake::CountsOneTooMany,                   "counts-one-too-many",             "BlockConformance.SizeIsTheHighestIndexWhateverTheGaps"},
    {Mistake::TakesTheNumberOfRecordsForTheHighestIndex, "count-for-highest-index",  "BlockConformance.MaxIndexIsTheHighestIndexWhateverTheGaps"},
    {Mistake::RejectsIndexZero,                   "rejects-index-zero",              "BlockConformance.ALoneRecordAtIndexZeroIsSeenByIterationButNotByAWalkFrom1"},
    {Mistake::KeepsTheFirstScalar,                "keeps-the-first-scalar",          "BlockConformance.SettingAScalarReplacesTheOneThere"},
    {Mistake::RoundsScalarsToFloat,               "rounds-scalars-to-float",         "BlockConformance.ScalarsKeepTheirBits"},
    {Mistake::ReadsMissingScalarsAsZero,          "missing-scalars-are-zero",        "BlockConformance.AScalarThatIsNotThereIsAFailure"},
    {Mistake::DropsTheLastValue,                  "drops-the-last-value",            "BlockConformance.ValuesComeBackWithEveryComponent"},
    {Mistake::TakesAnAbsurdIndex,                 "takes-an-absurd-index",           "BlockConformance.AnAbsurdIndexIsAFailure"},
    {Mistake::AppendsARecordInsteadOfReplacing,   "appends-records",                 "RecordConformance.SetRecordReplacesTheRecordThere"},
    {Mistake::KeepsTheScratchRecordItself,        "keeps-the-scratch-record",        "RecordConformance.TheBlockStoresACopyOfTheScratchRecord"},
    {Mistake::DropsTheLastListElement,            "drops-the-last-list-element",     "RecordConformance.EveryFieldTypeIsStoredAndReadBack"},
    {Mistake::ReadsMissingRecordsAsTheyWere,      "missing-records-are-read",        "RecordConformance.ReadingARecordThatIsNotThereIsAFailure"},
    {Mistake::LosesTheSignOfZeroOnDisk,           "disk-loses-sign-of-zero",         "PersistenceConformance.ScalarsKeepTheirBits"},
    {Mistake::LosesEmptyBlocksOnDisk,             "disk-loses-empty-blocks",         "PersistenceConformance.EmptyBlocksStayWithTheirFormat"},
    {Mistake::LosesValuesUnderClearBitsOnDisk,    "disk-loses-values-under-clear-bits", "PersistenceConformance.KeysStayTheSameToTheValueUnderAClearBit"},
    {Mistake::LosesIdsOnDisk,                     "disk-loses-ids",                  "PersistenceConformance.RecordsStayWithTheirIds"},
    {Mistake::KeepsDeletedBlocksOnDisk,           "disk-keeps-deleted-blocks",       "PersistenceConformance.DeletedBlocksStayDeleted"},
    {Mistake::LosesNamesOnDisk,                   "disk-loses-names",                "PersistenceConformance.NamesOfUserKindsStay"},
};
// clang-format on

}  // namespace

std::span<const MistakeRow> Mistakes() { return kMistakes; }

Mistake FindMistake(const std::string& name)
{
  for (const MistakeRow& row : kMistakes)
    if (name == row.name) return row.mistake;
  return Mistake::None;
}

}  // namespace conformance
