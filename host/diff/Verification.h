#pragma once

/// @file
/// Reading back what was written.

#include <functional>
#include <string>
#include <vector>

#include "QuilonDbConnector/FED_DataDescriptor.h"

class FED_Database;

namespace quilon {

/// Compares what was written, opened anew, with its source: every block of the source that has records is there,
/// and all values are equal, NaNs and NaNs included. What else the written database holds does not matter.
/// @param blocks of the source
/// @param keyOf  the key that a block of the source has got; empty: its own
/// @throws FED_Failure that names the first of the worst differences
void VerifyWritten(const FED_Database& source, const std::vector<FED_DataDescriptor>& blocks,
                   const std::string& sourceName, FED_Database& written, const std::string& writtenName,
                   const std::function<FED_DataDescriptor(const FED_DataDescriptor&)>& keyOf = {});

}  // namespace quilon
