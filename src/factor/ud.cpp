// U-D factorisation, in two forms, and the count of vanishing pivots.
//
// Column j of the factor needs the columns behind it, with sums over increasing k: the lanes are the rows, so the work
// is done on a copy by columns.
#include "quorvel/ud.h"

#include <algorithm>
#include <cmath>

#include "core/work_area.h"
#include "dense/rules.h"
#include "factor/left_looking.h"
#include "factor/operands.h"
#include "factor/tri_inverse.h"
#include "factor/ud_factor.h"
#include "sparse/cursor.h"

namespace quorvel::detail {
namespace {

/// Both factorisations: pivot(j, column, s) turns column j of P into that of U above the diagonal and returns d(j).
template <class Pivot>
void FactorColumns(double* u, double* d, const double* p, index_t n, Pivot pivot) {
  const auto weighted = [=](index_t k, double e) noexcept { return d[k] * e; };
  FactorFromLastColumn(p, u, n, weighted, [&](index_t j, double* column, const double* s) noexcept {
    d[j] = pivot(j, column, s);
    column[j] = 1.0;
  });
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

int FactorUD(double* u, double* d, const double* p, index_t n) {
  int singular = 0;
  FactorColumns(u, d, p, n, [&](index_t j, double* column, const double* s) noexcept {
    const double pivot = column[j] - s[j];
    if (!PivotPasses(pivot)) {
      ++singular;
      FillDoubles(column, 0.0, j);
      return 0.0;
    }
    FinishColumn(column, s, pivot, j, false);
    return pivot;
  });
  return singular;
}

}  // namespace quorvel::detail

namespace detail = quorvel::detail;
using detail::index_t;

void UDDecomposition(UpperTriangularMatrix& U, DiagonalMatrix& D, const SymmetricMatrix& P) {
  detail::Operands operands(2, U, D, P);
  const index_t n = P.ndim();
  detail::TakeOrder(operands, U, D, n);
  detail::FactorColumns(U.data(), D.data(), P.data(), n, [](index_t j, double* column, const double* s) noexcept {
    const double d = column[j] - s[j];
    detail::FinishColumn(column, s, d, j, true);
    return d;
  });
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
