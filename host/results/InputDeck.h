#pragma once

/// @file
/// What the input deck of a job says of its model, whoever reads the deck.

#include <array>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "elements/LocalSystem.h"
#include "progress/ReadProgress.h"
#include "results/ResultReader.h"

namespace quilon {

/// An element as a deck has it.
struct InputElement
{
  int         type      = 0;        ///< type code, see MeshElement; 0 for one that results have nothing like
  int         dimension = 0;        ///< 3 solids, 2 shells, membranes and plane elements, 1 beams, 0 springs and others
  const char* typeName  = nullptr;  ///< as the program has it; valid as long as the deck
  std::span<const int> nodes;
};

/// A local system with a name.
struct InputOrientation
{
  std::string_view name;
  Orientation      system;
};

/// What the elements of a set are made of, by the names of these things; a name may be empty.
struct InputSection
{
  std::string_view elementSet;
  std::string_view material;
  std::string_view orientation;
};

/// Nodes that forces act on which no element tells of.
struct InputTiedNodes
{
  std::string      how;    ///< "contact", "ties", "equations", ...
  std::vector<int> nodes;  ///< ascending
};

/// A deck that was read. What is handed out is valid as long as the deck.
class InputDeck
{
public:
  virtual ~InputDeck() = default;

  /// The files that the deck includes, in the order of reading, one that is included twice twice.
  virtual std::vector<std::filesystem::path> Includes() const = 0;

  // Nodes and elements by ascending ids.
  virtual void ForEachNode(const std::function<void(int id, const std::array<double, 3>& position)>& take) const = 0;
  virtual void ForEachElement(const std::function<void(int id, const InputElement& element)>& take) const        = 0;
  /// @return null when the deck has no such node
  virtual const std::array<double, 3>* FindNode(int id) const noexcept = 0;
  /// @return nothing when the deck has no such element
  virtual std::optional<InputElement> FindElement(int id) const noexcept = 0;
  /// @return "FILE:LINE" of an element that the deck has
  virtual std::string PlaceOfElement(int id) const = 0;

  // Their places are their numbers, from 1.
  virtual std::vector<ModelSet>         NodeSets() const     = 0;
  virtual std::vector<ModelSet>         ElementSets() const  = 0;
  virtual std::vector<ModelMaterial>    Materials() const    = 0;
  virtual std::vector<InputSection>     Sections() const     = 0;
  virtual std::vector<InputOrientation> Orientations() const = 0;
  /// @param name as the deck or as a user writes it
  /// @return position in ElementSets(); nothing when there is no such set
  virtual std::optional<std::size_t> FindElementSet(const std::string& name) const = 0;

  /// Each node once, in the order in which the deck ties them.
  virtual std::vector<InputTiedNodes> TiedNodes() const = 0;
  /// Nodes in whose place the program makes new ones, ascending.
  virtual std::vector<int> SplitNodes() const = 0;
  /// @param step from 1
  /// @return whether the geometry of its results is the deformed one; nothing when the deck has no such step, as one
  ///         that goes on from other files
  virtual std::optional<bool> HasLargeDisplacements(int step) const noexcept = 0;
};

/// How a deck is read.
struct DeckOptions
{
  enum IncludeRule : int
  {
    SolverFirst,   ///< relative to the working directory, as the solver does; then to the including file
    SolverOnly,    ///< relative to the working directory
    IncludingFile  ///< relative to the including file
  };

  IncludeRule includeRule  = SolverFirst;
  bool        allowOutside = false;  ///< whether an include may leave the folder tree of the deck
  /// The directory that the solver would run in; empty: the one the deck is in.
  std::filesystem::path workingDirectory;
  /// A line can name a set or a range, so that a small deck could ask for any amount of memory.
  std::size_t mostIdsInSets = 100'000'000;
  /// Most files of a deck, one that is included twice counting twice: files that each include the next one twice could
  /// go on for ever.
  std::size_t mostFiles = 100'000;
  /// Bytes read of the files known so far. May throw to stop the reading.
  ReadProgress progress;
};

/// The deck of a job, to be read.
class InputDeckReader
{
public:
  virtual ~InputDeckReader() = default;

  virtual const std::filesystem::path& Path() const noexcept = 0;
  /// Reads the deck and all that it includes.
  /// @param groups a groups file whose groups become sets behind those of the deck; empty: none. Of a range they take
  ///        the ids that the deck has
  /// @throws FED_Failure "FILE:LINE: what is wrong" at the first error of the deck; for a group with the name of a set,
  ///         and for a single id in a group that the deck has not
  virtual std::unique_ptr<InputDeck> Read(const DeckOptions& options, const std::filesystem::path& groups) const = 0;
};

/// The files of an import, by what they are.
struct JobFiles
{
  std::unique_ptr<InputDeckReader>   deck;  ///< null without a deck
  std::vector<ResultJob>             jobs;
  std::vector<std::filesystem::path> passedOver;  ///< other files of the jobs' stems
  std::vector<std::filesystem::path> empty;       ///< passed over, too: a deck that a stem stood for, a status file
};

}  // namespace quilon
