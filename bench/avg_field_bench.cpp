// Averaging fields against the same folding over other stores of data by id.
//
// Cases, named <operation>/<form>/<ids>/<number of ids>/<contestant>, time per value or entry:
//   add       an empty field takes the values of a mesh of hexahedra, element by element: every inner node eight times
//   again     the same after a reset: the ids are known
//   dump      all ids and data are copied out by ascending id
//   reset     all data is set to zero
// Forms: sums1 (sums with counts of scalars), stats6 (running statistics of tensors).
// Ids: dense, gaps, reversed (bytes), random (31 bits); see id_patterns.h.
// Contestants:
//   field     FEM_AvgField
//   std       std::unordered_map; its dump sorts
//   sorted    a vector of entries sorted by id, into which new ids are inserted where they belong; 4096 ids at most, as
//   its
//             filling grows with the square
//   absl      absl::flat_hash_map, where the package is there; dump as std
//
// Flags: --least=N and --most=N for the sizes, which double (1024 and 65536), and those of Google Benchmark:
// --benchmark_filter=^add/stats6/dense chooses cases; --benchmark_repetitions=20
// --benchmark_enable_random_interleaving=true gives medians and, in the table behind them, ratios of the best times of
// one run.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef QUILON_BENCH_ABSL
#  include <absl/container/flat_hash_map.h>
#endif

#include "FEM_AvgField.h"
#include "id_patterns.h"
#include "keep_memory.h"
#include "ratio_reporter.h"

namespace {

using FEM_AvgUtil::AvgData;
using FEM_AvgUtil::StatData;

// The folding of the fields, for stores that bring none.

template <int N>
void Fold(AvgData<N>& data, const double (&value)[N])
{
  for (int k = 0; k < N; ++k) data.sum[k] += value[k];
  ++data.count;
}

template <int N>
void Fold(StatData<N>& data, const double (&value)[N])
{
  const int n = ++data.count;
  for (int k = 0; k < N; ++k) {
    const double delta = value[k] - data.mean[k];
    data.mean[k] += delta / n;
    data.m2[k] += (value[k] - data.mean[k]) * delta;
  }
}

template <typename Data, int N>
class FieldStore
{
public:
  void Add(int id, const double (&value)[N]) { field_.AddValue(id, value); }
  void Dump(std::vector<int>& ids, std::vector<Data>& data) const { field_.DumpField(0, ids, data); }
  void Reset() { field_.ResetField(); }

private:
  FEM_AvgField<int, Data, N> field_;
};

template <typename Map, typename Data, int N>
class HashStore
{
public:
  void Add(int id, const double (&value)[N]) { Fold(map_[id], value); }
  void Dump(std::vector<int>& ids, std::vector<Data>& data) const
  {
    std::vector<std::pair<std::uint32_t, const Data*>> entries;
    entries.reserve(map_.size());
    for (const auto& entry : map_) entries.emplace_back(static_cast<std::uint32_t>(entry.first), &entry.second);
    std::sort(entries.begin(), entries.end());
    ids.clear();
    data.clear();
    for (const auto& [bits, entry] : entries) {
      ids.push_back(static_cast<int>(bits));
      data.push_back(*entry);
    }
  }
  void Reset()
  {
    for (auto& entry : map_) entry.second = Data();
  }

private:
  Map map_;
};

template <typename Data, int N>
class SortedStore
{
public:
  void Add(int id, const double (&value)[N])
  {
    const auto bits  = static_cast<std::uint32_t>(id);
    const auto less  = [](const Entry& entry, std::uint32_t key) { return entry.first < key; };
    auto       place = std::lower_bound(entries_.begin(), entries_.end(), bits, less);
    if (place == entries_.end() || place->first != bits) place = entries_.emplace(place, bits, Data());
    Fold(place->second, value);
  }
  void Dump(std::vector<int>& ids, std::vector<Data>& data) const
  {
    ids.clear();
    data.clear();
    for (const Entry& entry : entries_) {
      ids.push_back(static_cast<int>(entry.first));
      data.push_back(entry.second);
    }
  }
  void Reset()
  {
    for (Entry& entry : entries_) entry.second = Data();
  }

private:
  using Entry = std::pair<std::uint32_t, Data>;
  std::vector<Entry> entries_;
};

template <typename Store, int N>
void AddAll(Store& store, const std::vector<int>& order)
{
  // The values never change: a chain from call to call would hide what is measured.
  double value[N] = {};
  std::fill(std::begin(value), std::end(value), 0.5);
  for (const int id : order) store.Add(id, value);
}

template <typename Store, typename Data, int N>
void Run(benchmark::State& state, const std::string& operation, const std::string& pattern, std::size_t size)
{
  const std::vector<int> order = quilon_bench::MeshOrder(quilon_bench::MakeIds(pattern, size));
  Store                  filled;
  if (operation != "add") AddAll<Store, N>(filled, order);
  std::vector<int>  ids;
  std::vector<Data> data;
  filled.Dump(ids, data);
  std::size_t items = operation == "dump" || operation == "reset" ? ids.size() : order.size();

  for (auto _ : state) {
    if (operation == "add") {
      Store store;
      AddAll<Store, N>(store, order);
      benchmark::DoNotOptimize(store);
    } else if (operation == "again") {
      AddAll<Store, N>(filled, order);
    } else if (operation == "dump") {
      filled.Dump(ids, data);
    } else {
      filled.Reset();
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(items));
}

struct Contestant
{
  std::string name;
  void (*run)(benchmark::State&, const std::string&, const std::string&, std::size_t);
};

template <typename Data, int N>
std::vector<Contestant> Contestants()
{
  return {
      {"field", Run<FieldStore<Data, N>, Data, N>},
      {"std", Run<HashStore<std::unordered_map<int, Data>, Data, N>, Data, N>},
      {"sorted", Run<SortedStore<Data, N>, Data, N>},
#ifdef QUILON_BENCH_ABSL
      {"absl", Run<HashStore<absl::flat_hash_map<int, Data>, Data, N>, Data, N>},
#endif
  };
}

constexpr std::size_t kMostForSorted = 4096;

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 1024, 65536);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  const std::pair<std::string, std::vector<Contestant>> forms[] = {{"sums1", Contestants<AvgData<1>, 1>()},
                                                                   {"stats6", Contestants<StatData<6>, 6>()}};
  for (const std::string operation : {"add", "again", "dump", "reset"}) {
    for (const auto& [form, contestants] : forms) {
      for (const std::string pattern : quilon_bench::kIdPatterns) {
        for (const std::size_t size : sizes) {
          for (const Contestant& contestant : contestants) {
            if (contestant.name == "sorted" && size > kMostForSorted) continue;
            const std::string name = operation + '/' + form + '/' + pattern + '/' + std::to_string(size);
            benchmark::RegisterBenchmark(
                (name + '/' + contestant.name).c_str(),
                [=, run = contestant.run](benchmark::State& state) { run(state, operation, pattern, size); });
          }
        }
      }
    }
  }

  std::vector<std::string> names;
  for (const Contestant& contestant : forms[0].second) names.push_back(contestant.name);
  quilon_bench::RatioReporter reporter(names);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
