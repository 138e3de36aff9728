#pragma once

/// @file
/// From a deck to a database.

#include <memory>
#include <vector>

#include "IdRadixMap.h"
#include "results/InputDeck.h"

class FED_Database;

namespace quilon {

class ModelBlocks;

/// What elements are made of, by the numbers that materials, sections and orientations have in the database: their
/// places in the deck from 1; 0 none.
struct ElementSection
{
  int section     = 0;
  int material    = 0;
  int orientation = 0;
};

/// A deck and what its sections say of its elements. Where several sections name an element the last one holds, as in
/// the solver.
class ImportedDeck
{
public:
  explicit ImportedDeck(std::unique_ptr<const InputDeck> deck);

  const InputDeck* operator->() const noexcept { return deck_.get(); }
  const InputDeck& operator*() const noexcept { return *deck_; }

  /// @return zeros for an element without a section
  ElementSection SectionOf(int element) const noexcept;
  /// Of the elements that a section names, by ascending ids.
  const IdRadixMap<ElementSection>& Sections() const noexcept { return sections_; }
  /// Their places are their numbers, from 1.
  const std::vector<InputOrientation>& Orientations() const noexcept { return orientations_; }

private:
  std::unique_ptr<const InputDeck> deck_;
  std::vector<InputOrientation>    orientations_;
  IdRadixMap<ElementSection>       sections_;
};

/// Writes what a deck says beside its mesh: sets (600, 601), materials (602), sections of elements (603), orientations
/// (604) and tied nodes (608), with the iteration and the ONF id alone. Their numbers are their places in the deck from
/// 1; groups of a groups file come behind the deck's sets.
void SaveModel(const ImportedDeck& deck, ModelBlocks& blocks, FED_Database& database, int iteration);

}  // namespace quilon
