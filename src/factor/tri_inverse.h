// The triangular inverse on a packed array.
//
// The packed arrays of an upper and of a lower matrix are each other's transposes, and so are their inverses: one
// kernel serves both. It is written for the lower reading, where row c of the array is column c of L:
//
//   X(r, r) = 1/L(r, r);   w = sum of L(r, j)*X(j, c), j = c .. r-1 increasing;   X(r, c) = -(w*X(r, r)), 0.0 where
//   w is 0.0
//
// The columns of X are independent. Column c is built in place, as the growing sums of its elements: L's column c is
// needed for the first product only, and later columns of L are still untouched.
#ifndef QUORVEL_FACTOR_TRI_INVERSE_H
#define QUORVEL_FACTOR_TRI_INVERSE_H

#include <cmath>
#include <new>

#include "core/storage.h"
#include "factor/axpy.h"
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
  for (index_t i = 0; i < n; ++i) {
    double* const row = t + packed_row(i, n);
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

/// Replaces a packed triangle by its inverse; returns the number of pivots that were singular.
inline Matrix::nsing_type InvertTriangle(double* t, index_t n) noexcept {
  const Matrix::nsing_type singular = InvertDiagonal(t, n);
  const auto row = [=](index_t a) noexcept { return t + packed_row(a, n) - a; };
  const auto solved = [](double w, double reciprocal) noexcept { return w != 0.0 ? -(w * reciprocal) : 0.0; };
  for (index_t c = 0; c + 1 < n; ++c) {
    double* const x = row(c);
    for (index_t r = c + 1; r < n; ++r) x[r] *= x[c];
    index_t j = c + 1;
    for (; n - j >= 4; j += 4) {
      for (index_t k = j; k < j + 4; ++k) {
        const double* const l = row(k);
        x[k] = solved(x[k], l[k]);
        for (index_t r = k + 1; r < j + 4; ++r) x[r] += l[r] * x[k];
      }
      const index_t behind = j + 4;
      AddScaled(x + behind, n - behind, row(j) + behind, row(j + 1) + behind, row(j + 2) + behind, row(j + 3) + behind,
                x + j);
    }
    for (; j < n; ++j) {
      const double* const l = row(j);
      x[j] = solved(x[j], l[j]);
      for (index_t r = j + 1; r < n; ++r) x[r] += l[r] * x[j];
    }
  }
  return singular;
}

}  // namespace quorvel::detail

#endif
