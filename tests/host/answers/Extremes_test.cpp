#include "answers/Extremes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <gtest/gtest.h>

#include "answers/Region.h"
#include "database/StepTimes.h"
#include "HostileTensors.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TwoBricks.h"

namespace {

using namespace quilon_test;
using namespace quilon;

class Worst : public testing::Test
{
protected:
  void SetUp() override { FillTwoBricks(database_); }

  ExtremeReport Find(const std::string& selection, ExtremeRequest request = {}, const RegionOptions& options = {})
  {
    request.selection     = Selection(selection, KindTable(database_));
    request.selectionText = selection;
    Region     region(database_, options, "db");
    const auto blocks = request.selection.Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern()));
    return FindExtremes(database_, blocks, StepTimes(database_), region, request, nullptr);
  }

  /// Stresses at integration points of element 101.
  void WritePoints(const std::vector<double>& values)
  {
    FED_IdDataBlock   view(database_.GetOrCreateDataBlock(StepBlock(OnfKind::IntegrationPointStress, 1, 1), 0),
                           database_.GetIdMapsPool(), true);
    FED_IdDataRecord& record = view.CreateIdDataRecord();
    record.SetInteger(1, static_cast<int>(values.size() / 6));
    record.SetDoubleList(2, values);
    view.SetRecord(101, record);
  }

  std::string Rows(const ExtremeReport& report) const
  {
    std::string text;
    for (const Extreme& row : report.rows)
      text += row.part + (row.part.empty() ? "" : " ") + row.component + ' ' + std::to_string(row.id) + ' ' +
              std::to_string(row.value) + '\n';
    return text;
  }

  std::string MessageOf(const std::string& selection, ExtremeRequest request = {}, const RegionOptions& options = {})
  {
    try {
      Find(selection, request, options);
    } catch (const FED_Failure& failure) {
      return failure.what();
    }
    return "no failure";
  }

  FED_ResultDatabase database_;
};

TEST_F(Worst, GreatestOfAllStepsIsToldWithItsPlace)
{
  const ExtremeReport report = Find("stress.mises");
  ASSERT_EQ(report.rows.size(), 1u);
  const Extreme& row = report.rows.front();
  EXPECT_EQ(ToSelectionText(row.block), "521@it=0,an=1,lc=2,sub=1");
  EXPECT_EQ(row.kind, "nodal-stress");
  EXPECT_EQ(row.component, "mises");
  EXPECT_EQ(row.value, 24);
  EXPECT_EQ(row.id, 12);
  EXPECT_EQ(row.place, (Mesh::Point{2, 0, 1}));
  EXPECT_EQ(row.type, "node");
  EXPECT_EQ(row.time, 2.0);
  EXPECT_EQ(row.ties, 0u);
  EXPECT_EQ(report.values, 36u);
  EXPECT_EQ(report.nans, 0u);
}

TEST_F(Worst, ElementsHaveTheirCentreTypeMaterialAndSets)
{
  const Extreme row = Find("element-stress.xy").rows.front();
  EXPECT_EQ(row.id, 102);
  EXPECT_EQ(row.place, (Mesh::Point{1.5, 0.5, 0.5}));
  EXPECT_EQ(row.type, "C3D8");
  EXPECT_EQ(row.material, "ALU");
  EXPECT_EQ(row.sets, std::vector<std::string>{"RIGHT"});
  EXPECT_EQ(Find("displacement.x", {}, {.ids = "9"}).rows.front().sets, std::vector<std::string>{"MIX"});
}

TEST_F(Worst, LeastAndLargestMagnitudeAreAskedFor)
{
  ExtremeRequest least;
  least.measure = ExtremeRequest::Least;
  EXPECT_EQ(Rows(Find("displacement@lc=1", least)), "y 12 -12.000000\nz 1 0.000000\nx 1 0.500000\n");
  ExtremeRequest magnitude;
  magnitude.measure = ExtremeRequest::Magnitude;
  EXPECT_EQ(Rows(Find("displacement.y,displacement.x", magnitude)), "x 12 24.000000\ny 12 -24.000000\n");
}

TEST_F(Worst, HeadIsOfEachComponent)
{
  ExtremeRequest request;
  request.head = 2;
  EXPECT_EQ(Rows(Find("displacement.x,element-stress.xy", request)),
            "x 12 24.000000\nx 11 22.000000\nxy 102 4.000000\nxy 102 2.000000\n")
      << "of equal ones the earlier block";
}

TEST_F(Worst, PartsHaveTheirOwnWorst)
{
  ExtremeRequest request;
  request.per = ExtremeRequest::Step;
  EXPECT_EQ(Rows(Find("stress.xx", request)),
            "it=0,an=1,lc=2,sub=1 xx 12 24.000000\nit=0,an=1,lc=1,sub=2 xx 12 12.000000\n"
            "it=0,an=1,lc=1,sub=1 xx 12 6.000000\n");
  request.per = ExtremeRequest::Material;
  EXPECT_EQ(Rows(Find("stress.xx", request)), "ALU xx 12 24.000000\nSTEEL xx 8 16.000000\n");
  EXPECT_EQ(Rows(Find("element-stress.xy", request)), "ALU xy 102 4.000000\nSTEEL xy 101 2.000000\n");
  request.per = ExtremeRequest::Set;
  EXPECT_EQ(Rows(Find("stress.xx", request)),
            "RIGHT xx 12 24.000000\nMIX xx 9 18.000000\nLEFT xx 8 16.000000\nFIX xx 4 8.000000\n");
  EXPECT_EQ(Rows(Find("element-stress.xy", request)),
            "RIGHT xy 102 4.000000\nLEFT xy 101 2.000000\nMIX xy 101 2.000000\n");
}

TEST_F(Worst, GroupsAreNamedByWhatTheyAreOver)
{
  ExtremeRequest request;
  request.per = ExtremeRequest::Group;
  EXPECT_EQ(
      MessageOf("stress.xx", request),
      "no block of 'stress.xx' has components and a group, expected scalars, vectors or tensors of nodes, elements "
      "or histories");
  for (const int group : {1, 2}) {
    FED_DataDescriptor block = StepBlock(OnfKind::NodalStress, 1, 1);
    block.SetInteger(OnfIndex::Group, group);
    FED_IdDataBlock view(database_.GetOrCreateDataBlock(block, 0), database_.GetIdMapsPool(), true);
    for (int node = group == 1 ? 1 : 5; node <= (group == 1 ? 8 : 12); ++node) {
      const double tensor[6] = {100.0 * group + node, 0, 0, 0, 0, 0};
      view.SetTensor(node, tensor);
    }
  }
  EXPECT_EQ(Rows(Find("stress.xx", request)), "ALU xx 12 212.000000\nSTEEL xx 8 108.000000\n");
}

TEST_F(Worst, TiesAndNansAreTold)
{
  FED_DataDescriptor block = StepBlock(OnfKind::Temperature, 1, 1);
  FED_IdDataBlock    view(database_.GetOrCreateDataBlock(block, 0), database_.GetIdMapsPool(), true);
  const double       nan = std::numeric_limits<double>::quiet_NaN();
  for (const auto& [id, value] : {std::pair(9, 5.0), std::pair(3, 5.0), std::pair(4, 5.0), std::pair(5, nan),
                                  std::pair(1, 4.0), std::pair(2, nan)})
    view.SetScalar(id, value);
  ExtremeReport report = Find("temperature");
  EXPECT_EQ(Rows(report), "value 3 5.000000\n");
  EXPECT_EQ(report.rows.front().ties, 2u);
  EXPECT_EQ(report.rows.front().nans, 2u);
  EXPECT_EQ(report.nans, 2u);
  EXPECT_EQ(report.values, 6u);
  ExtremeRequest request;
  request.head = 5;
  report       = Find("temperature", request);
  EXPECT_EQ(Rows(report), "value 3 5.000000\nvalue 4 5.000000\nvalue 9 5.000000\nvalue 1 4.000000\n");
  EXPECT_EQ(report.rows[2].ties, 2u);
  EXPECT_EQ(report.rows[3].ties, 0u);
}

TEST_F(Worst, PointsOfElementsAreCounted)
{
  WritePoints({1, 0, 0, 0, 0, 0, 7, 7, 0, 0, 0, 0});
  const Extreme row = Find("582.mises").rows.front();
  EXPECT_EQ(row.value, 7);
  EXPECT_EQ(row.id, 101);
  EXPECT_EQ(row.point, 2);
  EXPECT_EQ(row.place, (Mesh::Point{0.5, 0.5, 0.5}));
}

TEST_F(Worst, HistoriesHaveTheStepOfTheirPosition)
{
  const Extreme row = Find("time@lc=1").rows.front();
  EXPECT_EQ(row.value, 1.0);
  EXPECT_EQ(row.time, 1.0);
  EXPECT_EQ(row.step.GetInteger(FED_DataDescriptor::Substep), 2);
  EXPECT_FALSE(row.place);
}

TEST_F(Worst, RegionsKeepTheirRecords)
{
  EXPECT_EQ(Rows(Find("stress.xx", {}, {.materials = {"STEEL"}})), "xx 8 16.000000\n");
  EXPECT_EQ(MessageOf("stress.xx", {}, {.ids = "20-30"}),
            "db: no record of 'stress.xx' is in --ids 20-30, expected a region that holds one");
  EXPECT_EQ(MessageOf("element-nodes"),
            "no block of 'element-nodes' has components, expected scalars, vectors or tensors of nodes, elements or "
            "histories");
}

TEST_F(Worst, ComponentsAreInTheAxesThatAreAskedFor)
{
  WritePoints({1, 2, 0, 0, 0, 0, 7, 5, 0, 0, 0, 0});
  ExtremeRequest request;
  request.axes          = "rectangular:0,1,0,-1,0,0";  // x is the global y, y the global -x
  request.head          = 100;
  ExtremeRequest global = request;
  global.axes.clear();
  for (const auto& [turned, stored] : {std::pair{"displacement.x", "displacement.y"},
                                       std::pair{"stress.yy", "stress.xx"}, std::pair{"582.yy", "582.xx"}})
  {
    const ExtremeReport inAxes   = Find(turned, request);
    const ExtremeReport asStored = Find(stored, global);
    ASSERT_EQ(inAxes.rows.size(), asStored.rows.size()) << turned;
    for (std::size_t i = 0; i < inAxes.rows.size(); ++i) {
      EXPECT_EQ(inAxes.rows[i].id, asStored.rows[i].id) << turned;
      EXPECT_EQ(inAxes.rows[i].point, asStored.rows[i].point) << turned;
      EXPECT_NEAR(inAxes.rows[i].value, asStored.rows[i].value, 1e-13) << turned;
    }
    EXPECT_NE(inAxes.axes, "");
    EXPECT_EQ(asStored.axes, "");
  }
}

TEST_F(Worst, PlacesWithoutAxesCountForNothingAndAreTold)
{
  // Nodes (0, 0, z) of the bricks are on the axis.
  ExtremeRequest request;
  request.axes               = "cylindrical:0,0,0,0,0,1";
  request.head               = 100;
  const ExtremeReport report = Find("displacement.x", request);
  EXPECT_GT(report.numWithoutAxes, 0u);
  EXPECT_EQ(report.nans, 0u);
  for (const Extreme& row : report.rows) EXPECT_NE(std::hypot((*row.place)[0], (*row.place)[1]), 0.0) << row.id;
  EXPECT_EQ(MessageOf("coordinates.x", request).find("--axes: coordinates (516) holds places"), 0u);
}

/// Stresses of two steps, at nodes that are in one of two sets, in both or in none.
class WorstOfHostile : public testing::TestWithParam<bool>
{
protected:
  struct Value
  {
    std::array<double, 6> tensor;
    std::size_t           block;
    int                   id;
  };
  static constexpr int kNumNodes = 1500;

  void SetUp() override
  {
    const auto tensors = HostileTensors(2 * kNumNodes, 3, GetParam());
    for (const int substep : {1, 2}) {
      const FED_DataDescriptor block = StepBlock(OnfKind::NodalStress, 1, substep);
      FED_IdDataBlock          view(database_.GetOrCreateDataBlock(block, 0), database_.GetIdMapsPool(), true);
      for (int id = 1; id <= kNumNodes; ++id) {
        values_.push_back({tensors[values_.size()], blocks_.size(), id});
        view.SetTensor(id, values_.back().tensor.data());
      }
      blocks_.push_back(block);
    }
    WriteSet(1, "THIRD", [](int id) { return id % 3 == 0; });
    WriteSet(2, "FIFTH", [](int id) { return id % 5 == 0; });
  }

  void WriteSet(int number, const std::string& name, const std::function<bool(int)>& isIn);

  /// The report as text, with every bit of a value, of a plain search over all.
  /// @param evaluated shape [values_.size()]
  std::string PlainRows(const ExtremeRequest& request, const std::vector<double>& evaluated,
                        const std::function<bool(int)>& isIn, const std::string& part) const
  {
    std::vector<std::tuple<double, std::size_t, int, double>> sorted;
    std::map<double, std::size_t>                             same;
    std::size_t                                               numNans = 0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      if (!isIn(values_[i].id)) continue;
      const double number = evaluated[i];
      if (std::isnan(number)) {
        ++numNans;
        continue;
      }
      const double badness = request.measure == ExtremeRequest::Least       ? -number
                             : request.measure == ExtremeRequest::Magnitude ? std::fabs(number)
                                                                            : number;
      sorted.emplace_back(-badness, values_[i].block, values_[i].id, number);
      ++same[-badness];
    }
    std::sort(sorted.begin(), sorted.end());
    std::string text;
    for (std::size_t i = 0; i < std::min(request.head, sorted.size()); ++i)
      text += Row(part, std::get<3>(sorted[i]), std::get<1>(sorted[i]), std::get<2>(sorted[i]),
                  same[std::get<0>(sorted[i])] - 1, numNans);
    return text;
  }

  std::vector<double> EvaluateAll(const std::string& component) const
  {
    const Component     one(component, OnfKind::NodalStress);
    std::vector<double> evaluated;
    for (const Value& value : values_) evaluated.push_back(one.Evaluate(value.tensor));
    return evaluated;
  }

  static std::string Row(const std::string& part, double value, std::size_t block, int id, std::size_t ties,
                         std::size_t nans)
  {
    char text[200];
    std::snprintf(text, sizeof text, "%s %a of block %zu at %d, %zu ties, %zu nans\n", part.c_str(), value, block, id,
                  ties, nans);
    return text;
  }

  /// @param part only rows of this one
  std::string Rows(const ExtremeReport& report, const std::string& part) const
  {
    std::string text;
    for (const Extreme& row : report.rows) {
      if (row.part != part) continue;
      const auto block = std::find(blocks_.begin(), blocks_.end(), row.block);
      text += Row(part, row.value, static_cast<std::size_t>(block - blocks_.begin()), row.id, row.ties, row.nans);
    }
    return text;
  }

  ExtremeReport Find(ExtremeRequest request, const std::string& component, const RegionOptions& options = {})
  {
    request.selection = Selection("stress." + component, KindTable());
    Region region(database_, options, "db");
    return FindExtremes(database_, blocks_, StepTimes(database_), region, request, nullptr);
  }

  FED_ResultDatabase              database_;
  std::vector<FED_DataDescriptor> blocks_;
  std::vector<Value>              values_;
};

void WorstOfHostile::WriteSet(int number, const std::string& name, const std::function<bool(int)>& isIn)
{
  FED_IdDataBlock   view(database_.GetOrCreateDataBlock(FED_DataDescriptor(0, OnfKind::NodeSet), 0),
                         database_.GetIdMapsPool(), true);
  FED_IdDataRecord& record = view.CreateIdDataRecord();
  std::vector<int>  ids;
  for (int id = 1; id <= kNumNodes; ++id)
    if (isIn(id)) ids.push_back(id);
  record.GetDataRecord().SetString(1, name);
  record.SetIntList(2, ids);
  view.SetRecord(number, record);
}

TEST_P(WorstOfHostile, InvariantsAreThoseOfAPlainSearch)
{
  for (const std::string& component : ComponentNamesOf(OnfKind::NodalStress)) {
    const std::vector<double> evaluated = EvaluateAll(component);
    for (const auto measure : {ExtremeRequest::Greatest, ExtremeRequest::Least, ExtremeRequest::Magnitude}) {
      for (const std::size_t head : {1U, 40U}) {
        ExtremeRequest request;
        request.measure            = measure;
        request.head               = head;
        const ExtremeReport report = Find(request, component);
        EXPECT_EQ(Rows(report, ""), PlainRows(
                                        request, evaluated, [](int) { return true; }, ""))
            << component << " by " << measure << ", " << head;
        EXPECT_EQ(report.values, values_.size());
      }
    }
  }
}

TEST_P(WorstOfHostile, PartsAndRegionsHaveThoseOfAPlainSearch)
{
  for (const char* component : {"zx", "p2", "tresca"}) {
    const std::vector<double> evaluated = EvaluateAll(component);
    for (const auto measure : {ExtremeRequest::Greatest, ExtremeRequest::Least, ExtremeRequest::Magnitude}) {
      ExtremeRequest request;
      request.measure = measure;
      request.head    = 3;
      EXPECT_EQ(Rows(Find(request, component, {.ids = "101-1300"}), ""),
                PlainRows(
                    request, evaluated, [](int id) { return id > 100 && id <= 1300; }, ""))
          << component << " by " << measure;
      request.per                = ExtremeRequest::Set;
      const ExtremeReport report = Find(request, component);
      EXPECT_EQ(Rows(report, "THIRD"), PlainRows(
                                           request, evaluated, [](int id) { return id % 3 == 0; }, "THIRD"))
          << component << " by " << measure;
      EXPECT_EQ(Rows(report, "FIFTH"), PlainRows(
                                           request, evaluated, [](int id) { return id % 5 == 0; }, "FIFTH"))
          << component << " by " << measure;
      EXPECT_EQ(report.values, 2u * (kNumNodes / 3 + kNumNodes / 5));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, WorstOfHostile, testing::Bool());

/// Does the last unit first: what others know of earlier blocks here is of later ones.
class BackwardCrew final : public Crew
{
public:
  std::size_t                     GetSize() const noexcept override { return 1; }
  bool                            Leads() const noexcept override { return true; }
  std::unique_ptr<UntypedResults> Begin(const UntypedPlan& plan) override
  {
    struct Made final : UntypedResults
    {
      std::shared_ptr<void> Next() override
      {
        std::shared_ptr<void> next = std::move(results.back());
        results.pop_back();
        return next;
      }
      std::vector<std::shared_ptr<void>> results;
    };
    auto       made   = std::make_unique<Made>();
    const auto worker = plan.makeWorker(true);
    for (std::size_t unit = plan.units; unit > 0; --unit) made->results.push_back(worker(unit - 1));
    return made;
  }
};

TEST(WorstOfMany, IsThatOfAPlainSearch)
{
  FED_ResultDatabase                                database;
  std::mt19937                                      random(7);
  std::vector<std::tuple<double, std::size_t, int>> plain;  // -value, block, id
  std::vector<FED_DataDescriptor>                   blocks;
  // Ids come in any order, and few different values make many ties.
  std::vector<int> ids(5000);
  for (std::size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<int>(i) + 1;
  for (const int substep : {1, 2, 3}) {
    std::shuffle(ids.begin(), ids.end(), random);
    blocks.push_back(StepBlock(OnfKind::Temperature, 1, substep));
    FED_IdDataBlock view(database.GetOrCreateDataBlock(blocks.back(), 0), database.GetIdMapsPool(), true);
    for (const int id : ids) {
      const double value = static_cast<double>(random() % 900);
      view.SetScalar(id, value);
      plain.emplace_back(-value, blocks.size() - 1, id);
    }
  }
  std::sort(plain.begin(), plain.end());
  Region       region(database, {}, "db");
  BackwardCrew backward;
  for (const std::size_t head : {1U, 7U, 40U}) {
    ExtremeRequest request;
    request.selection = Selection("temperature", KindTable());
    request.head      = head;
    for (Crew* const crew : {static_cast<Crew*>(nullptr), static_cast<Crew*>(&backward)}) {
      const ExtremeReport report =
          FindExtremes(database, blocks, StepTimes(database), region, request, nullptr, {.crew = crew});
      EXPECT_EQ(report.values, 15000U);
      ASSERT_EQ(report.rows.size(), head);
      for (std::size_t i = 0; i < head; ++i) {
        EXPECT_EQ(report.rows[i].value, -std::get<0>(plain[i])) << i;
        EXPECT_EQ(report.rows[i].block, blocks[std::get<1>(plain[i])]) << i;
        EXPECT_EQ(report.rows[i].id, std::get<2>(plain[i])) << i;
        const auto same = std::count_if(plain.begin(), plain.end(),
                                        [&](const auto& other) { return std::get<0>(other) == std::get<0>(plain[i]); });
        EXPECT_EQ(report.rows[i].ties, static_cast<std::size_t>(same) - 1) << i;
      }
    }
  }
}

}  // namespace
