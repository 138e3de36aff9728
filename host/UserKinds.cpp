#include "UserKinds.h"

#include <set>
#include <string>

#include <bundled/OnfCatalogue.h>

#include "KindTable.h"
#include "QuilonDbConnector/FED_Database.h"

namespace quilon {

void ForEachUserKind(const std::function<void(FED_OnfId)>& visit)
{
  for (const OnfCatalogue::UserRange& range : OnfCatalogue::UserRanges())
    for (int onf = range.first; onf <= range.last; ++onf) visit(static_cast<FED_OnfId>(onf));
}

void CopyUserKindNames(const FED_Database& source, FED_Database& target)
{
  ForEachUserKind([&](FED_OnfId onf) {
    const std::string name = source.GetUserKindName(onf);
    if (!name.empty()) target.SetUserKindName(onf, name);
  });
}

void CopyUsedKindNames(const FED_Database& source, FED_Database& target)
{
  std::set<int> used;
  for (const FED_DataDescriptor& descriptor : target.GetDataDescriptors(FED_DataDescriptorPattern())) {
    used.insert(descriptor.GetInteger(FED_DataDescriptor::OnfId));
    used.insert(GetQuantity(descriptor));
  }
  ForEachUserKind([&](FED_OnfId onf) {
    const std::string name = used.contains(onf) ? source.GetUserKindName(onf) : std::string();
    if (!name.empty()) target.SetUserKindName(onf, name);
  });
}

}  // namespace quilon
