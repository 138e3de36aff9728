#include "kinds/UserKinds.h"

#include <string>

#include <bundled/OnfCatalogue.h>

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

}  // namespace quilon
