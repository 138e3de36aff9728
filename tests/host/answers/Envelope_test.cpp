#include "answers/Envelope.h"
#include "answers/Region.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <random>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>
#include <gtest/gtest.h>

#include "AnswerSupport.h"
#include "HostileTensors.h"
#include "kinds/KindTable.h"
#include "progress/Crew.h"
#include "progress/Parcel.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"

namespace {

using namespace quilon;
using namespace quilon_test;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<Component> StressComponents(const std::vector<std::string>& names)
{
  std::vector<Component> components;
  for (const std::string& name : names) components.emplace_back(name, OnfKind::NodalStress);
  return components;
}

void ExpectExtreme(const EnvelopeField::Extreme& extreme, double value, std::uint32_t step)
{
  EXPECT_EQ(extreme.value, value);
  EXPECT_EQ(extreme.step, step);
}

TEST(EnvelopeField, KeepsLeastGreatestAndLargestWithTheirSteps)
{
  EnvelopeField field(StressComponents({"xx", "zx"}));
  const Tensor  steps[] = {{1, 0, 0, 0, 0, -5}, {-3, 0, 0, 0, 0, -4}, {2, 0, 0, 0, 0, -9}};
  for (const Tensor& tensor : steps) {
    field.BeginStep();
    field.Offer(7, tensor);
  }
  ASSERT_EQ(field.NumIds(), 1u);
  ExpectExtreme(field.GetLeast(0, 0), -3, 1);
  ExpectExtreme(field.GetGreatest(0, 0), 2, 2);
  ExpectExtreme(field.GetLargest(0, 0), -3, 1);
  ExpectExtreme(field.GetLeast(0, 1), -9, 2);
  ExpectExtreme(field.GetGreatest(0, 1), -4, 1);
  ExpectExtreme(field.GetLargest(0, 1), -9, 2);
}

TEST(EnvelopeField, OfEqualValuesTheEarlierStepGoverns)
{
  EnvelopeField field(StressComponents({"xx"}));
  for (const double value : {2.0, -2.0, 2.0, -2.0}) {
    field.BeginStep();
    field.Offer(1, Tensor{value, 0, 0, 0, 0, 0});
  }
  ExpectExtreme(field.GetLeast(0, 0), -2, 1);
  ExpectExtreme(field.GetGreatest(0, 0), 2, 0);
  ExpectExtreme(field.GetLargest(0, 0), 2, 0);
  EnvelopeField zeros(StressComponents({"xx"}));
  for (const double value : {0.0, -0.0, 0.0}) {
    zeros.BeginStep();
    zeros.Offer(1, Tensor{value, 0, 0, 0, 0, 0});
  }
  ExpectExtreme(zeros.GetLeast(0, 0), 0, 0);
  ExpectExtreme(zeros.GetGreatest(0, 0), 0, 0);
}

/// What a field says of all its ids and components, the ids ascending.
std::vector<std::vector<double>> SayAll(const EnvelopeField& field)
{
  std::vector<std::vector<double>> rows;
  for (const std::size_t row : field.SortedRows())
    for (std::size_t k = 0; k < field.GetComponents().size(); ++k) {
      rows.push_back({static_cast<double>(field.GetId(row))});
      for (const EnvelopeField::Extreme& extreme :
           {field.GetLeast(row, k), field.GetGreatest(row, k), field.GetLargest(row, k)})
      {
        // A NaN equals nothing: its step tells of it.
        rows.back().push_back(extreme.step == EnvelopeField::kNoStep ? 0 : extreme.value);
        rows.back().push_back(extreme.step);
      }
    }
  return rows;
}

/// Steps with ties, NaNs, ids in changing order and ids that some steps lack; a run of the generator for a number.
void OfferSteps(EnvelopeField& field, unsigned begin, unsigned end)
{
  for (unsigned step = begin; step < end; ++step) {
    std::mt19937 random(step);
    field.BeginStep(step);
    for (int i = 0; i < 60; ++i) {
      const int    id   = step % 3 == 2 ? 200 - i : i;
      const auto   draw = [&random]() { return random() % 7 == 0 ? kNaN : static_cast<double>(random() % 5) - 2.0; };
      const double xx   = draw();
      const double yy   = i < 4 ? kNaN : draw();
      if (random() % 4 != 0) field.Offer(id, Tensor{xx, yy, 0, 0, 0, 0});
    }
  }
}

/// @return the field as another process gets it
EnvelopeField SentAway(EnvelopeField& field)
{
  ParcelWriter writer;
  writer(field);
  const std::string bytes = writer.Take();
  ParcelReader      reader(bytes);
  EnvelopeField     received;
  reader(received);
  return received;
}

TEST(EnvelopeField, WhatIsMergedIsAsIfItHadBeenOffered)
{
  constexpr unsigned kSteps = 9;
  EnvelopeField      whole(StressComponents({"xx", "yy"}));
  OfferSteps(whole, 0, kSteps);
  for (const unsigned first : {0u, 1u, 4u, kSteps})
    for (unsigned second = first; second <= kSteps; ++second) {
      EnvelopeField                              field(StressComponents({"xx", "yy"}));
      std::vector<std::pair<unsigned, unsigned>> ranges = {{0u, first}, {first, second}, {second, kSteps}};
      if (second % 3 == 0) std::swap(ranges.front(), ranges.back());
      for (const auto& [begin, end] : ranges) {
        EnvelopeField part(StressComponents({"xx", "yy"}));
        OfferSteps(part, begin, end);
        field.Merge(second % 2 == 0 ? std::move(part) : SentAway(part));
      }
      EXPECT_EQ(SayAll(field), SayAll(whole)) << first << ' ' << second;
      EXPECT_EQ(field.NumSteps(), whole.NumSteps());
      EXPECT_EQ(field.NumNans(), whole.NumNans());
      EXPECT_EQ(field.CountPartial(), whole.CountPartial());
    }
}

TEST(EnvelopeField, OfEqualValuesTheEarlierStepGovernsInWhateverOrderTheyCome)
{
  for (const std::vector<std::uint32_t>& order :
       std::vector<std::vector<std::uint32_t>>{{0, 1, 2, 3}, {3, 2, 1, 0}, {2, 0, 3, 1}})
    for (const bool atOnce : {false, true}) {
      EnvelopeField field(StressComponents({"xx", "p1", "mises", "tresca"}));
      for (const std::uint32_t step : order) {
        // Steps 1 and 3 are the same, and 0 and 2 but for the sign of their zeros.
        const double zero   = step == 2 ? -0.0 : 0.0;
        const Tensor tensor = step % 2 == 0 ? Tensor{zero, 0, 0, 0, 0, 0} : Tensor{2, 0, 0, 1, 0, 0.5};
        field.BeginStep(step);
        const int id = 7;
        if (atOnce)
          field.OfferAll(1, &id, tensor.data(), 6);
        else
          field.Offer(id, tensor);
      }
      EXPECT_EQ(field.NumSteps(), 4u);
      for (std::size_t k = 0; k < 4; ++k) {
        const double most = field.GetComponents()[k].Evaluate(Tensor{2, 0, 0, 1, 0, 0.5});
        ExpectExtreme(field.GetLeast(0, k), 0, 0);
        EXPECT_FALSE(std::signbit(field.GetLeast(0, k).value)) << "step 0 has a positive zero";
        ExpectExtreme(field.GetGreatest(0, k), most, 1);
      }
    }
}

// By chunks: the steps of some ids, then those of others, some of which have come before.
TEST(EnvelopeField, StepsComeInAnyOrder)
{
  const std::size_t        numIds   = 300;
  const std::size_t        numSteps = 6;
  std::vector<std::string> names    = ComponentNamesOf(OnfKind::NodalStress);
  std::vector<int>         ids(numIds);
  std::iota(ids.begin(), ids.end(), 1);
  const auto    tensors = HostileTensors(numIds * numSteps, 9, true);
  EnvelopeField ordered(StressComponents(names));
  EnvelopeField mixed(StressComponents(names));
  for (std::size_t step = 0; step < numSteps; ++step) {
    ordered.BeginStep();
    for (std::size_t i = 0; i < numIds; ++i) ordered.Offer(ids[i], tensors[step * numIds + i]);
  }
  for (const auto& [first, last] : {std::pair(100u, 250u), std::pair(0u, 100u), std::pair(250u, 300u)})
    for (std::uint32_t step = 0; step < numSteps; ++step) {
      // Every third id of another chunk comes with this one in step 4.
      mixed.BeginStep(step);
      for (std::size_t i = 0; i < numIds; ++i) {
        const bool isMoved = step == 4 && i % 3 == 0;
        const bool isHere  = isMoved ? first == 100u : i >= first && i < last;
        if (isHere && i % 2 == 0) mixed.OfferAll(1, &ids[i], tensors[step * numIds + i].data(), 6);
        if (isHere && i % 2 == 1) mixed.Offer(ids[i], tensors[step * numIds + i]);
      }
    }
  EXPECT_EQ(SayAll(mixed), SayAll(ordered));
  EXPECT_EQ(mixed.NumNans(), ordered.NumNans());
  EXPECT_EQ(mixed.CountPartial(), 0u);
}

TEST(EnvelopeField, ANanNeverGovernsAndInfinitiesDo)
{
  EnvelopeField field(StressComponents({"xx", "yy"}));
  for (const double value : {kNaN, std::numeric_limits<double>::infinity(), kNaN}) {
    field.BeginStep();
    field.Offer(1, Tensor{value, kNaN, 0, 0, 0, 0});
  }
  ExpectExtreme(field.GetLeast(0, 0), std::numeric_limits<double>::infinity(), 1);
  ExpectExtreme(field.GetGreatest(0, 0), std::numeric_limits<double>::infinity(), 1);
  for (const EnvelopeField::Extreme& extreme : {field.GetLeast(0, 1), field.GetGreatest(0, 1), field.GetLargest(0, 1)})
  {
    EXPECT_TRUE(std::isnan(extreme.value));
    EXPECT_EQ(extreme.step, EnvelopeField::kNoStep);
  }
  EXPECT_EQ(field.NumNans(), 5u);
}

TEST(EnvelopeField, TakesIdsInAnyOrderAndTellsWhichAreNotInAllSteps)
{
  EnvelopeField                       field(StressComponents({"xx"}));
  const std::vector<std::vector<int>> orders = {{30, 10, 20}, {10, 20, 30}, {20, 40, 30}};
  for (std::size_t step = 0; step < orders.size(); ++step) {
    field.BeginStep();
    for (const int id : orders[step]) field.Offer(id, Tensor{id + double(step), 0, 0, 0, 0, 0});
  }
  const auto rows = field.SortedRows();
  ASSERT_EQ(rows.size(), 4u);
  const int           ids[]   = {10, 20, 30, 40};
  const double        least[] = {10, 20, 30, 42};
  const double        most[]  = {11, 22, 32, 42};
  const std::uint32_t steps[] = {1, 2, 2, 2};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(field.GetId(rows[i]), ids[i]);
    EXPECT_EQ(field.GetLeast(rows[i], 0).value, least[i]);
    ExpectExtreme(field.GetGreatest(rows[i], 0), most[i], steps[i]);
  }
  EXPECT_EQ(field.CountPartial(), 2u) << "10 is not in the last step, 40 in the last one alone";
}

// Ids in the same order, in another one, fewer and more, with NaNs and ties: by the column as one by one.
TEST(EnvelopeField, ManyRecordsAreTakenAsOneByOne)
{
  for (const std::vector<std::string>& names :
       {std::vector<std::string>{"xx", "yy", "zz", "xy", "yz", "zx"}, std::vector<std::string>{"yy", "mises"},
        std::vector<std::string>{"p2", "zx", "tresca"}})
  {
    EnvelopeField                       one(StressComponents(names));
    EnvelopeField                       many(StressComponents(names));
    const std::vector<std::vector<int>> steps = {{3, 1, 2, 9}, {3, 1, 2, 9},       {3, 2, 1, 9},
                                                 {1, 2},       {3, 1, 2, 9, 4, 5}, {}};
    for (std::size_t step = 0; step < steps.size(); ++step) {
      std::vector<double> values;
      for (const int id : steps[step])
        for (int k = 0; k < 6; ++k)
          values.push_back(id == 2 && step == 1 ? kNaN : double((id * 7 + k * 3 + int(step) / 2 * 5) % 11) - 5.0);
      one.BeginStep();
      many.BeginStep();
      for (std::size_t i = 0; i < steps[step].size(); ++i)
        one.Offer(steps[step][i], std::span(values).subspan(6 * i, 6));
      many.OfferAll(steps[step].size(), steps[step].data(), values.data(), 6);
    }
    ASSERT_EQ(one.NumIds(), many.NumIds());
    EXPECT_EQ(one.NumNans(), many.NumNans());
    EXPECT_GT(one.NumNans(), 0u);
    EXPECT_EQ(one.CountPartial(), many.CountPartial());
    for (std::size_t row = 0; row < one.NumIds(); ++row) {
      EXPECT_EQ(one.GetId(row), many.GetId(row));
      for (std::size_t k = 0; k < names.size(); ++k) {
        ExpectExtreme(many.GetLeast(row, k), one.GetLeast(row, k).value, one.GetLeast(row, k).step);
        ExpectExtreme(many.GetGreatest(row, k), one.GetGreatest(row, k).value, one.GetGreatest(row, k).step);
      }
    }
  }
}

TEST(EnvelopeField, InvariantsOfHostileTensorsAreThoseOfAPlainSearch)
{
  const std::size_t        numIds   = 200;
  const std::size_t        numSteps = 5;
  std::vector<int>         ids(numIds);
  std::vector<std::string> names = ComponentNamesOf(OnfKind::NodalStress);
  std::iota(ids.begin(), ids.end(), 1);
  for (const bool withExtremes : {false, true}) {
    // Some ids have the same tensor in several steps, some one that grows by any factor, a bit of it as well.
    auto tensors = HostileTensors(numIds * numSteps, 5, withExtremes);
    for (std::size_t i = numIds; i < tensors.size(); ++i) {
      if (i % 7 > 2) continue;
      tensors[i]          = tensors[i - numIds];
      const double growth = i % 7 == 0 ? 1.0 : 1.0 + std::pow(10.0, -static_cast<double>(i % 17));
      for (double& value : tensors[i]) value *= growth;
    }
    const auto offer = [&](EnvelopeField& field, std::size_t begin, std::size_t end) {
      for (std::size_t step = begin; step < end; ++step) {
        field.BeginStep(static_cast<std::uint32_t>(step));
        field.OfferAll(numIds, ids.data(), tensors[step * numIds].data(), 6);
      }
    };
    EnvelopeField field(StressComponents(names));
    offer(field, 0, numSteps);
    // The same in parts, of which one comes from another process, and offered more behind them.
    EnvelopeField parts(StressComponents(names));
    for (const std::size_t begin : {std::size_t{0}, std::size_t{2}, std::size_t{3}}) {
      EnvelopeField part(StressComponents(names));
      offer(part, begin, begin == 0 ? 2 : begin + 1);
      parts.Merge(begin == 2 ? SentAway(part) : std::move(part));
    }
    offer(parts, 4, numSteps);
    std::size_t numNans = 0;
    for (std::size_t k = 0; k < names.size(); ++k) {
      const Component component(names[k], OnfKind::NodalStress);
      for (std::size_t row = 0; row < numIds; ++row) {
        EnvelopeField::Extreme least;
        EnvelopeField::Extreme greatest;
        for (std::uint32_t step = 0; step < numSteps; ++step) {
          const double value = component.Evaluate(tensors[step * numIds + row]);
          numNans += std::isnan(value) ? 1 : 0;
          if (value < least.value || (least.step == EnvelopeField::kNoStep && !std::isnan(value)))
            least = {value, step};
          if (value > greatest.value || (greatest.step == EnvelopeField::kNoStep && !std::isnan(value)))
            greatest = {value, step};
        }
        const auto same = [](const EnvelopeField::Extreme& a, const EnvelopeField::Extreme& b) {
          return a.step == b.step && (a.value == b.value || (std::isnan(a.value) && std::isnan(b.value)));
        };
        ASSERT_TRUE(same(field.GetLeast(row, k), least)) << names[k] << " of " << row;
        ASSERT_TRUE(same(field.GetGreatest(row, k), greatest)) << names[k] << " of " << row;
        ASSERT_TRUE(same(parts.GetLeast(row, k), least)) << names[k] << " of " << row << " in parts";
        ASSERT_TRUE(same(parts.GetGreatest(row, k), greatest)) << names[k] << " of " << row << " in parts";
      }
    }
    EXPECT_EQ(field.NumNans(), numNans);
  }
}

// More ids than go together, of two chunks of which the second begins with earlier steps, then the first once more.
TEST(EnvelopeField, StepsTogetherAreThoseOfEachByItself)
{
  constexpr std::size_t kIds     = 2100;
  constexpr std::size_t kSteps   = 4;
  const auto            names    = std::vector<std::string>{"p1", "xx"};
  const auto            tensors  = HostileTensors(kIds * kSteps, 11, false);
  const auto            valuesOf = [&](std::size_t step) { return tensors[step * kIds].data(); };
  std::vector<int>      ids(kIds);
  EnvelopeField         together(StressComponents(names));
  EnvelopeField         each(StressComponents(names));
  for (const int first : {5000, 1, 5000}) {
    std::iota(ids.begin(), ids.end(), first);
    std::vector<EnvelopeField::StepValues> steps;
    for (std::uint32_t step = 0; step < kSteps; ++step) {
      const std::size_t from = (step + static_cast<std::size_t>(first)) % kSteps;
      steps.push_back({2 * step, valuesOf(from)});
      each.BeginStep(2 * step);
      each.OfferAll(kIds, ids.data(), valuesOf(from), 6);
    }
    const std::span all(steps);
    together.OfferSteps(kIds, ids.data(), all.first(3), 6);
    together.OfferSteps(kIds, ids.data(), all.last(1), 6);
  }
  EXPECT_EQ(together.NumSteps(), each.NumSteps());
  EXPECT_EQ(together.CountPartial(), each.CountPartial());
  ASSERT_EQ(together.NumIds(), 2 * kIds);
  for (std::size_t row = 0; row < 2 * kIds; ++row) {
    ASSERT_EQ(together.GetId(row), each.GetId(row));
    for (const std::size_t k : {0U, 1U}) {
      const auto least    = each.GetLeast(row, k);
      const auto greatest = each.GetGreatest(row, k);
      ExpectExtreme(together.GetLeast(row, k), least.value, least.step);
      ExpectExtreme(together.GetGreatest(row, k), greatest.value, greatest.step);
    }
  }
}

TEST(EnvelopeField, InvariantsAreThoseOfEachStep)
{
  EnvelopeField field(StressComponents({"mises", "p1"}));
  for (const Tensor& tensor : {Tensor{5, 5, 5, 0, 0, 0}, Tensor{-4, 0, 0, 0, 0, 0}}) {
    field.BeginStep();
    field.Offer(1, tensor);
  }
  ExpectExtreme(field.GetLeast(0, 0), 0, 0);
  ExpectExtreme(field.GetGreatest(0, 0), 4, 1);
  ExpectExtreme(field.GetGreatest(0, 1), 5, 0);
}

class Envelopes : public ::testing::Test
{
protected:
  Envelopes()
  {
    // Load case 2 before load case 1 in time of writing: steps go by their keys.
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 2, 1), 5, {1, 0, 0, 0, 0, 0});
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 1, 1), 5, {3, 0, 0, 0, 0, 0});
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 1, 2), 5, {-2, 0, 0, 0, 0, 7});
    WriteTensor(database_, ResultKey(OnfKind::NodalStress, 1, 2), 3, {4, 0, 0, 0, 0, 0});
    WriteVector(database_, ResultKey(OnfKind::Displacement, 1, 1), 5, {1, 2, 3});
    WriteScalar(database_, ResultKey(OnfKind::ElementEnergy, 1, 1), 9, 0.5);
    WriteNode(database_, 5, {1, 1, 0});
    WriteNode(database_, 3, {0, 0, 1});
  }

  std::vector<EnvelopeSeries> Calculate(const std::string& selection, const std::string& axes = "")
  {
    EnvelopeRequest request{"small", Selection(selection, KindTable(database_)), axes, region_, selection};
    const auto      blocks = request.selection.Apply(database_.GetDataDescriptors(FED_DataDescriptorPattern()));
    std::vector<EnvelopeSeries> all;
    report_ = CalculateEnvelopes(database_, blocks, request, nullptr,
                                 [&all](const EnvelopeSeries& series) { all.push_back(series); });
    return all;
  }

  FED_ResultDatabase database_;
  EnvelopeReport     report_;
  Region*            region_ = nullptr;
};

TEST_F(Envelopes, AreOfEachKindOverItsStepsInTheirOrder)
{
  const auto all = Calculate("@it=0");
  ASSERT_EQ(all.size(), 3u);
  EXPECT_EQ(ToSelectionText(all[0].key), "510@it=0");
  EXPECT_EQ(ToSelectionText(all[1].key), "521@it=0");
  EXPECT_EQ(ToSelectionText(all[2].key), "540@it=0");
  const EnvelopeSeries& stress = all[1];
  ASSERT_EQ(stress.steps.size(), 3u);
  EXPECT_EQ(ToSelectionText(stress.steps[0]), "0@it=0,an=1,lc=1,sub=1");
  EXPECT_EQ(ToSelectionText(stress.steps[2]), "0@it=0,an=1,lc=2,sub=1");
  const auto rows = stress.field.SortedRows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(stress.field.GetId(rows[1]), 5);
  ExpectExtreme(stress.field.GetLeast(rows[1], 0), -2, 1);
  ExpectExtreme(stress.field.GetGreatest(rows[1], 0), 3, 0);
  ExpectExtreme(stress.field.GetGreatest(rows[1], 5), 7, 1);
  EXPECT_EQ(stress.field.CountPartial(), 1u);
  EXPECT_EQ(report_.skippedKinds, std::vector<std::string>{"coordinates"});
}

/// Several who work in one thread.
class ManyInOne final : public Crew
{
public:
  explicit ManyInOne(std::size_t size) : size_(size) {}

  std::size_t                     GetSize() const noexcept override { return size_; }
  bool                            Leads() const noexcept override { return true; }
  std::unique_ptr<UntypedResults> Begin(const UntypedPlan& plan) override
  {
    units_ = plan.units;
    return ThreadCrew(1).Begin(plan);
  }

  std::size_t NumUnits() const noexcept { return units_; }

private:
  std::size_t size_;
  std::size_t units_ = 0;
};

// Two chunks of tensors, in one step in another order and in two without the last ids.
TEST_F(Envelopes, OfManyRecordsAreTheSameForAnyCrew)
{
  constexpr std::size_t kIds  = 66000;
  constexpr std::size_t kLess = 65600;
  FED_ResultDatabase    database;
  EnvelopeField         expected(StressComponents({"xx"}));
  std::vector<int>      ids(kIds);
  std::iota(ids.begin(), ids.end(), 1);
  for (std::size_t step = 0; step < 4; ++step) {
    FED_DataBlock& block =
        database.GetOrCreateDataBlock(ResultKey(OnfKind::NodalStress, 1, static_cast<int>(step) + 1), kIds);
    if (step == 1) std::reverse(ids.begin(), ids.end());
    if (step == 2) ids.resize(kLess);  // those of the greatest numbers
    std::vector<double> values;
    for (const int id : ids) {
      const Tensor tensor = {double((id * 7 + int(step) * 3) % 5), 0, 0, 0, 0, 0};
      values.insert(values.end(), tensor.begin(), tensor.end());
      block.SetValuesAt(database.GetIdMapsPool().FindOrAddIndex(OnfKind::NodeEntity, id), tensor.data());
    }
    expected.BeginStep();
    expected.OfferAll(ids.size(), ids.data(), values.data(), 6);
  }
  const auto blocks = database.GetDataDescriptors(FED_DataDescriptorPattern());
  ASSERT_EQ(dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(blocks.back())).GetChunkCount(), 2u);
  const auto rows = expected.SortedRows();
  for (const std::size_t size : {1U, 3U, 20U}) {
    ManyInOne             crew(size);
    const EnvelopeRequest request{"many", Selection("stress.xx", KindTable(database)), ""};
    std::size_t           numSame = 0;
    const auto            compare = [&](const EnvelopeSeries& series) {
      const auto own  = series.field.SortedRows();
      const auto same = [](const EnvelopeField::Extreme& a, const EnvelopeField::Extreme& b) {
        return a.step == b.step && a.value == b.value;
      };
      ASSERT_EQ(own.size(), rows.size());
      for (std::size_t i = 0; i < rows.size(); ++i)
        numSame += series.field.GetId(own[i]) == expected.GetId(rows[i]) &&
                           same(series.field.GetLeast(own[i], 0), expected.GetLeast(rows[i], 0)) &&
                           same(series.field.GetGreatest(own[i], 0), expected.GetGreatest(rows[i], 0))
                                  ? 1
                                  : 0;
      EXPECT_EQ(series.field.CountPartial(), kIds - kLess);
      EXPECT_EQ(series.field.NumSteps(), 4u);
    };
    CalculateEnvelopes(database, blocks, request, nullptr, compare, {.crew = &crew});
    EXPECT_EQ(numSame, kIds) << size;
    EXPECT_EQ(crew.NumUnits(), std::min<std::size_t>(size, 8)) << "two chunks of four steps";
  }
}

TEST_F(Envelopes, GroupsAndLayersHaveTheirOwn)
{
  FED_DataDescriptor group = ResultKey(OnfKind::NodalStress, 1, 1);
  group.SetInteger(OnfIndex::Group, 2);
  WriteTensor(database_, group, 5, {100, 0, 0, 0, 0, 0});
  const auto all = Calculate("stress");
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].steps.size(), 3u);
  EXPECT_EQ(ToSelectionText(all[1].key), "521@it=0,group=2");
  EXPECT_EQ(all[1].steps.size(), 1u);
}

// Node 5 is at 45 degrees: radial of xx alone is a half.
TEST_F(Envelopes, AreInTheAxesThatAreAskedFor)
{
  const auto all  = Calculate("stress", "cylindrical:0,0,0,0,0,1");
  const auto rows = all[0].field.SortedRows();
  EXPECT_NEAR(all[0].field.GetGreatest(rows[1], 0).value, 1.5, 1e-15);
  EXPECT_EQ(all[0].numWithoutAxes, 1u) << "node 3 is on the axis";
  EXPECT_TRUE(std::isnan(all[0].field.GetLeast(rows[0], 0).value));
  EXPECT_EQ(report_.axes, "axes: x radial, y tangential, z along the axis through 0,0,0 along 0,0,1");
}

TEST_F(Envelopes, AreOfARegion)
{
  RegionOptions near;
  near.near = {0.0, 0.0, 1.0};  // node 3
  Region region(database_, near, "small");
  region_        = &region;
  const auto all = Calculate("stress,displacement");
  ASSERT_EQ(all.size(), 1u) << "no displacement at node 3";
  EXPECT_EQ(ToSelectionText(all[0].key), "521@it=0");
  ASSERT_EQ(all[0].field.NumIds(), 1u);
  EXPECT_EQ(all[0].field.GetId(0), 3);
  EXPECT_EQ(all[0].field.NumSteps(), 3u);

  Region nothing(database_, {"7"}, "small");
  region_ = &nothing;
  EXPECT_EQ(FailureOf([&] { Calculate("stress"); }).find("no record of 'stress' "), 7u)
      << FailureOf([&] { Calculate("stress"); });
}

TEST_F(Envelopes, KindsWithoutStepsOrComponentsAreAFailureWhenThereAreNoOthers)
{
  EXPECT_EQ(FailureOf([&] { Calculate("coordinates"); }),
            "small: no result steps to envelop in coordinates, expected scalars, vectors or tensors of nodes or "
            "elements");
}

TEST_F(Envelopes, AreWrittenAsUserKindsBesideTheStepsThatGovern)
{
  FED_ResultDatabase target;
  const KindTable    kinds(database_);
  for (const EnvelopeSeries& series : Calculate("stress,element-energy")) WriteEnvelope(series, kinds, target);
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1200)), "nodal-stress envelope");
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1201)), "nodal-stress envelope load case");
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1202)), "nodal-stress envelope substep");
  EXPECT_EQ(target.GetUserKindName(static_cast<FED_OnfId>(1400)), "element-energy envelope");
  const auto valueOf = [&](int onf, int loadCase, int id) {
    Tensor                     tensor{};
    const FED_ConstIdDataBlock view(target.GetConstDataBlock(ResultKey(onf, loadCase, 1, 3)), target.GetIdMapsPool());
    view.GetTensor(id, tensor.data());
    return tensor;
  };
  EXPECT_EQ(valueOf(1200, EnvelopeLeast, 5), (Tensor{-2, 0, 0, 0, 0, 0}));
  EXPECT_EQ(valueOf(1200, EnvelopeGreatest, 5), (Tensor{3, 0, 0, 0, 0, 7}));
  EXPECT_EQ(valueOf(1200, EnvelopeLargest, 5), (Tensor{3, 0, 0, 0, 0, 7}));
  EXPECT_EQ(valueOf(1201, EnvelopeLeast, 5), (Tensor{1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(valueOf(1202, EnvelopeLeast, 5), (Tensor{2, 1, 1, 1, 1, 1}));
  EXPECT_EQ(target.GetDataDescriptors(FED_DataDescriptorPattern()).size(), 18u);
}

}  // namespace
