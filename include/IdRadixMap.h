#pragma once

/// @file
/// The store in which values are kept by 32-bit entity id.

#include "quilon_language.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "quilon_prefetch.h"

/// Values V keyed by 32-bit ids (node or element numbers), made for dense, mostly small ids.
///
/// Values lie in one dense vector in the order in which their ids were first inserted; an entry's position never
/// changes, and entries are never removed one by one. A byte-wise radix index over the id finds the position in at most
/// four reads; ids below 256 need a single one.
///
/// Ids:      any int. Order is that of the id read as unsigned 32-bit, so a negative id follows every other one.
/// Memory:   the entries, and 2 KiB per index node. A node serves 256 consecutive ids: dense ids cost 8 bytes each
///           beside their entry, but 31-bit ids drawn at random cost two kilobytes each, and an insertion the time to
///           fill them. Renumber those first. A table that shortens the descent adds at most 256 bytes per node and
///           512 KiB in all.
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
  IdRadixMap(const IdRadixMap& other) : entries(other.entries), roots_(other.roots_)
  {
    pool_.reserve(other.numNodes_);
    for (; numNodes_ < other.numNodes_; ++numNodes_) pool_.push_back(std::make_unique<Node>(*other.pool_[numNodes_]));
    GrowLeafTable(other.leaves_.size());
  }
  /// Leaves the other map empty and usable.
  IdRadixMap(IdRadixMap&& other) noexcept { Swap(other); }
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
    const auto        bits = static_cast<std::uint32_t>(id);
    const std::size_t key  = LeafKey(bits);
    const Word* const leaf = key < leaves_.size() ? leaves_[key] : FindLeaf(bits);
    static_assert(static_cast<std::size_t>(kEmpty) == npos, "an empty word reads as no position");
    return leaf == nullptr ? npos : static_cast<std::size_t>(leaf[bits & 0xFFu]);
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

  /// Asks for the memory of an entry that will be used soon; see quilon::Prefetch().
  /// @param position of an entry
  [[gnu::always_inline]] void PrefetchAt(std::size_t position) const noexcept
  {
    quilon::Prefetch(entries.data() + position, sizeof(Entry));
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
    const std::size_t numLeaves = numEntries / kNodeSize + 2;  // of partial ones, too
    // Leaves, the nodes above them, and those of the depths that are only begun.
    const std::size_t numNodes = numLeaves + numEntries / (kNodeSize * kNodeSize) + 4;
    pool_.reserve(numNodes);
    while (pool_.size() < numNodes) pool_.push_back(MakeNode());
    leaves_.reserve(std::min(2 * numLeaves, kMaxLeafKeys));
  }

  /// Drops all entries; memory is kept for the next ones.
  void Clear() noexcept
  {
    entries.clear();
    numNodes_ = 0;
    leaves_.clear();
    roots_ = kNoRoots;
  }

private:
  /// A word of the pool: kEmpty, or at an inner level the position of the child node's first word, or at the leaf level
  /// the position of an entry. Nodes are 256 consecutive words and are named by the position of their first one.
  using Word = std::int64_t;

  static constexpr Word        kEmpty    = -1;
  static constexpr std::size_t kNodeSize = 256;
  static constexpr int         kNumDepth = 4;

  using Node  = std::array<Word, kNodeSize>;
  using Roots = std::array<Word, kNumDepth>;

  static constexpr Roots kNoRoots = {kEmpty, kEmpty, kEmpty, kEmpty};

  /// The leaf table covers ids below 2^24 and, so that a few great ids do not make it larger than the nodes are, no
  /// more than this many leaves per node.
  static constexpr std::size_t kMaxLeafKeys     = std::size_t{1} << 16;
  static constexpr std::size_t kLeafKeysPerNode = 16;

  /// Bytes of the id, less one. Ids of different depths share no node.
  static int Depth(std::uint32_t bits) noexcept
  {
    return static_cast<int>(bits > 0xFFu) + static_cast<int>(bits > 0xFFFFu) + static_cast<int>(bits > 0xFFFFFFu);
  }

  /// Ids of one leaf have one key, ids of different leaves different ones.
  static std::size_t LeafKey(std::uint32_t bits) noexcept { return bits >> 8; }

  /// @param node its name, not kEmpty
  Word*       WordsOf(Word node) noexcept { return pool_[static_cast<std::size_t>(node) / kNodeSize]->data(); }
  const Word* WordsOf(Word node) const noexcept { return pool_[static_cast<std::size_t>(node) / kNodeSize]->data(); }

  Word Child(Word node, std::uint32_t index) const noexcept { return node == kEmpty ? kEmpty : WordsOf(node)[index]; }

  /// The descent from the root, out of line as ids mostly are in the table.
  /// @return the words of the id's leaf, null when there is none
  [[gnu::noinline]] const Word* FindLeaf(std::uint32_t bits) const noexcept
  {
    const int depth = Depth(bits);
    Word      node  = roots_[static_cast<std::size_t>(depth)];
    for (int shift = 8 * depth; shift > 0; shift -= 8) node = Child(node, bits >> shift & 0xFFu);
    return node == kEmpty ? nullptr : WordsOf(node);
  }

  /// The descent that appends the nodes it lacks. Growth comes before the word that names what has grown: if it throws,
  /// no word names a node that is not there.
  Word* FindOrMakeLeaf(std::uint32_t bits)
  {
    const int depth = Depth(bits);
    Word      node  = roots_[static_cast<std::size_t>(depth)];
    if (node == kEmpty) {
      node                                    = AppendNode();
      roots_[static_cast<std::size_t>(depth)] = node;
    }
    for (int shift = 8 * depth; shift > 0; shift -= 8) {
      Word* const words = WordsOf(node);  // nodes stay where they are when others are appended
      Word&       child = words[bits >> shift & 0xFFu];
      if (child == kEmpty) child = AppendNode();
      node = child;
    }
    Word* const       leaf = WordsOf(node);
    const std::size_t key  = LeafKey(bits);
    if (key >= leaves_.size() && key < std::min(kMaxLeafKeys, kLeafKeysPerNode * numNodes_)) {
      GrowLeafTable(std::max(key + 1, std::min(2 * leaves_.size(), kMaxLeafKeys)));
    } else if (key < leaves_.size()) {
      leaves_[key] = leaf;
    }
    return leaf;
  }

  /// Lets the leaf table cover this many keys, at least as many as before.
  void GrowLeafTable(std::size_t numKeys)
  {
    leaves_.reserve(numKeys);
    for (std::size_t key = leaves_.size(); key < numKeys; ++key) {
      leaves_.push_back(const_cast<Word*>(FindLeaf(static_cast<std::uint32_t>(key << 8))));
    }
  }

  /// Inserts an id that is not held. Out of line, so that FindOrInsert(), which mostly meets ids that are held, only
  /// reads and saves no registers.
  [[gnu::noinline]] std::size_t Insert(int id)
  {
    const auto        bits     = static_cast<std::uint32_t>(id);
    const std::size_t key      = LeafKey(bits);
    Word* const       known    = key < leaves_.size() ? leaves_[key] : nullptr;
    Word* const       leaf     = known != nullptr ? known : FindOrMakeLeaf(bits);
    const std::size_t position = entries.size();
    entries.emplace_back(std::piecewise_construct, std::forward_as_tuple(id), std::forward_as_tuple());
    leaf[bits & 0xFFu] = static_cast<Word>(position);
    return position;
  }

  static std::unique_ptr<Node> MakeNode() { return std::make_unique_for_overwrite<Node>(); }

  Word AppendNode()
  {
    if (numNodes_ == pool_.size()) pool_.push_back(MakeNode());
    pool_[numNodes_]->fill(kEmpty);
    return static_cast<Word>(numNodes_++ * kNodeSize);
  }

  void Swap(IdRadixMap& other) noexcept
  {
    entries.swap(other.entries);
    pool_.swap(other.pool_);
    std::swap(numNodes_, other.numNodes_);
    std::swap(roots_, other.roots_);
    leaves_.swap(other.leaves_);
  }

  std::vector<Entry> entries;

  /// The node pool, a piece of memory per node: it grows without copying, which with ids drawn at random, that need a
  /// node each, took three quarters of all time. Those from numNodes_ on are spare.
  std::vector<std::unique_ptr<Node>> pool_;
  std::size_t                        numNodes_ = 0;
  Roots                              roots_    = kNoRoots;

  /// The words of leaves by their key, null where there is no leaf: one read in place of the descent, which made up
  /// half the time of a lookup. Ids beyond the table go by the descent.
  std::vector<Word*> leaves_;
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

  /// Asks for the memory of an entry that the walk will come to soon, of an entry of the same leaf. Entries that lie in
  /// another order than their ids come from memory one by one: who does more with an entry than add it up asks ahead.
  [[gnu::always_inline]] void PrefetchAhead() const noexcept
  {
    constexpr std::size_t kAhead = 12;  // words of the leaf
    const std::size_t     ahead  = index_ + kAhead;
    if (ahead < kNodeSize && leaf_[ahead] != kEmpty) map_->PrefetchAt(static_cast<std::size_t>(leaf_[ahead]));
  }

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

  /// Where the walk stands in an inner level.
  struct Level
  {
    const Word* words = nullptr;
    std::size_t index = 0;  ///< the next word to look at, 0 to 256
  };

  /// Stands on the least id.
  explicit BasicIterator(Map& map) noexcept : map_(&map), depth_(-1) { FindNextLeaf(); }

  /// Leaf by leaf: the words of a leaf are walked without a look at the levels above.
  void FindNextEntry() noexcept
  {
    index_ = FindNextWord(leaf_, index_ + 1);
    if (index_ == kNodeSize) return FindNextLeaf();
    position_ = leaf_[index_];
  }

  /// Stands on the first entry of the next leaf, or at the end.
  void FindNextLeaf() noexcept
  {
    do {
      if (level_ > depth_) {
        do {
          if (++depth_ == kNumDepth) {
            position_ = kEmpty;
            return;
          }
        } while (map_->roots_[static_cast<std::size_t>(depth_)] == kEmpty);
        Enter(depth_, map_->roots_[static_cast<std::size_t>(depth_)]);
      } else {
        Level& above = levels_[static_cast<std::size_t>(level_)];
        above.index  = FindNextWord(above.words, above.index);
        if (above.index == kNodeSize) {
          ++level_;
        } else {
          Enter(level_ - 1, above.words[above.index++]);
        }
      }
    } while (level_ > 0 || !StandOnFirst());
    level_ = 1;
  }

  void Enter(int level, Word node) noexcept
  {
    level_                  = level;
    const Word* const words = map_->WordsOf(node);
    if (level > 0) {
      levels_[static_cast<std::size_t>(level)] = {words, 0};
    } else {
      leaf_ = words;
    }
  }

  /// @return whether the leaf has an entry: one whose first insertion failed has none
  bool StandOnFirst() noexcept
  {
    index_ = FindNextWord(leaf_, 0);
    if (index_ == kNodeSize) {
      level_ = 1;
      return false;
    }
    position_ = leaf_[index_];
    return true;
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
  int                          level_    = 0;  ///< that FindNextLeaf() goes on in, above depth_ when the tree is walked
  std::array<Level, kNumDepth> levels_   = {};  ///< inner ones, from 1
  const Word*                  leaf_     = nullptr;
  std::size_t                  index_    = 0;  ///< in the leaf
  Word                         position_ = kEmpty;
};
