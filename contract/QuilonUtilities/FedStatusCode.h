#pragma once

/// @file
/// Status of utility functions.

#include "quilon_language.h"

/// 0 is success. A value that is not listed passes through.
enum FedStatusCode : int
{
  FedStatusSuccess      = 0,
  FedStatusNoNumber     = 1,  ///< no number at the start of the text; the output is untouched
  FedStatusTrailingText = 2,  ///< a number was taken, but text follows it
  FedStatusOutOfRange   = 3,  ///< a number that the output type cannot hold; the output is untouched
  FedStatusNotFound     = 4,  ///< the path names nothing, or nothing of the kind asked for
  FedStatusSystemError  = 5   ///< the operating system could not answer
};
