// Writes two working databases of equal keys and ids, for measuring how long their comparison takes.
//
//   make_diff_databases A.fed B.fed [NODES [STEPS [equal|noise|different|all]]]
//
// Each step has a stress tensor and a displacement vector for every node, 72 bytes together; 400000 nodes and 8 steps,
// the defaults, are 230 MB a database. In B every value is off by one part in 1e12 (noise, the default), one of a
// hundred (different) or every one (all) by one part in a thousand, or none.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <string>

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

enum class Change
{
  Equal,
  Noise,
  Different,
  All
};

double Changed(double value, std::size_t position, Change change)
{
  if (change == Change::Noise) return value * (1.0 + 1e-12);
  const bool isOff = change == Change::All || (change == Change::Different && position % 100 == 0);
  return isOff ? value * 1.001 : value;
}

void Write(const char* folder, int nodes, int steps, Change change)
{
  FED_ResultDatabase                     database(folder, FED_ResultDatabase::Create);
  std::mt19937_64                        random(7);
  std::uniform_real_distribution<double> values(-100.0, 100.0);
  std::size_t                            position = 0;
  const auto                             next     = [&] { return Changed(values(random), position++, change); };
  for (int step = 1; step <= steps; ++step) {
    const auto      count = static_cast<std::size_t>(nodes);
    FED_IdDataBlock stress(database.GetOrCreateDataBlock(Key(521, step), count), database.GetIdMapsPool(), true);
    FED_IdDataBlock displacement(database.GetOrCreateDataBlock(Key(510, step), count), database.GetIdMapsPool(), true);
    for (int node = 1; node <= nodes; ++node) {
      double tensor[6];
      double vector[3];
      for (double& value : tensor) value = next();
      for (double& value : vector) value = next();
      stress.SetTensor(2 * node, tensor);
      displacement.SetVector(2 * node, vector);
    }
  }
  database.Compact();
}

}  // namespace

int main(int argc, char** argv)
{
  const std::string mode = argc > 5 ? argv[5] : "noise";
  if (argc < 3 || argc > 6 || (mode != "equal" && mode != "noise" && mode != "different" && mode != "all")) {
    std::fputs("usage: make_diff_databases A.fed B.fed [NODES [STEPS [equal|noise|different|all]]]\n", stderr);
    return 2;
  }
  const int nodes = argc > 3 ? std::atoi(argv[3]) : 400000;
  const int steps = argc > 4 ? std::atoi(argv[4]) : 8;
  try {
    const Change change = mode == "equal"   ? Change::Equal
                          : mode == "noise" ? Change::Noise
                          : mode == "all"   ? Change::All
                                            : Change::Different;
    Write(argv[1], nodes, steps, Change::Equal);
    Write(argv[2], nodes, steps, change);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_diff_databases: %s\n", error.what());
    return 2;
  }
  return 0;
}
