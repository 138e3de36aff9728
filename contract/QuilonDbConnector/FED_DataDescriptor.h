#pragma once

/// @file
/// The key of a data block.

#include "quilon_language.h"

#include <string>
#include <type_traits>

#include "quilon_contract_export.h"
#include "QuilonDbConnector/FED_OnfId.h"

/// Fourteen result indices, which of them are set, and two integers that a database may cache beside them.
///
/// A plain value, trivially copyable. Order and equality go by the fourteen values in index order, then by the mask;
/// the cached integers take no part. So a descriptor whose mask bit was cleared is another key, and so is one with
/// another value left under a clear bit.
///
/// Whoever writes `values` or `mask` directly resets both cached integers to -1.
class QUILON_DB_CONNECTOR_API FED_DataDescriptor
{
public:
  /// Indices 2, 7, 8 and 10 to 13 exist without a fixed meaning.
  enum ResultIndex : int
  {
    Iteration = 0,  ///< optimisation design cycle
    OnfId     = 1,  ///< FED_OnfId: which kind of result
    LoadCase  = 3,
    Substep   = 4,
    Analysis  = 5,
    Increment = 6,
    Layer     = 9  ///< counts from 1
  };

  static constexpr int kNumIndices = 14;

  /// The same as Init().
  FED_DataDescriptor();
  /// Sets indices 0 and 1.
  FED_DataDescriptor(int iteration, FED_OnfId onf);

  /// Every value 0, the mask empty, the cached integers -1.
  void Init();

  /// @return the raw value, whatever the mask says
  /// @throws FED_Failure unless 0 <= index < 14
  int GetInteger(ResultIndex index) const;

  /// Sets the value and its mask bit and resets the cached integers.
  /// @throws FED_Failure unless 0 <= index < 14
  void SetInteger(ResultIndex index, int value);

  /// @return whether the mask bit is set
  /// @throws FED_Failure unless 0 <= index < 14
  bool IsSet(ResultIndex index) const;

  bool operator<(const FED_DataDescriptor& other) const noexcept;
  bool operator==(const FED_DataDescriptor& other) const noexcept;

  /// @return the key for people, set indices only
  std::string ToString() const;

  int          values[kNumIndices];
  unsigned int mask;  ///< bit n set when index n holds a value
  int          cached[2];
};

static_assert(std::is_trivially_copyable_v<FED_DataDescriptor>, "descriptors are copied as plain values");
