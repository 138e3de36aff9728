#pragma once

/// @file
/// Axes in which components of vectors and tensors are told.

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "elements/LocalSystem.h"

class FED_Database;

namespace quilon {

class Mesh;

/// The axes that a user asked for. Stored results are in global axes.
class ComponentAxes
{
public:
  enum Form : int
  {
    Global,
    Rectangular,
    Cylindrical,  ///< x radial, y tangential, z along the axis
    Principal     ///< of each tensor its own: see PrincipalAxesOf()
  };

  /// Global.
  ComponentAxes() = default;

  /// @param text      "global", "principal", "rectangular:ax,ay,az,bx,by,bz" (two vectors: x' along a, y' in their
  ///                  plane on b's side), "cylindrical:px,py,pz,dx,dy,dz" (a point of the axis and its direction), or
  ///                  the name of an orientation of the deck, also as "orientation:NAME". Letters of the words and
  ///                  names count without their case where no name is exactly the same.
  /// @param database  for the orientations (604) of the iteration
  /// @throws FED_Failure for what is none of these, for numbers that give no system, and for a name that is not there:
  ///         it lists those that are
  ComponentAxes(std::string_view text, const FED_Database& database, int iteration);

  Form GetForm() const noexcept { return form_; }
  /// @return whether the axes depend on where a value is
  bool NeedsPlaces() const noexcept { return form_ == Cylindrical; }
  /// @return what the axes are, for people: "x radial, y tangential, z along the axis through 0,0,0 along 0,0,1"; empty
  ///         for global ones
  std::string Describe() const;

  /// @return the axes at an undeformed place; nothing for one on the axis of a cylindrical system, where no direction
  ///         is radial. Principal axes are of a tensor and not of a place: those of global axes stand for them.
  std::optional<LocalAxes> At(const std::array<double, 3>& place) const;

private:
  Form        form_ = Global;
  std::string name_;  // of an orientation; empty
  Orientation orientation_;
};

/// Turns the records of one kind. Vectors and tensors are turned, scalars stay.
///
/// Nodes are where the mesh has them, undeformed; values of an element are in the axes at the mean of its nodes, those
/// of its integration points and nodes in the axes there.
class RecordTurner
{
public:
  /// @param mesh  borrowed; null where the axes need no places
  /// @param onf   the kind of the records: scalars, vectors and tensors
  /// @throws FED_Failure for a kind of which no component is in axes: principal values, variances, coordinates; and for
  ///         principal axes of vectors
  RecordTurner(const ComponentAxes& axes, int onf, const Mesh* mesh);

  /// @param values shape [1], [3] or [6], of the record of this node or element; become nan where no axes are
  /// @return whether there are axes: false for what is not in the mesh or on the axis of a cylindrical system
  bool Turn(int id, std::span<double> values) const;
  /// The same for one part of a record of an element: an integration point, or a node where the kind holds vectors.
  /// @param part 0 <= part < numParts
  bool TurnPart(int element, std::size_t part, std::size_t numParts, std::span<double> values) const;
  /// The same for a value at a place of its own.
  bool TurnAt(const std::array<double, 3>& place, std::span<double> values) const;

  /// @return whether Turn() changes values
  bool Turns() const noexcept { return axes_.GetForm() != ComponentAxes::Global; }

private:
  std::optional<std::array<double, 3>> PlaceOf(int id) const;
  std::optional<std::array<double, 3>> PlaceOfPart(int element, std::size_t part, std::size_t numParts,
                                                   bool isPoint) const;

  const ComponentAxes& axes_;
  const Mesh*          mesh_;
  bool                 isOfElements_ = false;
};

}  // namespace quilon
