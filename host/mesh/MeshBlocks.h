#pragma once

/// @file
/// The blocks of a mesh, entity by entity.

#include <array>
#include <functional>
#include <span>

class FED_DataBlock;
class FED_IdMapsPool;

namespace quilon {

/// Goes through coordinates (516) by ascending index. Stops for an interrupt.
void ForEachNode(const FED_DataBlock& coordinates, const FED_IdMapsPool& pool,
                 const std::function<void(int id, const std::array<double, 3>& position)>& take);

/// An element as the blocks have it.
struct ElementRow
{
  int                  id       = 0;
  int                  frdType  = 0;   ///< type code of the .frd, 0 none
  int                  material = 0;   ///< number, 0 none
  std::span<const int> nodes    = {};  ///< ids in the order of decks; valid during the call
};

/// Goes through node lists (595) and types (596) by ascending index. Elements without a type are passed over. Stops for
/// an interrupt.
void ForEachElement(const FED_DataBlock& lists, const FED_DataBlock& types, const FED_IdMapsPool& pool,
                    const std::function<void(const ElementRow& element)>& take);

}  // namespace quilon
