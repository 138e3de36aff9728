#include "Manifest.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>
#include <utility>

#include "bundled/StoreFile.h"
#include "Checksum.h"

namespace {

constexpr std::string_view kFirstWord     = "quilon-database";
constexpr std::string_view kCommitWord    = "commit ";
constexpr std::string_view kSegmentPrefix = "segment-";
constexpr std::string_view kSegmentSuffix = ".h5";
constexpr std::string_view kIndexSuffix   = ".index";
constexpr std::string_view kLinkedWord    = "linked ";
constexpr std::size_t      kSegmentDigits = 6;

// Reads the text word by word. A word ends at a blank or at the end of its line.
class ManifestText
{
public:
  ManifestText(std::string_view text, const std::filesystem::path& path) : text_(text), path_(path) {}

  bool        IsAtEnd() const noexcept { return position_ == text_.size(); }
  std::size_t GetPosition() const noexcept { return position_; }
  bool        StartsWith(std::string_view word) const noexcept { return text_.substr(position_, word.size()) == word; }

  void TakeText(std::string_view expected)
  {
    if (!StartsWith(expected))
      Fail(expected == "\n"  ? "the end of the line"
           : expected == " " ? "a blank"
                             : '"' + std::string(expected.substr(0, expected.size() - 1)) + '"');
    position_ += expected.size();
    line_ += static_cast<std::size_t>(std::count(expected.begin(), expected.end(), '\n'));
  }

  std::uint64_t TakeNumber(int base = 10)
  {
    std::uint64_t     number = 0;
    const char* const begin  = text_.data() + position_;
    const auto        result = std::from_chars(begin, text_.data() + text_.size(), number, base);
    if (result.ec != std::errc()) Fail("a number");
    position_ += static_cast<std::size_t>(result.ptr - begin);
    return number;
  }

  [[noreturn]] void Fail(const std::string& expected) const
  {
    ThrowFileFailure(path_, "damaged in line " + std::to_string(line_) + ", expected " + expected);
  }

private:
  std::string_view             text_;
  const std::filesystem::path& path_;
  std::size_t                  position_ = 0;
  std::size_t                  line_     = 1;
};

// @return bytes of the manifest without the commits that were appended, its checksum's line included
std::size_t RequireChecksum(const std::string& text, const std::filesystem::path& path)
{
  constexpr std::string_view kLabel = "checksum ";
  const std::size_t          start  = text.rfind(kLabel);
  if (start == std::string::npos || start == 0 || text[start - 1] != '\n')
    ThrowFileFailure(path, "damaged: it has no checksum");
  const std::string expected = std::string(kLabel) + FormatChecksum(GetChecksum(text.data(), start)) + '\n';
  if (text.compare(start, expected.size(), expected) != 0) ThrowFileFailure(path, "damaged: its checksum is wrong");
  return start + expected.size();
}

// Takes the line if it is a whole commit that follows the state.
bool TakeCommit(std::string_view line, ManifestState& state)
{
  if (line.substr(0, kCommitWord.size()) != kCommitWord) return false;
  std::uint64_t     numbers[7] = {};
  const char*       next       = line.data() + kCommitWord.size();
  const char* const end        = line.data() + line.size();
  for (std::uint64_t& number : numbers) {
    const auto result = std::from_chars(next, end, number, &number == std::end(numbers) - 1 ? 16 : 10);
    if (result.ec != std::errc() || result.ptr == end) return false;
    next = result.ptr + 1;
  }
  const auto [generation, nextBlock, segment, fileBytes, indexOffset, indexBytes, indexChecksum] = numbers;
  ManifestState     after                                                                        = state;
  const std::string same =
      AppendCommit(after, {segment, segment, segment, fileBytes, indexOffset, indexBytes, indexChecksum}, nextBlock);
  // The link, which comes last, tells all.
  if (same != line || generation != after.manifest.generation || segment != state.manifest.nextSegment) return false;
  state = std::move(after);
  return true;
}

SegmentEntry TakeSegment(ManifestText& text)
{
  SegmentEntry segment;
  const bool   isLinked = text.StartsWith(kLinkedWord);
  text.TakeText(isLinked ? kLinkedWord : "segment ");
  for (std::uint64_t* number :
       {&segment.number, &segment.first, &segment.last, &segment.fileBytes, &segment.indexOffset, &segment.indexBytes})
  {
    *number = text.TakeNumber();
    text.TakeText(" ");
  }
  if (isLinked) {
    segment.linkedBytes = text.TakeNumber();
    if (segment.linkedBytes == 0 || segment.linkedBytes >= segment.fileBytes ||
        segment.indexOffset < segment.linkedBytes)
      text.Fail("the bytes of a linked file, of which the index is no part");
    text.TakeText(" ");
  }
  segment.indexChecksum = text.TakeNumber(16);
  text.TakeText("\n");
  return segment;
}

std::string GetFileName(std::uint64_t number, std::string_view suffix)
{
  std::string digits = std::to_string(number);
  if (digits.size() < kSegmentDigits) digits.insert(0, kSegmentDigits - digits.size(), '0');
  return std::string(kSegmentPrefix) + digits + std::string(suffix);
}

bool HasNumberAnd(std::string_view suffix, const std::string& name)
{
  if (name.size() < kSegmentPrefix.size() + kSegmentDigits + suffix.size()) return false;
  const std::size_t digits = name.size() - kSegmentPrefix.size() - suffix.size();
  return name.compare(0, kSegmentPrefix.size(), kSegmentPrefix) == 0 &&
         name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0 &&
         name.find_first_not_of("0123456789", kSegmentPrefix.size()) == kSegmentPrefix.size() + digits;
}

}  // namespace

std::string EncodeManifest(const Manifest& manifest)
{
  const bool  isLinked = std::any_of(manifest.segments.begin(), manifest.segments.end(),
                                     [](const SegmentEntry& segment) { return segment.IsLinked(); });
  std::string text(kFirstWord);
  text += ' ' + std::to_string(isLinked ? kLinkedFormatVersion : kDatabaseFormatVersion) + '\n';
  text += "generation " + std::to_string(manifest.generation) + '\n';
  text += "next-segment " + std::to_string(manifest.nextSegment) + '\n';
  text += "next-block " + std::to_string(manifest.nextBlock) + '\n';
  for (const SegmentEntry& segment : manifest.segments) {
    text += segment.IsLinked() ? "linked" : "segment";
    for (const std::uint64_t number :
         {segment.number, segment.first, segment.last, segment.fileBytes, segment.indexOffset, segment.indexBytes})
      text += ' ' + std::to_string(number);
    if (segment.IsLinked()) text += ' ' + std::to_string(segment.linkedBytes);
    text += ' ' + FormatChecksum(segment.indexChecksum) + '\n';
  }
  text += "checksum " + FormatChecksum(GetChecksum(text.data(), text.size())) + '\n';
  return text;
}

std::string AppendCommit(ManifestState& state, const SegmentEntry& segment, std::uint64_t nextBlock)
{
  Manifest& manifest   = state.manifest;
  manifest.nextSegment = segment.number + 1;
  manifest.nextBlock   = nextBlock;
  ++manifest.generation;
  manifest.segments.push_back(segment);
  std::string line(kCommitWord);
  for (const std::uint64_t number :
       {manifest.generation, nextBlock, segment.number, segment.fileBytes, segment.indexOffset, segment.indexBytes})
    line += std::to_string(number) + ' ';
  line += FormatChecksum(segment.indexChecksum) + ' ';
  const std::string linked = FormatChecksum(state.link) + line;
  state.link               = GetChecksum(linked.data(), linked.size());
  line += FormatChecksum(state.link) + '\n';
  state.wholeBytes += line.size();
  ++state.commits;
  return line;
}

ManifestState DecodeManifest(const std::string& text, const std::filesystem::path& path)
{
  ManifestText in(text, path);
  if (!in.StartsWith(kFirstWord)) ThrowFileFailure(path, "not the manifest of a database, or damaged");
  in.TakeText(kFirstWord);
  in.TakeText(" ");
  // The version comes before the checksum: later versions are free to change all but the first line.
  ManifestState state;
  Manifest&     manifest = state.manifest;
  state.version          = in.TakeNumber();
  RequireFormatVersion(state.version, kLinkedFormatVersion, path);
  state.wholeBytes = RequireChecksum(text, path);
  in.TakeText("\n");
  in.TakeText("generation ");
  manifest.generation = in.TakeNumber();
  in.TakeText("\n");
  in.TakeText("next-segment ");
  manifest.nextSegment = in.TakeNumber();
  in.TakeText("\n");
  in.TakeText("next-block ");
  manifest.nextBlock = in.TakeNumber();
  in.TakeText("\n");
  while (in.StartsWith("segment ") || (state.version >= kLinkedFormatVersion && in.StartsWith(kLinkedWord))) {
    const SegmentEntry  segment = TakeSegment(in);
    const std::uint64_t before  = manifest.segments.empty() ? 0 : manifest.segments.back().last;
    if (segment.first <= before || segment.last < segment.first || segment.number < segment.last ||
        segment.number >= manifest.nextSegment)
      in.Fail("segments in order above");
    manifest.segments.push_back(segment);
  }
  in.TakeText("checksum ");
  state.link = in.TakeNumber(16);
  in.TakeText("\n");
  if (in.GetPosition() != state.wholeBytes || (state.version == 1 && !in.IsAtEnd())) in.Fail("the end");
  const std::string_view whole = text;
  for (;;) {
    const std::size_t end = whole.find('\n', state.wholeBytes);
    if (end == std::string_view::npos) return state;
    if (!TakeCommit(whole.substr(state.wholeBytes, end + 1 - state.wholeBytes), state)) return state;
  }
}

void RequireFormatVersion(std::uint64_t version, std::uint64_t newest, const std::filesystem::path& path)
{
  if (version >= 1 && version <= newest) return;
  ThrowFileFailure(path, "the database has format version " + std::to_string(version) +
                             ", this program reads versions 1 to " + std::to_string(newest));
}

std::string GetSegmentName(std::uint64_t number) { return GetFileName(number, kSegmentSuffix); }

std::string GetLinkIndexName(std::uint64_t number) { return GetFileName(number, kIndexSuffix); }

std::uint64_t GetSegmentNumber(const std::string& name)
{
  std::uint64_t     number = 0;
  const char* const end    = name.data() + name.size() - kSegmentSuffix.size();
  const auto        result = std::from_chars(name.data() + kSegmentPrefix.size(), end, number);
  return result.ec == std::errc() ? number : 0;
}

bool IsSegmentName(const std::string& name) { return HasNumberAnd(kSegmentSuffix, name); }

bool IsLinkIndexName(const std::string& name) { return HasNumberAnd(kIndexSuffix, name); }

bool IsFileOf(const SegmentEntry& segment, const std::string& name)
{
  return name == GetSegmentName(segment.number) || (segment.IsLinked() && name == GetLinkIndexName(segment.number));
}
