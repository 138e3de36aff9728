#pragma once

/// @file
/// Values along a line through the elements.

#include <array>
#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "answers/Linearization.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_Database;

namespace quilon {

class Region;

using PathPlace = std::array<double, 3>;

/// @return places of equal distance from the first to the last, both included
/// @throws FED_Failure for fewer than two, and for ends at one place
std::vector<PathPlace> PlacesOnLine(const PathPlace& from, const PathPlace& to, std::size_t count);

/// Reads places, one a line: three numbers between blanks or commas; '#' begins a comment.
/// @param name of the file, for messages
/// @throws FED_Failure "NAME:LINE: ..." for anything else, and for a file without places
std::vector<PathPlace> ReadPlaces(std::istream& in, const std::string& name);
std::vector<PathPlace> ReadPlaces(const std::filesystem::path& path);

/// What is asked along a line.
struct PathRequest
{
  std::string            database;   ///< name of the database, for messages
  Selection              selection;  ///< kinds and their components
  std::vector<PathPlace> places;
  std::string            axes;               ///< see ComponentAxes; empty: global
  bool                   linearize = false;  ///< the places are of equal distance on a straight line
  /// Whether a report without any value is an answer: for places that are asked one by one.
  bool mayBeOutside = false;
  /// Whose elements hold places; null: all. Borrowed. Where the line is in a border, this tells which side is meant.
  Region* region = nullptr;
};

struct PathPoint
{
  PathPlace          place   = {};
  double             s       = 0.0;  ///< length of the way from the first place, straight from place to place
  std::optional<int> element = {};   ///< id of the one that holds the place, nothing outside
};

/// The linearized stress, with the equivalent stress (mises) of each tensor.
struct PathLinearization
{
  struct Part
  {
    const char*           name;  ///< "membrane", "bending-start", ...
    std::array<double, 6> tensor;
    double                mises;
  };
  std::string       kind;  ///< the tensor's
  std::vector<Part> parts;
};

/// The values of one result step; of one layer or group where there are several.
struct PathStep
{
  FED_DataDescriptor                              key;     ///< of the blocks, without the kind
  std::vector<FED_DataDescriptor>                 blocks;  ///< that were read
  std::vector<std::string>                        columns;
  std::vector<std::vector<std::optional<double>>> rows;  ///< shape [places, columns]; nothing where there is no value
  std::optional<PathLinearization>                linearization;
  std::size_t numWithoutValues = 0;  ///< places within an element some nodes of which have no value
  std::size_t numWithoutAxes   = 0;  ///< places on the axis of a cylindrical system: they have no value either
};

struct PathReport
{
  std::vector<PathPoint>   points;
  std::vector<PathStep>    steps;
  std::vector<std::string> skippedKinds;  ///< names of selected kinds that have no values along a line
  std::string              axes;          ///< what the axes are, for people; empty for global ones
};

/// Values at places within solid elements, undeformed.
///
/// Records of nodes are interpolated by the shape functions of the element that holds the place (see PointLocator);
/// records of elements are the same all over their element. Tensors and vectors are interpolated first, then turned
/// into the axes at the place, and components and invariants are those of the result. Principal values (520 and the
/// like) come from the interpolated tensor, which the database has to have.
///
/// Columns are components of tensors ("xx", "mises"), of vectors with their kind before them ("displacement-x"), and
/// the names of scalars. Where several kinds of tensors are selected theirs stand before the components, too. In
/// principal axes the directions of each tensor stand behind its components: x1, y1, z1 of the first one to z3.
/// @param blocks the selected descriptors. Blocks of equal keys but the kind are one step.
/// @throws FED_Failure for what is asked and not there: a mesh, solids, kinds with values along a line, a tensor behind
///         principal values, and where every place is outside unless that may be; with linearize for a place without a
///         value, and unless one kind of stress is selected
PathReport FollowPath(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                      const PathRequest& request);

}  // namespace quilon
