#pragma once

/// @file
/// Refuses compilers without C++20.
///
/// Every public header includes this one before all others: an older compiler would stop at a header of the standard
/// library that it does not have, or go on to hundreds of errors that do not name the reason. Build systems that use
/// the CMake package ask for the language by themselves. Test: house.old_language.

#if defined(_MSVC_LANG)
#  define QUILON_LANGUAGE _MSVC_LANG  // __cplusplus stays at 1997 without /Zc:__cplusplus
#else
#  define QUILON_LANGUAGE __cplusplus
#endif

#if QUILON_LANGUAGE < 202002L
#  error QuilonDbDataTools needs C++20: ask for it by -std=c++20 or /std:c++20, with GCC 12, Clang 14 or later
#endif

#undef QUILON_LANGUAGE
