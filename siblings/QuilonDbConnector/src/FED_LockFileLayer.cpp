#include "bundled/FED_LockFileLayer.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

#include "QuilonUtilities/FED_Failure.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_LockFileLayer";

constexpr const char* kFirstLine = "quilon-lock 1";

// A longer file is no lock.
constexpr std::size_t kMostBytes = 4096;

// Attempts to get a lock that others take and leave meanwhile.
constexpr int kMaxRounds = 16;

std::error_code Busy() noexcept { return std::make_error_code(std::errc::resource_unavailable_try_again); }

// What tells a process from all others.
struct Holder
{
  std::string host;
  std::string machine;       // tells machines of one name apart
  std::string boot;          // tells a machine before it was started anew from one behind
  std::string processSpace;  // in which the number counts
  long        process = 0;
  std::string started;  // tells processes of one number apart
  std::string since;
};

std::string ReadLine(const std::string& path)
{
  std::ifstream file(path);
  std::string   line;
  std::getline(file, line);
  return line.empty() ? "-" : line;
}

std::string GetHost()
{
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 && name[0] != '\0' ? name.data() : "-";
}

std::string GetProcessSpace()
{
  std::array<char, 64> target{};
  const ssize_t        size = ::readlink("/proc/self/ns/pid", target.data(), target.size());
  return size > 0 ? std::string(target.data(), static_cast<std::size_t>(size)) : "-";
}

// @return when the process was started, in the system's own count; "-" where it does not tell
std::string GetStart(long process)
{
  constexpr int     kPlace = 20;  // behind the name, which is in parentheses and may hold any character
  const std::string line   = ReadLine("/proc/" + std::to_string(process) + "/stat");
  const std::size_t name   = line.rfind(')');
  if (name == std::string::npos) return "-";
  std::istringstream words(line.substr(name + 1));
  std::string        word;
  for (int i = 0; i < kPlace; ++i) words >> word;
  return words ? word : "-";
}

std::string GetTime()
{
  const std::time_t    now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::array<char, 32> text{};
  struct tm            parts
  {};
  if (::gmtime_r(&now, &parts) == nullptr) return "-";
  return std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts) > 0 ? text.data() : "-";
}

Holder GetSelf()
{
  Holder self;
  self.host         = GetHost();
  self.machine      = ReadLine("/etc/machine-id");
  self.boot         = ReadLine("/proc/sys/kernel/random/boot_id");
  self.processSpace = GetProcessSpace();
  self.process      = ::getpid();
  self.started      = GetStart(self.process);
  self.since        = GetTime();
  return self;
}

std::string Encode(const Holder& holder)
{
  return std::string(kFirstLine) + "\nhost " + holder.host + "\nmachine " + holder.machine + "\nboot " + holder.boot +
         "\nprocesses " + holder.processSpace + "\nprocess " + std::to_string(holder.process) + "\nstarted " +
         holder.started + "\nsince " + holder.since + '\n';
}

// @return whether the text tells all of a holder
bool Decode(const std::string& text, Holder& holder)
{
  std::istringstream lines(text);
  std::string        line;
  if (!std::getline(lines, line) || line != kFirstLine) return false;
  std::string process;
  for (const auto& [word, value] : {std::pair<const char*, std::string*>{"host ", &holder.host},
                                    {"machine ", &holder.machine},
                                    {"boot ", &holder.boot},
                                    {"processes ", &holder.processSpace},
                                    {"process ", &process},
                                    {"started ", &holder.started},
                                    {"since ", &holder.since}})
  {
    const std::string label = word;
    if (!std::getline(lines, line) || line.compare(0, label.size(), label) != 0) return false;
    *value = line.substr(label.size());
  }
  holder.process = std::strtol(process.c_str(), nullptr, 10);
  return holder.process > 0;
}

enum class Whereabouts
{
  Here,      // at work on this machine
  Gone,      // it was on this machine, and is no more
  Elsewhere  // on another one, or nobody can tell
};

// What the system did not tell, such as to a process with too many open files, says nothing.
bool IsKnown(const std::string& value) noexcept { return value != "-"; }

Whereabouts Find(const std::string& text)
{
  Holder       holder;
  const Holder self = GetSelf();
  if (!Decode(text, holder) || holder.host != self.host || holder.machine != self.machine)
    return Whereabouts::Elsewhere;
  if (!IsKnown(holder.boot) || !IsKnown(self.boot)) return Whereabouts::Elsewhere;
  if (holder.boot != self.boot) return Whereabouts::Gone;
  if (holder.processSpace != self.processSpace) return Whereabouts::Elsewhere;
  const bool isThere = ::kill(static_cast<pid_t>(holder.process), 0) == 0 || errno == EPERM;
  if (!isThere) return Whereabouts::Gone;
  const std::string started = GetStart(holder.process);
  if (!IsKnown(holder.started) || !IsKnown(started)) return Whereabouts::Elsewhere;
  return started == holder.started ? Whereabouts::Here : Whereabouts::Gone;
}

// A name that no other process of any machine uses now.
std::filesystem::path GetOwnPath(const std::filesystem::path& holder)
{
  static std::atomic<unsigned> count{0};
  const std::filesystem::path  folder = holder.parent_path();
  return folder / (holder.filename().string() + '.' + GetHost() + '.' + std::to_string(::getpid()) + '.' +
                   std::to_string(++count));
}

}  // namespace

FED_LockFileLayer::FED_LockFileLayer(std::optional<Sort> sort, bool breaks) : sort_(sort), breaks_(breaks) {}

FED_LockFileLayer::~FED_LockFileLayer() = default;

FED_LockFileLayer::Sort FED_LockFileLayer::GetSortOfEnvironment()
{
  const char* const value = std::getenv("QUILON_LOCK");
  const std::string text  = value == nullptr ? "" : value;
  if (text == "file") return LockFile;
  if (text.empty() || text == "system") return SystemLock;
  throw FED_Failure("QUILON_LOCK is '" + text + "', expected 'file' or 'system'", kTag);
}

std::filesystem::path FED_LockFileLayer::GetHolderPath(const std::filesystem::path& path)
{
  return path.string() + ".holder";
}

bool FED_LockFileLayer::IsHeldElsewhere(const std::filesystem::path& path)
{
  std::string text;
  return !ReadHolder(GetHolderPath(path), text) && Find(text) == Whereabouts::Elsewhere;
}

bool FED_LockFileLayer::CountsForNothing(const std::string& text) const
{
  const Whereabouts found = Find(text);
  return found == Whereabouts::Gone || (breaks_ && found == Whereabouts::Elsewhere);
}

std::error_code FED_LockFileLayer::LockBySystem(const std::filesystem::path& path, Handle& handle)
{
  return FED_FileLayer::Lock(path, handle);
}

std::error_code FED_LockFileLayer::Lock(const std::filesystem::path& path, Handle& handle)
{
  handle                        = kNoHandle;
  const Sort            sort    = sort_ ? *sort_ : GetSortOfEnvironment();
  const std::error_code error   = LockBySystem(path, handle);
  const bool            isAlone = sort == LockFile && TellsOfNoLocks(error);
  if (error && !isAlone) return error;
  const std::error_code failure = sort == LockFile ? MakeHolder(path, handle) : FreeOfHolder(GetHolderPath(path));
  if (failure) {
    static_cast<void>(FED_FileLayer::Close(std::exchange(handle, kNoHandle)));
    return failure;
  }
  return {};
}

// Makes the file that stands for the lock.
// @param handle of the system's lock; where there is none it receives that of the file
std::error_code FED_LockFileLayer::MakeHolder(const std::filesystem::path& path, Handle& handle)
{
  const std::filesystem::path holder = GetHolderPath(path);
  const std::filesystem::path own    = GetOwnPath(holder);
  const std::string           text   = Encode(GetSelf());
  std::error_code             error  = WriteOwn(own, text);
  if (!error) error = TakeHolder(holder, own);
  const bool            isTaken = !error;
  const std::error_code removal = Remove(own);
  if (!error) error = removal;
  if (!error && handle == kNoHandle) error = Open(holder, Read, handle);
  if (!error)
    held_[handle] = {holder, text};
  else if (isTaken)
    static_cast<void>(Remove(holder));
  return error;
}

std::error_code FED_LockFileLayer::WriteOwn(const std::filesystem::path& path, const std::string& text)
{
  Handle          handle = kNoHandle;
  std::error_code error  = Open(path, Create, handle);
  if (error) return error;
  error                         = WriteAt(handle, 0, text.data(), text.size());
  const std::error_code closing = FED_FileLayer::Close(handle);
  return error ? error : closing;
}

// A file system over a network may tell of an error though the name was made.
std::error_code FED_LockFileLayer::TryLink(const std::filesystem::path& from, const std::filesystem::path& to)
{
  const std::error_code error = Link(from, to);
  if (!error) return {};
  FED_FileStatus mine;
  FED_FileStatus found;
  if (GetStatus(from, mine) || GetStatus(to, found)) return error;
  const bool isMine = found.kind == FED_FileStatus::File && mine.device == found.device && mine.number == found.number;
  return isMine ? std::error_code() : error;
}

// @return std::errc::no_such_file_or_directory when nobody holds the lock
std::error_code FED_LockFileLayer::ReadHolder(const std::filesystem::path& holder, std::string& text)
{
  Handle          handle = kNoHandle;
  std::error_code error  = Open(holder, Read, handle);
  if (error) return error;
  std::size_t done = 0;
  text.assign(kMostBytes, '\0');
  error = ReadAt(handle, 0, text.data(), text.size(), done);
  text.resize(done);
  static_cast<void>(FED_FileLayer::Close(handle));
  return error;
}

// The file appears at once with all that it says, and only where there is none.
std::error_code FED_LockFileLayer::TakeHolder(const std::filesystem::path& holder, const std::filesystem::path& own)
{
  for (int round = 0; round < kMaxRounds; ++round) {
    std::error_code error = TryLink(own, holder);
    if (error != std::errc::file_exists) return error;
    std::string text;
    error = ReadHolder(holder, text);
    if (error == std::errc::no_such_file_or_directory) continue;
    if (error) return error;
    if (!CountsForNothing(text)) return Busy();
    error = RemoveGone(holder, own, text);
    if (error) return error;
  }
  return Busy();
}

// Removes the file of a holder that is gone. Of several who find it one does, by a file of the same sort: nobody
// removes the one that another has made meanwhile.
std::error_code FED_LockFileLayer::RemoveGone(const std::filesystem::path& holder, const std::filesystem::path& own,
                                              const std::string& gone)
{
  const std::filesystem::path guard = holder.string() + ".taken-over";
  std::error_code             error = TryLink(own, guard);
  if (error == std::errc::file_exists) return breaks_ ? Remove(guard) : Busy();
  if (error) return error;
  std::string now;
  error = ReadHolder(holder, now);
  if (error == std::errc::no_such_file_or_directory)
    error = {};
  else if (!error && now == gone)
    error = Remove(holder);
  const std::error_code removal = Remove(guard);
  return error ? error : removal;
}

// Of who has the system's lock, and so is the only one here who asks.
std::error_code FED_LockFileLayer::FreeOfHolder(const std::filesystem::path& holder)
{
  std::string           text;
  const std::error_code error = ReadHolder(holder, text);
  if (error == std::errc::no_such_file_or_directory) return {};
  if (error) return error;
  return CountsForNothing(text) ? Remove(holder) : Busy();
}

std::error_code FED_LockFileLayer::Close(Handle handle) noexcept
{
  const auto found = held_.find(handle);
  if (found != held_.end()) {
    // Nothing but the system is asked: who watches files may stop what is at work, and this is the end of it. What
    // stays when memory runs out is of a process that ends.
    try {
      std::ifstream     file(found->second.holder);
      const std::string text{std::istreambuf_iterator<char>(file), {}};
      if (text == found->second.text) static_cast<void>(FED_FileLayer::Remove(found->second.holder));
    } catch (const std::exception&) {
    }
    held_.erase(found);
  }
  return FED_FileLayer::Close(handle);
}

std::string FED_LockFileLayer::FindLockHolder(const std::filesystem::path& path)
{
  std::string text;
  Holder      holder;
  if (!ReadHolder(GetHolderPath(path), text) && Decode(text, holder))
    return "process " + std::to_string(holder.process) + " on " + holder.host + " since " + holder.since + ", by " +
           GetHolderPath(path).filename().string();
  return FED_FileLayer::FindLockHolder(path);
}
