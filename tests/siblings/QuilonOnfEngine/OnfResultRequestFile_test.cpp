#include "QuilonOnfEngine/OnfResultRequestFile.h"

#include <string>

#include "gtest/gtest.h"
#include "onf_text_support.h"

namespace {

std::string MessageOfRequest(const quilon_test::TempFolder& test, const std::string& text)
{
  WriteBytes(test / "request", text);
  return MessageOf([&] { OnfResultRequestFile request((test / "request").wstring()); });
}

}  // namespace

TEST(OnfResultRequestFile, WithoutAFileItRequestsNothing)
{
  const OnfResultRequestFile request;
  for (const int onf : {0, 500, 520, 521, 1000, -1}) EXPECT_FALSE(request.typeIsRequested(onf));
}

TEST(OnfResultRequestFile, IdsAndNamesStandOneALine)
{
  const quilon_test::TempFolder test;
  WriteBytes(test / "request",
             "# what we want\n"
             "\n"
             "520\n"
             "  nodal-strain\t# the tensor\r\n"
             "user-node-scalar-1000\n"
             "onf-4711\n"
             "-3\n"
             "520\n"
             "   # nothing\n"
             "2147483647");  // the last line may lack its line feed
  const OnfResultRequestFile request((test / "request").wstring());
  for (const int onf : {520, 531, 1000, 4711, -3, 2147483647}) EXPECT_TRUE(request.typeIsRequested(onf)) << onf;
  for (const int onf : {521, 530, 0, 1001, 3}) EXPECT_FALSE(request.typeIsRequested(onf)) << onf;

  OnfResultRequestFile copy(request);
  EXPECT_TRUE(copy.typeIsRequested(531));
  copy = OnfResultRequestFile();
  EXPECT_FALSE(copy.typeIsRequested(531));
}

TEST(OnfResultRequestFile, AnEmptyFileRequestsNothing)
{
  const quilon_test::TempFolder test;
  for (const char* text : {"", "\n", "#", "  \t\r\n\n"}) EXPECT_EQ(MessageOfRequest(test, text), "") << text;
}

TEST(OnfResultRequestFile, WhatIsNoIdAndNoNameIsNamedWithFileAndLine)
{
  struct Row
  {
    const char* text;
    const char* expected;
  };
  const Row rows[] = {
      {"\n# c\nnodal-stres\n", "3: no kind of result is named \"nodal-stres\", did you mean \"nodal-stress\"?"},
      {"nodal-stressxyz", "1: no kind of result is named \"nodal-stressxyz\", did you mean \"nodal-stress\"?"},
      {"Temperature", "1: no kind of result is named \"Temperature\", did you mean \"temperature\"?"},
      {"something-else-entirely\n",
       "1: no kind of result is named \"something-else-entirely\", expected an ONF id or the name of a kind"},
      {"521x\n", "1: \"521x\" is no ONF id, expected a 32-bit integer"},
      {"5.0\n", "1: \"5.0\" is no ONF id, expected a 32-bit integer"},
      {"+5\n", "1: \"+5\" is no ONF id, expected a 32-bit integer"},
      {"520\n2147483648\n", "2: \"2147483648\" is no ONF id, expected a 32-bit integer"},
      {"520 521\n", "1: expected one ONF id or name a line, found \"520 521\""},
      {"-\n", "1: no kind of result is named \"-\", expected an ONF id or the name of a kind"},
  };
  const quilon_test::TempFolder test;
  const std::string             prefix = (test / "request").string() + ":";
  for (const Row& row : rows) EXPECT_EQ(MessageOfRequest(test, row.text), prefix + row.expected) << row.text;
}

TEST(OnfResultRequestFile, AFileThatCannotBeReadIsNamed)
{
  const quilon_test::TempFolder test;
  EXPECT_EQ(MessageOf([&] { OnfResultRequestFile request((test / "none").wstring()); }),
            (test / "none").string() + ": no such file");
  EXPECT_EQ(MessageOf([&] { OnfResultRequestFile request(test.GetPath().wstring()); }),
            test.GetPath().string() + ": no plain file: Is a directory");
}
