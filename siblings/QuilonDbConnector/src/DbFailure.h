#pragma once

/// @file
/// How this library reports what is wrong with a block.

#include <string>

#include "QuilonDbConnector/FED_DataDescriptor.h"

/// @throws FED_Failure "block <descriptor>: <text>"
[[noreturn]] void ThrowBlockFailure(const FED_DataDescriptor& descriptor, const std::string& text, const char* tag);
