#include "calculix/deck/DeckReader.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include <bundled/FED_FileLayer.h>
#include <bundled/NativePath.h>

#include "calculix/deck/PipeOpening.h"
#include "text/Failure.h"

namespace quilon::calculix {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kLinesOfProgress = 16384;

/// @param error what the system says that does not tell: no sign that the file is not there
bool IsFile(const fs::path& path, std::error_code& error)
{
  FED_FileLayer  files;
  FED_FileStatus status;
  error = files.GetStatus(path, status);
  return status.kind == FED_FileStatus::File || status.kind == FED_FileStatus::Other;
}

/// @return why a path is not that of a deck that can be read, see SystemReason(); empty where it is
std::string ReasonAgainst(const fs::path& path)
{
  std::error_code error;
  if (!IsFile(path, error))
    return error ? ": " + error.message() : SystemReason(fs::is_directory(path, error) ? EISDIR : ENOENT);
  // A pipe is opened once: its writer would not wait for a second time.
  if (fs::is_fifo(path, error)) return "";
  errno = 0;
  if (std::ifstream(path).good()) return "";
  return errno == 0 ? SystemReason(EIO) : SystemReason(errno);
}

/// The base takes wide paths, which have no place for other bytes.
bool IsUtf8(const fs::path& path)
{
  try {
    path.u32string();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

std::uint64_t SizeOf(const fs::path& path)
{
  std::error_code     error;
  const std::uint64_t size = fs::file_size(path, error);
  return error ? 0 : size;
}

void DeleteStreams(std::vector<std::istream*>& streams)
{
  for (std::istream* stream : streams) delete stream;
  streams.clear();
}

void DeleteStreams(std::vector<std::ostream*>& streams)
{
  for (std::ostream* stream : streams) delete stream;
  streams.clear();
}

}  // namespace

fs::path CanonicalOf(const fs::path& path)
{
  std::error_code error;
  fs::path        canonical = fs::weakly_canonical(fs::absolute(path), error);
  return error ? fs::absolute(path) : canonical;
}

DeckReader::DeckReader(const fs::path& deck, const DeckOptions& options, const std::wstring& suffix)
    : FEMInputFile(L"deck", WidePath(deck), suffix, 0),
      deck_(deck),
      options_(options),
      workingFolder_(options.workingDirectory.empty() ? deck.parent_path() : options.workingDirectory),
      root_(CanonicalOf(deck.has_parent_path() ? deck.parent_path() : fs::path(".")))
{}

DeckReader::~DeckReader()
{
  // The base leaves the streams of including files alone; here nobody else refers to them.
  DeleteStreams(inputStack_);
  DeleteStreams(outputStack_);
}

void DeckReader::OnFileBegin(std::uint32_t) {}

void DeckReader::OnInclude(const DeckLine&, std::uint32_t) {}

void DeckReader::OnBadInclude(const DeckLine& line, const std::string& text) { FailAt(line.place, text); }

void DeckReader::OnDoubtfulInclude(const DeckLine&, const std::string&) {}

void DeckReader::OnFileEnd(std::uint32_t) {}

void DeckReader::EndEcho()
{
  // Where an include statement is the last line of its file, two files end at once and the base knows of one.
  restorePending_ = true;
  RestoreOutputStreamIfNeeded();
}

void DeckReader::FailAt(const DeckPlace& place, const std::string& text) const
{
  Fail(DescribeDeckPlace(files_, place) + ": " + text);
}

void DeckReader::Walk()
{
  if (const std::string reason = ReasonAgainst(deck_); !reason.empty())
    Fail(deck_.string() + ": expected a deck that can be read" + reason);
  {
    const PipeOpening opening(deck_);
    Initialize();
  }
  BeginFile(deck_, CanonicalOf(deck_), {}, {});
  for (;;) {
    const std::uint32_t file = open_.back().file;
    // A file without a byte is delivered as an empty line that it does not have.
    const bool isEmptyFile = files_[file].lines == 0 && nextLine_.empty() && currentInput_->eof();
    const bool isDeck      = inputStack_.empty();
    const bool isLast      = ReadLine() == file_ended;
    if (end_of_file()) break;
    open_.back().hasEnded = isLast && !isDeck;
    if (!isEmptyFile) {
      const std::int64_t number = ++files_[file].lines;
      std::string_view   text   = currentLine_;
      while (text.ends_with('\r')) text.remove_suffix(1);  // the solver takes any number of them
      const DeckLine line{KindOfDeckLine(text), text, {file, static_cast<std::int32_t>(number)}};
      if (number % kLinesOfProgress == 0) ReportProgress();
      OnLine(line);
      if (line.kind == DeckLineKind::Include) FollowInclude(line);
    }
    EndFiles();
  }
  OnFileEnd(0);
  open_.clear();
}

void DeckReader::BeginFile(const fs::path& path, const fs::path& canonical, const std::string& statement,
                           const DeckPlace& includedAt)
{
  const auto file = static_cast<std::uint32_t>(files_.size());
  canonicalPaths_.push_back(canonical);
  files_.push_back({path, statement, includedAt, 0, SizeOf(path)});
  bytesOfFiles_ += files_.back().bytes;
  open_.push_back({file, false, 0});
  OnFileBegin(file);
}

void DeckReader::EndFiles()
{
  while (open_.back().hasEnded) {
    const std::uint32_t file = open_.back().file;
    OnFileEnd(file);
    bytesOfEndedFiles_ += files_[file].bytes;
    open_.pop_back();
  }
}

void DeckReader::FollowInclude(const DeckLine& line)
{
  const Target target = FindTarget(line);
  if (!target.trouble.empty()) return OnBadInclude(line, target.trouble);
  if (!target.doubt.empty()) OnDoubtfulInclude(line, target.doubt);

  // Described before the hook, which may want to know what is entered; it counts as entered with BeginFile().
  files_.push_back({target.path, target.statement, line.place, 0, 0});
  OnInclude(line, static_cast<std::uint32_t>(files_.size() - 1));
  files_.pop_back();
  open_.back().bytesRead = BytesRead();
  {
    const PipeOpening opening(target.path);
    Include(WidePath(target.path));
  }
  BeginFile(target.path, target.canonical, target.statement, line.place);
}

DeckReader::Target DeckReader::FindTarget(const DeckLine& line) const
{
  Target     target;
  const auto named = ParseDeckInclude(line.text);
  if (!named || named->asTheSolverReads.empty()) {
    target.trouble = "expected the path of a file: *INCLUDE, INPUT=PATH";
    return target;
  }
  target.statement = named->asTheSolverReads;

  const std::vector<fs::path> candidates = CandidatesFor(*named, line);
  std::error_code             error;
  const auto                  found = std::find_if(candidates.begin(), candidates.end(),
                                                   [&](const fs::path& path) { return IsFile(path, error) || error; });
  if (error) {
    target.trouble = "include file " + found->string() + " cannot be looked at: " + error.message();
    return target;
  }
  if (found == candidates.end()) {
    target.trouble = "include file '" + target.statement + "' is not there, looked for";
    for (const fs::path& candidate : candidates)
      target.trouble += (candidate == candidates.front() ? " " : " and ") + candidate.string();
    return target;
  }

  target.path      = *found;
  target.canonical = CanonicalOf(*found);
  target.trouble   = TroubleWith(target, line);

  const fs::path asTheSolver = workingFolder_ / named->asTheSolverReads;
  if (target.path != asTheSolver && CanonicalOf(asTheSolver) != target.canonical)
    target.doubt = "the solver looks for '" + target.statement + "' as " + asTheSolver.string() + ", found " +
                   target.path.string();
  return target;
}

std::vector<fs::path> DeckReader::CandidatesFor(const DeckIncludePath& named, const DeckLine& line) const
{
  std::vector<fs::path> folders;
  if (options_.includeRule != DeckOptions::IncludingFile) folders.push_back(workingFolder_);
  if (options_.includeRule != DeckOptions::SolverOnly) folders.push_back(files_[line.place.file].path.parent_path());
  std::vector<std::string> names = {named.asTheSolverReads};
  if (options_.includeRule != DeckOptions::SolverOnly) names.push_back(named.asWritten);

  std::vector<fs::path> candidates;
  for (const std::string& name : names)
    for (const fs::path& folder : folders) {
      const fs::path candidate = folder / name;
      if (std::find(candidates.begin(), candidates.end(), candidate) == candidates.end())
        candidates.push_back(candidate);
    }
  return candidates;
}

std::string DeckReader::TroubleWith(const Target& target, const DeckLine& line) const
{
  if (!options_.allowOutside && !IsInsideRoot(target.canonical))
    return "include file '" + target.statement + "' is outside of the deck's folder " + root_.string() +
           ", expected --allow-outside";
  std::size_t depth = 1;
  for (DeckPlace at = line.place; at.line != 0; at = files_[at.file].includedAt) {
    if (canonicalPaths_[at.file] == target.canonical)
      return "include file '" + target.statement + "' includes itself: " + ChainTo(line.place) + " > " +
             target.path.string();
    if (at.file != 0) ++depth;
  }
  if (depth > static_cast<std::size_t>(kMaxIncludeDepth))
    return "includes are nested " + std::to_string(depth) + " deep, expected at most " +
           std::to_string(kMaxIncludeDepth) + ": " + ChainTo(line.place) + " > " + target.path.string();
  if (files_.size() >= options_.mostFiles)
    return "the deck has more than " + std::to_string(options_.mostFiles) + " files";
  if (!IsUtf8(target.path)) return "include file " + target.path.string() + " has a name that is no UTF-8";
  if (const std::string reason = ReasonAgainst(target.path); !reason.empty())
    return "include file " + target.path.string() + " cannot be read" + reason;
  return {};
}

std::string DeckReader::ChainTo(const DeckPlace& statement) const
{
  std::vector<std::string> links;
  for (DeckPlace at = statement; at.line != 0; at = files_[at.file].includedAt)
    links.push_back(DescribeDeckPlace(files_, at));
  std::string chain;
  for (auto link = links.rbegin(); link != links.rend(); ++link) chain += (chain.empty() ? "" : " > ") + *link;
  return chain;
}

bool DeckReader::IsInsideRoot(const fs::path& canonical) const
{
  return std::mismatch(root_.begin(), root_.end(), canonical.begin(), canonical.end()).first == root_.end();
}

std::uint64_t DeckReader::BytesRead() const
{
  const std::uint64_t size = files_[open_.back().file].bytes;
  return nextLinePosition_ < 0 ? size : std::min(static_cast<std::uint64_t>(nextLinePosition_), size);
}

void DeckReader::ReportProgress()
{
  if (!options_.progress) return;
  std::uint64_t done = bytesOfEndedFiles_ + BytesRead();
  for (std::size_t i = 0; i + 1 < open_.size(); ++i) done += open_[i].bytesRead;
  options_.progress(done, bytesOfFiles_);
}

}  // namespace quilon::calculix
