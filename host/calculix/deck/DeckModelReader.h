#pragma once

/// @file
/// Reads a deck into a model and checks it.

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "calculix/deck/DeckConstraintReader.h"
#include "calculix/deck/DeckLint.h"
#include "calculix/deck/DeckModel.h"
#include "calculix/deck/DeckReader.h"
#include "calculix/deck/DeckReferences.h"

namespace quilon::calculix {

/// ReadModel() reads the lines and reports what is wrong with them, CheckModel() what is wrong between them,
/// ConvertModel() hands the model over. ReadDeckModel() calls the three.
class DeckModelReader : public DeckReader
{
public:
  /// @param target   borrowed; receives the model in ConvertModel()
  /// @param messages borrowed; receives what is wrong. Null: the first error is thrown and warnings are dropped
  DeckModelReader(const std::filesystem::path& deck, const DeckOptions& options, DeckModel& target,
                  std::vector<DeckMessage>* messages);

  /// @throws FED_Failure when the deck cannot be read; "PATH:LINE: TEXT" for the first error when there is no list
  void ReadModel() override;
  /// Afterwards the messages are in the order of their places and have their lines.
  void CheckModel() override;
  void ConvertModel() override;

protected:
  void OnLine(const DeckLine& line) override;
  void OnBadInclude(const DeckLine& line, const std::string& text) override;
  void OnDoubtfulInclude(const DeckLine& line, const std::string& text) override;

  DeckModel model_;

private:
  using DataHandler = void (DeckModelReader::*)(const DeckLine& line);
  using NameIndex   = std::unordered_map<std::string, std::size_t>;  // places of named things

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  /// Sets of one kind.
  struct Sets
  {
    const char*           kind;  // "node" or "element"
    std::vector<DeckSet>* list;
    NameIndex             index;
  };

  void Error(const DeckPlace& place, std::string text) { Report(DeckMessage::Error, place, std::move(text)); }
  void Warn(const DeckPlace& place, std::string text) { Report(DeckMessage::Warning, place, std::move(text)); }
  void Report(DeckMessage::Severity severity, const DeckPlace& place, std::string text);
  void CompleteMessages();

  void OnCard(const DeckLine& line);
  void EndCard();
  void BeginNodes(const DeckPlace& place);
  void BeginElements(const DeckPlace& place);
  void BeginSet(Sets& sets, const char* parameter, const DeckPlace& place);
  void BeginMaterial(const DeckPlace& place);
  void BeginProperty(const DeckPlace& place);
  void BeginOrientation(const DeckPlace& place);
  void BeginSection(const DeckPlace& place);
  void BeginUserElement(const DeckPlace& place);
  void BeginStep(const DeckPlace& place);
  void EndStep(const DeckPlace& place);

  void        OnReferringData(const DeckLine& line);
  void        OnStrayData(const DeckLine& line);
  void        OnNodeData(const DeckLine& line);
  void        OnElementData(const DeckLine& line);
  void        OnSetData(const DeckLine& line);
  void        OnGenerateData(const DeckLine& line);
  void        OnPropertyData(const DeckLine& line);
  void        OnOrientationData(const DeckLine& line);
  void        OnLayerData(const DeckLine& line);
  void        FinishElement();
  void        CheckLength(std::string_view name, const char* what, const DeckPlace& place);
  std::size_t SetOf(Sets& sets, std::string_view name, const DeckPlace& place);
  void        Append(Sets& sets, std::size_t set, int id) { (*sets.list)[set].ids.push_back(id); }
  bool        HasRoomInSets(std::size_t count, const DeckPlace& place);
  double      NumberOr0(std::string_view field, const DeckLine& line, const char* what);

  void CheckElements();
  void CheckSets(const Sets& sets, bool areNodes);
  void CheckSections();

  DeckModel&                target_;
  std::vector<DeckMessage>* messages_;
  std::size_t               errors_   = 0;  // as many of each kind as were met, up to one more than are listed
  std::size_t               warnings_ = 0;

  DeckReferences       references_;
  DeckConstraintReader constraints_{model_};
  DeckLint             lint_;  // looks at the deck where there is a list of messages

  DeckCard    card_;
  DeckPlace   cardPlace_;
  DataHandler onData_ = &DeckModelReader::OnStrayData;  // null: data of the card are not looked at

  Sets                   nodeSets_{"node", &model_.nodeSets, {}};
  Sets                   elementSets_{"element", &model_.elementSets, {}};
  Sets*                  sets_      = nullptr;  // of the set card
  std::size_t            set_       = kNone;    // that the card's ids are added to
  std::size_t            idsInSets_ = 0;
  NameIndex              materials_;
  NameIndex              orientations_;
  const DeckElementType* type_         = nullptr;  // of the element card
  bool                   mayHaveNode0_ = false;    // elements of type_: no node
  int                    elementId_    = 0;        // of the element that is being read
  DeckElement            element_;
  bool                   isElementOpen_ = false;
  int                    dataLines_     = 0;  // of the card, so far
  bool                   isInStep_      = false;
  bool                   isNlgeom_      = false;
  bool                   isRestart_     = false;  // goes on from a model that is not in the deck
  int                    cardsInStep_   = 0;
  bool                   hasCards_      = false;
  bool                   hasBadInclude_ = false;  // whose file may have the cards
};

}  // namespace quilon::calculix
