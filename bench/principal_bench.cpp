// Principal values against other ways to the eigenvalues of a symmetric 3 x 3 tensor, and their derivation over a block
// against bare calls.
//
// Cases, named <operation>/<tensors>/<number of tensors>/<contestant>, time per tensor:
//   one       one tensor after the other
//   block     all records of a block of a database in memory, into a block beside it
// Tensors: general (six components), plane (three of them zero), mixed (general, plane and zero ones in turn).
// Contestants:
//   quilon    FEM_PrincipalValue::Calculate(), FEM_ResultUtil::CalculateAdditionalResults()
//   bare      for the block: the calls of Calculate() alone, on arrays
//   direct    Eigen's closed form, where its headers are there
//   iterative Eigen's iteration
//   lapack    dsyev, where LAPACK is there
//
// Flags: --least=N and --most=N for the sizes, which double (1024 and 16384), --rows=FILE, and those of Google
// Benchmark.

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef QUILON_BENCH_EIGEN
#  include <Eigen/Eigenvalues>
#endif

#include <bundled/FED_ResultDatabase.h>
#include <FEM_PrincipalValue.h>
#include <FEM_ResultUtil.h>
#include <QuilonDbConnector/FED_DataBlock.h>
#include <QuilonOnfEngine/OnfResultRequestFile.h>

#include "id_patterns.h"
#include "keep_memory.h"
#include "ratio_reporter.h"

#ifdef QUILON_BENCH_LAPACK
extern "C" void dsyev_(const char* job, const char* triangle, const int* n, double* a, const int* lda, double* w,
                       double* work, const int* numWork, int* info);
#endif

namespace {

using Tensor = std::array<double, 6>;  // xx, yy, zz, xy, yz, zx
using Values = std::array<double, 3>;

std::vector<Tensor> MakeTensors(const std::string& kind, std::size_t count)
{
  std::mt19937_64                        random(20250108);
  std::uniform_real_distribution<double> stress(-300.0, 300.0);
  std::vector<Tensor>                    tensors(count);
  for (std::size_t i = 0; i < count; ++i) {
    for (double& component : tensors[i]) component = stress(random);
    if (kind == "plane" || (kind == "mixed" && i % 3 == 1)) tensors[i][2] = tensors[i][4] = tensors[i][5] = 0.0;
    if (kind == "mixed" && i % 3 == 2) tensors[i] = {};
  }
  return tensors;
}

Values Quilon(const Tensor& tensor)
{
  Values values;
  FEM_PrincipalValue::Calculate(tensor.data(), values.data());
  return values;
}

#ifdef QUILON_BENCH_EIGEN
Eigen::Matrix3d ToMatrix(const Tensor& t)
{
  Eigen::Matrix3d matrix;
  matrix << t[0], t[3], t[5], t[3], t[1], t[4], t[5], t[4], t[2];
  return matrix;
}

Values Direct(const Tensor& tensor)
{
  Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver;
  solver.computeDirect(ToMatrix(tensor), Eigen::EigenvaluesOnly);
  return {solver.eigenvalues()[2], solver.eigenvalues()[1], solver.eigenvalues()[0]};
}

Values Iterative(const Tensor& tensor)
{
  const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(ToMatrix(tensor), Eigen::EigenvaluesOnly);
  return {solver.eigenvalues()[2], solver.eigenvalues()[1], solver.eigenvalues()[0]};
}
#endif

#ifdef QUILON_BENCH_LAPACK
Values Lapack(const Tensor& t)
{
  double    matrix[9] = {t[0], t[3], t[5], t[3], t[1], t[4], t[5], t[4], t[2]};
  double    values[3];
  double    work[32];
  const int n = 3, numWork = 32;
  int       info = 0;
  dsyev_("N", "L", &n, matrix, &n, values, work, &numWork, &info);
  return {values[2], values[1], values[0]};
}
#endif

template <Values (*Solve)(const Tensor&)>
void RunOne(benchmark::State& state, const std::string& kind, std::size_t size)
{
  const std::vector<Tensor> tensors = MakeTensors(kind, size);
  std::vector<Values>       values(size);
  for (auto _ : state) {
    for (std::size_t i = 0; i < size; ++i) values[i] = Solve(tensors[i]);
    benchmark::DoNotOptimize(values.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

class PrincipalStresses : public OnfResultRequestFile
{
public:
  bool typeIsRequested(int onf) const override { return onf == 520; }
};

void RunBlock(benchmark::State& state, const std::string& kind, std::size_t size)
{
  const std::vector<Tensor> tensors = MakeTensors(kind, size);
  FED_ResultDatabase        db;
  FED_DataBlock&            stresses = db.GetOrCreateDataBlock(FED_DataDescriptor(1, FED_OnfId(521)), size);
  for (std::size_t i = 0; i < size; ++i) stresses.SetValuesAt(i + 1, tensors[i].data());
  PrincipalStresses requests;
  for (auto _ : state) {
    FEM_ResultUtil::CalculateAdditionalResults(db, requests, 1, 0);
    state.PauseTiming();
    db.DeleteDataBlock(FED_DataDescriptor(1, FED_OnfId(520)));
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

struct Case
{
  const char* operation;
  const char* contestant;
  void (*run)(benchmark::State&, const std::string&, std::size_t);
};

constexpr Case kCases[] = {
    {"one", "quilon", RunOne<Quilon>},
#ifdef QUILON_BENCH_EIGEN
    {"one", "direct", RunOne<Direct>}, {"one", "iterative", RunOne<Iterative>},
#endif
#ifdef QUILON_BENCH_LAPACK
    {"one", "lapack", RunOne<Lapack>},
#endif
    {"block", "quilon", RunBlock},     {"block", "bare", RunOne<Quilon>},
};

}  // namespace

int main(int argc, char** argv)
{
  quilon_bench::KeepMemory();
  benchmark::Initialize(&argc, argv);
  const std::vector<std::size_t> sizes = quilon_bench::TakeSizes(argc, argv, 1024, 16384);
  const std::string              rows  = quilon_bench::TakeRowsFile(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;

  for (const std::string kind : {"general", "plane", "mixed"}) {
    for (const std::size_t size : sizes) {
      for (const Case& one : kCases) {
        const std::string name =
            std::string(one.operation) + '/' + kind + '/' + std::to_string(size) + '/' + one.contestant;
        benchmark::RegisterBenchmark(name.c_str(),
                                     [=, run = one.run](benchmark::State& state) { run(state, kind, size); });
      }
    }
  }

  quilon_bench::RatioReporter reporter("principal-values", {"quilon", "bare", "direct", "iterative", "lapack"}, rows);
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
