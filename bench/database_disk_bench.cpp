// What keeping results on disk costs beside raw files, in one run.
//   raw write  a plain file of as many bytes, written in pieces of 16 MiB and flushed
//   commit     a step of tensors, filled before, until Commit() returns
//   raw read   the plain file, read in pieces of 16 MiB
//   walk       the database opened and every tensor's chunk fetched, which checks it
//   cold       the same, with no byte of it in the page cache
//   HDF5       the step written, flushed and read as one data set in chunks, each under a checksum; without HDF5 these
//              are left out, and a line says so
//   order, turn  ten blocks that hold the step together, in a quarter of the memory that they take, until Commit()
//              returns: filled one after the other, and record by record in turn
//   append     Commit() of one record more, with a history of 1, 10 and 100 times as many records stored
//   commits    100 commits of one record each, beside as many of SQLite with its rollback journal and with its log of
//              writes ahead, both flushed at every commit; without SQLite they are left out, and a line says so
//   blocks     many blocks of 100 tensors in one commit, a block
//   list       a database of them opened and listed, a block
// Flags: --blocks N   of the cases blocks and list (default 1000)
//        --tensors N  of the step (default 20000; 1000000 says more)
//        --records N  of the shortest history (default 100)
//        --repeats N  passes of each case (default 3)
//        --folder PATH  where the files are written (default: the temporary folder); they are deleted at the end
// Prints best and median of each case, and how they compare with raw access, best with best. Reads come from the page
// cache.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_FileLayer.h>
#include <bundled/FED_ResultDatabase.h>

#if defined(QUILON_BENCH_SQLITE)
#  include <sqlite3.h>
#endif
#if defined(QUILON_BENCH_HDF5)
#  include <hdf5.h>
#endif
#if defined(__linux__)
#  include <fcntl.h>
#  include <unistd.h>
#endif

#include "file_bench_options.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPiece  = std::size_t{16} << 20;
constexpr auto        kTensor = static_cast<FED_OnfId>(521);
constexpr auto        kScalar = static_cast<FED_OnfId>(500);

void Require(const std::error_code& error)
{
  if (!error) return;
  std::fprintf(stderr, "database_disk_bench: %s\n", error.message().c_str());
  std::exit(1);
}

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

struct Times
{
  double best;
  double median;
};

/// Runs a case that says itself how many seconds count.
Times Measure(int repeats, const std::function<double()>& run)
{
  std::vector<double> seconds;
  for (int i = 0; i < repeats; ++i) seconds.push_back(run());
  std::sort(seconds.begin(), seconds.end());
  return {seconds.front(), seconds[seconds.size() / 2]};
}

double WriteRaw(const fs::path& path, std::size_t bytes)
{
  FED_FileLayer           files;
  FED_FileLayer::Handle   handle = FED_FileLayer::kNoHandle;
  const std::vector<char> piece(kPiece, 'x');
  fs::remove(path);
  const double start = Now();
  Require(files.Open(path, FED_FileLayer::Create, handle));
  for (std::size_t done = 0; done < bytes; done += kPiece)
    Require(files.WriteAt(handle, done, piece.data(), std::min(kPiece, bytes - done)));
  Require(files.Flush(handle));
  files.Close(handle);
  return Now() - start;
}

double ReadRaw(const fs::path& path, std::size_t bytes)
{
  FED_FileLayer         files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  const double          start  = Now();
  std::vector<char>     all(bytes);
  Require(files.Open(path, FED_FileLayer::Read, handle));
  for (std::size_t done = 0, got = 0; done < bytes; done += got)
    Require(files.ReadAt(handle, done, all.data() + done, std::min(kPiece, bytes - done), got));
  files.Close(handle);
  return Now() - start;
}

void FillTensors(FED_DataBlock& block, std::size_t tensors)
{
  for (std::size_t i = 1; i <= tensors; ++i) {
    const double value     = static_cast<double>(i);
    const double tensor[6] = {value, -value, 0.5 * value, 1.0, 2.0, 3.0};
    block.SetValuesAt(i, tensor);
  }
}

double CommitStep(const fs::path& folder, std::size_t tensors)
{
  fs::remove_all(folder);
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  FillTensors(database.GetOrCreateDataBlock(FED_DataDescriptor(0, kTensor), tensors), tensors);
  const double start = Now();
  database.Commit();
  return Now() - start;
}

double Walk(const fs::path& folder)
{
  const double             start = Now();
  const FED_ResultDatabase database(folder, FED_ResultDatabase::ReadOnly);
  const auto&              block =
      dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(FED_DataDescriptor(0, kTensor)));
  double sum = 0.0;
  for (std::size_t chunk = 0; chunk < block.GetChunkCount(); ++chunk)
    sum += block.GetDoubleChunk(1, chunk).GetData()[0];
  const double seconds = Now() - start;
  if (sum < 0.0) std::puts("");  // the sum is used
  return seconds;
}

/// Takes files that are on the disk out of the page cache, where the system knows how.
void Forget([[maybe_unused]] const fs::path& path)
{
#if defined(__linux__)
  const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0 || ::posix_fadvise(handle, 0, 0, POSIX_FADV_DONTNEED) != 0 || ::close(handle) != 0) std::exit(1);
#endif
}

double WalkCold(const fs::path& folder)
{
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) Forget(entry.path());
  return Walk(folder);
}

#if defined(QUILON_BENCH_HDF5)
hid_t Require(hid_t handle)
{
  if (handle >= 0) return handle;
  std::fputs("database_disk_bench: HDF5 fails\n", stderr);
  std::exit(1);
}

double WriteHdf5(const fs::path& path, std::size_t tensors)
{
  constexpr hsize_t   kRowsPerChunk = 65536;
  std::vector<double> values(6 * tensors);
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<double>(i);
  fs::remove(path);
  const hsize_t shape[] = {tensors, 6};
  const hsize_t chunk[] = {std::min<hsize_t>(kRowsPerChunk, tensors), 6};
  const double  start   = Now();
  const hid_t   file    = Require(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT));
  const hid_t   space   = Require(H5Screate_simple(2, shape, nullptr));
  const hid_t   created = Require(H5Pcreate(H5P_DATASET_CREATE));
  Require(hid_t{H5Pset_chunk(created, 2, chunk)});
  Require(hid_t{H5Pset_fletcher32(created)});
  const hid_t set = Require(H5Dcreate2(file, "stress", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, created, H5P_DEFAULT));
  Require(hid_t{H5Dwrite(set, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data())});
  Require(hid_t{H5Dclose(set)});
  Require(hid_t{H5Pclose(created)});
  Require(hid_t{H5Sclose(space)});
  Require(hid_t{H5Fclose(file)});
  FED_FileLayer         files;
  FED_FileLayer::Handle handle = FED_FileLayer::kNoHandle;
  Require(files.Open(path, FED_FileLayer::Change, handle));
  Require(files.Flush(handle));
  files.Close(handle);
  return Now() - start;
}

double ReadHdf5(const fs::path& path, std::size_t tensors, bool isCold)
{
  if (isCold) Forget(path);
  const double        start = Now();
  std::vector<double> values(6 * tensors);
  const hid_t         file = Require(H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT));
  const hid_t         set  = Require(H5Dopen2(file, "stress", H5P_DEFAULT));
  Require(hid_t{H5Dread(set, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values.data())});
  Require(hid_t{H5Dclose(set)});
  Require(hid_t{H5Fclose(file)});
  const double seconds = Now() - start;
  if (values.back() < 0.0) std::puts("");  // the values are used
  return seconds;
}
#endif

void PrintHdf5([[maybe_unused]] const fs::path& path, [[maybe_unused]] std::size_t tensors,
               [[maybe_unused]] int repeats, [[maybe_unused]] const Times& commit, [[maybe_unused]] const Times& walk,
               [[maybe_unused]] const Times& cold)
{
#if defined(QUILON_BENCH_HDF5)
  const auto print = [](const char* name, const Times& peer, const Times& ours) {
    std::printf("HDF5 %-5s best %9.3f ms, median %9.3f ms, %5.2f of ours\n", name, 1e3 * peer.best, 1e3 * peer.median,
                peer.median / ours.median);
  };
  print("write", Measure(repeats, [&] { return WriteHdf5(path, tensors); }), commit);
  print("read", Measure(repeats, [&] { return ReadHdf5(path, tensors, false); }), walk);
  print("cold", Measure(repeats, [&] { return ReadHdf5(path, tensors, true); }), cold);
  fs::remove(path);
#else
  std::puts("HDF5 was not there when this was built: no peer for a step");
#endif
}

// Many commits of one record each: single ones are too short to measure.
double Append(const fs::path& folder, std::size_t records)
{
  constexpr std::size_t kCommits = 64;
  fs::remove_all(folder);
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  FED_DataBlock&     block = database.GetOrCreateDataBlock(FED_DataDescriptor(0, kScalar), records);
  for (std::size_t i = 0; i < records; ++i) block.SetScalarAt(i, 0.5);
  database.Commit();
  const double start = Now();
  for (std::size_t i = 0; i < kCommits; ++i) {
    block.SetScalarAt(records + i, 0.5);
    database.Commit();
  }
  return (Now() - start) / kCommits;
}

constexpr int kCommits = 100;

// Commits of one record each, behind one that makes everything.
double CommitRecords(const fs::path& folder)
{
  fs::remove_all(folder);
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  FED_DataBlock&     block = database.GetOrCreateDataBlock(FED_DataDescriptor(0, kScalar), 0);
  block.SetScalarAt(0, 0.5);
  database.Commit();
  const double start = Now();
  for (std::size_t i = 1; i <= kCommits; ++i) {
    block.SetScalarAt(i, 0.5);
    database.Commit();
  }
  return Now() - start;
}

#if defined(QUILON_BENCH_SQLITE)
double CommitRows(const fs::path& folder, const char* journal)
{
  fs::remove_all(folder);
  fs::create_directory(folder);
  sqlite3*   database = nullptr;
  const auto run      = [&](const std::string& statement) {
    if (sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK) return;
    std::fprintf(stderr, "database_disk_bench: SQLite: %s\n", sqlite3_errmsg(database));
    std::exit(1);
  };
  if (sqlite3_open((folder / "rows.db").c_str(), &database) != SQLITE_OK) std::exit(1);
  run(std::string("PRAGMA journal_mode=") + journal);
  run("PRAGMA synchronous=FULL");
  run("CREATE TABLE records (block INTEGER, position INTEGER, value REAL, PRIMARY KEY (block, position))");
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(database, "INSERT INTO records VALUES (1, ?, 0.5)", -1, &insert, nullptr);
  const double start = Now();
  for (int i = 1; i <= kCommits; ++i) {
    sqlite3_bind_int(insert, 1, i);
    if (sqlite3_step(insert) != SQLITE_DONE) std::exit(1);
    sqlite3_reset(insert);
  }
  const double seconds = Now() - start;
  sqlite3_finalize(insert);
  sqlite3_close(database);
  return seconds;
}
#endif

void PrintCommits(const fs::path& folder, int repeats)
{
  const Times ours = Measure(repeats, [&] { return CommitRecords(folder); });
  std::printf("commits    best %7.3f ms, median %7.3f ms a commit\n", 1e3 * ours.best / kCommits,
              1e3 * ours.median / kCommits);
#if defined(QUILON_BENCH_SQLITE)
  for (const char* journal : {"DELETE", "WAL"}) {
    const Times peer = Measure(repeats, [&] { return CommitRows(folder, journal); });
    std::printf("SQLite %-6s best %7.3f ms, median %7.3f ms a commit, %5.2f of ours\n", journal,
                1e3 * peer.best / kCommits, 1e3 * peer.median / kCommits, peer.median / ours.median);
  }
#else
  std::puts("SQLite was not there when this was built: no peer for commits");
#endif
}

FED_DataDescriptor MakeSubstep(std::size_t substep)
{
  FED_DataDescriptor descriptor(0, kTensor);
  descriptor.SetInteger(FED_DataDescriptor::Substep, static_cast<int>(substep));
  return descriptor;
}

double CommitBlocks(const fs::path& folder, std::size_t blocks)
{
  fs::remove_all(folder);
  FED_ResultDatabase database(folder, FED_ResultDatabase::Create);
  for (std::size_t i = 0; i < blocks; ++i) FillTensors(database.GetOrCreateDataBlock(MakeSubstep(i), 100), 100);
  const double start = Now();
  database.Commit();
  return Now() - start;
}

double OpenAndList(const fs::path& folder)
{
  const double             start = Now();
  const FED_ResultDatabase database(folder, FED_ResultDatabase::ReadOnly);
  const std::size_t        count   = database.GetDataDescriptors(FED_DataDescriptorPattern()).size();
  const double             seconds = Now() - start;
  if (count == 0) std::puts("");
  return seconds;
}

void PrintBlocks(const fs::path& folder, std::size_t blocks, int repeats)
{
  const auto print = [&](const char* name, const Times& times) {
    std::printf("%-10s best %7.3f us, median %7.3f us a block of %zu\n", name,
                1e6 * times.best / static_cast<double>(blocks), 1e6 * times.median / static_cast<double>(blocks),
                blocks);
  };
  print("blocks", Measure(repeats, [&] { return CommitBlocks(folder, blocks); }));
  print("list", Measure(repeats, [&] { return OpenAndList(folder); }));
}

double FillBlocks(const fs::path& folder, std::size_t tensors, bool inTurn)
{
  constexpr std::size_t kBlocks = 10;
  fs::remove_all(folder);
  FED_ResultDatabaseOptions options;
  options.memoryLimit = tensors * 6 * sizeof(double) / 4;
  FED_ResultDatabase          database(folder, FED_ResultDatabase::Create, options);
  std::vector<FED_DataBlock*> blocks;
  for (std::size_t i = 0; i < kBlocks; ++i) {
    FED_DataDescriptor descriptor(0, kTensor);
    descriptor.SetInteger(FED_DataDescriptor::Substep, static_cast<int>(i));
    blocks.push_back(&database.GetOrCreateDataBlock(descriptor, 0));
  }
  const std::size_t records = tensors / kBlocks;
  const auto        set     = [](FED_DataBlock& block, std::size_t index) {
    const double value     = static_cast<double>(index);
    const double tensor[6] = {value, -value, 0.5 * value, 1.0, 2.0, 3.0};
    block.SetValuesAt(index, tensor);
  };
  const double start = Now();
  if (inTurn) {
    for (std::size_t index = 1; index <= records; ++index)
      for (FED_DataBlock* block : blocks) set(*block, index);
  } else {
    for (FED_DataBlock* block : blocks)
      for (std::size_t index = 1; index <= records; ++index) set(*block, index);
  }
  database.Commit();
  return Now() - start;
}

void Print(const char* name, const Times& times, std::size_t bytes, const Times& raw)
{
  const double megabytes = static_cast<double>(bytes) * 1e-6;
  std::printf("%-10s best %9.3f ms, median %9.3f ms, %8.1f MB/s, %5.2f of raw\n", name, 1e3 * times.best,
              1e3 * times.median, megabytes / times.best, times.best / raw.best);
}

}  // namespace

int main(int argc, char** argv)
{
  std::uint64_t tensors = 20000;
  std::uint64_t records = 100;
  std::uint64_t blocks  = 1000;
  const auto    options = quilon_bench::ReadFileBenchOptions(
         argc, argv,
         {{"--blocks", &blocks, "small blocks that are written, opened and listed"},
          {"--tensors", &tensors, "records of the step that is written and walked"},
          {"--records", &records, "records stored before single ones are appended; then 10 and 100 times as many"}});
  const fs::path    plain    = quilon_bench::ScratchPath(options.folder, ".raw");
  const fs::path    database = quilon_bench::ScratchPath(options.folder, ".fed");
  const std::size_t bytes    = tensors * 6 * sizeof(double);
  std::printf("%zu tensors, %.1f MB\n", tensors, static_cast<double>(bytes) * 1e-6);
  const Times writeRaw = Measure(options.repeats, [&] { return WriteRaw(plain, bytes); });
  const Times commit   = Measure(options.repeats, [&] { return CommitStep(database, tensors); });
  const Times readRaw  = Measure(options.repeats, [&] { return ReadRaw(plain, bytes); });
  const Times walk     = Measure(options.repeats, [&] { return Walk(database); });
  const Times cold     = Measure(options.repeats, [&] { return WalkCold(database); });
  Print("raw write", writeRaw, bytes, writeRaw);
  Print("commit", commit, bytes, writeRaw);
  Print("raw read", readRaw, bytes, readRaw);
  Print("walk", walk, bytes, readRaw);
  Print("cold", cold, bytes, readRaw);
  PrintHdf5(plain, tensors, options.repeats, commit, walk, cold);
  const Times order = Measure(options.repeats, [&] { return FillBlocks(database, tensors, false); });
  const Times turn  = Measure(options.repeats, [&] { return FillBlocks(database, tensors, true); });
  Print("order", order, bytes, writeRaw);
  Print("turn", turn, bytes, writeRaw);
  std::printf("turn       %5.2f of order\n", turn.best / order.best);
  for (const std::size_t factor : {std::size_t{1}, std::size_t{10}, std::size_t{100}}) {
    const std::size_t stored = factor * records;
    const Times       append = Measure(options.repeats, [&] { return Append(database, stored); });
    std::printf("append     to %9zu records: best %7.3f ms, median %7.3f ms a commit\n", stored, 1e3 * append.best,
                1e3 * append.median);
  }
  PrintCommits(database, options.repeats);
  PrintBlocks(database, blocks, options.repeats);
  fs::remove(plain);
  fs::remove_all(database);
  return 0;
}
