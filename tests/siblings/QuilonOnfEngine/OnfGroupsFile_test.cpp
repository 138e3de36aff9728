#include "QuilonOnfEngine/OnfGroupsFile.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "onf_text_support.h"

namespace {

using Group = OnfGroupsFile::Group;

OnfGroupsFile Read(const quilon_test::TempFolder& test, const std::string& text)
{
  WriteBytes(test / "groups", text);
  return OnfGroupsFile((test / "groups").wstring());
}

/// "nodes NAME@LINE 7 9-12 20-40:5"
std::string Show(const Group& group)
{
  std::string text = group.kind == OnfGroupsFile::Nodes ? "nodes " : "elements ";
  text += group.name + "@" + group.place.substr(group.place.rfind(':') + 1);
  for (const OnfGroupsFile::Range& range : group.ranges) {
    text += " " + std::to_string(range.first);
    if (range.last != range.first) text += "-" + std::to_string(range.last);
    if (range.step != 1) text += ":" + std::to_string(range.step);
  }
  return text;
}

std::vector<std::string> ShowAll(const OnfGroupsFile& groups)
{
  std::vector<std::string> all;
  for (const Group& group : groups.GetGroups()) all.push_back(Show(group));
  return all;
}

}  // namespace

TEST(OnfGroupsFile, WithoutAFileThereAreNoGroups) { EXPECT_TRUE(OnfGroupsFile().GetGroups().empty()); }

TEST(OnfGroupsFile, GroupsStandInTheOrderOfTheFile)
{
  const quilon_test::TempFolder test;
  const OnfGroupsFile           groups = Read(test,
                                              "# what is held\n"
                                                        "\n"
                                                        "nodes SUPPORT\n"
                                                        "5 14\t17-26   # ids may come again\r\n"
                                                        "  30-60:3 5\n"
                                                        "elements upper  flange\n"
                                                        "7-7:2 1-2147483647\n"
                                                        "nodes upper  flange #: another kind\n"
                                                        "elements EMPTY");  // the last line may lack its line feed
  ASSERT_FALSE(groups.GetGroups().empty());
  EXPECT_EQ(groups.GetGroups().front().place, (test / "groups").string() + ":3");
  EXPECT_EQ(ShowAll(groups), (std::vector<std::string>{"nodes SUPPORT@3 5 14 17-26 30-60:3 5",
                                                       "elements upper  flange@6 7:2 1-2147483647",
                                                       "nodes upper  flange@8", "elements EMPTY@9"}));
}

TEST(OnfGroupsFile, AFileWithoutGroupsIsWhole)
{
  const quilon_test::TempFolder test;
  for (const char* text : {"", "\n", "#", "  \t\r\n\n# nodes A"})
    EXPECT_TRUE(Read(test, text).GetGroups().empty()) << text;
}

TEST(OnfGroupsFile, CopiesKeepTheGroups)
{
  const quilon_test::TempFolder test;
  OnfGroupsFile                 groups = Read(test, "nodes A\n1-3\n");
  const OnfGroupsFile           copy(groups);
  OnfGroupsFile                 assigned;
  assigned = groups;
  groups   = OnfGroupsFile();
  EXPECT_TRUE(groups.GetGroups().empty());
  EXPECT_EQ(ShowAll(copy), std::vector<std::string>{"nodes A@1 1-3"});
  EXPECT_EQ(ShowAll(assigned), std::vector<std::string>{"nodes A@1 1-3"});
}

TEST(OnfGroupsFile, WhatIsNoGroupIsNamedWithFileAndLine)
{
  struct Row
  {
    const char* text;
    const char* expected;
  };
  const std::string ids    = "expected an id, FIRST-LAST or FIRST-LAST:STEP of positive 32-bit integers, found ";
  const Row         rows[] = {
              {"\n# c\n5 6\n", "3: expected \"nodes NAME\" or \"elements NAME\", found \"5 6\""},
              {"node A\n", "1: expected \"nodes NAME\" or \"elements NAME\", found \"node A\""},
              {"Nodes A\n", "1: expected \"nodes NAME\" or \"elements NAME\", found \"Nodes A\""},
              {"nodes  # A\n", "1: expected a name behind \"nodes\""},
              {"nodes A\nelements\n", "2: expected a name behind \"elements\""},
              {"nodes A\n9-5\n", "2: expected a range whose last id is not below its first, found \"9-5\""},
  };
  const quilon_test::TempFolder test;
  const std::string             prefix = (test / "groups").string() + ":";
  for (const Row& row : rows) EXPECT_EQ(MessageOf([&] { Read(test, row.text); }), prefix + row.expected) << row.text;

  EXPECT_EQ(MessageOf([&] { Read(test, "nodes A\n1\nnodes A\n"); }),
            prefix + "3: expected a new name, \"A\" is a group already, at " + prefix + "1");

  for (const char* word : {"0", "-1", "+1", "1.5", "x", "1-", "1-2:", "1-2:0", "1-2:-1", "1-2-3", "1:2", "1-2:3:4",
                           "0-5", "2147483648", "1-2147483648", "1,2", "99999999999999999999"})
  {
    EXPECT_EQ(MessageOf([&] { Read(test, std::string("nodes A\n3 ") + word + " 4\n"); }),
              prefix + "2: " + ids + "\"" + word + "\"");
  }
}

TEST(OnfGroupsFile, AFileThatCannotBeReadIsNamed)
{
  const quilon_test::TempFolder test;
  EXPECT_EQ(MessageOf([&] { OnfGroupsFile((test / "none").wstring()); }), (test / "none").string() + ": no such file");
  EXPECT_EQ(MessageOf([&] { OnfGroupsFile(test.GetPath().wstring()); }),
            test.GetPath().string() + ": no plain file: Is a directory");
}
