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

/// Row and column c of the panel become 0.0. The elements of the column go on as if they were 0.0 in A: infinities in
/// their rows still show as NaN.
void ClearSingular(CholeskyPanel& panel, index_t c) noexcept {
  const index_t j = panel.first + c;
  const auto element = [&](index_t i, index_t k) noexcept -> double& {
    return panel.packed[packed_index(k, i, panel.order)];
  };
  for (index_t k = 0; k < j; ++k) element(j, k) = 0.0;
  for (index_t k = 0; k < c; ++k) panel.square[k][c] = 0.0;
  panel.cleared[c] = true;
  panel.scale[c] = element(j, j) = 0.0;
  double* const s = panel.square[c];
  for (index_t r = c + 1; r < panel.count; ++r) {
    const index_t i = panel.first + r;
    double sum = 0.0;
    for (index_t k = 0; k < j; ++k) sum += element(i, k) * 0.0;
    s[r] = element(i, j) = (0.0 - sum) * 0.0;
  }
  for (index_t d = c + 1; d < panel.count; ++d) {
    for (index_t r = d; r < panel.count; ++r) panel.square[d][r] += s[d] * s[r];
  }
}

/// The factor in the place of A's lower triangle, a panel of columns at a time. The diagonal gets what the columns were
/// divided by or multiplied with. Returns the number of singular pivots.
Matrix::nsing_type FactorPanels(CholeskyPanel& panel) noexcept {
  const index_t n = panel.order;
  const index_t width = n <= most_columns ? most_columns : kernels().cholesky_columns;
  Matrix::nsing_type singular = 0;
  for (panel.first = 0; panel.first < n; panel.first += width) {
    panel.count = n - panel.first < width ? n - panel.first : width;
    for (index_t c = 0; (c = kernels().cholesky_square(panel, c)) < panel.count; ++c) {
      ClearSingular(panel, c);
      ++singular;
    }
    if (panel.first + width < n) kernels().cholesky_rows(panel);
  }
  return singular;
}

CholeskyPanel PanelOf(LowerTriangularMatrix& lower) noexcept {
  CholeskyPanel panel;
  panel.packed = lower.data();
  panel.order = lower.ndim();
  return panel;
}

}  // namespace

Matrix::nsing_type FactorLower(LowerTriangularMatrix& lower, SymmetricMatrix& a, double tol, const char* signature) {
  TakeLowerTriangle(lower, a);
  const index_t n = lower.ndim();
  double* const l = lower.data();
  for (index_t j = 0; j < n; ++j) RequireNotNegative(l[packed_row(j, n)], signature);
  CholeskyPanel panel = PanelOf(lower);
  panel.divide = false;
  panel.tolerance = tol;
  const Matrix::nsing_type singular = FactorPanels(panel);
  for (index_t j = 0; j < n; ++j) {
    double& d = l[packed_row(j, n)];
    if (d != 0.0) d = 1.0 / d;
  }
  return singular;
}

namespace {

void LowerRoot(LowerTriangularMatrix& lower) {
  CholeskyPanel panel = PanelOf(lower);
  panel.divide = true;
  FactorPanels(panel);
}

void UpperRoot(const double* a, double* u, index_t n) {
  const auto as_it_is = [](index_t, double e) noexcept { return e; };
  FactorFromLastColumn(a, u, n, as_it_is, [](index_t c, double* column, const double* s) noexcept {
    column[c] = std::sqrt(column[c] - s[c]);
    FinishColumn(column, s, column[c], c, false);
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
  detail::LowerRoot(*L);
  return L.hand_over();
}

UpperTriangularMatrix& CholeskySquareRootUpper(const SymmetricMatrix& A) {
  A.ThrowNotOk(detail::code::none);
  const detail::Consumed operand(A);
  detail::NewResult<UpperTriangularMatrix> U(A.ndim());
  detail::UpperRoot(A.data(), U->data(), A.ndim());
  return U.hand_over();
}
