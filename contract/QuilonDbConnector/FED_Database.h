#pragma once

/// @file
/// A database of result blocks.

#include "quilon_language.h"

#include <cstddef>
#include <string>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonDbConnector/FED_DataDescriptorPattern.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"

/// A set of data blocks, each identified by its descriptor. The caller owns it and serialises access to it; blocks
/// belong to it.
class QUILON_DB_CONNECTOR_API FED_Database
{
public:
  virtual ~FED_Database();

  /// @return true when the database exists and has been opened
  virtual bool IsInitialized() const = 0;

  /// A writable block with the given record format; an existing block of the descriptor is returned as it is.
  ///
  /// Format strings: `I` integer, `F` float, `D` double, `S` string, `V` three doubles, `T` six doubles, `Lb` integer
  /// list, `Db` double list; any other `b` only separates. Lower-case `i`, `d` and `lb` write the second code of a pair
  /// (entity id, quantity with a unit, list of entity ids). "IIbDbLbLb" is integer, integer, double list, integer list,
  /// integer list.
  /// @param firstSize, secondSize hints
  /// @throws FED_Failure when the string does not parse (it names string and position) or an existing block has
  ///         another format
  virtual FED_DataBlock* CreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t firstSize,
                                         std::size_t secondSize, const std::string& recordFormat) = 0;

  /// The block of the descriptor, created with the format that the catalogue gives its ONF id when it does not exist.
  /// @param expectedRecords a hint, 0 when unknown
  virtual FED_DataBlock& GetOrCreateDataBlock(const FED_DataDescriptor& descriptor, std::size_t expectedRecords) = 0;

  /// @return true when a block with exactly this descriptor exists
  virtual bool HasDataBlock(const FED_DataDescriptor& descriptor) const = 0;

  /// @throws FED_Failure when there is no such block
  virtual const FED_DataBlock& GetConstDataBlock(const FED_DataDescriptor& descriptor) const = 0;
  virtual FED_DataBlock&       GetDataBlock(const FED_DataDescriptor& descriptor)            = 0;

  /// @return every matching block, in the database's own order
  virtual std::vector<FED_DataBlock*> GetDataBlocks(const FED_DataDescriptorPattern& pattern) = 0;

  /// Removes the block; one that is not there is a FED_Failure.
  virtual void DeleteDataBlock(const FED_DataDescriptor& descriptor) = 0;

  /// @return the descriptors of all matching blocks; a default pattern lists the whole database
  virtual std::vector<FED_DataDescriptor> GetDataDescriptors(const FED_DataDescriptorPattern& pattern) const = 0;

  virtual FED_IdMapsPool&       GetIdMapsPool()       = 0;
  virtual const FED_IdMapsPool& GetIdMapsPool() const = 0;

  /// The name that the database keeps for a user kind (ONF ids 1000 to 1999); empty when it has none. A database
  /// without room for names keeps the defaults: no name, and setting one does nothing.
  virtual std::string GetUserKindName(FED_OnfId onf) const;
  virtual void        SetUserKindName(FED_OnfId onf, const std::string& name);

protected:
  FED_Database()                               = default;
  FED_Database(const FED_Database&)            = default;
  FED_Database& operator=(const FED_Database&) = default;
};
