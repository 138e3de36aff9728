#pragma once

/// @file
/// What is wrong with a deck beyond what a model needs to be right.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "calculix/deck/DeckKeyword.h"
#include "calculix/deck/DeckModel.h"
#include "calculix/deck/DeckReader.h"
#include "calculix/deck/DeckText.h"

namespace quilon::calculix {

/// Looks at cards and their data as the solver does that is about to compute: where cards stand, what the fields of
/// their data hold, constants that no material has, elements that are turned inside out. Readers of models do without
/// it: a model is what it is.
///
/// Numbers that the reader of the model reads itself it leaves to that: those of nodes, elements, sets, orientations
/// and materials.
class DeckLint
{
public:
  using Report = std::function<void(DeckMessage::Severity severity, const DeckPlace& place, std::string text)>;

  /// @param model borrowed
  DeckLint(const DeckModel& model, Report report);

  /// Begins a card and ends the one before.
  /// @param isInStep whether it stands behind a *STEP that has not ended, its own aside
  void OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place, bool isInStep);
  /// A data line of the card.
  void OnData(const DeckLine& line);
  /// Ends the last card, or one that the solver does not know.
  void EndCard();
  /// Looks at what the deck says as a whole.
  void Check();

private:
  void Error(const DeckPlace& place, std::string text) const { report_(DeckMessage::Error, place, std::move(text)); }
  void CheckPlace(bool isInStep) const;
  void CheckField(const DeckField& known, std::string_view field, const DeckLine& line) const;
  void CheckNumber(std::string_view field, const DeckLine& line) const;
  void CheckLabel(std::string_view field, const DeckLine& line) const;
  void CheckDegrees(const DeckForm::Line& form, const DeckLine& line) const;
  void CheckDegree(const DeckField& known, int degree, const DeckLine& line) const;
  void CheckTerms(const DeckForm::Line& term, const DeckLine& line);
  void CheckConstants(const DeckForm::Line& form, const DeckLine& line) const;
  bool FindCoordinates(const DeckElement& element, bool isExtruded, std::vector<double>& coordinates) const;
  void CheckShapes() const;

  const DeckModel& model_;
  Report           report_;

  const DeckKeyword* keyword_ = nullptr;  // null: no card, or none that is known
  DeckCard           card_;
  DeckPlace          place_;
  DeckFormWalk       form_;
  bool               readsNumbers_ = false;  // else the reader of the model does
  std::size_t        fieldsLeft_   = 0;      // of the equation that is being read
  std::size_t        fieldOfTerm_  = 0;
};

}  // namespace quilon::calculix
