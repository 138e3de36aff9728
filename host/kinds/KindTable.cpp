#include "kinds/KindTable.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include <bundled/OnfCatalogue.h>
#include <bundled/OnfKinds.h>

#include "kinds/GroupNames.h"
#include "kinds/UserKinds.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Format.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

bool BeginsWith(const std::string& text, const std::string& beginning)
{
  return text.compare(0, beginning.size(), beginning) == 0;
}

/// Of several kinds that a beginning of a name may mean, a reader has seen enough with so many.
constexpr std::size_t kMostKinds = 5;

}  // namespace

int GetQuantity(const FED_DataDescriptor& descriptor)
{
  const auto index     = OnfIndex::Quantity;
  const bool isHistory = descriptor.GetInteger(FED_DataDescriptor::OnfId) == FED_OnfId_ScalarHistory;
  return isHistory && descriptor.IsSet(index) ? descriptor.GetInteger(index) : 0;
}

int GetNamedKind(const FED_DataDescriptor& descriptor)
{
  const int quantity = GetQuantity(descriptor);
  return quantity != 0 ? quantity : descriptor.GetInteger(FED_DataDescriptor::OnfId);
}

KindTable::KindTable()
{
  for (const OnfCatalogue::Entry& entry : OnfCatalogue::Entries()) Add(entry.metaData.GetName(), entry.onf);
}

KindTable::KindTable(const FED_Database& database) : KindTable()
{
  database_ = &database;
  ForEachUserKind([&](FED_OnfId onf) {
    const std::string name = database.GetUserKindName(onf);
    if (!name.empty()) Add(name, onf);
  });
}

void KindTable::AddForeign(const KindTable& other)
{
  for (const Kind& foreign : other.kinds_) {
    if (FindByName(foreign.name)) continue;
    const bool isTaken =
        std::any_of(kinds_.begin(), kinds_.end(), [&](const Kind& kind) { return kind.onf == foreign.onf; });
    Add(foreign.name, isTaken ? -foreign.onf : foreign.onf);
  }
}

void KindTable::Add(const std::string& name, int onf)
{
  static const std::string kNodal    = "nodal-";
  const std::string        folded    = LowerCase(name);
  const std::string        shortName = BeginsWith(folded, kNodal) ? folded.substr(kNodal.size()) : folded;
  kinds_.push_back({name, folded, shortName, onf});
}

int KindTable::Resolve(std::string_view text) const
{
  int         onf   = 0;
  const char* end   = text.data() + text.size();
  const auto  taken = std::from_chars(text.data(), end, onf);
  if (taken.ptr == end && taken.ec == std::errc()) return onf;
  if (taken.ptr == end && taken.ec == std::errc::result_out_of_range)
    Fail("ONF id " + std::string(text) + " is out of range, expected at most " +
         std::to_string(std::numeric_limits<int>::max()));
  if (text.empty()) Fail("a kind is empty, expected an ONF id or the name of a kind");

  const std::string word = LowerCase(text);
  for (const Kind& kind : kinds_)
    if (kind.folded == word) return kind.onf;
  for (const Kind& kind : kinds_)
    if (kind.shortName == word) return kind.onf;
  for (const std::string Kind::*name : {&Kind::folded, &Kind::shortName}) {
    std::vector<std::string> names;
    for (const Kind& kind : kinds_) {
      if (!BeginsWith(kind.*name, word)) continue;
      onf = kind.onf;
      names.push_back(kind.name);
    }
    if (names.size() == 1) return onf;
    if (names.size() > 1)
      Fail("kind '" + std::string(text) + "' may be any of " + Enumerated(names, kMostKinds) +
           ": write more of the name");
  }
  // The names that nobody gave still stand for their user kinds, but take no part in beginnings: there are a thousand.
  if (const std::optional<FED_OnfId> id = OnfCatalogue::FindIdByName(word)) return *id;

  std::vector<std::string> candidates;
  for (const Kind& kind : kinds_) {
    candidates.push_back(kind.shortName);
    candidates.push_back(kind.folded);
  }
  const std::string suggestion = DidYouMean(word, candidates);
  Fail("unknown kind '" + std::string(text) + "'" +
       (suggestion.empty() ? ", expected an ONF id or the name of a kind" : suggestion));
}

int KindTable::ResolveGroup(std::string_view name) const
{
  if (database_ == nullptr)
    Fail("group '" + std::string(name) + "' is a name, expected a number where no database is at hand");
  return ResolveGroupName(*database_, name);
}

std::optional<int> KindTable::FindByName(const std::string& name) const
{
  for (const Kind& kind : kinds_)
    if (kind.name == name) return kind.onf;
  return std::nullopt;
}

std::string KindTable::GetName(int onf) const
{
  for (const Kind& kind : kinds_)
    if (kind.onf == onf) return kind.name;
  return FED_OnfInfoPool::GetOnfInfo(static_cast<FED_OnfId>(onf)).GetName();
}

std::string KindTable::GetName(const FED_DataDescriptor& descriptor) const { return GetName(GetNamedKind(descriptor)); }

}  // namespace quilon
