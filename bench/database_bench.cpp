// Speed of the bundled database beside plain containers.
//
//   WriteTensors/*      n tensors under n ids: a plain vector, a std::unordered_map, the block by index, the id view
//                       without and with a hint, ids dense and scattered over 31 bits
//   RewriteTensors/*    the same into records that exist
//   WalkTensors/*       every tensor read in index order: a plain vector, the unordered_map by id, the block by index,
//                       the id view by id, the block's iterator, the column chunks, spans with ids
//   CopyBlock           one block of n tensors between databases of different first-use order
//   WriteLists          n integer lists of eight through scratch records
//   CopyLists           the same between databases
//   FindBlocks          the blocks of one of n / 10 steps, of ten kinds each, by a pattern
//   FindIndex/*         n ids to indices: std::unordered_map, the id maps; dense, scattered
//
// Times are per call over all n; items per second count values (tensors, lists, ids).

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include "bundled/FED_BlockSpans.h"
#include "bundled/FED_ColumnDataBlock.h"
#include "bundled/FED_ResultDatabase.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonDbConnector/QuilonDatabaseUtils.h"

namespace {

using Tensor = std::array<double, 6>;

enum Ids
{
  Dense,
  Scattered
};

FED_DataDescriptor StressKey() { return FED_DataDescriptor(0, static_cast<FED_OnfId>(521)); }

std::vector<int> MakeIds(std::size_t count, Ids pattern)
{
  std::vector<int> ids(count);
  for (std::size_t i = 0; i < count; ++i) ids[i] = static_cast<int>(i + 1);
  if (pattern == Scattered)
    // Multiplication by an odd number permutes the 31-bit numbers: scattered, and none twice.
    for (int& id : ids) id = static_cast<int>(static_cast<std::uint32_t>(id) * 2654435761u & 0x7fffffffu);
  return ids;
}

std::vector<double> MakeTensors(std::size_t count)
{
  std::vector<double> values(6 * count);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = 0.5 * static_cast<double>(i % 1000);
  return values;
}

std::size_t CountOf(const benchmark::State& state) { return static_cast<std::size_t>(state.range(0)); }

void Finish(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * state.range(0)); }

// --- writing ---

void WriteTensorsVector(benchmark::State& state)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  for (auto _ : state) {
    std::vector<double> copy(values.size());
    for (std::size_t i = 0; i < values.size(); i += 6) std::memcpy(&copy[i], &values[i], sizeof(Tensor));
    benchmark::DoNotOptimize(copy.data());
  }
  Finish(state);
}

void WriteTensorsMap(benchmark::State& state, Ids pattern)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  const std::vector<int>    ids    = MakeIds(CountOf(state), pattern);
  for (auto _ : state) {
    std::unordered_map<int, Tensor> map;
    map.reserve(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) std::memcpy(map[ids[i]].data(), &values[6 * i], sizeof(Tensor));
    benchmark::DoNotOptimize(&map);
  }
  Finish(state);
}

void WriteTensorsBlock(benchmark::State& state)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  for (auto _ : state) {
    FED_ResultDatabase database;
    FED_DataBlock&     block = database.GetOrCreateDataBlock(StressKey(), CountOf(state));
    for (std::size_t i = 0; i < CountOf(state); ++i) block.SetValuesAt(i + 1, &values[6 * i]);
    benchmark::DoNotOptimize(&block);
  }
  Finish(state);
}

void WriteTensorsView(benchmark::State& state, Ids pattern, bool isExpected)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  const std::vector<int>    ids    = MakeIds(CountOf(state), pattern);
  for (auto _ : state) {
    FED_ResultDatabase database;
    FED_DataBlock&     block = database.GetOrCreateDataBlock(StressKey(), isExpected ? ids.size() : 0);
    FED_IdDataBlock    view(block, database.GetIdMapsPool(), true);
    for (std::size_t i = 0; i < ids.size(); ++i) view.SetTensor(ids[i], &values[6 * i]);
    benchmark::DoNotOptimize(&block);
  }
  Finish(state);
}

// --- rewriting ---

void RewriteTensorsVector(benchmark::State& state)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  std::vector<double>       copy(values.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < values.size(); i += 6) std::memcpy(&copy[i], &values[i], sizeof(Tensor));
    benchmark::ClobberMemory();
  }
  Finish(state);
}

void RewriteTensorsMap(benchmark::State& state, Ids pattern)
{
  const std::vector<double>       values = MakeTensors(CountOf(state));
  const std::vector<int>          ids    = MakeIds(CountOf(state), pattern);
  std::unordered_map<int, Tensor> map;
  for (const int id : ids) map[id] = {};
  for (auto _ : state) {
    for (std::size_t i = 0; i < ids.size(); ++i)
      std::memcpy(map.find(ids[i])->second.data(), &values[6 * i], sizeof(Tensor));
    benchmark::ClobberMemory();
  }
  Finish(state);
}

void RewriteTensorsView(benchmark::State& state, Ids pattern)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  const std::vector<int>    ids    = MakeIds(CountOf(state), pattern);
  FED_ResultDatabase        database;
  FED_IdDataBlock           view(database.GetOrCreateDataBlock(StressKey(), 0), database.GetIdMapsPool(), true);
  for (std::size_t i = 0; i < ids.size(); ++i) view.SetTensor(ids[i], &values[6 * i]);
  for (auto _ : state) {
    for (std::size_t i = 0; i < ids.size(); ++i) view.SetTensor(ids[i], &values[6 * i]);
    benchmark::ClobberMemory();
  }
  Finish(state);
}

// --- walking ---

// A filled block; id i stands at index i.
class FilledBlock
{
public:
  explicit FilledBlock(std::size_t count) : values_(MakeTensors(count))
  {
    FED_IdDataBlock view(GetBlock(), database.GetIdMapsPool(), true);
    for (std::size_t i = 0; i < count; ++i) view.SetTensor(static_cast<int>(i + 1), &values_[6 * i]);
  }

  FED_DataBlock&             GetBlock() { return database.GetOrCreateDataBlock(StressKey(), 0); }
  const std::vector<double>& GetValues() const { return values_; }

  FED_ResultDatabase database;

private:
  std::vector<double> values_;
};

double Sum(const double* tensor) { return tensor[0] + tensor[1] + tensor[2] + tensor[3] + tensor[4] + tensor[5]; }

void WalkTensorsVector(benchmark::State& state)
{
  const std::vector<double> values = MakeTensors(CountOf(state));
  for (auto _ : state) {
    double sum = 0.0;
    for (std::size_t i = 0; i < values.size(); i += 6) sum += Sum(&values[i]);
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void WalkTensorsMap(benchmark::State& state)
{
  const std::vector<double>       values = MakeTensors(CountOf(state));
  std::unordered_map<int, Tensor> map;
  for (std::size_t i = 0; i < CountOf(state); ++i)
    std::memcpy(map[static_cast<int>(i + 1)].data(), &values[6 * i], sizeof(Tensor));
  for (auto _ : state) {
    double sum = 0.0;
    for (int id = 1; id <= static_cast<int>(CountOf(state)); ++id) sum += Sum(map.find(id)->second.data());
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void WalkTensorsBlock(benchmark::State& state)
{
  FilledBlock          filled(CountOf(state));
  const FED_DataBlock& block = filled.GetBlock();
  for (auto _ : state) {
    double sum = 0.0;
    double tensor[6];
    for (std::size_t index = 1; index <= block.GetSize(); ++index) {
      block.GetValuesAt(index, tensor);
      sum += Sum(tensor);
    }
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void WalkTensorsIterator(benchmark::State& state)
{
  FilledBlock          filled(CountOf(state));
  const FED_DataBlock& block = filled.GetBlock();
  for (auto _ : state) {
    double     sum = 0.0;
    double     tensor[6];
    const auto end = block.End();
    for (auto it = block.Begin(); it != end; ++it) {
      block.GetValuesAt(*it, tensor);
      sum += Sum(tensor);
    }
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void WalkTensorsView(benchmark::State& state)
{
  FilledBlock                filled(CountOf(state));
  const FED_ConstIdDataBlock view(filled.GetBlock(), filled.database.GetIdMapsPool());
  for (auto _ : state) {
    double sum = 0.0;
    double tensor[6];
    for (int id = 1; id <= static_cast<int>(CountOf(state)); ++id) {
      view.GetTensor(id, tensor);
      sum += Sum(tensor);
    }
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void WalkTensorsColumn(benchmark::State& state)
{
  FilledBlock filled(CountOf(state));
  const auto& block = dynamic_cast<const FED_ColumnDataBlock&>(filled.GetBlock());
  for (auto _ : state) {
    double sum = 0.0;
    for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk) {
      const auto values = block.GetDoubleChunk(1, chunk);
      for (std::size_t i = 0; i < values.GetSize(); i += 6) sum += Sum(values.GetData() + i);
    }
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void WalkTensorsSpans(benchmark::State& state)
{
  FilledBlock filled(CountOf(state));
  for (auto _ : state) {
    double sum = 0.0;
    FED_ForEachSpan(filled.GetBlock(), filled.database.GetIdMapsPool(), [&sum](const FED_BlockSpan& span) {
      const double* const values = span.GetDoubles(1).GetData();
      for (std::size_t i = 0; i < span.GetCount(); ++i) sum += Sum(values + 6 * i) + span.GetIds().GetData()[i];
    });
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

// --- the rest ---

void FindBlocks(benchmark::State& state)
{
  FED_ResultDatabase database;
  const int          steps = static_cast<int>(state.range(0)) / 10;
  for (int step = 0; step < steps; ++step)
    for (int kind = 0; kind < 10; ++kind) {
      FED_DataDescriptor key(0, static_cast<FED_OnfId>(1000 + kind));
      key.SetInteger(FED_DataDescriptor::Substep, step);
      database.CreateDataBlock(key, 0, 0, "D");
    }
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, 1005);
  int step = 0;
  for (auto _ : state) {
    pattern.SetEqual(FED_DataDescriptor::Substep, step);
    benchmark::DoNotOptimize(database.GetDataDescriptors(pattern));
    step = (step + 1) % steps;
  }
}

void CopyBlock(benchmark::State& state)
{
  FilledBlock        filled(CountOf(state));
  FED_ResultDatabase target;
  for (int id = static_cast<int>(CountOf(state)); id > 0; --id) target.GetIdMapsPool().FindOrAddIndex(0, id);
  for (auto _ : state)
    QuilonDatabaseUtils::copy_datablocks(filled.database, target, {}, QuilonDatabaseUtils::SkipEmptyBlocks);
  Finish(state);
}

void FillLists(FED_Database& database, std::size_t count)
{
  const FED_IntArray nodes({1, 2, 3, 4, 5, 6, 7, 8});
  FED_DataBlock&     block  = database.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ElementNodes), 0);
  FED_DataRecord*    record = block.CreateDataRecord();
  for (std::size_t index = 1; index <= count; ++index) {
    record->SetIntList(1, nodes);
    block.SetRecord(index, *record);
  }
  block.DeleteDataRecord(record);
}

void WriteLists(benchmark::State& state)
{
  for (auto _ : state) {
    FED_ResultDatabase database;
    FillLists(database, CountOf(state));
  }
  Finish(state);
}

void CopyLists(benchmark::State& state)
{
  FED_ResultDatabase source, target;
  for (int id = 1; id <= static_cast<int>(CountOf(state)); ++id) source.GetIdMapsPool().FindOrAddIndex(1, id);
  FillLists(source, CountOf(state));
  for (auto _ : state) QuilonDatabaseUtils::copy_datablocks(source, target, {}, QuilonDatabaseUtils::SkipEmptyBlocks);
  Finish(state);
}

void FindIndexMap(benchmark::State& state, Ids pattern)
{
  const std::vector<int>               ids = MakeIds(CountOf(state), pattern);
  std::unordered_map<int, std::size_t> map;
  for (const int id : ids) map.emplace(id, map.size() + 1);
  for (auto _ : state) {
    std::size_t sum = 0;
    for (const int id : ids) sum += map.find(id)->second;
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

void FindIndexPool(benchmark::State& state, Ids pattern)
{
  const std::vector<int> ids = MakeIds(CountOf(state), pattern);
  FED_ResultDatabase     database;
  FED_IdMapsPool&        pool = database.GetIdMapsPool();
  for (const int id : ids) pool.FindOrAddIndex(0, id);
  for (auto _ : state) {
    std::size_t sum = 0;
    for (const int id : ids) sum += pool.FindIndex(0, id);
    benchmark::DoNotOptimize(sum);
  }
  Finish(state);
}

}  // namespace

int main(int argc, char** argv)
{
  const auto add = [](const char* name, auto function, auto... arguments) {
    benchmark::RegisterBenchmark(name, function, arguments...)->Arg(1024)->Arg(1000000)->Unit(benchmark::kMicrosecond);
  };
  add("WriteTensors/vector", WriteTensorsVector);
  add("WriteTensors/unordered_map/dense", WriteTensorsMap, Dense);
  add("WriteTensors/unordered_map/scattered", WriteTensorsMap, Scattered);
  add("WriteTensors/block", WriteTensorsBlock);
  add("WriteTensors/view/dense", WriteTensorsView, Dense, false);
  add("WriteTensors/view/dense/expected", WriteTensorsView, Dense, true);
  add("WriteTensors/view/scattered", WriteTensorsView, Scattered, false);
  add("RewriteTensors/vector", RewriteTensorsVector);
  add("RewriteTensors/unordered_map/dense", RewriteTensorsMap, Dense);
  add("RewriteTensors/unordered_map/scattered", RewriteTensorsMap, Scattered);
  add("RewriteTensors/view/dense", RewriteTensorsView, Dense);
  add("RewriteTensors/view/scattered", RewriteTensorsView, Scattered);
  add("WalkTensors/vector", WalkTensorsVector);
  add("WalkTensors/unordered_map", WalkTensorsMap);
  add("WalkTensors/block", WalkTensorsBlock);
  add("WalkTensors/iterator", WalkTensorsIterator);
  add("WalkTensors/view", WalkTensorsView);
  add("WalkTensors/column", WalkTensorsColumn);
  add("WalkTensors/spans", WalkTensorsSpans);
  add("CopyBlock", CopyBlock);
  benchmark::RegisterBenchmark("FindBlocks", FindBlocks)->Arg(1000)->Arg(100000)->Unit(benchmark::kMicrosecond);
  add("WriteLists", WriteLists);
  add("CopyLists", CopyLists);
  add("FindIndex/unordered_map/dense", FindIndexMap, Dense);
  add("FindIndex/unordered_map/scattered", FindIndexMap, Scattered);
  add("FindIndex/id_maps/dense", FindIndexPool, Dense);
  add("FindIndex/id_maps/scattered", FindIndexPool, Scattered);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
