#pragma once

/// @file
/// The store in which values are kept by 32-bit entity id.

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

/// Values V keyed by 32-bit ids (node or element numbers), made for dense, mostly small ids.
///
/// Values lie in one dense vector in the order in which their ids were first inserted; an entry's position never
/// changes, and entries are never removed one by one. A byte-wise radix index over the id finds the position in at most
/// four reads; ids below 256 need a single one.
///
/// Ids:      any int. Order is that of the id read as unsigned 32-bit, so a negative id follows every other one.
/// Memory:   the entries, and 2 KiB per index node. A node serves 256 consecutive ids: dense ids cost 8 bytes each
///           beside their entry, but 31-bit ids drawn at random cost two kilobytes each. Renumber those first.
/// Failures: a failed allocation passes through as std::bad_alloc, and so does what V's constructor throws; the map
///           then holds exactly the entries of the insertions that returned.
/// Threads:  one thread writes a map. Readers may share it once writing has ended: const members write nothing.
///
/// @tparam V default constructible; a new entry's value is value-initialised, so plain structures start as all zero
template <typename V>
class IdRadixMap
{
public:
  /// An id and its value.
  using Entry = std::pair<const int, V>;

  /// No position.
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  template <bool IsConst>
  class BasicIterator;
  using iterator       = BasicIterator<false>;
  using const_iterator = BasicIterator<true>;

  IdRadixMap() = default;
  /// Copies are deep.
  IdRadixMap(const IdRadixMap& other) = default;
  /// Leaves the other map empty and usable.
  IdRadixMap(IdRadixMap&& other) noexcept
      : entries(std::move(other.entries)), pool_(std::move(other.pool_)), roots_(std::exchange(other.roots_, kNoRoots))
  {}
  /// When the copy throws, this map is unchanged.
  IdRadixMap& operator=(const IdRadixMap& other)
  {
    IdRadixMap copy(other);
    Swap(copy);
    return *this;
  }
  IdRadixMap& operator=(IdRadixMap&& other) noexcept
  {
    IdRadixMap taken(std::move(other));
    Swap(taken);
    return *this;
  }
  ~IdRadixMap() = default;

  /// @return the position of the id's entry; a new id is appended with a fresh value. References to values and
  ///         iterators are valid until the next insertion of a new id.
  std::size_t FindOrInsert(int id)
  {
    const std::size_t position = Find(id);
    return position != npos ? position : Insert(id);
  }

  /// @return the position of the id's entry, npos when the id is not held; creates nothing
  std::size_t Find(int id) const noexcept
  {
    const auto  bits = static_cast<std::uint32_t>(id);
    const Word* pool = pool_.data();
    Word        node = kEmpty;
    // Ids of one model mostly have one depth, so these branches are predicted; no table of depths is read.
    if (bits < 0x100u) {
      node = roots_[0];
    } else if (bits < 0x10000u) {
      node = Child(pool, roots_[1], bits >> 8);
    } else if (bits < 0x1000000u) {
      node = Child(pool, Child(pool, roots_[2], bits >> 16), bits >> 8 & 0xFFu);
    } else {
      node = Child(pool, Child(pool, Child(pool, roots_[3], bits >> 24), bits >> 16 & 0xFFu), bits >> 8 & 0xFFu);
    }
    static_assert(static_cast<std::size_t>(kEmpty) == npos, "an empty word reads as no position");
    return static_cast<std::size_t>(Child(pool, node, bits & 0xFFu));
  }

  /// All entries in the order of insertion; entry i is the one of position i. Values may be changed, ids not.
  std::span<Entry>       Entries() noexcept { return entries; }
  std::span<const Entry> Entries() const noexcept { return entries; }

  /// @param position 0 <= position < Entries().size()
  V& At(std::size_t position) noexcept
  {
    assert(position < entries.size());
    return entries[position].second;
  }
  const V& At(std::size_t position) const noexcept
  {
    assert(position < entries.size());
    return entries[position].second;
  }

  /// The entries by ascending id, ids read as unsigned.
  iterator       begin() noexcept { return iterator(*this); }
  iterator       end() noexcept { return iterator(); }
  const_iterator begin() const noexcept { return const_iterator(*this); }
  const_iterator end() const noexcept { return const_iterator(); }

  /// Makes room for this many entries, and in the index for as many ids as if they counted from 0 or 1: no ids can do
  /// with less.
  void Reserve(std::size_t numEntries)
  {
    entries.reserve(numEntries);
    // Leaves, the nodes above them, and up to six of partial leaves and of the depths that are only begun.
    pool_.reserve((numEntries / kNodeSize + numEntries / (kNodeSize * kNodeSize) + 6) * kNodeSize);
  }

  /// Drops all entries; memory is kept for the next ones.
  void Clear() noexcept
  {
    entries.clear();
    pool_.clear();
    roots_ = kNoRoots;
  }

private:
  /// A word of the pool: kEmpty, or at an inner level the position of the child node's first word, or at the leaf level
  /// the position of an entry. Nodes are 256 consecutive words and are named by the position of their first one.
  using Word = std::int64_t;

  static constexpr Word        kEmpty    = -1;
  static constexpr std::size_t kNodeSize = 256;
  static constexpr int         kNumDepth = 4;

  using Roots = std::array<Word, kNumDepth>;

  static constexpr Roots kNoRoots = {kEmpty, kEmpty, kEmpty, kEmpty};

  /// Bytes of the id, less one. Ids of different depths share no node.
  static int Depth(std::uint32_t bits) noexcept
  {
    return static_cast<int>(bits > 0xFFu) + static_cast<int>(bits > 0xFFFFu) + static_cast<int>(bits > 0xFFFFFFu);
  }

  static Word Child(const Word* pool, Word node, std::uint32_t index) noexcept
  {
    return node == kEmpty ? kEmpty : pool[static_cast<std::size_t>(node) + index];
  }

  /// Inserts an id that is not held. This is a second descent, out of line, so that the first one, with which most
  /// calls end, only reads and saves no registers. Growth comes before the word that names what has grown: if it
  /// throws, no word names a node or an entry that is not there.
  [[gnu::noinline]] std::size_t Insert(int id)
  {
    const auto bits  = static_cast<std::uint32_t>(id);
    const int  depth = Depth(bits);
    Word       node  = roots_[static_cast<std::size_t>(depth)];
    if (node == kEmpty) {
      node                                    = AppendNode();
      roots_[static_cast<std::size_t>(depth)] = node;
    }
    for (int shift = 8 * depth; shift > 0; shift -= 8) {
      const std::size_t slot  = static_cast<std::size_t>(node) + (bits >> shift & 0xFFu);
      Word              child = pool_[slot];
      if (child == kEmpty) {
        child       = AppendNode();
        pool_[slot] = child;
      }
      node = child;
    }
    const std::size_t position = entries.size();
    entries.emplace_back(std::piecewise_construct, std::forward_as_tuple(id), std::forward_as_tuple());
    pool_[static_cast<std::size_t>(node) + (bits & 0xFFu)] = static_cast<Word>(position);
    return position;
  }

  Word AppendNode()
  {
    const std::size_t node = pool_.size();
    pool_.resize(node + kNodeSize, kEmpty);
    return static_cast<Word>(node);
  }

  void Swap(IdRadixMap& other) noexcept
  {
    entries.swap(other.entries);
    pool_.swap(other.pool_);
    std::swap(roots_, other.roots_);
  }

  std::vector<Entry> entries;
  std::vector<Word>  pool_;
  Roots              roots_ = kNoRoots;
};

/// A traversal cursor: forward iterator over the entries by ascending unsigned id.
template <typename V>
template <bool IsConst>
class IdRadixMap<V>::BasicIterator
{
  using Map = std::conditional_t<IsConst, const IdRadixMap, IdRadixMap>;

public:
  using iterator_category = std::forward_iterator_tag;
  using value_type        = Entry;
  using difference_type   = std::ptrdiff_t;
  using pointer           = std::conditional_t<IsConst, const Entry*, Entry*>;
  using reference         = std::conditional_t<IsConst, const Entry&, Entry&>;

  /// The end.
  BasicIterator() = default;

  /// The position of the entry in Entries().
  std::size_t Position() const noexcept { return static_cast<std::size_t>(position_); }

  reference operator*() const noexcept { return map_->entries[Position()]; }
  pointer   operator->() const noexcept { return &**this; }

  BasicIterator& operator++() noexcept
  {
    FindNextEntry();
    return *this;
  }
  BasicIterator operator++(int) noexcept
  {
    BasicIterator before = *this;
    ++*this;
    return before;
  }

  /// Cursors of one map are equal when they stand on one entry.
  bool operator==(const BasicIterator& other) const noexcept { return position_ == other.position_; }
  bool operator!=(const BasicIterator& other) const noexcept { return position_ != other.position_; }

private:
  friend class IdRadixMap;

  /// Where the walk stands in one level.
  struct Level
  {
    Word        node  = kEmpty;
    std::size_t index = 0;  ///< the next word to look at, 0 to 256
  };

  /// Stands on the least id.
  explicit BasicIterator(Map& map) noexcept : map_(&map), depth_(-1)
  {
    StartNextTree();
    FindNextEntry();
  }

  /// Goes to the root of the next depth that holds ids; depth 4 is the end.
  void StartNextTree() noexcept
  {
    do {
      ++depth_;
    } while (depth_ < kNumDepth && map_->roots_[static_cast<std::size_t>(depth_)] == kEmpty);
    level_ = depth_;
    if (depth_ < kNumDepth)
      levels_[static_cast<std::size_t>(level_)] = {map_->roots_[static_cast<std::size_t>(depth_)], 0};
  }

  void FindNextEntry() noexcept
  {
    const Word* pool = map_->pool_.data();
    while (depth_ < kNumDepth) {
      Level&      level = levels_[static_cast<std::size_t>(level_)];
      const Word* words = pool + level.node;
      level.index       = FindNextWord(words, level.index);
      if (level.index == kNodeSize) {
        if (level_ == depth_) {
          StartNextTree();
        } else {
          ++level_;
        }
        continue;
      }
      const Word word = words[level.index++];
      if (level_ == 0) {
        position_ = word;
        return;
      }
      --level_;
      levels_[static_cast<std::size_t>(level_)] = {word, 0};
    }
    position_ = kEmpty;
  }

  /// @return the index of the first word from `index` on that is not empty, 256 when there is none
  static std::size_t FindNextWord(const Word* words, std::size_t index) noexcept
  {
    // In dense maps the next word is the one.
    if (index < kNodeSize && words[index] != kEmpty) return index;
    for (; index % kStride != 0; ++index) {
      if (words[index] != kEmpty) return index;
    }
    for (; index < kNodeSize; index += kStride) {
      // Positions are not negative, so the bits common to all words are all set only where every word is empty.
      Word common = kEmpty;
      for (std::size_t i = 0; i < kStride; ++i) common &= words[index + i];
      if (common == kEmpty) continue;
      while (words[index] == kEmpty) ++index;
      return index;
    }
    return kNodeSize;
  }

  static constexpr std::size_t kStride = 8;  ///< empty words are skipped by eights: most nodes of scattered ids are
                                             ///< all but empty

  Map*                         map_      = nullptr;
  int                          depth_    = kNumDepth;
  int                          level_    = 0;
  std::array<Level, kNumDepth> levels_   = {};
  Word                         position_ = kEmpty;
};
