#include "calculix/deck/DeckModelReader.h"

#include <algorithm>
#include <fstream>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "calculix/deck/DeckKeyword.h"
#include "QuilonUtilities/getline_dosunix.h"
#include "text/ColumnText.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kLongestName  = 80;
constexpr std::size_t kMostMessages = 10000;

bool BeginsLikeInteger(std::string_view field) noexcept
{
  return !field.empty() &&
         (field.front() == '+' || field.front() == '-' || (field.front() >= '0' && field.front() <= '9'));
}

std::string Position(const std::array<double, 3>& p)
{
  return "(" + FormatNumber(p[0]) + ", " + FormatNumber(p[1]) + ", " + FormatNumber(p[2]) + ")";
}

bool IsBefore(const DeckPlace& a, const DeckPlace& b) noexcept
{
  return a.file != b.file ? a.file < b.file : a.line < b.line;
}

/// Elements of these can do without a section of their own.
bool NeedsSection(const DeckElementType& type) noexcept
{
  return type.dimension > 0 && std::string_view(type.name) != "D";
}

/// Fluid networks end in elements with a node 0, which means none.
bool MayHaveNode0(const DeckElementType& type) noexcept { return std::string_view(type.name) == "D"; }

std::string NameOf(int id, const DeckElement& element)
{
  return "element " + std::to_string(id) + " (" + element.type->name + ")";
}

/// @return a node that is there more than once, 0 when there is none
int RepeatedIn(std::span<const int> nodes)
{
  constexpr std::size_t kFew = 32;  // more than any type of the solver's own has
  if (nodes.size() > kFew) {
    std::vector<int> sorted(nodes.begin(), nodes.end());
    std::sort(sorted.begin(), sorted.end());
    const auto repeated = std::adjacent_find(sorted.begin(), sorted.end());
    return repeated == sorted.end() ? 0 : *repeated;
  }
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const auto rest = nodes.subspan(i + 1);
    if (nodes[i] != 0 && std::find(rest.begin(), rest.end(), nodes[i]) != rest.end()) return nodes[i];
  }
  return 0;
}

}  // namespace

DeckModelReader::DeckModelReader(const std::filesystem::path& deck, const DeckOptions& options, DeckModel& target,
                                 std::vector<DeckMessage>* messages)
    : DeckReader(deck, options),
      target_(target),
      messages_(messages),
      references_(model_, [this](DeckMessage::Severity severity, const DeckPlace& place,
                                 std::string text) { Report(severity, place, std::move(text)); }),
      lint_(model_, [this](DeckMessage::Severity severity, const DeckPlace& place, std::string text) {
        Report(severity, place, std::move(text));
      })
{}

void DeckModelReader::Report(DeckMessage::Severity severity, const DeckPlace& place, std::string text)
{
  if (messages_ == nullptr) {
    if (severity == DeckMessage::Error) FailAt(place, text);
    return;
  }
  // Each kind has its own limit: an error is not lost behind warnings, and warnings alone stay warnings.
  std::size_t& count = severity == DeckMessage::Error ? errors_ : warnings_;
  if (count > kMostMessages) return;
  if (++count > kMostMessages)
    text = severity == DeckMessage::Error ? "more is wrong than can be listed"
                                          : "there are more warnings than can be listed";
  messages_->push_back({severity, place, std::move(text), {}});
}

void DeckModelReader::ReadModel()
{
  Walk();
  EndCard();
  if (!hasCards_ && !hasBadInclude_) Error({0, 1}, "the deck is empty: it has no keyword card");
  if (!isInStep_) return;
  // The solver never computes such a step; one without a card may have been meant to be none.
  const auto severity = cardsInStep_ == 0 ? DeckMessage::Warning : DeckMessage::Error;
  Report(severity, model_.steps.back().place, "the step has no *END STEP");
}

void DeckModelReader::CheckModel()
{
  if (!isRestart_) {
    CheckElements();
    CheckSets(nodeSets_, true);
    CheckSets(elementSets_, false);
    CheckSections();
    references_.Check();
    if (messages_ != nullptr) lint_.Check();
  }
  if (messages_ != nullptr) CompleteMessages();
}

void DeckModelReader::ConvertModel()
{
  model_.files = GetFiles();
  target_      = std::move(model_);
}

/// Orders the messages and reads their lines, which are not kept while there is nothing to say about them.
void DeckModelReader::CompleteMessages()
{
  std::stable_sort(messages_->begin(), messages_->end(),
                   [](const DeckMessage& a, const DeckMessage& b) { return IsBefore(a.place, b.place); });
  auto message = messages_->begin();
  while (message != messages_->end()) {
    const std::uint32_t file = message->place.file;
    const auto&         path = GetFiles()[file].path;
    std::ifstream       in;
    // What came through a pipe is gone, and to open it again would be to wait for another writer.
    if (std::error_code error; std::filesystem::is_regular_file(path, error)) in.open(path, std::ios::binary);
    std::string  text;
    std::int32_t number = 0;
    for (; message != messages_->end() && message->place.file == file; ++message) {
      while (number < message->place.line && getline_dosunix(in, text)) ++number;
      if (number == message->place.line) message->line = text;
    }
  }
}

void DeckModelReader::OnLine(const DeckLine& line)
{
  // Blanks alone behind the split are a blank line.
  if (line.text.size() > kLongestDeckLine &&
      line.text.find_first_not_of(" \t", kLongestDeckLine) != std::string_view::npos)
    Error(line.place, "the line has " + std::to_string(line.text.size()) +
                          " characters, and the solver splits lines of more than " + std::to_string(kLongestDeckLine));
  switch (line.kind) {
    case DeckLineKind::Data:
      if (onData_ != nullptr) (this->*onData_)(line);
      if (messages_ != nullptr) lint_.OnData(line);
      ++dataLines_;
      break;
    case DeckLineKind::Card:
      OnCard(line);
      break;
    case DeckLineKind::Blank:
    case DeckLineKind::Comment:
    case DeckLineKind::Include:
      break;
  }
}

void DeckModelReader::OnBadInclude(const DeckLine& line, const std::string& text)
{
  hasBadInclude_ = true;
  Error(line.place, text);
}

void DeckModelReader::OnDoubtfulInclude(const DeckLine& line, const std::string& text) { Warn(line.place, text); }

void DeckModelReader::OnCard(const DeckLine& line)
{
  EndCard();
  card_      = ParseDeckCard(line.text);
  cardPlace_ = line.place;
  onData_    = nullptr;
  dataLines_ = 0;
  sets_      = nullptr;
  set_       = kNone;
  type_      = nullptr;

  hasCards_ = true;
  ++cardsInStep_;
  const DeckKeyword* keyword = FindDeckKeyword(card_.keyword);
  if (keyword == nullptr) return;  // reported with its data, in EndCard()
  if (card_.keyword != keyword->name) {
    Warn(line.place, "keyword *" + Shown(card_.keyword) + " is *" + keyword->name + " to the solver");
    card_.keyword = keyword->name;
  }
  references_.OnCard(*keyword, card_, line.place);
  constraints_.OnCard(*keyword, card_, line.place, isInStep_);
  if (messages_ != nullptr) lint_.OnCard(*keyword, card_, line.place, isInStep_);
  onData_ = &DeckModelReader::OnReferringData;
  if ((keyword->role == DeckKeyword::Procedure || keyword->role == DeckKeyword::Load) && !isInStep_)
    Error(line.place, "*" + card_.keyword + " belongs between *STEP and *END STEP");
  if (card_.keyword == "RESTART" && card_.Find("READ") != nullptr) isRestart_ = true;
  switch (keyword->defines) {
    case DeckKeyword::Nodes:
      return BeginNodes(line.place);
    case DeckKeyword::Elements:
      return BeginElements(line.place);
    case DeckKeyword::ElementType:
      return BeginUserElement(line.place);
    case DeckKeyword::NodeSet:
      return BeginSet(nodeSets_, "NSET", line.place);
    case DeckKeyword::ElementSet:
      return BeginSet(elementSets_, "ELSET", line.place);
    case DeckKeyword::Material:
      return BeginMaterial(line.place);
    case DeckKeyword::Orientation:
      return BeginOrientation(line.place);
    case DeckKeyword::Step:
      return BeginStep(line.place);
    case DeckKeyword::EndOfStep:
      return EndStep(line.place);
    case DeckKeyword::Nothing:
    case DeckKeyword::Surface:
    case DeckKeyword::Amplitude:
    case DeckKeyword::Interaction:
    case DeckKeyword::TimePoints:
    case DeckKeyword::Contact:
    case DeckKeyword::Tie:
    case DeckKeyword::MultiPoint:
    case DeckKeyword::Coupling:
    case DeckKeyword::RigidBody:
    case DeckKeyword::PreTension:
    case DeckKeyword::ModelChange:
      break;
  }
  if (keyword->role == DeckKeyword::Section) return BeginSection(line.place);
  // A step may have damping of its own, under the keyword of a material's.
  if (keyword->role == DeckKeyword::Property && !isInStep_) return BeginProperty(line.place);
  if (keyword->role == DeckKeyword::Procedure && isInStep_) model_.steps.back().procedure = keyword->name;
}

void DeckModelReader::EndCard()
{
  lint_.EndCard();
  if (isElementOpen_) {
    const std::size_t found = model_.elementNodes.size() - element_.first;
    model_.elementNodes.resize(element_.first);
    isElementOpen_ = false;
    Error(element_.place, "element " + std::to_string(elementId_) + " has " + Counted(found, "node") + ", expected " +
                              std::to_string(element_.type->numNodes) + " of a " + element_.type->name);
  }
  if (cardPlace_.line != 0 && FindDeckKeyword(card_.keyword) == nullptr)
    Warn(cardPlace_,
         "unknown keyword *" + Shown(card_.keyword) +
             (dataLines_ == 0 ? "" : ", " + Counted(static_cast<std::size_t>(dataLines_), "data line") + " skipped") +
             SuggestDeckKeyword(card_.keyword));
  card_      = {};
  cardPlace_ = {};
}

void DeckModelReader::BeginNodes(const DeckPlace& place)
{
  onData_ = &DeckModelReader::OnNodeData;
  if (const DeckParameter* set = card_.Find("NSET")) set_ = SetOf(nodeSets_, set->value, place);
}

void DeckModelReader::BeginElements(const DeckPlace& place)
{
  onData_ = &DeckModelReader::OnElementData;
  if (const DeckParameter* set = card_.Find("ELSET")) set_ = SetOf(elementSets_, set->value, place);
  const std::string_view name = card_.ValueOf("TYPE");
  if (name.empty()) return Error(place, "expected the type of the elements, TYPE=");
  type_ = FindDeckElementType(name);
  for (const auto& type : model_.userElementTypes)
    if (type->name == name) type_ = &type->type;
  if (type_ == nullptr) return Error(place, "unknown element type " + Quoted(name));
  mayHaveNode0_ = MayHaveNode0(*type_);
}

void DeckModelReader::BeginSet(Sets& sets, const char* parameter, const DeckPlace& place)
{
  const std::string_view name = card_.ValueOf(parameter);
  if (name.empty()) return Error(place, std::string("expected the name of the set, ") + parameter + "=");
  sets_   = &sets;
  set_    = SetOf(sets, name, place);
  onData_ = card_.Find("GENERATE") != nullptr ? &DeckModelReader::OnGenerateData : &DeckModelReader::OnSetData;
}

void DeckModelReader::BeginMaterial(const DeckPlace& place)
{
  const std::string_view name = card_.ValueOf("NAME");
  if (name.empty()) return Error(place, "expected the name of the material, NAME=");
  CheckLength(name, "a material", place);
  const auto [former, isNew] = materials_.try_emplace(std::string(name), model_.materials.size());
  if (!isNew)
    Error(place, "material " + Quoted(name) + " is there already, at " +
                     DescribeDeckPlace(GetFiles(), model_.materials[former->second].place) +
                     ", and the solver uses that one");
  model_.materials.push_back({std::string(name), {}, place});
}

void DeckModelReader::BeginProperty(const DeckPlace& place)
{
  if (model_.materials.empty()) return Error(place, "*" + card_.keyword + " belongs behind a *MATERIAL");
  model_.materials.back().properties.push_back({card_.keyword, std::string(card_.ValueOf("TYPE")), {}, place});
  onData_ = &DeckModelReader::OnPropertyData;
}

void DeckModelReader::BeginOrientation(const DeckPlace& place)
{
  const std::string_view name = card_.ValueOf("NAME");
  if (name.empty()) return Error(place, "expected the name of the orientation, NAME=");
  CheckLength(name, "an orientation", place);
  const auto [former, isNew] = orientations_.try_emplace(std::string(name), model_.orientations.size());
  if (!isNew)
    Error(place, "orientation " + Quoted(name) + " is there already, at " +
                     DescribeDeckPlace(GetFiles(), model_.orientations[former->second].place));
  DeckOrientation orientation;
  orientation.name  = name;
  orientation.place = place;
  if (const DeckParameter* system = card_.Find("SYSTEM")) {
    if (system->value == "CYLINDRICAL") {
      orientation.system = DeckOrientation::Cylindrical;
    } else if (system->value != "RECTANGULAR") {
      Error(place, "expected SYSTEM=RECTANGULAR or SYSTEM=CYLINDRICAL, found " + Quoted(system->value));
    }
  }
  model_.orientations.push_back(std::move(orientation));
  onData_ = &DeckModelReader::OnOrientationData;
}

void DeckModelReader::BeginSection(const DeckPlace& place)
{
  constexpr std::string_view kEnd = "SECTION";
  DeckSection                section;
  section.kind        = card_.keyword.substr(0, card_.keyword.size() - kEnd.size());
  section.elementSet  = card_.ValueOf("ELSET");
  section.material    = card_.ValueOf("MATERIAL");
  section.orientation = card_.ValueOf("ORIENTATION");
  section.isComposite = section.kind == "SHELL" && card_.Find("COMPOSITE") != nullptr;  // shells alone have layers
  section.place       = place;
  if (section.isComposite) onData_ = &DeckModelReader::OnLayerData;
  model_.sections.push_back(std::move(section));
}

void DeckModelReader::BeginUserElement(const DeckPlace& place)
{
  const std::string_view name  = card_.ValueOf("TYPE");
  int                    nodes = 0;
  if (name.empty()) return Error(place, "expected the name of the element type, TYPE=");
  if (!ReadDeckInteger(card_.ValueOf("NODES"), nodes) || nodes < 1)
    return Error(place, "expected the number of nodes of an element, NODES=");
  const auto type = std::make_shared<DeckUserElementType>();
  type->name      = name;
  type->type      = {type->name.c_str(), nodes, 0, 0, 0};
  model_.userElementTypes.push_back(type);
}

void DeckModelReader::BeginStep(const DeckPlace& place)
{
  if (isInStep_)
    Error(place, "a step begins inside of the step of " + DescribeDeckPlace(GetFiles(), model_.steps.back().place));
  if (const DeckParameter* nlgeom = card_.Find("NLGEOM")) isNlgeom_ = nlgeom->value != "NO";
  isInStep_    = true;
  cardsInStep_ = 0;
  onData_      = &DeckModelReader::OnStrayData;
  model_.steps.push_back({{}, isNlgeom_, card_.Find("PERTURBATION") != nullptr, place});
}

void DeckModelReader::EndStep(const DeckPlace& place)
{
  if (!isInStep_) Error(place, "no step is to be ended here");
  isInStep_ = false;
  onData_   = &DeckModelReader::OnStrayData;
}

void DeckModelReader::OnReferringData(const DeckLine& line)
{
  references_.OnData(line);
  constraints_.OnData(line.text);
}

void DeckModelReader::OnStrayData(const DeckLine& line)
{
  Warn(line.place, "the line belongs to no card and is skipped");
}

void DeckModelReader::OnNodeData(const DeckLine& line)
{
  DeckFields       fields(line.text);
  std::string_view field;
  int              id = 0;
  fields.Next(field);
  if (!ReadDeckInteger(field, id) || id < 1) return Error(line.place, "expected a node id, found " + Quoted(field));
  DeckNode node;
  node.place = line.place;
  for (double& coordinate : node.position)
    if (fields.Next(field)) coordinate = NumberOr0(field, line, "a coordinate");

  const std::size_t numNodes = model_.nodes.Entries().size();
  const std::size_t position = model_.nodes.FindOrInsert(id);
  if (position < numNodes) {
    const DeckNode&   former = model_.nodes.At(position);
    const std::string where  = DescribeDeckPlace(GetFiles(), former.place);
    if (former.position == node.position) {
      Warn(line.place, "node " + std::to_string(id) + " is there already, at " + where + ", at the same position");
    } else {
      Error(line.place, "node " + std::to_string(id) + " is there already, at " + where +
                            ", at another position: " + Position(former.position) + ", and the later one rules");
    }
  }
  model_.nodes.At(position) = node;
  if (set_ != kNone) Append(nodeSets_, set_, id);
}

void DeckModelReader::OnElementData(const DeckLine& line)
{
  if (type_ == nullptr) return;
  DeckFields       fields(line.text);
  std::string_view field;
  const bool       isFirstLine = !isElementOpen_;
  if (isFirstLine) {
    fields.Next(field);
    if (!ReadDeckInteger(field, elementId_) || elementId_ < 1)
      return Error(line.place, "expected an element id, found " + Quoted(field));
    element_       = {type_, model_.elementNodes.size(), static_cast<std::size_t>(type_->numNodes), line.place};
    isElementOpen_ = true;
  }
  std::size_t surplus = 0;
  while (fields.Next(field)) {
    if (!isElementOpen_) {
      ++surplus;
      continue;
    }
    int        node    = 0;
    const bool isEmpty = mayHaveNode0_ && field.empty();
    if (!isEmpty && (!ReadDeckInteger(field, node) || node < (mayHaveNode0_ ? 0 : 1)))
      Error(line.place, "expected a node id, found " + Quoted(field));
    model_.elementNodes.push_back(node);
    if (model_.elementNodes.size() - element_.first == element_.count) FinishElement();
  }
  if (surplus == 0) return;
  const std::string text = "element " + std::to_string(elementId_) + " is complete with its " +
                           Counted(element_.count, "node") + ", " + std::to_string(surplus) +
                           " more on the line are ignored";
  // On a further line this is the next element, whose nodes are lost.
  if (isFirstLine) {
    Warn(line.place, text);
  } else {
    Error(line.place, text);
  }
}

void DeckModelReader::FinishElement()
{
  isElementOpen_                = false;
  const std::size_t numElements = model_.elements.Entries().size();
  const std::size_t position    = model_.elements.FindOrInsert(elementId_);
  if (position < numElements) {
    model_.elementNodes.resize(element_.first);
    return Error(element_.place, "element " + std::to_string(elementId_) + " is there already, at " +
                                     DescribeDeckPlace(GetFiles(), model_.elements.At(position).place));
  }
  model_.elements.At(position) = element_;
  if (set_ != kNone) Append(elementSets_, set_, elementId_);
}

void DeckModelReader::OnSetData(const DeckLine& line)
{
  DeckFields       fields(line.text);
  std::string_view field;
  while (fields.Next(field)) {
    if (field.empty()) continue;
    int id = 0;
    if (BeginsLikeInteger(field) && ReadDeckInteger(field, id)) {
      if (id < 1) return Error(line.place, "expected an id from 1, found " + Quoted(field));
      if (!HasRoomInSets(1, line.place)) return;
      Append(*sets_, set_, id);
      continue;
    }
    const std::string name = Compact(field);
    const auto        part = sets_->index.find(name);
    if (part == sets_->index.end()) {
      Error(line.place, std::string(sets_->kind) + " set " + Quoted(name) + " is not defined before this line");
      continue;
    }
    const std::vector<int> ids = (*sets_->list)[part->second].ids;  // a copy: a set may name itself
    if (!HasRoomInSets(ids.size(), line.place)) return;
    std::vector<int>& all = (*sets_->list)[set_].ids;
    all.insert(all.end(), ids.begin(), ids.end());
  }
}

void DeckModelReader::OnGenerateData(const DeckLine& line)
{
  DeckFields       fields(line.text);
  std::string_view field;
  int              range[3] = {0, 0, 1};  // first, last, step
  for (int i = 0; i < 3 && fields.Next(field); ++i)
    if (!field.empty() && !ReadDeckInteger(field, range[i]))
      return Error(line.place, "expected first, last and step of a range, found " + Quoted(field));
  const auto [first, last, step] = range;
  if (first < 1) return Error(line.place, "expected an id from 1 to begin a range, found " + std::to_string(first));
  if (step < 1) return Error(line.place, "expected a step from 1, found " + std::to_string(step));
  if (last < first)
    return Warn(line.place, "the range from " + std::to_string(first) + " to " + std::to_string(last) + " is empty");
  const std::size_t count = static_cast<std::size_t>((last - first) / step) + 1;
  if (!HasRoomInSets(count, line.place)) return;
  for (std::size_t i = 0; i < count; ++i) Append(*sets_, set_, first + static_cast<int>(i) * step);
}

void DeckModelReader::OnPropertyData(const DeckLine& line)
{
  DeckFields           fields(line.text);
  std::string_view     field;
  std::vector<double>& values = model_.materials.back().properties.back().values;
  while (fields.Next(field)) values.push_back(NumberOr0(field, line, "a number"));
}

void DeckModelReader::OnOrientationData(const DeckLine& line)
{
  DeckOrientation& orientation = model_.orientations.back();
  DeckFields       fields(line.text);
  std::string_view field;
  if (dataLines_ == 0) {
    for (std::size_t i = 0; i < 6 && fields.Next(field); ++i) {
      double number = 0.0;
      if (i == 0 && !field.empty() && !ReadDeckNumber(field, number))
        return Warn(line.place, "an orientation by the distribution " + Quoted(field) + " is not read");
      number                                                      = NumberOr0(field, line, "a coordinate");
      (i < 3 ? orientation.a : orientation.b)[i % std::size_t{3}] = number;
    }
  } else if (dataLines_ == 1) {
    if (orientation.system == DeckOrientation::Cylindrical)
      return Error(line.place, "a cylindrical system cannot be turned, the solver stops here");
    if (fields.Next(field) && (!ReadDeckInteger(field, orientation.rotationAxis) || orientation.rotationAxis < 1 ||
                               orientation.rotationAxis > 3))
      Error(line.place, "expected the axis of a rotation, 1 to 3, found " + Quoted(field));
    if (fields.Next(field)) orientation.rotationAngle = NumberOr0(field, line, "an angle");
  }
}

void DeckModelReader::OnLayerData(const DeckLine& line)
{
  DeckFields       fields(line.text);
  std::string_view field;
  std::string      material;
  std::string      orientation;
  for (int i = 0; fields.Next(field); ++i) {
    if (i == 2) material = Compact(field);
    if (i == 3) orientation = Compact(field);
  }
  if (material.empty()) Error(line.place, "expected the material of the layer in the third field");
  references_.AddLayer(material, orientation, line.place);
  if (dataLines_ > 0) return;  // the first layer speaks for the section
  DeckSection& section = model_.sections.back();
  if (section.material.empty()) section.material = material;
  if (section.orientation.empty()) section.orientation = orientation;
}

void DeckModelReader::CheckLength(std::string_view name, const char* what, const DeckPlace& place)
{
  if (name.size() > kLongestName)
    Error(place, std::string("the name of ") + what + " has " + std::to_string(name.size()) +
                     " characters, expected at most " + std::to_string(kLongestName));
}

std::size_t DeckModelReader::SetOf(Sets& sets, std::string_view name, const DeckPlace& place)
{
  CheckLength(name, "a set", place);
  const auto [entry, isNew] = sets.index.try_emplace(std::string(name), sets.list->size());
  if (isNew) sets.list->push_back({std::string(name), {}, place});
  return entry->second;
}

bool DeckModelReader::HasRoomInSets(std::size_t count, const DeckPlace& place)
{
  const std::size_t most = GetOptions().mostIdsInSets;
  if (count <= most - idsInSets_) {
    idsInSets_ += count;
    return true;
  }
  Error(place, "the sets have more than " + std::to_string(most) + " ids");
  return false;
}

double DeckModelReader::NumberOr0(std::string_view field, const DeckLine& line, const char* what)
{
  double value = 0.0;
  if (field.empty()) return value;
  if (!ReadDeckNumber(field, value)) {
    Error(line.place, std::string("expected ") + what + ", found " + Quoted(field));
  } else if (IsCutBySolver(field, value)) {
    Error(line.place, "the solver reads the first 20 characters of " + Quoted(field) + ", which is another number");
  }
  return value;
}

void DeckModelReader::CheckElements()
{
  const auto isMissing = [this](int node) {
    return node != 0 && model_.nodes.Find(node) == IdRadixMap<DeckNode>::npos;
  };
  for (const auto& [id, element] : model_.elements.Entries()) {
    const std::span<const int> nodes   = model_.NodesOf(element);
    const auto                 missing = std::find_if(nodes.begin(), nodes.end(), isMissing);
    if (missing != nodes.end())
      Error(element.place, NameOf(id, element) + ": node " + std::to_string(*missing) + " is not defined");
    const int repeated = RepeatedIn(nodes);
    if (repeated != 0)
      Warn(element.place, NameOf(id, element) + " has node " + std::to_string(repeated) + " more than once");
  }
}

void DeckModelReader::CheckSets(const Sets& sets, bool areNodes)
{
  for (const DeckSet& set : *sets.list) {
    const auto isMissing = [this, areNodes](int id) {
      return areNodes ? model_.FindNode(id) == nullptr : model_.FindElement(id) == nullptr;
    };
    const auto missing = std::find_if(set.ids.begin(), set.ids.end(), isMissing);
    if (missing == set.ids.end()) continue;
    const auto count = static_cast<std::size_t>(std::count_if(missing, set.ids.end(), isMissing));
    Warn(set.place, std::string(sets.kind) + " set " + Quoted(set.name) + " has " + Counted(count, "id") + " that no " +
                        sets.kind + " has, the first is " + std::to_string(*missing));
  }
}

void DeckModelReader::CheckSections()
{
  std::vector<bool> hasSection(model_.elements.Entries().size(), false);
  for (const DeckSection& section : model_.sections) {
    const auto set = elementSets_.index.find(section.elementSet);
    if (set != elementSets_.index.end()) {
      for (const int id : model_.elementSets[set->second].ids) {
        const std::size_t position = model_.elements.Find(id);
        if (position != IdRadixMap<DeckElement>::npos) hasSection[position] = true;
      }
    } else if (section.elementSet.empty()) {
      Error(section.place, "expected the element set of the section, ELSET=");
    } else {
      Error(section.place, "element set " + Quoted(section.elementSet) + " is not defined");
    }
    // Layers have materials of their own.
    if (section.material.empty() && !section.isComposite)
      Error(section.place, "expected the material of the section, MATERIAL=");
  }
  const auto  elements = model_.elements.Entries();
  std::size_t count    = 0;
  std::size_t first    = 0;
  for (std::size_t i = elements.size(); i-- > 0;)
    if (!hasSection[i] && NeedsSection(*elements[i].second.type)) {
      ++count;
      first = i;
    }
  if (count > 0)
    Error(elements[first].second.place,
          Counted(count, "element") + " without a section, the first is " + std::to_string(elements[first].first));
}

}  // namespace quilon::calculix
