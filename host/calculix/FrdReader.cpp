#include "calculix/FrdReader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <fstream>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "text/ColumnText.h"
#include "text/LineFile.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kIdFirst        = 4;  // columns from 1
constexpr std::size_t kFrdIdWidth     = 10;
constexpr std::size_t kValueFirst     = kIdFirst + kFrdIdWidth;
constexpr std::size_t kFrdValueWidth  = 12;
constexpr std::size_t kLineValues     = 6;   // values on a line
constexpr std::size_t kLineNodes      = 10;  // node ids on a line
constexpr std::size_t kMaxNodes       = 20;  // of an element
constexpr std::size_t kFrdBatchRows   = 4096;
constexpr std::size_t kFrdBatchValues = 65536;

// Nodes per element by type code: 1 hex8, 2 wedge6, 3 tet4, 4 hex20, 5 wedge15, 6 tet10, 7 tri3, 8 tri6, 9 quad4,
// 10 quad8, 11 line2, 12 line3.
constexpr std::array<std::size_t, 13> kNodesOfType = {0, 8, 6, 4, 20, 15, 10, 3, 6, 4, 8, 2, 3};

constexpr int kTypeHex20 = 4, kTypeWedge15 = 5, kTypeLine3 = 12;

constexpr const char* kResultRow = "a row ' -1' or the end of the data set ' -3'";

enum class Encoding
{
  Text,
  Single,  ///< binary, 4-byte floating point
  Double   ///< binary, 8-byte floating point
};

// A set of positive ids. A page of 65536 of them lists the few that are there, and has a bit for each when they are
// more: ids far from each other cost two bytes each, and ids in any order at most eight.
class IdSet
{
public:
  /// @return false if id was there
  bool Insert(int id)
  {
    const auto        position = static_cast<std::size_t>(id);
    const std::size_t number   = position / kPageIds;
    if (number >= pages_.size()) pages_.resize(number + 1);
    Page& page = pages_[number];
    if (!page.bits) return InsertFew(page, static_cast<std::uint16_t>(position % kPageIds));
    return SetBit(*page.bits, position % kPageIds);
  }

  bool Contains(int id) const noexcept
  {
    if (id < 0) return false;
    const auto        position = static_cast<std::size_t>(id);
    const std::size_t number   = position / kPageIds;
    if (number >= pages_.size()) return false;
    const Page& page = pages_[number];
    if (page.bits) return ((*page.bits)[position % kPageIds / 64] >> (position % 64) & 1) != 0;
    return std::binary_search(page.few.begin(), page.few.end(), static_cast<std::uint16_t>(position % kPageIds));
  }

private:
  static constexpr std::size_t kPageIds = 65536;
  static constexpr std::size_t kMostFew = 1024;
  using Bits                            = std::array<std::uint64_t, kPageIds / 64>;

  struct Page
  {
    std::vector<std::uint16_t> few;  // ascending
    std::unique_ptr<Bits>      bits;
  };

  static bool SetBit(Bits& bits, std::size_t position)
  {
    std::uint64_t&      word  = bits[position / 64];
    const std::uint64_t bit   = std::uint64_t{1} << (position % 64);
    const bool          isNew = (word & bit) == 0;
    word |= bit;
    return isNew;
  }

  static bool InsertFew(Page& page, std::uint16_t position)
  {
    const auto at = std::lower_bound(page.few.begin(), page.few.end(), position);
    if (at != page.few.end() && *at == position) return false;
    page.few.insert(at, position);
    if (page.few.size() < kMostFew) return true;
    page.bits = std::make_unique<Bits>();
    for (const std::uint16_t known : page.few) SetBit(*page.bits, known);
    page.few = {};
    return true;
  }

  std::vector<Page> pages_;
};

// The file's binary parts are little-endian on every machine.
std::uint32_t LoadWord(const char* bytes) noexcept
{
  const auto byte = [bytes](int i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])); };
  return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

int LoadInt(const char* bytes) noexcept { return static_cast<int>(LoadWord(bytes)); }

double LoadFloat(const char* bytes) noexcept { return static_cast<double>(std::bit_cast<float>(LoadWord(bytes))); }

double LoadDouble(const char* bytes) noexcept
{
  return std::bit_cast<double>(LoadWord(bytes) | static_cast<std::uint64_t>(LoadWord(bytes + 4)) << 32);
}

void LoadValues(const char* bytes, Encoding encoding, std::span<double> values) noexcept
{
  if (encoding == Encoding::Single) {
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = LoadFloat(bytes + 4 * i);
  } else {
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = LoadDouble(bytes + 8 * i);
  }
}

std::size_t BytesOfValue(Encoding encoding) noexcept { return encoding == Encoding::Single ? 4 : 8; }

// The file puts the verticals of solids before the nodes of the top, and the middle of a line last.
void ToDeckOrder(int type, std::span<int> nodes) noexcept
{
  if (type == kTypeHex20) std::swap_ranges(nodes.begin() + 12, nodes.begin() + 16, nodes.begin() + 16);
  if (type == kTypeWedge15) std::swap_ranges(nodes.begin() + 9, nodes.begin() + 12, nodes.begin() + 12);
  if (type == kTypeLine3) std::swap(nodes[1], nodes[2]);
}

// Rows on their way to a sink: ids_ has shape [capacity_], values_ has shape [capacity_, numValues_].
class RowBatch
{
public:
  /// Empties the batch for rows of another size.
  /// @param numRows a claim: it only keeps a small file's batch small
  void Start(std::size_t numValues, int numRows)
  {
    const auto claimed = static_cast<std::size_t>(std::max(1, numRows));
    size_              = 0;
    numValues_         = numValues;
    capacity_          = std::max<std::size_t>(1, std::min({kFrdBatchRows, kFrdBatchValues / numValues, claimed}));
    if (ids_.size() < capacity_) ids_.resize(capacity_);
    if (values_.size() < capacity_ * numValues) values_.resize(capacity_ * numValues);
  }

  bool IsEmpty() const noexcept { return size_ == 0; }
  bool IsFull() const noexcept { return size_ == capacity_; }

  /// Values of the row behind the last one; Add() keeps them.
  std::span<double> Next() noexcept { return {values_.data() + size_ * numValues_, numValues_}; }
  void              Add(int id) noexcept { ids_[size_++] = id; }
  void              Clear() noexcept { size_ = 0; }

  std::span<const int>    Ids() const noexcept { return {ids_.data(), size_}; }
  std::span<const double> Values() const noexcept { return {values_.data(), size_ * numValues_}; }

private:
  std::size_t         numValues_ = 1;
  std::size_t         capacity_  = 0;
  std::vector<int>    ids_;
  std::vector<double> values_;
  std::size_t         size_ = 0;
};

class FrdFileReader
{
public:
  FrdFileReader(std::istream& in, const std::string& name, FrdSink& sink, const ReadProgress& progress)
      : file_(in, name, progress), sink_(sink)
  {
    elements_.reserve(kFrdBatchRows);
    elementNodes_.reserve(kFrdBatchRows * kMaxNodes);
  }

  void Read();

  /// Reads all but the rows of data sets.
  std::vector<FrdMark> ReadHeads();
  void                 ReadOne(const FrdMark& mark);

private:
  void NextLine(const char* expected);
  bool StartsWith(std::string_view key) const noexcept { return file_.Text().substr(0, key.size()) == key; }
  void CheckLineSize(std::size_t size, const char* what) const;

  bool     ReadBlock();
  void     ReadParameter();
  int      ReadCount() const;
  Encoding ReadEncoding() const;

  void        ReadNodes();
  std::size_t ReadTextNodes(int count);
  void        ReadBinaryNodes(int count, Encoding encoding);
  void        AddNode(int id);
  void        FlushNodes();

  void ReadElements();
  void ReadTextElements();
  void ReadBinaryElements();
  void AddElement(int id, int type, int material, std::span<const int> nodes);
  void FlushElements();

  void        ReadDataset();
  void        FinishDataset();
  void        ReadComponents();
  std::size_t ReadTextRows(int count);
  std::size_t PassTextRows();
  bool        JumpTextRows(int count);
  bool        IsEndOfRows(std::uint64_t position, std::int64_t line);
  void        ReadBinaryRows(int count, Encoding encoding);
  void        PassBinaryRows(int count, Encoding encoding);
  void        CheckBinaryRows(int count, Encoding encoding) const;
  void        ReadTextValues(std::span<double> values);
  int         ReadId(const char* what) const;
  void        FlushRows(std::int64_t line);

  LineFile file_;
  bool     IsNode(int id) const { return nodes_.Contains(id) || sink_.IsKnown(id); }

  FrdSink&                sink_;
  IdSet                   nodes_;
  std::vector<FrdElement> elements_;
  std::vector<int>        elementNodes_;  // of elements_, one after the other; never grows past its first capacity
  RowBatch                batch_;
  FrdDataset              dataset_;
  bool                    isBehindField_ = false;  // the line before this one was the last of a field
  bool                    jumps_         = false;  // over rows
  std::vector<FrdMark>    marks_;                  // of data sets, where rows are jumped over
  std::optional<FrdMark>  mark_;                   // of parameters of a data set to come
  bool                    isMeshSplit_ = false;    // some of it comes behind what tells of data sets
};

void FrdFileReader::NextLine(const char* expected)
{
  if (!file_.NextLine()) file_.FailAtEnd(expected);
}

void FrdFileReader::CheckLineSize(std::size_t size, const char* what) const
{
  const std::string_view text = file_.Text();
  if (text.size() == size) return;
  const std::size_t found = WithoutTrailingBlanks(text).size();
  if (text.size() < size || found > size) {
    file_.Fail("expected " + std::string(what) + " of " + std::to_string(size) + " columns, found " +
               std::to_string(found));
  }
}

void FrdFileReader::Read()
{
  constexpr const char* kFirstLine = "the first line of a result file, '    1C'";
  NextLine(kFirstLine);
  if (!StartsWith("    1C")) file_.FailExpected(kFirstLine);
  while (ReadBlock()) {
  }
  while (file_.NextLine())
    if (!WithoutTrailingBlanks(file_.Text()).empty()) file_.FailExpected("nothing behind the last line ' 9999'");
}

std::vector<FrdMark> FrdFileReader::ReadHeads()
{
  jumps_ = true;
  Read();
  if (isMeshSplit_) marks_.clear();
  return std::move(marks_);
}

void FrdFileReader::ReadOne(const FrdMark& mark)
{
  constexpr const char* kHead = "the data set that was found here before";
  file_.GoTo(mark.position, mark.line);
  for (;;) {
    NextLine(kHead);
    if (StartsWith("  100C")) return ReadDataset();
    if (StartsWith("    1P"))
      ReadParameter();
    else if (!StartsWith("    1U"))
      file_.FailExpected(kHead);
  }
}

/// @return false behind the last line of a run that came to its end
bool FrdFileReader::ReadBlock()
{
  constexpr const char* kNextBlock = "a block or the last line ' 9999'";
  const FrdMark         here{file_.Position(), file_.Line(), 0};
  if (!file_.NextLine()) {
    if (isBehindField_) sink_.OnCutBehindDataset();
    file_.FailAtEnd(kNextBlock + std::string(" of a run that came to its end"));
  }
  if (StartsWith("    1U")) return true;  // user text
  if (StartsWith("    1C"))
    file_.Fail("expected one heading '    1C', found a second one: results of fluids and networks are not read");
  isBehindField_ = StartsWith("  100C");
  if (StartsWith("    1P")) {
    if (!mark_) mark_ = here;
    ReadParameter();
  } else if (StartsWith("    2C")) {
    ReadNodes();
    isMeshSplit_ = isMeshSplit_ || mark_ || !marks_.empty();
  } else if (StartsWith("    3C")) {
    ReadElements();
    isMeshSplit_ = isMeshSplit_ || mark_ || !marks_.empty();
  } else if (StartsWith("  100C")) {
    FrdMark mark = std::exchange(mark_, std::nullopt).value_or(here);
    ReadDataset();
    mark.bytes = file_.Position() - mark.position;
    if (jumps_) marks_.push_back(mark);
  } else if (WithoutTrailingBlanks(file_.Text()) == " 9999") {
    return false;
  } else {
    file_.FailExpected(kNextBlock);
  }
  return true;
}

void FrdFileReader::ReadParameter()
{
  if (StartsWith("    1PSTEP")) {
    dataset_.increment = file_.GetInteger(37, 12);
    dataset_.step      = file_.GetInteger(49, 12);
  } else if (StartsWith("    1PMODE")) {
    dataset_.mode = file_.GetInteger(25, 12);
  } else if (!StartsWith("    1PGM") && !StartsWith("    1PGK") && !StartsWith("    1PHID") &&
             !StartsWith("    1PSUBC") && !StartsWith("    1PAX"))
  {
    file_.FailExpected("a parameter 1PSTEP, 1PMODE, 1PGM, 1PGK, 1PHID, 1PSUBC or 1PAX");
  }
}

int FrdFileReader::ReadCount() const
{
  const int count = file_.GetInteger(25, 12);
  if (count < 0) file_.Fail("expected a count from 0 on, found " + std::to_string(count));
  return count;
}

Encoding FrdFileReader::ReadEncoding() const
{
  const std::string_view column = WithoutTrailingBlanks(Columns(file_.Text(), 73, 3));
  int                    format = 0;
  if (!ReadInteger(column, format) || format < 1 || format > 3) {
    file_.Fail("expected format 1 (text), 2 or 3 (binary) in column 74 or 75, found '" + Shown(column) + "'");
  }
  return format == 1 ? Encoding::Text : format == 2 ? Encoding::Single : Encoding::Double;
}

int FrdFileReader::ReadId(const char* what) const
{
  const int id = file_.GetInteger(kIdFirst, kFrdIdWidth);
  if (id < 1) file_.Fail("expected " + std::string(what) + " from 1 on, found " + std::to_string(id));
  return id;
}

void FrdFileReader::ReadNodes()
{
  const std::int64_t line     = file_.Line();
  const int          count    = ReadCount();
  const Encoding     encoding = ReadEncoding();
  if (encoding != Encoding::Text) {
    ReadBinaryNodes(count, encoding);
    return;
  }
  const std::size_t found = ReadTextNodes(count);
  if (found != static_cast<std::size_t>(count)) {
    file_.Fail("expected the " + std::to_string(count) + " nodes that line " + std::to_string(line) +
               " announces, found " + std::to_string(found));
  }
}

void FrdFileReader::AddNode(int id)
{
  if (!nodes_.Insert(id)) file_.Fail("expected every node once, found node " + std::to_string(id) + " again");
}

void FrdFileReader::FlushNodes()
{
  if (!batch_.IsEmpty()) sink_.OnNodes(batch_.Ids(), batch_.Values());
  batch_.Clear();
}

std::size_t FrdFileReader::ReadTextNodes(int count)
{
  constexpr const char* kRow  = "a node row ' -1' or the end of the nodes ' -3'";
  constexpr std::size_t kSize = kValueFirst - 1 + 3 * kFrdValueWidth;
  batch_.Start(3, count);
  std::size_t found = 0;
  for (;; ++found) {
    NextLine(kRow);
    if (!StartsWith(" -1")) break;
    CheckLineSize(kSize, "a node row");
    const int id = ReadId("a node id");
    ReadTextValues(batch_.Next());
    AddNode(id);
    batch_.Add(id);
    if (batch_.IsFull()) FlushNodes();
  }
  if (WithoutTrailingBlanks(file_.Text()) != " -3") file_.FailExpected(kRow);
  FlushNodes();
  return found;
}

void FrdFileReader::ReadBinaryNodes(int count, Encoding encoding)
{
  const std::size_t size = 4 + 3 * BytesOfValue(encoding);
  if (file_.Remaining() / size < static_cast<std::size_t>(count)) {
    file_.Fail("expected " + std::to_string(count) + " nodes of " + std::to_string(size) +
               " bytes behind this line, found " + std::to_string(file_.Remaining()) + " bytes");
  }
  batch_.Start(3, count);
  for (int i = 0; i < count; ++i) {
    const char* bytes = file_.Peek(size);
    if (bytes == nullptr) file_.FailAtEnd("more nodes");
    const int id = LoadInt(bytes);
    if (id < 1) file_.Fail("expected a node id from 1 on, found " + std::to_string(id));
    LoadValues(bytes + 4, encoding, batch_.Next());
    file_.Take(size);
    AddNode(id);
    batch_.Add(id);
    if (batch_.IsFull()) FlushNodes();
  }
  FlushNodes();
}

// Reads the values of one row from column 14 of the current line and of the ' -2' lines that go on with it.
void FrdFileReader::ReadTextValues(std::span<double> values)
{
  for (std::size_t first = 0;;) {
    const std::size_t count = std::min(kLineValues, values.size() - first);
    const char*       text  = file_.Text().data() + (kValueFirst - 1);
    for (std::size_t i = 0; i < count; ++i) {
      if (!ReadScientific<5>(text + i * kFrdValueWidth, values[first + i])) {
        file_.FailColumn("a number", kValueFirst + i * kFrdValueWidth, kFrdValueWidth);
      }
    }
    first += count;
    if (first == values.size()) return;

    constexpr const char* kMore = "a line ' -2' with more values";
    NextLine(kMore);
    if (!StartsWith(" -2")) file_.FailExpected(kMore);
    CheckLineSize(kValueFirst - 1 + kFrdValueWidth * std::min(kLineValues, values.size() - first), kMore);
  }
}

void FrdFileReader::ReadElements()
{
  ReadCount();  // no more than a hint: a composite shell counts as one element and is written as one per ply
  if (ReadEncoding() == Encoding::Text) {
    ReadTextElements();
  } else {
    ReadBinaryElements();
  }
  FlushElements();
}

void FrdFileReader::ReadTextElements()
{
  constexpr const char* kRow  = "an element row ' -1' or the end of the elements ' -3'";
  constexpr const char* kMore = "a line ' -2' with nodes";
  for (;;) {
    NextLine(kRow);
    if (!StartsWith(" -1")) break;
    CheckLineSize(28, "an element row");
    const int id   = ReadId("an element id");
    const int type = file_.GetInteger(14, 5);
    file_.GetInteger(19, 5);
    const int material = file_.GetInteger(24, 5);
    if (type < 1 || type >= static_cast<int>(kNodesOfType.size())) {
      file_.Fail("expected an element type from 1 to 12, found " + std::to_string(type));
    }
    std::array<int, kMaxNodes> nodes{};
    const std::size_t          numNodes = kNodesOfType[static_cast<std::size_t>(type)];
    for (std::size_t i = 0; i < numNodes; ++i) {
      const std::size_t place = i % kLineNodes;
      if (place == 0) {
        NextLine(kMore);
        if (!StartsWith(" -2")) file_.FailExpected(kMore);
        CheckLineSize(kIdFirst - 1 + kFrdIdWidth * std::min(kLineNodes, numNodes - i), kMore);
      }
      nodes[i] = file_.GetInteger(kIdFirst + place * kFrdIdWidth, kFrdIdWidth);
    }
    AddElement(id, type, material, {nodes.data(), numNodes});
  }
  if (WithoutTrailingBlanks(file_.Text()) != " -3") file_.FailExpected(kRow);
}

// Elements go on as long as a type code stands where one is due: the bytes of a text line never read as one.
void FrdFileReader::ReadBinaryElements()
{
  constexpr std::size_t kHead = 16;
  for (;;) {
    const char* head = file_.Peek(8);
    if (head == nullptr) return;
    const int id   = LoadInt(head);
    const int type = LoadInt(head + 4);
    if (type < 1 || type >= static_cast<int>(kNodesOfType.size())) {
      const std::string_view key(head, 6);
      if (key == "    1P" || key == "    1U" || key == "    2C" || key == "    3C" || key == "  100C" ||
          key.substr(0, 5) == " 9999")
      {
        return;
      }
      file_.Fail("expected an element type from 1 to 12 or a text line behind this block, found " +
                 std::to_string(type));
    }
    const std::size_t numNodes = kNodesOfType[static_cast<std::size_t>(type)];
    const std::size_t size     = kHead + 4 * numNodes;
    const char*       bytes    = file_.Peek(size);
    if (bytes == nullptr) {
      file_.Fail("expected an element of " + std::to_string(size) + " bytes in this block, found " +
                 std::to_string(file_.Remaining()));
    }
    if (id < 1) file_.Fail("expected an element id from 1 on, found " + std::to_string(id));
    std::array<int, kMaxNodes> nodes{};
    for (std::size_t i = 0; i < numNodes; ++i) nodes[i] = LoadInt(bytes + kHead + 4 * i);
    const int material = LoadInt(bytes + 12);
    file_.Take(size);
    AddElement(id, type, material, {nodes.data(), numNodes});
  }
}

void FrdFileReader::AddElement(int id, int type, int material, std::span<const int> nodes)
{
  for (const int node : nodes) {
    if (!nodes_.Contains(node)) {
      file_.Fail("expected nodes of the mesh in element " + std::to_string(id) + ", found node " +
                 std::to_string(node));
    }
  }
  const std::size_t first = elementNodes_.size();
  elementNodes_.insert(elementNodes_.end(), nodes.begin(), nodes.end());
  const std::span<int> own(elementNodes_.data() + first, nodes.size());
  ToDeckOrder(type, own);
  elements_.push_back({id, type, material, own});
  if (elements_.size() == kFrdBatchRows) FlushElements();
}

void FrdFileReader::FlushElements()
{
  if (!elements_.empty()) sink_.OnElements(elements_);
  elements_.clear();
  elementNodes_.clear();
}

void FrdFileReader::ReadDataset()
{
  dataset_.line           = file_.Line();
  dataset_.value          = file_.GetDouble(13, 12);
  const int count         = ReadCount();
  dataset_.kind           = file_.GetInteger(57, 2);
  dataset_.outputNumber   = file_.GetInteger(59, 5);
  const Encoding encoding = ReadEncoding();
  ReadComponents();

  const bool isWanted = sink_.OnDatasetBegin(dataset_) && !jumps_;
  if (encoding == Encoding::Text) {
    if (jumps_ && JumpTextRows(count)) return FinishDataset();
    const std::size_t found = isWanted ? ReadTextRows(count) : PassTextRows();
    if (found != static_cast<std::size_t>(count)) {
      file_.Fail("expected the " + std::to_string(count) + " rows that line " + std::to_string(dataset_.line) +
                 " announces, found " + std::to_string(found));
    }
  } else if (isWanted) {
    ReadBinaryRows(count, encoding);
  } else {
    PassBinaryRows(count, encoding);
  }
  FinishDataset();
}

void FrdFileReader::FinishDataset()
{
  sink_.OnDatasetEnd(dataset_);
  dataset_ = FrdDataset();
}

// Reads the ' -4' line and the ' -5' lines behind it.
void FrdFileReader::ReadComponents()
{
  constexpr const char* kName      = "the name of a data set, ' -4'";
  constexpr const char* kComponent = "a component, ' -5'";
  NextLine(kName);
  if (!StartsWith(" -4")) file_.FailExpected(kName);
  dataset_.name           = std::string(WithoutTrailingBlanks(Columns(file_.Text(), 6, 8)));
  const int numComponents = file_.GetInteger(14, 5);
  const int entity        = file_.GetInteger(19, 5);
  if (entity != 1) file_.Fail("expected a data set at nodes, type 1, found type " + std::to_string(entity));

  dataset_.components.clear();
  for (int i = 0; i < numComponents; ++i) {
    NextLine(kComponent);
    if (!StartsWith(" -5")) file_.FailExpected(kComponent);
    // A component that a viewer computes, "ALL", is announced with a 1 here and has no values in the rows.
    const std::string_view column   = WithoutTrailingBlanks(Columns(file_.Text(), 34, 5));
    int                    computed = 0;
    if (!column.empty()) computed = file_.GetInteger(34, 5);
    if (computed == 0) {
      dataset_.components.emplace_back(WithoutTrailingBlanks(Columns(file_.Text(), 6, 8)));
    } else if (computed != 1) {
      file_.Fail("expected 0 (stored) or 1 (computed) for a component, found " + std::to_string(computed));
    }
  }
  if (dataset_.components.empty()) file_.Fail("expected at least one component with values, found none");
}

void FrdFileReader::FlushRows(std::int64_t line)
{
  if (!batch_.IsEmpty()) sink_.OnRows(dataset_, batch_.Ids(), batch_.Values(), line);
  batch_.Clear();
}

// Goes to a line where the last one of a data set is expected.
// @param position of that line
// @param line     number of the line before it
// @return whether it stands there
bool FrdFileReader::IsEndOfRows(std::uint64_t position, std::int64_t line)
{
  // With the end of the line before it: a number may look like the last line from somewhere within.
  file_.GoTo(position - 1, line - 1);
  return file_.NextLine() && file_.Text().empty() && file_.NextLine() && WithoutTrailingBlanks(file_.Text()) == " -3";
}

// Goes to the last line of a data set where rows of their width lead there.
// @return false, and no step is made, where they do not
bool FrdFileReader::JumpTextRows(int count)
{
  const std::uint64_t position  = file_.Position();
  const std::int64_t  line      = file_.Line();
  const std::size_t   numValues = dataset_.components.size();
  const std::size_t   numLines  = (numValues + kLineValues - 1) / kLineValues;
  const auto          numRows   = static_cast<std::uint64_t>(count);
  for (std::size_t lineEnd = 1; lineEnd <= 2; ++lineEnd) {
    const std::uint64_t bytes = numRows * (numLines * (kValueFirst - 1 + lineEnd) + numValues * kFrdValueWidth);
    if (file_.Remaining() <= bytes) continue;
    if (IsEndOfRows(position + bytes, line + static_cast<std::int64_t>(numRows * numLines))) return true;
    file_.GoTo(position, line);
  }
  return false;
}

// Counts rows that nobody wants.
std::size_t FrdFileReader::PassTextRows()
{
  std::size_t found = 0;
  for (;;) {
    NextLine(kResultRow);
    if (StartsWith(" -1")) {
      ++found;
    } else if (!StartsWith(" -2")) {
      break;
    }
  }
  if (WithoutTrailingBlanks(file_.Text()) != " -3") file_.FailExpected(kResultRow);
  return found;
}

std::size_t FrdFileReader::ReadTextRows(int count)
{
  const std::size_t numValues = dataset_.components.size();
  const std::size_t size      = kValueFirst - 1 + kFrdValueWidth * std::min(kLineValues, numValues);
  batch_.Start(numValues, count);
  std::int64_t line  = 0;
  std::size_t  found = 0;
  for (;; ++found) {
    NextLine(kResultRow);
    if (!StartsWith(" -1")) break;
    CheckLineSize(size, "a row");
    if (batch_.IsEmpty()) line = file_.Line();
    const int id = file_.GetInteger(kIdFirst, kFrdIdWidth);
    if (!IsNode(id)) file_.Fail("expected a node of the mesh, found node " + std::to_string(id));
    ReadTextValues(batch_.Next());
    batch_.Add(id);
    if (batch_.IsFull()) FlushRows(line);
  }
  if (WithoutTrailingBlanks(file_.Text()) != " -3") file_.FailExpected(kResultRow);
  FlushRows(line);
  return found;
}

void FrdFileReader::CheckBinaryRows(int count, Encoding encoding) const
{
  const std::size_t size = 4 + dataset_.components.size() * BytesOfValue(encoding);
  if (file_.Remaining() / size < static_cast<std::size_t>(count)) {
    file_.Fail("expected " + std::to_string(count) + " rows of " + std::to_string(size) +
               " bytes behind this line, found " + std::to_string(file_.Remaining()) + " bytes");
  }
}

void FrdFileReader::PassBinaryRows(int count, Encoding encoding)
{
  CheckBinaryRows(count, encoding);
  const std::size_t size = 4 + dataset_.components.size() * BytesOfValue(encoding);
  if (jumps_) return file_.GoTo(file_.Position() + static_cast<std::uint64_t>(count) * size, file_.Line());
  for (int i = 0; i < count; ++i) {
    if (file_.Peek(size) == nullptr) file_.FailAtEnd("more rows");
    file_.Take(size);
  }
}

void FrdFileReader::ReadBinaryRows(int count, Encoding encoding)
{
  CheckBinaryRows(count, encoding);
  const std::size_t numValues = dataset_.components.size();
  const std::size_t size      = 4 + numValues * BytesOfValue(encoding);
  batch_.Start(numValues, count);
  for (int i = 0; i < count; ++i) {
    const char* bytes = file_.Peek(size);
    if (bytes == nullptr) file_.FailAtEnd("more rows");
    const int id = LoadInt(bytes);
    if (!IsNode(id)) {
      file_.Fail("expected a node of the mesh in row " + std::to_string(i + 1) + " behind this line, found node " +
                 std::to_string(id));
    }
    LoadValues(bytes + 4, encoding, batch_.Next());
    file_.Take(size);
    batch_.Add(id);
    if (batch_.IsFull()) FlushRows(0);
  }
  FlushRows(0);
}

}  // namespace

void ReadFrd(std::istream& in, const std::string& name, FrdSink& sink, const ReadProgress& progress)
{
  FrdFileReader(in, name, sink, progress).Read();
}

void ReadFrd(const std::filesystem::path& path, FrdSink& sink, const ReadProgress& progress)
{
  std::ifstream in = OpenLineFile(path);
  ReadFrd(in, path.string(), sink, progress);
}

std::vector<FrdMark> ReadFrdHeads(const std::filesystem::path& path, FrdSink& sink, const ReadProgress& progress)
{
  std::ifstream in = OpenLineFile(path);
  return FrdFileReader(in, path.string(), sink, progress).ReadHeads();
}

void ReadFrdDataset(const std::filesystem::path& path, const FrdMark& mark, FrdSink& sink, const ReadProgress& progress)
{
  std::ifstream in = OpenLineFile(path);
  FrdFileReader(in, path.string(), sink, progress).ReadOne(mark);
}

}  // namespace quilon::calculix
