#pragma once

/// @file
/// Constants of databases.

namespace FED_DatabaseDefs {

enum AccessMode : int
{
  ReadAccess  = 0,
  WriteAccess = 1
};

}  // namespace FED_DatabaseDefs
