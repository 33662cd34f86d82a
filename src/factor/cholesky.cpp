// Cholesky factors of dense symmetric matrices.
//
// The packed array of a symmetric matrix, read as that of a lower triangular one, is its lower triangle. Column j of
// that triangle is row j of the array, so all loops run along rows.
#include "quorvel/cholesky.h"

#include <cmath>

#include "core/ownership.h"
#include "core/work_area.h"
#include "factor/cholesky_template.h"
#include "factor/left_looking.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace quorvel::detail {

namespace {

/// The lower triangle has the packed array of the symmetric matrix: that of a dispensable one itself.
void TakeLowerTriangle(LowerTriangularMatrix& lower, SymmetricMatrix& a) {
  if (a.dispensable()) {
    Access::swap_storage(lower, a);
  } else {
    lower.Copy(a, false);
  }
}

}  // namespace

Matrix::nsing_type FactorLower(LowerTriangularMatrix& lower, SymmetricMatrix& a, double tol, const char* signature) {
  TakeLowerTriangle(lower, a);
  const index_t n = lower.ndim();
  double* const l = lower.data();
  WorkArea<2 * small_order> work(2 * std::uint64_t{n});
  double* const s = work.data();
  double* const x = s + n;
  Matrix::nsing_type singular = 0;
  for (index_t j = 0; j < n; ++j) {
    double* const column = l + packed_row(j, n);
    const index_t rows = n - j;
    RequireNotNegative(column[0], signature);
    LeftSums(l, n, j, s, x);
    const double pivot = column[0] - s[0];
    if (std::fabs(pivot) < std::fabs(tol * column[0])) {
      ++singular;
      for (index_t k = 0; k < j; ++k) l[packed_index(k, j, n)] = 0.0;
      // The elements below go on as if they were 0.0 in A: infinities in their rows still show as NaN.
      FillDoubles(column, 0.0, rows);
      LeftSums(l, n, j, s, x);
      for (index_t i = 1; i < rows; ++i) column[i] = (column[i] - s[i]) * 0.0;
    } else {
      const double reciprocal = 1.0 / std::sqrt(pivot);
      column[0] = reciprocal;
      for (index_t i = 1; i < rows; ++i) column[i] = (column[i] - s[i]) * reciprocal;
    }
  }
  for (index_t j = 0; j < n; ++j) {
    double& d = l[packed_row(j, n)];
    if (d != 0.0) d = 1.0 / d;
  }
  return singular;
}

namespace {

void LowerRoot(double* l, index_t n) {
  WorkArea<2 * small_order> work(2 * std::uint64_t{n});
  double* const s = work.data();
  for (index_t j = 0; j < n; ++j) {
    double* const column = l + packed_row(j, n);
    LeftSums(l, n, j, s, s + n);
    column[0] = std::sqrt(column[0] - s[0]);
    for (index_t i = 1; i < n - j; ++i) column[i] = (column[i] - s[i]) / column[0];
  }
}

void UpperRoot(const double* a, double* u, index_t n) {
  const auto as_it_is = [](index_t, double e) noexcept { return e; };
  FactorFromLastColumn(a, u, n, as_it_is, [](index_t c, double* column, const double* s) noexcept {
    column[c] = std::sqrt(column[c] - s[c]);
    for (index_t r = 0; r < c; ++r) column[r] = (column[r] - s[r]) / column[c];
  });
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;

LowerTriangularMatrix& CholeskyFactor(SymmetricMatrix& A, double tol) {
  return CholeskyFactor_T<LowerTriangularMatrix>(A, tol);
}

LowerTriangularMatrix& CholeskyFactor(const SymmetricMatrix& A, double tol) {
  return CholeskyFactor(detail::Mutable(A), tol);
}

LowerTriangularMatrix& CholeskySquareRootLower(const SymmetricMatrix& A) {
  A.ThrowNotOk(detail::code::none);
  const detail::Consumed operand(A);
  detail::NewResult<LowerTriangularMatrix> L;
  detail::TakeLowerTriangle(*L, detail::Mutable(A));
  L->set_nsing(-1);
  detail::LowerRoot(L->data(), L->ndim());
  return L.hand_over();
}

UpperTriangularMatrix& CholeskySquareRootUpper(const SymmetricMatrix& A) {
  A.ThrowNotOk(detail::code::none);
  const detail::Consumed operand(A);
  detail::NewResult<UpperTriangularMatrix> U(A.ndim());
  detail::UpperRoot(A.data(), U->data(), A.ndim());
  return U.hand_over();
}
