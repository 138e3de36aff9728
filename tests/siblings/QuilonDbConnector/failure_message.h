#pragma once

/// @file
/// Messages of failures.

#include <string>

#include "QuilonUtilities/FED_Failure.h"

/// @return what the FED_Failure of the call says, "no failure" when there is none
template <typename Call>
std::string MessageOf(Call call)
{
  try {
    call();
  } catch (const FED_Failure& failure) {
    return failure.what();
  }
  return "no failure";
}
