#include "terminal/Sheet.h"

#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/Output.h"

namespace {

using quilon::ByteCount;
using quilon::JsonText;
using quilon::Output;
using quilon::Sheet;
using quilon::SheetColumn;
using quilon::SheetValue;
using quilon::TableForm;

std::string Printed(const Sheet& sheet, const TableForm& form)
{
  std::FILE* const file = std::tmpfile();
  Output           output(file);
  sheet.PrintTable(output, form);
  output.Flush();
  std::rewind(file);
  std::string text;
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
  std::fclose(file);
  return text;
}

constexpr TableForm kAligned{.table = true};
constexpr TableForm kPlain{};
constexpr TableForm kCsv{.csv = true};

Sheet OneRow(SheetValue value)
{
  Sheet sheet({{"value"}});
  sheet.Row({std::move(value)});
  return sheet;
}

TEST(Sheet, StandsNumbersRightAndTextsLeft)
{
  Sheet sheet({{"name"}, {"count"}});
  sheet.Row({"a", 1});
  sheet.Row({"long", 1000});
  EXPECT_EQ(Printed(sheet, kAligned), "name  count\na         1\nlong   1000\n");
}

TEST(Sheet, RoundsNumbersForPeopleAlone)
{
  const Sheet sheet = OneRow(1.0 / 3.0);
  EXPECT_EQ(Printed(sheet, kAligned), "   value\n0.333333\n");
  EXPECT_EQ(Printed(sheet, kPlain), "value\n0.3333333333333333\n");
  EXPECT_EQ(JsonText(sheet.ToJson()), "[{\"value\":0.3333333333333333}]");
}

TEST(Sheet, WritesAFloatWithItsOwnDigits)
{
  EXPECT_EQ(Printed(OneRow(0.1F), kPlain), "value\n0.1\n");
  EXPECT_EQ(JsonText(OneRow(0.1F).ToJson()), "[{\"value\":0.1}]");
}

TEST(Sheet, GivesBytesAUnitForPeopleAlone)
{
  const Sheet sheet = OneRow(ByteCount{2048});
  EXPECT_EQ(Printed(sheet, kAligned), "  value\n2.0 KiB\n");
  EXPECT_EQ(Printed(sheet, kPlain), "value\n2048\n");
  EXPECT_EQ(JsonText(sheet.ToJson()), "[{\"value\":2048}]");
}

TEST(Sheet, ShowsThatAValueIsMissing)
{
  const Sheet sheet = OneRow({});
  EXPECT_EQ(Printed(sheet, kAligned), "value\n    -\n");
  EXPECT_EQ(Printed(sheet, kPlain), "value\n-\n");
  EXPECT_EQ(Printed(sheet, kCsv), "value\n\n");
  EXPECT_EQ(JsonText(sheet.ToJson()), "[{\"value\":null}]");
}

TEST(Sheet, WritesWhatJsonHasNoNumberForAsText)
{
  EXPECT_EQ(JsonText(OneRow(std::numeric_limits<double>::infinity()).ToJson()), "[{\"value\":\"inf\"}]");
}

TEST(Sheet, KeepsIntegersOf64Bits)
{
  EXPECT_EQ(Printed(OneRow(std::numeric_limits<std::uint64_t>::max()), kPlain), "value\n18446744073709551615\n");
  EXPECT_EQ(Printed(OneRow(std::numeric_limits<std::int64_t>::min()), kPlain), "value\n-9223372036854775808\n");
}

TEST(Sheet, LeavesOutAnOptionalColumnWithoutValues)
{
  Sheet sheet({{"id"}, {"lc", SheetColumn::Everywhere, true}, {"sub", SheetColumn::Everywhere, true}});
  sheet.Row({1, {}, {}});
  sheet.Row({2, 5, {}});
  EXPECT_EQ(Printed(sheet, kPlain), "id\tlc\n1\t-\n2\t5\n");
  EXPECT_EQ(JsonText(sheet.ToJson()), "[{\"id\":1},{\"id\":2,\"lc\":5}]");
}

TEST(Sheet, HasColumnsOfOneFormAlone)
{
  Sheet sheet({{"block", SheetColumn::Json}, {"kind"}, {"block", SheetColumn::Tables}});
  sheet.Row({"521@lc=1", "stress", "short"});
  EXPECT_EQ(Printed(sheet, kPlain), "kind\tblock\nstress\tshort\n");
  EXPECT_EQ(JsonText(sheet.ToJson()), "[{\"block\":\"521@lc=1\",\"kind\":\"stress\"}]");
}

TEST(Sheet, WithoutRowsIsItsHeader)
{
  const Sheet sheet({{"id"}, {"value"}});
  EXPECT_EQ(Printed(sheet, kCsv), "id,value\n");
  EXPECT_EQ(JsonText(sheet.ToJson()), "[]");
}

TEST(Sheet, QuotesTextsOfCsvAndNotNumbers)
{
  Sheet sheet({{"text"}, {"number"}});
  sheet.Row({"=1+1", -1});
  EXPECT_EQ(Printed(sheet, kCsv), "text,number\n'=1+1,-1\n");
}

}  // namespace
