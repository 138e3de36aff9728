#pragma once

/// @file
/// The order of one fill, as a guess at that of the next.

#include "quilon_language.h"

#include <cstddef>
#include <vector>

/// Remembers where the values of a fill went. Result steps name the same ids in the same order, so that the log of one
/// fill knows the target of the next value, and of those to come, without a search. It only guesses: whoever asks it
/// proves every target by its id.
///
/// The first fill is not logged, as much is filled once. A log that is wrong about every second value is given up.
///
/// Memory:  a Target per value of the longest fill, from the second one on.
/// @tparam Target a small plain structure or number
template <typename Target>
class FillLog
{
public:
  /// @return the guess for the next value, null for none; valid until the next other call
  const Target* Guess() const noexcept { return Ahead(0); }

  /// @return the guess for the value that comes `count` values later, null for none
  const Target* Ahead(std::size_t count) const noexcept
  {
    return next_ + count < targets_.size() ? targets_.data() + (next_ + count) : nullptr;
  }

  /// The guess was right.
  void Accept() noexcept { ++next_; }

  /// @return whether values that were not guessed are to be recorded
  bool IsKept() const noexcept { return isKept_; }

  /// Makes room for one call of Record(); called before anything is changed.
  /// @throws std::bad_alloc
  void MakeRoom()
  {
    constexpr std::size_t kLeastRoom = 64;
    if (next_ == targets_.capacity()) targets_.reserve(2 * next_ + kLeastRoom);
  }

  /// Says where the value went that was guessed wrongly or not at all. MakeRoom() was called for it.
  void Record(const Target& target) noexcept
  {
    constexpr std::size_t kToleratedMisses = 64;
    if (next_ == targets_.size()) {
      targets_.push_back(target);
    } else {
      targets_[next_] = target;
      ++misses_;
    }
    ++next_;
    if (misses_ <= kToleratedMisses || 2 * misses_ <= next_) return;
    *this   = FillLog();
    isVain_ = true;
  }

  /// The next value is the first of a fill.
  void Restart() noexcept
  {
    isKept_ = !isVain_;
    next_   = 0;
    misses_ = 0;
  }

private:
  std::vector<Target> targets_;         // of the last fill; up to next_, of this one
  std::size_t         next_   = 0;      // values of this fill, while the log is kept
  std::size_t         misses_ = 0;      // of them, those that were guessed wrongly
  bool                isKept_ = false;  // set by the first Restart()
  bool                isVain_ = false;  // given up
};
