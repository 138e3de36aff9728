#pragma once

/// @file
/// Visibility of what the library exports. Everything else in it is hidden.

#include "quilon_language.h"

#if defined(_WIN32)
#  if defined(QuilonDbDataTools_EXPORTS)
#    define QUILON_EXPORT __declspec(dllexport)
#  else
#    define QUILON_EXPORT __declspec(dllimport)
#  endif
#else
#  define QUILON_EXPORT __attribute__((visibility("default")))
#endif
