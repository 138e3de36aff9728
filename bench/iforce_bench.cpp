// The accumulator of internal forces against plain arrays.
//
// Cases, named <operation>/<order>/<number of elements>/<contestant>, time per force vector of a node of an element:
//   insert    an empty accumulator takes the eight nodes of each hexahedron
//   refill    all values are set to zero, and the same again: elements and nodes are known
//   save      forces and nodes of all elements become blocks of a database in memory; the plain arrays by its own calls
// Orders: dense (elements 1, 2, 3, ... of a regular mesh), shuffled (those elements in no order), gaps (1, 11, 21,
// ...). Contestants:
//   iforce    FEM_IforceData, across the border of the shared library
//   plain     arrays of sums and counts by element and corner, the element's row by its id in a vector, its corner by a
//             search of its eight nodes
// The insertions tell the bytes that an element takes.
//
// Flags: --least=N and --most=N for the sizes, which double (1024 and 16384), --rows=FILE, and those of Google
// Benchmark.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include <bundled/FED_ResultDatabase.h>
#include <FEM_IforceData.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>
#include <QuilonDbConnector/FED_IdDataRecord.h>

#include "id_patterns.h"
#include "keep_memory.h"
#include "ratio_reporter.h"

namespace {

constexpr std::size_t kCorners = 8;

struct Element
{
  int                       id;
  std::array<int, kCorners> nodes;
};

std::vector<Element> MakeElements(const std::string& order, std::size_t count)
{
  std::vector<int> ids  = quilon_bench::MakeIds(order == "gaps" ? "gaps" : "dense", count);
  std::size_t      edge = 1;
  while (edge * edge * edge < count) ++edge;
  std::vector<Element> elements;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t side = edge + 1;
    const auto node = static_cast<int>(1 + i % edge + side * (i / edge % edge) + side * side * (i / edge / edge));
    const int  row = static_cast<int>(side), layer = static_cast<int>(side * side);
    elements.push_back({ids[i],
                        {node, node + 1, node + row + 1, node + row, node + layer, node + layer + 1,
                         node + layer + row + 1, node + layer + row}});
  }
  if (order == "shuffled") std::shuffle(elements.begin(), elements.end(), std::mt19937(20250107));
  return elements;
}

class Iforce
{
public:
  void Add(int element, int node, const double (&force)[3])
  {
    data_.InsertVector(element, node, FEM_IforceData::Force, force);
  }
  void Nullify() { data_.NullifyVecData(); }
  void Save(FED_Database& db, const FED_DataDescriptor& forces) const
  {
    data_.Save(db, forces, FED_DataDescriptor(1, FED_OnfId(581)), FEM_IforceData::Sum);
  }

private:
  FEM_IforceData data_;
};

class Plain
{
public:
  void Add(int element, int node, const double (&force)[3])
  {
    const auto id = static_cast<std::size_t>(element);
    if (id >= rows_.size()) rows_.resize(std::max(id + 1, 2 * rows_.size()), -1);
    if (rows_[id] < 0) {
      rows_[id] = static_cast<int>(nodes_.size());
      nodes_.emplace_back();
      sums_.resize(sums_.size() + kPerElement);
      counts_.resize(counts_.size() + kPerElement);
    }
    const auto                 row    = static_cast<std::size_t>(rows_[id]);
    std::array<int, kCorners>& nodes  = nodes_[row];
    std::size_t                corner = 0;
    while (nodes[corner] != node && nodes[corner] != 0) ++corner;
    nodes[corner]          = node;
    const std::size_t base = row * kPerElement + 3 * corner;
    for (std::size_t k = 0; k < 3; ++k) {
      sums_[base + k] += force[k];
      ++counts_[base + k];
    }
  }
  void Nullify()
  {
    std::fill(sums_.begin(), sums_.end(), 0.0);
    std::fill(counts_.begin(), counts_.end(), 0);
  }

  void Save(FED_Database& db, const FED_DataDescriptor& forces) const
  {
    FED_IdDataBlock     forceView(db.GetOrCreateDataBlock(forces, nodes_.size()), db.GetIdMapsPool(), true);
    FED_IdDataBlock     nodesView(db.GetOrCreateDataBlock(FED_DataDescriptor(1, FED_OnfId_ElementNodes), nodes_.size()),
                                  db.GetIdMapsPool(), true);
    FED_IdDataRecord&   forceRecord = forceView.CreateIdDataRecord();
    FED_IdDataRecord&   nodesRecord = nodesView.CreateIdDataRecord();
    std::vector<double> values;
    std::vector<int>    nodes;
    for (std::size_t id = 0; id < rows_.size(); ++id) {
      if (rows_[id] < 0) continue;
      const auto row   = static_cast<std::size_t>(rows_[id]);
      const auto first = sums_.begin() + static_cast<std::ptrdiff_t>(row * kPerElement);
      values.assign(first, first + 3 * kCorners);
      nodes.assign(nodes_[row].begin(), nodes_[row].end());
      forceRecord.SetDoubleList(1, values);
      forceView.SetRecord(static_cast<int>(id), forceRecord);
      nodesRecord.SetIntList(1, nodes);
      nodesView.SetRecord(static_cast<int>(id), nodesRecord);
    }
    forceView.DeleteIdDataRecord(forceRecord);
    nodesView.DeleteIdDataRecord(nodesRecord);
  }

private:
  static constexpr std::size_t kPerElement = 2 * 3 * kCorners;  // forces, then moments

  std::vector<int>                       rows_;
  std::vector<std::array<int, kCorners>> nodes_;
  std::vector<double>                    sums_;
  std::vector<int>                       counts_;
};

template <typename Store>
void Fill(Store& store, const std::vector<Element>& elements)
{
  const double force[3] = {1.0, 2.0, 3.0};
  for (const Element& element : elements)
    for (const int node : element.nodes) store.Add(element.id, node, force);
}

template <typename Store>
void Run(benchmark::State& state, const std::string& operation, const std::string& order, std::size_t size)
{
  const std::vector<Element> elements = MakeElements(order, size);
  if (operation == "insert") {
    const double before = quilon_bench::BytesInUse();
    {
      Store store;
      Fill(store, elements);
      state.counters["bytes"] = (quilon_bench::BytesInUse() - before) / static_cast<double>(size);
    }
    for (auto _ : state) {
      Store store;
      Fill(store, elements);
      benchmark::DoNotOptimize(store);
    }
  } else if (operation == "save") {
    Store store;
    Fill(store, elements);
    for (auto _ : state) {
      FED_ResultDatabase db;
      store.Save(db, FED_DataDescriptor(1, FED_OnfId(580)));
      benchmark::ClobberMemory();
    }
  } else {
    Store store;
    for (int fill = 0; fill < 2; ++fill) {
      Fill(store, elements);
      store.Nullify();
    }
    for (auto _ : state) {
      store.Nullify();
      Fill(store, elements);
      benchmark::ClobberMemory();
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kCorners * size));
}

struct Contestant
{
  const char* name;
  void (*run)(benchmark::State&, const std::string&, const std::string&, std::size_t);
};

constexpr Contestant kContestants[] = {{"iforce", Run<Iforce>}, {"plain", Run<Plain>}};

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 1024, 16384);
  const std::string              rows  = quilon_bench::TakeRowsFile(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  for (const std::string operation : {"insert", "refill", "save"}) {
    for (const std::string order : {"dense", "shuffled", "gaps"}) {
      for (const std::size_t size : sizes) {
        for (const Contestant& contestant : kContestants) {
          const std::string name = operation + '/' + order + '/' + std::to_string(size) + '/' + contestant.name;
          benchmark::RegisterBenchmark(
              name.c_str(), [=, run = contestant.run](benchmark::State& state) { run(state, operation, order, size); });
        }
      }
    }
  }

  quilon_bench::RatioReporter reporter("internal-forces", {"iforce", "plain"}, rows);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
