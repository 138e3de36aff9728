#pragma once

/// @file
/// The worst values of results: how large, where and when.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "database/Readers.h"
#include "mesh/Mesh.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "selection/Selection.h"

class FED_Database;

namespace quilon {

class Listener;
class Region;
class StepTimes;

struct ExtremeRequest
{
  enum Measure
  {
    Greatest,
    Least,
    Magnitude
  };
  enum Per
  {
    Whole,
    Step,
    Material,  ///< a node at a border counts for each of its materials
    Set,
    Group
  };

  Selection   selection;            ///< its components
  std::string selectionText;        ///< what the user wrote, for messages
  Measure     measure  = Greatest;  ///< what is worst
  std::size_t head     = 1;         ///< how many of each kind, component and part, at least 1
  Per         per      = Whole;
  std::string axes     = {};  ///< see ComponentAxes; empty: global
  std::string database = {};  ///< name of the database, for messages
};

/// A value and where it is.
struct Extreme
{
  FED_DataDescriptor         block;
  std::string                kind;  ///< its name
  std::string                component;
  double                     value = 0.0;
  int                        id    = 0;
  int                        point = 0;  ///< of a kind with several vectors or tensors a record, from 1; else 0
  std::optional<Mesh::Point> place;      ///< of a node; of an element the mean of its nodes; undeformed
  std::string                type;       ///< "node", the name of the element's type, or nothing
  std::string                material;   ///< of an element
  std::vector<std::string>   sets;       ///< those that the node or element is in
  std::optional<double>      time;       ///< see StepTimes
  FED_DataDescriptor         step;       ///< of a history, the one of its position
  std::string                part;       ///< of ExtremeRequest::per: the step's keys, or a name
  std::size_t                ties = 0;   ///< other values of the same part that are as bad
  std::size_t                nans = 0;   ///< values of the part that are no numbers
};

struct ExtremeReport
{
  /// The worst first; of equal ones that of the earlier block, then the lesser id, then the earlier point.
  std::vector<Extreme> rows;
  std::size_t          values = 0;   ///< that were looked at
  std::size_t          nans   = 0;   ///< of these, those that are no numbers and count for nothing
  std::string          axes   = {};  ///< what the axes are, for people; empty for global ones
  /// Vectors and tensors at places where the axes are none; their values count for nothing and are not among the NaNs.
  std::size_t numWithoutAxes = 0;
};

/// Goes through the blocks, each once, with memory for a chunk of one for each reader.
/// @param blocks   the selected ones. Those without components are left out; of kinds without a chosen component all
///                 stored ones are meant.
/// @param region   its notes are of all blocks afterwards
/// @param listener may be null
/// @param readers  share the blocks; the answer is the same for any
/// @throws FED_Failure when none of the blocks has components, when nothing is in the region, and for a part (a
///         material, a set, a group) that the database has not
ExtremeReport FindExtremes(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                           const StepTimes& times, Region& region, const ExtremeRequest& request, Listener* listener,
                           const Readers& readers = {});

}  // namespace quilon
