#pragma once

/// @file
/// Surfaces of a deck, cards that tie nodes to each other, and elements that steps add or take away.

#include <cstddef>
#include <string_view>
#include <vector>

#include "calculix/deck/DeckKeyword.h"
#include "calculix/deck/DeckModel.h"
#include "calculix/deck/DeckText.h"

namespace quilon::calculix {

/// Keeps what such cards name, from the table of cards: a few bytes for each id on their lines, and nothing is looked
/// up.
class DeckConstraintReader
{
public:
  /// @param model borrowed; receives surfaces, constraints and the changes of its steps
  explicit DeckConstraintReader(DeckModel& model) : model_(model) {}

  /// Begins a card.
  void OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place, bool isInStep);
  /// A data line of the card.
  void OnData(std::string_view line);

private:
  void BeginConstraint(const DeckKeyword& keyword, const DeckCard& card, DeckConstraint::Kind kind,
                       const DeckPlace& place);
  void AddParameter(DeckParameterRule::Meaning meaning, const DeckParameter& parameter);
  void AddToSurface(const DeckForm::Line& form, std::string_view line);
  void AddField(DeckField::Content content, std::string_view field);
  void AddTerms(std::size_t sizeOfTerm, std::string_view line);

  DeckModel&         model_;
  DeckKeyword::Thing thing_ = DeckKeyword::Nothing;  // of the card; Nothing: its data are not kept
  DeckFormWalk       form_;
  std::size_t        fieldsLeft_  = 0;  // of the equation that is being read
  std::size_t        fieldOfTerm_ = 0;
};

}  // namespace quilon::calculix
