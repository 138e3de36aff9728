// Writes two working databases that are equal but for rounding, for measuring how long their comparison takes.
//
//   make_diff_databases A.fed B.fed [NODES [STEPS]]
//
// Each step has a stress tensor and a displacement vector for every node, 72 bytes together; 400000 nodes and 8 steps,
// the defaults, are 230 MB a database. Every thousandth value of B is off by one part in 1e12.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>

#include <bundled/FED_ResultDatabase.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

namespace {

FED_DataDescriptor Key(int onf, int step)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::LoadCase, 1);
  key.SetInteger(FED_DataDescriptor::Substep, step);
  key.SetInteger(FED_DataDescriptor::Analysis, 1);
  return key;
}

void Write(const char* folder, int nodes, int steps, double noise)
{
  FED_ResultDatabase                     database(folder, FED_ResultDatabase::Create);
  std::mt19937_64                        random(7);
  std::uniform_real_distribution<double> values(-100.0, 100.0);
  for (int step = 1; step <= steps; ++step) {
    const auto      count = static_cast<std::size_t>(nodes);
    FED_IdDataBlock stress(database.GetOrCreateDataBlock(Key(521, step), count), database.GetIdMapsPool(), true);
    FED_IdDataBlock displacement(database.GetOrCreateDataBlock(Key(510, step), count), database.GetIdMapsPool(), true);
    for (int node = 1; node <= nodes; ++node) {
      double tensor[6];
      double vector[3];
      for (double& value : tensor) value = values(random);
      for (double& value : vector) value = values(random);
      if (node % 1000 == 0) tensor[0] *= 1.0 + noise;
      stress.SetTensor(2 * node, tensor);
      displacement.SetVector(2 * node, vector);
    }
  }
  database.Compact();
}

}  // namespace

int main(int argc, char** argv)
{
  if (argc < 3 || argc > 5) {
    std::fputs("usage: make_diff_databases A.fed B.fed [NODES [STEPS]]\n", stderr);
    return 2;
  }
  const int nodes = argc > 3 ? std::atoi(argv[3]) : 400000;
  const int steps = argc > 4 ? std::atoi(argv[4]) : 8;
  try {
    Write(argv[1], nodes, steps, 0.0);
    Write(argv[2], nodes, steps, 1e-12);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_diff_databases: %s\n", error.what());
    return 2;
  }
  return 0;
}
