// Malformed files: each syntax rule broken once, and every file cut short at every byte.

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "onf_text_support.h"

namespace {

constexpr const char* kBlockName = "temperature_it0_lc1.onf";

/// Opens the folder and reads all blocks.
std::string MessageOfReading(const std::filesystem::path& folder)
{
  QuilonOnfTxtDatabase database(folder.wstring());
  return MessageOf([&] {
    OpenToRead(database);
    database.GetDataBlocks(FED_DataDescriptorPattern());
  });
}

/// Reads a folder with one block file.
std::string MessageOfBlock(const quilon_test::TempFolder& test, const std::string& text)
{
  WriteBytes(test / "index", std::string("onf-text-index: 1\nnames: 0\nblocks: 1\nblock: ") + kBlockName + "\n");
  WriteBytes(test / kBlockName, text);
  return MessageOfReading(test.GetPath());
}

const std::string kVersionAndKey = "onf-text-block: 1\niteration: 0\nonf: 514 temperature\nload-case: 1\n";

/// A block of nodes with one record, which stands in line 8.
std::string BlockOf(const std::string& format, const std::string& record)
{
  return kVersionAndKey + "record-format: " + format + "\nrecords-by: id\nrecords: 1\n" + record;
}

}  // namespace

TEST(OnfTextMalformed, EveryRuleOfABlockIsNamedWithFileAndLine)
{
  struct Row
  {
    std::string text;
    const char* expected;  ///< behind "FILE:"
  };
  const std::string key    = kVersionAndKey;
  const std::string d      = key + "record-format: D\n";
  const Row         rows[] = {
              // the first line
      {"", "1: expected the key \"onf-text-block\", found the end of the file"},
      {"\n", "1: expected the key \"onf-text-block\", found the end of the line"},
      {"hello\n", "1: expected the key \"onf-text-block\", found \"hello\""},
      {"onf-text-index: 1\n", "1: expected the key \"onf-text-block\", found \"onf-text-index\""},
      {"onf-text-block: 2\n", "1: format version 2 is newer than 1, the newest that this program reads"},
      {"onf-text-block: 0\n", "1: format version is 0, expected 1 or more"},
      {"onf-text-block: one\n", "1: expected a 32-bit integer, found \"one\""},
      {"onf-text-block: 1 2\n", "1: expected the end of the line, found \"2\""},
      {"onf-text-block: 1", "1: expected the end of the line, found the end of the file"},
      // the key
      {"onf-text-block: 1\niteration: 0\nload-case: 1\n", "3: expected the key \"onf\", found \"load-case\""},
      {"onf-text-block: 1\ncolour: 0\n", "2: expected the key \"onf\", found \"colour\""},
      {"onf-text-block: 1\niteration: x\n", "2: expected a 32-bit integer, found \"x\""},
      {"onf-text-block: 1\niteration: 2147483648\n", "2: expected a 32-bit integer, found \"2147483648\""},
      {"onf-text-block: 1\niteration: 1.5\n", "2: expected a 32-bit integer, found \"1.5\""},
      {"onf-text-block: 1\niteration:\n", "2: expected a 32-bit integer, found the end of the line"},
      {"onf-text-block: 1\niteration: 0 0\n", "2: expected the end of the line, found \"0\""},
      {key + "load-case: 1\n", "5: expected the key \"record-format\", found \"load-case\""},
      {key + "analysis: 1\nsubstep: 1\n", "6: expected the key \"record-format\", found \"substep\""},
      {key + "unset load-case: 1\n", "5: expected the key \"record-format\", found \"unset load-case\""},
      // format, addressing, count
      {key + "records: 1\n", "5: expected the key \"record-format\", found \"records\""},
      {key + "record-format:\n", "5: expected a record format, or - for none, found the end of the line"},
      {key + "record-format: D D\n", "5: expected the end of the line, found \"D\""},
      {key + "record-format: DX\n",
               "5: record format \"DX\": unexpected 'X' at position 2, expected one of I i F D d S V T Lb lb Db b"},
      {key + "record-format: L\n", "5: record format \"L\": 'L' at position 1 has no 'b' behind it"},
      {d + "records: 1\n", "6: expected the key \"records-by\", found \"records\""},
      {d + "records-by: index\n", "6: records of temperature go by id, found \"index\""},
      // a word is shown up to 40 bytes, its last character whole
      {d + "records-by: 1234567890123456789012345678901234567890\n",
               "6: records of temperature go by id, found \"1234567890123456789012345678901234567890\""},
      {d + "records-by: 1234567890123456789012345678901234567890x\n",
               "6: records of temperature go by id, found \"1234567890123456789012345678901234567890...\""},
      {d + "records-by: 123456789012345678901234567890123456789\xc3\xa9\n",
               "6: records of temperature go by id, found \"123456789012345678901234567890123456789...\""},
      {d + "records-by:\n", "6: records of temperature go by id, found \"\""},
      {d + "records-by: id twice\n", "6: expected the end of the line, found \"twice\""},
      {d + "records-by: id\nrecords: -1\n", "7: expected the number of records, found \"-1\""},
      {d + "records-by: id\nrecords: 99999999999999999999\n",
               "7: expected the number of records, found \"99999999999999999999\""},
      {d + "records-by: id\nrecords: 18446744073709551615\n",
               "8: 18446744073709551615 records cannot stand in the 0 bytes that follow"},
      {d + "records-by: id\nrecords: 2\n1 1\n2 2", "8: 2 records cannot stand in the 7 bytes that follow"},
      {d + "records-by: id\nrecords: 2\n1 1.00000\n", "9: expected 2 records, found the end of the file behind 1"},
      {key + "record-format: -\nrecords-by: id\nrecords: 1\n1\n", "7: records need a record format"},
      {d + "records-by: id\nrecords: 1 1\n1 1\n", "7: expected the end of the line, found \"1\""},
      // records
      {BlockOf("D", "x 1\n"), "8: expected a 32-bit integer, found \"x\""},
      {BlockOf("D", "1.5 1\n"), "8: expected a 32-bit integer, found \"1.5\""},
      {BlockOf("D", "\n1 1\n"), "8: expected a 32-bit integer, found the end of the line"},
      {BlockOf("D", "1 1\n2 2\n"), "9: expected the end of the file behind 1 records, found \"2\""},
      {BlockOf("D", "1 1\n\n"), "9: expected the end of the file behind 1 records, found the end of the line"},
      {BlockOf("D", "1 1\n "), "9: expected the end of the file behind 1 records, found the end of the file"},
      {BlockOf("D", "1 1 1\n"), "8: expected the end of the line, found \"1\""},
      {BlockOf("D", "1    \n"), "8: expected a number that a double can hold, found the end of the line"},
      {BlockOf("D", "1 1   "), "8: expected the end of the line, found the end of the file"},
      {d + "records-by: id\nrecords: 2\n7 1\n7 2\n", "9: record 7 stands twice"},
      {d + "records-by: id\nrecords: 2\n7 1\n-7 2\n", "9: record -7 follows record 7, expected ascending order"},
      {"onf-text-block: 1\nonf: 500\nrecord-format: D\nrecords-by: index\nrecords: 1\n-1 1\n",
               "6: record index is -1, expected 0 or more"},
      // numbers
      {BlockOf("D", "1 abc\n"), "8: expected a number that a double can hold, found \"abc\""},
      {BlockOf("D", "1 1,5\n"), "8: expected a number that a double can hold, found \"1,5\""},
      {BlockOf("D", "1 +1\n"), "8: expected a number that a double can hold, found \"+1\""},
      {BlockOf("D", "1 .5\n"), "8: expected a number that a double can hold, found \".5\""},
      {BlockOf("D", "1 1e\n"), "8: expected a number that a double can hold, found \"1e\""},
      {BlockOf("D", "1 0x10\n"), "8: expected a number that a double can hold, found \"0x10\""},
      {BlockOf("D", "1 1e999\n"), "8: expected a number that a double can hold, found \"1e999\""},
      {BlockOf("D", "1 infinity\n"), "8: expected a number that a double can hold, found \"infinity\""},
      {BlockOf("D", "1 NaN\n"), "8: expected a number that a double can hold, found \"NaN\""},
      {BlockOf("D", "1 nan(1)\n"), "8: expected a number that a double can hold, found \"nan(1)\""},
      {BlockOf("D", "1 nan(0x7fc00000)\n"), "8: expected a number that a double can hold, found \"nan(0x7fc00000)\""},
      {BlockOf("D", "1 nan(0x7ff0000000000000)\n"),
               "8: expected a number that a double can hold, found \"nan(0x7ff0000000000000)\""},  // an infinity
      {BlockOf("D", "1 nan(0x7ff800000000000g)\n"),
               "8: expected a number that a double can hold, found \"nan(0x7ff800000000000g)\""},
      {BlockOf("F", "1 1e39\n"), "8: expected a number that a 32-bit float can hold, found \"1e39\""},
      {BlockOf("F", "1 nan(0x7f800000)\n"),
               "8: expected a number that a 32-bit float can hold, found \"nan(0x7f800000)\""},
      {BlockOf("I", "1 1.0\n"), "8: expected a 32-bit integer, found \"1.0\""},
      {BlockOf("I", "1 2147483648\n"), "8: expected a 32-bit integer, found \"2147483648\""},
      {BlockOf("V", "1 1 2       \n"), "8: expected a number that a double can hold, found the end of the line"},
      {BlockOf("T", "1 1 2 3 4 5 6 7\n"), "8: expected the end of the line, found \"7\""},
      // lists
      {BlockOf("Lb", "1 3 1 2 3\n"), "8: expected the length of a list, such as [3], found \"3\""},
      {BlockOf("Lb", "1 [3 1 2 3\n"), "8: expected the length of a list, such as [3], found \"[3\""},
      {BlockOf("Lb", "1 [-3]\n"), "8: expected the length of a list, such as [3], found \"[-3]\""},
      {BlockOf("Lb", "1 [1]5\n"), "8: expected the length of a list, such as [3], found \"[1]5\""},
      {BlockOf("Lb", "1 [2] 1      \n"), "8: expected a 32-bit integer, found the end of the line"},
      {BlockOf("Lb", "1 [2] 1 2 3\n"), "8: expected the end of the line, found \"3\""},
      {BlockOf("Lb", "1 [4294967296] 1\n"),
               "8: a list of 4294967296 elements cannot stand in the 15 bytes that follow"},
      {BlockOf("Db", "1 [1] x\n"), "8: expected a number that a double can hold, found \"x\""},
      // strings
      {BlockOf("S", "1 text\n"), "8: expected a string in double quotes, found \"text\""},
      {BlockOf("S", "1 \"text\n"), "8: expected a double quote that closes the string, found the end of the line"},
      {BlockOf("S", "1 \"text"), "8: expected a double quote that closes the string, found the end of the file"},
      {BlockOf("S", "1 \"te\"xt\n"), "8: expected a blank behind the string, found \"xt\""},
      {BlockOf("S", "1 \"\\a\"\n"),
               "8: expected \\\", \\\\, \\n, \\r, \\t or \\x and two hexadecimal digits behind a backslash"},
      {BlockOf("S", "1 \"\\x1\"\n"),
               "8: expected \\\", \\\\, \\n, \\r, \\t or \\x and two hexadecimal digits behind a backslash"},
      {BlockOf("S", "1 \"\\xAB\"\n"),
               "8: expected \\\", \\\\, \\n, \\r, \\t or \\x and two hexadecimal digits behind a backslash"},
      {BlockOf("S", "1 \"\\\n"),
               "8: expected \\\", \\\\, \\n, \\r, \\t or \\x and two hexadecimal digits behind a backslash"},
      {BlockOf("S", "1 \"\\"),
               "8: expected \\\", \\\\, \\n, \\r, \\t or \\x and two hexadecimal digits behind a backslash"},
      // what a message shows of a file
      {BlockOf("D", std::string("1 a\x01z\n")), "8: expected a number that a double can hold, found \"a?z\""},
      {BlockOf("D", "1 " + std::string(60, 'x') + "\n"),
               "8: expected a number that a double can hold, found \"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...\""},
  };
  const quilon_test::TempFolder test;
  const std::string             prefix = (test / kBlockName).string() + ":";
  for (const Row& row : rows) EXPECT_EQ(MessageOfBlock(test, row.text), prefix + row.expected) << row.text;
}

TEST(OnfTextMalformed, WhatEditorsDoToBlanksAndLineEndsIsRead)
{
  const quilon_test::TempFolder test;
  const std::string             text =
      "onf-text-block:1 \r\n  iteration:\t0\r\nonf: 514\r\nrecord-format: bDb b\r\nrecords-by: id\r\nrecords: 1\r\n"
      "\t 7   2.50\t\r\n";
  EXPECT_EQ(MessageOfBlock(test, text), (test / kBlockName).string() + ":4: expected the end of the line, found \"b\"");
  std::string fixed = text;
  fixed.replace(fixed.find("bDb b"), 5, "bD");
  EXPECT_EQ(MessageOfBlock(test, fixed), "");
  QuilonOnfTxtDatabase database(test.GetPath().wstring());
  OpenToRead(database);
  EXPECT_EQ(GetScalar(database, FED_DataDescriptor(0, static_cast<FED_OnfId>(514)), 7), 2.5);
}

TEST(OnfTextMalformed, EveryRuleOfTheIndexIsNamedWithFileAndLine)
{
  struct Row
  {
    std::string text;
    const char* expected;
  };
  const std::string v      = "onf-text-index: 1\n";
  const std::string n      = v + "names: 0\n";
  const Row         rows[] = {
              {"", "1: expected the key \"onf-text-index\", found the end of the file"},
              {"onf-text-index: 3\n", "1: format version 3 is newer than 1, the newest that this program reads"},
              {v + "blocks: 0\n", "2: expected the key \"names\", found \"blocks\""},
              {v + "names: many\n", "2: expected the number of names, found \"many\""},
              {v + "names: 1\nblocks: 0\n", "3: expected the key \"name\", found \"blocks\""},
              {v + "names: 1\nname: 1000 x\n", "3: expected a string in double quotes, found \"x\""},
              {v + "names: 1\nname: 1000 \"\"\n", "3: the name of 1000 is empty"},
              {v + "names: 1\nname: 999 \"x\"\n", "3: ONF id 999 takes no name, expected a user kind, 1000 to 1999"},
              {v + "names: 1\nname: 2000 \"x\"\n", "3: ONF id 2000 takes no name, expected a user kind, 1000 to 1999"},
              {v + "names: 2\nname: 1001 \"x\"\nname: 1001 \"y\"\n",
               "4: the name of 1001 follows that of 1001, expected ascending ids"},
              {v + "names: 18446744073709551615\n", "3: expected the key \"name\", found the end of the file"},
              {n, "3: expected the key \"blocks\", found the end of the file"},
              {n + "blocks: 1\n", "4: expected the key \"block\", found the end of the file"},
              {n + "blocks: 0\nblock: a.onf\n", "4: expected the end of the file behind 0 blocks, found \"block:\""},
              {n + "blocks: 1\nblock: a.onf b\n", "4: expected the end of the line, found \"b\""},
              {n + "blocks: 2\nblock: b.onf\nblock: a.onf\n", "5: \"a.onf\" follows \"b.onf\", expected ascending names"},
              {n + "blocks: 2\nblock: a.onf\nblock: a.onf.new\n",
               "5: \"a.onf.new\" follows \"a.onf\", expected ascending names"},
  };
  const quilon_test::TempFolder test;
  const std::string             prefix = (test / "index").string() + ":";
  for (const Row& row : rows) {
    WriteBytes(test / "index", row.text);
    EXPECT_EQ(MessageOfReading(test.GetPath()), prefix + row.expected) << row.text;
  }
}

TEST(OnfTextMalformed, AnIndexDoesNotLeadOutOfItsFolder)
{
  const quilon_test::TempFolder test;
  for (const std::string name :
       {"../a.onf", "/etc/a.onf", "a/b.onf", "..onf", ".onf", "A.onf", "a.txt", "a.onf.old", "\\a.onf", ""})
  {
    WriteBytes(test / "index", "onf-text-index: 1\nnames: 0\nblocks: 1\nblock: " + name + "\n");
    EXPECT_EQ(MessageOfReading(test.GetPath()),
              (test / "index").string() + ":4: \"" + name +
                  "\" is no name of a block file, expected letters a to z, digits, '-', '_' and '.', ending in .onf");
  }
}

TEST(OnfTextMalformed, AFolderInPlaceOfAFileIsNamed)
{
  const quilon_test::TempFolder test;
  std::filesystem::create_directory(test / "index");
  EXPECT_EQ(MessageOfReading(test.GetPath()), (test / "index").string() + ": no plain file: Is a directory");
  std::filesystem::remove(test / "index");
  WriteBytes(test / "index", "onf-text-index: 1\nnames: 0\nblocks: 1\nblock: a.onf\n");
  std::filesystem::create_directory(test / "a.onf");
  EXPECT_EQ(MessageOfReading(test.GetPath()), (test / "a.onf").string() + ": no plain file: Is a directory");
}

TEST(OnfTextMalformed, AFileCutShortAnywhereFailsAndIsNamed)
{
  const quilon_test::TempFolder test;
  {
    QuilonOnfTxtDatabase database((test / "onf").wstring());
    OpenToWrite(database);
    database.SetUserKindName(static_cast<FED_OnfId>(1000), "one");
    SetScalar(database, MakeKey(514, 1), 12, 345.0);
    SetScalar(database, MakeKey(514, 1), 13, -1e-9);
    FED_DataBlock&  block  = *database.CreateDataBlock(MakeKey(593, 1), 0, 0, "IIbDbLbSV");
    FED_DataRecord& record = *block.CreateDataRecord();
    record.SetInteger(1, 10);
    record.SetDoubleList(3, std::vector<double>{1.5, 25});
    record.SetIntList(4, std::vector<int>{10, 11});
    record.SetString(5, "\x01 \\");
    block.SetRecord(12, record);
    database.ReleaseDb(false);
  }
  ASSERT_EQ(MessageOfReading(test / "onf"), "");
  for (const auto& [name, bytes] : ReadAllFiles(test / "onf")) {
    const std::filesystem::path path = test / "onf" / name;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
      WriteBytes(path, bytes.substr(0, size));
      EXPECT_EQ(MessageOfReading(test / "onf").rfind(path.string() + ":", 0), 0u) << name << " cut to " << size;
    }
    WriteBytes(path, bytes);
  }
}
