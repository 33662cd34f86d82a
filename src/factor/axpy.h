// Multiples of rows added to a row: the inner loops of the factorisations.
//
// The lanes are independent sums, each of which takes its products one after the other in the order of the rows. No
// operand overlaps the target.
#ifndef QUORVEL_FACTOR_AXPY_H
#define QUORVEL_FACTOR_AXPY_H

#include "core/packed.h"
#include "ops/kernels/kernels.h"

namespace quorvel::detail {

/// Fewer lanes than this are not worth the call of a kernel.
inline constexpr index_t kernel_lanes = 16;

/// The lanes of as many whole registers as `count` lanes lie in.
inline index_t WholeRegisters(index_t count) noexcept {
  const index_t lanes = kernels().lanes;
  return (count + lanes - 1) / lanes * lanes;
}

/// s += x*a
inline void AddScaled(double* __restrict__ s, index_t count, const double* a, double x) noexcept {
  if (count >= kernel_lanes) return kernels().add_multiple(s, x, a, count);
  for (index_t i = 0; i < count; ++i) s[i] += a[i] * x;
}

/// s -= x*a (adding the negative product is the same).
inline void SubtractScaled(double* __restrict__ s, index_t count, const double* a, double x) noexcept {
  AddScaled(s, count, a, -x);
}

}  // namespace quorvel::detail

#endif
