#pragma once

/// @file
/// What is told of a column's numbers without reading them.

#include <cstddef>

#include "ChunkStore.h"

/// Adds what is known of more numbers of a column; lengths and characters have nothing to tell. The order of additions
/// shows nowhere: a zero of either sign counts as the positive one.
/// @param bytes whole elements, where any element of the type may stand
/// @param count of bytes
void AddStatistics(StoredColumn::Element element, const void* bytes, std::size_t count, ColumnStatistics& statistics);
