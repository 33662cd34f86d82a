// U-D factorisation, in two forms, and the count of vanishing pivots.
#include "quorvel/ud.h"

#include <algorithm>
#include <cmath>

#include "core/work_area.h"
#include "dense/rules.h"
#include "factor/operands.h"
#include "factor/tri_inverse.h"
#include "factor/ud_factor.h"
#include "sparse/cursor.h"

namespace quorvel::detail {
namespace {

/// Orders up to this one are done sooner by elements, where they are: with short registers, and with long ones.
constexpr index_t few = 24;
constexpr index_t few_of_long = 14;

/// Elements of column j in Rows rows from `row` on, above the diagonal. x: the weights of the columns behind j.
template <index_t Rows>
void FinishRows(double* u, const double* p, index_t n, index_t row, index_t j, const double* x, double d,
                bool divide_first) noexcept {
  double* line[Rows];
  double s[Rows];
  for (index_t r = 0; r < Rows; ++r) {
    line[r] = u + (packed_row(row + r, n) - (row + r));
    s[r] = 0.0;
  }
  for (index_t k = j + 1; k < n; ++k) {
    for (index_t r = 0; r < Rows; ++r) s[r] += line[r][k] * x[k];
  }
  for (index_t r = 0; r < Rows; ++r) {
    const double e = p[packed_index(row + r, j, n)];
    line[r][j] = divide_first ? e / d - s[r] : (e - s[r]) / d;
  }
}

int FactorFew(double* u, double* d, const double* p, index_t n, bool divide_first) noexcept {
  int singular = 0;
  double x[few];
  for (index_t j = n; j-- > 0;) {
    double* const row = u + (packed_row(j, n) - j);
    double s = 0.0;
    for (index_t k = j + 1; k < n; ++k) {
      x[k] = d[k] * row[k];
      s += row[k] * x[k];
    }
    row[j] = 1.0;
    d[j] = p[packed_row(j, n)] - s;
    if (!divide_first && !PivotPasses(d[j])) {
      d[j] = 0.0;
      ++singular;
      for (index_t i = 0; i < j; ++i) u[packed_index(i, j, n)] = 0.0;
      continue;
    }
    index_t i = j;
    for (; i >= 4; i -= 4) FinishRows<4>(u, p, n, i - 4, j, x, d[j], divide_first);
    while (i-- > 0) FinishRows<1>(u, p, n, i, j, x, d[j], divide_first);
  }
  return singular;
}

/// Both factorisations; returns the number of pivots that were singular.
int FactorColumns(double* u, double* d, const double* p, index_t n, bool divide_first) {
  if (n <= (kernels().lanes < 4 ? few : few_of_long)) return FactorFew(u, d, p, n, divide_first);
  constexpr std::uint64_t stack = 2 * small_order * small_order + packed_count(small_order);
  const std::uint64_t rows = std::min<std::uint64_t>(n, unit_strip);
  const std::uint64_t width = ((rows + 7) / 8 | 1) * 8;
  WorkArea<7 + stack> work(7 + 2 * width * n + packed_count(n));
  double* const scratch = OnBoundary(work.data());
  return static_cast<int>(kernels().factor_unit(u, d, p, n, divide_first, smallest_pivot, scratch));
}

template <class Elements>
int CountVanishing(const Matrix& t, const Elements& e, index_t n) noexcept {
  int count = 0;
  for (index_t i = 0; i < n; ++i) {
    if (std::fabs(e.at(i, i)) < 1e-200) ++count;
  }
  t.set_nsing(count);
  return count;
}

template <class T>
int CountVanishing(const T& t) noexcept {
  return CountVanishing(t, Rule<T>(t), t.ndim());
}

/// A dispensable matrix of another order cannot be resized with its elements kept; 0 when that is not asked for.
int RefusedResize(const SquareMatrix& a, index_t n) noexcept {
  if (!a.dispensable() || a.ndim() == n || n == 0) return 0;
  return n < a.ndim() ? offset::range : offset::shape;
}

/// Checks one factor, then brings it to order n.
void TakeOrder(Operands& operands, SquareMatrix& a, index_t n) {
  operands.Require(a.ok(), true);
  if (const int refused = RefusedResize(a, n)) operands.Fail(refused);
  a.SetSize(n, n, true);
}

/// D comes first: it has its new order when U is refused.
void TakeOrder(Operands& operands, UpperTriangularMatrix& U, DiagonalMatrix& D, index_t n) {
  TakeOrder(operands, D, n);
  TakeOrder(operands, U, n);
}

}  // namespace

int FactorUD(double* u, double* d, const double* p, index_t n) { return FactorColumns(u, d, p, n, false); }

}  // namespace quorvel::detail

namespace detail = quorvel::detail;
using detail::index_t;

void UDDecomposition(UpperTriangularMatrix& U, DiagonalMatrix& D, const SymmetricMatrix& P) {
  detail::Operands operands(2, U, D, P);
  const index_t n = P.ndim();
  detail::TakeOrder(operands, U, D, n);
  detail::FactorColumns(U.data(), D.data(), P.data(), n, true);
  operands.Succeed();
}

void UDDecomposition(UpperTriangularMatrix& U, const SymmetricMatrix& P) {
  detail::Consumed operands(U, P);
  const index_t n = P.ndim();
  DiagonalMatrix D(n);
  operands.release(U);
  operands.release(P);
  UDDecomposition(U, D, P);
  for (index_t i = n; i-- > 0;) U.data()[detail::packed_row(i, n)] = D.data()[i];
}

void UDFactor(UpperTriangularMatrix& U, DiagonalMatrix& D, const SymmetricMatrix& P) {
  detail::Operands operands(2, U, D, P);
  const index_t n = P.ndim();
  operands.Require(true);
  detail::TakeOrder(operands, U, D, n);
  const int singular = detail::FactorUD(U.data(), D.data(), P.data(), n);
  U.set_nsing(singular);
  D.set_nsing(singular);
  operands.Succeed();
}

int SingularityCountULD(const UpperTriangularMatrix& T) { return detail::CountVanishing(T); }
int SingularityCountULD(const LowerTriangularMatrix& T) { return detail::CountVanishing(T); }
int SingularityCountULD(const DiagonalMatrix& T) { return detail::CountVanishing(T); }

int SingularityCountULD(const SparseMatrix& T) {
  const detail::SparseLines e(T);
  return detail::CountVanishing(T, e, std::min(e.rows(), e.cols()));
}
