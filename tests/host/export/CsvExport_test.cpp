#include "export/CsvExport.h"

#include <limits>
#include <sstream>

#include "export/ExportGroups.h"
#include "ExportSupport.h"

namespace quilon {
namespace {

using namespace quilon_test;

std::string CsvOf(const FED_Database& database, const std::vector<int>& kinds, const ExportComponents& components = {})
{
  const ExportPlan plan =
      MakeExportPlan(database, BlocksOf(database, kinds), components, ExportGroups(), ExportGroupForm::Arrays);
  std::ostringstream out;
  RecordingListener  listener;
  WriteCsv(database, plan, out, listener);
  return out.str();
}

TEST(CsvExport, HasARowForEachIdWithAValue)
{
  FED_ResultDatabase database;
  SetValues(database, StepKey(510, 1), 30, {0.1, -2, 1e300});
  SetValues(database, StepKey(510, 1), 4, {1, std::numeric_limits<double>::quiet_NaN(), 0});
  SetValues(database, StepKey(514, 1), 7, {21.5});
  EXPECT_EQ(CsvOf(database, {510, 514}),
            "id,displacement-x,displacement-y,displacement-z,temperature-value\n"
            "4,1,nan,0,\n"
            "7,,,,21.5\n"
            "30,0.1,-2,1e+300,\n");
}

TEST(CsvExport, GoesStepByStep)
{
  FED_ResultDatabase database;
  SetTime(database, 1, 0.25);
  SetTime(database, 2, 0.5);
  SetValues(database, StepKey(510, 1), 4, {3, 4, 0});
  SetValues(database, StepKey(510, 2), 4, {0, 6, 8});
  EXPECT_EQ(CsvOf(database, {510}, {.forAll = {"magnitude", "x"}, .ofKind = {}}),
            "step,time,id,displacement-magnitude,displacement-x\n"
            "1,0.25,4,5,3\n"
            "2,0.5,4,10,0\n");
}

TEST(CsvExport, LeavesTimesEmptyThatAreNotKnown)
{
  FED_ResultDatabase database;
  SetValues(database, StepKey(540, 1), 4, {3});
  SetValues(database, StepKey(540, 2), 4, {6});
  EXPECT_EQ(CsvOf(database, {540}),
            "step,time,id,element-energy-value\n"
            "1,,4,3\n"
            "2,,4,6\n");
}

TEST(CsvExport, QuotesNamesThatNeedIt)
{
  FED_ResultDatabase database;
  database.SetUserKindName(static_cast<FED_OnfId>(1000), "=a,\"b\"");
  SetValues(database, StepKey(1000, 1), 4, {3});
  EXPECT_EQ(CsvOf(database, {1000}), "id,\"'=a,\"\"b\"\"-value\"\n4,3\n");
}

TEST(CsvExport, RefusesNodesBesideElements)
{
  FED_ResultDatabase database;
  SetValues(database, StepKey(540, 1), 4, {3});
  SetValues(database, StepKey(510, 1), 4, {3, 4, 0});
  EXPECT_EQ(FailureOf([&] { CsvOf(database, {}); }),
            "a table has values of nodes or of elements, found both: displacement and element-energy");
}

}  // namespace
}  // namespace quilon
