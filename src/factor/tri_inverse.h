// The triangular inverse on a packed array.
//
// The packed arrays of an upper and of a lower matrix are each other's transposes, and so are their inverses: one
// kernel serves both. It is written for the lower reading, where row c of the array is column c of L:
//
//   X(r, r) = 1/L(r, r);   w = sum of L(r, j)*X(j, c), j = c .. r-1 increasing;   X(r, c) = -(w*X(r, r)), 0.0 where
//   w is 0.0
//
// The columns of X are independent: a panel of them is found at a time, and takes the place of L's columns, which no
// later panel needs.
#ifndef QUORVEL_FACTOR_TRI_INVERSE_H
#define QUORVEL_FACTOR_TRI_INVERSE_H

#include <cmath>
#include <new>

#include "core/storage.h"
#include "core/work_area.h"
#include "ops/kernels/kernels.h"
#include "quorvel/Matrix.h"

namespace quorvel::detail {

/// Inverses and solve operators take a pivot beyond this for a number, any other for a zero.
inline constexpr double smallest_pivot = 1e-200;

/// A pivot that an inverse divides by. NaN does not pass.
inline bool PivotPasses(double d) noexcept { return std::fabs(d) > smallest_pivot; }

/// Order 0 has no inverse: it ends as the array-length error of a work array of n - 1 doubles.
inline void RequireInvertibleOrder(index_t n) {
  if (n - 1 >= max_doubles) throw std::bad_array_new_length();
}

/// Reciprocals of the diagonal; row and column of a pivot that does not pass become 0.0. Returns their number.
inline Matrix::nsing_type InvertDiagonal(double* t, index_t n) noexcept {
  Matrix::nsing_type singular = 0;
  double* row = t;
  for (index_t i = 0; i < n; row += n - i, ++i) {
    if (PivotPasses(row[0])) {
      row[0] = 1.0 / row[0];
      continue;
    }
    ++singular;
    FillDoubles(row, 0.0, n - i);
    for (index_t k = 0; k < i; ++k) t[packed_index(k, i, n)] = 0.0;
  }
  return singular;
}

/// Scratch of a triangular inverse: one panel, on the stack up to order 128.
class PanelScratch {
 public:
  explicit PanelScratch(index_t n) : panel_(7 + std::uint64_t{n} * widest_panel) {}
  double* data() noexcept { return OnBoundary(panel_.data()); }

 private:
  WorkArea<7 + 128 * widest_panel> panel_;
};

/// The inverse of a packed triangle with inverted diagonal. each(first, count) is called for every panel of columns,
/// which is then in x; it may take the place of the triangle's columns.
template <class Each>
void InvertPanels(double* t, index_t n, double* x, Each each) noexcept {
  const index_t width = kernels().panel_columns;
  for (index_t first = 0; first < n; first += width) {
    const index_t count = n - first < width ? n - first : width;
    kernels().invert_columns(t, n, first, count, x);
    each(first, count);
  }
}

/// Replaces a packed triangle by its inverse; returns the number of pivots that were singular.
inline Matrix::nsing_type InvertTriangle(double* t, index_t n, PanelScratch& scratch) noexcept {
  const Matrix::nsing_type singular = InvertDiagonal(t, n);
  double* const x = scratch.data();
  InvertPanels(t, n, x, [&](index_t first, index_t count) noexcept { kernels().store_columns(t, n, first, count, x); });
  return singular;
}

}  // namespace quorvel::detail

#endif
