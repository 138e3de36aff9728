#pragma once

/// @file
/// Lines of a deck in other units and with other node numbers.

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "calculix/deck/DeckKeyword.h"
#include "calculix/deck/DeckModel.h"
#include "calculix/deck/DeckText.h"

namespace quilon::calculix {

/// Multiplies a number by a power of ten in its text, so that no digit changes: "12.5" and -3 give "0.0125". The result
/// has at most the twenty characters that the solver reads; a number that has no such text is rounded to one.
/// @param field a number as ReadDeckNumber() takes it
std::string ShiftDecimal(std::string_view field, int exponent);

/// A data line whose fields can be exchanged one by one; everything between them stays.
class DeckDataLine
{
public:
  explicit DeckDataLine(std::string_view line);

  std::size_t Size() const noexcept { return fields_.size(); }
  /// @return the field without blanks around it, empty behind the last one
  std::string_view operator[](std::size_t field) const noexcept;
  /// @return whether the field holds a number
  bool        HasNumber(std::size_t field) const;
  void        Replace(std::size_t field, std::string text);
  std::string Text() const;

private:
  struct Field
  {
    std::size_t first = 0;  // in line_
    std::size_t size  = 0;
    std::string replacement;
    bool        isReplaced = false;
  };

  std::string_view   line_;
  std::vector<Field> fields_;
};

/// Converts cards and data lines, in their order. The table of cards says which hold lengths, quantities
/// made of them, and nodes; anything else that holds a number is reported rather than guessed at.
///
/// Units: the unit of length changes, those of force, time and temperature stay. So a modulus in N/mm^2 becomes one in
/// N/m^2, and a density in t/mm^3 one in kg/m^3.
class DeckLineConverter
{
public:
  /// @param lengthExponent a length of 1 is 10^lengthExponent afterwards; 0 leaves units alone
  /// @param nodeOffset     added to each node number; 0 leaves them alone
  /// @param model          of the deck, borrowed
  /// @param fail           throws; called with what is wrong with the line being converted
  DeckLineConverter(int lengthExponent, int nodeOffset, const DeckModel& model,
                    std::function<void(const std::string&)> fail);

  /// @param line of kind Card
  std::string ConvertCard(std::string_view line);
  /// Checks what cannot be told before a card's data have ended; to be called before the next card and behind the last.
  void EndCard();
  /// @param line of kind Data
  std::string ConvertData(std::string_view line);

private:
  void CheckKnowledge(const DeckDataLine& line) const;
  void Convert(DeckDataLine& line, std::size_t field, const DeckForm::Line& form);
  void Elements(DeckDataLine& line);
  void Terms(DeckDataLine& line, const DeckForm::Line& term);

  [[noreturn]] void FailWith(const std::string& text) const;
  [[noreturn]] void FailUnknown(const std::string& what) const;
  /// Fails as FailUnknown() where the line has a number.
  void        FailWithNumbers(const DeckDataLine& line, const std::string& what) const;
  std::string CardName() const { return "*" + card_.keyword; }

  /// Multiplies by the length to the power given; a field without text stays.
  void        Scale(DeckDataLine& line, std::size_t field, int power);
  std::string Scaled(std::string_view number, int power) const;
  std::string ScaledParameter(const std::string& number, int power) const;
  /// Renumbers a field that holds a node; the name of a set stays.
  void        Node(DeckDataLine& line, std::size_t field);
  std::string Renumbered(int node) const;
  /// @param nodes number of a node or name of a set
  /// @return of the degrees of freedom that the line names
  int PowerOfLine(const DeckDataLine& line, const DeckForm::Line& form) const;
  int PowerOfSection() const;
  /// @return 1 for translations, 0 for rotations and temperatures
  int PowerOfDegree(std::string_view nodes, int first, int last) const;
  /// @return whether the degrees of freedom 1 to 3 of the nodes are rotations
  bool AreRotations(std::string_view nodes) const;
  int  DegreeIn(const DeckDataLine& line, std::size_t field) const;
  void CheckSource() const;
  void CheckDefaults() const;
  /// @return whether the section has elements of plane stress or plane strain
  bool HasPlaneElements() const;
  void EditParameters(DeckDataLine& line) const;

  int                                     lengthExponent_;
  int                                     nodeOffset_;
  const DeckModel&                        model_;
  std::function<void(const std::string&)> fail_;

  const DeckKeyword* keyword_ = nullptr;  // of card_; null: not in the table
  DeckFormWalk       form_;
  DeckCard           card_;
  int                openNodes_       = 0;  // of an element or equation, still to come
  int                power_           = 0;  // of the degrees of freedom in the equation
  bool               hasPower_        = false;
  bool               statesQuantity_  = false;  // that the solver has a default for
  int                nodesPerElement_ = 0;

  std::set<int> rotationNodes_;  // of the rigid bodies so far: their translations are the body's rotations
};

}  // namespace quilon::calculix
