#pragma once

/// @file
/// From a deck to a database.

#include <filesystem>

#include "calculix/deck/DeckModelReader.h"

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
struct ImportedDeck
{
  calculix::DeckModel        model;
  IdRadixMap<ElementSection> sections;  ///< elements that a section names

  /// @return zeros for an element without a section
  ElementSection SectionOf(int element) const noexcept;
};

/// Writes what a deck says beside its mesh: sets (600, 601), materials (602), sections of elements (603) and
/// orientations (604), with the iteration and the ONF id alone. Their numbers are their places in the deck from 1;
/// groups of a groups file come behind the deck's sets.
class DeckImporter : public calculix::DeckModelReader
{
public:
  /// @param deck, blocks, database borrowed; the deck receives what was read in ConvertModel()
  DeckImporter(const std::filesystem::path& path, const calculix::DeckOptions& options, ImportedDeck& deck,
               ModelBlocks& blocks, FED_Database& database, int iteration);

  void ConvertModel() override;
  /// Makes a set of every group; to be called between CheckModel() and ConvertModel(). Of a range it takes the ids that
  /// the deck has.
  /// @throws FED_Failure for a name that a set of the deck has, and for a single id that the deck has not
  void CreateFEMSets(const OnfGroupsFile& groups) override;

private:
  void FindSections();
  void SaveSections();
  void SaveOrientations();
  void SaveTiedNodes();

  ImportedDeck& deck_;
  ModelBlocks&  blocks_;
  FED_Database& database_;
  int           iteration_;
};

}  // namespace quilon
