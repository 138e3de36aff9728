#include <FEM_IforceData.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonDbConnector/FED_DataDescriptor.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/FED_IdDataRecord.h>
#include <QuilonUtilities/FED_DoubleArray.h>
#include <QuilonUtilities/FED_IntArray.h>

#include "RecordingDatabase.h"
#include "Snapshot.h"

/// What no public operation shows.
struct FEM_IforceDataTestAccess
{
  using Data      = FEM_IforceData;
  using NodesData = FEM_IforceData::NodesData;
  using ValueSum  = FEM_IforceData::ValueSum;

  static std::set<int>& MissingElements(Data& data) { return data.missingElements; }
  static std::set<int>& MissingNodes(Data& data) { return data.missingNodes; }
  static auto&          ElementNodes(Data& data) { return data.elementNodes_; }
  static bool&          ConnLoaded(Data& data) { return data.connLoaded; }
  static bool&          HasMoments(Data& data) { return data.hasMoments; }

  static NodesData* Find(Data& data, int element)
  {
    const std::size_t position = data.elements_.Find(element);
    return position == IdRadixMap<NodesData>::npos ? nullptr : &data.elements_.At(position);
  }
  static std::vector<int> Elements(const Data& data)
  {
    std::vector<int> elements;
    for (const auto& [element, nodes] : data.elements_) elements.push_back(element);
    return elements;
  }

  static void Fetch(Data& data, int element, int node, NodesData*& found, std::size_t& base)
  {
    data.FetchDataTarget(element, node, found, base);
  }
  static bool Locate(Data& data, int element, int node, NodesData*& found, std::size_t& base)
  {
    return data.LocateDataTarget(element, node, found, base);
  }
  static void MarkForces(Data& data, NodesData* nodes, Data::VecData vec) { data.MarkHasForces(nodes, vec); }
  static void MarkMoments(Data& data, NodesData* nodes, Data::VecData vec) { data.MarkHasMoments(nodes, vec); }
  static bool HasNonzero(const Data& data, Data::MultiValueOperation op) { return data.HasNonzeroMoments(op); }
  static void Init(const std::vector<int>& ids, NodesData& nodes) { Data::InitNodesData(ids, nodes); }
  static void Extract(const std::map<int, std::size_t>& nodes, FED_IntArray& list)
  {
    Data::ExtractNodesList(nodes, list);
  }
  static std::vector<double> Values(const NodesData& nodes, int vec, Data::MultiValueOperation op)
  {
    std::vector<double> values(100, 77.0);
    Data::GetNodesValuesAsVector(nodes, vec, values, op);
    return values;
  }
};

namespace {

using quilon_test::Detail;
using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;
using Access    = FEM_IforceDataTestAccess;
using NodesData = Access::NodesData;
using Lines     = std::vector<std::string>;
using Content   = std::map<std::string, std::string>;
using Ids       = std::vector<int>;
using Positions = std::map<int, std::size_t>;
using Doubles   = std::vector<double>;

constexpr auto   kForce         = FEM_IforceData::Force;
constexpr auto   kMoment        = FEM_IforceData::Moment;
constexpr auto   kSum           = FEM_IforceData::Sum;
constexpr auto   kAverage       = FEM_IforceData::Average;
constexpr auto   kZero          = FEM_IforceData::Zero;
constexpr auto   kUnlisted      = static_cast<FEM_IforceData::MultiValueOperation>(9);
constexpr double kLeastPositive = std::numeric_limits<double>::denorm_min();

constexpr double kNone[3] = {0.0, 0.0, 0.0};

FED_DataDescriptor Forces(int iteration = 1) { return FED_DataDescriptor(iteration, static_cast<FED_OnfId>(580)); }
FED_DataDescriptor Moments(int iteration = 1) { return FED_DataDescriptor(iteration, static_cast<FED_OnfId>(581)); }

void Save(const FEM_IforceData& data, FED_Database& db, FEM_IforceData::MultiValueOperation op = kSum)
{
  data.Save(db, Forces(), Moments(), op);
}

Content Saved(const FEM_IforceData& data, FEM_IforceData::MultiValueOperation op = kSum)
{
  FED_ResultDatabase db;
  Save(data, db, op);
  return Snapshot(db);
}

// Element 7: a force at node 30, a moment at node 10.
FEM_IforceData MakeOne()
{
  FEM_IforceData data;
  data.InsertVector(7, 30, kForce, Doubles{1, 2, 3}.data());
  data.InsertVector(7, 10, kMoment, Doubles{4, 5, 6}.data());
  return data;
}

const Content kOne = {
    {"<580 it=1> 1", "[Db 1 2 3 0 0 0]"}, {"<581 it=1> 1", "[Db 0 0 0 4 5 6]"}, {"<595 it=1> 1", "[lb 30 10]"}};

// MakeOne() with everything that is carried beside the elements.
FEM_IforceData MakeFull()
{
  FEM_IforceData data               = MakeOne();
  Access::ElementNodes(data)        = {{7, {10, 30}}};
  Access::ConnLoaded(data)          = true;
  Access::MissingElements(data)     = {8};
  Access::MissingNodes(data)        = {7};
  Access::Find(data, 7)->reserved   = 5;
  Access::Find(data, 7)->hasMoments = true;
  return data;
}

void ExpectFull(FEM_IforceData& data)
{
  EXPECT_EQ(Saved(data), kOne);
  EXPECT_EQ(Access::ElementNodes(data), (std::map<int, std::set<int>>{{7, {10, 30}}}));
  EXPECT_TRUE(data.IsConnLoaded());
  EXPECT_TRUE(Access::HasMoments(data));
  EXPECT_EQ(Access::MissingElements(data), std::set<int>{8});
  EXPECT_EQ(Access::MissingNodes(data), std::set<int>{7});
  ASSERT_NE(Access::Find(data, 7), nullptr);
  EXPECT_EQ(Access::Find(data, 7)->reserved, 5);
}

// What the source of a move is left with.
void ExpectMovedFrom(FEM_IforceData& data)
{
  EXPECT_EQ(Saved(data), kOne);
  EXPECT_TRUE(Access::ElementNodes(data).empty());
  EXPECT_TRUE(Access::MissingElements(data).empty());
  EXPECT_TRUE(Access::MissingNodes(data).empty());
  EXPECT_TRUE(data.IsConnLoaded());
  EXPECT_TRUE(Access::HasMoments(data));
}

void ExpectOnlyMissing(FEM_IforceData& data, const std::set<int>& elements, const std::set<int>& nodes)
{
  EXPECT_EQ(Access::MissingElements(data), elements);
  EXPECT_EQ(Access::MissingNodes(data), nodes);
}

}  // namespace

// Inserting

TEST(IforceData, StartsEmpty)
{
  FEM_IforceData data;
  EXPECT_FALSE(data.IsConnLoaded());
  EXPECT_FALSE(Access::HasMoments(data));
  EXPECT_TRUE(Access::Elements(data).empty());
  ExpectOnlyMissing(data, {}, {});
}

TEST(IforceData, ContributionsToAComponentAreReportedByEachOperation)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kForce, 1, 2.0);
  data.InsertComponent(7, 30, kForce, 1, 4.0);
  const NodesData& nodes = *Access::Find(data, 7);
  EXPECT_EQ(Access::Values(nodes, kForce, kSum), (Doubles{0, 6, 0}));
  EXPECT_EQ(Access::Values(nodes, kForce, kAverage), (Doubles{0, 3, 0})) << "no contribution averages to zero";
  EXPECT_EQ(Access::Values(nodes, kForce, kZero), (Doubles{0, 0, 0}));
  EXPECT_EQ(Access::Values(nodes, kForce, kUnlisted), (Doubles{0, 6, 0})) << "as the sum";
  EXPECT_EQ(Access::Values(nodes, kMoment, kSum), (Doubles{0, 0, 0}));
}

TEST(IforceData, CountsEachContribution)
{
  FEM_IforceData data;
  data.InsertVector(7, 30, kForce, Doubles{3, 0, 6}.data());
  data.InsertComponent(7, 30, kForce, 2, 3.0);
  data.InsertVectors(7, 30, Doubles{3, 2, 0}.data(), Doubles{1, 2, 3}.data());
  const NodesData& nodes = *Access::Find(data, 7);
  ASSERT_EQ(nodes.vecData[kForce].size(), 3u);
  EXPECT_EQ(nodes.vecData[kForce][0].count, 2);
  EXPECT_EQ(nodes.vecData[kForce][1].count, 2);
  EXPECT_EQ(nodes.vecData[kForce][2].count, 3);
  EXPECT_EQ(nodes.vecData[kMoment][2].count, 1);
  EXPECT_EQ(Access::Values(nodes, kForce, kAverage), (Doubles{3, 1, 3}));
  EXPECT_EQ(Access::Values(nodes, kMoment, kAverage), (Doubles{1, 2, 3}));
}

// The accumulator written plainly, without a memory of elements or orders.
class PlainForces
{
public:
  struct Sums
  {
    double sum[3]   = {};
    int    count[3] = {};
  };
  struct Element
  {
    Ids                        nodes;  // in the order of their first contribution
    std::map<int, Sums>        sums[2];
    std::map<int, std::size_t> positions;
    bool                       has[2] = {};
  };

  void InsertComponent(int element, int node, int vec, int component, double value)
  {
    Element& entry = elements[static_cast<std::uint32_t>(element)];
    if (entry.positions.emplace(node, entry.nodes.size()).second) entry.nodes.push_back(node);
    Sums& sums = entry.sums[vec][node];
    sums.sum[component] += value;
    ++sums.count[component];
    entry.has[vec] = true;
  }
  void Insert(int element, int node, int vec, const double* values)
  {
    for (int k = 0; k < 3; ++k) InsertComponent(element, node, vec, k, values[k]);
  }
  /// @return whether both are there; otherwise what is missing is remembered
  bool Locate(int element, int node)
  {
    const auto found = elements.find(static_cast<std::uint32_t>(element));
    if (found == elements.end()) {
      missingElements.insert(element);
      return false;
    }
    if (found->second.positions.count(node) != 0) return true;
    missingNodes.insert(element);
    return false;
  }
  void Set(int element, int node, int vec, const double* values)
  {
    if (Locate(element, node)) Insert(element, node, vec, values);
  }
  void Nullify()
  {
    for (auto& [id, element] : elements) {
      for (auto& sums : element.sums) sums.clear();
      for (bool& has : element.has) has = false;
    }
  }

  std::map<std::uint32_t, Element> elements;
  std::set<int>                    missingElements;
  std::set<int>                    missingNodes;
};

void ExpectSame(FEM_IforceData& data, const PlainForces& plain)
{
  EXPECT_EQ(Access::MissingElements(data), plain.missingElements);
  EXPECT_EQ(Access::MissingNodes(data), plain.missingNodes);
  Ids ids;
  for (const auto& [id, element] : plain.elements) ids.push_back(static_cast<int>(id));
  ASSERT_EQ(Access::Elements(data), ids);
  for (const auto& [id, element] : plain.elements) {
    const NodesData& nodes = *Access::Find(data, static_cast<int>(id));
    EXPECT_EQ(nodes.nodes, element.positions);
    for (const int vec : {0, 1}) {
      ASSERT_EQ(nodes.vecData[vec].size(), 3 * element.nodes.size());
      for (std::size_t i = 0; i < nodes.vecData[vec].size(); ++i) {
        const auto               found = element.sums[vec].find(element.nodes[i / 3]);
        const PlainForces::Sums& sums  = found == element.sums[vec].end() ? PlainForces::Sums() : found->second;
        EXPECT_EQ(nodes.vecData[vec][i].sum, sums.sum[i % 3]);
        EXPECT_EQ(nodes.vecData[vec][i].count, sums.count[i % 3]);
      }
    }
  }
}

TEST(IforceData, EveryOrderOfFillsGivesThePlainAccumulatorsBits)
{
  struct Call
  {
    int  element;
    int  node;
    bool isSet;
  };
  std::mt19937      random(20261122);
  std::vector<Call> mesh;
  for (int element = 1; element <= 60; ++element)
    for (int corner = 0; corner < (element % 2 == 0 ? 8 : 5); ++corner)
      mesh.push_back({element * 7 - 100, element + 3 * corner, element % 5 == 0});
  std::vector<Call> shuffled = mesh;
  std::shuffle(shuffled.begin(), shuffled.end(), random);
  std::vector<Call> backwards(mesh.rbegin(), mesh.rend());
  std::vector<Call> half(mesh.begin(), mesh.begin() + 150);
  std::vector<Call> oneMore = mesh;
  oneMore.insert(oneMore.begin() + 20, Call{5000, 1, false});
  std::vector<Call> otherNode = mesh;
  otherNode[33].node          = 999;
  otherNode[34].isSet         = true;
  otherNode[34].node          = 998;
  std::vector<Call> allSet    = mesh;
  for (Call& call : allSet) call.isSet = true;

  FEM_IforceData data;
  PlainForces    plain;
  double         value = 0.1;
  const auto     fill  = [&](FEM_IforceData& into, const std::vector<Call>& calls) {
    for (const Call& call : calls) {
      value                  = 0.9 * value + call.node;
      const double values[3] = {value, -value, 1.0 / value};
      const auto   vec       = call.node % 3 == 0 ? kMoment : kForce;
      if (call.isSet) {
        into.SetVector(call.element, call.node, vec, values);
        plain.Set(call.element, call.node, vec, values);
      } else {
        into.InsertVector(call.element, call.node, vec, values);
        plain.Insert(call.element, call.node, vec, values);
      }
    }
  };
  int number = 0;
  for (const auto* calls : {&mesh, &mesh, &mesh, &half, &mesh, &oneMore, &oneMore, &mesh, &otherNode, &allSet, &mesh,
                            &shuffled, &mesh, &backwards, &shuffled, &mesh})
  {
    SCOPED_TRACE(number++);
    data.NullifyVecData();
    plain.Nullify();
    fill(data, *calls);
    ExpectSame(data, plain);
  }

  // A copy has a log of its own; what was cleared has none that names former elements.
  FEM_IforceData fresh;
  plain = PlainForces();
  for (int i = 0; i < 2; ++i) {
    fresh.NullifyVecData();
    plain.Nullify();
    fill(fresh, mesh);
  }
  fresh.NullifyVecData();
  plain.Nullify();
  FEM_IforceData copy(fresh);
  FEM_IforceData assigned;
  assigned = fresh;
  fresh.Clear();
  PlainForces none;
  ExpectSame(fresh, none);
  fill(copy, mesh);
  ExpectSame(copy, plain);
  plain.Nullify();
  fill(assigned, mesh);
  ExpectSame(assigned, plain);
  plain = PlainForces();
  fill(fresh, mesh);
  ExpectSame(fresh, plain);
}

// Random work beside the plain accumulator: fills whose orders repeat and are disturbed, copies, moves and saves.
class ForceWork
{
public:
  explicit ForceWork(unsigned seed) : random_(seed) {}

  /// A value that is inserted or set is a step, and so is anything else that is done.
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
  struct Twin
  {
    FEM_IforceData data;
    PlainForces    plain;
  };

  struct Call
  {
    int element;
    int node;
    int what;  // 0 to 2 insert a component, a vector, both; 3 to 5 set them
  };

  int Draw(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }

  void DoOne()
  {
    Twin& one   = twins_[Draw(0, 1)];
    Twin& other = twins_[Draw(0, 1)];
    switch (Draw(0, 20)) {
      case 0:
        one.data.Clear();
        one.plain = PlainForces();
        return;
      case 1:
        return MakeOrder();
      case 2:
        one.data  = other.data;
        one.plain = other.plain;
        return;
      case 3:
        return Move(one, other);
      case 4:
        return Construct(one, other);
      case 5:
      case 6:
        return ExpectSaved(one);
      case 7:
        return one.data.ReserveStorage(static_cast<std::size_t>(Draw(0, 200)));
      default:
        if (Draw(0, 3) > 0) Nullify(one);
        if (Draw(0, 1) == 0) Disturb();
        for (const Call& call : order_) Fill(one, call);
        ExpectSame(one.data, one.plain);
        return;
    }
  }

  // The source keeps its elements and loses what is missing.
  void Move(Twin& one, Twin& other)
  {
    one.data = std::move(other.data);
    if (&one == &other) return ExpectSame(one.data, one.plain);
    one.plain = other.plain;
    other.plain.missingElements.clear();
    other.plain.missingNodes.clear();
    ExpectSame(other.data, other.plain);
  }

  void Construct(Twin& one, Twin& other)
  {
    const bool isMoved = Draw(0, 1) == 0;
    Twin       fresh{isMoved ? FEM_IforceData(std::move(other.data)) : FEM_IforceData(other.data), other.plain};
    if (isMoved) {
      other.plain.missingElements.clear();
      other.plain.missingNodes.clear();
    }
    ExpectSame(other.data, other.plain);
    ExpectSame(fresh.data, fresh.plain);
    one.data  = fresh.data;
    one.plain = fresh.plain;
  }

  static void Nullify(Twin& twin)
  {
    twin.data.NullifyVecData();
    twin.plain.Nullify();
  }

  Call MakeCall()
  {
    const auto bits = static_cast<int>(random_() & ((1u << Draw(0, 31)) - 1u));
    return {bits - (Draw(0, 3) == 0 ? 50 : 0), Draw(-2, 30), Draw(0, 5)};
  }

  void MakeOrder()
  {
    order_.clear();
    const int count = Draw(1, 60);
    for (int i = 0; i < count; ++i) {
      const Call first = MakeCall();
      for (int node = Draw(0, 9); node >= 0; --node) order_.push_back({first.element, first.node + node, Draw(0, 5)});
    }
  }

  void Disturb()
  {
    const int at = order_.empty() ? 0 : Draw(0, static_cast<int>(order_.size()) - 1);
    switch (Draw(0, 5)) {
      case 0:
        order_.insert(order_.begin() + at, MakeCall());
        break;
      case 1:
        if (!order_.empty()) order_.erase(order_.begin() + at);
        break;
      case 2:
        if (!order_.empty()) order_[static_cast<std::size_t>(at)] = MakeCall();
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
    // Sums of these cancel now and then, which decides about the block of moments.
    if (Draw(0, 1) == 0) return Draw(-1, 1);
    return std::uniform_real_distribution<double>(-1e6, 1e6)(random_);
  }

  void Fill(Twin& twin, const Call& call)
  {
    ++steps_;
    const double first[3]  = {MakeNumber(), MakeNumber(), MakeNumber()};
    const double second[3] = {-0.0, MakeNumber(), 0.0};
    const auto   vec       = call.element % 3 == 0 ? kMoment : kForce;
    const int    component = (call.node + 3) % 3;
    const bool   isTaken   = call.what < 3 || twin.plain.Locate(call.element, call.node);
    switch (call.what) {
      case 0:
        twin.data.InsertComponent(call.element, call.node, vec, component, first[0]);
        break;
      case 1:
        twin.data.InsertVector(call.element, call.node, vec, first);
        break;
      case 2:
        twin.data.InsertVectors(call.element, call.node, first, second);
        break;
      case 3:
        twin.data.SetComponent(call.element, call.node, vec, component, first[0]);
        break;
      case 4:
        twin.data.SetVector(call.element, call.node, vec, first);
        break;
      default:
        twin.data.SetVectors(call.element, call.node, first, second);
        break;
    }
    if (!isTaken) return;
    switch (call.what % 3) {
      case 0:
        return twin.plain.InsertComponent(call.element, call.node, vec, component, first[0]);
      case 1:
        return twin.plain.Insert(call.element, call.node, vec, first);
      default:
        twin.plain.Insert(call.element, call.node, kForce, first);
        twin.plain.Insert(call.element, call.node, kMoment, second);
    }
  }

  static Doubles ReportedPlainly(const PlainForces::Element& element, int vec, FEM_IforceData::MultiValueOperation op)
  {
    Doubles values(3 * element.nodes.size());
    if (op == kZero) return values;
    for (const auto& [node, sums] : element.sums[vec]) {
      for (std::size_t k = 0; k < 3; ++k) {
        if (sums.count[k] == 0) continue;
        const double divisor                       = op == kAverage ? sums.count[k] : 1.0;
        values[3 * element.positions.at(node) + k] = sums.sum[k] / divisor;
      }
    }
    return values;
  }

  /// By element, what a block's lists hold.
  template <typename List>
  static std::map<int, std::vector<List>> ReadLists(const FED_Database& db, const FED_DataDescriptor& descriptor)
  {
    std::map<int, std::vector<List>> lists;
    if (!db.HasDataBlock(descriptor)) return lists;
    const FED_DataBlock&       block = db.GetConstDataBlock(descriptor);
    const FED_ConstIdDataBlock view(block, db.GetIdMapsPool());
    FED_ConstIdDataRecord&     record = view.CreateConstIdDataRecord();
    for (const std::size_t index : dynamic_cast<const FED_ColumnDataBlock&>(block).GetIndices()) {
      const int id = view.GetId(index);
      view.GetRecord(id, record);
      std::conditional_t<std::is_same_v<List, int>, FED_IntArray, FED_DoubleArray> list;
      if constexpr (std::is_same_v<List, int>)
        record.GetIntList(1, list);
      else
        record.GetDataRecord().GetDoubleList(1, list);
      lists[id].assign(list.GetData(), list.GetData() + list.GetSize());
    }
    view.DeleteIdDataRecord(record);
    return lists;
  }

  void ExpectSaved(const Twin& twin)
  {
    const auto             op = static_cast<FEM_IforceData::MultiValueOperation>(Draw(0, 3));
    std::map<int, Doubles> expected[2];
    std::map<int, Ids>     nodes;
    for (const auto& [id, element] : twin.plain.elements) {
      for (const int vec : {0, 1}) {
        const Doubles values  = ReportedPlainly(element, vec, op);
        const auto    isThere = [](double value) { return value != 0.0 || std::signbit(value); };
        if (element.has[vec] && (vec == 0 || std::any_of(values.begin(), values.end(), isThere)))
          expected[vec][static_cast<int>(id)] = values;
      }
      nodes[static_cast<int>(id)] = element.nodes;
    }
    FED_ResultDatabase db;
    Save(twin.data, db, op);
    EXPECT_EQ(db.HasDataBlock(Forces()), !twin.plain.elements.empty());
    EXPECT_EQ(db.HasDataBlock(Moments()), !expected[1].empty());
    EXPECT_EQ(ReadLists<double>(db, Forces()), expected[0]);
    EXPECT_EQ(ReadLists<double>(db, Moments()), expected[1]);
    EXPECT_EQ(ReadLists<int>(db, FED_DataDescriptor(1, static_cast<FED_OnfId>(595))), nodes);
  }

  std::mt19937      random_;
  Twin              twins_[2];
  std::vector<Call> order_;
  std::size_t       steps_ = 0;
};

// QUILON_MODEL_STEPS says how much of it.
TEST(IforceData, RandomWorkAgreesWithThePlainAccumulator)
{
  const char* const given = std::getenv("QUILON_MODEL_STEPS");
  ForceWork(20261122).Do(given == nullptr ? 40000 : std::strtoul(given, nullptr, 10));
}

TEST(IforceData, AFreshElementHasRoomForFourNodesAndMinusOneReserved)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kForce, 0, 1.0);
  const NodesData& nodes = *Access::Find(data, 7);
  EXPECT_EQ(nodes.reserved, -1);
  EXPECT_GE(nodes.vecData[kForce].capacity(), 12u);
  EXPECT_GE(nodes.vecData[kMoment].capacity(), 12u);
}

TEST(IforceData, PositionsCountFirstContributionsToTheElement)
{
  FEM_IforceData data;
  for (const int node : {30, 10, 20, 10, 30}) data.InsertComponent(7, node, kForce, 0, 1.0);
  data.InsertComponent(8, 20, kForce, 0, 1.0);
  EXPECT_EQ(Access::Find(data, 7)->nodes, (Positions{{30, 0}, {10, 1}, {20, 2}}));
  EXPECT_EQ(Access::Find(data, 8)->nodes, (Positions{{20, 0}}));
  EXPECT_EQ(Access::Values(*Access::Find(data, 7), kForce, kSum), (Doubles{2, 0, 0, 2, 0, 0, 1, 0, 0}));
}

TEST(IforceData, BothVectorsGrowWithEveryNode)
{
  FEM_IforceData data;
  for (int node = 1; node <= 27; ++node) {
    data.InsertComponent(7, -node, kForce, 2, node);
    const NodesData& nodes = *Access::Find(data, 7);
    EXPECT_EQ(nodes.vecData[kForce].size(), 3u * static_cast<std::size_t>(node));
    EXPECT_EQ(nodes.vecData[kMoment].size(), 3u * static_cast<std::size_t>(node));
  }
  for (int node = 1; node <= 27; ++node) {
    const auto position = static_cast<std::size_t>(node - 1);
    EXPECT_EQ(Access::Find(data, 7)->nodes.at(-node), position);
    EXPECT_EQ(Access::Find(data, 7)->vecData[kForce][3 * position + 2].sum, node);
  }
}

TEST(IforceData, AMomentOnANewElementMarksElementAndObjectButNoForces)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kMoment, 0, 0.0);
  EXPECT_TRUE(Access::Find(data, 7)->hasMoments);
  EXPECT_FALSE(Access::Find(data, 7)->hasForces);
  EXPECT_TRUE(Access::HasMoments(data));

  FEM_IforceData vectors;
  vectors.InsertVector(7, 30, kMoment, kNone);
  EXPECT_TRUE(Access::Find(vectors, 7)->hasMoments);
  EXPECT_FALSE(Access::Find(vectors, 7)->hasForces);
  EXPECT_TRUE(Access::HasMoments(vectors));
}

TEST(IforceData, AForceMarksItsElementAlone)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kForce, 0, 0.0);
  data.InsertVector(8, 30, kForce, kNone);
  for (const int element : {7, 8}) {
    EXPECT_TRUE(Access::Find(data, element)->hasForces);
    EXPECT_FALSE(Access::Find(data, element)->hasMoments);
  }
  EXPECT_FALSE(Access::HasMoments(data));
}

TEST(IforceData, InsertVectorsMarksMomentsEvenWhenTheyAreZero)
{
  FEM_IforceData data;
  data.InsertVectors(7, 30, kNone, kNone);
  EXPECT_TRUE(Access::Find(data, 7)->hasForces);
  EXPECT_TRUE(Access::Find(data, 7)->hasMoments);
  EXPECT_TRUE(Access::HasMoments(data));
  EXPECT_FALSE(Access::HasNonzero(data, kSum));
}

TEST(IforceData, MarkingWithoutAnElementMarksTheObjectOnly)
{
  FEM_IforceData data;
  Access::MarkForces(data, nullptr, kForce);
  Access::MarkMoments(data, nullptr, kForce);
  EXPECT_FALSE(Access::HasMoments(data));
  Access::MarkMoments(data, nullptr, kMoment);
  EXPECT_TRUE(Access::HasMoments(data));
}

TEST(IforceData, MarkingNeverUnmarks)
{
  FEM_IforceData data = MakeOne();
  NodesData&     one  = *Access::Find(data, 7);
  Access::MarkForces(data, &one, kMoment);
  Access::MarkMoments(data, &one, kForce);
  EXPECT_TRUE(one.hasForces);
  EXPECT_TRUE(one.hasMoments);
  EXPECT_TRUE(Access::HasMoments(data));
}

TEST(IforceData, ElementsAscendAsUnsignedNumbers)
{
  FEM_IforceData data;
  for (const int element : {-1, INT_MAX, 256, 0, INT_MIN, 65536, 255, 16777216, 65535})
    data.InsertComponent(element, 1, kForce, 0, element);
  EXPECT_EQ(Access::Elements(data), (Ids{0, 255, 256, 65535, 65536, 16777216, INT_MAX, INT_MIN, -1}));
  EXPECT_EQ(Access::Find(data, -1)->vecData[kForce][0].sum, -1.0);
  EXPECT_EQ(Access::Find(data, INT_MAX)->vecData[kForce][0].sum, INT_MAX);
}

TEST(IforceData, FetchingGivesThreeTimesThePosition)
{
  FEM_IforceData data;
  NodesData*     nodes = nullptr;
  std::size_t    base  = 99;
  Access::Fetch(data, 7, 30, nodes, base);
  EXPECT_EQ(nodes, Access::Find(data, 7));
  EXPECT_EQ(base, 0u);
  Access::Fetch(data, 7, 10, nodes, base);
  EXPECT_EQ(base, 3u);
  Access::Fetch(data, 7, 30, nodes, base);
  EXPECT_EQ(base, 0u);
  EXPECT_FALSE(nodes->hasForces) << "looking up marks nothing";
}

TEST(IforceData, ReservingKeepsWhatIsThere)
{
  FEM_IforceData data = MakeOne();
  data.ReserveStorage(1000);
  data.ReserveStorage(0);
  EXPECT_EQ(Saved(data), kOne);
}

TEST(IforceData, ReservingMoreThanAVectorHoldsIsALengthFailure)
{
  FEM_IforceData data = MakeOne();
  EXPECT_THROW(data.ReserveStorage(std::numeric_limits<std::size_t>::max()), std::length_error);
  EXPECT_EQ(Saved(data), kOne);
}

// Setting

TEST(IforceData, SettingAddsLikeInserting)
{
  FEM_IforceData inserted;
  FEM_IforceData set;
  inserted.InsertComponent(7, 30, kForce, 0, 1.0);
  set.InsertComponent(7, 30, kForce, 0, 1.0);

  inserted.InsertComponent(7, 30, kForce, 0, 2.0);
  inserted.InsertVector(7, 30, kMoment, Doubles{1, 2, 3}.data());
  inserted.InsertVectors(7, 30, Doubles{4, 5, 6}.data(), Doubles{7, 8, 9}.data());
  set.SetComponent(7, 30, kForce, 0, 2.0);
  set.SetVector(7, 30, kMoment, Doubles{1, 2, 3}.data());
  set.SetVectors(7, 30, Doubles{4, 5, 6}.data(), Doubles{7, 8, 9}.data());

  EXPECT_EQ(Saved(set),
            (Content{{"<580 it=1> 1", "[Db 7 5 6]"}, {"<581 it=1> 1", "[Db 8 10 12]"}, {"<595 it=1> 1", "[lb 30]"}}));
  EXPECT_EQ(Saved(set), Saved(inserted));
  EXPECT_EQ(Saved(set, kAverage), Saved(inserted, kAverage));
  ExpectOnlyMissing(set, {}, {});
}

TEST(IforceData, SettingAComponentMarksLikeInserting)
{
  FEM_IforceData data;
  NodesData*     nodes = nullptr;
  std::size_t    base  = 0;
  Access::Fetch(data, 7, 30, nodes, base);
  data.SetComponent(7, 30, kForce, 0, 0.0);
  EXPECT_TRUE(nodes->hasForces);
  EXPECT_FALSE(nodes->hasMoments);
  data.SetComponent(7, 30, kMoment, 0, 0.0);
  EXPECT_TRUE(nodes->hasMoments);
  EXPECT_TRUE(Access::HasMoments(data));
}

TEST(IforceData, AMissingElementIsRememberedAndNothingChanges)
{
  FEM_IforceData data;
  data.SetComponent(1, 30, kMoment, 0, 1.0);
  data.SetVector(2, 30, kMoment, Doubles{1, 2, 3}.data());
  data.SetVectors(-3, 30, Doubles{1, 2, 3}.data(), Doubles{1, 2, 3}.data());
  data.SetComponent(1, 31, kForce, 0, 1.0);
  EXPECT_TRUE(Access::Elements(data).empty());
  EXPECT_FALSE(Access::HasMoments(data));
  ExpectOnlyMissing(data, {1, 2, -3}, {});
}

TEST(IforceData, AMissingNodeIsRememberedByItsElement)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kForce, 0, 1.0);
  data.InsertComponent(8, 30, kForce, 0, 1.0);
  data.InsertComponent(9, 30, kForce, 0, 1.0);
  data.SetComponent(7, 31, kMoment, 0, 1.0);
  data.SetVector(8, 31, kMoment, Doubles{1, 2, 3}.data());
  data.SetVectors(9, 31, Doubles{1, 2, 3}.data(), Doubles{1, 2, 3}.data());
  ExpectOnlyMissing(data, {}, {7, 8, 9});
  EXPECT_FALSE(Access::HasMoments(data));
  for (const int element : {7, 8, 9}) {
    EXPECT_EQ(Access::Find(data, element)->nodes, (Positions{{30, 0}}));
    EXPECT_FALSE(Access::Find(data, element)->hasMoments);
    EXPECT_EQ(Access::Values(*Access::Find(data, element), kForce, kSum), (Doubles{1, 0, 0}));
  }
}

TEST(IforceData, LocatingGivesTheElementEvenWithoutTheNode)
{
  FEM_IforceData data  = MakeOne();
  NodesData*     nodes = nullptr;
  std::size_t    base  = 99;
  EXPECT_FALSE(Access::Locate(data, 8, 30, nodes, base));
  EXPECT_EQ(nodes, nullptr);
  EXPECT_FALSE(Access::Locate(data, 7, 31, nodes, base));
  EXPECT_EQ(nodes, Access::Find(data, 7));
  EXPECT_EQ(base, 99u);
  EXPECT_TRUE(Access::Locate(data, 7, 10, nodes, base));
  EXPECT_EQ(base, 3u);
}

// Nullifying and clearing

TEST(IforceData, NullifyingKeepsElementsNodesAndPositions)
{
  FEM_IforceData data = MakeFull();
  data.NullifyVecData();
  const NodesData& nodes = *Access::Find(data, 7);
  EXPECT_EQ(nodes.nodes, (Positions{{30, 0}, {10, 1}}));
  EXPECT_EQ(nodes.reserved, 5);
  EXPECT_FALSE(nodes.hasForces);
  EXPECT_FALSE(nodes.hasMoments);
  EXPECT_FALSE(Access::HasMoments(data));
  EXPECT_FALSE(Access::HasNonzero(data, kSum));
  for (const int vec : {kForce, kMoment}) {
    ASSERT_EQ(nodes.vecData[vec].size(), 6u);
    for (const Access::ValueSum& value : nodes.vecData[vec]) {
      EXPECT_EQ(value.sum, 0.0);
      EXPECT_EQ(value.count, 0);
    }
  }
  EXPECT_TRUE(data.IsConnLoaded());
  EXPECT_EQ(Access::ElementNodes(data).size(), 1u);
  ExpectOnlyMissing(data, {8}, {7});

  data.SetVector(7, 10, kForce, Doubles{1, 1, 1}.data());
  EXPECT_EQ(Saved(data), (Content{{"<580 it=1> 1", "[Db 0 0 0 1 1 1]"}, {"<595 it=1> 1", "[lb 30 10]"}}));
}

TEST(IforceData, ClearingDropsAllButTheElementToNodeSets)
{
  FEM_IforceData data = MakeFull();
  data.Clear();
  EXPECT_TRUE(Access::Elements(data).empty());
  EXPECT_FALSE(data.IsConnLoaded());
  EXPECT_FALSE(Access::HasMoments(data));
  EXPECT_EQ(Access::ElementNodes(data), (std::map<int, std::set<int>>{{7, {10, 30}}}));
  ExpectOnlyMissing(data, {}, {});

  data.SetComponent(7, 30, kForce, 0, 1.0);
  ExpectOnlyMissing(data, {7}, {});
  data.InsertComponent(7, 10, kForce, 0, 1.0);
  EXPECT_EQ(Access::Find(data, 7)->nodes, (Positions{{10, 0}}));
}

TEST(IforceData, MissingIdsOnlyGrowUntilCleared)
{
  FEM_IforceData data = MakeOne();
  data.SetComponent(5, 1, kForce, 0, 1.0);
  data.SetComponent(7, 1, kForce, 0, 1.0);
  data.InsertComponent(5, 1, kForce, 0, 1.0);
  data.InsertComponent(7, 1, kForce, 0, 1.0);
  data.NullifyVecData();
  ExpectOnlyMissing(data, {5}, {7});
}

// Copying and moving

TEST(IforceData, ACopyIsDeep)
{
  FEM_IforceData data = MakeFull();
  FEM_IforceData copy(data);
  ExpectFull(copy);
  data.InsertComponent(7, 99, kForce, 0, 1.0);
  data.Clear();
  ExpectFull(copy);
  copy.InsertComponent(7, 99, kForce, 0, 1.0);
  EXPECT_TRUE(Access::Elements(data).empty());
}

TEST(IforceData, AssigningACopyReplacesEverything)
{
  FEM_IforceData data = MakeFull();
  FEM_IforceData target;
  target.InsertComponent(1, 2, kForce, 0, 3.0);
  Access::ElementNodes(target) = {{1, {2}}};
  target                       = std::as_const(data);
  ExpectFull(target);
  ExpectFull(data);
  EXPECT_EQ(Access::Elements(target), Ids{7});
}

TEST(IforceData, AnObjectAssignedToItselfKeepsEverything)
{
  FEM_IforceData  data = MakeFull();
  FEM_IforceData& same = data;
  data                 = same;
  ExpectFull(data);
  data = std::move(same);
  ExpectFull(data);
}

TEST(IforceData, TheSourceOfAMoveKeepsItsElements)
{
  FEM_IforceData data = MakeFull();
  FEM_IforceData taken(std::move(data));
  ExpectFull(taken);
  ExpectMovedFrom(data);

  FEM_IforceData other = MakeFull();
  FEM_IforceData target;
  target.InsertComponent(1, 2, kForce, 0, 3.0);
  Access::MissingElements(target) = {99};
  target                          = std::move(other);
  ExpectFull(target);
  ExpectMovedFrom(other);
}

TEST(IforceData, AfterAMoveBothGoOnByThemselves)
{
  FEM_IforceData data = MakeOne();
  FEM_IforceData taken(std::move(data));
  data.InsertComponent(7, 30, kForce, 0, 10.0);
  taken.Clear();
  EXPECT_EQ(Access::Find(data, 7)->vecData[kForce][0].sum, 11.0);
  EXPECT_EQ(Access::Find(taken, 7), nullptr);
}

// The static operations

TEST(IforceData, InitNodesDataMapsARepeatedIdToItsLastPosition)
{
  NodesData nodes;
  nodes.hasForces = true;
  nodes.reserved  = 4;
  nodes.nodes     = {{99, 0}};
  nodes.vecData[kForce].resize(30);
  Access::Init({5, 6, 5}, nodes);
  EXPECT_EQ(nodes.nodes, (Positions{{5, 2}, {6, 1}}));
  EXPECT_EQ(nodes.vecData[kForce].size(), 9u);
  EXPECT_EQ(nodes.vecData[kMoment].size(), 9u);
  EXPECT_TRUE(nodes.hasForces);
  EXPECT_FALSE(nodes.hasMoments);
  EXPECT_EQ(nodes.reserved, 4);
}

TEST(IforceData, InitNodesDataEmptiesWhatWasGathered)
{
  FEM_IforceData data = MakeOne();
  NodesData&     one  = *Access::Find(data, 7);
  Access::Init({30}, one);
  EXPECT_EQ(Access::Values(one, kForce, kSum), (Doubles{0, 0, 0}));
  EXPECT_EQ(one.vecData[kForce][0].count, 0);
  EXPECT_TRUE(one.hasMoments);
  Access::Init({}, one);
  EXPECT_TRUE(one.nodes.empty());
  EXPECT_TRUE(one.vecData[kMoment].empty());
}

TEST(IforceData, AContributionToARepeatedIdGoesToItsLastPosition)
{
  FEM_IforceData data = MakeOne();
  Access::Init({5, 6, 5}, *Access::Find(data, 7));
  data.InsertComponent(7, 5, kForce, 0, 1.0);
  data.InsertComponent(7, 8, kForce, 0, 2.0);
  EXPECT_EQ(Access::Values(*Access::Find(data, 7), kForce, kSum), (Doubles{0, 0, 0, 0, 0, 0, 1, 0, 0, 2, 0, 0}));
}

TEST(IforceData, ExtractNodesListWritesIdsAtTheirPositionsOnly)
{
  FED_IntArray list(Ids{-1, -1, -1, -1});
  Access::Extract({{5, 2}, {6, 1}}, list);
  EXPECT_TRUE(list == FED_IntArray(Ids{-1, 6, 5, -1}));
}

TEST(IforceData, ReportedValuesTakeTheSizeOfTheVector)
{
  const FEM_IforceData one = MakeOne();
  FEM_IforceData       copy(one);
  EXPECT_EQ(Access::Values(*Access::Find(copy, 7), kMoment, kSum), (Doubles{0, 0, 0, 4, 5, 6}));
  EXPECT_EQ(Access::Values(NodesData(), kForce, kAverage), Doubles{});
}

TEST(IforceData, HasNonzeroMomentsLooksAtValuesNotAtFlags)
{
  FEM_IforceData data = MakeOne();
  EXPECT_TRUE(Access::HasNonzero(data, kSum));
  EXPECT_TRUE(Access::HasNonzero(data, kAverage));
  EXPECT_FALSE(Access::HasNonzero(data, kZero));
  Access::Find(data, 7)->hasMoments = false;
  Access::HasMoments(data)          = false;
  EXPECT_TRUE(Access::HasNonzero(data, kSum));
  EXPECT_FALSE(Access::HasNonzero(FEM_IforceData(), kSum));
}

TEST(IforceData, AMomentOfMinusZeroIsNonzero)
{
  // The least negative double halved rounds to -0.0.
  FEM_IforceData data;
  data.InsertComponent(7, 30, kMoment, 0, -kLeastPositive);
  data.InsertComponent(7, 30, kMoment, 0, 0.0);
  EXPECT_EQ(Access::Values(*Access::Find(data, 7), kMoment, kAverage), (Doubles{-0.0, 0, 0}));
  EXPECT_TRUE(Access::HasNonzero(data, kAverage));
}

TEST(IforceData, MomentsThatCancelAreZero)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kMoment, 0, 2.5);
  data.InsertComponent(7, 30, kMoment, 0, -2.5);
  data.InsertComponent(7, 30, kMoment, 1, -0.0);
  EXPECT_FALSE(Access::HasNonzero(data, kSum)) << "0.0 - 0.0 is +0.0";
  EXPECT_FALSE(Access::HasNonzero(data, kAverage));
}

// Saving

TEST(IforceDataSave, OpensForcesMomentsAndElementNodesInThisOrder)
{
  const FEM_IforceData data = MakeOne();
  FED_ResultDatabase   inner;
  RecordingDatabase    db(inner, Detail::Records);
  Save(data, db);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetOrCreateDataBlock(<580 it=1>, 1)",
                                  "db.GetIdMapsPool()",
                                  "db.GetOrCreateDataBlock(<581 it=1>, 1)",
                                  "db.GetIdMapsPool()",
                                  "db.HasDataBlock(<595 it=1>)",
                                  "db.GetOrCreateDataBlock(<595 it=1>, 1)",
                                  "db.GetIdMapsPool()",
                                  "block<580 it=1>.CreateDataRecord()",
                                  "block<581 it=1>.CreateDataRecord()",
                                  "block<595 it=1>.CreateDataRecord()",
                                  "record<580 it=1>.SetDoubleList(1, (1 2 3 0 0 0))",
                                  "pool.FindOrAddIndex(1, 7)",
                                  "block<580 it=1>.SetRecord(1, [Db 1 2 3 0 0 0])",
                                  "record<581 it=1>.SetDoubleList(1, (0 0 0 4 5 6))",
                                  "pool.FindOrAddIndex(1, 7)",
                                  "block<581 it=1>.SetRecord(1, [Db 0 0 0 4 5 6])",
                                  "pool.FindIndex(1, 7)",
                                  "block<595 it=1>.HasRecord(1)",
                                  "record<595 it=1>.SetIntList(1, (30 10))",
                                  "pool.FindOrAddIndex(1, 7)",
                                  "block<595 it=1>.SetRecord(1, [lb 30 10])",
                                  "block<580 it=1>.DeleteDataRecord()",
                                  "block<581 it=1>.DeleteDataRecord()",
                                  "block<595 it=1>.DeleteDataRecord()"}));
  EXPECT_EQ(db.GetLiveScratchRecords(), 0u);
  EXPECT_EQ(Snapshot(inner), kOne);
}

TEST(IforceDataSave, AnEmptyObjectDoesNotTouchTheDatabase)
{
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Records);
  Save(FEM_IforceData(), db);
  FEM_IforceData cleared = MakeFull();
  cleared.Clear();
  Save(cleared, db);
  EXPECT_EQ(db.GetLines(), Lines{});
  EXPECT_EQ(db.GetCallCount(), 0u);
}

TEST(IforceDataSave, EveryBlockIsAskedForWithTheNumberOfAllElements)
{
  // Of four elements two have forces and one has moments.
  FEM_IforceData data;
  for (const int element : {1, 2, 3, 4}) data.InsertComponent(element, 1, kForce, 0, 1.0);
  data.NullifyVecData();
  data.InsertComponent(2, 1, kForce, 0, 1.0);
  data.InsertComponent(3, 1, kForce, 0, 1.0);
  data.InsertComponent(3, 1, kMoment, 0, 1.0);
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Database);
  Save(data, db);
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.GetOrCreateDataBlock(<580 it=1>, 4)", "db.GetIdMapsPool()",
                   "db.GetOrCreateDataBlock(<581 it=1>, 4)", "db.GetIdMapsPool()", "db.HasDataBlock(<595 it=1>)",
                   "db.GetOrCreateDataBlock(<595 it=1>, 4)", "db.GetIdMapsPool()"}));
  EXPECT_EQ(Snapshot(inner), (Content{{"<580 it=1> 2", "[Db 1 0 0]"},
                                      {"<580 it=1> 3", "[Db 1 0 0]"},
                                      {"<581 it=1> 3", "[Db 1 0 0]"},
                                      {"<595 it=1> 1", "[lb 1]"},
                                      {"<595 it=1> 2", "[lb 1]"},
                                      {"<595 it=1> 3", "[lb 1]"},
                                      {"<595 it=1> 4", "[lb 1]"}}));
}

TEST(IforceDataSave, WithoutAnyForceTheForceBlockIsOpenedAndStaysEmpty)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kMoment, 0, 0.0);
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Database);
  Save(data, db);
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.GetOrCreateDataBlock(<580 it=1>, 1)", "db.GetIdMapsPool()", "db.HasDataBlock(<595 it=1>)",
                   "db.GetOrCreateDataBlock(<595 it=1>, 1)", "db.GetIdMapsPool()"}));
  EXPECT_EQ(Snapshot(inner), (Content{{"<595 it=1> 1", "[lb 30]"}}));
}

TEST(IforceDataSave, ZeroWritesForcesOfZeroAndNoMoments)
{
  EXPECT_EQ(Saved(MakeOne(), kZero), (Content{{"<580 it=1> 1", "[Db 0 0 0 0 0 0]"}, {"<595 it=1> 1", "[lb 30 10]"}}));
}

TEST(IforceDataSave, SumsAndAveragesAreReducedOnTheWayOut)
{
  FEM_IforceData data;
  data.InsertVector(7, 30, kForce, Doubles{1, 2, 3}.data());
  data.InsertVector(7, 30, kForce, Doubles{3, 4, 5}.data());
  EXPECT_EQ(Saved(data, kSum).at("<580 it=1> 1"), "[Db 4 6 8]");
  EXPECT_EQ(Saved(data, kAverage).at("<580 it=1> 1"), "[Db 2 3 4]");
  EXPECT_EQ(Saved(data, kUnlisted).at("<580 it=1> 1"), "[Db 4 6 8]");
}

TEST(IforceDataSave, ForcesOfZeroAreWrittenAndMomentsOfZeroAreNot)
{
  FEM_IforceData data;
  data.InsertVectors(7, 30, kNone, kNone);
  data.InsertVectors(8, 30, kNone, Doubles{0, 0, 1}.data());
  FED_ResultDatabase db;
  Save(data, db);
  EXPECT_EQ(Snapshot(db), (Content{{"<580 it=1> 1", "[Db 0 0 0]"},
                                   {"<580 it=1> 2", "[Db 0 0 0]"},
                                   {"<581 it=1> 2", "[Db 0 0 1]"},
                                   {"<595 it=1> 1", "[lb 30]"},
                                   {"<595 it=1> 2", "[lb 30]"}}));
}

TEST(IforceDataSave, NoMomentBlockIsOpenedWhenAllMomentsAreZero)
{
  FEM_IforceData data;
  data.InsertVectors(7, 30, Doubles{1, 2, 3}.data(), kNone);
  FED_ResultDatabase db;
  Save(data, db);
  EXPECT_FALSE(db.HasDataBlock(Moments()));
}

TEST(IforceDataSave, NoMomentBlockIsOpenedWithoutTheObjectsFlag)
{
  FEM_IforceData data      = MakeOne();
  Access::HasMoments(data) = false;
  FED_ResultDatabase db;
  Save(data, db);
  EXPECT_FALSE(db.HasDataBlock(Moments()));
}

TEST(IforceDataSave, AnElementWithoutItsFlagWritesNoMomentsThoughTheBlockIsOpen)
{
  FEM_IforceData data               = MakeOne();
  Access::Find(data, 7)->hasMoments = false;
  FED_ResultDatabase db;
  Save(data, db);
  EXPECT_TRUE(db.HasDataBlock(Moments()));
  EXPECT_EQ(Snapshot(db).count("<581 it=1> 1"), 0u);
}

TEST(IforceDataSave, AMomentOfMinusZeroIsWritten)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kMoment, 1, -kLeastPositive);
  data.InsertComponent(7, 30, kMoment, 1, 0.0);
  EXPECT_EQ(Saved(data, kAverage), (Content{{"<581 it=1> 1", "[Db 0 -0 0]"}, {"<595 it=1> 1", "[lb 30]"}}));
}

TEST(IforceDataSave, NodesKeepTheOrderOfTheirFirstContribution)
{
  FEM_IforceData data;
  data.InsertComponent(7, 30, kForce, 0, 3.0);
  data.InsertComponent(7, 10, kForce, 0, 1.0);
  data.InsertComponent(7, 20, kForce, 0, 2.0);
  EXPECT_EQ(Saved(data), (Content{{"<580 it=1> 1", "[Db 3 0 0 1 0 0 2 0 0]"}, {"<595 it=1> 1", "[lb 30 10 20]"}}));
}

TEST(IforceDataSave, ElementsAreWrittenInAscendingOrderWithNegativeIdsLast)
{
  FEM_IforceData data;
  for (const int element : {-1, 300, 7, INT_MAX}) data.InsertComponent(element, 1, kForce, 0, 1.0);
  FED_ResultDatabase db;
  Save(data, db);
  FED_IdMapsPool& pool = db.GetIdMapsPool();
  EXPECT_EQ(pool.GetId(1, 1), 7);
  EXPECT_EQ(pool.GetId(1, 2), 300);
  EXPECT_EQ(pool.GetId(1, 3), INT_MAX);
  EXPECT_EQ(pool.GetId(1, 4), -1);
}

TEST(IforceDataSave, ASecondSaveOfTheIterationWritesNoNodeLists)
{
  FED_ResultDatabase inner;
  Save(MakeOne(), inner);
  FEM_IforceData other;
  other.InsertComponent(8, 99, kForce, 0, 1.0);
  other.InsertComponent(7, 10, kForce, 0, 9.0);

  FED_DataDescriptor forces = Forces();
  forces.SetInteger(FED_DataDescriptor::LoadCase, 2);
  RecordingDatabase db(inner, Detail::Database);
  other.Save(db, forces, Moments(), kSum);
  EXPECT_EQ(db.GetLines(), (Lines{"db.GetOrCreateDataBlock(<580 it=1 lc=2>, 2)", "db.GetIdMapsPool()",
                                  "db.HasDataBlock(<595 it=1>)"}));
  Content expected              = kOne;
  expected["<580 it=1 lc=2> 1"] = "[Db 9 0 0]";
  expected["<580 it=1 lc=2> 2"] = "[Db 1 0 0]";
  EXPECT_EQ(Snapshot(inner), expected);
}

TEST(IforceDataSave, AnotherIterationHasNodeListsOfItsOwn)
{
  FED_ResultDatabase db;
  Save(MakeOne(), db);
  MakeOne().Save(db, Forces(2), Moments(2), kSum);
  EXPECT_EQ(Snapshot(db).at("<595 it=2> 1"), "[lb 30 10]");
}

TEST(IforceDataSave, SavingAgainReplacesTheValuesOfEachElement)
{
  FED_ResultDatabase db;
  FEM_IforceData     data = MakeOne();
  Save(data, db);
  data.NullifyVecData();
  data.SetVectors(7, 30, Doubles{7, 7, 7}.data(), Doubles{8, 8, 8}.data());
  Save(data, db);
  EXPECT_EQ(Snapshot(db), (Content{{"<580 it=1> 1", "[Db 7 7 7 0 0 0]"},
                                   {"<581 it=1> 1", "[Db 8 8 8 0 0 0]"},
                                   {"<595 it=1> 1", "[lb 30 10]"}}));
}

TEST(IforceDataSave, ANodeListThatIsThereAfterAllIsKept)
{
  // Another program's database, which makes the block on the way with a list in it.
  class Prefilled : public FED_ResultDatabase
  {
  public:
    bool HasDataBlock(const FED_DataDescriptor&) const override { return false; }
  };
  Prefilled db;
  Save(MakeOne(), db);
  FEM_IforceData other;
  other.InsertComponent(7, 99, kForce, 0, 1.0);
  other.InsertComponent(8, 98, kForce, 0, 2.0);
  Save(other, db);
  EXPECT_EQ(Snapshot(db).at("<595 it=1> 1"), "[lb 30 10]");
  EXPECT_EQ(Snapshot(db).at("<595 it=1> 2"), "[lb 98]");
}

TEST(IforceDataSave, ANodesBlockThatIsThereStaysAsItIsEvenWithoutRecords)
{
  FED_ResultDatabase db;
  db.GetOrCreateDataBlock(FED_DataDescriptor(1, FED_OnfId_ElementNodes), 0);
  Save(MakeOne(), db);
  EXPECT_EQ(Snapshot(db).count("<595 it=1> 1"), 0u);
}

TEST(IforceDataSave, DescriptorsAreUsedAsGivenAndTheIterationWhateverItsMask)
{
  FED_DataDescriptor forces;
  forces.SetInteger(FED_DataDescriptor::OnfId, 580);
  forces.SetInteger(FED_DataDescriptor::Layer, 3);
  forces.values[FED_DataDescriptor::Iteration] = 4;
  FED_ResultDatabase inner;
  RecordingDatabase  db(inner, Detail::Database);
  MakeOne().Save(db, forces, Moments(6), kSum);
  EXPECT_EQ(db.GetLines(),
            (Lines{"db.GetOrCreateDataBlock(<580 ~it=4 lay=3>, 1)", "db.GetIdMapsPool()",
                   "db.GetOrCreateDataBlock(<581 it=6>, 1)", "db.GetIdMapsPool()", "db.HasDataBlock(<595 it=4>)",
                   "db.GetOrCreateDataBlock(<595 it=4>, 1)", "db.GetIdMapsPool()"}));
}

TEST(IforceDataSave, SavingChangesNothingInTheObject)
{
  FEM_IforceData data = MakeFull();
  Saved(data, kAverage);
  Saved(data, kZero);
  ExpectFull(data);
}

TEST(IforceDataSave, ARepeatedNodeLeavesAnUnusedPlaceInTheList)
{
  FEM_IforceData data = MakeOne();
  Access::Init({5, 6, 5}, *Access::Find(data, 7));
  data.InsertComponent(7, 6, kForce, 0, 1.0);
  EXPECT_EQ(Saved(data), (Content{{"<580 it=1> 1", "[Db 0 0 0 1 0 0 0 0 0]"}, {"<595 it=1> 1", "[lb 0 6 5]"}}));
}
