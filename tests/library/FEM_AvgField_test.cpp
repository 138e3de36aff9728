#include "FEM_AvgField.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QuilonDbConnector/FED_DataDescriptor.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonUtilities/FED_Failure.h>

#include "AllocationFailure.h"
#include "FailureSweep.h"
#include "RecordingDatabase.h"

namespace {

using namespace FEM_AvgFieldDefs;
using FEM_AvgUtil::AvgData;
using FEM_AvgUtil::StatData;
using quilon_test::AllocationFailure;
using quilon_test::Detail;
using quilon_test::RecordingDatabase;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

template <int N>
using AvgField = FEM_AvgField<int, AvgData<N>, N>;
template <int N>
using StatField = FEM_AvgField<int, StatData<N>, N>;

static_assert(SeparateLayers == 0 && NoLayerIndex == 1 && Average == 0 && Sum == 1 && Variance == 2);
static_assert(std::is_aggregate_v<AvgData<3>> && std::is_trivially_copyable_v<AvgData<3>>);
static_assert(std::is_aggregate_v<StatData<6>> && std::is_trivially_copyable_v<StatData<6>>);
static_assert(std::is_nothrow_move_constructible_v<AvgField<1>> && std::is_nothrow_move_assignable_v<AvgField<1>>);

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Node results of one, three and six components.
constexpr FED_OnfId kTemperature  = FED_OnfId(514);
constexpr FED_OnfId kDisplacement = FED_OnfId(510);
constexpr FED_OnfId kStress       = FED_OnfId(521);

template <typename Field>
void Add(Field& field, int id, int layer, double value)
{
  const double values[1] = {value};
  field.AddValue(id, layer, values);
}

template <typename Field>
std::vector<int> DumpedIds(const Field& field, int layer)
{
  std::vector<int>        ids;
  std::vector<AvgData<1>> data;
  field.DumpField(layer, ids, data);
  return ids;
}

// Adding and reading.

TEST(FEM_AvgField, SumsAndCountsTheValuesOfAnId)
{
  AvgField<1> field;
  for (const double value : {1.0, 2.0, 6.0}) Add(field, 5, 0, value);
  const AvgData<1>* data = field.GetData(0, 5);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->sum[0], 9.0);
  EXPECT_EQ(data->count, 3);
}

TEST(FEM_AvgField, KeepsMeanAndSquaredDeviationsOfAnId)
{
  StatField<1> field;
  for (const double value : {1.0, 2.0, 6.0}) Add(field, 5, 0, value);
  const StatData<1>* data = field.GetData(0, 5);
  ASSERT_NE(data, nullptr);
  EXPECT_EQ(data->mean[0], 3.0);
  EXPECT_EQ(data->m2[0], 14.0);
  EXPECT_EQ(data->count, 3);
}

TEST(FEM_AvgField, FoldsEveryComponentByItself)
{
  AvgField<3> sums;
  sums.AddValue(8, {1, 20, -300});
  sums.AddValue(8, {4, 50, -600});
  EXPECT_THAT(sums.GetData(0, 8)->sum, ElementsAre(5.0, 70.0, -900.0));
  EXPECT_EQ(sums.GetData(0, 8)->count, 2);

  AvgField<6> tensors;
  tensors.AddValue(8, {1, 2, 3, 4, 5, 6});
  tensors.AddValue(8, {10, 20, 30, 40, 50, 60});
  EXPECT_THAT(tensors.GetData(0, 8)->sum, ElementsAre(11.0, 22.0, 33.0, 44.0, 55.0, 66.0));

  StatField<3> vectorStatistics;
  vectorStatistics.AddValue(8, {1, 20, -300});
  vectorStatistics.AddValue(8, {3, 20, -100});
  EXPECT_THAT(vectorStatistics.GetData(0, 8)->mean, ElementsAre(2.0, 20.0, -200.0));
  EXPECT_THAT(vectorStatistics.GetData(0, 8)->m2, ElementsAre(2.0, 0.0, 20000.0));

  StatField<6> tensorStatistics;
  tensorStatistics.AddValue(8, {1, 2, 3, 4, 5, 6});
  tensorStatistics.AddValue(8, {3, 6, 9, 12, 15, 18});
  EXPECT_THAT(tensorStatistics.GetData(0, 8)->mean, ElementsAre(2.0, 4.0, 6.0, 8.0, 10.0, 12.0));
  EXPECT_THAT(tensorStatistics.GetData(0, 8)->m2, ElementsAre(2.0, 8.0, 18.0, 32.0, 50.0, 72.0));
}

TEST(FEM_AvgField, AValueWithoutALayerGoesToLayerZero)
{
  AvgField<1> field(2);
  field.AddValue(5, {7.0});
  ASSERT_NE(field.GetData(0, 5), nullptr);
  EXPECT_EQ(field.GetData(0, 5)->sum[0], 7.0);
  EXPECT_EQ(field.GetData(1, 5), nullptr);
}

TEST(FEM_AvgField, TheFirstValueOfAnIdIsItsMeanAsItStands)
{
  StatField<3> field;
  field.AddValue(5, {-0.0, kInfinity, 1e308});
  const StatData<3>& data = *field.GetData(0, 5);
  EXPECT_TRUE(std::signbit(data.mean[0]));
  EXPECT_EQ(data.mean[1], kInfinity);
  EXPECT_EQ(data.mean[2], 1e308);
  EXPECT_THAT(data.m2, Each(0.0));
}

TEST(FEM_AvgField, AnIdThatWasNeverAddedHasNoData)
{
  AvgField<1> field(2);
  Add(field, 5, 1, 1.0);
  EXPECT_EQ(field.GetData(1, 6), nullptr);
  EXPECT_EQ(field.GetData(0, 5), nullptr);  // known to the other layer only
  EXPECT_EQ(field.GetData(1, -1), nullptr);
  EXPECT_EQ(field.FieldSize(), 0u);
}

TEST(FEM_AvgField, DumpsIdsAscendingAsUnsigned)
{
  AvgField<1> field;
  for (const int id : {300, 7, 70000, -1, 255}) Add(field, id, 0, id + 0.5);
  std::vector<int>        ids;
  std::vector<AvgData<1>> data;
  field.DumpField(0, ids, data);
  EXPECT_THAT(ids, ElementsAre(7, 255, 300, 70000, -1));
  ASSERT_EQ(data.size(), 5u);
  for (std::size_t k = 0; k < 5; ++k) EXPECT_EQ(data[k].sum[0], ids[k] + 0.5);
}

TEST(FEM_AvgField, ADumpReplacesTheContentsOfBothVectors)
{
  AvgField<1> field(2);
  Add(field, 4, 0, 40.0);
  std::vector<int>        ids  = {1, 2, 3};
  std::vector<AvgData<1>> data = {{{9.0}, 9}, {{8.0}, 8}, {{7.0}, 7}};
  field.DumpField(0, ids, data);
  EXPECT_THAT(ids, ElementsAre(4));
  ASSERT_EQ(data.size(), 1u);
  EXPECT_EQ(data[0].sum[0], 40.0);
  EXPECT_EQ(data[0].count, 1);
  field.DumpField(1, ids, data);
  EXPECT_THAT(ids, IsEmpty());
  EXPECT_TRUE(data.empty());
}

TEST(FEM_AvgField, FieldSizeCountsLayerZeroOnly)
{
  AvgField<1> field(3);
  Add(field, 5, 1, 1.0);
  Add(field, 6, 2, 1.0);
  EXPECT_EQ(field.FieldSize(), 0u);
  Add(field, 5, 0, 1.0);
  Add(field, 5, 0, 1.0);
  Add(field, -5, 0, 1.0);
  EXPECT_EQ(field.FieldSize(), 2u);
}

TEST(FEM_AvgField, ADefaultFieldHasOneLayer)
{
  EXPECT_EQ(AvgField<1>().NumLayers(), 1);
  EXPECT_EQ(StatField<6>().NumLayers(), 1);
  EXPECT_EQ(AvgField<3>(7).NumLayers(), 7);
}

TEST(FEM_AvgField, TellsWhetherAnyLayerReceivedAValue)
{
  AvgField<1> field(3);
  EXPECT_FALSE(field.IsAnyValueAdded());
  Add(field, 5, 2, 0.0);
  EXPECT_TRUE(field.IsAnyValueAdded());
}

#ifndef NDEBUG
// Release builds leave the layer to the caller.
TEST(FEM_AvgFieldDeathTest, DebugBuildsStopAtALayerThatIsNotThere)
{
  AvgField<1> field(3);
  EXPECT_DEATH(Add(field, 5, 3, 0.0), "LayerAt");
  EXPECT_DEATH(Add(field, 5, -1, 0.0), "LayerAt");
}
#endif

TEST(FEM_AvgField, ZeroOrFewerLayersMakeAFieldWithoutLayers)
{
  for (const int numLayers : {0, -1, std::numeric_limits<int>::min()}) {
    AvgField<1> field(numLayers);
    EXPECT_EQ(field.NumLayers(), 0);
    EXPECT_EQ(field.FieldSize(), 0u);
    EXPECT_FALSE(field.IsAnyValueAdded());
    field.ResetField();
    const AvgField<1> copy(field);
    EXPECT_EQ(copy.NumLayers(), 0);
  }
}

TEST(FEM_AvgField, AResetZeroesTheDataAndKeepsEverythingElse)
{
  AvgField<1> sums(2);
  Add(sums, 300, 1, 3.0);
  Add(sums, 7, 1, 4.0);
  Add(sums, 9, 0, 5.0);
  sums.ResetField();
  EXPECT_TRUE(sums.IsAnyValueAdded());
  EXPECT_EQ(sums.FieldSize(), 1u);
  EXPECT_THAT(DumpedIds(sums, 1), ElementsAre(7, 300));
  for (const auto& [layer, id] : {std::pair(1, 300), std::pair(1, 7), std::pair(0, 9)}) {
    EXPECT_EQ(sums.GetData(layer, id)->sum[0], 0.0);
    EXPECT_EQ(sums.GetData(layer, id)->count, 0);
  }

  StatField<3> statistics;
  statistics.AddValue(5, {1, 2, 3});
  statistics.AddValue(5, {4, 6, 8});
  statistics.ResetField();
  EXPECT_THAT(statistics.GetData(0, 5)->mean, Each(0.0));
  EXPECT_THAT(statistics.GetData(0, 5)->m2, Each(0.0));
  EXPECT_EQ(statistics.GetData(0, 5)->count, 0);
}

TEST(FEM_AvgField, AFieldStartsAnewAfterAReset)
{
  StatField<1> field;
  for (const double value : {100.0, 200.0}) Add(field, 5, 0, value);
  field.ResetField();
  for (const double value : {1.0, 2.0, 6.0}) Add(field, 5, 0, value);
  EXPECT_EQ(field.GetData(0, 5)->mean[0], 3.0);
  EXPECT_EQ(field.GetData(0, 5)->m2[0], 14.0);
  EXPECT_EQ(field.GetData(0, 5)->count, 3);
}

// Copies.

TEST(FEM_AvgField, ACopyIsDeep)
{
  AvgField<1> original(2);
  Add(original, 5, 0, 1.0);
  AvgField<1> copy(original);
  Add(copy, 5, 0, 10.0);
  Add(copy, 6, 1, 10.0);
  EXPECT_EQ(original.GetData(0, 5)->sum[0], 1.0);
  EXPECT_EQ(original.GetData(1, 6), nullptr);
  EXPECT_EQ(copy.GetData(0, 5)->sum[0], 11.0);
  EXPECT_EQ(copy.NumLayers(), 2);

  AvgField<1> untouched(original);
  original.ResetField();
  EXPECT_TRUE(untouched.IsAnyValueAdded());
  EXPECT_EQ(untouched.GetData(0, 5)->sum[0], 1.0);
}

TEST(FEM_AvgField, AssignmentReplacesLayersEntriesAndWhatWasAdded)
{
  AvgField<1> field(3);
  Add(field, 1, 2, 1.0);
  AvgField<1> other;
  field = other;
  EXPECT_EQ(field.NumLayers(), 1);
  EXPECT_FALSE(field.IsAnyValueAdded());
  EXPECT_EQ(field.GetData(0, 1), nullptr);

  Add(other, 4, 0, 4.0);
  field               = other;
  AvgField<1>& itself = field;
  field               = itself;
  Add(other, 4, 0, 4.0);
  EXPECT_EQ(field.GetData(0, 4)->sum[0], 4.0);
  EXPECT_TRUE(field.IsAnyValueAdded());
}

TEST(FEM_AvgField, AMovedFromFieldHasNoLayers)
{
  AvgField<1> source(2);
  Add(source, 4, 1, 4.0);
  AvgField<1> taken(std::move(source));
  EXPECT_EQ(taken.GetData(1, 4)->sum[0], 4.0);
  EXPECT_EQ(source.NumLayers(), 0);
  EXPECT_FALSE(source.IsAnyValueAdded());
  EXPECT_EQ(source.FieldSize(), 0u);

  source = AvgField<1>(1);
  Add(source, 4, 0, 5.0);
  EXPECT_EQ(source.GetData(0, 4)->sum[0], 5.0);

  taken = std::move(source);
  EXPECT_EQ(taken.NumLayers(), 1);
  EXPECT_EQ(taken.GetData(0, 4)->sum[0], 5.0);
  EXPECT_EQ(source.NumLayers(), 0);
  EXPECT_FALSE(source.IsAnyValueAdded());
}

TEST(FEM_AvgField, AFieldMovedToItselfKeepsItsValues)
{
  AvgField<1> field(2);
  Add(field, 4, 1, 4.0);
  AvgField<1>& itself = field;
  field               = std::move(itself);
  EXPECT_EQ(field.NumLayers(), 2);
  EXPECT_TRUE(field.IsAnyValueAdded());
  ASSERT_NE(field.GetData(1, 4), nullptr);
  EXPECT_EQ(field.GetData(1, 4)->sum[0], 4.0);
}

// Accuracy.

TEST(FEM_AvgField, RunningStatisticsAgreeWithTwoPassSumsDespiteALargeOffset)
{
  constexpr int                    kCount = 1000000;
  std::mt19937_64                  random(20250103);
  std::normal_distribution<double> normal(1e8, 1.0);
  std::vector<double>              values;
  for (int i = 0; i < kCount; ++i) values.push_back(normal(random));

  StatField<1> field;
  for (const double value : values) Add(field, 5, 0, value);

  long double mean = 0;
  for (const double value : values) mean += value;
  mean /= kCount;
  long double m2 = 0;
  for (const double value : values) m2 += (value - mean) * (value - mean);

  const StatData<1>& data = *field.GetData(0, 5);
  EXPECT_EQ(data.count, kCount);
  // Each step rounds the mean to a unit in the last place at 1e8, u = 1.5e-8, and the next ones shrink that error as
  // they shrink the mean's weight: a deviation of u sqrt(n / 36) = 2.5e-6 after n steps, of which four are allowed.
  EXPECT_NEAR(data.mean[0], static_cast<double>(mean), 1e-5);
  // The condition number 1e8 of the variance times 2^-52. A sum of squares would leave no digit: 1e16 is rounded to 2.
  EXPECT_NEAR(data.m2[0] / static_cast<double>(m2), 1.0, 2.3e-8);
}

// Memory that runs out.

const std::vector<int> kGrowingIds = {3, 300, 301, 70000, 70001, 20000000, -1, 4, 3, 512, 300};

/// Adds a value to every id in turn until an allocation fails.
/// @return how many values were added
std::size_t AddUntilFailure(StatField<1>& field, std::size_t failing)
{
  AllocationFailure failure(failing);
  std::size_t       added = 0;
  try {
    for (const int id : kGrowingIds) {
      Add(field, id, 0, id);
      ++added;
    }
  } catch (const std::bad_alloc&) {
  }
  return added;
}

// Fills by the order of the one before, and orders that it has to notice. The plain field is the folding without any
// memory of orders.

template <int N>
void FoldPlainly(AvgData<N>& data, const double* value)
{
  data.count += 1;
  for (std::size_t k = 0; k < N; ++k) data.sum[k] += value[k];
}

template <int N>
void FoldPlainly(StatData<N>& data, const double* value)
{
  data.count += 1;
  for (std::size_t k = 0; k < N; ++k) {
    const double delta = value[k] - data.mean[k];
    if (data.count == 1) {
      data.mean[k] = value[k];
    } else {
      data.mean[k] += delta / data.count;
      data.m2[k] += (value[k] - data.mean[k]) * delta;
    }
  }
}

/// One layer.
template <typename Data = StatData<1>, int N = 1>
class PlainField
{
public:
  void Add(int id, const std::array<double, N>& value)
  {
    FoldPlainly(data_[static_cast<std::uint32_t>(id)], value.data());
  }
  void Reset()
  {
    for (auto& entry : data_) entry.second = Data();
  }
  const std::map<std::uint32_t, Data>& GetData() const { return data_; }

private:
  std::map<std::uint32_t, Data> data_;
};

/// Equal to the bit, but for the bits of a NaN.
bool IsSameNumber(double a, double b)
{
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}

template <std::size_t N>
bool AreSameNumbers(const double (&a)[N], const double (&b)[N])
{
  return std::equal(std::begin(a), std::end(a), std::begin(b), IsSameNumber);
}

template <int N>
bool IsSame(const AvgData<N>& a, const AvgData<N>& b)
{
  return a.count == b.count && AreSameNumbers(a.sum, b.sum);
}

template <int N>
bool IsSame(const StatData<N>& a, const StatData<N>& b)
{
  return a.count == b.count && AreSameNumbers(a.mean, b.mean) && AreSameNumbers(a.m2, b.m2);
}

template <typename Data, int N>
void ExpectSame(const FEM_AvgField<int, Data, N>& field, int layer, const PlainField<Data, N>& plain)
{
  std::vector<int>  ids;
  std::vector<Data> data;
  field.DumpField(layer, ids, data);
  ASSERT_EQ(ids.size(), plain.GetData().size());
  std::size_t k = 0;
  for (const auto& [id, expected] : plain.GetData()) {
    ASSERT_EQ(static_cast<std::uint32_t>(ids[k]), id);
    EXPECT_TRUE(IsSame(data[k], expected)) << id;
    ++k;
  }
}

TEST(FEM_AvgField, EveryOrderOfFillsGivesThePlainFieldsBits)
{
  std::mt19937     random(20261122);
  std::vector<int> once;
  for (int i = 0; i < 600; ++i) once.push_back(static_cast<int>(random() % 300) - 20);
  std::vector<int> shuffled = once;
  std::shuffle(shuffled.begin(), shuffled.end(), random);
  std::vector<int> longer = once;
  for (int i = 0; i < 100; ++i) longer.push_back(static_cast<int>(random() % 1000));
  std::vector<int> shorter(once.begin(), once.begin() + 150);
  std::vector<int> oneMore = once;
  oneMore.insert(oneMore.begin() + 30, 123456);  // everything behind it is one late
  std::vector<int> oneOther = once;
  oneOther[40]              = -5;

  const std::vector<std::vector<int>> orders = {once,   once,   once, oneOther, once,    shorter, once,
                                                longer, longer, once, oneMore,  oneMore, once,    shuffled,
                                                once,   once,   {},   once,     shuffled};
  StatField<1>                        field(2);
  PlainField<>                        plain[2];
  double                              value = 0.25;
  for (std::size_t fill = 0; fill < orders.size(); ++fill) {
    SCOPED_TRACE(fill);
    if (fill > 0) field.ResetField();
    if (fill > 0) plain[0].Reset(), plain[1].Reset();
    for (std::size_t i = 0; i < orders[fill].size(); ++i) {
      // The second layer lags behind, in an order of its own.
      for (int layer = 0; layer < (i % 3 == 0 ? 2 : 1); ++layer) {
        value = 0.7 * value + orders[fill][i];
        Add(field, orders[fill][i], layer, value);
        plain[layer].Add(orders[fill][i], {value});
      }
    }
    for (const int layer : {0, 1}) ExpectSame(field, layer, plain[layer]);
  }
}

TEST(FEM_AvgField, ACopyInTheMiddleOfAFillGoesOnByItself)
{
  StatField<1> field;
  PlainField<> plain;
  const auto   add = [](StatField<1>& to, int id) { Add(to, id, 0, 0.5 * id); };
  for (int fill = 0; fill < 3; ++fill) {
    field.ResetField();
    for (const int id : {1, 2, 3, 4}) add(field, id);
  }
  field.ResetField();
  add(field, 1);
  StatField<1> copy(field);
  for (const int id : {2, 3, 4}) add(field, id);
  for (const int id : {9, 4, 3}) add(copy, id);
  StatField<1> taken(std::move(field));
  taken.ResetField();
  for (const int id : {1, 2, 3, 4}) {
    add(taken, id);
    plain.Add(id, {0.5 * id});
  }
  ExpectSame(taken, 0, plain);
  EXPECT_EQ(copy.GetData(0, 2)->count, 0);
  for (const int id : {1, 3, 4, 9}) EXPECT_EQ(copy.GetData(0, id)->mean[0], 0.5 * id);
}

TEST(FEM_AvgField, OneFillAloneKeepsNoLogAndLaterOnesOfOneOrderAllocateNothing)
{
  AvgField<1> field;
  for (int id = 0; id < 256; ++id) Add(field, id, 0, 1.0);
  AllocationFailure counter(0);
  for (int id = 0; id < 256; ++id) Add(field, id, 0, 1.0);
  EXPECT_EQ(counter.GetCount(), 0u);
  field.ResetField();
  for (int id = 0; id < 256; ++id) Add(field, id, 0, 1.0);
  const std::size_t logged = counter.GetCount();
  EXPECT_GT(logged, 0u);
  for (int fill = 0; fill < 3; ++fill) {
    field.ResetField();
    for (int id = 0; id < 256; ++id) Add(field, id, 0, 1.0);
  }
  EXPECT_EQ(counter.GetCount(), logged);
}

void ExpectThatFailuresLeaveTheValuesAddedBefore(bool isLogged)
{
  std::size_t failing = 0;
  std::size_t added;
  do {
    ++failing;
    SCOPED_TRACE(failing);
    StatField<1> field;
    if (isLogged) field.ResetField();
    added = AddUntilFailure(field, failing);

    StatField<1> expected;
    for (std::size_t i = 0; i < added; ++i) Add(expected, kGrowingIds[i], 0, kGrowingIds[i]);
    EXPECT_EQ(field.IsAnyValueAdded(), added > 0);
    std::vector<int>         ids, expectedIds;
    std::vector<StatData<1>> data, expectedData;
    field.DumpField(0, ids, data);
    expected.DumpField(0, expectedIds, expectedData);
    EXPECT_EQ(ids, expectedIds);
    for (std::size_t k = 0; k < data.size(); ++k) {
      EXPECT_EQ(data[k].mean[0], expectedData[k].mean[0]);
      EXPECT_EQ(data[k].count, expectedData[k].count);
    }
  } while (added < kGrowingIds.size());
  EXPECT_GT(failing, 10u);
}

TEST(FEM_AvgField, AnAllocationThatFailsAnywhereLeavesTheValuesAddedBefore)
{
  ExpectThatFailuresLeaveTheValuesAddedBefore(false);
}

TEST(FEM_AvgField, AnAllocationThatFailsAfterAResetLeavesTheValuesAddedBefore)
{
  ExpectThatFailuresLeaveTheValuesAddedBefore(true);
}

TEST(FEM_AvgField, AnAssignmentThatFailsLeavesTheTarget)
{
  AvgField<1> source(2);
  Add(source, 1, 0, 1.0);
  Add(source, 1, 1, 1.0);
  for (std::size_t failing = 1; failing <= 5; ++failing) {
    AvgField<1> target;
    Add(target, 7, 0, 7.0);
    {
      AllocationFailure failure(failing);
      EXPECT_THROW(target = source, std::bad_alloc) << failing;
    }
    EXPECT_EQ(target.NumLayers(), 1);
    EXPECT_TRUE(target.IsAnyValueAdded());
    EXPECT_EQ(target.GetData(0, 7)->sum[0], 7.0);
  }
}

// Threads.

TEST(FEM_AvgField, TwoThreadsReadAFilledField)
{
  StatField<6> field(2);
  for (int id = 1; id <= 2000; ++id) {
    for (int layer = 0; layer < 2; ++layer) {
      for (const double value : {1.0, 3.0}) {
        const double x = value * id;
        field.AddValue(id, layer, {x, x, x, x, x, x});
      }
    }
  }
  const StatField<6>& filled = field;

  const auto read = [&filled](std::size_t& numWrong) {
    for (int layer = 0; layer < filled.NumLayers(); ++layer) {
      for (int id = 1; id <= 2000; ++id) {
        const StatData<6>* data = filled.GetData(layer, id);
        if (data == nullptr || data->mean[5] != 2.0 * id) ++numWrong;
        if (filled.GetData(layer, -id) != nullptr) ++numWrong;
      }
      std::vector<int>         ids;
      std::vector<StatData<6>> dump;
      filled.DumpField(layer, ids, dump);
      if (dump.size() != 2000 || ids.back() != 2000) ++numWrong;
    }
    if (!filled.IsAnyValueAdded() || filled.FieldSize() != 2000) ++numWrong;
    FED_ResultDatabase db;
    filled.SaveField(db, FED_DataDescriptor(1, kStress), SeparateLayers, Average, true, nullptr);
    if (db.GetDataDescriptors(FED_DataDescriptorPattern()).size() != 2) ++numWrong;
  };
  std::array<std::size_t, 2> numWrong = {0, 0};
  std::thread                first(read, std::ref(numWrong[0]));
  std::thread                second(read, std::ref(numWrong[1]));
  first.join();
  second.join();
  EXPECT_THAT(numWrong, ElementsAre(0u, 0u));
}

// Saving.

FED_DataDescriptor WithLayer(FED_DataDescriptor descriptor, int layer)
{
  descriptor.SetInteger(FED_DataDescriptor::Layer, layer);
  return descriptor;
}

double SavedScalar(const FED_Database& db, const FED_DataDescriptor& descriptor, int id)
{
  FED_ConstIdDataBlock view(db.GetConstDataBlock(descriptor), db.GetIdMapsPool());
  double               value = 0;
  view.GetScalar(id, value);
  return value;
}

std::size_t NumBlocks(const FED_Database& db) { return db.GetDataDescriptors(FED_DataDescriptorPattern()).size(); }

const FED_DataDescriptor kResult(1, kTemperature);

template <typename Field>
double SavedScalar(const Field& field, Operation op, int id)
{
  FED_ResultDatabase db;
  field.SaveField(db, kResult, SeparateLayers, op, true, nullptr);
  return SavedScalar(db, WithLayer(kResult, 1), id);
}

TEST(FEM_AvgField, SaveWritesAverageSumOrZeroOfSumsWithCounts)
{
  AvgField<1> field;
  Add(field, 9, 0, 2.0);
  Add(field, 9, 0, 4.0);
  EXPECT_EQ(SavedScalar(field, Average, 9), 3.0);
  EXPECT_EQ(SavedScalar(field, Sum, 9), 6.0);
  EXPECT_EQ(SavedScalar(field, Variance, 9), 0.0);
}

TEST(FEM_AvgField, SaveWritesMeanSumOrPopulationVarianceOfRunningStatistics)
{
  StatField<1> field;
  for (const double value : {1.0, 2.0, 6.0}) Add(field, 9, 0, value);
  EXPECT_EQ(SavedScalar(field, Average, 9), 3.0);
  EXPECT_EQ(SavedScalar(field, Sum, 9), 9.0);
  EXPECT_EQ(SavedScalar(field, Variance, 9), 14.0 / 3);
}

TEST(FEM_AvgField, SaveWritesVectorsAndTensorsInComponentOrder)
{
  AvgField<3>  vectorSums;
  StatField<3> vectors;
  AvgField<6>  tensorSums;
  StatField<6> tensors;
  vectorSums.AddValue(4, {1, 2, 3});
  vectorSums.AddValue(4, {3, 6, 9});
  vectors.AddValue(4, {1, 2, 3});
  vectors.AddValue(4, {3, 6, 9});
  tensorSums.AddValue(4, {1, 2, 3, 4, 5, 6});
  tensorSums.AddValue(4, {3, 6, 9, 12, 15, 18});
  tensors.AddValue(4, {1, 2, 3, 4, 5, 6});
  tensors.AddValue(4, {3, 6, 9, 12, 15, 18});

  FED_ResultDatabase db;
  const auto         at = [](FED_OnfId onf, int loadCase) {
    FED_DataDescriptor descriptor(1, onf);
    descriptor.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
    return descriptor;
  };
  vectorSums.SaveField(db, at(kDisplacement, 1), LayerAsGiven, Average, true, nullptr);
  vectors.SaveField(db, at(kDisplacement, 2), LayerAsGiven, Variance, true, nullptr);
  tensorSums.SaveField(db, at(kStress, 1), LayerAsGiven, Sum, true, nullptr);
  tensors.SaveField(db, at(kStress, 2), LayerAsGiven, Variance, true, nullptr);

  const auto vectorOf = [&](const FED_DataDescriptor& descriptor) {
    std::array<double, 3> values = {};
    FED_ConstIdDataBlock(db.GetConstDataBlock(descriptor), db.GetIdMapsPool()).GetVector(4, values.data());
    return values;
  };
  const auto tensorOf = [&](const FED_DataDescriptor& descriptor) {
    std::array<double, 6> values = {};
    FED_ConstIdDataBlock(db.GetConstDataBlock(descriptor), db.GetIdMapsPool()).GetTensor(4, values.data());
    return values;
  };
  EXPECT_THAT(vectorOf(at(kDisplacement, 1)), ElementsAre(2.0, 4.0, 6.0));
  EXPECT_THAT(vectorOf(at(kDisplacement, 2)), ElementsAre(1.0, 4.0, 9.0));
  EXPECT_THAT(tensorOf(at(kStress, 1)), ElementsAre(4.0, 8.0, 12.0, 16.0, 20.0, 24.0));
  EXPECT_THAT(tensorOf(at(kStress, 2)), ElementsAre(1.0, 4.0, 9.0, 16.0, 25.0, 36.0));
}

TEST(FEM_AvgField, SaveWritesZeroAsAverageOfAResetEntry)
{
  AvgField<1>  sums;
  StatField<1> statistics;
  Add(sums, 9, 0, 2.0);
  Add(statistics, 9, 0, 2.0);
  sums.ResetField();
  statistics.ResetField();
  for (const Operation op : {Average, Sum}) {
    EXPECT_EQ(SavedScalar(sums, op, 9), 0.0);
    EXPECT_EQ(SavedScalar(statistics, op, 9), 0.0);
  }
  EXPECT_EQ(SavedScalar(sums, Variance, 9), 0.0);
}

TEST(FEM_AvgField, SaveWritesNaNAsVarianceOfAResetEntry)
{
  StatField<1> field;
  for (const int id : {8, 9}) Add(field, id, 0, 2.0);
  field.ResetField();
  Add(field, 8, 0, 2.0);
  EXPECT_EQ(SavedScalar(field, Variance, 8), 0.0);
  EXPECT_TRUE(std::isnan(SavedScalar(field, Variance, 9)));
}

TEST(FEM_AvgField, SaveWithSeparateLayersWritesOneBlockPerLayerThatReceivedValues)
{
  AvgField<1> field(2);
  Add(field, 9, 1, 5.0);
  FED_ResultDatabase           db;
  std::set<FED_DataDescriptor> written;
  field.SaveField(db, kResult, SeparateLayers, Average, true, &written);
  EXPECT_EQ(NumBlocks(db), 1u);
  EXPECT_EQ(SavedScalar(db, WithLayer(kResult, 2), 9), 5.0);
  EXPECT_THAT(written, ElementsAre(WithLayer(kResult, 2)));

  Add(field, 9, 0, 4.0);
  field.SaveField(db, kResult, SeparateLayers, Average, true, &written);
  EXPECT_EQ(NumBlocks(db), 2u);
  EXPECT_EQ(SavedScalar(db, WithLayer(kResult, 1), 9), 4.0);
  EXPECT_THAT(written, ElementsAre(WithLayer(kResult, 1), WithLayer(kResult, 2)));
}

TEST(FEM_AvgField, SaveWithoutLayerIndexMarksTheIndexNotSet)
{
  AvgField<1> field(2);
  Add(field, 9, 0, 4.0);
  Add(field, 9, 1, 5.0);
  FED_DataDescriptor given = WithLayer(kResult, 3);
  given.cached[0] = given.cached[1] = 77;
  const FED_DataDescriptor before   = given;

  FED_ResultDatabase           db;
  std::set<FED_DataDescriptor> written;
  field.SaveField(db, given, NoLayerIndex, Average, true, &written);
  ASSERT_EQ(written.size(), 1u);
  const FED_DataDescriptor& block = *written.begin();
  EXPECT_FALSE(block.IsSet(FED_DataDescriptor::Layer));
  EXPECT_EQ(block.mask, kResult.mask);
  EXPECT_THAT(block.values, ElementsAreArray(given.values));  // the value stays behind the clear bit
  EXPECT_THAT(block.cached, ElementsAre(-1, -1));
  EXPECT_EQ(NumBlocks(db), 1u);
  EXPECT_TRUE(db.HasDataBlock(block));
  EXPECT_EQ(SavedScalar(db, block, 9), 5.0);  // the highest layer remains
  EXPECT_TRUE(given == before);
  EXPECT_THAT(given.cached, ElementsAre(77, 77));
}

TEST(FEM_AvgField, SaveWithoutLayerIndexUsesADescriptorWithoutOneAsGiven)
{
  AvgField<1> field;
  Add(field, 9, 0, 4.0);
  FED_DataDescriptor given = kResult;
  given.cached[0] = given.cached[1] = 77;
  FED_ResultDatabase           db;
  std::set<FED_DataDescriptor> written;
  field.SaveField(db, given, NoLayerIndex, Average, true, &written);
  EXPECT_THAT(written, ElementsAre(given));
  EXPECT_THAT(written.begin()->cached, ElementsAre(77, 77));
  EXPECT_EQ(SavedScalar(db, kResult, 9), 4.0);
}

TEST(FEM_AvgField, SaveWithAnyOtherModeUsesTheDescriptorAsGiven)
{
  AvgField<1> field(2);
  Add(field, 8, 0, 3.0);
  Add(field, 9, 0, 4.0);
  Add(field, 9, 1, 5.0);
  for (const LayerMode mode : {LayerAsGiven, LayerMode(3), LayerMode(-1)}) {
    FED_ResultDatabase           db;
    std::set<FED_DataDescriptor> written;
    field.SaveField(db, WithLayer(kResult, 3), mode, Average, true, &written);
    EXPECT_THAT(written, ElementsAre(WithLayer(kResult, 3)));
    EXPECT_EQ(NumBlocks(db), 1u);
    EXPECT_EQ(SavedScalar(db, WithLayer(kResult, 3), 8), 3.0);
    EXPECT_EQ(SavedScalar(db, WithLayer(kResult, 3), 9), 5.0);
  }
}

TEST(FEM_AvgField, SaveAsksForTheMapsThenTheBlockWithTheNumberOfRecordsAndWritesAscendingIds)
{
  AvgField<1> field(2);
  for (const int id : {300, 7, -1}) Add(field, id, 0, 1.0);
  Add(field, 7, 1, 2.0);
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Database);
  field.SaveField(db, kResult, SeparateLayers, Average, true, nullptr);
  EXPECT_THAT(db.GetLines(), ElementsAre("db.GetIdMapsPool()", "db.GetOrCreateDataBlock(<514 it=1 lay=1>, 3)",
                                         "db.GetIdMapsPool()", "db.GetOrCreateDataBlock(<514 it=1 lay=2>, 1)"));
  // Ids get their indices in the order in which records are written.
  EXPECT_EQ(inner.GetIdMapsPool().FindIndex(0, 7), 1u);
  EXPECT_EQ(inner.GetIdMapsPool().FindIndex(0, 300), 2u);
  EXPECT_EQ(inner.GetIdMapsPool().FindIndex(0, -1), 3u);
}

TEST(FEM_AvgField, SaveOfAFieldWithoutValuesAsksTheDatabaseNothing)
{
  FED_ResultDatabase           inner;
  RecordingDatabase            db(inner, Detail::Records);
  std::set<FED_DataDescriptor> written = {kResult};
  AvgField<1>(0).SaveField(db, kResult, SeparateLayers, Average, true, &written);
  StatField<6>(3).SaveField(db, kResult, NoLayerIndex, Variance, true, &written);
  EXPECT_THAT(db.GetLines(), IsEmpty());
  EXPECT_THAT(written, ElementsAre(kResult));
}

TEST(FEM_AvgField, SaveKeepsAnEqualDescriptorThatWasWrittenBefore)
{
  AvgField<1> field;
  Add(field, 9, 0, 4.0);
  FED_DataDescriptor existing = kResult;
  existing.cached[0]          = 55;
  FED_ResultDatabase           db;
  std::set<FED_DataDescriptor> written = {existing};
  field.SaveField(db, kResult, LayerAsGiven, Average, true, &written);
  ASSERT_EQ(written.size(), 1u);
  EXPECT_EQ(written.begin()->cached[0], 55);
}

TEST(FEM_AvgField, SaveRefusesAnUnknownOperationBeforeItAsksTheDatabase)
{
  AvgField<1> field;
  Add(field, 9, 0, 4.0);
  FED_ResultDatabase           inner;
  RecordingDatabase            db(inner, Detail::Records);
  std::set<FED_DataDescriptor> written;
  try {
    field.SaveField(db, kResult, SeparateLayers, Operation(3), true, &written);
    FAIL() << "expected a failure";
  } catch (const FED_Failure& failure) {
    EXPECT_STREQ(failure.what(), "FEM_AvgField: operation is 3, expected 0 (average), 1 (sum) or 2 (variance)");
    EXPECT_EQ(failure.GetTag(), "|%P|BrevanFem|FEM_AvgField");
  }
  EXPECT_THAT(db.GetLines(), IsEmpty());
  EXPECT_THAT(written, IsEmpty());
}

TEST(FEM_AvgField, SaveNamesABlockBeforeItAsksForIt)
{
  AvgField<1> field(2);
  Add(field, 9, 0, 4.0);
  Add(field, 9, 1, 5.0);
  FED_ResultDatabase           inner;
  RecordingDatabase            db(inner);
  std::set<FED_DataDescriptor> written;
  db.FailAt(1);
  EXPECT_THROW(field.SaveField(db, kResult, SeparateLayers, Average, true, &written), FED_Failure);
  EXPECT_THAT(written, ElementsAre(WithLayer(kResult, 1)));
  EXPECT_EQ(NumBlocks(inner), 0u);
}

TEST(FEM_AvgField, WhateverTheDatabaseThrowsPassesThroughAndEarlierLayersStay)
{
  AvgField<1> field(2);
  for (const int id : {8, 9}) {
    Add(field, id, 0, 4.0);
    Add(field, id, 1, 5.0);
  }
  std::set<FED_DataDescriptor> written;
  std::size_t                  callsOfFirstLayer = 0;
  {
    AvgField<1> first(1);
    for (const int id : {8, 9}) Add(first, id, 0, 4.0);
    FED_ResultDatabase inner;
    RecordingDatabase  db(inner);
    first.SaveField(db, kResult, SeparateLayers, Average, true, nullptr);
    callsOfFirstLayer = db.GetCallCount();
  }
  const std::size_t calls =
      quilon_test::SweepFailures([] { return std::make_unique<FED_ResultDatabase>(); },
                                 [&](RecordingDatabase& db) {
                                   written.clear();
                                   field.SaveField(db, kResult, SeparateLayers, Average, true, &written);
                                 },
                                 [&](FED_Database& db, const RecordingDatabase& recording) {
                                   const std::size_t call         = recording.GetCallCount();
                                   const bool        firstIsWhole = call > callsOfFirstLayer;
                                   EXPECT_EQ(written.size(), firstIsWhole ? 2u : 1u) << call;
                                   EXPECT_EQ(written.count(WithLayer(kResult, 1)), 1u) << call;
                                   if (firstIsWhole) {
                                     EXPECT_EQ(SavedScalar(db, WithLayer(kResult, 1), 8), 4.0) << call;
                                     EXPECT_EQ(SavedScalar(db, WithLayer(kResult, 1), 9), 4.0) << call;
                                   }
                                 });
  EXPECT_GT(calls, callsOfFirstLayer);
  EXPECT_EQ(written.size(), 2u);
}

// Random work beside plain fields: fills whose orders repeat and are disturbed, resets, copies, moves and saves.

double Reported(double sum, double average, Operation op) { return op == Average ? average : op == Sum ? sum : 0.0; }

template <int N>
double ReportedPlainly(const AvgData<N>& data, Operation op, std::size_t k)
{
  return Reported(data.sum[k], data.count == 0 ? 0.0 : data.sum[k] / data.count, op);
}

template <int N>
double ReportedPlainly(const StatData<N>& data, Operation op, std::size_t k)
{
  if (op == Variance) return data.m2[k] / data.count;
  return Reported(data.count * data.mean[k], data.mean[k], op);
}

void Read(const FED_ConstIdDataBlock& view, int id, double (&value)[1]) { view.GetScalar(id, value[0]); }
void Read(const FED_ConstIdDataBlock& view, int id, double (&value)[3]) { view.GetVector(id, value); }
void Read(const FED_ConstIdDataBlock& view, int id, double (&value)[6]) { view.GetTensor(id, value); }

template <typename Data, int N>
class FieldWork
{
public:
  explicit FieldWork(unsigned seed) : random_(seed) {}

  /// A value that is added is a step, and so is anything else that is done.
  void Do(std::size_t steps)
  {
    MakeOrder();
    while (steps_ < steps && !testing::Test::HasFailure()) {
      SCOPED_TRACE("step " + std::to_string(steps_));
      DoOne();
      ++steps_;
    }
  }

private:
  using Field = FEM_AvgField<int, Data, N>;
  using Plain = PlainField<Data, N>;

  struct Twin
  {
    Field              field{0};
    std::vector<Plain> layers;
  };

  struct Place
  {
    int id;
    int layer;
  };

  int Draw(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }

  void DoOne()
  {
    Twin& one   = twins_[static_cast<std::size_t>(Draw(0, 1))];
    Twin& other = twins_[static_cast<std::size_t>(Draw(0, 1))];
    switch (Draw(0, 20)) {
      case 0:
        return Renew(one);
      case 1:
        return MakeOrder();
      case 2:
        one.field  = other.field;
        one.layers = other.layers;
        return;
      case 3:
        return Move(one, other);
      case 4:
        return ExpectTakenWhole(one);
      case 5:
        return ExpectSaved(one);
      case 6:
        return Reset(one);
      default:
        if (Draw(0, 3) > 0) Reset(one);
        if (Draw(0, 1) == 0) Disturb();
        Fill(one);
        ExpectTwin(one);
        return;
    }
  }

  void Renew(Twin& twin)
  {
    const int layers = Draw(-1, 3);
    twin.field       = Field(layers);
    twin.layers.assign(static_cast<std::size_t>(std::max(layers, 0)), Plain());
  }

  void Reset(Twin& twin)
  {
    twin.field.ResetField();
    for (Plain& layer : twin.layers) layer.Reset();
  }

  void Move(Twin& one, Twin& other)
  {
    one.field = std::move(other.field);
    if (&one == &other) return;
    one.layers = std::move(other.layers);
    other.layers.clear();
    ExpectTwin(other);
  }

  // There and back, by construction.
  void ExpectTakenWhole(Twin& twin)
  {
    Twin taken{Field(std::move(twin.field)), twin.layers};
    EXPECT_EQ(twin.field.NumLayers(), 0);
    ExpectTwin(taken);
    twin.field = Field(taken.field);
  }

  int MakeId()
  {
    const auto bits = random_() & ((1u << Draw(0, 31)) - 1u);
    return static_cast<int>(bits) - (Draw(0, 3) == 0 ? 50 : 0);
  }

  void MakeOrder()
  {
    order_.clear();
    const int  count = Draw(1, 400);
    const bool dense = Draw(0, 1) == 0;
    for (int i = 0; i < count; ++i) order_.push_back({dense ? Draw(1, 60) : MakeId(), Draw(0, 2)});
  }

  // What other results of one model do to the order of its ids.
  void Disturb()
  {
    const int at = order_.empty() ? 0 : Draw(0, static_cast<int>(order_.size()) - 1);
    switch (Draw(0, 5)) {
      case 0:
        order_.insert(order_.begin() + at, Place{MakeId(), Draw(0, 2)});
        break;
      case 1:
        if (!order_.empty()) order_.erase(order_.begin() + at);
        break;
      case 2:
        if (!order_.empty()) order_[static_cast<std::size_t>(at)].id = MakeId();
        break;
      case 3:
        std::rotate(order_.begin(), order_.begin() + at, order_.end());
        break;
      case 4:
        std::shuffle(order_.begin(), order_.end(), random_);
        break;
      default:
        order_.resize(static_cast<std::size_t>(at));
        break;
    }
  }

  double MakeNumber()
  {
    constexpr double kRare[] = {0.0, -0.0, kInfinity, -kInfinity, 1e308, 5e-324};
    if (Draw(0, 300) == 0) return kRare[Draw(0, 5)];
    return std::uniform_real_distribution<double>(-1e6, 1e6)(random_);
  }

  void Fill(Twin& twin)
  {
    const int layers = static_cast<int>(twin.layers.size());
    if (layers == 0) return;
    for (const Place& place : order_) {
      std::array<double, N> value{};
      double                handed[N] = {};
      for (std::size_t k = 0; k < N; ++k) handed[k] = value[k] = MakeNumber();
      const int layer = place.layer % layers;
      if (layer == 0 && Draw(0, 1) == 0)
        twin.field.AddValue(place.id, handed);
      else
        twin.field.AddValue(place.id, layer, handed);
      twin.layers[static_cast<std::size_t>(layer)].Add(place.id, value);
      ++steps_;
    }
  }

  void ExpectTwin(const Twin& twin)
  {
    ASSERT_EQ(twin.field.NumLayers(), static_cast<int>(twin.layers.size()));
    EXPECT_EQ(twin.field.FieldSize(), twin.layers.empty() ? 0 : twin.layers[0].GetData().size());
    const auto isFilled = [](const Plain& layer) { return !layer.GetData().empty(); };
    EXPECT_EQ(twin.field.IsAnyValueAdded(), std::any_of(twin.layers.begin(), twin.layers.end(), isFilled));
    for (int layer = 0; layer < twin.field.NumLayers(); ++layer) {
      const Plain& plain = twin.layers[static_cast<std::size_t>(layer)];
      ExpectSame(twin.field, layer, plain);
      const int         id    = Draw(0, 1) == 0 || order_.empty() ? MakeId() : order_.front().id;
      const auto        known = plain.GetData().find(static_cast<std::uint32_t>(id));
      const Data* const found = twin.field.GetData(layer, id);
      ASSERT_EQ(found != nullptr, known != plain.GetData().end()) << id;
      EXPECT_TRUE(found == nullptr || IsSame(*found, known->second)) << id;
    }
  }

  void ExpectSaved(const Twin& twin)
  {
    const FED_DataDescriptor kind(1, N == 1 ? kTemperature : N == 3 ? kDisplacement : kStress);
    const auto               op      = static_cast<Operation>(Draw(0, 2));
    const bool               isSplit = Draw(0, 1) == 0;
    // By block and id; of an id's layers that share a block the last stays.
    std::map<FED_DataDescriptor, std::map<int, Data>> expected;
    for (std::size_t layer = 0; layer < twin.layers.size(); ++layer)
      for (const auto& [id, data] : twin.layers[layer].GetData())
        expected[isSplit ? WithLayer(kind, static_cast<int>(layer) + 1) : kind][static_cast<int>(id)] = data;

    FED_ResultDatabase           db;
    std::set<FED_DataDescriptor> written;
    twin.field.SaveField(db, kind, isSplit ? SeparateLayers : NoLayerIndex, op, true, &written);
    ASSERT_EQ(NumBlocks(db), expected.size());
    ASSERT_EQ(written.size(), expected.size());
    for (const auto& [descriptor, records] : expected) {
      ASSERT_TRUE(db.HasDataBlock(descriptor) && written.count(descriptor) == 1);
      const FED_DataBlock& block = db.GetConstDataBlock(descriptor);
      ASSERT_EQ(dynamic_cast<const FED_ColumnDataBlock&>(block).GetRecordCount(), records.size());
      const FED_ConstIdDataBlock view(block, db.GetIdMapsPool());
      for (const auto& [id, data] : records) {
        double value[N] = {};
        Read(view, id, value);
        for (std::size_t k = 0; k < N; ++k) EXPECT_TRUE(IsSameNumber(value[k], ReportedPlainly(data, op, k))) << id;
      }
    }
  }

  std::mt19937        random_;
  std::array<Twin, 2> twins_;
  std::vector<Place>  order_;
  std::size_t         steps_ = 0;
};

// QUILON_MODEL_STEPS says how much of it.
TEST(FEM_AvgField, RandomWorkAgreesWithPlainContainers)
{
  const char* const given = std::getenv("QUILON_MODEL_STEPS");
  const std::size_t steps = (given == nullptr ? 60000 : std::strtoul(given, nullptr, 10)) / 6;
  FieldWork<AvgData<1>, 1>(1).Do(steps);
  FieldWork<AvgData<3>, 3>(2).Do(steps);
  FieldWork<AvgData<6>, 6>(3).Do(steps);
  FieldWork<StatData<1>, 1>(4).Do(steps);
  FieldWork<StatData<3>, 3>(5).Do(steps);
  FieldWork<StatData<6>, 6>(6).Do(steps);
}

}  // namespace
