#pragma once

/// @file
/// Constants of databases.

#include "quilon_language.h"

namespace FED_DatabaseDefs {

enum AccessMode : int
{
  ReadAccess  = 0,
  WriteAccess = 1
};

}  // namespace FED_DatabaseDefs
