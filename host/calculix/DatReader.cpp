#include "calculix/DatReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <map>
#include <string_view>
#include <vector>

#include "text/Case.h"
#include "text/ColumnText.h"
#include "text/LineFile.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kDatIdWidth     = 10;
constexpr std::size_t kPointWidth     = 3;
constexpr std::size_t kFaceWidth      = 10;
constexpr std::size_t kDatValueWidth  = 13;
constexpr std::size_t kValueStep      = kDatValueWidth + 1;  // a blank stands before each value
constexpr std::size_t kMostPerLine    = 99;                  // values on a line of state variables
constexpr std::size_t kSystemWidth    = 20;                  // of the name of a local system
constexpr std::size_t kModeWidth      = 7;
constexpr std::size_t kTableStep      = 16;  // two blanks and a value of a table
constexpr std::size_t kTableWidth     = 14;
constexpr std::size_t kTimeWidth      = 14;
constexpr std::size_t kNumberWidth    = 5;  // of the mode in a banner
constexpr std::size_t kDatBatchRows   = 4096;
constexpr std::size_t kDatBatchValues = 65536;
constexpr const char* kExpectHeader   = "the header of a block or table";

/// What may stand behind the values of a row.
enum class Tail
{
  None,
  Mark,   ///< a blank and one character: the node's own axes
  System  ///< a blank and the name of a local system
};

/// What the rows of a title look like.
struct Layout
{
  std::string_view title;  // up to the first '(' or to the end
  std::string_view key;
  DatRows          rows;
  int              numValues;
  int              tensorAt = -1;  // position of six tensor components among the values, -1 without them
  Tail             tail     = Tail::None;
  bool             hasFace  = false;  // a face number stands behind the element id
};

constexpr Layout kLayouts[] = {
    {"displacements", "U", DatRows::Node, 3, -1, Tail::Mark},
    {"velocities", "V", DatRows::Node, 3, -1, Tail::Mark},
    {"forces", "RF", DatRows::Node, 3, -1, Tail::Mark},
    {"total force", "RF", DatRows::Total, 3},
    {"temperatures", "NT", DatRows::Node, 1},
    {"heat generation", "RFL", DatRows::Node, 1},
    {"total heat generation", "RFL", DatRows::Total, 1},
    {"stresses", "S", DatRows::Point, 6, 0, Tail::System},
    {"strains", "E", DatRows::Point, 6, 0, Tail::System},
    {"mechanical strains", "ME", DatRows::Point, 6, 0, Tail::System},
    {"equivalent plastic strain", "PEEQ", DatRows::Point, 1},
    {"internal energy density", "ENER", DatRows::Point, 1},
    {"internal state variables", "SDV", DatRows::Point, 0},
    {"heat flux", "HFL", DatRows::Point, 3, -1, Tail::System},
    {"global coordinates", "COORD", DatRows::Point, 3},
    {"internal energy", "ELSE", DatRows::Element, 1},
    {"total internal energy", "ELSE", DatRows::Total, 1},
    {"kinetic energy", "ELKE", DatRows::Element, 1},
    {"total kinetic energy", "ELKE", DatRows::Total, 1},
    {"volume", "EVOL", DatRows::Element, 1},
    {"total volume", "EVOL", DatRows::Total, 1},
    {"mass", "EMAS", DatRows::Element, 7, 1},
    {"total mass", "EMAS", DatRows::Total, 1},
    {"total mass moment of inertia", "EMAS", DatRows::Total, 6, 0},
    {"center of gravity", "EMAS", DatRows::Total, 3},
    {"total mass moment of inertia about the center ofgravity", "EMAS", DatRows::Total, 6, 0},
    {"body heating", "EBHE", DatRows::Element, 1},
    {"total body heating", "EBHE", DatRows::Total, 1},
    {"centrifugal force", "CENT", DatRows::Element, 1},
    {"contact stress", "CSTR", DatRows::Element, 3},
    {"relative contact displacement", "CDIS", DatRows::Element, 3},
    {"contact print energy", "CELS", DatRows::Element, 1},
    {"total contact spring energy", "CELS", DatRows::Total, 1},
};

/// The parts of a section print.
constexpr Layout kSectionParts[] = {
    {"total surface force", "SOF", DatRows::Total, 6},
    {"center of gravity and mean normal", "SOF", DatRows::Total, 6},
    {"moment about the center of gravity", "SOF", DatRows::Total, 3},
    {"area, normal force", "SOF", DatRows::Total, 5},
};
constexpr std::size_t kSectionIndent = 2;  // blanks before the values of a section print
constexpr std::size_t kTotalIndent   = 6;  // and of any other total

bool IsUpper(char c) noexcept { return c >= 'A' && c <= 'Z'; }
bool IsLetter(char c) noexcept { return IsUpper(c) || (c >= 'a' && c <= 'z'); }

bool StartsWith(std::string_view text, std::string_view start) noexcept
{
  return text.substr(0, start.size()) == start;
}

bool EndsWith(std::string_view text, std::string_view end) noexcept
{
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

std::string_view Trimmed(std::string_view text) noexcept
{
  text                    = WithoutTrailingBlanks(text);
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// Takes an end off the text, and the blanks before it.
std::string_view Without(std::string_view text, std::string_view end) noexcept
{
  return WithoutTrailingBlanks(EndsWith(text, end) ? text.substr(0, text.size() - end.size()) : text);
}

/// The words of a banner such as "E I G E N V A L U E    N U M B E R     3": "eigenvalue number".
/// @return an empty text when the line is no banner
std::string BannerWords(std::string_view line)
{
  const std::string_view text = Trimmed(line);
  std::string            words;
  std::size_t            letters = 0;
  for (std::size_t i = 0; i < text.size();) {
    if (!IsUpper(text[i]) || (i + 1 < text.size() && text[i + 1] != ' ')) break;
    words += ToLower(text[i]);
    ++letters;
    const std::size_t next = text.find_first_not_of(' ', i + 1);
    if (next == std::string_view::npos) break;
    if (next > i + 2) words += ' ';
    i = next;
  }
  constexpr std::size_t kFewest = 4;  // a single letter may stand anywhere
  return letters < kFewest ? std::string() : std::string(WithoutTrailingBlanks(words));
}

/// A line that starts a block has its name behind one blank, and ends with a time.
bool IsHeader(std::string_view line) noexcept
{
  return line.size() > 2 && line[0] == ' ' && IsLetter(line[1]) &&
         (line.find("and time") != std::string_view::npos || line.find(" for time") != std::string_view::npos);
}

bool IsKnot(std::string_view line) noexcept
{
  const std::string_view text = Trimmed(line);
  return StartsWith(text, "KNOT") || StartsWith(text, "tra ") || StartsWith(text, "rot ") || StartsWith(text, "exp ");
}

bool HasDigit(std::string_view line) noexcept { return std::any_of(line.begin(), line.end(), IsDigit); }

class DatFileReader
{
public:
  DatFileReader(std::istream& in, const std::string& name, DatSink& sink, const ReadProgress& progress)
      : file_(in, name, progress), sink_(sink)
  {
    values_.reserve(kDatBatchValues);
    rows_.reserve(kDatBatchRows);
  }

  void Read();

private:
  bool Next();
  void Hold() noexcept { isHeld_ = true; }
  bool IsBlank() const noexcept { return WithoutTrailingBlanks(file_.Text()).empty(); }
  void CheckWholeLine() const;
  void SkipEmptyLine(const char* behind);

  void    ReadBlockHeader();
  void    ParseHeader(DatBlock& block) const;
  void    CountModalBlock(const DatBlock& block);
  void    MarkHarmonicBlock(DatBlock& block);
  void    EndModes() noexcept;
  void    ReadBanner(const std::string& words);
  void    BeginHarmonic();
  void    ReadModeNumber();
  void    ReadModeTable(bool isBuckling);
  DatMode ReadMode(bool isBuckling, bool isCyclic) const;
  bool    ReadSectionPart();

  void ReadBlock(const DatBlock& block, const Layout& layout, std::size_t indent);
  void ReadRow(const Layout& layout, std::size_t indent);
  int  ReadPlace(std::size_t first, std::size_t width) const;
  void ReadStateVariables(std::size_t size);
  void AddValues(std::size_t first, std::size_t count);
  bool ReadTail(Tail tail, std::size_t size) const;
  void Flush(const DatBlock& block);

  void BeginSkipping(const std::string& reason);
  void EndSkipping();

  LineFile            file_;
  DatSink&            sink_;
  bool                isHeld_ = false;  // Next() gives the current line once more
  std::vector<double> values_;          // of rows_, one row after the other
  std::vector<DatRow> rows_;            // their spans hold sizes until Flush() points them at values_

  int                      mode_        = 0;
  bool                     isImaginary_ = false;
  std::size_t              numModes_    = 0;      // in the last table
  std::size_t              perMode_     = 0;      // blocks of the first mode
  bool                     hasPerMode_  = false;  // perMode_ is known
  double                   modeTime_    = 0.0;
  std::vector<std::string> modeBlocks_;  // titles and sets behind the last banner

  bool                               isHarmonic_ = false;
  double                             frequency_  = 0.0;  // of the harmonic response being read
  std::map<std::string, std::size_t> harmonicBlocks_;    // how often a title and set came at this frequency

  DatBlock     section_;  // the section print whose parts follow; no line when there is none
  std::string  skipReason_;
  std::size_t  skipRows_ = 0;
  std::int64_t skipLine_ = 0;  // 0 when nothing is being skipped
};

// Goes to the next line, or stays on a held one.
bool DatFileReader::Next()
{
  if (isHeld_) {
    isHeld_ = false;
    return true;
  }
  return file_.NextLine();
}

// Only the last line of a file can lack its end, and then nobody can tell how much of it is missing.
void DatFileReader::CheckWholeLine() const
{
  if (!file_.IsWholeLine()) file_.Fail("expected a whole line, found the end of the file behind it");
}

void DatFileReader::SkipEmptyLine(const char* behind)
{
  const std::string expected = std::string("an empty line behind ") + behind;
  if (!Next()) file_.FailAtEnd(expected);
  if (!IsBlank()) file_.FailExpected(expected);
}

void DatFileReader::Read()
{
  while (Next()) {
    if (IsBlank()) continue;
    CheckWholeLine();
    if (IsHeader(file_.Text())) {
      ReadBlockHeader();
      continue;
    }
    const std::string words = BannerWords(file_.Text());
    if (!words.empty()) {
      ReadBanner(words);
    } else if (ReadSectionPart()) {
      continue;
    } else if (IsKnot(file_.Text())) {
      if (skipReason_ != "rows of KNOT blocks") BeginSkipping("rows of KNOT blocks");
      if (!StartsWith(Trimmed(file_.Text()), "KNOT")) ++skipRows_;
    } else if (StartsWith(Trimmed(file_.Text()), "Modal Assurance Criterium")) {
      BeginSkipping("modal assurance criterion");
    } else if (skipLine_ != 0) {
      if (HasDigit(file_.Text())) ++skipRows_;
    } else {
      file_.FailExpected(kExpectHeader);
    }
  }
  EndSkipping();
}

void DatFileReader::BeginSkipping(const std::string& reason)
{
  EndSkipping();
  section_    = DatBlock();
  skipReason_ = reason;
  skipLine_   = file_.Line();
}

void DatFileReader::EndSkipping()
{
  if (skipLine_ != 0) sink_.OnSkipped(skipReason_, skipRows_, skipLine_);
  skipReason_.clear();
  skipRows_ = 0;
  skipLine_ = 0;
}

// Splits " TITLE for set NAME and time T". The solver glues some of its words: "forset NAME", "for setNAME", "(..)for".
void DatFileReader::ParseHeader(DatBlock& block) const
{
  constexpr std::string_view kTime        = "time";
  constexpr std::string_view kAllContacts = "all contact elements";
  const std::string_view     text         = WithoutTrailingBlanks(file_.Text());
  const std::size_t          time         = text.rfind(kTime);
  const std::string_view     head         = WithoutTrailingBlanks(text.substr(1, time - 1));
  std::string_view           title        = Without(head, "and");
  const bool                 isContact    = EndsWith(title, kAllContacts);

  // A blank stands before the time except in contact blocks.
  const std::size_t first = time + kTime.size() + (isContact ? 1 : 2);
  if (text.size() != first - 1 + kTimeWidth) file_.FailColumn("a time", first, kTimeWidth);
  block.time = file_.GetDouble(first, kTimeWidth);
  block.line = file_.Line();

  if (isContact) {
    title = Without(title, kAllContacts);
  } else if (EndsWith(head, "and")) {
    const std::size_t      blank = title.rfind(' ');
    const std::string_view name  = blank == std::string_view::npos ? title : title.substr(blank + 1);
    title                        = WithoutTrailingBlanks(title.substr(0, title.size() - name.size()));
    // Set names are in upper case, so a lower-case "set" belongs to the header.
    const bool isGlued = !EndsWith(title, "set") && StartsWith(name, "set");
    if (!isGlued && !EndsWith(title, "set")) file_.FailExpected(kExpectHeader);
    block.set = std::string(isGlued ? name.substr(3) : name);
    title     = Without(title, "set");
  }
  block.title = std::string(Without(title, "for"));
}

void DatFileReader::ReadBlockHeader()
{
  EndSkipping();
  section_ = DatBlock();
  DatBlock block;
  ParseHeader(block);
  CountModalBlock(block);
  block.mode      = mode_;
  block.imaginary = isImaginary_;
  MarkHarmonicBlock(block);

  const std::string_view title = block.title;
  if (title == "statistics for surface") {
    section_ = block;
    return;
  }
  const std::string_view name = WithoutTrailingBlanks(title.substr(0, title.find('(')));
  const auto             it   = std::find_if(std::begin(kLayouts), std::end(kLayouts),
                                             [name](const Layout& layout) { return layout.title == name; });
  // User elements have other displacements under the usual name.
  const bool isUsual = it != std::end(kLayouts) && title.find("ndof") == std::string_view::npos;
  if (!isUsual) {
    BeginSkipping("unknown block '" + Shown(title) + "'");
    return;
  }
  Layout layout = *it;
  if (title.find("(slave node") != std::string_view::npos) layout.rows = DatRows::Node;
  layout.hasFace       = title.find("(slave element+face") != std::string_view::npos;
  const bool isContact = layout.hasFace || layout.rows != it->rows;
  if (isContact && Next() && !IsBlank()) {
    Hold();  // older versions leave no line empty here
  } else if (!isContact) {
    SkipEmptyLine("the header");
  }
  ReadBlock(block, layout, kTotalIndent);
}

// Modes end without a word: the blocks of the next step follow those of the last mode.
void DatFileReader::CountModalBlock(const DatBlock& block)
{
  if (mode_ == 0) return;
  std::string signature = block.title + (isImaginary_ ? " i " : " r ") + block.set;
  const bool  isOther   = !modeBlocks_.empty() && block.time != modeTime_;
  const bool  isOver    = hasPerMode_ && modeBlocks_.size() >= perMode_;
  const bool  isRepeated =
      numModes_ == 1 && std::find(modeBlocks_.begin(), modeBlocks_.end(), signature) != modeBlocks_.end();
  if (isOther || isOver || isRepeated) {
    EndModes();
    return;
  }
  modeTime_ = block.time;
  modeBlocks_.push_back(std::move(signature));
}

// A harmonic response prints all its blocks with real parts, then all again with imaginary parts.
void DatFileReader::MarkHarmonicBlock(DatBlock& block)
{
  constexpr double kRounding = 6e-7;  // of a time, 0.ddddddd
  isHarmonic_                = isHarmonic_ && std::abs(block.time - frequency_) <= kRounding * std::abs(frequency_);
  if (!isHarmonic_) return;
  const std::size_t count = ++harmonicBlocks_[block.title + '\n' + block.set];
  if (count > 2) {
    file_.Fail("expected a real and an imaginary part of '" + Shown(block.title) + "' for set '" + Shown(block.set) +
               "' at one frequency, found a third block: two cards ask for the same, and nothing tells parts apart");
  }
  block.harmonic  = true;
  block.imaginary = count == 2;
}

void DatFileReader::EndModes() noexcept
{
  mode_        = 0;
  isImaginary_ = false;
  hasPerMode_  = false;
  modeBlocks_.clear();
}

void DatFileReader::ReadBanner(const std::string& words)
{
  if (words == "eigenvalue number") {
    EndSkipping();
    section_ = DatBlock();
    ReadModeNumber();
  } else if (words == "real part" || words == "imaginary part") {
    EndSkipping();
    section_     = DatBlock();
    isImaginary_ = words == "imaginary part";
  } else if (words == "eigenvalue output" || words == "buckling factor output") {
    EndSkipping();
    section_ = DatBlock();
    EndModes();
    ReadModeTable(words == "buckling factor output");
  } else {
    if (words == "participation factors for frequency") BeginHarmonic();
    BeginSkipping(words);
  }
}

// "P A R T I C I P A T I O N   F A C T O R S   F O R   F R E Q U E N C Y    0.1000000000000E+04 (CYCLES/TIME)"
void DatFileReader::BeginHarmonic()
{
  EndModes();
  const std::string_view text  = file_.Text();
  const std::size_t      unit  = text.rfind('(');
  const std::size_t      first = text.find_first_of("0123456789-");
  if (unit == std::string_view::npos || first >= unit) file_.FailExpected("a frequency in CYCLES/TIME");
  frequency_  = file_.GetDouble(first + 1, unit - 1 - first);
  isHarmonic_ = true;
  harmonicBlocks_.clear();
}

void DatFileReader::ReadModeNumber()
{
  constexpr std::string_view kBanner = "                    E I G E N V A L U E    N U M B E R ";
  if (WithoutTrailingBlanks(file_.Text()).size() != kBanner.size() + kNumberWidth) file_.FailExpected("a mode number");
  if (mode_ != 0 && !hasPerMode_) {
    perMode_    = modeBlocks_.size();
    hasPerMode_ = true;
  }
  modeBlocks_.clear();
  isImaginary_ = false;
  mode_        = file_.GetInteger(kBanner.size() + 1, kNumberWidth);
}

DatMode DatFileReader::ReadMode(bool isBuckling, bool isCyclic) const
{
  constexpr std::size_t kCyclicShift = 9;  // columns of the nodal diameter
  const std::size_t     shift        = isCyclic ? kCyclicShift : 0;
  const std::size_t     expected     = shift + kModeWidth + (isBuckling ? 1 : 4) * kTableStep;
  const std::size_t     size         = WithoutTrailingBlanks(file_.Text()).size();
  if (size != expected) {
    file_.Fail("expected a row of " + std::to_string(expected) + " columns, found " + std::to_string(size));
  }
  const auto value = [&](std::size_t i) {
    return file_.GetDouble(shift + kModeWidth + i * kTableStep + 3, kTableWidth);
  };
  DatMode mode;
  mode.buckling   = isBuckling;
  mode.mode       = file_.GetInteger(shift + 1, kModeWidth);
  mode.eigenvalue = value(0);
  if (isCyclic) mode.diameter = file_.GetInteger(1, 5);
  if (!isBuckling) {
    mode.omega     = value(1);
    mode.frequency = value(2);
    mode.imaginary = value(3);
  }
  return mode;
}

void DatFileReader::ReadModeTable(bool isBuckling)
{
  std::vector<DatMode> modes;
  const std::int64_t   line      = file_.Line();
  bool                 isComplex = !isBuckling;  // a complex table has no eigenvalue column
  bool                 isCyclic  = false;
  std::size_t          numRows   = 0;
  while (Next()) {
    if (IsBlank()) {
      if (numRows > 0) break;
      continue;
    }
    const std::string_view text = Trimmed(file_.Text());
    if (IsLetter(text[0]) || text[0] == '(') {
      if (numRows > 0 || IsHeader(file_.Text()) || !BannerWords(text).empty()) {
        Hold();
        break;
      }
      CheckWholeLine();
      isComplex = isComplex && text.find("EIGENVALUE") == std::string_view::npos;
      isCyclic  = isCyclic || StartsWith(text, "NODAL");
      continue;
    }
    ++numRows;
    if (isComplex) {
      CheckWholeLine();
    } else {
      modes.push_back(ReadMode(isBuckling, isCyclic));
    }
  }
  numModes_ = numRows;
  if (!modes.empty()) sink_.OnModes(modes);
  if (isComplex && numRows > 0) sink_.OnSkipped("complex eigenvalues", numRows, line);
}

bool DatFileReader::ReadSectionPart()
{
  if (section_.line == 0 || !StartsWith(file_.Text(), "   ")) return false;
  const std::string_view title = Trimmed(file_.Text());
  const auto             it    = std::find_if(std::begin(kSectionParts), std::end(kSectionParts),
                                              [title](const Layout& layout) { return StartsWith(title, layout.title); });
  if (it == std::end(kSectionParts)) return false;
  DatBlock block = section_;
  block.title    = std::string(title);
  block.line     = file_.Line();
  SkipEmptyLine("the title");
  ReadBlock(block, *it, kSectionIndent);
  return true;
}

void DatFileReader::ReadBlock(const DatBlock& header, const Layout& layout, std::size_t indent)
{
  DatBlock block  = header;
  block.key       = std::string(layout.key);
  block.rows      = layout.rows;
  block.numValues = layout.numValues;
  sink_.OnBlockBegin(block);
  while (Next()) {
    if (IsBlank()) break;
    if (IsKnot(file_.Text())) {
      Hold();
      break;
    }
    ReadRow(layout, indent);
    if (rows_.size() >= kDatBatchRows || values_.size() >= kDatBatchValues) Flush(block);
  }
  Flush(block);
  sink_.OnBlockEnd(block);
}

// Points the rows at their values: only now do these not move any more.
void DatFileReader::Flush(const DatBlock& block)
{
  const double* next = values_.data();
  for (DatRow& row : rows_) {
    row.values = {next, row.values.size()};
    next += row.values.size();
  }
  if (!rows_.empty()) sink_.OnRows(block, rows_);
  rows_.clear();
  values_.clear();
}

// Reads values that stand behind a blank each and that the line is long enough for; first is the column of the first
// blank.
void DatFileReader::AddValues(std::size_t first, std::size_t count)
{
  for (std::size_t i = 0; i < count; ++i, first += kValueStep) {
    if (file_.Text()[first - 1] != ' ') file_.FailColumn("a blank and a number", first, kValueStep);
    double value = 0.0;
    if (!ReadScientific<6>(file_.Text().data() + first, value)) file_.FailColumn("a number", first + 1, kDatValueWidth);
    values_.push_back(value);
  }
}

// Reads a blank and a whole number of a row; first is the column of the blank.
int DatFileReader::ReadPlace(std::size_t first, std::size_t width) const
{
  if (Columns(file_.Text(), first, 1) != " ") file_.FailColumn("a blank and a number", first, 1 + width);
  return file_.GetInteger(first + 1, width);
}

void DatFileReader::ReadRow(const Layout& layout, std::size_t indent)
{
  DatRow row;
  row.line         = file_.Line();
  std::size_t size = indent;  // columns before the values
  if (layout.rows == DatRows::Total) {
    if (!WithoutTrailingBlanks(Columns(file_.Text(), 1, indent)).empty()) file_.FailColumn("blanks", 1, indent);
  } else {
    row.id = file_.GetInteger(1, kDatIdWidth);
    size   = kDatIdWidth;
    if (layout.rows == DatRows::Point || layout.hasFace) {
      const std::size_t width = layout.hasFace ? kFaceWidth : kPointWidth;
      row.point               = ReadPlace(size + 1, width);
      size += 1 + width;
    }
  }
  const std::size_t before = values_.size();
  if (layout.numValues == 0) {
    ReadStateVariables(size);
  } else {
    const auto count = static_cast<std::size_t>(layout.numValues);
    row.localSystem  = ReadTail(layout.tail, size + count * kValueStep);
    AddValues(size + 1, count);
  }
  // Flush() knows where the values are in the end; until then only their number counts.
  row.values = {values_.data(), values_.size() - before};
  if (layout.tensorAt >= 0) {
    const auto xz = values_.begin() + static_cast<std::ptrdiff_t>(before) + layout.tensorAt + 4;
    std::iter_swap(xz, xz + 1);
  }
  rows_.push_back(row);
}

// Looks behind the values, which end at column size.
// @return whether something stands there
bool DatFileReader::ReadTail(Tail tail, std::size_t size) const
{
  const std::string_view line    = file_.Text();
  const std::size_t      found   = WithoutTrailingBlanks(line).size();
  const std::size_t      width   = tail == Tail::None ? 0 : 1 + (tail == Tail::Mark ? 1 : kSystemWidth);
  const bool             hasTail = found > size;
  if (found < size || found > size + width || (hasTail && line[size] != ' ')) {
    file_.Fail("expected a row of " + std::to_string(size) + " columns, found " + std::to_string(found));
  }
  // Cut in its tail or before it, a row would pass for one in global axes.
  if (line.size() < size + width) CheckWholeLine();
  return hasTail;
}

// State variables are as many as the line holds; a full line goes on with the next one, which has no id then.
void DatFileReader::ReadStateVariables(std::size_t size)
{
  for (;;) {
    CheckWholeLine();
    const std::size_t found = WithoutTrailingBlanks(file_.Text()).size();
    const std::size_t count = found > size ? (found - size) / kValueStep : 0;
    if (count == 0 || count > kMostPerLine || found != size + count * kValueStep) {
      file_.Fail("expected a row of " + std::to_string(size) + " columns and " + std::to_string(kValueStep) +
                 " for each of at most " + std::to_string(kMostPerLine) + " values, found " + std::to_string(found));
    }
    AddValues(size + 1, count);
    if (count < kMostPerLine) return;
    if (!Next()) return;
    // The first column of a value has a point or a word in it, where a new row has an id.
    if (Columns(file_.Text(), 1, kValueStep).find_first_of(".NnIi") == std::string_view::npos) {
      Hold();
      return;
    }
    size = 0;
  }
}

}  // namespace

void ReadDat(std::istream& in, const std::string& name, DatSink& sink, const ReadProgress& progress)
{
  DatFileReader(in, name, sink, progress).Read();
}

void ReadDat(const std::filesystem::path& path, DatSink& sink, const ReadProgress& progress)
{
  std::ifstream in = OpenLineFile(path);
  ReadDat(in, path.string(), sink, progress);
}

}  // namespace quilon::calculix
