// The updates of a U-D filter: Bierman's measurement update and Thornton's time update.
#include <cstddef>
#include <type_traits>

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

/// f = U'*h: h[j] and the products with column j of U, from the top. Few states are done sooner by elements: registers
/// would be loaded from what the update before has just stored.
void TransposedTimes(const double* u, index_t n, const double* h, double* f) noexcept {
  constexpr index_t few = 8;
  if (n > few) return kernels().times_unit(u, n, h, f);
  for (index_t j = 0; j < n; ++j) {
    double sum = h[j];
    const double* element = u + j;
    for (index_t i = 0; i < j; ++i) {
      sum += h[i] * *element;
      element += n - i - 1;
    }
    f[j] = sum;
  }
}

/// Bierman's update; k receives the gain. Two passes: the partial innovation variances of all columns, then U and the
/// gain row by row, which is the packed order.
double MeasurementUpdate(double* u, double* d, index_t n, const double* h, double r, double* k) {
  WorkArea<3 * small_order> work(3 * std::uint64_t{n});
  double* const f = work.data();
  double* const v = f + n;
  double* const lambda = v + n;
  TransposedTimes(u, n, h, f);
  const Kernels& kernel = kernels();
  const double alpha = kernel.scale_columns(d, n, f, r, smallest_pivot, v, lambda);
  const bool observed = PivotPasses(alpha);
  kernel.update_gain(u, n, lambda, v, k, observed ? alpha : 1.0);
  if (!observed) ClearDoubles(k, n);
  return alpha;
}

/// Rows k of w, `stride` doubles apart, take the columns k of `a`: the lanes are the states.
template <class K>
void StackColumns(double* w, index_t stride, index_t n, const K& a) noexcept {
  if constexpr (std::is_same_v<K, RegularMatrix>) {
    const kernel_offset by_rows = static_cast<kernel_offset>(a.ncols());
    kernels().transpose(w, static_cast<kernel_offset>(stride), a.data(), by_rows, n, a.ncols());
  } else {
    const Rule<K> e(a);
    for (index_t k = 0; k < e.cols(); ++k) {
      for (index_t i = 0; i < n; ++i) w[std::size_t{k} * stride + i] = e.at(i, k);
    }
  }
}

/// w = (Phi*U)': its column k is column k of Phi and multiples of the columns before it, so the last comes first. x: n
/// doubles of scratch.
void TimesUnitUpper(double* w, index_t stride, index_t n, const double* u, double* x) noexcept {
  const kernel_offset step = static_cast<kernel_offset>(stride);
  for (index_t k = n; k-- > 0;) {
    for (index_t l = 0; l < k; ++l) x[l] = u[packed_index(l, k, n)];
    kernels().sum_lines(w + std::size_t{k} * stride, stride, x, k, w, step, 0, true);
  }
}

/// P = Phi*P*Phi' + G*Q*G' on the factors of P.
template <class K>
void TimeUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& Phi, const K& G,
                const DiagonalMatrix& Q) {
  const index_t n = U.ndim();
  if (n == 0) return;  // G has columns perhaps, but no array
  const std::size_t columns = std::size_t{n} + Q.ndim();
  const index_t stride = WholeRegisters(n);
  const std::uint64_t most = (std::uint64_t{n} + 7) / 8 * 8;  // the stride of any kernels
  WorkArea<7 + 2 * small_order * small_order + 7 * small_order> work(7 + (columns + 1) * most + 3 * columns);
  double* const w = OnBoundary(work.data());
  double* const weights = w + columns * stride;
  double* const scratch = weights + columns;
  // What a line has beyond n is computed with; left as it is, it may be so small that this takes long.
  if (stride != n) ClearDoubles(w, std::uint64_t{columns} * stride);
  StackColumns(w, stride, n, Phi);
  TimesUnitUpper(w, stride, n, U.data(), scratch);
  StackColumns(w + std::size_t{n} * stride, stride, n, G);
  CopyDoubles(weights, D.data(), n);
  CopyDoubles(weights + n, Q.data(), Q.ndim());
  // The rows of [Phi*U, G] are made orthogonal in the weights [d, q], last row first.
  kernels().orthogonalise(U.data(), D.data(), n, w, stride, static_cast<index_t>(columns), weights, smallest_pivot, scratch);
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
