#pragma once

/// @file
/// A store in memory, that counts what is asked of it and fails on demand.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ChunkCache.h"
#include "ChunkStore.h"
#include "DirtyRows.h"
#include "QuilonUtilities/FED_Failure.h"
#include "ResultDataBlock.h"
#include "Statistics.h"

class FakeChunkStore final : public ChunkStore
{
public:
  struct Extent
  {
    StoredExtent                  stored;
    std::vector<std::string>      columns;  ///< bytes
    std::vector<std::uint32_t>    keys;
    std::vector<ColumnStatistics> statistics;
  };

  void Write(const std::vector<DirtyRows>& dirty)
  {
    for (const DirtyRows& rows : dirty) {
      Extent extent;
      extent.keys              = rows.GetKeys();
      extent.stored.firstRow   = rows.GetFirstRow();
      extent.stored.rowCount   = rows.GetRowCount();
      extent.stored.keysAreRun = rows.KeysAreRun();
      extent.stored.firstKey   = extent.keys.front();
      EXPECT_EQ(extent.keys.size(), rows.KeysAreRun() ? 1u : rows.GetRowCount());
      const std::size_t count = GetStoredColumns(rows.GetOwner().GetRecordFormat()).size();
      for (std::size_t column = 0; column < count; ++column) {
        std::string bytes;
        rows.Visit(column, [&bytes](const void* part, std::size_t size) {
          bytes.append(static_cast<const char*>(part), size);
        });
        EXPECT_EQ(bytes.size(), rows.GetBytes(column));
        extent.statistics.emplace_back();
        AddStatistics(GetStoredColumns(rows.GetOwner().GetRecordFormat())[column].element, bytes.data(), bytes.size(),
                      extent.statistics.back());
        extent.columns.push_back(std::move(bytes));
      }
      chunks[{rows.GetBlock(), rows.GetChunk()}].push_back(std::move(extent));
    }
    ++generation;
  }

  std::vector<StoredExtent> GetExtents(BlockUid block, std::uint32_t chunk) const override
  {
    std::vector<StoredExtent> extents;
    const auto                found = chunks.find({block, chunk});
    if (found == chunks.end()) return extents;
    for (const Extent& extent : found->second) {
      extents.push_back(extent.stored);
      handles.push_back({generation, &extent});
      extents.back().handle = handles.size() - 1;
    }
    return extents;
  }

  std::uint64_t GetBytes(const StoredExtent& extent, std::size_t column) const override
  {
    return At(extent).columns[column].size();
  }

  void Read(const StoredExtent& extent, std::size_t column, void* out) const override
  {
    ++reads;
    if (failingRead != 0 && --failingRead == 0) throw FED_Failure("the disk is gone", "|%P|Test|FakeChunkStore");
    const std::string& bytes = At(extent).columns[column];
    if (!bytes.empty()) std::memcpy(out, bytes.data(), bytes.size());
  }

  void ReadKeys(const StoredExtent& extent, std::uint32_t* keys) const override
  {
    ++keyReads;
    EXPECT_FALSE(extent.keysAreRun);
    if (failingRead != 0 && --failingRead == 0) throw FED_Failure("the disk is gone", "|%P|Test|FakeChunkStore");
    std::copy(At(extent).keys.begin(), At(extent).keys.end(), keys);
  }

  ColumnStatistics GetStatistics(const StoredExtent& extent, std::size_t column) const override
  {
    return At(extent).statistics[column];
  }

  std::size_t GetIdCount(int kind) const override
  {
    const auto found = ids.find(kind);
    return found == ids.end() ? 0 : found->second.size();
  }

  void ReadIds(int kind, std::int32_t* out) const override
  {
    ++idReads;
    if (failingRead != 0 && --failingRead == 0) throw FED_Failure("the disk is gone", "|%P|Test|FakeChunkStore");
    std::copy(ids.at(kind).begin(), ids.at(kind).end(), out);
  }

  std::map<std::pair<BlockUid, std::uint32_t>, std::vector<Extent>> chunks;
  std::map<int, std::vector<std::int32_t>>                          ids;
  std::size_t                                                       generation  = 0;
  mutable std::size_t                                               failingRead = 0;  ///< 1: the next one
  mutable std::size_t                                               reads       = 0;  ///< of columns
  mutable std::size_t                                               keyReads    = 0;
  mutable std::size_t                                               idReads     = 0;

private:
  // Extents are void as soon as something is written.
  const Extent& At(const StoredExtent& extent) const
  {
    EXPECT_EQ(handles.at(extent.handle).first, generation) << "an extent was kept while the store was written";
    return *handles.at(extent.handle).second;
  }

  mutable std::vector<std::pair<std::size_t, const Extent*>> handles;
};

/// A store and the cache above it, as a database on disk has them.
class FakeDisk
{
public:
  explicit FakeDisk(std::size_t limit = std::size_t{1} << 30, std::size_t most = 0)
      : cache(store, limit, most, [this] {
          ++spills;
          Commit();
        })
  {}

  void Commit()
  {
    if (isFull) throw FED_Failure("the disk is full", "|%P|Test|FakeDisk");
    store.Write(CollectDirty(cache));
    cache.MarkClean();
  }

  FakeChunkStore store;
  bool           isFull = false;
  std::size_t    spills = 0;
  ChunkCache     cache;
};
