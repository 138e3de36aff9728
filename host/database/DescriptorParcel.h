#pragma once

/// @file
/// Descriptors on their way from one process to another.

#include "QuilonDbConnector/FED_DataDescriptor.h"

/// Beside the type, as Parcel.h asks for it.
template <typename Parcel>
void Travel(Parcel& parcel, FED_DataDescriptor& descriptor)
{
  for (int& value : descriptor.values) parcel(value);
  parcel(descriptor.mask, descriptor.cached[0], descriptor.cached[1]);
}
