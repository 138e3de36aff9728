#pragma once

/// @file
/// Names of the result indices.

#include <string>

/// @param index 0 <= index < 14
/// @return "load-case" and the like; "index-<n>" for one without a fixed meaning
std::string GetResultIndexName(int index);

/// Checks 0 <= index < 14.
/// @param caller the function that was given the index, for the message
/// @throws FED_Failure otherwise
void RequireResultIndex(int index, const char* caller);
