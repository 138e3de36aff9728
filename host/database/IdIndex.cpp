#include "database/IdIndex.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "database/DatabaseFolder.h"
#include "database/MemoryLimit.h"
#include "kinds/KindTable.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_Database.h"
#include "QuilonUtilities/FED_Failure.h"
#include "selection/Selection.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

using Descriptor = FED_DataDescriptor;

constexpr std::size_t kUsualMemory = std::size_t{256} << 20;

/// @return whether the block's records have a place in an order by id
bool IsOrderable(const FED_Database& database, const Descriptor& descriptor)
{
  if (OnfKind::EntityOf(descriptor) >= static_cast<int>(OnfKind::UnknownEntity)) return false;
  const auto& block = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(descriptor));
  return block.GetRecordFormat().GetTypes().size() == 1 && block.GetRecordFormat().GetDoubleCount() > 0 &&
         block.GetRecordCount() > 0;
}

/// Blocks that orders have as they are now.
/// @throws FED_Failure for one that cannot be read: those that are damaged are gone by now
std::set<Descriptor> OrderedBlocks(const FED_ResultDatabase& database)
{
  std::set<Descriptor> ordered;
  const FED_IdOrders   found = database.OpenIdOrders();
  if (!found.failures.empty()) Fail(found.failures.front());
  for (const FED_IdOrder& order : found.orders)
    for (const FED_OrderedBlock& block : order.GetBlocks())
      if (database.IsAsItWas(block)) ordered.insert(block.descriptor);
  return ordered;
}

/// Blocks that go into one order.
using OrderKey = std::pair<int, std::string>;  // kind and format

std::map<OrderKey, std::vector<Descriptor>> GroupBlocks(const FED_ResultDatabase&      database,
                                                        const std::vector<Descriptor>& selected, IdIndexReport& report)
{
  const std::set<Descriptor>                  ordered = OrderedBlocks(database);
  std::map<OrderKey, std::vector<Descriptor>> groups;
  for (const Descriptor& descriptor : selected) {
    ThrowIfInterrupted();
    if (ordered.contains(descriptor)) {
      ++report.present;
    } else if (!IsOrderable(database, descriptor)) {
      ++report.others;
    } else {
      const auto& block = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(descriptor));
      groups[{descriptor.GetInteger(Descriptor::OnfId), block.GetRecordFormat().ToString()}].push_back(descriptor);
    }
  }
  return groups;
}

/// Bytes of a chunk, of which a block reads one at the least.
constexpr std::uint64_t kChunkBytes = std::uint64_t{4} << 20;

/// What is wanted of one order.
class OrderedRead
{
public:
  OrderedRead(const FED_ResultDatabase& database, const FED_IdOrder& order) : database_(database), order_(order) {}

  /// @return whether the order has the block
  bool Want(std::size_t position, const WantedRecords& wanted)
  {
    const FED_OrderedBlock& block = order_.GetBlocks()[position];
    if (!database_.IsAsItWas(block)) return false;
    wanted_[position] = &wanted;
    const int kind    = OnfKind::EntityOf(block.descriptor);
    if (seen_.insert({kind, wanted.ids}).second)
      for (const int id : *wanted.ids) ids_.insert({kind, id});
    return true;
  }

  bool IsWorthIt() const
  {
    if (wanted_.empty()) return false;
    const std::uint64_t blockBytes = order_.GetRowCount() * order_.GetWidth() * sizeof(double);
    const std::uint64_t pages      = std::min<std::uint64_t>(ids_.size(), order_.GetPageCount());
    return pages * order_.GetPageBytes() <= wanted_.size() * std::min(blockBytes, kChunkBytes);
  }

  void ReadInto(FED_ResultDatabase& records) const
  {
    for (const auto& [position, wanted] : wanted_) records.GetOrCreateDataBlock(wanted->block, wanted->ids->size());
    for (const auto& [kind, id] : ids_) {
      ThrowIfInterrupted();
      const std::size_t index = database_.GetIdMapsPool().FindIndex(kind, id);
      if (index == FED_IdMapsPool::npos) continue;
      order_.Visit(static_cast<std::uint32_t>(index), [&, id = id](std::size_t position, const double* values) {
        const auto found = wanted_.find(position);
        if (found == wanted_.end()) return;
        const WantedRecords& wanted = *found->second;
        if (std::binary_search(wanted.ids->begin(), wanted.ids->end(), id))
          records.GetDataBlock(wanted.block)
              .SetValuesAt(records.GetIdMapsPool().FindOrAddIndex(OnfKind::EntityOf(wanted.block), id), values);
      });
    }
  }

private:
  const FED_ResultDatabase&                         database_;
  const FED_IdOrder&                                order_;
  std::map<std::size_t, const WantedRecords*>       wanted_;  // by position in the order
  std::set<std::pair<int, const std::vector<int>*>> seen_;    // whose ids are among these
  std::set<std::pair<int, int>>                     ids_;     // with their kind
};

using WantedBlocks = std::map<Descriptor, const WantedRecords*>;

/// Asks an order for what is wanted of its blocks.
/// @param stale receives blocks of which the order is not true any more
/// @return the blocks that it has
std::vector<Descriptor> WantBlocks(OrderedRead& part, const FED_IdOrder& order, const WantedBlocks& wanted,
                                   std::set<Descriptor>& stale)
{
  std::vector<Descriptor> taken;
  for (std::size_t i = 0; i < order.GetBlocks().size(); ++i) {
    const auto at = wanted.find(order.GetBlocks()[i].descriptor);
    if (at == wanted.end()) continue;
    if (part.Want(i, *at->second))
      taken.push_back(at->first);
    else
      stale.insert(at->first);
  }
  return taken;
}

/// @param blocks those of the part, of which nothing stays where reading fails
/// @return empty, or what was wrong
std::string TryToRead(const OrderedRead& part, const std::vector<Descriptor>& blocks, FED_ResultDatabase& records)
{
  try {
    part.ReadInto(records);
    return {};
  } catch (const FED_Failure& failure) {
    for (const Descriptor& block : blocks)
      if (records.HasDataBlock(block)) records.DeleteDataBlock(block);
    return failure.what();
  }
}

}  // namespace

IdIndexReport IndexById(const std::filesystem::path& path, const IdIndexOptions& options, Listener& listener)
{
  if (!IsWorkingDatabaseFolder(path)) Fail(path.string() + ": not a working database (.fed)");
  IdIndexReport      report;
  WatchedFiles       files({}, options.patience);
  FED_ResultDatabase database(path, FED_ResultDatabase::ReadWrite, files.GetOptions());
  report.removed = options.drop ? database.RemoveIdOrders() : database.RemoveStaleIdOrders();
  if (options.drop) return report;
  const KindTable               kinds(database);
  const Selection               selection = options.selection(kinds);
  const std::vector<Descriptor> selected  = selection.Apply(database.GetDataDescriptors(FED_DataDescriptorPattern()));
  const auto                    groups    = GroupBlocks(database, selected, report);
  std::size_t                   done      = 0;
  for (const auto& [key, blocks] : groups) {
    listener.Progress("ordering by id", done++, groups.size(), "kinds");
    if (blocks.size() < 2) {
      ++report.others;
      continue;
    }
    const FED_IdOrderReport written = database.WriteIdOrder(blocks, MemoryLimit::GetOr(kUsualMemory));
    report.mostInAddition           = std::max(report.mostInAddition, written.temporaryBytes);
    report.orders.push_back({kinds.GetName(key.first), written.file, blocks.size(), written.rows, written.fileBytes});
  }
  return report;
}

std::unique_ptr<FED_ResultDatabase> ReadFromOrders(const FED_Database&                            database,
                                                   const std::vector<WantedRecords>&              wanted,
                                                   const std::function<void(const std::string&)>& onNote)
{
  const auto* const own = dynamic_cast<const FED_ResultDatabase*>(&database);
  if (own == nullptr || wanted.empty()) return nullptr;
  const FED_IdOrders found = own->OpenIdOrders();
  const auto         note  = [&onNote](const std::string& text) {
    if (onNote) onNote(text);
  };
  for (const std::string& failure : found.failures) note(failure);
  WantedBlocks left;
  for (const WantedRecords& records : wanted) left[records.block] = &records;
  auto                 read  = std::make_unique<FED_ResultDatabase>();
  std::size_t          count = 0;
  std::set<Descriptor> stale;
  for (const FED_IdOrder& order : found.orders) {
    OrderedRead                   part(*own, order);
    const std::vector<Descriptor> taken = WantBlocks(part, order, left, stale);
    if (!part.IsWorthIt()) continue;
    if (const std::string failure = TryToRead(part, taken, *read); !failure.empty()) {
      note(failure);
      continue;
    }
    count += taken.size();
    for (const Descriptor& block : taken) left.erase(block);
  }
  std::erase_if(stale, [&left](const Descriptor& block) { return !left.contains(block); });
  if (!stale.empty())
    note("the order by id is not true any more of " + Counted(stale.size(), "block") +
         ", read as without one; 'quilon index --by id' makes another");
  return count > 0 ? std::move(read) : nullptr;
}

}  // namespace quilon
