// A set of columns that gives out its first or its last member, however far apart they lie.
//
// A tree of words: bit j of the lowest level stands for column j, a bit of a higher level for a word of the level below
// that has bits. Four levels serve sixteen million columns, and every operation costs at most a step per level.
#ifndef QUORVEL_FACTOR_COLUMN_SET_H
#define QUORVEL_FACTOR_COLUMN_SET_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/packed.h"

namespace quorvel::detail {

class ColumnSet {
 public:
  /// For columns 0 .. n - 1.
  explicit ColumnSet(index_t n) {
    std::size_t size = 0;
    std::size_t words = n;
    do {
      words = words / 64 + 1;
      begins_[levels_++] = size;
      size += words;
    } while (words > 1);
    words_.resize(size);
  }

  bool empty() const noexcept { return words_.back() == 0; }

  void add(index_t j) noexcept {
    for (unsigned level = 0; level < levels_; ++level, j /= 64) {
      std::uint64_t& w = word(level, j / 64);
      const bool known_above = w != 0;
      w |= bit(j);
      if (known_above) return;
    }
  }

  /// Removes the first member of a set that is not empty.
  index_t take_first() noexcept {
    return take([](std::uint64_t w) { return static_cast<index_t>(__builtin_ctzll(w)); });
  }

  /// The last one.
  index_t take_last() noexcept {
    return take([](std::uint64_t w) { return static_cast<index_t>(63 - __builtin_clzll(w)); });
  }

 private:
  static std::uint64_t bit(index_t j) noexcept { return std::uint64_t{1} << (j % 64); }
  std::uint64_t& word(unsigned level, index_t at) noexcept { return words_[begins_[level] + at]; }

  template <class Pick>
  index_t take(Pick pick) noexcept {
    index_t j = 0;
    for (unsigned level = levels_; level-- > 0;) j = 64 * j + pick(word(level, j));
    remove(j);
    return j;
  }

  void remove(index_t j) noexcept {
    for (unsigned level = 0; level < levels_; ++level, j /= 64) {
      std::uint64_t& w = word(level, j / 64);
      w &= ~bit(j);
      if (w != 0) return;
    }
  }

  static constexpr unsigned most_levels = 6;  // six bits each: enough for 32
  std::size_t begins_[most_levels];
  unsigned levels_ = 0;
  std::vector<std::uint64_t> words_;  // the lowest level first; the highest is one word
};

}  // namespace quorvel::detail

#endif
