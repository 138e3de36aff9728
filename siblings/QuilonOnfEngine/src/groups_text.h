#pragma once

/// @file
/// The text of a groups file.

#include <vector>

#include "QuilonOnfEngine/OnfGroupsFile.h"

class TextCursor;

/// Reads a groups file to its end.
/// @throws FED_Failure "FILE:LINE: what was expected"
std::vector<OnfGroupsFile::Group> ReadGroups(TextCursor& in);
