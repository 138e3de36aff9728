#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>

#include "database/Provenance.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using namespace quilon;
using quilon_test::TempFolder;

ImportProvenance SomeImport(const std::string& name)
{
  // More bytes than an integer of 32 bits holds.
  return {{{ImportRole::Results, name, 5'000'000'000U, "0123456789abcdef", "2026-03-01T17:04:59Z"},
           {ImportRole::Include, "../a b/\"c\".inc", 0, "", ""}},
          {{ImportSettingName::Program, "quilon 1.2.0"}, {"average-by", "A,B"}}};
}

void ExpectEqual(const ImportProvenance& a, const ImportProvenance& b)
{
  ASSERT_EQ(a.files.size(), b.files.size());
  for (std::size_t i = 0; i < a.files.size(); ++i) {
    EXPECT_EQ(a.files[i].role, b.files[i].role);
    EXPECT_EQ(a.files[i].name, b.files[i].name);
    EXPECT_EQ(a.files[i].size, b.files[i].size);
    EXPECT_EQ(a.files[i].checksum, b.files[i].checksum);
    EXPECT_EQ(a.files[i].changed, b.files[i].changed);
  }
  EXPECT_EQ(a.settings, b.settings);
}

TEST(Provenance, ReadsWhatWasWritten)
{
  FED_ResultDatabase database;
  EXPECT_TRUE(ReadProvenance(database).empty());
  EXPECT_TRUE(ReadProvenance(database, 0).empty());
  WriteProvenance(database, {7, {SomeImport("a.frd"), SomeImport("b.frd")}});
  WriteProvenance(database, {-1, {SomeImport("old.frd")}});
  WriteProvenance(database, {-1, {SomeImport("c.frd")}});  // in its place

  const std::vector<IterationProvenance> all = ReadProvenance(database);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].iteration, -1);
  ASSERT_EQ(all[0].imports.size(), 1U);
  ExpectEqual(all[0].imports[0], SomeImport("c.frd"));
  EXPECT_EQ(all[1].iteration, 7);
  ASSERT_EQ(all[1].imports.size(), 2U);
  ExpectEqual(all[1].imports[1], SomeImport("b.frd"));
  EXPECT_EQ(ReadProvenance(database, 7).size(), 2U);
}

TEST(Provenance, AnswersWhatAnImportHas)
{
  const ImportProvenance import = SomeImport("a.frd");
  ASSERT_NE(import.FindSetting("average-by"), nullptr);
  EXPECT_EQ(*import.FindSetting("average-by"), "A,B");
  EXPECT_EQ(import.FindSetting("request"), nullptr);
  EXPECT_TRUE(import.HasRole(ImportRole::Include));
  EXPECT_FALSE(import.HasRole(ImportRole::Deck));
  EXPECT_EQ(import.MainFiles().size(), 1U);
  EXPECT_EQ(import.ListFiles(), "a.frd");
}

TEST(Provenance, DescribesAFileByItsBytesNotByItsTime)
{
  const TempFolder folder;
  const fs::path   path = folder / "a.frd";
  std::ofstream(path, std::ios::binary).flush();
  const auto at = [](int hour) {
    using namespace std::chrono;
    const sys_seconds time = sys_days(year(2026) / 3 / 1) + hours(hour) + minutes(4) + seconds(59);
    return file_clock::from_sys(time);
  };
  fs::last_write_time(path, at(17));
  ImportedFile empty = DescribeFile(path, ImportRole::Results, "a.frd");
  EXPECT_EQ(empty.size, 0U);
  EXPECT_EQ(empty.checksum, "2d06800538d394c2");  // as its makers publish it for no bytes at all
  EXPECT_EQ(empty.changed, "2026-03-01T17:04:59Z");
  fs::last_write_time(path, at(18));
  EXPECT_TRUE(DescribeFile(path, ImportRole::Results, "a.frd").IsSameAs(empty));

  // Beyond one piece of reading, with its last byte changed.
  const std::string large((std::size_t{1} << 20) + 1, 'x');
  std::ofstream(path, std::ios::binary) << large;
  const ImportedFile whole = DescribeFile(path, ImportRole::Results, "a.frd");
  EXPECT_EQ(whole.size, large.size());
  std::ofstream(path, std::ios::binary) << large.substr(1) << 'y';
  EXPECT_FALSE(DescribeFile(path, ImportRole::Results, "a.frd").IsSameAs(whole));
}

TEST(Provenance, LeavesWhatIsNoFileToTheReader)
{
  const TempFolder   folder;
  const ImportedFile none = DescribeFile(folder / "none.frd", ImportRole::Results, "none.frd");
  EXPECT_EQ(none.checksum, "");
  EXPECT_FALSE(none.IsSameAs(none)) << "nobody knows what it was";
}

}  // namespace
