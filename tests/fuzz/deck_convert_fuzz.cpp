// Any bytes as a deck and two files beside it, converted: what fails leaves nothing behind, and what does not is the
// same deck. The first character chooses the conversions; then as for deck_fuzz: a line "%%" ends the deck, the next
// one the file a.inc; the rest is b.inc.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "calculix/deck/DeckConverter.h"
#include "calculix/deck/DeckFiles.h"
#include "calculix/deck/DeckText.h"
#include "calculix/deck/ReadDeckModel.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace quilon::calculix;

// Each of the files may include another for every line of its own.
constexpr std::size_t kMostBytes = 4096;

constexpr const char* kSources[] = {"deck.inp", "a.inc", "b.inc"};

void Require(bool holds)
{
  if (!holds) std::abort();
}

/// The files of the deck, and nothing of the deck before.
void WriteFiles(const fs::path& folder, std::string_view text)
{
  for (const auto& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
  for (const char* name : kSources) {
    const std::size_t end = text.find("\n%%\n");
    std::ofstream(folder / name, std::ios::binary) << text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 4);
  }
}

std::string ReadText(const fs::path& path)
{
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

/// A last line without a line feed and without anything but the half of a line end is no line to the reader.
std::string WithoutHalfLine(std::string text)
{
  if (text == "\r" || text.ends_with("\n\r")) text.pop_back();
  return text;
}

/// The lines of the whole deck, without the carriage returns at their ends.
std::vector<std::string> LinesOf(const fs::path& deck, const DeckOptions& options, bool hasComments)
{
  std::vector<std::string> lines;
  ExpandDeck(deck, options, [&](std::string_view line) {
    do line.remove_suffix(1);
    while (line.ends_with('\r'));
    if (hasComments || KindOfDeckLine(line) != DeckLineKind::Comment) lines.emplace_back(line);
  });
  return lines;
}

bool IsMultiple(double after, double before, double factor)
{
  // The solver reads twenty characters of a number: of the longest, thirteen digits are left.
  return std::abs(after - before * factor) <= 1e-12 * std::abs(before * factor);
}

void CompareNodes(const DeckModel& before, const DeckModel& after, double factor, int offset)
{
  Require(after.nodes.Entries().size() == before.nodes.Entries().size());
  for (const auto& [id, node] : before.nodes.Entries()) {
    const DeckNode* moved = after.FindNode(id + offset);
    Require(moved != nullptr);
    for (std::size_t k = 0; k < 3; ++k) Require(IsMultiple(moved->position[k], node.position[k], factor));
  }
}

void CompareElements(const DeckModel& before, const DeckModel& after, int offset)
{
  Require(after.elements.Entries().size() == before.elements.Entries().size());
  for (const auto& [id, element] : before.elements.Entries()) {
    const DeckElement* other = after.FindElement(id);
    Require(other != nullptr && std::string_view(other->type->name) == element.type->name);
    const auto nodes = before.NodesOf(element);
    const auto moved = after.NodesOf(*other);
    Require(std::equal(nodes.begin(), nodes.end(), moved.begin(), moved.end(),
                       [offset](int node, int number) { return number == (node == 0 ? 0 : node + offset); }));
  }
}

void CompareSets(const std::vector<DeckSet>& before, const std::vector<DeckSet>& after, int offset)
{
  Require(before.size() == after.size());
  for (std::size_t i = 0; i < before.size(); ++i) {
    Require(before[i].name == after[i].name);
    Require(std::equal(before[i].ids.begin(), before[i].ids.end(), after[i].ids.begin(), after[i].ids.end(),
                       [offset](int id, int number) { return number == id + offset; }));
  }
}

void CompareModels(const DeckModel& before, const DeckModel& after, double factor, int offset)
{
  CompareNodes(before, after, factor, offset);
  CompareElements(before, after, offset);
  CompareSets(before.nodeSets, after.nodeSets, offset);
  CompareSets(before.elementSets, after.elementSets, 0);
  Require(before.materials.size() == after.materials.size() && before.sections.size() == after.sections.size());
  Require(before.orientations.size() == after.orientations.size() && before.steps.size() == after.steps.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon_test::TempFolder folder;
  if (size == 0) return 0;
  WriteFiles(folder.GetPath(), {reinterpret_cast<const char*>(data) + 1, std::min(size - 1, kMostBytes)});

  DeckConversion conversion;
  conversion.suffix        = "c";
  conversion.output        = folder / "out.inp";
  conversion.keepLineEnds  = (data[0] & 1) != 0;
  conversion.stripComments = (data[0] & 2) != 0;
  if ((data[0] & 4) != 0) conversion.lengthExponent = ParseLengthUnits("mm:m");
  if ((data[0] & 8) != 0) conversion.firstNode = 1001;
  DeckOptions options;
  options.mostIdsInSets = 10000;

  const fs::path deck = folder / "deck.inp";
  try {
    ConvertDeck(deck, options, conversion);
  } catch (const FED_Failure&) {
    Require(std::distance(fs::directory_iterator(folder.GetPath()), {}) == std::ssize(kSources));
    return 0;
  }
  if (conversion.lengthExponent == 0 && !conversion.firstNode) {
    const auto lines = LinesOf(deck, options, !conversion.stripComments);
    Require(LinesOf(conversion.output, options, true) == lines);
    const bool isWhole = conversion.keepLineEnds && !conversion.stripComments;
    if (isWhole && ReadDeckFiles(deck, options).size() == 1)
      Require(ReadText(conversion.output) == WithoutHalfLine(ReadText(deck)));
    return 0;
  }
  const DeckModel before = ReadDeckModel(deck, options);
  const DeckModel after  = ReadDeckModel(conversion.output, options);
  int             offset = 0;
  if (conversion.firstNode && !before.nodes.Entries().empty()) {
    int least = before.nodes.Entries().front().first;
    for (const auto& [id, node] : before.nodes.Entries()) least = std::min(least, id);
    offset = *conversion.firstNode - least;
  }
  CompareModels(before, after, std::pow(10.0, conversion.lengthExponent), offset);
  return 0;
}
