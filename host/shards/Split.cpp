#include "shards/Split.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <unordered_map>
#include <utility>

#include <bundled/FED_BlockSpans.h>
#include <bundled/FED_ColumnDataBlock.h>
#include <bundled/FED_ResultDatabase.h>
#include <bundled/OnfKinds.h>
#include <bundled/StoreFile.h>

#include "database/DatabaseFolder.h"
#include "database/Listing.h"
#include "database/WatchedFiles.h"
#include "kinds/KindTable.h"
#include "kinds/UserKinds.h"
#include "mesh/Mesh.h"
#include "progress/Interrupt.h"
#include "progress/Listener.h"
#include "QuilonDbConnector/FED_IdDataBlock.h"
#include "selection/Selection.h"
#include "shards/BorderRule.h"
#include "text/Failure.h"
#include "text/Format.h"

namespace quilon {

namespace {

namespace fs = std::filesystem;

/// Shards that are written side by side; the database is read once for them.
constexpr std::size_t kOpenShards = 64;
constexpr std::size_t kMostShards = 9999;

using Descriptors = std::vector<FED_DataDescriptor>;

/// To which shard, from 0, nodes and elements go.
struct Parts
{
  std::vector<std::string>             names;
  std::unordered_map<int, std::size_t> ofNode;
  std::unordered_map<int, std::size_t> ofElement;

  const std::unordered_map<int, std::size_t>* Find(int entity) const noexcept
  {
    return entity == OnfKind::NodeEntity ? &ofNode : entity == OnfKind::ElementEntity ? &ofElement : nullptr;
  }
};

/// A folder that takes its name when all that is in it is whole.
class NewFolder
{
public:
  NewFolder(FED_FileLayer& files, fs::path path) : files_(files), path_(std::move(path)), part_(path_)
  {
    if (StatusOf(path_).kind != FED_FileStatus::Nothing)
      Fail(path_.string() + ": exists, expected the name of a new folder");
    part_ += ".part";
    bool made = false;
    RequireSuccess(files_.MakeFolder(part_, made), part_, "create");
    if (!made) Fail(part_.string() + ": exists, of a split that is at work or was killed; expected that it is removed");
  }
  NewFolder(const NewFolder&)            = delete;
  NewFolder& operator=(const NewFolder&) = delete;
  ~NewFolder()
  {
    std::error_code ignored;
    if (!isFinished_) fs::remove_all(part_, ignored);
  }

  /// Where files go until then.
  const fs::path& GetPart() const noexcept { return part_; }

  void Finish()
  {
    RequireSuccess(files_.Rename(part_, path_), path_, "create");
    isFinished_ = true;
  }

private:
  FED_FileLayer& files_;
  fs::path       path_;
  fs::path       part_;
  bool           isFinished_ = false;
};

std::vector<std::string> ParseNames(std::string_view text)
{
  std::vector<std::string> names;
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    names.emplace_back(Trimmed(text.substr(0, comma)));
    text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
  }
  return names;
}

std::optional<std::size_t> ParseCount(const std::string& text)
{
  std::size_t       count  = 0;
  const char* const end    = text.data() + text.size();
  const auto        result = std::from_chars(text.data(), end, count);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return count;
}

class Splitter
{
public:
  Splitter(const SplitOptions& options, Listener& listener) : options_(options), listener_(listener)
  {
    if (!IsWorkingDatabaseFolder(options.database))
      Fail(Name() + ": not a working database (.fed), expected one to be split");
    database_.emplace(options.database, FED_ResultDatabase::ReadOnly, files_.GetOptions());
    blocks_ = database_->GetDataDescriptors(FED_DataDescriptorPattern());
  }

  SplitReport Run()
  {
    const std::string                by    = options_.by;
    const std::optional<std::size_t> count = ParseCount(by);
    if (by != "step" && by != "set" && !by.starts_with("set:") && !count)
      Fail("'" + Printable(by) + "' is no way to split, expected step, set, set:NAME,... or a number of parts");
    std::optional<Parts> parts;
    if (by.starts_with("set")) parts = DealOutBySets(by == "set" ? std::string_view() : std::string_view(by).substr(4));
    if (count) parts = DealOutByIds(*count);
    NewFolder folder(files_, options_.output);
    if (parts)
      WriteParts(*parts, folder.GetPart());
    else
      WriteSteps(folder.GetPart());
    folder.Finish();
    return std::move(report_);
  }

private:
  std::string Name() const { return options_.database.string(); }

  void AddShard(const std::string& holds, std::size_t total)
  {
    if (total > kMostShards)
      Fail(Name() + ": would be " + std::to_string(total) + " shards, expected at most " + std::to_string(kMostShards));
    std::string name = std::to_string(report_.shards.size() + 1);
    name.insert(0, name.size() < 4 ? 4 - name.size() : 0, '0');
    report_.shards.push_back({options_.output / (name + ".fed"), holds, 0});
  }

  fs::path PartPath(const fs::path& folder, std::size_t shard) const
  {
    return folder / report_.shards[shard].path.filename();
  }

  void WriteSteps(const fs::path& folder)
  {
    const Descriptors                         steps = ListResultSteps(blocks_);
    std::map<FED_DataDescriptor, std::size_t> shardOf;
    if (steps.empty()) Fail(Name() + ": has no result steps to split by");
    for (const FED_DataDescriptor& step : steps) {
      AddShard(StepText(step), steps.size());
      shardOf.emplace(step, shardOf.size());
    }
    std::vector<Descriptors> blocks(steps.size());
    for (const FED_DataDescriptor& block : blocks_) {
      if (HasResultStep(block))
        blocks[shardOf.at(GetResultStep(block))].push_back(block);
      else if (FindModelRule(GetNamedKind(block)))
        for (Descriptors& all : blocks) all.push_back(block);
      else
        blocks.front().push_back(block);
    }
    for (std::size_t shard = 0; shard < blocks.size(); ++shard) {
      listener_.Progress("splitting", shard, blocks.size(), "shards");
      FED_ResultDatabase target(PartPath(folder, shard), FED_ResultDatabase::Create, files_.GetOptions());
      CopyUserKindNames(*database_, target);
      const FED_LinkReport linked = target.LinkBlocks(options_.database, blocks[shard]);
      target.Commit();
      report_.shards[shard].blocks = blocks[shard].size();
      report_.linkedBytes += linked.linkedBytes;
      report_.copiedBytes += linked.copiedBytes;
    }
  }

  /// The ids that records have, ascending.
  std::vector<int> FindIds(int entity) const
  {
    std::set<int> ids;
    for (const FED_DataDescriptor& block : blocks_) {
      if (OnfKind::EntityOf(block) != entity) continue;
      FED_ForEachSpan(database_->GetConstDataBlock(block), database_->GetIdMapsPool(), [&](const FED_BlockSpan& span) {
        ThrowIfInterrupted();
        const int* const found = span.GetIds().GetData();
        ids.insert(found, found + span.GetCount());
      });
    }
    return {ids.begin(), ids.end()};
  }

  Parts DealOutByIds(std::size_t count) const
  {
    Parts parts;
    if (count < 1 || count > kMostShards)
      Fail("a database cannot be split into " + std::to_string(count) + " parts, expected 1 to " +
           std::to_string(kMostShards));
    for (std::size_t i = 1; i <= count; ++i)
      parts.names.push_back("part " + std::to_string(i) + " of " + std::to_string(count));
    for (const int entity : {OnfKind::NodeEntity, OnfKind::ElementEntity}) {
      const std::vector<int> ids = FindIds(entity);
      auto&                  of  = entity == OnfKind::NodeEntity ? parts.ofNode : parts.ofElement;
      for (std::size_t i = 0; i < ids.size(); ++i) of.emplace(ids[i], i * count / ids.size());
    }
    return parts;
  }

  /// @param wanted names; empty: all sets of elements
  Parts DealOutBySets(std::string_view wanted) const
  {
    int  iteration = 0;
    bool hasSets   = false;
    for (const FED_DataDescriptor& block : blocks_)
      if (block.GetInteger(FED_DataDescriptor::OnfId) == OnfKind::ElementSet && !hasSets) {
        iteration = block.GetInteger(FED_DataDescriptor::Iteration);
        hasSets   = true;
      }
    if (!hasSets) Fail(Name() + ": has no sets of elements to split by");
    std::vector<NamedSet> sets = ReadSets(*database_, iteration);
    std::erase_if(sets, [](const NamedSet& set) { return !set.ofElements; });
    if (!wanted.empty()) sets = Choose(sets, ParseNames(wanted));
    Parts parts;
    for (const NamedSet& set : sets) {
      for (const int id : set.ids) parts.ofElement.emplace(id, parts.names.size());
      parts.names.push_back("set " + Printable(set.name));
    }
    parts.names.emplace_back("the rest");
    const Mesh        mesh = ReadMesh(*database_, iteration, Name());
    const std::size_t rest = parts.names.size() - 1;
    for (const Mesh::Element& element : mesh.Elements()) {
      const auto        found = parts.ofElement.find(element.id);
      const std::size_t part  = found != parts.ofElement.end() ? found->second : rest;
      for (const std::size_t node : mesh.NodesOf(element)) {
        auto& ofNode = parts.ofNode.emplace(mesh.NodeIds()[node], part).first->second;
        ofNode       = std::min(ofNode, part);
      }
    }
    return parts;
  }

  std::vector<NamedSet> Choose(const std::vector<NamedSet>& sets, const std::vector<std::string>& names) const
  {
    std::vector<NamedSet> chosen;
    for (const std::string& name : names) {
      const auto found = std::find_if(sets.begin(), sets.end(), [&](const NamedSet& set) { return set.name == name; });
      if (found == sets.end()) Fail(Name() + ": has no set of elements '" + Printable(name) + "'");
      chosen.push_back(*found);
    }
    return chosen;
  }

  void WriteParts(const Parts& parts, const fs::path& folder)
  {
    for (const std::string& name : parts.names) AddShard(name, parts.names.size());
    for (std::size_t first = 0; first < parts.names.size(); first += kOpenShards)
      WriteParts(parts, folder, first, std::min(first + kOpenShards, parts.names.size()));
  }

  /// The shards from `first` to before `last`.
  void WriteParts(const Parts& parts, const fs::path& folder, std::size_t first, std::size_t last)
  {
    FED_ResultDatabaseOptions limited = files_.GetOptions();
    limited.memoryLimit               = (std::size_t{512} << 20) / (last - first);
    std::vector<std::unique_ptr<FED_ResultDatabase>> targets;
    for (std::size_t shard = first; shard < last; ++shard) {
      targets.push_back(
          std::make_unique<FED_ResultDatabase>(PartPath(folder, shard), FED_ResultDatabase::Create, limited));
      CopyUserKindNames(*database_, *targets.back());
    }
    Descriptors whole;
    std::size_t done = 0;
    for (const FED_DataDescriptor& block : blocks_) {
      listener_.Progress("splitting", done++, blocks_.size(), "blocks");
      if (const auto* of = parts.Find(OnfKind::EntityOf(block)))
        DealOut(block, *of, parts.names.size() - 1, first, targets);
      else
        whole.push_back(block);
    }
    if (first == 0 && !whole.empty()) {
      const FED_LinkReport linked = targets.front()->LinkBlocks(options_.database, whole);
      report_.linkedBytes += linked.linkedBytes;
      report_.copiedBytes += linked.copiedBytes;
    }
    for (std::size_t i = 0; i < targets.size(); ++i) {
      targets[i]->Commit();
      report_.shards[first + i].blocks = targets[i]->GetDataDescriptors(FED_DataDescriptorPattern()).size();
    }
  }

  /// @param rest  the shard of ids that go to no other
  /// @param first of the targets
  void DealOut(const FED_DataDescriptor& descriptor, const std::unordered_map<int, std::size_t>& partOf,
               std::size_t rest, std::size_t first,
               const std::vector<std::unique_ptr<FED_ResultDatabase>>& targets) const
  {
    const auto&       block  = dynamic_cast<const FED_ColumnDataBlock&>(database_->GetConstDataBlock(descriptor));
    const std::string format = block.GetRecordFormat().ToString();
    // A block is where it has records; where it has none at all, in the first shard.
    struct Writer
    {
      std::unique_ptr<FED_IdDataBlock> view;
      FED_IdDataRecord*                record = nullptr;
    };
    std::vector<Writer>  writers(targets.size());
    FED_ConstIdDataBlock from(block, database_->GetIdMapsPool(), true);
    auto&                record = from.CreateConstIdDataRecord();
    if (block.GetRecordCount() == 0 && first == 0) targets.front()->CreateDataBlock(descriptor, 0, 0, format);
    FED_ForEachSpan(block, database_->GetIdMapsPool(), [&](const FED_BlockSpan& span) {
      ThrowIfInterrupted();
      for (std::size_t i = 0; i < span.GetCount(); ++i) {
        const int         id    = span.GetIds().GetData()[i];
        const auto        found = partOf.find(id);
        const std::size_t shard = found != partOf.end() ? found->second : rest;
        if (shard < first || shard >= first + targets.size()) continue;
        Writer&             writer = writers[shard - first];
        FED_ResultDatabase& target = *targets[shard - first];
        if (writer.view == nullptr) {
          FED_DataBlock& made = *target.CreateDataBlock(descriptor, 0, 0, format);
          writer.view         = std::make_unique<FED_IdDataBlock>(made, target.GetIdMapsPool(), true);
          writer.record       = &writer.view->CreateIdDataRecord();
        }
        from.GetRecord(id, record);
        *writer.record = record;
        writer.view->SetRecord(id, *writer.record);
      }
    });
  }

  const SplitOptions&               options_;
  Listener&                         listener_;
  WatchedFiles                      files_;
  std::optional<FED_ResultDatabase> database_;
  Descriptors                       blocks_;
  SplitReport                       report_;
};

}  // namespace

SplitReport SplitDatabase(const SplitOptions& options, Listener& listener) { return Splitter(options, listener).Run(); }

}  // namespace quilon
