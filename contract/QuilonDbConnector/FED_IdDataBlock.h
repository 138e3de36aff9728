#pragma once

/// @file
/// Blocks addressed by entity id.

#include "quilon_language.h"

#include <cstddef>
#include <memory>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_DataBlock.h"
#include "QuilonDbConnector/FED_DataDescriptor.h"
#include "QuilonDbConnector/FED_IdDataRecord.h"
#include "QuilonDbConnector/FED_IdMapsPool.h"

/// An id view for reading: translates ids to block indices through the map of the entity kind of the block's ONF id.
/// For kinds 15 and above the index is the id and no map is asked.
///
/// Works over any block and any pool and reaches storage through their interfaces alone. Block and pool are borrowed
/// and outlive the view. Reading never adds an id. Scratch records that were not freed go with the view.
class QUILON_DB_CONNECTOR_API FED_ConstIdDataBlock
{
public:
  FED_ConstIdDataBlock(const FED_DataBlock& block, const FED_IdMapsPool& pool);
  /// The flag is a hint to databases and changes no result in the bundled ones.
  FED_ConstIdDataBlock(const FED_DataBlock& block, const FED_IdMapsPool& pool, bool flag);
  FED_ConstIdDataBlock(const FED_ConstIdDataBlock&)            = delete;
  FED_ConstIdDataBlock& operator=(const FED_ConstIdDataBlock&) = delete;
  virtual ~FED_ConstIdDataBlock();

  bool HasRecord(int id) const;
  /// @throws FED_Failure when no record exists for the id
  void GetRecord(int id, FED_ConstIdDataRecord& record) const;
  /// @throws FED_Failure when no record exists for the id or the format holds other than one double
  void GetScalar(int id, double& out) const;
  /// Reads three doubles.
  /// @throws FED_Failure when no record exists for the id or the format holds other than three doubles
  void GetVector(int id, double* out) const;
  /// Reads six doubles.
  /// @throws FED_Failure when no record exists for the id or the format holds other than six doubles
  void GetTensor(int id, double* out) const;

  /// @throws FED_Failure when no id has this index
  int GetId(std::size_t index) const;

  const FED_DataDescriptor& GetDescriptor() const noexcept;

  /// A read-only scratch record in the block's format.
  FED_ConstIdDataRecord& CreateConstIdDataRecord() const;

  /// Frees a scratch record that this view made.
  void DeleteIdDataRecord(FED_ConstIdDataRecord& record) const;

protected:
  /// @return npos when the id has no index
  std::size_t FindIndex(int id) const;
  /// @return the index of an existing record
  std::size_t RequireIndex(int id) const;
  /// Checks that the block's format holds this many doubles, once per view.
  void RequireDoubles(std::size_t count) const;
  /// Keeps a scratch record until DeleteIdDataRecord() or the view's end.
  FED_ConstIdDataRecord& Keep(std::unique_ptr<FED_ConstIdDataRecord> record) const;

  static constexpr std::size_t kUnknownCount = static_cast<std::size_t>(-1);

  const FED_DataBlock&  block_;
  const FED_IdMapsPool& pool_;
  int                   entityKind_;
  /// Doubles that the block's format holds; kUnknownCount until asked.
  mutable std::size_t                                         doubleCount_ = kUnknownCount;
  mutable std::vector<std::unique_ptr<FED_ConstIdDataRecord>> scratch_;
};

/// An id view for writing. Setting a record adds the id to the map of its kind when it is not there.
class QUILON_DB_CONNECTOR_API FED_IdDataBlock : public FED_ConstIdDataBlock
{
public:
  FED_IdDataBlock(FED_DataBlock& block, FED_IdMapsPool& pool, bool flag);
  ~FED_IdDataBlock() override;

  /// A scratch record in the block's format, freed with DeleteIdDataRecord() or with the view.
  FED_IdDataRecord& CreateIdDataRecord();

  /// Stores a copy of the scratch record under the id, replacing any record there.
  void SetRecord(int id, const FED_IdDataRecord& record);
  /// One double. A block without a format takes the format "D".
  void SetScalar(int id, const double& value);
  /// Three doubles. A block without a format takes the format "V".
  void SetVector(int id, const double* values);
  /// Six doubles: xx, yy, zz, xy, yz, zx. A block without a format takes the format "T".
  void SetTensor(int id, const double* values);

private:
  std::size_t FindOrAddIndex(int id);

  FED_DataBlock&  writableBlock_;
  FED_IdMapsPool& writablePool_;
};
