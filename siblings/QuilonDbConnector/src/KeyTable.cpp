#include "KeyTable.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace {

// A hint is a claim: up to 16 MiB of table are made for it in advance.
constexpr std::size_t kMaxExpected = std::size_t{1} << 22;

// Every bit of the key reaches the low bits that choose the slot, so that keys in steps of a power of two spread too.
std::uint32_t Mix(std::uint32_t key) noexcept
{
  key ^= key >> 16;
  key *= 0x7feb352du;
  key ^= key >> 15;
  key *= 0x846ca68bu;
  key ^= key >> 16;
  return key;
}

template <typename Slots>
std::size_t FindSlot(const Slots& slots, std::uint32_t key) noexcept
{
  const std::size_t mask = slots.size() - 1;
  std::size_t       at   = Mix(key) & mask;
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

void KeyTable::Grow(std::uint32_t key)
{
  const std::uint32_t maxKey = std::max(maxKey_, key);
  if (DirectPays(maxKey))
    BecomeDirect(maxKey);
  else
    BecomeHashed();
}

std::uint32_t KeyTable::FindHashed(std::uint32_t key) const noexcept { return hashed_[FindSlot(hashed_, key)].row; }

void KeyTable::InsertHashed(std::uint32_t key, std::uint32_t row) noexcept
{
  hashed_[FindSlot(hashed_, key)] = {key, row};
}

bool KeyTable::DirectPays(std::uint32_t maxKey) const noexcept
{
  return maxKey < 1024 + 8 * (std::uint64_t{count_} + 1);
}

void KeyTable::BecomeDirect(std::uint32_t maxKey)
{
  std::size_t size = std::max<std::size_t>(std::size_t{maxKey} + 1, std::size_t{expected_} + 1);
  if (form_ == Form::Direct) size = std::max(size, direct_.size() + direct_.size() / 2);
  std::vector<std::uint32_t> direct(size, kNone);
  ForEach([&direct](std::uint32_t key, std::uint32_t row) { direct[key] = row; });
  direct_ = std::move(direct);
  hashed_ = {};
  form_   = Form::Direct;
}

void KeyTable::BecomeHashed()
{
  std::vector<Slot> hashed(std::bit_ceil(std::max<std::size_t>(16, 2 * (std::size_t{count_} + 1))));
  ForEach([&hashed](std::uint32_t key, std::uint32_t row) { hashed[FindSlot(hashed, key)] = {key, row}; });
  hashed_ = std::move(hashed);
  direct_ = {};
  form_   = Form::Hashed;
}

template <typename Visit>
void KeyTable::ForEach(Visit visit) const
{
  if (form_ == Form::Run) {
    for (std::uint32_t i = 0; i < count_; ++i) visit(firstKey_ + i, firstRow_ + i);
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
