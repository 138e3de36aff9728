#include "terminal/Table.h"

#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "terminal/Output.h"

namespace {

using quilon::Output;
using quilon::TableStyle;
using quilon::TableWriter;

/// A file in memory of the system, read back whole.
class Sheet
{
public:
  Sheet() : file_(std::tmpfile()), output(file_) {}
  Sheet(const Sheet&)            = delete;
  Sheet& operator=(const Sheet&) = delete;
  ~Sheet() { std::fclose(file_); }

  std::string Read()
  {
    output.Flush();
    std::rewind(file_);
    std::string text;
    for (int c = std::fgetc(file_); c != EOF; c = std::fgetc(file_)) text += static_cast<char>(c);
    return text;
  }

private:
  std::FILE* file_;

public:
  Output output;
};

std::string Written(TableStyle style, const std::vector<std::vector<std::string>>& rows, bool bold = false)
{
  Sheet       sheet;
  TableWriter table(sheet.output, style, bold, {{"id", false}, {"name", true}, {"value", false}});
  for (const std::vector<std::string>& row : rows) table.Row(row);
  table.Finish();
  return sheet.Read();
}

TEST(Table, AlignsNumbersRightAndTextsLeft)
{
  EXPECT_EQ(Written(TableStyle::Aligned, {{"1", "a", "0.5"}, {"1000", "long name", "-12"}}),
            "  id  name       value\n"
            "   1  a            0.5\n"
            "1000  long name    -12\n");
}

TEST(Table, RowsThatStayAreWrittenAsOthers)
{
  for (const TableStyle style : {TableStyle::Aligned, TableStyle::Plain, TableStyle::Csv}) {
    Sheet                          sheet;
    Sheet                          other;
    TableWriter                    table(sheet.output, style, false, {{"id", false}, {"name", true}});
    TableWriter                    moved(other.output, style, false, {{"id", false}, {"name", true}});
    const std::vector<std::string> names = {"a", "b,\"", "=x", "\x1b", "\xc3\xa4"};
    std::vector<std::string>       cells(2);
    for (std::size_t i = 0; i < TableWriter::kRowsHeld + 100; ++i) {
      cells[0] = std::to_string(i * 37);
      cells[1] = names[i % names.size()];
      table.Row(cells);
      moved.Row({cells[0], cells[1]});
    }
    table.Finish();
    moved.Finish();
    EXPECT_EQ(sheet.Read(), other.Read());
    EXPECT_EQ(cells[1], names[(TableWriter::kRowsHeld + 99) % names.size()]);
  }
}

TEST(Table, SeparatesPlainCellsByTabs)
{
  EXPECT_EQ(Written(TableStyle::Plain, {{"1", "a b", "0.5"}}), "id\tname\tvalue\n1\ta b\t0.5\n");
}

TEST(Table, QuotesCsvCellsThatNeedIt)
{
  EXPECT_EQ(Written(TableStyle::Csv, {{"1", "a,b", "2"}, {"2", "say \"x\"", ""}, {"3", "two\nlines", "4"}}),
            "id,name,value\n1,\"a,b\",2\n2,\"say \"\"x\"\"\",\n3,\"two\nlines\",4\n");
}

TEST(Table, WithoutRowsHasItsHeader)
{
  EXPECT_EQ(Written(TableStyle::Aligned, {}), "id  name  value\n");
  EXPECT_EQ(Written(TableStyle::Plain, {}), "id\tname\tvalue\n");
  EXPECT_EQ(Written(TableStyle::Csv, {}), "id,name,value\n");
}

TEST(Table, CountsCharactersAndNotBytes)
{
  EXPECT_EQ(Written(TableStyle::Aligned, {{"1", "\xc3\xa4", "2"}, {"2", "abcd", "3"}}),
            "id  name  value\n 1  \xc3\xa4         2\n 2  abcd      3\n");
}

TEST(Table, ControlCharactersOfNamesNeverReachTheTerminal)
{
  EXPECT_EQ(Written(TableStyle::Aligned, {{"1", "\x1b[31m", "2"}}), "id  name      value\n 1  \\x1b[31m      2\n");
  EXPECT_EQ(Written(TableStyle::Plain, {{"1", "a\tb", "2"}}), "id\tname\tvalue\n1\ta\\tb\t2\n");
  EXPECT_EQ(Written(TableStyle::Csv, {{"1", "\x1b[31m\xc2\x9b,\xe2\x80\xae", "2"}}),
            "id,name,value\n1,\"\\x1b[31m\\u009b,\\u202e\",2\n");
  EXPECT_EQ(Written(TableStyle::Csv, {{"1", "a\tb\nc", "2"}}), "id,name,value\n1,\"a\tb\nc\",2\n")
      << "ends of lines belong to cells";
}

TEST(Table, SpreadsheetsTakeNamesForTextAndNumbersForNumbers)
{
  EXPECT_EQ(
      Written(TableStyle::Csv, {{"-1", "=1+2", "-2.5"}, {"1", "@a", "+3"}, {"1", "-x", "nan"}, {"1", "+y", "-inf"}}),
      "id,name,value\n-1,'=1+2,-2.5\n1,'@a,+3\n1,'-x,nan\n1,'+y,-inf\n");
  EXPECT_EQ(Written(TableStyle::Csv, {{"1", "-2.5", "1"}, {"1", "-", "1"}, {"1", "a=b", "1"}}),
            "id,name,value\n1,-2.5,1\n1,-,1\n1,a=b,1\n");
  EXPECT_EQ(Written(TableStyle::Plain, {{"1", "=1+2", "2"}}), "id\tname\tvalue\n1\t=1+2\t2\n");
}

TEST(Table, HeaderIsBoldWhereAskedFor)
{
  EXPECT_EQ(Written(TableStyle::Aligned, {}, true), "\x1b[1mid  name  value\x1b[0m\n");
}

std::string WrittenWithin(std::size_t width, const std::vector<std::string>& row)
{
  Sheet       sheet;
  TableWriter table(sheet.output, TableStyle::Aligned, false,
                    {{"id", false}, {"name", true}, {"value", false}, {"other", true}}, width);
  table.Row(row);
  table.Finish();
  return sheet.Read();
}

// 24 characters with gaps of two, 21 with gaps of one.
TEST(Table, TooWideByItsGapsHasNarrowOnes)
{
  const std::vector<std::string> row = {"1", "abcde", "12345", "a text"};
  EXPECT_EQ(WrittenWithin(24, row), "id  name   value  other\n 1  abcde  12345  a text\n");
  EXPECT_EQ(WrittenWithin(23, row), "id name  value other\n 1 abcde 12345 a text\n");
}

TEST(Table, TooWideByItsTextsCutsTheWidest)
{
  // With gaps of one it has 2 + 20 + 5 + 24 + 3 = 54 characters.
  const std::vector<std::string> row = {"1", "twenty characters---", "12345", "twenty-four characters--"};
  EXPECT_EQ(WrittenWithin(54, row),
            "id name                 value other\n 1 twenty characters--- 12345 twenty-four characters--\n");
  EXPECT_EQ(WrittenWithin(51, row),
            "id name                 value other\n 1 twenty characters--- 12345 twenty-four charac...\n");
  EXPECT_EQ(WrittenWithin(42, row), "id name             value other\n 1 twenty charac... 12345 twenty-four c...\n");
}

TEST(Table, TooWideByItsColumnsGoesOnInFurtherLinesAndCutsNothing)
{
  const std::vector<std::string> row = {"1", "twenty characters---", "12345", "twenty-four characters--"};
  EXPECT_EQ(
      WrittenWithin(41, row),
      "id  name                  value\n    other\n 1  twenty characters---  12345\n    twenty-four characters--\n");
  EXPECT_EQ(WrittenWithin(1, {"1", "a", "2", "b"}), "id\n    name\n    value\n    other\n 1\n    a\n        2\n    b\n")
      << "a column is never broken";
}

TEST(Table, CutsBetweenCharactersAndNotBytes)
{
  std::string name;
  for (int i = 0; i < 20; ++i) name += "\xc3\xa4";
  std::string cut;
  for (int i = 0; i < 14; ++i) cut += "\xc3\xa4";
  EXPECT_EQ(WrittenWithin(32, {"1", name, "1", "b"}), "id name              value other\n 1 " + cut + "...     1 b\n");
}

TEST(Table, KeepsItsWidthsBeyondTheRowsItHolds)
{
  Sheet       sheet;
  TableWriter table(sheet.output, TableStyle::Aligned, false, {{"a", false}, {"b", false}});
  for (std::size_t i = 0; i < TableWriter::kRowsHeld; ++i) table.Row({"1", "2"});
  table.Row({"1000", "3"});
  table.Finish();
  std::string expected = "a  b\n";
  for (std::size_t i = 0; i < TableWriter::kRowsHeld; ++i) expected += "1  2\n";
  EXPECT_EQ(sheet.Read(), expected + "1000  3\n");
}

}  // namespace
