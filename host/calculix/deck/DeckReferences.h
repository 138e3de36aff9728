#pragma once

/// @file
/// What the cards of a deck refer to.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "calculix/deck/DeckKeyword.h"
#include "calculix/deck/DeckModel.h"
#include "calculix/deck/DeckReader.h"

namespace quilon::calculix {

/// Collects the nodes, elements, sets and other named things that cards refer to and says at the end which of them are
/// not there: the solver takes most of them wherever they are defined.
class DeckReferences
{
public:
  using Report = std::function<void(DeckMessage::Severity severity, const DeckPlace& place, std::string text)>;

  /// @param model borrowed; grows while the deck is read
  DeckReferences(const DeckModel& model, Report report);

  /// Begins a card.
  void OnCard(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place);
  /// A data line of the card.
  void OnData(const DeckLine& line);
  /// A layer of a section; empty names refer to nothing.
  void AddLayer(const std::string& material, const std::string& orientation, const DeckPlace& place);
  /// Reports what is not there.
  void Check();

private:
  using Meaning = DeckParameterRule::Meaning;
  using Names   = std::unordered_set<std::string>;

  struct NamedReference
  {
    Meaning     target = DeckParameterRule::Unknown;
    std::string name;
    DeckPlace   place;
    bool        mayBeSurface = false;
  };

  struct IdReference
  {
    bool                  isNode   = false;
    int                   id       = 0;
    DeckMessage::Severity severity = DeckMessage::Error;
    DeckPlace             place;
  };

  /// @param named what a name stands for
  static const char* KindOf(Meaning named) noexcept;

  void Define(const DeckKeyword& keyword, const DeckCard& card, const DeckPlace& place);
  void AddField(DeckField::Content content, std::string_view field, const DeckPlace& place);
  void AddTerms(const DeckLine& line);
  void FinishEquation();
  void AddId(bool isNode, int id, DeckMessage::Severity severity, const DeckPlace& place);
  bool IsThere(const IdReference& reference) const noexcept;
  bool IsDefined(Meaning target, const std::string& name) const;

  const DeckModel&               model_;
  Report                         report_;
  std::unordered_map<int, Names> defined_;
  std::vector<NamedReference>    names_;
  std::vector<IdReference>       ids_;  // that were not there when they were named

  DeckFormWalk          form_;                     // of the card
  bool                  refersElsewhere_ = false;  // its data, to what is not in this deck
  DeckMessage::Severity severity_        = DeckMessage::Error;
  std::size_t           fieldsLeft_      = 0;  // of the equation that is being read
  std::size_t           fieldsRead_      = 0;
  DeckPlace             equation_;
};

}  // namespace quilon::calculix
