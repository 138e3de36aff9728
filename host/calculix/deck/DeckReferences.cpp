#include "calculix/deck/DeckReferences.h"

#include <utility>

#include "calculix/ColumnText.h"
#include "terminal/Format.h"

namespace quilon::calculix {
namespace {

constexpr std::size_t kFieldsOfTerm = 3;

/// @return the names of sets, materials and the like
template <typename T>
std::unordered_set<std::string> NamesOf(const std::vector<T>& items)
{
  std::unordered_set<std::string> names;
  for (const T& item : items) names.insert(item.name);
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
      name == "RETAINEDNODALDOFS" || name == "NODALTHICKNESS" || name == "DISTRIBUTINGCOUPLING")
    return Target::Node;
  if (name == "NORMAL") return Target::Element;
  if (name == "DLOAD" || name == "DFLUX" || name == "FILM" || name == "RADIATE") return Target::ElementOrSurface;
  if (name == "DSLOAD") return Target::Surface;
  if (name == "CONTACTPAIR" || name == "TIE") return Target::TwoSurfaces;
  if (name == "DESIGNVARIABLES") return card.ValueOf("TYPE") == "COORDINATE" ? Target::Node : Target::Nothing;
  if (name == "MODELCHANGE" && card.ValueOf("TYPE") == "ELEMENT") return Target::Element;
  if (name == "MODELCHANGE" && card.ValueOf("TYPE") == "CONTACTPAIR") return Target::TwoSurfaces;
  if (name == "EQUATION") return card.parameters.empty() ? Target::Terms : Target::Nothing;
  if (name == "SURFACE") return card.ValueOf("TYPE") == "NODE" ? Target::Node : Target::Element;
  if (name == "INITIALCONDITIONS") {
    const std::string_view type = card.ValueOf("TYPE");
    if (card.Find("FILE") != nullptr || card.Find("USER") != nullptr) return Target::Nothing;
    return type == "STRESS" || type == "PLASTICSTRAIN" || type == "SOLUTION" ? Target::Element : Target::Node;
  }
  return Target::Nothing;
}

const char* DeckReferences::KindOf(Target named) noexcept
{
  switch (named) {
    case Target::Amplitude:
      return "amplitude";
    case Target::Interaction:
      return "surface interaction";
    case Target::TimePoints:
      return "time points";
    case Target::Material:
      return "material";
    case Target::Orientation:
      return "orientation";
    case Target::NodeSet:
      return "node set";
    case Target::ElementSet:
      return "element set";
    default:
      return "surface";
  }
}

DeckReferences::Target DeckReferences::DefinedBy(const DeckKeyword& keyword)
{
  const std::string_view name = keyword.name;
  if (name == "SURFACE") return Target::Surface;
  if (name == "AMPLITUDE") return Target::Amplitude;
  if (name == "SURFACEINTERACTION") return Target::Interaction;
  if (name == "TIMEPOINTS") return Target::TimePoints;
  return Target::Nothing;
}

void DeckReferences::OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place)
{
  FinishEquation();
  const std::string_view name = keyword.name;
  target_                     = TargetOfData(keyword, card);
  // The solver drops an unknown id from a surface and from initial conditions, and says so.
  severity_ = name == "SURFACE" || name == "INITIALCONDITIONS" ? DeckMessage::Warning : DeckMessage::Error;

  if (const Target defined = DefinedBy(keyword); defined != Target::Nothing) Define(defined, card, place);
  const auto add = [&](Target target, std::string_view parameter) {
    if (const DeckParameter* found = card.Find(parameter); found != nullptr && !found->value.empty())
      names_.push_back({target, found->value, place});
  };
  if (name != "NODE" && name != "NSET") add(Target::NodeSet, "NSET");
  if (name != "ELEMENT" && name != "ELSET" && keyword.role != DeckKeyword::Section) add(Target::ElementSet, "ELSET");
  // On *STEP the parameter says how loads grow, STEP or RAMP.
  if (name != "AMPLITUDE" && name != "STEP") add(Target::Amplitude, "AMPLITUDE");
  add(Target::Amplitude, "FILMAMPLITUDE");
  add(Target::Amplitude, "RADIATIONAMPLITUDE");
  add(Target::Surface, "SURFACE");
  add(Target::Interaction, "INTERACTION");
  add(Target::TimePoints, "TIMEPOINTS");
  add(Target::Material, "MATERIAL");
  add(Target::Orientation, "ORIENTATION");
  if (name == "CHANGEMATERIAL") add(Target::Material, "NAME");
  if (name == "PRE-TENSIONSECTION") AddNodeParameter(card, "NODE", place);
  if (name == "RIGIDBODY" || name == "COUPLING") {
    AddNodeParameter(card, "REFNODE", place);
    AddNodeParameter(card, "ROTNODE", place);
  }
}

void DeckReferences::Define(Target target, const DeckCard& card, const DeckPlace& place)
{
  const std::string_view name = card.ValueOf("NAME");
  // The solver minds no nameless interaction: nothing can refer to it.
  if (name.empty() && target != Target::Interaction)
    report_(DeckMessage::Error, place, std::string("expected the name of the ") + KindOf(target) + ", NAME=");
  defined_[target].emplace(name);
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

void DeckReferences::AddLayer(const std::string& material, const std::string& orientation, const DeckPlace& place)
{
  if (!material.empty()) names_.push_back({Target::Material, material, place});
  if (!orientation.empty()) names_.push_back({Target::Orientation, orientation, place});
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
    equation_   = line.place;
    return;
  }
  while (fieldsLeft_ > 0 && fields.Next(field)) {
    int node = 0;
    if (fieldsRead_ % kFieldsOfTerm == 0) {
      if (ReadDeckInteger(field, node)) {
        AddId(true, node, DeckMessage::Error, line.place);
      } else {
        report_(DeckMessage::Error, line.place, "expected a node id, found '" + Shown(field) + "'");
      }
    }
    ++fieldsRead_;
    --fieldsLeft_;
  }
}

void DeckReferences::FinishEquation()
{
  if (fieldsLeft_ > 0)
    report_(DeckMessage::Error, equation_,
            "the equation has " + Counted(fieldsRead_ / kFieldsOfTerm, "term") + ", expected " +
                std::to_string((fieldsRead_ + fieldsLeft_) / kFieldsOfTerm));
  fieldsLeft_ = 0;
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

bool DeckReferences::IsDefined(Target target, const std::string& name) const
{
  const auto names = defined_.find(target);
  return names != defined_.end() && names->second.count(name) > 0;
}

void DeckReferences::Check()
{
  FinishEquation();
  for (const IdReference& reference : ids_)
    if (!IsThere(reference))
      report_(reference.severity, reference.place,
              std::string(reference.isNode ? "node " : "element ") + std::to_string(reference.id) + " is not defined");

  defined_[Target::Material]    = NamesOf(model_.materials);
  defined_[Target::Orientation] = NamesOf(model_.orientations);
  defined_[Target::NodeSet]     = NamesOf(model_.nodeSets);
  defined_[Target::ElementSet]  = NamesOf(model_.elementSets);
  for (const NamedReference& reference : names_) {
    const bool isEither = reference.target == Target::ElementOrSurface;
    const auto target   = isEither ? Target::ElementSet : reference.target;
    if (IsDefined(target, reference.name) || (isEither && IsDefined(Target::Surface, reference.name))) continue;
    report_(DeckMessage::Error, reference.place,
            std::string(KindOf(target)) + " '" + Shown(reference.name) + "' is not defined");
  }
}

}  // namespace quilon::calculix
