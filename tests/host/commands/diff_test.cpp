#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <bundled/FED_ResultDatabase.h>

#include "diff/DatabaseComparison.h"
#include "import/ResultImport.h"
#include "program_support.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
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

// What is wrong with a value by a schema that has types, enumerations, properties and items; empty when nothing is.
std::string Validate(const json& value, const json& schema, const std::string& path = "")
{
  const auto isOf = [&](const std::string& type) {
    return type == "object"    ? value.is_object()
           : type == "array"   ? value.is_array()
           : type == "string"  ? value.is_string()
           : type == "integer" ? value.is_number_integer()
           : type == "number"  ? value.is_number()
                               : type == "null" && value.is_null();
  };
  if (schema.contains("enum")) {
    for (const json& one : schema.at("enum"))
      if (value == one) return "";
    return path + " is none of " + schema.at("enum").dump();
  }
  const json types = schema.at("type").is_array() ? schema.at("type") : json::array({schema.at("type")});
  bool       any   = false;
  for (const json& type : types) any = any || isOf(type.get<std::string>());
  if (!any) return path + " is " + value.dump() + ", expected " + types.dump();
  if (value.is_array())
    for (std::size_t i = 0; i < value.size(); ++i) {
      const std::string wrong = Validate(value[i], schema.at("items"), path + '/' + std::to_string(i));
      if (!wrong.empty()) return wrong;
    }
  if (!value.is_object()) return "";
  for (const json& key : schema.at("required"))
    if (!value.contains(key.get<std::string>())) return path + " lacks " + key.dump();
  for (const auto& [key, member] : value.items()) {
    if (!schema.at("properties").contains(key)) return path + " has " + key;
    const std::string wrong = Validate(member, schema.at("properties").at(key), path + '/' + key);
    if (!wrong.empty()) return wrong;
  }
  return "";
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
            "kind\tstep\tlayer\tworst of component\tdifferent\tid\tA\tB\t|A-B|\ttimes\n"
            "temperature\tit=0,lc=1\t-\tvalue\t2\t3\t4\t3\t1\t4\n"
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
            "temperature,\"it=0,lc=1\",,2,,,,record missing in B\n"
            "temperature,\"it=0,lc=1\",,3,,,,record missing in B\n");
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
            "temperature,\"it=0,lc=2\",,,,,,block only in B\n");
  EXPECT_EQ(
      Diff({}).out,
      "only in B: 1 block (temperature 1)\n"
      "different: 0 of 1 block, 0 of 1 record, 1 block only in B; worst: temperature it=0,lc=2, block only in B\n");
  EXPECT_EQ(RunQuilon({"diff", b_, a_, "--brief"}).out,
            "different: 0 of 1 block, 0 of 1 record, 1 block missing in B; worst: temperature it=0,lc=2, block missing "
            "in B\n");
}

// What one side lacks is told, and is no difference where that side is named.
TEST_F(DiffCommand, WhatOneSideLacksMayBeIgnored)
{
  WriteTemperatures(a_, {1, 2});
  WriteTemperatures(b_, {1});
  WriteTemperatures(b_, {1, 2}, 2);
  EXPECT_EQ(Diff({"--ignore-missing=a"}).exitCode, 1);
  EXPECT_EQ(Diff({"--ignore-missing=b"}).exitCode, 1);
  for (const char* option : {"--ignore-missing", "--ignore-missing=both"}) {
    const RunResult run = Diff({option});
    EXPECT_EQ(run.exitCode, 0) << option;
    EXPECT_EQ(run.out,
              "only in B, ignored: 1 block (temperature 1)\n"
              "same: 1 block, 1 record, 1 value, 1 record missing in B (ignored), 1 block only in B (ignored)\n");
  }
  EXPECT_EQ(Diff({"--ignore-missing=c"}).exitCode, 2);
  WriteTemperatures(a_, {1, 2}, 2);
  EXPECT_EQ(Diff({"--ignore-missing=b", "--brief"}).exitCode, 0);
  EXPECT_EQ(Diff({"--ignore-missing=a", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=1\",,2,,,,record missing in B\n");
  // A value that differs does so whatever is ignored.
  WriteTemperatures(b_, {1.5}, 1);
  EXPECT_EQ(Diff({"--ignore-missing"}).exitCode, 1);
}

TEST_F(DiffCommand, ADatabaseIsAlwaysEqualToItself)
{
  WriteTemperatures(a_, {kNaN, -0.0, std::numeric_limits<double>::infinity(), 1});
  for (const char* option : {"--exact", "--abs=0", "--ulps=0", "--peak=0", "--rule=default"})
    EXPECT_EQ(RunQuilon({"diff", a_, a_, option}).exitCode, 0) << option;
}

// Two units of the sixth digit of the block's peak, on either side of zero alike.
TEST_F(DiffCommand, TheDefaultRuleIsRelativeToThePeakAndSymmetric)
{
  WriteTemperatures(a_, {1e6, -9, 0});
  WriteTemperatures(b_, {1e6, 10, -20});
  EXPECT_EQ(Diff({}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", b_, a_}).exitCode, 0);
  WriteTemperatures(b_, {1e6, 12, -20});
  const std::string worst = "worst: temperature it=0,lc=1 id 2 value, peak 2.1e-05 > 2e-05\n";
  for (const RunResult& run : {Diff({"--brief"}), RunQuilon({"diff", b_, a_, "--brief"})}) {
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "different: 1 of 1 block, 1 of 3 records; " + worst);
  }
}

TEST_F(DiffCommand, TheLibrarysRuleStandsForAllKindsOrForOne)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {1.000002});
  EXPECT_EQ(Diff({}).exitCode, 0);
  for (const char* rule : {"library", "temperature: library"}) {
    const RunResult run = Diff({"--rule", rule, "--brief"});
    EXPECT_EQ(run.exitCode, 1) << rule;
    EXPECT_NE(run.out.find(", library abs 2e-06 > 1e-06\n"), std::string::npos) << run.out;
  }
}

TEST_F(DiffCommand, ANaNThatTheLibrarysRuleLetsPassIsCountedAndNamed)
{
  WriteTemperatures(a_, {kNaN, 2, kNaN});
  WriteTemperatures(b_, {1, kNaN, kNaN});
  const RunResult run = Diff({"--rule", "library"});
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
  WriteTemperatures(b_, {1, 2}, 2);
  const RunResult run  = Diff({"--json", "--rule", "library"});
  const json      told = json::parse(run.out);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(told.at("a"), a_);
  EXPECT_EQ(told.at("b"), b_);
  EXPECT_EQ(told.at("verdict"), "different");
  EXPECT_EQ(told.at("ignored"), json::array());
  EXPECT_EQ(told.at("blocks"),
            json({{"compared", 1}, {"different", 1}, {"only-in-a", 0}, {"only-in-b", 1}, {"ignored", 0}}));
  EXPECT_EQ(told.at("records"), json({{"compared", 3}, {"different", 1}, {"only-in-a", 0}, {"only-in-b", 0}}));
  EXPECT_EQ(told.at("values"), json({{"compared", 3}, {"different", 1}}));
  const json place = {{"block", "514@it=0,lc=1"}, {"kind", "temperature"}, {"step", "it=0,lc=1"}, {"layer", nullptr}};
  json       difference = place;
  difference.update({{"id", 2},
                     {"component", "value"},
                     {"a", 4.0},
                     {"b", 4.5},
                     {"distance", 0.5},
                     {"times", 0.5 / 1e-6},
                     {"rule", "library abs 0.5 > 1e-06"}});
  EXPECT_EQ(told.at("differences"), json::array({difference}));
  difference["different"] = 1;
  EXPECT_EQ(told.at("components"), json::array({difference}));
  json nan = place;
  nan.update({{"id", 3}, {"component", "value"}, {"side", "A"}});
  EXPECT_EQ(told.at("passed-nans"), json::array({nan}));
  json additional = {{"block", "514@it=0,lc=2"}, {"kind", "temperature"}, {"step", "it=0,lc=2"}, {"layer", nullptr}};
  additional.update({{"side", "B"}, {"records", 2}});
  EXPECT_EQ(told.at("one-sided"), json::array({additional}));
  EXPECT_EQ(told.at("norms").at(0).at("max"), 0.5);
  EXPECT_EQ(told.at("norms").at(0).at("peak"), 4.0);
}

TEST_F(DiffCommand, JsonIsAsItsSchemaSays)
{
  const json schema = json::parse(ReadAll(QUILON_SCHEMA));
  WriteTemperatures(a_, {1, kNaN, 3, std::numeric_limits<double>::infinity()});
  WriteTemperatures(b_, {2, 1, 3, 0});
  WriteTemperatures(b_, {1}, 2);
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{}, {"--brief"}, {"--ignore-missing"}, {"--rule", "library"}, {"--rule", "*: ignore"}})
  {
    std::vector<std::string> all = {"--json"};
    all.insert(all.end(), options.begin(), options.end());
    EXPECT_EQ(Validate(json::parse(Diff(all).out), schema), "");
  }
  const RunResult results = RunQuilon({"diff", kCompare + "base.frd", kCompare + "fine.dat", "--json"});
  EXPECT_EQ(Validate(json::parse(results.out), schema), "");
  json wrong                       = json::parse(Diff({"--json"}).out);
  wrong["differences"][0]["layer"] = "1";
  EXPECT_EQ(Validate(wrong, schema), R"(/differences/0/layer is "1", expected ["integer","null"])");
}

TEST_F(DiffCommand, BriefJsonHasTheVerdictAndItsCounts)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {2});
  const RunResult run  = Diff({"--json", "--brief", "--ignore-missing=a"});
  const json      told = json::parse(run.out);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(told,
            json({{"a", a_},
                  {"b", b_},
                  {"verdict", "different"},
                  {"summary",
                   "different: 1 of 1 block, 1 of 1 record; worst: temperature it=0,lc=1 id 1 value, "
                   "peak 1 > 2e-05"},
                  {"ignored", {"only-in-b"}},
                  {"blocks", {{"compared", 1}, {"different", 1}, {"only-in-a", 0}, {"only-in-b", 0}, {"ignored", 0}}},
                  {"records", {{"compared", 1}, {"different", 1}, {"only-in-a", 0}, {"only-in-b", 0}}},
                  {"values", {{"compared", 1}, {"different", 1}}}}));
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
            "    <failure message=\"1 record different\">id 2, value: A 2, B 3, peak 0.5 &gt; 2e-05\n"
            "</failure>\n"
            "  </testcase>\n"
            "  <system-out>different: 1 of 2 blocks, 1 of 3 records; worst: temperature it=0,lc=2 id 2 value, "
            "peak 0.5 &gt; 2e-05</system-out>\n"
            "</testsuite>\n");
  EXPECT_EQ(Diff({"--junit", "-"}).out, ReadAll(file)) << "in place of the report";
  EXPECT_EQ(Diff({"--junit", "-", "--json"}).exitCode, 2);
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
            "Wear,it=0,,1,value,1,2,peak 1 > 2e-05\n");
  EXPECT_EQ(Diff({"--rule", "Heat,Wear: ignore"}).exitCode, 0);
}

TEST_F(DiffCommand, BlocksThatAreMissingComeBeforeTheForbiddenNaNsInThem)
{
  WriteTemperatures(a_, {kNaN}, 1);
  WriteTemperatures(a_, {kNaN}, 2);
  WriteTemperatures(b_, {1}, 3);
  EXPECT_EQ(Diff({"--nan", "forbid", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,lc=1\",,,,,,block missing in B\n"
            "temperature,\"it=0,lc=2\",,,,,,block missing in B\n"
            "temperature,\"it=0,lc=3\",,,,,,block only in B\n"
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

// A temperature of node 1 at each time, with the history of the times.
void WriteTimes(const std::string& folder, const std::vector<std::pair<double, double>>& timesAndValues)
{
  QuilonOnfTxtDatabase database(std::filesystem::path(folder).wstring());
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, std::wstring(), nullptr);
  FED_DataDescriptor history(0, FED_OnfId_ScalarHistory);
  for (const auto& [index, value] : {std::pair{3, 1}, {5, 1}, {4, 1}, {10, 501}})
    history.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(index), value);
  FED_DataBlock& times = database.GetOrCreateDataBlock(history, 0);
  for (std::size_t i = 0; i < timesAndValues.size(); ++i) {
    FED_DataDescriptor key(0, static_cast<FED_OnfId>(514));
    key.SetInteger(FED_DataDescriptor::LoadCase, 1);
    key.SetInteger(FED_DataDescriptor::Analysis, 1);
    key.SetInteger(FED_DataDescriptor::Substep, static_cast<int>(i + 1));
    times.SetScalarAt(i + 1, timesAndValues[i].first);
    FED_IdDataBlock(database.GetOrCreateDataBlock(key, 0), database.GetIdMapsPool(), true)
        .SetScalar(1, timesAndValues[i].second);
  }
  database.ReleaseDb(true);
}

TEST_F(DiffCommand, StepsMatchByTheirOrderWhereAsked)
{
  WriteTimes(a_, {{0.5, 10}, {1, 20}});
  WriteTimes(b_, {{0.25, 5}, {0.5, 10}, {0.75, 15}, {1, 20}});
  EXPECT_EQ(Diff({"--brief"}).exitCode, 1);
  EXPECT_EQ(Diff({"--steps-a", "last", "--steps-b", "last", "--brief"}).out, "same: 1 block, 1 record, 1 value\n");
  EXPECT_EQ(Diff({"--steps-b", "2,4", "--brief"}).out, "same: 2 blocks, 2 records, 2 values\n");
  EXPECT_EQ(Diff({"--steps-b", "2,3", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,an=1,lc=1,sub=2\",,1,value,20,15,peak 0.333333 > 2e-05\n");
  const RunResult run = Diff({"--steps-a", "last"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.err, "quilon: error: steps are matched by their position, and there are 1 step of " + a_ +
                         " and 4 steps of " + b_ + ", expected as many\n");
  EXPECT_EQ(Diff({"--steps", "1", "--steps-a", "1"}).err,
            "quilon: error: --steps goes without --steps-a and --steps-b\n");
}

TEST_F(DiffCommand, StepsMatchByTheirTimesWhereAsked)
{
  WriteTimes(a_, {{0.5, 10}, {1, 20}});
  WriteTimes(b_, {{0.25, 5}, {0.5, 10}, {0.75, 15}, {1.0625, 20}});
  EXPECT_EQ(Diff({"--match-time", "0.0625", "--brief"}).out,
            "different: 0 of 2 blocks, 0 of 2 records, 2 blocks only in B; worst: temperature it=0,an=1,lc=1,sub=1, "
            "block only in B\n");
  EXPECT_EQ(Diff({"--match-time", "0.0625", "--ignore-missing=a"}).exitCode, 0);
  EXPECT_EQ(Diff({"--match-time", "0.03125", "--brief"}).out,
            "different: 0 of 1 block, 0 of 1 record, 1 block missing in B, 3 blocks only in B; worst: temperature "
            "it=0,an=1,lc=1,sub=2, block missing in B\n");
  WriteTemperatures(b_, {1});
  EXPECT_EQ(RunQuilon({"diff", a_, (folder_ / "none.onf").string(), "--match-time", "1"}).exitCode, 2);
  const std::string timeless = (folder_ / "timeless.onf").string();
  WriteTemperatures(timeless, {1});
  EXPECT_EQ(
      RunQuilon({"diff", a_, timeless, "--match-time", "1"}).err,
      "quilon: error: " + timeless + ": holds no times (501) of its steps, expected them to match steps by time\n");
  EXPECT_EQ(Diff({"--match-time", "-1"}).err,
            "quilon: error: --match-time: '-1', expected a finite number, 0 or more\n");
}

TEST_F(DiffCommand, BetweenTwoStepsValuesAreInterpolated)
{
  WriteTimes(a_, {{0.5, 10}, {1, 20}, {2, 40}});
  WriteTimes(b_, {{0.25, 4}, {0.75, 16}, {1, 20}});
  // At 0.5 half of 4 and half of 16; nothing is around 2.
  EXPECT_EQ(Diff({"--match-time", "0.001", "--interpolate", "--brief"}).out,
            "different: 0 of 2 blocks, 0 of 2 records, 1 block missing in B; worst: temperature it=0,an=1,lc=1,sub=3, "
            "block missing in B\n");
  EXPECT_EQ(Diff({"--match-time", "0.001", "--interpolate", "--ignore-missing=b"}).exitCode, 0);
  WriteTimes(b_, {{0.25, 4}, {0.75, 18}, {1, 20}});
  EXPECT_EQ(Diff({"--match-time", "0.001", "--interpolate", "--ignore-missing=b", "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\n"
            "temperature,\"it=0,an=1,lc=1,sub=1\",,1,value,10,11,peak 0.1 > 2e-05\n");
  EXPECT_EQ(Diff({"--interpolate"}).err, "quilon: error: --interpolate goes with --match-time\n");
}

TEST_F(DiffCommand, TheDifferenceMayBeKeptAsADatabase)
{
  WriteTimes(a_, {{0.5, 10}, {1, 20}});
  WriteTimes(b_, {{0.5, 10.5}, {1, 17}});
  const std::string difference = (folder_ / "difference.fed").string();
  const RunResult   run        = Diff({"-o", difference, "--brief"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, "quilon: note: " + difference + ": 3 blocks written\n");
  EXPECT_EQ(RunQuilon({"show", difference, "temperature", "--csv"}).out,
            "kind,it,an,lc,sub,time,id,value\ntemperature,0,1,1,1,0,1,0.5\ntemperature,0,1,1,2,0,1,-3\n")
      << "the times of both are the same, and what is kept is their difference";
  // The places of what is compared must not be lost.
  EXPECT_EQ(Diff({"-o", a_}).err,
            "quilon: error: " + a_ + ": is compared itself, expected another place for the difference\n");
  EXPECT_EQ(Diff({"-o", b_}).exitCode, 2);
}

TEST_F(DiffCommand, AReportThatCannotBeWrittenIsTroubleAndLeavesNothing)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {2});
  const std::string file = (folder_ / "none" / "diff.xml").string();
  const RunResult   run  = Diff({"--junit", file});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "quilon: error: " + file + ": expected a file that can be written: No such file or directory\n");
}

// An index, a result file, rules or a manifest that a report replaces would be lost.
TEST_F(DiffCommand, WhatIsReadIsNeverReplaced)
{
  WriteTemperatures(a_, {1});
  WriteTemperatures(b_, {2});
  const std::string fed   = (folder_ / "e.fed").string();
  const std::string rules = (folder_ / "rules").string();
  const std::string link  = (folder_ / "link").string();
  const std::string frd   = (folder_ / "job.frd").string();
  ASSERT_EQ(RunQuilon({"import", kTwins + "../a_tet/a_tet.frd", "-o", fed}).exitCode, 0);
  std::filesystem::copy_file(kTwins + "../a_tet/a_tet.frd", frd);
  std::filesystem::create_symlink(frd, link);
  std::ofstream(rules) << "*: exact\n";
  const std::string before = ReadTree(folder_.GetPath());

  const auto error = [&](const std::vector<std::string>& arguments) {
    const RunResult run = RunQuilon(arguments);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(ReadTree(folder_.GetPath()), before);
    return run.err;
  };
  const std::string manifest = fed + "/manifest";
  const std::string inside   = ": inside a working database, expected a place outside\n";
  const std::string itself   = ": is compared itself, expected another place for the ";
  EXPECT_EQ(error({"diff", a_, b_, "--junit", manifest}), "quilon: error: " + manifest + inside);
  EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", manifest}), "quilon: error: " + manifest + inside);
  EXPECT_EQ(error({"diff", frd, fed, "--junit", link}), "quilon: error: " + link + itself + "report\n");
  EXPECT_EQ(error({"diff", fed, frd, "--junit", frd}), "quilon: error: " + frd + itself + "report\n");
  EXPECT_EQ(error({"diff", "--learn", fed, frd, "-o", frd}), "quilon: error: " + frd + itself + "rules\n");
  EXPECT_EQ(error({"diff", a_, b_, "--junit", b_ + "/index"}), "quilon: error: " + b_ + "/index" + itself + "report\n");
  EXPECT_EQ(error({"diff", a_, b_, "--rules", rules, "--junit", rules}),
            "quilon: error: " + rules + ": has the rules, expected another place for the report\n");
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
  EXPECT_EQ(RunQuilon({"diff", "--learn", a_, b_, c, "-o", "-"}).out, ReadAll(rules));
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
  EXPECT_EQ(error({"diff", "--learn", a_, b_}),
            "quilon: error: --learn: -o is missing, expected the rules file to write\n");
  EXPECT_EQ(error({"diff", "--learn", a_, "-o", "x"}), "quilon: error: --learn: expected two accepted runs or more\n");
  EXPECT_EQ(error({"diff", a_, b_, "--match", "index", "--match-points", "1"}),
            "quilon: error: --match index and --match-points exclude each other, expected one at most\n");
  EXPECT_EQ(error({"diff", a_, b_, "--max", "-1"}),
            "quilon: error: --max: '-1', expected a count, 0 or more, see 'quilon diff --help'\n");
  EXPECT_EQ(error({"diff", a_, b_, "--brief", "--csv"}), "quilon: error: --brief goes without --csv and --table\n");
  for (const char* option : {"--exact", "--any"})
    EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", "x", option}),
              "quilon: error: --learn writes rules and takes none, expected --mode-sign at most\n");
  EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", "x", "--rule", "stress: abs=1"}),
            "quilon: error: --learn writes rules and takes none, expected --mode-sign at most\n");
  EXPECT_EQ(error({"diff", "--learn", a_, b_, "-o", "x", "--junit", "y"}),
            "quilon: error: --learn reports nothing, expected it without --junit, --json, --csv, --table, --norms, "
            "--brief and --ignore-missing\n");
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
  for (const char* part : {"|a-b| <= 2e-5 * P", "|a-b| <= 1e-6, and where both are positive |a-b| / min(a,b) <=\n1e-6",
                           "|a-b| <= T * max(|a|,|b|)", "|a-b| <= T * P", "at most N steps from a to b",
                           "Two fields of floats count theirs", "Exit codes: 0 same, 1 different, 2 trouble.",
                           "  quilon diff old.onf new.onf\n"})
    EXPECT_NE(help.find(part), std::string::npos) << part << '\n' << help;
}

// A density that a deck does not state is stored as no number.
TEST(DiffOfResults, WhatADeckDoesNotStateIsSaidSo)
{
  const TempFolder folder;
  const auto       import = [&](const std::string& name, const std::string& density) {
    std::ofstream(folder / (name + ".inp"))
        << "*NODE\n1, 0., 0., 0.\n2, 1., 0., 0.\n3, 0., 1., 0.\n4, 0., 0., 1.\n"
        << "*ELEMENT, TYPE=C3D4, ELSET=E\n1, 1, 2, 3, 4\n"
        << "*MATERIAL, NAME=M\n*ELASTIC\n210000., 0.3\n" + density + "*SOLID SECTION, ELSET=E, MATERIAL=M\n";
    const std::string database = (folder / (name + ".fed")).string();
    EXPECT_EQ(RunQuilon({"import", (folder / (name + ".inp")).string(), "-o", database, "-q"}).exitCode, 0);
    return database;
  };
  const std::string without = import("without", "");
  const std::string with    = import("with", "*DENSITY\n7.8E-9\n");
  EXPECT_EQ(RunQuilon({"diff", without, without, "--exact"}).exitCode, 0);
  EXPECT_EQ(RunQuilon({"diff", without, with, "--csv"}).out,
            "kind,step,layer,id,component,A,B,rule\nmaterial,it=0,,1,density,not stated,7.8e-09,nan\n");
  const json told = json::parse(RunQuilon({"diff", without, with, "--json"}).out).at("differences").at(0);
  EXPECT_EQ(told.at("a"), nullptr);
  EXPECT_EQ(told.at("b"), 7.8e-9);
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
  EXPECT_EQ(told.at("blocks").at("only-in-b"), 2);
  for (const json& norms : told.at("norms")) {
    EXPECT_NEAR(norms.at("relative").get<double>(), 0.5, 1e-4);  // linear but for some 1e-5
    EXPECT_NEAR(norms.at("max").get<double>() / norms.at("peak").get<double>(), 1.0, 1e-4);
  }
  // The free corner moves most, in the direction of the load.
  const json& worst = told.at("differences").at(0);
  EXPECT_EQ(worst.at("component"), "z");
  EXPECT_EQ(worst.at("id"), 44);
  EXPECT_NEAR(worst.at("a").get<double>(), 2 * worst.at("b").get<double>(), 1e-7);
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

// A result file and what is imported from it and the .dat of the same run: other digits, and blocks that it lacks.
TEST(DiffOfResults, AResultFileIsTheSameAsTheDatabaseOfItsRun)
{
  const TempFolder  folder;
  const std::string database = (folder / "job.fed").string();
  ASSERT_EQ(
      RunQuilon({"import", kCompare + "base.inp", kCompare + "base.frd", kCompare + "base.dat", "-o", database, "-q"})
          .exitCode,
      0);
  const RunResult run = RunQuilon({"diff", kCompare + "base.frd", database, "--ignore-missing"});
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_EQ(run.out.find("only in B, ignored: "), 0u) << run.out;
  EXPECT_EQ(RunQuilon({"diff", kCompare + "base.frd", database, "--ignore-missing", "--peak", "1e-7"}).exitCode, 1);
  EXPECT_EQ(RunQuilon({"diff", kCompare + "base.frd", database}).exitCode, 1);
}

// What is drawn has the mesh of A and the differences of B.
TEST(DiffOfResults, ADifferenceHasTheMeshAndItsOwnBlocks)
{
  const TempFolder  folder;
  const std::string twice = (folder / "twice.fed").string();
  const std::string none  = (folder / "none.fed").string();
  const RunResult   run   = RunQuilon(
          {"diff", kCompare + "base.frd", kCompare + "fine.frd", "--steps-a", "1", "--steps-b", "1", "-o", twice});
  EXPECT_EQ(run.exitCode, 1);
  ASSERT_EQ(RunQuilon({"diff", kCompare + "base.frd", kCompare + "again.frd", "-o", none}).exitCode, 0);
  for (const char* kind : {"coordinates", "element-nodes", "element-type"})
    EXPECT_EQ(RunQuilon({"diff", kCompare + "base.frd", twice, "--select", kind, "--exact"}).exitCode, 0) << kind;
  // B has half of the displacement of A there: what is missing is the other half, and what they share is nothing.
  const json halves = json::parse(
      RunQuilon({"diff", kCompare + "base.frd", twice, "--steps", "1", "--select", "displacement", "--json"}).out);
  EXPECT_NEAR(halves.at("norms").at(0).at("relative").get<double>(), 1.5, 1e-3);  // u - (-u / 2)
  const json blocks = json::parse(RunQuilon({"ls", none, "displacement,stress", "--json"}).out);
  ASSERT_FALSE(blocks.empty());
  for (const json& block : blocks) {
    EXPECT_EQ(block.at("least"), 0.0);
    EXPECT_EQ(block.at("greatest"), 0.0);
  }
}

// What cannot be drawn is no use where places are asked for.
TEST(DiffOfResults, ADifferenceOfSelectedKindsHasTheMeshAllTheSame)
{
  const TempFolder  folder;
  const std::string out = (folder / "out.fed").string();
  ASSERT_EQ(RunQuilon({"diff", kCompare + "base.frd", kCompare + "again.frd", "--select", "displacement", "-o", out})
                .exitCode,
            0);
  for (const char* kind : {"coordinates", "element-nodes", "element-type"})
    EXPECT_EQ(RunQuilon({"diff", kCompare + "base.frd", out, "--select", kind, "--exact"}).exitCode, 0) << kind;
  EXPECT_TRUE(json::parse(RunQuilon({"ls", out, "stress", "--json"}).out).empty());
  EXPECT_EQ(RunQuilon({"plot", out, "displacement.magnitude", "-o", (folder / "out.svg").string()}).exitCode, 0);
}

#ifndef QUILON_SANITIZED  // sanitizers keep freed memory for a while

// With a mebibyte of rows for each database, both runs have more than that to read. What a block needs besides its rows
// is a sixth of these here; memory that grew with the rows would take all of them.
TEST(DiffMemory, DoesNotGrowWithTheSteps)
{
  constexpr int     kNodes = 1000;
  constexpr int     kSteps = 200;
  constexpr int     kFew   = 50;
  const TempFolder  folder;
  const std::string a    = (folder / "a.fed").string();
  const std::string b    = (folder / "b.fed").string();
  const std::string out  = (folder / "out.fed").string();
  const auto        fill = [](const std::string& name, double factor) {
    FED_ResultDatabase database(name, FED_ResultDatabase::Create);
    for (int step = 1; step <= kSteps; ++step) {
      FED_DataDescriptor key(0, static_cast<FED_OnfId>(521));
      key.SetInteger(FED_DataDescriptor::LoadCase, 1);
      key.SetInteger(FED_DataDescriptor::Substep, step);
      FED_IdDataBlock view(database.GetOrCreateDataBlock(key, kNodes), database.GetIdMapsPool(), true);
      for (int node = 1; node <= kNodes; ++node) {
        std::array<double, 6> values;
        values.fill(factor * node);
        view.SetTensor(node, values.data());
      }
    }
    database.Commit();
  };
  fill(a, 1.0);
  fill(b, 1.01);  // every value differs, by any rule
  const auto peak = [] {
    rusage usage = {};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_maxrss);
  };
  for (const std::vector<std::string>& more :
       std::vector<std::vector<std::string>>{{}, {"--rule", "library"}, {"-o", out}})
  {
    std::vector<std::string> few = {"diff", a, b, "--memory", "1M", "--jobs", "1"};
    few.insert(few.end(), more.begin(), more.end());
    std::vector<std::string> many = few;
    few.insert(few.end(), {"--steps", "1-" + std::to_string(kFew)});
    const RunResult first = RunQuilon(few);
    ASSERT_EQ(first.exitCode, 1) << first.err;
    std::filesystem::remove_all(out);
    const double before = peak();
    ASSERT_EQ(RunQuilon(many).exitCode, 1);
    const double rows = 2.0 * (kSteps - kFew) * kNodes * sizeof(std::array<double, 6>) / 1024.0;
    EXPECT_LE(peak(), before + 0.25 * rows) << testing::PrintToString(more) << ", KiB";
  }
}

#endif

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
