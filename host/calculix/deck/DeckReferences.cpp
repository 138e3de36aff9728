#include "calculix/deck/DeckReferences.h"

#include <utility>

#include "calculix/ColumnText.h"

namespace quilon::calculix {
namespace {

using Names = std::unordered_set<std::string>;

constexpr std::size_t kFieldsOfTerm = 3;

Names NamesOf(const std::vector<DeckSet>& sets)
{
  Names names;
  for (const DeckSet& set : sets) names.insert(set.name);
  return names;
}

}  // namespace

DeckReferences::DeckReferences(const DeckModel& model, Report report) : model_(model), report_(std::move(report)) {}

DeckReferences::Target DeckReferences::TargetOfData(const DeckKeyword& keyword, const DeckCard& card)
{
  const std::string_view name = keyword.name;
  // Of a submodel these are driven by another calculation.
  if (card.Find("SUBMODEL") != nullptr) return Target::Nothing;
  if (name == "BOUNDARY" || name == "CLOAD" || name == "CFLUX" || name == "TEMPERATURE" ||
      name == "RETAINEDNODALDOFS" || name == "NODALTHICKNESS")
    return Target::Node;
  if (name == "DLOAD" || name == "DFLUX" || name == "FILM" || name == "RADIATE") return Target::ElementOrSurface;
  if (name == "DSLOAD") return Target::Surface;
  if (name == "CONTACTPAIR" || name == "TIE") return Target::TwoSurfaces;
  if (name == "EQUATION") return card.parameters.empty() ? Target::Terms : Target::Nothing;
  if (name == "SURFACE") return card.ValueOf("TYPE") == "NODE" ? Target::Node : Target::Element;
  if (name == "INITIALCONDITIONS") {
    const std::string_view type = card.ValueOf("TYPE");
    if (card.Find("FILE") != nullptr || card.Find("USER") != nullptr) return Target::Nothing;
    return type == "STRESS" || type == "PLASTICSTRAIN" || type == "SOLUTION" ? Target::Element : Target::Node;
  }
  return Target::Nothing;
}

void DeckReferences::OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place)
{
  const std::string_view name = keyword.name;
  target_                     = TargetOfData(keyword, card);
  fieldsLeft_                 = 0;
  // The solver drops an unknown id from a surface and from initial conditions, and says so.
  severity_ = name == "SURFACE" || name == "INITIALCONDITIONS" ? DeckMessage::Warning : DeckMessage::Error;

  if (name == "SURFACE") surfaces_.emplace(card.ValueOf("NAME"));
  if (name == "AMPLITUDE") amplitudes_.emplace(card.ValueOf("NAME"));
  const auto add = [&](Target target, std::string_view parameter) {
    if (const DeckParameter* found = card.Find(parameter); found != nullptr && !found->value.empty())
      names_.push_back({target, found->value, place});
  };
  if (name != "NODE" && name != "NSET") add(Target::NodeSet, "NSET");
  if (name != "ELEMENT" && name != "ELSET" && keyword.role != DeckKeyword::Section) add(Target::ElementSet, "ELSET");
  // On *STEP the parameter says how loads grow, STEP or RAMP.
  if (name != "AMPLITUDE" && name != "STEP") add(Target::Amplitude, "AMPLITUDE");
  add(Target::Surface, "SURFACE");
  if (name == "RIGIDBODY" || name == "COUPLING") {
    AddNodeParameter(card, "REFNODE", place);
    AddNodeParameter(card, "ROTNODE", place);
  }
}

void DeckReferences::OnData(const DeckLine& line)
{
  if (target_ == Target::Nothing) return;
  if (target_ == Target::Terms) return AddTerms(line);
  DeckFields       fields(line.text);
  std::string_view field;
  if (fields.Next(field)) AddFirstField(field, line.place);
  if (target_ == Target::TwoSurfaces && fields.Next(field)) AddFirstField(field, line.place);
}

void DeckReferences::AddFirstField(std::string_view field, const DeckPlace& place)
{
  if (field.empty()) return;
  const bool mayBeId = target_ == Target::Node || target_ == Target::Element || target_ == Target::ElementOrSurface;
  int        id      = 0;
  if (mayBeId && ReadDeckInteger(field, id)) return AddId(target_ == Target::Node, id, severity_, place);
  Target target = target_;
  if (target == Target::Node) target = Target::NodeSet;
  if (target == Target::Element) target = Target::ElementSet;
  if (target == Target::TwoSurfaces) target = Target::Surface;
  names_.push_back({target, Compact(field), place});
}

void DeckReferences::AddTerms(const DeckLine& line)
{
  DeckFields       fields(line.text);
  std::string_view field;
  if (fieldsLeft_ == 0) {
    int terms = 0;
    fields.Next(field);
    if (!ReadDeckInteger(field, terms) || terms < 1)
      return report_(DeckMessage::Error, line.place,
                     "expected the number of terms of an equation, found '" + Shown(field) + "'");
    fieldsLeft_ = static_cast<std::size_t>(terms) * kFieldsOfTerm;
    fieldsRead_ = 0;
    return;
  }
  while (fieldsLeft_ > 0 && fields.Next(field)) {
    int node = 0;
    if (fieldsRead_ % kFieldsOfTerm == 0 && ReadDeckInteger(field, node))
      AddId(true, node, DeckMessage::Error, line.place);
    ++fieldsRead_;
    --fieldsLeft_;
  }
}

void DeckReferences::AddId(bool isNode, int id, DeckMessage::Severity severity, const DeckPlace& place)
{
  const IdReference reference{isNode, id, severity, place};
  if (!IsThere(reference)) ids_.push_back(reference);
}

void DeckReferences::AddNodeParameter(const DeckCard& card, std::string_view name, const DeckPlace& place)
{
  int id = 0;
  if (ReadDeckInteger(card.ValueOf(name), id)) AddId(true, id, DeckMessage::Error, place);
}

bool DeckReferences::IsThere(const IdReference& reference) const noexcept
{
  return reference.isNode ? model_.FindNode(reference.id) != nullptr : model_.FindElement(reference.id) != nullptr;
}

void DeckReferences::Check()
{
  for (const IdReference& reference : ids_)
    if (!IsThere(reference))
      report_(reference.severity, reference.place,
              std::string(reference.isNode ? "node " : "element ") + std::to_string(reference.id) + " is not defined");

  Names nodeSets    = NamesOf(model_.nodeSets);
  Names elementSets = NamesOf(model_.elementSets);
  nodeSets.insert("NALL");  // the solver's own
  elementSets.insert("EALL");
  for (const NamedReference& reference : names_) {
    const char* kind    = "surface";
    bool        isKnown = false;
    switch (reference.target) {
      case Target::NodeSet:
        kind    = "node set";
        isKnown = nodeSets.count(reference.name) > 0;
        break;
      case Target::ElementSet:
        kind    = "element set";
        isKnown = elementSets.count(reference.name) > 0;
        break;
      case Target::ElementOrSurface:
        kind    = "element set";
        isKnown = elementSets.count(reference.name) > 0 || surfaces_.count(reference.name) > 0;
        break;
      case Target::Amplitude:
        kind    = "amplitude";
        isKnown = amplitudes_.count(reference.name) > 0;
        break;
      default:
        isKnown = surfaces_.count(reference.name) > 0;
        break;
    }
    if (!isKnown)
      report_(DeckMessage::Error, reference.place,
              std::string(kind) + " '" + Shown(reference.name) + "' is not defined");
  }
}

}  // namespace quilon::calculix
