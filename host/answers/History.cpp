#include "answers/History.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <system_error>
#include <tuple>
#include <utility>

#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "answers/Region.h"
#include "database/IdIndex.h"
#include "database/RecordRows.h"
#include "database/StepTimes.h"
#include "kinds/Component.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

bool IsHistory(const Descriptor& block) { return !OnfKind::HasIds(block.GetInteger(Descriptor::OnfId)); }

/// The block's key without what tells the steps of a calculation apart.
Descriptor SeriesKeyOf(const Descriptor& block)
{
  Descriptor key;
  for (const IndexKey& index : GetIndexKeys()) {
    const bool isOfStep = index.index == Descriptor::Analysis || index.index == Descriptor::LoadCase ||
                          index.index == Descriptor::Substep || index.index == Descriptor::Increment;
    if (!isOfStep && block.IsSet(index.index)) key.SetInteger(index.index, block.GetInteger(index.index));
  }
  key.SetInteger(Descriptor::OnfId, block.GetInteger(Descriptor::OnfId));
  return key;
}

/// How points follow one another.
auto OrderOf(const HistoryPoint& point)
{
  const auto number = [&](Descriptor::ResultIndex index) {
    return point.step.IsSet(index) ? point.step.GetInteger(index) : std::numeric_limits<int>::min();
  };
  return std::tuple(number(Descriptor::Iteration), number(Descriptor::Analysis), point.quantity,
                    point.time.value_or(std::numeric_limits<double>::infinity()), number(Descriptor::LoadCase),
                    number(Descriptor::Substep), number(Descriptor::Increment));
}

class Reader
{
public:
  Reader(const FED_Database& database, const StepTimes& times, Region& region, const HistoryRequest& request)
      : database_(database), times_(times), region_(region), request_(request), kinds_(database)
  {}

  void Read(const Descriptor& descriptor)
  {
    std::vector<Component> components = ChosenOf(descriptor);
    if (components.empty()) return;
    hasComponents_ = true;
    if (IsHistory(descriptor)) return ReadHistory(descriptor);
    if (region_.IsEverything())
      Fail("a history of '" + request_.selectionText +
           "' is of chosen records, expected --ids, --set, --material, --box or --near");
    const bool                 isOrdered = ordered_ != nullptr && ordered_->HasDataBlock(descriptor);
    const FED_Database&        source    = isOrdered ? *ordered_ : database_;
    const FED_DataBlock&       block     = source.GetConstDataBlock(descriptor);
    const RecordRows           rows(block, kinds_, database_, components);
    const FED_ConstIdDataBlock view(block, source.GetIdMapsPool());
    FED_ConstIdDataRecord&     record = view.CreateConstIdDataRecord();
    for (const int id : IdsOf(descriptor)) {
      ThrowIfInterrupted();
      if (!view.HasRecord(id)) continue;
      view.GetRecord(id, record);
      for (const std::vector<Cell>& row : rows.GetRows(id, record.GetDataRecord())) AddRow(descriptor, components, row);
    }
    view.DeleteIdDataRecord(record);
  }

  /// Takes what orders by id have of the blocks; Read() finds it there.
  void LookIntoOrders(const std::vector<Descriptor>& blocks)
  {
    if (region_.IsEverything()) return;
    std::vector<WantedRecords> wanted;
    for (const Descriptor& block : blocks)
      if (!IsHistory(block) && region_.AppliesTo(block) && !ChosenOf(block).empty())
        wanted.push_back({block, &IdsOf(block)});
    ordered_ = ReadFromOrders(database_, wanted, request_.onNote);
  }

  std::vector<HistorySeries> Finish()
  {
    if (!hasComponents_)
      Fail("no block of '" + request_.selectionText +
           "' has components, expected scalars, vectors or tensors of nodes, elements or histories");
    if (series_.empty()) region_.FailEmpty(request_.selectionText);
    std::vector<HistorySeries> all;
    for (auto& [key, series] : series_) {
      std::stable_sort(series.points.begin(), series.points.end(),
                       [](const HistoryPoint& a, const HistoryPoint& b) { return OrderOf(a) < OrderOf(b); });
      all.push_back(std::move(series));
    }
    return all;
  }

private:
  std::vector<Component> ChosenOf(const Descriptor& descriptor) const
  {
    std::vector<Component> chosen = ComponentsOf(request_.selection, descriptor);
    const int              onf    = descriptor.GetInteger(Descriptor::OnfId);
    // Of kinds that stand without a component beside others that have one, all is meant.
    if (chosen.empty())
      for (const std::string& name : ValueComponentsOf(onf)) chosen.emplace_back(name, onf);
    return chosen;
  }

  /// The ids are those of the first block of a kind: which records there are does not change from step to step, and to
  /// look for them in each would take longer than to read them.
  const std::vector<int>& IdsOf(const Descriptor& block)
  {
    const auto [found, isNew] = ids_.try_emplace(SeriesKeyOf(block));
    if (isNew) found->second = region_.IdsOf(database_.GetConstDataBlock(block));
    return found->second;
  }

  HistorySeries& SeriesOf(const Descriptor& block, std::optional<int> id, int point, std::size_t place,
                          const std::string& component)
  {
    const Descriptor key    = SeriesKeyOf(block);
    HistorySeries&   series = series_[{key, id.value_or(std::numeric_limits<int>::min()), point, place}];
    if (series.points.empty()) {
      series.key       = key;
      series.kind      = kinds_.GetName(block);
      series.id        = id;
      series.point     = point;
      series.component = component;
    }
    return series;
  }

  void AddRow(const Descriptor& block, const std::vector<Component>& components, const std::vector<Cell>& row)
  {
    const int* id = std::get_if<int>(&row.front());
    // Lists have the place of the group behind the id.
    const int* point =
        OnfKind::ListPeriodOf(block.GetInteger(Descriptor::OnfId)) > 1 ? std::get_if<int>(&row[1]) : nullptr;
    const std::size_t first = row.size() - components.size();
    for (std::size_t i = 0; i < components.size(); ++i) {
      const double* value = std::get_if<double>(&row[first + i]);
      if (value == nullptr) continue;
      SeriesOf(block, *id, point == nullptr ? 0 : *point, i, components[i].GetName())
          .points.push_back({GetResultStep(block), times_.TimeOf(block), *value, times_.QuantityOf(block)});
    }
  }

  void ReadHistory(const Descriptor& descriptor)
  {
    const FED_DataBlock& block = database_.GetConstDataBlock(descriptor);
    for (FED_DataBlock::IndexIterator it = block.Begin(), end = block.End(); it != end; ++it) {
      const int  position = static_cast<int>(*it);
      Descriptor step     = GetResultStep(descriptor);
      step.SetInteger(Descriptor::Substep, position);
      SeriesOf(descriptor, std::nullopt, 0, 0, kinds_.GetName(descriptor))
          .points.push_back({step, times_.TimeAt(descriptor, position), block.GetScalarAt(*it),
                             times_.QuantityAt(descriptor, position)});
    }
  }

  const FED_Database&                                                    database_;
  std::unique_ptr<FED_ResultDatabase>                                    ordered_;  // records from orders by id
  const StepTimes&                                                       times_;
  Region&                                                                region_;
  const HistoryRequest&                                                  request_;
  KindTable                                                              kinds_;
  std::map<Descriptor, std::vector<int>>                                 ids_;
  std::map<std::tuple<Descriptor, int, int, std::size_t>, HistorySeries> series_;
  bool                                                                   hasComponents_ = false;
};

std::optional<double> ReadNumber(const std::string& text)
{
  double     number = 0.0;
  const auto taken  = std::from_chars(text.data(), text.data() + text.size(), number);
  if (taken.ec != std::errc() || taken.ptr != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

/// @return the numbers between separators; nothing when one of them is none
std::optional<std::vector<double>> ReadNumbers(const std::string& text, char separator)
{
  std::vector<double> numbers;
  for (std::size_t first = 0; first <= text.size();) {
    const std::size_t           end    = std::min(text.find(separator, first), text.size());
    const std::optional<double> number = ReadNumber(text.substr(first, end - first));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    first = end + 1;
  }
  return numbers;
}

}  // namespace

std::vector<HistorySeries> ReadHistories(const FED_Database& database, const std::vector<FED_DataDescriptor>& blocks,
                                         const StepTimes& times, Region& region, const HistoryRequest& request)
{
  Reader reader(database, times, region, request);
  reader.LookIntoOrders(blocks);
  for (const FED_DataDescriptor& block : blocks)
    if (IsHistory(block) || region.AppliesTo(block)) reader.Read(block);
  return reader.Finish();
}

HistorySeries Resampled(const HistorySeries& series, const std::vector<double>& times)
{
  int quantity = 0;
  for (const HistoryPoint& point : series.points)
    if (point.time && (quantity == 0 || point.quantity < quantity)) quantity = point.quantity;
  std::map<double, double> known;
  for (const HistoryPoint& point : series.points)
    if (point.time && point.quantity == quantity) known[*point.time] = point.value;
  HistorySeries result = series;
  result.points.clear();
  for (const double time : times) {
    const auto after = known.lower_bound(time);
    if (after == known.end()) continue;
    if (after->first == time) {
      result.points.push_back({{}, time, after->second, quantity});
    } else if (after != known.begin()) {
      const auto   before = std::prev(after);
      const double weight = (time - before->first) / (after->first - before->first);
      result.points.push_back({{}, time, (1.0 - weight) * before->second + weight * after->second, quantity});
    }
  }
  return result;
}

std::vector<double> ParseTimes(const std::string& text)
{
  constexpr double kMost     = 1e6;
  constexpr double kRounding = 1e-9;
  if (text.find(':') == std::string::npos) {
    const auto numbers = ReadNumbers(text, ',');
    if (numbers) return *numbers;
  } else {
    const auto range = ReadNumbers(text, ':');
    if (range && range->size() == 3 && (*range)[2] > 0.0 && (*range)[1] >= (*range)[0]) {
      const double count = std::floor(((*range)[1] - (*range)[0]) / (*range)[2] + kRounding) + 1.0;
      if (count > kMost) Fail("--resample is '" + text + "': more than a million times, expected fewer");
      std::vector<double> times;
      for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
        times.push_back((*range)[0] + static_cast<double>(i) * (*range)[2]);
      return times;
    }
  }
  Fail("--resample is '" + text + "', expected times such as 0.1,0.2,1 or FIRST:LAST:STEP");
}

}  // namespace quilon
