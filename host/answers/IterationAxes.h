#pragma once

/// @file
/// Axes of components in results of several iterations.

#include <map>
#include <string>

#include "answers/ComponentAxes.h"
#include "mesh/Mesh.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

/// The axes that a user asked for in each iteration, with the meshes that they need.
class IterationAxes
{
public:
  /// @param database borrowed
  /// @param text     see ComponentAxes; empty: global
  /// @param name     of the database, for messages
  IterationAxes(const FED_Database& database, std::string text, std::string name);

  /// Reads what the axes of an iteration need.
  /// @throws as ComponentAxes()
  void Add(int iteration);

  /// @return what turns the records of a block of an iteration that was added; it borrows from this object
  /// @throws as RecordTurner()
  RecordTurner TurnerOf(const FED_DataDescriptor& block) const;

  /// @return what the axes of the iteration that was added last are, for people; empty for global ones
  const std::string& Describe() const noexcept { return description_; }

private:
  const FED_Database&          database_;
  std::string                  text_;
  std::string                  name_;
  std::string                  description_;
  std::map<int, ComponentAxes> axes_;
  std::map<int, Mesh>          meshes_;  // where the axes need places
};

}  // namespace quilon
