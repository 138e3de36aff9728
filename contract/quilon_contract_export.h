#pragma once

/// @file
/// Visibility of everything the contract declares.
///
/// The four sibling libraries are built with hidden visibility like every other library of the suite; what the
/// contract declares is what they export. Exceptions and polymorphic classes need it most: a `FED_Failure` thrown in
/// one library is caught in another only when both see one and the same type information.
///
/// CMake defines `<target>_EXPORTS` while it builds the shared library of that name.

#include "quilon_language.h"

#if defined(_WIN32)
#  define QUILON_CONTRACT_EXPORT_SYMBOL __declspec(dllexport)
#  define QUILON_CONTRACT_IMPORT_SYMBOL __declspec(dllimport)
#else
#  define QUILON_CONTRACT_EXPORT_SYMBOL __attribute__((visibility("default")))
#  define QUILON_CONTRACT_IMPORT_SYMBOL __attribute__((visibility("default")))
#endif

#if defined(QuilonUtilities_EXPORTS)
#  define QUILON_UTILITIES_API QUILON_CONTRACT_EXPORT_SYMBOL
#else
#  define QUILON_UTILITIES_API QUILON_CONTRACT_IMPORT_SYMBOL
#endif

#if defined(QuilonOnfSpecification_EXPORTS)
#  define QUILON_ONF_SPECIFICATION_API QUILON_CONTRACT_EXPORT_SYMBOL
#else
#  define QUILON_ONF_SPECIFICATION_API QUILON_CONTRACT_IMPORT_SYMBOL
#endif

#if defined(QuilonDbConnector_EXPORTS)
#  define QUILON_DB_CONNECTOR_API QUILON_CONTRACT_EXPORT_SYMBOL
#else
#  define QUILON_DB_CONNECTOR_API QUILON_CONTRACT_IMPORT_SYMBOL
#endif

#if defined(QuilonOnfEngine_EXPORTS)
#  define QUILON_ONF_ENGINE_API QUILON_CONTRACT_EXPORT_SYMBOL
#else
#  define QUILON_ONF_ENGINE_API QUILON_CONTRACT_IMPORT_SYMBOL
#endif
