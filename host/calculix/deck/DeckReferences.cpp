#include "calculix/deck/DeckReferences.h"

#include <utility>

#include "text/ColumnText.h"
#include "text/Format.h"

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

const char* DeckReferences::KindOf(Meaning named) noexcept
{
  switch (named) {
    case DeckParameterRule::Amplitude:
      return "amplitude";
    case DeckParameterRule::Interaction:
      return "surface interaction";
    case DeckParameterRule::TimePoints:
      return "time points";
    case DeckParameterRule::Material:
      return "material";
    case DeckParameterRule::Orientation:
      return "orientation";
    case DeckParameterRule::NodeSet:
      return "node set";
    case DeckParameterRule::ElementSet:
      return "element set";
    default:
      return "surface";
  }
}

void DeckReferences::OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place)
{
  FinishEquation();
  form_.Begin(keyword, card);
  refersElsewhere_ = false;
  severity_        = keyword.dropsUnknownIds ? DeckMessage::Warning : DeckMessage::Error;

  for (const DeckParameter& parameter : card.parameters) {
    const DeckParameterRule* rule = keyword.FindParameter(parameter.name);
    if (rule != nullptr && rule->meaning == DeckParameterRule::DataElsewhere) refersElsewhere_ = true;
  }
  Define(keyword, card, place);
  const auto add = [&](const DeckParameterRule& rule) {
    if (rule.name == nullptr || keyword.FindParameter(rule.name) != &rule) return;  // the card has another rule
    const DeckParameter* found = card.Find(rule.name);
    int                  id    = 0;
    if (found == nullptr || found->value.empty()) return;
    if (rule.meaning >= DeckParameterRule::NodeSet) names_.push_back({rule.meaning, found->value, place});
    if (rule.meaning == DeckParameterRule::NodeId && ReadDeckInteger(found->value, id))
      AddId(true, id, DeckMessage::Error, place);
  };
  for (const DeckParameterRule& rule : CommonDeckParameters()) add(rule);
  for (const DeckParameterRule& rule : keyword.parameters) add(rule);
}

/// Sets, materials and orientations are found in the model.
void DeckReferences::Define(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place)
{
  Meaning kind = DeckParameterRule::Unknown;
  if (keyword.defines == DeckKeyword::Surface) kind = DeckParameterRule::Surface;
  if (keyword.defines == DeckKeyword::Amplitude) kind = DeckParameterRule::Amplitude;
  if (keyword.defines == DeckKeyword::Interaction) kind = DeckParameterRule::Interaction;
  if (keyword.defines == DeckKeyword::TimePoints) kind = DeckParameterRule::TimePoints;
  if (kind == DeckParameterRule::Unknown) return;
  const std::string_view name = card.ValueOf("NAME");
  // The solver minds no nameless interaction: nothing can refer to it.
  if (name.empty() && kind != DeckParameterRule::Interaction)
    report_(DeckMessage::Error, place, std::string("expected the name of the ") + KindOf(kind) + ", NAME=");
  defined_[kind].emplace(name);
}

void DeckReferences::OnData(const DeckLine& line)
{
  if (refersElsewhere_) return;
  const DeckForm::Line& form = form_.Next(line.text);
  if (form_.Form().isTerm) return AddTerms(line);
  DeckFields       fields(line.text);
  std::string_view field;
  for (std::size_t i = 0; fields.Next(field); ++i) AddField(form[i].content, field, line.place);
}

void DeckReferences::AddLayer(const std::string& material, const std::string& orientation, const DeckPlace& place)
{
  if (!material.empty()) names_.push_back({DeckParameterRule::Material, material, place});
  if (!orientation.empty()) names_.push_back({DeckParameterRule::Orientation, orientation, place});
}

void DeckReferences::AddField(DeckField::Content content, std::string_view field, const DeckPlace& place)
{
  if (content < DeckField::Node || field.empty()) return;
  int id = 0;
  if (content != DeckField::Surface && ReadDeckInteger(field, id))
    return AddId(content == DeckField::Node, id, severity_, place);
  const Meaning target = content == DeckField::Node      ? DeckParameterRule::NodeSet
                         : content == DeckField::Surface ? DeckParameterRule::Surface
                                                         : DeckParameterRule::ElementSet;
  names_.push_back({target, Compact(field), place, content == DeckField::ElementOrSurface});
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

bool DeckReferences::IsThere(const IdReference& reference) const noexcept
{
  return reference.isNode ? model_.FindNode(reference.id) != nullptr : model_.FindElement(reference.id) != nullptr;
}

bool DeckReferences::IsDefined(Meaning target, const std::string& name) const
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

  defined_[DeckParameterRule::Material]    = NamesOf(model_.materials);
  defined_[DeckParameterRule::Orientation] = NamesOf(model_.orientations);
  defined_[DeckParameterRule::NodeSet]     = NamesOf(model_.nodeSets);
  defined_[DeckParameterRule::ElementSet]  = NamesOf(model_.elementSets);
  for (const NamedReference& reference : names_) {
    if (IsDefined(reference.target, reference.name)) continue;
    if (reference.mayBeSurface && IsDefined(DeckParameterRule::Surface, reference.name)) continue;
    report_(DeckMessage::Error, reference.place,
            std::string(KindOf(reference.target)) + " '" + Shown(reference.name) + "' is not defined");
  }
}

}  // namespace quilon::calculix
