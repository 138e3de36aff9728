#include "bundled/OnfCatalogue.h"

#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace {

std::optional<FED_OnfId> Id(int id) { return static_cast<FED_OnfId>(id); }

TEST(OnfCatalogue, EntriesAscendAndTheirNamesAreUnique)
{
  std::set<std::string> names;
  int                   last = 499;
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries()) {
    EXPECT_GT(entry.onf, last);
    last = entry.onf;
    EXPECT_TRUE(names.insert(entry.metaData.GetName()).second) << entry.metaData.GetName();
    EXPECT_FALSE(entry.quantity.empty()) << entry.onf;
  }
  EXPECT_EQ(names.size(), 64U);  // counted by hand, ten by ten: 10 + 10 + 3 + 3 + 2 + 6 + 2 + 2 + 4 + 10 + 10 + 2
}

TEST(OnfCatalogue, EntriesAreWhatThePoolAnswers)
{
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries())
    EXPECT_EQ(&FED_OnfInfoPool::GetOnfInfo(entry.onf), &entry.metaData) << entry.onf;
}

TEST(OnfCatalogue, UserRangesCover1000To1999WithoutGaps)
{
  int next = 1000;
  for (const OnfCatalogue::UserRange& range : OnfCatalogue::UserRanges()) {
    EXPECT_EQ(range.first, next);
    EXPECT_EQ(range.last, range.first + 99);
    next = range.last + 1;
  }
  EXPECT_EQ(next, 2000);
}

TEST(OnfCatalogue, FindsAnIdByItsExactName)
{
  EXPECT_EQ(OnfCatalogue::FindIdByName("displacement"), Id(510));
  EXPECT_EQ(OnfCatalogue::FindIdByName("element-matrix-597"), Id(597));
  EXPECT_EQ(OnfCatalogue::FindIdByName("user-node-scalar-1000"), Id(1000));
  EXPECT_EQ(OnfCatalogue::FindIdByName("user-matrix-1999"), Id(1999));
  EXPECT_EQ(OnfCatalogue::FindIdByName("onf-77"), Id(77));
  EXPECT_EQ(OnfCatalogue::FindIdByName("onf--5"), Id(-5));
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries())
    EXPECT_EQ(OnfCatalogue::FindIdByName(entry.metaData.GetName()), entry.onf);
}

TEST(OnfCatalogue, FindsNothingForAnyOtherSpelling)
{
  for (const char* name :
       {"", "Displacement", "displacement ", "displacemen", "displacements", "510", "onf-", "onf-077", "onf-+77",
        "onf-510", "onf-1000", "onf-77x", "onf-99999999999", "user-node-scalar-", "user-node-scalar-1100",
        "user-node-scalar-999", "user-node-scalar", "user-history-1800 "})
    EXPECT_EQ(OnfCatalogue::FindIdByName(name), std::nullopt) << name;
}

TEST(OnfCatalogue, ListsAllNamesForSuggestions)
{
  const std::vector<std::string> names = OnfCatalogue::Names();
  ASSERT_EQ(names.size(), OnfCatalogue::Entries().size());
  EXPECT_EQ(names.front(), "scalar-history");
  EXPECT_EQ(names.back(), "node-energy-contribution");
}

TEST(OnfCatalogue, TellsTheQuantityOfFixedIdsOnly)
{
  EXPECT_EQ(OnfCatalogue::QuantityOf(static_cast<FED_OnfId>(510)), "length");
  EXPECT_EQ(OnfCatalogue::QuantityOf(static_cast<FED_OnfId>(913)), "energy");
  EXPECT_EQ(OnfCatalogue::QuantityOf(static_cast<FED_OnfId>(1000)), "");
  EXPECT_EQ(OnfCatalogue::QuantityOf(static_cast<FED_OnfId>(77)), "");
}

TEST(OnfCatalogue, ThePageInTheDocumentationIsTheTable)
{
  std::ifstream     in(QUILON_ONF_CATALOGUE_PAGE, std::ios::binary);
  std::stringstream page;
  page << in.rdbuf();
  EXPECT_EQ(page.str(), OnfCatalogue::MarkdownPage())
      << "Run onf_catalogue_page > docs/onf-catalogue.md after a change of the table.";
}

}  // namespace
