// The updates of a U-D filter: Bierman's measurement update and Thornton's time update.
#include <cstddef>

#include "core/work_area.h"
#include "dense/rules.h"
#include "factor/axpy.h"
#include "factor/operands.h"
#include "factor/tri_inverse.h"
#include "factor/ud_factor.h"
#include "quorvel/ud.h"

namespace quorvel::detail {
namespace {

bool IsVector(const RegularMatrix& h, index_t n) noexcept {
  return (h.nrows() == n && h.ncols() == 1) || (h.nrows() == 1 && h.ncols() == n);
}

/// f = U'*h, row by row of U.
void TransposedTimes(const double* u, index_t n, const double* h, double* f) noexcept {
  CopyDoubles(f, h, n);
  for (index_t i = 0; i + 1 < n; ++i) AddScaled(f + i + 1, n - i - 1, u + packed_row(i, n) + 1, h[i]);
}

/// Bierman's update; k receives the gain. Two passes: the partial innovation variances of all columns, then U and the
/// gain row by row, which is the packed order.
double MeasurementUpdate(double* u, double* d, index_t n, const double* h, double r, double* k) {
  WorkArea<3 * small_order> work(3 * std::uint64_t{n});
  double* const f = work.data();
  double* const v = f + n;
  double* const lambda = v + n;
  TransposedTimes(u, n, h, f);
  double alpha = r;
  for (index_t j = 0; j < n; ++j) {
    v[j] = d[j] * f[j];
    const double before = alpha;
    alpha += v[j] * f[j];
    lambda[j] = PivotPasses(before) ? -f[j] / before : 0.0;
    if (PivotPasses(alpha)) d[j] *= before / alpha;
  }
  const bool observed = PivotPasses(alpha);
  for (index_t i = 0; i < n; ++i) {
    double* const row = u + packed_row(i, n) - i;
    double b = v[i];
    for (index_t j = i + 1; j < n; ++j) {
      const double e = row[j];
      row[j] = e + lambda[j] * b;
      b += v[j] * e;
    }
    k[i] = observed ? b / alpha : 0.0;
  }
  return alpha;
}

/// Rows k of w take the columns k of `a`: the lanes are the states.
template <class K>
void StackColumns(double* w, index_t n, const K& a) noexcept {
  const Rule<K> e(a);
  for (index_t k = 0; k < e.cols(); ++k) {
    for (index_t i = 0; i < n; ++i) w[std::size_t{k} * n + i] = e.at(i, k);
  }
}

/// w = (Phi*U)': its column k is column k of Phi and multiples of the columns before it, so the last comes first.
void TimesUnitUpper(double* w, index_t n, const double* u) noexcept {
  for (index_t k = n; k-- > 0;) {
    double* const row = w + std::size_t{k} * n;
    for (index_t l = 0; l < k; ++l) AddScaled(row, n, w + std::size_t{l} * n, u[packed_index(l, k, n)]);
  }
}

/// Modified weighted Gram-Schmidt: the rows of [Phi*U, G] are made orthogonal in the weights [d, q], last row first.
/// w: (n + q) x n, weights: n + q, s and x: n and n + q doubles of scratch.
void Orthogonalise(double* u, double* d, index_t n, double* w, index_t columns, const double* weights, double* s,
                   double* x) noexcept {
  for (index_t j = n; j-- > 0;) {
    const auto row = [=](index_t k) noexcept { return w + std::size_t{k} * n; };
    double dj = 0.0;
    for (index_t k = 0; k < columns; ++k) {
      x[k] = weights[k] * row(k)[j];
      dj += x[k] * row(k)[j];
    }
    FillDoubles(s, 0.0, j);
    if (PivotPasses(dj)) {
      d[j] = dj;
      AddScaledRows(s, j, 0, columns, x, row);
      for (index_t i = 0; i < j; ++i) s[i] /= dj;
      for (index_t k = 0; k < columns; ++k) SubtractScaled(row(k), j, s, row(k)[j]);
    } else {
      d[j] = 0.0;
    }
    for (index_t i = 0; i < j; ++i) u[packed_index(i, j, n)] = s[i];
    u[packed_row(j, n)] = 1.0;
  }
}

/// P = Phi*P*Phi' + G*Q*G' on the factors of P.
template <class K>
void TimeUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& Phi, const K& G,
                const DiagonalMatrix& Q) {
  const index_t n = U.ndim();
  const std::size_t columns = std::size_t{n} + Q.ndim();
  WorkArea<2 * small_order * small_order + 5 * small_order> work(std::uint64_t{columns} * n + 2 * columns + n);
  double* const s = work.data();
  double* const x = s + n;
  double* const weights = x + columns;
  double* const w = weights + columns;
  StackColumns(w, n, Phi);
  TimesUnitUpper(w, n, U.data());
  StackColumns(w + std::size_t{n} * n, n, G);
  CopyDoubles(weights, D.data(), n);
  CopyDoubles(weights + n, Q.data(), Q.ndim());
  Orthogonalise(U.data(), D.data(), n, w, static_cast<index_t>(columns), weights, s, x);
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;
using detail::index_t;

double UDMeasurementUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& h, double r,
                           RegularMatrix& K) {
  detail::Operands operands(3, U, D, K, h);
  const index_t n = U.ndim();
  operands.Require(D.ndim() == n && detail::IsVector(h, n));
  K.SetSize(n, 1, false);  // K may be h: its values stay in place, and are read before the gain is written
  const double s = detail::MeasurementUpdate(U.data(), D.data(), n, h.data(), r, K.data());
  operands.Succeed();
  return s;
}

void UDTimeUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& Phi, const RegularMatrix& G,
                  const DiagonalMatrix& Q) {
  detail::Operands operands(2, U, D, Phi, G, Q);
  const index_t n = U.ndim();
  const bool square = Phi.nrows() == n && Phi.ncols() == n;
  operands.Require(D.ndim() == n && square && G.nrows() == n && G.ncols() == Q.ndim());
  detail::TimeUpdate(U, D, Phi, G, Q);
  operands.Succeed();
}

void UDTimeUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& Phi, const SymmetricMatrix& Q) {
  detail::Operands operands(2, U, D, Phi, Q);
  const index_t n = U.ndim();
  const bool square = Phi.nrows() == n && Phi.ncols() == n;
  operands.Require(D.ndim() == n && square && Q.ndim() == n);
  UpperTriangularMatrix G(n);
  DiagonalMatrix q(n);
  detail::FactorUD(G.data(), q.data(), Q.data(), n);
  detail::TimeUpdate(U, D, Phi, G, q);
  operands.Succeed();
}
