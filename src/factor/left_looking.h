// Left-looking sums on triangular arrays: what the finished columns contribute to the next one.
#ifndef QUORVEL_FACTOR_LEFT_LOOKING_H
#define QUORVEL_FACTOR_LEFT_LOOKING_H

#include "core/storage.h"
#include "core/work_area.h"
#include "factor/axpy.h"

namespace quorvel::detail {

/// For a lower matrix (column k is row k of the packed array): s[i - j] = sum of L(i, k)*L(j, k), k = 0 .. j-1
/// increasing, for i = j .. n-1. `x` holds j doubles of scratch.
inline void LeftSums(const double* l, index_t n, index_t j, double* s, double* x) noexcept {
  for (index_t k = 0; k < j; ++k) x[k] = l[packed_index(k, j, n)];
  FillDoubles(s, 0.0, n - j);
  AddScaledRows(s, n - j, 0, j, x, [=](index_t k) noexcept { return l + packed_index(k, j, n); });
}

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

/// s[r] = sum of U(r, k)*x[k - c - 1], k = c+1 .. n-1 increasing, for r = 0 .. c.
inline void RightSums(const double* columns, index_t n, index_t c, double* s, const double* x) noexcept {
  FillDoubles(s, 0.0, c + 1);
  AddScaledRows(s, c + 1, c + 1, n, x, [=](index_t k) noexcept { return ColumnOf(columns, k); });
}

/// The factor u of p (both packed), from the last column to the first. weight(k, e) turns element e of column k of the
/// factor into what it is multiplied by in the sums; finish(j, column, s) turns column j of p, rows 0 .. j, into that of
/// the factor, s being its sums over the columns behind it.
template <class Weight, class Finish>
void FactorFromLastColumn(const double* p, double* u, index_t n, Weight weight, Finish finish) {
  WorkArea<packed_count(small_order) + 2 * small_order> work(packed_count(n) + 2 * std::uint64_t{n});
  double* const s = work.data();
  double* const x = s + n;
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
