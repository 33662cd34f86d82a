// Triangularisation by Householder reflections, column after column, of an m x n array, m >= n: dense ones go through
// the strips of factor/strips.h, sparse ones through the lanes below.
//
// Column j with a non-zero part below the diagonal is reflected onto +|x| e1 by I - beta*v*v', v(j) = 1:
//
//   sigma = sum of a(i, j)^2, i > j;  x = a(j, j);  mu = sqrt(sigma + x*x)
//   v0 = x - mu for x <= 0, else -sigma/(x + mu), which does not cancel
//   beta = 2*v0*v0/(sigma + v0*v0);  v(i) = a(i, j)/v0
//
// Every sum runs over increasing rows from its first term, and each column c has its own: s = a(j, c) + sum of
// a(i, c)*v(i) over the non-zero v(i); a(j, c) -= s*beta, a(i, c) -= (s*beta)*v(i). A column with s = 0.0 is not
// touched, so that its infinities and signed zeros survive. Afterwards a(j, j) becomes 0.0 when its square is less
// than 1e-22 times the squared length that the column had in the beginning.
//
// Columns before j hold nothing but what is zeroed at the end, so reflections skip them.
//
// Golub, Van Loan, Matrix Computations, 5.1.3 and 5.2.1.
#ifndef QUORVEL_FACTOR_REFLECTIONS_H
#define QUORVEL_FACTOR_REFLECTIONS_H

#include <cmath>
#include <cstddef>

#include "core/storage.h"
#include "factor/axpy.h"

namespace quorvel::detail {

/// Scratch of a reflection.
struct ReflectionWork {
  double* lengths;  // n
  double* sums;     // as many as lanes
  double* vector;   // m: v(i) at i, its non-zero elements only
  index_t* rows;    // m: where v is non-zero, increasing
};

/// The reflection of one column: the non-zero elements below the diagonal are vector[rows[0 .. count - 1]]. There may be
/// none left although a reflection was made: where the square of v0 overflows, which makes beta NaN, and so the pivot.
struct Reflection {
  bool made;
  double beta;
  index_t count;
};

/// Finds the reflection with pivot row j of one column, whose elements lie `stride` doubles apart.
inline Reflection ReflectionOfColumn(const double* column, std::size_t stride, index_t m, index_t j,
                                     ReflectionWork work) noexcept {
  double sigma = 0.0;
  for (index_t i = j + 1; i < m; ++i) {
    const double e = column[i * stride];
    sigma += e * e;
  }
  if (sigma == 0.0) return {false, 0.0, 0};
  const double x = column[j * stride];
  const double mu = std::sqrt(sigma + x * x);
  const double v0 = x <= 0.0 ? x - mu : -sigma / (x + mu);
  const double beta = 2.0 * v0 * v0 / (sigma + v0 * v0);
  index_t count = 0;
  for (index_t i = j + 1; i < m; ++i) {
    const double v = column[i * stride] / v0;
    if (v == 0.0) continue;
    work.vector[i] = v;
    work.rows[count++] = i;
  }
  return {true, beta, count};
}

/// Applies the reflection with pivot row j to `count` columns side by side, whose rows are `stride` doubles apart.
inline void ReflectLanes(double* lanes, std::size_t stride, index_t count, index_t j, Reflection h,
                         ReflectionWork work) noexcept {
  double* const s = work.sums;
  const auto row = [=](index_t i) noexcept { return lanes + i * stride; };
  CopyDoubles(s, row(j), count);
  for (index_t k = 0; k < h.count; ++k) AddScaled(s, count, row(work.rows[k]), work.vector[work.rows[k]]);
  bool all = true;
  for (index_t c = 0; c < count; ++c) {
    all = all && s[c] != 0.0;
    if (s[c] == 0.0) continue;
    s[c] *= h.beta;
    row(j)[c] -= s[c];
  }
  // Lanes whose sum was 0.0 are left out. (One that beta made 0.0 would subtract nothing anyway.)
  if (all) {
    for (index_t k = 0; k < h.count; ++k) SubtractScaled(row(work.rows[k]), count, s, work.vector[work.rows[k]]);
    return;
  }
  for (index_t k = 0; k < h.count; ++k) {
    double* const r = row(work.rows[k]);
    const double v = work.vector[work.rows[k]];
    for (index_t c = 0; c < count; ++c) {
      if (s[c] != 0.0) r[c] -= s[c] * v;
    }
  }
}

/// A diagonal element that is small next to the squared length which its column had before the reflections becomes 0.0.
inline void ClearDependent(double& d, double length) noexcept {
  if (d * d < length * 1e-22) d = 0.0;
}

}  // namespace quorvel::detail

#endif
