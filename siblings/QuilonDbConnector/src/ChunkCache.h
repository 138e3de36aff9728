#pragma once

/// @file
/// The rows of a database on disk that are in memory.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "ChunkStore.h"
#include "RowChunk.h"

/// Whose keys came from the store.
class KeyOwner
{
public:
  /// Gives the memory of the keys back, which come again when they are next asked for.
  /// @return false where the store does not have all of them
  virtual bool ReleaseKeys() const noexcept = 0;

protected:
  KeyOwner()                           = default;
  KeyOwner(const KeyOwner&)            = default;
  KeyOwner& operator=(const KeyOwner&) = default;
  ~KeyOwner()                          = default;
};

/// Keeps the bytes of chunks in memory near a limit: one cache for all blocks of a database on disk. Outlives them.
///
/// Chunks go in the order of the clock: one that was touched again since the hand last passed gets a second chance, so
/// that a walk over much drives out nothing that is in use. Rows that the store does not have stay until they are
/// spilled. The chunks touched last stay whatever the limit is, so that a few blocks can be walked side by side.
///
/// Keys that came from the store stay near a limit of the same size, beside it. Those that came first go first.
class ChunkCache
{
public:
  static constexpr std::size_t kKeptChunks = 4;
  /// Blocks whose keys stay whatever the limit is: those that are walked side by side.
  static constexpr std::size_t kKeptKeys = 16;

  /// @param store borrowed
  /// @param limit bytes
  /// @param spill called when rows that the store does not have fill the memory: writes the rows of GetDirty() to the
  ///              store and calls MarkClean(). What it throws leaves through the operation that needed the memory.
  /// @param most what Widen() may make of the limit
  ChunkCache(const ChunkStore& store, std::size_t limit, std::size_t most, std::function<void()> spill);
  ChunkCache(const ChunkCache&)            = delete;
  ChunkCache& operator=(const ChunkCache&) = delete;

  const ChunkStore& GetStore() const noexcept { return *store_; }
  bool              TakesChanges() const noexcept { return takesChanges_; }  ///< the store is writable
  std::size_t       GetLimit() const noexcept { return limit_; }
  /// Takes so many bytes more from now on: a chunk that was evicted is wanted again, out of order.
  void        Widen(std::size_t bytes) noexcept { limit_ += std::min(bytes, most_ - limit_); }
  std::size_t GetBytes() const noexcept { return bytes_; }  ///< of all chunks in memory

  /// @return whether this many more bytes fit below the limit as it is
  bool HasRoom(std::size_t bytes) const noexcept { return bytes <= limit_ && bytes_ <= limit_ - bytes; }

  /// Evicts, and spills where that does not suffice, until this many more bytes fit below the limit or nothing but the
  /// chunks touched last is left. Afterwards extents that the store gave before are void.
  void MakeRoom(std::size_t bytes);

  bool IsLast(const RowChunk& chunk) const noexcept { return last_[0] == &chunk; }
  /// The chunk has come to memory to be read or written now.
  void Keep(RowChunk& chunk) noexcept;
  /// The chunk, which was in memory, is read or written now.
  void Touch(RowChunk& chunk) noexcept
  {
    Keep(chunk);
    chunk.wasTouched = true;
  }
  /// Counts the bytes that the chunk has now, and knows it from now on.
  void Count(RowChunk& chunk) noexcept;
  /// The chunk is about to go.
  void Forget(RowChunk& chunk) noexcept;

  /// @param row of the chunk
  void MarkDirty(RowChunk& chunk, std::uint32_t row) noexcept
  {
    if (!chunk.IsDirty()) {
      LinkDirty(chunk);
      chunk.dirtyFirst = row;
      chunk.dirtyEnd   = row + 1;
      return;
    }
    if (row < chunk.dirtyFirst) chunk.dirtyFirst = row;
    if (row >= chunk.dirtyEnd) chunk.dirtyEnd = row + 1;
  }

  /// Costs what changed, not what is there.
  /// @return chunks with rows that the store does not have, in no order
  std::vector<const RowChunk*> GetDirty() const;

  /// The store has all rows as they are now. Until then everything stays dirty.
  void MarkClean() noexcept;

  /// The keys of a block are about to come from the store; others may go for them.
  /// @param bytes that they take; 0 is of no account
  void CountKeys(const KeyOwner& block, std::size_t bytes);
  /// The block's keys have gone, or it does.
  void ForgetKeys(const KeyOwner& block) noexcept;
  /// @return bytes of the keys that came from the store
  std::size_t GetKeyBytes() const noexcept { return keyBytes_; }

private:
  bool IsKept(const RowChunk& chunk) const noexcept;
  bool SpillPays() const noexcept;
  void Evict(std::size_t goal) noexcept;
  void LinkDirty(RowChunk& chunk) noexcept;
  void UnlinkDirty(RowChunk& chunk) noexcept;
  void Leave(RowChunk& chunk) noexcept;

  const ChunkStore*                  store_;
  bool                               takesChanges_;
  std::size_t                        limit_;
  std::size_t                        most_;  // at least limit_
  std::function<void()>              spill_;
  std::size_t                        bytes_ = 0;
  std::size_t                        count_ = 0;        // chunks in the ring
  RowChunk*                          hand_  = nullptr;  // of the ring of all chunks in memory
  RowChunk*                          dirty_ = nullptr;  // first of a list
  std::array<RowChunk*, kKeptChunks> last_{};           // chunks touched last, the latest first; one may stand twice
  // Blocks whose keys came from the store, with the bytes of these, in the order of their coming.
  std::vector<std::pair<const KeyOwner*, std::size_t>> keys_;
  std::size_t                                          keyBytes_ = 0;
};
