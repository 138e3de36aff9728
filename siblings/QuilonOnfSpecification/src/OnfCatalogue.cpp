#include "bundled/OnfCatalogue.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <memory>
#include <system_error>

#include "onf_table.h"
#include "QuilonOnfSpecification/FED_OnfInfoPool.h"

namespace {

constexpr int kRangeLength = 100;

constexpr const char* kPageHead = R"(# ONF catalogue

<!-- Generated from the table in siblings/QuilonOnfSpecification: onf_catalogue_page > docs/onf-catalogue.md -->

ONF ids are part of the file format: ids are added to the catalogue, and none is changed or removed. Record formats:
`I` integer, `D` double, `V` three doubles, `T` six doubles (xx, yy, zz, xy, yz, zx), `Lb` integer list, `Db` double
list; `i` and `lb` hold ids of entities, and a `b` behind anything else separates. Where the format is "first record",
a block takes it from the first record that is written to it.

## Fixed ids

| id | name | entity kind | format | quantity | description |
|---:|---|---|---|---|---|
)";

constexpr const char* kUserKindsHead = R"(
## User kinds

The hundred tells kind and format. The name is a default; a database keeps the given one.

| ids | default name | entity kind | format | description |
|---|---|---|---|---|
)";

constexpr const char* kPageTail = R"(
## Any other id

An id that stands in neither table is of kind 14, named `onf-<id>`, and takes its format from the first record.
)";

/// The tables are made once and never destroyed: objects that end with the program may still ask.
std::vector<OnfCatalogue::Entry>* MakeEntries()
{
  auto entries = std::make_unique<std::vector<OnfCatalogue::Entry>>();
  for (const OnfRow& row : OnfRows()) {
    entries->push_back({static_cast<FED_OnfId>(row.id),
                        FED_OnfMetaData(row.entityKind, row.name, row.recordFormat, row.description), row.quantity});
  }
  return entries.release();
}

std::vector<OnfCatalogue::UserRange>* MakeUserRanges()
{
  auto ranges = std::make_unique<std::vector<OnfCatalogue::UserRange>>();
  for (const OnfUserRow& row : OnfUserRows()) {
    ranges->push_back(
        {row.first, row.first + kRangeLength - 1, row.entityKind, row.stem, row.recordFormat, row.description});
  }
  return ranges.release();
}

const OnfCatalogue::Entry* FindEntry(FED_OnfId onf)
{
  const auto& entries = OnfCatalogue::Entries();
  const auto  at      = std::lower_bound(entries.begin(), entries.end(), onf,
                                         [](const OnfCatalogue::Entry& entry, FED_OnfId id) { return entry.onf < id; });
  return at != entries.end() && at->onf == onf ? &*at : nullptr;
}

/// The id that stands behind the last '-' of a name whose other part is `stem`.
std::optional<FED_OnfId> IdBehind(const std::string& name, const std::string& stem)
{
  if (name.compare(0, stem.size(), stem) != 0 || name.size() <= stem.size() || name[stem.size()] != '-') return {};
  const char* const end    = name.data() + name.size();
  int               id     = 0;
  const auto [stop, error] = std::from_chars(name.data() + stem.size() + 1, end, id);
  if (error != std::errc() || stop != end) return {};
  // Only the spelling that the pool gives counts: neither "onf-0077", nor "onf-510" for an id that has a name.
  const FED_OnfId onf = static_cast<FED_OnfId>(id);
  if (FED_OnfInfoPool::GetOnfInfo(onf).GetName() != name) return {};
  return onf;
}

std::string KindName(int entityKind)
{
  switch (entityKind) {
    case 0:
      return "0 node";
    case 1:
      return "1 element";
    case 15:
      return "15 history position";
    case 16:
      return "16 matrix index";
    default:
      return std::to_string(entityKind);
  }
}

std::string FormatCell(const std::string& recordFormat)
{
  return recordFormat.empty() ? "first record" : "`" + recordFormat + "`";
}

std::string Row(const std::vector<std::string>& cells)
{
  std::string row = "|";
  for (const std::string& cell : cells) row += " " + cell + " |";
  return row + "\n";
}

}  // namespace

const std::vector<OnfCatalogue::Entry>& OnfCatalogue::Entries()
{
  static const std::vector<Entry>& entries = *MakeEntries();
  return entries;
}

const std::vector<OnfCatalogue::UserRange>& OnfCatalogue::UserRanges()
{
  static const std::vector<UserRange>& ranges = *MakeUserRanges();
  return ranges;
}

std::string OnfCatalogue::QuantityOf(FED_OnfId onf)
{
  const Entry* const entry = FindEntry(onf);
  return entry != nullptr ? entry->quantity : std::string();
}

std::optional<FED_OnfId> OnfCatalogue::FindIdByName(const std::string& name)
{
  for (const Entry& entry : Entries())
    if (entry.metaData.GetName() == name) return entry.onf;
  for (const UserRange& range : UserRanges())
    if (const auto id = IdBehind(name, range.stem)) return id;
  return IdBehind(name, "onf");
}

std::vector<std::string> OnfCatalogue::Names()
{
  std::vector<std::string> names;
  for (const Entry& entry : Entries()) names.push_back(entry.metaData.GetName());
  return names;
}

std::string OnfCatalogue::MarkdownPage()
{
  std::string page = kPageHead;
  for (const Entry& entry : Entries()) {
    page += Row({std::to_string(entry.onf), entry.metaData.GetName(), KindName(entry.metaData.GetEntityKind()),
                 FormatCell(entry.metaData.GetRecordFormat()), entry.quantity, entry.metaData.GetDescription()});
  }
  page += kUserKindsHead;
  for (const UserRange& range : UserRanges()) {
    page += Row({std::to_string(range.first) + "-" + std::to_string(range.last), "`" + range.stem + "-<id>`",
                 KindName(range.entityKind), FormatCell(range.recordFormat), range.description});
  }
  page += kPageTail;
  return page;
}
