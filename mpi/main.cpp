#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include <mpi.h>

#include "commands/ExitCode.h"
#include "commands/Program.h"
#include "commands/SharedCommands.h"
#include "progress/Interrupt.h"
#include "RankCrew.h"
#include "terminal/Terminal.h"

namespace {

using namespace quilon;

/// @return "check, derive or max"
std::string ListCommands()
{
  std::string list;
  for (std::size_t i = 0; i < kSharedCommands.size(); ++i)
    list += (i == 0 ? "" : i + 1 < kSharedCommands.size() ? ", " : " or ") + std::string(kSharedCommands[i]);
  return list;
}

constexpr const char* kUsage =
    "Usage: mpirun -n N quilon-mpi COMMAND ...\n"
    "\n"
    "Runs a command of quilon in N processes that share its work: check, derive, diff, envelope, export, forces, "
    "import\n"
    "or max, with the options that 'quilon COMMAND --help' lists, but for --jobs. Output and files are those of one\n"
    "process. Every rank sees the paths of the command line.\n";

/// @return whether the command is one whose work is shared; else rank 0 has said why not
bool IsShared(int argc, char** argv, bool speaks)
{
  const std::string command = argc > 1 ? argv[1] : "";
  if (std::find(kSharedCommands.begin(), kSharedCommands.end(), command) != kSharedCommands.end()) return true;
  if (!speaks) return false;
  if (command.empty())
    std::fprintf(stderr, "quilon-mpi: error: the command is missing\n\n%s%s\n", kUsage, ListCommands().c_str());
  else
    std::fprintf(
        stderr,
        "quilon-mpi: error: '%s' is no command that processes share, expected %s as its first argument; quilon "
        "does the others\n",
        command.c_str(), ListCommands().c_str());
  return false;
}

int Run(int argc, char** argv)
{
  DisregardTerminals();
  RankCrew crew;
  if (argc > 1 && (std::string_view(argv[1]) == "--help" || std::string_view(argv[1]) == "-h")) {
    if (crew.Leads()) std::printf("%s%s\n", kUsage, ListCommands().c_str());
    return ExitSuccess;
  }
  if (!IsShared(argc, argv, crew.Leads())) return crew.Leads() ? ExitTrouble : ExitSuccess;
  const Processes processes{crew, [&crew](const std::string& message) { crew.SetFailure(message); }};
  const int       code = RunProgram(argc, argv, &processes);
  // The verdict is that of the rank that has seen all.
  return crew.Leads() || IsInterrupted() ? code : ExitSuccess;
}

}  // namespace

int main(int argc, char** argv)
{
  MPI_Init(&argc, &argv);
  int code = ExitTrouble;
  try {
    code = Run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quilon-mpi: error: %s\n", error.what());
    MPI_Abort(MPI_COMM_WORLD, ExitTrouble);
  }
  // Others may wait for this one or have gone: nobody waits any more.
  if (IsInterrupted()) MPI_Abort(MPI_COMM_WORLD, code);
  MPI_Finalize();
  return code;
}
