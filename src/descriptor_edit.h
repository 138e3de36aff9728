#pragma once

/// @file
/// Changes of a descriptor in place.
///
/// `FED_DataDescriptor::SetInteger` sets an index and cannot clear one. Code that writes `values` or `mask` itself
/// resets the two cached integers as well; these helpers are the one place where that happens.

#include "QuilonDbConnector/FED_DataDescriptor.h"

namespace quilon_descriptor {

inline void ResetCachedIntegers(FED_DataDescriptor& descriptor) noexcept
{
  descriptor.cached[0] = -1;
  descriptor.cached[1] = -1;
}

/// @return whether the mask bit of the index is set
inline bool IsIndexSet(const FED_DataDescriptor& descriptor, FED_DataDescriptor::ResultIndex index) noexcept
{
  return (descriptor.mask >> static_cast<unsigned int>(index) & 1u) != 0;
}

/// Writes the value and sets the mask bit.
inline void SetIndexInPlace(FED_DataDescriptor& descriptor, FED_DataDescriptor::ResultIndex index, int value) noexcept
{
  descriptor.values[index] = value;
  descriptor.mask |= 1u << static_cast<unsigned int>(index);
  ResetCachedIntegers(descriptor);
}

/// Clears the mask bit. The value stays behind it: order and equality of descriptors see it still.
inline void ClearIndexInPlace(FED_DataDescriptor& descriptor, FED_DataDescriptor::ResultIndex index) noexcept
{
  descriptor.mask &= ~(1u << static_cast<unsigned int>(index));
  ResetCachedIntegers(descriptor);
}

}  // namespace quilon_descriptor
