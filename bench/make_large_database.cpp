// Writes a working database as large as told that takes little room: nearly all of its values are zeros, which become
// holes of its files. To everybody who reads it, it is a database like any other, with all its checksums.
//
//   make_large_database OUT.fed [STEPS [NODES]]
//
// Each step has a stress tensor for every node, 48 bytes; 2000 steps and 1000000 nodes, the defaults, are 96 GB, which
// take some 0.5 GB where the file system knows holes. Steps are commits of their own, as a solver makes them; the times
// and the coordinates of the nodes are there as well. Node n of each 65536, 1 <= n <= 64, has values: step s and node i
// have xx = s + i / 1e6 and the rest 0, but for yy = -1 at node 7.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <system_error>

#include <bundled/FED_FileLayer.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <QuilonDbConnector/FED_IdDataBlock.h>

namespace {

// Files whose zeros are not written.
class SparseFiles : public FED_FileLayer
{
public:
  std::error_code WriteAt(Handle handle, std::uint64_t offset, const void* bytes, std::size_t count) override
  {
    const auto*     from = static_cast<const char*>(bytes);
    std::error_code error;
    for (std::size_t done = 0; done < count && !error;) {
      const std::size_t toEnd = kBlock - static_cast<std::size_t>((offset + done) % kBlock);
      const std::size_t step  = std::min(toEnd, count - done);
      if (!IsZero(from + done, step)) error = FED_FileLayer::WriteAt(handle, offset + done, from + done, step);
      done += step;
    }
    // What ends in zeros is as long as it would be.
    std::uint64_t size = 0;
    if (!error) error = GetSize(handle, size);
    if (!error && size < offset + count && ::ftruncate(handle, static_cast<off_t>(offset + count)) != 0)
      error = {errno, std::generic_category()};
    return error;
  }

private:
  // Places are written once, so that what is skipped is a hole.
  static constexpr std::size_t kBlock = 4096;

  static bool IsZero(const char* bytes, std::size_t count)
  {
    return bytes[0] == 0 && std::memcmp(bytes, bytes + 1, count - 1) == 0;
  }
};

FED_DataDescriptor Key(FED_OnfId onf, int step)
{
  FED_DataDescriptor key(0, onf);
  key.SetInteger(FED_DataDescriptor::LoadCase, 1);
  key.SetInteger(FED_DataDescriptor::Analysis, 1);
  if (step > 0) key.SetInteger(FED_DataDescriptor::Substep, step);
  return key;
}

void WriteStep(FED_ResultDatabase& database, int step, int nodes)
{
  constexpr int   kChunk = 65536;
  constexpr int   kFull  = 64;
  FED_IdDataBlock stress(
      database.GetOrCreateDataBlock(Key(OnfKind::NodalStress, step), static_cast<std::size_t>(nodes)),
      database.GetIdMapsPool(), true);
  double tensor[6] = {};
  for (int node = 1; node <= nodes; ++node) {
    const int place = node % kChunk;
    tensor[0]       = place >= 1 && place <= kFull ? step + 1e-6 * node : 0.0;
    tensor[1]       = node == 7 ? -1.0 : 0.0;
    stress.SetTensor(node, tensor);
  }
  database.GetOrCreateDataBlock(Key(OnfKind::Time, 0), 0).SetScalarAt(static_cast<std::size_t>(step), 0.01 * step);
}

void WriteCoordinates(FED_ResultDatabase& database, int nodes)
{
  constexpr int   kEdge = 100;
  FED_IdDataBlock view(database.GetOrCreateDataBlock(FED_DataDescriptor(0, OnfKind::Coordinates), 0),
                       database.GetIdMapsPool(), true);
  for (int node = 1; node <= nodes; ++node) {
    const int    place     = node - 1;
    const double vector[3] = {1.0 * (place % kEdge), 1.0 * (place / kEdge % kEdge), 1.0 * (place / kEdge / kEdge)};
    view.SetVector(node, vector);
  }
}

// @return a positive number; 0 for anything else
int ReadCount(const char* text)
{
  int         count = 0;
  const char* end   = text + std::strlen(text);
  const auto  taken = std::from_chars(text, end, count);
  return taken.ec == std::errc() && taken.ptr == end && count > 0 ? count : 0;
}

}  // namespace

int main(int argc, char** argv)
{
  const int steps = argc > 2 ? ReadCount(argv[2]) : 2000;
  const int nodes = argc > 3 ? ReadCount(argv[3]) : 1000000;
  if (argc < 2 || argc > 4 || steps == 0 || nodes == 0) {
    std::fprintf(stderr, "usage: make_large_database OUT.fed [STEPS [NODES]]\n");
    return 2;
  }
  try {
    SparseFiles               files;
    FED_ResultDatabaseOptions options;
    options.files = &files;
    FED_ResultDatabase database(argv[1], FED_ResultDatabase::Create, options);
    WriteCoordinates(database, nodes);
    for (int step = 1; step <= steps; ++step) {
      WriteStep(database, step, nodes);
      database.Commit();
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "make_large_database: %s\n", failure.what());
    return 2;
  }
  return 0;
}
