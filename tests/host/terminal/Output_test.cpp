#include "terminal/Output.h"

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace {

TEST(Output, WhatStandsInTheWayGoesBeforeEachText)
{
  std::FILE* const file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  quilon::Output output(file);
  std::string    order;
  output.BeforeText([&] { order += std::to_string(std::ftell(file)) + ' '; });
  output.Write("one\n");
  output.Write("two\n");
  output.Flush();
  EXPECT_EQ(order, "0 4 ");
  std::fclose(file);
}

TEST(Output, HasNoColoursUntilTheyAreAllowed)
{
  quilon::Output output;
  EXPECT_FALSE(output.HasColours());
  output.SetColours(true);
  EXPECT_TRUE(output.HasColours());
}

}  // namespace
