#include "diff/Report.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/OnfKinds.h>

#include "database/RecordRows.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "selection/Selection.h"
#include "text/Format.h"

namespace quilon::diff {

namespace {

const char* const kNone = "-";

constexpr std::size_t kNamedKinds = 8;  // in a line on what one side alone has

std::string OrNone(const std::string& text) { return text.empty() ? kNone : text; }

BlockName NameBlock(const FED_DataDescriptor& descriptor, const KindTable& kinds)
{
  BlockName name;
  name.block = ToSelectionText(descriptor);
  name.kind  = kinds.GetName(descriptor);
  for (const IndexKey& key : GetIndexKeys()) {
    const bool isQuantity = key.index == OnfIndex::Quantity && GetQuantity(descriptor) != 0;
    if (!descriptor.IsSet(key.index) || isQuantity) continue;
    const std::string value = std::to_string(descriptor.GetInteger(key.index));
    if (key.index == FED_DataDescriptor::Layer)
      name.layer = value;
    else
      name.step += (name.step.empty() ? "" : ",") + std::string(key.key) + '=' + value;
  }
  name.step  = OrNone(name.step);
  name.layer = OrNone(name.layer);
  return name;
}

/// Names the records and components of one compared block.
class PlaceNames
{
public:
  PlaceNames(const BlockOutcome& outcome, const ComparedDatabase& first, const ComparedDatabase& second,
             const KindTable& firstKinds, const KindTable& secondKinds)
      : rows_(outcome.block != nullptr ? *outcome.block : *outcome.secondBlock,
              outcome.block != nullptr ? firstKinds : secondKinds,
              outcome.block != nullptr ? first.database : second.database)
  {
    if (outcome.block != nullptr) first_.emplace(*outcome.block, first.database.GetIdMapsPool());
    if (outcome.secondBlock != nullptr) second_.emplace(*outcome.secondBlock, second.database.GetIdMapsPool());
  }

  int GetId(std::size_t index, bool isSecond) const { return (isSecond ? second_ : first_)->GetId(index); }

  std::string GetComponent(std::size_t field, std::size_t component) const
  {
    return field == 0 ? "" : rows_.GetComponentName(field, component);
  }

private:
  RecordRows                          rows_;
  std::optional<FED_ConstIdDataBlock> first_;
  std::optional<FED_ConstIdDataBlock> second_;
};

bool IsMissing(BlockOutcome::Status status)
{
  return status == BlockOutcome::MissingInSecond || status == BlockOutcome::OnlyInSecond;
}

void Count(const BlockOutcome& outcome, Report& report)
{
  switch (outcome.status) {
    case BlockOutcome::Different:
      ++report.differingBlocks;
      ++report.blocks;
      break;
    case BlockOutcome::Same:
      ++report.blocks;
      break;
    case BlockOutcome::MissingInSecond:
      ++report.missingBlocks;
      break;
    case BlockOutcome::OnlyInSecond:
      ++report.additionalBlocks;
      break;
    case BlockOutcome::Ignored:
      ++report.ignoredBlocks;
      break;
  }
  if (IsMissing(outcome.status)) return;
  report.records += outcome.fields.records;
  report.differingRecords += outcome.fields.differingRecords;
  report.missingRecords += outcome.fields.missingRecords;
  report.additionalRecords += outcome.fields.additionalRecords;
  report.values += outcome.fields.norms.values;
  report.differingValues += outcome.fields.differingValues;
}

ReportedValue ToReported(const Value& value, bool isMaterial)
{
  // What a deck may leave out of a material is stored as no number.
  const double* const number = std::get_if<double>(&value);
  if (isMaterial && number != nullptr && std::isnan(*number)) return NotStated();
  return std::visit([](const auto& one) -> ReportedValue { return one; }, value);
}

DifferenceRow NameDifference(const ValueDifference& difference, const BlockOutcome& outcome, const BlockName& name,
                             const PlaceNames& places)
{
  const bool isMaterial = outcome.descriptor.GetInteger(FED_DataDescriptor::OnfId) == OnfKind::Material;
  return {name,
          places.GetId(difference.index, difference.second),
          places.GetComponent(difference.field, difference.component),
          ToReported(difference.a, isMaterial),
          ToReported(difference.b, isMaterial),
          difference.rule,
          difference.excess,
          difference.distance};
}

std::vector<DifferenceRow> NameDifferences(const BlockOutcome& outcome, const BlockName& name, const PlaceNames& places)
{
  std::vector<DifferenceRow> rows;
  for (const ValueDifference& difference : outcome.fields.worst)
    rows.push_back(NameDifference(difference, outcome, name, places));
  return rows;
}

std::vector<ComponentRow> NameComponents(const BlockOutcome& outcome, const BlockName& name, const PlaceNames& places)
{
  std::vector<ComponentRow> rows;
  for (const ComponentOutcome& component : outcome.fields.components)
    rows.push_back({NameDifference(component.worst, outcome, name, places), component.differingValues});
  return rows;
}

OneSidedRow NameOneSided(const BlockOutcome& outcome, const BlockName& name)
{
  const bool  isSecond = outcome.status == BlockOutcome::OnlyInSecond;
  const auto& block    = dynamic_cast<const FED_ColumnDataBlock&>(isSecond ? *outcome.secondBlock : *outcome.block);
  return {name, isSecond, block.GetRecordCount()};
}

std::size_t CountDifferent(const FieldOutcome& fields)
{
  return fields.differingRecords + fields.missingRecords + fields.additionalRecords;
}

/// @return the blocks that differ, the worst first, at most so many
std::vector<std::size_t> FindWorstBlocks(const DatabaseOutcome& outcome, const std::vector<BlockRow>& rows,
                                         std::size_t maxBlocks)
{
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (!rows[i].worst.empty()) order.push_back(i);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return outcome.blocks[a].IsWorseThan(outcome.blocks[b]); });
  if (order.size() > maxBlocks) order.resize(maxBlocks);
  return order;
}

std::vector<DifferenceRow> PickWorst(const std::vector<BlockRow>& rows, const std::vector<std::size_t>& blocks)
{
  std::vector<DifferenceRow> worst;
  for (const std::size_t i : blocks) worst.insert(worst.end(), rows[i].worst.begin(), rows[i].worst.end());
  std::stable_sort(worst.begin(), worst.end(), [](const DifferenceRow& a, const DifferenceRow& b) {
    return a.excess != b.excess ? a.excess > b.excess : a.distance > b.distance;
  });
  return worst;
}

std::string Part(std::size_t part, std::size_t whole, const char* noun)
{
  return std::to_string(part) + " of " + Counted(whole, noun);
}

}  // namespace

Report MakeReport(const DatabaseOutcome& outcome, const ComparedDatabase& first, const ComparedDatabase& second,
                  const std::string& firstName, const std::string& secondName,
                  const QuilonDataBlockDiff::CompareInfo& info)
{
  const KindTable firstKinds(first.database);
  const KindTable secondKinds(second.database);
  Report          report;
  report.a                 = firstName;
  report.b                 = secondName;
  report.isSame            = outcome.IsSame();
  report.ignoresMissing    = outcome.ignoresMissing;
  report.ignoresAdditional = outcome.ignoresAdditional;
  std::vector<std::vector<ComponentRow>> components;
  for (const BlockOutcome& block : outcome.blocks) {
    Count(block, report);
    const BlockName  name = NameBlock(block.descriptor, block.block != nullptr ? firstKinds : secondKinds);
    const PlaceNames places(block, first, second, firstKinds, secondKinds);
    report.all.push_back({name, block.status, block.fields.records, CountDifferent(block.fields),
                          block.isMissingIgnored, NameDifferences(block, name, places)});
    if (block.fields.norms.values > 0 && !IsMissing(block.status) && block.status != BlockOutcome::Ignored)
      report.norms.push_back({name, block.fields.norms, block.isNegated, block.status == BlockOutcome::Different});
    if (IsMissing(block.status)) report.oneSided.push_back(NameOneSided(block, name));
    components.push_back(NameComponents(block, name, places));
    for (const PassedNan& nan : block.fields.passedNans)
      report.nans.push_back({report.all.size() - 1, places.GetId(nan.index, false),
                             places.GetComponent(nan.field, nan.component), nan.side});
  }
  const std::vector<std::size_t> worstBlocks = FindWorstBlocks(outcome, report.all, info.maxBlockDiffs);
  report.worst                               = PickWorst(report.all, worstBlocks);
  for (const std::size_t i : worstBlocks)
    report.components.insert(report.components.end(), components[i].begin(), components[i].end());
  return report;
}

const char* NanRow::GetSide() const noexcept
{
  return side == NanSide::Both ? "both" : side == NanSide::First ? "A" : "B";
}

std::string ToText(const ReportedValue& value)
{
  struct Writer
  {
    std::string operator()(std::monostate) const { return kNone; }
    std::string operator()(NotStated) const { return "not stated"; }
    std::string operator()(int number) const { return std::to_string(number); }
    std::string operator()(float number) const { return FormatNumber(number); }
    std::string operator()(double number) const { return FormatNumber(number); }
    std::string operator()(const std::string& text) const { return '"' + text + '"'; }
  };
  return std::visit(Writer(), value);
}

std::string Report::Summarize() const
{
  std::string text;
  if (isSame) {
    text = "same: " + Counted(blocks, "block") + ", " + Counted(records, "record") + ", " + Counted(values, "value");
  } else {
    text = "different: " + Part(differingBlocks, blocks, "block") + ", " + Part(differingRecords, records, "record");
  }
  const auto add = [&text](std::size_t count, const char* noun, const char* where, bool isIgnored) {
    if (count > 0) text += ", " + Counted(count, noun) + where + (isIgnored ? " (ignored)" : "");
  };
  add(missingRecords, "record", " missing in B", ignoresMissing);
  add(additionalRecords, "record", " only in B", ignoresAdditional);
  add(missingBlocks, "block", " missing in B", ignoresMissing);
  add(additionalBlocks, "block", " only in B", ignoresAdditional);
  if (ignoredBlocks > 0) text += ", " + Counted(ignoredBlocks, "block") + " ignored";
  if (!nans.empty()) text += ", " + Counted(nans.size(), "NaN") + " let pass";
  return isSame ? text : text + NameWorst();
}

std::string Report::NameWorst() const
{
  const auto name = [](const BlockName& block) {
    return "; worst: " + Printable(block.kind) + ' ' + block.step +
           (block.layer == kNone ? "" : " layer " + block.layer);
  };
  if (!worst.empty()) {
    const DifferenceRow& row  = worst.front();
    std::string          text = name(row.name);
    if (row.id) text += " id " + std::to_string(*row.id);
    if (!row.component.empty()) text += ' ' + Printable(row.component);
    return text + ", " + row.rule;
  }
  for (const OneSidedRow& row : oneSided)
    if (!(row.isSecond ? ignoresAdditional : ignoresMissing))
      return name(row.name) + (row.isSecond ? ", block only in B" : ", block missing in B");
  return "";
}

std::string Report::SummarizeOneSided(bool isSecond) const
{
  std::vector<std::pair<std::string, std::size_t>> kinds;  // in the order of the blocks
  std::size_t                                      blocksOfSide = 0;
  for (const OneSidedRow& row : oneSided) {
    if (row.isSecond != isSecond) continue;
    ++blocksOfSide;
    const auto found =
        std::find_if(kinds.begin(), kinds.end(), [&](const auto& kind) { return kind.first == row.name.kind; });
    if (found == kinds.end())
      kinds.emplace_back(row.name.kind, 1);
    else
      ++found->second;
  }
  if (kinds.empty()) return "";
  std::string text = std::string(isSecond ? "only in B" : "missing in B") +
                     ((isSecond ? ignoresAdditional : ignoresMissing) ? ", ignored: " : ": ") +
                     Counted(blocksOfSide, "block") + " (";
  for (std::size_t i = 0; i < std::min(kinds.size(), kNamedKinds); ++i)
    text += (i == 0 ? "" : ", ") + Printable(kinds[i].first) + ' ' + std::to_string(kinds[i].second);
  if (kinds.size() > kNamedKinds) text += " and " + Counted(kinds.size() - kNamedKinds, "kind") + " more";
  return text + ')';
}

}  // namespace quilon::diff
