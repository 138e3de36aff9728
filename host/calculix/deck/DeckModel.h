#pragma once

/// @file
/// What a deck says: mesh, sets, materials, sections, steps.

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "elements/LocalSystem.h"
#include "IdRadixMap.h"
#include "results/InputDeck.h"

namespace quilon::calculix {

/// A line of the deck's files.
struct DeckPlace
{
  std::uint32_t file = 0;  ///< position in DeckModel::files
  std::int32_t  line = 0;  ///< from 1
};

/// What the deck says of an element type.
struct DeckElementType
{
  const char* name;       ///< upper case, "C3D20R"
  int         numNodes;   ///< of one element's connectivity
  int         frdType;    ///< type code of the .frd: 1 hex8, 2 wedge6, 3 tet4, 4 hex20, 5 wedge15, 6 tet10, ...; 0 none
  int         numPoints;  ///< integration points that a .dat prints of a solid; 0 for all others
  int dimension;  ///< 3 solids, 2 shells, membranes and plane elements, 1 beams and trusses, 0 springs and others
};

/// A type that a deck defines.
struct DeckUserElementType
{
  std::string     name;
  DeckElementType type;  ///< its name is the one above
};

/// @param name without blanks, upper case
/// @return null for a type that is not known
const DeckElementType* FindDeckElementType(std::string_view name) noexcept;

struct DeckNode
{
  std::array<double, 3> position = {};  ///< as given, all digits
  DeckPlace             place;
};

struct DeckElement
{
  const DeckElementType* type  = nullptr;
  std::size_t            first = 0;  ///< of its nodes in DeckModel::elementNodes
  std::size_t            count = 0;
  DeckPlace              place;
};

/// A set of nodes or elements.
struct DeckSet
{
  std::string      name;   ///< upper case, quotes kept
  std::vector<int> ids;    ///< in the deck's order, duplicates kept: the solver counts a node twice that is named twice
  DeckPlace        place;  ///< of the first card that names it
};

/// The numbers of one property card of a material.
struct DeckProperty
{
  std::string         keyword;  ///< "ELASTIC", "DENSITY", "PLASTIC", "EXPANSION", ...
  std::string         type;     ///< parameter TYPE, upper case; empty when there is none
  std::vector<double> values;   ///< of all data lines, one behind the other
  DeckPlace           place;
};

struct DeckMaterial
{
  std::string               name;
  std::vector<DeckProperty> properties;
  DeckPlace                 place;

  const DeckProperty* Find(std::string_view keyword) const noexcept;
};

/// A local system with a name.
struct DeckOrientation : Orientation
{
  std::string name;
  DeckPlace   place;
};

/// What elements are made of.
struct DeckSection
{
  std::string kind;         ///< "SOLID", "SHELL", "BEAM", "MEMBRANE", ...
  std::string elementSet;   ///< name
  std::string material;     ///< name, of the first layer where there are several; may be empty
  std::string orientation;  ///< name; may be empty
  bool        isComposite = false;
  DeckPlace   place;
};

/// A surface, as the deck gives it: nodes, or faces of elements.
struct DeckSurface
{
  /// A node or set of nodes; a face of an element, or of each element of a set.
  struct Part
  {
    int         id    = 0;  ///< of the node or element; of a set the position in sets
    bool        isSet = false;
    signed char face  = 0;  ///< from 1 as decks number faces; 0 all nodes of the element
  };

  std::string              name;
  bool                     isOfNodes = false;
  std::vector<Part>        parts;
  std::vector<std::string> sets;  ///< names
  DeckPlace                place;
};

/// One card that makes nodes depend on each other or on a body, so that forces pass between them that no element tells
/// of. What it names is kept as named; DeckModel::NodesOf() finds the nodes.
struct DeckConstraint
{
  enum Kind : int
  {
    Contact,    ///< *CONTACT PAIR
    Tie,        ///< *TIE, also those of cyclic symmetry
    Equation,   ///< *EQUATION, *MPC
    Coupling,   ///< *COUPLING, *DISTRIBUTING COUPLING
    RigidBody,  ///< *RIGID BODY
    PreTension  ///< *PRE-TENSION SECTION: the solver splits the nodes of the surface
  };

  Kind                     kind = Equation;
  std::vector<int>         nodes;
  std::vector<int>         elements;
  std::vector<std::string> nodeSets;
  std::vector<std::string> elementSets;
  std::vector<std::string> surfaces;
  DeckPlace                place;
};

/// Nodes that a deck ties to others in one way.
struct DeckTiedNodes
{
  std::string      how;    ///< "contact", "ties", "equations", "couplings", "rigid bodies", "pre-tension sections"
  std::vector<int> nodes;  ///< ascending
};

/// Elements that a step adds or takes away.
struct DeckModelChange
{
  bool                     adds = false;
  std::vector<int>         elements;
  std::vector<std::string> elementSets;
  DeckPlace                place;
};

struct DeckStep
{
  std::string procedure;  ///< keyword: "STATIC", "FREQUENCY", "BUCKLE", "DYNAMIC", ...; empty when there is none
  bool        nlgeom       = false;  ///< as it rules this step: it holds for all later steps too, NLGEOM=NO ends it
  bool        perturbation = false;
  DeckPlace   place;
  std::vector<DeckModelChange> changes = {};
};

/// One file of the include tree.
struct DeckFile
{
  std::filesystem::path path;        ///< as it was opened
  std::string           statement;   ///< path as the include statement writes it; empty for the deck itself
  DeckPlace             includedAt;  ///< line 0 for the deck itself
  std::int64_t          lines = 0;
  std::uint64_t         bytes = 0;
};

/// A finding: an error stops the solver or changes what it computes unseen, a warning may be meant.
struct DeckMessage
{
  enum Severity : int
  {
    Error,
    Warning
  };

  Severity    severity = Error;
  DeckPlace   place;
  std::string text;  ///< without place
  std::string line;  ///< the line as it stands in the file
};

/// All that is read of a deck. Names are upper case, ids are the deck's own.
struct DeckModel
{
  std::vector<DeckFile>        files;  ///< the deck first, then in the order of reading; a file included twice twice
  IdRadixMap<DeckNode>         nodes;
  IdRadixMap<DeckElement>      elements;
  std::vector<int>             elementNodes;
  std::vector<DeckSet>         nodeSets;     ///< in the order of first mention
  std::vector<DeckSet>         elementSets;  ///< NALL and EALL are not among them unless the deck names them
  std::vector<DeckMaterial>    materials;
  std::vector<DeckOrientation> orientations;
  std::vector<DeckSection>     sections;
  std::vector<DeckSurface>     surfaces;
  std::vector<DeckConstraint>  constraints;  ///< one for each card, those in steps too
  std::vector<DeckStep>        steps;
  /// Types that the deck itself defines (*USER ELEMENT); elements point to them.
  std::vector<std::shared_ptr<const DeckUserElementType>> userElementTypes;

  const DeckNode*        FindNode(int id) const noexcept;
  const DeckElement*     FindElement(int id) const noexcept;
  std::span<const int>   NodesOf(const DeckElement& element) const noexcept;
  const DeckSurface*     FindSurface(std::string_view name) const noexcept;
  const DeckSet*         FindNodeSet(std::string_view name) const noexcept;
  const DeckSet*         FindElementSet(std::string_view name) const noexcept;
  const DeckMaterial*    FindMaterial(std::string_view name) const noexcept;
  const DeckOrientation* FindOrientation(std::string_view name) const noexcept;

  // Ascending, each once. Names that nothing defines and ids that are not there have no nodes or elements.
  std::vector<int> NodesOf(const DeckSurface& surface) const;
  std::vector<int> NodesOf(const DeckConstraint& constraint) const;
  std::vector<int> ElementsOf(const DeckModelChange& change) const;

  /// @return all nodes that constraints name, each once and under the first card that does, in the order of the cards
  std::vector<DeckTiedNodes> TiedNodes() const;

  /// @return "PATH:LINE", the path as it was opened
  std::string Describe(const DeckPlace& place) const;
};

/// @return "PATH:LINE", the path as it was opened
std::string DescribeDeckPlace(const std::vector<DeckFile>& files, const DeckPlace& place);

/// @return the sets, their names and ids borrowed
std::vector<ModelSet> DescribeSets(const std::vector<DeckSet>& sets);
/// @return what densities and isotropic elasticities the materials have, their names borrowed; of a card of several
///         temperatures the first row
std::vector<ModelMaterial> DescribeMaterials(const std::vector<DeckMaterial>& materials);

using quilon::DeckOptions;

/// Deepest nesting of includes.
inline constexpr int kMaxIncludeDepth = 64;

}  // namespace quilon::calculix
