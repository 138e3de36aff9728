#pragma once

/// @file
/// The real program as a child, and databases to run it on.

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace quilon_test {

/// What a run of the program left.
struct RunResult
{
  int         exitCode = 0;
  std::string out;
  std::string err;
};

struct RunOptions
{
  /// Environment variables set for the run: "NAME=VALUE".
  std::vector<std::string> environment = {};
  /// Where standard output goes instead of RunResult::out.
  std::filesystem::path output = {};
  /// Standard output is a pipe that nobody reads any more.
  bool closedPipe = false;
  /// An interrupt is waiting when the program starts.
  bool interrupted = false;
  /// No file may become larger than so many bytes, 0 for any size: a disk that is full. Room for messages is needed.
  std::size_t fileLimit = 0;
};

/// Runs `quilon` with the arguments and waits for its end. Standard output and error are files.
RunResult RunQuilon(const std::vector<std::string>& arguments, const RunOptions& options = {});

/// Runs `quilon` and expects trouble: this message alone on standard error, nothing on standard output, exit code 2.
void ExpectTrouble(const std::vector<std::string>& arguments, const std::string& message);

/// Runs `quilon` on a terminal of its own, with standard output and standard error on it.
/// @return what the terminal saw, with its carriage returns removed, in RunResult::out
RunResult RunQuilonOnTerminal(const std::vector<std::string>& arguments, const RunOptions& options = {});

/// `quilon` at work, its standard error on a pipe to us.
class RunningQuilon
{
public:
  explicit RunningQuilon(const std::vector<std::string>& arguments);
  RunningQuilon(const RunningQuilon&)            = delete;
  RunningQuilon& operator=(const RunningQuilon&) = delete;
  /// Waits for its end.
  ~RunningQuilon();

  /// @return what it has written to standard error, read until the text stands there or nothing more comes
  std::string ReadErrorsTo(const std::string& text);
  void        Interrupt() const;
  /// Waits for its end. @return its exit code and the rest of its errors
  RunResult Wait();

private:
  int child_  = -1;
  int errors_ = -1;
};

/// Writes an ONF folder of a few blocks, all of iteration 0:
///   510 displacement, load case 1, substeps 1 and 2 and load case 2, substep 1, analysis 1; nodes 3, 10, 20
///   521 nodal stress, load case 1, substep 2, analysis 1; nodes 10 and 20, a NaN in node 20
///   500 eigenvalues (quantity 502), load case 1; 4 at position 1, 9 at position 2
///   582 points, load case 1, substep 2, analysis 1; two points of element 7
///   595 nodes of element 7
///   1000 "Wear depth", load case 1, substep 2, analysis 1; node 3
void WriteSmallOnf(const std::filesystem::path& folder);

/// @return the segment of a working database that has one
std::filesystem::path SegmentOf(const std::filesystem::path& database);

/// Flips a byte of the vectors of one block of such a database: of its first x that is not zero, which no other number
/// of the file may equal.
/// @param options of `quilon show`, which choose the block together with the selection
void DamageBlock(const std::filesystem::path& database, const std::string& selection,
                 const std::vector<std::string>& options = {});

/// Writes the model of TwoBricks.h to an ONF folder.
void WriteTwoBricks(const std::filesystem::path& folder);
/// The same with another displacement of node 12, far from element 101, in load case 2.
void WriteChangedBricks(const std::filesystem::path& folder);

/// Adds a record to a block of ONF id 1000 under the given name to a folder.
void WriteNamedUserKind(const std::filesystem::path& folder, const std::string& name);

/// Writes a temperature of node 5, 21.5, in a block without any index set.
void WriteBlockWithoutIteration(const std::filesystem::path& folder);

/// Adds a stress tensor (521) with 10, 30, 20 on its diagonal and a strain tensor (531) with the 2^20th part of 16, 48,
/// 32, both of node 1.
void WriteDiagonalTensors(const std::filesystem::path& folder, int iteration = 0);

/// Writes element energies (540) 1 and 2 and contributions (903) of 0.5 to each.
void WriteEnergies(const std::filesystem::path& folder);

/// The whole text of a file.
std::string ReadAll(const std::filesystem::path& file);

/// The names and texts of all files below a folder, one string for comparison.
std::string ReadTree(const std::filesystem::path& folder);

}  // namespace quilon_test
