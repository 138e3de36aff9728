// Memory that runs out at each allocation in turn: std::bad_alloc arrives and nothing is left half done.

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/LogSink.h>
#include <FEM_IforceData.h>
#include <FEM_ResultUtil.h>
#include <FemLogger.h>

#include "AllocationFailure.h"
#include "RecordingDatabase.h"
#include "Snapshot.h"

namespace {

using quilon_test::AllocationFailure;
using quilon_test::RecordingDatabase;
using quilon_test::Snapshot;

FED_DataDescriptor Descriptor(int onf) { return FED_DataDescriptor(1, static_cast<FED_OnfId>(onf)); }

class Logger : public FemLogger
{
public:
  const std::set<int>& Read() const { return readSubsteps_; }
  int                  LoadCase() const { return loadCase_; }

protected:
  void PrintResultTypeStatus(int) override {}
};

// Calls operation(state) on a fresh state of `prepare` with its 1st, 2nd, ... allocation failing, until one run needs
// no more; after each failure check(state).
// @return the number of failures
template <typename Prepare, typename Operation, typename Check>
std::size_t SweepAllocations(const Prepare& prepare, const Operation& operation, const Check& check)
{
  constexpr std::size_t kMost = 1000;
  for (std::size_t allocation = 1; allocation <= kMost; ++allocation) {
    auto state     = prepare();
    bool hasFailed = false;
    bool isDue     = false;
    {
      const AllocationFailure failure(allocation);
      try {
        operation(*state);
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
      isDue = failure.HasFailed();
    }
    EXPECT_EQ(hasFailed, isDue) << "allocation " << allocation << ": a failure was swallowed";
    if (!isDue) {
      EXPECT_GT(allocation, 1u) << "the operation allocates nothing";
      return allocation - 1;
    }
    check(*state);
  }
  ADD_FAILURE() << "still failing after " << kMost << " allocations";
  return kMost;
}

// Contributions to new and known elements and nodes of all depths of the element table, more nodes per element than a
// fresh one has room for.
struct Contribution
{
  int element;
  int node;
};

std::vector<Contribution> MakeContributions()
{
  std::vector<Contribution> contributions;
  for (const int element : {7, 300, -1, 70000}) {
    for (int node = 1; node <= 9; ++node) contributions.push_back({element, 10 * node});
    contributions.push_back({element, 10});
  }
  return contributions;
}

// What was gathered as sums and as averages, that is with its counts.
std::vector<std::map<std::string, std::string>> Gathered(const FEM_IforceData& data)
{
  std::vector<std::map<std::string, std::string>> gathered;
  for (const auto operation : {FEM_IforceData::Sum, FEM_IforceData::Average}) {
    FED_ResultDatabase db;
    data.Save(db, Descriptor(580), Descriptor(581), operation);
    gathered.push_back(Snapshot(db));
  }
  return gathered;
}

// Lets insertions run out of memory wherever they ask for it: the object then holds the complete ones and takes the
// rest. @return the number of failures
template <typename Insert>
std::size_t SweepInsertions(const Insert& insert)
{
  struct State
  {
    FEM_IforceData data;
    std::size_t    numComplete = 0;
  };
  const std::vector<Contribution> contributions = MakeContributions();
  const auto                      insertRest    = [&](State& state) {
    for (; state.numComplete < contributions.size(); ++state.numComplete)
      insert(state.data, contributions[state.numComplete]);
  };

  std::vector<std::vector<std::map<std::string, std::string>>> expected;
  State                                                        whole;
  for (const Contribution& contribution : contributions) {
    expected.push_back(Gathered(whole.data));
    insert(whole.data, contribution);
  }
  expected.push_back(Gathered(whole.data));

  const auto check = [&](State& state) {
    EXPECT_EQ(Gathered(state.data), expected[state.numComplete]);
    insertRest(state);
    EXPECT_EQ(Gathered(state.data), expected.back());
  };
  const auto prepareLogged = [] {
    auto state = std::make_unique<State>();
    state->data.NullifyVecData();  // calls after it are logged
    return state;
  };
  const std::size_t survived = SweepAllocations([] { return std::make_unique<State>(); }, insertRest, check);
  return std::min(survived, SweepAllocations(prepareLogged, insertRest, check));
}

}  // namespace

TEST(AllocationFailures, FlushingKeepsThePendingSubstepsAndTheLoadCase)
{
  const QuilonLog::Sink former  = QuilonLog::SetSink([](const QuilonLog::Line&) {});
  const auto            prepare = [] {
    auto logger = std::make_unique<Logger>();
    for (int substep = 1; substep < 40; substep += 2) logger->SetReadSubstep(1, 12, substep);
    return logger;
  };
  const std::set<int> pending = prepare()->Read();
  SweepAllocations(
      prepare, [](Logger& logger) { logger.SetReadSubstep(1, 13, 1); },
      [&](Logger& logger) {
        // Either the flush failed and all is pending still, or the new substep found no room after it.
        if (logger.LoadCase() == 12) {
          EXPECT_EQ(logger.Read(), pending);
        } else {
          EXPECT_TRUE(logger.Read().empty());
        }
      });
  QuilonLog::SetSink(former);
}

TEST(AllocationFailures, OneInTheDestructorOfALoggerArrivesToo)
{
  const QuilonLog::Sink former    = QuilonLog::SetSink([](const QuilonLog::Line&) {});
  bool                  hasFailed = false;
  try {
    // Deliberately in this order: the failure is armed while the logger is destroyed.
    std::optional<AllocationFailure> failure;
    Logger                           logger;
    for (int substep = 1; substep < 40; substep += 2) logger.SetReadSubstep(1, 12, substep);
    failure.emplace(1);
  } catch (const std::bad_alloc&) {
    hasFailed = true;
  }
  QuilonLog::SetSink(former);
  EXPECT_TRUE(hasFailed);
}

TEST(AllocationFailures, AResultMatrixIsStoredWholeOrNotAtAll)
{
  // Element 30 has a matrix; memory runs out while it is replaced.
  const auto prepare = [] {
    auto db = std::make_unique<FED_ResultDatabase>();
    FEM_ResultUtil::SetResultMatrix(*db, Descriptor(597), 30, 2, {1, 2, 3, 4});
    return db;
  };
  const auto                before = Snapshot(*prepare());
  const std::vector<double> values(100, 2.5);
  SweepAllocations(
      prepare, [&](FED_Database& db) { FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 10, values); },
      [&](FED_Database& db) {
        EXPECT_EQ(Snapshot(db), before);
        FEM_ResultUtil::SetResultMatrix(db, Descriptor(597), 30, 2, {1, 2, 3, 4});
        EXPECT_EQ(Snapshot(db), before) << "and the database is in working order";
      });
}

TEST(AllocationFailures, AScratchRecordOfReadingElementNodesGoesWithTheBlockAtTheLatest)
{
  struct State
  {
    FED_ResultDatabase inner;
    RecordingDatabase  db{inner, quilon_test::Detail::Database};
  };
  const std::vector<int> nodes   = {1, 2, 3, 4, 5, 6, 7, 8};
  const auto             prepare = [&] {
    auto                  state  = std::make_unique<State>();
    FED_DataBlock&        block  = state->inner.GetOrCreateDataBlock(Descriptor(595), 0);
    FED_DataRecord* const record = block.CreateDataRecord();
    record->SetIntList(1, nodes);
    block.SetRecord(state->inner.GetIdMapsPool().FindOrAddIndex(1, 30), *record);
    block.DeleteDataRecord(record);
    return state;
  };
  const auto stored = Snapshot(prepare()->inner);
  SweepAllocations(
      prepare,
      [&](State& state) { EXPECT_TRUE(FEM_ResultUtil::AreElementNodesDefined(state.db, Descriptor(595), 30, nodes)); },
      [&](State& state) {
        EXPECT_EQ(Snapshot(state.inner), stored);
        state.db.DeleteDataBlock(Descriptor(595));
        EXPECT_EQ(state.db.GetLiveScratchRecords(), 0u);
      });
}

TEST(AllocationFailures, AnInsertedComponentIsGatheredWholeOrNotAtAll)
{
  const std::size_t survived = SweepInsertions([](FEM_IforceData& data, const Contribution& to) {
    data.InsertComponent(to.element, to.node, FEM_IforceData::Moment, 1, to.node + 0.5);
  });
  RecordProperty("survived", static_cast<int>(survived));
  // At the least an entry of a map for each of 36 nodes.
  EXPECT_GT(survived, 36u);
}

TEST(AllocationFailures, InsertedVectorsAreGatheredWholeOrNotAtAll)
{
  const std::size_t survived = SweepInsertions([](FEM_IforceData& data, const Contribution& to) {
    const double forces[3]  = {1.0, to.node + 0.5, to.element + 0.25};
    const double moments[3] = {to.element + 0.5, 2.0, 3.0};
    data.InsertVectors(to.element, to.node, forces, moments);
  });
  RecordProperty("survived", static_cast<int>(survived));
  EXPECT_GT(survived, 36u);
}

// Calls behind the first fill are logged, which takes memory where nothing else does.
TEST(AllocationFailures, SetVectorsAreGatheredWholeOrNotAtAll)
{
  struct State
  {
    FEM_IforceData data;
    std::size_t    numComplete = 0;
  };
  const std::vector<Contribution> contributions = MakeContributions();
  const auto                      prepare       = [&] {
    auto state = std::make_unique<State>();
    for (const Contribution& to : contributions)
      state->data.InsertComponent(to.element, to.node, FEM_IforceData::Force, 0, 1.0);
    state->data.NullifyVecData();
    return state;
  };
  const auto set = [&](State& state, std::size_t end) {
    for (; state.numComplete < end; ++state.numComplete) {
      const Contribution& to         = contributions[state.numComplete];
      const double        vectors[3] = {1.0, to.node + 0.5, to.element + 0.25};
      state.data.SetVectors(to.element, to.node, vectors, vectors);
    }
  };
  const auto setRest  = [&](State& state) { set(state, contributions.size()); };
  const auto gathered = [&](std::size_t end) {
    const auto state = prepare();
    set(*state, end);
    return Gathered(state->data);
  };
  SweepAllocations(prepare, setRest, [&](State& state) {
    EXPECT_EQ(Gathered(state.data), gathered(state.numComplete));
    setRest(state);
    EXPECT_EQ(Gathered(state.data), gathered(contributions.size()));
  });
}

TEST(AllocationFailures, SavingForcesLeavesThemToBeSavedAgain)
{
  struct State
  {
    FEM_IforceData     data;
    FED_ResultDatabase db;
  };
  const auto prepare = [] {
    auto state = std::make_unique<State>();
    for (const Contribution& to : MakeContributions()) {
      const double values[3] = {1.0, to.node + 0.5, to.element + 0.25};
      state->data.InsertVectors(to.element, to.node, values, values);
    }
    return state;
  };
  const auto        before   = Gathered(prepare()->data);
  const std::size_t survived = SweepAllocations(
      prepare, [](State& state) { state.data.Save(state.db, Descriptor(580), Descriptor(581), FEM_IforceData::Sum); },
      [&](State& state) {
        EXPECT_TRUE(quilon_test::IsPartOf(Snapshot(state.db), before.front()));
        EXPECT_EQ(Gathered(state.data), before);
      });
  RecordProperty("survived", static_cast<int>(survived));
}
