#pragma once

/// @file
/// What a path names.

#include "quilon_language.h"

#include <string>

#include "quilon_contract_export.h"
#include "QuilonUtilities/FedStatusCode.h"

class QUILON_UTILITIES_API QuilonFileUtil
{
public:
  /// @return true for a file and for a folder alike: a text database is a folder
  static bool FileExists(const std::wstring& path);

  /// @param status success when the question could be answered with yes; FedStatusNotFound when the path names
  ///               nothing or no folder; FedStatusSystemError when the system could not say
  static bool IsExistingDir(const std::wstring& path, FedStatusCode& status);
};
