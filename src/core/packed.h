// The packed array of the symmetric and triangular kinds: the upper triangle by rows.
//
// Position (a, b), a <= b < n, is at b + a(2n - 1 - a)/2; row a occupies n - a consecutive doubles and begins with its
// diagonal element. The largest order whose array stays below 2^28 doubles is 23169, so 32 bits hold every product.
#ifndef QUORVEL_CORE_PACKED_H
#define QUORVEL_CORE_PACKED_H

#include <cstdint>

namespace quorvel::detail {

using index_t = unsigned int;

/// Index of position (a, b), a <= b.
constexpr index_t packed_index(index_t a, index_t b, index_t n) noexcept { return b + a * (2 * n - 1 - a) / 2; }

/// Index of position (min, max) of i and j.
constexpr index_t packed_mirrored(index_t i, index_t j, index_t n) noexcept {
  return i <= j ? packed_index(i, j, n) : packed_index(j, i, n);
}

/// Index of the diagonal element of row a: where that row begins.
constexpr index_t packed_row(index_t a, index_t n) noexcept { return packed_index(a, a, n); }

/// Doubles of a packed array of order n.
constexpr std::uint64_t packed_count(std::uint64_t n) noexcept { return n * (n + 1) / 2; }

/// A count of doubles as a size: too large ones saturate, so that allocating them fails.
constexpr index_t saturated(std::uint64_t count) noexcept {
  return count > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<index_t>(count);
}

}  // namespace quorvel::detail

#endif
