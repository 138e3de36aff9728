#pragma once

/// @file
/// Numbers to rows: block indices and entity ids alike.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

class RowKeys;

/// Maps keys below 2^31 to rows below 2^31. Keys only arrive, none leaves.
///
/// Four forms, the cheapest that the keys allow: a run (consecutive keys in consecutive rows: no memory at all), marks
/// (ascending keys in consecutive rows: a quarter of a byte per number from the first key to the greatest), a direct
/// table (4 bytes per number up to the greatest key) and a hash table (16 to 32 bytes per key). It takes marks or the
/// table only while they need no more memory than hashing would, so a lone huge key costs little.
class KeyTable
{
public:
  static constexpr std::uint32_t kNone   = 0xffffffffu;
  static constexpr std::uint32_t kMaxKey = 0x7fffffffu;

  std::size_t GetCount() const noexcept { return count_; }
  /// @return 0 when empty
  std::uint32_t GetMaxKey() const noexcept { return maxKey_; }

  /// @return the key's row, kNone when it is unknown
  std::uint32_t Find(std::uint32_t key) const noexcept
  {
    if (form_ == Form::Run) {
      const std::uint32_t offset = key - firstKey_;  // wraps for smaller keys, which is past the run too
      return offset < count_ ? firstRow_ + offset : kNone;
    }
    if (form_ == Form::Direct) return key < direct_.size() ? direct_[key] : kNone;
    return form_ == Form::Marked ? FindMarked(key) : FindHashed(key);
  }

  /// Walks in ascending order. A run, marks and a direct table answer at once; a hash table sorts its keys, at 4 bytes
  /// each, for whoever walks on without inserting.
  /// @return the least key from first to last, kNone when there is none
  std::uint32_t FindNext(std::uint32_t first, std::uint32_t last) const;

  /// For tests.
  /// @return slots that the search for a key passes at most before it finds it
  std::size_t GetLongestProbe() const noexcept;

  /// @return bytes beyond those of the object itself
  std::size_t CountBytes() const noexcept
  {
    return (direct_.capacity() + sorted_.capacity()) * sizeof(std::uint32_t) + hashed_.capacity() * sizeof(Slot) +
           marks_.capacity() * sizeof(Marks);
  }

  /// Sizes a direct table for this many keys when one comes to be needed.
  void Expect(std::size_t count) noexcept;

  /// Makes the room that Insert() of the same pair needs. When it throws, and as long as Insert() does not follow, the
  /// table answers as before.
  void Prepare(std::uint32_t key, std::uint32_t row)
  {
    if (!HasRoom(key, row)) Grow(key, row);
  }

  /// Adds a prepared, unknown key.
  void Insert(std::uint32_t key, std::uint32_t row) noexcept
  {
    if (form_ == Form::Direct)
      direct_[key] = row;
    else if (form_ == Form::Marked)
      Mark(key, count_);
    else if (form_ == Form::Hashed)
      InsertHashed(key, row);
    else if (count_ == 0) {
      firstKey_ = key;
      firstRow_ = row;
    }
    if (key > maxKey_) maxKey_ = key;
    ++count_;
  }

  /// Adds the keys from firstKey on for the rows 0, 1, ... to an empty table.
  void InsertRun(std::uint32_t firstKey, std::uint32_t count) noexcept
  {
    firstKey_ = firstKey;
    firstRow_ = 0;
    count_    = count;
    maxKey_   = count == 0 ? 0 : firstKey + (count - 1);
  }

  /// @return all keys, ascending
  std::vector<std::uint32_t> GetKeys() const;
  /// Of a table whose rows are 0 to GetCount() - 1.
  RowKeys GetRowKeys() const;

private:
  enum class Form
  {
    Run,
    Marked,
    Direct,
    Hashed
  };

  /// Which of 32 numbers are keys.
  struct Marks
  {
    std::uint32_t bits   = 0;
    std::uint32_t before = 0;  ///< keys less than these; of no account without bits
  };

  struct Slot
  {
    std::uint32_t key = kNone;
    std::uint32_t row = kNone;
  };

  bool HasRoom(std::uint32_t key, std::uint32_t row) const noexcept
  {
    if (form_ == Form::Run) return count_ == 0 || (key == firstKey_ + count_ && row == firstRow_ + count_);
    if (form_ == Form::Direct) return key < direct_.size();
    if (form_ == Form::Marked) return IsBehindAll(key, row) && MarksOf(key) < marks_.size();
    return 2 * (std::size_t{count_} + 1) <= hashed_.size();
  }

  /// @return whether key and row both come behind all others, the row without a gap
  bool IsBehindAll(std::uint32_t key, std::uint32_t row) const noexcept
  {
    return key > maxKey_ && row == firstRow_ + count_;
  }

  /// @return which of the marks are the key's; wraps for keys before the first, which is past all marks too
  std::uint32_t MarksOf(std::uint32_t key) const noexcept { return key / kMarks - firstKey_ / kMarks; }

  std::uint32_t FindMarked(std::uint32_t key) const noexcept
  {
    const std::uint32_t at = MarksOf(key);
    if (at >= marks_.size()) return kNone;
    const Marks&        marks = marks_[at];
    const std::uint32_t bit   = std::uint32_t{1} << key % kMarks;
    return (marks.bits & bit) == 0 ? kNone : firstRow_ + marks.before + CountBits(marks.bits & (bit - 1));
  }

  /// @param before keys less than this one
  void Mark(std::uint32_t key, std::uint32_t before) noexcept
  {
    Marks& marks = marks_[MarksOf(key)];
    if (marks.bits == 0) marks.before = before;
    marks.bits |= std::uint32_t{1} << key % kMarks;
  }

  /// As std::popcount(), which calls a function where the processor is not known to have an instruction for it.
  static std::uint32_t CountBits(std::uint32_t bits) noexcept
  {
    bits -= bits >> 1 & 0x55555555u;
    bits = (bits & 0x33333333u) + (bits >> 2 & 0x33333333u);
    return ((bits + (bits >> 4)) & 0x0f0f0f0fu) * 0x01010101u >> 24;
  }

  void          Grow(std::uint32_t key, std::uint32_t row);
  std::uint32_t FindNextMarked(std::uint32_t first) const noexcept;
  std::uint32_t FindNextDirect(std::uint32_t first, std::uint32_t last) const noexcept;
  std::uint32_t FindNextHashed(std::uint32_t first) const;
  std::uint32_t FindHashed(std::uint32_t key) const noexcept;
  void          InsertHashed(std::uint32_t key, std::uint32_t row) noexcept;
  bool          MarksPay(std::uint32_t maxKey) const noexcept;
  bool          DirectPays(std::uint32_t maxKey) const noexcept;
  void          BecomeMarked(std::uint32_t maxKey);
  void          BecomeDirect(std::uint32_t maxKey);
  void          BecomeHashed();
  template <typename Visit>
  void ForEach(Visit visit) const;

  static constexpr std::uint32_t kMarks = 32;

  Form                       form_     = Form::Run;
  std::uint32_t              count_    = 0;
  std::uint32_t              firstKey_ = 0;  // of a run and of marks
  std::uint32_t              firstRow_ = 0;  // of a run and of marks
  std::uint32_t              maxKey_   = 0;
  std::uint32_t              expected_ = 0;
  std::uint64_t              seed_     = 0;  // of the hash table
  std::vector<Marks>         marks_;
  std::vector<std::uint32_t> direct_;  // row of each key, kNone where there is none
  std::vector<Slot>          hashed_;  // open addressing, a power of two of slots, at most half of them used
  // For walks of a hash table; not all keys after an insertion.
  mutable std::vector<std::uint32_t> sorted_;
  mutable std::size_t                walkAt_    = 0;  // where in sorted_ the last walk was
  mutable std::uint32_t              walkCount_ = 0;  // keys when a walk last asked
};

/// The keys of rows 0, 1, ...: what a KeyTable maps, the other way round. Consecutive keys cost no memory, others 4
/// bytes each.
class RowKeys
{
public:
  std::size_t GetCount() const noexcept { return count_; }
  bool        IsRun() const noexcept { return keys_.empty(); }
  std::size_t CountBytes() const noexcept { return keys_.capacity() * sizeof(std::uint32_t); }
  bool        Ascend() const noexcept { return std::is_sorted(keys_.begin(), keys_.end()); }
  /// @param row less than GetCount()
  std::uint32_t Get(std::size_t row) const noexcept
  {
    return IsRun() ? firstKey_ + static_cast<std::uint32_t>(row) : keys_[row];
  }

  /// Makes the room that Push() of the same key needs. When it throws, all keys are as before.
  void Prepare(std::uint32_t key)
  {
    if (IsRun() ? !Continues(key) : keys_.size() == keys_.capacity()) Grow();
  }

  /// Adds a prepared key.
  void Push(std::uint32_t key) noexcept
  {
    if (!IsRun())
      keys_.push_back(key);
    else if (!Continues(key))
      PushOffRun(key);
    else if (count_ == 0)
      firstKey_ = key;
    ++count_;
  }

  /// Adds a run of keys.
  void PushRun(std::uint32_t firstKey, std::uint32_t count);

private:
  bool Continues(std::uint32_t key) const noexcept { return count_ == 0 || key == firstKey_ + count_; }
  void Grow();
  void PushOffRun(std::uint32_t key) noexcept;

  std::uint32_t              count_    = 0;
  std::uint32_t              firstKey_ = 0;  // of a run
  std::vector<std::uint32_t> keys_;          // empty while the keys are a run
};
