// Averaging fields against the same folding over other stores of data by id.
//
// Cases, named <operation>/<form>/<ids>/<number of ids>/<contestant>, time per value or entry:
//   add       an empty field takes the values of a mesh of hexahedra, element by element: every inner node eight times
//   refill    a reset, and the same again: the ids are known, and come in the order of the fill before
//   reorder   a reset, and the elements in another order each time
//   dump      all ids and data are copied out by ascending id
//   save      averages become a block of a database in memory, by ascending id
//   job       an empty field takes the values and becomes a block: add and save in one
//   reset     all data is set to zero
// Forms: sums1 (sums with counts of scalars), sums6 (of tensors), stats6 (running statistics of tensors).
// Ids: dense (as a mesher numbers nodes), shuffled (those ids in no order), gaps, random (31 bits); see id_patterns.h.
// Contestants:
//   field     FEM_AvgField, across the border of the shared library
//   vector    a vector of data by id, where ids leave no great gaps
//   boost     boost::unordered_flat_map, where its headers are there; its dump sorts
//   absl      absl::flat_hash_map, where the package is there; dump as boost
//   std       std::unordered_map; dump as boost
// Peers save by the database's own calls, and their dump comes first.
//
// Flags: --least=N and --most=N for the sizes, which double (1024 and 65536), --rows=FILE, and those of Google
// Benchmark: --benchmark_filter=^add/stats6/dense chooses cases; --benchmark_repetitions=5
// --benchmark_enable_random_interleaving=true measures in turns and gives medians.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef QUILON_BENCH_BOOST
#  include <boost/unordered/unordered_flat_map.hpp>
#endif
#ifdef QUILON_BENCH_ABSL
#  include <absl/container/flat_hash_map.h>
#endif

#include <bundled/FED_ResultDatabase.h>
#include <FEM_AvgField.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

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
  void Save(FED_Database& db, const FED_DataDescriptor& block) const
  {
    field_.SaveField(db, block, FEM_AvgFieldDefs::NoLayerIndex, FEM_AvgFieldDefs::Average, true, nullptr);
  }

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
class VectorStore
{
public:
  void Add(int id, const double (&value)[N])
  {
    const auto index = static_cast<std::size_t>(id);
    if (index >= data_.size()) data_.resize(std::max(index + 1, 2 * data_.size()));
    Fold(data_[index], value);
  }
  void Dump(std::vector<int>& ids, std::vector<Data>& data) const
  {
    ids.clear();
    data.clear();
    for (std::size_t index = 0; index < data_.size(); ++index) {
      if (data_[index].count == 0) continue;
      ids.push_back(static_cast<int>(index));
      data.push_back(data_[index]);
    }
  }
  void Reset()
  {
    for (Data& data : data_) data = Data();
  }

private:
  std::vector<Data> data_;
};

template <typename Store, int N>
void AddAll(Store& store, const std::vector<int>& order)
{
  // The values never change: a chain from call to call would hide what is measured.
  double value[N] = {};
  std::fill(std::begin(value), std::end(value), 0.5);
  for (const int id : order) store.Add(id, value);
}

// Averages by the calls of the database.
template <typename Data>
double Average(const Data& data, int k)
{
  if constexpr (requires { data.sum; }) {
    return data.sum[k] / data.count;
  } else {
    return data.mean[k];
  }
}

void Write(FED_IdDataBlock& view, int id, const double (&value)[1]) { view.SetScalar(id, value[0]); }
void Write(FED_IdDataBlock& view, int id, const double (&value)[6]) { view.SetTensor(id, value); }

template <typename Store, typename Data, int N>
void Save(const Store& store, FED_Database& db, const FED_DataDescriptor& block)
{
  if constexpr (requires { store.Save(db, block); }) {
    store.Save(db, block);
  } else {
    std::vector<int>  ids;
    std::vector<Data> data;
    store.Dump(ids, data);
    FED_IdDataBlock view(db.GetOrCreateDataBlock(block, ids.size()), db.GetIdMapsPool(), true);
    for (std::size_t i = 0; i < ids.size(); ++i) {
      double value[N];
      for (int k = 0; k < N; ++k) value[k] = Average(data[i], k);
      Write(view, ids[i], value);
    }
  }
}

/// Made once for all rounds of all contestants.
const std::vector<int>& ValuesOf(const std::string& pattern, std::size_t size)
{
  static std::map<std::pair<std::string, std::size_t>, std::vector<int>> made;
  std::vector<int>&                                                      order = made[{pattern, size}];
  if (order.empty()) {
    const bool             isShuffled = pattern == "shuffled";
    const std::vector<int> ids        = quilon_bench::MakeIds(isShuffled ? "dense" : pattern, size);
    order                             = quilon_bench::MeshOrder(isShuffled ? quilon_bench::Shuffled(ids) : ids);
  }
  return order;
}

// The same elements, the last one first.
std::vector<int> Backwards(const std::vector<int>& order) { return {order.rbegin(), order.rend()}; }

template <typename Store, typename Data, int N>
void Run(benchmark::State& state, const std::string& operation, const std::string& pattern, std::size_t size)
{
  const std::vector<int>& order     = ValuesOf(pattern, size);
  const std::vector<int>  backwards = operation == "reorder" ? Backwards(order) : std::vector<int>();
  Store                   filled;
  if (operation != "add" && operation != "job") AddAll<Store, N>(filled, order);
  std::vector<int>  ids;
  std::vector<Data> data;
  filled.Dump(ids, data);
  if (operation == "refill") {
    filled.Reset();
    AddAll<Store, N>(filled, order);
  }
  const bool isPerValue = operation == "add" || operation == "refill" || operation == "reorder" || operation == "job";
  const std::size_t        items = isPerValue ? order.size() : ids.size();
  const FED_DataDescriptor block(1, FED_OnfId(N == 1 ? 514 : 521));

  bool isBackwards = false;
  for (auto _ : state) {
    if (operation == "add") {
      Store store;
      AddAll<Store, N>(store, order);
      benchmark::DoNotOptimize(store);
    } else if (operation == "job") {
      Store              store;
      FED_ResultDatabase db;
      AddAll<Store, N>(store, order);
      Save<Store, Data, N>(store, db, block);
    } else if (operation == "refill") {
      filled.Reset();
      AddAll<Store, N>(filled, order);
    } else if (operation == "reorder") {
      isBackwards = !isBackwards;
      filled.Reset();
      AddAll<Store, N>(filled, isBackwards ? backwards : order);
    } else if (operation == "dump") {
      filled.Dump(ids, data);
    } else if (operation == "save") {
      FED_ResultDatabase db;
      Save<Store, Data, N>(filled, db, block);
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
      {"vector", Run<VectorStore<Data, N>, Data, N>},
#ifdef QUILON_BENCH_BOOST
      {"boost", Run<HashStore<boost::unordered_flat_map<int, Data>, Data, N>, Data, N>},
#endif
#ifdef QUILON_BENCH_ABSL
      {"absl", Run<HashStore<absl::flat_hash_map<int, Data>, Data, N>, Data, N>},
#endif
      {"std", Run<HashStore<std::unordered_map<int, Data>, Data, N>, Data, N>},
  };
}

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 1024, 65536);
  const std::string              rows  = quilon_bench::TakeRowsFile(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  const std::pair<std::string, std::vector<Contestant>> forms[] = {{"sums1", Contestants<AvgData<1>, 1>()},
                                                                   {"sums6", Contestants<AvgData<6>, 6>()},
                                                                   {"stats6", Contestants<StatData<6>, 6>()}};
  for (const std::string operation : {"add", "refill", "reorder", "dump", "save", "job", "reset"}) {
    for (const auto& [form, contestants] : forms) {
      for (const std::string pattern : {"dense", "shuffled", "gaps", "random"}) {
        for (const std::size_t size : sizes) {
          for (const Contestant& contestant : contestants) {
            if (contestant.name == "vector" && pattern == "random") continue;
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
  quilon_bench::RatioReporter reporter("averaging", names, rows);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
