// The id radix map against other stores of values by id. A value is six doubles and a count.
//
// Cases, named <operation>/<order>/<number of ids>/<contestant>, time per id or visit:
//   build     an empty store takes a value per visit
//   find      all ids are looked up, shuffled
//   scan      all ids are looked up in the order in which they came
//   miss      as many unknown ids are looked up, shuffled
//   walk      all entries are visited by ascending id
// Orders: dense (1, 2, 3, ...), connectivity (those ids as elements of a mesh of hexahedra name them: every inner node
// eight times), shuffled (those ids); gaps, reversed (bytes), random (31 bits); see id_patterns.h.
// Contestants:
//   radix     IdRadixMap
//   plain     the same structure, written plainly: the tests' reference
//   boost     boost::unordered_flat_map, where its headers are there; its walk sorts a list of ids first
//   absl      absl::flat_hash_map, where the package is there; walk as boost
//   std       std::unordered_map; walk as boost
//   sorted    a vector of entries, sorted when the last one has been taken, searched by halves; where ids come
//             repeatedly every visit is taken and equal ids are merged after the sort
//
// Flags: --least=N and --most=N for the sizes, which double (1024 and 65536), --rows=FILE, and those of Google
// Benchmark: --benchmark_filter=^find/dense chooses cases; --benchmark_repetitions=5
// --benchmark_enable_random_interleaving=true measures in turns and gives medians.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef QUILON_BENCH_BOOST
#  include <boost/unordered/unordered_flat_map.hpp>
#endif
#ifdef QUILON_BENCH_ABSL
#  include <absl/container/flat_hash_map.h>
#endif

#include "id_patterns.h"
#include "IdRadixMap.h"
#include "keep_memory.h"
#include "PlainIdRadixMap.h"
#include "ratio_reporter.h"

namespace {

struct Value
{
  double sum[6] = {};
  int    count  = 0;

  void Add(double x)
  {
    for (double& component : sum) component += x;
    ++count;
  }
  void Merge(const Value& other)
  {
    for (int k = 0; k < 6; ++k) sum[k] += other.sum[k];
    count += other.count;
  }
};

// One face for all contestants: Add() folds a number into the id's value, Finish() follows the last Add(), Find() and
// Walk() come after it.

template <typename Map>
class RadixStore
{
public:
  void         Add(int id, double x) { map_.At(map_.FindOrInsert(id)).Add(x); }
  void         Finish() {}
  const Value* Find(int id)
  {
    const std::size_t position = map_.Find(id);
    return position == Map::npos ? nullptr : &map_.At(position);
  }
  template <typename Visit>
  void Walk(Visit visit)
  {
    if constexpr (requires { map_.Traverse(); }) {
      for (const std::size_t position : map_.Traverse()) visit(map_.At(position));
    } else {
      for (const auto& entry : std::as_const(map_)) visit(entry.second);
    }
  }

private:
  Map map_;
};

template <typename Map>
class HashStore
{
public:
  void         Add(int id, double x) { map_[id].Add(x); }
  void         Finish() {}
  const Value* Find(int id)
  {
    const auto found = map_.find(id);
    return found == map_.end() ? nullptr : &found->second;
  }
  template <typename Visit>
  void Walk(Visit visit)
  {
    std::vector<std::pair<std::uint32_t, const Value*>> entries;
    entries.reserve(map_.size());
    for (const auto& entry : map_) entries.emplace_back(static_cast<std::uint32_t>(entry.first), &entry.second);
    std::sort(entries.begin(), entries.end());
    for (const auto& entry : entries) visit(*entry.second);
  }

private:
  Map map_;
};

class SortedStore
{
public:
  void Add(int id, double x)
  {
    entries_.emplace_back(static_cast<std::uint32_t>(id), Value());
    entries_.back().second.Add(x);
  }
  void Finish()
  {
    const auto less = [](const Entry& a, const Entry& b) { return a.first < b.first; };
    if (!std::is_sorted(entries_.begin(), entries_.end(), less))
      std::stable_sort(entries_.begin(), entries_.end(), less);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      if (kept > 0 && entries_[kept - 1].first == entries_[i].first) {
        entries_[kept - 1].second.Merge(entries_[i].second);
      } else {
        entries_[kept++] = entries_[i];
      }
    }
    entries_.resize(kept);
  }
  const Value* Find(int id)
  {
    const auto bits  = static_cast<std::uint32_t>(id);
    const auto found = std::lower_bound(entries_.begin(), entries_.end(), bits,
                                        [](const Entry& entry, std::uint32_t key) { return entry.first < key; });
    return found == entries_.end() || found->first != bits ? nullptr : &found->second;
  }
  template <typename Visit>
  void Walk(Visit visit)
  {
    for (const Entry& entry : entries_) visit(entry.second);
  }

private:
  using Entry = std::pair<std::uint32_t, Value>;
  std::vector<Entry> entries_;
};

template <typename Store>
Store Fill(const std::vector<int>& order)
{
  Store store;
  for (const int id : order) store.Add(id, 1.0);
  store.Finish();
  return store;
}

template <typename Store>
void RunFill(benchmark::State& state, const std::vector<int>& order)
{
  for (auto _ : state) {
    Store store = Fill<Store>(order);
    benchmark::DoNotOptimize(store.Find(order.front()));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(order.size()));
}

template <typename Store>
void RunFind(benchmark::State& state, const std::vector<int>& held, const std::vector<int>& wanted)
{
  Store store = Fill<Store>(held);
  for (auto _ : state) {
    std::size_t count = 0;
    for (const int id : wanted) {
      if (const Value* value = store.Find(id)) count += static_cast<std::size_t>(value->count);
    }
    benchmark::DoNotOptimize(count);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(wanted.size()));
}

template <typename Store>
void RunWalk(benchmark::State& state, const std::vector<int>& held)
{
  Store store = Fill<Store>(held);
  for (auto _ : state) {
    double sum = 0;
    store.Walk([&sum](const Value& value) { sum += value.sum[0]; });
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(held.size()));
}

/// Every second of twice as many ids is held, the others are the unknown ones.
std::vector<int> EverySecond(const std::vector<int>& ids, std::size_t first)
{
  std::vector<int> chosen;
  for (std::size_t i = first; i < ids.size(); i += 2) chosen.push_back(ids[i]);
  return chosen;
}

constexpr const char* kOperations[] = {"build", "find", "scan", "miss", "walk"};

/// Every id once, in the order of its first visit.
std::vector<int> FirstVisits(const std::vector<int>& visits)
{
  std::unordered_set<int> seen;
  std::vector<int>        ids;
  for (const int id : visits) {
    if (seen.insert(id).second) ids.push_back(id);
  }
  return ids;
}

/// Made once for all rounds of all contestants.
const std::pair<std::vector<int>, std::vector<int>>& VisitsAndIds(const std::string& order, std::size_t size)
{
  static std::map<std::pair<std::string, std::size_t>, std::pair<std::vector<int>, std::vector<int>>> made;
  auto& found = made[{order, size}];
  if (found.first.empty()) {
    found.first  = quilon_bench::MakeVisits(order, size);
    found.second = FirstVisits(found.first);
  }
  return found;
}

template <typename Store>
void Run(benchmark::State& state, const std::string& operation, const std::string& order, std::size_t size)
{
  using quilon_bench::Shuffled;
  const auto& [visits, ids] = VisitsAndIds(order, operation == "miss" ? 2 * size : size);
  if (operation == "build") RunFill<Store>(state, visits);
  if (operation == "find") RunFind<Store>(state, ids, Shuffled(ids));
  if (operation == "scan") RunFind<Store>(state, ids, ids);
  if (operation == "miss") RunFind<Store>(state, EverySecond(ids, 0), Shuffled(EverySecond(ids, 1)));
  if (operation == "walk") RunWalk<Store>(state, ids);
}

struct Contestant
{
  const char* name;
  void (*run)(benchmark::State&, const std::string&, const std::string&, std::size_t);
};

constexpr Contestant kContestants[] = {
    {"radix", Run<RadixStore<IdRadixMap<Value>>>},
    {"plain", Run<RadixStore<quilon_test::PlainIdRadixMap<Value>>>},
#ifdef QUILON_BENCH_BOOST
    {"boost", Run<HashStore<boost::unordered_flat_map<int, Value>>>},
#endif
#ifdef QUILON_BENCH_ABSL
    {"absl", Run<HashStore<absl::flat_hash_map<int, Value>>>},
#endif
    {"std", Run<HashStore<std::unordered_map<int, Value>>>},
    {"sorted", Run<SortedStore>},
};

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 1024, 65536);
  const std::string              rows  = quilon_bench::TakeRowsFile(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  for (const char* operation : kOperations) {
    for (const char* order : quilon_bench::kIdOrders) {
      for (const std::size_t size : sizes) {
        for (const Contestant& contestant : kContestants) {
          const std::string name = std::string(operation) + '/' + order + '/' + std::to_string(size);
          benchmark::RegisterBenchmark(
              (name + '/' + contestant.name).c_str(),
              [=, run = contestant.run](benchmark::State& state) { run(state, operation, order, size); });
        }
      }
    }
  }

  std::vector<std::string> names;
  for (const Contestant& contestant : kContestants) names.emplace_back(contestant.name);
  quilon_bench::RatioReporter reporter("id-map", names, rows);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
