// Factors that are found from the last column to the first: what the finished columns contribute to the next one.
#ifndef QUORVEL_FACTOR_LEFT_LOOKING_H
#define QUORVEL_FACTOR_LEFT_LOOKING_H

#include "core/storage.h"
#include "core/work_area.h"
#include "factor/axpy.h"

namespace quorvel::detail {

// An upper matrix by columns: element (r, c), r <= c, at r + c(c + 1)/2. Factors that are built from the last column
// to the first, with sums over increasing k, have their independent lanes along the columns; they work on such a copy.

inline double* ColumnOf(double* columns, index_t c) noexcept { return columns + packed_count(c); }
inline const double* ColumnOf(const double* columns, index_t c) noexcept { return columns + packed_count(c); }

inline void PackedToColumns(const double* packed, index_t n, double* columns) noexcept {
  for (index_t r = 0; r < n; ++r) {
    for (index_t c = r; c < n; ++c) ColumnOf(columns, c)[r] = *packed++;
  }
}

inline void ColumnsToPacked(const double* columns, index_t n, double* packed) noexcept {
  for (index_t r = 0; r < n; ++r) {
    for (index_t c = r; c < n; ++c) *packed++ = ColumnOf(columns, c)[r];
  }
}

/// So few columns are done sooner by elements: registers would be loaded from what was just stored in parts.
inline constexpr index_t few_by_elements = 12;

/// s[r] = sum of U(r, k)*x[k - c - 1], k = c+1 .. n-1 increasing, for r = 0 .. c. The sums are formed by whole registers:
/// behind s, and behind the columns, there is room for one.
inline void RightSums(const double* columns, index_t n, index_t c, double* s, const double* x) noexcept {
  if (n <= few_by_elements) {
    FillDoubles(s, 0.0, c + 1);
    for (index_t k = c + 1; k < n; ++k) AddScaled(s, c + 1, ColumnOf(columns, k), x[k - c - 1]);
    return;
  }
  const kernel_offset next = static_cast<kernel_offset>(c) + 2;  // column k + 1 begins k + 1 doubles behind column k
  kernels().sum_lines(s, WholeRegisters(c + 1), x, n - 1 - c, columns + packed_count(c + 1), next, -1, false);
}

/// y = (y - s)/d.
inline void FinishColumn(double* y, const double* s, double d, index_t count) noexcept {
  if (count < few_by_elements) {
    for (index_t i = 0; i < count; ++i) y[i] = (y[i] - s[i]) / d;
    return;
  }
  kernels().finish_line(y, s, d, count);
}

/// The factor u of p (both packed), from the last column to the first. weight(k, e) turns element e of column k of the
/// factor into what it is multiplied by in the sums; finish(j, column, s) turns column j of p, rows 0 .. j, into that of
/// the factor, s being its sums over the columns behind it.
template <class Weight, class Finish>
void FactorFromLastColumn(const double* p, double* u, index_t n, Weight weight, Finish finish) {
  constexpr std::uint64_t room = 8;
  WorkArea<packed_count(small_order) + 2 * small_order + 2 * room> work(packed_count(n) + 2 * std::uint64_t{n} + 2 * room);
  double* const s = work.data();
  double* const x = s + n + room;
  double* const columns = x + n;
  PackedToColumns(p, n, columns);
  for (index_t j = n; j-- > 0;) {
    for (index_t k = j + 1; k < n; ++k) x[k - j - 1] = weight(k, ColumnOf(columns, k)[j]);
    RightSums(columns, n, j, s, x);
    finish(j, ColumnOf(columns, j), s);
  }
  ColumnsToPacked(columns, n, u);
}

}  // namespace quorvel::detail

#endif
