#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bundled/FED_ResultDatabase.h>

#include "diff/DatabaseComparison.h"
#include "program_support.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "ResultImport.h"
#include "selection/KindRequests.h"
#include "TempFolder.h"

namespace {

using namespace quilon_test;
using nlohmann::json;

const std::string kCompare = std::string(QUILON_FIXTURES) + "/calculix/compare/";
const std::string kTwins   = std::string(QUILON_FIXTURES) + "/calculix/e_matrix/";
constexpr double  kNaN     = std::numeric_limits<double>::quiet_NaN();

// Temperatures of nodes 1, 2, ... in load case 1 and, negative ids first, whatever else a test asks for.
void WriteTemperatures(const std::string& folder, const std::vector<double>& values, int loadCase = 1)
{
  QuilonOnfTxtDatabase database(std::filesystem::path(folder).wstring());
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, std::wstring(), nullptr);
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(514));
  key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  FED_IdDataBlock view(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), true);
  for (std::size_t i = 0; i < values.size(); ++i) view.SetScalar(static_cast<int>(i + 1), values[i]);
  database.ReleaseDb(true);
}

// Values of node 1 under user kinds with these names.
struct UserValue
{
  int         onf;
  const char* name;
  double      value;
};
void WriteUserKinds(const std::string& folder, const std::vector<UserValue>& values)
{
  QuilonOnfTxtDatabase database(std::filesystem::path(folder).wstring());
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, std::wstring(), nullptr);
  for (const UserValue& one : values) {
    const FED_DataDescriptor key(0, static_cast<FED_OnfId>(one.onf));
    database.SetUserKindName(static_cast<FED_OnfId>(one.onf), one.name);
    FED_IdDataBlock view(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), true);
    view.SetScalar(1, one.value);
  }
  database.ReleaseDb(true);
}

class DiffCommand : public testing::Test
{
protected:
  RunResult Diff(const std::vector<std::string>& options) const
  {
    std::vector<std::string> arguments = {"diff", a_, b_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunQuilon(arguments);
  }

  std::string Write(const std::string& name, const std::string& text) const
  {
    std::ofstream(folder_ / name) << text;
    return (folder_ / name).string();
  }

  TempFolder  folder_;
  std::string a_ = (folder_ / "a.onf").string();
  std::string b_ = (folder_ / "b.onf").string();
};

TEST_F(DiffCommand, EqualDatabasesAreTheSame)
{
  WriteTemperatures(a_, {1, 2, 3});
  WriteTemperatures(b_, {1, 2, 3});
  const RunResult run = Diff({});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, "same: 1 block, 3 records, 3 values\n");
  EXPECT_EQ(run.exitCode, 0);
}

TEST_F(DiffCommand, DifferencesAreReportedTheWorstFirst)
{
  WriteTemperatures(a_, {1, 2, 4, 8});
  WriteTemperatures(b_, {1, 2.5, 3, 8});
  const RunResult run = Diff({"--abs", "0.25"});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 1);
  // sqrt((0.25 + 1) / 4) and sqrt(1.25 / 85).
  EXPECT_EQ(run.out,
            "kind\tstep\tlayer\tid\tcomponent\tA\tB\trule\n"
            "temperature\tit=0,lc=1\t-\t3\tvalue\t4\t3\tabs 1 > 0.25\n"
            "temperature\tit=0,lc=1\t-\t2\tvalue\t2\t2.5\tabs 0.5 > 0.25\n"
            "\n"
            "kind\tstep\tlayer\tvalues\tmax|A-B|\trms(A-B)\t|A-B|/|A|\tpeak\tsign\n"
            "temperature\tit=0,lc=1\t-\t4\t1\t0.559017\t0.121268\t8\t1\n"
            "\n"
            "different: 1 of 1 block, 2 of 4 records; worst: temperature it=0,lc=1 id 3 value, abs 1 > 0.25\n");
}

TEST_F(DiffCommand, MaxLimitsTheRecordsOfABlockAndMaxBlocksTheBlocks)
{
  for (const int loadCase : {1, 2, 3}) {
    WriteTemperatures(a_, {0, 0, 0}, loadCase);
    WriteTemperatures(b_, {1.0 * loadCase, 2.0 * loadCase, 3.0 * loadCase}, loadCase);
  }
  EXPECT_EQ(Diff({"--abs", "0.5", "--max", "1", "--max-blocks", "2", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=3\",,3,value,0,9,abs 9 > 0.5\n"
            "temperature,\"it=0,lc=2\",,3,value,0,6,abs 6 > 0.5\n");
  const RunResult none = Diff({"--abs", "0.5", "--max", "0", "--csv"});
  EXPECT_EQ(none.out, "kind,step,layer,id,component,A,B,rule\n");
  EXPECT_EQ(none.exitCode, 1);
}

TEST_F(DiffCommand, TenRecordsOfABlockAreReportedUnlessMoreAreAskedFor)
{
  WriteTemperatures(a_, std::vector<double>(12, 0.0));
  WriteTemperatures(b_, std::vector<double>(12, 1.0));
  const auto count = [](const std::string& text) { return json::parse(text).at("differences").size(); };
  EXPECT_EQ(count(Diff({"--json"}).out), 10u);
  EXPECT_EQ(count(Diff({"--json", "--max", "11"}).out), 11u);
  EXPECT_EQ(count(Diff({"--json", "--max", "20"}).out), 12u);
}

TEST_F(DiffCommand, RecordsOnOneSideAreReported)
{
  WriteTemperatures(a_, {1, 2, 3});
  WriteTemperatures(b_, {1});
  EXPECT_EQ(Diff({"--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=1\",,2,,record,,record missing in B\n"
            "temperature,\"it=0,lc=1\",,3,,record,,record missing in B\n");
  const RunResult swapped = RunQuilon({"diff", b_, a_, "--brief"});
  EXPECT_EQ(swapped.out,
            "different: 1 of 1 block, 0 of 1 record, 2 records only in B; worst: temperature it=0,lc=1 id 2, record "
            "only in B\n");
  EXPECT_EQ(swapped.exitCode, 1);
}

TEST_F(DiffCommand, BlocksOnOneSideAreReported)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1});
  WriteTemperatures(b_, {1, 2}, 2);
  EXPECT_EQ(Diff({"--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=2\",,,,,2 records,block only in B\n");
  EXPECT_EQ(RunQuilon({"diff", b_, a_, "--brief"}).out,
            "different: 0 of 1 block, 0 of 1 record, 1 block missing in B; worst: temperature it=0,lc=2, block missing "
            "in B\n");
}

TEST_F(DiffCommand, ANaNThatTheDefaultRuleLetsPassIsCountedAndNamed)
{
  WriteTemperatures(a_, {kNaN, 2, kNaN});
  WriteTemperatures(b_, {1, kNaN, kNaN});
  const RunResult run = Diff({});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out,
            "kind\tstep\tlayer\tid\tcomponent\tnan let pass\n"
            "temperature\tit=0,lc=1\t-\t1\tvalue\tA\n"
            "temperature\tit=0,lc=1\t-\t2\tvalue\tB\n"
            "temperature\tit=0,lc=1\t-\t3\tvalue\tboth\n"
            "\n"
            "same: 1 block, 3 records, 3 values, 3 NaNs let pass\n");
}

TEST_F(DiffCommand, NaNsGoByTheirPolicy)
{
  WriteTemperatures(a_, {kNaN, 1});
  WriteTemperatures(b_, {kNaN, 1});
  EXPECT_EQ(Diff({"--nan", "equal", "--brief"}).out, "same: 1 block, 2 records, 2 values\n");
  EXPECT_EQ(Diff({"--nan", "different", "--brief"}).out,
            "different: 1 of 1 block, 1 of 2 records; worst: temperature it=0,lc=1 id 1 value, nan\n");
  EXPECT_EQ(Diff({"--nan", "forbid", "--brief"}).out,
            "different: 1 of 1 block, 1 of 2 records; worst: temperature it=0,lc=1 id 1 value, nan forbidden\n");
}

TEST_F(DiffCommand, ForbiddenNaNsAreFoundInWhatIsIgnored)
{
  WriteTemperatures(a_, {1, kNaN});
  WriteTemperatures(b_, {1, 2});
  EXPECT_EQ(Diff({"--rule", "temperature: ignore", "--brief"}).out,
            "same: 0 blocks, 0 records, 0 values, 1 block ignored\n");
  const RunResult run = Diff({"--rule", "temperature: ignore nan=forbid", "--csv"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=1\",,2,value,nan,,nan forbidden\n");
}

TEST_F(DiffCommand, RulesOfTheCommandLineStandAboveThoseOfAFile)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1.5});
  const std::string rules = Write("rules", "*: exact\ntemperature: abs=0.25\n");
  EXPECT_EQ(Diff({"--rules", rules}).exitCode, 1);
  EXPECT_EQ(Diff({"--rules", rules, "--abs", "1"}).exitCode, 1);
  EXPECT_EQ(Diff({"--rules", rules, "--rule", "temperature: abs=0.5"}).exitCode, 0);
  EXPECT_EQ(Diff({"--rules", Write("all", "*: abs=0.25"), "--abs", "0.5"}).exitCode, 0);
  // --nan alone leaves the tolerances of the file.
  EXPECT_EQ(Diff({"--rules", Write("all", "*: abs=0.5"), "--nan", "forbid"}).exitCode, 0);
}

TEST_F(DiffCommand, RulesOfSeveralCombine)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1.5});
  EXPECT_EQ(Diff({"--abs", "0.25", "--rel", "0.5"}).exitCode, 1);
  EXPECT_EQ(Diff({"--abs", "0.25", "--rel", "0.5", "--all"}).exitCode, 1);
  EXPECT_EQ(Diff({"--abs", "0.25", "--rel", "0.5", "--any"}).exitCode, 0);
  EXPECT_EQ(Diff({"--ulps", "2251799813685248"}).exitCode, 0);  // 2^51: half of the way from 1 to 2
  EXPECT_EQ(Diff({"--ulps", "2251799813685247"}).exitCode, 1);
}

TEST_F(DiffCommand, JsonTellsEverything)
{
  WriteTemperatures(a_, {1, 4, kNaN});
  WriteTemperatures(b_, {1, 4.5, 1});
  const RunResult run  = Diff({"--json"});
  const json      told = json::parse(run.out);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(told.at("a"), a_);
  EXPECT_EQ(told.at("b"), b_);
  EXPECT_EQ(told.at("verdict"), "different");
  EXPECT_EQ(told.at("blocks"),
            json({{"compared", 1}, {"different", 1}, {"missing in B", 0}, {"only in B", 0}, {"ignored", 0}}));
  EXPECT_EQ(told.at("records"), json({{"compared", 3}, {"different", 1}, {"missing in B", 0}, {"only in B", 0}}));
  EXPECT_EQ(told.at("values"), json({{"compared", 3}, {"different", 1}}));
  const json place = {{"block", "514@it=0,lc=1"}, {"kind", "temperature"}, {"step", "it=0,lc=1"}, {"layer", nullptr}};
  json       difference = place;
  difference.update({{"id", 2}, {"component", "value"}, {"a", "4"}, {"b", "4.5"}, {"rule", "default abs 0.5 > 1e-06"}});
  EXPECT_EQ(told.at("differences"), json::array({difference}));
  json nan = place;
  nan.update({{"id", 3}, {"component", "value"}, {"side", "A"}});
  EXPECT_EQ(told.at("nans let pass"), json::array({nan}));
  EXPECT_EQ(told.at("norms").at(0).at("max"), 0.5);
  EXPECT_EQ(told.at("norms").at(0).at("peak"), 4.0);
}

TEST_F(DiffCommand, JUnitHasACaseForEachBlock)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1});
  WriteTemperatures(a_, {1, 2}, 2);
  WriteTemperatures(b_, {1, 3}, 2);
  const std::string file = (folder_ / "diff.xml").string();
  EXPECT_EQ(Diff({"--brief", "--junit", file}).exitCode, 1);
  EXPECT_EQ(ReadAll(file),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<testsuite name=\"quilon diff\" tests=\"2\" failures=\"1\" errors=\"0\" skipped=\"0\">\n"
            "  <testcase classname=\"temperature\" name=\"514@it=0,lc=1\"/>\n"
            "  <testcase classname=\"temperature\" name=\"514@it=0,lc=2\">\n"
            "    <failure message=\"1 record different\">id 2, value: A 2, B 3, default abs 1 &gt; 1e-06\n"
            "</failure>\n"
            "  </testcase>\n"
            "  <system-out>different: 1 of 2 blocks, 1 of 3 records; worst: temperature it=0,lc=2 id 2 value, default "
            "abs 1 &gt; 1e-06</system-out>\n"
            "</testsuite>\n");
}

TEST_F(DiffCommand, SelectedBlocksAloneAreCompared)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1});
  WriteTemperatures(a_, {1}, 2);
  WriteTemperatures(b_, {2}, 2);
  EXPECT_EQ(Diff({"--select", "@lc=1"}).exitCode, 0);
  EXPECT_EQ(Diff({"--select", "@lc=2"}).exitCode, 1);
}

TEST_F(DiffCommand, ASelectionOfNothingIsTroubleAndNotTheSame)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1});
  WriteTemperatures(b_, {1}, 2);
  const RunResult run = Diff({"--select", "stress@lc=1"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: " + a_ + ", " + b_ + ": no block matches 'stress@lc=1'\n");
  // What one of the two has is enough.
  EXPECT_EQ(Diff({"--select", "@lc=2"}).exitCode, 1);
}

TEST_F(DiffCommand, AKindThatOneDatabaseAloneNamesMayBeSelected)
{
  WriteUserKinds(a_, {{1000, "Wear", 1}});
  WriteUserKinds(b_, {{1000, "Heat", 1}, {1001, "Wear", 1}});
  EXPECT_EQ(Diff({"--select", "Wear", "--brief"}).out, "same: 1 block, 1 record, 1 value\n");
  EXPECT_EQ(Diff({"--select", "Heat", "--brief"}).out,
            "different: 0 of 0 blocks, 0 of 0 records, 1 block only in B; worst: Heat it=0, block only in B\n");
  EXPECT_EQ(Diff({"--select", "Soot"}).exitCode, 2);
}

TEST_F(DiffCommand, ARuleForAKindOfBLeavesTheKindOfAThatHasItsIdAlone)
{
  WriteUserKinds(a_, {{1000, "Wear", 1}});
  WriteUserKinds(b_, {{1000, "Heat", 1}, {1001, "Wear", 2}});
  EXPECT_EQ(Diff({"--rule", "Heat: ignore", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "Wear,it=0,,1,value,1,2,default abs 1 > 1e-06\n");
  EXPECT_EQ(Diff({"--rule", "Heat,Wear: ignore"}).exitCode, 0);
}

TEST_F(DiffCommand, BlocksThatAreMissingComeBeforeTheForbiddenNaNsInThem)
{
  WriteTemperatures(a_, {kNaN}, 1);
  WriteTemperatures(a_, {kNaN}, 2);
  WriteTemperatures(b_, {1}, 3);
  EXPECT_EQ(Diff({"--nan", "forbid", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=1\",,,,1 record,,block missing in B\n"
            "temperature,\"it=0,lc=2\",,,,1 record,,block missing in B\n"
            "temperature,\"it=0,lc=3\",,,,,1 record,block only in B\n"
            "temperature,\"it=0,lc=1\",,1,value,nan,,nan forbidden\n"
            "temperature,\"it=0,lc=2\",,1,value,nan,,nan forbidden\n");
}

TEST_F(DiffCommand, RecordsMatchByTheirPositionWhereAsked)
{
  WriteUserKinds(a_, {{1000, "Wear", 1}});
  QuilonOnfTxtDatabase database(std::filesystem::path(b_).wstring());
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, std::wstring(), nullptr);
  database.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear");
  const FED_DataDescriptor key(0, static_cast<FED_OnfId>(1000));
  FED_IdDataBlock(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), true).SetScalar(7, 1.0);
  database.ReleaseDb(true);
  EXPECT_EQ(Diff({}).exitCode, 1);
  EXPECT_EQ(Diff({"--match", "id"}).exitCode, 1);
  EXPECT_EQ(Diff({"--match", "index"}).exitCode, 0);
}

TEST_F(DiffCommand, NormsOfEqualBlocksAreTold)
{
  WriteTemperatures(a_, {3, 4});
  WriteTemperatures(b_, {3, 4});
  EXPECT_EQ(Diff({"--norms"}).out,
            "kind\tstep\tlayer\tvalues\tmax|A-B|\trms(A-B)\t|A-B|/|A|\tpeak\tsign\n"
            "temperature\tit=0,lc=1\t-\t2\t0\t0\t0\t4\t1\n"
            "\n"
            "same: 1 block, 2 records, 2 values\n");
}

TEST_F(DiffCommand, AReportThatCannotBeWrittenIsTroubleAndLeavesNothing)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {2});
  const std::string file = (folder_ / "none" / "diff.xml").string();
  const RunResult   run  = Diff({"--junit", file});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: " + file + ": expected a file that can be written\n");
}

TEST_F(DiffCommand, LearntRulesAcceptTheirRunsAndNothingMuchWorse)
{
  const std::string c = (folder_ / "c.onf").string();
  const std::string d = (folder_ / "d.onf").string();
  WriteTemperatures(a_, {1, 100});
  WriteTemperatures(b_, {1, 100.01});
  WriteTemperatures(c, {1.015625, 100});
  WriteTemperatures(d, {1.3, 100});
  const std::string rules = (folder_ / "rules").string();
  const RunResult   run   = RunQuilon({"diff", "--learn", a_, b_, c, "-o", rules});
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, rules + ": rules learnt from 3 runs\n");
  // 2^-6 of a peak of 100, times 10, is 0.0015625: three digits, rounded up.
  EXPECT_EQ(ReadAll(rules), "# Differences among accepted runs, times 10:\n#   " + a_ + "\n#   " + b_ + "\n#   " + c +
                                "\ntemperature: peak=0.00157\n");
  EXPECT_EQ(RunQuilon({"diff", a_, b_, "--rules", rules}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", b_, c, "--rules", rules}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", a_, d, "--rules", rules}).exitCode, 1);
}

TEST_F(DiffCommand, RunsThatDifferInMoreThanNumbersTeachNothing)
{
  WriteTemperatures(a_, {1, 2});
  WriteTemperatures(b_, {1});
  const std::string rules = (folder_ / "rules").string();
  const RunResult   run   = RunQuilon({"diff", "--learn", a_, b_, "-o", rules});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: " + a_ + " and " + b_ +
                         ": 514@it=0,lc=1 differs in more than numbers, expected runs that are accepted as equal\n");
  EXPECT_FALSE(std::filesystem::exists(rules));
}

TEST_F(DiffCommand, WrongUsageIsTrouble)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1});
  const auto error = [&](const std::vector<std::string>& arguments) {
    const RunResult run = RunQuilon(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    return run.err;
  };
  EXPECT_EQ(error({"diff", a_}), "quilon: error: expected two databases to compare, A and B\n");
  EXPECT_EQ(error({"diff", a_, b_, a_}), "quilon: error: expected two databases to compare, A and B\n");
  EXPECT_EQ(error({"diff", a_, b_, "-o", "x"}), "quilon: error: -o goes with --learn\n");
  EXPECT_EQ(error({"diff", "--learn", a_, b_}),
            "quilon: error: --learn: -o is missing, expected the rules file to write\n");
  EXPECT_EQ(error({"diff", "--learn", a_, "-o", "x"}), "quilon: error: --learn: expected two accepted runs or more\n");
  EXPECT_EQ(error({"diff", a_, b_, "--match", "index", "--match-points", "1"}),
            "quilon: error: --match index and --match-points exclude each other, expected one at most\n");
  EXPECT_EQ(error({"diff", a_, b_, "--max", "-1"}),
            "quilon: error: --max: '-1', expected a count, 0 or more, see 'quilon diff --help'\n");
  EXPECT_EQ(error({"diff", a_, b_, "--brief", "--json"}),
            "quilon: error: --brief goes without --json, --csv and --table\n");
  for (const char* option : {"--exact", "--any"})
    EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", "x", option}),
              "quilon: error: --learn writes rules and takes none, expected --mode-sign at most\n");
  EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", "x", "--rule", "stress: abs=1"}),
            "quilon: error: --learn writes rules and takes none, expected --mode-sign at most\n");
  EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", "x", "--junit", "y"}),
            "quilon: error: --learn reports nothing, expected it without --junit, --json, --csv, --table, --norms and "
            "--brief\n");
  // What is wrong with an option is told before a database is looked at.
  EXPECT_EQ(error({"diff", "nowhere", b_, "--rel", "x"}),
            "quilon: error: the rule 'rel=x' has 'rel=x', expected a finite number, 0 or more\n");
  EXPECT_EQ(error({"diff", a_, b_, "--abs", "x"}),
            "quilon: error: the rule 'abs=x' has 'abs=x', expected a finite number, 0 or more\n");
  EXPECT_EQ(error({"diff", a_, b_, "--rule", "strss: abs=1"}),
            "quilon: error: --rule: unknown kind 'strss', did you mean 'stress'?\n");
  EXPECT_EQ(error({"diff", a_, b_, "--match-points", "-1"}),
            "quilon: error: --match-points: '-1', expected a finite number, 0 or more\n");
  EXPECT_EQ(error({"diff", a_, b_, "--match-points", "1"}),
            "quilon: error: " + a_ + ": holds no coordinates (516), expected them to match points\n");
  EXPECT_EQ(error({"diff", a_, (folder_ / "none").string()}).find("quilon: error: " + (folder_ / "none").string()), 0u);
}

TEST_F(DiffCommand, HelpHasTheFormulasAndTheDefaults)
{
  const std::string help = RunQuilon({"diff", "--help"}).out;
  for (const char* part : {"|a-b| <= 1e-6, and where both are positive |a-b| / min(a,b) <= 1e-6",
                           "|a-b| <= T * max(|a|,|b|)", "|a-b| <= T * P", "at most N steps from a to b",
                           "Exit codes: 0 same, 1 different, 2 trouble.", "  quilon diff old.onf new.onf\n"})
    EXPECT_NE(help.find(part), std::string::npos) << part << '\n' << help;
}

// --- results of the solver

TEST(DiffOfResults, TwoRunsOfOneDeckAreIdentical)
{
  const RunResult run = RunQuilon({"diff", kCompare + "base.frd", kCompare + "again.frd", "--exact"});
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_EQ(RunQuilon({"diff", kCompare + "base.dat", kCompare + "again.dat", "--exact"}).exitCode, 0);
}

TEST(DiffOfResults, WorkingDatabasesFoldersAndResultFilesCompareInAnyMix)
{
  const TempFolder  folder;
  const std::string result   = kCompare + "base.frd";
  const std::string finer    = kCompare + "fine.frd";
  const std::string database = (folder / "base.fed").string();
  const std::string text     = (folder / "base.onf").string();
  for (const std::string& target : {database, text})
    ASSERT_EQ(RunQuilon({"import", result, "-o", target, "-q"}).exitCode, 0) << target;
  for (const std::string& first : {result, database, text}) {
    for (const std::string& second : {result, database, text})
      EXPECT_EQ(RunQuilon({"diff", first, second, "--exact"}).exitCode, 0) << first << ' ' << second;
    EXPECT_EQ(RunQuilon({"diff", first, finer}).exitCode, 1) << first;
    EXPECT_EQ(RunQuilon({"diff", finer, first}).exitCode, 1) << first;
  }
}

// The loads are small, so that displacements grow with time: what is 1/2 and 1 after increments of a half is 1/4 and
// 1/2 after two of a quarter, and two blocks of each kind more follow.
TEST(DiffOfResults, AFinerIncrementIsDifferentByWhatTheLoadsAreApart)
{
  const RunResult run = RunQuilon({"diff", kCompare + "base.frd", kCompare + "fine.frd", "--json", "--max-blocks", "99",
                                   "--peak", "1e-6", "--select", "displacement"});
  EXPECT_EQ(run.exitCode, 1);
  const json told = json::parse(run.out);
  EXPECT_EQ(told.at("blocks").at("different"), 2);
  EXPECT_EQ(told.at("blocks").at("only in B"), 2);
  for (const json& norms : told.at("norms")) {
    EXPECT_NEAR(norms.at("relative").get<double>(), 0.5, 1e-4);  // linear but for some 1e-5
    EXPECT_NEAR(norms.at("max").get<double>() / norms.at("peak").get<double>(), 1.0, 1e-4);
  }
  // The free corner moves most, in the direction of the load.
  const json& worst = told.at("differences").at(2);
  EXPECT_EQ(worst.at("component"), "z");
  EXPECT_EQ(worst.at("id"), 44);
  EXPECT_NEAR(std::stod(worst.at("a").get<std::string>()), 2 * std::stod(worst.at("b").get<std::string>()), 1e-7);
}

TEST(DiffOfResults, ARenumberedMeshIsIdenticalByItsPlaces)
{
  const std::string base       = kCompare + "base.frd";
  const std::string renumbered = kCompare + "renumbered.frd";
  EXPECT_EQ(RunQuilon({"diff", base, renumbered, "--brief"}).exitCode, 1);
  // Reactions of free nodes are rounding of 1e-13: relative to the peak, nothing is left of it.
  const RunResult run = RunQuilon({"diff", base, renumbered, "--match-points", "1e-6", "--peak", "1e-9", "--brief"});
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_EQ(run.err, "quilon: note: matched 30 nodes and 8 elements by their places\n");
  EXPECT_EQ(run.out.find("same: 18 blocks, 468 records"), 0u) << run.out;
  EXPECT_EQ(RunQuilon({"diff", base, kCompare + "fine.frd", "--match-points", "1e-6", "--peak", "1e-9"}).exitCode, 1);
}

// The same deck with a text result (six digits) and a binary one (single precision).
TEST(DiffOfResults, TextAndBinaryResultsAgreeToTheDigitsOfTheText)
{
  const std::string text   = kTwins + "e_static.frd";
  const std::string binary = kTwins + "e_static_bin.frd";
  EXPECT_EQ(RunQuilon({"diff", text, binary, "--peak", "1e-5"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", text, binary, "--peak", "1e-8", "--brief"}).exitCode, 1);
}

TEST(DiffOfResults, AFieldInSinglePrecisionIsOffByHalfAnUlpOfIt)
{
  using namespace quilon::diff;
  FED_ResultDatabase    whole;
  quilon::KindRequests  nothing = quilon::KindRequests::Nothing();
  quilon::ImportOptions options;
  options.requests = &nothing;
  quilon::ImportResults({kCompare + "base.frd", kCompare + "base.dat"}, whole, options);
  FED_DataDescriptorPattern stress;
  stress.SetEqual(FED_DataDescriptor::OnfId, 521);
  const std::vector<FED_DataDescriptor> blocks = whole.GetDataDescriptors(stress);
  ASSERT_FALSE(blocks.empty());

  FED_ResultDatabase single;
  for (const FED_DataDescriptor& descriptor : blocks) {
    const FED_DataBlock&       from = whole.GetConstDataBlock(descriptor);
    const FED_ConstIdDataBlock ids(from, whole.GetIdMapsPool());
    FED_IdDataBlock            to(single.GetOrCreateDataBlock(descriptor, 0), single.GetIdMapsPool(), true);
    for (auto index = from.Begin(); index != from.End(); ++index) {
      double tensor[6];
      from.GetValuesAt(*index, tensor);
      for (double& value : tensor) value = static_cast<double>(static_cast<float>(value));
      to.SetTensor(ids.GetId(*index), tensor);
    }
  }
  const auto isSame = [&](const std::string& rule) {
    ComparisonTerms terms;
    terms.rules.fallback = ParseRule(rule, "");
    return CompareDatabases({whole, blocks}, WholeDatabase(single), terms).IsSame();
  };
  // Half an ulp of 24 bits is 2^-24 of a number just above a power of two and 2^28 ulps of 53 bits.
  EXPECT_TRUE(isSame("rel=5.9604644775390625e-08"));
  EXPECT_TRUE(isSame("ulps=268435456"));
  EXPECT_FALSE(isSame("ulps=10000000"));
  EXPECT_FALSE(isSame("exact"));
}

}  // namespace
