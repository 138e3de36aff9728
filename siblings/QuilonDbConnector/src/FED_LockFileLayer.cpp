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
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "QuilonUtilities/FED_Failure.h"

#include "Checksum.h"
#include "UnfinishedFile.h"

namespace {

constexpr const char* kTag = "|%P|QuilonDbConnector|FED_LockFileLayer";

constexpr const char* kFirstLine = "quilon-lock 1";

// A longer file is no lock.
constexpr std::size_t kMostBytes = 4096;

// Attempts to get a lock that others take and leave meanwhile.
constexpr int kMaxRounds = 16;

// Processes that died one behind the other while each took over what the one before had left.
constexpr int kMaxDeaths = 4;

constexpr std::string_view kGuardEnding = ".taken-over";

// Stands for what the system does not tell.
constexpr const char* kUntold = "-";

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
  return line.empty() ? kUntold : line;
}

std::string GetHost()
{
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 && name[0] != '\0' ? name.data() : kUntold;
}

std::string GetProcessSpace()
{
  std::array<char, 64> target{};
  const ssize_t        size = ::readlink("/proc/self/ns/pid", target.data(), target.size());
  return size > 0 ? std::string(target.data(), static_cast<std::size_t>(size)) : kUntold;
}

// @return when the process was started, in the system's own count
std::string GetStart(long process)
{
  constexpr int     kPlace = 20;  // behind the name, which is in parentheses and may hold any character
  const std::string line   = ReadLine("/proc/" + std::to_string(process) + "/stat");
  const std::size_t name   = line.rfind(')');
  if (name == std::string::npos) return kUntold;
  std::istringstream words(line.substr(name + 1));
  std::string        word;
  for (int i = 0; i < kPlace; ++i) words >> word;
  return words ? word : kUntold;
}

std::string GetTime()
{
  const std::time_t    now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::array<char, 32> text{};
  struct tm            parts
  {};
  if (::gmtime_r(&now, &parts) == nullptr) return kUntold;
  return std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts) > 0 ? text.data() : kUntold;
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
  return holder.process > 0 && holder.process <= std::numeric_limits<pid_t>::max();
}

enum class Whereabouts
{
  Here,      // at work on this machine
  Gone,      // it was on this machine, and is no more
  Elsewhere  // on another one, or nobody can tell
};

// What the system did not tell, such as to a process with too many open files, says nothing.
bool IsKnown(const std::string& value) noexcept { return value != kUntold; }

// An error other than that there is no such process says nothing about it.
bool IsGone(long process) { return ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH; }

Whereabouts Find(const std::string& text)
{
  Holder       holder;
  const Holder self = GetSelf();
  if (!Decode(text, holder) || holder.host != self.host || holder.machine != self.machine)
    return Whereabouts::Elsewhere;
  if (!IsKnown(holder.boot) || !IsKnown(self.boot)) return Whereabouts::Elsewhere;
  if (holder.boot != self.boot) return Whereabouts::Gone;
  if (holder.processSpace != self.processSpace) return Whereabouts::Elsewhere;
  if (IsGone(holder.process)) return Whereabouts::Gone;
  const std::string started = GetStart(holder.process);
  if (!IsKnown(holder.started) || !IsKnown(started)) return Whereabouts::Elsewhere;
  return started == holder.started ? Whereabouts::Here : Whereabouts::Gone;
}

// What no other process of any machine that is at work begins names of files with that are to become locks.
std::string GetOwnPrefix(const std::filesystem::path& holder, long process)
{
  return holder.filename().string() + '.' + GetHost() + '.' + std::to_string(process) + '.';
}

// Machines and containers that share a name have numbers of processes each of their own.
std::string GetOwnEnding()
{
  const Holder      self  = GetSelf();
  const std::string where = self.machine + '\n' + self.boot + '\n' + self.processSpace;
  return '.' + FormatChecksum(GetChecksum(where.data(), where.size()));
}

// A name that no other process of any machine uses now.
std::filesystem::path GetOwnPath(const std::filesystem::path& holder)
{
  static std::atomic<unsigned> count{0};
  return holder.parent_path() / (GetOwnPrefix(holder, ::getpid()) + std::to_string(++count) + GetOwnEnding());
}

// @return whether the name is that of a file of a process that was on this machine, and is no more
bool IsOfGoneProcess(const std::string& name, const std::filesystem::path& holder)
{
  const std::string begin  = holder.filename().string() + '.' + GetHost() + '.';
  const std::string ending = GetOwnEnding();
  if (name.size() <= begin.size() + ending.size() || name.compare(0, begin.size(), begin) != 0 ||
      name.compare(name.size() - ending.size(), ending.size(), ending) != 0)
    return false;
  const long process = std::strtol(name.c_str() + begin.size(), nullptr, 10);
  return process > 0 && process <= std::numeric_limits<pid_t>::max() && IsGone(process);
}

// A handle that is closed unless it is handed on.
class OpenFile
{
public:
  explicit OpenFile(FED_FileLayer& files) noexcept : files_(files) {}
  OpenFile(const OpenFile&)            = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { static_cast<void>(Close()); }

  FED_FileLayer::Handle& Get() noexcept { return handle_; }
  FED_FileLayer::Handle  Release() noexcept { return std::exchange(handle_, FED_FileLayer::kNoHandle); }
  // Not the layer's own, which knows of locks: this is none yet.
  std::error_code Close() noexcept { return files_.FED_FileLayer::Close(Release()); }

private:
  FED_FileLayer&        files_;
  FED_FileLayer::Handle handle_ = FED_FileLayer::kNoHandle;
};

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

std::filesystem::path FED_LockFileLayer::GetFolderHolderPath(const std::filesystem::path& folder)
{
  return GetHolderPath(folder / "lock");
}

bool FED_LockFileLayer::IsFolderHolderName(const std::string& name)
{
  const std::string holder = GetFolderHolderPath({}).filename().string();
  return name == holder || name.compare(0, holder.size() + 1, holder + '.') == 0;
}

bool FED_LockFileLayer::IsHeldElsewhere(const std::filesystem::path& path)
{
  std::filesystem::path holder;
  std::string           text;
  if (!ReadHolderOf(path, holder, text)) return false;
  // Who died while it took one over may have been on another machine.
  std::string guard;
  if (Find(text) == Whereabouts::Gone && !ReadHolder(holder.string() + std::string(kGuardEnding), guard)) text = guard;
  return Find(text) == Whereabouts::Elsewhere;
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
  return TakeLock(
      GetHolderPath(path), [&](Handle& system) { return LockBySystem(path, system); }, handle);
}

std::error_code FED_LockFileLayer::LockFolder(const std::filesystem::path& folder, Handle& handle)
{
  return TakeLock(
      GetFolderHolderPath(folder), [&](Handle& system) { return FED_FileLayer::LockFolder(folder, system); }, handle);
}

// Whatever fails or is thrown, an interrupt too, leaves no lock behind.
std::error_code FED_LockFileLayer::TakeLock(const std::filesystem::path& holder, const LockSystem& lockSystem,
                                            Handle& handle)
{
  handle          = kNoHandle;
  const Sort sort = sort_ ? *sort_ : GetSortOfEnvironment();
  OpenFile   lock(*this);
  if (const std::error_code error = lockSystem(lock.Get()); error && !(sort == LockFile && TellsOfNoLocks(error)))
    return error;
  if (const std::error_code error = sort == LockFile ? MakeHolder(holder, lock.Get()) : FreeOfHolder(holder))
    return error;
  handle = lock.Release();
  return {};
}

// Makes the file that stands for the lock.
// @param handle of the system's lock; where there is none it receives that of the file
std::error_code FED_LockFileLayer::MakeHolder(const std::filesystem::path& holder, Handle& handle)
{
  const std::filesystem::path own  = GetOwnPath(holder);
  const std::string           text = Encode(GetSelf());
  UnfinishedFile              unfinishedOwn(*this, own);
  if (const std::error_code error = WriteOwn(own, text)) return error;
  if (const std::error_code error = TakeHolder(holder, own)) return error;
  UnfinishedFile unfinished(*this, holder);
  unfinishedOwn.Keep();
  if (const std::error_code error = Remove(own)) return error;
  if (handle == kNoHandle)
    if (const std::error_code error = Open(holder, Read, handle)) return error;
  RemoveLeft(holder);
  const std::lock_guard<std::mutex> guard(mutex_);
  held_.insert_or_assign(handle, Held{holder, text});
  unfinished.Keep();
  return {};
}

// It is on the disk before it is a lock: one that a loss of power left empty would be of nobody knows whom.
std::error_code FED_LockFileLayer::WriteOwn(const std::filesystem::path& path, const std::string& text)
{
  OpenFile        file(*this);
  std::error_code error = Open(path, Create, file.Get());
  if (!error) error = WriteAt(file.Get(), 0, text.data(), text.size());
  if (!error) error = Flush(file.Get());
  const std::error_code closing = file.Close();
  return error ? error : closing;
}

// A file system over a network may tell of an error though the name was made. Only the system is asked about that: what
// a layer above throws would leave the name behind.
std::error_code FED_LockFileLayer::TryLink(const std::filesystem::path& from, const std::filesystem::path& to)
{
  const std::error_code error = Link(from, to);
  if (!error) return {};
  FED_FileStatus mine;
  FED_FileStatus found;
  if (FED_FileLayer::GetStatus(from, mine) || FED_FileLayer::GetStatus(to, found)) return error;
  const bool isMine = found.kind == FED_FileStatus::File && mine.device == found.device && mine.number == found.number;
  return isMine ? std::error_code() : error;
}

// @return std::errc::no_such_file_or_directory when nobody holds the lock
std::error_code FED_LockFileLayer::ReadHolder(const std::filesystem::path& holder, std::string& text)
{
  OpenFile file(*this);
  if (const std::error_code error = Open(holder, Read, file.Get())) return error;
  std::size_t done = 0;
  text.assign(kMostBytes, '\0');
  const std::error_code error = ReadAt(file.Get(), 0, text.data(), text.size(), done);
  text.resize(done);
  return error;
}

// @param path a file or a folder
// @return whether a file stands for its lock
bool FED_LockFileLayer::ReadHolderOf(const std::filesystem::path& path, std::filesystem::path& holder,
                                     std::string& text)
{
  for (const std::filesystem::path& candidate : {GetFolderHolderPath(path), GetHolderPath(path)}) {
    if (ReadHolder(candidate, text)) continue;
    holder = candidate;
    return true;
  }
  return false;
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
    error = RemoveGone(holder, own, text, kMaxDeaths);
    if (error) return error;
  }
  return Busy();
}

// Removes a file whose process is gone. Of several who find it one does, by a file of the same sort that guards it:
// nobody removes one that another has made meanwhile. The guard of one who died at that goes in the same way.
std::error_code FED_LockFileLayer::RemoveGone(const std::filesystem::path& file, const std::filesystem::path& own,
                                              const std::string& gone, int depth)
{
  const std::filesystem::path guard = file.string() + std::string(kGuardEnding);
  std::error_code             error = TryLink(own, guard);
  std::string                 now;
  if (error == std::errc::file_exists) {
    error = ReadHolder(guard, now);
    if (error == std::errc::no_such_file_or_directory) return {};  // the other is done
    if (error) return error;
    return depth > 0 && CountsForNothing(now) ? RemoveGone(guard, own, now, depth - 1) : Busy();
  }
  if (error) return error;
  UnfinishedFile unfinished(*this, guard);
  error = ReadHolder(file, now);
  if (error == std::errc::no_such_file_or_directory)
    error = {};
  else if (!error && now == gone)
    error = Remove(file);
  unfinished.Keep();
  const std::error_code removal = Remove(guard);
  return error ? error : removal;
}

// Files of processes that died before they had a lock, or before they had tidied up: nobody waits for them, and what
// cannot be read or removed now is tried again by the next one.
void FED_LockFileLayer::RemoveLeft(const std::filesystem::path& holder)
{
  const std::string        begin = holder.filename().string() + '.';
  std::vector<std::string> names;
  if (List(holder.parent_path().empty() ? "." : holder.parent_path(), names)) return;
  for (const std::string& name : names) {
    if (name.compare(0, begin.size(), begin) != 0 || std::string_view(name).ends_with(kGuardEnding)) continue;
    const std::filesystem::path path = holder.parent_path() / name;
    std::string                 text;
    if (IsOfGoneProcess(name, holder) || (!ReadHolder(path, text) && Find(text) == Whereabouts::Gone))
      static_cast<void>(Remove(path));
  }
}

// Of who has the system's lock, and asks for no file. One that counts for nothing is taken over like by all others, so
// that the one that another machine makes meanwhile stays.
std::error_code FED_LockFileLayer::FreeOfHolder(const std::filesystem::path& holder)
{
  std::string           text;
  const std::error_code error = ReadHolder(holder, text);
  if (error == std::errc::no_such_file_or_directory) return {};
  if (error) return error;
  if (!CountsForNothing(text)) return Busy();
  const std::filesystem::path own = GetOwnPath(holder);
  UnfinishedFile              unfinished(*this, own);
  if (const std::error_code failure = WriteOwn(own, Encode(GetSelf()))) return failure;
  const std::error_code taking = TakeHolder(holder, own);
  // Without links nobody makes locks here: it was copied.
  if (taking && taking != std::errc::operation_not_permitted && taking != std::errc::operation_not_supported)
    return taking;
  return Remove(holder);
}

std::error_code FED_LockFileLayer::Close(Handle handle) noexcept
{
  // Nothing but the system is asked: who watches files may stop what is at work, and this is the end of it. What
  // stays when memory runs out is of a process that ends.
  try {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (const auto found = held_.find(handle); found != held_.end()) {
      const Held held = std::move(found->second);
      held_.erase(found);
      std::ifstream     file(held.holder);
      const std::string text{std::istreambuf_iterator<char>(file), {}};
      if (text == held.text) static_cast<void>(FED_FileLayer::Remove(held.holder));
    }
  } catch (const std::exception&) {
  }
  return FED_FileLayer::Close(handle);
}

std::string FED_LockFileLayer::FindLockHolder(const std::filesystem::path& path)
{
  std::filesystem::path file;
  std::string           text;
  Holder                holder;
  // One that counts for nothing is not what is in the way.
  if (ReadHolderOf(path, file, text) && Decode(text, holder) && Find(text) != Whereabouts::Gone)
    return "process " + std::to_string(holder.process) + " on " + holder.host + " since " + holder.since + ", by " +
           file.filename().string();
  return FED_FileLayer::FindLockHolder(path);
}
