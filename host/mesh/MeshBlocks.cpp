#include "mesh/MeshBlocks.h"

#include <QuilonDbConnector/FED_IdDataBlock.h>

#include "database/ScratchRecord.h"
#include "progress/Interrupt.h"

namespace quilon {

void ForEachNode(const FED_DataBlock& coordinates, const FED_IdMapsPool& pool,
                 const std::function<void(int id, const std::array<double, 3>& position)>& take)
{
  const FED_ConstIdDataBlock view(coordinates, pool);
  std::array<double, 3>      position;
  for (auto index = coordinates.Begin(); index != coordinates.End(); ++index) {
    ThrowIfInterrupted();
    coordinates.GetValuesAt(*index, position.data());
    take(view.GetId(*index), position);
  }
}

void ForEachElement(const FED_DataBlock& lists, const FED_DataBlock& types, const FED_IdMapsPool& pool,
                    const std::function<void(const ElementRow& element)>& take)
{
  const FED_ConstIdDataBlock view(lists, pool);
  const ScratchRecord        list(lists);
  const ScratchRecord        type(types);
  FED_IntArray               nodes;
  for (auto index = lists.Begin(); index != lists.End(); ++index) {
    ThrowIfInterrupted();
    // Both blocks are of elements, so an element has one index in both.
    if (!types.HasRecord(*index)) continue;
    types.GetRecord(*index, *type);
    lists.GetRecord(*index, *list);
    list->GetIntList(1, nodes);
    take({view.GetId(*index), type->GetInteger(1), type->GetInteger(2), {nodes.GetData(), nodes.GetSize()}});
  }
}

}  // namespace quilon
