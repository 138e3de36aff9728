#include "kinds/GroupNames.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/OnfKinds.h>

#include "QuilonDbConnector/FED_Database.h"
#include "text/Case.h"
#include "text/Failure.h"
#include "text/Suggestion.h"

namespace quilon {

namespace {

/// What a name stands for: "material 1".
struct Candidate
{
  std::string what;
  int         number = 0;
};

}  // namespace

std::vector<NamedRecord> ReadNames(const FED_Database& database, int onf, std::optional<int> iteration)
{
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, onf);
  if (iteration) pattern.SetEqual(FED_DataDescriptor::Iteration, *iteration);
  std::vector<NamedRecord> names;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(pattern)) {
    std::vector<NamedRecord> ofBlock;
    FED_ForEachSpan(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
      for (std::size_t i = 0; i < span.GetCount(); ++i)
        ofBlock.push_back({span.GetIds().GetData()[i], std::string(span.GetText(1, i))});
    });
    std::sort(ofBlock.begin(), ofBlock.end(),
              [](const NamedRecord& a, const NamedRecord& b) { return a.number < b.number; });
    for (NamedRecord& record : ofBlock)
      if (std::none_of(names.begin(), names.end(), [&](const NamedRecord& known) {
            return known.number == record.number && known.name == record.name;
          }))
        names.push_back(std::move(record));
  }
  return names;
}

std::vector<NamedRecord> ReadSectionNames(const FED_Database& database)
{
  const auto sorted = [](std::vector<int> ids) {
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    return ids;
  };
  std::map<int, std::string> names;
  FED_DataDescriptorPattern  pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, int{OnfKind::ElementSection});
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(pattern)) {
    std::map<int, std::vector<int>> elements;  // by section
    FED_ForEachSpan(database.GetConstDataBlock(descriptor), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
      for (std::size_t i = 0; i < span.GetCount(); ++i)
        elements[span.GetIntegers(1).GetData()[i]].push_back(span.GetIds().GetData()[i]);
    });
    for (const auto& [section, ids] : elements) names.try_emplace(section, "section-" + std::to_string(section));
    FED_DataDescriptor sets = descriptor;
    sets.SetInteger(FED_DataDescriptor::OnfId, OnfKind::ElementSet);
    if (!database.HasDataBlock(sets)) continue;
    std::map<int, std::pair<std::string, std::vector<int>>> known;  // by number
    FED_ForEachSpan(database.GetConstDataBlock(sets), database.GetIdMapsPool(), [&](const FED_BlockSpan& span) {
      for (std::size_t i = 0; i < span.GetCount(); ++i) {
        const auto ids                    = span.GetIntegerList(2, i);
        known[span.GetIds().GetData()[i]] = {std::string(span.GetText(1, i)),
                                             sorted({ids.GetData(), ids.GetData() + ids.GetSize()})};
      }
    });
    for (const auto& [section, ids] : elements) {
      if (names[section] != "section-" + std::to_string(section)) continue;
      const std::vector<int> own = sorted(ids);
      const auto             same =
          std::find_if(known.begin(), known.end(), [&own](const auto& set) { return set.second.second == own; });
      if (same != known.end()) names[section] = same->second.first;
    }
  }
  std::vector<NamedRecord> records;
  for (auto& [number, name] : names) records.push_back({number, std::move(name)});
  return records;
}

std::vector<int> ReadGroups(const FED_Database& database)
{
  std::set<int> groups;
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern()))
    if (descriptor.IsSet(OnfIndex::Group)) groups.insert(descriptor.GetInteger(OnfIndex::Group));
  return {groups.begin(), groups.end()};
}

namespace {

/// @return what imports say that their averages are over: "material", "section" or names of sets; empty where none says
///         it, or not all the same
std::string ReadAverageBy(const FED_Database& database)
{
  std::set<std::string>     values;
  FED_DataDescriptorPattern pattern;
  pattern.SetEqual(FED_DataDescriptor::OnfId, int{OnfKind::ImportSetting});
  for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(pattern)) {
    FED_ForEachSpan(database.GetConstDataBlock(descriptor), [&](const FED_BlockSpan& span) {
      for (std::size_t i = 0; i < span.GetCount(); ++i)
        if (span.GetText(2, i) == "average-by") values.emplace(span.GetText(3, i));
    });
  }
  return values.size() == 1 ? *values.begin() : std::string();
}

std::vector<NamedRecord> ReadRecordsOf(const FED_Database& database, int onf)
{
  return onf == OnfKind::ElementSection ? ReadSectionNames(database) : ReadNames(database, onf);
}

/// The materials, element sets and sections of the name; with none, those of its letters in either case.
/// @param known the names that there are, for a suggestion
std::vector<Candidate> FindCandidates(const FED_Database& database, std::string_view name,
                                      std::vector<std::string>& known)
{
  std::vector<Candidate> exact;
  std::vector<Candidate> inEitherCase;
  for (const int onf : ReadKindsOfGroups(database)) {
    const char* const what = onf == OnfKind::Material     ? "material "
                             : onf == OnfKind::ElementSet ? "element set "
                                                          : "section ";
    for (const NamedRecord& record : ReadRecordsOf(database, onf)) {
      known.push_back(record.name);
      if (record.name == name) exact.push_back({what + std::to_string(record.number), record.number});
      if (LowerCase(record.name) == LowerCase(name))
        inEitherCase.push_back({what + std::to_string(record.number), record.number});
    }
  }
  return exact.empty() ? inEitherCase : exact;
}

/// @return "STEEL (1), ALU (2)"; numbers alone where it is not known whose they are
std::string DescribeGroups(const FED_Database& database, const std::vector<int>& groups)
{
  std::map<int, std::string> names;
  const std::vector<int>     kinds = ReadKindsOfGroups(database);
  if (kinds.size() == 1)
    for (const NamedRecord& record : ReadRecordsOf(database, kinds.front())) names[record.number] = record.name;
  std::string text;
  for (const int group : groups) {
    const auto        name   = names.find(group);
    const std::string number = std::to_string(group);
    text += (text.empty() ? "" : ", ") + (name == names.end() ? number : name->second + " (" + number + ")");
  }
  return text;
}

}  // namespace

std::vector<int> ReadKindsOfGroups(const FED_Database& database)
{
  const std::string by = ReadAverageBy(database);
  if (by == "section") return {OnfKind::ElementSection};
  if (by == "material") return {OnfKind::Material};
  if (!by.empty()) return {OnfKind::ElementSet};
  return {OnfKind::Material, OnfKind::ElementSet, OnfKind::ElementSection};
}

int ResolveGroupName(const FED_Database& database, std::string_view name)
{
  const std::vector<int> groups = ReadGroups(database);
  if (groups.empty())
    Fail("group '" + std::string(name) + "': the database has no averages of groups, expected 'none' or 'all'");

  std::vector<std::string>     known;
  const std::vector<Candidate> candidates = FindCandidates(database, name, known);
  if (candidates.empty()) {
    const std::string suggestion = DidYouMean(name, known);
    Fail("unknown group '" + std::string(name) + "'" +
         (suggestion.empty() ? ", expected a number or the name of a material or an element set." : suggestion) +
         " The averages are of groups " + DescribeGroups(database, groups));
  }

  std::string   all;
  std::set<int> found;
  for (const Candidate& candidate : candidates) {
    all += (all.empty() ? "" : " and ") + candidate.what;
    if (std::binary_search(groups.begin(), groups.end(), candidate.number)) found.insert(candidate.number);
  }
  if (found.empty())
    Fail("group '" + std::string(name) + "' is " + all + ", and the averages are of groups " +
         DescribeGroups(database, groups));
  if (found.size() > 1)
    Fail("group '" + std::string(name) + "' is " + all + ", and there are averages of both numbers, expected a number");
  return *found.begin();
}

}  // namespace quilon
