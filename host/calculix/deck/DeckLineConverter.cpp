#include "calculix/deck/DeckLineConverter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <optional>
#include <utility>

#include "calculix/ColumnText.h"

namespace quilon::calculix {
namespace {

/// The solver reads so many characters of a number.
constexpr std::size_t kLongestNumber = 20;

bool IsOneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
  return std::find(words.begin(), words.end(), text) != words.end();
}

/// "P" or "P3": a label, perhaps with the number of a face.
bool IsFaceLabel(std::string_view label, std::string_view name)
{
  if (!label.starts_with(name)) return false;
  label.remove_prefix(name.size());
  return label.empty() || (label.size() == 1 && label[0] >= '1' && label[0] <= '6');
}

/// A number taken apart: sign, digits[0].digits[1..] and so on with the point behind `point` digits, times ten to
/// `exponent`.
struct Decimal
{
  std::string sign;
  std::string digits;
  int         point       = 0;
  int         exponent    = 0;
  bool        hasExponent = false;
};

Decimal TakeApart(std::string_view text)
{
  Decimal number;
  if (text.starts_with('-') || text.starts_with('+')) {
    number.sign = text.substr(0, text[0] == '-' ? 1 : 0);
    text.remove_prefix(1);
  }
  const std::size_t mark     = text.find_first_of("eEdD+-");
  std::string_view  mantissa = text.substr(0, mark);
  if (mark != std::string_view::npos) {
    number.hasExponent        = true;
    std::string_view exponent = text.substr(mark);
    exponent.remove_prefix(exponent.find_first_not_of("eEdD+"));
    std::from_chars(exponent.data(), exponent.data() + exponent.size(), number.exponent);
  }
  const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
  number.point            = static_cast<int>(point);
  number.digits           = mantissa.substr(0, point);
  if (point < mantissa.size()) number.digits += mantissa.substr(point + 1);
  const std::size_t zeros = std::min(number.digits.find_first_not_of('0'), number.digits.size());
  number.digits.erase(0, zeros);
  number.point -= static_cast<int>(zeros);
  return number;
}

/// Without an exponent; nothing where that takes too many zeros.
std::optional<std::string> PlainText(const Decimal& number)
{
  const int size  = static_cast<int>(number.digits.size());
  const int point = number.point + number.exponent;
  if (point < -static_cast<int>(kLongestNumber) || point > static_cast<int>(kLongestNumber)) return std::nullopt;
  std::string text = number.digits;
  if (point <= 0) {
    text.insert(0, "0." + std::string(static_cast<std::size_t>(-point), '0'));
  } else if (point < size) {
    text.insert(static_cast<std::size_t>(point), ".");
  } else {
    text.append(static_cast<std::size_t>(point - size), '0');
    text += '.';
  }
  return number.sign + text;
}

std::string ScientificText(const Decimal& number)
{
  std::string digits = number.digits;
  digits.erase(digits.find_last_not_of('0') + 1);
  return number.sign + digits.substr(0, 1) + '.' + digits.substr(1) + 'E' +
         std::to_string(number.point - 1 + number.exponent);
}

}  // namespace

std::string ShiftDecimal(std::string_view field, int exponent)
{
  const std::string text   = WithoutBlanks(field);
  Decimal           number = TakeApart(text);
  if (exponent == 0 || number.digits.empty()) return text;
  number.exponent += exponent;

  if (!number.hasExponent) {
    const auto plain = PlainText(number);
    if (plain && plain->size() <= kLongestNumber) return *plain;
  }
  const std::string scientific = ScientificText(number);
  double            value      = 0.0;
  if (scientific.size() <= kLongestNumber || !ReadDouble(scientific, value)) return scientific;
  for (int digits = 16;; --digits) {
    char       buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, digits).ptr;
    if (end - buffer <= static_cast<std::ptrdiff_t>(kLongestNumber)) return std::string(buffer, end);
  }
}

DeckDataLine::DeckDataLine(std::string_view line) : line_(line)
{
  DeckFields       fields(line);
  std::string_view field;
  while (fields.Next(field))
    fields_.push_back({static_cast<std::size_t>(field.data() - line.data()), field.size(), {}, false});
}

std::string_view DeckDataLine::operator[](std::size_t field) const noexcept
{
  return field < fields_.size() ? line_.substr(fields_[field].first, fields_[field].size) : std::string_view();
}

bool DeckDataLine::HasNumber(std::size_t field) const
{
  double value = 0.0;
  return ReadDeckNumber((*this)[field], value);
}

void DeckDataLine::Replace(std::size_t field, std::string text)
{
  fields_[field].replacement = std::move(text);
  fields_[field].isReplaced  = true;
}

std::string DeckDataLine::Text() const
{
  std::string text;
  std::size_t done = 0;
  for (const Field& field : fields_) {
    if (!field.isReplaced) continue;
    text += line_.substr(done, field.first - done);
    text += field.replacement;
    done = field.first + field.size;
  }
  return text.append(line_.substr(done));
}

// ---- the table

struct DeckLineConverter::Rule
{
  /// A parameter whose value is a quantity or a node.
  struct Parameter
  {
    static constexpr int kNode = 100;

    const char* name       = nullptr;
    int         power      = 0;               ///< of the length, or kNode
    std::size_t characters = kLongestNumber;  ///< of the value that the solver reads
  };

  const char*              keyword;
  Handler                  handler;
  std::array<Parameter, 3> parameters = {};

  static const Rule* Find(std::string_view keyword);
};

const DeckLineConverter::Rule* DeckLineConverter::Rule::Find(std::string_view keyword)
{
  using C = DeckLineConverter;
  // Plain: neither lengths nor nodes. Unknown: no nodes, and quantities that are not told apart here.
  static const Rule kRules[] = {
      {"AMPLITUDE", &C::Plain},
      {"BASEMOTION", &C::Unknown},
      {"BEAMGENERALSECTION", &C::Unknown},
      {"BEAMSECTION", &C::FirstLineLengths},
      {"BOUNDARY", &C::Boundary},
      {"BUCKLE", &C::Plain},
      {"CFLUX", &C::ConcentratedFlux},
      {"CHANGEMATERIAL", &C::Plain},
      {"CLOAD", &C::ConcentratedLoad},
      {"COMPLEXFREQUENCY", &C::Plain},
      {"CONDUCTIVITY", &C::Plain},
      {"CONTACTFILE", &C::Plain},
      {"CONTACTOUTPUT", &C::Plain},
      {"CONTACTPAIR", &C::Plain, {{{"ADJUST", 1}}}},
      {"CONTACTPRINT", &C::Plain},
      {"CONTROLS", &C::Unknown},
      {"COUPLEDTEMPERATURE-DISPLACEMENT", &C::Plain},
      {"COUPLING", &C::Plain, {{{"REFNODE", Parameter::kNode}}}},
      {"CREEP", &C::Unknown},
      {"CYCLICHARDENING", &C::Plastic},
      {"CYCLICSYMMETRYMODEL", &C::Lengths, {{{"N", 0}, {"NGRAPH", 0}}}},
      {"DAMPING", &C::Plain},
      {"DASHPOT", &C::Unknown},
      {"DEFORMATIONPLASTICITY", &C::Unknown},
      {"DENSITY", &C::Density},
      {"DEPVAR", &C::Plain},
      {"DFLUX", &C::DistributedFlux},
      {"DISTRIBUTING", &C::Plain},
      {"DISTRIBUTINGCOUPLING", &C::NodeFirst},
      {"DLOAD", &C::DistributedLoad},
      {"DSLOAD", &C::DistributedLoad},
      {"DYNAMIC", &C::Plain},
      {"ELASTIC", &C::Elastic},
      {"ELECTRICALCONDUCTIVITY", &C::Unknown},
      {"ELEMENT", &C::Elements},
      {"ELEMENTOUTPUT", &C::Plain},
      {"ELFILE", &C::Plain},
      {"ELPRINT", &C::Plain},
      {"ELSET", &C::Plain},
      {"ENDSTEP", &C::Plain},
      {"EQUATION", &C::Equation},
      {"EXPANSION", &C::Plain},
      {"FILM", &C::Film},
      {"FLUIDCONSTANTS", &C::Unknown},
      {"FREQUENCY", &C::Plain},
      {"FRICTION", &C::Friction},
      {"GAP", &C::Unknown},
      {"GAPCONDUCTANCE", &C::Unknown},
      {"HEADING", &C::Plain},
      {"HEATTRANSFER", &C::Plain},
      {"HYPERELASTIC", &C::Unknown, {{{"N", 0}}}},
      {"HYPERFOAM", &C::Unknown, {{{"N", 0}}}},
      {"INITIALCONDITIONS", &C::InitialConditions},
      {"KINEMATIC", &C::Plain},
      {"MASS", &C::Mass},
      {"MATERIAL", &C::Plain},
      {"MEMBRANESECTION", &C::FirstLength},
      {"MODALDAMPING", &C::Plain},
      {"MODALDYNAMIC", &C::Plain},
      {"MODELCHANGE", &C::Plain},
      {"MPC", &C::Constraint},
      {"NOANALYSIS", &C::Plain},
      {"NODALTHICKNESS", &C::NodeThickness},
      {"NODE", &C::Nodes},
      {"NODEFILE", &C::Plain},
      {"NODEOUTPUT", &C::Plain},
      {"NODEPRINT", &C::Plain},
      {"NORMAL", &C::NodeSecond},
      {"NSET", &C::NodeSet},
      {"ORIENTATION", &C::FirstLineLengths},
      {"OUTPUT", &C::Plain},
      {"PHYSICALCONSTANTS", &C::Plain, {{{"ABSOLUTEZERO", 0}, {"STEFANBOLTZMANN", -1}, {"NEWTONGRAVITY", 4, 10}}}},
      {"PLASTIC", &C::Plastic},
      {"PRE-TENSIONSECTION", &C::Plain, {{{"NODE", Parameter::kNode}}}},
      {"RESTART", &C::Plain},
      {"RETAINEDNODALDOFS", &C::NodeFirst},
      {"RIGIDBODY", &C::Plain, {{{"REFNODE", Parameter::kNode}, {"ROTNODE", Parameter::kNode}}}},
      {"SECTIONPRINT", &C::Plain},
      {"SHELLSECTION", &C::FirstLength},
      {"SOLIDSECTION", &C::SolidSection},
      {"SPECIFICGASCONSTANT", &C::Unknown},
      {"SPECIFICHEAT", &C::SpecificHeat},
      {"SPRING", &C::Unknown},
      {"STATIC", &C::Plain},
      {"STEADYSTATEDYNAMICS", &C::Plain},
      {"STEP", &C::Plain},
      {"SURFACE", &C::Surface},
      {"SURFACEBEHAVIOR", &C::SurfaceBehavior},
      {"SURFACEINTERACTION", &C::Plain},
      {"TEMPERATURE", &C::Temperature},
      {"TIE", &C::Plain, {{{"POSITIONTOLERANCE", 1}}}},
      {"TIMEPOINTS", &C::Plain},
      {"TRANSFORM", &C::Lengths},
      {"UNCOUPLEDTEMPERATURE-DISPLACEMENT", &C::Plain},
      {"USERELEMENT", &C::Plain, {{{"INTEGRATIONPOINTS", 0}, {"MAXDOF", 0}, {"NODES", 0}}}},
      {"USERMATERIAL", &C::Unknown},
      {"USERSECTION", &C::Unknown},
      {"VISCO", &C::Plain},
  };
  const auto found = std::find_if(std::begin(kRules), std::end(kRules),
                                  [keyword](const Rule& rule) { return keyword == rule.keyword; });
  return found == std::end(kRules) ? nullptr : found;
}

namespace {

/// Parameters whose value is a name, a count, a time, a temperature or a ratio, whatever the keyword.
bool IsParameterWithoutUnit(std::string_view name)
{
  return IsOneOf(name, {"ALPHA",      "AMPLITUDE", "BETA",      "CONSTANTS",  "DELTMX",      "ELSET",       "FREQUENCY",
                        "FREQUENCYF", "GLOBAL",    "INC",       "INCF",       "INTERACTION", "LOADCASE",    "MATERIAL",
                        "NAME",       "NSET",      "OFFSET",    "OFFSET1",    "OFFSET2",     "ORIENTATION", "SECTOR",
                        "STEP",       "SURFACE",   "TIMEDELAY", "TIMEPOINTS", "ZERO"});
}

}  // namespace

DeckLineConverter::DeckLineConverter(int lengthExponent, int nodeOffset, const DeckModel& model,
                                     std::function<void(const std::string&)> fail)
    : lengthExponent_(lengthExponent), nodeOffset_(nodeOffset), model_(model), fail_(std::move(fail))
{}

std::string DeckLineConverter::ConvertCard(std::string_view line)
{
  card_           = ParseDeckCard(line);
  rule_           = Rule::Find(card_.keyword);
  dataLines_      = 0;
  statesQuantity_ = false;
  CheckSource();
  if (card_.keyword == "ELEMENT") {
    const std::string_view name = card_.ValueOf("TYPE");
    const auto*            type = FindDeckElementType(name);
    for (const auto& user : model_.userElementTypes)
      if (user->name == name) type = &user->type;
    if (type == nullptr) FailWith("element type '" + Shown(name) + "' is not known");
    // Of fluids the first degrees of freedom are mass flows, velocities and pressures.
    if (lengthExponent_ != 0 && (name == "D" || name.starts_with("F3D"))) FailUnknown("element type " + Shown(name));
    nodesPerElement_ = type->numNodes;
  }
  int rotationNode = 0;
  if (card_.keyword == "RIGIDBODY" && ReadDeckInteger(card_.ValueOf("ROTNODE"), rotationNode))
    rotationNodes_.insert(rotationNode);
  DeckDataLine fields(line);
  EditParameters(fields);
  return fields.Text();
}

void DeckLineConverter::EndCard()
{
  if (openNodes_ > 0) FailWith(CardName() + " ends before its data are complete");
  if (lengthExponent_ != 0) CheckDefaults();
}

/// Numbers that the solver puts where a card has none, in any unit.
void DeckLineConverter::CheckDefaults() const
{
  const std::string card = "cannot convert " + CardName();
  if (card_.keyword == "SOLIDSECTION" && !statesQuantity_ && HasPlaneElements())
    FailWith(card + " of plane elements: expected their thickness, the solver takes 1 for none and 0");
  if (card_.keyword == "FRICTION" && !statesQuantity_)
    FailWith(card + ": expected a stick slope, the solver takes half of Young's modulus for none and 0");
  if (card_.keyword == "SURFACEBEHAVIOR" && card_.ValueOf("PRESSURE-OVERCLOSURE") == "HARD")
    FailWith(card + ", PRESSURE-OVERCLOSURE=HARD: expected LINEAR, its stiffness is 50 times Young's modulus");
}

std::string DeckLineConverter::ConvertData(std::string_view line)
{
  DeckDataLine fields(line);
  if (rule_ == nullptr) {
    for (std::size_t i = 0; i < fields.Size(); ++i)
      if (fields.HasNumber(i)) FailUnknown("the data of " + CardName());
  } else {
    (this->*rule_->handler)(fields);
  }
  ++dataLines_;
  return fields.Text();
}

/// What a card takes from elsewhere stays in its units and with its node numbers.
void DeckLineConverter::CheckSource() const
{
  if (card_.Find("USER") != nullptr) FailUnknown("what a subroutine gives to " + CardName());
  // A submodel finds its place in the global one by coordinates.
  const bool readsFile = card_.Find("FILE") != nullptr || card_.Find("READ") != nullptr ||
                         (card_.Find("INPUT") != nullptr && lengthExponent_ != 0);
  if (readsFile) FailUnknown("the file that " + CardName() + " reads");
}

bool DeckLineConverter::HasPlaneElements() const
{
  const DeckSet* set = model_.FindElementSet(card_.ValueOf("ELSET"));
  return set != nullptr && std::any_of(set->ids.begin(), set->ids.end(), [this](int id) {
           const DeckElement* element = model_.FindElement(id);
           return element != nullptr && element->type != nullptr &&
                  std::string_view(element->type->name).starts_with("CP");
         });
}

void DeckLineConverter::EditParameters(DeckDataLine& line) const
{
  for (std::size_t i = 1; i < line.Size(); ++i) {
    const std::string_view field  = line[i];
    const std::size_t      equals = field.find('=');
    if (equals == std::string_view::npos) continue;
    const std::string name   = Compact(field.substr(0, equals));
    const std::string value  = WithoutBlanks(field.substr(equals + 1));
    double            number = 0.0;
    if (!ReadDeckNumber(value, number) || IsParameterWithoutUnit(name)) continue;

    const Rule::Parameter* known = nullptr;
    if (rule_ != nullptr)
      for (const Rule::Parameter& parameter : rule_->parameters)
        if (parameter.name != nullptr && name == parameter.name) known = &parameter;
    if (known == nullptr) FailUnknown("the parameter " + name + " of " + CardName());

    int node = 0;
    if (known->power == Rule::Parameter::kNode) {
      if (nodeOffset_ != 0 && ReadDeckInteger(value, node))
        line.Replace(i, std::string(field.substr(0, equals + 1)) + Renumbered(node));
    } else if (lengthExponent_ != 0) {
      const std::string scaled = ScaledParameter(value, known->power);
      if (scaled.size() > known->characters)
        FailWith("'" + Shown(value) + "' would become '" + scaled + "', of which the solver reads " +
                 std::to_string(known->characters) + " characters");
      line.Replace(i, std::string(field.substr(0, equals + 1)) + scaled);
    }
  }
}

// ---- one function for each way that cards hold their data

void DeckLineConverter::Plain(DeckDataLine&) {}

void DeckLineConverter::Unknown(DeckDataLine& line)
{
  if (lengthExponent_ == 0) return;
  for (std::size_t i = 0; i < line.Size(); ++i)
    if (line.HasNumber(i)) FailUnknown("the data of " + CardName());
}

void DeckLineConverter::Nodes(DeckDataLine& line)
{
  if (card_.Find("SYSTEM") != nullptr) FailUnknown("the system of coordinates of " + CardName());
  Node(line, 0);
  for (std::size_t i = 1; i <= 3; ++i) Scale(line, i, 1);
}

void DeckLineConverter::Elements(DeckDataLine& line)
{
  std::size_t field = 0;
  if (openNodes_ == 0) {
    openNodes_ = nodesPerElement_;
    field      = 1;
  }
  for (; field < line.Size() && openNodes_ > 0; ++field, --openNodes_) Node(line, field);
}

void DeckLineConverter::NodeSet(DeckDataLine& line)
{
  const std::size_t nodes = card_.Find("GENERATE") != nullptr ? 2 : line.Size();
  for (std::size_t i = 0; i < nodes; ++i) Node(line, i);
}

void DeckLineConverter::Surface(DeckDataLine& line)
{
  if (card_.ValueOf("TYPE") == "NODE") Node(line, 0);
}

void DeckLineConverter::NodeFirst(DeckDataLine& line) { Node(line, 0); }

void DeckLineConverter::Temperature(DeckDataLine& line)
{
  Node(line, 0);
  ScaleFrom(line, 2, -1);  // gradients across shells and beams
}

void DeckLineConverter::NodeSecond(DeckDataLine& line) { Node(line, 1); }

void DeckLineConverter::NodeThickness(DeckDataLine& line)
{
  Node(line, 0);
  Scale(line, 1, 1);
  Scale(line, 2, 1);  // of beams
}

void DeckLineConverter::Lengths(DeckDataLine& line) { ScaleFrom(line, 0, 1); }

void DeckLineConverter::FirstLength(DeckDataLine& line) { Scale(line, 0, 1); }

void DeckLineConverter::FirstLineLengths(DeckDataLine& line)
{
  if (card_.keyword == "BEAMSECTION" && !IsOneOf(card_.ValueOf("SECTION"), {"RECT", "CIRC", "PIPE", "BOX"}))
    return Unknown(line);
  if (dataLines_ == 0) ScaleFrom(line, 0, 1);
}

void DeckLineConverter::SolidSection(DeckDataLine& line)
{
  // A thickness of plane elements or an area of trusses; of solids the solver does not look at it.
  double size = 0.0;
  if (lengthExponent_ == 0 || !ReadDeckNumber(line[0], size)) return;
  statesQuantity_          = statesQuantity_ || size != 0.0;
  const DeckSet* set       = model_.FindElementSet(card_.ValueOf("ELSET"));
  int            dimension = 0;
  bool           isMixed   = set == nullptr;
  if (set != nullptr)
    for (const int id : set->ids) {
      const DeckElement* element = model_.FindElement(id);
      if (element == nullptr || element->type == nullptr) continue;
      isMixed   = isMixed || (dimension != 0 && dimension != element->type->dimension);
      dimension = element->type->dimension;
    }
  if (isMixed || dimension == 0) FailUnknown("the data of " + CardName() + " of elements of several kinds");
  if (dimension < 3) Scale(line, 0, dimension == 2 ? 1 : 2);
}

void DeckLineConverter::Mass(DeckDataLine& line) { Scale(line, 0, -1); }

void DeckLineConverter::Elastic(DeckDataLine& line)
{
  const std::string_view type = card_.ValueOf("TYPE");
  // Per line of a set of constants: fields that are moduli; ratios and temperatures stand between or behind them.
  if (type.empty() || type.starts_with("ISO")) {
    Scale(line, 0, -2);
  } else if (type.starts_with("ORTHO")) {
    for (std::size_t i = 0; i < (dataLines_ % 2 == 0 ? 8u : 1u); ++i) Scale(line, i, -2);
  } else if (type.starts_with("ANISO")) {
    for (std::size_t i = 0; i < (dataLines_ % 3 == 2 ? 5u : 8u); ++i) Scale(line, i, -2);
  } else if (type == "ENGINEERINGCONSTANTS") {
    Scale(line, 0, -2);
    if (dataLines_ % 2 == 0)
      for (const std::size_t i : {1u, 2u, 6u, 7u}) Scale(line, i, -2);
  } else {
    Unknown(line);
  }
}

void DeckLineConverter::Density(DeckDataLine& line) { Scale(line, 0, -4); }

void DeckLineConverter::Plastic(DeckDataLine& line)
{
  const std::string_view hardening = card_.ValueOf("HARDENING");
  if (!hardening.empty() && !IsOneOf(hardening, {"ISOTROPIC", "KINEMATIC", "COMBINED"})) return Unknown(line);
  Scale(line, 0, -2);
}

void DeckLineConverter::SpecificHeat(DeckDataLine& line) { Scale(line, 0, 2); }

void DeckLineConverter::Boundary(DeckDataLine& line)
{
  Node(line, 0);
  if (lengthExponent_ == 0) return;
  double value = 0.0;
  if (!ReadDeckNumber(line[3], value) || value == 0.0) return;
  const int first = DegreeIn(line, 1);
  Scale(line, 3, PowerOfDegree(line[0], first, line[2].empty() ? first : DegreeIn(line, 2)));
}

void DeckLineConverter::ConcentratedLoad(DeckDataLine& line)
{
  Node(line, 0);
  double value = 0.0;
  if (lengthExponent_ == 0 || !ReadDeckNumber(line[2], value) || value == 0.0) return;
  // A moment is a force times a length.
  const int degree = DegreeIn(line, 1);
  Scale(line, 2, 1 - PowerOfDegree(line[0], degree, degree));
}

void DeckLineConverter::ConcentratedFlux(DeckDataLine& line)
{
  Node(line, 0);
  Scale(line, 2, 1);
}

void DeckLineConverter::DistributedLoad(DeckDataLine& line)
{
  const std::string label = Compact(line[1]);
  if (label.ends_with("NP")) Node(line, 2);  // that the pressure is taken from
  if (IsFaceLabel(label, "P")) {
    Scale(line, 2, -2);
  } else if (label == "GRAV") {
    Scale(line, 2, 1);
  } else if (label == "CENTRIF") {
    for (std::size_t i = 3; i <= 5; ++i) Scale(line, i, 1);
  } else if (label != "NEWTON") {
    if (lengthExponent_ != 0) FailUnknown("load '" + Shown(label) + "' of " + CardName());
  }
}

void DeckLineConverter::DistributedFlux(DeckDataLine& line)
{
  const std::string label = Compact(line[1]);
  if (IsFaceLabel(label, "S")) {
    Scale(line, 2, -1);
  } else if (label == "BF") {
    Scale(line, 2, -2);
  } else if (lengthExponent_ != 0) {
    FailUnknown("flux '" + Shown(label) + "' of " + CardName());
  }
}

void DeckLineConverter::Film(DeckDataLine& line)
{
  const std::string label    = Compact(line[1]);
  const bool        isForced = label.ends_with("FC") && lengthExponent_ == 0;
  if (!isForced && !IsFaceLabel(label, "F")) FailUnknown("film '" + Shown(label) + "' of " + CardName());
  if (isForced) Node(line, 2);  // that the temperature of the fluid is taken from
  Scale(line, 3, -1);
}

void DeckLineConverter::InitialConditions(DeckDataLine& line)
{
  const std::string_view type = card_.ValueOf("TYPE");
  if (type == "TEMPERATURE") {
    Temperature(line);
  } else if (IsOneOf(type, {"DISPLACEMENT", "VELOCITY"})) {
    Node(line, 0);
    if (lengthExponent_ == 0) return;
    const int degree = DegreeIn(line, 1);
    Scale(line, 2, PowerOfDegree(line[0], degree, degree));
  } else if (type == "STRESS") {
    for (std::size_t i = 2; i < 8; ++i) Scale(line, i, -2);
  } else if (type != "PLASTICSTRAIN") {
    FailUnknown("the data of " + CardName() + ", TYPE=" + Shown(type));
  }
}

void DeckLineConverter::Equation(DeckDataLine& line)
{
  if (card_.Find("REMOVE") != nullptr) return Node(line, 0);  // and degrees of freedom behind it
  if (openNodes_ == 0) {
    if (!ReadDeckInteger(line[0], openNodes_) || openNodes_ < 1) FailWith("expected the number of terms");
    hasPower_ = false;
    return;
  }
  for (std::size_t i = 0; i < line.Size() && openNodes_ > 0; i += 3, --openNodes_) {
    Node(line, i);
    if (lengthExponent_ == 0) continue;
    const int degree = DegreeIn(line, i + 1);
    const int power  = PowerOfDegree(line[i], degree, degree);
    if (hasPower_ && power != power_) FailUnknown("an equation of translations and rotations");
    power_    = power;
    hasPower_ = true;
  }
}

void DeckLineConverter::Constraint(DeckDataLine& line)
{
  if (dataLines_ == 0 && !IsOneOf(Compact(line[0]), {"PLANE", "STRAIGHT", "BEAM"}))
    FailUnknown("constraint '" + Shown(Compact(line[0])) + "' of " + CardName());
  for (std::size_t i = dataLines_ == 0 ? 1 : 0; i < line.Size(); ++i) Node(line, i);
}

void DeckLineConverter::SurfaceBehavior(DeckDataLine& line)
{
  const std::string_view law = card_.ValueOf("PRESSURE-OVERCLOSURE");
  if (law == "LINEAR") {
    Scale(line, 0, -3);
    Scale(line, 1, -2);
  } else if (law == "TIED") {
    Scale(line, 0, -3);
  } else if (law == "EXPONENTIAL") {
    Scale(line, 0, 1);
    Scale(line, 1, -2);
  } else if (law == "TABULAR") {
    Scale(line, 0, -2);
    Scale(line, 1, 1);
  } else {
    Unknown(line);
  }
}

void DeckLineConverter::Friction(DeckDataLine& line)
{
  double slope    = 0.0;
  statesQuantity_ = ReadDeckNumber(line[1], slope) && slope != 0.0;
  Scale(line, 1, -3);
}

// ---- quantities and nodes

void DeckLineConverter::FailWith(const std::string& text) const
{
  fail_(text);
  std::abort();
}

void DeckLineConverter::FailUnknown(const std::string& what) const
{
  FailWith("cannot convert " + what + ": " +
           (lengthExponent_ != 0 ? "which of its numbers hold lengths" : "which of its numbers are nodes") +
           " is not known");
}

void DeckLineConverter::Scale(DeckDataLine& line, std::size_t field, int power)
{
  if (lengthExponent_ != 0 && power != 0 && line.HasNumber(field)) line.Replace(field, Scaled(line[field], power));
}

std::string DeckLineConverter::Scaled(std::string_view number, int power) const
{
  double value = 0.0;
  ReadDeckNumber(number, value);
  if (IsCutBySolver(number, value))
    FailWith("the solver reads the first 20 characters of '" + Shown(number) + "', which is another number");
  std::string scaled = ShiftDecimal(number, power * lengthExponent_);
  if (!ReadDeckNumber(scaled, value))
    FailWith("'" + Shown(number) + "' would become '" + scaled + "', which is no number");
  return scaled;
}

std::string DeckLineConverter::ScaledParameter(const std::string& number, int power) const
{
  const std::string plain = Scaled(number, power);
  if (number.find_first_of("eEdD+-", 1) != std::string::npos) return plain;
  // The solver reads fewer characters of some parameters than of data.
  const std::string scientific = ShiftDecimal(number + "E0", power * lengthExponent_);
  return scientific.size() < plain.size() ? scientific : plain;
}

void DeckLineConverter::ScaleFrom(DeckDataLine& line, std::size_t first, int power)
{
  for (std::size_t i = first; i < line.Size(); ++i) Scale(line, i, power);
}

void DeckLineConverter::Node(DeckDataLine& line, std::size_t field)
{
  int node = 0;
  if (nodeOffset_ != 0 && ReadDeckInteger(line[field], node)) line.Replace(field, Renumbered(node));
}

std::string DeckLineConverter::Renumbered(int node) const
{
  if (node == 0) return "0";  // no node
  const std::int64_t number = std::int64_t{node} + nodeOffset_;
  if (number < 1 || number > std::numeric_limits<int>::max())
    FailWith("node " + std::to_string(node) + " would become " + std::to_string(number));
  return std::to_string(number);
}

int DeckLineConverter::PowerOfDegree(std::string_view nodes, int first, int last) const
{
  if (first >= 1 && last <= 3) return AreRotations(nodes) ? 0 : 1;
  if ((first >= 4 && last <= 6) || (first == 11 && last == 11)) return 0;
  FailUnknown("degrees of freedom " + std::to_string(first) + " to " + std::to_string(last) + " of " + CardName());
}

bool DeckLineConverter::AreRotations(std::string_view nodes) const
{
  int node = 0;
  if (ReadDeckInteger(nodes, node)) return rotationNodes_.count(node) > 0;
  const DeckSet* set = rotationNodes_.empty() ? nullptr : model_.FindNodeSet(Compact(nodes));
  if (set == nullptr) return false;
  const auto isRotation = [this](int id) { return rotationNodes_.count(id) > 0; };
  const bool hasAny     = std::any_of(set->ids.begin(), set->ids.end(), isRotation);
  if (hasAny && !std::all_of(set->ids.begin(), set->ids.end(), isRotation))
    FailUnknown("node set '" + Shown(set->name) + "' with the ROT NODE of a rigid body in it");
  return hasAny;
}

int DeckLineConverter::DegreeIn(const DeckDataLine& line, std::size_t field) const
{
  int degree = 0;
  if (!ReadDeckInteger(line[field], degree))
    FailWith("expected a degree of freedom, found '" + Shown(line[field]) + "'");
  return degree;
}

}  // namespace quilon::calculix
