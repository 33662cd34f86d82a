// Sizes of dense matrices whose kind is known, without virtual calls; and results that are sized but not filled.
#ifndef QUORVEL_CORE_SIZING_H
#define QUORVEL_CORE_SIZING_H

#include <type_traits>

#include "core/fits.h"
#include "core/kinds.h"
#include "core/packed.h"
#include "core/storage.h"

namespace quorvel::detail {

/// Doubles of a matrix of kind K with that size.
template <class K>
constexpr std::uint64_t DoublesFor(index_t rows, index_t cols) noexcept {
  if constexpr (is_packed<K>) return packed_count(rows);
  return std::is_same_v<K, DiagonalMatrix> ? rows : std::uint64_t{rows} * cols;
}

/// What StoredCount gives: no matrix has more doubles than an index holds.
template <class K>
index_t StoredIn(const K& a) noexcept {
  return static_cast<index_t>(DoublesFor<K>(a.nrows(), a.ncols()));
}

template <class K>
void SetExtent(K& a, index_t rows, index_t cols) noexcept {
  if constexpr (std::is_same_v<K, RegularMatrix>) {
    Access::set_size(a, rows, cols);
  } else {
    Access::set_order(a, rows);
  }
}

/// Gives a matrix without an array one for that size, of at least one double.
template <class K>
void GiveArray(K& result, index_t rows, index_t cols, std::uint64_t count) {
  Access::set_array(result, NewDoubles(count), static_cast<index_t>(count));
  SetExtent(result, rows, cols);
}

/// SizeForResult for another size than the result has, or one that is refused.
template <class K>
void ResizeForResult(K& result, index_t rows, index_t cols) {
  constexpr bool square = !std::is_same_v<K, RegularMatrix>;
  if (Usable(result)) {
    const std::uint64_t count = DoublesFor<K>(rows, cols);
    if (result.capacity() == 0 && count != 0 && (!square || rows == cols)) {
      SetExtent(result, 0, 0);
      return GiveArray(result, rows, cols, count);
    }
  }
  result.SetSize(rows, cols, false);
}

/// SetSize(rows, cols, false) for a result whose every stored double is written next: a first array is not cleared.
template <class K>
__attribute__((always_inline)) inline void SizeForResult(K& result, index_t rows, index_t cols) {
  if (Usable(result) && result.nrows() == rows && result.ncols() == cols) return;
  ResizeForResult(result, rows, cols);
}

/// As Copy(source, false), for another matrix than the target.
template <class K>
void CopyContents(K& target, const K& source) {
  SizeForResult(target, source.nrows(), source.ncols());
  target.set_nsing(source.nsing());
  CopyDoubles(target.data(), source.data(), StoredIn(source));
}

}  // namespace quorvel::detail

#endif
