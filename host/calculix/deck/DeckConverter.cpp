#include "calculix/deck/DeckConverter.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <limits>
#include <map>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include <bundled/NativePath.h>

#include "calculix/deck/DeckLineConverter.h"
#include "calculix/deck/DeckReader.h"
#include "calculix/deck/ReadDeckModel.h"
#include "QuilonUtilities/QuilonFileNameUtil.h"
#include "text/Failure.h"

namespace quilon::calculix {
namespace {

namespace fs = std::filesystem;

/// The name that the reader gives an echo file.
fs::path EchoOf(const fs::path& path, const std::string& suffix)
{
  std::wstring   name      = WidePath(path);
  const wchar_t* extension = QuilonFileNameUtil::path_find_ext(name.c_str());
  if (*extension == L'\0') return path;
  return NativePath(name.insert(static_cast<std::size_t>(extension - name.c_str()), WidePath("_" + suffix)));
}

/// FNV-1a, to tell whether two copies of a file say the same.
void AddTo(std::uint64_t& hash, std::string_view text)
{
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
}

/// The files are read to find what is wrong and again to be converted, and a pipe has nothing left by then.
void CheckSource(const fs::path& source)
{
  std::error_code ignored;  // a file that is not there is reported by the reader
  if (fs::exists(source, ignored) && !fs::is_regular_file(source, ignored))
    Fail(source.string() + ": expected a file that can be read more than once");
}

/// A link at a name that we make up, or that was planted at the one that the user gave, would lead the writing
/// elsewhere. Those of the system, as /dev/stdout, lead to what is open already, and a device is no file to lose.
void CheckDestination(const fs::path& path)
{
  if (!fs::is_symlink(fs::symlink_status(path))) return;
  const fs::path        folder = fs::canonical(path.has_parent_path() ? path.parent_path() : fs::path("."));
  const fs::file_status led    = fs::status(path);
  if (fs::exists(led) && !fs::is_regular_file(led)) return;
  if (folder == "/dev" || folder.native().starts_with("/proc/")) return;
  Fail(path.string() + ": a link, expected a file to write or the name of a new one");
}

/// Walks a deck and writes its copies, or only tries: without an output nothing is written and everything else happens.
class DeckConverter : public DeckReader
{
public:
  DeckConverter(const fs::path& deck, const DeckOptions& options, const DeckConversion& conversion, int nodeOffset,
                const DeckModel& model, const fs::path& output)
      : DeckReader(deck, options, WidePath(conversion.suffix)),
        conversion_(conversion),
        output_(output),
        convertsData_(conversion.lengthExponent != 0 || nodeOffset != 0),
        lines_(conversion.lengthExponent, nodeOffset, model, [this](const std::string& text) { FailAt(place_, text); })
  {}

  ~DeckConverter() override
  {
    if (isDone_) return;
    // Copies that are not whole would be taken for whole ones. What is no plain file, as /dev/stdout, is not ours.
    std::error_code ignored;
    for (const fs::path& path : written_)
      if (fs::is_regular_file(path, ignored)) fs::remove(path, ignored);
  }

  void ReadModel() override {}
  void CheckModel() override {}
  void ConvertModel() override
  {
    Walk();
    EndCard({});
    isDone_ = true;
  }

  const std::vector<fs::path>& Written() const noexcept { return written_; }

protected:
  void OnFileBegin(std::uint32_t file) override
  {
    open_.push_back({});
    Copy& copy     = open_.back();
    copy.path      = file == 0 ? output_ : EchoOf(GetFiles()[file].path, conversion_.suffix);
    copy.canonical = copy.path.empty() ? copy.path : CanonicalOf(copy.path);
    if (output_.empty()) return;
    if (file == 0) currentOutput_ = new std::ofstream(copy.path);
    // What could not be opened is not ours to remove.
    if (currentOutput_->good() && hashes_.count(copy.canonical) == 0) written_.push_back(copy.path);
    // The include statement has gone to the copy of the including file.
    if (file != 0) CheckOutput(outputStack_.back(), open_[open_.size() - 2].path);
    CheckOutput(currentOutput_, copy.path);
  }

  void OnLine(const DeckLine& line) override
  {
    place_          = line.place;
    Copy& copy      = open_.back();
    copy.lineEnd    = LineEnd(copy, line.text.size());
    const bool cuts = line.kind == DeckLineKind::Comment && conversion_.stripComments;
    if (line.kind == DeckLineKind::Include || cuts) return;  // an include statement is written by Include()

    std::string converted;
    const bool  isConverted = convertsData_ && (line.kind == DeckLineKind::Card || line.kind == DeckLineKind::Data);
    if (isConverted) {
      if (line.kind == DeckLineKind::Card) EndCard(line.place);
      converted = line.kind == DeckLineKind::Card ? lines_.ConvertCard(line.text) : lines_.ConvertData(line.text);
      if (converted.size() > kLongestDeckLine)
        FailAt(place_, "the converted line has " + std::to_string(converted.size()) + " characters, expected at most " +
                           std::to_string(kLongestDeckLine));
    }
    const std::string_view text = isConverted ? std::string_view(converted) : line.text;
    AddTo(copy.hash, text);
    AddTo(copy.hash, copy.lineEnd);
    if (!output_.empty()) *currentOutput_ << text << copy.lineEnd;
  }

  void OnInclude(const DeckLine& line, std::uint32_t file) override
  {
    CheckSource(GetFiles()[file].path);
    currentLine_ = NameCopy(line.text, GetFiles()[file]);
    Copy& copy   = open_.back();
    AddTo(copy.hash, currentLine_);
    copy.cutsLineFeed = copy.lineEnd.find('\n') == std::string::npos;
    currentLine_.append(copy.lineEnd, 0, copy.lineEnd.find('\n'));  // Include() adds a line feed
  }

  void OnFileEnd(std::uint32_t file) override
  {
    const Copy copy = std::move(open_.back());
    open_.pop_back();
    const auto [known, isNew] = hashes_.emplace(copy.canonical, copy.hash);
    if (!isNew && known->second != copy.hash)
      FailAt(GetFiles()[file].includedAt, GetFiles()[file].path.string() +
                                              " is included more than once, and what becomes of it differs: expected "
                                              "files of their own");
    if (output_.empty()) return;
    currentOutput_->flush();
    CheckOutput(currentOutput_, copy.path);
    if (file != 0) {
      EndEcho();
    } else {
      delete currentOutput_;
      currentOutput_ = nullptr;
    }
    if (copy.cutsLineFeed) fs::resize_file(copy.path, fs::file_size(copy.path) - 1);
  }

private:
  /// A file that is being copied.
  struct Copy
  {
    fs::path       path;
    fs::path       canonical;
    std::streamoff lineStart = 0;         // of the current line in the file that is copied
    std::string    lineEnd;               // of the current line as it is written
    bool           cutsLineFeed = false;  // the last line is an include statement and no line feed follows it
    std::uint64_t  hash         = 14695981039346656037u;  // of what is written
  };

  /// What is wrong with the data of a card as a whole is reported at the card.
  void EndCard(const DeckPlace& nextCard)
  {
    place_ = std::exchange(cardPlace_, nextCard);
    if (place_.line != 0) lines_.EndCard();
    place_ = nextCard;
  }

  /// The reader drops line ends, and its positions tell how long they were. Their own start is not among them where the
  /// line before stands in another file.
  std::string LineEnd(Copy& copy, std::size_t textSize) const
  {
    const std::streamoff start = std::exchange(copy.lineStart, nextLinePosition_);
    if (!conversion_.keepLineEnds) return "\n";
    const bool           isCut = nextLinePosition_ < 0;  // the last line has no line feed
    const std::streamoff next  = isCut ? static_cast<std::streamoff>(GetFiles()[place_.file].bytes) : nextLinePosition_;
    const std::streamoff carriageReturns = next - start - static_cast<std::streamoff>(textSize) - (isCut ? 0 : 1);
    return std::string(static_cast<std::size_t>(std::max<std::streamoff>(carriageReturns, 0)), '\r') +
           (isCut ? "" : "\n");
  }

  /// The statement with the name of the copy in place of the file's. Where the file was found with the blanks that the
  /// solver does not read, they stay.
  std::string NameCopy(std::string_view line, const DeckFile& file) const
  {
    const auto        named    = ParseDeckInclude(line);
    const fs::path    asRead   = named->asTheSolverReads;
    const bool        isAsRead = file.path.string().ends_with(named->asTheSolverReads);
    const fs::path    copy     = EchoOf(isAsRead ? asRead : fs::path(named->asWritten), conversion_.suffix);
    std::string       statement(line);
    const std::size_t at = statement.rfind(named->asWritten);
    return statement.replace(at, named->asWritten.size(), copy.string());
  }

  void CheckOutput(const std::ostream* out, const fs::path& path) const
  {
    if (!out->good()) Fail(path.string() + ": cannot be written");
  }

  const DeckConversion&             conversion_;
  fs::path                          output_;
  bool                              convertsData_;
  DeckPlace                         place_;      // that failures name
  DeckPlace                         cardPlace_;  // of the card whose data are being converted; line 0: none
  DeckLineConverter                 lines_;
  std::vector<Copy>                 open_;    // innermost last
  std::map<fs::path, std::uint64_t> hashes_;  // of complete copies, by canonical path
  std::vector<fs::path>             written_;
  bool                              isDone_ = false;
};

void CheckSuffix(const std::string& suffix)
{
  const bool isGood = !suffix.empty() && std::all_of(suffix.begin(), suffix.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
  });
  if (!isGood) Fail("--suffix is '" + suffix + "', expected letters, digits, '-' and '_'");
}

/// The echo overwrites whatever stands in its place, and the reader would read what it has just written.
void CheckCopies(const std::vector<DeckFile>& files, const DeckConversion& conversion, const fs::path& output)
{
  std::set<fs::path> sources;
  for (const DeckFile& file : files) sources.insert(CanonicalOf(file.path));
  const auto isSource = [&](const fs::path& copy) {
    std::error_code ignored;  // a file that is not there has no other names
    const bool      hasNames = fs::hard_link_count(copy, ignored) > 1 && !ignored;
    return sources.count(CanonicalOf(copy)) > 0 ||
           (hasNames && std::any_of(files.begin(), files.end(),
                                    [&](const DeckFile& file) { return fs::equivalent(copy, file.path, ignored); }));
  };
  if (isSource(output)) Fail(output.string() + ": expected a file that the deck does not read");
  CheckDestination(output);
  for (std::size_t i = 1; i < files.size(); ++i) {
    const fs::path& source = files[i].path;
    const fs::path  copy   = EchoOf(source, conversion.suffix);
    if (copy == source) Fail(source.string() + ": its copy would overwrite it, expected a name with an extension");
    if (isSource(copy))
      Fail(source.string() + ": its copy would overwrite " + copy.string() + ", which the deck reads");
    CheckDestination(copy);
    if (CanonicalOf(copy) == CanonicalOf(output))
      Fail(output.string() + ": is the copy of " + source.string() + " too");
  }
}

/// The include statements of the copy are read from the folder that the solver runs in.
void CheckFolder(const std::vector<DeckFile>& files, const fs::path& deck, const DeckOptions& options,
                 const fs::path& output)
{
  const fs::path folder = options.workingDirectory.empty() ? deck.parent_path() : options.workingDirectory;
  const fs::path runsIn = folder.empty() ? "." : folder;
  const fs::path liesIn = output.has_parent_path() ? output.parent_path() : ".";
  if (files.size() > 1 && CanonicalOf(runsIn) != CanonicalOf(liesIn))
    Fail(output.string() + ": expected a file in " + runsIn.string() +
         ", from where the include statements of the copy are read");
}

/// The files of a deck in another folder, as they lie below the deck's own. They go again unless they are kept.
class CopiedTree
{
public:
  CopiedTree()                             = default;
  CopiedTree(const CopiedTree&)            = delete;
  CopiedTree& operator=(const CopiedTree&) = delete;
  ~CopiedTree()
  {
    std::error_code ignored;
    for (const fs::path& path : made_) fs::remove(path, ignored);
  }

  void Copy(const std::vector<DeckFile>& files, const DeckOptions& options, const fs::path& folder)
  {
    const fs::path root = fs::absolute(files.front().path).parent_path();
    if (!options.workingDirectory.empty() && CanonicalOf(options.workingDirectory) != CanonicalOf(root))
      Fail("--out-dir: expected a deck that the solver runs in its own folder");
    std::vector<std::pair<fs::path, fs::path>> copies;
    for (const DeckFile& file : files) {
      const fs::path below = fs::absolute(file.path).lexically_normal().lexically_relative(root.lexically_normal());
      if (fs::path(file.statement).is_absolute() || below.empty() || *below.begin() == "..")
        Fail("--out-dir: expected files below " + root.string() + " named by relative paths, found " +
             file.path.string());
      copies.emplace_back(file.path, folder / below);
    }
    for (const auto& [from, to] : copies)
      for (const DeckFile& file : files)
        if (CanonicalOf(to) == CanonicalOf(file.path)) Fail("--out-dir: would overwrite " + file.path.string());
    for (const auto& [from, to] : copies) CopyFile(from, to);
  }

  void Keep() noexcept { made_.clear(); }

private:
  void CopyFile(const fs::path& from, const fs::path& to)
  {
    std::error_code error;
    fs::create_directories(to.parent_path(), error);
    CheckDestination(to);
    std::error_code ignored;  // what cannot be looked at cannot be copied to either
    if (!fs::exists(to, ignored)) made_.push_back(to);
    if (!error) fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
    if (error) Fail(to.string() + ": " + error.message());
  }

  std::vector<fs::path> made_;
};

int NodeOffset(const DeckModel& model, const std::optional<int>& firstNode)
{
  if (!firstNode || model.nodes.begin() == model.nodes.end()) return 0;
  if (*firstNode < 1) Fail("--renumber-nodes is " + std::to_string(*firstNode) + ", expected a number from 1");
  const auto& entries = model.nodes.Entries();
  const auto  least =
      std::min_element(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  const std::int64_t offset = std::int64_t{*firstNode} - least->first;
  if (offset > std::numeric_limits<int>::max())
    Fail("--renumber-nodes is too far from node " + std::to_string(least->first));
  return static_cast<int>(offset);
}

}  // namespace

int ParseLengthUnits(const std::string& text)
{
  static const std::map<std::string, int> kExponents = {{"um", -6}, {"mm", -3}, {"cm", -2},
                                                        {"dm", -1}, {"m", 0},   {"km", 3}};
  const std::size_t                       colon      = text.find(':');
  const auto                              from       = kExponents.find(text.substr(0, colon));
  const auto to = colon == std::string::npos ? kExponents.end() : kExponents.find(text.substr(colon + 1));
  if (from == kExponents.end() || to == kExponents.end())
    Fail("--units is '" + text + "', expected FROM:TO of um, mm, cm, dm, m and km");
  return from->second - to->second;
}

DeckConversionReport ConvertDeck(const fs::path& deck, const DeckOptions& options, const DeckConversion& conversion)
{
  CheckSuffix(conversion.suffix);
  if (conversion.output.empty()) Fail("-o is empty, expected the file to write");
  CheckSource(deck);
  const bool convertsData = conversion.lengthExponent != 0 || conversion.firstNode;
  DeckModel  model;
  if (convertsData) model = ReadDeckModel(deck, options);
  const int nodeOffset = NodeOffset(model, conversion.firstNode);

  DeckConverter attempt(deck, options, conversion, nodeOffset, model, {});
  attempt.ConvertModel();
  const std::vector<DeckFile>& files = attempt.GetFiles();

  fs::path    source        = deck;
  fs::path    output        = conversion.output;
  DeckOptions sourceOptions = options;
  CopiedTree  tree;
  if (conversion.outFolder.empty()) {
    CheckFolder(files, deck, options, output);
    CheckCopies(files, conversion, output);
  } else {
    // Whether copies get into each other's way is the same there as here.
    output = conversion.outFolder / output;
    CheckCopies(files, conversion, deck.parent_path() / conversion.output.filename());
    CheckCopies(files, conversion, output);
    source                         = conversion.outFolder / deck.filename();
    sourceOptions.workingDirectory = fs::path();
    CheckFolder(files, source, sourceOptions, output);
    tree.Copy(files, options, conversion.outFolder);
  }

  DeckConverter converter(source, sourceOptions, conversion, nodeOffset, model, output);
  converter.ConvertModel();
  tree.Keep();
  DeckConversionReport report;
  report.files = converter.Written();
  for (const DeckFile& file : converter.GetFiles()) report.lines += static_cast<std::size_t>(file.lines);
  return report;
}

}  // namespace quilon::calculix
