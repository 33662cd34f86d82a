// Transposition of a row-major array, tile by tile so that both sides stay in cache.
#ifndef QUORVEL_OPS_TILED_TRANSPOSE_H
#define QUORVEL_OPS_TILED_TRANSPOSE_H

#include <cstddef>

#include "core/packed.h"

namespace quorvel::detail {

/// out (n x m) = the transpose of a (m x n); the arrays do not overlap.
inline void TransposeInto(const double* a, index_t m, index_t n, double* out) noexcept {
  constexpr std::size_t tile = 16;
  const std::size_t rows = m;
  const std::size_t cols = n;
  for (std::size_t r0 = 0; r0 < rows; r0 += tile) {
    const std::size_t r1 = r0 + tile < rows ? r0 + tile : rows;
    for (std::size_t c0 = 0; c0 < cols; c0 += tile) {
      const std::size_t c1 = c0 + tile < cols ? c0 + tile : cols;
      for (std::size_t c = c0; c < c1; ++c) {
        for (std::size_t r = r0; r < r1; ++r) out[c * rows + r] = a[r * cols + c];
      }
    }
  }
}

}  // namespace quorvel::detail

#endif
