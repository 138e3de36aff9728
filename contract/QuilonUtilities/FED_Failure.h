#pragma once

/// @file
/// The exception of a failed check.

#include "quilon_language.h"

#include <string>

#include "quilon_contract_export.h"
#include "QuilonUtilities/FED_Exception.h"

/// Thrown when a check fails: the caller or the data is wrong. Caught as FED_Failure, FED_Exception or std::exception.
class QUILON_UTILITIES_API FED_Failure : public FED_Exception
{
public:
  /// @param message what failed, the key fact first
  /// @param tag     channel tag of the thrower, "|%P|<module>|<source file without extension>"
  FED_Failure(const std::string& message, const std::string& tag);
  FED_Failure(const FED_Failure& other);
  FED_Failure& operator=(const FED_Failure& other);
  ~FED_Failure() override;

  FED_Failure* Clone() const override;
};
