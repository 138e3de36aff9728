#include "database/ModelCopy.h"

#include <bundled/FED_BlockCopy.h>
#include <bundled/OnfKinds.h>

#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

std::size_t CopyModel(const FED_Database& database, const std::vector<int>& iterations, FED_Database& target)
{
  std::size_t count = 0;
  for (const int iteration : iterations) {
    for (const FED_OnfId onf :
         {OnfKind::Coordinates, OnfKind::ElementNodes, OnfKind::ElementType, OnfKind::NodeSet, OnfKind::ElementSet,
          OnfKind::Material, OnfKind::ElementSection, OnfKind::Orientation, OnfKind::TiedNodes, OnfKind::DeckType})
    {
      const FED_DataDescriptor descriptor(iteration, onf);
      if (!database.HasDataBlock(descriptor)) continue;
      ThrowIfInterrupted();
      FED_CopyBlock(database, target, descriptor);
      ++count;
    }
  }
  return count;
}

}  // namespace quilon
