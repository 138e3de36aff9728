#include "shards/Join.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>

#include "database/DatabaseFolder.h"
#include "kinds/KindTable.h"
#include "kinds/UserKinds.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "selection/Selection.h"
#include "shards/RecordMerge.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

/// Bytes of merged blocks that are written side by side; every shard is opened once for them.
constexpr std::uint64_t kBatchBytes = std::uint64_t{512} << 20;

/// A block of the joined database.
struct JoinedBlock
{
  std::vector<std::size_t> shards;  ///< that have it, ascending
  std::string              format;
  std::uint64_t            print    = 0;  ///< of the first
  bool                     areAlike = true;
  std::uint64_t            bytes    = 0;
};

class Joiner
{
public:
  Joiner(const JoinOptions& options, Listener& listener) : options_(options), listener_(listener) {}

  JoinReport Run()
  {
    CheckPaths();
    target_ = std::make_unique<FED_ResultDatabase>(options_.output, FED_ResultDatabase::Create, files_.GetOptions());
    for (std::size_t shard = 0; shard < options_.shards.size(); ++shard) {
      listener_.Progress("looking at shards", shard, options_.shards.size(), "shards");
      TakeStock(shard);
    }
    if (blocks_.empty()) Fail(options_.output.string() + ": the shards have no blocks, nothing is written");
    const KindTable kinds(*target_);
    if (options_.rules) rules_ = options_.rules(kinds);
    RequireSameSteps(kinds);
    Divide();
    MergeShared(kinds);
    LinkOthers();
    target_->Commit();
    return report_;
  }

private:
  std::string NameOf(std::size_t shard) const { return options_.shards[shard].string(); }

  void CheckPaths() const
  {
    const std::string output = options_.output.string();
    if (!IsWorkingDatabaseName(options_.output)) Fail(output + ": expected the name of a new working database (.fed)");
    if (StatusOf(options_.output).kind != FED_FileStatus::Nothing)
      Fail(output + ": exists, expected the name of a new database");
    for (const fs::path& shard : options_.shards)
      if (!IsWorkingDatabaseFolder(shard)) Fail(shard.string() + ": not a working database (.fed), expected shards");
  }

  /// What a shard has. Its ids come here in their order, so that those of shards with one mesh keep their indices.
  void TakeStock(std::size_t shard)
  {
    const FED_ResultDatabase database(options_.shards[shard], FED_ResultDatabase::ReadOnly, files_.GetOptions());
    TakeNames(database, shard);
    for (int kind = 0; kind < FED_ResultIdMapsPool::kNumKinds; ++kind)
      for (std::size_t index = 1; index <= database.GetIdMapsPool().GetCount(kind); ++index)
        target_->GetIdMapsPool().FindOrAddIndex(kind, database.GetIdMapsPool().GetId(kind, index));
    for (const FED_DataDescriptor& descriptor : database.GetDataDescriptors(FED_DataDescriptorPattern())) {
      const auto&         block  = dynamic_cast<const FED_ColumnDataBlock&>(database.GetConstDataBlock(descriptor));
      const std::string   format = block.GetRecordFormat().ToString();
      const std::uint64_t print  = database.GetBlockPrint(descriptor);
      const auto [found, isNew]  = blocks_.try_emplace(descriptor);
      JoinedBlock& joined        = found->second;
      if (isNew) {
        joined.print  = print;
        joined.format = format;
      } else if (joined.format.empty()) {
        joined.format = format;
      } else if (!format.empty() && format != joined.format) {
        Fail(NameOf(shard) + ": block " + ToSelectionText(descriptor) + " has records '" + format + "', expected '" +
             joined.format + "' as in " + NameOf(joined.shards.front()));
      }
      joined.areAlike = joined.areAlike && print == joined.print;
      joined.bytes += std::uint64_t{block.GetRecordCount()} * 48;
      joined.shards.push_back(shard);
    }
  }

  void TakeNames(const FED_Database& database, std::size_t shard)
  {
    ForEachUserKind([&](FED_OnfId onf) {
      const std::string name   = database.GetUserKindName(onf);
      const std::string before = target_->GetUserKindName(onf);
      if (name.empty()) return;
      if (!before.empty() && before != name)
        Fail(NameOf(shard) + ": kind " + std::to_string(onf) + " is '" + Printable(name) + "', expected '" +
             Printable(before) + "' as in the shards before it");
      if (before.empty()) target_->SetUserKindName(onf, name);
    });
  }

  /// Shards of one kind's records come from one run: where several have it, they have it at every step.
  void RequireSameSteps(const KindTable& kinds) const
  {
    std::map<int, const std::pair<const FED_DataDescriptor, JoinedBlock>*> most;
    for (const auto& block : blocks_) {
      if (!HasResultStep(block.first)) continue;
      const auto*& widest = most[block.first.GetInteger(FED_DataDescriptor::OnfId)];
      if (widest == nullptr || block.second.shards.size() > widest->second.shards.size()) widest = &block;
    }
    for (const auto& [descriptor, block] : blocks_) {
      if (!HasResultStep(descriptor)) continue;
      const auto& [other, widest] = *most[descriptor.GetInteger(FED_DataDescriptor::OnfId)];
      if (widest.shards.size() == 1 || widest.shards == block.shards) continue;
      std::vector<std::size_t> missing;
      std::set_difference(widest.shards.begin(), widest.shards.end(), block.shards.begin(), block.shards.end(),
                          std::back_inserter(missing));
      if (missing.empty()) continue;  // then it is in another that the widest is not in
      Fail(NameOf(missing.front()) + ": has " + kinds.GetName(descriptor) + " of " + ToSelectionText(other) +
           " but not of " + ToSelectionText(descriptor) + ", which " + NameOf(block.shards.front()) +
           " has; expected the same steps");
    }
  }

  std::optional<BorderRule> RuleOf(const FED_DataDescriptor& descriptor) const
  {
    return rules_.Find(GetNamedKind(descriptor));
  }

  /// Decides which blocks are linked.
  void Divide()
  {
    ofShard_.resize(options_.shards.size());
    for (const auto& [descriptor, block] : blocks_) {
      const auto rule = RuleOf(descriptor);
      // Where one record of several alike stands for all, all stay where they are.
      const bool isOne = block.shards.size() == 1 ||
                         (block.areAlike && rule && rule->form != BorderRule::Sum && rule->form != BorderRule::Average);
      if (isOne)
        ofShard_[block.shards.front()].push_back(descriptor);
      else
        shared_.push_back(descriptor);
    }
    for (const auto& blocks : ofShard_) report_.linkedBlocks += blocks.size();
    report_.mergedBlocks = shared_.size();
  }

  /// @return whether means of another block take this one along
  bool GoesWithAverages(const FED_DataDescriptor& descriptor) const
  {
    const int average = FindAverageOf(descriptor.GetInteger(FED_DataDescriptor::OnfId));
    if (average == 0) return false;
    FED_DataDescriptor means = descriptor;
    means.SetInteger(FED_DataDescriptor::OnfId, average);
    const auto rule = RuleOf(means);
    return rule && rule->form == BorderRule::Average && std::binary_search(shared_.begin(), shared_.end(), means);
  }

  void MergeShared(const KindTable& kinds)
  {
    for (auto begin = shared_.begin(); begin != shared_.end();) {
      auto          end   = begin;
      std::uint64_t bytes = 0;
      while (end != shared_.end() && (end == begin || bytes + blocks_.at(*end).bytes <= kBatchBytes))
        bytes += blocks_.at(*end++).bytes;
      MergeBatch({begin, end}, kinds);
      begin = end;
    }
  }

  void MergeBatch(const std::vector<FED_DataDescriptor>& batch, const KindTable& kinds)
  {
    std::set<std::size_t> shards;
    for (const FED_DataDescriptor& descriptor : batch) {
      const JoinedBlock& block = blocks_.at(descriptor);
      shards.insert(block.shards.begin(), block.shards.end());
      // All that goes with means is made before them, wherever a batch ends.
      target_->CreateDataBlock(descriptor, 0, 0, block.format);
      MakeCompanions(descriptor);
    }
    std::size_t done = 0;
    for (const std::size_t shard : shards) {
      listener_.Progress("joining records", done++, shards.size(), "shards");
      const FED_ResultDatabase database(options_.shards[shard], FED_ResultDatabase::ReadOnly, files_.GetOptions());
      for (const FED_DataDescriptor& descriptor : batch) {
        ThrowIfInterrupted();
        if (!database.HasDataBlock(descriptor) || GoesWithAverages(descriptor)) continue;
        Merge({database, descriptor, NameOf(shard),
               kinds.GetName(descriptor) + " (" + ToSelectionText(descriptor) + ')'});
      }
    }
  }

  void MakeCompanions(const FED_DataDescriptor& means)
  {
    FED_DataDescriptor other = means;
    for (const int kind : ListCompanionsOf(OnfKind::OnfOf(means))) {
      other.SetInteger(FED_DataDescriptor::OnfId, kind);
      if (std::binary_search(shared_.begin(), shared_.end(), other))
        target_->CreateDataBlock(other, 0, 0, blocks_.at(other).format);
    }
  }

  void Merge(const ShardBlock& block)
  {
    const auto rule     = RuleOf(block.descriptor);
    const bool averages = rule && rule->form == BorderRule::Average;
    if (averages && !HasCounts(block.descriptor.GetInteger(FED_DataDescriptor::OnfId)))
      Fail(block.text + ": the catalogue has no counts of its values, expected another rule than 'average'");
    const MergedRecords merged = averages ? MergeAverages(block, *target_) : MergeBlock(block, rule, *target_);
    report_.mergedRecords += merged.records;
    report_.sharedRecords += merged.shared;
  }

  void LinkOthers()
  {
    for (std::size_t shard = 0; shard < ofShard_.size(); ++shard) {
      listener_.Progress("linking", shard, ofShard_.size(), "shards");
      if (ofShard_[shard].empty()) continue;
      const FED_LinkReport linked = target_->LinkBlocks(options_.shards[shard], ofShard_[shard]);
      report_.segments += linked.segments;
      report_.copies += linked.copies;
      report_.linkedBytes += linked.linkedBytes;
      report_.copiedBytes += linked.copiedBytes;
    }
  }

  const JoinOptions&                           options_;
  Listener&                                    listener_;
  WatchedFiles                                 files_;
  BorderRules                                  rules_;
  std::unique_ptr<FED_ResultDatabase>          target_;
  std::map<FED_DataDescriptor, JoinedBlock>    blocks_;
  std::vector<std::vector<FED_DataDescriptor>> ofShard_;  // blocks that are linked from it
  std::vector<FED_DataDescriptor>              shared_;   // blocks that are merged, ascending
  JoinReport                                   report_;
};

}  // namespace

JoinReport JoinDatabases(const JoinOptions& options, Listener& listener) { return Joiner(options, listener).Run(); }

}  // namespace quilon
