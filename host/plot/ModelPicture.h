#pragma once

/// @file
/// Pictures of a model with a result on it.

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "plot/Canvas.h"
#include "plot/ColourScale.h"
#include "plot/ModelField.h"
#include "plot/PlaneSection.h"
#include "plot/View.h"

class FED_Database;

namespace quilon {

class Mesh;

/// How much displacements are enlarged.
struct Deformation
{
  /// Nothing: the largest displacement becomes a tenth of the model's size, by a factor of 1, 2 or 5 times a power of
  /// ten.
  std::optional<double> factor;
};

/// Which lines are drawn on faces.
enum class MeshLines
{
  Auto,     ///< all where elements are large enough to be told apart, else the outline
  All,      ///< sides of elements
  Outline,  ///< sharp edges, ends of surfaces, borders of materials
  None
};

/// @return auto, mesh, outline or none by name
/// @throws FED_Failure for another
MeshLines ParseMeshLines(const std::string& name);

struct ModelPictureOptions
{
  std::string                     component;  ///< empty: DefaultComponentOf()
  View                            view = MakeView(45.0, 35.264389682754654);
  PictureSize                     size;
  Colour                          background = {1, 1, 1, 1};
  std::optional<Deformation>      deformation;
  bool                            showsUndeformed = false;  ///< the outline of the undeformed model too
  MeshLines                       lines           = MeshLines::Auto;
  std::optional<ValueRange>       range;            ///< nothing: of all values shown
  std::optional<ColourMap>        map;              ///< nothing: as ColourScale::Choose() says
  std::string                     unit;             ///< of the values, for the colour bar
  std::string                     title;            ///< empty: kind and component
  bool                            hasMarks = true;  ///< greatest and least
  bool                            hasAxes  = true;  ///< of the model, in the lower left corner
  bool                            isLit    = true;  ///< faces that look away from the light are darker
  std::optional<SectionPlane>     cut;
  std::optional<std::vector<int>> elements;  ///< ids, ascending, of those that are shown; nothing: all
};

/// An extreme value and where it is.
struct ExtremeMark
{
  double value = 0.0;
  int    id    = 0;         ///< of a node or an element
  Spot   place;             ///< in the picture
  bool   isHidden = false;  ///< something is in front of it, or it is inside
};

/// A picture, and what it shows.
struct ModelPicture
{
  std::string                bytes;  ///< of the file
  std::string                component;
  std::optional<ValueRange>  range;
  std::optional<ExtremeMark> least;
  std::optional<ExtremeMark> greatest;
  double                     factor = 0.0;  ///< of displacements; 0 undeformed
  std::vector<std::string>   notes;         ///< what the user may want to know
};

/// Draws a model.
/// @param choice nothing: the mesh alone
/// @param name   of the database, for messages
/// @throws FED_Failure for a component that the kind has not, a mesh without coordinates or elements, a part without
///         elements or without values, a step without displacements, and a plane that misses the model
ModelPicture DrawModel(const FED_Database& database, int iteration, const std::optional<FieldChoice>& choice,
                       const ModelPictureOptions& options, PictureFormat format, const std::string& name);

}  // namespace quilon
