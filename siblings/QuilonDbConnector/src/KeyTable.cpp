#include "KeyTable.h"

#include <algorithm>
#include <bit>
#include <random>
#include <utility>

namespace {

// A hint is a claim: up to 16 MiB of table are made for it in advance.
constexpr std::size_t kMaxExpected = std::size_t{1} << 22;

// Another one in each process: nobody can make a file of keys that all want one slot. Odd, so that no two keys become
// one.
std::uint64_t GetSeed()
{
  static const std::uint64_t seed = [] {
    std::random_device device;
    return (std::uint64_t{device()} << 32 | device()) | 1u;
  }();
  return seed;
}

// Every bit of the key reaches the low bits that choose the slot, so that keys in steps of a power of two spread too.
std::size_t Mix(std::uint32_t key, std::uint64_t seed) noexcept
{
  std::uint64_t mixed = (key + (seed >> 32)) * seed;
  mixed ^= mixed >> 32;
  mixed *= 0x9e3779b97f4a7c15u;
  return static_cast<std::size_t>(mixed >> 32);
}

template <typename Slots>
std::size_t FindSlot(const Slots& slots, std::uint32_t key, std::uint64_t seed) noexcept
{
  const std::size_t mask = slots.size() - 1;
  std::size_t       at   = Mix(key, seed) & mask;
  while (slots[at].key != key && slots[at].key != KeyTable::kNone) at = (at + 1) & mask;
  return at;
}

}  // namespace

void KeyTable::Expect(std::size_t count) noexcept
{
  expected_ = static_cast<std::uint32_t>(std::min(count, kMaxExpected));
}

std::vector<std::uint32_t> KeyTable::GetKeys() const
{
  std::vector<std::uint32_t> keys;
  keys.reserve(count_);
  ForEach([&keys](std::uint32_t key, std::uint32_t) { keys.push_back(key); });
  if (form_ == Form::Hashed) std::sort(keys.begin(), keys.end());
  return keys;
}

RowKeys KeyTable::GetRowKeys() const
{
  RowKeys keys;
  if (form_ == Form::Run) {
    keys.PushRun(firstKey_, count_);
    return keys;
  }
  std::vector<std::uint32_t> ofRows(count_);
  ForEach([&ofRows](std::uint32_t key, std::uint32_t row) { ofRows[row] = key; });
  for (const std::uint32_t key : ofRows) {
    keys.Prepare(key);
    keys.Push(key);
  }
  return keys;
}

std::uint32_t KeyTable::FindNext(std::uint32_t first, std::uint32_t last) const
{
  if (count_ == 0 || first > maxKey_) return kNone;
  last = std::min(last, maxKey_);
  if (first > last) return kNone;
  if (form_ == Form::Direct) return FindNextDirect(first, last);
  const std::uint32_t key = form_ == Form::Run      ? std::max(first, firstKey_)
                            : form_ == Form::Marked ? FindNextMarked(std::max(first, firstKey_))
                                                    : FindNextHashed(first);
  return key <= last ? key : kNone;
}

// There is one: the greatest key is not less.
std::uint32_t KeyTable::FindNextMarked(std::uint32_t first) const noexcept
{
  std::uint32_t at   = MarksOf(first);
  std::uint32_t bits = marks_[at].bits & ~std::uint32_t{0} << first % kMarks;
  while (bits == 0) bits = marks_[++at].bits;
  return (firstKey_ / kMarks + at) * kMarks + static_cast<std::uint32_t>(std::countr_zero(bits));
}

std::uint32_t KeyTable::FindNextDirect(std::uint32_t first, std::uint32_t last) const noexcept
{
  for (std::uint32_t key = first; key <= last; ++key)
    if (direct_[key] != kNone) return key;
  return kNone;
}

// Keys are sorted for the second question without an insertion in between: who inserts between two questions would have
// them sorted each time.
std::uint32_t KeyTable::FindNextHashed(std::uint32_t first) const
{
  if (sorted_.size() != count_) {
    if (walkCount_ != count_) {
      std::uint32_t least = kNone;
      ForEach([&](std::uint32_t key, std::uint32_t) { least = key >= first ? std::min(least, key) : least; });
      walkCount_ = count_;
      return least;
    }
    sorted_ = GetKeys();
    walkAt_ = 0;
  }
  // A walk goes on where it was.
  const bool isNext = walkAt_ + 1 < sorted_.size() && sorted_[walkAt_] < first && first <= sorted_[walkAt_ + 1];
  walkAt_           = isNext
                          ? walkAt_ + 1
                          : static_cast<std::size_t>(std::lower_bound(sorted_.begin(), sorted_.end(), first) - sorted_.begin());
  return walkAt_ < sorted_.size() ? sorted_[walkAt_] : kNone;
}

void KeyTable::Grow(std::uint32_t key, std::uint32_t row)
{
  const std::uint32_t maxKey = std::max(maxKey_, key);
  const bool          ascend = (form_ == Form::Run || form_ == Form::Marked) && IsBehindAll(key, row);
  if (ascend && MarksPay(maxKey))
    BecomeMarked(maxKey);
  else if (DirectPays(maxKey))
    BecomeDirect(maxKey);
  else
    BecomeHashed();
}

std::uint32_t KeyTable::FindHashed(std::uint32_t key) const noexcept
{
  return hashed_[FindSlot(hashed_, key, seed_)].row;
}

void KeyTable::InsertHashed(std::uint32_t key, std::uint32_t row) noexcept
{
  hashed_[FindSlot(hashed_, key, seed_)] = {key, row};
}

std::size_t KeyTable::GetLongestProbe() const noexcept
{
  if (form_ != Form::Hashed) return 0;
  const std::size_t mask    = hashed_.size() - 1;
  std::size_t       longest = 0;
  for (std::size_t at = 0; at < hashed_.size(); ++at)
    if (hashed_[at].key != kNone) longest = std::max(longest, (at - Mix(hashed_[at].key, seed_)) & mask);
  return longest;
}

// Up to 8 bytes per key.
bool KeyTable::MarksPay(std::uint32_t maxKey) const noexcept { return MarksOf(maxKey) < 32 + std::uint64_t{count_}; }

bool KeyTable::DirectPays(std::uint32_t maxKey) const noexcept
{
  return maxKey < 1024 + 8 * (std::uint64_t{count_} + 1);
}

void KeyTable::BecomeMarked(std::uint32_t maxKey)
{
  // A new one: a vector that grows would double its room.
  std::vector<Marks> marks(std::max<std::size_t>(std::size_t{MarksOf(maxKey)} + 1, marks_.size() + marks_.size() / 2));
  std::copy(marks_.begin(), marks_.end(), marks.begin());
  marks_ = std::move(marks);
  if (form_ == Form::Run)
    for (std::uint32_t i = 0; i < count_; ++i) Mark(firstKey_ + i, i);
  form_ = Form::Marked;
}

void KeyTable::BecomeDirect(std::uint32_t maxKey)
{
  std::size_t size = std::max<std::size_t>(std::size_t{maxKey} + 1, std::size_t{expected_} + 1);
  if (form_ == Form::Direct) size = std::max(size, direct_.size() + direct_.size() / 2);
  std::vector<std::uint32_t> direct(size, kNone);
  ForEach([&direct](std::uint32_t key, std::uint32_t row) { direct[key] = row; });
  direct_ = std::move(direct);
  marks_  = {};
  hashed_ = {};
  sorted_ = {};
  form_   = Form::Direct;
}

void KeyTable::BecomeHashed()
{
  std::vector<Slot>   hashed(std::bit_ceil(std::max<std::size_t>(16, 2 * (std::size_t{count_} + 1))));
  const std::uint64_t seed = GetSeed();
  ForEach([&](std::uint32_t key, std::uint32_t row) { hashed[FindSlot(hashed, key, seed)] = {key, row}; });
  seed_   = seed;
  hashed_ = std::move(hashed);
  marks_  = {};
  direct_ = {};
  form_   = Form::Hashed;
}

template <typename Visit>
void KeyTable::ForEach(Visit visit) const
{
  if (form_ == Form::Run) {
    for (std::uint32_t i = 0; i < count_; ++i) visit(firstKey_ + i, firstRow_ + i);
  } else if (form_ == Form::Marked) {
    std::uint32_t key = firstKey_;
    for (std::uint32_t i = 0; i < count_; ++i, ++key) visit(key = FindNextMarked(key), firstRow_ + i);
  } else if (form_ == Form::Direct) {
    for (std::size_t key = 0; key < direct_.size(); ++key)
      if (direct_[key] != kNone) visit(static_cast<std::uint32_t>(key), direct_[key]);
  } else {
    for (const Slot& slot : hashed_)
      if (slot.key != kNone) visit(slot.key, slot.row);
  }
}

void RowKeys::PushRun(std::uint32_t firstKey, std::uint32_t count)
{
  if (IsRun() && Continues(firstKey)) {
    if (count_ == 0) firstKey_ = firstKey;
    count_ += count;
    return;
  }
  for (std::uint32_t i = 0; i < count; ++i) {
    Prepare(firstKey + i);
    Push(firstKey + i);
  }
}

void RowKeys::Grow()
{
  const std::size_t count = std::size_t{count_} + 1;
  keys_.reserve(count + count / 2);
}

// Spells the run out, for which there is room.
void RowKeys::PushOffRun(std::uint32_t key) noexcept
{
  for (std::uint32_t i = 0; i < count_; ++i) keys_.push_back(firstKey_ + i);
  keys_.push_back(key);
}
