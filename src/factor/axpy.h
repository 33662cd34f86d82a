// Multiples of rows added to a row: the inner loops of the factorisations.
//
// The lanes are independent sums; each takes its products one after the other in the order of the rows, so handling
// several rows in one sweep changes no bit. No operand overlaps the target.
#ifndef QUORVEL_FACTOR_AXPY_H
#define QUORVEL_FACTOR_AXPY_H

#include "core/packed.h"
#include "ops/kernels/kernels.h"

namespace quorvel::detail {

/// Fewer lanes than this are not worth the call of a kernel.
inline constexpr index_t kernel_lanes = 16;

/// s += x*a
inline void AddScaled(double* __restrict__ s, index_t count, const double* a, double x) noexcept {
  if (count >= kernel_lanes) return kernels().add_multiple(s, x, a, count);
  for (index_t i = 0; i < count; ++i) s[i] += a[i] * x;
}

/// s -= x*a (adding the negative product is the same).
inline void SubtractScaled(double* __restrict__ s, index_t count, const double* a, double x) noexcept {
  AddScaled(s, count, a, -x);
}

/// s = (((s + x[0]*a0) + x[1]*a1) + x[2]*a2) + x[3]*a3
inline void AddScaled(double* __restrict__ s, index_t count, const double* a0, const double* a1, const double* a2,
                      const double* a3, const double* x) noexcept {
  if (count >= kernel_lanes) return kernels().add_four_multiples(s, x, a0, a1, a2, a3, count);
  const double x0 = x[0], x1 = x[1], x2 = x[2], x3 = x[3];
  for (index_t i = 0; i < count; ++i) s[i] = (((s[i] + a0[i] * x0) + a1[i] * x1) + a2[i] * x2) + a3[i] * x3;
}

/// s += x[k]*row(k) for k = begin .. end - 1 in this order; row(k) points at the lanes of row k.
template <class Row>
void AddScaledRows(double* s, index_t count, index_t begin, index_t end, const double* x, Row row) noexcept {
  index_t k = begin;
  for (; end - k >= 4; k += 4) AddScaled(s, count, row(k), row(k + 1), row(k + 2), row(k + 3), x + (k - begin));
  for (; k < end; ++k) AddScaled(s, count, row(k), x[k - begin]);
}

}  // namespace quorvel::detail

#endif
