#pragma once

/// @file
/// Groups of entities read from a file. The library hands them on by reference and never looks inside.

class OnfGroupsFile;
