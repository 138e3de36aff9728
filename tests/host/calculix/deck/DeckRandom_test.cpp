// Decks that are written out of plain containers in any spelling that decks allow, and read back.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "calculix/deck/ReadDeckModel.h"
#include "DeckSupport.h"

namespace {

using namespace quilon::calculix;

struct Type
{
  const char* name;
  std::size_t numNodes;
};

constexpr std::array<Type, 5> kTypes = {{{"C3D4", 4}, {"C3D8", 8}, {"C3D10", 10}, {"C3D20R", 20}, {"S4", 4}}};

/// What a deck says, in containers that need no explanation.
struct PlainModel
{
  struct Element
  {
    std::string      type;
    std::vector<int> nodes;
  };

  std::map<int, std::array<double, 3>> nodes;
  std::map<int, Element>               elements;
  std::map<std::string, std::set<int>> nodeSets;
  std::map<std::string, std::set<int>> elementSets;
};

/// Builds a model and writes it card by card; some cards go to included files.
class RandomDeck
{
public:
  RandomDeck(unsigned seed, const quilon_test::DeckFolder& folder) : random_(seed), folder_(folder)
  {
    text_ = "*HEADING\nrandom\n";
    WriteNodes();
    const int cards = Draw(2, 12);
    for (int card = 0; card < cards; ++card) {
      const std::string before = text_;
      text_.clear();
      Comment();
      switch (Draw(0, 4)) {
        case 0:
          WriteNodes();
          break;
        case 1:
        case 2:
          WriteElements();
          break;
        default:
          WriteSet(Draw(0, 1) == 0);
          break;
      }
      text_ = before + (Draw(0, 3) == 0 ? Include(text_) : text_);
    }
  }

  const PlainModel&     GetModel() const { return model_; }
  std::filesystem::path Write() const { return folder_.Write("deck.inp", text_); }

private:
  int Draw(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }

  /// Upper and lower case mean the same, and so do blanks around what commas part.
  std::string Spell(std::string word)
  {
    for (char& c : word)
      if (Draw(0, 1) == 0) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return Blank() + word + Blank();
  }
  std::string Blank() { return std::string(static_cast<std::size_t>(Draw(0, 5) == 0 ? Draw(1, 3) : 0), ' '); }
  std::string End() { return Draw(0, 7) == 0 ? "\r\n" : "\n"; }
  void        Comment()
  {
    if (Draw(0, 2) == 0) text_ += "** a comment, of no meaning: *NODE" + End();
  }

  std::string Include(const std::string& text)
  {
    const std::string name = "part" + std::to_string(++numParts_) + ".inc";
    folder_.Write(name, text);
    return "*INCLUDE, INPUT=" + name + "\n";
  }

  std::string SetName(bool ofElements) { return (ofElements ? "ES" : "NS") + std::to_string(Draw(1, 4)); }

  void WriteNodes()
  {
    std::string inSet = Draw(0, 2) == 0 ? SetName(false) : "";
    text_ += "*NODE" + (inSet.empty() ? "" : ", NSET=" + Spell(inSet)) + End();
    const int count = Draw(20, 40);
    for (int i = 0; i < count; ++i) {
      int id = Draw(1, 400);
      // A node that is defined again would be an error or a warning.
      while (model_.nodes.count(id) != 0) ++id;
      std::array<double, 3>& point = model_.nodes[id];
      text_ += Blank() + std::to_string(id);
      for (double& x : point) {
        x = Draw(-1000, 1000) / 8.0;
        text_ += "," + Blank() + std::to_string(x) + Blank();
      }
      text_ += End();
      if (!inSet.empty()) model_.nodeSets[inSet].insert(id);
    }
  }

  void WriteElements()
  {
    const Type&       type  = kTypes[static_cast<std::size_t>(Draw(0, 4))];
    const std::string inSet = Draw(0, 1) == 0 ? SetName(true) : "";
    text_ += "*ELEMENT, TYPE=" + Spell(type.name) + (inSet.empty() ? "" : ",ELSET=" + Spell(inSet)) + End();
    std::vector<int> ids;
    for (const auto& [id, point] : model_.nodes) ids.push_back(id);
    const int count = Draw(1, 6);
    for (int i = 0; i < count; ++i) {
      int id = Draw(1, 300);
      while (model_.elements.count(id) != 0) ++id;
      std::shuffle(ids.begin(), ids.end(), random_);
      PlainModel::Element& element = model_.elements[id];
      element.type                 = type.name;
      element.nodes.assign(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(type.numNodes));
      text_ += std::to_string(id) + ",";
      for (std::size_t k = 0; k < type.numNodes; ++k) {
        // A line that ends with a comma goes on with the next one; it has sixteen entries at most.
        if (k > 0) text_ += ",";
        if (k == 10 || (k > 0 && k < 10 && Draw(0, 9) == 0)) text_ += End();
        text_ += Blank() + std::to_string(element.nodes[k]);
      }
      text_ += End();
      if (!inSet.empty()) model_.elementSets[inSet].insert(id);
    }
  }

  void WriteSet(bool ofElements)
  {
    auto&             sets = ofElements ? model_.elementSets : model_.nodeSets;
    std::vector<int>  ids;
    const std::string name = SetName(ofElements);
    if (ofElements)
      for (const auto& [id, element] : model_.elements) ids.push_back(id);
    else
      for (const auto& [id, point] : model_.nodes) ids.push_back(id);
    if (ids.empty()) return;
    std::shuffle(ids.begin(), ids.end(), random_);
    ids.resize(std::min<std::size_t>(ids.size(), static_cast<std::size_t>(Draw(1, 30))));
    const std::string other = sets.empty() ? "" : sets.begin()->first;
    text_ += (ofElements ? "*ELSET, ELSET=" : "*NSET, NSET=") + Spell(name);
    if (Draw(0, 2) == 0) {
      // Ranges of one id each: others would name ids that the deck lacks.
      text_ += ", GENERATE" + End();
      for (const int id : ids)
        text_ += std::to_string(id) + "," + std::to_string(id) + (Draw(0, 1) == 0 ? ",1" : "") + End();
    } else {
      text_ += End();
      for (std::size_t i = 0; i < ids.size(); ++i)
        text_ += Blank() + std::to_string(ids[i]) + (i % 16 == 15 || i + 1 == ids.size() ? End() : ",");
      if (!other.empty() && other != name && Draw(0, 1) == 0) {
        text_ += Spell(other) + End();
        ids.insert(ids.end(), sets[other].begin(), sets[other].end());
      }
    }
    sets[name].insert(ids.begin(), ids.end());
  }

  std::mt19937                   random_;
  const quilon_test::DeckFolder& folder_;
  PlainModel                     model_;
  std::string                    text_;
  int                            numParts_ = 0;
};

/// The solver would not run such decks: elements have neither sections nor a shape that holds a volume.
bool IsOfNoConcern(const std::string& message)
{
  return message.find("without a section") != std::string::npos || message.find("inside out") != std::string::npos ||
         message.find("volume") != std::string::npos;
}

void ExpectSets(const std::vector<DeckSet>& found, const std::map<std::string, std::set<int>>& expected)
{
  std::map<std::string, std::set<int>> plain;
  for (const DeckSet& set : found) plain[set.name] = std::set<int>(set.ids.begin(), set.ids.end());
  EXPECT_EQ(plain, expected);
}

void ExpectModel(const DeckModel& found, const PlainModel& expected)
{
  ASSERT_EQ(found.nodes.Entries().size(), expected.nodes.size());
  for (const auto& [id, point] : expected.nodes) {
    const DeckNode* node = found.FindNode(id);
    ASSERT_NE(node, nullptr) << id;
    for (std::size_t k = 0; k < 3; ++k) ASSERT_EQ(node->position[k], point[k]) << id;
  }
  ASSERT_EQ(found.elements.Entries().size(), expected.elements.size());
  for (const auto& [id, plain] : expected.elements) {
    const DeckElement* element = found.FindElement(id);
    ASSERT_NE(element, nullptr) << id;
    EXPECT_EQ(element->type->name, plain.type);
    const auto nodes = found.NodesOf(*element);
    EXPECT_EQ(std::vector<int>(nodes.begin(), nodes.end()), plain.nodes) << id;
  }
  ExpectSets(found.nodeSets, expected.nodeSets);
  ExpectSets(found.elementSets, expected.elementSets);
}

}  // namespace

TEST(DeckRandom, DecksOfAnySpellingSayWhatThePlainModelSays)
{
  const char* const given = std::getenv("QUILON_MODEL_SEEDS");
  const unsigned    last  = given == nullptr ? 100 : static_cast<unsigned>(std::strtoul(given, nullptr, 10));
  for (unsigned seed = 1; seed <= last && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    const quilon_test::DeckFolder folder;
    const RandomDeck              deck(seed, folder);
    std::vector<DeckMessage>      messages;
    const DeckModel               model = ReadDeckModel(deck.Write(), {}, messages);
    for (const DeckMessage& message : messages)
      if (message.severity == DeckMessage::Error && !IsOfNoConcern(message.text))
        ADD_FAILURE() << model.Describe(message.place) << ": " << message.text << " | " << message.line;
    ExpectModel(model, deck.GetModel());
  }
}
