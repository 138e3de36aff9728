#pragma once

/// @file
/// Which kind of result a block holds.

#include "quilon_language.h"

/// An open enumeration: any number may be cast to it.
enum FED_OnfId : int
{
  FED_OnfId_ScalarHistory = 500,  ///< per-substep scalars, addressed by substep
  FED_OnfId_ElementNodes  = 595   ///< each element's node ids
};
