// Transposition of a row-major array, tile by tile so that both sides stay in cache.
#ifndef QUORVEL_OPS_TILED_TRANSPOSE_H
#define QUORVEL_OPS_TILED_TRANSPOSE_H

#include <cstddef>

#include "core/packed.h"
#include "ops/kernels/kernels.h"

namespace quorvel::detail {

/// out (n x m) = the transpose of a (m x n); the arrays do not overlap.
inline void TransposeInto(const double* a, index_t m, index_t n, double* out) noexcept {
  constexpr index_t tile = 32;
  const auto transpose = kernels().transpose;
  for (index_t r = 0; r < m; r += tile) {
    const index_t rows = m - r < tile ? m - r : tile;
    for (index_t c = 0; c < n; c += tile) {
      const index_t cols = n - c < tile ? n - c : tile;
      transpose(out + std::size_t{c} * m + r, m, a + std::size_t{r} * n + c, n, rows, cols);
    }
  }
}

}  // namespace quorvel::detail

#endif
