#include "program_support.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "QuilonOnfEngine/QuilonOnfTxtDatabase.h"
#include "TempFolder.h"
#include "TwoBricks.h"

namespace quilon_test {

namespace {

namespace fs = std::filesystem;

/// Becomes the program; called in the child.
[[noreturn]] void Execute(const std::vector<std::string>& arguments, const RunOptions& options)
{
  for (const std::string& variable : options.environment) {
    const std::size_t equals = variable.find('=');
    setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
  }
  if (options.interrupted) {
    signal(SIGINT, SIG_DFL);  // whoever runs the tests may ignore it
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    sigprocmask(SIG_BLOCK, &interrupt, nullptr);
    raise(SIGINT);
  }
  if (options.fileLimit != 0) {
    const rlimit limit = {options.fileLimit, options.fileLimit};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  std::string        program = "quilon";
  std::vector<char*> argv    = {program.data()};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  execv(QUILON_PROGRAM, argv.data());
  _exit(127);
}

int WaitFor(pid_t child)
{
  int status = 0;
  while (waitpid(child, &status, 0) < 0)
    if (errno != EINTR) throw std::runtime_error("waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void Redirect(const fs::path& file, int descriptor)
{
  const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (opened < 0 || dup2(opened, descriptor) < 0) _exit(126);
  close(opened);
}

void RedirectToClosedPipe(int descriptor)
{
  int ends[2];
  if (pipe(ends) != 0 || dup2(ends[1], descriptor) < 0) _exit(126);
  close(ends[0]);
  close(ends[1]);
}

FED_DataDescriptor Key(int onf, int loadCase, int substep)
{
  FED_DataDescriptor key(0, static_cast<FED_OnfId>(onf));
  key.SetInteger(FED_DataDescriptor::LoadCase, loadCase);
  key.SetInteger(FED_DataDescriptor::Substep, substep);
  key.SetInteger(FED_DataDescriptor::Analysis, 1);
  return key;
}

void SetVectors(FED_Database& database, const FED_DataDescriptor& key, const std::map<int, std::vector<double>>& values)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(key, values.size()), database.GetIdMapsPool(), true);
  for (const auto& [id, vector] : values) view.SetVector(id, vector.data());
}

void SetScalars(FED_Database& database, const FED_DataDescriptor& key, const std::map<int, double>& values)
{
  FED_IdDataBlock view(database.GetOrCreateDataBlock(key, values.size()), database.GetIdMapsPool(), true);
  for (const auto& [id, value] : values) view.SetScalar(id, value);
}

template <typename Fill>
void WriteOnf(const fs::path& folder, Fill&& fill)
{
  QuilonOnfTxtDatabase database(folder.wstring());
  database.InitDb(FED_DatabaseDefs::WriteAccess, 1024, std::wstring(), nullptr);
  fill(database);
  database.ReleaseDb(true);
}

void FillSmall(FED_Database& database)
{
  FED_IdMapsPool& pool = database.GetIdMapsPool();
  SetVectors(database, Key(510, 1, 1), {{3, {0, 0, 0}}, {10, {0.5, -1, 2}}, {20, {1.5, -2, 4}}});
  SetVectors(database, Key(510, 1, 2), {{3, {0, 0, 0}}, {10, {1, -2, 4}}, {20, {3, -4, 8}}});
  SetVectors(database, Key(510, 2, 1), {{3, {0, 0, 0}}, {10, {0.1, 0, 0}}, {20, {0.25, 0, 0}}});

  const double    nan = std::numeric_limits<double>::quiet_NaN();
  FED_IdDataBlock stress(database.GetOrCreateDataBlock(Key(521, 1, 2), 0), pool, true);
  const double    tensors[2][6] = {{20, nan, 3, 4, 5, 6}, {100, 0, 0, 0, 0, -7.5}};
  stress.SetTensor(20, tensors[0]);
  stress.SetTensor(10, tensors[1]);

  FED_DataDescriptor eigenvalues(0, FED_OnfId_ScalarHistory);
  eigenvalues.SetInteger(FED_DataDescriptor::LoadCase, 1);
  eigenvalues.SetInteger(FED_DataDescriptor::Substep, 1);
  eigenvalues.SetInteger(static_cast<FED_DataDescriptor::ResultIndex>(10), 502);
  FED_DataBlock& history = database.GetOrCreateDataBlock(eigenvalues, 0);
  history.SetScalarAt(1, 4.0);
  history.SetScalarAt(2, 9.0);

  FED_IdDataBlock   points(database.GetOrCreateDataBlock(Key(582, 1, 2), 0), pool, true);
  FED_IdDataRecord& point = points.CreateIdDataRecord();
  point.SetInteger(1, 2);
  point.SetDoubleList(2, std::vector<double>{1, 2, 3, 4, 5, 6, -1, -2, -3, -4, -5, -6.5});
  points.SetRecord(7, point);

  FED_IdDataBlock elements(database.GetOrCreateDataBlock(FED_DataDescriptor(0, FED_OnfId_ElementNodes), 0), pool, true);
  FED_IdDataRecord& element = elements.CreateIdDataRecord();
  element.SetIntList(1, std::vector<int>{20, 3, 10});
  elements.SetRecord(7, element);

  database.SetUserKindName(static_cast<FED_OnfId>(1000), "Wear depth");
  FED_IdDataBlock wear(database.GetOrCreateDataBlock(Key(1000, 1, 2), 0), pool, true);
  wear.SetScalar(3, 0.125);
}

}  // namespace

RunResult RunQuilon(const std::vector<std::string>& arguments, const RunOptions& options)
{
  const TempFolder folder;
  const fs::path   out   = options.output.empty() ? folder / "out" : options.output;
  const pid_t      child = fork();
  if (child == 0) {
    if (options.closedPipe)
      RedirectToClosedPipe(STDOUT_FILENO);
    else
      Redirect(out, STDOUT_FILENO);
    Redirect(folder / "err", STDERR_FILENO);
    Execute(arguments, options);
  }
  RunResult result;
  result.exitCode = WaitFor(child);
  result.out      = options.output.empty() ? ReadAll(out) : std::string();
  result.err      = ReadAll(folder / "err");
  return result;
}

void ExpectTrouble(const std::vector<std::string>& arguments, const std::string& message)
{
  const RunResult run = RunQuilon(arguments);
  EXPECT_EQ(run.err, "quilon: error: " + message + "\n");
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.exitCode, 2);
}

RunResult RunQuilonOnTerminal(const std::vector<std::string>& arguments, const RunOptions& options)
{
  int         terminal = -1;
  const pid_t child    = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) Execute(arguments, options);
  if (child < 0) throw std::runtime_error("forkpty");

  RunResult result;
  char      buffer[4096];
  // The end of the other side reads as an input error.
  for (ssize_t count = read(terminal, buffer, sizeof buffer); count > 0 || (count < 0 && errno == EINTR);
       count         = read(terminal, buffer, sizeof buffer))
    if (count > 0) result.out.append(buffer, static_cast<std::size_t>(count));
  result.exitCode = WaitFor(child);
  close(terminal);
  std::erase(result.out, '\r');
  return result;
}

RunningQuilon::RunningQuilon(const std::vector<std::string>& arguments)
{
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  child_ = fork();
  if (child_ == 0) {
    Redirect("/dev/null", STDOUT_FILENO);
    if (dup2(ends[1], STDERR_FILENO) < 0) _exit(126);
    signal(SIGINT, SIG_DFL);  // whoever runs the tests may ignore it
    Execute(arguments, {});
  }
  close(ends[1]);
  errors_ = ends[0];
}

RunningQuilon::~RunningQuilon()
{
  if (child_ > 0) Wait();
}

std::string RunningQuilon::ReadErrorsTo(const std::string& text)
{
  std::string found;
  char        buffer[4096];
  while (text.empty() || found.find(text) == std::string::npos) {
    const ssize_t count = read(errors_, buffer, sizeof buffer);
    if (count == 0 || (count < 0 && errno != EINTR)) break;
    if (count > 0) found.append(buffer, static_cast<std::size_t>(count));
  }
  return found;
}

void RunningQuilon::Interrupt() const { kill(child_, SIGINT); }

RunResult RunningQuilon::Wait()
{
  RunResult result;
  result.err      = ReadErrorsTo("");
  result.exitCode = WaitFor(child_);
  child_          = -1;
  close(errors_);
  return result;
}

void WriteSmallOnf(const fs::path& folder) { WriteOnf(folder, FillSmall); }

fs::path SegmentOf(const fs::path& database)
{
  for (const auto& entry : fs::directory_iterator(database))
    if (entry.path().extension() == ".h5") return entry.path();
  return {};
}

void DamageBlock(const fs::path& database, const std::string& selection, const std::vector<std::string>& options)
{
  std::vector<std::string> arguments = {"show", database.string(), selection, "--json"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  const nlohmann::json rows  = nlohmann::json::parse(RunQuilon(arguments).out).at(0).at("rows");
  double               value = 0.0;
  for (const nlohmann::json& row : rows)
    if (value == 0.0) value = row.at("x").get<double>();
  const std::string bytes(reinterpret_cast<const char*>(&value), sizeof value);
  const fs::path    segment = SegmentOf(database);
  std::string       file    = ReadAll(segment);
  const std::size_t at      = file.find(bytes);
  ASSERT_NE(at, std::string::npos);
  file[at] = static_cast<char>(file[at] ^ 1);
  std::ofstream(segment, std::ios::binary) << file;
}

void WriteTwoBricks(const fs::path& folder) { WriteOnf(folder, FillTwoBricks); }

void WriteChangedBricks(const fs::path& folder)
{
  WriteOnf(folder, [](FED_Database& database) {
    FillTwoBricks(database);
    const double    moved[3] = {7, 7, 7};
    FED_IdDataBlock view(database.GetDataBlock(StepBlock(510, 2, 1)), database.GetIdMapsPool(), true);
    view.SetVector(12, moved);
  });
}

void WriteNamedUserKind(const fs::path& folder, const std::string& name)
{
  WriteOnf(folder, [&](FED_Database& database) {
    database.SetUserKindName(static_cast<FED_OnfId>(1000), name);
    SetScalars(database, FED_DataDescriptor(0, static_cast<FED_OnfId>(1000)), {{1, 2.0}});
  });
}

void WriteBlockWithoutIteration(const fs::path& folder)
{
  WriteOnf(folder, [](FED_Database& database) {
    FED_DataDescriptor temperature(0, static_cast<FED_OnfId>(514));
    temperature.mask &= ~1U;
    SetScalars(database, temperature, {{5, 21.5}});
  });
}

void WriteDiagonalTensors(const fs::path& folder, int iteration)
{
  WriteOnf(folder, [&](FED_Database& database) {
    const double stress[6] = {10, 30, 20, 0, 0, 0};
    const double strain[6] = {0x1p-16, 0x3p-16, 0x2p-16, 0, 0, 0};
    for (const auto& [onf, tensor] : {std::pair(521, stress), std::pair(531, strain)}) {
      FED_DataBlock& block =
          database.GetOrCreateDataBlock(FED_DataDescriptor(iteration, static_cast<FED_OnfId>(onf)), 0);
      FED_IdDataBlock(block, database.GetIdMapsPool(), true).SetTensor(1, tensor);
    }
  });
}

void WriteEnergies(const fs::path& folder)
{
  WriteOnf(folder, [](FED_Database& database) {
    SetScalars(database, FED_DataDescriptor(0, static_cast<FED_OnfId>(540)), {{1, 1.0}, {2, 2.0}});
    SetScalars(database, FED_DataDescriptor(0, static_cast<FED_OnfId>(903)), {{1, 0.5}, {2, 0.5}});
  });
}

std::string ReadAll(const fs::path& file)
{
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string ReadTree(const fs::path& folder)
{
  std::map<std::string, std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
    files[entry.path().lexically_relative(folder).string()] = entry.is_regular_file() ? ReadAll(entry.path()) : "";
  std::string text;
  for (const auto& [name, content] : files) text += "== " + name + '\n' + content;
  return text;
}

}  // namespace quilon_test
