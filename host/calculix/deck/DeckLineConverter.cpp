#include "calculix/deck/DeckLineConverter.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <utility>

#include "text/ColumnText.h"

namespace quilon::calculix {
namespace {

/// The solver reads so many characters of a number.
constexpr std::size_t kLongestNumber = 20;

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

DeckLineConverter::DeckLineConverter(int lengthExponent, int nodeOffset, const DeckModel& model,
                                     std::function<void(const std::string&)> fail)
    : lengthExponent_(lengthExponent), nodeOffset_(nodeOffset), model_(model), fail_(std::move(fail))
{}

std::string DeckLineConverter::ConvertCard(std::string_view line)
{
  card_    = ParseDeckCard(line);
  keyword_ = FindDeckKeyword(card_.keyword);
  if (keyword_ != nullptr && card_.keyword != keyword_->name) keyword_ = nullptr;  // longer than the solver's
  if (keyword_ != nullptr) form_.Begin(*keyword_, card_);
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
  if (keyword_ == nullptr) {
    FailWithNumbers(fields, "the data of " + CardName());
  } else if (keyword_->defines == DeckKeyword::Elements) {
    Elements(fields);
  } else {
    const DeckForm::Line& form = form_.Next(line);
    CheckKnowledge(fields);
    if (form_.Form().isTerm) {
      Terms(fields, form);
    } else {
      for (std::size_t i = 0; i < fields.Size(); ++i) Convert(fields, i, form);
    }
  }
  return fields.Text();
}

/// Fails where the numbers of a line are not known well enough to be converted.
void DeckLineConverter::CheckKnowledge(const DeckDataLine& line) const
{
  if (keyword_->defines == DeckKeyword::Nodes && card_.Find("SYSTEM") != nullptr)
    FailUnknown("the system of coordinates of " + CardName());
  const DeckForm& form      = form_.Form();
  const auto      knowledge = std::min(keyword_->knowledge, form.knowledge);
  if (knowledge == DeckKnowledge::All || (knowledge == DeckKnowledge::Nodes && lengthExponent_ == 0)) return;
  if (keyword_->label != nullptr && keyword_->knowledge == DeckKnowledge::All)
    FailUnknown(std::string(keyword_->label) + " '" + Shown(form_.Label()) + "' of " + CardName());
  // Of a card that is known in other forms the form is told.
  std::string what = "the data of " + CardName();
  if (keyword_->selector != nullptr && form.knowledge == DeckKnowledge::Nothing)
    what += ", " + std::string(keyword_->selector) + '=' + Shown(card_.ValueOf(keyword_->selector));
  FailWithNumbers(line, what);
}

void DeckLineConverter::FailWithNumbers(const DeckDataLine& line, const std::string& what) const
{
  for (std::size_t i = 0; i < line.Size(); ++i)
    if (line.HasNumber(i)) FailUnknown(what);
}

void DeckLineConverter::Convert(DeckDataLine& line, std::size_t field, const DeckForm::Line& form)
{
  const DeckField known = form[field];
  if (known.content == DeckField::NodeId || known.content == DeckField::Node) return Node(line, field);
  double value = 0.0;
  if (known.content != DeckField::Number || lengthExponent_ == 0 || !ReadDeckNumber(line[field], value)) return;
  statesQuantity_ = statesQuantity_ || (known.power != 0 && value != 0.0);
  int power       = known.power;
  if (power == DeckField::kOfElements) power = PowerOfSection();
  if (power == DeckField::kOfDegree || power == DeckField::kOfLoad) {
    if (value == 0.0) return;
    power = PowerOfLine(line, form);
    // A moment is a force times a length.
    if (known.power == DeckField::kOfLoad) power = 1 - power;
  }
  Scale(line, field, power);
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
    if (!ReadDeckNumber(value, number)) continue;

    const DeckParameterRule* known =
        keyword_ == nullptr ? FindCommonDeckParameter(name) : keyword_->FindParameter(name);
    if (known == nullptr) FailUnknown("the parameter " + name + " of " + CardName());

    int node = 0;
    if (known->meaning == DeckParameterRule::NodeId) {
      if (nodeOffset_ != 0 && ReadDeckInteger(value, node))
        line.Replace(i, std::string(field.substr(0, equals + 1)) + Renumbered(node));
    } else if (known->meaning == DeckParameterRule::Number && lengthExponent_ != 0) {
      const std::string scaled = ScaledParameter(value, known->power);
      if (scaled.size() > known->characters)
        FailWith("'" + Shown(value) + "' would become '" + scaled + "', of which the solver reads " +
                 std::to_string(known->characters) + " characters");
      line.Replace(i, std::string(field.substr(0, equals + 1)) + scaled);
    }
  }
}

// ---- data that need more than their fields

void DeckLineConverter::Elements(DeckDataLine& line)
{
  std::size_t field = 0;
  if (openNodes_ == 0) {
    openNodes_ = nodesPerElement_;
    field      = 1;
  }
  for (; field < line.Size() && openNodes_ > 0; ++field, --openNodes_) Node(line, field);
}

void DeckLineConverter::Terms(DeckDataLine& line, const DeckForm::Line& term)
{
  if (openNodes_ == 0) {
    if (!ReadDeckInteger(line[0], openNodes_) || openNodes_ < 1) FailWith("expected the number of terms");
    hasPower_ = false;
    return;
  }
  for (std::size_t i = 0; i < line.Size() && openNodes_ > 0; i += term.Size(), --openNodes_) {
    Node(line, i);
    if (lengthExponent_ == 0) continue;
    const int degree = DegreeIn(line, i + 1);
    const int power  = PowerOfDegree(line[i], degree, degree);
    if (hasPower_ && power != power_) FailUnknown("an equation of translations and rotations");
    power_    = power;
    hasPower_ = true;
  }
}

/// @return of a thickness of plane elements or an area of trusses; of solids the solver does not look at it
int DeckLineConverter::PowerOfSection() const
{
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
  return 3 - dimension;
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

int DeckLineConverter::PowerOfLine(const DeckDataLine& line, const DeckForm::Line& form) const
{
  // The degrees of freedom stand between the node and the value; the last one may be left out.
  int first = 0;
  int last  = 0;
  for (std::size_t i = 0; i < line.Size(); ++i) {
    if (form[i].content != DeckField::Degree || (first != 0 && line[i].empty())) continue;
    last = DegreeIn(line, i);
    if (first == 0) first = last;
  }
  return PowerOfDegree(line[0], first, last);
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
