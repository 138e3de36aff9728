#pragma once

/// @file
/// The table of cards: what the solver's keywords define, refer to and hold.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quilon::calculix {

struct DeckCard;

/// What stands in a field of a data line.
struct DeckField
{
  enum Content : std::uint8_t
  {
    Anything,  ///< not looked at
    Name,      ///< of something
    Label,     ///< one of the card's labels
    Integer,
    Number,
    Degree,            ///< a degree of freedom
    NodeId,            ///< a node, 0 for none
    Node,              ///< a node or a set of nodes
    Element,           ///< an element or a set of elements
    ElementOrSurface,  ///< an element, a set of elements or a surface
    Surface
  };

  // Powers that depend on more than the field.
  static constexpr int kOfDegree   = 100;  ///< 1 for translations, 0 for rotations and temperatures of the line
  static constexpr int kOfLoad     = 101;  ///< 0 for forces, 1 for moments of the line
  static constexpr int kOfElements = 102;  ///< 1 for the thickness of plane elements, 2 for the area of trusses

  Content content = Anything;
  int     power   = 0;  ///< of the length in a number: -2 of a modulus, as a force per area
  /// Of a degree of freedom: bit i for i, where the solver takes it.
  std::uint16_t degrees = 0;
};

/// What is known of numbers whose unit is to be changed, or of nodes that get other numbers.
enum class DeckKnowledge
{
  Nothing,  ///< any number may be a node or hold a length
  Nodes,    ///< what is a node; any other number may hold a length
  All
};

/// The fields of data lines.
struct DeckForm
{
  static constexpr std::size_t kMostFields = 10;
  static constexpr std::size_t kMostLines  = 3;

  struct Line
  {
    std::array<DeckField, kMostFields> fields;
    bool                               goesOn   = false;  ///< fields behind the last one are as that one
    std::size_t                        required = 0;      ///< fewest fields that the solver takes

    /// @return how many fields are told one by one
    constexpr std::size_t Size() const noexcept
    {
      std::size_t size = kMostFields;
      while (size > 0 && fields[size - 1].content == DeckField::Anything) --size;
      return size;
    }

    constexpr DeckField operator[](std::size_t field) const noexcept
    {
      const std::size_t size = Size();
      if (field < size) return fields[field];
      return goesOn ? fields[size - 1] : DeckField();
    }
  };

  /// Of the parameter or label that chooses the form, parted by blanks: "P#" is P and P1 to P6, "ISO*" what begins so,
  /// "*NP" what ends so, "-" none. Null: all others.
  const char*                  values    = nullptr;
  std::array<Line, kMostLines> lines     = {};
  std::size_t                  numLines  = 1;
  std::size_t                  cycleFrom = 0;  ///< the line that follows the last one
  DeckKnowledge                knowledge = DeckKnowledge::All;
  /// The line is one term of an equation. Terms end where they end, not with lines, and in a line of its own their
  /// number stands before them.
  bool isTerm = false;

  constexpr const Line& operator[](std::size_t line) const noexcept
  {
    return lines[line < numLines ? line : cycleFrom + (line - numLines) % (numLines - cycleFrom)];
  }
};

/// A parameter of a card.
struct DeckParameterRule
{
  enum Meaning : std::uint8_t
  {
    Unknown,
    Plain,  ///< a name, a count, a time, a temperature or a ratio
    Own,    ///< what the card itself defines, or what is looked up in another way
    Number,
    NodeId,
    ElementId,
    DataElsewhere,  ///< its data refer to nothing in this deck
    // From here on a name that something else defines.
    NodeSet,
    ElementSet,
    Amplitude,
    Surface,
    Interaction,
    TimePoints,
    Material,
    Orientation
  };

  const char* name       = nullptr;
  Meaning     meaning    = Unknown;
  int         power      = 0;   ///< of the length in a number
  std::size_t characters = 20;  ///< of the value that the solver reads
};

/// A keyword card that the solver knows.
struct DeckKeyword
{
  /// What the card is to a model.
  enum Role : std::uint8_t
  {
    Other,
    Procedure,  ///< says what a step computes
    Property,   ///< numbers of a material
    Section,    ///< what the elements of a set are made of
    Load        ///< belongs to a step, as a procedure does
  };

  /// What the card makes.
  enum Thing : std::uint8_t
  {
    Nothing,
    Nodes,
    Elements,
    ElementType,
    NodeSet,
    ElementSet,
    Material,
    Orientation,
    Surface,
    Amplitude,
    Interaction,
    TimePoints,
    Contact,
    Tie,
    MultiPoint,
    Coupling,
    RigidBody,
    PreTension,
    ModelChange,
    Step,
    EndOfStep
  };

  /// Where the solver takes the card.
  enum Where : std::uint8_t
  {
    Anywhere,
    BeforeSteps,
    InStep
  };

  const char* name;  ///< upper case, without blanks
  Role        role    = Other;
  Where       where   = Anywhere;
  Thing       defines = Nothing;
  /// Whether the solver drops ids from its data that no node or element has, and says so; else it stops.
  bool                             dropsUnknownIds = false;
  bool                             needsData       = false;  ///< whether the solver stops without a data line
  DeckKnowledge                    knowledge       = DeckKnowledge::All;
  std::array<DeckParameterRule, 5> parameters      = {};
  const char*                      selector        = nullptr;  ///< parameter whose value chooses the form
  const char*                      label           = nullptr;  ///< what a label in the data is, which chooses it
  std::size_t                      labelField      = 1;        ///< where it stands; 0: in the first line alone
  const char* labels      = nullptr;     ///< that the solver knows, parted by blanks, with '*' behind those that go on
  bool        needsLabels = false;       ///< whether it stops at others; else it skips them
  std::span<const DeckForm> forms = {};  ///< the last one is that of all other values

  /// @param value of the selector or label
  const DeckForm& FormOf(std::string_view value) const noexcept;

  /// @param word upper case, without blanks
  bool KnowsLabel(std::string_view word) const noexcept;
  /// @return ", did you mean 'x'?" for a label that is nearly right, else nothing
  std::string SuggestLabel(std::string_view word) const;

  /// @return what the parameter is on this card, null when no one here knows
  const DeckParameterRule* FindParameter(std::string_view parameter) const noexcept;
};

/// Follows the data lines of a card.
class DeckFormWalk
{
public:
  void Begin(const DeckKeyword& keyword, const DeckCard& card);
  /// @param line the next data line of the card
  /// @return what stands in it
  const DeckForm::Line& Next(std::string_view line);

  /// Of the last line.
  const DeckForm& Form() const noexcept { return *form_; }
  /// Of the last line, without blanks and in upper case; empty where no label chooses the form.
  const std::string& Label() const noexcept { return label_; }
  /// How many lines there were.
  std::size_t Lines() const noexcept { return lines_; }

private:
  const DeckKeyword* keyword_ = nullptr;
  const DeckForm*    form_    = nullptr;
  std::string        label_;
  std::size_t        lines_ = 0;
};

/// The solver compares as many characters as its keyword has: "STATICS" is STATIC to it.
/// @param name without asterisk and blanks, upper case
/// @return the longest keyword that the name begins with, null when there is none
const DeckKeyword* FindDeckKeyword(std::string_view name) noexcept;

/// Parameters that mean the same on every card that has no rule of its own for them.
std::span<const DeckParameterRule> CommonDeckParameters() noexcept;

/// @return one of these, null when the name is not among them
const DeckParameterRule* FindCommonDeckParameter(std::string_view name) noexcept;

/// @return ", did you mean 'x'?" for a keyword that is nearly right, else nothing
std::string SuggestDeckKeyword(std::string_view name);

}  // namespace quilon::calculix
