#pragma once

/// @file
/// The id maps of a database.

#include "quilon_language.h"

#include <cstddef>

#include "quilon_contract_export.h"

/// One map per entity kind, id to index and back, shared by all blocks of the kind: the record at one index means the
/// same entity in each of them. Indices count from 1 in the order of first use. Negative ids are ids.
class QUILON_DB_CONNECTOR_API FED_IdMapsPool
{
public:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  virtual ~FED_IdMapsPool();

  /// @return the id's index, npos when the id is unknown
  virtual std::size_t FindIndex(int kind, int id) const = 0;
  /// @return the id's index; an unknown id gets the next one
  virtual std::size_t FindOrAddIndex(int kind, int id) = 0;
  /// @throws FED_Failure when no id has this index; for kind 14 the index itself is then the id
  virtual int GetId(int kind, std::size_t index) const = 0;

protected:
  FED_IdMapsPool()                                 = default;
  FED_IdMapsPool(const FED_IdMapsPool&)            = default;
  FED_IdMapsPool& operator=(const FED_IdMapsPool&) = default;
};
