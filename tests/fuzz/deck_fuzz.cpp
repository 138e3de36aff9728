// Any bytes as a deck and two files beside it: they are read to their end, what is wrong has a place in them, and the
// expanded deck is the same model. A line "%%" ends the deck, the next one the file a.inc; the rest is b.inc.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "calculix/deck/DeckFiles.h"
#include "calculix/deck/ReadDeckModel.h"
#include "QuilonUtilities/FED_Failure.h"
#include "TempFolder.h"

namespace {

using namespace quilon::calculix;

// Each of the files may include another for every line of its own.
constexpr std::size_t kMostBytes = 4096;

void Require(bool holds)
{
  if (!holds) std::abort();
}

void WriteFile(const std::filesystem::path& path, std::string_view text)
{
  std::ofstream(path, std::ios::binary) << text;
}

void CheckMessages(const DeckModel& model, const std::vector<DeckMessage>& messages)
{
  for (const DeckMessage& message : messages) {
    Require(message.place.file < model.files.size() && !message.text.empty());
    // A deck without a line is told of at its first.
    const std::int64_t lines = std::max<std::int64_t>(1, model.files[message.place.file].lines);
    Require(message.place.line >= 1 && message.place.line <= lines);
  }
}

void CheckModel(const DeckModel& model)
{
  for (const auto& [id, element] : model.elements.Entries()) {
    Require(id > 0 && element.type != nullptr);
    Require(element.first + element.count <= model.elementNodes.size());
    Require(model.NodesOf(element).size() == static_cast<std::size_t>(element.type->numNodes));
  }
  for (const auto* sets : {&model.nodeSets, &model.elementSets})
    for (const DeckSet& set : *sets)
      Require(std::all_of(set.ids.begin(), set.ids.end(), [](int id) { return id > 0; }));
}

std::vector<std::size_t> SizesOf(const DeckModel& model)
{
  std::vector<std::size_t> sizes = {
      model.nodes.Entries().size(), model.elements.Entries().size(), model.elementNodes.size(), model.materials.size(),
      model.orientations.size(),    model.sections.size(),           model.steps.size()};
  for (const auto* sets : {&model.nodeSets, &model.elementSets})
    for (const DeckSet& set : *sets) sizes.push_back(set.ids.size());
  return sizes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
  static const quilon_test::TempFolder folder;

  std::string_view rest(reinterpret_cast<const char*>(data), std::min(size, kMostBytes));
  for (const char* name : {"deck.inp", "a.inc", "b.inc"}) {
    const std::size_t end = rest.find("\n%%\n");
    WriteFile(folder / name, rest.substr(0, end));
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 4);
  }
  DeckOptions options;
  options.mostIdsInSets = 10000;
  std::vector<DeckMessage> messages;
  const DeckModel          model = ReadDeckModel(folder / "deck.inp", options, messages);
  CheckMessages(model, messages);
  CheckModel(model);

  const bool hasErrors = std::any_of(messages.begin(), messages.end(),
                                     [](const DeckMessage& message) { return message.severity == DeckMessage::Error; });
  try {
    // Without a list the deck is not looked through for what the solver would stop at.
    ReadDeckModel(folder / "deck.inp", options);
  } catch (const FED_Failure&) {
    Require(hasErrors);
  }

  std::string expanded;
  try {
    ExpandDeck(folder / "deck.inp", options, [&](std::string_view line) { expanded += line; });
  } catch (const FED_Failure&) {
    return 0;  // an include statement that cannot be followed
  }
  WriteFile(folder / "expanded.inp", expanded);
  std::vector<DeckMessage> ofExpanded;
  const DeckModel          whole = ReadDeckModel(folder / "expanded.inp", options, ofExpanded);
  Require(SizesOf(whole) == SizesOf(model));
  return 0;
}
