#include "diff/Report.h"

#include <algorithm>
#include <optional>

#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "RecordRows.h"
#include "selection/Selection.h"
#include "terminal/Format.h"

namespace quilon::diff {

namespace {

const char* const kNone = "-";

std::string OrNone(const std::string& text) { return text.empty() ? kNone : text; }

BlockName NameBlock(const FED_DataDescriptor& descriptor, const KindTable& kinds)
{
  BlockName name;
  name.block = ToSelectionText(descriptor);
  name.kind  = kinds.GetName(descriptor);
  for (const IndexKey& key : GetIndexKeys()) {
    const bool isQuantity = key.index == kQuantityIndex && GetQuantity(descriptor) != 0;
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
    return field == 0 ? kNone : rows_.GetComponentName(field, component);
  }

private:
  RecordRows                          rows_;
  std::optional<FED_ConstIdDataBlock> first_;
  std::optional<FED_ConstIdDataBlock> second_;
};

std::size_t CountRecords(const FED_DataBlock& block)
{
  std::size_t count = 0;
  for (auto index = block.Begin(); index != block.End(); ++index) ++count;
  return count;
}

DifferenceRow NameMissingBlock(const BlockOutcome& outcome, const BlockName& name)
{
  const bool    isMissing = outcome.status == BlockOutcome::MissingInSecond;
  DifferenceRow row;
  row.name           = name;
  row.id             = kNone;
  row.component      = kNone;
  const auto records = Counted(CountRecords(isMissing ? *outcome.block : *outcome.secondBlock), "record");
  row.a              = isMissing ? records : kNone;
  row.b              = isMissing ? kNone : records;
  row.rule           = isMissing ? "block missing in B" : "block only in B";
  return row;
}

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

std::vector<DifferenceRow> NameDifferences(const BlockOutcome& outcome, const BlockName& name, const PlaceNames& places)
{
  std::vector<DifferenceRow> rows;
  if (IsMissing(outcome.status)) rows.push_back(NameMissingBlock(outcome, name));
  for (const ValueDifference& difference : outcome.fields.worst)
    rows.push_back({name, std::to_string(places.GetId(difference.index, difference.second)),
                    places.GetComponent(difference.field, difference.component), OrNone(difference.a),
                    OrNone(difference.b), difference.rule, difference.excess, difference.distance});
  return rows;
}

std::size_t CountDifferent(const FieldOutcome& fields)
{
  return fields.differingRecords + fields.missingRecords + fields.additionalRecords;
}

/// The worst differences of the worst blocks.
std::vector<DifferenceRow> PickWorst(const DatabaseOutcome& outcome, const std::vector<BlockRow>& rows,
                                     std::size_t maxBlocks)
{
  std::vector<std::size_t> order;
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (!rows[i].worst.empty()) order.push_back(i);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return outcome.blocks[a].IsWorseThan(outcome.blocks[b]); });
  if (order.size() > maxBlocks) order.resize(maxBlocks);

  std::vector<DifferenceRow> worst;
  for (const std::size_t i : order) worst.insert(worst.end(), rows[i].worst.begin(), rows[i].worst.end());
  std::stable_sort(worst.begin(), worst.end(), [](const DifferenceRow& a, const DifferenceRow& b) {
    const bool isBlock = a.id == kNone;
    if (isBlock || b.id == kNone) return isBlock && b.id != kNone;
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
  report.a      = firstName;
  report.b      = secondName;
  report.isSame = outcome.IsSame();
  for (const BlockOutcome& block : outcome.blocks) {
    Count(block, report);
    const BlockName  name = NameBlock(block.descriptor, block.block != nullptr ? firstKinds : secondKinds);
    const PlaceNames places(block, first, second, firstKinds, secondKinds);
    report.all.push_back(
        {name, block.status, block.fields.records, CountDifferent(block.fields), NameDifferences(block, name, places)});
    if (block.fields.norms.values > 0 && !IsMissing(block.status) && block.status != BlockOutcome::Ignored)
      report.norms.push_back({name, block.fields.norms, block.isNegated, block.status == BlockOutcome::Different});
    for (const PassedNan& nan : block.fields.passedNans)
      report.nans.push_back({report.all.size() - 1, places.GetId(nan.index, false),
                             places.GetComponent(nan.field, nan.component), nan.side});
  }
  report.worst = PickWorst(outcome, report.all, info.maxBlockDiffs);
  return report;
}

const char* NanRow::GetSide() const noexcept
{
  return side == NanSide::Both ? "both" : side == NanSide::First ? "A" : "B";
}

std::string Report::Summarize() const
{
  std::string text;
  if (isSame) {
    text = "same: " + Counted(blocks, "block") + ", " + Counted(records, "record") + ", " + Counted(values, "value");
  } else {
    text = "different: " + Part(differingBlocks, blocks, "block") + ", " + Part(differingRecords, records, "record");
    const auto add = [&text](std::size_t count, const char* noun, const char* where) {
      if (count > 0) text += ", " + Counted(count, noun) + where;
    };
    add(missingRecords, "record", " missing in B");
    add(additionalRecords, "record", " only in B");
    add(missingBlocks, "block", " missing in B");
    add(additionalBlocks, "block", " only in B");
  }
  if (ignoredBlocks > 0) text += ", " + Counted(ignoredBlocks, "block") + " ignored";
  if (!nans.empty()) text += ", " + Counted(nans.size(), "NaN") + " let pass";
  if (!isSame && !worst.empty()) {
    const DifferenceRow& row = worst.front();
    text += "; worst: " + Printable(row.name.kind) + ' ' + row.name.step;
    if (row.name.layer != kNone) text += " layer " + row.name.layer;
    if (row.id != kNone) text += " id " + row.id;
    if (row.component != kNone) text += ' ' + Printable(row.component);
    text += ", " + row.rule;
  }
  return text;
}

}  // namespace quilon::diff
