// A square dense matrix with its implicit and mirrored elements, as a general one.
#ifndef QUORVEL_OPS_SPELL_OUT_H
#define QUORVEL_OPS_SPELL_OUT_H

#include <cstddef>

#include "core/sizing.h"
#include "ops/views.h"
#include "quorvel/DiagonalMatrix.h"

namespace quorvel::detail {

/// Writes the n x n elements of `a` by rows.
template <class K>
void SpellOut(double* out, const K& a) noexcept {
  const index_t n = a.ndim();
  if constexpr (is_packed<K>) {
    kernels().unpack(out, static_cast<kernel_offset>(n), FactorOf(a), 0, 0, n, n);
  } else {
    ClearDoubles(out, std::uint64_t{n} * n);
    for (index_t i = 0; i < n; ++i) out[(std::size_t{n} + 1) * i] = a.data()[i];
  }
}

}  // namespace quorvel::detail

#endif
