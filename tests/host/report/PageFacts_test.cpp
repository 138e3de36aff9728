#include "report/PageFacts.h"

#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "../export/ExportSupport.h"
#include "database/Provenance.h"
#include "TwoBricks.h"

namespace quilon {
namespace {

using namespace quilon_test;
using testing::HasSubstr;
using testing::Not;

TEST(PageFacts, TellWhatTheDatabaseHoldsAndWhereItComesFrom)
{
  FED_ResultDatabase database;
  FillTwoBricks(database);
  ImportProvenance import;
  import.files.push_back({ImportRole::Results, "<b>job.frd", 77, "0123456789abcdef", "2026-03-01T17:04:59Z"});
  import.settings.push_back({ImportSettingName::Program, "quilon 9"});
  WriteProvenance(database, {0, {import}});
  RecordingListener listener;
  const std::string text = JsonText(DescribeDatabase(database, "job", listener));
  EXPECT_THAT(text, HasSubstr(R"("nodes":12,"elements":[{"type":"C3D8","count":2}])"));
  EXPECT_THAT(text, HasSubstr(R"({"onf":521,"kind":"nodal-stress","step":"it=0,an=1,lc=1,sub=2","records":12,)"));
  EXPECT_THAT(text, HasSubstr(R"({"role":"results","name":"<b>job.frd","bytes":77,"checksum":"0123456789abcdef",)"
                              R"("changed":"2026-03-01T17:04:59Z"})"));
  EXPECT_THAT(text, HasSubstr(R"("settings":[{"name":"program","value":"quilon 9"}])"));
  EXPECT_THAT(text, Not(HasSubstr(R"("onf":605)"))) << "blocks of imports are told as imports";
}

TEST(PageFacts, SayWhyABalanceIsNotJudged)
{
  FED_ResultDatabase database;
  FillTwoBricks(database);
  RecordingListener listener;
  EXPECT_EQ(JsonText(JudgeBalance(database, 0, "job", listener)),
            "{\"results\":[],\"reason\":\"no stresses at integration points (582)\"}");
}

}  // namespace
}  // namespace quilon
