#include "report/Report.h"

#include <fstream>
#include <sstream>

#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../export/ExportSupport.h"
#include "BlobDecoding.h"
#include "diff/Compare.h"
#include "report/PageBundle.h"
#include "TempFolder.h"
#include "TwoBricks.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string ReadAll(const std::filesystem::path& file)
{
  std::ifstream      in(file, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::size_t CountOf(const std::string& text, const std::string& part)
{
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

class ReportTest : public testing::Test
{
protected:
  ReportTest() { FillTwoBricks(database_); }

  ReportResult Write(const std::string& name, const std::string& file, std::size_t mostBytes = 25'000'000,
                     bool leavesOutInside = false)
  {
    PageRequest request;
    request.mostBytes       = mostBytes;
    request.leavesOutInside = leavesOutInside;
    request.database        = &database_;
    request.name            = name;
    request.blocks          = ChoosePageBlocks(BlocksOf(database_), false);
    return WriteReport(request, folder_ / file, "quilon 9", listener_);
  }

  TempFolder         folder_;
  FED_ResultDatabase database_;
  RecordingListener  listener_;
};

TEST_F(ReportTest, IsOneFileThatAsksForNothing)
{
  const ReportResult result = Write("some/where/job.fed", "a.html");
  const std::string  page   = ReadAll(folder_ / "a.html");
  EXPECT_EQ(result.bytes, page.size());
  EXPECT_EQ(result.numSteps, 3u);
  EXPECT_EQ(result.numPoints, 12u);
  EXPECT_EQ(result.numTriangles, 24u);
  EXPECT_THAT(page, StartsWith("<!doctype html>\n"));
  const PageBundle bundle = LoadPageBundle();
  EXPECT_THAT(page, HasSubstr("content=\"default-src 'none'; script-src " + bundle.scriptHash + "; style-src " +
                              bundle.styleHash + "; img-src data:; base-uri 'none'; form-action 'none'\""));
  EXPECT_THAT(page, HasSubstr("<script>" + bundle.script + "</script>"));
  EXPECT_THAT(page, HasSubstr("<title>job.fed</title>"));
  EXPECT_THAT(page, Not(HasSubstr("some/where"))) << "folders of the writer's machine are nobody's concern";
  EXPECT_THAT(page, Not(HasSubstr("src=")));
}

TEST_F(ReportTest, TheSameInputGivesTheSameBytes)
{
  Write("job.fed", "a.html");
  Write("job.fed", "b.html");
  EXPECT_EQ(ReadAll(folder_ / "a.html"), ReadAll(folder_ / "b.html"));
}

TEST_F(ReportTest, NamesEndNoElement)
{
  const std::string evil = "</script><script>alert(1)</script><!--";
  WriteSet(database_, OnfKind::ElementSet, 9, evil, {101});
  Write("<img src=x>&.fed", "a.html");
  const std::string page = ReadAll(folder_ / "a.html");
  EXPECT_THAT(page, HasSubstr(R"(\u003c/script>\u003cscript>alert(1)\u003c/script>\u003c!--)"));
  EXPECT_THAT(page, Not(HasSubstr(evil)));
  EXPECT_THAT(page, HasSubstr("<title>&lt;img src=x&gt;&amp;.fed</title>"));
  // A script for the header, one a blob, and the bundle.
  const PageBundle bundle = LoadPageBundle();
  EXPECT_EQ(CountOf(page, "<script") - CountOf(bundle.script, "<script"),
            2 + CountOf(page, "<script type=\"text/plain\""));
}

TEST_F(ReportTest, SaysWhatWouldMakeAPageSmallEnough)
{
  const std::size_t size = Write("job.fed", "a.html", 25'000'000, true).bytes;
  std::filesystem::remove(folder_ / "a.html");
  const std::string failure = FailureOf([&] { Write("job.fed", "a.html", size - 1); });
  EXPECT_THAT(failure, StartsWith("job.fed: the page would have 0."));
  EXPECT_THAT(
      failure,
      HasSubstr(" at most: --max-steps 2, --bits 16, a selection of fewer kinds, or see it all with 'quilon serve'"));
  EXPECT_THAT(
      FailureOf([&] { Write("job.fed", "a.html", 1000); }),
      testing::EndsWith("expected 0.0 MB at most: a selection of fewer kinds, or see it all with 'quilon serve'"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
  EXPECT_EQ(Write("job.fed", "a.html", size).bytes, size);
}

TEST_F(ReportTest, TheInsideIsThereWhereItHasRoom)
{
  const ReportResult whole = Write("job.fed", "a.html");
  EXPECT_TRUE(whole.hasInside && !whole.lacksRoom);
  EXPECT_THAT(ReadAll(folder_ / "a.html"), HasSubstr(R"("inside":{)"));
  EXPECT_EQ(Write("job.fed", "b.html", whole.bytes).bytes, whole.bytes);
  const ReportResult outside = Write("job.fed", "b.html", whole.bytes - 1);
  EXPECT_TRUE(!outside.hasInside && outside.lacksRoom);
  EXPECT_LT(outside.bytes, whole.bytes);
  const std::string page = ReadAll(folder_ / "b.html");
  EXPECT_EQ(page.size(), outside.bytes);
  EXPECT_THAT(page, HasSubstr(R"("inside":null)"));
  const ReportResult unwanted = Write("job.fed", "c.html", 25'000'000, true);
  EXPECT_TRUE(!unwanted.hasInside && !unwanted.lacksRoom) << "nothing was left out against anybody's will";
  EXPECT_EQ(CountOf(ReadAll(folder_ / "c.html"), "<script type=\"text/plain\""),
            CountOf(page, "<script type=\"text/plain\""));
}

TEST_F(ReportTest, ShowsWhatAComparisonFound)
{
  FED_ResultDatabase second;
  FillTwoBricks(second);
  SetValues(second, StepBlock(510, 2, 1), 12, {25, -24, 0});
  SetValues(second, StepBlock(511, 1, 1), 3, {1, 2, 3});
  FED_ResultDatabase   difference;
  diff::CompareOptions options;
  options.difference         = &difference;
  const diff::Report   found = diff::Compare({database_, "x/job.fed"}, {second, "y/job.fed"}, options);
  const PageComparison comparison{&second, &difference, &found, "y/job.fed"};
  PageRequest          request;
  request.database   = &database_;
  request.name       = "x/job.fed";
  request.comparison = &comparison;
  request.blocks     = ChoosePageBlocks(BlocksOf(difference), false);
  PageSource        source(request, listener_);
  const std::string header = JsonText(MakePageHeader(request, source, "quilon 9", listener_));
  EXPECT_THAT(header, HasSubstr(R"x("titles":["job.fed (A)","job.fed (B)"])x"));
  EXPECT_THAT(header, HasSubstr(R"x("first":"24","second":"25","distance":1.0,)x"));
  EXPECT_THAT(header, HasSubstr(R"x("field":"displacement","place":"node 12","position":2,"id":12})x"));
  EXPECT_THAT(header, HasSubstr(R"x("one-sided":[{"kind":"reaction","block":"511@it=0,an=1,lc=1,sub=1","records":1,)x"
                                R"x("in":"job.fed (B)"}])x"));
  EXPECT_THAT(header, Not(HasSubstr("balance")));
  // Nine blobs of the mesh, then three steps of A and of the difference: the last is that of step 3.
  const std::string displacement = R"x("blobs":[9,10,11],"differences":[12,13,14])x";
  EXPECT_THAT(header, HasSubstr(displacement));
  std::vector<float> expected(36, 0.0F);
  EXPECT_EQ(DecodeFloats(source.MakeBlob(12)), expected);
  expected[11] = 1.0F;
  EXPECT_EQ(DecodeFloats(source.MakeBlob(14)), expected);
}

TEST_F(ReportTest, WritesNothingIntoAFolderThatIsNotThere)
{
  EXPECT_THAT(FailureOf([&] { Write("job.fed", "no/a.html"); }), HasSubstr("no/a.html"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_.GetPath()));
}

}  // namespace
}  // namespace quilon
