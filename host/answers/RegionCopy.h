#pragma once

/// @file
/// What is in a region, as a database.

class FED_Database;

namespace quilon {

class Region;

/// Copies the records of nodes and elements that are in a region, and histories whole. Sets, materials and matrices are
/// left out, blocks of elements where the region is of nodes alone, and blocks none of whose records is in it.
/// @param target empty; gets the names of user kinds, too
/// @throws FED_Failure when no record of a node or an element is in the region
void CopyRegion(const FED_Database& source, Region& region, FED_Database& target);

}  // namespace quilon
