#pragma once

/// @file
/// Strings: numbers, trimming, encodings.

#include "quilon_language.h"

#include <string>
#include <vector>

#include "quilon_contract_export.h"
#include "QuilonUtilities/FedStatusCode.h"

namespace QuilonStringUtil {

/// Takes the decimal integer that the text begins with (leading blanks and one sign allowed).
/// @return success when nothing but white space follows the number, FedStatusTrailingText when other text does (`out`
///         holds the number), FedStatusNoNumber or FedStatusOutOfRange (`out` untouched)
QUILON_UTILITIES_API FedStatusCode ToInt(const std::string& text, int& out);

/// Takes the number that the text begins with: decimal or scientific, "inf" and "nan" in any case, whatever the
/// process's locale says. Statuses as for ToInt().
QUILON_UTILITIES_API FedStatusCode ToDouble(const std::string& text, double& out);

/// Trims the white space around every element in place.
/// @return the argument
QUILON_UTILITIES_API std::vector<std::string>& Trim(std::vector<std::string>& texts);

/// @param text null-terminated; UTF-16 or UTF-32 as wide as wchar_t is. What is no character becomes U+FFFD.
QUILON_UTILITIES_API std::string wide_to_utf8(const wchar_t* text);

}  // namespace QuilonStringUtil
