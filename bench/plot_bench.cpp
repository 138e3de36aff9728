// How fast a picture of a model is drawn, 1200 x 900 pixels as PNG, from a database in memory: reading the mesh and the
// field, finding the surface, drawing, compressing.
//   plate/N    a layer of C3D8 with N nodes, all of them on the surface
//   block/N    a cube of C3D8 with N nodes, most of them inside
// Prints milliseconds a picture and how many nodes the surface has.

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include <benchmark/benchmark.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_DataDescriptorPattern.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "kinds/KindTable.h"
#include "mesh/Surface.h"
#include "plot/ModelPicture.h"

namespace {

FED_IdDataBlock View(FED_ResultDatabase& database, const FED_DataDescriptor& descriptor, std::size_t count)
{
  return {database.GetOrCreateDataBlock(descriptor, count), database.GetIdMapsPool(), true};
}

/// Bricks of size 1, displaced in waves.
std::unique_ptr<FED_ResultDatabase> MakeModel(int nx, int ny, int nz)
{
  auto               database = std::make_unique<FED_ResultDatabase>();
  const auto         numNodes = static_cast<std::size_t>((nx + 1) * (ny + 1) * (nz + 1));
  FED_DataDescriptor step(0, OnfKind::Displacement);
  step.SetInteger(FED_DataDescriptor::LoadCase, 1);
  FED_IdDataBlock coordinates   = View(*database, FED_DataDescriptor(0, OnfKind::Coordinates), numNodes);
  FED_IdDataBlock displacements = View(*database, step, numNodes);
  const auto      nodeAt        = [&](int i, int j, int k) { return 1 + i + (nx + 1) * (j + (ny + 1) * k); };
  for (int k = 0; k <= nz; ++k)
    for (int j = 0; j <= ny; ++j)
      for (int i = 0; i <= nx; ++i) {
        const std::array<double, 3> point = {1.0 * i, 1.0 * j, 1.0 * k};
        const std::array<double, 3> wave  = {0.0, 0.0, std::sin(i / 20.0) * std::cos(j / 30.0)};
        coordinates.SetVector(nodeAt(i, j, k), point.data());
        displacements.SetVector(nodeAt(i, j, k), wave.data());
      }
  const auto        numElements = static_cast<std::size_t>(nx * ny * nz);
  FED_IdDataBlock   lists       = View(*database, FED_DataDescriptor(0, OnfKind::ElementNodes), numElements);
  FED_IdDataBlock   types       = View(*database, FED_DataDescriptor(0, OnfKind::ElementType), numElements);
  FED_IdDataRecord& list        = lists.CreateIdDataRecord();
  FED_IdDataRecord& type        = types.CreateIdDataRecord();
  type.SetInteger(1, 1);
  type.SetInteger(2, 1);
  int id = 0;
  for (int k = 0; k < nz; ++k)
    for (int j = 0; j < ny; ++j)
      for (int i = 0; i < nx; ++i) {
        ++id;
        list.SetIntList(1, std::vector<int>{nodeAt(i, j, k), nodeAt(i + 1, j, k), nodeAt(i + 1, j + 1, k),
                                            nodeAt(i, j + 1, k), nodeAt(i, j, k + 1), nodeAt(i + 1, j, k + 1),
                                            nodeAt(i + 1, j + 1, k + 1), nodeAt(i, j + 1, k + 1)});
        lists.SetRecord(id, list);
        types.SetRecord(id, type);
      }
  return database;
}

void Draw(benchmark::State& state, int nx, int ny, int nz)
{
  const auto                  database = MakeModel(nx, ny, nz);
  const quilon::KindTable     kinds(*database);
  quilon::ModelPictureOptions options;
  options.deformation = quilon::Deformation{5.0};
  std::vector<FED_DataDescriptor> selected;
  for (const FED_DataDescriptor& descriptor : database->GetDataDescriptors(FED_DataDescriptorPattern()))
    if (descriptor.GetInteger(FED_DataDescriptor::OnfId) == OnfKind::Displacement) selected.push_back(descriptor);
  const quilon::FieldChoice choice = quilon::ChooseField(selected, kinds, "displacement", "model");
  for (auto _ : state) {
    const quilon::ModelPicture picture =
        quilon::DrawModel(*database, 0, choice, options, quilon::PictureFormat::Png, "model");
    benchmark::DoNotOptimize(picture.bytes.size());
  }
  state.counters["surface nodes"] =
      static_cast<double>(quilon::ExtractSurface(quilon::ReadMesh(*database, 0, "model")).nodes.size());
}

void DrawPlate(benchmark::State& state)
{
  const int side = static_cast<int>(std::lround(std::sqrt(static_cast<double>(state.range(0)) / 2.0)));
  Draw(state, side - 1, side - 1, 1);
}

void DrawBlock(benchmark::State& state)
{
  const int side = static_cast<int>(std::lround(std::cbrt(static_cast<double>(state.range(0)))));
  Draw(state, side - 1, side - 1, side - 1);
}

}  // namespace

BENCHMARK(DrawPlate)->Name("plate")->Arg(1000)->Arg(100352)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawBlock)->Name("block")->Arg(1000)->Arg(1000000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
