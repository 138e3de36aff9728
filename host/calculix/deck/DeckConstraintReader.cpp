#include "calculix/deck/DeckConstraintReader.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace quilon::calculix {
namespace {

std::optional<DeckConstraint::Kind> KindOf(DeckKeyword::Thing thing) noexcept
{
  switch (thing) {
    case DeckKeyword::Contact:
      return DeckConstraint::Contact;
    case DeckKeyword::Tie:
      return DeckConstraint::Tie;
    case DeckKeyword::MultiPoint:
      return DeckConstraint::Equation;
    case DeckKeyword::Coupling:
      return DeckConstraint::Coupling;
    case DeckKeyword::RigidBody:
      return DeckConstraint::RigidBody;
    case DeckKeyword::PreTension:
      return DeckConstraint::PreTension;
    default:
      return std::nullopt;
  }
}

/// @param label "S3", "SPOS"; may be empty
/// @return the number of the face; 0 for what is the whole element
signed char FaceOf(std::string_view label) noexcept
{
  const bool isNumbered = label.size() == 2 && label[0] == 'S' && label[1] >= '1' && label[1] <= '6';
  return isNumbered ? static_cast<signed char>(label[1] - '0') : static_cast<signed char>(0);
}

}  // namespace

void DeckConstraintReader::OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place,
                                  bool isInStep)
{
  thing_ = DeckKeyword::Nothing;
  form_.Begin(keyword, card);
  if (const auto kind = KindOf(keyword.defines)) return BeginConstraint(keyword, card, *kind, place);
  if (keyword.defines == DeckKeyword::Surface) {
    thing_ = keyword.defines;
    DeckSurface surface;
    surface.name      = card.ValueOf("NAME");
    surface.isOfNodes = card.ValueOf("TYPE") == "NODE";
    surface.place     = place;
    model_.surfaces.push_back(std::move(surface));
  } else if (keyword.defines == DeckKeyword::ModelChange && isInStep && card.ValueOf("TYPE") == "ELEMENT") {
    thing_ = keyword.defines;
    model_.steps.back().changes.push_back({card.Find("ADD") != nullptr, {}, {}, place});
  }
}

void DeckConstraintReader::BeginConstraint(const DeckKeyword& keyword, const DeckCard& card, DeckConstraint::Kind kind,
                                           const DeckPlace& place)
{
  // Equations that are removed tie nothing.
  const bool isRemoval = card.Find("REMOVE") != nullptr || card.Find("REMOVEALL") != nullptr;
  if (isRemoval) return;
  thing_       = keyword.defines;
  fieldsLeft_  = 0;
  fieldOfTerm_ = 0;
  DeckConstraint constraint;
  constraint.kind  = kind;
  constraint.place = place;
  model_.constraints.push_back(std::move(constraint));
  for (const DeckParameter& parameter : card.parameters)
    if (const DeckParameterRule* rule = keyword.FindParameter(parameter.name)) AddParameter(rule->meaning, parameter);
}

void DeckConstraintReader::AddParameter(DeckParameterRule::Meaning meaning, const DeckParameter& parameter)
{
  DeckConstraint& constraint = model_.constraints.back();
  int             id         = 0;
  const bool      isId       = ReadDeckInteger(parameter.value, id);
  if (meaning == DeckParameterRule::NodeId && isId) constraint.nodes.push_back(id);
  if (meaning == DeckParameterRule::ElementId && isId) constraint.elements.push_back(id);
  if (meaning == DeckParameterRule::NodeSet) constraint.nodeSets.push_back(parameter.value);
  if (meaning == DeckParameterRule::ElementSet) constraint.elementSets.push_back(parameter.value);
  if (meaning == DeckParameterRule::Surface) constraint.surfaces.push_back(parameter.value);
}

void DeckConstraintReader::OnData(std::string_view line)
{
  if (thing_ == DeckKeyword::Nothing) return;
  const DeckForm::Line& form = form_.Next(line);
  if (thing_ == DeckKeyword::Surface) return AddToSurface(form, line);
  if (form_.Form().isTerm) return AddTerms(form.Size(), line);
  DeckFields       fields(line);
  std::string_view field;
  for (std::size_t i = 0; fields.Next(field); ++i)
    if (!field.empty()) AddField(form[i].content, field);
}

void DeckConstraintReader::AddToSurface(const DeckForm::Line& form, std::string_view line)
{
  DeckSurface&      surface = model_.surfaces.back();
  DeckSurface::Part part;
  DeckFields        fields(line);
  std::string_view  field;
  if (!fields.Next(field) || field.empty()) return;
  if (!ReadDeckInteger(field, part.id)) {
    std::string name = Compact(field);
    const auto  set  = std::find(surface.sets.begin(), surface.sets.end(), name);
    part.isSet       = true;
    part.id          = static_cast<int>(set - surface.sets.begin());
    if (set == surface.sets.end()) surface.sets.push_back(std::move(name));
  }
  if (form[1].content == DeckField::Label && fields.Next(field)) part.face = FaceOf(Compact(field));
  surface.parts.push_back(part);
}

void DeckConstraintReader::AddField(DeckField::Content content, std::string_view field)
{
  int        id        = 0;
  const bool isId      = ReadDeckInteger(field, id);
  const bool isNode    = content == DeckField::Node || content == DeckField::NodeId;
  const bool isElement = content == DeckField::Element;
  if (thing_ == DeckKeyword::ModelChange) {
    DeckModelChange& change = model_.steps.back().changes.back();
    if (isElement && isId) change.elements.push_back(id);
    if (isElement && !isId) change.elementSets.push_back(Compact(field));
    return;
  }
  DeckConstraint& constraint = model_.constraints.back();
  if (isNode && isId) constraint.nodes.push_back(id);
  if (isNode && !isId) constraint.nodeSets.push_back(Compact(field));
  if (content == DeckField::Surface) constraint.surfaces.push_back(Compact(field));
}

void DeckConstraintReader::AddTerms(std::size_t sizeOfTerm, std::string_view line)
{
  DeckFields       fields(line);
  std::string_view field;
  int              number = 0;
  if (fieldsLeft_ == 0) {
    fields.Next(field);
    if (ReadDeckInteger(field, number) && number > 0) fieldsLeft_ = static_cast<std::size_t>(number) * sizeOfTerm;
    fieldOfTerm_ = 0;
    return;
  }
  while (fieldsLeft_ > 0 && fields.Next(field)) {
    if (fieldOfTerm_ == 0 && ReadDeckInteger(field, number)) model_.constraints.back().nodes.push_back(number);
    fieldOfTerm_ = (fieldOfTerm_ + 1) % sizeOfTerm;
    --fieldsLeft_;
  }
}

}  // namespace quilon::calculix
