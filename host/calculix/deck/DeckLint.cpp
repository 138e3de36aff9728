#include "calculix/deck/DeckLint.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "elements/ElementShape.h"
#include "elements/IntegrationRule.h"
#include "text/ColumnText.h"
#include "text/Format.h"

namespace quilon::calculix {
namespace {

constexpr int kMostDegrees = 16;  // bits of DeckField::degrees

/// @return whether the reader of the model reads the numbers of the card's data
bool IsReadByModel(const DeckKeyword& keyword, bool isInStep) noexcept
{
  switch (keyword.defines) {
    case DeckKeyword::Nodes:
    case DeckKeyword::Elements:
    case DeckKeyword::NodeSet:
    case DeckKeyword::ElementSet:
    case DeckKeyword::Orientation:
      return true;
    default:
      return keyword.role == DeckKeyword::Property && !isInStep;
  }
}

/// @return "1 to 6, 8 and 11"
std::string ListOf(std::uint16_t degrees)
{
  std::vector<std::string> ranges;
  for (int first = 0; first < kMostDegrees; ++first) {
    if ((degrees >> first & 1) == 0) continue;
    int last = first;
    while (last + 1 < kMostDegrees && (degrees >> (last + 1) & 1) != 0) ++last;
    ranges.push_back(std::to_string(first) + (last == first ? "" : " to " + std::to_string(last)));
    first = last;
  }
  std::string text;
  for (std::size_t i = 0; i < ranges.size(); ++i)
    text += (i == 0 ? "" : i + 1 == ranges.size() ? " and " : ", ") + ranges[i];
  return text;
}

/// The solver finds an element turned inside out where this is not above it.
constexpr double kLeastJacobian = 1e-20;

/// Of the shape functions of a solid by its local coordinates, at the places where the solver integrates.
struct Gradients
{
  std::size_t             numNodes = 0;
  std::span<const double> values;  // shape [points, numNodes, 3]
};

/// @param name element type
Gradients GradientsOf(std::string_view name)
{
  if (name == "C3D8R") {
    constexpr std::size_t                            kNumNodes = 8;
    static const std::array<double, std::size_t{24}> kAtCentre = [] {
      std::array<double, kNumNodes>     values;
      std::array<double, 3 * kNumNodes> derivatives;
      EvaluateShape(ElementShape::Brick8, {0.0, 0.0, 0.0}, values, derivatives);
      return derivatives;
    }();
    return {kNumNodes, kAtCentre};
  }
  const IntegrationRule* rule = FindIntegrationRule(name);
  return rule == nullptr ? Gradients() : Gradients{NumNodes(rule->shape), rule->derivatives};
}

/// The solid that the solver makes of a type: plane and axisymmetric elements get a thickness.
struct SolidType
{
  std::string name;  ///< empty: the shape is not known here
  bool        isExtruded = false;
};

SolidType SolidOf(const DeckElementType& type)
{
  std::string_view name = type.name;
  if (name.starts_with("DC")) name.remove_prefix(1);  // for heat transfer
  if (name.starts_with("C3D")) return {std::string(name.substr(0, name.find('T'))), false};
  if (!name.starts_with("CP") && !name.starts_with("CAX")) return {};
  const std::string reduced = name.ends_with('R') ? "R" : "";
  switch (type.numNodes) {
    case 3:
      return {"C3D6", true};
    case 4:
      return {"C3D8" + reduced, true};
    case 6:
      return {"C3D15", true};
    default:
      return {"C3D20" + reduced, true};
  }
}

double Determinant(std::span<const double> coordinates, std::span<const double> derivatives)
{
  std::array<std::array<double, 3>, 3> m{};
  for (std::size_t n = 0; n < coordinates.size(); n += 3)
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) m[i][j] += coordinates[n + i] * derivatives[n + j];
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

/// @param coordinates shape [nodes, 3]
/// @return the first integration point, from 1, where the volume is not positive; 0 when there is none
std::size_t InvertedPoint(const Gradients& gradients, std::span<const double> coordinates)
{
  const std::size_t size = coordinates.size();
  for (std::size_t first = 0; first < gradients.values.size(); first += size)
    if (!(Determinant(coordinates, gradients.values.subspan(first, size)) > kLeastJacobian)) return first / size + 1;
  return 0;
}

/// Adds a node of an element to the coordinates of its solid.
void Add(std::vector<double>& coordinates, const std::array<double, 3>& position, double height)
{
  coordinates.insert(coordinates.end(), {position[0], position[1], position[2] + height});
}

}  // namespace

DeckLint::DeckLint(const DeckModel& model, Report report) : model_(model), report_(std::move(report)) {}

void DeckLint::OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place, bool isInStep)
{
  EndCard();
  keyword_      = &keyword;
  card_         = card;
  place_        = place;
  readsNumbers_ = !IsReadByModel(keyword, isInStep);
  fieldsLeft_   = 0;
  form_.Begin(keyword, card);
  CheckPlace(isInStep);
}

void DeckLint::CheckPlace(bool isInStep) const
{
  // What computes and what loads is told by the reader of the model.
  const bool isTold = keyword_->role == DeckKeyword::Procedure || keyword_->role == DeckKeyword::Load;
  if (keyword_->where == DeckKeyword::InStep && model_.steps.empty() && !isTold)
    Error(place_, "*" + card_.keyword + " belongs between *STEP and *END STEP");
  const bool isRemoval = card_.Find("REMOVE") != nullptr || card_.Find("REMOVEALL") != nullptr;
  if (keyword_->where == DeckKeyword::BeforeSteps && !isRemoval && (isInStep || !model_.steps.empty()))
    Error(place_, "*" + card_.keyword + " belongs before the first *STEP");
  // The solver writes the mesh, computes nothing and ends without a word.
  if (keyword_->defines == DeckKeyword::EndOfStep && isInStep && model_.steps.back().procedure.empty())
    Error(model_.steps.back().place, "the step has no procedure, such as *STATIC");
}

void DeckLint::EndCard()
{
  if (keyword_ == nullptr) return;
  const DeckKeyword& keyword = *std::exchange(keyword_, nullptr);
  const std::size_t  lines   = form_.Lines();
  // Matrices are written without modes, and what a subroutine gives needs no numbers.
  const bool hasOtherSource =
      std::any_of(card_.parameters.begin(), card_.parameters.end(), [](const DeckParameter& parameter) {
        return parameter.name == "USER" || parameter.value == "USER" || parameter.value == "MATRIXSTORAGE";
      });
  if (keyword.needsData && lines == 0 && !hasOtherSource)
    return Error(place_, "expected data lines behind *" + card_.keyword);
  const std::size_t cycle = form_.Form().numLines;
  if (form_.Form().cycleFrom == 0 && lines % cycle != 0)
    Error(place_, "*" + card_.keyword + " has " + Counted(lines, "data line") + ", expected " + std::to_string(cycle) +
                      " for each set of constants");
}

void DeckLint::OnData(const DeckLine& line)
{
  if (keyword_ == nullptr) return;
  const DeckForm::Line& form = form_.Next(line.text);
  if (form_.Form().isTerm) return CheckTerms(form, line);
  CheckConstants(form, line);
  if (!readsNumbers_) return;
  DeckFields       fields(line.text);
  std::string_view field;
  for (std::size_t i = 0; fields.Next(field); ++i) CheckField(form[i], field, line);
  CheckDegrees(form, line);
}

void DeckLint::CheckField(const DeckField& known, std::string_view field, const DeckLine& line) const
{
  if (field.empty()) return;
  int number = 0;
  switch (known.content) {
    case DeckField::Number:
      return CheckNumber(field, line);
    case DeckField::Integer:
    case DeckField::Degree:
      if (!ReadDeckInteger(field, number)) Error(line.place, "expected a whole number, found " + Quoted(field));
      return;
    case DeckField::NodeId:
      if (!ReadDeckInteger(field, number)) Error(line.place, "expected a node id, found " + Quoted(field));
      return;
    case DeckField::Label:
      return CheckLabel(field, line);
    case DeckField::Anything:
    case DeckField::Name:
    case DeckField::Node:
    case DeckField::Element:
    case DeckField::ElementOrSurface:
    case DeckField::Surface:
      return;  // names that are not there are told with all references
  }
}

void DeckLint::CheckNumber(std::string_view field, const DeckLine& line) const
{
  double value = 0.0;
  if (!ReadDeckNumber(field, value)) {
    // Words for what is not finite are numbers to it.
    if (ReadDouble(WithoutBlanks(field), value))
      return report_(DeckMessage::Warning, line.place, "the solver computes with " + Quoted(field));
    Error(line.place, "expected a number, found " + Quoted(field));
  } else if (IsCutBySolver(field, value)) {
    Error(line.place, "the solver reads the first 20 characters of " + Quoted(field) + ", which is another number");
  }
}

void DeckLint::CheckLabel(std::string_view field, const DeckLine& line) const
{
  const std::string label = Compact(field);
  if (keyword_->KnowsLabel(label)) return;
  const auto severity = keyword_->needsLabels ? DeckMessage::Error : DeckMessage::Warning;
  report_(severity, line.place,
          "unknown label " + Quoted(field) + " of *" + card_.keyword + keyword_->SuggestLabel(label));
}

void DeckLint::CheckDegrees(const DeckForm::Line& form, const DeckLine& line) const
{
  // A line names one degree of freedom or the first and the last of several.
  DeckFields       fields(line.text);
  std::string_view field;
  DeckField        known;
  int              first    = 0;
  int              last     = 0;
  bool             hasFirst = false;
  for (std::size_t i = 0; fields.Next(field) && i < form.Size(); ++i) {
    if (form[i].content != DeckField::Degree || (hasFirst && field.empty())) continue;
    int degree = 0;
    if (!field.empty() && !ReadDeckInteger(field, degree)) return;
    if (!hasFirst) first = degree;
    last     = degree;
    known    = form[i];
    hasFirst = true;
  }
  if (!hasFirst) return;
  for (int degree = first; degree <= std::min(last, first + kMostDegrees); ++degree)
    if (degree < 0 || degree >= kMostDegrees || (known.degrees >> degree & 1) == 0)
      return CheckDegree(known, degree, line);
  if (last < first)
    report_(DeckMessage::Warning, line.place,
            "there are no degrees of freedom from " + std::to_string(first) + " to " + std::to_string(last));
}

void DeckLint::CheckDegree(const DeckField& known, int degree, const DeckLine& line) const
{
  if (degree >= 0 && degree < kMostDegrees && (known.degrees >> degree & 1) != 0) return;
  Error(line.place, "*" + card_.keyword + " has no degree of freedom " + std::to_string(degree) + ", expected " +
                        ListOf(known.degrees));
}

/// Nodes are looked at with all references.
void DeckLint::CheckTerms(const DeckForm::Line& term, const DeckLine& line)
{
  DeckFields       fields(line.text);
  std::string_view field;
  if (fieldsLeft_ == 0) {
    int terms = 0;
    fields.Next(field);
    if (ReadDeckInteger(field, terms) && terms > 0) fieldsLeft_ = static_cast<std::size_t>(terms) * term.Size();
    fieldOfTerm_ = 0;
    return;
  }
  while (fieldsLeft_ > 0 && fields.Next(field)) {
    const DeckField& known  = term.fields[fieldOfTerm_];
    int              degree = 0;
    if (known.content != DeckField::NodeId) CheckField(known, field, line);
    if (known.content == DeckField::Degree && ReadDeckInteger(field, degree)) CheckDegree(known, degree, line);
    fieldOfTerm_ = (fieldOfTerm_ + 1) % term.Size();
    --fieldsLeft_;
  }
}

void DeckLint::CheckConstants(const DeckForm::Line& form, const DeckLine& line) const
{
  DeckFields            fields(line.text);
  std::string_view      field;
  std::array<double, 2> values{};
  std::size_t           count = 0;
  for (; fields.Next(field); ++count)
    if (count < values.size() && !field.empty() && !ReadDeckNumber(field, values[count])) return;
  if (count < form.required)
    return Error(line.place, "expected " + Counted(form.required, "number") + " on the line of *" + card_.keyword +
                                 ", found " + std::to_string(count));
  const std::string_view name        = keyword_->name;
  const bool             isIsotropic = name == "ELASTIC" && form.required == values.size();
  if (isIsotropic && values[0] <= 0.0)
    Error(line.place, "Young's modulus is " + FormatNumber(values[0]) + ", expected a number above 0");
  if (isIsotropic && !(values[1] > -1.0 && values[1] < 0.5))
    Error(line.place, "Poisson's ratio is " + FormatNumber(values[1]) + ", expected a number between -1 and 0.5");
  if (name == "DENSITY" && values[0] < 0.0)
    Error(line.place, "the density is " + FormatNumber(values[0]) + ", expected a number from 0");
}

void DeckLint::Check()
{
  EndCard();
  CheckShapes();
}

/// Collects the corners and middles of an element of the deck in the order of the solid that it stands for.
/// @param coordinates receives shape [nodes of the solid, 3]
/// @return whether the deck has all of its nodes
bool DeckLint::FindCoordinates(const DeckElement& element, bool isExtruded, std::vector<double>& coordinates) const
{
  const std::span<const int> nodes   = model_.NodesOf(element);
  const std::size_t          corners = nodes.size() > 4 && isExtruded ? nodes.size() / 2 : nodes.size();
  bool                       isWhole = true;
  const auto                 add     = [&](std::size_t first, std::size_t last, double height) {
    for (std::size_t i = first; i < last && isWhole; ++i) {
      const DeckNode* node = model_.FindNode(nodes[i]);
      isWhole              = node != nullptr;
      if (isWhole) Add(coordinates, node->position, height);
    }
  };
  coordinates.clear();
  // Corners below and above, then the middles of edges below, above and, at the corners' place, between.
  add(0, corners, 0.0);
  if (isExtruded) add(0, corners, 1.0);
  add(corners, nodes.size(), 0.0);
  if (isExtruded && corners < nodes.size()) {
    add(corners, nodes.size(), 1.0);
    add(0, corners, 0.5);
  }
  return isWhole;
}

void DeckLint::CheckShapes() const
{
  const DeckElementType* type = nullptr;  // of the elements before: most have that of their neighbours
  SolidType              solid;
  Gradients              gradients;
  std::vector<double>    coordinates;
  for (const auto& [id, element] : model_.elements.Entries()) {
    if (element.type != type) {
      type      = element.type;
      solid     = SolidOf(*type);
      gradients = GradientsOf(solid.name);
    }
    if (gradients.numNodes == 0) continue;
    const bool isWhole = FindCoordinates(element, solid.isExtruded, coordinates);
    if (!isWhole || coordinates.size() != 3 * gradients.numNodes) continue;
    const std::size_t point = InvertedPoint(gradients, coordinates);
    if (point != 0)
      Error(element.place, "element " + std::to_string(id) + " (" + type->name +
                               ") is turned inside out: its volume is not positive at integration point " +
                               std::to_string(point));
  }
}

}  // namespace quilon::calculix
