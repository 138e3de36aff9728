#include "bundled/FED_RecordFormat.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bundled/FED_ResultDatabase.h"
#include "QuilonUtilities/FED_Failure.h"

#include "failure_message.h"

using Types = std::vector<int>;

TEST(FED_RecordFormat, EveryTokenParsesToItsCode)
{
  EXPECT_EQ(FED_RecordFormat::Parse("IiFDdSVTLblbDb").GetTypes(), (Types{1, 10, 3, 2, 11, 4, 5, 6, 7, 8, 9}));
}

TEST(FED_RecordFormat, FormatOfStoredMatricesHasASeparatorBehindTheIntegers)
{
  EXPECT_EQ(FED_RecordFormat::Parse("IIbDbLbLb").GetTypes(), (Types{1, 1, 9, 7, 7}));
}

TEST(FED_RecordFormat, DoubleBeforeBIsAList)
{
  EXPECT_EQ(FED_RecordFormat::Parse("DDb").GetTypes(), (Types{2, 9}));
  EXPECT_EQ(FED_RecordFormat::Parse("Dbb").GetTypes(), Types{9});
}

TEST(FED_RecordFormat, OtherLettersBeforeBOnlyGetASeparator)
{
  EXPECT_EQ(FED_RecordFormat::Parse("bIbdbVbbTb").GetTypes(), (Types{1, 11, 5, 6}));
}

TEST(FED_RecordFormat, EmptyStringAndLoneSeparatorHaveNoFields)
{
  EXPECT_TRUE(FED_RecordFormat::Parse("").IsEmpty());
  EXPECT_TRUE(FED_RecordFormat::Parse("b").IsEmpty());
  EXPECT_TRUE(FED_RecordFormat().IsEmpty());
}

TEST(FED_RecordFormat, UnknownCharacterIsAFailureThatNamesStringAndPosition)
{
  EXPECT_EQ(MessageOf([] { FED_RecordFormat::Parse("IIxD"); }),
            "record format \"IIxD\": unexpected 'x' at position 3, expected one of I i F D d S V T Lb lb Db b");
  EXPECT_EQ(MessageOf([] { FED_RecordFormat::Parse(" I"); }),
            "record format \" I\": unexpected ' ' at position 1, expected one of I i F D d S V T Lb lb Db b");
}

TEST(FED_RecordFormat, ListLetterWithoutItsBIsAFailureThatNamesStringAndPosition)
{
  EXPECT_EQ(MessageOf([] { FED_RecordFormat::Parse("IL"); }),
            "record format \"IL\": 'L' at position 2 has no 'b' behind it");
  EXPECT_EQ(MessageOf([] { FED_RecordFormat::Parse("lI"); }),
            "record format \"lI\": 'l' at position 1 has no 'b' behind it");
}

TEST(FED_RecordFormat, NulCharacterIsAFailure)
{
  EXPECT_THROW(FED_RecordFormat::Parse(std::string("I\0", 2)), FED_Failure);
}

TEST(FED_RecordFormat, PrintsTheShortestStringThatParsesBack)
{
  EXPECT_EQ(FED_RecordFormat::Parse("IIbDbLbLb").ToString(), "IIDbLbLb");
  // Every pair of tokens, printed side by side, is read as the same two tokens.
  for (int first = 1; first <= 11; ++first)
    for (int second = 1; second <= 11; ++second) {
      const FED_RecordFormat format({first, second});
      EXPECT_TRUE(FED_RecordFormat::Parse(format.ToString()) == format) << format.ToString();
    }
}

TEST(FED_RecordFormat, CodeThatNoLetterSpellsIsAFailure)
{
  EXPECT_EQ(MessageOf([] {
              FED_RecordFormat({1, 12});
            }),
            "record format: type code of field 2 is 12, expected 1 to 11");
  EXPECT_THROW(FED_RecordFormat({0}), FED_Failure);
}

TEST(FED_RecordFormat, CodesOfAPairDiffer)
{
  EXPECT_FALSE(FED_RecordFormat::Parse("I") == FED_RecordFormat::Parse("i"));
  EXPECT_FALSE(FED_RecordFormat::Parse("D") == FED_RecordFormat::Parse("d"));
  EXPECT_FALSE(FED_RecordFormat::Parse("Lb") == FED_RecordFormat::Parse("lb"));
}

TEST(FED_RecordFormat, CountsDoublesOfFormatsMadeOfDoublesAlone)
{
  EXPECT_EQ(FED_RecordFormat::Parse("D").GetDoubleCount(), 1u);
  EXPECT_EQ(FED_RecordFormat::Parse("dVT").GetDoubleCount(), 10u);
  EXPECT_EQ(FED_RecordFormat::Parse("DI").GetDoubleCount(), 0u);
  EXPECT_EQ(FED_RecordFormat::Parse("Db").GetDoubleCount(), 0u);
  EXPECT_EQ(FED_RecordFormat::Parse("F").GetDoubleCount(), 0u);
  EXPECT_EQ(FED_RecordFormat().GetDoubleCount(), 0u);
}

TEST(FED_RecordFormat, ComesFromTheFieldsOfARecord)
{
  FED_ResultDatabase database;
  FED_DataBlock*     block = database.CreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ScalarHistory), 0, 0, "iTlbS");
  EXPECT_EQ(FED_RecordFormat::FromRecord(*block->CreateConstDataRecord()).ToString(), "iTlbS");
}

TEST(FED_FieldType, NoCodeOutsideOneToElevenIsAType)
{
  EXPECT_EQ(FED_FieldType::GetClass(0), FED_FieldType::None);
  EXPECT_EQ(FED_FieldType::GetClass(12), FED_FieldType::None);
  EXPECT_EQ(FED_FieldType::GetClass(-1), FED_FieldType::None);
}
