#include "kinds/UserKindPool.h"

#include <algorithm>

#include <QuilonDbConnector/FED_Database.h>

namespace quilon {

namespace {

constexpr int kHundred = 100;

}  // namespace

UserHundred NodeHundred(std::size_t numComponents)
{
  switch (numComponents) {
    case 1:
      return UserNodeScalar;
    case 3:
      return UserNodeVector;
    case 6:
      return UserNodeTensor;
    default:
      return UserNodeList;
  }
}

UserHundred ElementHundred(std::size_t numComponents)
{
  switch (numComponents) {
    case 1:
      return UserElementScalar;
    case 3:
      return UserElementVector;
    case 6:
      return UserElementTensor;
    default:
      return UserElementList;
  }
}

UserKindPool::UserKindPool(FED_Database& database) : database_(database) {}

int UserKindPool::Find(UserHundred hundred, const std::string& name)
{
  const std::pair<int, std::string> key(hundred, name);
  if (const auto known = kinds_.find(key); known != kinds_.end()) return known->second;

  int found = 0;
  int free  = 0;
  for (int onf = hundred; onf < hundred + kHundred && found == 0; ++onf) {
    if (database_.GetUserKindName(static_cast<FED_OnfId>(onf)) == name) found = onf;
    if (free == 0 && !IsTaken(onf)) free = onf;
  }
  if (found == 0 && free == 0) return 0;
  if (found == 0) {
    database_.SetUserKindName(static_cast<FED_OnfId>(free), name);
    found = free;
  }
  kinds_.emplace(key, found);
  return found;
}

/// An id is taken when it has a name, here or in the database, or blocks without one.
bool UserKindPool::IsTaken(int onf) const
{
  if (!database_.GetUserKindName(static_cast<FED_OnfId>(onf)).empty()) return true;
  if (std::any_of(kinds_.begin(), kinds_.end(), [onf](const auto& kind) { return kind.second == onf; })) return true;

  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, onf);
  return !database_.GetDataDescriptors(pattern).empty();
}

}  // namespace quilon
