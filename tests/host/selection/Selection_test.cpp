#include "selection/Selection.h"

#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <gtest/gtest.h>

#include "kinds/KindTable.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"

namespace {

using quilon::KindTable;
using quilon::Selection;

using Descriptors = std::vector<FED_DataDescriptor>;

/// A block of iteration 0.
FED_DataDescriptor Block(int onf, int loadCase, int substep)
{
  FED_DataDescriptor descriptor(0, static_cast<FED_OnfId>(onf));
  descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  descriptor.SetInteger(FED_DataDescriptor::Substep, substep);
  return descriptor;
}

FED_DataDescriptor Mesh(int onf) { return FED_DataDescriptor(0, static_cast<FED_OnfId>(onf)); }

FED_DataDescriptor History(int quantity, int loadCase)
{
  FED_DataDescriptor descriptor = Block(500, loadCase, 1);
  descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), quantity);
  return descriptor;
}

/// Two load cases; stress has fewer substeps than displacement.
Descriptors Blocks()
{
  return {History(501, 1),  History(505, 1),  History(501, 2),  Block(510, 1, 1), Block(510, 1, 2), Block(510, 2, 1),
          Block(510, 2, 2), Block(510, 2, 3), Block(521, 1, 1), Block(521, 2, 1), Block(521, 2, 2), Mesh(516)};
}

std::string Select(const std::string& text, const std::string& steps = "")
{
  Selection selection(text, KindTable());
  if (!steps.empty()) selection.SetSteps(steps);
  std::string names;
  for (const FED_DataDescriptor& descriptor : selection.Apply(Blocks()))
    names += (names.empty() ? "" : " ") + quilon::ToSelectionText(descriptor);
  return names;
}

std::string MessageOf(const std::string& text)
{
  try {
    const Selection selection(text, KindTable());
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

std::string StepsMessageOf(const std::string& text)
{
  try {
    Selection().SetSteps(text);
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(Selection, WithoutTextSelectsEverything) { EXPECT_EQ(Selection().Apply(Blocks()), Blocks()); }

TEST(Selection, AllSelectsEveryKind)
{
  EXPECT_EQ(Select("all@lc=2,sub=2"), "510@it=0,lc=2,sub=2 521@it=0,lc=2,sub=2");
  EXPECT_EQ(Select("*@lc=2,sub=2"), Select("all@lc=2,sub=2"));
  EXPECT_EQ(Select("@lc=2,sub=2"), Select("all@lc=2,sub=2"));
}

TEST(Selection, NamesAndOnfIdsMeanTheSame)
{
  EXPECT_EQ(Select("stress@lc=1"), "521@it=0,lc=1,sub=1");
  EXPECT_EQ(Select("nodal-stress@lc=1"), Select("stress@lc=1"));
  EXPECT_EQ(Select("521@lc=1"), Select("stress@lc=1"));
  EXPECT_EQ(Select("Nodal-Stress@lc=1"), Select("stress@lc=1"));
}

TEST(Selection, BeginningOfOneNameIsEnough) { EXPECT_EQ(Select("coord"), "516@it=0"); }

TEST(Selection, SeveralKindsAreAList)
{
  EXPECT_EQ(Select("stress,disp@lc=1,sub=1"), "510@it=0,lc=1,sub=1 521@it=0,lc=1,sub=1");
}

TEST(Selection, QuantityNameSelectsItsHistories)
{
  EXPECT_EQ(Select("time"), "500@it=0,lc=1,sub=1,quantity=501 500@it=0,lc=2,sub=1,quantity=501");
  EXPECT_EQ(Select("total-internal-energy"), "500@it=0,lc=1,sub=1,quantity=505");
  EXPECT_EQ(Select("scalar-history@lc=2"), "500@it=0,lc=2,sub=1,quantity=501");
  EXPECT_EQ(Select("scalar-history@quantity=505"), "500@it=0,lc=1,sub=1,quantity=505");
}

TEST(Selection, LongKeysMeanTheSame)
{
  EXPECT_EQ(Select("510@iteration=0,load-case=1,substep=2"), "510@it=0,lc=1,sub=2");
}

TEST(Selection, ComponentsStandBehindTheDot)
{
  EXPECT_EQ(Select("stress.mises@lc=1"), "521@it=0,lc=1,sub=1");
  const Selection selection("stress.mises, Displacement.X, stress.P1, stress.mises, time", KindTable());
  EXPECT_TRUE(selection.HasComponents());
  EXPECT_EQ(selection.ComponentsOf(521), (std::vector<std::string>{"mises", "p1"}));
  EXPECT_EQ(selection.ComponentsOf(510), std::vector<std::string>{"x"});
  EXPECT_EQ(selection.ComponentsOf(501), std::vector<std::string>{});
  EXPECT_FALSE(Selection("stress", KindTable()).HasComponents());
}

TEST(Selection, AKindThatAlsoStandsAloneHasItsStoredComponents)
{
  EXPECT_EQ(Selection("displacement.magnitude,displacement", KindTable()).ComponentsOf(510),
            (std::vector<std::string>{"magnitude", "x", "y", "z"}));
  EXPECT_EQ(Selection("582.mises,582", KindTable()).ComponentsOf(582),
            (std::vector<std::string>{"mises", "xx", "yy", "zz", "xy", "yz", "zx"}));
}

TEST(Selection, AKindWhoseNameHasADotIsMeantWhole)
{
  FED_ResultDatabase database;
  database.SetUserKindName(static_cast<FED_OnfId>(1100), "wear.x");
  const Selection selection("wear.x", KindTable(database));
  EXPECT_FALSE(selection.HasComponents());
  EXPECT_EQ(Selection("wear.x.y", KindTable(database)).ComponentsOf(1100), std::vector<std::string>{"y"});
}

TEST(Selection, ComponentThatAKindHasNotIsAnError)
{
  EXPECT_EQ(MessageOf("displacement.mises"),
            "kind displacement (510) has no component 'mises', expected one of x, y, z, magnitude");
}

/// Averages of groups 1 and 2; materials STEEL and ALU, element sets BODY (1), alu (2) and PIN (3).
class NamedGroups : public testing::Test
{
protected:
  void SetUp() override
  {
    FED_IdMapsPool& pool = database_.GetIdMapsPool();
    for (const auto& [onf, names] : {std::pair(602, std::vector<const char*>{"STEEL", "ALU"}),
                                     std::pair(601, std::vector<const char*>{"BODY", "alu", "PIN"})})
    {
      FED_IdDataBlock   view(database_.GetOrCreateDataBlock(Mesh(onf), 0), pool, true);
      FED_IdDataRecord& record = view.CreateIdDataRecord();
      int               number = 0;
      for (const char* name : names) {
        record.GetDataRecord().SetString(1, name);
        if (onf == 602)
          for (const std::size_t field : {2u, 3u, 4u}) record.GetDataRecord().SetDouble(field, 1.0);
        else
          record.SetIntList(2, std::vector<int>{7});
        view.SetRecord(++number, record);
      }
      view.DeleteIdDataRecord(record);
    }
    for (const int group : {1, 2}) {
      FED_DataDescriptor descriptor = Block(521, 1, 1);
      descriptor.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(11), group);
      const double tensor[6] = {};
      FED_IdDataBlock(database_.GetOrCreateDataBlock(descriptor, 0), pool, true).SetTensor(1, tensor);
    }
  }

  std::string Select(const std::string& text) const
  {
    std::string names;
    try {
      const Selection selection(text, KindTable(database_));
      for (const auto& descriptor : selection.Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern())))
        names += (names.empty() ? "" : " ") + quilon::ToSelectionText(descriptor);
    } catch (const FED_Failure& failure) {
      return failure.what();
    }
    return names;
  }

  FED_ResultDatabase database_;
};

TEST_F(NamedGroups, AreThoseOfTheirMaterialOrSet)
{
  EXPECT_EQ(Select("stress@group=STEEL"), "521@it=0,lc=1,sub=1,group=1");
  EXPECT_EQ(Select("stress@group=steel"), "521@it=0,lc=1,sub=1,group=1");
  EXPECT_EQ(Select("stress@group=BODY,alu"), "521@it=0,lc=1,sub=1,group=1 521@it=0,lc=1,sub=1,group=2");
  EXPECT_EQ(Select("stress@i11=2"), "521@it=0,lc=1,sub=1,group=2");
}

// Section 2 has the elements of set BODY, section 1 those of no set. The import says what groups are.
TEST_F(NamedGroups, OfSectionsAreCalledAsTheSetOfTheirElements)
{
  FED_IdMapsPool& pool = database_.GetIdMapsPool();
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(Mesh(603), 0), pool, true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    for (const auto& [element, section] : {std::pair(7, 2), std::pair(8, 1), std::pair(9, 1)}) {
      record.SetInteger(1, section);
      record.SetInteger(2, 1);
      record.SetInteger(3, 0);
      view.SetRecord(element, record);
    }
    view.DeleteIdDataRecord(record);
  }
  EXPECT_EQ(Select("stress@group=BODY"),
            "group 'BODY' is element set 1 and section 2, and there are averages of both numbers, expected a number");
  FED_DataBlock&  settings = database_.GetOrCreateDataBlock(Mesh(606), 0);
  FED_DataRecord* setting  = settings.CreateDataRecord();
  setting->SetInteger(1, 1);
  setting->SetString(2, "average-by");
  setting->SetString(3, "section");
  settings.SetRecord(1, *setting);
  EXPECT_EQ(Select("stress@group=BODY"), "521@it=0,lc=1,sub=1,group=2");
  EXPECT_EQ(Select("stress@group=section-1"), "521@it=0,lc=1,sub=1,group=1");
  EXPECT_EQ(Select("stress@group=STEEL").rfind("unknown group 'STEEL'", 0), 0U);
  setting->SetString(3, "material");
  settings.SetRecord(1, *setting);
  EXPECT_EQ(Select("stress@group=STEEL"), "521@it=0,lc=1,sub=1,group=1");
  EXPECT_EQ(Select("stress@group=STEAL"),
            "unknown group 'STEAL', did you mean 'STEEL'? The averages are of groups STEEL (1), ALU (2)");
  setting->SetString(3, "BODY,alu");
  settings.SetRecord(1, *setting);
  settings.DeleteDataRecord(setting);
  EXPECT_EQ(Select("stress@group=BODY"), "521@it=0,lc=1,sub=1,group=1");
}

TEST_F(NamedGroups, WhatIsNoGroupIsToldWithWhatThereIs)
{
  EXPECT_EQ(Select("stress@group=PIN"), "group 'PIN' is element set 3, and the averages are of groups 1, 2");
  EXPECT_EQ(Select("stress@group=STEAL"),
            "unknown group 'STEAL', did you mean 'STEEL'? The averages are of groups 1, 2");
  EXPECT_EQ(
      Select("stress@group=banana"),
      "unknown group 'banana', expected a number or the name of a material or an element set. The averages are of "
      "groups 1, 2");
  EXPECT_EQ(MessageOf("stress@group=STEEL"), "group 'STEEL' is a name, expected a number where no database is at hand");
}

TEST(Selection, ValuesAreListsAndRanges)
{
  EXPECT_EQ(Select("510@lc=2,sub=1,3"), "510@it=0,lc=2,sub=1 510@it=0,lc=2,sub=3");
  EXPECT_EQ(Select("510@lc=2,sub=2-9"), "510@it=0,lc=2,sub=2 510@it=0,lc=2,sub=3");
  EXPECT_EQ(Select("510@lc=2,sub=1:3"), "510@it=0,lc=2,sub=1 510@it=0,lc=2,sub=2 510@it=0,lc=2,sub=3");
  EXPECT_EQ(Select("510@lc=2,sub=1:3:2"), "510@it=0,lc=2,sub=1 510@it=0,lc=2,sub=3");
  EXPECT_EQ(Select("510@sub=2,lc=1-2"), "510@it=0,lc=1,sub=2 510@it=0,lc=2,sub=2");
}

TEST(Selection, NegativeValuesAreNumbers)
{
  const FED_DataDescriptor block = Block(510, -3, 1);
  EXPECT_EQ(Selection("510@lc=-5--2", KindTable()).Apply({block}).size(), 1U);
  EXPECT_EQ(Selection("510@lc=-3", KindTable()).Apply({block}).size(), 1U);
  EXPECT_EQ(Selection("510@lc=3", KindTable()).Apply({block}).size(), 0U);
}

TEST(Selection, WidestRangeHoldsEveryNumber)
{
  EXPECT_EQ(Selection("510@lc=-2147483648:2147483647", KindTable()).Apply(Blocks()).size(), 5U);
  EXPECT_EQ(Selection("510@lc=-2147483648:2147483647:2147483647", KindTable()).Apply({Block(510, -1, 1)}).size(), 1U);
}

TEST(Selection, LastIsAnsweredPerKindFromWhatOtherKeysLeave)
{
  EXPECT_EQ(Select("510,521@lc=2,sub=last"), "510@it=0,lc=2,sub=3 521@it=0,lc=2,sub=2");
  EXPECT_EQ(Select("510@lc=1,sub=last"), "510@it=0,lc=1,sub=2");
  EXPECT_EQ(Select("510@sub=first,lc=last"), "510@it=0,lc=2,sub=1");
}

TEST(Selection, LastKeysAreAnsweredInTheOrderWritten)
{
  EXPECT_EQ(Select("521@lc=last,sub=last"), "521@it=0,lc=2,sub=2");
  EXPECT_EQ(Select("521@lc=first,sub=last"), "521@it=0,lc=1,sub=1");
  EXPECT_EQ(Select("521@sub=last,lc=first"), "521@it=0,lc=2,sub=2");
}

TEST(Selection, FilterBehindLastStillCountsFirst) { EXPECT_EQ(Select("510@sub=last,lc=1"), "510@it=0,lc=1,sub=2"); }

TEST(Selection, KeyMatchesOnlyBlocksThatHaveItSet)
{
  EXPECT_EQ(Select("516@lc=0"), "");
  EXPECT_EQ(Select("@lc=none"), "516@it=0");
  EXPECT_EQ(Select("516,521@lc=none,1"), "521@it=0,lc=1,sub=1 516@it=0");
  EXPECT_EQ(Select("516@lc=all"), "516@it=0");
  EXPECT_EQ(Select("516@lc=last"), "");
}

TEST(Selection, KindThatIsNotThereSelectsNothing) { EXPECT_EQ(Select("velocity"), ""); }

// Steps of Blocks(): 1 (lc 1, sub 1), 2 (1, 2), 3 (2, 1), 4 (2, 2), 5 (2, 3).
TEST(Selection, StepsAreCountedOverTheWholeDatabase)
{
  EXPECT_EQ(Select("521", "1"), "521@it=0,lc=1,sub=1");
  EXPECT_EQ(Select("521", "3"), "521@it=0,lc=2,sub=1");
  EXPECT_EQ(Select("521", "last"), "");
  EXPECT_EQ(Select("510", "last"), "510@it=0,lc=2,sub=3");
  EXPECT_EQ(Select("510", "1:9:2"), "510@it=0,lc=1,sub=1 510@it=0,lc=2,sub=1 510@it=0,lc=2,sub=3");
}

TEST(Selection, StepsKeepHistoriesOfTheirLoadCaseAndBlocksOfNoStep)
{
  EXPECT_EQ(Select("all", "5"), "500@it=0,lc=2,sub=1,quantity=501 510@it=0,lc=2,sub=3 516@it=0");
}

TEST(Selection, ItsOwnTextSelectsABlock)
{
  for (const FED_DataDescriptor& block : Blocks()) {
    const std::string text = quilon::ToSelectionText(block);
    EXPECT_EQ(Selection(text, KindTable()).Apply(Blocks()), Descriptors{block}) << text;
  }
}

TEST(Selection, EveryKeyIsSelectable)
{
  for (int index = 0; index < FED_DataDescriptor::kNumIndices; ++index) {
    if (index == FED_DataDescriptor::OnfId) continue;
    FED_DataDescriptor block = Mesh(510);
    block.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(index), 7);
    EXPECT_EQ(Selection(quilon::ToSelectionText(block), KindTable()).Apply({Mesh(510), block}), Descriptors{block})
        << index;
  }
}

TEST(Selection, UnknownKindGetsASuggestion)
{
  EXPECT_EQ(MessageOf("strss"), "unknown kind 'strss', did you mean 'stress'?");
  EXPECT_EQ(MessageOf("stress,displacment@lc=1"), "unknown kind 'displacment', did you mean 'displacement'?");
  EXPECT_EQ(MessageOf("banana"), "unknown kind 'banana', expected an ONF id or the name of a kind");
}

TEST(Selection, BeginningOfSeveralNamesIsAnError)
{
  EXPECT_EQ(MessageOf("element-s"),
            "kind 'element-s' may be any of element-stress-principal, element-stress, element-strain-principal, "
            "element-strain, element-set, ...: write more of the name");
}

TEST(Selection, UnknownKeyGetsASuggestion)
{
  EXPECT_EQ(MessageOf("stress@lcc=1"), "unknown key 'lcc', did you mean 'lc'?");
  EXPECT_EQ(MessageOf("stress@banana=1"),
            "unknown key 'banana', expected it, an, lc, sub, inc, layer, quantity, group or i2, i7, i8, i12, i13");
}

TEST(Selection, BrokenTextsAreErrors)
{
  EXPECT_EQ(MessageOf(""), "the selection is empty, expected KIND, KIND@KEY=VALUE or @KEY=VALUE");
  EXPECT_EQ(MessageOf("stress,@lc=1"), "a kind is empty, expected an ONF id or the name of a kind");
  EXPECT_EQ(MessageOf("lc=2"), "selection 'lc=2' has no '@' before its keys, expected KIND@KEY=VALUE or @KEY=VALUE");
  EXPECT_EQ(MessageOf("stress@"), "selection 'stress@' has '' behind its '@', expected KEY=VALUE");
  EXPECT_EQ(MessageOf("stress@2"), "selection 'stress@2' has '2' behind its '@', expected KEY=VALUE");
  EXPECT_EQ(MessageOf("99999999999"), "ONF id 99999999999 is out of range, expected at most 2147483647");
}

TEST(Selection, BrokenValuesAreErrors)
{
  const std::string expected = ", expected a number, a range such as 1-9 or 1:9:2, first, last, none or all";
  for (const char* value : {"", "x", "1x", "1-", "1:", "1:2:", "1:2:3:4", "99999999999", "1-2-3", "+1"})
    EXPECT_EQ(MessageOf(std::string("521@lc=") + value), std::string("a value of 'lc' is '") + value + "'" + expected)
        << value;
  EXPECT_EQ(MessageOf("521@sub=lst"), "a value of 'sub' is 'lst', did you mean 'last'?");
  EXPECT_EQ(MessageOf("521@lc=9-5"),
            "a value of 'lc' is '9-5', a range that runs backwards, expected the least number first");
  EXPECT_EQ(MessageOf("521@lc=1:9:0"), "a value of 'lc' is '1:9:0': the stride is 0, expected 1 or more");
  EXPECT_EQ(StepsMessageOf("1:9:-1"), "a step is '1:9:-1': the stride is -1, expected 1 or more");
}

}  // namespace
