#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_DataBlockSet.h>
#include <QuilonDbConnector/FED_DataDescriptorPattern.h>

#include "support.h"

namespace conformance {
namespace {

class DatabaseConformance : public DatabaseTest
{
protected:
  std::set<FED_DataDescriptor> Listed(const FED_DataDescriptorPattern& pattern)
  {
    const std::vector<FED_DataDescriptor> keys = ConstDatabase().GetDataDescriptors(pattern);
    const std::set<FED_DataDescriptor>    unique(keys.begin(), keys.end());
    EXPECT_EQ(unique.size(), keys.size()) << "a descriptor is listed twice";
    return unique;
  }

  std::set<FED_DataDescriptor> Selected(const FED_DataDescriptorPattern& pattern)
  {
    std::set<FED_DataDescriptor> unique;
    for (FED_DataBlock* block : Database().GetDataBlocks(pattern)) {
      EXPECT_NE(block, nullptr);
      if (block == nullptr) continue;
      EXPECT_TRUE(unique.insert(block->GetDescriptor()).second) << "a block is selected twice";
    }
    return unique;
  }
};

using Keys = std::set<FED_DataDescriptor>;

TEST_F(DatabaseConformance, AFreshDatabaseIsInitialized) { EXPECT_TRUE(ConstDatabase().IsInitialized()); }

TEST_F(DatabaseConformance, AFreshDatabaseHasNoBlocks)
{
  EXPECT_TRUE(ConstDatabase().GetDataDescriptors({}).empty());
  EXPECT_TRUE(Database().GetDataBlocks({}).empty());
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory)));
}

TEST_F(DatabaseConformance, GettingABlockTwiceGivesTheSameBlock)
{
  FED_DataBlock& first = Block(Key(kHistory, 1));
  first.SetScalarAt(3, 1.5);
  FED_DataBlock& second = Block(Key(kHistory, 1));
  EXPECT_EQ(&first, &second);
  ASSERT_TRUE(second.HasRecord(3));
  EXPECT_EQ(second.GetScalarAt(3), 1.5);
  EXPECT_EQ(ConstDatabase().GetDataDescriptors({}).size(), 1U);
}

TEST_F(DatabaseConformance, EveryWayToABlockLeadsToTheSameRecords)
{
  const FED_DataDescriptor key   = Key(kHistory, 1);
  FED_DataBlock&           block = Block(key);
  block.SetScalarAt(2, 2.5);
  EXPECT_EQ(ConstDatabase().GetConstDataBlock(key).GetScalarAt(2), 2.5);
  Database().GetDataBlock(key).SetScalarAt(2, 3.5);
  EXPECT_EQ(ConstDatabase().GetConstDataBlock(key).GetScalarAt(2), 3.5);
  const std::vector<FED_DataBlock*> blocks = Database().GetDataBlocks({});
  ASSERT_EQ(blocks.size(), 1U);
  blocks[0]->SetScalarAt(2, 4.5);
  EXPECT_EQ(block.GetScalarAt(2), 4.5);
  FED_DataBlock* const inSet = FED_DataBlockSet(Database()).GetDataBlockInstance(key);
  ASSERT_NE(inSet, nullptr);
  EXPECT_EQ(inSet->GetScalarAt(2), 4.5);
}

TEST_F(DatabaseConformance, ABlockKnowsItsDescriptor)
{
  FED_DataDescriptor key = Key(kHistory, 5, -6);
  key.mask &= ~(1U << FED_DataDescriptor::LoadCase);
  EXPECT_TRUE(Block(key).GetDescriptor() == key);
  EXPECT_TRUE(ConstDatabase().GetConstDataBlock(key).GetDescriptor() == key);
}

TEST_F(DatabaseConformance, TheCatalogueGivesANewBlockItsFormat)
{
  Block(Key(kHistory)).SetScalarAt(1, 1.0);
  const double values[6] = {1, 2, 3, 4, 5, 6};
  double       back[6]   = {};
  Pool().FindOrAddIndex(kNodeKind, 100);
  Block(Key(kUserVector)).SetValuesAt(1, values);  // a block without a format would refuse
  Block(Key(kUserVector)).GetValuesAt(1, back);
  EXPECT_EQ(std::vector<double>(back, back + 6), (std::vector<double>{1, 2, 3, 0, 0, 0}));
  Block(Key(kUserTensor)).SetValuesAt(1, values);
  Block(Key(kUserTensor)).GetValuesAt(1, back);
  EXPECT_EQ(std::vector<double>(back, back + 6), (std::vector<double>{1, 2, 3, 4, 5, 6}));
  const Scratch matrix(Block(Key(kUserMatrix)));
  EXPECT_EQ(matrix->GetFieldCount(), 5U);
}

TEST_F(DatabaseConformance, AnUnknownOnfIdTakesItsFormatFromTheFirstRecord)
{
  FED_DataBlock& block = Block(Key(kUnknown));
  block.SetScalarAt(4, 1.25);
  EXPECT_EQ(block.GetScalarAt(4), 1.25);
}

TEST_F(DatabaseConformance, TheExpectedNumberOfRecordsIsOnlyAHint)
{
  FED_DataBlock& block = Database().GetOrCreateDataBlock(Key(kHistory), 1);
  for (std::size_t i = 1; i <= 50; ++i) block.SetScalarAt(i, static_cast<double>(i));
  EXPECT_EQ(block.GetSize(), 50U);
  EXPECT_EQ(Database().GetOrCreateDataBlock(Key(kHistory), 1000).GetSize(), 50U);
}

TEST_F(DatabaseConformance, CreatingABlockGivesItTheFormatOfTheString)
{
  FED_DataBlock* const block = Database().CreateDataBlock(Key(kUnknown), 1, 20, "IIbDbLbLb");
  ASSERT_NE(block, nullptr);
  const Scratch    record(*block);
  std::vector<int> types;
  for (std::size_t field = 1; field <= record->GetFieldCount(); ++field) types.push_back(record->GetFieldType(field));
  EXPECT_EQ(types, (std::vector<int>{1, 1, 9, 7, 7}));
  EXPECT_TRUE(ConstDatabase().HasDataBlock(Key(kUnknown)));
}

TEST_F(DatabaseConformance, EveryLetterOfAFormatStandsForItsType)
{
  FED_DataBlock* const block = Database().CreateDataBlock(Key(kUnknown), 0, 0, "IiFDdSVTLblbDb");
  ASSERT_NE(block, nullptr);
  const Scratch    record(*block);
  std::vector<int> types;
  for (std::size_t field = 1; field <= record->GetFieldCount(); ++field) types.push_back(record->GetFieldType(field));
  EXPECT_EQ(types, (std::vector<int>{1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9}));
}

TEST_F(DatabaseConformance, CreatingAnExistingBlockKeepsItsRecords)
{
  FED_DataBlock* const block = Database().CreateDataBlock(Key(kUnknown), 1, 1, "D");
  block->SetScalarAt(7, 0.5);
  FED_DataBlock* const again = Database().CreateDataBlock(Key(kUnknown), 1, 1, "D");
  EXPECT_EQ(block, again);
  ASSERT_TRUE(again->HasRecord(7));
  EXPECT_EQ(again->GetScalarAt(7), 0.5);
}

TEST_F(DatabaseConformance, CreatingAnExistingBlockWithAnotherFormatIsAFailure)
{
  Database().CreateDataBlock(Key(kUnknown), 1, 1, "D")->SetScalarAt(7, 0.5);
  EXPECT_THROW(Database().CreateDataBlock(Key(kUnknown), 1, 1, "V"), FED_Failure);
  EXPECT_EQ(Database().GetDataBlock(Key(kUnknown)).GetScalarAt(7), 0.5);
}

TEST_F(DatabaseConformance, AFormatThatDoesNotParseIsAFailureAndMakesNoBlock)
{
  for (const char* format : {"Q", "DQ", "L", "I b?", "5"}) {
    EXPECT_THROW(Database().CreateDataBlock(Key(kUnknown), 1, 1, format), FED_Failure) << format;
    EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kUnknown))) << format;
  }
}

TEST_F(DatabaseConformance, OnlyExactlyTheDescriptorIsThere)
{
  Block(Key(kHistory, 1, 2));
  EXPECT_TRUE(ConstDatabase().HasDataBlock(Key(kHistory, 1, 2)));
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory, 1, 3)));
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory, 1)));
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kUserHistory, 1, 2)));
}

TEST_F(DatabaseConformance, KeysThatDifferUnderAClearBitAreDifferentBlocks)
{
  FED_DataDescriptor three = Key(kHistory, 3);
  FED_DataDescriptor four  = Key(kHistory, 4);
  three.mask = four.mask = 3U;
  Block(three).SetScalarAt(1, 3.0);
  EXPECT_FALSE(ConstDatabase().HasDataBlock(four));
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory, 3)));
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory)));
  Block(four).SetScalarAt(1, 4.0);
  EXPECT_EQ(Database().GetDataBlock(three).GetScalarAt(1), 3.0);
  EXPECT_EQ(Database().GetDataBlock(four).GetScalarAt(1), 4.0);
}

TEST_F(DatabaseConformance, ADescriptorEditedInPlaceFindsTheBlockOfTheKeyBuiltWithSetInteger)
{
  Block(Key(kHistory, 3));
  FED_DataDescriptor edited = Key(kHistory);
  edited.values[3]          = 3;
  edited.mask |= 1U << 3;
  edited.cached[0] = edited.cached[1] = -1;
  EXPECT_TRUE(ConstDatabase().HasDataBlock(edited));
  EXPECT_EQ(&Block(edited), &Block(Key(kHistory, 3)));
}

TEST_F(DatabaseConformance, CachedIntegersOfAKeyChangeNothing)
{
  Block(Key(kHistory, 3)).SetScalarAt(1, 3.0);
  FED_DataDescriptor key = Key(kHistory, 3);
  key.cached[0]          = 17;
  key.cached[1]          = 18;
  EXPECT_TRUE(ConstDatabase().HasDataBlock(key));
  EXPECT_EQ(Block(key).GetScalarAt(1), 3.0);
}

TEST_F(DatabaseConformance, GettingABlockThatIsNotThereIsAFailureAndMakesNone)
{
  EXPECT_THROW(Database().GetDataBlock(Key(kHistory)), FED_Failure);
  EXPECT_THROW(ConstDatabase().GetConstDataBlock(Key(kHistory)), FED_Failure);
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory)));
}

TEST_F(DatabaseConformance, ADefaultPatternListsTheWholeDatabase)
{
  const Keys keys = {Key(kHistory, 1), Key(kHistory, 2), Key(kUserScalar), Key(kUnknown, -1, -2), FED_DataDescriptor()};
  for (const FED_DataDescriptor& key : keys) Block(key);
  EXPECT_TRUE(Listed({}) == keys);
}

TEST_F(DatabaseConformance, DescriptorsAndBlocksOfAPatternAreTheSame)
{
  const Keys keys = {Key(kHistory, 1), Key(kHistory, 2), Key(kUserScalar, 1), Key(kUserScalar, 2)};
  for (const FED_DataDescriptor& key : keys) Block(key);
  FED_DataDescriptorPattern pattern;
  EXPECT_TRUE(Selected(pattern) == keys);
  EXPECT_TRUE(Listed(pattern) == keys);
  pattern.SetEqual(FED_DataDescriptor::OnfId, kUserScalar);
  const Keys scalars = {Key(kUserScalar, 1), Key(kUserScalar, 2)};
  EXPECT_TRUE(Selected(pattern) == scalars);
  EXPECT_TRUE(Listed(pattern) == scalars);
  pattern.SetEqual(FED_DataDescriptor::Iteration, 2);
  EXPECT_TRUE(Selected(pattern).empty());
  EXPECT_TRUE(Listed(pattern).empty());
}

TEST_F(DatabaseConformance, PatternsCompareRawValuesWhateverTheMaskSays)
{
  FED_DataDescriptor cleared = Key(kHistory, 2);
  cleared.mask               = 3U;
  Block(cleared);
  Block(Key(kHistory));
  FED_DataDescriptorPattern two;
  two.SetEqual(FED_DataDescriptor::LoadCase, 2);
  EXPECT_TRUE(Selected(two) == Keys{cleared});
  EXPECT_TRUE(Listed(two) == Keys{cleared});
  FED_DataDescriptorPattern zero;
  zero.SetEqual(FED_DataDescriptor::LoadCase, 0);
  EXPECT_TRUE(Selected(zero) == Keys{Key(kHistory)});
  EXPECT_TRUE(Listed(zero) == Keys{Key(kHistory)});
}

TEST_F(DatabaseConformance, DeletingABlockRemovesIt)
{
  Block(Key(kHistory, 1)).SetScalarAt(1, 1.0);
  Database().DeleteDataBlock(Key(kHistory, 1));
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory, 1)));
  EXPECT_TRUE(Listed({}).empty());
  EXPECT_TRUE(Selected({}).empty());
}

TEST_F(DatabaseConformance, ABlockMadeAfterDeletingItsKeyIsEmpty)
{
  Block(Key(kHistory, 1)).SetScalarAt(1, 1.0);
  Database().DeleteDataBlock(Key(kHistory, 1));
  const FED_DataBlock& fresh = Block(Key(kHistory, 1));
  EXPECT_FALSE(fresh.HasRecord(1));
  EXPECT_EQ(fresh.GetMaxIndex(), 0U);
}

TEST_F(DatabaseConformance, DeletingABlockLeavesTheOthersAlone)
{
  Block(Key(kHistory, 1)).SetScalarAt(1, 1.0);
  Block(Key(kHistory, 2)).SetScalarAt(1, 2.0);
  FED_DataDescriptor cleared = Key(kHistory, 1);
  cleared.mask               = 3U;
  Block(cleared).SetScalarAt(1, 3.0);
  Database().DeleteDataBlock(Key(kHistory, 1));
  EXPECT_TRUE(Listed({}) == (Keys{Key(kHistory, 2), cleared}));
  EXPECT_EQ(Database().GetDataBlock(Key(kHistory, 2)).GetScalarAt(1), 2.0);
  EXPECT_EQ(Database().GetDataBlock(cleared).GetScalarAt(1), 3.0);
}

TEST_F(DatabaseConformance, DeletingABlockThatIsNotThereIsAFailure)
{
  Block(Key(kHistory, 2));
  EXPECT_THROW(Database().DeleteDataBlock(Key(kHistory, 1)), FED_Failure);
  EXPECT_TRUE(Listed({}) == Keys{Key(kHistory, 2)});
}

TEST_F(DatabaseConformance, BlocksStayWhereTheyAreWhileOthersComeAndGo)
{
  FED_DataBlock& block = Block(Key(kHistory, 500));
  block.SetScalarAt(1, 1.0);
  for (int loadCase = 1; loadCase <= 100; ++loadCase) Block(Key(kHistory, loadCase));
  for (int loadCase = 1; loadCase <= 100; loadCase += 2) Database().DeleteDataBlock(Key(kHistory, loadCase));
  EXPECT_EQ(&Block(Key(kHistory, 500)), &block);
  EXPECT_EQ(block.GetScalarAt(1), 1.0);
}

TEST_F(DatabaseConformance, ABlockSetAnswersAMissingBlockWithNull)
{
  Block(Key(kHistory, 1));
  const FED_DataBlockSet blocks(Database());
  EXPECT_NE(blocks.GetDataBlockInstance(Key(kHistory, 1)), nullptr);
  EXPECT_EQ(blocks.GetDataBlockInstance(Key(kHistory, 2)), nullptr);
  EXPECT_FALSE(ConstDatabase().HasDataBlock(Key(kHistory, 2)));
}

TEST_F(DatabaseConformance, AUserKindHasNoNameAtFirst)
{
  EXPECT_EQ(ConstDatabase().GetUserKindName(static_cast<FED_OnfId>(kUserScalar)), "");
}

TEST_F(DatabaseConformance, NamesOfUserKindsAreKeptWhereTheDatabaseHasRoomForThem)
{
  Database().SetUserKindName(static_cast<FED_OnfId>(kUserScalar), "wear depth");
  Database().SetUserKindName(static_cast<FED_OnfId>(kUserVector), "slip");
  Database().SetUserKindName(static_cast<FED_OnfId>(kUserVector), "slip rate");
  const bool keeps = factory_->KeepsUserKindNames();
  EXPECT_EQ(ConstDatabase().GetUserKindName(static_cast<FED_OnfId>(kUserScalar)), keeps ? "wear depth" : "");
  EXPECT_EQ(ConstDatabase().GetUserKindName(static_cast<FED_OnfId>(kUserVector)), keeps ? "slip rate" : "");
  EXPECT_EQ(ConstDatabase().GetUserKindName(static_cast<FED_OnfId>(kUserTensor)), "");
}

TEST_F(DatabaseConformance, TwoDatabasesShareNothing)
{
  const std::unique_ptr<FED_Database> other = factory_->Create();
  Block(Key(kHistory)).SetScalarAt(1, 1.0);
  Pool().FindOrAddIndex(kNodeKind, 100);
  EXPECT_FALSE(other->HasDataBlock(Key(kHistory)));
  EXPECT_EQ(other->GetIdMapsPool().FindIndex(kNodeKind, 100), FED_IdMapsPool::npos);
}

class PoolConformance : public DatabaseTest
{};

constexpr std::size_t npos = FED_IdMapsPool::npos;

TEST_F(PoolConformance, IndicesCountFrom1InTheOrderOfFirstUse)
{
  EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, 30), 1U);
  EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, 10), 2U);
  EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, 20), 3U);
  EXPECT_EQ(Pool().FindIndex(kNodeKind, 10), 2U);
}

TEST_F(PoolConformance, AnIdKeepsItsIndex)
{
  const std::size_t index = Pool().FindOrAddIndex(kNodeKind, 30);
  for (int id = 0; id < 200; ++id) Pool().FindOrAddIndex(kNodeKind, 7 * id + 1000);
  EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, 30), index);
  EXPECT_EQ(Pool().FindIndex(kNodeKind, 30), index);
}

TEST_F(PoolConformance, FindingAnUnknownIdAddsNone)
{
  EXPECT_EQ(Pool().FindIndex(kNodeKind, 30), npos);
  EXPECT_EQ(Pool().FindIndex(kNodeKind, 30), npos);
  EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, 40), 1U);
}

TEST_F(PoolConformance, EveryKindHasAMapOfItsOwn)
{
  EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, 30), 1U);
  EXPECT_EQ(Pool().FindIndex(kElementKind, 30), npos);
  EXPECT_EQ(Pool().FindOrAddIndex(kElementKind, 99), 1U);
  EXPECT_EQ(Pool().FindOrAddIndex(kElementKind, 30), 2U);
  EXPECT_EQ(Pool().FindIndex(kNodeKind, 30), 1U);
  for (const int kind : {2, 3, 4, 5, 13, 14}) EXPECT_EQ(Pool().FindOrAddIndex(kind, 30), 1U) << kind;
}

TEST_F(PoolConformance, NegativeIdsAndTheEndsOfTheRangeAreIds)
{
  const int   ids[] = {-1, 0, 1, -2147483647 - 1, 2147483647};
  std::size_t next  = 1;
  for (const int id : ids) EXPECT_EQ(Pool().FindOrAddIndex(kNodeKind, id), next++) << id;
  next = 1;
  for (const int id : ids) {
    EXPECT_EQ(Pool().FindIndex(kNodeKind, id), next) << id;
    EXPECT_EQ(Pool().GetId(kNodeKind, next), id);
    ++next;
  }
}

TEST_F(PoolConformance, TheIdOfAnIndexIsTheOneThatHasIt)
{
  for (const int id : {30, 10, 20}) Pool().FindOrAddIndex(kNodeKind, id);
  EXPECT_EQ(Pool().GetId(kNodeKind, 1), 30);
  EXPECT_EQ(Pool().GetId(kNodeKind, 2), 10);
  EXPECT_EQ(Pool().GetId(kNodeKind, 3), 20);
}

TEST_F(PoolConformance, AnIndexThatNoIdHasIsAFailure)
{
  Pool().FindOrAddIndex(kNodeKind, 30);
  EXPECT_THROW(Pool().GetId(kNodeKind, 0), FED_Failure);
  EXPECT_THROW(Pool().GetId(kNodeKind, 2), FED_Failure);
  EXPECT_THROW(Pool().GetId(kElementKind, 1), FED_Failure);
}

TEST_F(PoolConformance, AnIndexOfTheUnknownKindReadsAsItselfUntilAnIdHasIt)
{
  EXPECT_EQ(Pool().GetId(kUnknownKind, 5), 5);
  EXPECT_EQ(Pool().FindOrAddIndex(kUnknownKind, 77), 1U);
  EXPECT_EQ(Pool().GetId(kUnknownKind, 1), 77);
  EXPECT_EQ(Pool().GetId(kUnknownKind, 2), 2);
}

TEST_F(PoolConformance, AConstDatabaseShowsTheSameMaps)
{
  Pool().FindOrAddIndex(kNodeKind, 30);
  EXPECT_EQ(ConstDatabase().GetIdMapsPool().FindIndex(kNodeKind, 30), 1U);
  EXPECT_EQ(ConstDatabase().GetIdMapsPool().GetId(kNodeKind, 1), 30);
}

/// The least that a database can be: the operations without a default, and no room for names.
class NamelessDatabase : public FED_Database
{
public:
  bool           IsInitialized() const override { return false; }
  FED_DataBlock* CreateDataBlock(const FED_DataDescriptor&, std::size_t, std::size_t, const std::string&) override
  {
    return nullptr;
  }
  FED_DataBlock&                  GetOrCreateDataBlock(const FED_DataDescriptor&, std::size_t) override { Refuse(); }
  bool                            HasDataBlock(const FED_DataDescriptor&) const override { return false; }
  const FED_DataBlock&            GetConstDataBlock(const FED_DataDescriptor&) const override { Refuse(); }
  FED_DataBlock&                  GetDataBlock(const FED_DataDescriptor&) override { Refuse(); }
  std::vector<FED_DataBlock*>     GetDataBlocks(const FED_DataDescriptorPattern&) override { return {}; }
  void                            DeleteDataBlock(const FED_DataDescriptor&) override { Refuse(); }
  std::vector<FED_DataDescriptor> GetDataDescriptors(const FED_DataDescriptorPattern&) const override { return {}; }
  FED_IdMapsPool&                 GetIdMapsPool() override { Refuse(); }
  const FED_IdMapsPool&           GetIdMapsPool() const override { Refuse(); }

private:
  [[noreturn]] static void Refuse() { throw FED_Failure("no block here", "|%P|Conformance|NamelessDatabase"); }
};

TEST(ForeignDatabaseConformance, ADatabaseWithoutRoomForNamesKeepsTheDefaults)
{
  NamelessDatabase database;
  database.SetUserKindName(static_cast<FED_OnfId>(kUserScalar), "wear depth");
  EXPECT_EQ(database.GetUserKindName(static_cast<FED_OnfId>(kUserScalar)), "");
}

TEST(ForeignDatabaseConformance, ABlockSetAsksAnyDatabase)
{
  NamelessDatabase database;
  EXPECT_EQ(FED_DataBlockSet(database).GetDataBlockInstance(Key(kHistory)), nullptr);
}

}  // namespace
}  // namespace conformance
